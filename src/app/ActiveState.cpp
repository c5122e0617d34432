// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/ActiveState.h"

#include "app/AppPorts.h"
#include "app/CommandMenus.h"
#include "app/DocumentArea.h"
#include "app/MainSurface.h"
#include "app/Toolbar.h"
#include "commands/Dispatcher.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "window/frmDocument.h"

#include <utility>

using namespace Qt::StringLiterals;

ActiveState::ActiveState(DocumentArea &area, Dispatcher &dispatcher, CommandMenus &menus, Toolbar &toolbar,
                         MainSurface &surface)
    : m_area(area)
    , m_dispatcher(dispatcher)
    , m_surface(surface)
{
    connect(&area, &DocumentArea::opened, this, &ActiveState::follow);
    connect(&area, &DocumentArea::closed, this, [this] { note(Commands | StatusText); });
    connect(&area, &DocumentArea::activeChanged, this, [this] { note(Commands | Formats | StatusText); });
    connect(&area, &DocumentArea::statusTextChanged, this, [this] { note(StatusText); });
    // The options that items show are changed by commands alone.
    dispatcher.whenDone([this] {
        note(Commands);
        showNow();
    });
    // A click has turned the check mark or the button whatever its command did.
    connect(&menus, &CommandMenus::aboutToShow, this, [this] {
        m_shown.reset();
        note(Commands);
        showNow();
    });
    connect(&toolbar, &Toolbar::buttonClicked, this, [this] {
        note(Formats);
        showNow();
    });
    note(Commands | StatusText);
}

void ActiveState::follow(frmDocument *form)
{
    Document &document = form->document();
    const auto commands = [this] { note(Commands); };
    connect(&document.history, &History::changed, this, commands);
    connect(&document.history, &History::positionChanged, this, commands);
    connect(&document.history, &History::stepsChanged, this, commands);
    connect(&document.history, &History::rolledBack, this, commands);
    connect(&document.tree, &EntryTree::selectedChanged, this, commands);
    connect(&document.tree, &EntryTree::severalChanged, this, [this] { note(Commands | StatusText); });
    connect(&document.tree, &EntryTree::modelReset, this, [this] { note(Commands | StatusText); });
    // Only then is the document gone, and an entry copied from it with it.
    connect(&document.tree, &QObject::destroyed, this, commands);
    connect(&document.texts, &LiveTexts::shownChanged, this, commands);
    connect(&document, &Document::stateChanged, this, commands);
    connect(document.view(), &DocumentView::focusChanged, this, commands);
    connect(&document, &Document::statusTextChanged, this, [this, form] { noteOfActive(form, StatusText); });
    // It says what Undo would do.
    connect(form->treeView, &TreeView::labelTyped, this, commands);
    connect(form->textBox, &RichTextBox::selectionMoved, this, [this, form] { noteOfActive(form, Formats); });
    connect(form, &frmDocument::overwritingChanged, this, [this, form] { noteOfActive(form, Formats); });
    note(Commands | Formats | StatusText);
}

void ActiveState::note(int parts)
{
    m_due |= parts;
    if (!std::exchange(m_posted, true))
        QMetaObject::invokeMethod(this, &ActiveState::showNow, Qt::QueuedConnection);
}

void ActiveState::noteOfActive(const frmDocument *form, int parts)
{
    if (m_area.activeForm() == form)
        note(parts);
}

void ActiveState::showNow()
{
    m_posted = false;
    const int due = std::exchange(m_due, 0);
    if (due & Commands)
        showCommands();
    if (due & Formats)
        m_surface.UpdateToolbarStatus();
    if (due & StatusText)
        showStatusText();
}

void ActiveState::showCommands()
{
    CommandState state = m_dispatcher.state();
    if (m_shown == state && m_shownOptions == g_options) {
        noteKeptState();
        return;
    }
    if (m_shown && m_shown->documentCount == state.documentCount)
        m_surface.MenuEnableDynamic();
    else
        m_surface.MenuEnable(state.documentCount);
    m_shown = std::move(state);
    m_shownOptions = g_options;
}

void ActiveState::showStatusText()
{
    const Document *active = m_area.activeDocument();
    const std::optional<QString> said = active ? active->said() : m_area.said();
    if (said || !active->tree.selected())
        m_surface.UpdateStatusBarText(said.value_or(QString()));
    else if (active->tree.areSeveralSelected())
        m_surface.UpdateStatusBarText(u"%1 entries selected"_s.arg(active->tree.selectedCount()));
    else
        m_surface.UpdateStatusBar(active->tree.selected());
}
