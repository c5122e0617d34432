// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/FindReplace.h"

#include "document/Document.h"
#include "document/UndoRedo.h"
#include "find/FoundEntries.h"
#include "find/RandomText.h"
#include "model/StoredText.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"

#include <QTest>
#include <QTextCursor>

using namespace Qt::StringLiterals;

class tst_FindReplace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_document.reset(); }

    void aReplacementIsMadeOfGroups_data();
    void aReplacementIsMadeOfGroups();
    void aReplacementThatNamesNoGroupIsAnError();
    void everyHitIsReplacedInOneStep();
    void onlyChosenHitsAreReplaced();
    void hitsBeyondTheListAreReplacedToo();
    void theReplacementLooksLikeTheBeginningOfTheMatch();
    void aTextThatIsShownIsReplacedWhereItIs();
    void whatWasChangedSinceIsLeftAloneAndCounted();
    void whatStandsWhereItStoodIsReplacedAllTheSame();
    void aMatchThatOnlyLooksTheSameIsLeftAlone();
    void damagedAndWithheldTextsAreLeftAlone();
    void aDocumentForReadingIsLeftAlone();
    void aLabelThatWouldGrowTooLongIsLeftAlone();
    void tellsHowFarItIsAndStopsWhereItIsTold();
    void undoingBringsBackEveryByte();

private:
    Entry *add(const QString &label, const QByteArray &text)
    {
        Entry *entry = m_document->history.insert(Relationship::tvwChild, m_document->tree.root());
        m_document->history.setLabel(entry, label);
        m_document->history.setStoredText(entry,
                                          NodeTextCompressIfRequired(text.isEmpty() ? text : "{\\rtf1 " + text + "}"));
        return entry;
    }

    // All hits of a search, by their entries.
    std::vector<EntryHits> search(const FindQuery &query)
    {
        FindRun run(*m_document, query, nullptr, 0);
        const FoundEntries entries(run);
        if (!entries.wait())
            QTest::qFail("not finished", __FILE__, __LINE__);
        std::vector<EntryHits> hits;
        for (const EntryId each : entries.inOrder())
            hits.push_back(entries.hits().at(each));
        return hits;
    }

    std::vector<FindReplace::Choice> chooseAll(const FindQuery &query)
    {
        std::vector<FindReplace::Choice> choices;
        for (const EntryHits &each : search(query))
            choices.push_back(FindReplace::wholeOf(each));
        return choices;
    }

    QString textOf(const Entry *entry) const
    {
        return rtf::toPlainText(NodeTextDecompressIfRequired(m_document->tree.storedText(entry)));
    }

    std::unique_ptr<Document> m_document;
};

namespace
{

FindOptions byExpression()
{
    FindOptions options;
    options.regularExpression = true;
    return options;
}

} // namespace

void tst_FindReplace::init()
{
    m_document = std::make_unique<Document>();
    m_document->history.insert(Relationship::tvwChild, nullptr);
    m_document->history.startAnew();
}

void tst_FindReplace::aReplacementIsMadeOfGroups_data()
{
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QString>("expected");

    QTest::newRow("backslashes") << uR"(\2-\1)"_s << u"bc-a"_s;
    QTest::newRow("dollars") << u"$2$1"_s << u"bca"_s;
    QTest::newRow("all of it") << uR"(<\0$0>)"_s << u"<abcabc>"_s;
    QTest::newRow("a digit behind a group") << uR"(\12 ${1}2)"_s << u"a2 a2"_s;
    QTest::newRow("a group that took nothing") << uR"([\3])"_s << u"[]"_s;
    QTest::newRow("characters as they are")
        << uR"(\\1 \$1 100$ \x $x ${ ${1 a\)"_s << uR"(\1 $1 100$ \x $x ${ ${1 a\)"_s;
    QTest::newRow("a tab") << uR"(a\tb)"_s << u"a\tb"_s;
    QTest::newRow("nothing") << u""_s << u""_s;
}

void tst_FindReplace::aReplacementIsMadeOfGroups()
{
    QFETCH(QString, replacement);
    QFETCH(QString, expected);
    const FindQuery query(u"(a)(b.)(x)?"_s, byExpression());
    const Replacement made(replacement, query);
    QCOMPARE(made.error(), QString());
    QCOMPARE(made.of(query.matchesIn(u"abc").at(0).groups), expected);
    QCOMPARE(Replacement(replacement, FindQuery(u"a"_s, {})).of({}), replacement);
}

