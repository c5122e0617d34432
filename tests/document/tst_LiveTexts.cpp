// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/LiveTexts.h"

#include "support/OutlineText.h"

#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>

using namespace Qt::StringLiterals;

class tst_LiveTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aTextIsOpenedOnceAndStaysTheSame();
    void aChangeIsStoredInItsEntryWhoeverMadeIt();
    void aTextIsWrittenOnceHoweverOftenItWasChanged();
    void openingAndShowingChangeNothing();
    void aTextStoredBySomebodyElseTakesThePlaceOfTheLiveOne();
    void whatIsTypedOnIntoATextThatWasReplacedIsTheEntrysText();
    void aTextThatIsNotWholeNeverTakesTheEntrysPlace();
    void theTextsShownLongestAgoAreGivenUp();
    void aTextIsStoredBeforeItIsGivenUp();
    void theTextOfARemovedEntryIsNobodys();

private:
    Entry *entry(const QString &label) const { return entryLabelled(*m_tree, label); }

    std::shared_ptr<EntryDocument> show(const QString &label)
    {
        m_texts->setShown(m_texts->open(*entry(label), QFont()));
        return m_texts->shown();
    }

    static void type(EntryDocument &text, const QString &typed) { QTextCursor(&text.document()).insertText(typed); }

    std::unique_ptr<EntryTree> m_tree;
    std::unique_ptr<LiveTexts> m_texts;
};

void tst_LiveTexts::init()
{
    m_tree = std::make_unique<EntryTree>();
    m_texts = std::make_unique<LiveTexts>(*m_tree);
    plantOutline(*m_tree, {u"Root"_s, u" A"_s, u" B"_s, u" C"_s});
    for (const QString &label : {u"A"_s, u"B"_s, u"C"_s})
        m_tree->setStoredText(entry(label), NodeTextCompressIfRequired("{\\rtf1 of " + label.toLatin1() + '}'));
}

void tst_LiveTexts::cleanup()
{
    m_texts.reset();
    m_tree.reset();
}

void tst_LiveTexts::aTextIsOpenedOnceAndStaysTheSame()
{
    const auto text = show(u"A"_s);
    QCOMPARE(text->document().toPlainText(), u"of A"_s);
    show(u"B"_s);
    QCOMPARE(m_texts->open(*entry(u"A"_s), QFont()), text);
    QCOMPARE(m_texts->count(), 2);
    QVERIFY(!m_texts->find(*entry(u"C"_s)));
}

void tst_LiveTexts::aChangeIsStoredInItsEntryWhoeverMadeIt()
{
    const auto a = show(u"A"_s);
    const auto b = show(u"B"_s);
    const QSignalSpy changes(m_texts.get(), &LiveTexts::changed);
    type(*b, u"All "_s);
    type(*a, u"None "_s);
    QCOMPARE(changes.count(), 2);
    QCOMPARE(plainTextOf(*m_tree, entry(u"A"_s)), u"None of A"_s);
    QCOMPARE(plainTextOf(*m_tree, entry(u"B"_s)), u"All of B"_s);
    a->document().undo();
    QCOMPARE(plainTextOf(*m_tree, entry(u"A"_s)), u"of A"_s);
}

void tst_LiveTexts::aTextIsWrittenOnceHoweverOftenItWasChanged()
{
    const auto a = show(u"A"_s);
    type(*a, u"One "_s);
    const QByteArray first = m_tree->storedText(entry(u"A"_s));
    QVERIFY(!m_tree->isPending(entry(u"A"_s)));
    QVERIFY(m_tree->storedText(entry(u"A"_s)).isSharedWith(first));
    type(*a, u"not "_s);
    type(*a, u"quite "_s);
    QVERIFY(m_tree->isPending(entry(u"A"_s)));
    QCOMPARE(plainTextOf(*m_tree, entry(u"A"_s)), u"quite not One of A"_s);
}

