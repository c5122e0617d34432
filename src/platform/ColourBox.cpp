// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/ColourBox.h"

#include <QColorDialog>
#include <QPainter>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace
{

struct NamedColour {
    const char16_t *name;
    QRgb rgb;
};

// The sixteen colours that every word processor knows by name.
constexpr NamedColour namedColours[] = {
    {u"Black", 0xFF000000},  {u"Maroon", 0xFF800000},  {u"Green", 0xFF008000}, {u"Olive", 0xFF808000},
    {u"Navy", 0xFF000080},   {u"Purple", 0xFF800080},  {u"Teal", 0xFF008080},  {u"Grey", 0xFF808080},
    {u"Silver", 0xFFC0C0C0}, {u"Red", 0xFFFF0000},     {u"Lime", 0xFF00FF00},  {u"Yellow", 0xFFFFFF00},
    {u"Blue", 0xFF0000FF},   {u"Fuchsia", 0xFFFF00FF}, {u"Aqua", 0xFF00FFFF},  {u"White", 0xFFFFFFFF},
};

QIcon swatch(const QColor &colour)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setPen(QPen(Qt::gray, 2));
    painter.setBrush(colour);
    painter.drawRect(2, 2, 28, 28);
    return QIcon(pixmap);
}

} // namespace

ColourBox::ColourBox(QWidget *parent)
    : QComboBox(parent)
{
    addItem(u"Automatic"_s, QColor());
    for (const NamedColour &row : namedColours)
        addItem(swatch(row.rgb), QString::fromUtf16(row.name), QColor(row.rgb));
    addItem(u"Other..."_s);
    setCurrentIndex(-1);
    connect(this, &QComboBox::activated, this, &ColourBox::choose);
    connect(this, &QComboBox::currentIndexChanged, this, &ColourBox::colourChanged);
}

std::optional<QColor> ColourBox::colour() const
{
    const QVariant value = currentData();
    return value.isValid() ? std::optional(value.value<QColor>()) : std::nullopt;
}

void ColourBox::setColour(const std::optional<QColor> &colour)
{
    int row = -1;
    if (colour) {
        row = rowOf(*colour);
        if (row < 0)
            row = addOwn(*colour);
    }
    m_row = row;
    setCurrentIndex(row);
}

int ColourBox::rowOf(const QColor &colour) const
{
    if (!colour.isValid())
        return 0;
    for (int row = 1; row < count() - 1; ++row) {
        if (itemData(row).value<QColor>().rgb() == colour.rgb())
            return row;
    }
    return -1;
}

// A row for a colour without a name, above the last one.
int ColourBox::addOwn(const QColor &colour)
{
    const int row = count() - 1;
    insertItem(row, swatch(colour), colour.name(), colour);
    return row;
}

void ColourBox::keyPressEvent(QKeyEvent *event)
{
    const QScopedValueRollback stepping(m_isStepping, true);
    QComboBox::keyPressEvent(event);
}

void ColourBox::wheelEvent(QWheelEvent *event)
{
    const QScopedValueRollback stepping(m_isStepping, true);
    QComboBox::wheelEvent(event);
}

void ColourBox::choose(int row)
{
    if (row < count() - 1) {
        m_row = row;
        return;
    }
    if (m_isStepping) {
        setCurrentIndex(m_row);
        return;
    }
    const QColor before = itemData(m_row).value<QColor>();
    const QColor other = QColorDialog::getColor(before.isValid() ? before : QColor(Qt::black), this, u"Colour"_s);
    if (other.isValid())
        setColour(other);
    else
        setCurrentIndex(m_row);
}
