// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/CommandTable.h"

#include <QString>
#include <QTest>

#include <map>

using namespace Qt::StringLiterals;

namespace
{

// The menu bar as a user reads it. The table of the program is compared with it line by line, so that a change of a
// caption, of an order or of what an item runs is always made on purpose. "(nothing)" runs no routine.
const char *const menuBar = R"(
mnuFile > "&File"
  mnuFileNew "&New" = FileNew
  mnuFileOpen "&Open" = FileOpen
  mnuFileClose "&Close" = FileClose
  mnuFileBar1 ----
  mnuFileSave "&Save" = FileSave
  mnuFileSaveAs "Save &as..." = FileSaveAs
  mnuFileSaveAll "Save a&ll" = FileSaveAll
  mnuFileBar2 ----
  mnuFileImport > "&Import new document"
    mnuFileImportClipboard "From &clipboard" = FileImportClipboard
    mnuFileImportText "From &text file..." = FileImportText
  mnuFileExport > "&Export this document"
    mnuFileExportClipboard "To &clipboard" = FileExportClipboard
    mnuFileExportText "To &text file..." = FileExportText
  mnuFileBar3 ----
  mnuFilePrintSetup "Print set&up..." = FilePrintSetup
  mnuFilePrintPreview "Print pre&view..." = FilePrintPreview
  mnuFilePrint "&Print..." = FilePrint
  mnuFilePrintEntry "Print &current entry..." = FilePrint 1
  mnuFilePrintPreviewEntry "Print preview current &entry..." = FilePrintPreview 1
  mnuFileBarMRU ----
  mnuFileMRU [indexed] = FileMRU
  mnuFileBar4 ----
  mnuFileExit "E&xit                                               Alt+F4" = FileExit
mnuoutline > "&Outline"
  mnuOutlineInsertAbove "Insert &above     Alt+A" = OutlineInsertAbove
  mnuOutlineInsertBelow "Insert &below      Alt+B" = OutlineInsertBelow
  mnuOutlineInsertChild "&Insert child        Alt+I" = OutlineInsertChild
  mnuOutlineBar1 ----
  mnuOutlineIndent "Inden&t               Alt+Right" = OutlineIndent
  mnuOutlineUnindent "&Unindent           Alt+Left" = OutlineUnindent
  mnuOutlineMove > "&Move"
    mnuOutlineMoveUp "Mo&ve up           Alt+Up" = OutlineMoveUp
    mnuOutlineMoveDown "Move do&wn      Alt+Down" = OutlineMoveDown
    mnuOutlineMoveFirst "Move &first         Alt+Home" = OutlineMoveFirst
    mnuOutlineMoveLast "Move &last        Alt+End" = OutlineMoveLast
  mnuOutlineBar2 ----
  mnuOutlineExpand "&Expand             Plus" = OutlineExpand
  mnuOutlineExpandLevel > "Expa&nd to level"
    mnuOutlineExpandLevel1 "&1" = OutlineExpandToLevel 1
    mnuOutlineExpandLevel2 "&2" = OutlineExpandToLevel 2
    mnuOutlineExpandLevel3 "&3" = OutlineExpandToLevel 3
    mnuOutlineExpandLevel4 "&4" = OutlineExpandToLevel 4
    mnuOutlineExpandLevel5 "&5" = OutlineExpandToLevel 5
    mnuOutlineExpandLevel6 "&6" = OutlineExpandToLevel 6
    mnuOutlineExpandLevel7 "&7" = OutlineExpandToLevel 7
  mnuOutlineExpandAll "E&xpand all" = OutlineExpandAll
  mnuOutlineCollapse "&Collapse            Minus" = OutlineCollapse
  mnuOutlineCollapseAll "C&ollapse all" = OutlineCollapseAll
  mnuOutlineBar4 ----
  mnuOutlineCopy "&Copy                 Alt+C" = OutlineCopy
  mnuOutlinePaste "&Paste                Alt+P" = OutlinePaste
  mnuOutlinePasteAndDelete "Paste &and delete" = OutlinePasteAndDelete
  mnuOutlineDelete "&Delete               Alt+Delete" = OutlineDelete
  mnuOutlineRename "&Rename            F2" = OutlineRename
  mnuOutlineBar5 ----
  mnuOutlineSortCurrent "Sort current &entry" = OutlineSortCurrent
  mnuOutlineSortAll "&Sort all entries" = OutlineSortAll
  mnuOutlineBar6 ----
  mnuOutlineTaggedEntry "Ta&g / untag entry    Alt+T" = OutlineTaggedEntry
  mnuOutlinePasteTaggedEntries "Paste tagged entries" = OutlinePasteTaggedEntries
  mnuOutlineDeleteTaggedEntries "Delete tagged entries" = OutlineDeleteTaggedEntries
  mnuOutlineBar7 ----
  mnuOutlineFont "&Font..." = OutlineFont
mnuEdit > "&Edit"
  mnuEditCut "Cu&t               Ctrl+X" = EditCut
  mnuEditCopy "&Copy            Ctrl+C" = EditCopy
  mnuEditPaste "&Paste           Ctrl+V" = EditPaste
  mnuEditPasteSpecial "Paste &special" = EditPasteSpecial
  mnuEditDelete "&Delete          Del" = EditDelete
  mnuEditSelectAll "Select &all      Ctrl+A" = EditSelectAll
  mnuEditClearEntryText "Cl&ear entry text" = EditClearEntryText
  mnuEditBar1 ----
  mnuEditInsert > "&Insert"
    mnuEditInsertTab "Insert &tab             Ctrl+Tab" = EditInsertTab
    mnuEditInsertLongDate "Insert &long date" = EditInsertLongDate
    mnuEditInsertShortDate "Insert &short date  Ctrl+D" = EditInsertShortDate
    mnuEditInsertTime "Insert ti&me            Ctrl+M" = EditInsertTime
  mnuEditBar2 ----
  mnuEditCase > "Ca&se"
    mnuEditCaseLower "&Lower" = EditCaseLower
    mnuEditCaseProperName "&Proper name" = EditCaseProper
    mnuEditCaseUpper "&Upper" = EditCaseUpper
    mnuEditCaseToggle "&Toggle" = EditCaseToggle
  mnuEditBar3 ----
  mnuEditFormat > "F&ormat"
    mnuEditFormatBold "&Bold" = EditFormatBold
    mnuEditFormatItalic "&Italic" = EditFormatItalic
    mnuEditFormatStrikeThrough "Stri&kethrough" = EditFormatStrikeThrough
    mnuEditFormatUnderline "&Underline" = EditFormatUnderline
    mnuEditFormatBar1 ----
    mnuEditFormatLeft "&Left" = EditFormatLeft
    mnuEditFormatCentre "C&entre" = EditFormatCentre
    mnuEditFormatRight "&Right" = EditFormatRight
    mnuEditFormatBar2 ----
    mnuEditFormatBullet "Bulle&ts" = EditFormatBullet
    mnuEditFormatIndent "In&dent" = EditFormatIndent
    mnuEditFormatUnindent "Unind&ent" = EditFormatUnindent
  mnuEditBar5 ----
  mnuEditCurrentFont "Change current &font..." = EditCurrentFont
  mnuEditDocumentFont "Change document fo&nt..." = EditDocumentFont
mnuSearch > "&Search"
  mnuSearchFind "&Find" = SearchFind
  mnuSearchReplace "Find and &replace" = SearchReplace
  mnuSearchRepeat "Repeat &last find" = SearchRepeat
mnuView > "&View"
  mnuViewToolbar "&Toolbar" = ViewToolbar
  mnuViewMDITaskbar "&MDI taskbar" = (nothing)
  mnuViewStatusBar "Status &bar" = ViewStatusBar
  mnuViewBar1 ----
  mnuViewGoToOutline "Go to &outline" = ViewGoToOutline
  mnuViewGoToText "Go to &text" = ViewGoToText
  mnuViewBar2 ----
  mnuViewMaximiseLeft "Maximise &left" = ViewMaximiseLeft
  mnuViewMaximiseRight "Maximise &right" = ViewMaximiseRight
  mnuViewEqualiseLeftAndRight "Equalise left &and right" = ViewEqualiseLeftAndRight
  mnuViewFitSplit "&Fit split" = ViewFitSplit
  mnuViewMoveSplit "Move &split" = ViewMoveSplit
  mnuViewBar3 ----
  mnuViewOptions > "O&ptions..."
    mnuViewOptionsBackupOnSave "&Back up on saving" = ViewOptionsBackupOnSave
    mnuViewOptionsAutoFitSplit "&Fit split automatically" = ViewOptionsAutoFitSplit
    mnuViewOptionsStartWithNewDoc "Start with &new document" = ViewOptionsStartWithNewDoc
    mnuViewOptionsStartWithPrevDocs "Start with &previous documents" = ViewOptionsStartWithPrevDocs
    mnuViewOptionsClickToRenameEntry "Click to &rename entry" = ViewOptionsClickToRenameEntry
mnuWindow > "&Window"
  mnuWindowNewWindow "&New window" = (nothing)
  mnuWindowCascade "&Cascade" = WindowCascade
  mnuWindowTileHorizontal "Tile &horizontal" = WindowTileHorizontal
  mnuWindowTileVertical "Tile &vertical" = WindowTileVertical
  mnuWindowArrangeIcons "&Arrange icons" = WindowArrangeIcons
mnuHelp > "&Help"
  mnuHelpContents "&Contents" = HelpContents
  mnuHelpSearch "&Search for help on..." = HelpSearch
  mnuHelpBar1 ----
  mnuHelpAbout "&About Quillery..." = HelpAbout
)";

