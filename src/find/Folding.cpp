// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/Folding.h"

#include <QList>

#include <algorithm>
#include <array>
#include <memory>

namespace
{

// What a character of the Basic Multilingual Plane becomes, where that is one unit: itself in most texts. None of the
// three others is what a character folds to.
enum Special : char16_t { Gap = 0, Nothing = 1, Several = 2 };

bool isGap(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Separator_Space:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
        return true;
    default:
        return c == QChar::ObjectReplacementCharacter || c == QChar::ReplacementCharacter;
    }
}

bool isPassedOver(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return true;
    default:
        return false;
    }
}

void appendWhole(QString &text, char32_t c)
{
    if (QChar::requiresSurrogates(c)) {
        text += QChar(QChar::highSurrogate(c));
        text += QChar(QChar::lowSurrogate(c));
    } else {
        text += QChar(static_cast<char16_t>(c));
    }
}

// Hangul syllables are decomposed by their arithmetic, which QChar leaves to the normalisation of whole texts.
QString decomposed(char32_t c)
{
    return QString::fromUcs4(&c, 1).normalized(QString::NormalizationForm_D);
}

QString foldedCharacter(char32_t c)
{
    if (isGap(c))
        return QString(QChar(Gap));
    QString result;
    const QList<uint> parts = decomposed(QChar::toCaseFolded(c)).toUcs4();
    for (const char32_t each : parts) {
        // A mark may be a letter in case folding: the iota below Greek vowels.
        const char32_t part = QChar::toCaseFolded(each);
        if (!isPassedOver(part))
            appendWhole(result, part);
    }
    return result;
}

class Table
{
public:
    Table()
    {
        for (char32_t c = 0; c < m_units.size(); ++c) {
            const QString text = foldedCharacter(c);
            m_units[c] = text.isEmpty() ? char16_t(Nothing) : text.size() == 1 ? text[0].unicode() : char16_t(Several);
        }
    }

    char16_t operator[](char16_t unit) const { return m_units[unit]; }

private:
    std::array<char16_t, 0x10000> m_units;
};

} // namespace

QString folded(QStringView text)
{
    static const auto table = std::make_unique<const Table>();
    QString result(text.size(), Qt::Uninitialized);
    QChar *to = result.data();
    // Few characters become several, so there is mostly room for them.
    const auto append = [&](const QString &several, qsizetype read) {
        const qsizetype size = to - result.constData();
        result.resize(size + several.size() + text.size() - read);
        to = std::ranges::copy(several, result.data() + size).out;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const char16_t unit = (*table)[c.unicode()];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i;
            append(foldedCharacter(QChar::surrogateToUcs4(c, text[i])), i + 1);
        } else if (unit == Several) {
            append(foldedCharacter(c.unicode()), i + 1);
        } else if (unit != Nothing) {
            *to++ = QChar(unit);
        }
    }
    result.truncate(to - result.constData());
    return result;
}

std::vector<int> originsOfFolded(QStringView text)
{
    std::vector<int> origins;
    for (qsizetype i = 0; i < text.size();) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const qsizetype units = isPair ? 2 : 1;
        origins.insert(origins.end(), static_cast<std::size_t>(folded(text.sliced(i, units)).size()),
                       static_cast<int>(i));
        i += units;
    }
    return origins;
}
