// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/modDocV1.h"

#include "formats/EntryReader.h"

#include "document/Document.h"
#include "document/OutlinePane.h"
#include "document/TextPane.h"
#include "document/modDoc.h"

#include "util/AnsiCodec.h"
#include "util/Numbers.h"
#include "util/Procedure.h"

namespace
{

// Where another record opens within the value, its own end is missing.
QString headerText(const QByteArray &buffer, const QByteArray &tagName)
{
    const QByteArray value = modDoc::DocLoadTag(buffer, tagName);
    const qsizetype opener = value.indexOf(modDoc::recordOpener);
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

} // namespace

namespace modDocV1
{

void DocLoadVersion(Document &document, const QByteArray &buffer, LoadResult &result)
{
    procedure("modDocV1 DocLoadVersion", [&] { read(document, buffer, result); });
}

void read(Document &document, const QByteArray &buffer, LoadResult &result)
{
    result.selectedKey = QString::fromLatin1(modDoc::DocLoadTag(buffer, "selecteditemkey"));
    loadFonts(document, buffer);
    EntryReader(document, buffer, result).read();
}

} // namespace modDocV1
