// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <Qt>

#include <functional>
#include <memory>
#include <string_view>

class Dispatcher;
class Document;
class DocumentWindows;
class QWidget;
class SettingsStore;

// What panes are given of the program around them; it outlives them.
struct PaneHost {
    Dispatcher &dispatcher;
    DocumentWindows &windows;
    // What is kept between runs; null while nothing is kept.
    std::function<SettingsStore *()> settings;
};

// What can be docked beside the documents and shows something of the active one. A pane is one file, and one row of the
// table; where it is docked, how it is shown and that its place is remembered is the same for all.
class Pane
{
public:
    virtual ~Pane() = default;
    // Its title, and what it is called by whoever hears the screen.
    virtual QString name() const = 0;
    // Where it stands until it is put elsewhere.
    virtual Qt::DockWidgetArea area() const = 0;
    // Makes its content, once; the keyboard goes to the content or its focus proxy.
    virtual QWidget *makeWidget() = 0;
    // Another document is active, or none.
    virtual void follow(Document *active) = 0;

    // The user asked for it by its key, and it has been shown: it takes the keyboard. False where its content does
    // that by itself.
    virtual bool enter() { return false; }

    // Esc was pressed in it. False where there is nothing of its own to end; then Esc leads out of it.
    virtual bool escape() { return false; }
};

struct PaneRow {
    // The command that shows and hides the pane.
    std::string_view command;
    std::unique_ptr<Pane> (*make)(const PaneHost &host);
    // The command that shows it and goes into it, wherever the keyboard is; empty for none.
    std::string_view entering = {};
};
