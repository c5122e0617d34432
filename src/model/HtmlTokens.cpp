// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/HtmlTokens.h"

#include <QHash>
#include <QTextDocumentFragment>

#include <algorithm>
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

// No tag that means anything has a longer name.
constexpr qsizetype longestTagName = 32;

// Between the "&" and the ";" of a character's name or number.
constexpr qsizetype longestCharacterName = 32;

struct ElementRow {
    QLatin1StringView name;
    HtmlElement element;
};

constexpr ElementRow elementRows[] = {
    {"address"_L1, HtmlElement::Block},
    {"area"_L1, HtmlElement::Void},
    {"article"_L1, HtmlElement::Block},
    {"base"_L1, HtmlElement::Void},
    {"basefont"_L1, HtmlElement::Void},
    {"blockquote"_L1, HtmlElement::Block},
    {"br"_L1, HtmlElement::LineBreak},
    {"center"_L1, HtmlElement::Block},
    {"col"_L1, HtmlElement::Void},
    {"dd"_L1, HtmlElement::Item},
    {"dir"_L1, HtmlElement::List},
    {"div"_L1, HtmlElement::Block},
    {"dl"_L1, HtmlElement::List},
    {"dt"_L1, HtmlElement::Item},
    {"embed"_L1, HtmlElement::Void},
    {"footer"_L1, HtmlElement::Block},
    {"form"_L1, HtmlElement::Block},
    {"h1"_L1, HtmlElement::Paragraph},
    {"h2"_L1, HtmlElement::Paragraph},
    {"h3"_L1, HtmlElement::Paragraph},
    {"h4"_L1, HtmlElement::Paragraph},
    {"h5"_L1, HtmlElement::Paragraph},
    {"h6"_L1, HtmlElement::Paragraph},
    {"header"_L1, HtmlElement::Block},
    {"hr"_L1, HtmlElement::LineBreak},
    {"img"_L1, HtmlElement::Void},
    {"input"_L1, HtmlElement::Void},
    {"li"_L1, HtmlElement::Item},
    {"link"_L1, HtmlElement::Void},
    {"menu"_L1, HtmlElement::List},
    {"meta"_L1, HtmlElement::Void},
    {"ol"_L1, HtmlElement::List},
    {"p"_L1, HtmlElement::Paragraph},
    {"param"_L1, HtmlElement::Void},
    {"pre"_L1, HtmlElement::Block},
    {"section"_L1, HtmlElement::Block},
    {"source"_L1, HtmlElement::Void},
    {"table"_L1, HtmlElement::Table},
    {"tbody"_L1, HtmlElement::TableSection},
    {"td"_L1, HtmlElement::Cell},
    {"tfoot"_L1, HtmlElement::TableSection},
    {"th"_L1, HtmlElement::Cell},
    {"thead"_L1, HtmlElement::TableSection},
    {"tr"_L1, HtmlElement::Row},
    {"track"_L1, HtmlElement::Void},
    {"ul"_L1, HtmlElement::List},
    {"wbr"_L1, HtmlElement::Void},
};

bool isHtmlBlank(QChar c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}

bool isHtmlLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

// Elements whose content is no HTML.
bool isRaw(const QString &tagName)
{
    return tagName == "script"_L1 || tagName == "style"_L1 || tagName == "title"_L1;
}

// Cells beside each other are a tab apart.
void startLine(QString &text, HtmlElement element)
{
    if (text.isEmpty() || element == HtmlElement::Other || element == HtmlElement::Void)
        return;
    if (element == HtmlElement::Cell) {
        if (text.back() != u'\n')
            text += u'\t';
        return;
    }
    while (text.endsWith(u' '))
        text.chop(1);
    if (text.isEmpty() || text.back() != u'\n' || element == HtmlElement::LineBreak)
        text += u'\n';
}

} // namespace

HtmlElement htmlElement(const QString &tagName)
{
    const auto *row = std::ranges::find(elementRows, tagName, &ElementRow::name);
    return row == std::end(elementRows) ? HtmlElement::Other : row->element;
}

QStringView HtmlToken::attribute(QStringView attributeName) const
{
    const auto found = std::ranges::find(attributes, attributeName, &HtmlAttribute::name);
    return found == attributes.end() ? QStringView() : found->value;
}

HtmlTokens::HtmlTokens(QStringView html)
    : m_html(html)
{
}

HtmlToken HtmlTokens::next()
{
    while (m_at < m_html.size()) {
        HtmlToken token;
        if (!m_rawName.isEmpty()) {
            token = raw();
        } else if (!isTagAt(m_at)) {
            token = text();
        } else {
            const QChar mark = m_html[m_at + 1];
            token = mark == u'!' || mark == u'?' ? comment() : tag();
        }
        if (token.kind != HtmlToken::Kind::End)
            return token;
    }
    return {};
}

bool HtmlTokens::isTagAt(qsizetype at) const
{
    const QStringView rest = m_html.sliced(at);
    if (rest.size() < 2 || rest[0] != u'<')
        return false;
    return isHtmlLetter(rest[1]) || rest[1] == u'!' || rest[1] == u'?' ||
           (rest[1] == u'/' && rest.size() > 2 && isHtmlLetter(rest[2]));
}

HtmlToken HtmlTokens::text()
{
    qsizetype end = m_at + 1;
    while (end < m_html.size() && !isTagAt(end)) {
        const qsizetype mark = m_html.indexOf(u'<', end + 1);
        end = mark < 0 ? m_html.size() : mark;
    }
    HtmlToken token;
    token.kind = HtmlToken::Kind::Text;
    token.text = upTo(end);
    return token;
}

