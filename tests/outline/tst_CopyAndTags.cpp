// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/OutlineFixture.h"
#include "support/RawOutline.h"

#include "support/ErrorRecorder.h"

#include "outline/modOutline.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_CopyAndTags : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void cleanup() { modOutline::copiedEntry().clear(); }

    void copyWithNothingSelectedEmptiesTheCopiedEntry();
    void pasteCopiesTheEntryAsItIsThen();
    void pasteBetweenDocuments();
    void pasteWithTheRootSelectedComesFirst();
    void pasteIntoTheCopiedSubtreeTerminates();
    void pasteAndDeleteMovesOnce();
    void pasteAndDeleteIntoItselfLosesNothing();
    void pasteAndDeleteOfTheRootWithNothingSelectedLosesNothing();
    void pasteAndDeleteTakesTheSelectionOfAnotherDocument();
    void pasteAndDeleteLeavesAnotherDocumentItsRoot();
    void copiesShareNothingWithTheirSource();
    void theCopiedEntryDiesWithItsEntry();
    void theCopiedEntryDiesWithItsDocument();
    void deleteSelectsASurvivor_data();
    void deleteSelectsASurvivor();
    void aLongLabelIsShortenedInTheQuestionAlone();
    void deleteOfTheRootEmptiesTheOutline();
    void aDeclinedDeleteMarksTheDocumentChanged();
    void theRootIsNeverTagged();
    void taggingTogglesAndIsAnnounced();
    void taggedEntriesPasteInOrderOfInsertion();
    void taggedEntriesPasteIntoTheRootWithNothingSelected();
    void aTaggedEntryInsideATaggedOnePastesOnce();
    void deleteTaggedSelectsTheRootWhenTheSelectionGoes_data();
    void deleteTaggedSelectsTheRootWhenTheSelectionGoes();
    void deletingTheTaggedEntriesOfAnOpenParentReleasesTheLevel_data();
    void deletingTheTaggedEntriesOfAnOpenParentReleasesTheLevel();
    void pastingAnOpenEntryReleasesTheLevel_data();
    void pastingAnOpenEntryReleasesTheLevel();
    void aDeclinedDeleteOfTaggedEntriesKeepsThem();
    void taggedEntriesThatDoNotFitLeaveTheLastCopySelected();
    void tenThousandTaggedEntries();
};

void tst_CopyAndTags::copyWithNothingSelectedEmptiesTheCopiedEntry()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s});
    fixture.select(u"A"_s);
    modOutline::OutlineCopy();
    QCOMPARE(modOutline::copiedEntry().entry(), fixture.entry(u"A"_s));
    QVERIFY(!fixture.document().m_bDataChanged());
    rawOutline(fixture.document()).tree.select(nullptr);
    modOutline::OutlineCopy();
    QVERIFY(!modOutline::copiedEntry().entry());
    modOutline::OutlinePaste();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A"_s}));
}

void tst_CopyAndTags::pasteCopiesTheEntryAsItIsThen()
{
    OutlineFixture fixture({u"Root +"_s, u" A +*"_s, u"  A1"_s, u" B"_s});
    fixture.select(u"A"_s);
    modOutline::OutlineCopy();
    rawOutline(fixture.document()).tree.setLabel(fixture.entry(u"A1"_s), u"changed"_s);
    fixture.select(u"B"_s);
    modOutline::OutlinePaste();
    QCOMPARE(fixture.dump(),
             QStringList({u"Root +"_s, u" A +*"_s, u"  changed"_s, u" B"_s, u" A +<"_s, u"  changed"_s}));
    QVERIFY(fixture.document().m_bDataChanged());
}

void tst_CopyAndTags::pasteBetweenDocuments()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s});
    rawOutline(fixture.document()).tree.setStoredText(fixture.entry(u"A"_s), "words");
    fixture.select(u"A"_s);
    modOutline::OutlineCopy();
    modDoc::DocNew();
    plantOutline(rawOutline(fixture.document()).tree, {u"Other <"_s});
    modOutline::OutlinePaste();
    QCOMPARE(fixture.dump(), QStringList({u"Other +"_s, u" A <"_s}));
    QCOMPARE(fixture.document().tree.storedText(fixture.entry(u"A"_s)), QByteArray("words"));
}

void tst_CopyAndTags::pasteWithTheRootSelectedComesFirst()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B"_s});
    fixture.select(u"B"_s);
    modOutline::OutlineCopy();
    fixture.select(u"Root"_s);
    modOutline::OutlinePaste();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" B <"_s, u" A"_s, u" B"_s}));
}

