// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/EmptyArea.h"

#include "commands/CommandKeys.h"
#include "commands/CommandTable.h"
#include "util/FullPath.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// In device-independent pixels.
constexpr int columnWidth = 460;
constexpr int rowPadding = 10;

// A line of the column that can be pressed: what it does on the left, its key or the file's folder on the right.
class EmptyAreaRow final : public QPushButton
{
public:
    EmptyAreaRow(const QString &text, const QString &note, Qt::TextElideMode noteElision, QWidget *parent)
        : QPushButton(text, parent)
        , m_note(note)
        , m_noteElision(noteElision)
    {
        setFlat(true);
        setCursor(Qt::PointingHandCursor);
        setAttribute(Qt::WA_Hover);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        setAccessibleName(text);
        setAccessibleDescription(note);
    }

    QSize sizeHint() const override { return {columnWidth, fontMetrics().height() + 2 * rowPadding}; }

    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            click();
        else
            QPushButton::keyPressEvent(event);
    }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintBack(painter);
        const QRect room = rect().adjusted(rowPadding, 0, -rowPadding, 0);
        const int textWidth = fontMetrics().horizontalAdvance(text());
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(text(), Qt::ElideMiddle, room.width()));
        const int noteRoom = room.width() - textWidth - 2 * rowPadding;
        if (noteRoom <= 0)
            return;
        painter.setPen(quietColour());
        painter.drawText(room, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(m_note, m_noteElision, noteRoom));
    }

private:
    // Between text and ground: not every palette has a colour for text that matters less.
    QColor quietColour() const
    {
        constexpr float part = 0.6F;
        const QColor text = palette().color(QPalette::Text);
        const QColor ground = palette().color(QPalette::Base);
        const auto between = [](float of, float other) { return part * of + (1 - part) * other; };
        return QColor::fromRgbF(between(text.redF(), ground.redF()), between(text.greenF(), ground.greenF()),
                                between(text.blueF(), ground.blueF()));
    }

    void paintBack(QPainter &painter) const
    {
        constexpr double corner = 4;
        constexpr float tint = 0.2F;
        const bool hovered = underMouse() || isDown();
        if (!hovered && !hasFocus())
            return;
        const QColor colour = palette().color(QPalette::Highlight);
        QColor fill = colour;
        fill.setAlphaF(hovered ? tint : 0.F);
        painter.setBrush(fill);
        painter.setPen(hasFocus() ? QPen(colour, 2) : QPen(Qt::NoPen));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), corner, corner);
    }

    QString m_note;
    Qt::TextElideMode m_noteElision;
};

struct Offer {
    std::string_view item;
    const char16_t *text;
};

constexpr std::array offers{
    Offer{"mnuFileNew", u"New document"},
    Offer{"mnuFileOpen", u"Open a document…"},
    Offer{"mnuHelpContents", u"Read the manual"},
};

QLabel *heading(const QString &text, double scale, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    label->setFont(font);
    label->setContentsMargins(rowPadding, 0, rowPadding, 0);
    return label;
}

QString shownFolder(const QString &sFile)
{
    return ShownPathName(QFileInfo(sFile).absolutePath());
}

} // namespace

EmptyArea::EmptyArea(QWidget &place)
    : QWidget(place.parentWidget())
    , m_place(place)
    , m_column(new QWidget)
{
    setObjectName(u"emptyArea"_s);
    setAccessibleName(u"No document is open"_s);
    auto *scroller = new QScrollArea;
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setWidgetResizable(true);
    scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroller->setFocusPolicy(Qt::NoFocus);
    scroller->setAccessibleName(accessibleName());
    scroller->viewport()->setBackgroundRole(QPalette::Base);
    auto *around = new QVBoxLayout(this);
    around->setContentsMargins(0, 0, 0, 0);
    around->addWidget(scroller);

    auto *page = new QWidget;
    page->setBackgroundRole(QPalette::Base);
    page->setForegroundRole(QPalette::Text);
    auto *centre = new QHBoxLayout(page);
    m_column->setMaximumWidth(columnWidth);
    centre->addStretch(1);
    centre->addWidget(m_column, 100);
    centre->addStretch(1);

    auto *column = new QVBoxLayout(m_column);
    column->setSpacing(2);
    column->addStretch(2);
    column->addWidget(heading(u"No document is open"_s, 1.7, m_column));
    column->addSpacing(2 * rowPadding);
    for (const Offer &offer : offers) {
        const QString item = toText(offer.item);
        const QString key = offer.item == "mnuHelpContents" ? u"F1"_s : keyTextOf(commandTable[commandRow(offer.item)]);
        auto *row = new EmptyAreaRow(QString::fromUtf16(offer.text), key, Qt::ElideNone, m_column);
        row->setObjectName(u"offer_"_s + item);
        connect(row, &QPushButton::clicked, this, [this, item] { Q_EMIT itemChosen(item); });
        column->addWidget(row);
    }
    m_tour = new EmptyAreaRow(u"Take the tour"_s, u"in a copy of a sample document"_s, Qt::ElideRight, m_column);
    m_tour->setObjectName(u"offer_tour"_s);
    connect(static_cast<QPushButton *>(m_tour), &QPushButton::clicked, this, &EmptyArea::tourChosen);
    column->addWidget(m_tour);
    column->addSpacing(2 * rowPadding);
    m_recentHead = heading(u"Recent documents"_s, 1.2, m_column);
    column->addWidget(m_recentHead);
    m_recentRows = new QVBoxLayout;
    m_recentRows->setSpacing(2);
    column->addLayout(m_recentRows);
    column->addStretch(3);
    scroller->setWidget(page);
    setRecentFiles({});
    hide();
    setGeometry(place.geometry());
    place.installEventFilter(this);
}

bool EmptyArea::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
        setGeometry(m_place.geometry());
    return QWidget::eventFilter(watched, event);
}

void EmptyArea::setRecentFiles(const QStringList &files)
{
    while (QLayoutItem *old = m_recentRows->takeAt(0)) {
        // It may be the one that was pressed.
        old->widget()->hide();
        old->widget()->deleteLater();
        delete old;
    }
    m_recentHead->setVisible(!files.isEmpty());
    for (int number = 1; number <= std::min<qsizetype>(files.size(), recentFilesShown); ++number) {
        const QString &sFile = files.at(number - 1);
        auto *row = new EmptyAreaRow(QFileInfo(sFile).fileName(), shownFolder(sFile), Qt::ElideMiddle, m_column);
        row->setObjectName(u"offer_mnuFileMRU%1"_s.arg(number));
        row->setToolTip(sFile);
        connect(row, &QPushButton::clicked, this, [this, number] { Q_EMIT itemChosen(u"mnuFileMRU%1"_s.arg(number)); });
        m_recentRows->addWidget(row);
    }
}

void EmptyArea::setTourOffered(bool offered)
{
    m_tour->setVisible(offered);
}
