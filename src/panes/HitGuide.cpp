// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/HitGuide.h"

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/EntryPreview.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/TextPane.h"
#include "document/modNodes.h"
#include "util/Procedure.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <QWidget>

#include <optional>

HitGuide::HitGuide(DocumentWindows &windows)
    : m_windows(windows)
{
}

EntryPreview *HitGuide::pane() const
{
    return m_document && m_document->view() ? m_document->view()->window.previewPane() : nullptr;
}

bool HitGuide::isShown() const
{
    const EntryPreview *shown = pane();
    return shown && shown->isShown();
}

// A window that comes to the front takes the keyboard.
void HitGuide::bringUp(Document &document)
{
    if (m_windows.activeDocument() == &document || !document.view())
        return;
    const QScopedValueRollback moving(m_isMoving, true);
    const QPointer<QWidget> keyboard = QApplication::focusWidget();
    document.view()->window.activate();
    if (keyboard)
        keyboard->setFocus(Qt::OtherFocusReason);
}

void HitGuide::show(const FindHitsModel::Row &row, const std::function<void()> &chosen)
{
    if (!row.found || !row.document || !row.document->view() || bBusy)
        return;
    procedure("HitGuide show", [&] {
        Document &document = *row.document;
        const QPointer<Document> before = isShown() ? m_cameFrom : QPointer(m_windows.activeDocument());
        if (m_document != &document)
            leave();
        m_cameFrom = before;
        m_document = &document;
        bringUp(document);
        if (!pane())
            return;
        Preview preview{row.found->entry, Preview::Part::Label, 0, 0, chosen};
        if (const FindHit *hit = row.hit()) {
            preview.part = hit->inLabel ? Preview::Part::Label : Preview::Part::Text;
            preview.start = hit->offset;
            preview.length = hit->matched;
        }
        pane()->show(preview);
    });
}

bool HitGuide::takeBack()
{
    const bool wasShown = isShown();
    const QPointer<Document> cameFrom = m_cameFrom;
    leave();
    if (wasShown && cameFrom)
        bringUp(*cameFrom);
    return wasShown;
}

void HitGuide::leave()
{
    if (isShown())
        pane()->end();
    m_document.clear();
    m_cameFrom.clear();
}

bool HitGuide::goTo(const FindHitsModel::Row &row)
{
    Entry *entry = row.found && row.document ? row.document->tree.entry(row.found->entry) : nullptr;
    if (!entry || !row.document->view() || bBusy)
        return false;
    // The list may have other rows by the time that the document is there.
    const std::optional<FindHit> hit = row.hit() && !row.hit()->inLabel ? std::optional(*row.hit()) : std::nullopt;
    Document &document = *row.document;
    const QScopedValueRollback moving(m_isMoving, true);
    return procedure("HitGuide goTo", [&] {
        leave();
        DocumentView &view = *document.view();
        view.window.bringToFront();
        view.trvOutline.EndLabelEdit();
        modNodes::NodeSelectFull(document, entry);
        if (!hit || document.bTextWithheld()) {
            view.trvOutline.setFocus();
            return true;
        }
        view.txtRTF.setSelStart(hit->offset);
        view.txtRTF.setSelLength(hit->matched);
        view.txtRTF.setFocus();
        return true;
    });
}
