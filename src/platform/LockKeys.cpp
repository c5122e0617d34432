// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/LockKeys.h"

#include <QGuiApplication>
#include <QLibrary>

using namespace Qt::StringLiterals;

#if QT_CONFIG(xcb)

namespace
{

// Xlib's functions are found at run time: Qt's X11 plugin has loaded the library whenever there is a display, and
// nobody else needs it. The declarations are those of X11/Xlib.h and X11/XKBlib.h.
struct Xlib {
    using Atom = unsigned long;

    Atom (*internAtom)(Display *, const char *name, int onlyIfExists);
    int (*sync)(Display *, int discard);
    int (*namedIndicator)(Display *, Atom name, int *index, int *state, void *map, int *real);
    unsigned (*keysymToModifiers)(Display *, unsigned long keysym);
    int (*lockModifiers)(Display *, unsigned device, unsigned affected, unsigned values);

    Xlib()
    {
        QLibrary library(u"X11"_s, 6);
        const auto find = [&library](auto &function, const char *name) {
            function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(library.resolve(name));
            return function != nullptr;
        };
        complete = find(internAtom, "XInternAtom") && find(sync, "XSync") &&
                   find(namedIndicator, "XkbGetNamedIndicator") && find(keysymToModifiers, "XkbKeysymToModifiers") &&
                   find(lockModifiers, "XkbLockModifiers");
    }

    bool complete = false;
};

constexpr unsigned coreKeyboard = 0x100;
constexpr unsigned long numLockKeysym = 0xff7f;
constexpr unsigned capsLockMask = 1U << 1;

const Xlib &xlib()
{
    static const Xlib functions;
    return functions;
}

Display *display()
{
    const auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 && xlib().complete ? x11->display() : nullptr;
}

// Which of the modifiers the Num Lock key is, differs from keyboard to keyboard.
unsigned modifierOf(Display *shown, LockKey key)
{
    return key == LockKey::Caps ? capsLockMask : xlib().keysymToModifiers(shown, numLockKeysym);
}

} // namespace

std::optional<bool> DesktopLockKeys::isOn(LockKey key) const
{
    Display *shown = display();
    if (!shown)
        return std::nullopt;
    const Xlib::Atom light = xlib().internAtom(shown, key == LockKey::Caps ? "Caps Lock" : "Num Lock", 0);
    int state = 0;
    if (!xlib().namedIndicator(shown, light, nullptr, &state, nullptr, nullptr))
        return std::nullopt;
    return state != 0;
}

void DesktopLockKeys::toggle(LockKey key)
{
    const std::optional<bool> before = isOn(key);
    if (!before)
        return;
    Display *shown = display();
    const unsigned modifier = modifierOf(shown, key);
    xlib().lockModifiers(shown, coreKeyboard, modifier, *before ? 0 : modifier);
    xlib().sync(shown, 0);
}

#else

std::optional<bool> DesktopLockKeys::isOn(LockKey) const
{
    return std::nullopt;
}

void DesktopLockKeys::toggle(LockKey) {}

#endif
