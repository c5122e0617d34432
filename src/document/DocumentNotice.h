// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// What went wrong with a document and is not mended yet. One of a kind stands at a time; the gravest kind comes first.
enum class NoticeKind {
    NotSaved,
    FileDamaged,
    FileGone,
    FileChanged,
    NotReadWhole,
    // What was recovered after a crash is of a file, and has none.
    Recovered,
    // Some of it could not be recovered.
    NotRecoveredWhole,
    DamagedText,
    LongText,
    LeftOutParts,
    NotReplaced,
    DocumentFull,
    NoBackup,
    // What is changed is not kept against a crash.
    NoRecovery,
    NoVersion
};

// Shown in the document's window until the user dismisses it or what it tells of is mended.
struct DocumentNotice {
    NoticeKind kind;
    // A sentence or two for the user: what happened, to what, and what can be done.
    QString text;
    // The file that it concerns, where that may not be the document's own. Empty for a file that may not be written.
    QString file = QString();

    bool operator==(const DocumentNotice &) const = default;
};
