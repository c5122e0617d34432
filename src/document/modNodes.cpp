// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/modNodes.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/StepProcedure.h"
#include "document/TextPane.h"
#include "model/EntryText.h"
#include "model/StoredText.h"
#include "rtf/CharChange.h"
#include "rtf/EditBlock.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

bool isWithin(const Entry *entry, const Entry &top)
{
    return entry == &top || top.isAncestorOf(entry);
}

std::vector<const Entry *> childrenOf(const Entry &entry)
{
    std::vector<const Entry *> children;
    for (int row = 0; row < entry.childCount(); ++row)
        children.push_back(entry.child(row));
    return children;
}

// Removes what a copy now stands for. A document that loses its selection by that shows another entry.
void removePasted(EntryRef &source)
{
    Entry *entry = source.entry();
    Document *document = modNodes::documentOf(*source.tree());
    if (!document)
        return;
    const History::Step step(document->history, stepName("deletion of"_L1, *entry));
    const bool selectionGoes = isWithin(document->tree.selected(), *entry);
    Entry *survivor = modNodes::survivorOf(*entry);
    document->history.remove(entry);
    source.clear();
    if (!selectionGoes)
        return;
    if (survivor)
        modNodes::NodeSelect(*document, survivor);
    else
        modNodes::showNothing(*document);
}

// Changes a text that is worked on as one step of undo.
void setFontOf(EntryDocument &text, const QFont &base, const rtf::CharChange &change)
{
    if (text.state() != TextState::Whole)
        return;
    QTextCursor step(&text.document());
    const EditBlock edit(step);
    text.changeFont(base);
    changeText(text.document(), change);
}

} // namespace

namespace modNodes
{

EntryRef &nodCurrent()
{
    static EntryRef current;
    return current;
}

Entry *NodeInsert(Document &document, Relationship relationship, Entry *relative)
{
    return stepProcedure(&document, "modNodes NodeInsert",
                         [&] { return insertEntry(document, relationship, relative); });
}

Entry *insertEntry(Document &document, Relationship relationship, Entry *relative)
{
    Entry *root = document.tree.root();
    if (root && (!relative || relative == root)) {
        relative = root;
        relationship = Relationship::tvwChild;
    }
    return withRoom(document, [&] { return document.history.insert(relationship, relative); });
}

Entry *withRoom(Document &document, const std::function<Entry *()> &add)
{
    try {
        Entry *added = add();
        document.dismiss(NoticeKind::DocumentFull);
        return added;
    } catch (const RunTimeError &error) {
        // A load tells itself what it could not take.
        if (error.number() == ErrorNumber::Overflow && !bBusy) {
            document.tell({NoticeKind::DocumentFull,
                           u"Nothing was inserted: a document holds at most %1 entries, and this one has no room for "
                           "more. Delete some, or go on in a new document. Esc leads back to the outline."_s.arg(
                               EntryTree::maximumCount)});
            if (DocumentView *view = document.view())
                view->window.holdKeys();
        }
        throw;
    }
}

void NodeInitialise(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeInitialise", [&] {
        if (!entry)
            return;
        NodeSelect(document, entry);
        document.history.setLabel(entry, u"New Entry"_s);
        document.history.touch();
        if (DocumentView *view = document.view())
            view->trvOutline.StartLabelEdit();
        QFont font = document.baseFont();
        document.m_fntTextFont.SetFont(font);
        document.setBaseFont(font);
    });
}

Entry *NodeGetRoot(const Document &document)
{
    return procedure("modNodes NodeGetRoot", [&]() -> Entry * {
        const Entry *selected = document.tree.selected();
        return selected ? selected->root() : nullptr;
    });
}

Entry *entryBelow(const Entry *entry)
{
    Entry *below = entry->next();
    for (const Entry *ancestor = entry->parent(); !below && ancestor; ancestor = ancestor->parent())
        below = ancestor->next();
    return below ? below : entry->firstChild();
}

void NodeGoDown(Document &document)
{
    procedure("modNodes NodeGoDown", [&] {
        if (const Entry *selected = document.tree.selected())
            NodeSelect(document, entryBelow(selected));
    });
}

