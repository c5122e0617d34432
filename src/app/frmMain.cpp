// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/frmMain.h"

#include "app/AppCommands.h"
#include "app/CommandMenus.h"
#include "app/DesktopKeys.h"
#include "app/DocumentFrame.h"
#include "app/DroppedFiles.h"
#include "app/EmptyArea.h"
#include "app/MenuBarKeys.h"
#include "app/ScreenPlacement.h"
#include "app/StatusBar.h"
#include "app/Toolbar.h"
#include "app/Tour.h"
#include "app/modMRU.h"
#include "app/modMain.h"
#include "commands/CommandKeys.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/TextPane.h"
#include "document/modDoc.h"
#include "util/FullPath.h"
#include "util/Procedure.h"
#include "window/frmDocument.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMenuBar>
#include <QScreen>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int timerInterval = 250;

QList<QRect> freeScreenAreas()
{
    QList<QRect> areas;
    for (const QScreen *screen : QGuiApplication::screens())
        areas.append(screen->availableGeometry());
    return areas;
}

} // namespace

frmMain::frmMain(QWidget *parent)
    : QMainWindow(parent)
    , m_area(new QMdiArea)
    , m_statusBar(new StatusBar)
    , m_timer(new QTimer(this))
{
    setObjectName(u"frmMain"_s);
    setWindowTitle(u"Quillery"_s);
    setAcceptDrops(true);

    m_area->setObjectName(u"mdiArea"_s);
    m_area->setAccessibleName(u"Documents"_s);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(m_area);
    m_emptyArea = new EmptyArea(*m_area);
    connect(m_emptyArea, &EmptyArea::itemChosen, this, [this](const QString &item) {
        if (auto *action = findChild<QAction *>(item); action && action->isEnabled())
            action->trigger();
        showEmptyArea();
    });
    connect(m_emptyArea, &EmptyArea::tourChosen, this, Tour::open);
    connect(m_area, &QMdiArea::subWindowActivated, this,
            [this](QMdiSubWindow *window) { frameActivated(qobject_cast<DocumentFrame *>(window)); });

    menuBar()->setObjectName(u"menuBar"_s);
    menuBar()->setAccessibleName(u"Menu bar"_s);
    bindAppCommands(m_dispatcher, *this, *m_area);
    m_menuBarKeys = new MenuBarKeys(*menuBar());
    m_menus = new CommandMenus(*menuBar(), m_dispatcher);
    m_toolbar = new Toolbar(m_dispatcher);
    addToolBar(m_toolbar);
    // The menu that Qt offers by itself would show and hide the bar behind the option's back.
    setContextMenuPolicy(Qt::NoContextMenu);

    new DesktopKeyFilter(*this, m_dispatcher);

    setStatusBar(m_statusBar);
    connect(m_statusBar, &StatusBar::insertClicked, this, [this] {
        if (m_active)
            m_active->form()->toggleOverwriting();
    });

    m_timer->setObjectName(u"Timer1"_s);
    m_timer->setInterval(timerInterval);
    connect(m_timer, &QTimer::timeout, this, &frmMain::Timer1_Timer);
}

frmMain::~frmMain()
{
    // The documents' windows may still call this one while they go.
    m_area->disconnect(this);
    for (const DocumentFrame *frame : findChildren<DocumentFrame *>())
        frame->form()->document().tree.disconnect(this);
    m_active = nullptr;
    for (DocumentFrame *frame : std::exchange(m_frames, {})) {
        frame->disconnect(this);
        delete frame;
    }
}

void frmMain::MDIForm_Load()
{
    procedure("frmMain MDIForm_Load", [this] {
        modMain::Initialise();
        setToolbarVisible(g_options.ViewToolbar);
        setStatusBarVisible(g_options.ViewStatusbar);
        showEmptyArea();
        m_statusBar->start();
        m_timer->start();
    });
}

RecentFileItems &frmMain::recentFileItems()
{
    return *m_menus;
}

