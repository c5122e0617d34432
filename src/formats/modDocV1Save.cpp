// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/modDocV1.h"

#include "formats/LabelRecords.h"
#include "formats/OutlineWalk.h"
#include "formats/RecordNames.h"
#include "formats/RecordText.h"

#include "model/Outline.h"

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

// Writes the records of the header or of an entry, and among them, where they stood, those that the program does not
// know.
class RecordWriter
{
public:
    RecordWriter(ByteSink &sink, const ForeignRecordList &foreign)
        : m_sink(sink)
        , m_foreign(foreign)
    {
        writeForeign();
    }

    void write(QByteArrayView name, QByteArrayView value)
    {
        modDocV1::DocSaveNodeTag(m_sink, name, value);
        ++m_written;
        writeForeign();
    }

    void writeLabel(const QString &label)
    {
        const LabelRecords records = labelRecords(label);
        modDocV1::DocSaveNodeTag(m_sink, "nodelabel", records.value);
        if (!records.exact.isEmpty())
            modDocV1::DocSaveNodeTag(m_sink, recordNames::exactLabel, records.exact);
        ++m_written;
        writeForeign();
    }

private:
    void writeForeign()
    {
        for (; m_next < m_foreign.size() && m_foreign[m_next].behind <= m_written; ++m_next)
            m_sink.write(m_foreign[m_next].bytes);
    }

    ByteSink &m_sink;
    const ForeignRecordList &m_foreign;
    size_t m_next = 0;
    int m_written = 0;
};

void saveFont(RecordWriter &header, const QByteArray &prefix, const clsFont &font)
{
    header.write(prefix + "fontname", AnsiCodec::fromText(font.Name()));
    header.write(prefix + "fontsize", Numbers::fromFixedPoint(font.Size()).toLatin1());
    header.write(prefix + "fontbold", booleanText(font.Bold()));
    header.write(prefix + "fontitalic", booleanText(font.Italic()));
    header.write(prefix + "fontstrikethrough", booleanText(font.StrikeThrough()));
    header.write(prefix + "fontunderline", booleanText(font.Underline()));
}

void writeEntries(const Outline &outline, const Entry *top, const QByteArray &path, ByteSink &sink)
{
    for (OutlineWalk walk(top, path); walk.entry(); walk.next()) {
        RecordWriter entry(sink, walk.entry()->foreignRecords());
        entry.write("nodekey", walk.path());
        entry.writeLabel(walk.entry()->label());
        entry.write("nodetagged", booleanText(walk.entry()->tagged()));
        entry.write("nodevisible", booleanText(walk.visible()));
        entry.write("nodetext", recordText(outline.tree.storedText(walk.entry())));
    }
}

} // namespace

namespace modDocV1
{

void DocSaveVersion(const Outline &outline, ByteSink &sink)
{
    procedure("modDocV1 DocSaveVersion", [&] { write(outline, sink); });
}

void write(const Outline &outline, ByteSink &sink)
{
    const Entry *root = outline.tree.root();
    if (!root)
        return;
    const Entry *selected = outline.tree.selected() ? outline.tree.selected() : root;
    RecordWriter header(sink, outline.foreignHeader);
    header.write("formatversion", "1");
    header.write("selecteditemkey", outline.tree.key(selected).toLatin1());
    saveFont(header, "outline", outline.outlineFont);
    saveFont(header, "text", outline.textFont);
    writeEntries(outline, root, "0", sink);
    sink.write(outline.foreignTrailer);
}

void DocSaveNodeAll(const Outline &outline, const Entry *top, const QByteArray &path, ByteSink &sink)
{
    procedure("modDocV1 DocSaveNodeAll", [&] { writeEntries(outline, top, path, sink); });
}

void DocSaveNodeTag(ByteSink &sink, QByteArrayView tagName, QByteArrayView value)
{
    sink.write(recordNames::opener);
    sink.write(tagName);
    sink.write(" ");
    sink.write(value);
    sink.write("}\r\n");
}

} // namespace modDocV1