void tst_CopyAndTags::pasteIntoTheCopiedSubtreeTerminates()
{
    OutlineFixture fixture({u"Root +"_s, u" A +"_s, u"  A1"_s});
    fixture.select(u"A"_s);
    modOutline::OutlineCopy();
    fixture.select(u"A1"_s);
    modOutline::OutlinePaste();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s, u"  A +<"_s, u"   A1"_s}));
}

void tst_CopyAndTags::pasteAndDeleteMovesOnce()
{
    OutlineFixture fixture({u"Root +"_s, u" A +"_s, u"  A1"_s, u" B"_s});
    fixture.select(u"A"_s);
    modOutline::OutlineCopy();
    fixture.select(u"B"_s);
    modOutline::OutlinePasteAndDelete();
    const QStringList moved = {u"Root +"_s, u" B"_s, u" A +<"_s, u"  A1"_s};
    QCOMPARE(fixture.dump(), moved);
    modOutline::OutlinePasteAndDelete();
    QCOMPARE(fixture.dump(), moved);
}

void tst_CopyAndTags::pasteAndDeleteIntoItselfLosesNothing()
{
    const QStringList outline = {u"Root +"_s, u" A +"_s, u"  A1 +"_s, u"   A11 <"_s};
    OutlineFixture fixture(outline);
    modOutline::copiedEntry().set(&fixture.document().tree, fixture.entry(u"A"_s));
    modOutline::OutlinePasteAndDelete();
    QCOMPARE(fixture.dump(), outline);
}

void tst_CopyAndTags::pasteAndDeleteOfTheRootWithNothingSelectedLosesNothing()
{
    const QStringList outline = {u"Root +"_s, u" A"_s};
    OutlineFixture fixture(outline);
    modOutline::copiedEntry().set(&fixture.document().tree, fixture.document().tree.root());
    modOutline::OutlinePasteAndDelete();
    QCOMPARE(fixture.dump(), outline);
}

void tst_CopyAndTags::pasteAndDeleteTakesTheSelectionOfAnotherDocument()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B +"_s, u"  B1"_s});
    Document &source = fixture.document();
    rawOutline(source).tree.setStoredText(fixture.entry(u"A"_s), "text of A");
    fixture.select(u"B"_s);
    modOutline::OutlineCopy();
    fixture.select(u"B1"_s);
    modDoc::DocNew();
    plantOutline(rawOutline(fixture.document()).tree, {u"Other <"_s});
    source.history.markSaved();
    modOutline::OutlinePasteAndDelete();
    QCOMPARE(fixture.dump(), QStringList({u"Other +"_s, u" B +<"_s, u"  B1"_s}));
    QVERIFY(source.m_bDataChanged());
    QCOMPARE(dumpOutline(source.tree), QStringList({u"Root +"_s, u" A <"_s}));
    QCOMPARE(fixture.fakes.windows.fakeOf(source).text.Text(), u"text of A"_s);
    QCOMPARE(modNodes::nodCurrent().entry(), fixture.entry(u"B"_s));
}

void tst_CopyAndTags::pasteAndDeleteLeavesAnotherDocumentItsRoot()
{
    OutlineFixture fixture({u"Root +<"_s, u" A"_s});
    Document &source = fixture.document();
    rawOutline(source).tree.setStoredText(source.tree.root(), "text of the root");
    fixture.select(u"Root"_s);
    modOutline::OutlineCopy();
    modDoc::DocNew();
    plantOutline(rawOutline(fixture.document()).tree, {u"Other <"_s});
    modOutline::OutlinePasteAndDelete();
    QCOMPARE(fixture.dump(), QStringList({u"Other +"_s, u" Root +<"_s, u"  A"_s}));
    QCOMPARE(dumpOutline(source.tree), QStringList({u"Root +<"_s, u" A"_s}));
    QCOMPARE(fixture.fakes.windows.fakeOf(source).text.Text(), u"text of the root"_s);
    QVERIFY(!source.m_bDataChanged());
}

