// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/KeyMap.h"

#include "document/Document.h"
#include "document/Ports.h"
#include "document/TextPane.h"
#include "outline/modOutline.h"
#include "text/modEdit.h"
#include "text/modFont.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace
{

using namespace modOutline;
using namespace modEdit;

void stepSize(qint16 direction)
{
    if (const Document *document = DocumentActive(); document && document->txtRTF.SelLength() > 0)
        modFont::ChangeSelectedFontSize(direction);
}

void smaller()
{
    stepSize(-1);
}

void larger()
{
    stepSize(1);
}

// "<" and ">" are the comma and the full stop of the US layout with Shift, and come as the one or the other.
// Alt+Home and Alt+End are possible exactly when moving up and down are.
constexpr std::array bindings = {
    KeyBinding{KeyBinding::Keypad, Qt::Key_Plus, "mnuOutlineExpand", OutlineExpand},
    KeyBinding{KeyBinding::Keypad, Qt::Key_Minus, "mnuOutlineCollapse", OutlineCollapse},
    KeyBinding{KeyBinding::Any, Qt::Key_F2, "mnuOutlineRename", OutlineRename},
    KeyBinding{KeyBinding::Ctrl, Qt::Key_D, "mnuEditInsertShortDate", EditInsertShortDate},
    KeyBinding{KeyBinding::Ctrl, Qt::Key_M, "mnuEditInsertTime", EditInsertTime},
    KeyBinding{KeyBinding::CtrlShift, Qt::Key_Less, "mnuEditCurrentFont", smaller},
    KeyBinding{KeyBinding::CtrlShift, Qt::Key_Comma, "mnuEditCurrentFont", smaller},
    KeyBinding{KeyBinding::CtrlShift, Qt::Key_Greater, "mnuEditCurrentFont", larger},
    KeyBinding{KeyBinding::CtrlShift, Qt::Key_Period, "mnuEditCurrentFont", larger},
    KeyBinding{KeyBinding::Alt, Qt::Key_A, "mnuOutlineInsertAbove", OutlineInsertAbove},
    KeyBinding{KeyBinding::Alt, Qt::Key_B, "mnuOutlineInsertBelow", OutlineInsertBelow},
    KeyBinding{KeyBinding::Alt, Qt::Key_I, "mnuOutlineInsertChild", OutlineInsertChild},
    KeyBinding{KeyBinding::Alt, Qt::Key_C, "mnuOutlineCopy", OutlineCopy},
    KeyBinding{KeyBinding::Alt, Qt::Key_P, "mnuOutlinePaste", OutlinePaste},
    KeyBinding{KeyBinding::Alt, Qt::Key_T, "mnuOutlineTaggedEntry", OutlineTaggedEntry},
    KeyBinding{KeyBinding::Alt, Qt::Key_Right, "mnuOutlineIndent", OutlineIndent},
    KeyBinding{KeyBinding::Alt, Qt::Key_Left, "mnuOutlineUnindent", OutlineUnindent},
    KeyBinding{KeyBinding::Alt, Qt::Key_Up, "mnuOutlineMoveUp", OutlineMoveUp},
    KeyBinding{KeyBinding::Alt, Qt::Key_Down, "mnuOutlineMoveDown", OutlineMoveDown},
    KeyBinding{KeyBinding::Alt, Qt::Key_Home, "mnuOutlineMoveUp", OutlineMoveFirst},
    KeyBinding{KeyBinding::Alt, Qt::Key_End, "mnuOutlineMoveDown", OutlineMoveLast},
    KeyBinding{KeyBinding::Alt, Qt::Key_Delete, "mnuOutlineDelete", OutlineDelete},
};

struct KeyPlace {
    Qt::Key key;
    // Under X and Wayland alike, of the key that is this one on the US layout.
    quint32 scanCode;
};

// Those of the desktop's own keys, too.
constexpr std::array places = {
    KeyPlace{Qt::Key_Q, 24},     KeyPlace{Qt::Key_W, 25},      KeyPlace{Qt::Key_T, 28}, KeyPlace{Qt::Key_U, 30},
    KeyPlace{Qt::Key_I, 31},     KeyPlace{Qt::Key_O, 32},      KeyPlace{Qt::Key_P, 33}, KeyPlace{Qt::Key_A, 38},
    KeyPlace{Qt::Key_S, 39},     KeyPlace{Qt::Key_D, 40},      KeyPlace{Qt::Key_F, 41}, KeyPlace{Qt::Key_H, 43},
    KeyPlace{Qt::Key_C, 54},     KeyPlace{Qt::Key_B, 56},      KeyPlace{Qt::Key_N, 57}, KeyPlace{Qt::Key_M, 58},
    KeyPlace{Qt::Key_Comma, 59}, KeyPlace{Qt::Key_Period, 60},
};

// A letter without its place is a dead key on the layouts of other scripts.
constexpr bool hasPlace(const KeyBinding &binding)
{
    const bool isLetter = binding.key >= Qt::Key_A && binding.key <= Qt::Key_Z;
    return !isLetter ||
           std::ranges::any_of(places, [&binding](const KeyPlace &place) { return place.key == binding.key; });
}

static_assert(std::ranges::all_of(bindings, hasPlace));

bool matches(const KeyBinding &binding, int key, const QKeyEvent &event)
{
    if (binding.key != key)
        return false;
    // The arrow and editing keys of the keypad are as good as the others.
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    switch (binding.modifiers) {
    case KeyBinding::Any:
        return true;
    case KeyBinding::Keypad:
        return event.modifiers().testFlag(Qt::KeypadModifier);
    case KeyBinding::Alt:
        return modifiers == Qt::AltModifier;
    case KeyBinding::Ctrl:
        return modifiers == Qt::ControlModifier;
    case KeyBinding::CtrlShift:
        return modifiers == (Qt::ControlModifier | Qt::ShiftModifier);
    }
    return false;
}

} // namespace

std::span<const KeyBinding> keyMap()
{
    return bindings;
}

const KeyBinding *bindingOf(const QKeyEvent &event)
{
    for (const int key : {event.key(), keyByPlace(event)}) {
        const auto found = std::find_if(bindings.begin(), bindings.end(),
                                        [&](const KeyBinding &binding) { return matches(binding, key, event); });
        if (found != bindings.end())
            return &*found;
    }
    return nullptr;
}

bool isNextDocumentKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_F6 && event.modifiers() == Qt::ControlModifier;
}

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
