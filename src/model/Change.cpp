// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/Change.h"

#include "model/Outline.h"
#include "util/RunTimeError.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace
{

template <typename Value>
qsizetype bytesOf(const std::vector<Value> &values)
{
    return static_cast<qsizetype>(values.size() * sizeof(Value));
}

qsizetype bytesOf(const ForeignRecordList &records)
{
    auto bytes = static_cast<qsizetype>(records.size() * sizeof(ForeignRecords));
    for (const ForeignRecords &each : records)
        bytes += each.bytes.size();
    return bytes;
}

// Carries out each kind of change. Whatever may fail comes first.
class ChangeBearer
{
public:
    ChangeBearer(Change &change, Outline &outline, LiveTextPort *liveTexts)
        : m_change(change)
        , m_outline(outline)
        , m_tree(outline.tree)
        , m_liveTexts(liveTexts)
    {
    }

    bool operator()(change::Insert &insert)
    {
        if (insert.subtrees.empty())
            return false;
        change::Remove inverse;
        inverse.entries.reserve(insert.subtrees.size());
        for (const TakenSubtree &each : insert.subtrees)
            inverse.entries.push_back(each.subtree.top()->id());
        if (insert.subtrees.size() == 1) {
            TakenSubtree &only = insert.subtrees.front();
            Entry *parent = only.parent == EntryId::None ? nullptr : entry(only.parent);
            m_tree.put(only.subtree, {parent, only.row});
        } else {
            m_tree.putAll(insert.subtrees);
        }
        m_change = std::move(inverse);
        return true;
    }

    bool operator()(change::Remove &remove)
    {
        if (remove.entries.empty())
            return false;
        std::vector<Entry *> entries;
        entries.reserve(remove.entries.size());
        for (const EntryId id : remove.entries)
            entries.push_back(entry(id));
        change::Insert inverse;
        if (entries.size() == 1) {
            Entry *only = entries.front();
            inverse.subtrees.resize(1);
            inverse.subtrees[0].parent = only->parent() ? only->parent()->id() : EntryId::None;
            inverse.subtrees[0].row = only->row();
            inverse.subtrees[0].subtree = m_tree.take(only);
        } else {
            inverse.subtrees = m_tree.takeAll(entries);
        }
        m_change = std::move(inverse);
        return true;
    }

    bool operator()(change::Move &move)
    {
        Entry *moving = entry(move.entry);
        Entry *parent = entry(move.parent);
        change::Move inverse{move.entry, moving->parent()->id(), moving->row(), m_tree.insertionPlaces(moving)};
        m_tree.moveTo(moving, {parent, move.row}, move.insertion);
        m_change = std::move(inverse);
        return true;
    }

    bool operator()(change::Label &label)
    {
        Entry *labelled = entry(label.entry);
        if (labelled->label() == label.label)
            return false;
        const QString next = std::exchange(label.label, labelled->label());
        m_tree.setLabel(labelled, next);
        return true;
    }

    bool operator()(change::Tag &tag)
    {
        Entry *tagged = entry(tag.entry);
        if (tagged->tagged() == tag.tagged)
            return false;
        m_tree.setTagged(tagged, tag.tagged);
        tag.tagged = !tag.tagged;
        return true;
    }

    bool operator()(change::Expand &expand)
    {
        Expansion &expansion = expand.expansion;
        std::erase_if(expansion.opened, [this](EntryId id) { return entry(id)->expanded(); });
        std::erase_if(expansion.closed, [this](EntryId id) { return !entry(id)->expanded(); });
        if (expansion.opened.empty() && expansion.closed.empty())
            return false;
        if (std::exchange(expand.single, false))
            m_tree.setExpanded(entry(entryOf(m_change)), expansion.closed.empty());
        else
            m_tree.setExpansion(expansion);
        expansion.opened.swap(expansion.closed);
        return true;
    }

    bool operator()(change::Sorted &sorted)
    {
        Entry *parent = entry(sorted.entry);
        if (parent->sorted() == sorted.sorted)
            return false;
        m_tree.markSorted(parent, sorted.sorted);
        sorted.sorted = !sorted.sorted;
        return true;
    }

    bool operator()(change::Reorder &reorder)
    {
        std::vector<int> inverse(reorder.order.size());
        bool different = false;
        for (size_t row = 0; row < inverse.size(); ++row) {
            inverse[static_cast<size_t>(reorder.order[row])] = static_cast<int>(row);
            different = different || static_cast<size_t>(reorder.order[row]) != row;
        }
        if (!different)
            return false;
        m_tree.reorder(entry(reorder.parent), reorder.order);
        reorder.order.swap(inverse);
        return true;
    }

    bool operator()(change::Renew &renew)
    {
        Entry *renewed = entry(renew.entry);
        std::vector<qint64> inverse = m_tree.insertionPlaces(renewed);
        m_tree.renewInsertion(renewed, renew.insertion);
        renew.insertion.swap(inverse);
        return true;
    }

    bool operator()(change::StoredText &text)
    {
        Entry *holder = entry(text.entry);
        m_tree.resolvePendingText();
        // A live text may be ahead of what is stored, so it goes first.
        std::shared_ptr<LiveText> live = m_liveTexts ? m_liveTexts->takeOut(text.entry) : nullptr;
        QByteArray before = m_tree.storedText(holder);
        if (before == text.text && !text.live) {
            if (live)
                m_liveTexts->putBack(text.entry, std::move(live));
            return false;
        }
        m_tree.setStoredText(holder, text.text);
        if (m_liveTexts && text.live)
            m_liveTexts->putBack(text.entry, std::move(text.live));
        text.text.swap(before);
        text.live = std::move(live);
        return true;
    }

    bool operator()(change::Fonts &fonts)
    {
        if (fonts.outlineFont == m_outline.outlineFont && fonts.textFont == m_outline.textFont)
            return false;
        std::swap(fonts.outlineFont, m_outline.outlineFont);
        std::swap(fonts.textFont, m_outline.textFont);
        return true;
    }

    bool operator()(change::TextStep &step)
    {
        if (!m_liveTexts)
            throw RunTimeError(ErrorNumber::InvalidCall, u"No text is worked on"_s);
        if (step.redo)
            m_liveTexts->redoText(step.entry);
        else
            m_liveTexts->undoText(step.entry);
        step.redo = !step.redo;
        return true;
    }

    bool operator()(change::Foreign &foreign)
    {
        Entry *holder = entry(foreign.entry);
        if (holder->foreignRecords() == foreign.records)
            return false;
        ForeignRecordList before = holder->foreignRecords();
        m_tree.setForeignRecords(holder, foreign.records);
        foreign.records.swap(before);
        return true;
    }

    bool operator()(change::FileForeign &foreign)
    {
        if (foreign.header == m_outline.foreignHeader && foreign.trailer == m_outline.foreignTrailer)
            return false;
        foreign.header.swap(m_outline.foreignHeader);
        foreign.trailer.swap(m_outline.foreignTrailer);
        return true;
    }

private:
    Entry *entry(EntryId id) const
    {
        if (Entry *found = m_tree.entry(id))
            return found;
        throw RunTimeError(ErrorNumber::ElementNotFound, u"Element not found: the entry is not in its outline"_s);
    }

    Change &m_change;
    Outline &m_outline;
    EntryTree &m_tree;
    LiveTextPort *m_liveTexts;
};

template <typename... Calls>
struct Overloaded : Calls... {
    using Calls::operator()...;
};

// Not every compiler makes this one itself yet.
template <typename... Calls>
Overloaded(Calls...) -> Overloaded<Calls...>;

} // namespace

