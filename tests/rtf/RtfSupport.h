// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/DocumentDump.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>

#include <memory>

// Helpers that the tests of the rich-text room share.
namespace rtftest
{

inline std::unique_ptr<QTextDocument> documentOf(const QByteArray &rtf)
{
    auto document = std::make_unique<QTextDocument>();
    rtf::read(rtf, *document);
    return document;
}

// A row for each sample of another program's, with its bytes as "whole".
inline void sampleRows()
{
    QTest::addColumn<QByteArray>("whole");
    const QDir folder(QStringLiteral(QUILLERY_TEST_DATA "/rtf"));
    const QStringList names = folder.entryList({QStringLiteral("*.rtf")}, QDir::Files, QDir::Name);
    QVERIFY(!names.isEmpty());
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QTest::newRow(qPrintable(name)) << file.readAll();
    }
}

// The character format at the first character of some text.
inline QTextCharFormat formatAt(const QTextDocument &document, const QString &text)
{
    const QTextCursor found = document.find(text);
    QTextCursor cursor(found.document() != nullptr ? found : QTextCursor());
    if (cursor.isNull()) {
        return {};
    }
    cursor.setPosition(found.selectionStart() + 1);
    return cursor.charFormat();
}

inline QTextBlock blockOf(const QTextDocument &document, const QString &text)
{
    return document.find(text).block();
}

} // namespace rtftest
