// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/CommandBindings.h"

#include "app/modHelp.h"
#include "app/modViewBars.h"
#include "app/modWindow.h"
#include "document/modFile.h"
#include "outline/modOutline.h"
#include "search/modSearch.h"
#include "text/modEdit.h"
#include "window/modOutlineFont.h"
#include "window/modView.h"

namespace
{

// Most routines take no argument; whether they succeeded is nothing to a menu.
template <typename Function>
std::function<void(int)> plain(Function function)
{
    return [function](int) { function(); };
}

} // namespace

BoundRoutines boundRoutines(QWidget &mainWindow, QMdiArea &area)
{
    return {
        {Routine::FileNew, plain(modFile::FileNew)},
        {Routine::FileOpen, plain(modFile::FileOpen)},
        {Routine::FileClose, plain(modFile::FileClose)},
        {Routine::FileSave, plain(modFile::FileSave)},
        {Routine::FileSaveAs, plain(modFile::FileSaveAs)},
        {Routine::FileSaveAll, plain(modFile::FileSaveAll)},
        {Routine::FileImportClipboard, plain(modFile::FileImportClipboard)},
        {Routine::FileImportText, plain(modFile::FileImportText)},
        {Routine::FileExportClipboard, plain(modFile::FileExportClipboard)},
        {Routine::FileExportText, plain(modFile::FileExportText)},
        {Routine::FilePrintSetup, plain(modFile::FilePrintSetup)},
        {Routine::FilePrintPreview, [](int bCurrentEntry) { modFile::FilePrintPreview(bCurrentEntry != 0); }},
        {Routine::FilePrint, [](int bCurrentEntry) { modFile::FilePrint(bCurrentEntry != 0); }},
        {Routine::FileMRU, modFile::FileMRU},
        {Routine::FileExit, plain(modFile::FileExit)},
        {Routine::OutlineInsertAbove, plain(modOutline::OutlineInsertAbove)},
        {Routine::OutlineInsertBelow, plain(modOutline::OutlineInsertBelow)},
        {Routine::OutlineInsertChild, plain(modOutline::OutlineInsertChild)},
        {Routine::OutlineIndent, plain(modOutline::OutlineIndent)},
        {Routine::OutlineUnindent, plain(modOutline::OutlineUnindent)},
        {Routine::OutlineMoveUp, plain(modOutline::OutlineMoveUp)},
        {Routine::OutlineMoveDown, plain(modOutline::OutlineMoveDown)},
        {Routine::OutlineMoveFirst, plain(modOutline::OutlineMoveFirst)},
        {Routine::OutlineMoveLast, plain(modOutline::OutlineMoveLast)},
        {Routine::OutlineExpand, plain(modOutline::OutlineExpand)},
        {Routine::OutlineExpandToLevel, modOutline::OutlineExpandToLevel},
        {Routine::OutlineExpandAll, plain(modOutline::OutlineExpandAll)},
        {Routine::OutlineCollapse, plain(modOutline::OutlineCollapse)},
        {Routine::OutlineCollapseAll, plain(modOutline::OutlineCollapseAll)},
        {Routine::OutlineCopy, plain(modOutline::OutlineCopy)},
        {Routine::OutlinePaste, plain(modOutline::OutlinePaste)},
        {Routine::OutlinePasteAndDelete, plain(modOutline::OutlinePasteAndDelete)},
        {Routine::OutlineDelete, plain(modOutline::OutlineDelete)},
        {Routine::OutlineRename, plain(modOutline::OutlineRename)},
        {Routine::OutlineSortCurrent, plain(modOutline::OutlineSortCurrent)},
        {Routine::OutlineSortAll, plain(modOutline::OutlineSortAll)},
        {Routine::OutlineFont, plain(modOutline::OutlineFont)},
        {Routine::OutlineTaggedEntry, plain(modOutline::OutlineTaggedEntry)},
        {Routine::OutlinePasteTaggedEntries, plain(modOutline::OutlinePasteTaggedEntries)},
        {Routine::OutlineDeleteTaggedEntries, plain(modOutline::OutlineDeleteTaggedEntries)},
        {Routine::EditCut, plain(modEdit::EditCut)},
        {Routine::EditCopy, plain(modEdit::EditCopy)},
        {Routine::EditPaste, plain(modEdit::EditPaste)},
        {Routine::EditPasteSpecial, plain(modEdit::EditPasteSpecial)},
        {Routine::EditDelete, plain(modEdit::EditDelete)},
        {Routine::EditSelectAll, plain(modEdit::EditSelectAll)},
        {Routine::EditClearEntryText, plain(modEdit::EditClearEntryText)},
        {Routine::EditInsertTab, plain(modEdit::EditInsertTab)},
        {Routine::EditInsertLongDate, plain(modEdit::EditInsertLongDate)},
        {Routine::EditInsertShortDate, plain(modEdit::EditInsertShortDate)},
        {Routine::EditInsertTime, plain(modEdit::EditInsertTime)},
        {Routine::EditCaseLower, plain(modEdit::EditCaseLower)},
        {Routine::EditCaseProper, plain(modEdit::EditCaseProper)},
        {Routine::EditCaseUpper, plain(modEdit::EditCaseUpper)},
        {Routine::EditCaseToggle, plain(modEdit::EditCaseToggle)},
        {Routine::EditFormatBold, plain(modEdit::EditFormatBold)},
        {Routine::EditFormatItalic, plain(modEdit::EditFormatItalic)},
        {Routine::EditFormatStrikeThrough, plain(modEdit::EditFormatStrikeThrough)},
        {Routine::EditFormatUnderline, plain(modEdit::EditFormatUnderline)},
        {Routine::EditFormatLeft, plain(modEdit::EditFormatLeft)},
        {Routine::EditFormatCentre, plain(modEdit::EditFormatCentre)},
        {Routine::EditFormatRight, plain(modEdit::EditFormatRight)},
        {Routine::EditFormatBullet, plain(modEdit::EditFormatBullet)},
        {Routine::EditFormatIndent, plain(modEdit::EditFormatIndent)},
        {Routine::EditFormatUnindent, plain(modEdit::EditFormatUnindent)},
        {Routine::EditCurrentFont, plain(modEdit::EditCurrentFont)},
        {Routine::EditDocumentFont, plain(modEdit::EditDocumentFont)},
        {Routine::SearchFind, plain(modSearch::SearchFind)},
        {Routine::SearchReplace, plain(modSearch::SearchReplace)},
        {Routine::SearchRepeat, plain(modSearch::SearchRepeat)},
        {Routine::ViewToolbar, plain(modView::ViewToolbar)},
        {Routine::ViewStatusBar, plain(modView::ViewStatusBar)},
        {Routine::ViewGoToOutline, plain(modView::ViewGoToOutline)},
        {Routine::ViewGoToText, plain(modView::ViewGoToText)},
        {Routine::ViewMaximiseLeft, plain(modView::ViewMaximiseLeft)},
        {Routine::ViewMaximiseRight, plain(modView::ViewMaximiseRight)},
        {Routine::ViewEqualiseLeftAndRight, plain(modView::ViewEqualiseLeftAndRight)},
        {Routine::ViewFitSplit, plain(modView::ViewFitSplit)},
        {Routine::ViewMoveSplit, plain(modView::ViewMoveSplit)},
        {Routine::ViewOptionsBackupOnSave, plain(modView::ViewOptionsBackupOnSave)},
        {Routine::ViewOptionsAutoFitSplit, plain(modView::ViewOptionsAutoFitSplit)},
        {Routine::ViewOptionsStartWithNewDoc, plain(modView::ViewOptionsStartWithNewDoc)},
        {Routine::ViewOptionsStartWithPrevDocs, plain(modView::ViewOptionsStartWithPrevDocs)},
        {Routine::ViewOptionsClickToRenameEntry, plain(modView::ViewOptionsClickToRenameEntry)},
        {Routine::WindowCascade, [&area](int) { modWindow::WindowCascade(area); }},
        {Routine::WindowTileHorizontal, [&area](int) { modWindow::WindowTileHorizontal(area); }},
        {Routine::WindowTileVertical, [&area](int) { modWindow::WindowTileVertical(area); }},
        {Routine::WindowArrangeIcons, [&area](int) { modWindow::WindowArrangeIcons(area); }},
        {Routine::HelpContents, plain(modHelp::HelpContents)},
        {Routine::HelpSearch, plain(modHelp::HelpSearch)},
        {Routine::HelpAbout, [&mainWindow](int) { modHelp::HelpAbout(&mainWindow); }},
    };
}
