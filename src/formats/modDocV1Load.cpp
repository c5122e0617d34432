// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/modDocV1.h"

#include "formats/EntryReader.h"
#include "formats/RecordNames.h"
#include "formats/RecordTags.h"

#include "util/AnsiCodec.h"
#include "util/Numbers.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace
{

// Where another record opens within the value, its own end is missing.
QString headerText(const QByteArray &buffer, const QByteArray &tagName)
{
    const QByteArray value = modDoc::DocLoadTag(buffer, tagName);
    const qsizetype opener = value.indexOf(recordNames::opener);
    return AnsiCodec::toText(opener < 0 ? value : value.first(opener));
}

// What a record of the header says, made by a function of its words. The error of one that cannot be read names it.
template <typename Value>
Value headerValue(const QByteArray &buffer, const QByteArray &tagName, Value (*make)(QStringView))
{
    const QString text = headerText(buffer, tagName);
    try {
        return make(text);
    } catch (const RunTimeError &error) {
        const QString name = QString::fromLatin1(tagName);
        throw RunTimeError(error.number(), text.isEmpty()
                                               ? u"the record \"%1\" of its header is missing"_s.arg(name)
                                               : u"%1 in its header's record \"%2\""_s.arg(error.description(), name));
    }
}

void loadFont(const QByteArray &buffer, const QByteArray &prefix, clsFont &font)
{
    font.setName(headerText(buffer, prefix + "fontname"));
    font.setSize(headerValue(buffer, prefix + "fontsize", Numbers::toFixedPoint));
    font.setBold(headerValue(buffer, prefix + "fontbold", Numbers::toBoolean));
    font.setItalic(headerValue(buffer, prefix + "fontitalic", Numbers::toBoolean));
    font.setStrikeThrough(headerValue(buffer, prefix + "fontstrikethrough", Numbers::toBoolean));
    font.setUnderline(headerValue(buffer, prefix + "fontunderline", Numbers::toBoolean));
}

// What keeps the fonts from being read, if anything does.
std::exception_ptr loadFonts(const QByteArray &buffer, Outline &outline)
{
    try {
        loadFont(buffer, "outline", outline.outlineFont);
        loadFont(buffer, "text", outline.textFont);
    } catch (const RunTimeError &) {
        return std::current_exception();
    }
    return nullptr;
}

// Fonts that cannot be read make the reading fail, and not the entries go unread.
void readEntries(ReadOutline &result, const QByteArray &buffer, EntryReader::Texts texts)
{
    Outline &outline = *result.outline;
    const std::exception_ptr withoutFonts = loadFonts(buffer, outline);
    try {
        EntryReader(buffer, result, texts).read();
    } catch (...) {
        if (!withoutFonts)
            throw;
    }
    if (withoutFonts)
        std::rethrow_exception(withoutFonts);
    // In a damaged file the place of the selected entry may be another one's.
    const QString sSelected = QString::fromLatin1(modDoc::DocLoadTag(buffer, "selecteditemkey"));
    if (result.damage.isEmpty() && !sSelected.isEmpty())
        outline.tree.select(outline.tree.itemByKey(sSelected));
}

ReadOutline readOutline(const QByteArray &buffer, EntryReader::Texts texts)
{
    ReadOutline result;
    EntryTree &tree = result.outline->tree;
    const BulkChange bulk(tree);
    try {
        readEntries(result, buffer, texts);
    } catch (...) {
        result.failure = std::current_exception();
    }
    if (!tree.selected())
        tree.select(tree.root());
    return result;
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
    return readOutline(buffer, EntryReader::Texts::Copied);
}

ReadOutline readInPlace(const QByteArray &buffer)
{
    return readOutline(buffer, EntryReader::Texts::InPlace);
}

std::optional<qint16> statedVersion(const QByteArray &buffer)
{
    const QString sStored = QString::fromLatin1(modDoc::DocLoadTag(buffer, "formatversion"));
    if (!Numbers::isNumeric(sStored))
        return std::nullopt;
    return Numbers::toInt16(Numbers::toNumber(sStored));
}

} // namespace modDocV1