void tst_FindReplace::aReplacementThatNamesNoGroupIsAnError()
{
    const FindQuery query(u"(a)"_s, byExpression());
    QVERIFY(Replacement(u"\\2"_s, query).error().contains(u"no group 2"_s));
    QVERIFY(Replacement(u"costs $5"_s, query).error().contains(u"no group 5"_s));
    QVERIFY(Replacement(u"costs $5"_s, FindQuery(u"a"_s, {})).error().isEmpty());
    const Entry *entry = add(u"a"_s, "");
    QCOMPARE(FindReplace(query, u"$5"_s).apply(*m_document, chooseAll(query)).replaced, 0);
    QCOMPARE(entry->label(), u"a"_s);
}

void tst_FindReplace::everyHitIsReplacedInOneStep()
{
    const Entry *one = add(u"old one"_s, "an old text, Old");
    const Entry *two = add(u"two"_s, "older\\par old");
    const FindQuery query(u"old"_s, {});
    m_document->history.startAnew();
    const FindReplace replace(query, u"new"_s);
    const FindReplace::Result result = replace.apply(*m_document, chooseAll(query));
    QCOMPARE(result.replaced, 5);
    QCOMPARE(result.entries, 2);
    QCOMPARE(result.leftAlone(), 0);
    QCOMPARE(one->label(), u"new one"_s);
    QCOMPARE(textOf(one), u"an new text, new"_s);
    QCOMPARE(textOf(two), u"newer\r\nnew"_s);
    QCOMPARE(m_document->history.stepCount(), 1);
    QCOMPARE(m_document->history.undoName(), u"replacement in 2 entries"_s);
    QVERIFY(m_document->history.undo());
    QCOMPARE(one->label(), u"old one"_s);
    QCOMPARE(textOf(two), u"older\r\nold"_s);
}

void tst_FindReplace::onlyChosenHitsAreReplaced()
{
    const Entry *entry = add(u"old"_s, "old old old");
    const FindQuery query(u"old"_s, {});
    const std::vector<EntryHits> hits = search(query);
    FindReplace::Choice choice;
    choice.entry = entry->id();
    choice.hits = {hits[0].hits[3], hits[0].hits[1]};
    const FindReplace::Result result = FindReplace(query, u"new"_s).apply(*m_document, {choice});
    QCOMPARE(result.replaced, 2);
    QCOMPARE(entry->label(), u"old"_s);
    QCOMPARE(textOf(entry), u"new old new"_s);
    QVERIFY(m_document->history.undoName().startsWith(u"replacement in \"old"_s));
}

void tst_FindReplace::hitsBeyondTheListAreReplacedToo()
{
    const Entry *entry = add(u"label"_s, QByteArray("old ").repeated(300));
    const FindQuery query(u"old"_s, {});
    QCOMPARE(FindReplace(query, u"new"_s).apply(*m_document, chooseAll(query)).replaced, 300);
    QVERIFY(!textOf(entry).contains(u"old"_s));
}

void tst_FindReplace::theReplacementLooksLikeTheBeginningOfTheMatch()
{
    const Entry *entry = add(u"label"_s, "a \\b o\\b0 ld \\i text\\i0 ");
    const FindQuery query(u"(o)ld"_s, byExpression());
    FindReplace(query, u"$1ther"_s).apply(*m_document, chooseAll(query));
    QTextDocument document;
    rtf::read(NodeTextDecompressIfRequired(m_document->tree.storedText(entry)), document);
    QTextCursor cursor(&document);
    QCOMPARE(document.toPlainText(), u"a other text"_s);
    for (int i = 3; i <= 7; ++i) {
        cursor.setPosition(i);
        QCOMPARE(cursor.charFormat().fontWeight(), int(QFont::Bold));
    }
    cursor.setPosition(10);
    QVERIFY(cursor.charFormat().fontItalic());
    QVERIFY(cursor.charFormat().fontWeight() != QFont::Bold);
}

void tst_FindReplace::aTextThatIsShownIsReplacedWhereItIs()
{
    const Entry *entry = add(u"label"_s, "old text");
    const auto text = m_document->texts.open(*entry, QFont());
    m_document->texts.setShown(text);
    QTextCursor(&text->document()).insertText(u"very "_s);
    const QByteArray before = text->toStored();
    const FindQuery query(u"old"_s, {});
    QCOMPARE(FindReplace(query, u"new"_s).apply(*m_document, chooseAll(query)).replaced, 1);
    QCOMPARE(text->document().toPlainText(), u"very new text"_s);
    QCOMPARE(m_document->texts.find(*entry), text);
    QVERIFY(m_document->history.undo());
    QCOMPARE(text->document().toPlainText(), u"very old text"_s);
    QCOMPARE(text->toStored(), before);
}

