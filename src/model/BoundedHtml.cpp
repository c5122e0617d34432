// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/BoundedHtml.h"

#include "model/HtmlFamilies.h"
#include "model/HtmlGrid.h"
#include "model/HtmlLooks.h"
#include "model/HtmlTokens.h"
#include "model/Limits.h"
#include "rtf/Limits.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr qsizetype longestNumber = 4; // digits of a length or a count

// Of a style sheet's rules times the elements, which are held against each other one by one.
constexpr qsizetype mostStyleSteps = 2'000'000;

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// Numbers of too many digits as the greatest of longestNumber digits. What stands behind a letter, a "#" or a decimal
// point is no number of its own.
QString withBoundedNumbers(QStringView text)
{
    QString bounded;
    for (qsizetype i = 0; i < text.size();) {
        const auto *end = std::find_if_not(text.begin() + i, text.end(), isAsciiDigit);
        const qsizetype length = end - (text.begin() + i);
        const QChar before = i > 0 ? text[i - 1] : QChar(u' ');
        const bool isNumber = !before.isLetterOrNumber() && before != u'#' && before != u'.';
        if (length > longestNumber && isNumber)
            bounded += QString(longestNumber, u'9');
        else
            bounded += text.sliced(i, std::max<qsizetype>(length, 1));
        i += std::max<qsizetype>(length, 1);
    }
    return bounded;
}

// Nothing floats beside the text: each thing that does looks for its place among all the others. What is not found here
// LayoutStrain counts.
QString withoutFloats(QString styles)
{
    static const QRegularExpression floating(u"(?<![\\w-])float(?=\\s*:)"_s, QRegularExpression::CaseInsensitiveOption);
    return styles.replace(floating, u"-float"_s);
}

bool holdsLengths(const QString &attributeName)
{
    return attributeName == "style"_L1 || attributeName == "width"_L1 || attributeName == "height"_L1 ||
           attributeName == "border"_L1 || attributeName == "cellspacing"_L1 || attributeName == "cellpadding"_L1 ||
           attributeName == "size"_L1 || attributeName == "start"_L1 || attributeName == "value"_L1;
}

// Characters of an attribute as they stand in a text.
QString asText(QStringView value)
{
    return value.toString().replace(u'<', "&lt;"_L1);
}

int spanOf(QStringView value)
{
    return std::clamp(value.toInt(), 1, static_cast<int>(rtf::mostCells));
}

class HtmlBounder
{
public:
    explicit HtmlBounder(QStringView html)
        : m_tokens(html)
    {
    }

    BoundedHtml run();

private:
    struct Open {
        QString name;
        HtmlElement element = HtmlElement::Other;
        // As it is written; empty when it is not.
        QString writtenName;
        // Of a list: the start tag, and its items so far.
        QString startTag;
        int items = 0;
    };

    // Of what is written, to be made once all is known that it depends on.
    struct Edit {
        qsizetype at;
        qsizetype length;
        QString text;
    };

    struct Span {
        Edit edit;
        HtmlGrid::Cell cell;
    };

    struct OpenTable {
        HtmlGrid grid;
        std::vector<Span> spans;
        // The widths of its cells as one text, and how these are left out.
        QString widths;
        std::vector<Edit> withoutWidths;
    };

    void take(const HtmlToken &token);
    void start(const HtmlToken &token);
    void end(const QString &name);
    void picture(const HtmlToken &token);
    bool heldPicture(const HtmlToken &token);
    void style(QStringView sheet);
    void takePlaces(const HtmlToken &token, HtmlElement element);
    void finishTable(const OpenTable &table);
    void makeEdits();
    void closeImplied(HtmlElement element);
    void startItem();
    void closeTop();
    QString tag(const HtmlToken &token);

    bool isOpen(const QString &name) const { return m_openByName.value(name) > 0; }

