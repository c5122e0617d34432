// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/TreeView.h"

#include "model/EntryTree.h"
#include "model/History.h"
#include "model/Outline.h"
#include "platform/LabelDelegate.h"
#include "platform/LevelWalk.h"

#include <QFocusEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// How many rows beyond the visible ones count for the width that the pane scrolls over.
constexpr int rowsMeasured = 64;

} // namespace

// While it lives the view follows the tree.
class TreeView::MirrorGuard
{
public:
    explicit MirrorGuard(TreeView &view)
        : m_view(view)
    {
        ++m_view.m_mirroring;
    }

    ~MirrorGuard() { --m_view.m_mirroring; }

    MirrorGuard(const MirrorGuard &) = delete;
    MirrorGuard &operator=(const MirrorGuard &) = delete;

private:
    TreeView &m_view;
};

TreeView::TreeView(QWidget *parent)
    : QTreeView(parent)
    , m_delegate(new LabelDelegate(this))
{
    setObjectName("trvOutline"_L1);
    setAccessibleName(u"Outline"_s);
    setHeaderHidden(true);
    setRootIsDecorated(true);
    setUniformRowHeights(true);
    setSelectionMode(SingleSelection);
    setTextElideMode(Qt::ElideNone);
    setEditTriggers(NoEditTriggers);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setItemDelegate(m_delegate);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    header()->setResizeContentsPrecision(rowsMeasured);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex &index) { userChangedExpansion(index, true); });
    connect(this, &QTreeView::collapsed, this,
            [this](const QModelIndex &index) { userChangedExpansion(index, false); });
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { fitColumn(header()->sectionSize(0)); });
}

TreeView::~TreeView() = default;

void TreeView::setHistory(History *history)
{
    const MirrorGuard guard(*this);
    m_link = std::make_unique<QObject>();
    m_history = history;
    m_tree = history ? &history->outline().tree : nullptr;
    // The order of the connections is the order of the calls: the view's own lie between ours.
    if (m_tree)
        connectBeforeView();
    const std::unique_ptr<QItemSelectionModel> oldSelection(selectionModel());
    setModel(history ? &history->itemModel() : nullptr);
    if (!m_tree)
        return;
    connectAfterView();
    mirrorEverything();
    mirrorSelection();
}

const EntryTree *TreeView::entryTree() const
{
    return m_tree;
}

// Qt moves the current row of its own accord while rows change; nothing of that is the user's doing.
void TreeView::connectBeforeView()
{
    const auto begin = [this] { ++m_mirroring; };
    connect(m_tree, &EntryTree::modelAboutToBeReset, m_link.get(), begin);
    connect(m_tree, &EntryTree::rowsAboutToBeInserted, m_link.get(), begin);
    connect(m_tree, &EntryTree::rowsAboutToBeRemoved, m_link.get(), begin);
    connect(m_tree, &EntryTree::rowsAboutToBeMoved, m_link.get(), begin);
    connect(m_tree, &EntryTree::layoutAboutToBeChanged, m_link.get(), begin);
}

void TreeView::connectAfterView()
{
    const auto end = [this] {
        mirrorSelection();
        --m_mirroring;
    };
    connect(m_tree, &EntryTree::modelReset, m_link.get(), [this, end] {
        mirrorEverything();
        end();
        openWaitingEditor();
    });
    // An entry may be open before it has children and after it has lost them; the view shows it as open in between.
    const auto mirrorParent = [this](const QModelIndex &parent) {
        if (const Entry *entry = m_tree->entryAt(parent))
            mirrorExpansion(entry, entry->level());
    };
    const auto endRows = [mirrorParent, end](const QModelIndex &parent) {
        mirrorParent(parent);
        end();
    };
    connect(m_tree, &EntryTree::rowsInserted, m_link.get(), endRows);
    connect(m_tree, &EntryTree::rowsRemoved, m_link.get(), endRows);
    connect(m_tree, &EntryTree::rowsMoved, m_link.get(),
            [mirrorParent, end](const QModelIndex &from, int, int, const QModelIndex &to) {
                mirrorParent(from);
                mirrorParent(to);
                end();
            });
    connect(m_tree, &EntryTree::layoutChanged, m_link.get(), end);
    connect(m_tree, &EntryTree::expansionReset, m_link.get(), [this] { mirrorEverything(); });
    connect(m_tree, &EntryTree::expandedChanged, m_link.get(),
            [this](Entry *entry, bool expanded) { followExpansion(entry, expanded); });
    connect(m_tree, &EntryTree::selectedChanged, m_link.get(), [this] { mirrorSelection(); });
    connect(m_tree, &EntryTree::severalChanged, m_link.get(), [this] {
        mirrorSelection();
        tellOfSeveral();
    });
    connect(m_tree, &EntryTree::labelChanged, m_link.get(), [this] { fitColumn(header()->sectionSize(0)); });
}

void TreeView::mirrorEverything()
{
    const MirrorGuard guard(*this);
    // While a layout is due, opening a branch only notes it.
    scheduleDelayedItemsLayout();
    for (LevelWalk walk(m_tree->root()); walk.entry(); walk.next())
        mirrorExpansion(walk.entry(), walk.level());
}

