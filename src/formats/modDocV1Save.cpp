// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/modDocV1.h"

#include "formats/OutlineWalk.h"
#include "formats/RecordText.h"

#include "model/Document.h"
#include "model/modDoc.h"

#include "util/AnsiCodec.h"
#include "util/ByteSink.h"
#include "util/Numbers.h"
#include "util/Procedure.h"

namespace
{

QByteArrayView booleanText(bool value)
{
    return value ? QByteArrayView("True") : QByteArrayView("False");
}

void saveFont(ByteSink &sink, const QByteArray &prefix, const clsFont &font)
{
    using modDocV1::DocSaveNodeTag;
    DocSaveNodeTag(sink, prefix + "fontname", AnsiCodec::fromText(font.Name()));
    DocSaveNodeTag(sink, prefix + "fontsize", Numbers::fromFixedPoint(font.Size()).toLatin1());
    DocSaveNodeTag(sink, prefix + "fontbold", booleanText(font.Bold()));
    DocSaveNodeTag(sink, prefix + "fontitalic", booleanText(font.Italic()));
    DocSaveNodeTag(sink, prefix + "fontstrikethrough", booleanText(font.StrikeThrough()));
    DocSaveNodeTag(sink, prefix + "fontunderline", booleanText(font.Underline()));
}

} // namespace

namespace modDocV1
{

void DocSaveVersion(const Document &document, ByteSink &sink)
{
    procedure("modDocV1 DocSaveVersion", [&] {
        const Entry *root = document.tree.root();
        if (!root)
            return;
        const Entry *selected = document.tree.selected() ? document.tree.selected() : root;
        DocSaveNodeTag(sink, "formatversion", "1");
        DocSaveNodeTag(sink, "selecteditemkey", document.tree.key(selected).toLatin1());
        saveFont(sink, "outline", document.m_fntOutlineFont);
        saveFont(sink, "text", document.m_fntTextFont);
        DocSaveNodeAll(document, root, "0", sink);
    });
}

void DocSaveNodeAll(const Document &document, const Entry *top, const QByteArray &path, ByteSink &sink)
{
    procedure("modDocV1 DocSaveNodeAll", [&] {
        for (OutlineWalk walk(top, path); walk.entry(); walk.next()) {
            DocSaveNodeTag(sink, "nodekey", walk.path());
            DocSaveNodeTag(sink, "nodelabel", AnsiCodec::fromText(walk.entry()->label()));
            DocSaveNodeTag(sink, "nodetagged", booleanText(walk.entry()->tagged()));
            DocSaveNodeTag(sink, "nodevisible", booleanText(walk.visible()));
            DocSaveNodeTag(sink, "nodetext", recordText(document.tree.storedText(walk.entry())));
        }
    });
}

void DocSaveNodeTag(ByteSink &sink, QByteArrayView tagName, QByteArrayView value)
{
    sink.write(modDoc::recordOpener);
    sink.write(tagName);
    sink.write(" ");
    sink.write(value);
    sink.write("}\r\n");
}

} // namespace modDocV1
