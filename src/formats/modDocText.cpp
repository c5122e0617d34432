// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "formats/modDocText.h"

#include "formats/OutlineWalk.h"
#include "formats/PlainText.h"

#include "model/StoredText.h"

#include "util/AnsiCodec.h"
#include "util/ByteSink.h"
#include "util/Procedure.h"

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

QString plainTextLayout(const Outline &outline)
{
    QString layout;
    if (!outline.tree.root())
        return layout;
    for (OutlineWalk walk(outline.tree.root(), "0"); walk.entry(); walk.next()) {
        const Entry *entry = walk.entry();
        layout += withLineEnds(QLatin1StringView(walk.path()) + u' ' + entry->label());
        const QString text = withoutTrailingLineEnds(plainTextOf(outline.tree.storedText(entry)));
        layout += text + "\r\n"_L1;
        if (!text.isEmpty())
            layout += "\r\n"_L1;
    }
    return layout;
}

std::unique_ptr<Outline> outlineOf(const QString &text)
{
    auto outline = std::make_unique<Outline>();
    EntryTree &tree = outline->tree;
    Entry *entry = tree.insert(Relationship::tvwFirst, nullptr);
    const QByteArray bytes = AnsiCodec::fromText(withLineEnds(text));
    tree.setLabel(entry, u"Text"_s);
    // Left as it stands, a text that begins with a number and a comma would be shown without that beginning.
    tree.setStoredText(entry, readsAsCompressed(bytes) ? compressedText(bytes) : bytes);
    tree.select(entry);
    return outline;
}

void DocSaveVersion(const Outline &outline, ByteSink &sink)
{
    procedure("modDocText DocSaveVersion", [&] { write(outline, sink); });
}

void write(const Outline &outline, ByteSink &sink)
{
    sink.write(AnsiCodec::fromText(plainTextLayout(outline)));
}

ReadOutline DocLoadVersion(const QByteArray &buffer)
{
    return procedure("modDocText DocLoadVersion", [&] { return read(buffer); });
}

ReadOutline read(const QByteArray &buffer)
{
    ReadOutline result;
    try {
        result.outline = outlineOf(decodeFile(buffer));
    } catch (...) {
        result.failure = std::current_exception();
    }
    return result;
}

} // namespace modDocText
