// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/TextIndex.h"

#include "document/Document.h"
#include "model/StoredText.h"

#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>

using namespace Qt::StringLiterals;

class tst_TextIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_document.reset(); }

    void aDocumentFindsItsOwn();
    void beforeItIsMadeNothingIsRuledOut();
    void wordsOfOtherTextsAreRuledOut();
    void plainTextsHaveSignaturesToo();
    void aChangedTextIsNotRuledOutByItsOldSignature();
    void aChangedTextGetsItsNewSignature();
    void whatIsTypedIsNotRuledOut();
    void anUndoneChangeIsKnownAnew();
    void insertedBranchesAreTakenIn();
    void removedEntriesAreLetGo();
    void damagedTextsAreNeverRuledOut();
    void aDocumentMayCloseWhileWorkersAreAtIt();

private:
    Entry *add(const QByteArray &text)
    {
        Entry *entry = m_document->history.insert(Relationship::tvwChild, m_document->tree.root());
        m_document->history.setStoredText(entry, text);
        return entry;
    }

    static QByteArray rtf(const QByteArray &words) { return NodeTextCompressIfRequired("{\\rtf1 " + words + "}"); }

    bool mayHold(const Entry *entry, const QString &expression) const
    {
        return m_index->mayHold(*entry, m_document->tree.storedText(entry), SoughtTrigrams(expression));
    }

    void complete() const { QVERIFY(m_index->isComplete() || QSignalSpy(m_index, &TextIndex::completed).wait()); }

    std::unique_ptr<Document> m_document;
    TextIndex *m_index = nullptr;
};

void tst_TextIndex::init()
{
    m_document = std::make_unique<Document>();
    m_document->history.insert(Relationship::tvwChild, nullptr);
    m_index = new TextIndex(*m_document, 0);
}

void tst_TextIndex::aDocumentFindsItsOwn()
{
    QCOMPARE(TextIndex::of(*m_document), m_index);
    const Document other;
    QVERIFY(!TextIndex::of(other));
}

void tst_TextIndex::beforeItIsMadeNothingIsRuledOut()
{
    const Entry *entry = add(rtf("one"));
    QVERIFY(!m_index->isComplete());
    QVERIFY(mayHold(entry, u"absent"_s));
}

void tst_TextIndex::wordsOfOtherTextsAreRuledOut()
{
    const Entry *first = add(rtf("the quick \\b bro\\b0 wn fox"));
    const Entry *second = add(rtf("r\\'e9sum\\'e9 and more"));
    complete();
    QVERIFY(mayHold(first, u"BROWN"_s));
    QVERIFY(!mayHold(first, u"resume"_s));
    QVERIFY(mayHold(second, u"resume"_s));
    QVERIFY(!mayHold(second, u"brown"_s));
    QVERIFY(!mayHold(m_document->tree.root(), u"brown"_s));
    QVERIFY(m_index->weight() > 0);
}

void tst_TextIndex::plainTextsHaveSignaturesToo()
{
    const Entry *entry = add(QByteArray("just words, \xe9 too"));
    complete();
    QVERIFY(mayHold(entry, u"words"_s));
    QVERIFY(!mayHold(entry, u"absent"_s));
}

void tst_TextIndex::aChangedTextIsNotRuledOutByItsOldSignature()
{
    Entry *entry = add(rtf("before"));
    complete();
    QVERIFY(!mayHold(entry, u"after"_s));
    m_document->history.setStoredText(entry, rtf("after"));
    QVERIFY(mayHold(entry, u"after"_s));
}

void tst_TextIndex::aChangedTextGetsItsNewSignature()
{
    Entry *entry = add(rtf("before"));
    complete();
    m_document->history.setStoredText(entry, rtf("after"));
    QVERIFY(!m_index->isComplete());
    complete();
    QVERIFY(mayHold(entry, u"after"_s));
    QVERIFY(!mayHold(entry, u"before"_s));
}

void tst_TextIndex::whatIsTypedIsNotRuledOut()
{
    Entry *entry = add(rtf("before"));
    complete();
    const auto text = m_document->texts.open(*entry, QFont());
    QTextCursor cursor(&text->document());
    cursor.insertText(u"typed "_s);
    QVERIFY(mayHold(entry, u"typed"_s));
    complete();
    QVERIFY(mayHold(entry, u"typed"_s));
    QVERIFY(mayHold(entry, u"before"_s));
}

void tst_TextIndex::anUndoneChangeIsKnownAnew()
{
    Entry *entry = add(rtf("before"));
    m_document->history.setStoredText(entry, rtf("after"));
    complete();
    QVERIFY(m_document->history.undo());
    QVERIFY(mayHold(entry, u"before"_s));
    complete();
    QVERIFY(mayHold(entry, u"before"_s));
    QVERIFY(!mayHold(entry, u"after"_s));
}

void tst_TextIndex::insertedBranchesAreTakenIn()
{
    Entry *branch = add(rtf("branch"));
    m_document->history.setStoredText(m_document->history.insert(Relationship::tvwChild, branch), rtf("leaf"));
    complete();
    const Document other;
    Entry *copy =
        m_document->history.insertCopy(m_document->tree, branch, Relationship::tvwChild, m_document->tree.root());
    QVERIFY(!m_index->isComplete());
    complete();
    QVERIFY(mayHold(copy->firstChild(), u"leaf"_s));
    QVERIFY(!mayHold(copy->firstChild(), u"branch"_s));
}

void tst_TextIndex::removedEntriesAreLetGo()
{
    std::vector<Entry *> entries;
    for (int i = 0; i < 100; ++i)
        entries.push_back(add(rtf("entry " + QByteArray::number(i))));
    complete();
    const qsizetype before = m_index->weight();
    m_document->history.removeAll(entries);
    complete();
    QVERIFY(m_index->weight() < before / 10);
    QVERIFY(m_document->history.undo());
    complete();
    QCOMPARE(m_index->weight(), before);
}

void tst_TextIndex::damagedTextsAreNeverRuledOut()
{
    QByteArray damaged = rtf("words that are long enough to be compressed, and some more of them");
    damaged[damaged.size() / 2] = static_cast<char>(damaged[damaged.size() / 2] ^ 0x55);
    const Entry *entry = add(damaged);
    complete();
    QVERIFY(mayHold(entry, u"absent"_s));
}

void tst_TextIndex::aDocumentMayCloseWhileWorkersAreAtIt()
{
    for (int round = 0; round < 20; ++round) {
        m_document = std::make_unique<Document>();
        m_document->history.insert(Relationship::tvwChild, nullptr);
        for (int i = 0; i < 300; ++i)
            add(rtf("words " + QByteArray::number(i)));
        m_index = new TextIndex(*m_document, 0);
        QTest::qWait(round % 4);
    }
    complete();
}

QTEST_GUILESS_MAIN(tst_TextIndex)
#include "tst_TextIndex.moc"
