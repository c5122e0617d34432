// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/clsFont.h"

#include "model/TextSelection.h"
#include "rtf/CharChange.h"

#include <algorithm>
#include <cmath>

namespace
{

// The largest size that word processors know; a description read from a file may claim any.
constexpr qint64 maximumSize = 1638 * clsFont::point;

} // namespace

void clsFont::CopyTo(clsFont &fntTarget) const
{
    fntTarget.setBold(m_bBold);
    fntTarget.setItalic(m_bItalic);
    fntTarget.setName(m_sName);
    fntTarget.setSize(m_cySize);
    fntTarget.setStrikeThrough(m_bStrikeThrough);
    fntTarget.setUnderline(m_bUnderline);
}

void clsFont::GetFont(const QFont &font)
{
    setBold(font.bold());
    setItalic(font.italic());
    setName(font.family());
    setSize(font.pointSizeF() > 0 ? std::llround(font.pointSizeF() * point) : 0);
    setStrikeThrough(font.strikeOut());
    setUnderline(font.underline());
}

void clsFont::SetFont(QFont &font) const
{
    font.setBold(m_bBold);
    font.setItalic(m_bItalic);
    if (!m_sName.isEmpty())
        font.setFamily(m_sName);
    if (m_cySize > 0)
        font.setPointSizeF(points());
    font.setStrikeOut(m_bStrikeThrough);
    font.setUnderline(m_bUnderline);
}

void clsFont::SetRTFSelFont(TextSelection &text) const
{
    const int start = text.SelStart();
    const int length = text.SelLength();
    text.setSelStart(0);
    text.setSelLength(static_cast<int>(text.Text().size()));
    text.changeSelection(asChange());
    text.setSelStart(start);
    text.setSelLength(length);
}

rtf::CharChange clsFont::asChange() const
{
    rtf::CharChange change;
    change.setBold(m_bBold);
    change.setItalic(m_bItalic);
    if (!m_sName.isEmpty())
        change.setFamily(m_sName);
    if (m_cySize > 0)
        change.setSize(points());
    change.setStrikeOut(m_bStrikeThrough);
    change.setUnderline(m_bUnderline);
    return change;
}

double clsFont::points() const
{
    return static_cast<double>(std::min(m_cySize, maximumSize)) / point;
}
