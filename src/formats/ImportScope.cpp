// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/ImportScope.h"

#include "document/Document.h"
#include "document/DocumentWindow.h"
#include "document/OutlinePane.h"
#include "document/modNodes.h"
#include "util/Procedure.h"

ImportScope::ImportScope(Document &document)
    : m_document(document)
{
    m_busy.emplace();
    m_document.trvOutline.setPaneVisible(false);
}

ImportScope::~ImportScope()
{
    m_busy.reset();
    // While another failure is on its way there is no room for one more.
    procedure("modDocText DocImport", [this] {
        m_document.trvOutline.setPaneVisible(true);
        m_document.trvOutline.setLabelEdit(optionalLabelEdit());
        modNodes::NodeSelect(m_document, m_document.tree.root());
        m_document.window.autoFitSplit();
    });
}
