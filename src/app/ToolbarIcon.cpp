// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/ToolbarIcon.h"

#include <QBuffer>
#include <QColor>
#include <QFile>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>

using namespace Qt::StringLiterals;

// The drawings are linked into a static library, which leaves them out unless somebody asks for them.
static void initialiseToolbarResource()
{
    Q_INIT_RESOURCE(quillery_toolbar);
}

namespace
{

constexpr const char *imageFormat = "svg";
constexpr const char *colourMarker = "currentColor";

class SvgEngine final : public QIconEngine
{
public:
    explicit SvgEngine(QByteArray svg)
        : m_svg(std::move(svg))
    {
    }

    // Painters scale to the device themselves; the drawing is asked for in the device's pixels.
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatio();
        QPixmap drawing = pixmap(rect.size() * ratio, mode, state);
        drawing.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect, drawing);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        if (m_pixmap.size() != size)
            m_pixmap = draw(size);
        return m_pixmap;
    }

    QIconEngine *clone() const override { return new SvgEngine(*this); }

private:
    QPixmap draw(const QSize &size)
    {
        QBuffer buffer(&m_svg);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer, imageFormat);
        reader.setScaledSize(size);
        return QPixmap::fromImage(reader.read());
    }

    QByteArray m_svg;
    // The size drawn last; a button asks for the same one again and again.
    QPixmap m_pixmap;
};

} // namespace

bool canShowToolbarIcons()
{
    return QImageReader::supportedImageFormats().contains(imageFormat);
}

QIcon toolbarIcon(const QString &name, const QColor &colour)
{
    initialiseToolbarResource();
    QFile file(u":/quillery/toolbar/"_s + name + u".svg"_s);
    if (!file.open(QIODevice::ReadOnly))
        return QIcon();
    QByteArray svg = file.readAll();
    svg.replace(colourMarker, colour.name().toLatin1());
    return QIcon(new SvgEngine(svg));
}