void tst_FindReplace::whatWasChangedSinceIsLeftAloneAndCounted()
{
    Entry *changed = add(u"old"_s, "old and\\par old");
    Entry *removed = add(u"old"_s, "");
    Entry *untagged = add(u"old"_s, "");
    const Entry *same = add(u"old"_s, "old");
    FindOptions options;
    options.taggedOnly = true;
    for (int i = 1; i <= m_document->tree.entryCount(); ++i)
        m_document->history.setTagged(m_document->tree.collection().at(i), true);
    const FindQuery query(u"old"_s, options);
    const std::vector<FindReplace::Choice> choices = chooseAll(query);
    m_document->history.setLabel(changed, u"an old"_s);
    m_document->history.setStoredText(changed, "{\\rtf1 old but\\par old}");
    m_document->history.remove(removed);
    m_document->history.setTagged(untagged, false);
    const FindReplace::Result result = FindReplace(query, u"new"_s).apply(*m_document, choices);
    QCOMPARE(result.changed, 2 + 1 + 1);
    QCOMPARE(result.replaced, 1 + 2);
    QCOMPARE(changed->label(), u"an old"_s);
    QCOMPARE(textOf(changed), u"old but\r\nnew"_s);
    QCOMPARE(textOf(same), u"new"_s);
}

