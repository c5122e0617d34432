// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Makes an icon file from a drawing:  svg_to_ico DRAWING.svg ICON.ico|ICON.png [SIZE]
// The size is in pixels; without it, it is the drawing's own.

#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QImageWriter>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    if (argc != 3 && argc != 4)
        return 2;
    const QString icon = QString::fromLocal8Bit(argv[2]);
    QImageReader reader(QString::fromLocal8Bit(argv[1]), "svg");
    if (argc == 4) {
        const int size = QByteArray(argv[3]).toInt();
        reader.setScaledSize(QSize(size, size));
    }
    const QImage drawing = reader.read().convertToFormat(QImage::Format_ARGB32);
    QImageWriter writer(icon, QFileInfo(icon).suffix().toLatin1());
    if (drawing.isNull() || !writer.write(drawing)) {
        std::fprintf(stderr, "%s\n", qPrintable(drawing.isNull() ? reader.errorString() : writer.errorString()));
        return 1;
    }
    return 0;
}
