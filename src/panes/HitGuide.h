// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "panes/FindHitsModel.h"

#include <QPointer>

#include <functional>

class DocumentWindows;
class EntryPreview;

// Leads through hits: shows one for a look in its document's window, which comes to the front for that, and takes that
// back; or goes there. What has the keyboard keeps it while hits are only looked at.
class HitGuide
{
public:
    explicit HitGuide(DocumentWindows &windows);

    // Shows what a row stands for, in place of what was shown before; nothing for a document's.
    void show(const FindHitsModel::Row &row, const std::function<void()> &chosen);
    // Takes that back. False when nothing was shown.
    bool takeBack();
    // What is shown goes; the user has gone on elsewhere.
    void leave();
    // Selects the entry, the match and the pane that it is in. False when that is not there any more.
    bool goTo(const FindHitsModel::Row &row);

    bool isShown() const;

    // Whether windows come to the front because of it and not of the user.
    bool isMoving() const { return m_isMoving; }

private:
    EntryPreview *pane() const;
    void bringUp(Document &document);

    DocumentWindows &m_windows;
    // In whose window something is shown.
    QPointer<Document> m_document;
    // Whose window was in front before that.
    QPointer<Document> m_cameFrom;
    bool m_isMoving = false;
};
