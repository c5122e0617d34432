// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

// Bytes that differ from others in places: pieces of those, and bytes of its own between them.
class PiecedText
{
public:
    struct Piece {
        // Of the others; where own bytes stand, -1.
        qint64 start = -1;
        qint64 length = 0;
        QByteArray own;
    };

    PiecedText() = default;
    // All of others of that length.
    explicit PiecedText(qint64 length);
    explicit PiecedText(std::vector<Piece> pieces);

    const std::vector<Piece> &pieces() const { return m_pieces; }

    qint64 size() const { return m_size; }

    // What it has of its own, and what telling where the pieces are takes; about.
    qint64 weight() const;

    // Puts bytes in the place of some.
    void replace(qint64 from, qint64 length, const QByteArray &bytes);

    // The whole; nothing where the others are not as long as the pieces say.
    std::optional<QByteArray> of(const QByteArray &others) const;

private:
    void append(Piece piece);
    // Those of a stretch.
    void appendOf(const std::vector<Piece> &pieces, qint64 from, qint64 to);

    std::vector<Piece> m_pieces;
    qint64 m_size = 0;
};