QString describe(const CommandRow &row)
{
    const QString name = QString::fromLatin1(row.name.data(), static_cast<qsizetype>(row.name.size()));
    const QString caption = QString::fromLatin1(row.caption.data(), static_cast<qsizetype>(row.caption.size()));
    switch (row.kind) {
    case RowKind::Menu:
        return name + u" > \"%1\""_s.arg(caption);
    case RowKind::Separator:
        return name + u" ----"_s;
    case RowKind::IndexedCommand:
        return name + u" [indexed] = "_s;
    case RowKind::Command:
        return name + u" \"%1\" = "_s.arg(caption);
    }
    return QString();
}

} // namespace

class tst_CommandTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyItemHasItsPlaceCaptionAndRoutine_data();
    void everyItemHasItsPlaceCaptionAndRoutine();
    void theMenuBarHasAsManyItemsAsListed();
    void captionsShowTheirKeysBehindBlanks();
    void aNameThatIsNoItemHasNoRow();

private:
    static QStringList listedLines() { return QString::fromLatin1(menuBar).split(u'\n', Qt::SkipEmptyParts); }
};

void tst_CommandTable::everyItemHasItsPlaceCaptionAndRoutine_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("parent");
    QTest::addColumn<int>("routine");
    QStringList menus;
    // The routines are declared in the order in which the menu bar first names them.
    std::map<QString, int> routines{{QString(), 0}, {u"(nothing)"_s, 0}};
    int row = 0;
    for (const QString &listed : listedLines()) {
        const QString line = listed.trimmed();
        const qsizetype depth = (listed.size() - line.size()) / 2;
        const QString name = line.section(u' ', 0, 0);
        const QString routine = line.section(u" = "_s, 1).section(u' ', 0, 0);
        const int number = routines.try_emplace(routine, static_cast<int>(routines.size()) - 1).first->second;
        menus.resize(depth);
        QTest::newRow(qPrintable(name)) << row++ << line << (depth > 0 ? menus.last() : QString()) << number;
        menus.append(name);
    }
}

