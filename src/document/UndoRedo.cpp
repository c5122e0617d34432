// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/UndoRedo.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/OutlinePane.h"
#include "document/TextPane.h"
#include "document/modNodes.h"
#include "util/Procedure.h"

namespace
{

// Shows what the history left selected.
void showPosition(Document &document)
{
    // What is open now was not opened to a level.
    document.setExpansionLevel(0);
    if (DocumentView *view = document.view()) {
        const QFont font = document.shownOutlineFont();
        if (font != view->trvOutline.Font())
            view->trvOutline.setFont(font);
    }
    if (Entry *selected = document.tree.selected())
        modNodes::NodeSelectFull(document, selected);
    else
        modNodes::showNothing(document);
    // In the text, where the last step was.
    const QTextCursor place = document.texts.takeSteppedAt();
    if (DocumentView *view = document.view();
        view && !place.isNull() && place.document() == view->txtRTF.caret().document())
        view->txtRTF.setCaret(place);
}

template <typename Walk>
bool walkHistory(const char *name, Document &document, Walk &&walk)
{
    return procedure(name, [&] {
        const modNodes::ActionScope action;
        document.texts.takeSteppedAt();
        const clsFont textFont = document.m_fntTextFont;
        const bool there = walk(document.history);
        // The text that is shown need not be one that knows what it had.
        if (document.m_fntTextFont != textFont)
            document.takeBaseFont();
        showPosition(document);
        if (there)
            document.history.noteSight();
        return there;
    });
}

} // namespace

bool undoStep(Document &document)
{
    return document.history.canUndo() &&
           walkHistory("UndoRedo undoStep", document, [](History &history) { return history.undo(); });
}

bool redoStep(Document &document)
{
    return document.history.canRedo() &&
           walkHistory("UndoRedo redoStep", document, [](History &history) { return history.redo(); });
}

bool goToStep(Document &document, int position)
{
    return walkHistory("UndoRedo goToStep", document, [&](History &history) { return history.goTo(position); });
}
