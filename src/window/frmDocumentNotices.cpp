// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The notices of a document in its window.

#include "window/NoticeBar.h"
#include "window/frmDocument.h"
#include "window/modSplit.h"

#include "platform/RichTextBox.h"
#include "platform/TreeView.h"

#include "document/Ports.h"
#include "document/modFile.h"

#include "util/Procedure.h"

#include <algorithm>

void frmDocument::connectNotices()
{
    connect(noticeBar, &NoticeBar::saveAsChosen, this, [this] { saveFromNotice(modFile::FileSaveAs); });
    connect(noticeBar, &NoticeBar::saveChosen, this, [this] { saveFromNotice(saveAgain()); });
    connect(noticeBar, &NoticeBar::dismissed, this, [this](NoticeKind kind) { m_document->dismiss(kind); });
    connect(noticeBar, &NoticeBar::left, this, &frmDocument::leaveNotices);
    connect(noticeBar, &NoticeBar::heightChanged, this, &frmDocument::layOutPanes);
}

// The selected row and the caret stay in sight where the panes become lower.
void frmDocument::noticesChanged()
{
    const QRect row = treeView->visualRect(treeView->currentIndex());
    const bool rowInSight = treeView->viewport()->rect().intersects(row);
    const bool caretInSight = textBox->viewport()->rect().intersects(textBox->cursorRect());
    noticeBar->showNotices(m_document->notices());
    layOutPanes();
    if (!m_laidOut)
        return;
    if (rowInSight && m_document->tree.selected())
        treeView->ScrollTo(m_document->tree.selected());
    if (caretInSight)
        textBox->ensureCursorVisible();
}

void frmDocument::holdKeys()
{
    noticeBar->hold();
}

// A window that grows again gives the outline back the width that it had to give up when it shrank.
void frmDocument::layOutPanes()
{
    if (!m_laidOut)
        return;
    const float fWantedWidth = m_fWantedWidth;
    modSplit::SplitSizeControls(*this, fWantedWidth);
    m_fWantedWidth = fWantedWidth;
}

void frmDocument::leaveNotices()
{
    if (m_lastPane)
        m_lastPane->setFocus();
}

// A file other than the document's own, which was chosen in vain, is chosen anew.
frmDocument::SaveCommand frmDocument::saveAgain() const
{
    const auto &notices = m_document->notices();
    const auto told = std::ranges::find(notices, NoticeKind::NotSaved, &DocumentNotice::kind);
    const bool ownFile = told == notices.end() || told->file == m_document->m_sFile;
    return ownFile ? modFile::FileSave : modFile::FileSaveAs;
}

void frmDocument::saveFromNotice(SaveCommand save)
{
    procedure("frmDocument noticeBar_Click", [&] {
        activate();
        treeView->EndLabelEdit();
        if (DocumentActive() == m_document.get() && !save())
            noticeBar->announce(NoticeKind::NotSaved);
    });
}

// Tab and Shift+Tab go to and fro between the panes, whatever notices stand above them.
bool frmDocument::focusNextPrevChild(bool next)
{
    const QWidget *focus = window()->focusWidget();
    if (!noticeBar->isVisible() || (focus != treeView && focus != textBox))
        return QWidget::focusNextPrevChild(next);
    (focus == treeView ? static_cast<QWidget *>(textBox) : treeView)
        ->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}
