// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Tells the tour through the running program what the tables say, as JSON, one text a line: first the menu items, the
// toolbar's buttons and the keys, then, for every line read, what is enabled, shown and checked in the state that the
// line describes. Such a line holds the names of the facts that are true, and "documentCount=2" or "ExpansionLevel=-1".

#include "app/CommandBindings.h"
#include "app/CommandState.h"
#include "app/DesktopKeys.h"
#include "app/TableText.h"
#include "app/ToolbarRules.h"
#include "window/KeyMap.h"

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
    for (const DesktopKey &each : desktopKeys) {
        if (each.item == row.name)
            return QKeySequence(each.key).toString();
    }
    return QString();
}

bool isBound(const CommandRow &row, const BoundRoutines &bound)
{
    return row.kind != RowKind::Command || bound.contains(row.routine);
}

QJsonObject tables(const BoundRoutines &bound)
{
    constexpr const char *kinds[] = {"menu", "command", "indexed", "separator"};
    QJsonArray items;
    for (const CommandRow &row : commandTable)
        items.append(QJsonObject{{u"name"_s, toText(row.name)},
                                 {u"caption"_s, toText(row.caption)},
                                 {u"shortcut"_s, shortcutOf(row)},
                                 {u"parent"_s, toText(row.parent)},
                                 {u"kind"_s, QString::fromLatin1(kinds[static_cast<std::size_t>(row.kind)])},
                                 {u"bound"_s, isBound(row, bound)}});
    QJsonArray buttons;
    for (const ToolbarRow &row : toolbarTable)
        buttons.append(QJsonObject{{u"key"_s, toText(row.key)}, {u"bound"_s, bound.contains(row.routine)}});
    QJsonArray keys;
    constexpr const char *modifiers[] = {"", "keypad", "alt", "ctrl", "ctrl+shift"};
    for (const KeyBinding &binding : keyMap())
        keys.append(
            QJsonObject{{u"modifiers"_s, QString::fromLatin1(modifiers[static_cast<std::size_t>(binding.modifiers)])},
                        {u"key"_s, QKeySequence(binding.key).toString()},
                        {u"item"_s, toText(binding.item)}});
    for (const DesktopKey &each : desktopKeys) {
        const bool shift = each.key.keyboardModifiers().testFlag(Qt::ShiftModifier);
        const bool ctrl = each.key.keyboardModifiers().testFlag(Qt::ControlModifier);
        keys.append(QJsonObject{{u"modifiers"_s, shift  ? u"ctrl+shift"_s
                                                 : ctrl ? u"ctrl"_s
                                                        : QString()},
                                {u"key"_s, QKeySequence(each.key.key()).toString()},
                                {u"item"_s, toText(each.item)}});
    }
    return {{u"items"_s, items}, {u"buttons"_s, buttons}, {u"keys"_s, keys}};
}

QJsonObject expected(const Situation &situation, const BoundRoutines &bound)
{
    QJsonObject enabled;
    for (const CommandRow &row : commandTable)
        enabled[toText(row.name)] = isBound(row, bound) && row.kind != RowKind::IndexedCommand;
    for (const auto rules : {menuEnableRules(), menuEnableDynamicRules()}) {
        for (const EnableRule &rule : rules)
            enabled[toText(rule.item)] =
                rule.enabled(situation.state) && isBound(commandTable[commandRow(rule.item)], bound);
    }
    QJsonObject checked;
    for (const CheckRule &rule : checkRules())
        checked[toText(rule.item)] = situation.options.*rule.option;
    QJsonObject shown;
    for (const ToolbarRow &row : toolbarTable)
        shown[toText(row.key)] = false;
    for (const auto rules : {menuEnableButtons(), menuEnableDynamicButtons()}) {
        for (const ButtonRule &rule : rules)
            shown[toText(rule.button)] =
                rule.shown(situation.state) && bound.contains(toolbarTable[toolbarRow(rule.button)].routine);
    }
    QJsonObject pressed;
    for (const PressedButton &each : pressedExpansion(situation.state.ExpansionLevel))
        pressed[toText(each.button)] = each.pressed;
    return {{u"enabled"_s, enabled},
            {u"checked"_s, checked},
            {u"shown"_s, shown},
            {u"pressed"_s, pressed},
            {u"tagCaption"_s, taggedEntryCaption(situation.state.Tagged)}};
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
    const BoundRoutines bound = boundRoutines(mainWindow, area);
    print(tables(bound));
    std::string line;
    while (std::getline(std::cin, line))
        print(expected(situationOf(QString::fromStdString(line)), bound));
    return 0;
}
