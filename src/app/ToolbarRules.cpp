// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/ToolbarRules.h"

#include "model/TextSelection.h"
#include "util/Procedure.h"

using namespace Qt::StringLiterals;

namespace
{

using State = const CommandState &;

bool always(State)
{
    return true;
}

bool documentOpen(State s)
{
    return s.Open();
}

bool outlineFocus(State s)
{
    return s.OutlineFocus;
}

bool textFocus(State s)
{
    return s.TextFocus;
}

bool writableText(State s)
{
    return s.TextFocus && s.Writable && !s.TextWithheld;
}

constexpr ButtonRule staticButtons[] = {
    {"New File", always},
    {"Open File", always},
    {"Save File", [](State s) { return s.Open() && s.ActiveSavable; }},
    {"Print File", documentOpen},
    {"Preview File", documentOpen},
    {"Print Entry", documentOpen},
    {"Preview Entry", documentOpen},
};

constexpr ButtonRule dynamicButtons[] = {
    {"Go To Outline", textFocus},
    {"Go To Text", outlineFocus},
    {"Copy Entry", outlineFocus},
    {"Paste Entry", outlineFocus},
    {"Delete Entry", [](State s) { return s.OutlineFocus && s.Selected && !s.IsRoot; }},
    {"New Entry Above", [](State s) { return s.OutlineFocus && !s.IsRoot; }},
    {"New Entry Below", outlineFocus},
    {"New Entry As Child", outlineFocus},
    {"Move Entry Up", [](State s) { return s.OutlineFocus && s.CanMoveUp(); }},
    {"Move Entry Down", [](State s) { return s.OutlineFocus && s.CanMoveDown; }},
    {"Move Entry First", [](State s) { return s.OutlineFocus && s.Movable() && !s.FirstSibling; }},
    {"Move Entry Last", [](State s) { return s.OutlineFocus && s.Movable() && !s.LastSibling; }},
    {"Indent Entry", [](State s) { return s.OutlineFocus && s.Movable() && s.HasPrevious; }},
    {"Unindent Entry", [](State s) { return s.OutlineFocus && s.Movable() && !s.ParentIsRoot; }},
    {"Tag Entry", [](State s) { return s.OutlineFocus && !s.IsRoot; }},
    {"Sort Entry", [](State s) { return s.OutlineFocus && s.HasChildren; }},
    {"Expand Entry", [](State s) { return s.OutlineFocus && s.HasChildren && !s.Expanded; }},
    {"Contract Entry", [](State s) { return s.OutlineFocus && s.HasChildren && s.Expanded; }},
    {"Expand to level 1", outlineFocus},
    {"Expand to level 2", outlineFocus},
    {"Expand to level 3", outlineFocus},
    {"Expand to level 4", outlineFocus},
    {"Expand to level 5", outlineFocus},
    {"Expand to level 6", outlineFocus},
    {"Expand to level 7", outlineFocus},
    {"Expand all levels", outlineFocus},
    {"Cut Text", writableText},
    {"Copy Text", textFocus},
    {"Paste Text", writableText},
    {"Delete Text", writableText},
    {"Bold Text", writableText},
    {"Italic Text", writableText},
    {"Underline Text", writableText},
    {"Bullet Text", writableText},
    {"Indent Text", writableText},
    {"Unindent Text", writableText},
    {"Left Align Text", writableText},
    {"Centre Align Text", writableText},
    {"Right Align Text", writableText},
};

constexpr bool allButtonsHaveOneRule()
{
    std::array<int, toolbarTable.size() + 1> rules{};
    for (const ButtonRule &rule : staticButtons)
        ++rules[toolbarRow(rule.button)];
    for (const ButtonRule &rule : dynamicButtons)
        ++rules[toolbarRow(rule.button)];
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        if (rules[row] != 1)
            return false;
    }
    return rules[noButton] == 0;
}

static_assert(allButtonsHaveOneRule());

PressedButton formatButton(std::string_view button, std::optional<bool> value)
{
    return {button, modMain::SetButtonValue(value) == 1};
}

} // namespace

std::span<const ButtonRule> menuEnableButtons()
{
    return staticButtons;
}

std::span<const ButtonRule> menuEnableDynamicButtons()
{
    return dynamicButtons;
}

bool keepsPlaces(ButtonGroup group, const CommandState &state)
{
    if (group == ButtonGroup::File)
        return true;
    // One of the two is shown at a time, in the one place.
    if (group == ButtonGroup::Panes)
        return false;
    return group < ButtonGroup::Text ? state.OutlineFocus : state.TextFocus;
}

std::array<PressedButton, 8> pressedExpansion(int expansionLevel)
{
    return {{{"Expand to level 1", expansionLevel == 1},
             {"Expand to level 2", expansionLevel == 2},
             {"Expand to level 3", expansionLevel == 3},
             {"Expand to level 4", expansionLevel == 4},
             {"Expand to level 5", expansionLevel == 5},
             {"Expand to level 6", expansionLevel == 6},
             {"Expand to level 7", expansionLevel == 7},
             {"Expand all levels", expansionLevel == -1}}};
}

std::array<PressedButton, 6> pressedFormats(const TextSelection &text)
{
    const std::optional<TextSelection::Alignment> alignment = text.SelAlignment();
    const auto aligned = [&](TextSelection::Alignment which) {
        return alignment ? std::optional(*alignment == which) : std::nullopt;
    };
    return {formatButton("Bold Text", text.SelBold()),
            formatButton("Italic Text", text.SelItalic()),
            formatButton("Underline Text", text.SelUnderline()),
            formatButton("Left Align Text", aligned(TextSelection::Left)),
            formatButton("Centre Align Text", aligned(TextSelection::Centre)),
            formatButton("Right Align Text", aligned(TextSelection::Right))};
}

QString tagEntryToolTip(bool tagged)
{
    return tagged ? u"Untag entry"_s : u"Tag entry"_s;
}

namespace modMain
{

qint16 SetButtonValue(std::optional<bool> value)
{
    return procedure("modMain SetButtonValue", [&] { return static_cast<qint16>(value.value_or(false)); });
}

} // namespace modMain
