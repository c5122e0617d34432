// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractTextDocumentLayout>
#include <QSizeF>
#include <QTextDocument>

#include <memory>
#include <vector>

class QPaintDevice;
class QPainter;
class QPointF;
class QTextBlock;

// Lays a rich text out for a printer and draws it page by page: a range of characters at a time, never a part of a
// line. Printed black on white, whatever the desktop's colours are. Offsets count characters as the text pane does.
class PageFormatter
{
public:
    // A height on the paper in pixels of the device, and how far what follows is to keep from it.
    struct Place {
        qreal y = 0;
        qreal distance = 0;
    };

    // The document is broken for pages of `size`, in whole pixels of the device, and changed to fit them; it must be
    // one that fetches nothing. Paragraphs at its beginning and its end that are not visible are no part of the text.
    // With `above` it goes on below a text that ends at that place of the first page. Error 6 when the text is taller
    // than can be laid out at once: 33,554,432 pixels.
    PageFormatter(std::unique_ptr<QTextDocument> document, QPaintDevice &device, const QSizeF &size,
                  const Place *above = nullptr);
    ~PageFormatter();
    Q_DISABLE_COPY_MOVE(PageFormatter)

    // At least 1: an empty text has one empty page.
    int pageCount() const { return static_cast<int>(m_starts.size()); }

    // The characters of the whole text.
    int length() const { return m_length; }

    // The first character of a page from 0.
    int firstCharacter(int page) const { return m_starts[std::size_t(page)]; }

    // Which place a page has among the sheets of paper that the text is laid out on, from 0. A sheet that no line
    // begins on is no page: one above which the text begins only lower down, or one inside a picture that is too tall.
    int sheet(int page) const { return m_sheets[std::size_t(page)]; }

    // Where the text ends, counted from the top of the first sheet.
    Place end() const;

    // Draws what stands on a sheet with its upper left corner at `corner`.
    void drawSheet(QPainter &painter, const QPointF &corner, int sheet) const;

private:
    void layOut(QPaintDevice &device, const QSizeF &size, const Place *above);
    void goOnBelow(const Place &above);
    void finishLayout();
    void checkCells() const;
    void checkHeight() const;
    QTextBlock begin() const;
    QTextBlock last() const;
    void keepWithNext();
    int offsetOf(int position) const;
    qreal lineTop(const QTextBlock &block, int line) const;
    int sheetOf(qreal y) const;
    void scaleIndents(qreal factor);
    void findPages();

    std::unique_ptr<QTextDocument> m_document;
    int m_length = 0;
    // The device's pixels to one of the document's.
    qreal m_scale = 1;
    // The text's own first and last paragraph.
    int m_firstBlock = 0;
    int m_lastBlock = 0;
    bool m_beginsOnTop = false;
    // Where each page's first line begins.
    std::vector<int> m_starts;
    // Which pages of the layout those are: one that no line begins on, inside a tall picture, counts for nothing.
    std::vector<int> m_sheets;
    QList<QAbstractTextDocumentLayout::Selection> m_readable;
};