void tst_CopyAndTags::copiesShareNothingWithTheirSource()
{
    OutlineFixture fixture({u"Root +"_s, u" A +<"_s, u"  A1"_s});
    EntryTree &tree = rawOutline(fixture.document()).tree;
    tree.setStoredText(fixture.entry(u"A1"_s), "text");
    modOutline::OutlineCopy();
    modOutline::OutlinePaste();
    Entry *copy = tree.root()->child(1)->child(0);
    tree.setLabel(copy, u"another"_s);
    tree.setStoredText(copy, "another text");
    tree.setTagged(copy, true);
    tree.setExpanded(copy, true);
    tree.insert(Relationship::tvwChild, copy);
    QCOMPARE(fixture.dump().mid(0, 3), QStringList({u"Root +"_s, u" A +"_s, u"  A1"_s}));
    QCOMPARE(tree.storedText(fixture.entry(u"A1"_s)), QByteArray("text"));
    modNodes::NodeDelete(fixture.document(), fixture.entry(u"A"_s));
    QCOMPARE(tree.storedText(fixture.entry(u"another"_s)), QByteArray("another text"));
}

void tst_CopyAndTags::theCopiedEntryDiesWithItsEntry()
{
    OutlineFixture fixture({u"Root +"_s, u" A +"_s, u"  A1"_s});
    fixture.select(u"A1"_s);
    modOutline::OutlineCopy();
    modNodes::NodeDelete(fixture.document(), fixture.entry(u"A"_s));
    QVERIFY(!modOutline::copiedEntry().entry());
}

void tst_CopyAndTags::theCopiedEntryDiesWithItsDocument()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s});
    fixture.select(u"A"_s);
    modOutline::OutlineCopy();
    QVERIFY(fixture.document().view()->window.close());
    QVERIFY(!modOutline::copiedEntry().entry());
}

void tst_CopyAndTags::deleteSelectsASurvivor_data()
{
    QTest::addColumn<QString>("deleted");
    QTest::addColumn<QString>("survivor");
    QTest::newRow("the previous sibling") << u"B"_s << u"A"_s;
    QTest::newRow("the next sibling of a first child") << u"A"_s << u"B"_s;
    QTest::newRow("the parent of an only child") << u"B1"_s << u"B"_s;
}

void tst_CopyAndTags::deleteSelectsASurvivor()
{
    QFETCH(QString, deleted);
    QFETCH(QString, survivor);
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B +"_s, u"  B1"_s});
    fixture.select(deleted);
    fixture.fakes.dialogs.answers = {Answer::Yes};
    modOutline::OutlineDelete();
    QCOMPARE(fixture.fakes.dialogs.questions,
             QStringList{u"Do you really want to delete the entry '"_s + deleted + u"'?"_s});
    QVERIFY(!fixture.entry(deleted));
    QCOMPARE(fixture.document().tree.selected(), fixture.entry(survivor));
}

void tst_CopyAndTags::aLongLabelIsShortenedInTheQuestionAlone()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B"_s});
    const QString label = u"a word and "_s.repeated(300);
    Entry *entry = fixture.entry(u"A"_s);
    rawOutline(fixture.document()).tree.setLabel(entry, label);
    modNodes::NodeSelect(fixture.document(), entry);
    fixture.fakes.dialogs.answers = {Answer::No};
    modOutline::OutlineDelete();
    QCOMPARE(fixture.fakes.dialogs.questions,
             QStringList{u"Do you really want to delete the entry '"_s + label.left(79) + u"…'?"_s});
    QCOMPARE(entry->label(), label);
    // As long as it may be.
    rawOutline(fixture.document()).tree.setLabel(entry, label.left(80));
    fixture.fakes.dialogs.answers = {Answer::No};
    modOutline::OutlineDelete();
    QCOMPARE(fixture.fakes.dialogs.questions.last(),
             u"Do you really want to delete the entry '"_s + label.left(80) + u"'?"_s);
}

void tst_CopyAndTags::deleteOfTheRootEmptiesTheOutline()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s});
    fixture.select(u"Root"_s);
    QCOMPARE(fixture.fakes.statusText(), u"Root"_s);
    fixture.fakes.dialogs.answers = {Answer::Yes};
    modOutline::OutlineDelete();
    QCOMPARE(fixture.dump(), QStringList());
    QCOMPARE(fixture.fake().text.Text(), QString());
    QCOMPARE(fixture.fakes.statusText(), QString());
}

void tst_CopyAndTags::aDeclinedDeleteMarksTheDocumentChanged()
{
    OutlineFixture fixture({u"Root +"_s, u" A <"_s});
    fixture.fakes.dialogs.answers = {Answer::Cancel, Answer::No};
    modOutline::OutlineDelete();
    modOutline::OutlineDelete();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A <"_s}));
    QVERIFY(fixture.document().m_bDataChanged());
}

