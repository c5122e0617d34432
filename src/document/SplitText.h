// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QFont>
#include <QString>

#include <optional>
#include <vector>

class QTextCursor;

// Entries' texts put together and taken apart. Each part looks as it looked before; the base font is that of what names
// none.

// One of the texts that are put together.
struct JoinedPart {
    QByteArray storedText;
    // A paragraph of its own before the text; empty for none.
    QString heading = {};
};

struct JoinedText {
    // In its stored form.
    QByteArray text;
    // Where the second part begins, as a position in the text document.
    int seam = 0;
};

// The texts one behind the other, each in paragraphs of its own; what is empty leaves no trace. Nothing where one of
// them is not to be had whole, or the result could not be shown whole.
std::optional<JoinedText> joinedText(const std::vector<JoinedPart> &parts, const QFont &base);

struct SplitText {
    // In their stored forms.
    QByteArray before;
    QByteArray behind;
    // What stands behind, in words.
    QString words;
};

// A text before a place in it, or before what is selected there, and from there on. Nothing where it is not to be had
// whole, or is another one than the cursor is in. The place lies in no table.
std::optional<SplitText> splitText(const QByteArray &storedText, const QFont &base, const QTextCursor &place);

// The first line that has words, up to so many characters of it, and no half word where there are several.
QString firstLine(const QString &text, qsizetype longest = 80);
