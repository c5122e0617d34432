// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "pages/LineFilter.h"

#include <QPaintEngine>
#include <QPainterPath>

class LineFilter::Engine final : public QPaintEngine
{
public:
    Engine(QPainter &target, qreal top, qreal bottom)
        : QPaintEngine(AllFeatures)
        , m_target(target)
        , m_base(target.transform())
        , m_clip(target.clipPath())
        , m_top(top)
        , m_bottom(bottom)
    {
    }

    bool begin(QPaintDevice *) override
    {
        m_target.save();
        return true;
    }

    bool end() override
    {
        m_target.restore();
        return true;
    }

    void updateState(const QPaintEngineState &now) override
    {
        const DirtyFlags dirty = now.state();
        if (dirty & DirtyTransform) {
            m_transform = now.transform();
            m_target.setTransform(m_transform * m_base);
        }
        if (dirty & DirtyPen)
            m_target.setPen(now.pen());
        if (dirty & DirtyBrush)
            m_target.setBrush(now.brush());
        if (dirty & DirtyBrushOrigin)
            m_target.setBrushOrigin(now.brushOrigin());
        if (dirty & DirtyFont)
            m_target.setFont(now.font());
        if (dirty & DirtyBackground)
            m_target.setBackground(now.backgroundBrush());
        if (dirty & DirtyBackgroundMode)
            m_target.setBackgroundMode(now.backgroundMode());
        if (dirty & DirtyOpacity)
            m_target.setOpacity(now.opacity());
        if (dirty & DirtyHints)
            m_target.setRenderHints(now.renderHints());
        if (dirty & DirtyCompositionMode)
            m_target.setCompositionMode(now.compositionMode());
        if (dirty & (DirtyClipRegion | DirtyClipPath | DirtyClipEnabled))
            updateClip(now);
    }

    void drawTextItem(const QPointF &place, const QTextItem &item) override
    {
        const qreal middle = m_transform.map(place).y() - (item.ascent() - item.descent()) / 2;
        if (middle >= m_top && middle < m_bottom)
            m_target.drawTextItem(place, item);
    }

    void drawPath(const QPainterPath &path) override { m_target.drawPath(path); }

    void drawPolygon(const QPointF *points, int count, PolygonDrawMode mode) override
    {
        switch (mode) {
        case OddEvenMode:
            m_target.drawPolygon(points, count, Qt::OddEvenFill);
            break;
        case WindingMode:
            m_target.drawPolygon(points, count, Qt::WindingFill);
            break;
        case ConvexMode:
            m_target.drawConvexPolygon(points, count);
            break;
        case PolylineMode:
            m_target.drawPolyline(points, count);
            break;
        }
    }

    void drawLines(const QLineF *lines, int count) override { m_target.drawLines(lines, count); }

    void drawRects(const QRectF *rects, int count) override { m_target.drawRects(rects, count); }

    void drawEllipse(const QRectF &rect) override { m_target.drawEllipse(rect); }

    void drawPixmap(const QRectF &to, const QPixmap &pixmap, const QRectF &from) override
    {
        m_target.drawPixmap(to, pixmap, from);
    }

    void drawImage(const QRectF &to, const QImage &image, const QRectF &from, Qt::ImageConversionFlags flags) override
    {
        m_target.drawImage(to, image, from, flags);
    }

    void drawTiledPixmap(const QRectF &to, const QPixmap &pixmap, const QPointF &offset) override
    {
        m_target.drawTiledPixmap(to, pixmap, offset);
    }

    Type type() const override { return User; }

private:
    // A clip set here narrows the one that the target had at first.
    void updateClip(const QPaintEngineState &now)
    {
        m_target.setTransform(m_base);
        m_target.setClipPath(m_clip, Qt::ReplaceClip);
        m_target.setTransform(m_transform * m_base);
        if (!now.isClipEnabled() || now.clipOperation() == Qt::NoClip)
            return;
        if (now.state() & DirtyClipPath)
            m_target.setClipPath(now.clipPath(), Qt::IntersectClip);
        else
            m_target.setClipRegion(now.clipRegion(), Qt::IntersectClip);
    }

    QPainter &m_target;
    QTransform m_base;
    QPainterPath m_clip;
    QTransform m_transform;
    qreal m_top;
    qreal m_bottom;
};

LineFilter::LineFilter(QPainter &target, qreal top, qreal bottom)
    : m_device(*target.device())
    , m_engine(std::make_unique<Engine>(target, top, bottom))
{
}

LineFilter::~LineFilter() = default;

QPaintEngine *LineFilter::paintEngine() const
{
    return m_engine.get();
}

int LineFilter::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmWidth:
        return m_device.width();
    case PdmHeight:
        return m_device.height();
    case PdmWidthMM:
        return m_device.widthMM();
    case PdmHeightMM:
        return m_device.heightMM();
    case PdmNumColors:
        return m_device.colorCount();
    case PdmDepth:
        return m_device.depth();
    case PdmDpiX:
        return m_device.logicalDpiX();
    case PdmDpiY:
        return m_device.logicalDpiY();
    case PdmPhysicalDpiX:
        return m_device.physicalDpiX();
    case PdmPhysicalDpiY:
        return m_device.physicalDpiY();
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return int(devicePixelRatioFScale());
    }
    return 0;
}
