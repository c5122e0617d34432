// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/OutlineDifference.h"

#include "formats/LabelRecords.h"
#include "formats/RecordNames.h"
#include "formats/RecordText.h"

#include "model/Outline.h"

#include "util/AnsiCodec.h"

using namespace Qt::StringLiterals;

namespace
{

// A font's name as a record holds it, which ends at a brace or where another record opens.
QByteArray carriedName(const QString &name)
{
    const QByteArray bytes = AnsiCodec::fromText(name);
    qsizetype end = bytes.size();
    for (const qsizetype at : {bytes.indexOf('}'), bytes.indexOf(recordNames::opener)})
        end = at < 0 ? end : qMin(end, at);
    return bytes.first(end);
}

bool isSameFont(const clsFont &written, const clsFont &read)
{
    if (written == read)
        return true;
    clsFont renamed = read;
    renamed.setName(written.Name());
    return renamed == written && carriedName(written.Name()) == carriedName(read.Name());
}

bool isSameLabel(const QString &written, const QString &read)
{
    if (written == read)
        return true;
    const LabelRecords one = labelRecords(written);
    const LabelRecords other = labelRecords(read);
    return one.value == other.value && one.exact == other.exact;
}

QLatin1StringView entryDifference(const Outline &written, const Entry &writtenEntry, const Outline &read,
                                  const Entry &readEntry)
{
    if (writtenEntry.childCount() != readEntry.childCount())
        return "another number of entries below"_L1;
    if (!isSameLabel(writtenEntry.label(), readEntry.label()))
        return "another label of"_L1;
    if (writtenEntry.tagged() != readEntry.tagged())
        return "another tag of"_L1;
    const QByteArray text = written.tree.storedText(&writtenEntry);
    const QByteArray readText = read.tree.storedText(&readEntry);
    if (text != readText && recordText(text) != readText)
        return "another text of"_L1;
    return {};
}

} // namespace

QString outlineDifference(const Outline &written, const Outline &read)
{
    if (written.tree.entryCount() != read.tree.entryCount())
        return u"%1 entries in place of %2"_s.arg(read.tree.entryCount()).arg(written.tree.entryCount());
    if (!isSameFont(written.outlineFont, read.outlineFont) || !isSameFont(written.textFont, read.textFont))
        return u"other fonts"_s;
    const Entry *readEntry = read.tree.root();
    for (const Entry *entry = written.tree.root(); entry; entry = nextInOutline(entry, written.tree.root())) {
        // As long as the numbers of children are the same, both walks take the same way.
        const QLatin1StringView difference = entryDifference(written, *entry, read, *readEntry);
        if (!difference.isEmpty())
            return difference + u" entry "_s + written.tree.key(entry).sliced(3);
        readEntry = nextInOutline(readEntry, read.tree.root());
    }
    return QString();
}
