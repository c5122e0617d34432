// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/frmGoTo.h"

#include "model/Contrast.h"

#include <QAbstractListModel>
#include <QAccessible>
#include <QFrame>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTextLayout>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int rowsShown = 12;

// Text that matters less, and is still easily read.
QColor palerText(const QPalette &palette, QPalette::ColorRole text, QPalette::ColorRole behind)
{
    constexpr double most = 0.4;
    constexpr double step = 0.05;
    const QColor ink = palette.color(QPalette::Active, text);
    const QColor paper = palette.color(QPalette::Active, behind);
    double share = most;
    while (share > step && Contrast::between(Contrast::mixed(ink, paper, share), paper) < Contrast::readable)
        share -= step;
    return Contrast::mixed(ink, paper, share);
}

// One line of text that fits into a width, with some of its characters marked.
void drawMarked(QPainter &painter, const QRect &room, const QString &text, const std::vector<int> &marks,
                Qt::LayoutDirection direction)
{
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(direction);
    QTextCharFormat mark;
    mark.setFontWeight(QFont::Bold);
    mark.setFontUnderline(true);
    QList<QTextLayout::FormatRange> ranges;
    for (const int at : marks) {
        const bool isPair = at + 1 < text.size() && text[at].isHighSurrogate();
        if (at < text.size())
            ranges.append({at, isPair ? 2 : 1, mark});
    }
    QTextLayout layout(text, painter.font());
    layout.setTextOption(option);
    layout.setFormats(ranges);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(room.width());
    layout.endLayout();
    layout.draw(&painter, QPointF(room.left(), room.top() + (room.height() - line.height()) / 2));
}

} // namespace

class frmGoTo::Rows final : public QAbstractListModel
{
public:
    Rows(GoToFinder &finder, QObject *parent)
        : QAbstractListModel(parent)
        , m_finder(finder)
    {
    }

    void find(const QString &typed)
    {
        beginResetModel();
        m_finder.find(typed);
        m_made.assign(static_cast<std::size_t>(m_finder.count()), std::nullopt);
        endResetModel();
    }

    // Made when it is seen.
    const GoToRow &row(int place) const
    {
        std::optional<GoToRow> &made = m_made[static_cast<std::size_t>(place)];
        if (!made)
            made = m_finder.row(place);
        return *made;
    }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_made.size());
    }

    QVariant data(const QModelIndex &index, int role) const override
    {
        if (!index.isValid())
            return {};
        switch (role) {
        case Qt::DisplayRole:
            return row(index.row()).name;
        case Qt::AccessibleTextRole:
            return row(index.row()).spoken();
        default:
            return {};
        }
    }

private:
    GoToFinder &m_finder;
    mutable std::vector<std::optional<GoToRow>> m_made;
};

