// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/Toolbar.h"

#include "app/DesktopKeys.h"
#include "app/TableText.h"
#include "app/ToolbarIcon.h"
#include "document/Ports.h"
#include "util/Procedure.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QPainter>
#include <QStyleOption>
#include <QStylePainter>
#include <QToolButton>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace
{

// In device-independent pixels.
constexpr int iconExtent = 20;

class SeparatorLine final : public QWidget
{
public:
    SeparatorLine() { setObjectName(u"tbLine"_s); }

    QSize sizeHint() const override { return {style()->pixelMetric(QStyle::PM_ToolBarSeparatorExtent), 0}; }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QStyleOption option;
        option.initFrom(this);
        option.state |= QStyle::State_Horizontal;
        style()->drawPrimitive(QStyle::PE_IndicatorToolBarSeparator, &option, &painter, this);
    }
};

// What the tool tip adds to the button's name: the key that does the same, in parentheses.
QString keyOfButton(const ToolbarRow &button)
{
    for (const CommandRow &item : commandTable) {
        if (item.routine != button.routine || item.argument != button.argument)
            continue;
        if (const QString key = keyTextOf(item); !key.isEmpty())
            return u" (%1)"_s.arg(key);
    }
    return QString();
}

// A button whose pressed state shows: styles draw it with so little difference that it is lost on dark colours. Its
// tool tip is shown with the key, which is no part of its name.
class ToolbarButton final : public QToolButton
{
public:
    explicit ToolbarButton(const ToolbarRow &row)
        : m_key(keyOfButton(row))
    {
    }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::ToolTip)
            return QToolButton::event(event);
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), toolTip() + m_key, this);
        return true;
    }

    void paintEvent(QPaintEvent *event) override
    {
        if (!isChecked() || isDown()) {
            QToolButton::paintEvent(event);
            return;
        }
        constexpr float tint = 0.35F;
        constexpr double corner = 3;
        QStylePainter painter(this);
        QColor colour = palette().color(QPalette::Highlight);
        colour.setAlphaF(tint);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(palette().color(QPalette::Highlight));
        painter.setBrush(colour);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), corner, corner);
        QStyleOptionToolButton option;
        initStyleOption(&option);
        option.state &= ~QStyle::State_On;
        painter.drawComplexControl(QStyle::CC_ToolButton, option);
    }

private:
    QString m_key;
};

// A button is shown in more states than it may be used in: it then does what the menu item of its routine does.
// Whatever no item runs, is always to be had.
bool itsItemIsEnabled(const ToolbarRow &button)
{
    bool hasItem = false;
    for (const CommandRow &item : commandTable) {
        if (item.routine != button.routine || item.argument != button.argument)
            continue;
        if (ports().commands->isCommandEnabled(item.name))
            return true;
        hasItem = true;
    }
    return !hasItem;
}

std::size_t groupOf(std::size_t row)
{
    return static_cast<std::size_t>(toolbarTable[row].group);
}

} // namespace

Toolbar::Toolbar(BoundRoutines routines, QWidget *parent)
    : QToolBar(u"Toolbar"_s, parent)
    , m_routines(std::move(routines))
{
    setObjectName(u"tbToolBar"_s);
    setMovable(false);
    // The button that Qt adds for what does not fit.
    if (auto *more = findChild<QToolButton *>(u"qt_toolbar_ext_button"_s))
        more->setAccessibleName(u"More buttons"_s);
    setIconSize({iconExtent, iconExtent});
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        if (row > 0 && groupOf(row) != groupOf(row - 1))
            m_lines[groupOf(row)] = addPlace(new SeparatorLine);
        m_buttons[row] = addPlace(makeButton(row));
    }
    drawIcons();
    arrange(CommandState());
}

Toolbar::Place Toolbar::addPlace(QWidget *content)
{
    auto *room = new QWidget(this);
    auto *layout = new QHBoxLayout(room);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content);
    QSizePolicy policy = content->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    content->setSizePolicy(policy);
    return {addWidget(room), content};
}

