// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/DocumentView.h"

#include "document/Document.h"
#include "document/Globals.h"
#include "document/OutlinePane.h"
#include "document/TextPane.h"
#include "document/modNodes.h"
#include "util/Procedure.h"

#include <utility>

LabelEditMode optionalLabelEdit()
{
    return g_options.AutoLabelEdit ? LabelEditMode::tvwAutomatic : LabelEditMode::tvwManual;
}

DocumentView::DocumentView(Document &document, OutlinePane &outlinePane, TextPane &textPane,
                           DocumentWindow &documentWindow)
    : trvOutline(outlinePane)
    , txtRTF(textPane)
    , window(documentWindow)
    , m_document(document)
{
    m_document.setView(this);
    // What a step that failed showed on its way is gone, or not what is selected.
    connect(&m_document.history, &History::rolledBack, this, [this] {
        procedure("DocumentView rolledBack", [this] {
            if (m_document.texts.entryAsShown() != m_document.tree.selected())
                modNodes::NodeTextGet(m_document, m_document.tree.selected());
        });
    });
}

DocumentView::~DocumentView()
{
    m_document.setView(nullptr);
}

void DocumentView::setPanesVisible(bool visible)
{
    trvOutline.setPaneVisible(visible);
    txtRTF.setPaneVisible(visible);
}

void DocumentView::setFocus(Focus focus)
{
    if (std::exchange(m_focus, focus) != focus)
        Q_EMIT focusChanged();
}
