// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Tells the tour through the running program what the tables say, as JSON, one text a line: first the menu items, the
// toolbar's buttons and the keys, then, for every line read, what is enabled, shown and checked in the state that the
// line describes. Such a line holds the names of the facts that are true, and "documentCount=2" or "ExpansionLevel=-1".

#include "app/AppCommands.h"
#include "commands/CommandKeys.h"
#include "commands/Dispatcher.h"
#include "commands/ToolbarTable.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMdiArea>

#include <cstdio>
#include <iostream>
#include <string>

using namespace Qt::StringLiterals;

namespace
{

struct Fact {
    const char *name;
    bool CommandState::*value;
};

constexpr Fact facts[] = {
    {"ActiveWritable", &CommandState::ActiveWritable},
    {"ActiveSavable", &CommandState::ActiveSavable},
    {"AnyWritable", &CommandState::AnyWritable},
    {"Selected", &CommandState::Selected},
    {"Writable", &CommandState::Writable},
    {"Savable", &CommandState::Savable},
    {"IsRoot", &CommandState::IsRoot},
    {"HasChildren", &CommandState::HasChildren},
    {"Expanded", &CommandState::Expanded},
    {"FirstSibling", &CommandState::FirstSibling},
    {"LastSibling", &CommandState::LastSibling},
    {"HasPrevious", &CommandState::HasPrevious},
    {"ParentIsRoot", &CommandState::ParentIsRoot},
    {"Tagged", &CommandState::Tagged},
    {"TaggedExist", &CommandState::TaggedExist},
    {"OutlineFocus", &CommandState::OutlineFocus},
    {"TextFocus", &CommandState::TextFocus},
    {"Copied", &CommandState::Copied},
    {"CanMoveDown", &CommandState::CanMoveDown},
    {"CanUndo", &CommandState::CanUndo},
    {"CanRedo", &CommandState::CanRedo},
    {"CanGoBack", &CommandState::CanGoBack},
    {"CanGoForward", &CommandState::CanGoForward},
};

struct OptionFact {
    const char *name;
    bool Options::*value;
};

constexpr OptionFact optionFacts[] = {
    {"ViewToolbar", &Options::ViewToolbar},
    {"ViewStatusbar", &Options::ViewStatusbar},
    {"AutoSplit", &Options::AutoSplit},
    {"Backup", &Options::Backup},
    {"AutoLabelEdit", &Options::AutoLabelEdit},
    {"StartWithNewDocument", &Options::StartWithNewDocument},
    {"StartWithLatestDocuments", &Options::StartWithLatestDocuments},
};

struct Situation {
    CommandState state;
    Options options;
};

void setFact(Situation &situation, const QString &word)
{
    const QString name = word.section(u'=', 0, 0);
    for (const Fact &fact : facts) {
        if (name == QLatin1StringView(fact.name))
            situation.state.*fact.value = true;
    }
    for (const OptionFact &fact : optionFacts) {
        if (name == QLatin1StringView(fact.name))
            situation.options.*fact.value = true;
    }
    if (name == "documentCount"_L1)
        situation.state.documentCount = word.section(u'=', 1).toInt();
    if (name == "ExpansionLevel"_L1)
        situation.state.ExpansionLevel = word.section(u'=', 1).toInt();
}

Situation situationOf(const QString &line)
{
    Situation situation;
    for (const OptionFact &fact : optionFacts)
        situation.options.*fact.value = false;
    for (const QString &word : line.split(u' ', Qt::SkipEmptyParts))
        setFact(situation, word);
    return situation;
}

QString shortcutOf(const CommandRow &row)
{
    for (const CommandKey &key : row.keys) {
        if (key.key != 0 && (key.road == CommandKey::Road::Desktop || key.road == CommandKey::Road::Editing))
            return QKeySequence(combinationOf(key)).toString();
    }
    return QString();
}

QString modifiersOf(const CommandKey &key)
{
    switch (key.modifiers) {
    case CommandKey::Keypad:
        return u"keypad"_s;
    case CommandKey::Alt:
        return u"alt"_s;
    case CommandKey::Ctrl:
        return u"ctrl"_s;
    case CommandKey::CtrlShift:
        return u"ctrl+shift"_s;
    case CommandKey::CtrlAlt:
        return u"ctrl+alt"_s;
    default:
        return QString();
    }
}

QJsonObject tables(const Dispatcher &dispatcher)
{
    constexpr const char *kinds[] = {"menu", "command", "indexed", "separator"};
    QJsonArray items;
    for (const CommandRow &row : commandTable) {
        if (!isMenuItem(row))
            continue;
        items.append(QJsonObject{{u"name"_s, toText(row.name)},
                                 {u"caption"_s, toText(row.caption)},
                                 {u"shortcut"_s, shortcutOf(row)},
                                 {u"parent"_s, toText(row.parent)},
                                 {u"kind"_s, QString::fromLatin1(kinds[static_cast<std::size_t>(row.kind)])},
                                 {u"marked"_s, row.marked},
                                 {u"bound"_s, row.kind != RowKind::Command || dispatcher.isBound(row.name)}});
    }
    QJsonArray buttons;
    for (const ToolbarRow &row : toolbarTable)
        buttons.append(
            QJsonObject{{u"key"_s, toText(row.key)}, {u"bound"_s, dispatcher.isBound(commandTable[row.command].name)}});
    QJsonArray keys;
    for (const auto road : {CommandKey::Road::Panes, CommandKey::Road::Desktop, CommandKey::Road::Editing}) {
        for (const KeyBinding &binding : keysOf(road))
            keys.append(QJsonObject{{u"road"_s, road == CommandKey::Road::Panes ? u"panes"_s : u"desktop"_s},
                                    {u"modifiers"_s, modifiersOf(binding)},
                                    {u"key"_s, QKeySequence(binding.key).toString()}});
    }
    return {{u"items"_s, items}, {u"buttons"_s, buttons}, {u"keys"_s, keys}};
}

QJsonObject expected(const Situation &situation, const Dispatcher &dispatcher)
{
    QJsonObject enabled;
    QJsonObject checked;
    for (const CommandRow &row : commandTable) {
        if (!isMenuItem(row))
            continue;
        const bool runsSomething = row.kind != RowKind::Command || dispatcher.isBound(row.name);
        enabled[toText(row.name)] = runsSomething && row.kind != RowKind::IndexedCommand && row.rule(situation.state);
        if (row.option)
            checked[toText(row.name)] = situation.options.*row.option;
    }
    QJsonObject shown;
    QJsonObject pressed;
    for (const ToolbarRow &row : toolbarTable) {
        shown[toText(row.key)] = row.shown(situation.state) && dispatcher.isBound(commandTable[row.command].name);
        if (row.pressed)
            pressed[toText(row.key)] = row.pressed(situation.state);
    }
    return {{u"enabled"_s, enabled},
            {u"checked"_s, checked},
            {u"shown"_s, shown},
            {u"pressed"_s, pressed},
            {u"tagCaption"_s, commandRows::tagCaption(situation.state)}};
}

void print(const QJsonObject &object)
{
    std::cout << QJsonDocument(object).toJson(QJsonDocument::Compact).constData() << std::endl;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QWidget mainWindow;
    QMdiArea area;
    Dispatcher dispatcher;
    bindAppCommands(dispatcher, mainWindow, area);
    for (const QString &pane : dispatcher.unbound())
        dispatcher.bind(pane.toStdString(), [](int) {});
    print(tables(dispatcher));
    std::string line;
    while (std::getline(std::cin, line))
        print(expected(situationOf(QString::fromStdString(line)), dispatcher));
    return 0;
}
