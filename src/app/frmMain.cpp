// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/frmMain.h"

#include "app/ActiveState.h"
#include "app/AppCommands.h"
#include "app/CommandMenus.h"
#include "app/DesktopKeys.h"
#include "app/DocumentArea.h"
#include "app/GoToAnything.h"
#include "app/MainSurface.h"
#include "app/MenuBarKeys.h"
#include "app/PlaceKeeper.h"
#include "app/StatusBar.h"
#include "app/Toolbar.h"
#include "app/modMain.h"
#include "commands/CommandKeys.h"
#include "panes/PaneDocks.h"
#include "panes/PaneTable.h"
#include "util/Procedure.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMenuBar>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int timerInterval = 250;

} // namespace

frmMain::frmMain(QWidget *parent)
    : QMainWindow(parent)
    , m_dispatcher([this] { return commandState(); })
    , m_documents(std::make_unique<DocumentArea>(*this, m_dispatcher))
    , m_statusBar(new StatusBar)
    , m_timer(new QTimer(this))
{
    setObjectName(u"frmMain"_s);
    setWindowTitle(u"Quillery"_s);
    setAcceptDrops(true);

    menuBar()->setObjectName(u"menuBar"_s);
    menuBar()->setAccessibleName(u"Menu bar"_s);
    bindAppCommands(m_dispatcher, *this, m_documents->mdiArea());
    m_places = new PlaceKeeper(*m_documents, m_dispatcher, *this);
    m_goToAnything = std::make_unique<GoToAnything>(*m_documents, m_dispatcher, *m_places, *this);
    m_menuBarKeys = new MenuBarKeys(*menuBar());
    m_menus = new CommandMenus(*menuBar(), m_dispatcher);
    connect(m_documents.get(), &DocumentArea::menuWanted, m_menus, &CommandMenus::popUp);
    m_toolbar = new Toolbar(m_dispatcher);
    addToolBar(m_toolbar);
    // The menu that Qt offers by itself would show and hide the bar behind the option's back.
    setContextMenuPolicy(Qt::NoContextMenu);
    new DesktopKeyFilter(*this, m_dispatcher);

    setStatusBar(m_statusBar);
    connect(m_statusBar, &StatusBar::insertClicked, this, [this] {
        if (frmDocument *form = m_documents->activeForm())
            form->toggleOverwriting();
    });
    m_surface = std::make_unique<MainSurface>(*m_menus, *m_toolbar, *m_statusBar, *m_documents, m_dispatcher);
    m_activeState = std::make_unique<ActiveState>(*m_documents, m_dispatcher, *m_menus, *m_toolbar, *m_surface);

    connect(m_places, &PlaceKeeper::changed, m_activeState.get(), &ActiveState::noteCommands);

    const PaneHost host = {m_dispatcher, *m_documents, [] { return appPorts().settings; }};
    m_panes = std::make_unique<PaneDocks>(*this, host, paneTable(), [this] {
        if (frmDocument *form = m_documents->activeForm())
            form->restorePaneFocus();
    });
    connect(m_documents.get(), &DocumentArea::activeChanged, m_panes.get(), &PaneDocks::follow);
    connect(m_panes.get(), &PaneDocks::stateChanged, this, noteKeptState);
    Q_ASSERT(m_dispatcher.unbound().isEmpty());

    m_timer->setObjectName(u"Timer1"_s);
    m_timer->setInterval(timerInterval);
    connect(m_timer, &QTimer::timeout, this, &frmMain::Timer1_Timer);
}

frmMain::~frmMain()
{
    m_panes->disconnect(this);
}

CommandState frmMain::commandState() const
{
    CommandState state = currentCommandState();
    if (m_places) {
        state.CanGoBack = m_places->trail().canGoBack();
        state.CanGoForward = m_places->trail().canGoForward();
    }
    return state;
}

DocumentWindows &frmMain::windows() const
{
    return *m_documents;
}

void frmMain::MDIForm_Load()
{
    procedure("frmMain MDIForm_Load", [this] {
        modMain::Initialise();
        setToolbarVisible(g_options.ViewToolbar);
        setStatusBarVisible(g_options.ViewStatusbar);
        m_documents->showOffers();
        m_statusBar->start();
        m_timer->start();
    });
}

RecentFileItems &frmMain::recentFileItems()
{
    return *m_menus;
}

// The area takes its colour from the palette only once.
void frmMain::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_documents->mdiArea().setBackground(palette().dark());
}

void frmMain::closeEvent(QCloseEvent *event)
{
    event->setAccepted(MDIForm_QueryUnload());
}

// While the active document is minimised none of its panes has the keyboard.
void frmMain::keyPressEvent(QKeyEvent *event)
{
    const KeyBinding *binding = bindingOf(*event);
    if (m_documents->activeForm() && binding && binding->command == "keyWindowNext")
        m_dispatcher.run(binding->command);
    else
        QMainWindow::keyPressEvent(event);
}

// Whether the program ends. The documents' questions come first, and all of them before the first window goes, so that
// a Cancel leaves everything open; the list of open documents is stored when the end is certain, with all of them open.
bool frmMain::MDIForm_QueryUnload()
{
    const bool bMayEnd = procedure("frmMain MDIForm_QueryUnload", [this] {
        if (m_documents->forms().empty())
            return true;
        return userAgrees(u"Do you really want to exit the application?"_s) && mayGiveUpDocuments();
    });
    if (!bMayEnd)
        return false;
    endSession();
    for (frmDocument *form : m_documents->forms()) {
        // What was not saved was given up in the answers above; it is not asked about again.
        form->document().giveUpChanges();
        form->close();
    }
    return true;
}

bool frmMain::mayGiveUpDocuments()
{
    const std::vector<frmDocument *> forms = m_documents->forms();
    return std::ranges::all_of(forms, &frmDocument::Form_QueryUnload);
}

void frmMain::endSession()
{
    if (std::exchange(m_sessionEnded, true))
        return;
    m_documents->endSession();
    m_timer->stop();
    modMain::Finalise();
}

void frmMain::moveEvent(QMoveEvent *event)
{
    QMainWindow::moveEvent(event);
    noteKeptState();
}

void frmMain::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    noteKeptState();
}

// Keeps typing going to the document when the main window itself, and none of its controls, has the keyboard focus.
void frmMain::Timer1_Timer()
{
    const QWidget *focus = QApplication::focusWidget();
    const bool bFocusIsLost =
        !focus || focus == this || m_documents->holdsFocus(*focus) || m_menuBarKeys->keepsKeyboardForNothing();
    // A document window being moved or sized by keyboard holds the mouse.
    if (bBusy || !m_documents->activeForm() || !bFocusIsLost || !isActiveWindow() ||
        QApplication::activePopupWidget() || QWidget::mouseGrabber())
        return;
    m_documents->activeForm()->restorePaneFocus();
}