HtmlToken HtmlTokens::comment()
{
    constexpr QLatin1StringView opening("<!--");
    HtmlToken token;
    token.kind = HtmlToken::Kind::Comment;
    if (!m_html.sliced(m_at).startsWith(opening)) {
        upTo(m_html.indexOf(u'>', m_at));
        ++m_at;
        return token;
    }
    m_at += opening.size();
    token.text = upTo(m_html.indexOf("-->"_L1, m_at));
    m_at += 3;
    return token;
}

HtmlToken HtmlTokens::tag()
{
    HtmlToken token;
    const bool isEnd = m_html[m_at + 1] == u'/';
    m_at += isEnd ? 2 : 1;
    const QStringView name = upTo(std::find_if(m_html.begin() + m_at, m_html.end(),
                                               [](QChar c) { return isHtmlBlank(c) || c == u'>' || c == u'/'; }) -
                                  m_html.begin());
    token.name = name.first(std::min(name.size(), longestTagName)).toString().toLower();
    token.attributes = attributes();
    if (m_at >= m_html.size())
        return token;
    ++m_at;
    token.kind = isEnd ? HtmlToken::Kind::EndTag : HtmlToken::Kind::StartTag;
    if (!isEnd && isRaw(token.name))
        m_rawName = token.name;
    return token;
}

HtmlToken HtmlTokens::raw()
{
    HtmlToken token;
    token.kind = HtmlToken::Kind::Raw;
    token.name = std::exchange(m_rawName, {});
    token.text = upTo(m_html.indexOf(QString("</"_L1 + token.name), m_at, Qt::CaseInsensitive));
    upTo(m_html.indexOf(u'>', m_at));
    ++m_at;
    return token;
}

// Leaves the place at the ">" of the tag, or at the end.
std::vector<HtmlAttribute> HtmlTokens::attributes()
{
    std::vector<HtmlAttribute> found;
    for (;;) {
        while (m_at < m_html.size() && (isHtmlBlank(m_html[m_at]) || m_html[m_at] == u'/'))
            ++m_at;
        if (m_at >= m_html.size() || m_html[m_at] == u'>')
            return found;
        const auto endsName = [](QChar c) { return isHtmlBlank(c) || c == u'=' || c == u'>' || c == u'/'; };
        const auto *end = std::find_if(m_html.begin() + m_at + 1, m_html.end(), endsName);
        HtmlAttribute attribute;
        attribute.name = upTo(end - m_html.begin()).toString().toLower();
        skipBlanks();
        if (m_at < m_html.size() && m_html[m_at] == u'=') {
            ++m_at;
            attribute.value = attributeValue();
        }
        found.push_back(std::move(attribute));
    }
}

QStringView HtmlTokens::attributeValue()
{
    skipBlanks();
    if (m_at >= m_html.size())
        return {};
    const QChar quote = m_html[m_at];
    if (quote == u'"' || quote == u'\'') {
        ++m_at;
        const QStringView value = upTo(m_html.indexOf(quote, m_at));
        ++m_at;
        return value;
    }
    const auto *end =
        std::find_if(m_html.begin() + m_at, m_html.end(), [](QChar c) { return isHtmlBlank(c) || c == u'>'; });
    return upTo(end - m_html.begin());
}

void HtmlTokens::skipBlanks()
{
    while (m_at < m_html.size() && isHtmlBlank(m_html[m_at]))
        ++m_at;
}

QStringView HtmlTokens::upTo(qsizetype end)
{
    const qsizetype from = std::min(m_at, m_html.size());
    m_at = end < 0 ? m_html.size() : end;
    return m_html.sliced(from, std::max<qsizetype>(m_at - from, 0));
}

QString HtmlCharacters::of(QStringView html)
{
    QString text;
    while (!html.isEmpty()) {
        const qsizetype mark = html.indexOf(u'&');
        text += html.first(mark < 0 ? html.size() : mark);
        if (mark < 0)
            break;
        html = html.sliced(mark);
        const qsizetype end = html.first(std::min(html.size(), longestCharacterName)).indexOf(u';');
        const QStringView reference = html.first(std::max<qsizetype>(end, 0) + 1);
        if (reference.size() > 1)
            text += ofReference(reference);
        else
            text += u'&';
        html = html.sliced(reference.size());
    }
    return text;
}

QString HtmlCharacters::ofReference(QStringView reference)
{
    const QString name = reference.toString();
    const auto known = m_known.constFind(name);
    return known == m_known.cend() ? *m_known.insert(name, QTextDocumentFragment::fromHtml(name).toPlainText())
                                   : *known;
}

QString plainTextOfHtml(QStringView html)
{
    QString text;
    HtmlCharacters characters;
    HtmlTokens tokens(html);
    for (HtmlToken token = tokens.next(); token.kind != HtmlToken::Kind::End; token = tokens.next()) {
        if (token.kind == HtmlToken::Kind::Text) {
            const QString decoded = characters.of(token.text);
            // Line breaks between tags are the layout of the source.
            for (const QChar c : decoded) {
                const bool isBlank = isHtmlBlank(c);
                if (!isBlank || (!text.isEmpty() && !isHtmlBlank(text.back())))
                    text += isBlank ? QChar(u' ') : c;
            }
        } else if (token.kind == HtmlToken::Kind::StartTag) {
            startLine(text, htmlElement(token.name));
        }
    }
    return text;
}
