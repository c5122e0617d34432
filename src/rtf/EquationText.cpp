// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/FieldText.h"

#include "rtf/Limits.h"

#include <QStringList>

#include <algorithm>

namespace rtf
{

namespace
{

// Reads an equation: text, and switches after a backslash with options and, in brackets, arguments between commas or
// semicolons.
class Equation
{
public:
    explicit Equation(QStringView text)
        : m_text(text)
    {
    }

    // The text up to the end or, in arguments, to what ends one of them.
    QString read(int depth = 0)
    {
        QString shown;
        while (m_at < m_text.size()) {
            const QChar c = m_text[m_at];
            if (depth > 0 && (c == QLatin1Char(')') || isSeparator(c))) {
                break;
            }
            ++m_at;
            if (c == QLatin1Char('\\')) {
                shown += readSwitch(depth);
            } else if (c == QLatin1Char('(') && depth > 0) {
                // Brackets of the text itself, which pair.
                shown += c + readPlainBrackets(depth);
            } else {
                shown += c;
            }
        }
        return shown;
    }

private:
    static bool isSeparator(QChar c) { return c == QLatin1Char(',') || c == QLatin1Char(';'); }

    QString readPlainBrackets(int depth)
    {
        QString shown;
        if (depth >= deepestEquation) {
            return shown;
        }
        for (;;) {
            shown += read(depth + 1);
            if (m_at >= m_text.size()) {
                return shown;
            }
            const QChar end = m_text[m_at++];
            shown += end;
            if (end == QLatin1Char(')')) {
                return shown;
            }
        }
    }

    // A switch behind its backslash: an escaped character, how to format the field, or something with arguments.
    QString readSwitch(int depth)
    {
        if (m_at >= m_text.size()) {
            return {};
        }
        const QChar name = m_text[m_at].toLower();
        ++m_at;
        if (name == QLatin1Char('*')) {
            skipFormat();
            return {};
        }
        if (!name.isLetter()) {
            return name;
        }
        const qsizetype begin = m_at;
        while (m_at < m_text.size() && m_text[m_at] != QLatin1Char('(') && m_text[m_at] != QLatin1Char(')')) {
            m_at += m_text[m_at] == QLatin1Char('\\') ? 2 : 1;
        }
        m_at = std::min(m_at, m_text.size());
        const QString options = m_text.sliced(begin, m_at - begin).toString();
        if (m_at == m_text.size() || m_text[m_at] == QLatin1Char(')') || depth >= deepestEquation) {
            // No arguments: what looked like options is text.
            return options;
        }
        return shownAs(name, options.toLower(), readArguments(depth));
    }

    // \* and a word, which may be quoted.
    void skipFormat()
    {
        const auto skip = [this](auto isPassed) {
            while (m_at < m_text.size() && isPassed(m_text[m_at])) {
                ++m_at;
            }
        };
        skip([](QChar c) { return c.isSpace(); });
        if (m_at < m_text.size() && m_text[m_at] == QLatin1Char('"')) {
            ++m_at;
            skip([](QChar c) { return c != QLatin1Char('"'); });
            ++m_at;
        } else {
            skip([](QChar c) { return !c.isSpace() && c != QLatin1Char('\\'); });
        }
        skip([](QChar c) { return c.isSpace(); });
        m_at = std::min(m_at, m_text.size());
    }

    QStringList readArguments(int depth)
    {
        QStringList arguments;
        do {
            ++m_at; // the opening bracket or a separator
            arguments << read(depth + 1).trimmed();
        } while (m_at < m_text.size() && m_text[m_at] != QLatin1Char(')'));
        ++m_at;
        return arguments;
    }

    static QString inBrackets(const QString &text)
    {
        return text.isEmpty() ? text : QLatin1Char('(') + text + QLatin1Char(')');
    }

    static QString shownAs(QChar name, const QString &options, const QStringList &arguments)
    {
        const QString &first = arguments.front();
        const bool isPair = arguments.size() == 2;
        switch (name.unicode()) {
        case 'f':
            return arguments.join(QLatin1Char('/'));
        case 'r':
            return (isPair ? first : QString()) + QChar(0x221A) + inBrackets(arguments.back());
        case 'i':
            return QChar(char16_t(options.contains(QLatin1StringView("\\su"))   ? 0x2211
                                  : options.contains(QLatin1StringView("\\pr")) ? 0x220F
                                                                                : 0x222B)) +
                   arguments.join(QLatin1Char(' '));
        case 'a':
        case 'l':
            return arguments.join(QLatin1StringView(", "));
        case 'b':
            return inBrackets(arguments.join(QLatin1StringView(", ")));
        case 'o':
            // Text over another one: readings stand above what they tell how to read.
            return isPair && !first.isEmpty() ? arguments.back() + inBrackets(first) : arguments.join(QString());
        default:
            return arguments.join(QString());
        }
    }

    QStringView m_text;
    qsizetype m_at = 0;
};

} // namespace

QString equationText(QStringView equation)
{
    return Equation(equation).read().simplified();
}

} // namespace rtf
