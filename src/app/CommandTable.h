// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>
#include <string_view>

// The menu bar as a table: one row an item, in menu order. A row's routine says what the item runs; what a routine is
// bound to, and whether it is bound at all, is decided where the menu bar is made.

// The routines that menu items run, by the names of their modules' routines, in the order in which the menu bar first
// names them.
enum class Routine {
    None,
    FileNew,
    FileOpen,
    FileClose,
    FileSave,
    FileSaveAs,
    FileSaveAll,
    FileImportClipboard,
    FileImportText,
    FileExportClipboard,
    FileExportText,
    FilePrintSetup,
    FilePrintPreview,
    FilePrint,
    FileMRU,
    FileExit,
    OutlineInsertAbove,
    OutlineInsertBelow,
    OutlineInsertChild,
    OutlineIndent,
    OutlineUnindent,
    OutlineMoveUp,
    OutlineMoveDown,
    OutlineMoveFirst,
    OutlineMoveLast,
    OutlineExpand,
    OutlineExpandToLevel,
    OutlineExpandAll,
    OutlineCollapse,
    OutlineCollapseAll,
    OutlineCopy,
    OutlinePaste,
    OutlinePasteAndDelete,
    OutlineDelete,
    OutlineRename,
    OutlineSortCurrent,
    OutlineSortAll,
    OutlineTaggedEntry,
    OutlinePasteTaggedEntries,
    OutlineDeleteTaggedEntries,
    OutlineFont,
    EditCut,
    EditCopy,
    EditPaste,
    EditPasteSpecial,
    EditDelete,
    EditSelectAll,
    EditClearEntryText,
    EditInsertTab,
    EditInsertLongDate,
    EditInsertShortDate,
    EditInsertTime,
    EditCaseLower,
    EditCaseProper,
    EditCaseUpper,
    EditCaseToggle,
    EditFormatBold,
    EditFormatItalic,
    EditFormatStrikeThrough,
    EditFormatUnderline,
    EditFormatLeft,
    EditFormatCentre,
    EditFormatRight,
    EditFormatBullet,
    EditFormatIndent,
    EditFormatUnindent,
    EditCurrentFont,
    EditDocumentFont,
    SearchFind,
    SearchReplace,
    SearchRepeat,
    ViewToolbar,
    ViewStatusBar,
    ViewGoToOutline,
    ViewGoToText,
    ViewMaximiseLeft,
    ViewMaximiseRight,
    ViewEqualiseLeftAndRight,
    ViewFitSplit,
    ViewMoveSplit,
    ViewOptionsBackupOnSave,
    ViewOptionsAutoFitSplit,
    ViewOptionsStartWithNewDoc,
    ViewOptionsStartWithPrevDocs,
    ViewOptionsClickToRenameEntry,
    WindowCascade,
    WindowTileHorizontal,
    WindowTileVertical,
    WindowArrangeIcons,
    HelpContents,
    HelpSearch,
    HelpAbout,
};

enum class RowKind { Menu, Command, IndexedCommand, Separator };

struct CommandRow {
    std::string_view name;
    // "&" marks the access key. The text behind the run of blanks names the key that the document window handles.
    std::string_view caption;
    // The name of the menu that the item is in; empty for the menus of the menu bar.
    std::string_view parent;
    RowKind kind;
    Routine routine;
    // What the routine is called with: 1 for the current entry's printing, the level of an expansion.
    int argument;
};

namespace detail
{

constexpr CommandRow menu(std::string_view name, std::string_view caption, std::string_view parent = {})
{
    return {name, caption, parent, RowKind::Menu, Routine::None, 0};
}

constexpr CommandRow command(std::string_view name, std::string_view caption, std::string_view parent, Routine routine,
                             int argument = 0)
{
    return {name, caption, parent, RowKind::Command, routine, argument};
}

constexpr CommandRow separator(std::string_view name, std::string_view parent)
{
    return {name, {}, parent, RowKind::Separator, Routine::None, 0};
}

} // namespace detail

