// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/modDocText.h"

#include "formats/ImportScope.h"
#include "formats/OutlineWalk.h"
#include "formats/PlainText.h"

#include "document/Document.h"
#include "document/Ports.h"
#include "document/SafeFile.h"
#include "document/modNodes.h"
#include "model/StoredText.h"

#include "util/AnsiCodec.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <QStringDecoder>

using namespace Qt::StringLiterals;

namespace
{

QString withoutTrailingLineEnds(QString text)
{
    while (text.endsWith("\r\n"_L1))
        text.chop(2);
    return text;
}

QString decodeFile(const QByteArray &buffer)
{
    const auto encoding = QStringConverter::encodingForData(buffer);
    if (!encoding)
        return AnsiCodec::toText(buffer);
    QStringDecoder decoder(*encoding);
    return decoder.decode(buffer);
}

} // namespace

namespace modDocText
{

QString plainTextLayout(const Document &document)
{
    QString layout;
    if (!document.tree.root())
        return layout;
    for (OutlineWalk walk(document.tree.root(), "0"); walk.entry(); walk.next()) {
        const Entry *entry = walk.entry();
        layout += withLineEnds(QLatin1StringView(walk.path()) + u' ' + entry->label());
        const QString text = withoutTrailingLineEnds(plainTextOf(document.tree.storedText(entry)));
        layout += text + "\r\n"_L1;
        if (!text.isEmpty())
            layout += "\r\n"_L1;
    }
    return layout;
}

void makeTextEntry(Document &document, const QString &text)
{
    Entry *entry = modNodes::insertEntry(document, Relationship::tvwFirst, nullptr);
    const QByteArray bytes = AnsiCodec::fromText(withLineEnds(text));
    document.tree.setLabel(entry, u"Text"_s);
    // Left as it stands, a text that begins with a number and a comma would be shown without that beginning.
    document.tree.setStoredText(entry, readsAsCompressed(bytes) ? NodeTextCompressIfRequired(bytes) : bytes);
    modNodes::NodeSelect(document, entry);
}

void DocSaveVersion(const Document &document, ByteSink &sink)
{
    procedure("modDocText DocSaveVersion", [&] { write(document, sink); });
}

void write(const Document &document, ByteSink &sink)
{
    sink.write(AnsiCodec::fromText(plainTextLayout(document)));
}

void DocLoadVersion(Document &document, const QByteArray &buffer)
{
    procedure("modDocText DocLoadVersion", [&] { read(document, buffer); });
}

void read(Document &document, const QByteArray &buffer)
{
    makeTextEntry(document, decodeFile(buffer));
}

void DocImport(const QString &sFile)
{
    procedure("modDocText DocImport", [&] {
        Document *document = DocumentActive();
        if (!document)
            return;
        const ImportScope import(*document);
        const QByteArray buffer = readWholeFile(sFile);
        read(*document, buffer);
    });
}

void DocExport(const QString &sFile)
{
    procedure("modDocText DocExport", [&] {
        const Document *document = DocumentActive();
        if (!document)
            return;
        const HourglassPointer hourglass;
        try {
            if (!document->tree.root())
                throw RunTimeError(ErrorNumber::InvalidCall);
            SafeFile file(sFile);
            write(*document, file);
            file.flushToDisk();
            file.replace();
        } catch (...) {
            ports().commands->UpdateStatusBarText(u"The file %1 could not be saved"_s.arg(sFile));
            throw;
        }
    });
}

} // namespace modDocText
