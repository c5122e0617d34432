// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/modTools.h"

#include "document/ActiveDocument.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/UndoRedo.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace
{

// Moves in the history of the active document, shows where that led, and says it.
void travel(const char *name, const std::function<QString(Document &)> &move)
{
    onActiveDocument(name, [&](Document &document) {
        const QString said = move(document);
        if (said.isEmpty())
            return;
        if (DocumentView *view = document.view())
            view->window.autoFitSplit();
        document.sayOfStep(said);
    });
}

QString inWords(int steps)
{
    return steps == 1 ? u"one step"_s : u"%1 steps"_s.arg(steps);
}

} // namespace

namespace modTools
{

void ToolsUndo()
{
    travel("modTools ToolsUndo", [](Document &document) {
        const QString name = document.history.undoName();
        return undoStep(document) ? u"Undid "_s + name : QString();
    });
}

void ToolsRedo()
{
    travel("modTools ToolsRedo", [](Document &document) {
        const QString name = document.history.redoName();
        return redoStep(document) ? u"Redid "_s + name : QString();
    });
}

void ToolsGoTo(int position)
{
    travel("modTools ToolsGoTo", [position](Document &document) {
        const int before = document.history.position();
        goToStep(document, position);
        const int gone = document.history.position() - before;
        if (gone == 0)
            return QString();
        return gone < 0 ? u"Undid "_s + inWords(-gone) : u"Redid "_s + inWords(gone);
    });
}

} // namespace modTools
