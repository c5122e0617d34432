// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/FindQuery.h"

#include "find/ComparedText.h"
#include "find/ExpressionWords.h"

#include <QRegularExpression>
#include <QStringMatcher>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

// What matching may cost in one line before it is given up: some ten milliseconds. Of two limits in an expression the
// lower one holds, so that nobody can write a higher one.
constexpr auto matchLimit = "(*LIMIT_MATCH=1000000)(*LIMIT_DEPTH=100000)"_L1;

// An expression that takes too long takes so in most lines: after so many of them it is not tried any more.
constexpr int mostGivenUp = 200;

bool isWordUnit(char32_t c)
{
    return QChar::isLetterOrNumber(c);
}

bool isPassedBy(char32_t c)
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

// The character that ends before a place; a mark is part of the one that it stands on.
bool isWordBefore(QStringView text, qsizetype at)
{
    while (at > 0) {
        char32_t c = text[--at].unicode();
        if (text[at].isLowSurrogate() && at > 0 && text[at - 1].isHighSurrogate()) {
            --at;
            c = QChar::surrogateToUcs4(text[at], text[at + 1]);
        }
        if (!isPassedBy(c))
            return isWordUnit(c);
    }
    return false;
}

bool isWordBehind(QStringView text, qsizetype at)
{
    while (at < text.size()) {
        char32_t c = text[at++].unicode();
        if (QChar::isHighSurrogate(c) && at < text.size() && text[at].isLowSurrogate())
            c = QChar::surrogateToUcs4(text[at - 1], text[at]), ++at;
        if (!isPassedBy(c))
            return isWordUnit(c);
    }
    return false;
}

bool isWholeWord(QStringView text, qsizetype start, qsizetype length)
{
    return !isWordBefore(text, start) && !isWordBehind(text, start + length);
}

// Those of words that stand apart by blanks, or in quotation marks.
QStringList wordsOf(QStringView text)
{
    QStringList words;
    QString word;
    bool isQuoted = false;
    const auto end = [&] {
        if (!word.trimmed().isEmpty())
            words.append(isQuoted ? word : word.trimmed());
        word.clear();
    };
    for (const QChar c : text) {
        const bool isQuote = c == u'"';
        if (isQuote || (c.isSpace() && !isQuoted)) {
            end();
            isQuoted = isQuoted != isQuote;
        } else {
            word += c;
        }
    }
    end();
    return words;
}

// Of matches that overlap, the first and longest.
void keepApart(std::vector<FindMatch> &matches)
{
    std::ranges::sort(matches, [](const FindMatch &a, const FindMatch &b) {
        return a.start != b.start ? a.start < b.start : a.length > b.length;
    });
    qsizetype end = 0;
    std::erase_if(matches, [&end](const FindMatch &each) {
        if (each.start < end)
            return true;
        end = each.start + each.length;
        return false;
    });
}