void TreeView::mirrorExpansion(const Entry *entry, int level)
{
    const MirrorGuard guard(*this);
    const QModelIndex index = m_tree->indexOf(entry);
    const bool open = entry->expanded() && entry->childCount() > 0 && level <= deepestOpenLevel;
    if (isExpanded(index) != open)
        setExpanded(index, open);
}

void TreeView::mirrorSelection()
{
    const MirrorGuard guard(*this);
    const QModelIndex index = m_tree->indexOf(m_tree->selected());
    if (!index.isValid()) {
        selectionModel()->clear();
        viewport()->update();
        return;
    }
    if (m_tree->areSeveralSelected()) {
        mirrorSeveral();
        return;
    }
    const bool wereSeveral = std::exchange(m_mirrorsSeveral, false);
    if (wereSeveral)
        viewport()->update();
    if (wereSeveral || currentIndex() != index || !selectionModel()->isSelected(index))
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void TreeView::followExpansion(Entry *entry, bool expanded)
{
    mirrorExpansion(entry, entry->level());
    if (expanded)
        Q_EMIT entryExpanded(entry);
    else
        Q_EMIT entryCollapsed(entry);
}

void TreeView::userChangedExpansion(const QModelIndex &index, bool expanded)
{
    if (m_mirroring > 0 || !m_history)
        return;
    Entry *entry = m_tree->entryAt(index);
    if (expanded && (entry->childCount() == 0 || entry->level() > deepestOpenLevel)) {
        const MirrorGuard guard(*this);
        collapse(index);
        return;
    }
    m_history->setExpanded(entry, expanded);
}

void TreeView::userMovedTo(Entry *entry)
{
    m_history->select(entry);
    Q_EMIT nodeClicked(entry);
}

Entry *TreeView::HitTest(const QPoint &point) const
{
    // Qt finds rows above and below the viewport too.
    return m_tree && viewport()->rect().contains(point) ? m_tree->entryAt(indexAt(point)) : nullptr;
}

Entry *TreeView::HitTestRow(const QPoint &point) const
{
    Entry *entry = HitTest(point);
    return entry && visualRect(m_tree->indexOf(entry)).contains(point) ? entry : nullptr;
}

bool TreeView::PaneVisible() const
{
    return m_paneVisible;
}

void TreeView::setPaneVisible(bool visible)
{
    m_paneVisible = visible;
    setUpdatesEnabled(visible);
    if (!visible)
        return;
    if (m_scrollWhenShown.isValid())
        scrollTo(m_scrollWhenShown);
    m_scrollWhenShown = QPersistentModelIndex();
    openWaitingEditor();
}

QFont TreeView::Font() const
{
    return font();
}

void TreeView::setFont(const QFont &font)
{
    QTreeView::setFont(font);
    scheduleDelayedItemsLayout();
}

void TreeView::ScrollTo(const Entry *entry)
{
    // In the middle of a bulk change the view has no rows to scroll to; the selected one is scrolled to at its end.
    if (!m_tree || !entry || m_mirroring > 0)
        return;
    if (!m_paneVisible)
        m_scrollWhenShown = m_tree->indexOf(entry);
    else
        scrollTo(m_tree->indexOf(entry));
}

QRect TreeView::SelectedRow() const
{
    if (!m_tree || !m_tree->selected() || !isVisible())
        return {};
    const QRect row = visualRect(m_tree->indexOf(m_tree->selected())) & viewport()->rect();
    return row.isEmpty() ? QRect() : QRect(viewport()->mapToGlobal(row.topLeft()), row.size());
}

// The pane highlights no drop target.
void TreeView::ClearDropHighlight() {}

void TreeView::setFocus()
{
    QTreeView::setFocus(Qt::OtherFocusReason);
}

void TreeView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const QModelIndex shown = nearestShown(index);
    const int position = horizontalScrollBar()->value();
    QTreeView::scrollTo(shown, hint);
    if (shown.isValid() && !isRightToLeft())
        scrollSideways(shown, position);
}

// Qt shows the row's beginning, which in a deep branch is empty. This shows the label, or as much of it as fills half
// the pane, and leaves the position alone where that is to be seen.
void TreeView::scrollSideways(const QModelIndex &index, int position)
{
    QScrollBar *bar = horizontalScrollBar();
    const int left = visualRect(index).left() + bar->value();
    const int width = viewport()->width();
    const int right = left + std::min(sizeHintForIndex(index).width(), width / 2);
    const int wanted = std::min(std::max(position, right - width), std::max(0, left - indentation()));
    if (wanted > bar->maximum()) {
        fitColumn(right);
        QTreeView::updateGeometries();
    }
    bar->setValue(wanted);
}

// The row itself, or the head of the outermost closed branch around it.
QModelIndex TreeView::nearestShown(const QModelIndex &index) const
{
    QModelIndex shown = index;
    for (QModelIndex ancestor = index.parent(); ancestor.isValid(); ancestor = ancestor.parent()) {
        if (!isExpanded(ancestor))
            shown = ancestor;
    }
    return shown;
}

