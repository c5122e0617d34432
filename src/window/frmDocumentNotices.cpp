// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The notices of a document in its window, and what happens to its file outside.

#include "window/NoticeBar.h"
#include "window/frmDocument.h"
#include "window/modSplit.h"

#include "platform/RichTextBox.h"
#include "platform/TreeView.h"

#include "document/FileWatch.h"
#include "document/OutsideChange.h"
#include "document/Ports.h"
#include "document/modFile.h"

#include "util/Procedure.h"

#include <QGuiApplication>

#include <algorithm>

void frmDocument::connectNotices()
{
    connect(noticeBar, &NoticeBar::saveAsChosen, this, [this] { saveFromNotice(modFile::FileSaveAs); });
    connect(noticeBar, &NoticeBar::saveChosen, this, [this] { saveFromNotice(saveAgain()); });
    connect(noticeBar, &NoticeBar::dismissed, this, [this](NoticeKind kind) { m_document->dismiss(kind); });
    connect(noticeBar, &NoticeBar::left, this, &frmDocument::leaveNotices);
    connect(noticeBar, &NoticeBar::heightChanged, this, &frmDocument::layOutPanes);
}

void frmDocument::connectFile()
{
    connect(m_fileWatch, &FileWatch::stirred, this,
            [this] { procedure("frmDocument fileWatch_Stirred", [this] { lookForOutsideChange(*m_document); }); });
    // What was done elsewhere meanwhile, on a disk that does not tell of it too.
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            m_fileWatch->look();
    });
    connect(&m_document->history, &History::positionChanged, this, &frmDocument::offerTheirs);
    connect(noticeBar, &NoticeBar::takeTheirsChosen, this, [this] {
        decideOnTheirs([this] {
            if (!takeTheirs(*m_document))
                noticeBar->announce(NoticeKind::FileChanged);
        });
    });
    connect(noticeBar, &NoticeBar::keepMineChosen, this, [this] { decideOnTheirs([this] { keepMine(*m_document); }); });
    connect(noticeBar, &NoticeBar::openTheirsChosen, this,
            [this] { decideOnTheirs([this] { openTheirsBeside(*m_document); }); });
}

void frmDocument::fileTaken()
{
    m_fileWatch->setFile(m_document->m_sFile);
}

void frmDocument::offerTheirs()
{
    noticeBar->setTheirsOffered(!m_document->hasUnsavedChanges());
}

// A label being edited is a change of the document's own, once it is taken.
void frmDocument::decideOnTheirs(const std::function<void()> &decide)
{
    procedure("frmDocument noticeBar_Click", [&] {
        activate();
        treeView->EndLabelEdit();
        if (DocumentActive() == m_document.get())
            decide();
    });
}

// The selected row and the caret stay in sight where the panes become lower.
void frmDocument::noticesChanged()
{
    const QRect row = treeView->visualRect(treeView->currentIndex());
    const bool rowInSight = treeView->viewport()->rect().intersects(row);
    const bool caretInSight = textBox->viewport()->rect().intersects(textBox->cursorRect());
    noticeBar->showNotices(m_document->notices());
    offerTheirs();
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
