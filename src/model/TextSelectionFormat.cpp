// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The formatting of the selection: reading it, and changing it.

#include "model/TextSelection.h"

#include "rtf/CharChange.h"
#include "rtf/EditBlock.h"
#include "rtf/Properties.h"
#include "rtf/SelectedStretches.h"
#include "rtf/Units.h"

#include <QTextBlock>
#include <QTextList>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace
{

// HTML's relative font sizes, from two steps below the standard size to four above.
constexpr double sizeSteps[] = {0.7, 0.8, 1.0, 1.2, 1.5, 2.0, 2.4};
constexpr int standardStep = 2;
constexpr double pointsPerPixel = 0.75;

// How far a bullet hangs to the left of its paragraph, in twips.
constexpr int bulletHang = 360;

// The paragraphs that a property of paragraphs concerns: a last one of which only the beginning is touched is left out,
// of selected cells each has all of its own.
template <class Visit>
void visitParagraphs(const QTextCursor &cursor, Visit visit)
{
    const bool isCells = cursor.hasComplexSelection();
    std::vector<rtf::SelectedStretch> stretches = rtf::selectedStretches(cursor);
    if (stretches.empty())
        stretches.push_back({cursor.position(), cursor.position()});
    for (const rtf::SelectedStretch &stretch : stretches) {
        const int end = isCells ? stretch.to : std::max(stretch.from, stretch.to - 1);
        for (QTextBlock block = cursor.document()->findBlock(stretch.from); block.isValid() && block.position() <= end;
             block = block.next())
            visit(block);
    }
}

// Calls visit(fragment) for every stretch of one format that the selection touches, until it answers false.
template <class Visit>
void visitFragments(const QTextCursor &cursor, Visit visit)
{
    for (const rtf::SelectedStretch &stretch : rtf::selectedStretches(cursor)) {
        for (QTextBlock block = cursor.document()->findBlock(stretch.from);
             block.isValid() && block.position() < stretch.to; block = block.next()) {
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextFragment fragment = it.fragment();
                const bool isTouched =
                    fragment.position() < stretch.to && fragment.position() + fragment.length() > stretch.from;
                if (isTouched && !visit(fragment))
                    return;
            }
        }
    }
}

// What all that was looked at has in common.
template <class Value>
class Common
{
public:
    void add(const Value &value)
    {
        m_isMixed = m_isMixed || (m_value && *m_value != value);
        m_value = value;
    }

    bool isMixed() const { return m_isMixed; }

    bool isKnown() const { return m_value.has_value(); }

    std::optional<Value> value() const { return m_isMixed ? std::nullopt : m_value; }

private:
    std::optional<Value> m_value;
    bool m_isMixed = false;
};

// The value of a property that all characters of the selection share; at a caret, that of the next one typed, and of
// cells that are all empty, that of the next one typed into them.
template <class Property>
auto commonToCharacters(const QTextCursor &cursor, Property property)
    -> std::optional<decltype(property(QTextCharFormat()))>
{
    if (!cursor.hasSelection())
        return property(cursor.charFormat());
    Common<decltype(property(QTextCharFormat()))> common;
    int known = -1;
    visitFragments(cursor, [&](const QTextFragment &fragment) {
        if (fragment.charFormatIndex() != known)
            common.add(property(fragment.charFormat()));
        known = fragment.charFormatIndex();
        return !common.isMixed();
    });
    if (!common.isKnown() && cursor.hasComplexSelection())
        visitParagraphs(cursor, [&](const QTextBlock &block) { common.add(property(block.charFormat())); });
    return common.isKnown() ? common.value() : property(cursor.charFormat());
}

// The value of a property that all paragraphs of the selection share.
template <class Property>
auto commonToParagraphs(const QTextCursor &cursor, Property property) -> std::optional<decltype(property(QTextBlock()))>
{
    Common<decltype(property(QTextBlock()))> common;
    visitParagraphs(cursor, [&](const QTextBlock &block) { common.add(property(block)); });
    return common.value();
}

bool isBulleted(const QTextBlock &block)
{
    const QTextList *list = block.textList();
    if (!list)
        return false;
    const QTextListFormat::Style style = list->format().style();
    return style == QTextListFormat::ListDisc || style == QTextListFormat::ListCircle ||
           style == QTextListFormat::ListSquare;
}

// What a paragraph's list and block indent add to its margin, in pixels.
double indentSteps(const QTextBlock &block)
{
    const int steps = block.blockFormat().indent() + (block.textList() ? block.textList()->format().indent() : 0);
    return steps * block.document()->indentWidth();
}

