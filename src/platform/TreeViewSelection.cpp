// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Selecting several entries. The current row is told apart from the selected ones; with one selected, the two are the
// same.

#include "platform/TreeView.h"

#include "model/Contrast.h"
#include "model/EntryTree.h"
#include "model/History.h"
#include "model/OutlineOrder.h"

#include <QAccessible>
#include <QItemSelection>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

// On the way from the background to the colour of the current row, as far as the text is still to be read.
constexpr double strengthOfSelected = 0.45;
constexpr double weakest = 0.1;

QColor paleColour(const QColor &base, const QColor &strong, const QColor &text)
{
    double share = strengthOfSelected;
    QColor pale = Contrast::mixed(base, strong, share);
    while (share > weakest && Contrast::between(pale, text) < Contrast::readable) {
        share -= weakest / 2;
        pale = Contrast::mixed(base, strong, share);
    }
    return pale;
}

// The entry in front of the other in the order of the outline comes first.
std::pair<Entry *, Entry *> inOrder(Entry *one, Entry *other)
{
    const std::vector<Entry *> both = inOutlineOrder({one, other});
    return {both.front(), both.back()};
}

// Neighbouring rows as one range.
QItemSelection asSelection(const EntryTree &tree, const std::vector<Entry *> &entries)
{
    QItemSelection selection;
    for (size_t from = 0; from < entries.size();) {
        size_t to = from;
        while (to + 1 < entries.size() && entries[to + 1]->parent() == entries[from]->parent() &&
               entries[to + 1]->row() == entries[to]->row() + 1)
            ++to;
        selection.append(QItemSelectionRange(tree.indexOf(entries[from]), tree.indexOf(entries[to])));
        from = to + 1;
    }
    return selection;
}

} // namespace

void TreeView::userSelected(Entry *current, const std::vector<Entry *> &several)
{
    // One that is left is the current one.
    m_history->select(several.size() == 1 ? several.front() : current, several);
    Q_EMIT nodeClicked(m_tree->selected());
}

void TreeView::mirrorSeveral()
{
    m_mirrorsSeveral = true;
    viewport()->update();
    selectionModel()->setCurrentIndex(m_tree->indexOf(m_tree->selected()), QItemSelectionModel::NoUpdate);
    selectionModel()->select(asSelection(*m_tree, m_tree->selectedEntries()), QItemSelectionModel::ClearAndSelect);
}

// For who does not see it: Qt tells of the first of the rows alone.
void TreeView::tellOfSeveral()
{
    const int count = m_tree->selectedCount();
    setAccessibleDescription(count > 1 ? u"%1 entries selected"_s.arg(count) : QString());
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(this, QAccessible::SelectionWithin);
    QAccessible::updateAccessibility(&event);
}

// Assistive technology selects one row alone, or takes one away.
void TreeView::followSeveral(const QModelIndexList &rows)
{
    std::vector<Entry *> entries;
    for (const QModelIndex &index : rows)
        entries.push_back(m_tree->entryAt(index));
    if (!entries.empty() && static_cast<int>(entries.size()) != m_tree->selectedCount())
        userSelected(m_tree->selected(), entries);
    else
        mirrorSelection();
}

Entry *TreeView::anchor() const
{
    Entry *begun = m_tree->areSeveralSelected() ? m_tree->entry(m_anchor) : nullptr;
    return begun && begun->visible() ? begun : m_tree->selected();
}

// The entry of the row below; null at the end.
Entry *TreeView::nextShown(Entry *entry) const
{
    return m_tree->entryAt(indexBelow(m_tree->indexOf(entry)));
}

std::vector<Entry *> TreeView::shownBetween(Entry *one, Entry *other) const
{
    const auto [first, last] = inOrder(one, other);
    std::vector<Entry *> between;
    for (Entry *each = first; each != last; each = nextShown(each)) {
        // One of them has no row.
        if (!each)
            return {other};
        between.push_back(each);
    }
    between.push_back(last);
    return between;
}

void TreeView::selectUpTo(Entry *entry, bool adding)
{
    Entry *begin = anchor();
    std::vector<Entry *> entries = shownBetween(begin, entry);
    if (adding) {
        const std::vector<Entry *> before = m_tree->selectedEntries();
        entries.insert(entries.end(), before.begin(), before.end());
        entries = inOutlineOrder(entries);
    }
    m_anchor = begin->id();
    userSelected(entry, entries);
}

// One always stays selected.
void TreeView::toggle(Entry *entry)
{
    std::vector<Entry *> entries = m_tree->selectedEntries();
    if (!m_tree->isSelected(entry))
        entries.push_back(entry);
    else if (entries.size() > 1)
        std::erase(entries, entry);
    m_anchor = entry->id();
    userSelected(entry, entries);
}

