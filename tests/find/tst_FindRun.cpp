// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/FindRun.h"

#include "document/Document.h"
#include "find/FindModel.h"
#include "find/FoundEntries.h"
#include "find/RandomText.h"
#include "find/TextIndex.h"
#include "model/EntryText.h"
#include "model/StoredText.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"

#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

using namespace Qt::StringLiterals;

class tst_FindRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_document.reset(); }

    void tellsEntriesInTheOrderOfTheOutline();
    void wordsMayBeInLabelAndTextTogether();
    void onlyLabelsOrOnlyTextsAreLookedAt();
    void looksOnlyInABranchAndAtTaggedEntries();
    void aHitTellsWhereItStandsForTheTextPane();
    void aLongLineIsShownAroundTheMatch();
    void ofManyHitsTheFirstAreToldAndAllAreCounted();
    void moreHitsOfAnEntryAreToldWhenAsked();
    void damagedTextsAreCountedAndTheirLabelsFound();
    void givenUpExpressionsAreCounted();
    void whatIsTypedIsFoundAMomentLater();
    void lettersThatJoinAStepAreFollowedToo();
    void typingLooksAtThatTextOnly();
    void whatIsTypedAndNotStoredYetIsFoundAtOnce();
    void changedLabelsTagsAndStructureAreFollowed();
    void whatIsTakenBackIsFollowed();
    void anUnchangedEntryIsNotToldAgain();
    void theDocumentMayGoFirst();
    void aRunMayEndWhileWorkersAreAtIt();
    void whatIsFoundAndFollowedIsWhatAReaderFinds_data();
    void whatIsFoundAndFollowedIsWhatAReaderFinds();

private:
    Entry *add(const QString &label, const QByteArray &text, Entry *parent = nullptr)
    {
        Entry *entry = m_document->history.insert(Relationship::tvwChild, parent ? parent : m_document->tree.root());
        m_document->history.setLabel(entry, label);
        if (!text.isEmpty())
            m_document->history.setStoredText(entry, NodeTextCompressIfRequired("{\\rtf1 " + text + "}"));
        return entry;
    }

    std::vector<EntryId> found(const QString &text, const FindOptions &options = {})
    {
        FindRun run(*m_document, FindQuery(text, options), nullptr, 0);
        const FoundEntries entries(run);
        if (!entries.wait())
            QTest::qFail("not finished", __FILE__, __LINE__);
        return entries.inOrder();
    }

    EntryHits hitsOf(const QString &text, const Entry *entry, const FindOptions &options = {})
    {
        FindRun run(*m_document, FindQuery(text, options), nullptr, 0);
        const FoundEntries entries(run);
        if (!entries.wait())
            QTest::qFail("not finished", __FILE__, __LINE__);
        const auto hits = entries.hits().find(entry->id());
        return hits == entries.hits().end() ? EntryHits() : hits->second;
    }

    std::unique_ptr<Document> m_document;
};

using Ids = std::vector<EntryId>;

void tst_FindRun::init()
{
    m_document = std::make_unique<Document>();
    m_document->history.insert(Relationship::tvwChild, nullptr);
    m_document->history.startAnew();
}

void tst_FindRun::tellsEntriesInTheOrderOfTheOutline()
{
    const Entry *first = add(u"first"_s, "match");
    Entry *second = add(u"second"_s, "nothing");
    const Entry *last = add(u"last match"_s, "");
    const Entry *inner = add(u"inner"_s, "a match, matched", second);
    QCOMPARE(found(u"match"_s), (Ids{first->id(), inner->id(), last->id()}));
    Entry *top = m_document->tree.root();
    Ids all;
    for (int i = 0; i < 3000; ++i)
        all.push_back(add(u"number %1"_s.arg(i), "text " + QByteArray::number(i), i % 7 == 0 ? top : second)->id());
    FindRun run(*m_document, FindQuery(u"text"_s, {}), nullptr, 0);
    const FoundEntries entries(run);
    QVERIFY(!run.isFinished());
    QVERIFY(entries.wait());
    QCOMPARE(entries.finished(), 1);
    QCOMPARE(run.entryCount(), 3000);
    QCOMPARE(run.hitCount(), 3000);
    Ids expected;
    for (const Entry *entry = top; entry; entry = nextInOutline(entry, top)) {
        if (std::ranges::find(all, entry->id()) != all.end())
            expected.push_back(entry->id());
    }
    QCOMPARE(entries.inOrder(), expected);
}

