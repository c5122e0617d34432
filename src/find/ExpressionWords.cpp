// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/ExpressionWords.h"

namespace
{

// Goes through the outermost row of an expression. Whatever means more than one thing, or changes what follows, ends it
// without a result.
class ExpressionReader
{
public:
    explicit ExpressionReader(QStringView expression)
        : m_rest(expression)
    {
    }

    QStringList words()
    {
        while (!m_rest.isEmpty()) {
            if (!passNext())
                return {};
        }
        endRun();
        return m_words;
    }

private:
    char16_t take()
    {
        const char16_t c = m_rest.front().unicode();
        m_rest = m_rest.sliced(1);
        return c;
    }

    bool passNext()
    {
        switch (const char16_t c = take()) {
        case u'|':
            return false;
        case u'\\':
            return passEscape();
        case u'[':
            return passClass() && passOther();
        case u'(':
            return passGroup() && passOther();
        case u'.':
        case u'^':
        case u'$':
            return passOther();
        default:
            return passCharacter(c);
        }
    }

    // Something that may stand for several things.
    bool passOther()
    {
        endRun();
        const Quantifier quantifier = passQuantifier();
        return quantifier != Quantifier::Unknown;
    }

    bool passEscape()
    {
        if (m_rest.isEmpty())
            return false;
        const QChar c = m_rest.front();
        constexpr QStringView plain(u"dDwWsShHvVbBAzZRXtnrfae");
        if (plain.contains(c)) {
            take();
            return passOther();
        }
        // The others may go on behind their letter.
        const bool isItself = c.unicode() < 0x80 && !c.isLetterOrNumber();
        return isItself && passCharacter(take());
    }

    bool passCharacter(char16_t c)
    {
        QString character{QChar(c)};
        if (QChar::isHighSurrogate(c) && !m_rest.isEmpty() && m_rest.front().isLowSurrogate())
            character += QChar(take());
        switch (passQuantifier()) {
        case Quantifier::None:
            m_run += character;
            return true;
        case Quantifier::Some:
            // What follows stands behind the last of them.
            m_run += character;
            endRun();
            m_run = character;
            return true;
        case Quantifier::Any:
            endRun();
            return true;
        default:
            return false;
        }
    }

    enum class Quantifier { None, Some, Any, Unknown };

    Quantifier passQuantifier()
    {
        if (m_rest.isEmpty())
            return Quantifier::None;
        Quantifier found = Quantifier::Any;
        switch (m_rest.front().unicode()) {
        case u'{': {
            const qsizetype end = m_rest.indexOf(u'}');
            if (end < 0)
                return Quantifier::Unknown;
            for (const QChar each : m_rest.sliced(1, end - 1)) {
                if (each != u',' && !(each >= u'0' && each <= u'9'))
                    return Quantifier::Unknown;
            }
            m_rest = m_rest.sliced(end);
            break;
        }
        case u'+':
            found = Quantifier::Some;
            break;
        case u'*':
        case u'?':
            break;
        default:
            return Quantifier::None;
        }
        take();
        // It may be lazy, or greedy beyond return.
        if (m_rest.startsWith(u'?') || m_rest.startsWith(u'+'))
            take();
        return found;
    }

    bool passClass()
    {
        if (m_rest.startsWith(u'^'))
            take();
        for (bool isFirst = true; !m_rest.isEmpty(); isFirst = false) {
            const char16_t c = take();
            if (c == u']' && !isFirst)
                return true;
            if (c == u'[' || (c == u'\\' && (m_rest.isEmpty() || take() == u'Q')))
                return false;
        }
        return false;
    }

    // What is in a group may be one of several ways, or be looked for elsewhere.
    bool passGroup()
    {
        for (int depth = 1; depth > 0;) {
            if (m_rest.startsWith(u'*'))
                return false;
            if (m_rest.startsWith(u'?')) {
                constexpr QStringView known(u":=!<>P'");
                if (m_rest.size() < 2 || !known.contains(m_rest[1]))
                    return false;
            }
            for (bool isIn = true; isIn;) {
                if (m_rest.isEmpty())
                    return false;
                const char16_t c = take();
                if ((c == u'\\' && (m_rest.isEmpty() || take() == u'Q')) || (c == u'[' && !passClass()))
                    return false;
                depth += c == u'(' ? 1 : c == u')' ? -1 : 0;
                isIn = c != u'(' && depth > 0;
            }
        }
        return true;
    }

    void endRun()
    {
        if (!m_run.isEmpty())
            m_words.append(m_run);
        m_run.clear();
    }

    QStringView m_rest;
    QString m_run;
    QStringList m_words;
};

} // namespace

QStringList certainWords(QStringView expression)
{
    return ExpressionReader(expression).words();
}
