// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Judges a native file and prints it for the scripts beside this: its faults, or one line for the selected entry's key
// and one an entry with path, flags, label and plain text, line ends of the text as "|". With a path behind the file,
// prints that entry's text as it is stored, inflated.

#include "support/NativeChecker.h"

#include "rtf/Rtf.h"
#include "util/AnsiCodec.h"

#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;

static QString plainText(const NativeEntry &entry)
{
    const QString text = rtf::isRtf(entry.text) ? rtf::toPlainText(entry.text) : AnsiCodec::toText(entry.text);
    return QString(text).replace("\r\n"_L1, "|"_L1);
}

int main(int argc, char *argv[])
{
    if (argc != 2 && argc != 3)
        return 2;
    const NativeFile file = checkNativeFile(QFile::decodeName(argv[1]));
    if (!file.fault.isEmpty()) {
        std::printf("fault: %s\n", qPrintable(file.fault));
        return 1;
    }
    if (argc == 3) {
        const QByteArray text = file.entry(argv[2]).text;
        std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout);
        return 0;
    }
    std::printf("selected %s\n", file.header.value("selecteditemkey").constData());
    for (const NativeEntry &entry : file.entries) {
        std::printf("%s%s%s %s: %s\n", entry.path.constData(), entry.tagged ? " tagged" : "",
                    entry.visible ? " visible" : "", qPrintable(AnsiCodec::toText(entry.label)),
                    plainText(entry).toUtf8().constData());
    }
    return 0;
}