QToolButton *Toolbar::makeButton(std::size_t row)
{
    const QString key = toText(toolbarTable[row].key);
    auto *made = new ToolbarButton(toolbarTable[row]);
    made->setObjectName(u"tb"_s + toText(toolbarTable[row].icon));
    made->setText(key);
    made->setToolTip(key);
    made->setAccessibleName(key);
    made->setAccessibleDescription(key);
    made->setCheckable(toolbarTable[row].kind == ButtonKind::Toggle);
    made->setAutoRaise(true);
    made->setFocusPolicy(Qt::NoFocus);
    made->setIconSize(iconSize());
    made->setToolButtonStyle(canShowToolbarIcons() ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextOnly);
    connect(made, &QToolButton::clicked, this, [this, row] { tbToolBar_ButtonClick(row); });
    return made;
}

QToolButton *Toolbar::button(std::string_view key) const
{
    return static_cast<QToolButton *>(m_buttons[toolbarRow(key)].content);
}

void Toolbar::applyMenuEnable(const CommandState &state)
{
    m_shown.fill(false);
    applyRules(menuEnableButtons(), state);
    arrange(CommandState());
}

void Toolbar::applyMenuEnableDynamic(const CommandState &state)
{
    applyRules(menuEnableDynamicButtons(), state);
    arrange(state);
}

void Toolbar::applyRules(std::span<const ButtonRule> rules, const CommandState &state)
{
    for (const ButtonRule &rule : rules) {
        const std::size_t row = toolbarRow(rule.button);
        m_shown[row] = rule.shown(state) && m_routines.contains(toolbarTable[row].routine);
    }
}

void Toolbar::arrange(const CommandState &state)
{
    std::array<bool, groupCount> shown{};
    std::array<bool, groupCount> placed{};
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        const ToolbarRow &entry = toolbarTable[row];
        const bool keepsPlace = keepsPlaces(entry.group, state) && m_routines.contains(entry.routine);
        shown[groupOf(row)] |= m_shown[row];
        placed[groupOf(row)] |= m_shown[row] || keepsPlace;
        m_buttons[row].room->setVisible(m_shown[row] || keepsPlace);
        m_buttons[row].content->setVisible(m_shown[row]);
    }
    bool anyBefore = shown[0];
    for (std::size_t group = 1; group < groupCount; ++group) {
        m_lines[group].room->setVisible(placed[group]);
        m_lines[group].content->setVisible(shown[group] && anyBefore);
        anyBefore = anyBefore || shown[group];
    }
}

void Toolbar::setPressed(std::span<const PressedButton> buttons)
{
    for (const PressedButton &each : buttons)
        button(each.button)->setChecked(each.pressed);
}

void Toolbar::setButtonToolTip(std::string_view key, const QString &toolTip)
{
    QToolButton *changed = button(key);
    changed->setToolTip(toolTip);
    // Assistive technology tells what a press does now, as the tooltip does; by its own name where that says the same.
    const QString ownName = QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
    const QString name = toolTip.compare(ownName, Qt::CaseInsensitive) == 0 ? ownName : toolTip;
    changed->setAccessibleName(name);
    changed->setAccessibleDescription(name);
}

void Toolbar::changeEvent(QEvent *event)
{
    QToolBar::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        drawIcons();
}

void Toolbar::drawIcons()
{
    const QColor colour = palette().color(QPalette::ButtonText);
    for (const ToolbarRow &row : toolbarTable)
        button(row.key)->setIcon(toolbarIcon(toText(row.icon), colour));
}

void Toolbar::tbToolBar_ButtonClick(std::size_t row)
{
    procedure("frmMain tbToolBar_ButtonClick", [&] {
        const auto routine = m_routines.find(toolbarTable[row].routine);
        if (routine != m_routines.end() && itsItemIsEnabled(toolbarTable[row]))
            routine->second(toolbarTable[row].argument);
        ports().commands->UpdateToolbarStatus();
    });
}
