// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "support/FakePorts.h"

#include "commands/Dispatcher.h"
#include "document/modNodes.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "window/WindowCommands.h"
#include "window/frmDocument.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTemporaryDir>

// Real document windows in a real multiple-document area, with scripted dialogs and command surface around them.
class WindowFixture final : public DocumentWindows
{
public:
    WindowFixture()
    {
        fakes.windows.open.clear();
        bindWindowCommands(dispatcher);
        ports().windows = this;
        area = new QMdiArea(&main);
        main.setCentralWidget(area);
        main.resize(1000, 700);
        main.show();
        QObject::connect(area, &QMdiArea::subWindowActivated, area, [](QMdiSubWindow *subWindow) {
            if (subWindow)
                static_cast<frmDocument *>(subWindow->widget())->Form_Activate();
        });
    }

    Document &createDocument(std::unique_ptr<Outline> outline = nullptr) override
    {
        auto *form = new frmDocument(dispatcher, std::move(outline));
        QObject::connect(form, &frmDocument::menuWanted, form,
                         [this](std::string_view menu) { poppedUp.append(QLatin1StringView(menu)); });
        QMdiSubWindow *subWindow = area->addSubWindow(form);
        subWindow->resize(800, 500);
        form->show();
        area->setActiveSubWindow(subWindow);
        return form->document();
    }

    Document *activeDocument() const override
    {
        QMdiSubWindow *subWindow = area->currentSubWindow();
        return subWindow ? &static_cast<frmDocument *>(subWindow->widget())->document() : nullptr;
    }

    std::vector<Document *> documents() const override
    {
        std::vector<Document *> all;
        for (QMdiSubWindow *subWindow : area->subWindowList(QMdiArea::CreationOrder))
            all.push_back(&static_cast<frmDocument *>(subWindow->widget())->document());
        return all;
    }

    void closeMainWindow() override { main.close(); }

    void say(const QString &text) override { fakes.windows.say(text); }

    frmDocument &form() const { return *static_cast<frmDocument *>(area->currentSubWindow()->widget()); }

    FakePorts fakes;
    Dispatcher dispatcher;
    // The menus that were wanted as context menus.
    QStringList poppedUp;
    QMainWindow main;
    QMdiArea *area = nullptr;
    QTemporaryDir folder;
};
