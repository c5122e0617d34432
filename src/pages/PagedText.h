// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "pages/PrintComposition.h"

#include <QSizeF>

#include <memory>
#include <vector>

class PageFormatter;
class QPaintDevice;
class QPainter;
class QPointF;

// A composed text on pages. It is composed and laid out in pieces, of which only the ones needed last are kept: what is
// known of the others is where their pages begin. Each piece goes on in the line where the one before ended, so that
// nothing shows where one ends. Offsets count characters of the whole text as the text pane does.
class PagedText
{
public:
    // The text is broken for pages of `size`, in whole pixels of the device.
    PagedText(const PrintComposition &composition, QPaintDevice &device, const QSizeF &size,
              const PieceLength &length = {});
    ~PagedText();
    Q_DISABLE_COPY_MOVE(PagedText)

    // Lays out one more piece; false when all are. Error 6 when not even the shortest can be laid out in one.
    bool layOutMore();

    bool isWhole() const { return !m_next.entry; }

    // The pages laid out so far, at least 1 once something is. A last page on which nothing stands is none.
    int pageCount() const;

    // The characters laid out so far.
    int length() const { return m_characters; }

    // The first character of a page from 0.
    int firstCharacter(int page) const { return m_pages[std::size_t(page)].character; }

    // Draws a page with its upper left corner at `corner`.
    void draw(QPainter &painter, const QPointF &corner, int page);

    // Draws the page that holds the character `first`, laying out what is needed for it. The answer is the first
    // character that did not fit; when the text is whole then and ends before it, nothing is left.
    int format(QPainter *painter, const QPointF &corner, int first);

    // How many pieces are in memory.
    int piecesKept() const { return static_cast<int>(m_kept.size()); }

private:
    // Where a piece comes from and where it stands.
    struct Piece {
        PrintPlace from;
        PieceLength length;
        qreal y = 0;        // on its first sheet
        qreal distance = 0; // that what is above wants to keep
        int firstSheet = 0;
        int lastSheet = 0;
    };

    struct Page {
        int sheet = 0; // of those of the whole text
        int character = 0;
        std::size_t piece = 0; // the first one with a line on it
    };

    struct Kept {
        std::size_t piece;
        std::unique_ptr<PageFormatter> text;
    };

    bool hasPageBehind(int first) const;
    int pageOf(int character) const;
    std::unique_ptr<PageFormatter> make(const Piece &piece, PrintComposition::Damage damage, PrintPlace *next) const;
    std::unique_ptr<PageFormatter> makeToFit(Piece &piece, PrintPlace *next) const;
    const PageFormatter &text(std::size_t piece);
    void keep(std::size_t piece, std::unique_ptr<PageFormatter> text);
    void addPages(const PageFormatter &text);

    PrintComposition m_composition;
    QPaintDevice &m_device;
    QSizeF m_size;
    PieceLength m_pieceLength;
    PrintPlace m_next;
    std::vector<Piece> m_pieces;
    std::vector<Page> m_pages;
    std::vector<Kept> m_kept; // used last at the back
    int m_characters = 0;
    Piece m_place; // of the next piece
};
