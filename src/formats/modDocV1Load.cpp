// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/modDocV1.h"

#include "model/Document.h"
#include "model/OutlinePane.h"
#include "model/TextPane.h"
#include "model/modDoc.h"
#include "model/modNodes.h"

#include "util/AnsiCodec.h"
#include "util/Numbers.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <array>

using namespace Qt::StringLiterals;

namespace
{

QString headerText(const QByteArray &buffer, const QByteArray &tagName)
{
    return AnsiCodec::toText(modDoc::DocLoadTag(buffer, tagName));
}

void loadFont(const QByteArray &buffer, const QByteArray &prefix, clsFont &font)
{
    font.setName(headerText(buffer, prefix + "fontname"));
    font.setSize(Numbers::toFixedPoint(headerText(buffer, prefix + "fontsize")));
    font.setBold(Numbers::toBoolean(headerText(buffer, prefix + "fontbold")));
    font.setItalic(Numbers::toBoolean(headerText(buffer, prefix + "fontitalic")));
    font.setStrikeThrough(Numbers::toBoolean(headerText(buffer, prefix + "fontstrikethrough")));
    font.setUnderline(Numbers::toBoolean(headerText(buffer, prefix + "fontunderline")));
}

void loadFonts(Document &document, const QByteArray &buffer)
{
    loadFont(buffer, "outline", document.m_fntOutlineFont);
    QFont outlineFont = document.trvOutline.Font();
    document.m_fntOutlineFont.SetFont(outlineFont);
    document.trvOutline.setFont(outlineFont);
    loadFont(buffer, "text", document.m_fntTextFont);
    // The pane's base font is the outline's by design; the text font stays what new texts are given.
    QFont baseFont = document.txtRTF.Font();
    document.m_fntOutlineFont.SetFont(baseFont);
    document.txtRTF.setFont(baseFont);
}

enum EntryRecord { NodeKey, NodeLabel, NodeTagged, NodeVisible, NodeText, EntryRecordCount };

constexpr std::array<QByteArrayView, EntryRecordCount> entryRecordNames = {"nodekey", "nodelabel", "nodetagged",
                                                                           "nodevisible", "nodetext"};
constexpr QByteArrayView recordEnd = "}\r\n";

// Reads the entries of a native file in one pass over its bytes. Positions are 0-based here.
class EntryReader
{
public:
    EntryReader(Document &document, const QByteArray &buffer, LoadResult &result)
        : m_document(document)
        , m_buffer(buffer)
        , m_result(result)
    {
    }

    void read()
    {
        try {
            scan();
        } catch (...) {
            // The entry that was being read when the reading broke off is kept as far as it came.
            completeEntry();
            throw;
        }
        completeEntry();
        if (!m_document.tree.root())
            noteDamage(u"it holds no entry"_s, 0);
        tellDamage();
    }

private:
    void scan();
    qsizetype readRecord(qsizetype at);
    qsizetype readValueRecord(EntryRecord record, qsizetype at);
    qsizetype skipUnknownRecord(qsizetype at);
    void takeText(qsizetype start, qsizetype end);
    void beginEntry(const QByteArray &path);
    void completeEntry();
    bool takeFlag(const QByteArray &value, qsizetype at);
    void expectRecordEnd(qsizetype brace, bool maybeCut);
    qsizetype nextBrace(qsizetype from);
    qsizetype nextOpener(qsizetype from) const;
    void noteDamage(const QString &what, qsizetype at);
    void tellDamage();

    Document &m_document;
    const QByteArray &m_buffer;
    LoadResult &m_result;

