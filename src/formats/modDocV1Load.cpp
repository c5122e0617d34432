// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/modDocV1.h"

#include "formats/EntryReader.h"
#include "formats/RecordNames.h"
#include "formats/RecordTags.h"

#include "util/AnsiCodec.h"
#include "util/Numbers.h"
#include "util/Procedure.h"

namespace
{

// Where another record opens within the value, its own end is missing.
QString headerText(const QByteArray &buffer, const QByteArray &tagName)
{
    const QByteArray value = modDoc::DocLoadTag(buffer, tagName);
    const qsizetype opener = value.indexOf(recordNames::opener);
    return AnsiCodec::toText(opener < 0 ? value : value.first(opener));
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

void readInto(ReadOutline &result, const QByteArray &buffer)
{
    Outline &outline = *result.outline;
    loadFont(buffer, "outline", outline.outlineFont);
    loadFont(buffer, "text", outline.textFont);
    EntryReader(buffer, result).read();
    // In a damaged file the place of the selected entry may be another one's.
    const QString sSelected = QString::fromLatin1(modDoc::DocLoadTag(buffer, "selecteditemkey"));
    if (result.damage.isEmpty() && !sSelected.isEmpty())
        outline.tree.select(outline.tree.itemByKey(sSelected));
}

} // namespace

namespace modDocV1
{

ReadOutline DocLoadVersion(const QByteArray &buffer)
{
    return procedure("modDocV1 DocLoadVersion", [&] { return read(buffer); });
}

ReadOutline read(const QByteArray &buffer)
{
    ReadOutline result;
    EntryTree &tree = result.outline->tree;
    const BulkChange bulk(tree);
    try {
        readInto(result, buffer);
    } catch (...) {
        result.failure = std::current_exception();
    }
    if (!tree.selected())
        tree.select(tree.root());
    return result;
}

std::optional<qint16> statedVersion(const QByteArray &buffer)
{
    const QString sStored = QString::fromLatin1(modDoc::DocLoadTag(buffer, "formatversion"));
    if (!Numbers::isNumeric(sStored))
        return std::nullopt;
    return Numbers::toInt16(Numbers::toNumber(sStored));
}

} // namespace modDocV1
