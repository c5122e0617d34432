// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/OutlineWidth.h"

#include "model/EntryTree.h"
#include "model/ShownLabel.h"
#include "platform/TreeView.h"

#include <QEvent>

#include <algorithm>

namespace
{

// How much wider than the sum of its characters a shaped label may become, in percent.
constexpr int shapingAllowance = 3;

// How many rows are measured as they are drawn before the bound on the next one is taken for its width. Labels of one
// pattern are all about as wide, and measuring thousands of them would tell nothing more.
constexpr int maximumMeasured = 32;

struct Candidate {
    const Entry *entry;
    int atMost;
};

} // namespace

OutlineWidth::OutlineWidth(TreeView &view, const EntryTree &tree)
    : QObject(&view)
    , m_view(view)
    , m_tree(tree)
    , m_metrics(view.font())
{
    forgetFont();
    view.installEventFilter(this);
    const auto forget = [this] { m_known = false; };
    connect(&tree, &EntryTree::rowsInserted, this, forget);
    connect(&tree, &EntryTree::rowsRemoved, this, forget);
    connect(&tree, &EntryTree::rowsMoved, this, forget);
    connect(&tree, &EntryTree::modelReset, this, forget);
    connect(&tree, &EntryTree::labelChanged, this, forget);
    connect(&tree, &EntryTree::expandedChanged, this, forget);
    connect(&tree, &EntryTree::expansionReset, this, forget);
}

bool OutlineWidth::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        forgetFont();
    return QObject::eventFilter(watched, event);
}

void OutlineWidth::forgetFont()
{
    m_metrics = QFontMetrics(m_view.font());
    m_frame = m_view.iconSize().width() + 6 * m_metrics.averageCharWidth();
    m_latin.fill(-1);
    m_others.clear();
    m_known = false;
}

int OutlineWidth::widestRow()
{
    measure();
    return m_widest;
}

int OutlineWidth::visibleRows()
{
    measure();
    return m_rows;
}

// Adding up the widths of characters bounds a row's width; only the rows whose bound exceeds the widest found so far
// are measured as they are drawn.
void OutlineWidth::measure()
{
    if (m_known)
        return;
    m_known = true;
    m_widest = 0;
    m_rows = 0;
    std::vector<Candidate> candidates;
    int level = 1;
    const Entry *entry = m_tree.root();
    while (entry) {
        ++m_rows;
        candidates.push_back({entry, level * m_view.indentation() + estimate(shownLabel(entry->label()))});
        if (entry->expanded() && entry->childCount() > 0 && level <= TreeView::deepestOpenLevel) {
            entry = entry->firstChild();
            ++level;
            continue;
        }
        while (entry && !entry->next()) {
            entry = entry->parent();
            --level;
        }
        entry = entry ? entry->next() : nullptr;
    }
    const auto narrower = [](const Candidate &a, const Candidate &b) { return a.atMost < b.atMost; };
    std::make_heap(candidates.begin(), candidates.end(), narrower);
    for (int measured = 0; !candidates.empty() && candidates.front().atMost > m_widest; ++measured) {
        const Candidate widest = candidates.front();
        if (measured == maximumMeasured) {
            m_widest = widest.atMost;
            return;
        }
        std::pop_heap(candidates.begin(), candidates.end(), narrower);
        candidates.pop_back();
        m_widest = std::max(m_widest, widest.entry->level() * m_view.indentation() + exactWidth(widest.entry));
    }
}

int OutlineWidth::estimate(QStringView label)
{
    int width = 0;
    for (const QChar character : label)
        width += estimate(character);
    return width + width * shapingAllowance / 100 + m_frame;
}

int OutlineWidth::estimate(QChar character)
{
    // Half a character beyond the basic plane; the whole is as wide as it is high.
    if (character.isSurrogate())
        return m_metrics.height();
    const char16_t code = character.unicode();
    if (code < m_latin.size()) {
        qint16 &width = m_latin[code];
        if (width < 0)
            width = static_cast<qint16>(m_metrics.horizontalAdvance(character));
        return width;
    }
    auto found = m_others.find(code);
    if (found == m_others.end())
        found = m_others.insert(code, static_cast<qint16>(m_metrics.horizontalAdvance(character)));
    return *found;
}

int OutlineWidth::exactWidth(const Entry *entry) const
{
    return m_view.sizeHintForIndex(m_tree.indexOf(entry)).width();
}