// How far the first line, or the bullet, hangs to the left of the other lines, in twips.
int hangOf(const QTextBlock &block)
{
    const QTextBlockFormat format = block.blockFormat();
    if (block.textList() && format.hasProperty(rtf::HangProperty))
        return std::max(0, -format.intProperty(rtf::HangProperty));
    if (block.textList() && format.textIndent() == 0)
        return std::min(bulletHang, rtf::twipsFromPixels(indentSteps(block)));
    return std::max(0, -rtf::twipsFromPixels(format.textIndent()));
}

// Where a paragraph begins at its left, counted with what hangs out; twips.
int leftOf(const QTextBlock &block)
{
    return rtf::twipsFromPixels(block.blockFormat().leftMargin() + indentSteps(block)) - hangOf(block);
}

// Gives every paragraph that the selection touches the format that formatOf(block) answers, as one step of undo. What
// makes no difference is no step, and leaves what can be redone.
template <class FormatOf>
void changeParagraphs(QTextCursor cursor, FormatOf formatOf)
{
    const EditBlock edit(cursor);
    visitParagraphs(cursor, [&formatOf](const QTextBlock &block) {
        const QTextBlockFormat format = formatOf(block);
        if (format != block.blockFormat())
            QTextCursor(block).setBlockFormat(format);
    });
}

// On which side a paragraph stands, justified or not.
TextSelection::Alignment sideOf(const QTextBlockFormat &format)
{
    const Qt::Alignment alignment = format.alignment();
    // Without AlignAbsolute the sides are mirrored in a paragraph that runs from right to left.
    const bool mirrored = format.layoutDirection() == Qt::RightToLeft && !(alignment & Qt::AlignAbsolute);
    if (alignment & Qt::AlignHCenter)
        return TextSelection::Centre;
    const bool isRight = bool(alignment & Qt::AlignRight) != (mirrored && !(alignment & Qt::AlignJustify));
    return isRight ? TextSelection::Right : TextSelection::Left;
}

} // namespace

void TextSelection::changeSelection(const rtf::CharChange &change)
{
    QTextCursor cursor = caret();
    if (cursor.hasSelection()) {
        // What shows no difference is no step, and leaves what can be redone.
        if (change.isSeenIn(cursor))
            change.applyTo(cursor);
        return;
    }
    cursor.setCharFormat(change.appliedTo(cursor.charFormat()));
    setCaret(cursor);
}

std::optional<bool> TextSelection::SelBold() const
{
    const QFont base = caret().document()->defaultFont();
    return commonToCharacters(caret(), [base](const QTextCharFormat &format) {
        return (format.hasProperty(QTextFormat::FontWeight) ? format.fontWeight() : base.weight()) > QFont::Medium;
    });
}

void TextSelection::setSelBold(bool on)
{
    rtf::CharChange change;
    change.setBold(on);
    changeSelection(change);
}

std::optional<bool> TextSelection::SelItalic() const
{
    const QFont base = caret().document()->defaultFont();
    return commonToCharacters(caret(), [base](const QTextCharFormat &format) {
        return format.hasProperty(QTextFormat::FontItalic) ? format.fontItalic() : base.italic();
    });
}

void TextSelection::setSelItalic(bool on)
{
    rtf::CharChange change;
    change.setItalic(on);
    changeSelection(change);
}

std::optional<bool> TextSelection::SelUnderline() const
{
    const QFont base = caret().document()->defaultFont();
    return commonToCharacters(caret(), [base](const QTextCharFormat &format) {
        return format.hasProperty(QTextFormat::TextUnderlineStyle)
                   ? format.underlineStyle() != QTextCharFormat::NoUnderline
                   : base.underline();
    });
}

void TextSelection::setSelUnderline(bool on)
{
    rtf::CharChange change;
    change.setUnderline(on);
    changeSelection(change);
}

std::optional<bool> TextSelection::SelStrikeThru() const
{
    const QFont base = caret().document()->defaultFont();
    return commonToCharacters(caret(), [base](const QTextCharFormat &format) {
        return format.hasProperty(QTextFormat::FontStrikeOut) ? format.fontStrikeOut() : base.strikeOut();
    });
}

void TextSelection::setSelStrikeThru(bool on)
{
    rtf::CharChange change;
    change.setStrikeOut(on);
    changeSelection(change);
}