    Entry *m_entry = nullptr;
    QString m_label;
    QByteArray m_text;
    bool m_tagged = false;
    bool m_visible = false;
    bool m_inText = false;
    int m_nextRecord = 0;
    qsizetype m_nextBrace = -1;
    QString m_firstDamage;
    int m_damageCount = 0;
};

void EntryReader::scan()
{
    qsizetype position = 0;
    while (true) {
        const qsizetype found = nextOpener(position);
        if (m_inText)
            takeText(position, found);
        else if (position < found && position == 0)
            noteDamage(u"bytes before the first record"_s, 0);
        if (found >= m_buffer.size())
            return;
        position = readRecord(found);
    }
}

qsizetype EntryReader::readRecord(qsizetype at)
{
    const QByteArrayView tag = QByteArrayView(m_buffer).sliced(at + modDoc::recordOpener.size());
    for (int record = NodeKey; record < EntryRecordCount; ++record) {
        const QByteArrayView name = entryRecordNames[static_cast<size_t>(record)];
        if (tag.startsWith(name) && tag.size() > name.size() && tag[name.size()] == ' ')
            return readValueRecord(static_cast<EntryRecord>(record), at);
    }
    return skipUnknownRecord(at);
}

qsizetype EntryReader::readValueRecord(EntryRecord record, qsizetype at)
{
    const qsizetype valueStart =
        at + modDoc::recordOpener.size() + entryRecordNames[static_cast<size_t>(record)].size() + 1;
    if (record != NodeKey) {
        if (!m_entry || record != m_nextRecord)
            noteDamage(u"a record out of its order"_s, at);
        m_nextRecord = record + 1;
    }
    if (record == NodeText) {
        m_inText = true;
        return valueStart;
    }
    const qsizetype brace = nextBrace(valueStart);
    const QByteArray value = m_buffer.sliced(valueStart, brace - valueStart);
    switch (record) {
    case NodeKey:
        completeEntry();
        beginEntry(value);
        break;
    case NodeLabel:
        m_label = AnsiCodec::toText(value);
        break;
    case NodeTagged:
        m_tagged = takeFlag(value, at);
        break;
    default:
        m_visible = takeFlag(value, at);
        break;
    }
    expectRecordEnd(brace, record == NodeLabel);
    return qMin(brace + 1, m_buffer.size());
}

qsizetype EntryReader::skipUnknownRecord(qsizetype at)
{
    const qsizetype brace = nextBrace(at);
    if (m_entry)
        noteDamage(u"a record of no known kind among the entries"_s, at);
    expectRecordEnd(brace, true);
    return qMin(brace + 1, m_buffer.size());
}

void EntryReader::takeText(qsizetype start, qsizetype end)
{
    m_inText = false;
    const qsizetype textEnd = end - recordEnd.size();
    if (textEnd < start || QByteArrayView(m_buffer).sliced(textEnd, recordEnd.size()) != recordEnd)
        noteDamage(u"a text without its end"_s, end);
    m_text = textEnd > start ? m_buffer.sliced(start, textEnd - start) : QByteArray();
}

void EntryReader::beginEntry(const QByteArray &path)
{
    Entry *relative = nullptr;
    Relationship relationship = Relationship::tvwFirst;
    const qsizetype stop = path.lastIndexOf('.');
    if (path.endsWith(".1")) {
        relative = m_document.tree.itemByPath(QByteArrayView(path).chopped(2));
        relationship = Relationship::tvwChild;
    } else if (stop >= 0) {
        const qint16 place = Numbers::toInt16(Numbers::toNumber(QString::fromLatin1(path.sliced(stop + 1))));
        relative = m_document.tree.itemByPath(path.first(stop + 1) + QByteArray::number(place - 1));
        relationship = Relationship::tvwNext;
    }
    m_entry = modNodes::NodeInsert(m_document, relationship, relative);
    m_nextRecord = NodeLabel;
    // Entries are written in outline order, so each is its parent's last so far, and the first one the only root.
    const bool inPlace = !m_entry->next() && (relationship != Relationship::tvwChild || m_entry->row() == 0) &&
                         (relative || (m_entry->isRoot() && path == "0"));
    if (!inPlace)
        noteDamage(u"an entry whose place %1 is taken"_s.arg(QString::fromLatin1(path.left(80))), 0);
}

void EntryReader::completeEntry()
{
    Entry *entry = std::exchange(m_entry, nullptr);
    if (entry) {
        if (m_nextRecord != EntryRecordCount)
            noteDamage(u"an entry without all of its records"_s, m_buffer.size());
        m_document.tree.setLabel(entry, m_label);
        m_document.tree.setStoredText(entry, m_text);
        m_document.tree.select(entry);
        const size_t index = static_cast<size_t>(m_document.tree.collection().indexOf(entry));
        m_result.tagged.resize(index + 1);
        m_result.visible.resize(index + 1);
        m_result.tagged[index] = m_tagged;
        m_result.visible[index] = m_visible;
    }
    m_label.clear();
    m_text.clear();
    m_tagged = false;
    m_visible = false;
}

bool EntryReader::takeFlag(const QByteArray &value, qsizetype at)
{
    if (value != "True" && value != "False")
        noteDamage(u"a flag that is neither True nor False"_s, at);
    return value == "True";
}

// Behind a record's brace comes the line end, and then the next record. A label or font name that holds a brace of its
// own is cut there by the format's rule: that is remarked on, not taken for damage.
void EntryReader::expectRecordEnd(qsizetype brace, bool maybeCut)
{
    const QByteArrayView rest = QByteArrayView(m_buffer).sliced(qMin(brace, m_buffer.size()));
    if (rest.startsWith(recordEnd) &&
        (rest.size() == recordEnd.size() || rest.sliced(recordEnd.size()).startsWith(modDoc::recordOpener)))
        return;
    const qsizetype next = nextOpener(brace);
    if (maybeCut && next - brace > recordEnd.size() &&
        QByteArrayView(m_buffer).sliced(next - recordEnd.size(), recordEnd.size()) == recordEnd)
        m_result.remark = u"a label was cut at its closing brace"_s;
    else
        noteDamage(u"bytes between two records"_s, brace);
}

// A brace is looked for again only behind the last one found, so that records without one cost one pass in all.
qsizetype EntryReader::nextBrace(qsizetype from)
{
    if (m_nextBrace < from) {
        m_nextBrace = m_buffer.indexOf('}', from);
        if (m_nextBrace < 0)
            m_nextBrace = m_buffer.size();
    }
    return m_nextBrace;
}

qsizetype EntryReader::nextOpener(qsizetype from) const
{
    const QByteArrayView bytes(m_buffer);
    for (qsizetype at = bytes.indexOf('{', from); at >= 0; at = bytes.indexOf('{', at + 1)) {
        if (bytes.sliced(at).startsWith(modDoc::recordOpener))
            return at;
    }
    return bytes.size();
}

void EntryReader::noteDamage(const QString &what, qsizetype at)
{
    if (m_damageCount++ == 0)
        m_firstDamage = u"%1 (at byte %2)"_s.arg(what).arg(at);
}

void EntryReader::tellDamage()
{
    if (m_damageCount == 1)
        m_result.damage = m_firstDamage;
    else if (m_damageCount > 1)
        m_result.damage = u"%1 and %2 faults more"_s.arg(m_firstDamage).arg(m_damageCount - 1);
}

} // namespace

namespace modDocV1
{

void DocLoadVersion(Document &document, const QByteArray &buffer, LoadResult &result)
{
    procedure("modDocV1 DocLoadVersion", [&] {
        result.selectedKey = QString::fromLatin1(modDoc::DocLoadTag(buffer, "selecteditemkey"));
        loadFonts(document, buffer);
        EntryReader(document, buffer, result).read();
    });
}

} // namespace modDocV1
