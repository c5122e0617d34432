// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/Adoption.h"

#include "document/Document.h"

#include <QHash>

#include <algorithm>

Adoption::Adoption(Document &document, Entry *own, const Outline &theirs, const Entry *theirTop)
    : m_outline(document.outline())
    , m_history(document.history)
    , m_theirs(theirs)
    , m_pairs{{own, theirTop, {}}}
{
}

void Adoption::run()
{
    for (size_t at = 0; at < m_pairs.size(); ++at)
        matchChildren(at);
    if (!m_surplus.empty())
        m_history.removeAll(m_surplus);
    change::Insert insert;
    for (const Pair &pair : m_pairs) {
        adopt(*pair.own, *pair.theirs);
        reorder(pair);
        addMissing(pair, insert);
    }
    if (!insert.subtrees.empty())
        m_history.apply(std::move(insert));
    for (const Pair &pair : m_pairs)
        tagInserted(pair);
}

Entry *Adoption::counterpart(const Entry *entry) const
{
    return entry ? m_outline.tree.itemByKey(m_theirs.tree.key(entry)) : nullptr;
}

void Adoption::matchChildren(size_t at)
{
    const auto [own, theirs, none] = m_pairs[at];
    QHash<QString, QList<Entry *>> byLabel;
    // The last first, so that of several alike the first is taken first.
    for (Entry *child = own->child(own->childCount() - 1); child; child = child->previous())
        byLabel[child->label()].append(child);
    std::vector<Entry *> children(static_cast<size_t>(theirs->childCount()), nullptr);
    for (const Entry *child = theirs->firstChild(); child; child = child->next()) {
        const auto alike = byLabel.find(child->label());
        if (alike == byLabel.end() || alike->isEmpty())
            continue;
        Entry *match = alike->takeLast();
        children[static_cast<size_t>(child->row())] = match;
        m_pairs.push_back({match, child, {}});
    }
    for (const QList<Entry *> &alike : std::as_const(byLabel))
        m_surplus.insert(m_surplus.end(), alike.begin(), alike.end());
    m_pairs[at].children = std::move(children);
}

void Adoption::adopt(Entry &own, const Entry &theirs)
{
    m_history.setLabel(&own, theirs.label());
    m_history.setTagged(&own, theirs.tagged());
    m_history.setForeignRecords(&own, theirs.foreignRecords());
    const QByteArray text = m_theirs.tree.storedText(&theirs);
    if (m_outline.tree.storedText(&own) != text)
        m_history.setStoredText(&own, text);
}

void Adoption::reorder(const Pair &pair)
{
    std::vector<int> order;
    for (const Entry *child : pair.children) {
        if (child)
            order.push_back(child->row());
    }
    if (!std::ranges::is_sorted(order))
        m_history.apply(change::Reorder{pair.own->id(), std::move(order)});
}

void Adoption::addMissing(const Pair &pair, change::Insert &insert) const
{
    for (size_t row = 0; row < pair.children.size(); ++row) {
        if (!pair.children[row])
            insert.subtrees.push_back({pair.own->id(), static_cast<int>(row),
                                       m_theirs.tree.copyOf(pair.theirs->child(static_cast<int>(row)))});
    }
}

void Adoption::tagInserted(const Pair &pair)
{
    for (size_t row = 0; row < pair.children.size(); ++row) {
        if (!pair.children[row])
            tagAsCopied(m_history, pair.own->child(static_cast<int>(row)), pair.theirs->child(static_cast<int>(row)));
    }
}

void tagAsCopied(History &history, Entry *copy, const Entry *source)
{
    const Entry *from = source;
    for (Entry *entry = copy; entry; entry = nextInOutline(entry, copy), from = nextInOutline(from, source))
        history.setTagged(entry, from->tagged());
}
