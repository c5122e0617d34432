// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class EntryPreview;

// The window of one document, as the core sees it.
class DocumentWindow
{
public:
    virtual ~DocumentWindow() = default;

    virtual QString caption() const = 0;
    virtual void setCaption(const QString &caption) = 0;
    // Makes this window the active one.
    virtual void activate() = 0;
    // The same, and shows what is in it: a minimised window is restored.
    virtual void bringToFront() = 0;
    // Closes the window as its close button does, asking about unsaved changes; false when it stays.
    virtual bool close() = 0;
    // Fits the split between the two panes, when the option says so.
    virtual void autoFitSplit() = 0;
    // To be called when the document's notices have changed: shows those that stand now.
    virtual void noticesChanged() = 0;
    // To be called when the document has read or written its file, has another one, or none: follows what happens to
    // it.
    virtual void fileTaken() = 0;
    // Keeps what is typed next out of the panes until the user goes back to one: it was meant for an entry that could
    // not be made.
    virtual void holdKeys() = 0;

    // Where entries can be looked at without going there; null where that cannot be.
    virtual EntryPreview *previewPane() { return nullptr; }
};
