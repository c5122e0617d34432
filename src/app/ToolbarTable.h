// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/CommandTable.h"

// The toolbar as a table: one row a button, in the order in which they stand.

// Buttons that belong together; a line separates one group from the next.
enum class ButtonGroup {
    File,
    Panes,
    Entry,
    NewEntry,
    MoveEntry,
    MarkEntry,
    ExpandEntry,
    Text,
    Characters,
    Paragraphs,
    Alignment,
};

enum class ButtonKind { Push, Toggle };

struct ToolbarRow {
    // Also the button's tooltip, description and accessible name.
    std::string_view key;
    Routine routine;
    // What the routine is called with: 1 for the current entry's printing, the level of an expansion.
    int argument;
    ButtonGroup group;
    ButtonKind kind;
    // The name of the drawing in resources/toolbar, without its extension.
    std::string_view icon;
};

namespace detail
{

constexpr ToolbarRow push(std::string_view key, Routine routine, ButtonGroup group, std::string_view icon,
                          int argument = 0)
{
    return {key, routine, argument, group, ButtonKind::Push, icon};
}

constexpr ToolbarRow toggle(std::string_view key, Routine routine, ButtonGroup group, std::string_view icon,
                            int argument = 0)
{
    return {key, routine, argument, group, ButtonKind::Toggle, icon};
}

} // namespace detail

