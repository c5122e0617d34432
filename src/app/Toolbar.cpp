// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/Toolbar.h"

#include "app/ToolbarIcon.h"
#include "app/ToolbarRules.h"
#include "commands/CommandKeys.h"
#include "commands/Dispatcher.h"
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
    const QString key = keyTextOf(commandTable[button.command]);
    return key.isEmpty() ? key : u" (%1)"_s.arg(key);
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

std::size_t groupOf(std::size_t row)
{
    return static_cast<std::size_t>(toolbarTable[row].group);
}

} // namespace

Toolbar::Toolbar(Dispatcher &dispatcher, QWidget *parent)
    : QToolBar(u"Toolbar"_s, parent)
    , m_dispatcher(dispatcher)
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

QToolButton *Toolbar::button(std::size_t row) const
{
    return static_cast<QToolButton *>(m_buttons[row].content);
}

bool Toolbar::isBound(std::size_t row) const
{
    return m_dispatcher.isBound(commandTable[toolbarTable[row].command].name);
}

void Toolbar::apply(const CommandState &state)
{
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        const ToolbarRow &entry = toolbarTable[row];
        m_shown[row] = entry.shown(state) && isBound(row);
        if (entry.toolTip)
            showToolTip(row, entry.toolTip(state));
    }
    press(state);
    arrange(state);
}

void Toolbar::press(const CommandState &state)
{
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        if (const Rule pressed = toolbarTable[row].pressed)
            button(row)->setChecked(pressed(state));
    }
}

void Toolbar::applyFormats(const TextSelection &text)
{
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        if (const auto pressedIn = toolbarTable[row].pressedIn)
            button(row)->setChecked(modMain::SetButtonValue(pressedIn(text)) == 1);
    }
}

void Toolbar::arrange(const CommandState &state)
{
    std::array<bool, groupCount> shown{};
    std::array<bool, groupCount> placed{};
    for (std::size_t row = 0; row < toolbarTable.size(); ++row) {
        const ToolbarRow &entry = toolbarTable[row];
        const bool keepsPlace = keepsPlaces(entry.group, state) && isBound(row);
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

void Toolbar::showToolTip(std::size_t row, const QString &toolTip)
{
    QToolButton *changed = button(row);
    changed->setToolTip(toolTip);
    // Assistive technology tells what a press does now, as the tooltip does; by its own name where that says the same.
    const QString ownName = toText(toolbarTable[row].key);
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
    for (std::size_t row = 0; row < toolbarTable.size(); ++row)
        button(row)->setIcon(toolbarIcon(toText(toolbarTable[row].icon), colour));
}

void Toolbar::tbToolBar_ButtonClick(std::size_t row)
{
    procedure("frmMain tbToolBar_ButtonClick", [&] { m_dispatcher.run(commandTable[toolbarTable[row].command].name); });
    Q_EMIT buttonClicked();
}
