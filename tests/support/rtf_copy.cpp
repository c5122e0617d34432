// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Rtf.h"

#include <QFile>
#include <QGuiApplication>
#include <QTextDocument>

// rtf_copy FROM TO: reads an RTF file and writes what Quillery makes of it, for comparing the two elsewhere.
int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    const QStringList names = QGuiApplication::arguments();
    if (names.size() != 3) {
        qCritical("usage: rtf_copy FROM TO");
        return 2;
    }
    QFile from(names[1]);
    QFile to(names[2]);
    if (!from.open(QIODevice::ReadOnly) || !to.open(QIODevice::WriteOnly)) {
        qCritical("%s", qPrintable(from.isOpen() ? to.errorString() : from.errorString()));
        return 1;
    }
    QTextDocument document;
    rtf::read(from.readAll(), document);
    const QByteArray written = rtf::write(document);
    return to.write(written) == written.size() && to.flush() ? 0 : 1;
}