void tst_FindRun::wordsMayBeInLabelAndTextTogether()
{
    const Entry *both = add(u"Budget of one year"_s, "the other year");
    add(u"Budget"_s, "the year");
    QCOMPARE(found(u"other budget"_s), Ids{both->id()});
    QCOMPARE(hitsOf(u"other year"_s, both).count, 3);
    QCOMPARE(found(u"other missing"_s), Ids());
}

void tst_FindRun::onlyLabelsOrOnlyTextsAreLookedAt()
{
    const Entry *label = add(u"match"_s, "text");
    const Entry *text = add(u"label"_s, "match");
    FindOptions options;
    QCOMPARE(found(u"match"_s, options), (Ids{label->id(), text->id()}));
    options.labels = false;
    QCOMPARE(found(u"match"_s, options), Ids{text->id()});
    options.labels = true;
    options.texts = false;
    QCOMPARE(found(u"match"_s, options), Ids{label->id()});
    QCOMPARE(found(u"match text"_s, options), Ids());
}

void tst_FindRun::looksOnlyInABranchAndAtTaggedEntries()
{
    add(u"match"_s, "");
    Entry *branch = add(u"match too"_s, "");
    Entry *inner = add(u"inner match"_s, "", branch);
    FindOptions options;
    options.branch = branch->id();
    QCOMPARE(found(u"match"_s, options), (Ids{branch->id(), inner->id()}));
    m_document->history.setTagged(inner, true);
    options.taggedOnly = true;
    QCOMPARE(found(u"match"_s, options), Ids{inner->id()});
    options.branch = EntryId(1'000'000'000);
    QCOMPARE(found(u"match"_s, options), Ids());
}

void tst_FindRun::aHitTellsWhereItStandsForTheTextPane()
{
    const Entry *entry = add(u"label"_s, "one\\par two\\line three \\b ma\\b0 tch four\\par match");
    const EntryHits hits = hitsOf(u"match"_s, entry);
    QCOMPARE(hits.hits.size(), 2U);
    EntryText text("{\\rtf1 one\\par two\\line three \\b ma\\b0 tch four\\par match}", QFont());
    for (const FindHit &hit : hits.hits)
        QCOMPARE(text.findableText().mid(hit.offset, hit.matched), u"match"_s);
    QTextDocument document;
    rtf::read("{\\rtf1 one\\par two\\line three \\b ma\\b0 tch four\\par match}", document);
    for (const FindHit &hit : hits.hits) {
        QTextCursor cursor(&document);
        cursor.setPosition(hit.position);
        cursor.setPosition(hit.position + hit.matched, QTextCursor::KeepAnchor);
        QCOMPARE(cursor.selectedText(), u"match"_s);
        QCOMPARE(hit.line.mid(hit.start, hit.length), u"match"_s);
    }
    QCOMPARE(hits.hits[0].line, u"three match four"_s);
    QCOMPARE(hits.hits[1].line, u"match"_s);
    const EntryHits labels = hitsOf(u"abe"_s, entry);
    QVERIFY(labels.hits.at(0).inLabel);
    QCOMPARE(labels.hits[0].line, u"label"_s);
    QCOMPARE(labels.hits[0].offset, 1);
}

void tst_FindRun::aLongLineIsShownAroundTheMatch()
{
    const Entry *entry = add(u"label"_s, QByteArray(20000, 'a') + " match " + QByteArray(30000, 'b'));
    FindHit hit = hitsOf(u"match"_s, entry).hits.at(0);
    QVERIFY(hit.line.size() < 300);
    QVERIFY(hit.isCutBefore && hit.isCutBehind);
    QCOMPARE(hit.line.mid(hit.start, hit.length), u"match"_s);
    QCOMPARE(hit.offset, 20001);
    QVERIFY(hit.start > 50);
    FindOptions options;
    options.regularExpression = true;
    options.labels = false;
    hit = hitsOf(u"a.*b"_s, entry, options).hits.at(0);
    QCOMPARE(hit.matched, 20000 + 7 + 30000);
    QVERIFY(hit.length <= hit.line.size());
    QVERIFY(hit.groups.at(0).size() < 2000);
}

void tst_FindRun::ofManyHitsTheFirstAreToldAndAllAreCounted()
{
    const Entry *entry = add(u"label"_s, QByteArray("x ").repeated(5000));
    const EntryHits hits = hitsOf(u"x"_s, entry);
    QCOMPARE(hits.count, 5000);
    QCOMPARE(int(hits.hits.size()), FindRun::mostOfEntry);
}

void tst_FindRun::moreHitsOfAnEntryAreToldWhenAsked()
{
    const Entry *entry = add(u"label"_s, QByteArray("x ").repeated(500));
    FindRun run(*m_document, FindQuery(u"x"_s, {}), nullptr, 0);
    const FoundEntries entries(run);
    QVERIFY(entries.wait());
    run.tellMore(entry->id());
    QVERIFY(entries.wait());
    QCOMPARE(entries.hits().at(entry->id()).hits.size(), 500U);
    QCOMPARE(run.hitCount(), 500);
}

void tst_FindRun::damagedTextsAreCountedAndTheirLabelsFound()
{
    Entry *entry = add(u"match"_s, "");
    QByteArray damaged =
        NodeTextCompressIfRequired("{\\rtf1 match of a text that is long enough to be compressed a bit}");
    damaged[damaged.size() / 2] = static_cast<char>(damaged[damaged.size() / 2] ^ 0x55);
    m_document->history.setStoredText(entry, damaged);
    FindRun run(*m_document, FindQuery(u"match"_s, {}), nullptr, 0);
    const FoundEntries entries(run);
    QVERIFY(entries.wait());
    QCOMPARE(run.unreadableCount(), 1);
    QCOMPARE(run.hitCount(), 1);
    m_document->history.setStoredText(entry, NodeTextCompressIfRequired("{\\rtf1 match}"));
    QVERIFY(entries.wait());
    QCOMPARE(run.unreadableCount(), 0);
    QCOMPARE(run.hitCount(), 2);
}

void tst_FindRun::givenUpExpressionsAreCounted()
{
    Entry *entry = add(u"label"_s, QByteArray(60, 'a') + "!");
    FindOptions options;
    options.regularExpression = true;
    FindRun run(*m_document, FindQuery(u"(a+)+$"_s, options), nullptr, 0);
    const FoundEntries entries(run);
    QVERIFY(entries.wait());
    QCOMPARE(run.givenUpCount(), 1);
    m_document->history.remove(entry);
    QVERIFY(entries.wait());
    QCOMPARE(run.givenUpCount(), 0);
}

void tst_FindRun::whatIsTypedIsFoundAMomentLater()
{
    const Entry *entry = add(u"label"_s, "before");
    FindRun run(*m_document, FindQuery(u"match"_s, {}), nullptr, 20);
    const FoundEntries entries(run);
    QVERIFY(entries.wait());
    const auto text = m_document->texts.open(*entry, QFont());
    QTextCursor(&text->document()).insertText(u"match "_s);
    QVERIFY(!run.isUpToDate());
    QCOMPARE(entries.changes(), 0);
    QVERIFY(entries.wait());
    QCOMPARE(run.hitCount(), 1);
    QCOMPARE(entries.hits().at(entry->id()).hits.at(0).line, u"match before"_s);
    // What was typed is still to be stored: nobody but the run has asked for it.
    QVERIFY(m_document->tree.isPending(entry));
    m_document->history.undo();
    QVERIFY(entries.wait());
    QCOMPARE(entries.gone(), 1);
    QCOMPARE(run.hitCount(), 0);
}

void tst_FindRun::lettersThatJoinAStepAreFollowedToo()
{
    const Entry *entry = add(u"label"_s, "before");
    FindRun run(*m_document, FindQuery(u"match"_s, {}), nullptr, 0);
    const FoundEntries entries(run);
    const auto text = m_document->texts.open(*entry, QFont());
    m_document->texts.setShown(text);
    QTextCursor cursor(&text->document());
    cursor.insertText(u"m"_s);
    const int steps = m_document->history.stepCount();
    for (const QString &letter : {u"a"_s, u"t"_s, u"c"_s, u"h"_s}) {
        QVERIFY(entries.wait());
        QCOMPARE(run.hitCount(), 0);
        cursor.insertText(letter);
    }
    QCOMPARE(m_document->history.stepCount(), steps);
    QVERIFY(entries.wait());
    QCOMPARE(run.hitCount(), 1);
}

void tst_FindRun::typingLooksAtThatTextOnly()
{
    Entry *entry = add(u"label"_s, "match");
    for (int i = 0; i < 200; ++i)
        add(u"match %1"_s.arg(i), "match");
    FindRun run(*m_document, FindQuery(u"match"_s, {}), nullptr, 0);
    const FoundEntries entries(run);
    QVERIFY(entries.wait());
    const auto text = m_document->texts.open(*entry, QFont());
    for (int i = 0; i < 10; ++i)
        QTextCursor(&text->document()).insertText(u"match "_s);
    QVERIFY(entries.wait());
    QCOMPARE(run.lookedAt(), 201 + 1 + 1);
    QCOMPARE(entries.changes(), 1);
}

void tst_FindRun::whatIsTypedAndNotStoredYetIsFoundAtOnce()
{
    const Entry *entry = add(u"label"_s, "before");
    const auto text = m_document->texts.open(*entry, QFont());
    QTextCursor(&text->document()).insertText(u"match "_s);
    QVERIFY(m_document->tree.isPending(entry));
    QCOMPARE(found(u"match"_s), Ids{entry->id()});
    QVERIFY(m_document->tree.isPending(entry));
}

void tst_FindRun::changedLabelsTagsAndStructureAreFollowed()
{
    Entry *branch = add(u"branch"_s, "");
    Entry *entry = add(u"label"_s, "match");
    FindOptions options;
    options.taggedOnly = true;
    options.branch = branch->id();
    FindRun run(*m_document, FindQuery(u"match"_s, options), nullptr, 0);
    const FoundEntries entries(run);
    QSignalSpy order(&run, &FindRun::orderChanged);
    QVERIFY(entries.wait());
    m_document->history.move(entry, Relationship::tvwChild, branch);
    QVERIFY(entries.wait());
    QCOMPARE(run.hitCount(), 0);
    QCOMPARE(order.count(), 1);
    m_document->history.setTagged(entry, true);
    QVERIFY(entries.wait());
    QCOMPARE(run.hitCount(), 1);
    m_document->history.setLabel(entry, u"match"_s);
    QVERIFY(entries.wait());
    QCOMPARE(run.hitCount(), 2);
    m_document->history.remove(branch);
    QVERIFY(entries.wait());
    QCOMPARE(run.entryCount(), 0);
    m_document->history.undo();
    QVERIFY(entries.wait());
    QCOMPARE(run.hitCount(), 2);
    m_document->history.setTagged(entry, false);
    QVERIFY(entries.wait());
    QCOMPARE(run.hitCount(), 0);
}

void tst_FindRun::whatIsTakenBackIsFollowed()
{
    Entry *entry = add(u"label"_s, "match");
    FindRun run(*m_document, FindQuery(u"match"_s, {}), nullptr, 0);
    const FoundEntries entries(run);
    QVERIFY(entries.wait());
    {
        History::Step step(m_document->history, u"nothing"_s);
        m_document->history.setLabel(entry, u"match"_s);
        m_document->history.insert(Relationship::tvwChild, entry);
        QVERIFY(entries.wait());
        QCOMPARE(run.hitCount(), 2);
        step.takeBack();
    }
    QVERIFY(entries.wait());
    QCOMPARE(run.hitCount(), 1);
}

void tst_FindRun::anUnchangedEntryIsNotToldAgain()
{
    Entry *entry = add(u"label"_s, "match");
    FindRun run(*m_document, FindQuery(u"match"_s, {}), nullptr, 0);
    const FoundEntries entries(run);
    QVERIFY(entries.wait());
    m_document->history.setTagged(entry, true);
    m_document->history.setSorted(m_document->tree.root(), true);
    QVERIFY(entries.wait());
    QCOMPARE(entries.changes(), 0);
    QCOMPARE(entries.gone(), 0);
}

void tst_FindRun::theDocumentMayGoFirst()
{
    for (int i = 0; i < 500; ++i)
        add(u"match"_s, "match");
    FindRun run(*m_document, FindQuery(u"match"_s, {}), nullptr, 0);
    const FoundEntries entries(run);
    QTest::qWait(1);
    m_document.reset();
    QVERIFY(!run.document());
    run.tellMore(EntryId(1));
    QTest::qWait(20);
    QVERIFY(!run.isFinished());
}

void tst_FindRun::aRunMayEndWhileWorkersAreAtIt()
{
    for (int i = 0; i < 2000; ++i)
        add(u"match"_s, QByteArray("match ").repeated(100));
    for (int round = 0; round < 20; ++round) {
        FindRun run(*m_document, FindQuery(u"match"_s, {}), nullptr, 0);
        QTest::qWait(round % 5);
    }
    QCOMPARE(found(u"match"_s).size(), 2000U);
}

namespace
{

// What there is to be found, by a look at every entry as the text pane would show it.
std::map<EntryId, std::vector<FindMatch>> foundByReader(const Document &document, const QStringList &words,
                                                        const FindOptions &options)
{
    std::map<EntryId, std::vector<FindMatch>> found;
    const Entry *top = options.branch == EntryId::None ? document.tree.root() : document.tree.entry(options.branch);
    for (const Entry *entry = top; entry; entry = nextInOutline(entry, top)) {
        if (options.taggedOnly && !entry->tagged())
            continue;
        QString text;
        if (const auto live = document.texts.find(*entry))
            text = rtf::findableText(live->document());
        else
            text = EntryText(NodeTextDecompressIfRequired(EntryTree::textLastStored(entry)), QFont()).findableText();
        const QString label = options.labels ? entry->label() : QString();
        if (!options.texts)
            text.clear();
        const auto matches = [&](const QString &in, const QStringList &sought) {
            return options.regularExpression ? findModel::matchesOfExpression(in, sought.at(0), options)
                                             : findModel::matchesOfWords(in, sought, options);
        };
        const bool hasAll = std::ranges::all_of(words, [&](const QString &word) {
            return !matches(label, {word}).empty() || !matches(text, {word}).empty();
        });
        if (!hasAll)
            continue;
        std::vector<FindMatch> all = matches(label, words);
        const std::vector<FindMatch> inText = matches(text, words);
        all.insert(all.end(), inText.begin(), inText.end());
        found[entry->id()] = all;
    }
    return found;
}

class Changes
{
public:
    Changes(Document &document, unsigned seed)
        : m_document(document)
        , m_random(seed)
    {
    }

    QString words(int most)
    {
        QString text;
        for (int i = m_random.below(most); i >= 0; --i) {
            static const QString some[] = {
                u"one"_s,          u"t\u00e9st"_s,        u"test"_s, u"te\u0301st"_s, u"\u041f\u0440\u0438"_s,
                u"\u6f22\u5b57"_s, u"\U0001f600\ufe0f"_s, u"ones"_s, u"12"_s,         u"Test"_s};
            text += some[m_random.below(int(std::size(some)))];
            text += m_random.below(5) == 0 ? u"\n"_s : m_random.below(4) == 0 ? u""_s : u" "_s;
        }
        return text;
    }

    Entry *any() { return m_document.tree.collection().at(1 + m_random.below(m_document.tree.entryCount())); }

    void change()
    {
        History &history = m_document.history;
        Entry *entry = any();
        switch (m_random.below(12)) {
        case 0:
        case 1:
            entry = history.insert(Relationship::tvwChild, entry);
            history.setLabel(entry, words(3).remove(u'\n'));
            break;
        case 2:
            if (!entry->isRoot() && m_document.tree.entryCount() > 10)
                history.remove(entry);
            break;
        case 3:
            if (Entry *place = any(); !entry->isRoot() && entry != place && !entry->isAncestorOf(place))
                history.move(entry, Relationship::tvwChild, place);
            break;
        case 4:
            history.setLabel(entry, words(3).remove(u'\n'));
            break;
        case 5:
            history.setTagged(entry, !entry->tagged());
            break;
        case 6: {
            QTextDocument text;
            text.setPlainText(words(12));
            history.setStoredText(entry, NodeTextCompressIfRequired(rtf::write(text)));
            break;
        }
        case 7:
        case 8: {
            const auto text = m_document.texts.open(*entry, QFont());
            m_document.texts.setShown(text);
            QTextCursor cursor(&text->document());
            // As a caret goes, never between the halves of a character.
            cursor.setPosition(m_random.below(text->document().characterCount()));
            cursor.movePosition(QTextCursor::NextCharacter);
            cursor.movePosition(QTextCursor::PreviousCharacter);
            if (m_random.below(3) == 0)
                cursor.deletePreviousChar();
            else
                cursor.insertText(words(2));
            break;
        }
        case 9:
            history.undo();
            break;
        case 10:
            history.redo();
            break;
        default: {
            History::Step step(history, u"both"_s);
            history.setLabel(entry, words(2).remove(u'\n'));
            history.insert(Relationship::tvwChild, entry);
            if (m_random.below(2) == 0)
                step.takeBack();
            break;
        }
        }
    }

    int below(int bound) { return m_random.below(bound); }

private:
    Document &m_document;
    RandomText m_random;
};

} // namespace

void tst_FindRun::whatIsFoundAndFollowedIsWhatAReaderFinds_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("letters");

    QTest::newRow("a word") << QStringList{u"test"_s} << u""_s;
    QTest::newRow("a word whose accents count") << QStringList{u"t\u00e9st"_s} << u"a"_s;
    QTest::newRow("several words") << QStringList{u"test"_s, u"one"_s, u"\u6f22"_s} << u""_s;
    QTest::newRow("phrases") << QStringList{u"one test"_s, u"\u0440\u0438 "_s} << u""_s;
    QTest::newRow("whole words in their case") << QStringList{u"test"_s} << u"cw"_s;
    QTest::newRow("an expression") << QStringList{u"^(t.st|\\d+)\\b.*$"_s} << u"r"_s;
    QTest::newRow("labels") << QStringList{u"one"_s} << u"L"_s;
    QTest::newRow("texts") << QStringList{u"one"_s} << u"T"_s;
    QTest::newRow("tagged") << QStringList{u"e"_s} << u"t"_s;
    QTest::newRow("a branch") << QStringList{u"e"_s} << u"b"_s;
    QTest::newRow("what is seldom in it, with signatures") << QStringList{u"onete"_s} << u"i"_s;
    QTest::newRow("an emoji, with signatures") << QStringList{u"\U0001f600"_s} << u"i"_s;
}

