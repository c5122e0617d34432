// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <span>
#include <string_view>

class QKeyEvent;

// The keys of a document window that run commands, from either pane. A key acts only while its menu item is enabled.

// One key: which modifiers it needs, the menu item that must be enabled, and the command.
struct KeyBinding {
    enum Modifiers {
        // Whatever modifiers are held.
        Any,
        // The key of the numeric keypad, whatever modifiers are held.
        Keypad,
        // Alt and no other modifier.
        Alt,
        // Ctrl and no other modifier.
        Ctrl,
        // Ctrl and Shift and no other modifier.
        CtrlShift,
    };

    Modifiers modifiers;
    int key;
    std::string_view item;
    void (*command)();
};

std::span<const KeyBinding> keyMap();

// The binding of a key press, enabled or not; null when the key has none.
const KeyBinding *bindingOf(const QKeyEvent &event);

// Whether a key press is Ctrl+F6, which goes to the next document whatever menu item is enabled.
bool isNextDocumentKey(const QKeyEvent &event);

// What the key is on the US layout, of those that run commands, for a layout that has another script's letter or
// another sign on it; 0 for the rest.
int keyByPlace(const QKeyEvent &event);