ChangeKind kindOf(const Change &change)
{
    constexpr ChangeKind kinds[] = {
        ChangeKind::Structure, ChangeKind::Structure, ChangeKind::Structure, ChangeKind::Label,  ChangeKind::Tag,
        ChangeKind::Expansion, ChangeKind::Sorted,    ChangeKind::Structure, ChangeKind::Order,  ChangeKind::Text,
        ChangeKind::Fonts,     ChangeKind::Text,      ChangeKind::Foreign,   ChangeKind::Foreign};
    static_assert(std::size(kinds) == std::variant_size_v<Change>);
    return kinds[change.index()];
}

std::vector<EntryId> entriesOf(const Change &change)
{
    return std::visit(Overloaded{
                          [](const change::Insert &insert) {
                              std::vector<EntryId> entries;
                              for (const TakenSubtree &each : insert.subtrees)
                                  entries.push_back(each.subtree ? each.subtree.top()->id() : EntryId::None);
                              return entries;
                          },
                          [](const change::Remove &remove) { return remove.entries; },
                          [](const change::Expand &expand) {
                              std::vector<EntryId> entries = expand.expansion.opened;
                              entries.insert(entries.end(), expand.expansion.closed.begin(),
                                             expand.expansion.closed.end());
                              return entries;
                          },
                          [](const change::Reorder &reorder) { return std::vector{reorder.parent}; },
                          [](const change::Fonts &) { return std::vector<EntryId>(); },
                          [](const change::FileForeign &) { return std::vector<EntryId>(); },
                          [](const auto &one) { return std::vector{one.entry}; },
                      },
                      change);
}

EntryId entryOf(const Change &change)
{
    return std::visit(Overloaded{
                          [](const change::Insert &insert) {
                              return insert.subtrees.empty() ? EntryId::None : insert.subtrees[0].subtree.top()->id();
                          },
                          [](const change::Remove &remove) {
                              return remove.entries.empty() ? EntryId::None : remove.entries.front();
                          },
                          [](const change::Expand &expand) {
                              const Expansion &expansion = expand.expansion;
                              const auto &either = expansion.opened.empty() ? expansion.closed : expansion.opened;
                              return either.empty() ? EntryId::None : either.front();
                          },
                          [](const change::Reorder &reorder) { return reorder.parent; },
                          [](const change::Fonts &) { return EntryId::None; },
                          [](const change::FileForeign &) { return EntryId::None; },
                          [](const auto &one) { return one.entry; },
                      },
                      change);
}

qsizetype weightOf(const Change &change)
{
    const qsizetype held = std::visit(
        Overloaded{
            [](const change::Insert &insert) {
                qsizetype weight = bytesOf(insert.subtrees);
                for (const TakenSubtree &each : insert.subtrees)
                    weight += each.subtree.weight();
                return weight;
            },
            [](const change::Remove &remove) { return bytesOf(remove.entries); },
            [](const change::Move &move) { return bytesOf(move.insertion); },
            [](const change::Label &label) { return label.label.size() * qsizetype(sizeof(QChar)); },
            [](const change::Expand &expand) {
                return bytesOf(expand.expansion.opened) + bytesOf(expand.expansion.closed);
            },
            [](const change::Reorder &reorder) { return bytesOf(reorder.order); },
            [](const change::Renew &renew) { return bytesOf(renew.insertion); },
            [](const change::StoredText &text) { return text.text.size() + (text.live ? text.live->weight() : 0); },
            [](const change::Foreign &foreign) { return bytesOf(foreign.records); },
            [](const change::FileForeign &foreign) { return bytesOf(foreign.header) + foreign.trailer.size(); },
            [](const auto &) { return qsizetype(0); },
        },
        change);
    return held + qsizetype(sizeof(Change));
}

bool carryOut(Change &change, Outline &outline, LiveTextPort *liveTexts)
{
    return std::visit(ChangeBearer(change, outline, liveTexts), change);
}