// The name, paler behind it where it stands, and at the end of the row its key or what it is.
class frmGoTo::RowDelegate final : public QStyledItemDelegate
{
public:
    RowDelegate(const Rows &rows, QObject *parent)
        : QStyledItemDelegate(parent)
        , m_rows(rows)
    {
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const override
    {
        return {0, option.fontMetrics.height() + 2 * padding(option)};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        // The keyboard is in the line, and the row is chosen all the same.
        item.state |= QStyle::State_Active;
        item.text.clear();
        item.widget->style()->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
        const GoToRow &row = m_rows.row(index.row());
        const bool isSelected = item.state.testFlag(QStyle::State_Selected);
        const auto ink = isSelected ? QPalette::HighlightedText : QPalette::Text;
        const QColor pale = palerText(item.palette, ink, isSelected ? QPalette::Highlight : QPalette::Base);
        const int gap = 2 * padding(item);
        QRect room = item.rect.adjusted(gap, 0, -gap, 0);
        const auto draw = [&](const QRect &part, const QColor &colour, const QString &text, Qt::TextElideMode elide,
                              Qt::Alignment alignment) {
            painter->setPen(colour);
            painter->drawText(QStyle::visualRect(item.direction, item.rect, part),
                              int(QStyle::visualAlignment(item.direction, alignment | Qt::AlignVCenter)) |
                                  Qt::TextSingleLine,
                              item.fontMetrics.elidedText(text, elide, part.width()));
        };
        painter->save();
        painter->setFont(item.font);
        const QString end = endOf(row);
        if (const int width = item.fontMetrics.horizontalAdvance(end); width > 0 && 3 * width < room.width()) {
            draw(QRect(room.right() - width, room.top(), width + 1, room.height()), pale, end, Qt::ElideNone,
                 Qt::AlignRight);
            room.setRight(room.right() - width - gap);
        }
        const QString name = item.fontMetrics.elidedText(row.name, Qt::ElideRight, room.width());
        const int width = widthOf(name, item);
        painter->setPen(row.whyNot.isEmpty() ? item.palette.color(QPalette::Active, ink) : pale);
        const QRect place(room.left(), room.top(), std::min(width, room.width()), room.height());
        painter->setClipRect(QStyle::visualRect(item.direction, item.rect, room));
        drawMarked(*painter, QStyle::visualRect(item.direction, item.rect, place), name, marksWithin(row, name),
                   item.direction);
        const QRect rest = room.adjusted(width + gap, 0, 0, 0);
        if (rest.width() > gap)
            draw(rest, pale, row.whyNot.isEmpty() ? row.way : u"not now: "_s + row.whyNot,
                 row.whyNot.isEmpty() ? Qt::ElideMiddle : Qt::ElideRight, Qt::AlignLeft);
        painter->restore();
    }

private:
    static int padding(const QStyleOptionViewItem &option) { return std::max(3, option.fontMetrics.height() / 4); }

    static QString endOf(const GoToRow &row)
    {
        switch (row.target.kind) {
        case GoToKind::Command:
            return row.key.isEmpty() ? u"Command"_s : row.key;
        case GoToKind::Document:
            return u"Document"_s;
        case GoToKind::File:
            return u"Recent file"_s;
        case GoToKind::Entry:
            break;
        }
        return {};
    }

    // What is cut off has no marks, and neither has the sign that says so.
    static std::vector<int> marksWithin(const GoToRow &row, const QString &shown)
    {
        std::vector<int> marks = row.marks;
        if (shown != row.name)
            std::erase_if(marks, [&](int at) { return at + 1 >= shown.size(); });
        return marks;
    }

    // As if all of it were marked, so that the rest stands still while one types.
    static int widthOf(const QString &text, const QStyleOptionViewItem &item)
    {
        QFont bold = item.font;
        bold.setBold(true);
        return QFontMetrics(bold).horizontalAdvance(text) + 1;
    }

    const Rows &m_rows;
};

frmGoTo::frmGoTo(const GoToWorld &world, KnownEntryNames &known, QWidget *mainWindow)
    // No popup: whoever hears the screen is not told of those.
    : QDialog(mainWindow, Qt::Dialog | Qt::FramelessWindowHint)
    , m_finder(world, known)
    , m_line(new QLineEdit)
    , m_list(new QListView)
    , m_note(new QLabel)
    , m_rows(new Rows(m_finder, this))
{
    setObjectName(u"frmGoTo"_s);
    setWindowTitle(u"Go to anything"_s);
    setAccessibleName(u"Go to anything"_s);
    m_line->setObjectName(u"txtGoTo"_s);
    m_line->setAccessibleName(u"Go to"_s);
    m_line->setAccessibleDescription(
        u"Type letters of an entry, a command or a document; the arrow keys choose, Enter goes there"_s);
    m_line->setPlaceholderText(u"Entry, entry/inside, > command, @ document, # entry"_s);
    m_line->setClearButtonEnabled(false);
    m_line->installEventFilter(this);
    m_list->setObjectName(u"lstGoTo"_s);
    m_list->setAccessibleName(u"Where to go"_s);
    m_list->setModel(m_rows);
    m_list->setItemDelegate(new RowDelegate(*m_rows, m_list));
    m_list->setUniformItemSizes(true);
    m_list->setFocusPolicy(Qt::NoFocus);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setFrameShape(QFrame::NoFrame);
    m_note->setObjectName(u"lblGoTo"_s);
    m_note->setTextFormat(Qt::PlainText);
    layOut(*mainWindow);
    connect(m_line, &QLineEdit::textChanged, this, &frmGoTo::find);
    connect(m_list, &QListView::clicked, this, &frmGoTo::choose);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this, &frmGoTo::tell);
    find({});
    m_line->setFocus();
}

