// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/PaneTable.h"

#include "commands/Dispatcher.h"
#include "document/Document.h"
#include "model/Contrast.h"
#include "panes/HistoryModel.h"

#include <QApplication>
#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>
#include <QPainter>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QStyle>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

constexpr QLatin1StringView savedMark("Saved");

// Greys the steps that are undone, and marks the saved state at the right.
class HistoryDelegate final : public QStyledItemDelegate
{
public:
    explicit HistoryDelegate(const HistoryModel &model, QObject *parent)
        : QStyledItemDelegate(parent)
        , m_model(model)
    {
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem row(option);
        initStyleOption(&row, index);
        const QStyle &style = *row.widget->style();
        if (!index.data(HistoryModel::SavedRole).toBool()) {
            style.drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
            return;
        }
        // The step's name is cut short before it.
        const int gap = row.fontMetrics.averageCharWidth();
        QRect mark = row.rect.adjusted(gap, 0, -gap, 0);
        mark.setLeft(std::max(mark.left(), mark.right() - row.fontMetrics.horizontalAdvance(savedMark)));
        row.text = row.fontMetrics.elidedText(row.text, Qt::ElideRight, mark.left() - row.rect.left() - 2 * gap);
        style.drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
        const bool isSelected = row.state.testFlag(QStyle::State_Selected);
        const bool isActive = row.state.testFlag(QStyle::State_Active);
        painter->save();
        painter->setFont(row.font);
        painter->setPen(row.palette.color(isActive ? QPalette::Active : QPalette::Inactive,
                                          isSelected ? QPalette::HighlightedText : QPalette::Text));
        painter->drawText(mark, Qt::AlignRight | Qt::AlignVCenter, savedMark);
        painter->restore();
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (index.row() <= m_model.position())
            return;
        // Paler, and still easily read: it can be gone to.
        constexpr double strength = 0.6;
        const QColor behind = option->palette.color(QPalette::Active, QPalette::Base);
        const QColor text = option->palette.color(QPalette::Active, QPalette::Text);
        for (const auto group : {QPalette::Active, QPalette::Inactive})
            option->palette.setColor(group, QPalette::Text, Contrast::mixed(behind, text, strength));
    }

private:
    const HistoryModel &m_model;
};

class HistoryList final : public QListView
{
public:
    explicit HistoryList(Dispatcher &dispatcher)
        : m_dispatcher(dispatcher)
        , m_model(new HistoryModel(this))
    {
        setObjectName(u"lstHistory"_s);
        setAccessibleName(u"Steps of the document"_s);
        setModel(m_model);
        setItemDelegate(new HistoryDelegate(*m_model, this));
        setUniformItemSizes(true);
        setTextElideMode(Qt::ElideRight);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        connect(m_model, &HistoryModel::refreshed, this, [this] { showPosition(); });
    }

    // Steps are gathered only while they are seen.
    void setHistory(History *history)
    {
        m_history = history;
        m_model->setHistory(isVisible() ? history : nullptr);
    }

    QSize sizeHint() const override
    {
        constexpr int columns = 44;
        return {fontMetrics().averageCharWidth() * columns, QListView::sizeHint().height()};
    }

protected:
    void showEvent(QShowEvent *event) override
    {
        QListView::showEvent(event);
        m_model->setHistory(m_history);
    }

    void hideEvent(QHideEvent *event) override
    {
        QListView::hideEvent(event);
        m_model->setHistory(nullptr);
    }

    // The press ends the editing of a label, which may make a step: what was pressed is what is gone to, wherever its
    // row stands at the release.
    void mousePressEvent(QMouseEvent *event) override
    {
        m_pressed = event->button() == Qt::LeftButton ? indexAt(event->position().toPoint()) : QModelIndex();
        m_pressedAt = event->position().toPoint();
        QListView::mousePressEvent(event);
    }

    void mouseReleaseEvent(QMouseEvent *event) override
    {
        QListView::mouseReleaseEvent(event);
        if (event->button() != Qt::LeftButton)
            return;
        m_model->refresh();
        const QModelIndex pressed = std::exchange(m_pressed, QPersistentModelIndex());
        const QPoint place = event->position().toPoint();
        const bool hasStayed = (place - m_pressedAt).manhattanLength() < QApplication::startDragDistance();
        if (hasStayed || indexAt(place) == pressed)
            goTo(pressed);
        else
            showPosition();
    }

    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
            goTo(currentIndex());
        else
            QListView::keyPressEvent(event);
    }

    void paintEvent(QPaintEvent *event) override
    {
        QListView::paintEvent(event);
        if (m_model->rowCount() > 0)
            return;
        QPainter painter(viewport());
        painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
        const int margin = fontMetrics().height();
        painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                         Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap,
                         m_history ? u"Nothing has been done to this document yet."_s : u"No document is open."_s);
    }

private:
    void goTo(const QModelIndex &index)
    {
        if (index.isValid())
            m_dispatcher.run("toolsGoTo", index.row());
    }

    void showPosition()
    {
        const QModelIndex index = m_model->index(m_model->position(), 0);
        // Nothing moves under the mouse while it is pressed.
        if (!index.isValid() || m_pressed.isValid())
            return;
        setCurrentIndex(index);
        scrollTo(index);
    }

    Dispatcher &m_dispatcher;
    HistoryModel *m_model;
    QPointer<History> m_history;
    // Where the mouse is pressed.
    QPersistentModelIndex m_pressed;
    QPoint m_pressedAt;
};

// The steps of the active document, of which each can be gone back or forth to: with a click, or with Enter.
class HistoryPane final : public Pane
{
public:
    explicit HistoryPane(Dispatcher &dispatcher)
        : m_dispatcher(dispatcher)
    {
    }

    QString name() const override { return u"History"_s; }

    Qt::DockWidgetArea area() const override { return Qt::RightDockWidgetArea; }

    QWidget *makeWidget() override
    {
        m_list = new HistoryList(m_dispatcher);
        return m_list;
    }

    void follow(Document *active) override
    {
        if (m_list)
            m_list->setHistory(active ? &active->history : nullptr);
    }

private:
    Dispatcher &m_dispatcher;
    QPointer<HistoryList> m_list;
};

} // namespace

std::unique_ptr<Pane> makeHistoryPane(const PaneHost &host)
{
    return std::make_unique<HistoryPane>(host.dispatcher);
}
