// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/OutlineWidth.h"

#include "model/EntryTree.h"
#include "model/ShownLabel.h"
#include "platform/LevelWalk.h"
#include "platform/TreeView.h"

#include <QEvent>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace
{

// How much wider than the sum of its characters a shaped label may become, in percent.
constexpr int shapingAllowance = 3;

// Characters beyond those that are simply put side by side, such as an Arabic label's, are only bounded. So many rows
// are measured as they are drawn before the bound on the next one is taken for its width.
constexpr int maximumMeasured = 256;

// How far apart a label's tabulators stand at most.
constexpr double tabulator = 80;

struct Candidate {
    const Entry *entry;
    int atMost;
};

// Ideographs and Korean syllables are all put side by side as they are, and there are too many to look at each pair.
bool isIdeograph(char16_t code)
{
    return (code >= 0x3400 && code <= 0x9FFF) || (code >= 0xAC00 && code <= 0xD7A3);
}

// Whether a character's width depends on nothing but its neighbour: Latin, Greek, Cyrillic, common punctuation and what
// is written in squares, but no marks that are put upon others.
bool isPlain(char16_t code)
{
    constexpr char16_t softHyphen = 0xAD;
    if (code < 0x250)
        return code >= 0x20 && (code < 0x7F || code > 0x9F) && code != softHyphen;
    return (code >= 0x370 && code <= 0x481) || (code >= 0x48A && code <= 0x52F) || (code >= 0x2010 && code <= 0x2027) ||
           (code >= 0x3040 && code <= 0x3096) || (code >= 0x30A0 && code <= 0x30FF) || isIdeograph(code);
}

// Three letters may be drawn as one, and a space at the end takes no room.
bool isPlain(QStringView label)
{
    if (label.isEmpty() || label.back() == u' ' || label.contains("ff"_L1))
        return false;
    return std::all_of(label.begin(), label.end(), [](QChar character) { return isPlain(character.unicode()); });
}

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
    m_metrics = QFontMetricsF(m_view.font());
    m_pairs.clear();
    m_otherPairs.clear();
    m_overhangs.clear();
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

// The widths of characters and of pairs bound a row's width; only the rows whose bound exceeds the widest found so far
// are measured as they are drawn. Of plain labels, which is nearly all there are, the bound is the width itself, and
// one measurement is all it takes.
void OutlineWidth::measure()
{
    if (m_known)
        return;
    m_known = true;
    m_widest = 0;
    m_rows = 0;
    std::vector<Candidate> candidates;
    int frame = -1;
    for (LevelWalk walk(m_tree.root()); const Entry *entry = walk.entry();) {
        ++m_rows;
        const QString label = shownLabel(entry->label());
        const bool plain = isPlain(label);
        const int width = estimate(label, plain);
        if (plain && frame < 0)
            frame = exactWidth(entry) - width;
        candidates.push_back({entry, walk.level() * m_view.indentation() + width});
        if (entry->expanded() && walk.level() <= TreeView::deepestOpenLevel)
            walk.next();
        else
            walk.pass();
    }
    if (frame < 0)
        frame = m_view.iconSize().width() + static_cast<int>(std::ceil(6 * m_metrics.averageCharWidth()));
    const auto narrower = [](const Candidate &a, const Candidate &b) { return a.atMost < b.atMost; };
    std::make_heap(candidates.begin(), candidates.end(), narrower);
    for (int measured = 0; !candidates.empty() && candidates.front().atMost + frame > m_widest; ++measured) {
        const Candidate widest = candidates.front();
        if (measured == maximumMeasured) {
            m_widest = widest.atMost + frame;
            return;
        }
        std::pop_heap(candidates.begin(), candidates.end(), narrower);
        candidates.pop_back();
        m_widest = std::max(m_widest, widest.entry->level() * m_view.indentation() + exactWidth(widest.entry));
    }
}

int OutlineWidth::estimate(QStringView label, bool plain)
{
    double width = 0;
    char16_t before = 0;
    for (const char16_t *each = label.utf16(), *end = each + label.size(); each != end; ++each) {
        width += plain ? advance(before, *each) : atMost(*each);
        before = *each;
    }
    if (plain)
        width += overhang(before);
    else
        width += width * shapingAllowance / 100;
    return static_cast<int>(std::ceil(width));
}

// What the character adds to the width of a label that ended in the one before; 0 for none.
double OutlineWidth::advance(char16_t before, char16_t code)
{
    constexpr std::size_t table = 128;
    constexpr double unknown = -1000;
    if (before < table && code < table) {
        if (m_pairs.empty())
            m_pairs.assign(table * table, unknown);
        double &width = m_pairs[before * table + code];
        if (width == unknown)
            width = measuredAdvance(before, code);
        return width;
    }
    if (isIdeograph(before) || isIdeograph(code))
        before = 0;
    const quint32 key = quint32(before) << 16 | code;
    auto found = m_otherPairs.constFind(key);
    if (found == m_otherPairs.cend())
        found = m_otherPairs.insert(key, measuredAdvance(before, code));
    return *found;
}

double OutlineWidth::measuredAdvance(char16_t before, char16_t code) const
{
    if (before == 0)
        return m_metrics.horizontalAdvance(QChar(code));
    const QChar pair[] = {QChar(before), QChar(code)};
    return m_metrics.horizontalAdvance(QString(pair, 2)) - m_metrics.horizontalAdvance(pair[0]);
}

// How far the last character of a label reaches beyond its advance.
double OutlineWidth::overhang(char16_t last)
{
    auto found = m_overhangs.constFind(last);
    if (found == m_overhangs.cend())
        found = m_overhangs.insert(last, std::max(-m_metrics.rightBearing(QChar(last)), 0.0));
    return *found;
}

double OutlineWidth::atMost(char16_t code)
{
    if (code == u'\t')
        return tabulator;
    // Half a character beyond the basic plane; the whole is as wide as it is high.
    if (QChar::isSurrogate(code))
        return m_metrics.height();
    return advance(0, code);
}

int OutlineWidth::exactWidth(const Entry *entry) const
{
    ++m_measured;
    return m_view.sizeHintForIndex(m_tree.indexOf(entry)).width();
}