frmGoTo::~frmGoTo() = default;

void frmGoTo::layOut(const QWidget &mainWindow)
{
    constexpr int columns = 90;
    auto *frame = new QFrame;
    frame->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    auto *around = new QVBoxLayout(this);
    around->setContentsMargins(0, 0, 0, 0);
    around->addWidget(frame);
    auto *layout = new QVBoxLayout(frame);
    layout->addWidget(m_line);
    layout->addWidget(m_list);
    layout->addWidget(m_note);
    QStyleOptionViewItem option;
    option.fontMetrics = fontMetrics();
    const int rowHeight = m_list->itemDelegate()->sizeHint(option, {}).height();
    const int wanted = columns * fontMetrics().averageCharWidth();
    const int margin = 2 * fontMetrics().height();
    const int roomBelow = mainWindow.height() - 8 * margin;
    m_list->setFixedHeight(rowHeight * std::clamp(roomBelow / rowHeight, 3, rowsShown));
    setFixedWidth(std::max(20 * fontMetrics().averageCharWidth(), std::min(wanted, mainWindow.width() - 2 * margin)));
    adjustSize();
    move(mainWindow.mapToGlobal(QPoint((mainWindow.width() - width()) / 2, 2 * margin)));
}

void frmGoTo::find(const QString &typed)
{
    m_rows->find(typed);
    m_list->setCurrentIndex(m_rows->index(0, 0));
    m_list->scrollToTop();
    tell();
}

// Whoever hears the screen is told of the row, which the keyboard is not in; and all are told what cannot be seen.
void frmGoTo::tell()
{
    const QModelIndex index = m_list->currentIndex();
    if (!index.isValid()) {
        m_note->setText(m_line->text().isEmpty() ? u"Type some letters of where to go."_s
                                                 : u"Nothing has these letters in this order."_s);
        return;
    }
    const GoToRow &row = m_rows->row(index.row());
    if (!row.whyNot.isEmpty())
        m_note->setText(u"Not now: "_s + row.whyNot + u'.');
    else if (m_finder.total() > m_finder.count())
        m_note->setText(
            u"The best %1 of %2. Enter goes there, Esc stays here."_s.arg(m_finder.count()).arg(m_finder.total()));
    else
        m_note->setText(u"Enter goes there, Esc stays here."_s);
    if (QAccessible::isActive()) {
        QAccessibleEvent event(m_list, QAccessible::Focus);
        event.setChild(index.row());
        QAccessible::updateAccessibility(&event);
    }
}

void frmGoTo::moveBy(int rows)
{
    const int count = m_rows->rowCount();
    if (count == 0)
        return;
    const QModelIndex index = m_rows->index(std::clamp(m_list->currentIndex().row() + rows, 0, count - 1), 0);
    m_list->setCurrentIndex(index);
    m_list->scrollTo(index);
}

void frmGoTo::choose(const QModelIndex &index)
{
    if (!index.isValid())
        return;
    const GoToRow &row = m_rows->row(index.row());
    if (!row.whyNot.isEmpty()) {
        tell();
        return;
    }
    m_chosen = row.target;
    accept();
}

bool frmGoTo::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_line || event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int page = std::max(1, m_list->height() / std::max(1, m_list->sizeHintForRow(0)) - 1);
    switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Up:
        moveBy(-1);
        return true;
    case Qt::Key_Down:
        moveBy(1);
        return true;
    case Qt::Key_PageUp:
        moveBy(-page);
        return true;
    case Qt::Key_PageDown:
        moveBy(page);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        choose(m_list->currentIndex());
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        return true;
    default:
        return QDialog::eventFilter(watched, event);
    }
}