void tst_FindReplace::whatStandsWhereItStoodIsReplacedAllTheSame()
{
    const Entry *entry = add(u"label"_s, "old one\\par two");
    const FindQuery query(u"old"_s, {});
    const std::vector<FindReplace::Choice> choices = chooseAll(query);
    const auto text = m_document->texts.open(*entry, QFont());
    QTextCursor cursor(&text->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(u" and old"_s);
    const FindReplace::Result result = FindReplace(query, u"new"_s).apply(*m_document, choices);
    QCOMPARE(result.replaced, 1);
    QCOMPARE(result.changed, 0);
    QCOMPARE(textOf(entry), u"new one\r\ntwo and old"_s);
}

// The same word at the same place, in other words.
void tst_FindReplace::aMatchThatOnlyLooksTheSameIsLeftAlone()
{
    Entry *entry = add(u"label"_s, "keep my old house");
    const FindQuery query(u"old"_s, {});
    const std::vector<FindReplace::Choice> choices = chooseAll(query);
    m_document->history.setStoredText(entry, "{\\rtf1 sell my old boats}");
    const FindReplace::Result result = FindReplace(query, u"new"_s).apply(*m_document, choices);
    QCOMPARE(result.replaced, 0);
    QCOMPARE(result.changed, 1);
}

void tst_FindReplace::damagedAndWithheldTextsAreLeftAlone()
{
    Entry *damaged = add(u"old"_s, "");
    QByteArray bytes = NodeTextCompressIfRequired("{\\rtf1 old text that is long enough to be compressed a bit}");
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 0x55);
    m_document->history.setStoredText(damaged, bytes);
    // Too long a word to be laid out.
    const Entry *withheld = add(u"old"_s, "old old " + QByteArray(200'000, 'x'));
    const QByteArray before = m_document->tree.storedText(withheld);
    const FindQuery query(u"old"_s, {});
    const FindReplace::Result result = FindReplace(query, u"new"_s).apply(*m_document, chooseAll(query));
    QCOMPARE(result.replaced, 2);
    QCOMPARE(result.withheld, 2);
    QCOMPARE(damaged->label(), u"new"_s);
    QCOMPARE(withheld->label(), u"new"_s);
    QCOMPARE(m_document->tree.storedText(damaged), bytes);
    QCOMPARE(m_document->tree.storedText(withheld), before);
    m_document->texts.open(*withheld, QFont());
    m_document->history.undo();
    QCOMPARE(FindReplace(query, u"new"_s).apply(*m_document, chooseAll(query)).withheld, 2);
}

void tst_FindReplace::aDocumentForReadingIsLeftAlone()
{
    const Entry *entry = add(u"old"_s, "old");
    m_document->m_fileAccess = FileAccess::ReadOnly;
    const FindQuery query(u"old"_s, {});
    const FindReplace::Result result = FindReplace(query, u"new"_s).apply(*m_document, chooseAll(query));
    QCOMPARE(result.replaced, 0);
    QCOMPARE(result.readOnly, 2);
    QCOMPARE(entry->label(), u"old"_s);
}

void tst_FindReplace::aLabelThatWouldGrowTooLongIsLeftAlone()
{
    const Entry *entry = add(u"old "_s.repeated(1000), "old");
    const FindQuery query(u"old"_s, {});
    const FindReplace::Result result = FindReplace(query, u"new"_s.repeated(100)).apply(*m_document, chooseAll(query));
    QCOMPARE(result.replaced, 1);
    QCOMPARE(result.tooLong, 1000);
    QCOMPARE(entry->label(), u"old "_s.repeated(1000));
}

void tst_FindReplace::tellsHowFarItIsAndStopsWhereItIsTold()
{
    std::vector<const Entry *> entries;
    for (int i = 0; i < 10; ++i)
        entries.push_back(add(u"old"_s, "old"));
    m_document->history.startAnew();
    const FindQuery query(u"old"_s, {});
    QList<int> told;
    const FindReplace::Result result =
        FindReplace(query, u"new"_s).apply(*m_document, chooseAll(query), [&told](int done, int all) {
            told.append(done);
            return all == 20 && done < 8;
        });
    QCOMPARE(told, (QList<int>{0, 2, 4, 6, 8}));
    QVERIFY(result.isCancelled);
    QCOMPARE(result.replaced, 8);
    QCOMPARE(entries[3]->label(), u"new"_s);
    QCOMPARE(entries[4]->label(), u"old"_s);
    QCOMPARE(m_document->history.stepCount(), 1);
    QVERIFY(m_document->history.undo());
    QCOMPARE(entries[3]->label(), u"old"_s);
    QCOMPARE(textOf(entries[0]), u"old"_s);
}

void tst_FindReplace::undoingBringsBackEveryByte()
{
    RandomText random(3);
    static const QByteArray parts[] = {"old",   "{\\b old}", "o{\\i l}d", "\\par ",      "\\line ", "\\tab ",
                                       "\\'e9", "\\u1087?",  " x ",       "{\\fs40 12}", "34"};
    for (int i = 0; i < 60; ++i) {
        QByteArray text;
        for (int length = random.below(30); length > 0; --length)
            text += parts[random.below(int(std::size(parts)))];
        const Entry *entry = add(u"old %1 label"_s.arg(i), text);
        if (i % 7 == 0) {
            const auto live = m_document->texts.open(*entry, QFont());
            QTextCursor(&live->document()).insertText(u"typed old "_s);
        }
    }
    const auto state = [this] {
        std::vector<std::pair<QString, QByteArray>> all;
        for (int i = 1; i <= m_document->tree.entryCount(); ++i) {
            const Entry *entry = m_document->tree.collection().at(i);
            all.emplace_back(entry->label(), m_document->tree.storedText(entry));
        }
        return all;
    };
    const auto before = state();
    const std::pair<QString, QString> tries[] = {
        {u"(o)(l)d|\\d(\\d)"_s, u"\\2$1\\3\\t"_s}, {u"[xl]\\s*"_s, u""_s}, {u"\\w+"_s, u"[$0]"_s}};
    for (const auto &[expression, replacement] : tries) {
        const FindQuery query(expression, byExpression());
        std::map<EntryId, QString> expected;
        const std::vector<EntryHits> hits = search(query);
        for (const EntryHits &each : hits) {
            QString text = rtf::toFindableText(
                NodeTextDecompressIfRequired(m_document->tree.storedText(m_document->tree.entry(each.entry))));
            for (auto hit = each.hits.rbegin(); hit != each.hits.rend(); ++hit) {
                if (!hit->inLabel)
                    text.replace(hit->offset, hit->matched, FindReplace(query, replacement).after(*hit));
            }
            expected[each.entry] = text;
        }
        const FindReplace::Result result = FindReplace(query, replacement).apply(*m_document, chooseAll(query));
        QCOMPARE(result.leftAlone(), 0);
        QVERIFY(result.replaced > 60);
        for (const auto &[entry, text] : expected)
            QCOMPARE(textOf(m_document->tree.entry(entry)), text);
        const auto after = state();
        QVERIFY(undoStep(*m_document));
        QCOMPARE(state(), before);
        QVERIFY(redoStep(*m_document));
        QCOMPARE(state(), after);
        QVERIFY(undoStep(*m_document));
    }
}

QTEST_GUILESS_MAIN(tst_FindReplace)
#include "tst_FindReplace.moc"