// Whether a press is one among several: with Ctrl or Shift, or on one of them. It makes the entry the current one; what
// is taken away from the selection goes at the release, because the press may begin a drag of them all.
bool TreeView::pressAmongSeveral(QMouseEvent &event, Entry *pressed)
{
    const bool isLeft = event.button() == Qt::LeftButton;
    const bool range = isLeft && event.modifiers().testFlag(Qt::ShiftModifier);
    const bool toggles = isLeft && !range && event.modifiers().testFlag(Qt::ControlModifier);
    const bool isMember = m_tree->areSeveralSelected() && m_tree->isSelected(pressed);
    if (!m_tree->selected() || (!range && !toggles && !isMember))
        return false;
    m_press = {pressed->id(), true, range || toggles, false, false};
    if (range) {
        selectUpTo(pressed, event.modifiers().testFlag(Qt::ControlModifier));
    } else if (toggles && !m_tree->isSelected(pressed)) {
        toggle(pressed);
    } else {
        m_press.withModifier = false;
        m_press.deselects = toggles;
        m_press.returnsToOne = isLeft && !toggles;
        userSelected(pressed, m_tree->selectedEntries());
    }
    return true;
}

void TreeView::pressBecomesDrag()
{
    const Press press = std::exchange(m_press, {});
    if (press.withModifier)
        if (Entry *pressed = m_tree ? m_tree->entry(press.entry) : nullptr)
            userSelected(pressed, {});
}

// A click on one of several leaves that one alone; with Ctrl, it leaves the others. One with the right button opens the
// menu of them all.
void TreeView::releaseAmongSeveral()
{
    const Press press = std::exchange(m_press, {});
    Entry *pressed = m_tree ? m_tree->entry(press.entry) : nullptr;
    if (pressed && press.deselects)
        toggle(pressed);
    else if (pressed && press.returnsToOne && m_tree->areSeveralSelected())
        userSelected(pressed, {});
}

// Whether a key selects several, or is one of those that mean something else while several are selected.
bool TreeView::keyAmongSeveral(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool areSeveral = m_tree->areSeveralSelected();
    Entry *current = m_tree->selected();
    if (event.key() == Qt::Key_A && modifiers == Qt::ControlModifier) {
        std::vector<Entry *> siblings;
        for (Entry *each = current->firstSibling(); each; each = each->next())
            siblings.push_back(each);
        m_anchor = siblings.front()->id();
        userSelected(current, siblings);
        return true;
    }
    if (event.key() == Qt::Key_Space && modifiers == Qt::ControlModifier && areSeveral) {
        toggle(current);
        return true;
    }
    if (event.key() == Qt::Key_Escape && modifiers == Qt::NoModifier && areSeveral) {
        userSelected(current, {});
        return true;
    }
    // These open, close and walk, with one.
    const bool isSideways = event.key() == Qt::Key_Left || event.key() == Qt::Key_Right;
    if (isSideways && areSeveral)
        userSelected(current, {});
    return moveByKey(event);
}

bool TreeView::moveByKey(const QKeyEvent &event)
{
    constexpr std::pair<Qt::Key, CursorAction> moves[] = {
        {Qt::Key_Up, MoveUp},   {Qt::Key_Down, MoveDown},     {Qt::Key_Home, MoveHome},
        {Qt::Key_End, MoveEnd}, {Qt::Key_PageUp, MovePageUp}, {Qt::Key_PageDown, MovePageDown},
    };
    const auto *move = std::ranges::find(moves, event.key(), &std::pair<Qt::Key, CursorAction>::first);
    if (move == std::end(moves))
        return false;
    const Qt::KeyboardModifiers modifiers =
        event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    const bool extends = modifiers.testFlag(Qt::ShiftModifier) && !modifiers.testFlag(Qt::AltModifier);
    const bool areSeveral = m_tree->areSeveralSelected();
    if (!extends && !areSeveral)
        return false;
    Entry *there = m_tree->entryAt(moveCursor(move->second, Qt::NoModifier));
    if (!there)
        there = m_tree->selected();
    if (extends)
        selectUpTo(there, modifiers.testFlag(Qt::ControlModifier));
    else if (modifiers == Qt::ControlModifier)
        userSelected(there, m_tree->selectedEntries());
    else
        userSelected(there, {});
    return true;
}

// Whether a row is one of several selected ones beside the current one.
bool TreeView::isPale(const QModelIndex &index) const
{
    return m_mirrorsSeveral && index != currentIndex() && selectionModel()->isSelected(index);
}

// The row as Qt draws it, but that among several the current one is told apart: it alone has the strong colour, where
// it is one of them, and it has a frame.
void TreeView::drawSelection(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem row = option;
    if (isPale(index)) {
        const QColor base = option.palette.color(QPalette::Base);
        const QColor text = option.palette.color(QPalette::Text);
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
            const QColor strong = option.palette.color(group, QPalette::Highlight);
            row.palette.setColor(group, QPalette::Highlight, paleColour(base, strong, text));
            row.palette.setColor(group, QPalette::HighlightedText, text);
        }
    }
    QTreeView::drawRow(&painter, row, index);
    if (!m_mirrorsSeveral || index != currentIndex())
        return;
    const bool isSelected = selectionModel()->isSelected(index);
    painter.save();
    painter.setPen(QPen(option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text), 1, Qt::DotLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(option.rect.adjusted(1, 1, -2, -2));
    painter.restore();
}
