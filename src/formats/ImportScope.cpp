// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/ImportScope.h"

#include "model/Document.h"
#include "model/DocumentWindow.h"
#include "model/OutlinePane.h"
#include "model/modNodes.h"

ImportScope::ImportScope(Document &document)
    : m_document(document)
{
    bBusy = true;
    m_document.trvOutline.setPaneVisible(false);
}

ImportScope::~ImportScope()
{
    bBusy = false;
    m_document.trvOutline.setPaneVisible(true);
    m_document.trvOutline.setLabelEdit(optionalLabelEdit());
    modNodes::NodeSelect(m_document, m_document.tree.root());
    m_document.window.autoFitSplit();
}