void tst_CommandTable::everyItemHasItsPlaceCaptionAndRoutine()
{
    QFETCH(int, row);
    QFETCH(QString, line);
    QFETCH(QString, parent);
    QFETCH(int, routine);
    QVERIFY(static_cast<std::size_t>(row) < commandTable.size());
    const CommandRow &actual = commandTable.at(static_cast<std::size_t>(row));
    const QString described = describe(actual);
    QCOMPARE(line.left(described.size()), described);
    QCOMPARE(QString::fromLatin1(actual.parent.data(), static_cast<qsizetype>(actual.parent.size())), parent);
    QCOMPARE(static_cast<int>(actual.routine), routine);
    const QString argument = line.mid(described.size()).section(u' ', 1);
    QCOMPARE(actual.argument, argument.toInt());
}

void tst_CommandTable::theMenuBarHasAsManyItemsAsListed()
{
    QCOMPARE(static_cast<qsizetype>(commandTable.size()), listedLines().size());
}

void tst_CommandTable::captionsShowTheirKeysBehindBlanks()
{
    // The width of the blanks is part of the caption: they line the keys up.
    QCOMPARE(commandTable.at(commandRow("mnuFileExit")).caption.find("Alt+F4"), 52U);
    QCOMPARE(commandTable.at(commandRow("mnuOutlineExpand")).caption.find("Plus"), 20U);
    QCOMPARE(commandTable.at(commandRow("mnuEditInsertShortDate")).caption.find("Ctrl+D"), 20U);
}

void tst_CommandTable::aNameThatIsNoItemHasNoRow()
{
    QCOMPARE(commandRow("mnuFileOpenn"), noRow);
    QCOMPARE(commandRow(""), noRow);
}

QTEST_APPLESS_MAIN(tst_CommandTable)
#include "tst_CommandTable.moc"
