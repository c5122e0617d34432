// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusMessage>
#include <QObject>

// Dark colours where the desktop asks for them and the toolkit does not give them by itself: it takes the colours of a
// Plasma desktop, but knows nothing of the preference that GNOME and others tell through the settings portal
// (org.freedesktop.portal.Settings, "color-scheme" of "org.freedesktop.appearance"). Asking does not wait for the
// answer, and later changes are followed. Colours that the user chose for this toolkit's programs stay, but where they
// swallow outlines, greyed text or captions, as those of high contrast do, what was swallowed is made visible.
class DesktopColours final : public QObject
{
    Q_OBJECT

public:
    explicit DesktopColours(QObject *parent = nullptr);

    // 1 is a preference for dark, 2 for light, 0 none.
    void follow(uint scheme);

private Q_SLOTS:
    void settingChanged(const QDBusMessage &change);

private:
    void ask();
    void makeLegible();

    // Whether the colours are ours.
    bool m_dark = false;
};
