// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QPaintDevice>
#include <QPainter>

#include <memory>

// A device that hands what is painted on it on to another painter, but of text only the lines between two heights. A
// clip hides the other lines from the eye; in a PDF file they would still be there to be found and copied.
class LineFilter final : public QPaintDevice
{
public:
    // The heights count in the coordinates that the painter on this device begins with, which are those of `target`.
    LineFilter(QPainter &target, qreal top, qreal bottom);
    ~LineFilter() override;

    QPaintEngine *paintEngine() const override;

protected:
    int metric(PaintDeviceMetric metric) const override;

private:
    class Engine;

    QPaintDevice &m_device;
    std::unique_ptr<Engine> m_engine;
};
