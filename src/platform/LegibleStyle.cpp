// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/LegibleStyle.h"

#include "model/Contrast.h"

#include <QPainter>
#include <QStyleOption>

using namespace Qt::StringLiterals;

namespace
{

// Below it a caption is no more than a guess.
constexpr double leastCaption = 2.0;

// What is as good as black, and what is too dark for edges of a darker shade.
constexpr double nearlyBlack = 1.1;
constexpr double tooDarkForEdges = 2.0;

// White all over, and a text that wants to be read from afar.
constexpr double nearlyWhite = 1.02;
constexpr double strongText = 20;

// On the way from the background to the text.
constexpr double strengthOfOutlines = 0.5;

bool needsOutlines(const QPalette &colours)
{
    const QColor window = colours.color(QPalette::Active, QPalette::Window);
    const QColor base = colours.color(QPalette::Active, QPalette::Base);
    const bool isBlack =
        Contrast::between(base, Qt::black) < nearlyBlack && Contrast::between(window, Qt::black) < tooDarkForEdges;
    const bool isWhite =
        Contrast::between(base, Qt::white) < nearlyWhite && Contrast::between(window, Qt::white) < nearlyWhite;
    return isBlack ||
           (isWhite && Contrast::between(colours.color(QPalette::Active, QPalette::Text), base) >= strongText);
}

bool captionsAreLost(const QPalette &colours)
{
    return Contrast::between(colours.color(QPalette::Active, QPalette::Text),
                             colours.color(QPalette::Active, QPalette::Highlight)) < leastCaption;
}

QColor outlineOf(const QStyleOption &option)
{
    const QPalette &colours = option.palette;
    const QColor text = colours.color(QPalette::Active, QPalette::WindowText);
    if (option.state.testFlag(QStyle::State_HasFocus))
        return text;
    return Contrast::mixed(colours.color(QPalette::Active, QPalette::Window), text, strengthOfOutlines);
}

void drawOutline(QPainter &painter, const QStyleOption &option, bool isRound)
{
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(outlineOf(option));
    if (isRound) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.drawEllipse(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5));
    } else {
        painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
    }
    painter.restore();
}

// The drawing of a caption's button, within a rectangle of its own.
void drawSign(QPainter &painter, QStyle::SubControl button, const QRect &place)
{
    switch (button) {
    case QStyle::SC_TitleBarMinButton:
        painter.drawLine(place.bottomLeft(), place.bottomRight());
        break;
    case QStyle::SC_TitleBarMaxButton:
        painter.drawRect(place);
        painter.drawLine(place.topLeft() + QPoint(0, 1), place.topRight() + QPoint(0, 1));
        break;
    case QStyle::SC_TitleBarNormalButton:
        painter.drawRect(place.adjusted(0, 2, -2, 0));
        painter.drawPolyline(QPolygon({place.topLeft() + QPoint(2, 1), place.topLeft() + QPoint(2, 0), place.topRight(),
                                       place.bottomRight() - QPoint(0, 2), place.bottomRight() - QPoint(1, 2)}));
        break;
    default:
        painter.drawLine(place.topLeft(), place.bottomRight());
        painter.drawLine(place.topRight(), place.bottomLeft());
    }
}

} // namespace

LegibleStyle::LegibleStyle()
    : QProxyStyle(u"fusion"_s)
{
}

bool LegibleStyle::isNeededFor(const QPalette &colours)
{
    return needsOutlines(colours) || captionsAreLost(colours);
}

void LegibleStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                 const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!needsOutlines(option->palette))
        return;
    switch (element) {
    case PE_IndicatorRadioButton:
        drawOutline(*painter, *option, true);
        break;
    case PE_Frame:
    case PE_FrameGroupBox:
    case PE_FrameLineEdit:
    case PE_FrameTabWidget:
    case PE_FrameWindow:
    case PE_IndicatorCheckBox:
    case PE_PanelButtonCommand:
    case PE_PanelMenu:
        drawOutline(*painter, *option, false);
        break;
    default:
        break;
    }
}

void LegibleStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                                      const QWidget *widget) const
{
    const auto *bar = qstyleoption_cast<const QStyleOptionTitleBar *>(option);
    if (control == CC_TitleBar && bar && isNeededFor(bar->palette))
        drawTitleBar(*bar, *painter, widget);
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

void LegibleStyle::drawTitleBar(const QStyleOptionTitleBar &bar, QPainter &painter, const QWidget *widget) const
{
    const bool isActive = bar.titleBarState & State_Active;
    const QColor text =
        bar.palette.color(QPalette::Active, isActive ? QPalette::HighlightedText : QPalette::WindowText);
    const auto place = [&](SubControl part) { return proxy()->subControlRect(CC_TitleBar, &bar, part, widget); };
    painter.save();
    painter.fillRect(bar.rect, bar.palette.color(QPalette::Active, isActive ? QPalette::Highlight : QPalette::Window));
    painter.setPen(text);
    painter.drawRect(bar.rect.adjusted(0, 0, -1, -1));
    if (bar.subControls & SC_TitleBarLabel) {
        const QRect label = place(SC_TitleBarLabel);
        painter.drawText(label, Qt::AlignCenter | Qt::TextSingleLine,
                         painter.fontMetrics().elidedText(bar.text, Qt::ElideRight, label.width()));
    }
    if (bar.subControls & SC_TitleBarSysMenu)
        bar.icon.paint(&painter, place(SC_TitleBarSysMenu));
    const bool isMinimised = bar.titleBarState & Qt::WindowMinimized;
    const bool isMaximised = bar.titleBarState & Qt::WindowMaximized;
    const std::pair<SubControl, bool> buttons[] = {
        {SC_TitleBarMinButton, !isMinimised && bar.titleBarFlags & Qt::WindowMinimizeButtonHint},
        {SC_TitleBarMaxButton, !isMaximised && bar.titleBarFlags & Qt::WindowMaximizeButtonHint},
        {SC_TitleBarNormalButton, isMinimised || isMaximised},
        {SC_TitleBarCloseButton, bar.titleBarFlags.testFlag(Qt::WindowSystemMenuHint)},
    };
    for (const auto &[button, isShown] : buttons) {
        const QRect whole = place(button);
        if (!isShown || !(bar.subControls & button) || !whole.isValid())
            continue;
        const bool isPressed = bar.activeSubControls & button && bar.state & State_Sunken;
        if (bar.activeSubControls & button)
            painter.drawRect(whole.adjusted(1, 1, -2, -2));
        const int margin = whole.width() / 3;
        drawSign(painter, button,
                 whole.adjusted(margin, margin, -margin - 1, -margin - 1).translated(isPressed, isPressed));
    }
    painter.restore();
}
