// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/ComparedVersion.h"

#include "document/Adoption.h"
#include "document/Document.h"
#include "document/modNodes.h"
#include "vault/KeptOutline.h"

using namespace Qt::StringLiterals;

namespace
{

template <typename Held>
std::vector<Held *> inOutlineOrder(Entry *root)
{
    std::vector<Held *> entries;
    for (Entry *entry = root; entry; entry = nextInOutline(entry, root))
        entries.push_back(entry);
    return entries;
}

// Without what the panes make of it.
KeptOutline asShownClosed(KeptOutline outline)
{
    outline.selected = -1;
    for (EntryRecord &entry : outline.entries)
        entry.expanded = false;
    return outline;
}

void showBroughtBack(Document &document, Entry *entry)
{
    // What is open now was not opened to a level.
    document.setExpansionLevel(0);
    modNodes::NodeSelectFull(document, entry ? entry : document.tree.root());
    document.checkTexts();
}

} // namespace

ComparedVersion::ComparedVersion(Document &document, const KeptOutline &version)
    : m_document(document)
    , m_outline(outlineOf(version))
    , m_comparison(compareOutlines(comparedEntries(version), comparedEntries(keptOutline(document.outline()))))
    , m_then(inOutlineOrder<const Entry>(m_outline->tree.root()))
    , m_now(inOutlineOrder<Entry>(document.tree.root()))
{
    m_isSame =
        m_comparison.differences.empty() && asShownClosed(version) == asShownClosed(keptOutline(document.outline()));
    for (size_t place = 0; place < m_then.size(); ++place) {
        if (const int match = m_comparison.afterOf[place]; match >= 0)
            m_counterparts.emplace(m_then[place], m_now[static_cast<size_t>(match)]);
    }
}

const Entry *ComparedVersion::then(const EntryDifference &difference) const
{
    return difference.isAdded() ? nullptr : m_then[static_cast<size_t>(difference.before)];
}

Entry *ComparedVersion::now(const EntryDifference &difference) const
{
    return difference.isRemoved() ? nullptr : m_now[static_cast<size_t>(difference.after)];
}

QByteArray ComparedVersion::textThen(const EntryDifference &difference) const
{
    const Entry *entry = then(difference);
    return entry ? m_outline->tree.storedText(entry) : QByteArray();
}

QByteArray ComparedVersion::textNow(const EntryDifference &difference) const
{
    const Entry *entry = now(difference);
    return entry ? m_document.tree.storedText(entry) : QByteArray();
}

Entry *ComparedVersion::counterpart(const Entry *entry) const
{
    const auto found = m_counterparts.find(entry);
    return found == m_counterparts.end() ? nullptr : found->second;
}

// Where an entry of the version belongs in the document: behind the sibling that it was behind, below its parent or, if
// that is gone, the nearest one above that is not.
EntryTree::Place ComparedVersion::placeOf(const Entry *entry) const
{
    const Entry *child = entry;
    Entry *parent = nullptr;
    while (child->parent() && !(parent = counterpart(child->parent())))
        child = child->parent();
    for (const Entry *before = child->previous(); before; before = before->previous()) {
        const Entry *sibling = counterpart(before);
        if (sibling && sibling->parent() == parent)
            return {parent, sibling->row() + 1};
    }
    return {parent, 0};
}

void ComparedVersion::bringBackAll(const QString &when)
{
    if (!m_outline->tree.root() || !m_document.tree.root())
        return;
    const modNodes::ActionScope action;
    Adoption adoption(m_document, m_document.tree.root(), *m_outline, m_outline->tree.root());
    {
        const History::Step step(m_document.history, u"bringing back of the version of "_s + when);
        const HistoryBulk bulk(m_document.history);
        adoption.run();
        m_document.history.setFonts(m_outline->outlineFont, m_outline->textFont);
        m_document.history.setFileForeignRecords(m_outline->foreignHeader, m_outline->foreignTrailer);
    }
    m_document.setPaneFonts(m_document.m_fntOutlineFont, m_document.m_fntOutlineFont);
    Entry *selected = m_document.tree.selected();
    showBroughtBack(m_document, selected ? selected : adoption.counterpart(m_outline->tree.selected()));
}

void ComparedVersion::bringBackBranch(const EntryDifference &difference)
{
    const Entry *source = then(difference);
    if (!source)
        return;
    const modNodes::ActionScope action;
    Entry *top = modNodes::withRoom(m_document, [&]() -> Entry * {
        const History::Step step(m_document.history, stepName("bringing back of the branch"_L1, *source));
        const HistoryBulk bulk(m_document.history);
        Entry *own = now(difference);
        const EntryTree::Place place = source->isRoot() ? EntryTree::Place{nullptr, 0} : placeOf(source);
        if (!own) {
            change::Insert insert;
            insert.subtrees.push_back({place.parent->id(), place.row, m_outline->tree.copyOf(source)});
            own = m_document.history.apply(std::move(insert));
            tagAsCopied(m_document.history, own, source);
            return own;
        }
        const bool isBelowItself = own == place.parent || own->isAncestorOf(place.parent);
        if (difference.isMoved && place.parent && !isBelowItself) {
            // The row is counted without the entry.
            const bool isBehindItself = own->parent() == place.parent && own->row() < place.row;
            m_document.history.apply(
                change::Move{own->id(), place.parent->id(), place.row - (isBehindItself ? 1 : 0), {}});
        }
        Adoption(m_document, own, *m_outline, source).run();
        return own;
    });
    showBroughtBack(m_document, top ? top : m_document.tree.selected());
}

void ComparedVersion::bringBackText(const EntryDifference &difference)
{
    Entry *entry = now(difference);
    if (!entry || difference.isAdded())
        return;
    const modNodes::ActionScope action;
    {
        const History::Step step(m_document.history, stepName("bringing back of the text of"_L1, *entry));
        m_document.history.setStoredText(entry, textThen(difference));
    }
    showBroughtBack(m_document, entry);
}
