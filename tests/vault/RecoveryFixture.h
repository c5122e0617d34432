// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Document.h"
#include "model/StoredText.h"
#include "vault/LeftBehind.h"
#include "vault/Vault.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextCursor>

// A text, where one without a character is as good as none.
inline QString readableText(const QByteArray &stored)
{
    const QString text = QString::fromLatin1(inflated(stored).text);
    static const QRegularExpression nothing(QStringLiteral(R"(^\{\\rtf1[^\n]*\n\\pard\\f0\\fs18\\par\r?\n\}$)"));
    return nothing.match(text).hasMatch() ? QString() : text;
}

// All that a document holds, a line an entry, without looking at anything in a way that changes it.
inline QStringList documentState(const Document &document)
{
    const EntryTree &tree = document.tree;
    QStringList lines;
    for (const Entry *entry = tree.root(); entry; entry = nextInOutline(entry, tree.root())) {
        const std::shared_ptr<EntryDocument> live = document.texts.find(*entry);
        const QByteArray stored = live ? live->toStored() : EntryTree::textLastStored(entry);
        QStringList foreign;
        for (const ForeignRecords &records : entry->foreignRecords())
            foreign.append(QString::fromLatin1(records.bytes));
        QString line = tree.key(entry) + QLatin1String(" \"") + entry->label() + QLatin1String("\" (") +
                       readableText(stored) + u')';
        line += entry->tagged() ? u" tagged" : u"";
        line += entry->sorted() ? u" sorted" : u"";
        line += entry->expanded() ? u" expanded" : u"";
        lines.append(line + QLatin1String(" inserted ") + QString::number(tree.collection().indexOf(entry)) + u' ' +
                     foreign.join(u' '));
    }
    lines.append(QStringLiteral("fonts %1 %2 %3 %4")
                     .arg(document.m_fntOutlineFont.Name(), document.m_fntTextFont.Name())
                     .arg(document.m_fntOutlineFont.Size())
                     .arg(document.m_fntTextFont.Bold()));
    for (const ForeignRecords &records : document.outline().foreignHeader)
        lines.append(QString::fromLatin1(records.bytes));
    lines.append(QString::fromLatin1(document.outline().foreignTrailer));
    return lines;
}

// What the first entries have that differs, for a failure's text.
inline QString firstDifference(const QStringList &found, const QStringList &expected)
{
    for (qsizetype line = 0; line < std::max(found.size(), expected.size()); ++line) {
        if (found.value(line) != expected.value(line))
            return QStringLiteral("found    %1\nexpected %2").arg(found.value(line), expected.value(line));
    }
    return QString();
}

enum class Locks { Copied, LeftOut };

// A copy of a folder of recovery databases as a program that is killed now would leave it.
inline void copyAsLeft(const QString &from, const QString &to, Locks locks = Locks::LeftOut)
{
    QDir().mkpath(to);
    const QDir dir(from);
    for (const QString &name : dir.entryList(QDir::Files | QDir::Hidden)) {
        if (locks == Locks::Copied || !name.endsWith(QStringLiteral(".lock")))
            QFile::copy(dir.filePath(name), to + u'/' + name);
    }
}

// A document that was recovered, without a window.
struct RecoveredDocument {
    std::unique_ptr<Document> document;
    LeftBehind::Content content;
    qint64 notPlayed = 0;
};

inline RecoveredDocument recoveredFrom(LeftBehind &left)
{
    RecoveredDocument recovered;
    recovered.content = left.read();
    recovered.document = std::make_unique<Document>(std::move(recovered.content.outline));
    recovered.notPlayed = LeftBehind::replay(*recovered.document, recovered.content, left.state());
    return recovered;
}

// Types into an entry's text at its end, as the text pane does.
inline void typeInto(Document &document, const Entry &entry, const QString &text)
{
    const std::shared_ptr<EntryDocument> live = document.texts.open(entry, QFont());
    document.texts.setShown(live);
    QTextCursor cursor(&live->document());
    cursor.movePosition(QTextCursor::End);
    for (const QChar key : text) {
        if (key == u'\b')
            cursor.deletePreviousChar();
        else if (key == u'\n')
            cursor.insertBlock();
        else
            cursor.insertText(key);
    }
}
