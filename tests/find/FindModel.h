// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/FindQuery.h"

#include <QRegularExpression>
#include <QString>

#include <algorithm>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

// What FindQuery is to find, put down as literally as can be and without regard to what it costs: a text is a row of
// characters, each with all its marks; a word is found where its own characters stand in a row.
namespace findModel
{

inline bool isMark(char32_t c)
{
    const QChar::Category category = QChar::category(c);
    return category == QChar::Mark_NonSpacing || category == QChar::Mark_SpacingCombining ||
           category == QChar::Mark_Enclosing;
}

inline bool isUnseen(char32_t c)
{
    return QChar::category(c) == QChar::Other_Format || c == 0x34F || (c >= 0xFE00 && c <= 0xFE0F) ||
           (c >= 0xE0100 && c <= 0xE01EF);
}

inline bool isAccent(char32_t c)
{
    const int place = QChar::combiningClass(c);
    return isMark(c) && c != 0x345 &&
           (QChar::category(c) == QChar::Mark_Enclosing || place >= 200 || (place >= 10 && place <= 36));
}

struct Character {
    qsizetype start;
    qsizetype end;
    // What it is compared by; empty for what is not seen.
    QString compared;
};

inline std::vector<char32_t> codePoints(QStringView text)
{
    std::vector<char32_t> points;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            points.push_back(QChar::surrogateToUcs4(text[i], text[i + 1]));
            ++i;
        } else {
            points.push_back(text[i].unicode());
        }
    }
    return points;
}

inline QString written(char32_t c)
{
    return c > 0xFFFF ? QString::fromUcs4(&c, 1) : QString(QChar(char16_t(c)));
}

inline std::vector<Character> charactersOf(QStringView text, const FindOptions &options)
{
    std::vector<Character> characters;
    qsizetype at = 0;
    for (const char32_t c : codePoints(text)) {
        const qsizetype end = at + written(c).size();
        const bool isPartOfSyllable = (c >= 0x1160 && c <= 0x11FF) || (c >= 0xD7B0 && c <= 0xD7FB);
        if (!characters.empty() && (isMark(c) || isUnseen(c) || isPartOfSyllable))
            characters.back().end = end;
        else
            characters.push_back({at, end, {}});
        at = end;
    }
    for (Character &each : characters) {
        const QString whole = text.sliced(each.start, each.end - each.start).toString();
        const bool isHalf = whole.size() == 1 && whole[0].isSurrogate();
        for (const char32_t c : codePoints(isHalf ? whole : whole.normalized(QString::NormalizationForm_D))) {
            if (isUnseen(c) || (!options.accents && isAccent(c)))
                continue;
            const char32_t same = options.matchCase ? c : QChar::toCaseFolded(c);
            each.compared += same == '\t' || QChar::category(same) == QChar::Separator_Space ? u" "_s : written(same);
        }
    }
    return characters;
}

inline bool isLetterAt(const std::vector<char32_t> &points, bool fromEnd)
{
    std::vector<char32_t> seen;
    std::copy_if(points.begin(), points.end(), std::back_inserter(seen),
                 [](char32_t c) { return !isMark(c) && QChar::category(c) != QChar::Other_Format; });
    return !seen.empty() && QChar::isLetterOrNumber(fromEnd ? seen.back() : seen.front());
}

inline bool isWhole(QStringView text, qsizetype start, qsizetype end)
{
    return !isLetterAt(codePoints(text.first(start)), true) && !isLetterAt(codePoints(text.sliced(end)), false);
}

inline QString comparedWhole(QStringView word, const FindOptions &options)
{
    QString compared;
    for (const Character &each : charactersOf(word, options))
        compared += each.compared;
    return compared;
}

// Where one word stands.
inline std::vector<FindMatch> matchesOfWord(QStringView text, const QString &word, const FindOptions &options)
{
    const QString sought = comparedWhole(word, options);
    const std::vector<Character> characters = charactersOf(text, options);
    std::vector<FindMatch> matches;
    for (std::size_t first = 0; !sought.isEmpty() && first < characters.size();) {
        QString compared;
        std::size_t behind = first;
        while (behind < characters.size() && compared.size() < sought.size() && sought.startsWith(compared))
            compared += characters[behind++].compared;
        const bool isThere = !characters[first].compared.isEmpty() && compared == sought;
        if (!isThere) {
            ++first;
            continue;
        }
        const qsizetype start = characters[first].start;
        qsizetype end = characters[behind - 1].end;
        while (end > characters[behind - 1].start + 1 &&
               QChar::category(text[end - 1].unicode()) == QChar::Other_Format)
            --end;
        if (options.wholeWord && !isWhole(text, start, end)) {
            ++first;
            continue;
        }
        matches.push_back({start, end - start, {}});
        first = behind;
    }
    return matches;
}

// What is found for words that are compared so, and whether each of them is.
inline std::vector<FindMatch> matchesOfWords(QStringView text, const QStringList &words, const FindOptions &options)
{
    std::vector<FindMatch> all;
    for (const QString &word : words) {
        const std::vector<FindMatch> matches = matchesOfWord(text, word, options);
        all.insert(all.end(), matches.begin(), matches.end());
    }
    std::vector<FindMatch> apart;
    for (qsizetype at = 0; at < text.size();) {
        const FindMatch *best = nullptr;
        for (const FindMatch &each : all) {
            if (each.start == at && (!best || each.length > best->length))
                best = &each;
        }
        if (best)
            apart.push_back(*best);
        at = best ? at + best->length : at + 1;
    }
    return apart;
}

inline std::vector<FindMatch> matchesOfExpression(QStringView text, const QString &pattern, const FindOptions &options)
{
    std::vector<FindMatch> matches;
    const QRegularExpression expression(pattern, QRegularExpression::UseUnicodePropertiesOption |
                                                     (options.matchCase ? QRegularExpression::NoPatternOption
                                                                        : QRegularExpression::CaseInsensitiveOption));
    const QString marked = text.toString()
                               .replace(QChar::LineSeparator, u'\n')
                               .replace(QChar::ParagraphSeparator, u'\n')
                               .replace(u'\r', u'\n');
    qsizetype begin = 0;
    for (const QString &line : marked.split(u'\n')) {
        auto each = expression.globalMatch(line);
        while (each.hasNext()) {
            const QRegularExpressionMatch match = each.next();
            const qsizetype start = begin + match.capturedStart();
            const qsizetype end = begin + match.capturedEnd();
            if (end > start && (!options.wholeWord || isWhole(text, start, end)))
                matches.push_back({start, end - start, match.capturedTexts()});
        }
        begin += line.size() + 1;
    }
    return matches;
}

} // namespace findModel
