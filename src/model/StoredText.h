// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

// The stored form of entry texts: an RTF document as it stands, or its length in decimal, a comma and the bytes of a
// zlib stream (RFC 1950). Both are bytes of any value.

// Whether texts are compressed when they are stored. Set at start-up, never changed afterwards.
inline constexpr bool bCompressText = true;

// The stored form of a text: compressed, or as it is when compression fails.
QByteArray NodeTextCompressIfRequired(const QByteArray &text);

// The text of a stored form. Damaged compressed bytes are themselves the text. Error 6 when the first comma lies beyond
// position 32767 is reported, and the text is then the stored form.
QByteArray NodeTextDecompressIfRequired(const QByteArray &storedText);

// Whether a text, stored as it stands, would be taken for a compressed one: it begins with a number and a comma.
bool readsAsCompressed(const QByteArray &text);

// Whether a text, got from a stored form, is its compressed bytes because these could not be inflated.
bool isUninflated(const QByteArray &text, const QByteArray &storedText);
