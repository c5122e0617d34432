// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/FileStamp.h"
#include "formats/Format.h"

#include <QByteArray>
#include <QString>

class Document;

// A file that is being opened.
struct OpenedFile {
    QString sFile;
    QByteArray buffer;
    FileStamp stamp;
    qint16 iVersion = formatVersion::native;
    ReadOutline read;
};

// Reads as far as it goes. What keeps it from being the whole file is the failure of what was read.
OpenedFile readFile(const QString &sFile);

// The same of what a file held once. Any thread may ask.
OpenedFile readContent(const QString &sFile, const QByteArray &content);

// A native file that was read whole would be saved as the same bytes. One that would not was made by another hand or
// has come to harm in a way that still reads as a document: the log then says so.
void remarkOnOddities(const Document &document, OpenedFile &file);

// What keeps a file from being read whole, of the failure being handled, in words.
QString causeOfFailure(const OpenedFile &file);

// Tells of labels of a file that are shown up to a brace only.
void tellOfCutLabels(Document &document, int cutLabels);
