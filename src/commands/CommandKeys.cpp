// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/CommandKeys.h"

#include "commands/CommandTable.h"

#include <QKeyEvent>

#include <algorithm>

namespace
{

using Road = CommandKey::Road;

template <Road road>
constexpr std::size_t countKeys()
{
    std::size_t count = 0;
    for (const CommandRow &row : commandTable) {
        for (const CommandKey &key : row.keys)
            count += key.key != 0 && key.road == road ? 1 : 0;
    }
    return count;
}

template <Road road>
constexpr auto gatherKeys()
{
    std::array<KeyBinding, countKeys<road>()> found;
    std::size_t place = 0;
    for (const CommandRow &row : commandTable) {
        for (const CommandKey &key : row.keys) {
            if (key.key != 0 && key.road == road)
                found[place++] = KeyBinding{key, row.name};
        }
    }
    return found;
}

constexpr auto paneKeys = gatherKeys<Road::Panes>();
constexpr auto desktopKeys = gatherKeys<Road::Desktop>();
constexpr auto editingKeys = gatherKeys<Road::Editing>();
constexpr auto windowKeys = gatherKeys<Road::Window>();

struct KeyPlace {
    Qt::Key key;
    // Under X and Wayland alike, of the key that is this one on the US layout.
    quint32 scanCode;
};

constexpr std::array places = {
    KeyPlace{Qt::Key_Q, 24}, KeyPlace{Qt::Key_W, 25}, KeyPlace{Qt::Key_E, 26},     KeyPlace{Qt::Key_R, 27},
    KeyPlace{Qt::Key_T, 28}, KeyPlace{Qt::Key_Y, 29}, KeyPlace{Qt::Key_U, 30},     KeyPlace{Qt::Key_I, 31},
    KeyPlace{Qt::Key_O, 32}, KeyPlace{Qt::Key_P, 33}, KeyPlace{Qt::Key_A, 38},     KeyPlace{Qt::Key_S, 39},
    KeyPlace{Qt::Key_D, 40}, KeyPlace{Qt::Key_F, 41}, KeyPlace{Qt::Key_G, 42},     KeyPlace{Qt::Key_H, 43},
    KeyPlace{Qt::Key_J, 44}, KeyPlace{Qt::Key_K, 45}, KeyPlace{Qt::Key_L, 46},     KeyPlace{Qt::Key_Z, 52},
    KeyPlace{Qt::Key_X, 53}, KeyPlace{Qt::Key_C, 54}, KeyPlace{Qt::Key_V, 55},     KeyPlace{Qt::Key_B, 56},
    KeyPlace{Qt::Key_N, 57}, KeyPlace{Qt::Key_M, 58}, KeyPlace{Qt::Key_Comma, 59}, KeyPlace{Qt::Key_Period, 60},
};

// A letter without its place is a dead key on the layouts of other scripts.
constexpr bool hasPlace(const KeyBinding &binding)
{
    const bool isLetter = binding.key >= Qt::Key_A && binding.key <= Qt::Key_Z;
    return !isLetter ||
           std::ranges::any_of(places, [&binding](const KeyPlace &place) { return place.key == binding.key; });
}

static_assert(std::ranges::all_of(paneKeys, hasPlace) && std::ranges::all_of(desktopKeys, hasPlace) &&
              std::ranges::all_of(editingKeys, hasPlace) && std::ranges::all_of(windowKeys, hasPlace));

constexpr bool isTaken(const KeyBinding &binding)
{
    const auto same = [&binding](const KeyBinding &other) {
        return other.key == binding.key && other.modifiers == binding.modifiers;
    };
    return std::ranges::count_if(paneKeys, same) + std::ranges::count_if(desktopKeys, same) +
               std::ranges::count_if(editingKeys, same) + std::ranges::count_if(windowKeys, same) !=
           1;
}

static_assert(std::ranges::none_of(paneKeys, isTaken) && std::ranges::none_of(desktopKeys, isTaken) &&
                  std::ranges::none_of(editingKeys, isTaken) && std::ranges::none_of(windowKeys, isTaken),
              "each key has one command");

// What the key is on the US layout, of those that run commands, for a layout that has another script's letter or
// another sign on it; 0 for the rest.
int keyByPlace(const QKeyEvent &event)
{
    constexpr int lastLatin1 = 0xff;
    const int key = event.key();
    const bool otherScript = key > lastLatin1 && key < Qt::Key_Escape;
    const bool sign = key < Qt::Key_A && QChar(key).isPunct();
    const auto place = std::find_if(places.begin(), places.end(),
                                    [&event](const KeyPlace &each) { return each.scanCode == event.nativeScanCode(); });
    if (place == places.end())
        return 0;
    // A sign where the US layout has a letter is a key of its own, which nobody presses for that letter.
    const bool placeOfSign = place->key < Qt::Key_A;
    return otherScript || (sign && placeOfSign) ? place->key : 0;
}

Qt::KeyboardModifiers keyboardModifiers(CommandKey::Modifiers modifiers)
{
    switch (modifiers) {
    case CommandKey::Alt:
        return Qt::AltModifier;
    case CommandKey::Ctrl:
        return Qt::ControlModifier;
    case CommandKey::CtrlShift:
        return Qt::ControlModifier | Qt::ShiftModifier;
    case CommandKey::CtrlAlt:
        return Qt::ControlModifier | Qt::AltModifier;
    default:
        return Qt::NoModifier;
    }
}

bool matches(const KeyBinding &binding, int key, const QKeyEvent &event)
{
    if (binding.key != key)
        return false;
    if (binding.modifiers == CommandKey::Any)
        return true;
    if (binding.modifiers == CommandKey::Keypad)
        return event.modifiers().testFlag(Qt::KeypadModifier);
    const Qt::KeyboardModifiers held = event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    return held == keyboardModifiers(binding.modifiers);
}

} // namespace

std::span<const KeyBinding> keysOf(CommandKey::Road road)
{
    switch (road) {
    case Road::Panes:
        return paneKeys;
    case Road::Desktop:
        return desktopKeys;
    case Road::Editing:
        return editingKeys;
    case Road::Window:
        return windowKeys;
    }
    return {};
}

const KeyBinding *bindingOf(const QKeyEvent &event, CommandKey::Road road)
{
    const std::span<const KeyBinding> bindings = keysOf(road);
    for (const int key : {event.key(), keyByPlace(event)}) {
        const auto found = std::find_if(bindings.begin(), bindings.end(),
                                        [&](const KeyBinding &binding) { return matches(binding, key, event); });
        if (found != bindings.end())
            return &*found;
    }
    return nullptr;
}

bool isByPlace(const KeyBinding &binding, const QKeyEvent &event)
{
    return binding.key != event.key();
}

QKeyCombination combinationOf(const CommandKey &key)
{
    return QKeyCombination(keyboardModifiers(key.modifiers), Qt::Key(key.key));
}

QString keyTextOf(const CommandRow &row)
{
    for (const CommandKey &key : row.keys) {
        if (key.key != 0 && (key.road == Road::Desktop || key.road == Road::Editing))
            return QKeySequence(combinationOf(key)).toString(QKeySequence::NativeText);
    }
    const QString caption = toText(row.caption);
    const qsizetype blanks = caption.indexOf(QStringLiteral("  "));
    return blanks < 0 ? QString() : caption.sliced(blanks).trimmed();
}