Document &frmMain::createDocument(std::unique_ptr<Outline> outline)
{
    auto *form = new frmDocument(m_dispatcher, std::move(outline));
    auto *frame = new DocumentFrame(form);
    connect(form, &frmDocument::menuWanted, m_menus, &CommandMenus::popUp);
    connect(frame, &DocumentFrame::closed, this, &frmMain::frameClosed);
    // Only then is the document gone, and an entry copied from it with it.
    connect(&form->document().tree, &QObject::destroyed, this, &frmMain::MenuEnableDynamic);
    m_area->addSubWindow(frame);
    m_frames.push_back(frame);
    // Before the main window shows, the area activates nothing by itself.
    const bool maximised = m_frames.size() == 1 && m_documentsMaximised;
    m_active = frame;
    m_emptyArea->hide();
    if (maximised)
        frame->showMaximized();
    else
        frame->show();
    m_area->setActiveSubWindow(frame);
    MenuEnable(iDocumentCount);
    return form->document();
}

Document *frmMain::activeDocument() const
{
    return m_active ? &m_active->form()->document() : nullptr;
}

std::vector<Document *> frmMain::documents() const
{
    std::vector<Document *> open;
    for (const DocumentFrame *frame : m_frames)
        open.push_back(&frame->form()->document());
    return open;
}

void frmMain::closeMainWindow()
{
    close();
}

void frmMain::MenuEnable(int documentCount)
{
    procedure("modMain MenuEnable", [&] {
        noteKeptState();
        CommandState state = currentCommandState();
        state.documentCount = documentCount;
        applyState(state);
    });
}

void frmMain::MenuEnableDynamic()
{
    procedure("modMain MenuEnableDynamic", [this] {
        noteKeptState();
        applyState(currentCommandState());
    });
}

// What depends on the open documents and what depends on the selected entry are one: nothing is left half said.
void frmMain::applyState(const CommandState &state)
{
    m_menus->apply(state, g_options);
    m_toolbar->apply(state);
    showOverwriting();
}

void frmMain::UpdateToolbarStatus()
{
    procedure("modMain UpdateToolbarStatus", [this] {
        showOverwriting();
        const Document *document = activeDocument();
        if (!document)
            return;
        m_toolbar->applyFormats(document->txtRTF);
        CommandState state;
        state.ExpansionLevel = document->m_iExpansionLevel;
        m_toolbar->press(state);
    });
}

void frmMain::showOverwriting()
{
    m_statusBar->setOverwriting(m_active ? std::optional(m_active->form()->overwriting()) : std::nullopt);
}

void frmMain::UpdateStatusBar(const Entry *entry)
{
    procedure("modMain UpdateStatusBar", [&] {
        if (entry)
            UpdateStatusBarText(entry->label());
    });
}

void frmMain::UpdateStatusBarText(const QString &text)
{
    procedure("modMain UpdateStatusBarText", [&] { m_statusBar->setText(text); });
}

bool frmMain::minimised() const
{
    return isMinimized();
}

WindowPlace frmMain::place() const
{
    return placeFromPixels(QRect(pos(), size()), logicalDpiX());
}

void frmMain::setPlace(const WindowPlace &place)
{
    const QRect placed = placedOnScreens(pixelsFromPlace(place, logicalDpiX()), freeScreenAreas());
    resize(placed.size());
    move(placed.topLeft());
}

WindowStates frmMain::states() const
{
    return {isMaximized(), documentsMaximised(), placeFromPixels(normalGeometry(), logicalDpiX())};
}

void frmMain::setMaximised(bool mainWindow, bool documents)
{
    setWindowState(windowState().setFlag(Qt::WindowMaximized, mainWindow));
    m_documentsMaximised = documents;
}

void frmMain::fitToScreen()
{
    // The frame is not there yet; titles are about this high.
    constexpr QMargins frame(4, 32, 4, 4);
    const QRect fitted = fittedToScreen(QRect(pos(), size()).marginsAdded(frame), freeScreenAreas());
    resize(fitted.marginsRemoved(frame).size());
    move(fitted.topLeft());
}

bool frmMain::documentsMaximised() const
{
    return m_active && !m_active->isMinimized() ? m_active->isMaximized() : m_documentsMaximised;
}

// Shows what can be done while there is no document.
void frmMain::showEmptyArea()
{
    if (m_frames.empty()) {
        QStringList recentFiles = appPorts().recentFiles->list();
        recentFiles.removeAll(QString());
        m_emptyArea->setRecentFiles(recentFiles);
        m_emptyArea->setTourOffered(Tour::isThere());
    }
    m_emptyArea->setVisible(m_frames.empty());
}

void frmMain::setToolbarVisible(bool visible)
{
    m_toolbar->setVisible(visible);
}

void frmMain::setStatusBarVisible(bool visible)
{
    m_statusBar->setVisible(visible);
}