// clang-format off
inline constexpr std::array toolbarTable{
    detail::push("New File", Routine::FileNew, ButtonGroup::File, "NewFile"),
    detail::push("Open File", Routine::FileOpen, ButtonGroup::File, "OpenFile"),
    detail::push("Save File", Routine::FileSave, ButtonGroup::File, "SaveFile"),
    detail::push("Print File", Routine::FilePrint, ButtonGroup::File, "PrintFile"),
    detail::push("Preview File", Routine::FilePrintPreview, ButtonGroup::File, "PreviewFile"),
    detail::push("Go To Outline", Routine::ViewGoToOutline, ButtonGroup::Panes, "GoToOutline"),
    detail::push("Go To Text", Routine::ViewGoToText, ButtonGroup::Panes, "GoToText"),
    detail::push("Copy Entry", Routine::OutlineCopy, ButtonGroup::Entry, "CopyEntry"),
    detail::push("Paste Entry", Routine::OutlinePaste, ButtonGroup::Entry, "PasteEntry"),
    detail::push("Delete Entry", Routine::OutlineDelete, ButtonGroup::Entry, "DeleteEntry"),
    detail::push("Print Entry", Routine::FilePrint, ButtonGroup::Entry, "PrintEntry", 1),
    detail::push("Preview Entry", Routine::FilePrintPreview, ButtonGroup::Entry, "PreviewEntry", 1),
    detail::push("New Entry Above", Routine::OutlineInsertAbove, ButtonGroup::NewEntry, "NewEntryAbove"),
    detail::push("New Entry Below", Routine::OutlineInsertBelow, ButtonGroup::NewEntry, "NewEntryBelow"),
    detail::push("New Entry As Child", Routine::OutlineInsertChild, ButtonGroup::NewEntry, "NewEntryAsChild"),
    detail::push("Move Entry Up", Routine::OutlineMoveUp, ButtonGroup::MoveEntry, "MoveEntryUp"),
    detail::push("Move Entry Down", Routine::OutlineMoveDown, ButtonGroup::MoveEntry, "MoveEntryDown"),
    detail::push("Move Entry First", Routine::OutlineMoveFirst, ButtonGroup::MoveEntry, "MoveEntryFirst"),
    detail::push("Move Entry Last", Routine::OutlineMoveLast, ButtonGroup::MoveEntry, "MoveEntryLast"),
    detail::push("Indent Entry", Routine::OutlineIndent, ButtonGroup::MoveEntry, "IndentEntry"),
    detail::push("Unindent Entry", Routine::OutlineUnindent, ButtonGroup::MoveEntry, "UnindentEntry"),
    detail::push("Tag Entry", Routine::OutlineTaggedEntry, ButtonGroup::MarkEntry, "TagEntry"),
    detail::push("Sort Entry", Routine::OutlineSortCurrent, ButtonGroup::MarkEntry, "SortEntry"),
    detail::push("Expand Entry", Routine::OutlineExpand, ButtonGroup::ExpandEntry, "ExpandEntry"),
    detail::push("Contract Entry", Routine::OutlineCollapse, ButtonGroup::ExpandEntry, "ContractEntry"),
    detail::toggle("Expand to level 1", Routine::OutlineExpandToLevel, ButtonGroup::ExpandEntry, "ExpandToLevel1", 1),
    detail::toggle("Expand to level 2", Routine::OutlineExpandToLevel, ButtonGroup::ExpandEntry, "ExpandToLevel2", 2),
    detail::toggle("Expand to level 3", Routine::OutlineExpandToLevel, ButtonGroup::ExpandEntry, "ExpandToLevel3", 3),
    detail::toggle("Expand to level 4", Routine::OutlineExpandToLevel, ButtonGroup::ExpandEntry, "ExpandToLevel4", 4),
    detail::toggle("Expand to level 5", Routine::OutlineExpandToLevel, ButtonGroup::ExpandEntry, "ExpandToLevel5", 5),
    detail::toggle("Expand to level 6", Routine::OutlineExpandToLevel, ButtonGroup::ExpandEntry, "ExpandToLevel6", 6),
    detail::toggle("Expand to level 7", Routine::OutlineExpandToLevel, ButtonGroup::ExpandEntry, "ExpandToLevel7", 7),
    detail::toggle("Expand all levels", Routine::OutlineExpandAll, ButtonGroup::ExpandEntry, "ExpandAllLevels"),
    detail::push("Cut Text", Routine::EditCut, ButtonGroup::Text, "CutText"),
    detail::push("Copy Text", Routine::EditCopy, ButtonGroup::Text, "CopyText"),
    detail::push("Paste Text", Routine::EditPaste, ButtonGroup::Text, "PasteText"),
    detail::push("Delete Text", Routine::EditDelete, ButtonGroup::Text, "DeleteText"),
    detail::toggle("Bold Text", Routine::EditFormatBold, ButtonGroup::Characters, "BoldText"),
    detail::toggle("Italic Text", Routine::EditFormatItalic, ButtonGroup::Characters, "ItalicText"),
    detail::toggle("Underline Text", Routine::EditFormatUnderline, ButtonGroup::Characters, "UnderlineText"),
    detail::push("Bullet Text", Routine::EditFormatBullet, ButtonGroup::Paragraphs, "BulletText"),
    detail::push("Indent Text", Routine::EditFormatIndent, ButtonGroup::Paragraphs, "IndentText"),
    detail::push("Unindent Text", Routine::EditFormatUnindent, ButtonGroup::Paragraphs, "UnindentText"),
    detail::toggle("Left Align Text", Routine::EditFormatLeft, ButtonGroup::Alignment, "LeftAlignText"),
    detail::toggle("Centre Align Text", Routine::EditFormatCentre, ButtonGroup::Alignment, "CentreAlignText"),
    detail::toggle("Right Align Text", Routine::EditFormatRight, ButtonGroup::Alignment, "RightAlignText"),
};
// clang-format on

inline constexpr std::size_t noButton = toolbarTable.size();

// The row of a button, or noButton.
constexpr std::size_t toolbarRow(std::string_view key)
{
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        if (toolbarTable[row].key == key)
            return row;
    }
    return noButton;
}

namespace detail
{

// Every key occurs once, and every group's buttons stand together.
constexpr bool isButtonRow()
{
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        if (toolbarRow(toolbarTable[row].key) != row)
            return false;
        if (row > 0 && toolbarTable[row].group < toolbarTable[row - 1].group)
            return false;
    }
    return true;
}

} // namespace detail

static_assert(toolbarTable.size() == 46 && detail::isButtonRow());
