// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QProxyStyle>

class QStyleOptionTitleBar;

// The toolkit's own style with outlines that stand out of a window of hardly any shades, and with captions of windows
// inside the main window that are written in the colours of a selection where those of a text could not be read.
class LegibleStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    LegibleStyle();

    // Whether anything looks different in these colours.
    static bool isNeededFor(const QPalette &colours);

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;

private:
    void drawTitleBar(const QStyleOptionTitleBar &bar, QPainter &painter, const QWidget *widget) const;
};
