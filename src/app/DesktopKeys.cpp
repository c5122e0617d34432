// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DesktopKeys.h"

#include "app/TableText.h"
#include "document/Ports.h"
#include "window/KeyMap.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <algorithm>

namespace
{

const DesktopKey *desktopKeyOf(int key, Qt::KeyboardModifiers modifiers)
{
    const auto found = std::find_if(desktopKeys.begin(), desktopKeys.end(), [&](const DesktopKey &each) {
        return each.key.key() == key && each.key.keyboardModifiers() == modifiers;
    });
    return found == desktopKeys.end() ? nullptr : &*found;
}

} // namespace

QString keyTextOf(const CommandRow &row)
{
    for (const DesktopKey &each : desktopKeys) {
        if (each.item == row.name)
            return QKeySequence(each.key).toString(QKeySequence::NativeText);
    }
    const QString caption = toText(row.caption);
    const qsizetype blanks = caption.indexOf(QStringLiteral("  "));
    return blanks < 0 ? QString() : caption.sliced(blanks).trimmed();
}

DesktopKeyFilter::DesktopKeyFilter(QWidget &mainWindow)
    : QObject(&mainWindow)
    , m_mainWindow(mainWindow)
{
    for (std::size_t place = 0; place < desktopKeys.size(); ++place) {
        auto *action = mainWindow.findChild<QAction *>(toText(desktopKeys[place].item));
        Q_ASSERT(action);
        action->setShortcut(desktopKeys[place].key);
        // A key held down too long is not meant as many documents.
        action->setAutoRepeat(false);
        m_actions[place] = action;
    }
    qApp->installEventFilter(this);
}

bool DesktopKeyFilter::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto *widget = qobject_cast<const QWidget *>(watched);
    if (!widget || widget->window() != &m_mainWindow)
        return QObject::eventFilter(watched, event);
    auto &press = *static_cast<QKeyEvent *>(event);
    const Qt::KeyboardModifiers modifiers = press.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    const DesktopKey *found = desktopKeyOf(press.key(), modifiers);
    const bool byPlace = !found;
    if (byPlace)
        found = desktopKeyOf(keyByPlace(press), modifiers);
    if (!found)
        return QObject::eventFilter(watched, event);
    const bool enabled = ports().commands->isCommandEnabled(found->item);
    // The action's own shortcut is next.
    if (enabled && !byPlace)
        return QObject::eventFilter(watched, event);
    event->accept();
    // While something is dragged, the keys belong to that.
    if (enabled && event->type() == QEvent::KeyPress && !press.isAutoRepeat() &&
        QApplication::mouseButtons() == Qt::NoButton)
        m_actions[static_cast<std::size_t>(found - desktopKeys.data())]->trigger();
    return true;
}
