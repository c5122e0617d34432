// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/ToolbarTable.h"

#include <QToolBar>

#include <array>

class Dispatcher;
class QToolButton;
class TextSelection;

// The toolbar made from the commands' rows. Every button exists from the start and is shown or hidden, never greyed;
// one whose command runs nothing stays hidden, whatever its rule says. While a pane has the focus its buttons keep
// their places, hidden ones leaving gaps, so that no button slips under a pointer that was over another. Buttons take
// no keyboard focus. Their objects' names are "tb" and the names of their icons.
class Toolbar final : public QToolBar
{
    Q_OBJECT

public:
    explicit Toolbar(Dispatcher &dispatcher, QWidget *parent = nullptr);

    // Shows the buttons that the rules show, and presses those of the state.
    void apply(const CommandState &state);
    // Presses those alone.
    void press(const CommandState &state);
    // Presses the buttons of the formats that the text's selection has.
    void applyFormats(const TextSelection &text);

Q_SIGNALS:
    // A button was clicked and its command is over, if it could be run: a button that is pressed down by that need not
    // be what the state says.
    void buttonClicked();

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
    QToolButton *button(std::size_t row) const;
    bool isBound(std::size_t row) const;
    void showToolTip(std::size_t row, const QString &toolTip);
    void arrange(const CommandState &state);
    void drawIcons();
    void tbToolBar_ButtonClick(std::size_t row);

    Dispatcher &m_dispatcher;
    // By row of the table.
    std::array<Place, toolbarTable.size()> m_buttons;
    std::array<bool, toolbarTable.size()> m_shown{};
    // By group; the first group has no line before it.
    std::array<Place, groupCount> m_lines;
};
