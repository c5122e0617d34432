// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/TextHeight.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace
{

constexpr qreal ordinarySize = 16; // pixels
constexpr qreal pixelsPerPoint = 96.0 / 72;
constexpr qreal narrowPane = 400;
constexpr qreal widthOfSize = 0.6;  // of a letter
constexpr qreal heightOfSize = 1.4; // of a line

qreal sizeOf(const QTextCharFormat &format)
{
    if (format.hasProperty(QTextFormat::FontPixelSize))
        return format.intProperty(QTextFormat::FontPixelSize);
    const qreal points = format.fontPointSize();
    return points > 0 ? points * pixelsPerPoint : ordinarySize;
}

qreal heightOfBlock(const QTextBlock &block)
{
    const QTextBlockFormat format = block.blockFormat();
    const auto lineHeight = [&format](qreal natural) { return format.lineHeight(natural, 1); };
    qreal height = lineHeight(sizeOf(block.charFormat()) * heightOfSize);
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QTextCharFormat characters = fragment.charFormat();
        if (characters.isImageFormat()) {
            height += fragment.length() * std::max<qreal>(0, characters.toImageFormat().height());
            continue;
        }
        const qreal size = sizeOf(characters);
        const qreal lines = std::min<qreal>(fragment.length(), fragment.length() * size * widthOfSize / narrowPane);
        height += lineHeight(size * heightOfSize) * (lines + double(fragment.text().count(QChar::LineSeparator)));
    }
    return height + std::max<qreal>(0, format.topMargin()) + std::max<qreal>(0, format.bottomMargin());
}

} // namespace

qreal roughHeight(const QTextDocument &document)
{
    qreal height = 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        height += heightOfBlock(block);
    return height;
}
