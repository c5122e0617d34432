// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/PiecedText.h"

#include <algorithm>
#include <utility>

PiecedText::PiecedText(qint64 length)
{
    append({0, length, {}});
}

PiecedText::PiecedText(std::vector<Piece> pieces)
{
    for (Piece &piece : pieces)
        append(std::move(piece));
}

qint64 PiecedText::weight() const
{
    constexpr qint64 weightOfPiece = 24;
    qint64 weight = 0;
    for (const Piece &piece : m_pieces)
        weight += weightOfPiece + piece.own.size();
    return weight;
}

// Where it goes on with the last one it becomes part of it.
void PiecedText::append(Piece piece)
{
    if (piece.length <= 0)
        return;
    m_size += piece.length;
    if (!m_pieces.empty()) {
        Piece &last = m_pieces.back();
        if (last.start < 0 && piece.start < 0) {
            last.own += piece.own;
            last.length += piece.length;
            return;
        }
        if (last.start >= 0 && piece.start == last.start + last.length) {
            last.length += piece.length;
            return;
        }
    }
    m_pieces.push_back(std::move(piece));
}

void PiecedText::appendOf(const std::vector<Piece> &pieces, qint64 from, qint64 to)
{
    qint64 at = 0;
    for (const Piece &piece : pieces) {
        const qint64 begin = std::max(from, at) - at;
        const qint64 end = std::min(to, at + piece.length) - at;
        if (begin < end)
            append(piece.start < 0 ? Piece{-1, end - begin, piece.own.mid(begin, end - begin)}
                                   : Piece{piece.start + begin, end - begin, {}});
        at += piece.length;
    }
}

void PiecedText::replace(qint64 from, qint64 length, const QByteArray &bytes)
{
    const qint64 size = std::exchange(m_size, 0);
    const std::vector<Piece> before = std::exchange(m_pieces, {});
    appendOf(before, 0, from);
    append({-1, bytes.size(), bytes});
    appendOf(before, from + length, size);
}

std::optional<QByteArray> PiecedText::of(const QByteArray &others) const
{
    QByteArray whole;
    whole.reserve(m_size);
    for (const Piece &piece : m_pieces) {
        if (piece.start < 0) {
            whole += piece.own;
        } else {
            if (piece.start > others.size() || piece.length > others.size() - piece.start)
                return {};
            whole += QByteArrayView(others).sliced(piece.start, piece.length);
        }
    }
    return whole;
}
