// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/DesktopColours.h"

#include "platform/HighContrast.h"
#include "platform/LegibleStyle.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFileInfo>
#include <QPalette>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace
{

const QString portalService = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString settingsInterface = u"org.freedesktop.portal.Settings"_s;
const QString appearanceGroup = u"org.freedesktop.appearance"_s;
const QString schemeKey = u"color-scheme"_s;

constexpr uint preferDark = 1;

// Without a bus of the session the library would try to start one.
bool hasSessionBus()
{
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s);
}

bool userChoseColours()
{
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORMTHEME") || qEnvironmentVariableIsSet("QT_STYLE_OVERRIDE");
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QPalette darkPalette()
{
    const QColor text(0xF2, 0xF2, 0xF2);
    const QColor pale(0x80, 0x85, 0x8A);
    QPalette palette(QColor(0x3A, 0x3E, 0x43), QColor(0x2B, 0x2E, 0x32));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, text);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, pale);
    palette.setColor(QPalette::Base, QColor(0x1E, 0x20, 0x23));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x29, 0x2C));
    palette.setColor(QPalette::ToolTipBase, QColor(0x3A, 0x3E, 0x43));
    palette.setColor(QPalette::PlaceholderText, pale);
    palette.setColor(QPalette::Highlight, QColor(0x2A, 0x7A, 0xC7));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x5A, 0xA9, 0xF0));
    palette.setColor(QPalette::LinkVisited, QColor(0xB4, 0x8A, 0xE0));
    return palette;
}

// The portal wraps the value once more than it would have to.
uint schemeOf(QVariant value)
{
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value.toUInt();
}

} // namespace

DesktopColours::DesktopColours(QObject *parent)
    : QObject(parent)
{
    makeLegible();
    if (!userChoseColours() && hasSessionBus())
        ask();
}

void DesktopColours::ask()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(portalService, portalPath, settingsInterface, u"SettingChanged"_s, this,
                SLOT(settingChanged(QDBusMessage)));
    QDBusMessage question = QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, u"Read"_s);
    question << appearanceGroup << schemeKey;
    auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        if (!reply.isError())
            follow(schemeOf(reply.value().variant()));
        answer->deleteLater();
    });
}

void DesktopColours::settingChanged(const QDBusMessage &change)
{
    const QVariantList values = change.arguments();
    if (values.size() == 3 && values[0] == appearanceGroup && values[1] == schemeKey)
        follow(schemeOf(values[2]));
}

void DesktopColours::follow(uint scheme)
{
    const bool dark = scheme == preferDark;
    if (dark == m_dark || (dark && isDark(QApplication::palette())))
        return;
    m_dark = dark;
    // An empty palette is the toolkit's own again.
    QApplication::setPalette(dark ? darkPalette() : QPalette());
    makeLegible();
}

// Only where the toolkit's own style draws: another one knows for itself what to do with such colours.
void DesktopColours::makeLegible()
{
    const bool isDrawnHere = qobject_cast<LegibleStyle *>(QApplication::style());
    if (!isDrawnHere && QApplication::style()->name() != "fusion"_L1)
        return;
    QPalette colours = QApplication::palette();
    if (HighContrast::mend(colours))
        QApplication::setPalette(colours);
    if (!isDrawnHere && LegibleStyle::isNeededFor(colours))
        QApplication::setStyle(new LegibleStyle);
}
