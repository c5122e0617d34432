// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/EntryReader.h"

#include "formats/Format.h"
#include "formats/LabelRecords.h"

#include "model/Outline.h"

#include "util/AnsiCodec.h"
#include "util/Numbers.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr QByteArrayView recordEnd = "}\r\n";

// Blanks and line ends, and what old systems end a file of text with.
bool isSpace(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n' || byte == '\x1A';
}

bool isAllSpace(QByteArrayView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), isSpace);
}

QByteArrayView withoutSpaceBehind(QByteArrayView bytes)
{
    while (!bytes.isEmpty() && isSpace(bytes.back()))
        bytes.chop(1);
    return bytes;
}

// The place of a name in a list of names, or -1.
template <typename Names>
int placeAmong(const Names &names, QByteArrayView name)
{
    const auto found = std::ranges::find(names, name);
    return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

// A record that describes an entry bears a name like those of the format's own.
bool isOfEntry(QByteArrayView record)
{
    return record.sliced(recordNames::opener.size()).startsWith("node");
}

Entry *insertEntry(EntryTree &tree, Relationship relationship, Entry *relative)
{
    // Beside the root there is no place: what claims one becomes its last child.
    Entry *root = tree.root();
    if (root && (!relative || relative == root))
        return tree.insert(Relationship::tvwChild, root);
    return tree.insert(relationship, relative);
}

// The number at the end of an entry's path. Nearly all are a few digits.
qint16 placeNumber(QByteArrayView digits)
{
    constexpr qsizetype fewDigits = 4;
    const auto isDigit = [](char byte) { return byte >= '0' && byte <= '9'; };
    if (digits.isEmpty() || digits.size() > fewDigits || !std::ranges::all_of(digits, isDigit))
        return Numbers::toInt16(Numbers::toNumber(QString::fromLatin1(digits)));
    int number = 0;
    for (const char digit : digits)
        number = number * 10 + (digit - '0');
    return static_cast<qint16>(number);
}

// An open ancestor was opened with all of its own, so there the climb may end.
void openAncestors(EntryTree &tree, const Entry *entry)
{
    for (Entry *ancestor = entry->parent(); ancestor && !ancestor->expanded(); ancestor = ancestor->parent())
        tree.setExpanded(ancestor, true);
}

} // namespace

EntryReader::EntryReader(const QByteArray &buffer, ReadOutline &result, Texts texts)
    : m_buffer(buffer)
    , m_texts(texts)
    , m_result(result)
    , m_outline(*result.outline)
{
}

void EntryReader::read()
{
    try {
        scan();
    } catch (...) {
        // The entry that was being read when the reading broke off is kept as far as it came.
        completeEntry();
        throw;
    }
    setTrailerApart();
    completeEntry();
    if (!m_outline.tree.root())
        m_damage.note(u"it holds no entry", 0);
    tell();
}

void EntryReader::scan()
{
    qsizetype position = startOfRecords();
    while (true) {
        const qsizetype found = nextOpener(position);
        if (m_inText)
            takeText(position, found);
        if (found >= m_buffer.size())
            return;
        position = readRecord(found);
    }
}

qsizetype EntryReader::startOfRecords()
{
    constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";
    const qsizetype first = nextOpener(0);
    QByteArrayView before = QByteArrayView(m_buffer).first(first);
    if (before.startsWith(byteOrderMark))
        before = before.sliced(byteOrderMark.size());
    if (!isAllSpace(before))
        m_damage.note(u"bytes before the first record", 0);
    else if (first > 0)
        m_remarks.note(u"the file begins with a byte order mark or white space");
    return first;
}

qsizetype EntryReader::readRecord(qsizetype at)
{
    const QByteArrayView name = nameAt(at);
    const int entryRecord = placeAmong(recordNames::entry, name);
    if (entryRecord == NodeKey || (entryRecord >= 0 && m_entry))
        return readEntryRecord(static_cast<Record>(entryRecord), at);
    if (name == recordNames::exactLabel && m_entry)
        return readExactLabel(at);
    // Of several header records of one name the first one counts.
    const int headerRecord = placeAmong(recordNames::header, name);
    if (headerRecord >= 0 && !m_hasHeader[static_cast<size_t>(headerRecord)])
        return readHeaderRecord(headerRecord, at);
    // Written before the one that counts, it would be the first itself.
    return keepForeignRecord(at, m_entry ? m_behind : std::max(m_behind, headerRecord + 1));
}

qsizetype EntryReader::readHeaderRecord(int record, qsizetype at)
{
    m_hasHeader[static_cast<size_t>(record)] = true;
    if (m_entry)
        m_remarks.note(u"a record of the header among the entries", at);
    else
        m_behind = record + 1;
    bool cut = false;
    const qsizetype brace = nextBrace(at);
    if (const qsizetype next = nextOpener(at + 1); next < brace) {
        m_damage.note(u"a record without its end", at);
        return next;
    }
    const qsizetype end = endRecord(brace, cut);
    if (cut)
        m_remarks.note(u"a name was cut at its closing brace", at);
    return end;
}