void NodeSelect(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeSelect", [&] {
        if (!entry)
            return;
        if (bBusy)
            document.history.select(entry);
        else
            NodeSelectFull(document, entry);
    });
}

void NodeSelectFull(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeSelectFull", [&] {
        if (entry) {
            nodCurrent().set(&document.tree, entry);
            document.history.select(entry);
            document.history.expandAncestors(entry);
            DocumentView *view = document.view();
            if (view)
                view->trvOutline.ScrollTo(entry);
            // Shown again, the text would lose the caret's place and what can be undone.
            if (document.texts.entryAsShown() != entry)
                NodeTextGet(document, entry);
            if (view)
                view->trvOutline.ClearDropHighlight();
            document.unsay();
        }
    });
}

void NodeTagOn(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeTagOn", [&] { document.history.setTagged(entry, true); });
}

void NodeTagOff(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeTagOff", [&] { document.history.setTagged(entry, false); });
}

void NodeTagToggle(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeTagToggle", [&] {
        if (NodeTagged(entry))
            NodeTagOff(document, entry);
        else
            NodeTagOn(document, entry);
    });
}

bool NodeTagged(const Entry *entry)
{
    return procedure("modNodes NodeTagged", [&] { return entry->tagged(); });
}

bool NodesTaggedExist()
{
    return procedure("modNodes NodesTaggedExist", [] {
        const Document *document = DocumentActive();
        return document && document->tree.taggedCount() > 0;
    });
}

Entry *NodeDuplicate(Document &document, const EntryTree &sourceTree, Entry *source, Entry *relative,
                     Relationship relationship)
{
    return stepProcedure(&document, "modNodes NodeDuplicate", [&]() -> Entry * {
        if (!source || (!relative && relationship != Relationship::tvwFirst))
            return nullptr;
        const ActionScope action;
        const History::Step step(document.history, stepName("insertion of a copy of"_L1, *source));
        if (Entry *root = document.tree.root(); root && (!relative || relative == root)) {
            relative = root;
            relationship = Relationship::tvwChild;
        }
        Entry *copy =
            withRoom(document, [&] { return document.history.insertCopy(sourceTree, source, relationship, relative); });
        if (copy)
            noteExpandedCopy(document, *copy);
        NodeSelect(document, copy);
        NodeTextGet(document, copy);
        return copy;
    });
}

void noteExpandedCopy(Document &document, const Entry &copy)
{
    for (const Entry *entry = &copy; entry; entry = nextInOutline(entry, &copy)) {
        if (entry->expanded() && entry->childCount() > 0) {
            document.setExpansionLevel(0);
            return;
        }
    }
}

PastePlace placeForPaste(const Document &document, const Entry *source)
{
    Entry *selected = document.tree.selected();
    if (!selected)
        return document.tree.root() ? PastePlace{document.tree.root(), Relationship::tvwChild} : PastePlace{};
    if (!selected->isRoot())
        return {selected, Relationship::tvwNext};
    Entry *first = selected->firstChild();
    if (!first || first == source)
        return {selected, Relationship::tvwChild};
    return {first, Relationship::tvwPrevious};
}

const Entry *parentOfPaste(const PastePlace &place)
{
    return !place.relative || place.relationship == Relationship::tvwChild ? place.relative : place.relative->parent();
}

Document *documentOf(const EntryTree &tree)
{
    for (Document *document : ports().windows->documents()) {
        if (&document->tree == &tree)
            return document;
    }
    return nullptr;
}

void NodePaste(Document &document, EntryRef &source, bool removeSource)
{
    stepProcedure(&document, "modNodes NodePaste", [&] {
        Entry *entry = source.entry();
        if (!entry)
            return;
        const ActionScope action;
        const PastePlace place = placeForPaste(document, entry);
        // Moved below itself, an entry would be removed together with its only copy.
        if (removeSource && isWithin(parentOfPaste(place), *entry))
            return;
        const History::Step step(document.history, stepName("pasting of"_L1, *entry));
        Entry *copy = NodeDuplicate(document, *source.tree(), entry, place.relative, place.relationship);
        // A root stays, so that its document never is without an entry.
        if (removeSource && copy && !entry->isRoot())
            removePasted(source);
        NodeSelect(document, copy);
    });
}

