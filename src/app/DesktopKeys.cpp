// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DesktopKeys.h"

#include "commands/CommandKeys.h"
#include "commands/CommandTable.h"
#include "commands/CommandWords.h"
#include "commands/Dispatcher.h"
#include "document/Document.h"
#include "document/Ports.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QWidget>

using namespace Qt::StringLiterals;
using Road = CommandKey::Road;

namespace
{

// A box has the keyboard in place of its line.
bool isLineEditor(const QWidget &widget)
{
    const auto *box = qobject_cast<const QComboBox *>(&widget);
    return (box && box->isEditable()) || qobject_cast<const QLineEdit *>(&widget);
}

// Such as the box of a pane, and its list.
bool isBesideDocuments(const QWidget &widget)
{
    for (const QWidget *outer = &widget; outer; outer = outer->parentWidget()) {
        if (qobject_cast<const QDockWidget *>(outer))
            return true;
    }
    return false;
}

// Whether a key acts on the selected entry or its text, wherever it is pressed.
bool actsInDocument(const QKeyEvent &press)
{
    const auto acts = [](const KeyBinding *binding) {
        if (!binding)
            return false;
        const std::string_view routine = commandTable[commandRow(binding->command)].routine.name;
        return routine.starts_with("modEdit::") || routine.starts_with("modOutline::");
    };
    return acts(bindingOf(press, Road::Desktop)) || acts(bindingOf(press, Road::Window));
}

// Whoever saves by habit is not to believe that something was saved.
void sayWhyNotRun(std::string_view command)
{
    Document *document = DocumentActive();
    if (command == "mnuFileSave" && document && !document->mayBeSaved())
        document->say(u"This document is read-only, so it was not saved. Save as makes a file of it"_s);
}

} // namespace

DesktopKeyFilter::DesktopKeyFilter(QWidget &mainWindow, Dispatcher &dispatcher)
    : QObject(&mainWindow)
    , m_mainWindow(mainWindow)
    , m_dispatcher(dispatcher)
{
    for (const Road road : {Road::Desktop, Road::Editing})
        giveShortcuts(road);
    // An action fires before the area of the documents takes a key to switch between them.
    for (const KeyBinding &each : keysOf(Road::Window)) {
        auto *action = new QAction(&mainWindow);
        action->setObjectName(QStringLiteral("key_") + toText(each.command));
        action->setShortcut(combinationOf(each));
        connect(action, &QAction::triggered, this, [this, command = each.command] { m_dispatcher.run(command); });
        mainWindow.addAction(action);
    }
    qApp->installEventFilter(this);
}

void DesktopKeyFilter::giveShortcuts(Road road)
{
    for (const KeyBinding &each : keysOf(road)) {
        auto *action = m_mainWindow.findChild<QAction *>(toText(each.command));
        Q_ASSERT(action);
        action->setShortcuts(action->shortcuts() << QKeySequence(combinationOf(each)));
        // A key held down too long is not meant as many documents.
        action->setAutoRepeat(road == Road::Editing);
        m_actions[each.command] = action;
    }
}

bool DesktopKeyFilter::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto *widget = qobject_cast<const QWidget *>(watched);
    if (!widget)
        return QObject::eventFilter(watched, event);
    auto &press = *static_cast<QKeyEvent *>(event);
    // Nobody sees there what it would do.
    if (isBesideDocuments(*widget) && actsInDocument(press)) {
        press.accept();
        return true;
    }
    if (widget->window() != &m_mainWindow)
        return QObject::eventFilter(watched, event);
    const KeyBinding *found = bindingOf(press, Road::Desktop);
    const KeyBinding *editing = found ? nullptr : bindingOf(press, Road::Editing);
    if (editing && isLineEditor(*widget)) {
        // Nor is it to become a shortcut where the editor has no use for it.
        event->accept();
        return event->type() == QEvent::ShortcutOverride;
    }
    if (editing)
        found = editing;
    if (const KeyBinding *window = found ? nullptr : bindingOf(press, Road::Window))
        return isByPlace(*window, press) && runByPlace(*window, press);
    if (!found)
        return QObject::eventFilter(watched, event);
    const bool enabled = m_dispatcher.isEnabled(found->command);
    // The action's own shortcut is next. A pane of text would take a key of editors first.
    if (enabled && !editing && !isByPlace(*found, press))
        return QObject::eventFilter(watched, event);
    event->accept();
    if (!enabled && event->type() == QEvent::KeyPress && !press.isAutoRepeat())
        sayWhyNotRun(found->command);
    // While something is dragged, the keys belong to that.
    if (enabled && event->type() == QEvent::KeyPress && (editing || !press.isAutoRepeat()) &&
        QApplication::mouseButtons() == Qt::NoButton)
        editing ? m_dispatcher.run(found->command) : m_actions.at(found->command)->trigger();
    return true;
}

// An action of the window's own knows its letter, and not the place where that is on another keyboard.
bool DesktopKeyFilter::runByPlace(const KeyBinding &binding, QKeyEvent &press)
{
    press.accept();
    if (press.type() == QEvent::KeyPress && !press.isAutoRepeat())
        m_dispatcher.run(binding.command);
    return true;
}