void tst_FindRun::whatIsFoundAndFollowedIsWhatAReaderFinds()
{
    QFETCH(QStringList, words);
    QFETCH(QString, letters);
    Changes changes(*m_document, unsigned(qHash(letters + words.join(u' ')) % 1000));
    for (int i = 0; i < 150; ++i)
        changes.change();
    FindOptions options;
    options.matchCase = letters.contains(u'c');
    options.wholeWord = letters.contains(u'w');
    options.accents = letters.contains(u'a');
    options.regularExpression = letters.contains(u'r');
    options.labels = !letters.contains(u'T');
    options.texts = !letters.contains(u'L');
    options.taggedOnly = letters.contains(u't');
    if (letters.contains(u'b'))
        options.branch = changes.any()->id();
    if (letters.contains(u'i'))
        new TextIndex(*m_document, 0);
    const QString expression = options.regularExpression ? words.at(0) : u'"' + words.join(u"\"\""_s) + u'"';
    FindRun followed(*m_document, FindQuery(expression, options), nullptr, 0);
    const FoundEntries known(followed);
    int seen = 0;
    for (int round = 0; round < 60; ++round) {
        // Sometimes while workers are at it.
        if (changes.below(3) == 0)
            QTest::qWait(0);
        for (int i = changes.below(6); i > 0; --i)
            changes.change();
        if (changes.below(2) == 0)
            continue;
        QVERIFY(known.wait());
        FindRun fresh(*m_document, FindQuery(expression, options), nullptr, 0);
        const FoundEntries anew(fresh);
        QVERIFY(anew.wait());
        QCOMPARE(known.hits(), anew.hits());
        QCOMPARE(followed.hitCount(), fresh.hitCount());
        QCOMPARE(followed.entryCount(), fresh.entryCount());
        const auto expected = foundByReader(*m_document, words, options);
        QCOMPARE(anew.hits().size(), expected.size());
        for (const auto &[entry, matches] : expected) {
            const EntryHits &hits = anew.hits().at(entry);
            QCOMPARE(std::size_t(hits.count), matches.size());
            for (std::size_t i = 0; i < std::min(matches.size(), hits.hits.size()); ++i) {
                QCOMPARE(hits.hits[i].offset, matches[i].start);
                QCOMPARE(hits.hits[i].matched, matches[i].length);
            }
            seen += hits.count;
        }
        const Entry *top = m_document->tree.root();
        std::size_t next = 0;
        for (const Entry *entry = top; entry; entry = nextInOutline(entry, top)) {
            if (next < anew.inOrder().size() && anew.inOrder()[next] == entry->id())
                ++next;
        }
        QCOMPARE(next, anew.inOrder().size());
    }
    QVERIFY2(seen > 20 || options.branch != EntryId::None, qPrintable(QString::number(seen)));
}

QTEST_GUILESS_MAIN(tst_FindRun)
#include "tst_FindRun.moc"