Entry *survivorOf(const Entry &entry)
{
    if (Entry *previous = entry.previous())
        return previous;
    if (Entry *next = entry.next())
        return next;
    return entry.parent();
}

void showNothing(Document &document)
{
    NodeTextGet(document, nullptr);
    document.unsay();
}

void NodeDelete(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeDelete", [&] {
        if (!entry)
            return;
        const ActionScope action;
        const History::Step step(document.history, stepName("deletion of"_L1, *entry));
        Entry *parent = entry->parent();
        document.history.remove(entry);
        document.dismiss(NoticeKind::DocumentFull);
        if (parent && parent->childCount() == 0)
            document.history.setExpanded(parent, false);
    });
}

void NodeExpandAll(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeExpandAll", [&] {
        const ActionScope action;
        document.history.setExpandedAll(entry, true);
    });
}

void NodeCollapseAll(Document &document, Entry *entry)
{
    stepProcedure(&document, "modNodes NodeCollapseAll", [&] {
        const ActionScope action;
        document.history.setExpandedAll(entry, false);
    });
}

void NodeExpandToLevel(Document &document, Entry *entry, int level)
{
    stepProcedure(&document, "modNodes NodeExpandToLevel", [&] {
        const ActionScope action;
        document.history.expandToLevel(entry, level);
    });
}

void NodeSortAll(Document &document, Entry *entry, bool sorted)
{
    stepProcedure(&document, "modNodes NodeSortAll", [&] {
        if (!entry)
            return;
        History::Step step(document.history, stepName("sorting below"_L1, *entry));
        const HistoryBulk bulk(document.history);
        std::vector<const Entry *> reordered;
        for (Entry *each = entry; each; each = nextInOutline(each, entry)) {
            const std::vector<const Entry *> before = childrenOf(*each);
            document.history.setSorted(each, sorted);
            if (childrenOf(*each) != before)
                reordered.push_back(each);
        }
        if (reordered.size() == 1)
            step.setName(stepName("sorting below"_L1, *reordered.front()));
        else if (!reordered.empty())
            step.setName(u"sorting of %1 branches"_s.arg(reordered.size()));
    });
}

void NodeSetFontAll(Document &document, Entry *entry, const clsFont &font)
{
    stepProcedure(&document, "modNodes NodeSetFontAll", [&] {
        const History::Step step(document.history, u"change of the font of texts"_s);
        QFont base = document.baseFont();
        font.SetFont(base);
        // Showing each text in the pane would cost many times as much.
        const rtf::CharChange change = font.asChange();
        for (Entry *each = entry; each; each = nextInOutline(each, entry)) {
            if (const std::shared_ptr<EntryDocument> live = document.texts.find(*each)) {
                setFontOf(*live, base, change);
                continue;
            }
            const Inflated stored = inflated(document.tree.storedText(each));
            if (stored.state != TextState::Whole)
                continue;
            EntryText changed(stored.text, base);
            changed.change(change);
            document.history.setStoredText(each, NodeTextCompressIfRequired(changed.toRtf()));
        }
        // The pane may show none of these texts, or one that keeps its look.
        if (document.baseFont() != base)
            document.setBaseFont(base);
    });
}

void NodeActionStart()
{
    procedure("modNodes NodeActionStart", [] {
        Document *document = DocumentActive();
        if (document && document->view() && iActionDepth == 0)
            document->view()->setPanesVisible(false);
        if (iActionDepth == std::numeric_limits<qint16>::max())
            throw RunTimeError(ErrorNumber::Overflow);
        ++iActionDepth;
    });
}

void NodeActionEnd()
{
    procedure("modNodes NodeActionEnd", [] {
        Document *document = DocumentActive();
        if (--iActionDepth > 0 || !document)
            return;
        if (DocumentView *view = document->view())
            view->setPanesVisible(true);
        document->autoFitSplit();
    });
}

} // namespace modNodes
