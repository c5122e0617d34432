// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The stored form of entry texts: an RTF document as it stands, or its length in decimal, a comma and the bytes of a
// zlib stream (RFC 1950). Both are bytes of any value.

// Whether texts are compressed when they are stored. Set at start-up, never changed afterwards.
inline constexpr bool bCompressText = true;

// The stored form of a text: compressed, or as it is when compression fails.
QByteArray NodeTextCompressIfRequired(const QByteArray &text);

// The same, for any thread: it takes note of no routine's name.
QByteArray compressedText(const QByteArray &text);

// The text of a stored form. Damaged compressed bytes are themselves the text, and a text without end is its beginning.
// Error 6 when the first comma lies beyond
// position 32767 is reported, and the text is then the stored form.
QByteArray NodeTextDecompressIfRequired(const QByteArray &storedText);

// Where a stored form's compressed bytes begin and how long their text is said to be; a length of 0 for a plain text.
struct CompressedPart {
    qsizetype start = 0;
    qint32 length = 0;
};

// Error 6 when the first comma lies beyond position 32767, or the length beyond 32 bits.
CompressedPart compressedPart(const QByteArray &storedText);

enum class TextState {
    Whole,
    // It goes on beyond limits::longestInflated.
    Beginning,
    // Its compressed bytes cannot be inflated, and stand for it.
    Damaged
};

// What a stored form holds.
struct Inflated {
    QByteArray text;
    TextState state = TextState::Whole;
};

// The same with what became of it.
Inflated inflated(const QByteArray &storedText);

// The whole text of a stored form, without a word where that is damaged or too long to be inflated: nothing then. For
// workers, which report nothing.
std::optional<QByteArray> soundText(const QByteArray &storedText);

// Whether a text, stored as it stands, would be taken for a compressed one: it begins with a number and a comma.
bool readsAsCompressed(const QByteArray &text);
