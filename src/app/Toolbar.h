// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "app/CommandMenus.h"
#include "app/ToolbarRules.h"

#include <QToolBar>

class QToolButton;

// The toolbar made from its table. Every button exists from the start and is shown or hidden, never greyed; one whose
// routine is not bound stays hidden, whatever the rules say. While a pane has the focus its buttons keep their places,
// hidden ones leaving gaps, so that no button slips under a pointer that was over another. Buttons take no keyboard
// focus. Their objects' names are "tb" and the names of their icons.
class Toolbar final : public QToolBar
{
    Q_OBJECT

public:
    explicit Toolbar(BoundRoutines routines, QWidget *parent = nullptr);

    // Shows the buttons that depend on the open documents and hides every other one.
    void applyMenuEnable(const CommandState &state);
    // Shows the buttons that depend on the selected entry and the focus; the others stay as they are.
    void applyMenuEnableDynamic(const CommandState &state);
    void setPressed(std::span<const PressedButton> buttons);
    void setButtonToolTip(std::string_view button, const QString &toolTip);

protected:
    void changeEvent(QEvent *event) override;

private:
    // A button, or the line before a group, in the room it has in the bar. The room stays when what is in it hides, and
    // goes when its action does.
    struct Place {
        QAction *room = nullptr;
        QWidget *content = nullptr;
    };

    static constexpr std::size_t groupCount = static_cast<std::size_t>(ButtonGroup::Alignment) + 1;

    Place addPlace(QWidget *content);
    QToolButton *makeButton(std::size_t row);
    QToolButton *button(std::string_view key) const;
    void applyRules(std::span<const ButtonRule> rules, const CommandState &state);
    void arrange(const CommandState &state);
    void drawIcons();
    void tbToolBar_ButtonClick(std::size_t row);

    BoundRoutines m_routines;
    // By row of the table.
    std::array<Place, toolbarTable.size()> m_buttons;
    std::array<bool, toolbarTable.size()> m_shown{};
    // By group; the first group has no line before it.
    std::array<Place, groupCount> m_lines;
};