// The area takes its colour from the palette only once.
void frmMain::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_area->setBackground(palette().dark());
}

void frmMain::closeEvent(QCloseEvent *event)
{
    event->setAccepted(MDIForm_QueryUnload());
}

// While the active document is minimised none of its panes has the keyboard.
void frmMain::keyPressEvent(QKeyEvent *event)
{
    const KeyBinding *binding = bindingOf(*event);
    if (m_active && binding && binding->command == "keyWindowNext")
        m_dispatcher.run(binding->command);
    else
        QMainWindow::keyPressEvent(event);
}

// Whether the program ends. The documents' questions come first, and all of them before the first window goes, so that
// a Cancel leaves everything open; the list of open documents is stored when the end is certain, with all of them open.
bool frmMain::MDIForm_QueryUnload()
{
    const bool bMayEnd = procedure("frmMain MDIForm_QueryUnload", [this] {
        if (m_frames.empty())
            return true;
        return ports().dialogs->ask(u"Do you really want to exit the application?"_s) == Answer::Yes &&
               mayGiveUpDocuments();
    });
    if (!bMayEnd)
        return false;
    endSession();
    const std::vector<DocumentFrame *> frames = m_frames;
    for (const DocumentFrame *frame : frames) {
        // What was not saved was given up in the answers above; it is not asked about again.
        frame->form()->document().giveUpChanges();
        frame->form()->close();
    }
    return true;
}

bool frmMain::mayGiveUpDocuments()
{
    const std::vector<DocumentFrame *> frames = m_frames;
    return std::all_of(frames.begin(), frames.end(),
                       [](const DocumentFrame *frame) { return frame->form()->Form_QueryUnload(); });
}

void frmMain::endSession()
{
    if (std::exchange(m_sessionEnded, true))
        return;
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

void frmMain::dragEnterEvent(QDragEnterEvent *event)
{
    MDIForm_OLEDragOver(*event);
}

void frmMain::dragMoveEvent(QDragMoveEvent *event)
{
    MDIForm_OLEDragOver(*event);
}

void frmMain::dropEvent(QDropEvent *event)
{
    MDIForm_OLEDragOver(*event);
    MDIForm_OLEDragDrop(*event);
}

void frmMain::MDIForm_OLEDragOver(QDropEvent &event)
{
    event.setDropAction(Qt::CopyAction);
    event.accept();
}

void frmMain::MDIForm_OLEDragDrop(QDropEvent &event)
{
    procedure("frmMain MDIForm_OLEDragDrop", [&] {
        if (bBusy || QApplication::activeModalWidget())
            return;
        for (const QString &sFile : droppedFiles(*event.mimeData()))
            modDoc::DocLoad(FullPathName(sFile));
    });
}

// Keeps typing going to the document when the main window itself, and none of its controls, has the keyboard focus.
void frmMain::Timer1_Timer()
{
    const QWidget *focus = QApplication::focusWidget();
    const bool bFocusIsLost = !focus || focus == this || focus == m_area || focus == m_area->viewport() ||
                              qobject_cast<const DocumentFrame *>(focus) || m_menuBarKeys->keepsKeyboardForNothing();
    // A document window being moved or sized by keyboard holds the mouse.
    if (bBusy || !m_active || !bFocusIsLost || !isActiveWindow() || QApplication::activePopupWidget() ||
        QWidget::mouseGrabber())
        return;
    m_active->form()->restorePaneFocus();
}

void frmMain::frameActivated(DocumentFrame *frame)
{
    // No frame is active while another program is; the document commands work on stays.
    if (!frame || std::find(m_frames.begin(), m_frames.end(), frame) == m_frames.end())
        return;
    m_active = frame;
    frame->form()->Form_Activate();
    frame->form()->restorePaneFocus();
    MenuEnable(iDocumentCount);
    MenuEnableDynamic();
}

void frmMain::frameClosed(DocumentFrame *frame)
{
    m_documentsMaximised = frame->isMaximized();
    std::erase(m_frames, frame);
    if (m_active == frame)
        m_active = m_frames.empty() ? nullptr : m_frames.back();
    // No other window's label takes the place of this one's.
    if (!m_active)
        UpdateStatusBarText(QString());
    MenuEnable(iDocumentCount);
    MenuEnableDynamic();
    if (!m_sessionEnded)
        showEmptyArea();
}
