// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>
#include <QFlags>

namespace rtf
{

// What other programs write into a text and read() passes over, so that writing the text anew gives it up.
enum class LeftOut : quint32 {
    Footnotes = 1u << 0,
    Headers = 1u << 1, // and footers
    Comments = 1u << 2,
    Bookmarks = 1u << 3, // but for those that word processors set for themselves
    Marks = 1u << 4,     // of what an index or a table of contents lists
    Formulas = 1u << 5,
    Objects = 1u << 6, // embedded ones; what they show is read
};

Q_DECLARE_FLAGS(LeftOutKinds, LeftOut)
Q_DECLARE_OPERATORS_FOR_FLAGS(LeftOutKinds)

// Which of it holds anything. A text that has none of it is looked through at a small part of the cost of reading it.
LeftOutKinds leftOut(QByteArrayView rtf);

} // namespace rtf
