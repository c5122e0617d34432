// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/LoggedChange.h"

#include "model/Outline.h"
#include "util/RunTimeError.h"

#include <zlib.h>

using namespace Qt::StringLiterals;

namespace
{

const Entry &entryIn(const Outline &outline, EntryId id)
{
    if (const Entry *entry = outline.tree.entry(id))
        return *entry;
    throw RunTimeError(ErrorNumber::ElementNotFound);
}

// Reads from the outline what each kind of change did to it.
class ForwardReader
{
public:
    explicit ForwardReader(const Outline &outline)
        : m_outline(outline)
    {
    }

    LoggedChange operator()(const change::Remove &inverse) const
    {
        logged::Insert insert;
        for (const EntryId id : inverse.entries) {
            const Entry &top = entry(id);
            insert.tops.push_back(
                {top.parent() ? top.parent()->id() : EntryId::None, top.row(), EntryTree::recordsOf(&top)});
        }
        return insert;
    }

    LoggedChange operator()(const change::Insert &inverse) const
    {
        change::Remove remove;
        for (const TakenSubtree &each : inverse.subtrees)
            remove.entries.push_back(each.subtree.top()->id());
        return remove;
    }

    LoggedChange operator()(const change::Move &inverse) const
    {
        const Entry &moved = entry(inverse.entry);
        return change::Move{moved.id(), moved.parent()->id(), moved.row(), m_outline.tree.insertionPlaces(&moved)};
    }

    LoggedChange operator()(const change::Label &inverse) const
    {
        return change::Label{inverse.entry, entry(inverse.entry).label()};
    }

    LoggedChange operator()(const change::Tag &inverse) const
    {
        return change::Tag{inverse.entry, entry(inverse.entry).tagged()};
    }

    LoggedChange operator()(const change::Expand &inverse) const
    {
        return change::Expand{{inverse.expansion.closed, inverse.expansion.opened}, false};
    }

    LoggedChange operator()(const change::Sorted &inverse) const
    {
        return change::Sorted{inverse.entry, entry(inverse.entry).sorted()};
    }

    LoggedChange operator()(const change::Reorder &inverse) const
    {
        change::Reorder forward{inverse.parent, std::vector<int>(inverse.order.size())};
        for (size_t row = 0; row < inverse.order.size(); ++row)
            forward.order[static_cast<size_t>(inverse.order[row])] = static_cast<int>(row);
        return forward;
    }

    LoggedChange operator()(const change::Renew &inverse) const
    {
        return change::Renew{inverse.entry, m_outline.tree.insertionPlaces(&entry(inverse.entry))};
    }

    LoggedChange operator()(const change::StoredText &inverse) const
    {
        return logged::Text{
            inverse.entry, EntryTree::textLastStored(&entry(inverse.entry)), logged::Text::State::Stored, {}};
    }

    LoggedChange operator()(const change::Fonts &) const
    {
        return change::Fonts{m_outline.outlineFont, m_outline.textFont};
    }

    LoggedChange operator()(const change::TextStep &inverse) const
    {
        return logged::Text{inverse.entry, QByteArray(), logged::Text::State::ToBeMade, {}};
    }

    LoggedChange operator()(const change::Foreign &inverse) const
    {
        return change::Foreign{inverse.entry, entry(inverse.entry).foreignRecords()};
    }

    LoggedChange operator()(const change::FileForeign &) const
    {
        return change::FileForeign{m_outline.foreignHeader, m_outline.foreignTrailer};
    }

private:
    const Entry &entry(EntryId id) const { return entryIn(m_outline, id); }

    const Outline &m_outline;
};

} // namespace

LoggedChange loggedChange(const Change &inverse, const Outline &outline)
{
    return std::visit(ForwardReader(outline), inverse);
}

Snapshot snapshotOf(const Outline &outline)
{
    return {EntryTree::recordsOf(outline.tree.root()), outline.outlineFont, outline.textFont, outline.foreignHeader,
            outline.foreignTrailer};
}

quint32 checkSum(QByteArrayView bytes, quint32 start)
{
    return static_cast<quint32>(
        crc32(start, reinterpret_cast<const Bytef *>(bytes.data()), static_cast<uInt>(bytes.size())));
}

qsizetype weightOf(const LoggedStep &step)
{
    qsizetype weight = qsizetype(sizeof(LoggedStep));
    for (const LoggedChange &change : step.changes) {
        weight += qsizetype(sizeof(LoggedChange));
        if (const auto *text = std::get_if<logged::Text>(&change))
            weight += text->text.size();
    }
    return weight;
}
