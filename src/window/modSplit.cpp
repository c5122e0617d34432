// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/modSplit.h"

#include "window/NoticeBar.h"
#include "window/SplitterBar.h"
#include "window/frmDocument.h"

#include "platform/RichTextBox.h"
#include "platform/TreeView.h"

#include "util/Procedure.h"

#include <algorithm>

namespace
{

// Thin as the gap is, the bar must be wide enough for the pointer to find.
constexpr int minimumBarWidth = 5;

void placeGhostBar(frmDocument &form)
{
    const QRect bar = form.imgSplitter->geometry();
    const int width = std::max(bar.width() / 2, 1);
    const int left = form.toPixels(form.m_fGhostPosition);
    form.picSplitter->setGeometry(left, bar.top(), width, bar.height() - form.toPixels(20));
    form.picSplitter->raise();
}

void hideGhostBar(frmDocument &form)
{
    // Cleared first: the bar's losing the focus would end the move once more.
    form.m_bMovingSplit = false;
    // Whoever else has taken the focus meanwhile, another document perhaps, keeps it.
    if (form.picSplitter->hasFocus())
        form.restorePaneFocus();
    form.picSplitter->hide();
}

} // namespace

namespace modSplit
{

void SplitCheckPosition(const frmDocument &form, float &fPosition)
{
    fPosition = std::max(fPosition, minimumPaneWidth);
    fPosition = std::min(fPosition, form.Width() - minimumPaneWidth);
}

void SplitSizeControls(frmDocument &form, float fPosition)
{
    procedure("modSplit SplitSizeControls", [&] {
        SplitCheckPosition(form, fPosition);
        form.m_fTreeWidth = fPosition;
        form.m_fWantedWidth = fPosition;
        const int top = form.noticeBar->layOut();
        const int height = form.height() - top;
        const int treeWidth = std::max(form.toPixels(fPosition), 0);
        const float fTextLeft = fPosition + gap;
        const float fTextWidth = form.Width() - (fPosition + rightHandAllowance);
        const int textLeft = form.toPixels(fTextLeft);
        const int textWidth = form.toPixels(fTextLeft + fTextWidth) - textLeft;
        form.treeView->setGeometry(0, top, treeWidth, height);
        form.textBox->setGeometry(textLeft, top, std::max(textWidth, 0), height);
        const int barWidth = std::max(textLeft - treeWidth, minimumBarWidth);
        form.imgSplitter->setGeometry(treeWidth, top, barWidth, height);
        form.imgSplitter->raise();
        if (form.m_bMovingSplit) {
            form.m_fGhostPosition = fPosition;
            placeGhostBar(form);
        }
    });
}

void SplitMoveStart(frmDocument &form)
{
    procedure("modSplit SplitMoveStart", [&] {
        form.m_fSplitPosition = form.m_fTreeWidth;
        form.m_fGhostPosition = form.m_fTreeWidth;
        placeGhostBar(form);
        form.picSplitter->show();
        form.m_bMovingSplit = true;
        form.picSplitter->setFocus();
    });
}

void SplitMove(frmDocument &form, float fPosition)
{
    procedure("modSplit SplitMove", [&] {
        if (!form.m_bMovingSplit)
            return;
        SplitCheckPosition(form, fPosition);
        form.m_fGhostPosition = fPosition;
        placeGhostBar(form);
    });
}

void SplitMoveEnd(frmDocument &form)
{
    procedure("modSplit SplitMoveEnd", [&] {
        if (!form.m_bMovingSplit)
            return;
        SplitSizeControls(form, form.m_fGhostPosition);
        hideGhostBar(form);
    });
}

void SplitMoveCancel(frmDocument &form)
{
    procedure("modSplit SplitMoveCancel", [&] {
        if (!form.m_bMovingSplit)
            return;
        form.m_fGhostPosition = form.m_fSplitPosition;
        hideGhostBar(form);
    });
}

} // namespace modSplit
