// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/KeyMap.h"

#include "model/Document.h"
#include "model/Ports.h"
#include "model/TextPane.h"
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

// Where "<" and ">" are typed with Shift, the keys come as these; elsewhere as what stands on them without it.
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

bool matches(const KeyBinding &binding, const QKeyEvent &event)
{
    if (binding.key != event.key())
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
    const auto found = std::find_if(bindings.begin(), bindings.end(),
                                    [&event](const KeyBinding &binding) { return matches(binding, event); });
    return found == bindings.end() ? nullptr : &*found;
}

bool isAltCharacter(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeyboardModifiers(Qt::ShiftModifier);
    return modifiers == Qt::AltModifier && !event.text().isEmpty() && event.text()[0].isPrint();
}
