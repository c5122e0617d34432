// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Rtf.h"

#include "rtf/DocumentSink.h"
#include "rtf/EditBlock.h"
#include "rtf/Families.h"
#include "rtf/Interpreter.h"
#include "rtf/PlainTextSink.h"
#include "rtf/Units.h"
#include "rtf/Writer.h"

#include <QTextCursor>
#include <QTextDocument>
#include <QTextOption>

namespace rtf
{

bool isRtf(QByteArrayView bytes)
{
    constexpr QByteArrayView opening("{\\rtf");
    const auto *begin =
        std::find_if_not(bytes.begin(), bytes.end(), [](char c) { return c == ' ' || c == '\r' || c == '\n'; });
    return bytes.sliced(begin - bytes.begin()).startsWith(opening);
}

void read(QByteArrayView rtf, QTextDocument &document)
{
    const bool keepsUndo = document.isUndoRedoEnabled();
    document.setUndoRedoEnabled(false);
    if (!document.isEmpty()) {
        document.clear();
    }
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    DocumentSink sink(cursor, BlockPlacer::Start::EmptyDocument);
    Interpreter interpreter(rtf, sink);
    interpreter.run();
    boundFamilies(document, 0, document.characterCount());
    cursor.endEditBlock();
    QTextOption option = document.defaultTextOption();
    option.setTabStopDistance(pixelsFromTwips(interpreter.defaultTab()));
    document.setDefaultTextOption(option);
    document.setUndoRedoEnabled(keepsUndo);
    document.setModified(false);
}

void insert(QByteArrayView rtf, QTextCursor &cursor)
{
    const EditBlock edit(cursor);
    cursor.removeSelectedText();
    DocumentSink sink(cursor, BlockPlacer::Start::InText);
    Interpreter(rtf, sink).run();
}

void append(QByteArrayView rtf, QTextCursor &cursor)
{
    const EditBlock edit(cursor);
    DocumentSink sink(cursor, BlockPlacer::Start::EmptyDocument);
    Interpreter(rtf, sink).run();
}

QByteArray write(const QTextDocument &document)
{
    return Writer(document).write();
}

QByteArray write(const QTextCursor &selection)
{
    return selection.hasSelection() ? Writer(*selection.document(), selection).write() : QByteArray();
}

QString toPlainText(QByteArrayView rtf)
{
    return plainContent(rtf).text;
}

QString toFindableText(QByteArrayView rtf)
{
    PlainTextSink sink(QChar::ObjectReplacementCharacter);
    Interpreter(rtf, sink, Interpreter::Detail::TextOnly).run();
    return sink.takeText();
}

PlainContent plainContent(QByteArrayView rtf)
{
    PlainTextSink sink;
    Interpreter(rtf, sink, Interpreter::Detail::TextOnly).run();
    return {sink.takeText(), sink.cells()};
}

} // namespace rtf
