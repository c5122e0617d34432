// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "window/ConfirmMenus.h"

#include "outline/EntryDrag.h"

#include <QCursor>
#include <QMenu>

#include <array>

using namespace Qt::StringLiterals;

namespace
{

struct DropItem {
    const char *name;
    const char *caption;
    bool copy;
    Relationship relationship;
    bool DropPlacements::*allowed;
};

constexpr std::array dropItems = {
    DropItem{"mnuConfirmCopyPrevious", "Copy &before", true, Relationship::tvwPrevious, &DropPlacements::previous},
    DropItem{"mnuConfirmCopyNext", "Copy &after", true, Relationship::tvwNext, &DropPlacements::next},
    DropItem{"mnuConfirmCopyChild", "Copy as &child", true, Relationship::tvwChild, &DropPlacements::child},
    DropItem{"mnuConfirmMovePrevious", "Move b&efore", false, Relationship::tvwPrevious, &DropPlacements::previous},
    DropItem{"mnuConfirmMoveNext", "Move a&fter", false, Relationship::tvwNext, &DropPlacements::next},
    DropItem{"mnuConfirmMoveChild", "Move as c&hild", false, Relationship::tvwChild, &DropPlacements::child},
};

QAction *addItem(QMenu &menu, const char *name, const char *caption)
{
    QAction *action = menu.addAction(QString::fromLatin1(caption));
    action->setObjectName(QLatin1StringView(name));
    return action;
}

} // namespace

void confirmDrop(const DropPlacements &placements)
{
    QMenu menu;
    menu.setObjectName(u"mnuConfirm"_s);
    const Relationship preferred = plainRelationship(placements);
    for (const DropItem &item : dropItems) {
        if (!item.copy && item.relationship == Relationship::tvwPrevious)
            menu.addSeparator();
        QAction *action = addItem(menu, item.name, item.caption);
        action->setEnabled(placements.*item.allowed);
        if (item.copy == dragState().copy && item.relationship == preferred)
            menu.setDefaultAction(action);
        QObject::connect(action, &QAction::triggered, &menu, [item] {
            dragState().copy = item.copy;
            dragState().relationship = item.relationship;
            dragState().dragging = true;
        });
    }
    menu.addSeparator();
    addItem(menu, "mnuConfirmCancel", "Cance&l");
    menu.setActiveAction(menu.defaultAction());
    menu.exec(QCursor::pos());
}

void confirmIndent()
{
    QMenu menu;
    menu.setObjectName(u"mnuConfirmIndent"_s);
    const auto choose = [](bool indent) {
        dragState().indent = indent;
        dragState().dragging = true;
    };
    QObject::connect(addItem(menu, "mnuConfirmIndentRight", "&Indent"), &QAction::triggered, &menu,
                     [choose] { choose(true); });
    QObject::connect(addItem(menu, "mnuConfirmIndentLeft", "&Unindent"), &QAction::triggered, &menu,
                     [choose] { choose(false); });
    addItem(menu, "mnuConfirmIndentCancel", "Cance&l");
    menu.exec(QCursor::pos());
}
