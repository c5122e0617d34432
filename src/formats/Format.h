// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Outline.h"

#include <QByteArray>
#include <QString>

#include <exception>
#include <memory>
#include <optional>
#include <span>

class ByteSink;

// What bytes were read as.
struct ReadOutline {
    // As far as the reading came; never null. The entry to be shown is selected.
    std::unique_ptr<Outline> outline = std::make_unique<Outline>();
    // What broke the reading off; null when it came to its end.
    std::exception_ptr failure;
    // What of the bytes could not be read, in words; empty when all of it was.
    QString damage;
    // What was passed over by the format's own rules, in words; the reading counts as whole all the same.
    QString remark;
    // How many labels were cut at a closing brace, as the format has it: the rest of them is in the file alone.
    int cutLabels = 0;
};

// What a document's format version says of its file.
namespace formatVersion
{
inline constexpr qint16 native = 1;
inline constexpr qint16 plainText = -1;
} // namespace formatVersion

// A document format: bytes in, an outline out, and back again. It knows neither files nor documents.
struct Format {
    qint16 version = 0;
    // In lower case, without the stop.
    QString extension;
    // As file dialogs offer it, such as "Text Files (*.txt)" and "*.txt".
    QString filter;
    QString pattern;
    // The format version that bytes state in this format's way, which goes before a file's extension; nothing where
    // they state none. Null for a format that is told by the extension alone.
    std::optional<qint16> (*statedVersion)(const QByteArray &bytes) = nullptr;
    ReadOutline (*read)(const QByteArray &bytes) = nullptr;
    // The same without copies: the texts are parts of the bytes, which have to stay as long as the outline. Null for a
    // format without a difference.
    ReadOutline (*readInPlace)(const QByteArray &bytes) = nullptr;
    // Throws what goes wrong.
    void (*write)(const Outline &outline, ByteSink &sink) = nullptr;
    // What of an outline that was written is not there, or another, where it is read again, in words; empty when
    // nothing is. Null for a format that does not give back what it was given.
    QString (*difference)(const Outline &written, const Outline &read) = nullptr;
};

// Every format that this program knows, in the order in which file dialogs offer them.
std::span<const Format> formats();

// The format of a version; plain text for any that is none of the table's.
const Format &formatOfVersion(qint16 version);

// The format that a file's extension names; plain text for any other extension.
const Format &formatOfExtension(const QString &sFile);

// The version that a file's bytes state, or else that of its extension. It may be none of the table's. Error 6 for one
// beyond 16 bits.
qint16 formatVersionOf(const QString &sFile, const QByteArray &bytes);
