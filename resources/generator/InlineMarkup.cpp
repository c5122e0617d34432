// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "InlineMarkup.h"

#include <QBrush>
#include <QColor>
#include <QFont>

using namespace Qt::StringLiterals;

namespace
{

using FormatChange = void (*)(QTextCharFormat &format);

struct Mark {
    char16_t sign;
    FormatChange apply;
};

constexpr Mark marks[] = {
    {u'*', [](QTextCharFormat &format) { format.setFontWeight(QFont::Bold); }},
    {u'/', [](QTextCharFormat &format) { format.setFontItalic(true); }},
    {u'_', [](QTextCharFormat &format) { format.setFontUnderline(true); }},
    {u'~', [](QTextCharFormat &format) { format.setFontStrikeOut(true); }},
};

const Mark *findMark(QChar sign)
{
    for (const Mark &mark : marks) {
        if (sign == mark.sign)
            return &mark;
    }
    return nullptr;
}

void applyAttribute(QTextCharFormat &format, QStringView attribute, int line)
{
    const qsizetype blank = attribute.indexOf(u' ');
    const QStringView name = attribute.first(blank < 0 ? attribute.size() : blank);
    const QStringView value = blank < 0 ? QStringView() : attribute.sliced(blank).trimmed();
    if (name == u"size" && value.toDouble() > 0) {
        format.setFontPointSize(value.toDouble());
    } else if (name == u"font" && !value.isEmpty()) {
        format.setFontFamilies({value.toString()});
    } else if (name == u"colour" && QColor::isValidColor(u'#' + value.toString())) {
        format.setForeground(QColor(u'#' + value.toString()));
    } else if (name == u"bold") {
        format.setFontWeight(QFont::Bold);
    } else if (name == u"italic") {
        format.setFontItalic(true);
    } else {
        throw SourceError(line, u"unknown attribute %1"_s.arg(attribute));
    }
}

// Reads runs from left to right. What is open is a stack of (sign that closes it, format outside it).
class RunReader
{
public:
    RunReader(QStringView text, const StyleTable &styles, int line)
        : m_text(text)
        , m_styles(styles)
        , m_line(line)
    {
    }

    std::vector<SourceRun> read();

private:
    struct Open {
        char16_t closer;
        QTextCharFormat outside;
    };

    void readEscape();
    void readSpan();
    void toggle(const Mark &mark);
    void open(char16_t closer, const QTextCharFormat &inside);
    void close();
    void flush();

    QStringView m_text;
    const StyleTable &m_styles;
    int m_line;
    qsizetype m_position = 0;
    QString m_run;
    QTextCharFormat m_format;
    std::vector<Open> m_open;
    std::vector<SourceRun> m_runs;
};

std::vector<SourceRun> RunReader::read()
{
    while (m_position < m_text.size()) {
        const QChar sign = m_text.at(m_position++);
        if (sign == u'\\')
            readEscape();
        else if (sign == u'{')
            readSpan();
        else if (sign == u'}' && !m_open.empty() && m_open.back().closer == u'}')
            close();
        else if (const Mark *mark = findMark(sign))
            toggle(*mark);
        else
            m_run += sign;
    }
    if (!m_open.empty())
        throw SourceError(m_line, u"a mark is not closed: %1"_s.arg(QChar(m_open.back().closer)));
    flush();
    return std::move(m_runs);
}

void RunReader::readEscape()
{
    if (m_position == m_text.size())
        throw SourceError(m_line, u"nothing follows a backslash"_s);
    const QChar sign = m_text.at(m_position++);
    if (sign == u't')
        m_run += u'\t';
    else if (sign == u'n')
        m_run += QChar::LineSeparator;
    else
        m_run += sign;
}

void RunReader::readSpan()
{
    const qsizetype bar = m_text.indexOf(u'|', m_position);
    if (bar < 0)
        throw SourceError(m_line, u"a brace opens attributes, a bar and text"_s);
    const QStringView attributes = m_text.sliced(m_position, bar - m_position);
    m_position = bar + 1;
    const auto style = m_styles.constFind(attributes.toString());
    open(u'}', style != m_styles.constEnd() ? *style : parseAttributes(attributes, m_line));
}

void RunReader::toggle(const Mark &mark)
{
    if (!m_open.empty() && m_open.back().closer == mark.sign) {
        close();
        return;
    }
    QTextCharFormat inside;
    mark.apply(inside);
    open(mark.sign, inside);
}

void RunReader::open(char16_t closer, const QTextCharFormat &inside)
{
    flush();
    m_open.push_back({closer, m_format});
    m_format.merge(inside);
}

void RunReader::close()
{
    flush();
    m_format = m_open.back().outside;
    m_open.pop_back();
}

void RunReader::flush()
{
    if (!m_run.isEmpty())
        m_runs.push_back({m_run, m_format});
    m_run.clear();
}

} // namespace

QTextCharFormat parseAttributes(QStringView attributes, int line)
{
    QTextCharFormat format;
    for (const QStringView attribute : attributes.split(u';'))
        applyAttribute(format, attribute.trimmed(), line);
    return format;
}

std::vector<SourceRun> parseInlineMarkup(QStringView text, const StyleTable &styles, int line)
{
    return RunReader(text, styles, line).read();
}
