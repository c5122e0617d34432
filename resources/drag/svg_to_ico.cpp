// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Makes an icon file from a drawing:  svg_to_ico DRAWING.svg ICON.ico

#include <QGuiApplication>
#include <QImageReader>
#include <QImageWriter>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    if (argc != 3)
        return 2;
    QImageReader reader(QString::fromLocal8Bit(argv[1]), "svg");
    const QImage drawing = reader.read().convertToFormat(QImage::Format_ARGB32);
    QImageWriter writer(QString::fromLocal8Bit(argv[2]), "ico");
    if (drawing.isNull() || !writer.write(drawing)) {
        std::fprintf(stderr, "%s\n", qPrintable(drawing.isNull() ? reader.errorString() : writer.errorString()));
        return 1;
    }
    return 0;
}
