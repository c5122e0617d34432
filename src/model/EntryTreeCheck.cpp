// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// What must hold of a tree at all times.

#include "model/EntryTree.h"

#include <new>
#include <set>

using namespace Qt::StringLiterals;

QString EntryTree::brokenInvariant() const
{
    int count = 0;
    int tagged = 0;
    std::set<const Entry *> collected;
    for (int index = 1; index <= m_collection.count(); ++index) {
        const Entry *entry = m_collection.at(index);
        if (!entry || m_collection.indexOf(entry) != index)
            return u"the collection's index %1 does not lead back to itself"_s.arg(index);
        if (index > 1 && m_collection.at(index - 1)->m_insertion >= entry->m_insertion)
            return u"the collection's index %1 is out of order"_s.arg(index);
        collected.insert(entry);
    }
    bool selectedFound = !m_selected;
    for (const Entry *entry = m_root.get(); entry; entry = nextInOutline(entry, m_root.get())) {
        ++count;
        tagged += entry->m_tagged ? 1 : 0;
        selectedFound = selectedFound || entry == m_selected;
        if (!collected.contains(entry))
            return u"the entry %1 is not in the collection"_s.arg(key(entry));
        if (this->entry(entry->m_id) != entry)
            return u"the id of %1 does not lead to it"_s.arg(key(entry));
        for (int row = 0; row < entry->childCount(); ++row) {
            if (entry->child(row)->m_row != row || entry->child(row)->m_parent != entry)
                return u"child %1 of %2 does not know its place"_s.arg(row + 1).arg(key(entry));
        }
    }
    if (count != m_byId.count())
        return u"%1 entries in the tree, %2 known by their ids"_s.arg(count).arg(m_byId.count());
    if (count != m_collection.count())
        return u"%1 entries in the tree, %2 in the collection"_s.arg(count).arg(m_collection.count());
    if (tagged != m_taggedCount)
        return u"%1 tagged entries, %2 counted"_s.arg(tagged).arg(m_taggedCount);
    if (!selectedFound)
        return u"the selected entry is not in the tree"_s;
    if (m_several.size() == 1 || entriesOf(severalIds()).size() != m_several.size())
        return u"%1 entries count as several selected ones"_s.arg(m_several.size());
    return QString();
}

#ifndef QT_NO_DEBUG
void EntryTree::assertWhole(const Entry *entry) const
{
    // Looking at all of a large outline at each step would make the steps cost their square.
    constexpr int mostLookedAtWhole = 64;
    if (entry) {
        Q_ASSERT(entry->m_parent ? entry->m_parent->child(entry->m_row) == entry : m_root.get() == entry);
        for (const Entry *child : {entry->firstChild(), entry->child(entry->childCount() - 1)})
            Q_ASSERT(!child || (child->m_parent == entry && entry->child(child->m_row) == child));
    }
    Q_ASSERT((m_collection.count() == 0) == !m_root);
    Q_ASSERT(m_taggedCount >= 0 && m_taggedCount <= m_collection.count());
    if (m_collection.count() > mostLookedAtWhole)
        return;
    try {
        const QString broken = brokenInvariant();
        Q_ASSERT_X(broken.isEmpty(), "EntryTree", qPrintable(broken));
    } catch (const std::bad_alloc &) {
        // Without memory nothing is looked at: what was done is done.
        return;
    }
}
#else
void EntryTree::assertWhole(const Entry *) const {}
#endif