void tst_CopyAndTags::theRootIsNeverTagged()
{
    OutlineFixture fixture({u"Root <"_s});
    modOutline::OutlineTaggedEntry();
    QCOMPARE(fixture.dump(), QStringList{u"Root <"_s});
    QVERIFY(fixture.document().m_bDataChanged());
}

void tst_CopyAndTags::taggingTogglesAndIsAnnounced()
{
    OutlineFixture fixture({u"Root +"_s, u" A <"_s});
    const QSignalSpy announced(&fixture.document().history, &History::changed);
    modOutline::OutlineTaggedEntry();
    QVERIFY(fixture.entry(u"A"_s)->tagged());
    QCOMPARE(announced.count(), 1);
    modOutline::OutlineTaggedEntry();
    QVERIFY(!fixture.entry(u"A"_s)->tagged());
}

void tst_CopyAndTags::taggedEntriesPasteInOrderOfInsertion()
{
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B *"_s, u" C"_s});
    Entry *late = modNodes::NodeInsert(fixture.document(), Relationship::tvwPrevious, fixture.entry(u"A"_s));
    rawOutline(fixture.document()).tree.setLabel(late, u"late"_s);
    modNodes::NodeTagOn(fixture.document(), late);
    fixture.select(u"C"_s);
    modOutline::OutlinePasteTaggedEntries();
    QCOMPARE(fixture.dump(),
             QStringList({u"Root +"_s, u" late *"_s, u" A"_s, u" B *"_s, u" C"_s, u" B"_s, u" late <"_s}));
}

void tst_CopyAndTags::taggedEntriesPasteIntoTheRootWithNothingSelected()
{
    OutlineFixture fixture({u"Root +"_s, u" A *"_s, u" B"_s});
    modOutline::OutlinePasteTaggedEntries();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A *"_s, u" B"_s, u" A <"_s}));
}

void tst_CopyAndTags::aTaggedEntryInsideATaggedOnePastesOnce()
{
    OutlineFixture fixture({u"Root +"_s, u" A +*"_s, u"  A1 +"_s, u"   A11 *"_s, u" B <"_s});
    modOutline::OutlinePasteTaggedEntries();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A +*"_s, u"  A1 +"_s, u"   A11 *"_s, u" B"_s, u" A +<"_s,
                                          u"  A1 +"_s, u"   A11"_s}));
}

void tst_CopyAndTags::deleteTaggedSelectsTheRootWhenTheSelectionGoes_data()
{
    QTest::addColumn<QString>("selected");
    QTest::addColumn<QString>("afterwards");
    QTest::newRow("a tagged entry") << u"A"_s << u"Root"_s;
    QTest::newRow("an untagged entry inside a tagged one") << u"A1"_s << u"Root"_s;
    QTest::newRow("an entry that stays") << u"B"_s << u"B"_s;
}

void tst_CopyAndTags::deleteTaggedSelectsTheRootWhenTheSelectionGoes()
{
    QFETCH(QString, selected);
    QFETCH(QString, afterwards);
    OutlineFixture fixture({u"Root +"_s, u" A +*"_s, u"  A1"_s, u" B +"_s, u"  B1 *"_s});
    fixture.select(selected);
    fixture.fakes.dialogs.answers = {Answer::Yes};
    modOutline::OutlineDeleteTaggedEntries();
    QCOMPARE(fixture.fakes.dialogs.questions,
             QStringList{u"Do you really want to delete the tagged entries, including any children?"_s});
    QVERIFY(!fixture.entry(u"A"_s));
    QVERIFY(!fixture.entry(u"B1"_s));
    QVERIFY(!fixture.entry(u"B"_s)->expanded());
    QCOMPARE(fixture.document().tree.selected(), fixture.entry(afterwards));
}

void tst_CopyAndTags::deletingTheTaggedEntriesOfAnOpenParentReleasesTheLevel_data()
{
    QTest::addColumn<QStringList>("outline");
    QTest::addColumn<int>("level");
    QTest::newRow("its only child") << QStringList{u"Root +<"_s, u" A +"_s, u"  B *"_s, u" C"_s} << 0;
    QTest::newRow("one of two") << QStringList{u"Root +<"_s, u" A +"_s, u"  B *"_s, u"  B2"_s, u" C"_s} << -1;
    QTest::newRow("all that the root has") << QStringList{u"Root +<"_s, u" A *+"_s, u"  B"_s, u" C *"_s} << 1;
}