    HtmlTokens m_tokens;
    BoundedHtml m_result;
    std::vector<Open> m_open;
    QHash<QString, int> m_openByName;
    // End tags to come of elements that are too deep to be remembered.
    QHash<QString, int> m_forgotten;
    qint64 m_listLooks = 0;
    int m_tables = 0;
    // Those that are open and not too deep.
    std::vector<OpenTable> m_openTables;
    // Of the last tag: where in it the value of "colspan" stands, and all of "width".
    Edit m_span{};
    Edit m_width{};
    std::vector<Edit> m_edits;
    qsizetype m_elements = 0;
    // Of all tables, as they are laid out; twice for each table around theirs.
    qsizetype m_cells = 0;
    qsizetype m_rules = 0;
    HtmlFamilies m_families;
    HtmlLooks m_looks;
    qint64 m_pictureBytes = 0;
    // How the style sheets are left out.
    std::vector<Edit> m_withoutSheets;
};

BoundedHtml HtmlBounder::run()
{
    for (HtmlToken token = m_tokens.next(); token.kind != HtmlToken::Kind::End; token = m_tokens.next()) {
        take(token);
        if (m_elements > limits::mostElements || m_cells > limits::mostCells) {
            m_result = {};
            m_result.isTooMuch = true;
            return m_result;
        }
    }
    while (!m_open.empty())
        closeTop();
    m_result.cells = m_cells;
    if (m_rules * m_elements > mostStyleSteps)
        m_edits.insert(m_edits.end(), m_withoutSheets.begin(), m_withoutSheets.end());
    makeEdits();
    return std::move(m_result);
}

void HtmlBounder::makeEdits()
{
    if (m_edits.empty())
        return;
    std::ranges::sort(m_edits, {}, &Edit::at);
    const QStringView written(m_result.html);
    QString edited;
    qsizetype at = 0;
    for (const Edit &edit : m_edits) {
        edited += written.sliced(at, edit.at - at);
        edited += edit.text;
        at = edit.at + edit.length;
    }
    edited += written.sliced(at);
    m_result.html = std::move(edited);
}

void HtmlBounder::take(const HtmlToken &token)
{
    switch (token.kind) {
    case HtmlToken::Kind::Text:
        // What is no tag is not to become one here.
        m_result.html += token.text.toString().replace(u'<', "&lt;"_L1);
        break;
    case HtmlToken::Kind::StartTag:
        start(token);
        break;
    case HtmlToken::Kind::EndTag:
        end(token.name);
        break;
    case HtmlToken::Kind::Comment:
        // These mark what of the page was copied.
        if (token.text == "StartFragment"_L1 || token.text == "EndFragment"_L1)
            m_result.html += "<!--"_L1 + token.text.toString() + "-->"_L1;
        break;
    case HtmlToken::Kind::Raw:
        if (token.name == "style"_L1)
            style(token.text);
        break;
    case HtmlToken::Kind::End:
        break;
    }
}

void HtmlBounder::style(QStringView sheet)
{
    const QString written =
        "<style>"_L1 + m_families.boundedStyles(withoutFloats(withBoundedNumbers(sheet))) + "</style>"_L1;
    m_looks.addSheet(sheet);
    m_rules += sheet.count(u'{') + sheet.count(u',');
    m_withoutSheets.push_back({m_result.html.size(), written.size(), {}});
    m_result.html += written;
}

QString HtmlBounder::tag(const HtmlToken &token)
{
    QString written = u'<' + token.name;
    m_span = {};
    m_width = {};
    for (const HtmlAttribute &attribute : token.attributes) {
        if (attribute.name.contains(u'"') || attribute.name.contains(u'\'') || attribute.name.contains(u'<') ||
            !m_looks.take(token.name, attribute))
            continue;
        QString value = attribute.value.toString();
        if (attribute.name == "style"_L1)
            value = m_families.boundedAttribute(withoutFloats(withBoundedNumbers(value)));
        else if (attribute.name == "face"_L1 && !m_families.take(value))
            continue;
        else if (holdsLengths(attribute.name))
            value = withBoundedNumbers(value);
        else if (attribute.name == "colspan"_L1 || attribute.name == "rowspan"_L1)
            value = QString::number(spanOf(value));
        const QChar quote = value.contains(u'"') ? u'\'' : u'"';
        const qsizetype at = written.size();
        written += u' ' + attribute.name + u'=' + quote + value + quote;
        if (attribute.name == "colspan"_L1)
            m_span = {written.size() - 1 - value.size(), value.size(), {}};
        else if (attribute.name == "width"_L1)
            m_width = {at, written.size() - at, {}};
    }
    return written + u'>';
}

