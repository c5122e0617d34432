// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Writes a generated document to disk, for measurements of the whole program.

#include "GeneratedDocument.h"

#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <map>

using namespace Qt::StringLiterals;

int main(int argc, char **argv)
{
    const std::map<QByteArray, Shape> shapes = {
        {"bushy", Shape::Bushy}, {"flat", Shape::Flat}, {"chain", Shape::Chain}};
    const auto shape = shapes.find(argc > 4 ? argv[4] : "bushy");
    const int entries = argc > 2 ? std::atoi(argv[2]) : 0;
    const int textLength = argc > 3 ? std::atoi(argv[3]) : 2000;
    if (entries < 1 || entries > 32767 || shape == shapes.end()) {
        std::fputs("Usage: make_document FILE ENTRIES [TEXT-LENGTH [bushy|flat|chain]]\n"
                   "Writes an outline of 1 to 32767 entries with texts of that many characters (2000).\n",
                   stderr);
        return 2;
    }
    const QByteArray bytes = generatedDocument(entries, textLength, shape->second);
    QFile file(QFile::decodeName(argv[1]));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        std::fprintf(stderr, "%s: %s\n", argv[1], qPrintable(file.errorString()));
        return 1;
    }
    return 0;
}