std::optional<QString> TextSelection::SelFontName() const
{
    const QFont base = caret().document()->defaultFont();
    return commonToCharacters(caret(), [base](const QTextCharFormat &format) {
        const QStringList families = format.fontFamilies().toStringList();
        return families.isEmpty() ? base.family() : families.first();
    });
}

void TextSelection::setSelFontName(const QString &name)
{
    rtf::CharChange change;
    change.setFamily(name);
    changeSelection(change);
}

std::optional<double> TextSelection::SelFontSize() const
{
    const QFont base = caret().document()->defaultFont();
    const double baseSize = base.pointSizeF() > 0 ? base.pointSizeF() : base.pixelSize() * pointsPerPixel;
    return commonToCharacters(caret(), [baseSize](const QTextCharFormat &format) {
        double points = baseSize;
        if (format.hasProperty(QTextFormat::FontPointSize))
            points = format.fontPointSize();
        else if (format.hasProperty(QTextFormat::FontPixelSize))
            points = format.intProperty(QTextFormat::FontPixelSize) * pointsPerPixel;
        const int step = standardStep + format.intProperty(QTextFormat::FontSizeAdjustment);
        return rtf::sizeInHalfPoints(points *
                                     sizeSteps[std::clamp(step, 0, static_cast<int>(std::size(sizeSteps)) - 1)]);
    });
}

void TextSelection::setSelFontSize(double points)
{
    rtf::CharChange change;
    change.setSize(points);
    changeSelection(change);
}

std::optional<QColor> TextSelection::SelColor() const
{
    return commonToCharacters(caret(), [](const QTextCharFormat &format) {
        const QBrush foreground = format.foreground();
        return foreground.style() == Qt::NoBrush ? QColor() : foreground.color();
    });
}

void TextSelection::setSelColor(const QColor &colour)
{
    rtf::CharChange change;
    change.setColour(colour);
    changeSelection(change);
}

std::optional<bool> TextSelection::SelBullet() const
{
    return commonToParagraphs(caret(), isBulleted);
}

void TextSelection::setSelBullet(bool on)
{
    QTextList *list = nullptr;
    QTextCursor cursor = caret();
    const EditBlock edit(cursor);
    visitParagraphs(cursor, [&list, on](const QTextBlock &block) {
        if (!on && !block.textList())
            return;
        const int left = leftOf(block);
        QTextBlockFormat format = block.blockFormat();
        format.setIndent(0);
        format.clearProperty(rtf::HangProperty);
        if (on) {
            format.setProperty(rtf::HangProperty, -bulletHang);
            format.setTextIndent(0);
        } else {
            format.setObjectIndex(-1);
        }
        format.setLeftMargin(rtf::pixelsFromTwips(left + (on ? bulletHang : 0)));
        QTextCursor(block).setBlockFormat(format);
        if (!on)
            return;
        if (list && list->count() < rtf::longestBulletList) {
            list->add(block);
            return;
        }
        // The margin carries the whole indent, as everywhere in texts that are kept.
        QTextListFormat bullets;
        bullets.setStyle(QTextListFormat::ListDisc);
        bullets.setIndent(0);
        list = QTextCursor(block).createList(bullets);
    });
}

std::optional<int> TextSelection::SelIndent() const
{
    return commonToParagraphs(caret(), leftOf);
}

void TextSelection::setSelIndent(int twips)
{
    changeParagraphs(caret(), [wanted = std::max(twips, 0)](const QTextBlock &block) {
        const int left = leftOf(block);
        QTextBlockFormat format = block.blockFormat();
        if (wanted != left)
            format.setLeftMargin(format.leftMargin() + rtf::pixelsFromTwips(wanted - left));
        return format;
    });
}

std::optional<TextSelection::Alignment> TextSelection::SelAlignment() const
{
    return commonToParagraphs(caret(), [](const QTextBlock &block) { return sideOf(block.blockFormat()); });
}

void TextSelection::setSelAlignment(Alignment alignment)
{
    const Qt::AlignmentFlag side = alignment == Right    ? Qt::AlignRight
                                   : alignment == Centre ? Qt::AlignHCenter
                                                         : Qt::AlignLeft;
    changeParagraphs(caret(), [alignment, side](const QTextBlock &block) {
        QTextBlockFormat format = block.blockFormat();
        const bool isJustified = format.alignment().testFlag(Qt::AlignJustify);
        const bool rightToLeft = format.layoutDirection() == Qt::RightToLeft;
        if (sideOf(format) != alignment || isJustified)
            format.setAlignment(rightToLeft ? side | Qt::AlignAbsolute : Qt::Alignment(side));
        return format;
    });
}
