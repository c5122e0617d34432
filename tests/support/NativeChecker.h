// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

// Judges a native outline file by the format's rules alone. It shares no code with the program's reader, so that a
// mistake which the reader and the writer agree on still shows.

struct NativeEntry {
    QByteArray path;
    QByteArray label;
    // The whole label, decoded, where a record of its own holds it; null otherwise.
    QByteArray exactLabel;
    bool tagged = false;
    bool visible = false;
    QByteArray storedText;
    // The text, inflated where it is stored compressed.
    QByteArray text;
};

struct NativeFile {
    // What breaks the rules first, in words; empty for a file that keeps them all.
    QString fault;
    // The records before the first entry, "formatversion" to "textfontunderline".
    QMap<QByteArray, QByteArray> header;
    QList<NativeEntry> entries;

    // The entry of a path, or an empty one.
    NativeEntry entry(const QByteArray &path) const;
    QList<QByteArray> paths() const;
};

NativeFile checkNative(const QByteArray &bytes);

// The same for a file on disk; a file that cannot be read is faulty.
NativeFile checkNativeFile(const QString &fileName);
