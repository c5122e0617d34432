// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Properties.h"

#include <QDebug>
#include <QStringList>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextLength>
#include <QTextList>
#include <QTextOption>
#include <QTextTable>

#include <algorithm>

namespace rtftest
{

// A property's value in words, the elements of lists included.
inline QString wordsOf(const QVariant &value)
{
    if (value.typeId() == QMetaType::QVariantList) {
        QStringList words;
        const QVariantList elements = value.toList();
        for (const QVariant &element : elements) {
            words += wordsOf(element);
        }
        return QLatin1Char('[') + words.join(QStringLiteral(", ")) + QLatin1Char(']');
    }
    if (value.typeId() == qMetaTypeId<QTextOption::Tab>()) {
        const auto tab = value.value<QTextOption::Tab>();
        return QStringLiteral("tab %1 %2 %3").arg(tab.position).arg(int(tab.type)).arg(tab.delimiter.unicode());
    }
    if (value.typeId() == QMetaType::QTextLength) {
        const auto length = value.value<QTextLength>();
        return QStringLiteral("length %1 %2").arg(int(length.type())).arg(length.rawValue());
    }
    QString words;
    QDebug(&words).nospace() << value;
    return words;
}

// Everything that a document is made of, one line a block, run, list or table, for comparing documents.
inline QString dump(const QTextDocument &document)
{
    const auto properties = [](const QTextFormat &format) {
        QString text;
        const QMap<int, QVariant> all = format.properties();
        for (auto it = all.cbegin(); it != all.cend(); ++it) {
            if (it.key() == QTextFormat::ObjectIndex || it.key() == rtf::SpreadProperty) {
                continue;
            }
            text += QStringLiteral(" %1=%2").arg(it.key(), 0, 16).arg(wordsOf(it.value()));
        }
        return text;
    };
    QString text;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        text += QStringLiteral("block") + properties(block.blockFormat()) + QStringLiteral(" |") +
                properties(block.charFormat()) + QLatin1Char('\n');
        if (const QTextList *list = block.textList()) {
            text += QStringLiteral(" list %1").arg(list->itemNumber(block)) + properties(list->format()) +
                    QLatin1Char('\n');
        }
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            text += QStringLiteral(" run \"") + it.fragment().text() + QLatin1Char('"') +
                    properties(it.fragment().charFormat()) + QLatin1Char('\n');
        }
        QTextCursor cursor(block);
        if (const QTextTable *table = cursor.currentTable()) {
            const QTextTableCell cell = table->cellAt(cursor);
            text += QStringLiteral(" cell %1,%2 of %3x%4 spans %5x%6")
                        .arg(cell.row())
                        .arg(cell.column())
                        .arg(table->rows())
                        .arg(table->columns())
                        .arg(cell.rowSpan())
                        .arg(cell.columnSpan()) +
                    properties(table->format()) + QLatin1Char('\n');
        }
    }
    return text;
}

// The first line in which two documents differ; empty when they are the same.
inline QString difference(const QTextDocument &one, const QTextDocument &other)
{
    const QStringList lines = dump(one).split(QLatin1Char('\n'));
    const QStringList otherLines = dump(other).split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < std::max(lines.size(), otherLines.size()); ++i) {
        if (lines.value(i) != otherLines.value(i)) {
            return QStringLiteral("line %1\n").arg(i) + lines.value(i) + QStringLiteral("\nagainst\n") +
                   otherLines.value(i);
        }
    }
    return {};
}

} // namespace rtftest