void HtmlBounder::start(const HtmlToken &token)
{
    ++m_elements;
    if (token.name == "img"_L1) {
        picture(token);
        return;
    }
    const HtmlElement element = htmlElement(token.name);
    if (element == HtmlElement::Void || element == HtmlElement::LineBreak) {
        // What only speaks of the page, and what may lead to somewhere else, is left out.
        const bool isHeader = token.name == "link"_L1 || token.name == "base"_L1 ||
                              (token.name == "meta"_L1 && token.attribute(u"name") != "qrichtext"_L1);
        if (!isHeader)
            m_result.html += tag(token);
        return;
    }
    if (token.name == "script"_L1 || token.name == "style"_L1 || token.name == "title"_L1)
        return;
    closeImplied(element);
    if (m_open.size() >= limits::deepestElement) {
        ++m_forgotten[token.name];
        if (element != HtmlElement::Other && element != HtmlElement::Cell)
            m_result.html += "<br>"_L1;
        return;
    }
    if (element == HtmlElement::Item)
        startItem();
    Open open{token.name, element, token.name, tag(token), 0};
    if (element == HtmlElement::Table)
        ++m_tables;
    takePlaces(token, element);
    if (m_tables > rtf::deepestTable && element >= HtmlElement::Table && element <= HtmlElement::Cell) {
        open.writtenName = element == HtmlElement::Row ? u"div"_s : QString();
        open.startTag = element == HtmlElement::Row ? u"<div>"_s : element == HtmlElement::Cell ? u" "_s : QString();
    }
    m_result.html += open.startTag;
    ++m_openByName[token.name];
    m_open.push_back(std::move(open));
}

// Before the tag is written.
void HtmlBounder::takePlaces(const HtmlToken &token, HtmlElement element)
{
    const bool isTooDeep = m_tables > rtf::deepestTable;
    if (element == HtmlElement::Table && !isTooDeep)
        m_openTables.emplace_back();
    if (m_openTables.empty() || isTooDeep) {
        m_cells += element == HtmlElement::Cell ? 1 : 0;
        return;
    }
    OpenTable &table = m_openTables.back();
    const qsizetype before = table.grid.places();
    if (element == HtmlElement::Row) {
        table.grid.startRow();
    } else if (element == HtmlElement::Cell) {
        const HtmlGrid::Cell cell =
            table.grid.addCell(spanOf(token.attribute(u"colspan")), spanOf(token.attribute(u"rowspan")));
        const qsizetype at = m_result.html.size();
        if (m_span.length > 0)
            table.spans.push_back({{at + m_span.at, m_span.length, {}}, cell});
        if (m_width.length > 0) {
            table.widths += QString::number(cell.begin) + u' ' + token.attribute(u"width").toString() + u' ';
            table.withoutWidths.push_back({at + m_width.at, m_width.length, {}});
        }
    }
    m_cells += (table.grid.places() - before) << (m_openTables.size() - 1);
}

void HtmlBounder::finishTable(const OpenTable &table)
{
    const std::vector<int> columnsBefore = table.grid.columnsBefore();
    for (const Span &span : table.spans) {
        const int columns = columnsBefore[span.cell.end] - columnsBefore[span.cell.begin];
        m_edits.push_back({span.edit.at, span.edit.length, QString::number(columns)});
    }
    if (!m_looks.takeWidths(table.widths))
        m_edits.insert(m_edits.end(), table.withoutWidths.begin(), table.withoutWidths.end());
}

// Ends what a start tag ends without saying so.
void HtmlBounder::closeImplied(HtmlElement element)
{
    const auto ends = [element](HtmlElement open) {
        switch (element) {
        case HtmlElement::Paragraph:
        case HtmlElement::Block:
        case HtmlElement::List:
        case HtmlElement::Table:
            return open == HtmlElement::Paragraph;
        case HtmlElement::Item:
            return open == HtmlElement::Paragraph || open == HtmlElement::Item;
        case HtmlElement::Cell:
            return open == HtmlElement::Cell;
        case HtmlElement::Row:
            return open == HtmlElement::Cell || open == HtmlElement::Row;
        case HtmlElement::TableSection:
            return open == HtmlElement::Cell || open == HtmlElement::Row || open == HtmlElement::TableSection;
        default:
            return false;
        }
    };
    const bool isOfTable =
        element == HtmlElement::Cell || element == HtmlElement::Row || element == HtmlElement::TableSection;
    const auto bounds = [element, isOfTable](HtmlElement open) {
        if (open == HtmlElement::Table)
            return true;
        if (isOfTable)
            return false;
        return open == HtmlElement::Cell || (element == HtmlElement::Item && open == HtmlElement::List) ||
               (element != HtmlElement::Item && (open == HtmlElement::Block || open == HtmlElement::Item));
    };
    // The outermost that it ends, and with it all within.
    std::size_t first = m_open.size();
    for (std::size_t i = m_open.size(); i > 0 && !bounds(m_open[i - 1].element); --i) {
        if (ends(m_open[i - 1].element))
            first = i - 1;
    }
    while (m_open.size() > first)
        closeTop();
}

