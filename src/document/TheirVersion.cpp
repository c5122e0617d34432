// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Making a document what its file has become.

#include "document/OutsideChange.h"

#include "document/Document.h"
#include "document/OpenedFile.h"
#include "document/Ports.h"
#include "document/modNodes.h"

#include "util/Procedure.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// Changes an outline into another one. Entries of one label below entries that correspond to each other correspond too,
// and stay what they are for whoever knows them; the others go and come.
class Adoption
{
public:
    Adoption(Document &document, const Outline &theirs)
        : m_outline(*document.outline)
        , m_history(document.history)
        , m_theirs(theirs)
    {
    }

    void run()
    {
        m_pairs.push_back({m_outline.tree.root(), m_theirs.tree.root(), {}});
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

    // The entry that corresponds to one of theirs.
    Entry *counterpart(const Entry *entry) const
    {
        return entry ? m_outline.tree.itemByKey(m_theirs.tree.key(entry)) : nullptr;
    }

private:
    struct Pair {
        Entry *own;
        const Entry *theirs;
        // By the rows of their children; null for what is not here.
        std::vector<Entry *> children;
    };

    void matchChildren(size_t at)
    {
        const auto [own, theirs, none] = m_pairs[at];
        QHash<QString, QList<Entry *>> byLabel;
        // The last first, so that of several alike the first is taken first.
        for (Entry *child = own->child(own->childCount() - 1); child; child = child->previous())
            byLabel[child->label()].append(child);
        std::vector<Entry *> children(static_cast<size_t>(theirs->childCount()), nullptr);
        for (const Entry *child = theirs->firstChild(); child; child = child->next()) {
            const auto alike = byLabel.find(child->label());
            if (alike == byLabel.end() || alike->isEmpty() ||
                alike->last()->foreignRecords() != child->foreignRecords())
                continue;
            Entry *match = alike->takeLast();
            children[static_cast<size_t>(child->row())] = match;
            m_pairs.push_back({match, child, {}});
        }
        for (const QList<Entry *> &alike : std::as_const(byLabel))
            m_surplus.insert(m_surplus.end(), alike.begin(), alike.end());
        m_pairs[at].children = std::move(children);
    }

    void adopt(Entry &own, const Entry &theirs)
    {
        m_history.setLabel(&own, theirs.label());
        m_history.setTagged(&own, theirs.tagged());
        const QByteArray text = m_theirs.tree.storedText(&theirs);
        if (m_outline.tree.storedText(&own) != text)
            m_history.setStoredText(&own, text);
    }

    void reorder(const Pair &pair)
    {
        std::vector<int> order;
        for (const Entry *child : pair.children) {
            if (child)
                order.push_back(child->row());
        }
        if (!std::ranges::is_sorted(order))
            m_history.apply(change::Reorder{pair.own->id(), std::move(order)});
    }

    void addMissing(const Pair &pair, change::Insert &insert)
    {
        for (size_t row = 0; row < pair.children.size(); ++row) {
            if (!pair.children[row])
                insert.subtrees.push_back({pair.own->id(), static_cast<int>(row),
                                           m_theirs.tree.copyOf(pair.theirs->child(static_cast<int>(row)))});
        }
    }

    // A copy never is tagged.
    void tagInserted(const Pair &pair)
    {
        for (size_t row = 0; row < pair.children.size(); ++row) {
            if (pair.children[row])
                continue;
            Entry *top = pair.own->child(static_cast<int>(row));
            const Entry *theirTop = pair.theirs->child(static_cast<int>(row));
            const Entry *theirs = theirTop;
            for (Entry *own = top; own; own = nextInOutline(own, top), theirs = nextInOutline(theirs, theirTop))
                m_history.setTagged(own, theirs->tagged());
        }
    }

    Outline &m_outline;
    History &m_history;
    const Outline &m_theirs;
    std::vector<Pair> m_pairs;
    std::vector<Entry *> m_surplus;
};

void adoptOutline(Document &document, OpenedFile &file)
{
    Outline &theirs = *file.read.outline;
    const bool isNative = file.iVersion == Document::nativeFormat;
    Adoption adoption(document, theirs);
    {
        const History::Step step(document.history, u"reading of the changed file"_s);
        const HistoryBulk bulk(document.history);
        adoption.run();
        if (isNative)
            document.history.setFonts(theirs.outlineFont, theirs.textFont);
    }
    if (!document.tree.selected())
        document.history.select(adoption.counterpart(theirs.tree.selected()));
    // What this program does not know of it is the file's own affair: it is written back as it is there now.
    document.outline->tree.setForeignRecords(document.outline->tree.root(), theirs.tree.root()->foreignRecords());
    document.outline->foreignHeader = theirs.foreignHeader;
    document.outline->foreignTrailer = theirs.foreignTrailer;
    if (isNative)
        document.setPaneFonts(document.m_fntOutlineFont, document.m_fntOutlineFont);
}

void takeTheirFile(Document &document)
{
    const HourglassPointer hourglass;
    OpenedFile file = readFile(document.m_sFile);
    if (file.read.failure) {
        try {
            std::rethrow_exception(file.read.failure);
        } catch (...) {
            document.tell({NoticeKind::FileChanged,
                           u"The file %1 has changed on the disk, and cannot be read whole: "
                           "%2. It is shown here as it was before."_s.arg(document.m_sFile, causeOfFailure(file))});
            throw;
        }
    }
    const modNodes::ActionScope action;
    adoptOutline(document, file);
    document.m_iFileFormatVersion = file.iVersion;
    document.m_bFromOutline = file.iVersion == Document::nativeFormat;
    document.setExpansionLevel(0);
    document.history.markSaved();
    document.m_bSaveRefused = false;
    document.takeFile(file.stamp);
    document.dismiss(NoticeKind::NotReadWhole);
    if (file.read.cutLabels > 0)
        tellOfCutLabels(document, file.read.cutLabels);
    if (document.m_bFromOutline)
        document.checkTexts();
    modNodes::NodeSelectFull(document, document.tree.selected());
    // Where an entry was opened to show it.
    document.history.markSaved();
    document.note(u"The file %1 was read again"_s.arg(document.m_sFile));
}

} // namespace

bool takeTheirs(Document &document)
{
    return procedure("OutsideChange takeTheirs", [&] {
        if (document.hasUnsavedChanges() || document.m_sFile.isEmpty())
            return false;
        takeTheirFile(document);
        return true;
    });
}
