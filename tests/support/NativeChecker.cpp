// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/NativeChecker.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <zlib.h>

using namespace Qt::StringLiterals;

namespace
{

struct Record {
    QByteArray tag;
    QByteArray value;
};

struct Fault {
    QString words;
};

[[noreturn]] void fail(const QString &words)
{
    throw Fault{words};
}

void require(bool kept, const QString &words)
{
    if (!kept)
        fail(words);
}

QString shown(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.left(60).toPercentEncoding(" {}\\,.:"));
}

// Cuts the file at every opener. A record is the opener, a tag in small letters, one blank, the value, a brace and CR
// LF, and nothing stands between two records.
QList<Record> splitIntoRecords(const QByteArray &bytes)
{
    const QByteArray opener = QByteArray::fromHex("7b5c716c665f");
    require(bytes.startsWith(opener), u"the file does not begin with a record"_s);
    QList<Record> records;
    qsizetype at = 0;
    while (at < bytes.size()) {
        qsizetype end = bytes.indexOf(opener, at + opener.size());
        if (end < 0)
            end = bytes.size();
        const QByteArray whole = bytes.mid(at, end - at);
        require(whole.endsWith(QByteArray::fromHex("7d0d0a")),
                u"record at byte %1 does not end with a brace and CR LF: %2"_s.arg(at).arg(shown(whole)));
        const QByteArray inner = whole.mid(opener.size(), whole.size() - opener.size() - 3);
        const qsizetype blank = inner.indexOf(' ');
        require(blank > 0, u"record at byte %1 has no blank behind its tag"_s.arg(at));
        const QByteArray tag = inner.left(blank);
        for (const char letter : tag)
            require(letter >= 'a' && letter <= 'z', u"tag %1 is not in small letters"_s.arg(shown(tag)));
        records.append({tag, inner.mid(blank + 1)});
        at = end;
    }
    return records;
}

const QList<QByteArray> &headerTags()
{
    static const QList<QByteArray> tags = {
        "formatversion",     "selecteditemkey",          "outlinefontname",       "outlinefontsize",  "outlinefontbold",
        "outlinefontitalic", "outlinefontstrikethrough", "outlinefontunderline",  "textfontname",     "textfontsize",
        "textfontbold",      "textfontitalic",           "textfontstrikethrough", "textfontunderline"};
    return tags;
}

const QList<QByteArray> &entryTags()
{
    static const QList<QByteArray> tags = {"nodekey", "nodelabel", "nodetagged", "nodevisible", "nodetext"};
    return tags;
}

bool flagValue(const Record &record)
{
    require(record.value == "True" || record.value == "False",
            u"%1 is %2, neither True nor False"_s.arg(shown(record.tag), shown(record.value)));
    return record.value == "True";
}

void checkHeaderValue(const Record &record)
{
    const QString value = QString::fromLatin1(record.value);
    if (record.tag == "formatversion")
        require(value == u"1"_s, u"the format version is %1"_s.arg(value));
    else if (record.tag == "selecteditemkey")
        require(record.value.startsWith("KEY0"), u"the selected key is %1"_s.arg(value));
    else if (record.tag.endsWith("fontsize"))
        require(QRegularExpression(u"^-?(0|[1-9][0-9]*)(\\.[0-9]{0,3}[1-9])?$"_s).match(value).hasMatch(),
                u"the font size is %1"_s.arg(value));
    else if (!record.tag.endsWith("fontname"))
        flagValue(record);
    require(!record.value.contains('}') && !record.value.contains('\r') && !record.value.contains('\n'),
            u"%1 holds a brace or a line end"_s.arg(shown(record.tag)));
}

QByteArray inflated(const QByteArray &storedText, const QByteArray &path)
{
    if (storedText.isEmpty() || storedText.startsWith('{'))
        return storedText;
    const qsizetype comma = storedText.indexOf(',');
    bool number = false;
    const qlonglong length = storedText.left(comma).toLongLong(&number);
    // An imported text is plain characters; it must not look like a compressed one.
    if (comma <= 0 || !number || length <= 0)
        return storedText;
    require(storedText.left(comma) == QByteArray::number(length),
            u"the length of the text of %1 is not plain decimal"_s.arg(shown(path)));
    z_stream stream = {};
    require(inflateInit(&stream) == Z_OK, u"zlib does not start"_s);
    QByteArray text(static_cast<qsizetype>(qMin(length, qlonglong(1) << 28)) + 1, Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(storedText.constData() + comma + 1));
    stream.avail_in = static_cast<uInt>(storedText.size() - comma - 1);
    stream.next_out = reinterpret_cast<Bytef *>(text.data());
    stream.avail_out = static_cast<uInt>(text.size());
    const int result = inflate(&stream, Z_FINISH);
    const qlonglong made = static_cast<qlonglong>(stream.total_out);
    const uInt unread = stream.avail_in;
    inflateEnd(&stream);
    require(result == Z_STREAM_END && unread == 0, u"the text of %1 is no zlib stream"_s.arg(shown(path)));
    require(made == length,
            u"the text of %1 is stated to be %2 bytes long and is %3"_s.arg(shown(path)).arg(length).arg(made));
    text.truncate(static_cast<qsizetype>(made));
    return text;
}