// clang-format off
inline constexpr std::array commandTable{
    detail::menu("mnuFile", "&File"),
    detail::command("mnuFileNew", "&New", "mnuFile", Routine::FileNew),
    detail::command("mnuFileOpen", "&Open", "mnuFile", Routine::FileOpen),
    detail::command("mnuFileClose", "&Close", "mnuFile", Routine::FileClose),
    detail::separator("mnuFileBar1", "mnuFile"),
    detail::command("mnuFileSave", "&Save", "mnuFile", Routine::FileSave),
    detail::command("mnuFileSaveAs", "Save &as...", "mnuFile", Routine::FileSaveAs),
    detail::command("mnuFileSaveAll", "Save a&ll", "mnuFile", Routine::FileSaveAll),
    detail::separator("mnuFileBar2", "mnuFile"),
    detail::menu("mnuFileImport", "&Import new document", "mnuFile"),
    detail::command("mnuFileImportClipboard", "From &clipboard", "mnuFileImport", Routine::FileImportClipboard),
    detail::command("mnuFileImportText", "From &text file...", "mnuFileImport", Routine::FileImportText),
    detail::menu("mnuFileExport", "&Export this document", "mnuFile"),
    detail::command("mnuFileExportClipboard", "To &clipboard", "mnuFileExport", Routine::FileExportClipboard),
    detail::command("mnuFileExportText", "To &text file...", "mnuFileExport", Routine::FileExportText),
    detail::separator("mnuFileBar3", "mnuFile"),
    detail::command("mnuFilePrintSetup", "Print set&up...", "mnuFile", Routine::FilePrintSetup),
    detail::command("mnuFilePrintPreview", "Print pre&view...", "mnuFile", Routine::FilePrintPreview),
    detail::command("mnuFilePrint", "&Print...", "mnuFile", Routine::FilePrint),
    detail::command("mnuFilePrintEntry", "Print &current entry...", "mnuFile", Routine::FilePrint, 1),
    detail::command("mnuFilePrintPreviewEntry", "Print preview current &entry...", "mnuFile", Routine::FilePrintPreview, 1),
    detail::separator("mnuFileBarMRU", "mnuFile"),
    CommandRow{"mnuFileMRU", {}, "mnuFile", RowKind::IndexedCommand, Routine::FileMRU, 0},
    detail::separator("mnuFileBar4", "mnuFile"),
    detail::command("mnuFileExit", "E&xit                                               Alt+F4", "mnuFile", Routine::FileExit),

    detail::menu("mnuoutline", "&Outline"),
    detail::command("mnuOutlineInsertAbove", "Insert &above     Alt+A", "mnuoutline", Routine::OutlineInsertAbove),
    detail::command("mnuOutlineInsertBelow", "Insert &below      Alt+B", "mnuoutline", Routine::OutlineInsertBelow),
    detail::command("mnuOutlineInsertChild", "&Insert child        Alt+I", "mnuoutline", Routine::OutlineInsertChild),
    detail::separator("mnuOutlineBar1", "mnuoutline"),
    detail::command("mnuOutlineIndent", "Inden&t               Alt+Right", "mnuoutline", Routine::OutlineIndent),
    detail::command("mnuOutlineUnindent", "&Unindent           Alt+Left", "mnuoutline", Routine::OutlineUnindent),
    detail::menu("mnuOutlineMove", "&Move", "mnuoutline"),
    detail::command("mnuOutlineMoveUp", "Mo&ve up           Alt+Up", "mnuOutlineMove", Routine::OutlineMoveUp),
    detail::command("mnuOutlineMoveDown", "Move do&wn      Alt+Down", "mnuOutlineMove", Routine::OutlineMoveDown),
    detail::command("mnuOutlineMoveFirst", "Move &first         Alt+Home", "mnuOutlineMove", Routine::OutlineMoveFirst),
    detail::command("mnuOutlineMoveLast", "Move &last        Alt+End", "mnuOutlineMove", Routine::OutlineMoveLast),
    detail::separator("mnuOutlineBar2", "mnuoutline"),
    detail::command("mnuOutlineExpand", "&Expand             Plus", "mnuoutline", Routine::OutlineExpand),
    detail::menu("mnuOutlineExpandLevel", "Expa&nd to level", "mnuoutline"),
    detail::command("mnuOutlineExpandLevel1", "&1", "mnuOutlineExpandLevel", Routine::OutlineExpandToLevel, 1),
    detail::command("mnuOutlineExpandLevel2", "&2", "mnuOutlineExpandLevel", Routine::OutlineExpandToLevel, 2),
    detail::command("mnuOutlineExpandLevel3", "&3", "mnuOutlineExpandLevel", Routine::OutlineExpandToLevel, 3),
    detail::command("mnuOutlineExpandLevel4", "&4", "mnuOutlineExpandLevel", Routine::OutlineExpandToLevel, 4),
    detail::command("mnuOutlineExpandLevel5", "&5", "mnuOutlineExpandLevel", Routine::OutlineExpandToLevel, 5),
    detail::command("mnuOutlineExpandLevel6", "&6", "mnuOutlineExpandLevel", Routine::OutlineExpandToLevel, 6),
    detail::command("mnuOutlineExpandLevel7", "&7", "mnuOutlineExpandLevel", Routine::OutlineExpandToLevel, 7),
    detail::command("mnuOutlineExpandAll", "E&xpand all", "mnuoutline", Routine::OutlineExpandAll),
    detail::command("mnuOutlineCollapse", "&Collapse            Minus", "mnuoutline", Routine::OutlineCollapse),
    detail::command("mnuOutlineCollapseAll", "C&ollapse all", "mnuoutline", Routine::OutlineCollapseAll),
    detail::separator("mnuOutlineBar4", "mnuoutline"),
    detail::command("mnuOutlineCopy", "&Copy                 Alt+C", "mnuoutline", Routine::OutlineCopy),
    detail::command("mnuOutlinePaste", "&Paste                Alt+P", "mnuoutline", Routine::OutlinePaste),
    detail::command("mnuOutlinePasteAndDelete", "Paste &and delete", "mnuoutline", Routine::OutlinePasteAndDelete),
    detail::command("mnuOutlineDelete", "&Delete               Alt+Delete", "mnuoutline", Routine::OutlineDelete),
    detail::command("mnuOutlineRename", "&Rename            F2", "mnuoutline", Routine::OutlineRename),
    detail::separator("mnuOutlineBar5", "mnuoutline"),
    detail::command("mnuOutlineSortCurrent", "Sort current &entry", "mnuoutline", Routine::OutlineSortCurrent),
    detail::command("mnuOutlineSortAll", "&Sort all entries", "mnuoutline", Routine::OutlineSortAll),
    detail::separator("mnuOutlineBar6", "mnuoutline"),
    detail::command("mnuOutlineTaggedEntry", "Ta&g / untag entry    Alt+T", "mnuoutline", Routine::OutlineTaggedEntry),
    detail::command("mnuOutlinePasteTaggedEntries", "Paste tagged entries", "mnuoutline", Routine::OutlinePasteTaggedEntries),
    detail::command("mnuOutlineDeleteTaggedEntries", "Delete tagged entries", "mnuoutline", Routine::OutlineDeleteTaggedEntries),
    detail::separator("mnuOutlineBar7", "mnuoutline"),
    detail::command("mnuOutlineFont", "&Font...", "mnuoutline", Routine::OutlineFont),

    detail::menu("mnuEdit", "&Edit"),
    detail::command("mnuEditCut", "Cu&t               Ctrl+X", "mnuEdit", Routine::EditCut),
    detail::command("mnuEditCopy", "&Copy            Ctrl+C", "mnuEdit", Routine::EditCopy),
    detail::command("mnuEditPaste", "&Paste           Ctrl+V", "mnuEdit", Routine::EditPaste),
    detail::command("mnuEditPasteSpecial", "Paste &special", "mnuEdit", Routine::EditPasteSpecial),
    detail::command("mnuEditDelete", "&Delete          Del", "mnuEdit", Routine::EditDelete),
    detail::command("mnuEditSelectAll", "Select &all      Ctrl+A", "mnuEdit", Routine::EditSelectAll),
    detail::command("mnuEditClearEntryText", "Cl&ear entry text", "mnuEdit", Routine::EditClearEntryText),
    detail::separator("mnuEditBar1", "mnuEdit"),
    detail::menu("mnuEditInsert", "&Insert", "mnuEdit"),
    detail::command("mnuEditInsertTab", "Insert &tab             Ctrl+Tab", "mnuEditInsert", Routine::EditInsertTab),
    detail::command("mnuEditInsertLongDate", "Insert &long date", "mnuEditInsert", Routine::EditInsertLongDate),
    detail::command("mnuEditInsertShortDate", "Insert &short date  Ctrl+D", "mnuEditInsert", Routine::EditInsertShortDate),
    detail::command("mnuEditInsertTime", "Insert ti&me            Ctrl+M", "mnuEditInsert", Routine::EditInsertTime),
    detail::separator("mnuEditBar2", "mnuEdit"),
    detail::menu("mnuEditCase", "Ca&se", "mnuEdit"),
    detail::command("mnuEditCaseLower", "&Lower", "mnuEditCase", Routine::EditCaseLower),
    detail::command("mnuEditCaseProperName", "&Proper name", "mnuEditCase", Routine::EditCaseProper),
    detail::command("mnuEditCaseUpper", "&Upper", "mnuEditCase", Routine::EditCaseUpper),
    detail::command("mnuEditCaseToggle", "&Toggle", "mnuEditCase", Routine::EditCaseToggle),
    detail::separator("mnuEditBar3", "mnuEdit"),
    detail::menu("mnuEditFormat", "F&ormat", "mnuEdit"),
    detail::command("mnuEditFormatBold", "&Bold", "mnuEditFormat", Routine::EditFormatBold),
    detail::command("mnuEditFormatItalic", "&Italic", "mnuEditFormat", Routine::EditFormatItalic),
    detail::command("mnuEditFormatStrikeThrough", "Stri&kethrough", "mnuEditFormat", Routine::EditFormatStrikeThrough),
    detail::command("mnuEditFormatUnderline", "&Underline", "mnuEditFormat", Routine::EditFormatUnderline),
    detail::separator("mnuEditFormatBar1", "mnuEditFormat"),
    detail::command("mnuEditFormatLeft", "&Left", "mnuEditFormat", Routine::EditFormatLeft),
    detail::command("mnuEditFormatCentre", "C&entre", "mnuEditFormat", Routine::EditFormatCentre),
    detail::command("mnuEditFormatRight", "&Right", "mnuEditFormat", Routine::EditFormatRight),
    detail::separator("mnuEditFormatBar2", "mnuEditFormat"),
    detail::command("mnuEditFormatBullet", "Bulle&ts", "mnuEditFormat", Routine::EditFormatBullet),
    detail::command("mnuEditFormatIndent", "In&dent", "mnuEditFormat", Routine::EditFormatIndent),
    detail::command("mnuEditFormatUnindent", "Unind&ent", "mnuEditFormat", Routine::EditFormatUnindent),
    detail::separator("mnuEditBar5", "mnuEdit"),
    detail::command("mnuEditCurrentFont", "Change current &font...", "mnuEdit", Routine::EditCurrentFont),
    detail::command("mnuEditDocumentFont", "Change document fo&nt...", "mnuEdit", Routine::EditDocumentFont),

    detail::menu("mnuSearch", "&Search"),
    detail::command("mnuSearchFind", "&Find", "mnuSearch", Routine::SearchFind),
    detail::command("mnuSearchReplace", "Find and &replace", "mnuSearch", Routine::SearchReplace),
    detail::command("mnuSearchRepeat", "Repeat &last find", "mnuSearch", Routine::SearchRepeat),

    detail::menu("mnuView", "&View"),
    detail::command("mnuViewToolbar", "&Toolbar", "mnuView", Routine::ViewToolbar),
    detail::command("mnuViewMDITaskbar", "&MDI taskbar", "mnuView", Routine::None),
    detail::command("mnuViewStatusBar", "Status &bar", "mnuView", Routine::ViewStatusBar),
    detail::separator("mnuViewBar1", "mnuView"),
    detail::command("mnuViewGoToOutline", "Go to &outline", "mnuView", Routine::ViewGoToOutline),
    detail::command("mnuViewGoToText", "Go to &text", "mnuView", Routine::ViewGoToText),
    detail::separator("mnuViewBar2", "mnuView"),
    detail::command("mnuViewMaximiseLeft", "Maximise &left", "mnuView", Routine::ViewMaximiseLeft),
    detail::command("mnuViewMaximiseRight", "Maximise &right", "mnuView", Routine::ViewMaximiseRight),
    detail::command("mnuViewEqualiseLeftAndRight", "Equalise left &and right", "mnuView", Routine::ViewEqualiseLeftAndRight),
    detail::command("mnuViewFitSplit", "&Fit split", "mnuView", Routine::ViewFitSplit),
    detail::command("mnuViewMoveSplit", "Move &split", "mnuView", Routine::ViewMoveSplit),
    detail::separator("mnuViewBar3", "mnuView"),
    detail::menu("mnuViewOptions", "O&ptions...", "mnuView"),
    detail::command("mnuViewOptionsBackupOnSave", "&Back up on saving", "mnuViewOptions", Routine::ViewOptionsBackupOnSave),
    detail::command("mnuViewOptionsAutoFitSplit", "&Fit split automatically", "mnuViewOptions", Routine::ViewOptionsAutoFitSplit),
    detail::command("mnuViewOptionsStartWithNewDoc", "Start with &new document", "mnuViewOptions", Routine::ViewOptionsStartWithNewDoc),
    detail::command("mnuViewOptionsStartWithPrevDocs", "Start with &previous documents", "mnuViewOptions", Routine::ViewOptionsStartWithPrevDocs),
    detail::command("mnuViewOptionsClickToRenameEntry", "Click to &rename entry", "mnuViewOptions", Routine::ViewOptionsClickToRenameEntry),

    detail::menu("mnuWindow", "&Window"),
    detail::command("mnuWindowNewWindow", "&New window", "mnuWindow", Routine::None),
    detail::command("mnuWindowCascade", "&Cascade", "mnuWindow", Routine::WindowCascade),
    detail::command("mnuWindowTileHorizontal", "Tile &horizontal", "mnuWindow", Routine::WindowTileHorizontal),
    detail::command("mnuWindowTileVertical", "Tile &vertical", "mnuWindow", Routine::WindowTileVertical),
    detail::command("mnuWindowArrangeIcons", "&Arrange icons", "mnuWindow", Routine::WindowArrangeIcons),

    detail::menu("mnuHelp", "&Help"),
    detail::command("mnuHelpContents", "&Contents", "mnuHelp", Routine::HelpContents),
    detail::command("mnuHelpSearch", "&Search for help on...", "mnuHelp", Routine::HelpSearch),
    detail::separator("mnuHelpBar1", "mnuHelp"),
    detail::command("mnuHelpAbout", "&About Quillery...", "mnuHelp", Routine::HelpAbout),
};
// clang-format on

inline constexpr std::size_t noRow = commandTable.size();

// The row of an item, or noRow.
constexpr std::size_t commandRow(std::string_view name)
{
    for (std::size_t row = 0; row < commandTable.size(); ++row) {
        if (commandTable[row].name == name)
            return row;
    }
    return noRow;
}

namespace detail
{

// Every name occurs once, and every parent is a menu above its items.
constexpr bool isMenuTree()
{
    for (std::size_t row = 0; row < commandTable.size(); ++row) {
        if (commandRow(commandTable[row].name) != row)
            return false;
        const std::string_view parent = commandTable[row].parent;
        if (parent.empty() ? commandTable[row].kind != RowKind::Menu
                           : commandRow(parent) >= row || commandTable[commandRow(parent)].kind != RowKind::Menu)
            return false;
    }
    return true;
}

} // namespace detail

static_assert(detail::isMenuTree());
