// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AppPorts.h"
#include "commands/Dispatcher.h"
#include "document/Ports.h"

#include <QMainWindow>

#include <memory>

class ActiveState;
class CommandMenus;
class DocumentArea;
class GoToAnything;
class MainSurface;
class MenuBarKeys;
class PaneDocks;
class PlaceKeeper;
class QTimer;
class StatusBar;
class Toolbar;

// The main window: menu bar, toolbar, document windows and status bar.
class frmMain final : public QMainWindow, public MainWindow
{
    Q_OBJECT

public:
    explicit frmMain(QWidget *parent = nullptr);
    ~frmMain() override;

    // Everything that precedes the first appearance, the opening of the initial documents included. All ports must be
    // registered.
    void MDIForm_Load();

    RecentFileItems &recentFileItems();

    const Dispatcher &dispatcher() const { return m_dispatcher; }

    // The open documents, what shows their state, and what keeps that up to date.
    DocumentWindows &windows() const;

    MainSurface &surface() const { return *m_surface; }

    ActiveState &activeState() const { return *m_activeState; }

    PlaceKeeper &places() const { return *m_places; }

    // Asks about each document with unsaved changes, and saves those that are to be saved. False when one is to stay
    // open, which the user wants or a failed save.
    bool mayGiveUpDocuments();
    // Opens files that come from elsewhere. False while the program is busy or waits for an answer.
    bool openFiles(const QStringList &files);
    void comeToFront();
    // Ends the session: stores what is kept between runs and ends the log, the first time that it is called.
    void endSession();

    bool minimised() const override;
    WindowPlace place() const override;
    void setPlace(const WindowPlace &place) override;
    WindowStates states() const override;
    void setMaximised(bool mainWindow, bool documents) override;
    void setPanes(const QString &panes) override;
    void fitToScreen() override;
    void setToolbarVisible(bool visible) override;
    void setStatusBarVisible(bool visible) override;

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    bool MDIForm_QueryUnload();
    void MDIForm_OLEDragOver(QDropEvent &event);
    void MDIForm_OLEDragDrop(QDropEvent &event);
    void Timer1_Timer();

    CommandState commandState() const;

    Dispatcher m_dispatcher;
    // The documents go first, and tell it until then.
    std::unique_ptr<MainSurface> m_surface;
    std::unique_ptr<ActiveState> m_activeState;
    std::unique_ptr<DocumentArea> m_documents;
    PlaceKeeper *m_places = nullptr;
    std::unique_ptr<GoToAnything> m_goToAnything;
    MenuBarKeys *m_menuBarKeys = nullptr;
    CommandMenus *m_menus = nullptr;
    Toolbar *m_toolbar = nullptr;
    StatusBar *const m_statusBar;
    std::unique_ptr<PaneDocks> m_panes;
    QTimer *const m_timer;
    bool m_sessionEnded = false;
};
