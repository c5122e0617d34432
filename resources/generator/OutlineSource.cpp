// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "OutlineSource.h"

#include "InlineMarkup.h"

using namespace Qt::StringLiterals;

SourceError::SourceError(int line, const QString &what)
    : std::runtime_error(u"line %1: %2"_s.arg(line).arg(what).toStdString())
{
}

namespace
{

bool beginsParagraph(QStringView line)
{
    return line.startsWith(u'-') || line.startsWith(u'>') || line.startsWith(u"[centre]") ||
           line.startsWith(u"[right]");
}

class SourceParser
{
public:
    OutlineSource parse(QStringView source);

private:
    void readLine(QStringView line);
    void readSetting(QStringView setting);
    clsFont readFont(QStringView description) const;
    void readHeading(QStringView line);
    void readText(QStringView line);
    void readTabs(QStringView line);
    void openParagraph(QStringView &line);
    void endParagraph();

    OutlineSource m_source;
    StyleTable m_styles;
    int m_line = 0;
    bool m_inParagraph = false;
    SourceParagraph m_paragraph;
    std::vector<int> m_tabs;
    QString m_paragraphText;
    int m_paragraphLine = 0;
};

OutlineSource SourceParser::parse(QStringView source)
{
    for (const QStringView line : source.split(u'\n')) {
        m_line++;
        readLine(line);
    }
    endParagraph();
    if (m_source.entries.empty())
        throw SourceError(m_line, u"no heading, so no entry"_s);
    // A blank line before the next heading belongs to the layout of the source, not to the text.
    for (SourceEntry &entry : m_source.entries) {
        while (!entry.paragraphs.empty() && entry.paragraphs.back().runs.empty())
            entry.paragraphs.pop_back();
    }
    return std::move(m_source);
}

void SourceParser::readLine(QStringView line)
{
    if (line.startsWith(u';'))
        return;
    if (line.startsWith(u'%'))
        readSetting(line.sliced(1));
    else if (line.startsWith(u'#'))
        readHeading(line);
    else
        readText(line);
}

void SourceParser::readSetting(QStringView setting)
{
    const qsizetype blank = setting.indexOf(u' ');
    const QStringView name = setting.first(blank < 0 ? setting.size() : blank);
    const QStringView value = blank < 0 ? QStringView() : setting.sliced(blank).trimmed();
    if (name == u"outline-font") {
        m_source.outlineFont = readFont(value);
    } else if (name == u"text-font") {
        m_source.textFont = readFont(value);
    } else if (name == u"open-levels") {
        m_source.openLevels = value.toInt();
    } else if (name == u"style") {
        const qsizetype end = value.indexOf(u' ');
        if (end < 0)
            throw SourceError(m_line, u"a style needs a name and attributes"_s);
        m_styles.insert(value.first(end).toString(), parseAttributes(value.sliced(end), m_line));
    } else {
        throw SourceError(m_line, u"unknown setting %1"_s.arg(name));
    }
}

clsFont SourceParser::readFont(QStringView description) const
{
    const qsizetype comma = description.lastIndexOf(u',');
    const double points = comma < 0 ? 0 : description.sliced(comma + 1).trimmed().toDouble();
    if (points <= 0)
        throw SourceError(m_line, u"a font is a name, a comma and a size in points"_s);
    clsFont font;
    font.setName(description.first(comma).trimmed().toString());
    font.setSize(qRound64(points * clsFont::point));
    return font;
}

void SourceParser::readHeading(QStringView line)
{
    endParagraph();
    SourceEntry entry;
    while (entry.level < line.size() && line.at(entry.level) == u'#')
        entry.level++;
    QStringView label = line.sliced(entry.level).trimmed();
    if (label.endsWith(u"[tagged]")) {
        entry.tagged = true;
        label = label.chopped(8).trimmed();
    }
    entry.label = label.toString();
    m_tabs.clear();

    const bool first = m_source.entries.empty();
    if (first && entry.level != 1)
        throw SourceError(m_line, u"the first heading is the root's and has one number sign"_s);
    if (!first && entry.level == 1)
        throw SourceError(m_line, u"an outline has one root"_s);
    if (!first && entry.level > m_source.entries.back().level + 1)
        throw SourceError(m_line, u"a heading is at most one level below the one before it"_s);
    m_source.entries.push_back(std::move(entry));
}

void SourceParser::readText(QStringView line)
{
    if (m_source.entries.empty()) {
        if (line.trimmed().isEmpty())
            return;
        throw SourceError(m_line, u"text before the first heading"_s);
    }
    if (line.trimmed().isEmpty()) {
        endParagraph();
        // Blank lines directly below the heading are layout too.
        if (!m_source.entries.back().paragraphs.empty())
            m_source.entries.back().paragraphs.emplace_back();
        return;
    }
    if (line.startsWith(u"[tabs ") && line.trimmed().endsWith(u']')) {
        readTabs(line.trimmed());
        return;
    }
    if (beginsParagraph(line))
        endParagraph();
    if (!m_inParagraph)
        openParagraph(line);
    else
        m_paragraphText += u' ';
    line = line.trimmed();
    const bool ends = line.endsWith(u'\\') && !line.endsWith(u"\\\\");
    m_paragraphText += ends ? line.chopped(1).trimmed() : line;
    if (ends)
        endParagraph();
}

void SourceParser::readTabs(QStringView line)
{
    endParagraph();
    m_tabs.clear();
    for (const QStringView number : line.sliced(6).chopped(1).split(u' ')) {
        m_tabs.push_back(number.toInt());
        if (m_tabs.back() <= 0)
            throw SourceError(m_line, u"a tab stop is a number of twips"_s);
    }
}

void SourceParser::openParagraph(QStringView &line)
{
    m_inParagraph = true;
    m_paragraph = SourceParagraph();
    m_paragraph.tabs = m_tabs;
    m_paragraphText.clear();
    m_paragraphLine = m_line;

    if (line.startsWith(u"[centre]")) {
        m_paragraph.alignment = Qt::AlignHCenter;
        line = line.sliced(8);
    } else if (line.startsWith(u"[right]")) {
        m_paragraph.alignment = Qt::AlignRight;
        line = line.sliced(7);
    } else if (line.startsWith(u'-') || line.startsWith(u'>')) {
        const QChar mark = line.front();
        while (line.startsWith(mark)) {
            m_paragraph.indent++;
            line = line.sliced(1);
        }
        m_paragraph.bullet = mark == u'-';
        if (m_paragraph.bullet)
            m_paragraph.indent--;
        if (!line.startsWith(u' '))
            throw SourceError(m_line, u"a blank follows the mark that begins a paragraph"_s);
    }
}

void SourceParser::endParagraph()
{
    if (!m_inParagraph)
        return;
    m_inParagraph = false;
    m_paragraph.runs = parseInlineMarkup(m_paragraphText, m_styles, m_paragraphLine);
    m_source.entries.back().paragraphs.push_back(std::move(m_paragraph));
}

} // namespace

OutlineSource parseOutlineSource(QStringView source)
{
    return SourceParser().parse(source);
}
