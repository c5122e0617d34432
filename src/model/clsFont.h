// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>
#include <QString>

class TextSelection;

namespace rtf
{
class CharChange;
}

// A font description independent of any control. An empty name or a size of 0 or less means "not set": applying the
// description leaves the target's own name or size in place.
class clsFont
{
public:
    bool Bold() const { return m_bBold; }

    void setBold(bool bBold) { m_bBold = bBold; }

    bool Italic() const { return m_bItalic; }

    void setItalic(bool bItalic) { m_bItalic = bItalic; }

    const QString &Name() const { return m_sName; }

    void setName(const QString &sName) { m_sName = sName; }

    // In ten-thousandths of a point.
    qint64 Size() const { return m_cySize; }

    void setSize(qint64 cySize) { m_cySize = cySize; }

    bool StrikeThrough() const { return m_bStrikeThrough; }

    void setStrikeThrough(bool bStrikeThrough) { m_bStrikeThrough = bStrikeThrough; }

    bool Underline() const { return m_bUnderline; }

    void setUnderline(bool bUnderline) { m_bUnderline = bUnderline; }

    static constexpr qint64 point = 10000;

    void CopyTo(clsFont &fntTarget) const;
    // Takes the values of a platform font.
    void GetFont(const QFont &font);
    // Writes this description into a platform font; what is not set stays as it is there.
    void SetFont(QFont &font) const;
    // Applies this description to all of a pane's text; the pane's selection stays.
    void SetRTFSelFont(TextSelection &text) const;
    // What SetRTFSelFont does to each character.
    rtf::CharChange asChange() const;

    bool operator==(const clsFont &other) const = default;

private:
    // The size, which a description read from a file may make as large as it likes.
    double points() const;

    bool m_bBold = false;
    bool m_bItalic = false;
    QString m_sName;
    qint64 m_cySize = 0;
    bool m_bStrikeThrough = false;
    bool m_bUnderline = false;
};