void tst_LiveTexts::openingAndShowingChangeNothing()
{
    const QByteArray before = m_tree->storedText(entry(u"A"_s));
    const QSignalSpy changes(m_texts.get(), &LiveTexts::changed);
    show(u"A"_s);
    show(u"B"_s);
    show(u"A"_s);
    QCOMPARE(changes.count(), 0);
    QVERIFY(m_tree->storedText(entry(u"A"_s)).isSharedWith(before));
    QCOMPARE(m_texts->entryAsShown(), entry(u"A"_s));
}

void tst_LiveTexts::aTextStoredBySomebodyElseTakesThePlaceOfTheLiveOne()
{
    const auto a = show(u"A"_s);
    type(*a, u"lost "_s);
    m_tree->setStoredText(entry(u"A"_s), "{\\rtf1 another}");
    QCOMPARE(m_texts->shownEntry(), entry(u"A"_s));
    QCOMPARE(m_texts->entryAsShown(), nullptr);
    QCOMPARE(m_tree->storedText(entry(u"A"_s)), QByteArray("{\\rtf1 another}"));
    QCOMPARE(show(u"A"_s)->document().toPlainText(), u"another"_s);
}

void tst_LiveTexts::whatIsTypedOnIntoATextThatWasReplacedIsTheEntrysText()
{
    const auto a = show(u"A"_s);
    m_tree->setStoredText(entry(u"A"_s), "{\\rtf1 another}");
    type(*a, u"typed on, "_s);
    QCOMPARE(m_texts->entryAsShown(), entry(u"A"_s));
    QCOMPARE(plainTextOf(*m_tree, entry(u"A"_s)), u"typed on, of A"_s);
}

void tst_LiveTexts::aTextThatIsNotWholeNeverTakesTheEntrysPlace()
{
    const QByteArray damaged = "100,this was never compressed";
    m_tree->setStoredText(entry(u"A"_s), damaged);
    const auto a = show(u"A"_s);
    QCOMPARE(a->state(), TextState::Damaged);
    type(*a, u"typed"_s);
    m_texts->store();
    QCOMPARE(m_tree->storedText(entry(u"A"_s)), damaged);
}

void tst_LiveTexts::theTextsShownLongestAgoAreGivenUp()
{
    const qsizetype one = show(u"A"_s)->weight();
    m_texts->setMaximumWeight(one + one / 2);
    show(u"B"_s);
    show(u"A"_s);
    show(u"C"_s);
    QVERIFY(m_texts->find(*entry(u"A"_s)));
    QVERIFY(!m_texts->find(*entry(u"B"_s)));
    show(u"B"_s);
    QVERIFY(!m_texts->find(*entry(u"A"_s)));
    // What is shown stays, whatever it weighs.
    m_texts->setMaximumWeight(0);
    QCOMPARE(m_texts->count(), 1);
    QCOMPARE(m_texts->entryAsShown(), entry(u"B"_s));
}

void tst_LiveTexts::aTextIsStoredBeforeItIsGivenUp()
{
    m_texts->setMaximumWeight(0);
    type(*show(u"A"_s), u"One "_s);
    show(u"B"_s);
    QVERIFY(!m_texts->find(*entry(u"A"_s)));
    QCOMPARE(plainTextOf(*m_tree, entry(u"A"_s)), u"One of A"_s);
    QCOMPARE(show(u"A"_s)->document().toPlainText(), u"One of A"_s);
}

void tst_LiveTexts::theTextOfARemovedEntryIsNobodys()
{
    const auto a = show(u"A"_s);
    m_tree->remove(entry(u"A"_s));
    QCOMPARE(m_texts->shownEntry(), nullptr);
    const QSignalSpy changes(m_texts.get(), &LiveTexts::changed);
    type(*a, u"typed"_s);
    QCOMPARE(changes.count(), 0);
}

QTEST_MAIN(tst_LiveTexts)
#include "tst_LiveTexts.moc"
