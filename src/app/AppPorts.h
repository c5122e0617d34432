// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class LockKeys;
class SessionKeeper;
class SessionLog;
class SettingsStore;
class Vault;
class VersionKeeper;
class modMRU;

// What start-up and shutdown ask of the program around them, beside the core's ports.

// A place on the desktop in twips (1440 to the logical inch).
struct WindowPlace {
    float left = 0;
    float top = 0;
    float width = 0;
    float height = 0;

    bool operator==(const WindowPlace &other) const = default;
};

// Which windows fill their room, and the main window's place while it does not.
struct WindowStates {
    bool mainMaximised = false;
    bool documentsMaximised = false;
    WindowPlace normalPlace;
    // Which panes are shown where, as PaneDocks tells it.
    QString panes = {};

    bool operator==(const WindowStates &other) const = default;
};

class MainWindow
{
public:
    virtual ~MainWindow() = default;
    virtual bool minimised() const = 0;
    virtual WindowPlace place() const = 0;
    // Moves and sizes the window, onto a screen if the place lies on none.
    virtual void setPlace(const WindowPlace &place) = 0;
    virtual WindowStates states() const = 0;
    // The main window fills its screen when it is shown, and a document's window the room for documents when it is the
    // first.
    virtual void setMaximised(bool mainWindow, bool documents) = 0;
    virtual void setPanes(const QString &panes) = 0;
    // Moves and cuts the window so that it lies on one screen whole.
    virtual void fitToScreen() = 0;
    virtual void setToolbarVisible(bool visible) = 0;
    virtual void setStatusBarVisible(bool visible) = 0;
};

// The recent-file items of the File menu. Items are numbered from 1, created when first shown, and then only hidden.
class RecentFileItems
{
public:
    virtual ~RecentFileItems() = default;
    // Disables and hides every item.
    virtual void hideAll() = 0;
    // Enables an item and shows it with a caption such as "&1 /home/me/notes.qly".
    virtual void showItem(int iItem, const QString &caption) = 0;
    virtual void setSeparatorVisible(bool visible) = 0;
};

// What of the application help file is shown.
enum class HelpTopic { Contents, Search };

struct AppPorts {
    SettingsStore *settings = nullptr;
    MainWindow *mainWindow = nullptr;
    modMRU *recentFiles = nullptr;
    const SessionLog *log = nullptr;
    // The command line's argument text: file names separated by single blanks.
    QString commandLine;
    // Null where there is no keyboard to ask.
    LockKeys *lockKeys = nullptr;
    // The same as the program was given it. Where there are any, an argument that names an existing file as a whole is
    // that file, and only the others are separated by blanks.
    QStringList arguments = {};
    // Null where a session is stored at its end alone.
    SessionKeeper *keeper = nullptr;
    // Null where documents are not kept against a crash.
    Vault *vault = nullptr;
    // Null where no versions are kept.
    VersionKeeper *versions = nullptr;
    // The application help file, which only the desktop's viewer reads, and how to show it; raises error 53 when the
    // viewer shows nothing.
    QString helpFile = {};
    std::function<void(const QString &sFile, HelpTopic topic)> showHelpFile = {};
};

// The registered ports of the application; every one but lockKeys, keeper, vault, versions and showHelpFile must be set
// before Initialise.
AppPorts &appPorts();

// To be called where something that is kept between runs may have changed.
void noteKeptState();
