// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

// The stored form of entry texts: an RTF document as it stands, or its length in decimal, a comma and the bytes of a
// zlib stream (RFC 1950). Both are bytes of any value.

// Whether texts are compressed when they are stored. Set at start-up, never changed afterwards.
inline constexpr bool bCompressText = true;

// zlib's `compress` at its default level into a buffer of length × 1.01 + 12. Returns zlib's result code.
int CompressString(const QByteArray &text, QByteArray &compressed);
// zlib's `uncompress` into a buffer of the stated length; a length that the bytes cannot reach is not allocated.
// Returns zlib's result code.
int DecompressString(const QByteArray &compressed, qint32 length, QByteArray &text);

// The stored form of a text: compressed, or as it is when compression fails.
QByteArray NodeTextCompressIfRequired(const QByteArray &text);

// The text of a stored form. Damaged compressed bytes are themselves the text. Error 6 when the first comma lies beyond
// position 32767 is reported, and the text is then the stored form.
QByteArray NodeTextDecompressIfRequired(const QByteArray &storedText);