// Each item of a list costs a look at all before it, so that a long one goes on in another one.
void HtmlBounder::startItem()
{
    const auto list = std::find_if(m_open.rbegin(), m_open.rend(),
                                   [](const Open &open) { return open.element == HtmlElement::List; });
    if (list == m_open.rend())
        return;
    m_listLooks += list->items;
    const bool isLate = m_listLooks > limits::mostHtmlListLooks;
    if (++list->items <= (isLate ? limits::longestLateHtmlList : limits::longestHtmlList))
        return;
    if (list == m_open.rbegin() && !list->writtenName.isEmpty()) {
        m_result.html += "</"_L1 + list->writtenName + u'>' + list->startTag;
        list->items = 1;
    }
}

void HtmlBounder::end(const QString &name)
{
    if (int &forgotten = m_forgotten[name]; forgotten > 0) {
        --forgotten;
        return;
    }
    if (!isOpen(name))
        return;
    const HtmlElement element = htmlElement(name);
    const bool isOfTable = element >= HtmlElement::Table && element <= HtmlElement::Cell;
    for (std::size_t i = m_open.size(); i > 0; --i) {
        const Open &open = m_open[i - 1];
        if (open.name == name) {
            while (m_open.size() >= i)
                closeTop();
            return;
        }
        // Nothing but a part of the table ends a cell.
        if (open.element == HtmlElement::Table || (open.element == HtmlElement::Cell && !isOfTable))
            return;
    }
}

void HtmlBounder::closeTop()
{
    const Open &open = m_open.back();
    if (!open.writtenName.isEmpty())
        m_result.html += "</"_L1 + open.writtenName + u'>';
    if (open.element == HtmlElement::Table) {
        if (m_tables <= rtf::deepestTable) {
            finishTable(m_openTables.back());
            m_openTables.pop_back();
        }
        --m_tables;
    }
    --m_openByName[open.name];
    m_open.pop_back();
}

void HtmlBounder::picture(const HtmlToken &token)
{
    if (!heldPicture(token))
        m_result.html += asText(token.attribute(u"alt"));
}

bool HtmlBounder::heldPicture(const HtmlToken &token)
{
    const QStringView source = token.attribute(u"src").trimmed();
    const qsizetype comma = source.indexOf(u',');
    if (!source.startsWith("data:image/"_L1, Qt::CaseInsensitive) || comma < 0 ||
        !source.first(comma).endsWith(";base64"_L1, Qt::CaseInsensitive))
        return false;
    if (m_result.pictures.size() >= limits::mostPastedPictures || source.size() > 2 * limits::largestPicture)
        return false;
    QByteArray bytes = QByteArray::fromBase64(QByteArray::fromPercentEncoding(source.sliced(comma + 1).toLatin1()));
    m_pictureBytes += bytes.size();
    if (bytes.isEmpty() || m_pictureBytes > limits::largestPicture)
        return false;
    HtmlToken held;
    held.name = token.name;
    const QString name = BoundedHtml::pictureName + QString::number(m_result.pictures.size());
    held.attributes.push_back({u"src"_s, name});
    for (const HtmlAttribute &attribute : token.attributes) {
        if (attribute.name == "width"_L1 || attribute.name == "height"_L1)
            held.attributes.push_back(attribute);
    }
    m_result.html += tag(held);
    m_result.pictures.push_back(std::move(bytes));
    return true;
}

} // namespace

BoundedHtml boundedHtml(QStringView html)
{
    return HtmlBounder(html).run();
}