qsizetype EntryReader::readEntryRecord(Record record, qsizetype at)
{
    const qsizetype valueStart =
        at + recordNames::opener.size() + recordNames::entry[static_cast<size_t>(record)].size() + 1;
    if (record != NodeKey) {
        noteOrder(record, at);
        m_behind = record + 1;
    }
    if (record == NodeText) {
        m_inText = true;
        return valueStart;
    }
    const qsizetype brace = nextBrace(valueStart);
    const QByteArrayView value = QByteArrayView(m_buffer).sliced(valueStart, brace - valueStart);
    bool cut = false;
    switch (record) {
    case NodeKey:
        completeEntry();
        beginEntry(value, at);
        break;
    case NodeLabel:
        m_labelValue = value;
        m_label = AnsiCodec::toText(value);
        break;
    case NodeTagged:
        m_tagged = takeFlag(value, at);
        break;
    default:
        m_visible = takeFlag(value, at);
        break;
    }
    const qsizetype end = endRecord(brace, cut);
    if (record == NodeLabel)
        m_labelCut = cut;
    else if (cut)
        m_damage.note(u"bytes between two records", brace);
    return end;
}

qsizetype EntryReader::readExactLabel(qsizetype at)
{
    const qsizetype valueStart = at + recordNames::opener.size() + recordNames::exactLabel.size() + 1;
    const qsizetype brace = nextBrace(valueStart);
    const std::optional<QString> label =
        exactLabel(m_buffer.sliced(valueStart, brace - valueStart), m_labelValue.toByteArray());
    bool cut = false;
    const qsizetype end = endRecord(brace, cut);
    if (!label || cut || !m_has[NodeLabel])
        m_damage.note(u"an exact label that is not its label's", at);
    if (label && m_has[NodeLabel]) {
        m_label = *label;
        m_labelCut = false;
    }
    return end;
}

// An unknown record is passed over like any reader of the format does, and kept to be written back.
qsizetype EntryReader::keepForeignRecord(qsizetype at, int behindRecords)
{
    const qsizetype brace = nextBrace(at);
    if (const qsizetype next = nextOpener(at + 1); next < brace) {
        m_damage.note(u"a record without its end", at);
        return next;
    }
    bool holdsBraces = false;
    const qsizetype behind = endRecord(brace, holdsBraces);
    if (brace == m_buffer.size())
        return behind;
    const qsizetype end = nextOpener(behind);
    QByteArrayView record = QByteArrayView(m_buffer).sliced(at, end - at);
    QByteArrayView closing;
    if (!withoutSpaceBehind(record).endsWith('}')) {
        // Damage, told already: what does not belong to it is not to become a part of the next file.
        record = record.first(behind - at);
        closing = recordEnd.sliced(1);
    }
    m_remarks.note(u"an unknown record", at);
    const bool joins = !m_foreign.empty() && m_foreign.back().behind == behindRecords &&
                       isOfEntry(m_foreign.back().bytes) == isOfEntry(record);
    if (!joins)
        m_foreign.push_back({behindRecords, QByteArray()});
    m_foreign.back().bytes.append(record).append(closing);
    return behind;
}

void EntryReader::takeText(qsizetype start, qsizetype end)
{
    m_inText = false;
    const QByteArrayView bytes = QByteArrayView(m_buffer).sliced(start, end - start);
    QByteArrayView text = bytes;
    if (bytes.endsWith(recordEnd)) {
        text.chop(recordEnd.size());
    } else {
        const QByteArrayView record = withoutSpaceBehind(bytes);
        const bool ended = record.endsWith('}') && bytes.sliced(record.size()).startsWith("\r\n");
        if (ended)
            m_remarks.note(u"white space between two records", start + record.size());
        else
            m_damage.note(u"a text without its end", end);
        if (record.endsWith('}'))
            text = record.chopped(1);
    }
    m_text = m_texts == Texts::Copied ? text.toByteArray() : QByteArray::fromRawData(text.data(), text.size());
}

