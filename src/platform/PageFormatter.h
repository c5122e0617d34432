// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QFont>
#include <QSizeF>
#include <QTextDocument>

#include <memory>
#include <vector>

class QPaintDevice;
class QPainter;
class QPointF;

// Lays a rich text out for a printer and draws it page by page: a range of characters at a time, never a part of a
// line. Printed black on white, whatever the desktop's colours are. Offsets count characters as the text pane does.
class PageFormatter
{
public:
    // The text is broken for pages of `size`, in pixels of the device. `base` is the font of text that names none.
    PageFormatter(const QByteArray &rtf, const QFont &base, QPaintDevice &device, const QSizeF &size);
    ~PageFormatter();
    Q_DISABLE_COPY_MOVE(PageFormatter)

    // At least 1: an empty text has one empty page.
    int pageCount() const { return static_cast<int>(m_starts.size()); }

    // The characters of the whole text.
    int length() const { return m_length; }

    // The first character of a page from 0.
    int firstCharacter(int page) const { return m_starts[std::size_t(page)]; }

    // Draws the page that holds the character `first` with its upper left corner at `corner`, or only measures without
    // a painter. The answer is the first character that did not fit; length() when nothing is left.
    int format(QPainter *painter, const QPointF &corner, int first) const;

private:
    void fitPictures(const QSizeF &size);
    void scaleIndents(qreal factor);
    void findPages();

    std::unique_ptr<QTextDocument> m_document;
    int m_length = 0;
    // Where each page's first line begins.
    std::vector<int> m_starts;
    // Which pages of the layout those are: one that no line begins on, inside a tall picture, counts for nothing.
    std::vector<int> m_sheets;
};