void TreeView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    if (m_mirroring == 0 && m_history && current.isValid())
        userMovedTo(m_tree->entryAt(current));
}

void TreeView::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    repaintRows(selected);
    repaintRows(deselected);
    // Keyboard and mouse go on to change the current row, and that is enough.
    if (m_mirroring == 0)
        QMetaObject::invokeMethod(this, &TreeView::followSelection, Qt::QueuedConnection);
}

// Where one reads from right to left, Qt repaints a row without the room of its branch signs.
void TreeView::repaintRows(const QItemSelection &rows)
{
    int count = 0;
    for (const QItemSelectionRange &range : rows)
        count += range.height();
    if (count > rowsMeasured) {
        viewport()->update();
        return;
    }
    for (const QModelIndex &index : rows.indexes()) {
        const QRect row = visualRect(index);
        viewport()->update(0, row.top(), viewport()->width(), row.height());
    }
}

// Assistive technology selects a row without making it the current one.
void TreeView::followSelection()
{
    if (!m_tree || m_mirroring > 0)
        return;
    if (m_tree->areSeveralSelected()) {
        followSeveral(selectionModel()->selectedRows());
        return;
    }
    for (const QModelIndex &index : selectionModel()->selectedRows()) {
        if (index != currentIndex()) {
            setCurrentIndex(index);
            return;
        }
    }
    mirrorSelection();
}

// The selected row is always the current one, whatever modifier is held.
QItemSelectionModel::SelectionFlags TreeView::selectionCommand(const QModelIndex &index, const QEvent *) const
{
    return index.isValid() && !m_keepsSelection ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                                                : QItemSelectionModel::SelectionFlags(QItemSelectionModel::NoUpdate);
}

void TreeView::focusInEvent(QFocusEvent *event)
{
    {
        // Qt makes the first row the current one where there is none.
        const MirrorGuard guard(*this);
        QTreeView::focusInEvent(event);
        if (m_tree)
            mirrorSelection();
    }
    Q_EMIT gotFocus();
}

bool TreeView::isInSight(const QModelIndex &index) const
{
    const QRect row = visualRect(index);
    return index.isValid() && row.top() >= 0 && row.bottom() < viewport()->height();
}

// A pane that becomes smaller does not lose sight of the selected row.
void TreeView::resizeEvent(QResizeEvent *event)
{
    const QModelIndex current = currentIndex();
    const QRect before(QPoint(), event->oldSize());
    const QRect row = visualRect(current);
    const bool wasInSight = current.isValid() && row.top() >= before.top() && row.bottom() <= before.bottom();
    QTreeView::resizeEvent(event);
    if (wasInSight && !isInSight(current))
        scrollTo(current);
}

void TreeView::keyPressEvent(QKeyEvent *event)
{
    Entry *entry = m_history ? m_tree->selected() : nullptr;
    // One change instead of one for each descendant.
    if (event->key() == Qt::Key_Asterisk && entry) {
        m_history->setExpandedAll(entry, true);
        Q_EMIT entryExpanded(entry);
        return;
    }
    const QScopedValueRollback taking(m_isTakingKey, true);
    if (entry && keyAmongSeveral(*event))
        return;
    QTreeView::keyPressEvent(event);
}

void TreeView::mousePressEvent(QMouseEvent *event)
{
    // The signs are the left button's alone: any other selects their row, so that the menu it opens is the row's.
    const bool signs = event->button() == Qt::LeftButton;
    const QPoint place = event->position().toPoint();
    Entry *clicked = signs ? HitTestRow(place) : HitTest(place);
    const bool again = clicked && clicked == m_tree->selected();
    m_press = Press();
    const QScopedValueRollback keeping(m_keepsSelection, clicked && pressAmongSeveral(*event, clicked));
    if (signs)
        QTreeView::mousePressEvent(event);
    else
        QAbstractItemView::mousePressEvent(event); // NOLINT(bugprone-parent-virtual-call): past the signs
    if (again && !m_keepsSelection)
        Q_EMIT nodeClicked(clicked);
}

void TreeView::mouseMoveEvent(QMouseEvent *event)
{
    // A press with a move is the beginning of a drag; it does not drag the selection along.
    if (event->buttons() == Qt::NoButton)
        QTreeView::mouseMoveEvent(event);
}

void TreeView::mouseReleaseEvent(QMouseEvent *event)
{
    const QScopedValueRollback keeping(m_keepsSelection, m_press.isAmongSeveral);
    // As for the press.
    if (event->button() == Qt::LeftButton)
        QTreeView::mouseReleaseEvent(event);
    else
        QAbstractItemView::mouseReleaseEvent(event); // NOLINT(bugprone-parent-virtual-call)
    releaseAmongSeveral();
}

void TreeView::updateGeometries()
{
    fitColumn(0);
    QTreeView::updateGeometries();
}

// Makes the column at least as wide as the rows around the visible ones, the pane and the given width.
void TreeView::fitColumn(int atLeast)
{
    header()->resizeSection(0, std::max({atLeast, viewport()->width(), sizeHintForColumn(0)}));
}
