// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandRoutines.h"
#include "commands/CommandRow.h"
#include "commands/CommandRules.h"
#include "commands/CommandWords.h"
#include "commands/modTools.h"
#include "document/modFile.h"
#include "outline/modOutline.h"
#include "search/modSearch.h"
#include "text/modEdit.h"

#include <Qt>

// The program's commands as a table: one row a command, in the order of the menu bar. A row says everything of its
// command: caption and menu, what it runs and when, its keys, its toolbar button.
namespace commandRows
{

using namespace rules;
using namespace modFile;
using namespace modOutline;
using namespace modEdit;
using namespace modSearch;
using namespace modTools;
using enum ButtonGroup;
using enum CommandKey::Modifiers;

constexpr CommandRow menu(std::string_view name, std::string_view caption, std::string_view parent, Rule rule)
{
    return {name, caption, parent, RowKind::Menu, {}, rule};
}

constexpr CommandRow separator(std::string_view name, std::string_view parent)
{
    return {name, {}, parent, RowKind::Separator, {}, always};
}

constexpr CommandRow indexed(std::string_view name, std::string_view parent, const Routine &routine)
{
    return {name, {}, parent, RowKind::IndexedCommand, routine, always};
}

// What follows the rule, in any order: the argument, keys, the button, the option or the caption that changes.
template <typename... Parts>
constexpr CommandRow command(std::string_view name, std::string_view caption, std::string_view parent,
                             const Routine &routine, Rule rule, const Parts &...parts)
{
    CommandRow row{name, caption, parent, RowKind::Command, routine, rule};
    ((row = row.with(parts)), ...);
    return row;
}

template <typename... Parts>
constexpr CommandRow keyAlone(std::string_view name, std::string_view parent, const Routine &routine, Rule rule,
                              const Parts &...parts)
{
    CommandRow row{name, {}, parent, RowKind::Key, routine, rule};
    ((row = row.with(parts)), ...);
    return row;
}

constexpr CommandKey paneKey(CommandKey::Modifiers modifiers, Qt::Key key)
{
    return {modifiers, key, CommandKey::Road::Panes};
}

constexpr CommandKey desktopKey(CommandKey::Modifiers modifiers, Qt::Key key)
{
    return {modifiers, key, CommandKey::Road::Desktop};
}

constexpr CommandKey editingKey(CommandKey::Modifiers modifiers, Qt::Key key)
{
    return {modifiers, key, CommandKey::Road::Editing};
}

constexpr CommandKey windowKey(CommandKey::Modifiers modifiers, Qt::Key key)
{
    return {modifiers, key, CommandKey::Road::Window};
}

constexpr CommandButton push(std::string_view key, ButtonGroup group, int place, std::string_view icon, Rule shown,
                             QString (*toolTip)(const CommandState &) = nullptr)
{
    return {key, group, place, icon, shown, ButtonKind::Push, nullptr, nullptr, toolTip};
}

constexpr CommandButton toggle(std::string_view key, ButtonGroup group, int place, std::string_view icon, Rule shown,
                               Rule pressed)
{
    return {key, group, place, icon, shown, ButtonKind::Toggle, pressed, nullptr};
}

constexpr CommandButton toggle(std::string_view key, ButtonGroup group, int place, std::string_view icon, Rule shown,
                               std::optional<bool> (*pressedIn)(const TextSelection &))
{
    return {key, group, place, icon, shown, ButtonKind::Toggle, nullptr, pressedIn};
}

inline constexpr Routine runsNothing = {};

// clang-format off
inline constexpr std::array table{
    menu("mnuFile", "&File", "", always),
    command("mnuFileNew", "&New", "mnuFile", runs<FileNew>, always, desktopKey(Ctrl, Qt::Key_N),
            push("New File", File, 1, "NewFile", always)),
    command("mnuFileOpen", "&Open", "mnuFile", runs<FileOpen>, always, desktopKey(Ctrl, Qt::Key_O),
            push("Open File", File, 2, "OpenFile", always)),
    command("mnuFileClose", "&Close", "mnuFile", runs<FileClose>, documentOpen, desktopKey(Ctrl, Qt::Key_W)),
    separator("mnuFileBar1", "mnuFile"),
    command("mnuFileSave", "&Save", "mnuFile", runs<FileSave>, savable, desktopKey(Ctrl, Qt::Key_S),
            push("Save File", File, 3, "SaveFile", activeSavable)),
    command("mnuFileSaveAs", "Save &as...", "mnuFile", runs<FileSaveAs>, selected, desktopKey(CtrlShift, Qt::Key_S)),
    command("mnuFileSaveAll", "Save a&ll", "mnuFile", runs<FileSaveAll>, anyWritable),
    separator("mnuFileBar2", "mnuFile"),
    menu("mnuFileImport", "&Import new document", "mnuFile", always),
    command("mnuFileImportClipboard", "From &clipboard", "mnuFileImport", runs<FileImportClipboard>, always),
    command("mnuFileImportText", "From &text file...", "mnuFileImport", runs<FileImportText>, always),
    menu("mnuFileExport", "&Export this document", "mnuFile", documentOpen),
    command("mnuFileExportClipboard", "To &clipboard", "mnuFileExport", runs<FileExportClipboard>, always),
    command("mnuFileExportText", "To &text file...", "mnuFileExport", runs<FileExportText>, always),
    separator("mnuFileBar3", "mnuFile"),
    command("mnuFilePrintSetup", "Print set&up...", "mnuFile", runs<FilePrintSetup>, always),
    command("mnuFilePrintPreview", "Print pre&view...", "mnuFile", runs<FilePrintPreview>, documentOpen,
            push("Preview File", File, 5, "PreviewFile", documentOpen)),
    command("mnuFilePrint", "&Print...", "mnuFile", runs<FilePrint>, documentOpen, desktopKey(Ctrl, Qt::Key_P),
            push("Print File", File, 4, "PrintFile", documentOpen)),
    command("mnuFilePrintEntry", "Print &current entry...", "mnuFile", runs<FilePrint>, always, 1,
            push("Print Entry", Entry, 4, "PrintEntry", documentOpen)),
    command("mnuFilePrintPreviewEntry", "Print preview current &entry...", "mnuFile", runs<FilePrintPreview>, always, 1,
            push("Preview Entry", Entry, 5, "PreviewEntry", documentOpen)),
    separator("mnuFileBarMRU", "mnuFile"),
    indexed("mnuFileMRU", "mnuFile", runs<FileMRU>),
    separator("mnuFileBar4", "mnuFile"),
    command("mnuFileExit", "E&xit                                               Alt+F4", "mnuFile", runs<FileExit>, always, desktopKey(Ctrl, Qt::Key_Q)),

    menu("mnuoutline", "&Outline", "", documentOpen),
    command("mnuOutlineInsertAbove", "Insert &above     Alt+A", "mnuoutline", runs<OutlineInsertAbove>, writableBelowRoot, paneKey(Alt, Qt::Key_A),
            push("New Entry Above", NewEntry, 1, "NewEntryAbove", inOutlineAnd<belowRoot>)),
    command("mnuOutlineInsertBelow", "Insert &below      Alt+B", "mnuoutline", runs<OutlineInsertBelow>, writable, paneKey(Alt, Qt::Key_B),
            push("New Entry Below", NewEntry, 2, "NewEntryBelow", inOutline)),
    command("mnuOutlineInsertChild", "&Insert child        Alt+I", "mnuoutline", runs<OutlineInsertChild>, writable, paneKey(Alt, Qt::Key_I),
            push("New Entry As Child", NewEntry, 3, "NewEntryAsChild", inOutline)),
    separator("mnuOutlineBar1", "mnuoutline"),
    command("mnuOutlineIndent", "Inden&t               Alt+Right", "mnuoutline", runs<OutlineIndent>, indentable, paneKey(Alt, Qt::Key_Right),
            push("Indent Entry", MoveEntry, 5, "IndentEntry", inOutlineAnd<indentable>)),
    command("mnuOutlineUnindent", "&Unindent           Alt+Left", "mnuoutline", runs<OutlineUnindent>, unindentable, paneKey(Alt, Qt::Key_Left),
            push("Unindent Entry", MoveEntry, 6, "UnindentEntry", inOutlineAnd<unindentable>)),
    menu("mnuOutlineMove", "&Move", "mnuoutline", movable),
    command("mnuOutlineMoveUp", "Mo&ve up           Alt+Up", "mnuOutlineMove", runs<OutlineMoveUp>, movableUp, paneKey(Alt, Qt::Key_Up),
            push("Move Entry Up", MoveEntry, 1, "MoveEntryUp", inOutlineAnd<movableUp>)),
    command("mnuOutlineMoveDown", "Move do&wn      Alt+Down", "mnuOutlineMove", runs<OutlineMoveDown>, movableDown, paneKey(Alt, Qt::Key_Down),
            push("Move Entry Down", MoveEntry, 2, "MoveEntryDown", inOutlineAnd<movableDown>)),
    command("mnuOutlineMoveFirst", "Move &first         Alt+Home", "mnuOutlineMove", runs<OutlineMoveFirst>, movableFirst,
            push("Move Entry First", MoveEntry, 3, "MoveEntryFirst", inOutlineAnd<movableFirst>)),
    command("mnuOutlineMoveLast", "Move &last        Alt+End", "mnuOutlineMove", runs<OutlineMoveLast>, movableLast,
            push("Move Entry Last", MoveEntry, 4, "MoveEntryLast", inOutlineAnd<movableLast>)),
    // Alt+Home and Alt+End are possible exactly when moving up and down are.
    keyAlone("keyOutlineMoveFirst", "mnuOutlineMove", runs<OutlineMoveFirst>, movableUp, paneKey(Alt, Qt::Key_Home)),
    keyAlone("keyOutlineMoveLast", "mnuOutlineMove", runs<OutlineMoveLast>, movableDown, paneKey(Alt, Qt::Key_End)),
    separator("mnuOutlineBar2", "mnuoutline"),
    command("mnuOutlineExpand", "&Expand             Plus", "mnuoutline", runs<OutlineExpand>, expandable, paneKey(Keypad, Qt::Key_Plus),
            push("Expand Entry", ExpandEntry, 1, "ExpandEntry", inOutlineAnd<withChildrenHidden>)),
    menu("mnuOutlineExpandLevel", "Expa&nd to level", "mnuoutline", always),
    command("mnuOutlineExpandLevel1", "&1", "mnuOutlineExpandLevel", runs<OutlineExpandToLevel>, always, 1,
            toggle("Expand to level 1", ExpandEntry, 3, "ExpandToLevel1", inOutline, expandedTo<1>)),
    command("mnuOutlineExpandLevel2", "&2", "mnuOutlineExpandLevel", runs<OutlineExpandToLevel>, always, 2,
            toggle("Expand to level 2", ExpandEntry, 4, "ExpandToLevel2", inOutline, expandedTo<2>)),
    command("mnuOutlineExpandLevel3", "&3", "mnuOutlineExpandLevel", runs<OutlineExpandToLevel>, always, 3,
            toggle("Expand to level 3", ExpandEntry, 5, "ExpandToLevel3", inOutline, expandedTo<3>)),
    command("mnuOutlineExpandLevel4", "&4", "mnuOutlineExpandLevel", runs<OutlineExpandToLevel>, always, 4,
            toggle("Expand to level 4", ExpandEntry, 6, "ExpandToLevel4", inOutline, expandedTo<4>)),
    command("mnuOutlineExpandLevel5", "&5", "mnuOutlineExpandLevel", runs<OutlineExpandToLevel>, always, 5,
            toggle("Expand to level 5", ExpandEntry, 7, "ExpandToLevel5", inOutline, expandedTo<5>)),
    command("mnuOutlineExpandLevel6", "&6", "mnuOutlineExpandLevel", runs<OutlineExpandToLevel>, always, 6,
            toggle("Expand to level 6", ExpandEntry, 8, "ExpandToLevel6", inOutline, expandedTo<6>)),
    command("mnuOutlineExpandLevel7", "&7", "mnuOutlineExpandLevel", runs<OutlineExpandToLevel>, always, 7,
            toggle("Expand to level 7", ExpandEntry, 9, "ExpandToLevel7", inOutline, expandedTo<7>)),
    command("mnuOutlineExpandAll", "E&xpand all", "mnuoutline", runs<OutlineExpandAll>, always,
            toggle("Expand all levels", ExpandEntry, 10, "ExpandAllLevels", inOutline, expandedTo<-1>)),
    command("mnuOutlineCollapse", "&Collapse            Minus", "mnuoutline", runs<OutlineCollapse>, collapsible, paneKey(Keypad, Qt::Key_Minus),
            push("Contract Entry", ExpandEntry, 2, "ContractEntry", inOutlineAnd<withChildrenShown>)),
    command("mnuOutlineCollapseAll", "C&ollapse all", "mnuoutline", runs<OutlineCollapseAll>, always),
    separator("mnuOutlineBar4", "mnuoutline"),
    command("mnuOutlineCopy", "&Copy                 Alt+C", "mnuoutline", runs<OutlineCopy>, always, paneKey(Alt, Qt::Key_C),
            push("Copy Entry", Entry, 1, "CopyEntry", inOutline)),
    command("mnuOutlinePaste", "&Paste                Alt+P", "mnuoutline", runs<OutlinePaste>, entryCopied, paneKey(Alt, Qt::Key_P),
            push("Paste Entry", Entry, 2, "PasteEntry", inOutline)),
    command("mnuOutlinePasteAndDelete", "Paste &and delete", "mnuoutline", runs<OutlinePasteAndDelete>, entryCopied),
    command("mnuOutlineDelete", "&Delete               Alt+Delete", "mnuoutline", runs<OutlineDelete>, deletable, FarReaching(), paneKey(Alt, Qt::Key_Delete),
            push("Delete Entry", Entry, 3, "DeleteEntry", inOutlineAnd<selectedBelowRoot>)),
    command("mnuOutlineRename", "&Rename            F2", "mnuoutline", runs<OutlineRename>, writableAndSelected, paneKey(Any, Qt::Key_F2)),
    separator("mnuOutlineBar5", "mnuoutline"),
    command("mnuOutlineSortCurrent", "Sort current &entry", "mnuoutline", runs<OutlineSortCurrent>, sortable,
            push("Sort Entry", MarkEntry, 2, "SortEntry", inOutlineAnd<withChildren>)),
    command("mnuOutlineSortAll", "&Sort all entries", "mnuoutline", runs<OutlineSortAll>, writable, FarReaching()),
    separator("mnuOutlineBar6", "mnuoutline"),
    command("mnuOutlineTaggedEntry", "Ta&g / untag entry    Alt+T", "mnuoutline", runs<OutlineTaggedEntry>, taggable, paneKey(Alt, Qt::Key_T), tagCaption,
            push("Tag Entry", MarkEntry, 1, "TagEntry", inOutlineAnd<taggable>, tagToolTip)),
    command("mnuOutlinePasteTaggedEntries", "Paste tagged entries", "mnuoutline", runs<OutlinePasteTaggedEntries>, taggedExist, FarReaching()),
    command("mnuOutlineDeleteTaggedEntries", "Delete tagged entries", "mnuoutline", runs<OutlineDeleteTaggedEntries>, taggedExist, FarReaching()),
    separator("mnuOutlineBar7", "mnuoutline"),
    command("mnuOutlineFont", "&Font...", "mnuoutline", runs<OutlineFont>, always, FarReaching()),

    menu("mnuEdit", "&Edit", "", inText),
    command("mnuEditCut", "Cu&t               Ctrl+X", "mnuEdit", runs<EditCut>, inChangeableText,
            push("Cut Text", Text, 1, "CutText", inChangeableText)),
    command("mnuEditCopy", "&Copy            Ctrl+C", "mnuEdit", runs<EditCopy>, inText,
            push("Copy Text", Text, 2, "CopyText", inText)),
    command("mnuEditPaste", "&Paste           Ctrl+V", "mnuEdit", runs<EditPaste>, inChangeableText,
            push("Paste Text", Text, 3, "PasteText", inChangeableText)),
    command("mnuEditPasteSpecial", "Paste &special", "mnuEdit", runs<EditPasteSpecial>, inChangeableText),
    command("mnuEditDelete", "&Delete          Del", "mnuEdit", runs<EditDelete>, inChangeableText,
            push("Delete Text", Text, 4, "DeleteText", inChangeableText)),
    command("mnuEditSelectAll", "Select &all      Ctrl+A", "mnuEdit", runs<EditSelectAll>, inText),
    command("mnuEditClearEntryText", "Cl&ear entry text", "mnuEdit", runs<EditClearEntryText>, inWritableText, FarReaching()),
    separator("mnuEditBar1", "mnuEdit"),
    menu("mnuEditInsert", "&Insert", "mnuEdit", inChangeableText),
    command("mnuEditInsertTab", "Insert &tab             Ctrl+Tab", "mnuEditInsert", runs<EditInsertTab>, always, windowKey(Ctrl, Qt::Key_Tab)),
    command("mnuEditInsertLongDate", "Insert &long date", "mnuEditInsert", runs<EditInsertLongDate>, always),
    command("mnuEditInsertShortDate", "Insert &short date  Ctrl+D", "mnuEditInsert", runs<EditInsertShortDate>, always, paneKey(Ctrl, Qt::Key_D)),
    command("mnuEditInsertTime", "Insert ti&me            Ctrl+M", "mnuEditInsert", runs<EditInsertTime>, always, paneKey(Ctrl, Qt::Key_M)),
    separator("mnuEditBar2", "mnuEdit"),
    menu("mnuEditCase", "Ca&se", "mnuEdit", inChangeableText),
    command("mnuEditCaseLower", "&Lower", "mnuEditCase", runs<EditCaseLower>, always),
    command("mnuEditCaseProperName", "&Proper name", "mnuEditCase", runs<EditCaseProper>, always),
    command("mnuEditCaseUpper", "&Upper", "mnuEditCase", runs<EditCaseUpper>, always),
    command("mnuEditCaseToggle", "&Toggle", "mnuEditCase", runs<EditCaseToggle>, always),
    separator("mnuEditBar3", "mnuEdit"),
    menu("mnuEditFormat", "F&ormat", "mnuEdit", inChangeableText),
    command("mnuEditFormatBold", "&Bold", "mnuEditFormat", runs<EditFormatBold>, always, desktopKey(Ctrl, Qt::Key_B),
            toggle("Bold Text", Characters, 1, "BoldText", inChangeableText, bold)),
    command("mnuEditFormatItalic", "&Italic", "mnuEditFormat", runs<EditFormatItalic>, always, desktopKey(Ctrl, Qt::Key_I),
            toggle("Italic Text", Characters, 2, "ItalicText", inChangeableText, italic)),
    command("mnuEditFormatStrikeThrough", "Stri&kethrough", "mnuEditFormat", runs<EditFormatStrikeThrough>, always),
    command("mnuEditFormatUnderline", "&Underline", "mnuEditFormat", runs<EditFormatUnderline>, always, desktopKey(Ctrl, Qt::Key_U),
            toggle("Underline Text", Characters, 3, "UnderlineText", inChangeableText, underlined)),
    separator("mnuEditFormatBar1", "mnuEditFormat"),
    command("mnuEditFormatLeft", "&Left", "mnuEditFormat", runs<EditFormatLeft>, always,
            toggle("Left Align Text", Alignment, 1, "LeftAlignText", inChangeableText, alignedLeft)),
    command("mnuEditFormatCentre", "C&entre", "mnuEditFormat", runs<EditFormatCentre>, always,
            toggle("Centre Align Text", Alignment, 2, "CentreAlignText", inChangeableText, centred)),
    command("mnuEditFormatRight", "&Right", "mnuEditFormat", runs<EditFormatRight>, always,
            toggle("Right Align Text", Alignment, 3, "RightAlignText", inChangeableText, alignedRight)),
    separator("mnuEditFormatBar2", "mnuEditFormat"),
    command("mnuEditFormatBullet", "Bulle&ts", "mnuEditFormat", runs<EditFormatBullet>, always,
            push("Bullet Text", Paragraphs, 1, "BulletText", inChangeableText)),
    command("mnuEditFormatIndent", "In&dent", "mnuEditFormat", runs<EditFormatIndent>, always,
            push("Indent Text", Paragraphs, 2, "IndentText", inChangeableText)),
    command("mnuEditFormatUnindent", "Unind&ent", "mnuEditFormat", runs<EditFormatUnindent>, always,
            push("Unindent Text", Paragraphs, 3, "UnindentText", inChangeableText)),
    separator("mnuEditBar5", "mnuEdit"),
    command("mnuEditCurrentFont", "Change current &font...", "mnuEdit", runs<EditCurrentFont>, inChangeableText),
    command("mnuEditDocumentFont", "Change document fo&nt...", "mnuEdit", runs<EditDocumentFont>, inWritableText, FarReaching()),
    // "<" and ">" are the comma and the full stop of the US layout with Shift, and come as the one or the other.
    keyAlone("keyTextSmaller", "mnuEdit", runs<textSize::makeSmaller>, inChangeableText, paneKey(CtrlShift, Qt::Key_Less), paneKey(CtrlShift, Qt::Key_Comma)),
    keyAlone("keyTextLarger", "mnuEdit", runs<textSize::makeLarger>, inChangeableText, paneKey(CtrlShift, Qt::Key_Greater), paneKey(CtrlShift, Qt::Key_Period)),

    menu("mnuSearch", "&Search", "", always),
    command("mnuSearchFind", "&Find", "mnuSearch", runs<SearchFind>, always, Jumps(), desktopKey(Ctrl, Qt::Key_F)),
    command("mnuSearchReplace", "Find and &replace", "mnuSearch", runs<SearchReplace>, writable, FarReaching(), Jumps(), desktopKey(Ctrl, Qt::Key_H)),
    command("mnuSearchRepeat", "Repeat &last find", "mnuSearch", runs<SearchRepeat>, always, Jumps(), desktopKey(None, Qt::Key_F3)),

    menu("mnuView", "&View", "", always),
    command("mnuViewToolbar", "&Toolbar", "mnuView", boundAbove("modView::ViewToolbar"), always, &Options::ViewToolbar),
    command("mnuViewMDITaskbar", "&MDI taskbar", "mnuView", runsNothing, never),
    command("mnuViewStatusBar", "Status &bar", "mnuView", boundAbove("modView::ViewStatusBar"), always, &Options::ViewStatusbar),
    separator("mnuViewBar1", "mnuView"),
    command("mnuViewGoToOutline", "Go to &outline", "mnuView", boundAbove("modView::ViewGoToOutline"), always,
            push("Go To Outline", Panes, 1, "GoToOutline", inText)),
    command("mnuViewGoToText", "Go to &text", "mnuView", boundAbove("modView::ViewGoToText"), always,
            push("Go To Text", Panes, 2, "GoToText", inOutline)),
    separator("mnuViewBar2", "mnuView"),
    command("mnuViewMaximiseLeft", "Maximise &left", "mnuView", boundAbove("modView::ViewMaximiseLeft"), always),
    command("mnuViewMaximiseRight", "Maximise &right", "mnuView", boundAbove("modView::ViewMaximiseRight"), always),
    command("mnuViewEqualiseLeftAndRight", "Equalise left &and right", "mnuView", boundAbove("modView::ViewEqualiseLeftAndRight"), always),
    command("mnuViewFitSplit", "&Fit split", "mnuView", boundAbove("modView::ViewFitSplit"), always),
    command("mnuViewMoveSplit", "Move &split", "mnuView", boundAbove("modView::ViewMoveSplit"), always),
    separator("mnuViewBar3", "mnuView"),
    menu("mnuViewOptions", "O&ptions...", "mnuView", always),
    command("mnuViewOptionsBackupOnSave", "&Back up on saving", "mnuViewOptions", boundAbove("modView::ViewOptionsBackupOnSave"), always, &Options::Backup),
    command("mnuViewOptionsAutoFitSplit", "&Fit split automatically", "mnuViewOptions", boundAbove("modView::ViewOptionsAutoFitSplit"), always, &Options::AutoSplit),
    command("mnuViewOptionsStartWithNewDoc", "Start with &new document", "mnuViewOptions", boundAbove("modView::ViewOptionsStartWithNewDoc"), always, &Options::StartWithNewDocument),
    command("mnuViewOptionsStartWithPrevDocs", "Start with &previous documents", "mnuViewOptions", boundAbove("modView::ViewOptionsStartWithPrevDocs"), always, &Options::StartWithLatestDocuments),
    command("mnuViewOptionsClickToRenameEntry", "Click to &rename entry", "mnuViewOptions", boundAbove("modView::ViewOptionsClickToRenameEntry"), always, &Options::AutoLabelEdit),

    menu("mnuTools", "Too&ls", "", always),
    command("mnuToolsUndo", "&Undo", "mnuTools", runs<ToolsUndo>, undoable, editingKey(Ctrl, Qt::Key_Z), undoCaption),
    command("mnuToolsRedo", "&Redo", "mnuTools", runs<ToolsRedo>, redoable, editingKey(CtrlShift, Qt::Key_Z), editingKey(Ctrl, Qt::Key_Y), redoCaption),
    keyAlone("toolsGoTo", "mnuTools", runs<ToolsGoTo>, undoableOrRedoable, Jumps()),
    separator("mnuToolsBar1", "mnuTools"),
    command("mnuToolsGoToAnything", "Go to &anything...", "mnuTools", boundAbove("GoToAnything::show"), always, Jumps(), desktopKey(Ctrl, Qt::Key_K)),
    command("mnuToolsBack", "&Back", "mnuTools", boundAbove("PlaceKeeper::goBack"), placesBehind, desktopKey(CtrlAlt, Qt::Key_Left)),
    command("mnuToolsForward", "For&ward", "mnuTools", boundAbove("PlaceKeeper::goForward"), placesAhead, desktopKey(CtrlAlt, Qt::Key_Right)),
    separator("mnuToolsBarPlaces", "mnuTools"),
    command("mnuToolsJoin", "&Join entries", "mnuTools", runs<OutlineJoin>, joinable, desktopKey(Ctrl, Qt::Key_J)),
    command("mnuToolsSplit", "&Split entry at caret", "mnuTools", runs<OutlineSplit>, inChangeableText, desktopKey(CtrlShift, Qt::Key_J)),
    separator("mnuToolsBarEntries", "mnuTools"),
    command("mnuToolsFindEverywhere", "&Find everywhere  Ctrl+Shift+F", "mnuTools", boundAbove("PaneDocks::toggle"), always, CheckMark()),
    keyAlone("keyFindEverywhere", "mnuTools", boundAbove("PaneDocks::enter"), always, windowKey(CtrlShift, Qt::Key_F)),
    keyAlone("findGoTo", "mnuTools", boundAbove("FindEverywhere::goTo"), always, Jumps()),
    command("mnuToolsHistory", "&History", "mnuTools", boundAbove("PaneDocks::toggle"), always, CheckMark()),
    command("mnuToolsVersions", "&Versions...", "mnuTools", boundAbove("frmVersions::exec"), documentOpen),
    command("mnuToolsRecover", "Re&cover...", "mnuTools", boundAbove("RecoveryList::showWhatIsLeft"), always),
    keyAlone("keyPaneNext", "mnuTools", boundAbove("PaneDocks::goToNext"), always, paneKey(None, Qt::Key_F6)),

    menu("mnuWindow", "&Window", "", always),
    command("mnuWindowNewWindow", "&New window", "mnuWindow", runsNothing, never),
    command("mnuWindowCascade", "&Cascade", "mnuWindow", boundAbove("modWindow::WindowCascade"), always),
    command("mnuWindowTileHorizontal", "Tile &horizontal", "mnuWindow", boundAbove("modWindow::WindowTileHorizontal"), always),
    command("mnuWindowTileVertical", "Tile &vertical", "mnuWindow", boundAbove("modWindow::WindowTileVertical"), always),
    command("mnuWindowArrangeIcons", "&Arrange icons", "mnuWindow", boundAbove("modWindow::WindowArrangeIcons"), always),
    keyAlone("keyWindowNext", "mnuWindow", runs<documentWindows::activateNext>, always, paneKey(Ctrl, Qt::Key_F6)),

    menu("mnuHelp", "&Help", "", always),
    command("mnuHelpContents", "&Contents", "mnuHelp", boundAbove("modHelp::HelpContents"), always, windowKey(None, Qt::Key_F1)),
    command("mnuHelpSearch", "&Search for help on...", "mnuHelp", boundAbove("modHelp::HelpSearch"), always),
    separator("mnuHelpBar1", "mnuHelp"),
    command("mnuHelpAbout", "&About Quillery...", "mnuHelp", boundAbove("modHelp::HelpAbout"), always),
    // For whoever looks into a document's workings.
    keyAlone("keyDiagnostics", "mnuHelp", boundAbove("frmDebug::showModally"), always, windowKey(CtrlShift, Qt::Key_F12)),
};
// clang-format on

} // namespace commandRows

inline constexpr const auto &commandTable = commandRows::table;

inline constexpr std::size_t noRow = commandTable.size();

// The row of a command or menu, or noRow.
constexpr std::size_t commandRow(std::string_view name)
{
    for (std::size_t row = 0; row < commandTable.size(); ++row) {
        if (commandTable[row].name == name)
            return row;
    }
    return noRow;
}

// Whether a row is seen in its menu.
constexpr bool isMenuItem(const CommandRow &row)
{
    return row.kind != RowKind::Key;
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
