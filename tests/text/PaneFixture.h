// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DesktopClipboard.h"
#include "platform/RichTextBox.h"
#include "support/FakeDocument.h"
#include "support/FakePorts.h"

// The real text pane in a document that is active, or none is, with the real clipboard.
class PaneFixture final : public DocumentWindows
{
public:
    PaneFixture()
        : m_view(document, m_outline, box, m_window)
        , active(&document)
    {
        ports().clipboard = &clipboard;
        ports().windows = this;
        box.setDialogs(&fake.dialogs);
    }

    Document &createDocument(std::unique_ptr<Outline>) override { qFatal("no document is made here"); }

    Document *activeDocument() const override { return active; }

    std::vector<Document *> documents() const override { return {}; }

    void closeMainWindow() override {}

    void say(const QString &) override {}

    FakePorts fake;
    RichTextBox box;
    DesktopClipboard clipboard;

private:
    FakeOutlinePane m_outline;
    FakeDocumentWindow m_window;

public:
    Document document;

private:
    DocumentView m_view;

public:
    Document *active;
};