void tst_CopyAndTags::deletingTheTaggedEntriesOfAnOpenParentReleasesTheLevel()
{
    QFETCH(const QStringList, outline);
    QFETCH(const int, level);
    OutlineFixture fixture(outline);
    modOutline::OutlineExpandAll();
    QCOMPARE(fixture.document().m_iExpansionLevel(), qint16(-1));
    fixture.fakes.dialogs.answers = {Answer::Yes};
    modOutline::OutlineDeleteTaggedEntries();
    QCOMPARE(fixture.document().m_iExpansionLevel(), static_cast<qint16>(level));
}

void tst_CopyAndTags::pastingAnOpenEntryReleasesTheLevel_data()
{
    QTest::addColumn<bool>("open");
    QTest::addColumn<bool>("tagged");
    QTest::newRow("open") << true << false;
    QTest::newRow("closed") << false << false;
    QTest::newRow("open and tagged") << true << true;
    QTest::newRow("closed and tagged") << false << true;
}

void tst_CopyAndTags::pastingAnOpenEntryReleasesTheLevel()
{
    QFETCH(const bool, open);
    QFETCH(const bool, tagged);
    OutlineFixture fixture({u"Root +"_s, u" A *"_s, u"  B"_s, u" C <"_s});
    modOutline::OutlineExpandToLevel(2);
    rawOutline(fixture.document()).tree.setExpanded(fixture.entry(u"A"_s), open);
    fixture.document().setExpansionLevel(2);
    modOutline::copiedEntry().set(&fixture.document().tree, fixture.entry(u"A"_s));
    if (tagged)
        modOutline::OutlinePasteTaggedEntries();
    else
        modOutline::OutlinePaste();
    QCOMPARE(fixture.document().tree.entryCount(), 6);
    QCOMPARE(fixture.document().m_iExpansionLevel(), static_cast<qint16>(open ? 0 : 2));
}

void tst_CopyAndTags::aDeclinedDeleteOfTaggedEntriesKeepsThem()
{
    OutlineFixture fixture({u"Root +"_s, u" A *<"_s});
    fixture.fakes.dialogs.answers = {Answer::No, Answer::Cancel};
    modOutline::OutlineDeleteTaggedEntries();
    modOutline::OutlineDeleteTaggedEntries();
    QCOMPARE(fixture.dump(), QStringList({u"Root +"_s, u" A *<"_s}));
    QVERIFY(fixture.document().m_bDataChanged());
}

void tst_CopyAndTags::taggedEntriesThatDoNotFitLeaveTheLastCopySelected()
{
    OutlineFixture fixture({u"Root +<"_s, u" A *"_s, u" B *"_s});
    const ErrorRecorder errors;
    EntryTree &tree = rawOutline(fixture.document()).tree;
    tree.setStoredText(fixture.entry(u"A"_s), "text of A");
    {
        const BulkChange bulk(tree);
        while (tree.entryCount() < EntryTree::maximumCount - 1)
            tree.insert(Relationship::tvwChild, tree.root());
    }
    modOutline::OutlinePasteTaggedEntries();
    QCOMPARE(errors.summary(), QStringList{u"6 modOutline OutlinePasteTaggedEntries"_s});
    QVERIFY(fixture.document().hasNotice(NoticeKind::DocumentFull));
    QCOMPARE(tree.selected(), tree.root()->firstChild()->lastSibling());
    QCOMPARE(tree.selected()->label(), u"A"_s);
    QCOMPARE(fixture.fake().text.Text(), u"text of A"_s);
}

void tst_CopyAndTags::tenThousandTaggedEntries()
{
    QStringList outline = {u"Root +<"_s};
    for (int i = 0; i < 10000; ++i)
        outline.append(u" entry *"_s);
    OutlineFixture fixture(outline);
    modOutline::OutlinePasteTaggedEntries();
    QCOMPARE(fixture.document().tree.entryCount(), 20001);
    fixture.fakes.dialogs.answers = {Answer::Yes};
    modOutline::OutlineDeleteTaggedEntries();
    QCOMPARE(fixture.document().tree.entryCount(), 10001);
    QCOMPARE(fixture.document().tree.brokenInvariant(), QString());
}

QTEST_GUILESS_MAIN(tst_CopyAndTags)
#include "tst_CopyAndTags.moc"
