// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Making one entry of several, and two of one.

#include "outline/SelectedEntries.h"
#include "outline/modOutline.h"

#include "document/ActiveDocument.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/SplitText.h"
#include "document/TextPane.h"
#include "document/modNodes.h"
#include "formats/PlainText.h"
#include "model/OutlineOrder.h"
#include "model/ShownLabel.h"

#include <QTextFrame>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// A label that is the first line of its text, as that of an entry which was split off is, is not put there again.
QString headingOf(const Entry &entry, const Entry &first, const QString &text)
{
    const QString label = entry.label().simplified();
    const bool isFirstLine = label == firstLine(text) || label == firstLine(text, text.size());
    return label.isEmpty() || isFirstLine || label == first.label().simplified() ? QString() : entry.label();
}

void takeInEntry(History &history, Entry *first, Entry *entry)
{
    if (first->childCount() == 0)
        history.setExpanded(first, entry->expanded());
    while (Entry *child = entry->firstChild())
        history.move(child, Relationship::tvwChild, first);
    if (entry->tagged() && !first->isRoot())
        history.setTagged(first, true);
    if (!entry->foreignRecords().empty()) {
        ForeignRecordList records = first->foreignRecords();
        records.insert(records.end(), entry->foreignRecords().begin(), entry->foreignRecords().end());
        history.setForeignRecords(first, records);
    }
    history.remove(entry);
}

void putCaret(const DocumentView &view, int position)
{
    QTextCursor caret = view.txtRTF.caret();
    caret.setPosition(std::clamp(position, 0, caret.document()->characterCount() - 1));
    view.txtRTF.setCaret(caret);
}

// Behind the entry; of the root, which has no siblings, before what is inside.
Entry *insertBehind(Document &document, Entry *entry)
{
    const bool isInside = entry->isRoot();
    Entry *first = entry->firstChild();
    return modNodes::withRoom(document, [&] {
        if (!isInside)
            return document.history.insert(Relationship::tvwNext, entry);
        return first ? document.history.insert(Relationship::tvwPrevious, first)
                     : document.history.insert(Relationship::tvwChild, entry);
    });
}

void splitEntry(Document &document, Entry *entry, const QTextCursor &caret)
{
    if (caret.currentFrame() != caret.document()->rootFrame() ||
        QTextCursor(caret.document()->findBlock(caret.selectionStart())).currentFrame() !=
            caret.document()->rootFrame()) {
        document.say(u"The caret is inside a table: put it before or behind the table to split the entry there"_s);
        return;
    }
    const std::optional<SplitText> split = splitText(document.tree.storedText(entry), document.baseFont(), caret);
    if (!split) {
        document.say(u"The text of this entry cannot be taken apart"_s);
        return;
    }
    if (split->behind.isEmpty()) {
        document.say(u"There is no text behind the caret to make an entry of"_s);
        return;
    }
    const modNodes::ActionScope action;
    const History::Step step(document.history, stepName("splitting of"_L1, *entry));
    Entry *made = insertBehind(document, entry);
    const QString label = firstLine(split->words);
    document.history.setLabel(made, label.isEmpty() ? u"New Entry"_s : label);
    document.history.setStoredText(made, split->behind);
    document.history.setStoredText(entry, split->before);
    modNodes::NodeSelect(document, made);
}

} // namespace

namespace modOutline
{

bool joinEntries(Document &document, const std::vector<Entry *> &entries)
{
    if (entries.size() < 2)
        return false;
    Entry *first = entries.front();
    std::vector<JoinedPart> parts;
    for (const Entry *entry : entries) {
        const QByteArray text = document.tree.storedText(entry);
        parts.push_back({text, entry == first ? QString() : headingOf(*entry, *first, plainTextOf(text))});
    }
    const std::optional<JoinedText> joined = joinedText(parts, document.baseFont());
    if (!joined) {
        document.say(u"These entries cannot be joined: their text could not be shown whole"_s);
        return false;
    }
    const modNodes::ActionScope action;
    const History::Step step(document.history, stepName("joining of"_L1, *first));
    {
        const HistoryBulk bulk(document.history);
        for (auto entry = entries.begin() + 1; entry != entries.end(); ++entry)
            takeInEntry(document.history, first, *entry);
        document.history.setStoredText(first, joined->text);
    }
    document.dismiss(NoticeKind::DocumentFull);
    modNodes::NodeSelect(document, first);
    // Whatever is shown of it is not the text that it has now.
    modNodes::NodeTextGet(document, first);
    if (const DocumentView *view = document.view())
        putCaret(*view, joined->seam);
    return true;
}

void OutlineJoin()
{
    onActiveDocument("modOutline OutlineJoin", [](Document &document) {
        Entry *entry = document.tree.selected();
        if (document.tree.areSeveralSelected()) {
            const std::vector<Entry *> branches = branchesOf(document.tree.selectedEntries());
            if (areNeighbours(branches) && !document.bReadOnly())
                joinEntries(document, branches);
            return;
        }
        if (entry && entry->next() && !document.bReadOnly())
            joinEntries(document, {entry, entry->next()});
    });
}

void OutlineSplit()
{
    onActiveDocument("modOutline OutlineSplit", [](Document &document) {
        Entry *entry = document.tree.selected();
        const DocumentView *view = document.view();
        if (entry && view && document.texts.entryAsShown() == entry && !document.bTextWithheld() &&
            !document.bReadOnly())
            splitEntry(document, entry, view->txtRTF.caret());
    });
}

} // namespace modOutline
