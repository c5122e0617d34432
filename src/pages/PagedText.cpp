// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "pages/PagedText.h"

#include "model/SealedDocument.h"
#include "pages/PageFormatter.h"
#include "util/RunTimeError.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace
{

// The pieces of a page that lies between two, and one to go back to.
constexpr std::size_t mostKept = 3;

// What stands between two pieces as between two paragraphs: CR LF.
constexpr int breakLength = 2;

// False when it is as short as can be.
bool makeShorter(PieceLength &length)
{
    constexpr int factor = 8;
    if (length.characters <= 1 && length.lines <= 1)
        return false;
    length.characters = std::max<qsizetype>(1, length.characters / factor);
    length.lines = std::max<qsizetype>(1, length.lines / factor);
    return true;
}

} // namespace

PagedText::PagedText(const PrintComposition &composition, QPaintDevice &device, const QSizeF &size,
                     const PieceLength &length)
    : m_composition(composition)
    , m_device(device)
    , m_size(std::floor(size.width()), std::floor(size.height()))
    , m_pieceLength(length)
    , m_next(composition.first())
{
}

PagedText::~PagedText() = default;

bool PagedText::layOutMore()
{
    if (isWhole())
        return false;
    Piece piece = m_place;
    piece.from = m_next;
    piece.length = m_pieceLength;
    std::unique_ptr<PageFormatter> text = makeToFit(piece, &m_next);
    const PageFormatter::Place end = text->end();
    piece.lastSheet = piece.firstSheet + text->sheet(text->pageCount() - 1);
    m_pieces.push_back(piece);
    addPages(*text);

    const auto sheets = static_cast<int>(std::floor(end.y / m_size.height()));
    m_place.firstSheet = piece.firstSheet + sheets;
    m_place.y = end.y - sheets * m_size.height();
    m_place.distance = end.distance;
    keep(m_pieces.size() - 1, std::move(text));
    return true;
}

void PagedText::addPages(const PageFormatter &text)
{
    const Piece &piece = m_pieces.back();
    const int before = m_pieces.size() == 1 ? 0 : m_characters + breakLength;
    for (int page = 0; page < text.pageCount(); ++page) {
        const int sheet = piece.firstSheet + text.sheet(page);
        if (m_pages.empty() || sheet > m_pages.back().sheet)
            m_pages.push_back({sheet, before + text.firstCharacter(page), m_pieces.size() - 1});
    }
    m_characters = before + text.length();
}

std::unique_ptr<PageFormatter> PagedText::make(const Piece &piece, PrintComposition::Damage damage,
                                               PrintPlace *next) const
{
    auto document = std::make_unique<SealedDocument>();
    *next = m_composition.compose(*document, piece.from, piece.length, damage);
    const PageFormatter::Place above{piece.y, piece.distance};
    return std::make_unique<PageFormatter>(std::move(document), m_device, m_size,
                                           piece.from == m_composition.first() ? nullptr : &above);
}

// Makes a piece, a shorter one when it becomes taller than can be laid out.
std::unique_ptr<PageFormatter> PagedText::makeToFit(Piece &piece, PrintPlace *next) const
{
    PrintComposition::Damage damage = PrintComposition::Damage::Report;
    while (true) {
        PrintPlace behind;
        try {
            std::unique_ptr<PageFormatter> text = make(piece, damage, &behind);
            *next = behind;
            return text;
        } catch (const RunTimeError &error) {
            if (error.number() != ErrorNumber::Overflow || !makeShorter(piece.length))
                throw;
        }
        damage = PrintComposition::Damage::Ignore;
    }
}

const PageFormatter &PagedText::text(std::size_t piece)
{
    const auto known = std::find_if(m_kept.begin(), m_kept.end(), [&](const Kept &k) { return k.piece == piece; });
    if (known != m_kept.end()) {
        std::rotate(known, known + 1, m_kept.end());
    } else {
        PrintPlace next;
        keep(piece, make(m_pieces[piece], PrintComposition::Damage::Ignore, &next));
    }
    return *m_kept.back().text;
}

void PagedText::keep(std::size_t piece, std::unique_ptr<PageFormatter> text)
{
    if (m_kept.size() == mostKept)
        m_kept.erase(m_kept.begin());
    m_kept.push_back({piece, std::move(text)});
}

int PagedText::pageCount() const
{
    const auto count = static_cast<int>(m_pages.size());
    return count > 1 && isWhole() && m_pages.back().character >= m_characters ? count - 1 : count;
}

int PagedText::pageOf(int character) const
{
    const auto behind = std::upper_bound(m_pages.begin(), m_pages.end(), character,
                                         [](int wanted, const Page &page) { return wanted < page.character; });
    return static_cast<int>(std::max<std::ptrdiff_t>(0, behind - m_pages.begin() - 1));
}

void PagedText::draw(QPainter &painter, const QPointF &corner, int page)
{
    const Page &place = m_pages[std::size_t(page)];
    for (std::size_t i = place.piece; i < m_pieces.size() && m_pieces[i].firstSheet <= place.sheet; ++i) {
        if (m_pieces[i].lastSheet >= place.sheet)
            text(i).drawSheet(painter, corner, place.sheet - m_pieces[i].firstSheet);
    }
}

bool PagedText::hasPageBehind(int first) const
{
    return !m_pages.empty() && pageOf(first) + 1 < static_cast<int>(m_pages.size());
}

int PagedText::format(QPainter *painter, const QPointF &corner, int first)
{
    // A page may be finished by the next piece, and only then is it known where the following one begins.
    while (!hasPageBehind(first) && layOutMore()) {
    }
    const int page = pageOf(first);
    if (painter)
        draw(*painter, corner, page);
    return hasPageBehind(first) ? m_pages[std::size_t(page) + 1].character : m_characters;
}
