// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Rtf.h"

#include "rtf/PlainText.h"

#include <QTextCursor>
#include <QTextDocument>

namespace rtf
{

bool isRtf(QByteArrayView bytes)
{
    return bytes.trimmed().startsWith("{\\rtf");
}

void read(QByteArrayView rtf, QTextDocument &document)
{
    document.setPlainText(toPlainText(rtf));
}

void insert(QByteArrayView rtf, QTextCursor &cursor)
{
    cursor.insertText(toPlainText(rtf));
}

QByteArray write(const QTextDocument &document)
{
    return "{\\rtf1 " + plainText(document).toLatin1() + "}";
}

QByteArray write(const QTextCursor &selection)
{
    return "{\\rtf1 " + plainText(selection).toLatin1() + "}";
}

QString toPlainText(QByteArrayView rtf)
{
    return QString::fromLatin1(rtf.sliced(qMin(rtf.size(), qsizetype(7))).chopped(rtf.size() > 7 ? 1 : 0));
}

} // namespace rtf
