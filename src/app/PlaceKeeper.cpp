// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/PlaceKeeper.h"

#include "app/DocumentArea.h"
#include "commands/CommandTable.h"
#include "commands/Dispatcher.h"
#include "document/Globals.h"
#include "document/modNodes.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QMouseEvent>

namespace
{

// In milliseconds: longer than a key that is held down rests, shorter than a look at a text.
constexpr int usualRest = 900;

// The command that a button of the mouse is; empty for none.
std::string_view commandOf(Qt::MouseButton button)
{
    switch (button) {
    case Qt::BackButton:
        return "mnuToolsBack";
    case Qt::ForwardButton:
        return "mnuToolsForward";
    default:
        return {};
    }
}

} // namespace

PlaceKeeper::PlaceKeeper(DocumentArea &area, Dispatcher &dispatcher, QWidget &mainWindow)
    : QObject(&mainWindow)
    , m_area(area)
    , m_dispatcher(dispatcher)
    , m_mainWindow(mainWindow)
{
    m_rest.setSingleShot(true);
    m_rest.setInterval(usualRest);
    connect(&m_rest, &QTimer::timeout, this, &PlaceKeeper::settle);
    connect(&m_trail, &PlaceTrail::changed, this, &PlaceKeeper::changed);
    connect(&area, &DocumentArea::opened, this, &PlaceKeeper::follow);
    connect(&area, &DocumentArea::activeChanged, this, [this] { note(false); });
    dispatcher.bind("mnuToolsBack", [this](int) { goBack(); });
    dispatcher.bind("mnuToolsForward", [this](int) { goForward(); });
    qApp->installEventFilter(this);
}

void PlaceKeeper::setRest(int milliseconds)
{
    m_rests = milliseconds >= 0;
    m_rest.stop();
    if (m_rests)
        m_rest.setInterval(milliseconds);
}

void PlaceKeeper::settle()
{
    note(false);
    m_rest.stop();
    m_trail.settle();
}

void PlaceKeeper::follow(frmDocument *form)
{
    const EntryTree &tree = form->document().tree;
    connect(&tree, &EntryTree::selectedChanged, this, [this, form] { noteOf(form); });
    connect(&tree, &EntryTree::modelReset, this, [this, form] { noteOf(form); });
}

void PlaceKeeper::noteOf(const frmDocument *form)
{
    if (m_area.activeForm() != form)
        return;
    const CommandRow *running = m_dispatcher.running();
    note(!form->treeView->isTakingKey() && (!running || running->jumps));
}

void PlaceKeeper::note(bool isMeant)
{
    // What a file leaves selected is shown once it was read.
    if (bBusy && m_rests)
        m_rest.start();
    Document *document = m_area.activeDocument();
    const Entry *entry = document && !bBusy ? document->tree.selected() : nullptr;
    if (!entry)
        return;
    m_trail.show({document, entry->id()});
    if (isMeant)
        m_trail.settle();
    else if (m_rests)
        m_rest.start();
}

void PlaceKeeper::goTo(const Place &place)
{
    Entry *entry = place.document ? place.document->tree.entry(place.entry) : nullptr;
    DocumentView *view = entry ? place.document->view() : nullptr;
    if (!view)
        return;
    view->window.bringToFront();
    const bool isShown = place.document->texts.entryAsShown() == entry;
    modNodes::NodeSelect(*place.document, entry);
    if (frmDocument *form = m_area.activeForm(); form && !isShown)
        form->textBox->returnToPlace();
    place.document->autoFitSplit();
}

// What is shown may be so by means that nobody has told of.
void PlaceKeeper::goBack()
{
    note(false);
    if (const std::optional<Place> place = m_trail.goBack())
        goTo(*place);
}

void PlaceKeeper::goForward()
{
    note(false);
    if (const std::optional<Place> place = m_trail.goForward())
        goTo(*place);
}

bool PlaceKeeper::eventFilter(QObject *watched, QEvent *event)
{
    const bool isPress = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (!isPress && event->type() != QEvent::MouseButtonRelease)
        return QObject::eventFilter(watched, event);
    const auto &mouse = *static_cast<QMouseEvent *>(event);
    const std::string_view command = commandOf(mouse.button());
    const auto *widget = qobject_cast<const QWidget *>(watched);
    if (command.empty() || !widget || widget->window() != &m_mainWindow)
        return QObject::eventFilter(watched, event);
    // While something is dragged, the mouse belongs to that.
    if (isPress && mouse.buttons() == mouse.button())
        m_dispatcher.run(command);
    // The panes would select what is below the pointer.
    return true;
}
