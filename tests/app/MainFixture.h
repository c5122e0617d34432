// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ActiveState.h"
#include "app/AppFixture.h"
#include "app/MainSurface.h"
#include "app/frmMain.h"
#include "commands/CommandTable.h"
#include "document/DocumentView.h"
#include "document/OutlinePane.h"
#include "document/modNodes.h"

#include <QAction>
#include <QMenu>

// The real main window with real document windows and formats; dialogs, pointer, clipboard and settings are scripted.
class MainFixture
{
public:
    MainFixture()
    {
        ports().windows = &main.windows();
        ports().recentFiles = &recentFiles;
        appPorts().mainWindow = &main;
        appPorts().recentFiles = &recentFiles;
    }

    // Loads and shows the main window as the program's start does.
    void start()
    {
        main.MDIForm_Load();
        main.show();
        refresh();
    }

    // What was announced shows when the event loop comes round, or now.
    void refresh() const { main.activeState().showNow(); }

    // The item of a name in the menu bar, as it is shown.
    QAction *action(const QString &name) const
    {
        refresh();
        if (auto *found = main.findChild<QAction *>(name))
            return found;
        auto *menu = main.findChild<QMenu *>(name);
        return menu ? menu->menuAction() : nullptr;
    }

    // Chooses a menu item; the test fails when that is not possible.
    void choose(const char *name) const
    {
        QAction *item = action(QString::fromLatin1(name));
        if (!item || !enabled(name))
            QTest::qFail(name, __FILE__, __LINE__);
        else
            item->trigger();
    }

    // Whether an item and every menu that it is in can be chosen as they are shown.
    bool enabled(const char *name) const
    {
        for (std::size_t row = commandRow(name); row != noRow; row = commandRow(commandTable[row].parent)) {
            const QAction *item = action(toText(commandTable[row].name));
            if (!item || !item->isEnabled())
                return false;
        }
        return commandRow(name) != noRow;
    }

    // A new document: a root with two children, the first of them with a child.
    Document &makeDocument() const
    {
        choose("mnuFileNew");
        Document &document = *DocumentActive();
        document.view()->trvOutline.EndLabelEdit();
        Entry *root = document.tree.root();
        Entry *first = modNodes::NodeInsert(document, Relationship::tvwChild, root);
        modNodes::NodeInsert(document, Relationship::tvwChild, root);
        modNodes::NodeInsert(document, Relationship::tvwChild, first);
        return document;
    }

    AppFixture app;
    frmMain main;
    modMRU recentFiles{app.settings, main.recentFileItems()};
};