bool endsLine(QChar c)
{
    return c == u'\r' || c == u'\n' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

// Goes from line to line. Where CR stands only before LF and nothing else ends a line, as in all that the text pane
// shows, lines are found faster.
class LineWalk
{
public:
    explicit LineWalk(QStringView text)
        : m_text(text)
        , m_isPlain(isPlain(text))
    {
    }

    // False at the end.
    bool next()
    {
        m_begin = m_behind;
        if (m_begin >= m_text.size())
            return false;
        if (m_isPlain) {
            const qsizetype feed = m_text.indexOf(u'\n', m_begin);
            m_end = feed < 0 ? m_text.size() : feed;
            m_behind = m_end + 1;
            if (feed > m_begin && m_text[feed - 1] == u'\r')
                --m_end;
        } else {
            m_end = std::find_if(m_text.begin() + m_begin, m_text.end(), endsLine) - m_text.begin();
            m_behind = m_end + 1;
        }
        return true;
    }

    qsizetype begin() const { return m_begin; }

    QStringView line() const { return m_text.sliced(m_begin, m_end - m_begin); }

private:
    static bool isPlain(QStringView text)
    {
        if (text.contains(QChar::LineSeparator) || text.contains(QChar::ParagraphSeparator))
            return false;
        for (qsizetype at = text.indexOf(u'\r'); at >= 0; at = text.indexOf(u'\r', at + 1)) {
            if (at + 1 == text.size() || text[at + 1] != u'\n')
                return false;
        }
        return true;
    }

    const QStringView m_text;
    const bool m_isPlain;
    qsizetype m_begin = 0;
    qsizetype m_end = 0;
    qsizetype m_behind = 0;
};

bool hasSurrogates(QStringView text)
{
    constexpr char16_t kind = 0xF800;
    bool has = false;
    // Without a way out in between, so that many are looked at at once.
    for (const QChar c : text)
        has |= (c.unicode() & kind) == 0xD800;
    return has;
}

QString withoutHalves(QStringView text)
{
    QString whole = text.toString();
    for (qsizetype i = 0; i < whole.size(); ++i) {
        if (whole[i].isHighSurrogate() && i + 1 < whole.size() && whole[i + 1].isLowSurrogate())
            ++i;
        else if (whole[i].isSurrogate())
            whole[i] = QChar::ReplacementCharacter;
    }
    return whole;
}

bool isAsked(const std::atomic_bool *isEnded)
{
    return !isEnded || !*isEnded;
}

} // namespace

struct FindQuery::Parts {
    struct Word {
        QString text;
        // As it is compared, and how long that is: a matcher is asked by several threads, which had better not count
        // who has its pattern.
        QStringMatcher matcher;
        qsizetype length = 0;
    };

    QString text;
    FindOptions options;
    QString error;
    std::vector<Word> words;
    std::optional<QRegularExpression> expression;
    // In so many lines.
    mutable std::atomic_int givenUp = 0;

    Comparison comparison() const { return {options.matchCase, options.accents}; }
};

FindQuery::FindQuery()
    : FindQuery(QString(), FindOptions())
{
}

FindQuery::FindQuery(const QString &text, const FindOptions &options)
{
    auto parts = std::make_shared<Parts>();
    parts->text = text;
    parts->options = options;
    if (options.regularExpression)
        readExpression(*parts);
    else
        readWords(*parts);
    m_parts = std::move(parts);
}

void FindQuery::readWords(Parts &parts) const
{
    QStringList words = wordsOf(parts.text);
    words.removeDuplicates();
    for (const QString &word : words) {
        const QString compared = ComparedText(word, parts.comparison()).units();
        if (!compared.isEmpty())
            parts.words.push_back({word, QStringMatcher(compared), compared.size()});
    }
    if (parts.words.size() > mostWords) {
        parts.words.clear();
        parts.error = u"More than %1 words cannot be looked for at once."_s.arg(mostWords);
    }
}

void FindQuery::readExpression(Parts &parts) const
{
    if (parts.text.isEmpty())
        return;
    QRegularExpression::PatternOptions options = QRegularExpression::UseUnicodePropertiesOption;
    options.setFlag(QRegularExpression::CaseInsensitiveOption, !parts.options.matchCase);
    if (const QRegularExpression plain(parts.text, options); !plain.isValid()) {
        parts.error = u"%1 (at character %2)"_s.arg(plain.errorString()).arg(plain.patternErrorOffset() + 1);
        return;
    }
    parts.expression.emplace(matchLimit + parts.text, options);
    parts.expression->optimize();
}

const QString &FindQuery::text() const
{
    return m_parts->text;
}

const FindOptions &FindQuery::options() const
{
    return m_parts->options;
}

bool FindQuery::isEmpty() const
{
    return wordCount() == 0 || !(options().labels || options().texts);
}

const QString &FindQuery::error() const
{
    return m_parts->error;
}

int FindQuery::groupCount() const
{
    return m_parts->expression ? m_parts->expression->captureCount() : 0;
}