NativeEntry entryFrom(const QList<Record> &records, qsizetype first)
{
    for (qsizetype i = 0; i < entryTags().size(); ++i) {
        require(first + i < records.size(), u"the last entry lacks %1"_s.arg(shown(entryTags()[i])));
        require(records[first + i].tag == entryTags()[i],
                u"%1 stands where %2 should"_s.arg(shown(records[first + i].tag), shown(entryTags()[i])));
    }
    NativeEntry entry;
    entry.path = records[first].value;
    entry.label = records[first + 1].value;
    entry.tagged = flagValue(records[first + 2]);
    entry.visible = flagValue(records[first + 3]);
    entry.storedText = records[first + 4].value;
    entry.text = inflated(entry.storedText, entry.path);
    return entry;
}

// The record that may stand behind a label: percent-encoded, and only where the label's own record cannot carry it.
QByteArray exactLabelFrom(const QByteArray &value)
{
    for (const char byte : value)
        require(byte >= ' ' && byte < 0x7F && byte != '{' && byte != '}',
                u"the exact label %1 is not percent-encoded"_s.arg(shown(value)));
    const QByteArray exact = QByteArray::fromPercentEncoding(value);
    require(exact.contains('}') || exact.contains('\r') || exact.contains('\n'),
            u"%1 needs no exact label"_s.arg(shown(exact)));
    return exact;
}

QByteArray parentOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('.'));
}

// Each entry must be the one that comes next in pre-order: the first child of the entry before it, or the next sibling
// of that entry or of one of its ancestors.
void checkPathOrder(const QList<NativeEntry> &entries)
{
    require(!entries.isEmpty(), u"the file holds no entry"_s);
    require(entries[0].path == "0", u"the first entry is %1, not the root"_s.arg(shown(entries[0].path)));
    QByteArray before = entries[0].path;
    for (qsizetype i = 1; i < entries.size(); ++i) {
        const QByteArray &path = entries[i].path;
        bool follows = path == before + ".1";
        for (QByteArray up = before; !follows && up.contains('.'); up = parentOf(up)) {
            const int place = up.mid(up.lastIndexOf('.') + 1).toInt();
            follows = path == parentOf(up) + '.' + QByteArray::number(place + 1);
        }
        require(follows, u"%1 does not follow %2"_s.arg(shown(path), shown(before)));
        before = path;
    }
}

// The root shows always; the children of one entry show all or none, and only when the entry itself does.
void checkVisibleFlags(const QList<NativeEntry> &entries)
{
    QMap<QByteArray, bool> visible;
    QMap<QByteArray, bool> childrenVisible;
    for (const NativeEntry &entry : entries) {
        visible.insert(entry.path, entry.visible);
        if (!entry.path.contains('.')) {
            require(entry.visible, u"the root is not visible"_s);
            continue;
        }
        const QByteArray parent = parentOf(entry.path);
        require(!entry.visible || visible.value(parent),
                u"%1 is visible below an entry that is not"_s.arg(shown(entry.path)));
        if (!childrenVisible.contains(parent))
            childrenVisible.insert(parent, entry.visible);
        require(childrenVisible.value(parent) == entry.visible,
                u"%1 is not visible as its siblings are"_s.arg(shown(entry.path)));
    }
}

void check(const QByteArray &bytes, NativeFile &file)
{
    QList<Record> records = splitIntoRecords(bytes);
    qsizetype at = 0;
    for (const QByteArray &tag : headerTags()) {
        require(at < records.size() && records[at].tag == tag,
                u"the record %1 is missing or misplaced"_s.arg(shown(tag)));
        checkHeaderValue(records[at]);
        file.header.insert(tag, records[at].value);
        ++at;
    }
    for (; at < records.size(); at += entryTags().size()) {
        QByteArray exactLabel;
        if (const qsizetype behind = at + 2; behind < records.size() && records[behind].tag == "nodelabelexact") {
            exactLabel = exactLabelFrom(records[behind].value);
            records.removeAt(behind);
        }
        file.entries.append(entryFrom(records, at));
        file.entries.last().exactLabel = exactLabel;
    }
    checkPathOrder(file.entries);
    checkVisibleFlags(file.entries);
    const QByteArray selected = file.header.value("selecteditemkey").mid(3);
    require(file.entry(selected).path == selected, u"the selected key %1 is no entry's"_s.arg(shown(selected)));
}

} // namespace

NativeEntry NativeFile::entry(const QByteArray &path) const
{
    for (const NativeEntry &each : entries) {
        if (each.path == path)
            return each;
    }
    return NativeEntry();
}

QList<QByteArray> NativeFile::paths() const
{
    QList<QByteArray> all;
    for (const NativeEntry &each : entries)
        all.append(each.path);
    return all;
}

NativeFile checkNative(const QByteArray &bytes)
{
    NativeFile file;
    try {
        check(bytes, file);
    } catch (const Fault &fault) {
        file.fault = fault.words;
    }
    return file;
}

NativeFile checkNativeFile(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        NativeFile faulty;
        faulty.fault = u"%1 cannot be read: %2"_s.arg(fileName, file.errorString());
        return faulty;
    }
    return checkNative(file.readAll());
}
