// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "print/PreviewPane.h"

#include "document/Ports.h"
#include "pages/PagedText.h"
#include "util/Procedure.h"
#include "util/Twips.h"

#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <cmath>

namespace
{

// Around each sheet, in pixels.
constexpr int gap = 12;

// How many pictures of sheets are kept beside those on the screen: to go one back or on.
constexpr int moreSheets = 2;

} // namespace

PreviewPane::PreviewPane(QWidget *parent)
    : QAbstractScrollArea(parent)
    , m_timer(new QTimer(this))
{
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setBackgroundRole(QPalette::Mid);
    viewport()->setAutoFillBackground(true);
    m_timer->setInterval(0);
    connect(m_timer, &QTimer::timeout, this, &PreviewPane::layOutMore);
}

PreviewPane::~PreviewPane() = default;

void PreviewPane::setText(std::unique_ptr<PagedText> text, const Paper &paper)
{
    m_text = std::move(text);
    m_paper = paper;
    m_sheets.clear();
    fit();
    verticalScrollBar()->setValue(0);
    if (isVisible())
        begin();
}

void PreviewPane::setLeastLineWidth(int twips)
{
    m_leastScale = Twips::toPixels(twips, logicalDpiX()) / std::max(1.0, m_paper.text.width());
    fit();
    updateScrollBars();
}

// The first pages are waited for.
void PreviewPane::begin()
{
    const HourglassPointer hourglass;
    layOutMore();
}

int PreviewPane::pageCount() const
{
    return m_text ? m_text->pageCount() : 0;
}

bool PreviewPane::isWhole() const
{
    return !m_text || m_text->isWhole();
}

QSize PreviewPane::sheetSize() const
{
    return QSize(qRound(m_paper.size.width() * m_scale), qRound(m_paper.size.height() * m_scale));
}

int PreviewPane::sheetTop(int page) const
{
    return gap + page * (sheetSize().height() + gap);
}

int PreviewPane::currentPage() const
{
    const int middle = verticalScrollBar()->value() + viewport()->height() / 2;
    return std::clamp((middle - gap / 2) / (sheetSize().height() + gap), 0, std::max(0, pageCount() - 1));
}

void PreviewPane::layOutMore()
{
    // The last page so far may get more lines.
    m_sheets.remove(pageCount() - 1);
    // A text that cannot be laid out further is shown as far as it is.
    const bool done = procedure("frmPreview Form_Load", [this] {
        if (m_text)
            m_text->layOutMore();
        return true;
    });
    updateScrollBars();
    if (isWhole() || !done)
        m_timer->stop();
    else
        m_timer->start();
    viewport()->update();
    Q_EMIT changed();
}

// The scale that lets a sheet fill the pane's width.
void PreviewPane::fit()
{
    if (m_paper.size.isEmpty())
        return;
    const int wide = maximumViewportSize().width() - verticalScrollBar()->sizeHint().width() - 2 * gap;
    const double natural = logicalDpiX() / m_paper.dotsPerInch;
    const double scale = std::max(m_leastScale, std::min(natural, wide / m_paper.size.width()));
    if (scale == m_scale)
        return;
    // What was in the middle stays there.
    const double before = sheetSize().height() + gap;
    const int half = viewport()->height() / 2;
    const double place = (verticalScrollBar()->value() + half) / before;
    m_scale = scale;
    m_sheets.clear();
    updateScrollBars();
    verticalScrollBar()->setValue(qRound(place * (sheetSize().height() + gap)) - half);
}

void PreviewPane::updateScrollBars()
{
    const QSize sheet = sheetSize();
    const int height = sheetTop(pageCount());
    // As many as the pane holds whole, and parts of two.
    const int mostSeen = viewport()->height() / (sheet.height() + gap) + 2;
    m_sheets.setMaxCost(mostSeen + moreSheets);
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(std::max(1, fontMetrics().lineSpacing() * 2));
    horizontalScrollBar()->setRange(0, std::max(0, sheet.width() + 2 * gap - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
}

const QPixmap &PreviewPane::sheet(int page)
{
    const qreal ratio = devicePixelRatioF();
    // The window may have come to a screen of another resolution.
    if (const QPixmap *known = m_sheets.object(page); known && known->devicePixelRatio() == ratio)
        return *known;
    auto picture = std::make_unique<QPixmap>(sheetSize() * ratio);
    picture->setDevicePixelRatio(ratio);
    picture->fill(Qt::white);
    procedure("frmPreview Form_Load", [&] {
        QPainter painter(picture.get());
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.scale(m_scale, m_scale);
        m_text->draw(painter, m_paper.text.topLeft(), page);
    });
    const QPixmap &drawn = *picture;
    m_sheets.insert(page, picture.release());
    return drawn;
}

void PreviewPane::paintEvent(QPaintEvent *event)
{
    if (!m_text)
        return;
    QPainter painter(viewport());
    const QSize size = sheetSize();
    const int left = std::max(gap, (viewport()->width() - size.width()) / 2) - horizontalScrollBar()->value();
    const int y = verticalScrollBar()->value();
    const int first = std::max(0, (y + event->rect().top()) / (size.height() + gap) - 1);
    for (int page = first; page < pageCount(); ++page) {
        const QRect place(QPoint(left, sheetTop(page) - y), size);
        if (place.top() > event->rect().bottom())
            break;
        if (!place.intersects(event->rect()))
            continue;
        painter.drawPixmap(place.topLeft(), sheet(page));
        painter.setPen(palette().color(QPalette::Shadow));
        painter.drawRect(place.adjusted(-1, -1, 0, 0));
    }
}

void PreviewPane::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    fit();
    updateScrollBars();
    Q_EMIT changed();
}

void PreviewPane::showEvent(QShowEvent *event)
{
    QAbstractScrollArea::showEvent(event);
    fit();
    if (pageCount() == 0)
        begin();
}

void PreviewPane::scrollContentsBy(int, int)
{
    viewport()->update();
    Q_EMIT changed();
}

void PreviewPane::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Home:
        verticalScrollBar()->triggerAction(QScrollBar::SliderToMinimum);
        break;
    case Qt::Key_End:
        verticalScrollBar()->triggerAction(QScrollBar::SliderToMaximum);
        break;
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void PreviewPane::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() != QEvent::EnabledChange)
        return;
    if (!isEnabled())
        m_timer->stop();
    else if (pageCount() > 0 && !isWhole())
        m_timer->start();
}
