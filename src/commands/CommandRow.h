// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandState.h"
#include "document/Globals.h"

#include <array>
#include <optional>
#include <string_view>
#include <type_traits>

class QString;
class TextSelection;

// What a row of the command table says of a command, and the words in which it says it.

// A condition of a command, computed from the state alone.
using Rule = bool (*)(const CommandState &);

namespace detail
{

// "modFile FileNew" is spelled "modFile::FileNew" by the compiler.
template <auto function>
constexpr std::string_view spelledName()
{
    constexpr std::string_view text = __PRETTY_FUNCTION__;
    constexpr std::size_t begin = text.find("function = ") + 11;
    return text.substr(begin, text.find_first_of(";]", begin) - begin);
}

template <auto function>
void callWith(int argument)
{
    if constexpr (std::is_invocable_v<decltype(function)>)
        function();
    else
        function(argument);
}

} // namespace detail

// What a command runs.
struct Routine {
    // Such as "modFile::FileNew". Empty for what runs nothing.
    std::string_view name;
    // Null for a routine that needs a window, which is bound where there are windows.
    void (*run)(int argument);
};

// A routine of the core, which takes the row's argument or none.
template <auto function>
inline constexpr Routine runs{detail::spelledName<function>(), detail::callWith<function>};

// One that a room above binds by the row's name.
constexpr Routine boundAbove(std::string_view name)
{
    return {name, nullptr};
}

// A key that runs a command while its rule holds.
struct CommandKey {
    enum Modifiers {
        // Whatever modifiers are held.
        Any,
        // The key of the numeric keypad, whatever modifiers are held.
        Keypad,
        // The arrow and editing keys of the keypad are as good as the others for the rest.
        None,
        Alt,
        Ctrl,
        CtrlShift,
        CtrlAlt,
    };
    enum class Road {
        // From the panes of a document window, before any menu or pane takes it.
        Panes,
        // Anywhere in the main window: a key that every program of the desktop has, shown in the menus' key column and
        // the tool tips.
        Desktop,
        // The same for a key that editors of a line have for themselves, and keep while they have the keyboard.
        Editing,
        // Anywhere in the main window, shown nowhere or by the caption.
        Window,
    };

    Modifiers modifiers = None;
    // 0 for no key.
    int key = 0;
    Road road = Road::Panes;
};

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

struct CommandButton {
    // Also the button's tooltip, description and accessible name. Empty for no button.
    std::string_view key;
    ButtonGroup group = ButtonGroup::File;
    // Within the group, from 1.
    int place = 0;
    // The name of the drawing in resources/toolbar, without its extension.
    std::string_view icon;
    // Buttons are hidden, never greyed; one is shown in more states than its command can be run in.
    Rule shown = nullptr;
    ButtonKind kind = ButtonKind::Push;
    // When a toggle button is pressed: by the state, or by the format of the text's selection, which is none where it
    // mixes several.
    Rule pressed = nullptr;
    std::optional<bool> (*pressedIn)(const TextSelection &) = nullptr;
    // The tooltip where it changes with the state.
    QString (*toolTip)(const CommandState &) = nullptr;
};

enum class RowKind {
    Menu,
    Command,
    // As many items as there are recent files; the routine takes the item's number.
    IndexedCommand,
    Separator,
    // A command that has a key and no menu item; it depends on the menu that its row names as an item would.
    Key,
};

// That an item shows whether something is shown.
struct CheckMark {
};

// That a command may change more than is seen: the status bar then says what it did, and that it can be taken back.
struct FarReaching {
};

// That a command leads to other entries: where it leads is a place to come back to.
struct Jumps {
};

struct CommandRow {
    std::string_view name;
    // "&" marks the access key. The text behind the run of blanks names the key that the document window handles.
    std::string_view caption;
    // The name of the menu that the item is in; empty for the menus of the menu bar.
    std::string_view parent;
    RowKind kind = RowKind::Command;
    Routine routine = {};
    // When the command can be run, or the menu opened, as long as every menu above it can be.
    Rule rule = nullptr;
    // What the routine is called with: 1 for the current entry's printing, the level of an expansion.
    int argument = 0;
    std::array<CommandKey, 2> keys = {};
    CommandButton button = {};
    // The option that a check mark shows.
    bool Options::*option = nullptr;
    // Whether it has a check mark that whoever binds it sets.
    bool marked = false;
    bool farReaching = false;
    bool jumps = false;
    // The caption where it changes with the state.
    QString (*captionNow)(const CommandState &) = nullptr;

    constexpr CommandRow with(int given) const
    {
        CommandRow row = *this;
        row.argument = given;
        return row;
    }

    constexpr CommandRow with(const CommandKey &key) const
    {
        CommandRow row = *this;
        row.keys[row.keys[0].key == 0 ? 0 : 1] = key;
        return row;
    }

    constexpr CommandRow with(const CommandButton &given) const
    {
        CommandRow row = *this;
        row.button = given;
        return row;
    }

    constexpr CommandRow with(bool Options::*shown) const
    {
        CommandRow row = *this;
        row.option = shown;
        return row;
    }

    constexpr CommandRow with(CheckMark) const
    {
        CommandRow row = *this;
        row.marked = true;
        return row;
    }

    constexpr CommandRow with(Jumps) const
    {
        CommandRow row = *this;
        row.jumps = true;
        return row;
    }

    constexpr CommandRow with(FarReaching) const
    {
        CommandRow row = *this;
        row.farReaching = true;
        return row;
    }

    constexpr CommandRow with(QString (*caption_)(const CommandState &)) const
    {
        CommandRow row = *this;
        row.captionNow = caption_;
        return row;
    }
};