int FindQuery::wordCount() const
{
    return m_parts->expression ? 1 : static_cast<int>(m_parts->words.size());
}

QStringList FindQuery::certainPartsOf(int word) const
{
    return m_parts->expression ? certainWords(m_parts->text)
                               : QStringList{m_parts->words[static_cast<std::size_t>(word)].text};
}

quint64 FindQuery::allWords() const
{
    const int count = wordCount();
    return count == 64 ? ~quint64(0) : (quint64(1) << count) - 1;
}

FindQuery::Found FindQuery::lookIn(QStringView text, quint64 words, const std::atomic_bool *isEnded) const
{
    if (m_parts->expression)
        return findExpression(text, isEnded);
    Found found;
    if (m_parts->words.empty() || text.isEmpty())
        return found;
    const ComparedText compared(text, m_parts->comparison());
    for (std::size_t i = 0; i < m_parts->words.size() && isAsked(isEnded); ++i) {
        if ((words >> i & 1) == 0)
            continue;
        const QStringMatcher &matcher = m_parts->words[i].matcher;
        const qsizetype length = m_parts->words[i].length;
        const std::size_t before = found.matches.size();
        for (qsizetype at = 0;; ++at) {
            at = matcher.indexIn(compared.units(), at);
            if (at < 0)
                break;
            const auto place = compared.placeOf(at, length, text);
            if (!place || (m_parts->options.wholeWord && !isWholeWord(text, place->start, place->length)))
                continue;
            found.matches.push_back({place->start, place->length, {}});
            at += length - 1;
        }
        if (found.matches.size() > before)
            found.words |= quint64(1) << i;
    }
    if (m_parts->words.size() > 1)
        keepApart(found.matches);
    return found;
}

bool FindQuery::mayStandIn(QStringView texts) const
{
    if (m_parts->expression)
        return true;
    const ComparedText compared(texts, m_parts->comparison());
    return std::ranges::any_of(m_parts->words,
                               [&](const Parts::Word &word) { return word.matcher.indexIn(compared.units()) >= 0; });
}

FindQuery::Found FindQuery::findExpression(QStringView text, const std::atomic_bool *isEnded) const
{
    Found found;
    const QRegularExpression &expression = *m_parts->expression;
    // The engine would look for halves of characters by itself, in each line and unit by unit.
    constexpr auto known = QRegularExpression::DontCheckSubjectStringMatchOption;
    const QString whole = hasSurrogates(text) && !text.isValidUtf16() ? withoutHalves(text) : QString();
    if (!whole.isNull())
        text = whole;
    for (LineWalk walk(text); isAsked(isEnded) && walk.next();) {
        const QStringView line = walk.line();
        if (m_parts->givenUp > mostGivenUp) {
            found.isGivenUp = true;
            break;
        }
        // In most lines nothing is found.
        const QRegularExpressionMatch first = expression.match(line, 0, QRegularExpression::NormalMatch, known);
        bool isGivenUp = !first.isValid();
        if (first.hasMatch()) {
            QRegularExpressionMatchIterator matches =
                expression.globalMatch(line, 0, QRegularExpression::NormalMatch, known);
            bool isAtEnd = false;
            while (!isAtEnd && matches.hasNext() && isAsked(isEnded)) {
                const QRegularExpressionMatch match = matches.next();
                // Behind it nothing is left to be found, and asked for more the engine would say that it gave up.
                isAtEnd = match.capturedEnd() == line.size();
                const qsizetype start = walk.begin() + match.capturedStart();
                const qsizetype length = match.capturedLength();
                if (length > 0 && (!m_parts->options.wholeWord || isWholeWord(text, start, length)))
                    found.matches.push_back({start, length, match.capturedTexts()});
            }
            isGivenUp = !isAtEnd && !matches.isValid();
        }
        found.isGivenUp |= isGivenUp;
        m_parts->givenUp += isGivenUp ? 1 : 0;
    }
    found.words = found.matches.empty() ? 0 : 1;
    return found;
}