void EntryReader::beginEntry(QByteArrayView path, qsizetype at)
{
    Entry *relative = nullptr;
    Relationship relationship = Relationship::tvwFirst;
    const qsizetype stop = path.lastIndexOf('.');
    if (path.endsWith(".1")) {
        relative = m_outline.tree.itemByPath(path.chopped(2));
        relationship = Relationship::tvwChild;
    } else if (stop >= 0) {
        const qint16 place = placeNumber(path.sliced(stop + 1));
        relative = m_outline.tree.itemByPath(path.first(stop + 1).toByteArray() + QByteArray::number(place - 1));
        relationship = Relationship::tvwNext;
    }
    m_entry = insertEntry(m_outline.tree, relationship, relative);
    m_has[NodeKey] = true;
    m_behind = NodeKey + 1;
    // Entries are written in outline order, so each is its parent's last so far, and the first one the only root.
    const bool inPlace = !m_entry->next() && (relationship != Relationship::tvwChild || m_entry->row() == 0) &&
                         (relative || (m_entry->isRoot() && path == "0"));
    if (!inPlace)
        m_damage.note(u"an entry whose place %1 is taken"_s.arg(
                          QString::fromLatin1(path.first(std::min<qsizetype>(path.size(), 80)))),
                      at);
}

void EntryReader::completeEntry()
{
    if (Entry *entry = std::exchange(m_entry, nullptr)) {
        if (!m_has[NodeLabel] || !m_has[NodeText])
            m_damage.note(u"an entry without a label or a text", m_buffer.size());
        else if (std::ranges::find(m_has, false) != m_has.end())
            m_remarks.note(u"an entry without all of its flags");
        m_cutLabels += m_labelCut ? 1 : 0;
        m_outline.tree.setLabel(entry, m_label);
        m_outline.tree.setStoredText(entry, m_text);
        m_outline.tree.setForeignRecords(entry, std::move(m_foreign));
        m_outline.tree.setTagged(entry, m_tagged);
        if (m_visible)
            openAncestors(m_outline.tree, entry);
    } else if (!m_foreign.empty()) {
        m_outline.foreignHeader = std::move(m_foreign);
    }
    m_foreign.clear();
    m_has.fill(false);
    m_labelValue = {};
    m_label.clear();
    m_labelCut = false;
    m_text.clear();
    m_tagged = false;
    m_visible = false;
}

void EntryReader::noteOrder(Record record, qsizetype at)
{
    if (m_has[record])
        m_damage.note(u"a record that its entry has already", at);
    else if (std::any_of(m_has.begin() + record, m_has.end(), [](bool has) { return has; }))
        m_remarks.note(u"a record out of its order", at);
    m_has[record] = true;
}

bool EntryReader::takeFlag(QByteArrayView value, qsizetype at)
{
    const bool isTrue = value == "True";
    if (isTrue || value == "False")
        return isTrue;
    const bool isWord =
        value.compare("True", Qt::CaseInsensitive) == 0 || value.compare("False", Qt::CaseInsensitive) == 0;
    if (!isWord)
        m_damage.note(u"a flag that is neither True nor False", at);
    else
        m_remarks.note(u"a flag that is not written as True or False", at);
    return false;
}

// The value of a label, of a font's name and of an unknown record may hold a brace of its own: it is cut there.
qsizetype EntryReader::endRecord(qsizetype brace, bool &cut)
{
    cut = false;
    if (brace == m_buffer.size()) {
        m_damage.note(u"a record without its end", brace);
        return brace;
    }
    const qsizetype start = brace + 1;
    const QByteArrayView between = QByteArrayView(m_buffer).sliced(start, nextOpener(start) - start);
    if (between == recordEnd.sliced(1))
        return start;
    if (isAllSpace(between))
        m_remarks.note(u"white space between two records", start);
    else if (withoutSpaceBehind(between).endsWith('}'))
        cut = true;
    else
        m_damage.note(u"bytes between two records", start);
    return start;
}

// What follows the last entry belongs to the document, unless it bears a name like the records of an entry.
void EntryReader::setTrailerApart()
{
    if (!m_entry)
        return;
    const auto first = std::ranges::find_if(
        m_foreign, [](const ForeignRecords &each) { return each.behind == RecordCount && !isOfEntry(each.bytes); });
    for (auto each = first; each != m_foreign.end(); ++each)
        m_outline.foreignTrailer += each->bytes;
    m_foreign.erase(first, m_foreign.end());
}

void EntryReader::tell()
{
    if (m_cutLabels > 0)
        m_remarks.note(u"labels cut at a closing brace: %1"_s.arg(m_cutLabels));
    m_result.damage = m_damage.summary();
    m_result.remark = m_remarks.summary();
    m_result.cutLabels = m_cutLabels;
}

QByteArrayView EntryReader::nameAt(qsizetype at) const
{
    constexpr qsizetype longestName = 40;
    const QByteArrayView tag = QByteArrayView(m_buffer).sliced(at + recordNames::opener.size());
    const QByteArrayView front = tag.first(std::min(tag.size(), longestName));
    const qsizetype blank = front.indexOf(' ');
    return blank < 0 ? QByteArrayView() : front.first(blank);
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
        if (bytes.sliced(at).startsWith(recordNames::opener))
            return at;
    }
    return bytes.size();
}
