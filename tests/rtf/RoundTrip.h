// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/DocumentDump.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"

#include <QByteArray>

// What holds for any bytes, RTF or not.
namespace rtftest
{

// Reads, writes, reads and writes; the reason why the second time is not like the first, empty when it is.
inline QString roundTripFault(const QByteArray &bytes)
{
    QTextDocument first;
    rtf::read(bytes, first);
    const QByteArray written = rtf::write(first);
    QTextDocument second;
    rtf::read(written, second);
    if (const QString fault = difference(second, first); !fault.isEmpty()) {
        return QStringLiteral("another document: ") + fault;
    }
    if (rtf::write(second) != written) {
        return QStringLiteral("other bytes");
    }
    if (rtf::toPlainText(bytes) != rtf::plainText(first)) {
        return QStringLiteral("another plain text");
    }
    if (rtf::toPlainText(written) != rtf::plainText(first)) {
        return QStringLiteral("another plain text when written");
    }
    QTextDocument target(QStringLiteral("one two"));
    target.clearUndoRedoStacks();
    QTextCursor cursor(&target);
    cursor.setPosition(3);
    rtf::insert(bytes, cursor);
    target.undo();
    return target.toPlainText() == QStringLiteral("one two") ? QString() : QStringLiteral("inserting is not undone");
}

} // namespace rtftest
