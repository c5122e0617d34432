// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "search/SearchFixture.h"
#include "support/ErrorRecorder.h"
#include "support/MovedBytes.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"

#include <QSignalSpy>
#include <QTest>
#include <QTextTable>

#include <random>

using namespace Qt::StringLiterals;

// The search engine on a real text pane.
class tst_modSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init() { m_fixture = std::make_unique<SearchFixture>(); }

    void cleanup() { m_fixture.reset(); }

    void forwardFromACaretDoesNotWrap();
    void forwardFromAMatchWraps();
    void backwardsToTheOnlyMatchBeforeReportsFailure();
    void backwardsAfterWrappingReportsFailure();
    void backwardsBetweenMatchesReportsSuccess();
    void matchCaseAndWholeWord();
    void allTextsGoRoundFromTheSelectedEntry();
    void allTextsThatFindNothingShowTheSelectedEntryAgain();
    void allTextsThatBreakOffShowTheSelectedEntryAgain();
    void aSelectionThatAMatchMovesEndsTheNotice();
    void allTextsDoNotCountAsEdits();
    void allTextsFindWhatWasJustTyped();
    void allTextsBackwardsStayInTheEntry();
    void labelsSearchTheSelectedOneLast();
    void labelsThatFindNothingReturnToTheStart();
    void labelsThatFindNoOtherLeaveTheTextAsItIs_data();
    void labelsThatFindNoOtherLeaveTheTextAsItIs();
    void wholeWordsInLabels_data();
    void wholeWordsInLabels();
    void capitalsAreKeptInReplacements_data();
    void capitalsAreKeptInReplacements();
    void replacingIsStoredAndCounts();
    void replacingInALabel_data();
    void replacingInALabel();
    void replaceAllInAText();
    void wordsBesideAReplacementAreSeenAsTheyAreThen();
    void replacingAllIsOneStepToUndo();
    void replacingManyIsOneStepToUndo();
    void replacingByStepsIsOneStepToUndo_data();
    void replacingByStepsIsOneStepToUndo();
    void replacingLineBreaksLeavesTables_data();
    void replacingLineBreaksLeavesTables();
    void halvesOfLineBreaksAreLeft();
    void replacingOutlivesTheDialogAsAStepToUndo();
    void undoNeverLeavesTheEntry();
    void replaceAllThatWouldNeverEndEnds();
    void replaceAllLeavesDamagedTexts();
    void replaceAllTellsWhichTextsItLeft_data();
    void replaceAllTellsWhichTextsItLeft();
    void replaceAllInAllTexts();
    void replaceAllThatIsCancelledIsOneStepToUndo_data();
    void replaceAllThatIsCancelledIsOneStepToUndo();
    void replaceAllTellsHowFarItIs();
    void replaceAllInLabels();
    void replaceAllInALongLabel();
    void replacingInALongLabelMovesNoMoreForEachMatch();
    void aReplacementThatHoldsTheExpressionEnds();
    void noScopeSearchesNothing();
    void noScopeReplacesNothing_data();
    void noScopeReplacesNothing();
    void selectingAMatchIsAnnouncedOnce();
    void noBlankIsFoundInAPicture();
    void replacingAllLeavesPictures_data();
    void replacingAllLeavesPictures();
    void aMatchOverTheBorderOfCellsIsNotReplaced();
    void replacingAllLeavesSelectedCells();
    void replacingAllLeavesWhatAnEarlierDialogFound_data();
    void replacingAllLeavesWhatAnEarlierDialogFound();
    void withoutADocumentNothingIsFound();
    void theCommandsTakeTheSelectedText();
    void theMatchStaysSelectedWhenTheDialogCloses_data();
    void theMatchStaysSelectedWhenTheDialogCloses();
    void repeatingTakesTheValuesAsTheyAre();
    void randomSearchesAreAsTheStepsSay();

private:
    std::unique_ptr<SearchFixture> m_fixture;
};

void tst_modSearch::forwardFromACaretDoesNotWrap()
{
    SearchFixture &f = *m_fixture;
    f.show(u"cat and dog"_s);
    f.select(5, 0);
    g_sSearchFind = u"cat"_s;
    QVERIFY(!modSearch::SearchPerform());
    QCOMPARE(f.fake.dialogs.notices, QStringList{u"Search completed"_s});
    QCOMPARE(f.box.SelLength(), 0);
}

void tst_modSearch::forwardFromAMatchWraps()
{
    SearchFixture &f = *m_fixture;
    f.show(u"cat and dog cat"_s);
    f.select(12, 3);
    g_sSearchFind = u"cat"_s;
    QVERIFY(modSearch::SearchPerform());
    QCOMPARE(f.box.SelStart(), 0);
    QCOMPARE(f.box.SelText(), u"cat"_s);
}

void tst_modSearch::backwardsToTheOnlyMatchBeforeReportsFailure()
{
    SearchFixture &f = *m_fixture;
    f.show(u"cat and dog"_s);
    f.select(11, 0);
    g_sSearchFind = u"cat"_s;
    g_bSearchBackwards = true;
    QVERIFY(!modSearch::SearchPerform());
    QCOMPARE(f.box.SelText(), u"cat"_s);
    QCOMPARE(f.fake.dialogs.notices.size(), 1);
}

void tst_modSearch::backwardsAfterWrappingReportsFailure()
{
    SearchFixture &f = *m_fixture;
    f.show(u"a cat, a cat"_s);
    f.select(2, 3);
    g_sSearchFind = u"cat"_s;
    g_bSearchBackwards = true;
    QVERIFY(!modSearch::SearchPerform());
    QCOMPARE(f.box.SelStart(), 9);
}

void tst_modSearch::backwardsBetweenMatchesReportsSuccess()
{
    SearchFixture &f = *m_fixture;
    f.show(u"cat cat cat"_s);
    f.select(4, 3);
    g_sSearchFind = u"cat"_s;
    g_bSearchBackwards = true;
    QVERIFY(modSearch::SearchPerform());
    QCOMPARE(f.box.SelStart(), 0);
}

void tst_modSearch::matchCaseAndWholeWord()
{
    SearchFixture &f = *m_fixture;
    f.show(u"Cats cat CAT"_s);
    g_sSearchFind = u"cat"_s;
    QVERIFY(modSearch::SearchText());
    QCOMPARE(f.box.SelStart(), 0);
    f.select(0, 0);
    g_bSearchWholeWord = true;
    QVERIFY(modSearch::SearchText());
    QCOMPARE(f.box.SelStart(), 5);
    QVERIFY(modSearch::SearchText());
    QCOMPARE(f.box.SelStart(), 9);
    g_bSearchMatchCase = true;
    f.select(6, 0);
    QVERIFY(!modSearch::SearchText());
}

void tst_modSearch::allTextsGoRoundFromTheSelectedEntry()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"a cat"_s);
    Entry *first = f.add(root, u"First"_s, u"no"_s);
    Entry *second = f.add(root, u"Second"_s, u"cat, cat"_s);
    Entry *third = f.add(first, u"Third"_s, u"the cat"_s);
    modNodes::NodeSelectFull(f.document, second);
    f.select(3, 0);
    g_sSearchFind = u"cat"_s;
    g_sSearchScope = u"1"_s;
    const auto expectAt = [&f](const Entry *entry, int start) {
        QVERIFY(modSearch::SearchPerform());
        QCOMPARE(f.document.tree.selected(), entry);
        QCOMPARE(f.box.SelStart(), start);
        QCOMPARE(f.box.SelText(), u"cat"_s);
    };
    // A caret does not count: the entry is searched from its beginning.
    expectAt(second, 0);
    expectAt(second, 5);
    expectAt(third, 4);
    expectAt(root, 2);
    expectAt(second, 0);
    QVERIFY(f.box.PaneVisible());
}

void tst_modSearch::allTextsThatFindNothingShowTheSelectedEntryAgain()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"one"_s);
    Entry *child = f.add(root, u"Child"_s, u"two"_s);
    modNodes::NodeSelectFull(f.document, child);
    g_sSearchFind = u"three"_s;
    g_sSearchScope = u"1"_s;
    QVERIFY(!modSearch::SearchPerform());
    QCOMPARE(f.document.tree.selected(), child);
    QCOMPARE(f.box.Text(), u"two"_s);
    QVERIFY(f.box.PaneVisible());
}

void tst_modSearch::allTextsThatBreakOffShowTheSelectedEntryAgain()
{
    SearchFixture &f = *m_fixture;
    const ErrorRecorder errors;
    FakeDocument fake;
    f.windows.document = &fake.document;
    EntryTree &tree = rawOutline(fake.document).tree;
    plantOutline(tree, {u"Root"_s, u" A"_s, u" B"_s});
    for (int index = 1; index <= 3; ++index)
        tree.setStoredText(tree.collection().at(index), "text " + QByteArray::number(index));
    modNodes::NodeSelectFull(fake.document, tree.root());
    g_sSearchScope = u"1"_s;
    g_sSearchFind = u"text 3"_s;
    // A text is too much for the memory that is left, once.
    tree.setPendingText(tree.collection().at(3), [first = true]() mutable -> QByteArray {
        if (std::exchange(first, false))
            throw std::bad_alloc();
        return "text 3";
    });
    QVERIFY(!modSearch::SearchPerform());
    QCOMPARE(errors.summary(), QStringList(u"7 modSearch SearchAllTexts"_s));
    QCOMPARE(tree.selected(), tree.root());
    QVERIFY(fake.text.visible);
    QCOMPARE(fake.text.Text(), u"text 1"_s);
    f.windows.document = &f.document;
}

void tst_modSearch::aSelectionThatAMatchMovesEndsTheNotice()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"a dog"_s);
    Entry *child = f.add(root, u"Child"_s, u"a cat"_s);
    modNodes::NodeSelectFull(f.document, root);
    f.document.note(u"The file could not be read whole"_s);
    g_sSearchFind = u"cat"_s;
    g_sSearchScope = u"1"_s;
    QVERIFY(modSearch::SearchPerform());
    QCOMPARE(f.document.tree.selected(), child);
    QCOMPARE(f.document.noted(), QString());
    QCOMPARE(f.fake.statusText(), u"Child"_s);
}

void tst_modSearch::allTextsDoNotCountAsEdits()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"one"_s);
    Entry *child = f.add(root, u"Child"_s, u"two"_s);
    const QByteArray stored = f.document.tree.storedText(child);
    modNodes::NodeSelectFull(f.document, root);
    f.document.history.markSaved();
    g_sSearchFind = u"two"_s;
    g_sSearchScope = u"1"_s;
    QVERIFY(modSearch::SearchPerform());
    QVERIFY(!f.document.m_bDataChanged());
    QCOMPARE(f.document.tree.storedText(child), stored);
}

void tst_modSearch::allTextsFindWhatWasJustTyped()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"one"_s);
    Entry *child = f.add(root, u"Child"_s, u"two"_s);
    modNodes::NodeSelectFull(f.document, child);
    g_iSearchMode = 0;
    f.box.setSelText(u"new "_s);
    g_iSearchMode = 1;
    modNodes::NodeSelectFull(f.document, root);
    g_sSearchFind = u"new"_s;
    g_sSearchScope = u"1"_s;
    QVERIFY(modSearch::SearchPerform());
    QCOMPARE(f.document.tree.selected(), child);
}

void tst_modSearch::allTextsBackwardsStayInTheEntry()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"cat cat"_s);
    f.add(root, u"Child"_s, u"cat"_s);
    modNodes::NodeSelectFull(f.document, root);
    f.select(4, 3);
    g_sSearchFind = u"cat"_s;
    g_sSearchScope = u"1"_s;
    g_bSearchBackwards = true;
    QVERIFY(modSearch::SearchPerform());
    QCOMPARE(f.document.tree.selected(), root);
    QCOMPARE(f.box.SelStart(), 0);
}

void tst_modSearch::labelsSearchTheSelectedOneLast()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Cat root"_s, {});
    Entry *first = f.add(root, u"Cat one"_s, {});
    Entry *second = f.add(root, u"Dog"_s, {});
    Entry *third = f.add(root, u"Cat three"_s, {});
    modNodes::NodeSelectFull(f.document, first);
    g_sSearchFind = u"cat"_s;
    g_sSearchScope = u"2"_s;
    QVERIFY(modSearch::SearchPerform());
    QCOMPARE(f.document.tree.selected(), third);
    modNodes::NodeSelectFull(f.document, first);
    g_sSearchFind = u"cat one"_s;
    QVERIFY(modSearch::SearchPerform());
    QCOMPARE(f.document.tree.selected(), first);
    modNodes::NodeSelectFull(f.document, second);
    g_sSearchFind = u"cat r"_s;
    QVERIFY(modSearch::SearchPerform());
    QCOMPARE(f.document.tree.selected(), root);
}

void tst_modSearch::labelsThatFindNothingReturnToTheStart()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, {});
    Entry *child = f.add(root, u"Child"_s, u"text"_s);
    f.add(root, u"Other"_s, {});
    modNodes::NodeSelectFull(f.document, child);
    g_sSearchFind = u"nothing"_s;
    g_sSearchScope = u"2"_s;
    QVERIFY(!modSearch::SearchPerform());
    QCOMPARE(f.document.tree.selected(), child);
    QCOMPARE(f.box.Text(), u"text"_s);
}

void tst_modSearch::labelsThatFindNoOtherLeaveTheTextAsItIs_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<bool>("found");
    QTest::newRow("nothing is found") << u"zzz"_s << false;
    QTest::newRow("the selected entry is found") << u"root"_s << true;
}

void tst_modSearch::labelsThatFindNoOtherLeaveTheTextAsItIs()
{
    QFETCH(const QString, expression);
    QFETCH(const bool, found);
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"text"_s);
    f.add(root, u"Child"_s, u"another"_s);
    modNodes::NodeSelectFull(f.document, root);
    rawOutline(f.document).tree.setExpanded(root, false);
    g_iSearchMode = 0;
    f.box.setSelText(u"typed "_s);
    f.select(3, 2);
    g_iSearchMode = 1;
    g_sSearchScope = u"2"_s;
    g_sSearchFind = expression;
    QCOMPARE(modSearch::SearchPerform(), found);
    QCOMPARE(f.document.tree.selected(), root);
    QVERIFY(f.box.document()->isUndoAvailable());
    QCOMPARE(f.box.Text(), u"typed text"_s);
    QCOMPARE(f.box.SelStart(), 3);
    QCOMPARE(f.box.SelLength(), 2);
    QVERIFY(!root->expanded());
}

void tst_modSearch::wholeWordsInLabels_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<bool>("matches");
    QTest::newRow("the last character is not looked at") << u"cats"_s << true;
    QTest::newRow("one before the last is") << u"cats!"_s << false;
    QTest::newRow("a word") << u"a cat"_s << true;
    QTest::newRow("only the first occurrence counts") << u"concat cat"_s << false;
    QTest::newRow("a letter beyond ASCII is none") << u"\u00e4cat"_s << true;
    QTest::newRow("none") << u"dog"_s << false;
}

void tst_modSearch::wholeWordsInLabels()
{
    QFETCH(const QString, label);
    QFETCH(const bool, matches);
    g_sSearchFind = u"cat"_s;
    g_bSearchWholeWord = true;
    QCOMPARE(modSearch::SearchLabel(label, Qt::CaseInsensitive), matches);
}

void tst_modSearch::capitalsAreKeptInReplacements_data()
{
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<bool>("matchCase");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one word") << u"pear"_s << false << u"Pear"_s;
    QTest::newRow("two words") << u"red pear"_s << false << u"red pear"_s;
    QTest::newRow("match case") << u"pear"_s << true << u"pear"_s;
    QTest::newRow("nothing") << QString() << false << QString();
}

void tst_modSearch::capitalsAreKeptInReplacements()
{
    QFETCH(const QString, replacement);
    QFETCH(const bool, matchCase);
    QFETCH(const QString, expected);
    SearchFixture &f = *m_fixture;
    f.show(u"an Apple a day"_s);
    f.select(3, 5);
    g_sSearchReplace = replacement;
    g_bSearchMatchCase = matchCase;
    modSearch::SearchPerformReplace();
    QCOMPARE(f.box.Text(), u"an %1 a day"_s.arg(expected));
    QCOMPARE(f.box.SelStart(), 3);
    QCOMPARE(f.box.SelText(), expected);
}

void tst_modSearch::replacingIsStoredAndCounts()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"one two"_s);
    modNodes::NodeSelectFull(f.document, root);
    f.document.history.markSaved();
    g_sSearchFind = u"two"_s;
    g_sSearchReplace = u"three"_s;
    modSearch::SearchPerformReplace();
    QCOMPARE(f.box.Text(), u"one two"_s);
    QVERIFY(modSearch::SearchPerform());
    modSearch::SearchPerformReplace();
    QCOMPARE(f.textOf(root), u"one three"_s);
    QVERIFY(f.document.m_bDataChanged());
}

void tst_modSearch::replacingInALabel_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<bool>("wholeWord");
    QTest::addColumn<QString>("expected");
    QTest::newRow("every occurrence") << u"cat Cat concat"_s << false << u"dog dog condog"_s;
    QTest::newRow("up to the first that is no word") << u"cat concat cat"_s << true << u"dog concat cat"_s;
    QTest::newRow("none") << u"bird"_s << false << u"bird"_s;
}

void tst_modSearch::replacingInALabel()
{
    QFETCH(const QString, label);
    QFETCH(const bool, wholeWord);
    QFETCH(const QString, expected);
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, label, {});
    modNodes::NodeSelectFull(f.document, root);
    f.document.history.markSaved();
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    g_sSearchScope = u"2"_s;
    g_bSearchWholeWord = wholeWord;
    modSearch::SearchPerformReplace();
    QCOMPARE(root->label(), expected);
    QCOMPARE(f.document.m_bDataChanged(), label != expected);
}

void tst_modSearch::replaceAllInAText()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"Cat, cat\ncat"_s);
    modNodes::NodeSelectFull(f.document, root);
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    modSearch::SearchReplaceAll();
    // Nothing was selected, so that the first step replaces nothing and finds.
    QCOMPARE(f.textOf(root), u"Dog, dog\r\ndog"_s);
    QCOMPARE(f.fake.dialogs.notices.size(), 1);
}

void tst_modSearch::wordsBesideAReplacementAreSeenAsTheyAreThen()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"xab"_s);
    g_sSearchFind = u"ab"_s;
    g_sSearchScope = u"1"_s;
    g_bSearchWholeWord = true;
    for (const auto &[text, replacement, expected] :
         {std::tuple(u"xab"_s, u"-"_s, u"--"_s), std::tuple(u"-ab"_s, u"x"_s, u"xab"_s)}) {
        rawOutline(f.document).tree.setStoredText(root, NodeTextCompressIfRequired(SearchFixture::rtf(text)));
        modNodes::NodeSelectFull(f.document, root);
        f.select(0, 1);
        g_sSearchReplace = replacement;
        modSearch::SearchReplaceAll();
        QCOMPARE(f.textOf(root), expected);
    }
}

void tst_modSearch::replacingAllIsOneStepToUndo()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"cat, cat\ncat"_s);
    modNodes::NodeSelectFull(f.document, root);
    const QByteArray before = f.box.TextRTF();
    f.select(5, 3);
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    for (const QString &scope : {u"0"_s, u"1"_s}) {
        g_sSearchScope = scope;
        modSearch::SearchReplaceAll();
        QVERIFY(f.box.Text().contains(u"dog\r\ndog"_s));
        f.box.undo();
        QCOMPARE(f.box.TextRTF(), before);
        QVERIFY(!f.box.document()->isUndoAvailable());
        f.select(5, 3);
    }
}

void tst_modSearch::replacingManyIsOneStepToUndo()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"a cat\nand cats "_s.repeated(300));
    modNodes::NodeSelectFull(f.document, root);
    const QByteArray before = f.box.TextRTF();
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"elephant"_s;
    modSearch::SearchReplaceAll();
    QCOMPARE(f.box.Text().count(u"elephant"_s), 600);
    const QByteArray after = f.box.TextRTF();
    f.box.undo();
    QCOMPARE(f.box.TextRTF(), before);
    f.box.redo();
    QCOMPARE(f.box.TextRTF(), after);
}

void tst_modSearch::replacingByStepsIsOneStepToUndo_data()
{
    QTest::addColumn<bool>("isBackwards");
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QString>("expected");
    QTest::newRow("backwards") << true << u"cat"_s << u"dog"_s << u"one dog\r\ntwo dog\r\nthree cat!"_s;
    QTest::newRow("line breaks") << false << u"\r\n"_s << u"; "_s << u"one cat; two cat; three cat!"_s;
    QTest::newRow("nothing in their place") << false << u" cat"_s << QString() << u"one\r\ntwo\r\nthree!"_s;
}

void tst_modSearch::replacingByStepsIsOneStepToUndo()
{
    QFETCH(const bool, isBackwards);
    QFETCH(const QString, expected);
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"one cat\ntwo cat\nthree cat!"_s);
    modNodes::NodeSelectFull(f.document, root);
    f.select(28, 0);
    QTest::keyClicks(&f.box, u"?"_s);
    const QByteArray before = f.box.TextRTF();
    QFETCH(const QString, expression);
    QFETCH(const QString, replacement);
    g_sSearchFind = expression;
    g_sSearchReplace = replacement;
    g_bSearchBackwards = isBackwards;
    // Backwards from the last match, which is replaced as what is selected; forwards from the top.
    f.select(0, 0);
    if (isBackwards)
        f.select(13, 3);
    for (const QString &scope : {u"0"_s, u"1"_s}) {
        g_sSearchScope = scope;
        modSearch::SearchReplaceAll();
        QVERIFY(f.box.TextRTF() != before);
        f.document.history.undo();
        QCOMPARE(f.box.TextRTF(), before);
        f.document.history.redo();
        QCOMPARE(f.box.Text(), QString(expected).replace(u'!', u"!?"_s));
        // What was typed before is a step of its own.
        f.document.history.undo();
        f.document.history.undo();
        QVERIFY(f.box.Text().endsWith(u'!'));
        f.document.history.redo();
        f.select(0, 0);
        if (isBackwards)
            f.select(13, 3);
    }
}

void tst_modSearch::replacingLineBreaksLeavesTables_data()
{
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<int>("start");
    for (const QString &replacement : {QString(), u"; "_s}) {
        for (const int start : {0, 4, 9})
            QTest::addRow("'%s' from %d", qPrintable(replacement), start) << replacement << start;
    }
}

// The end of a cell reads as a line break; replacing it would take the table away, or go on without end.
void tst_modSearch::replacingLineBreaksLeavesTables()
{
    QFETCH(const QString, replacement);
    QFETCH(const int, start);
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, {});
    rawOutline(f.document)
        .tree.setStoredText(root,
                            "{\\rtf1 a\\par b\\par\\trowd\\cellx1000\\cellx2000\\pard\\intbl one\\cell two\\cell\\row"
                            "\\trowd\\cellx1000\\cellx2000\\pard\\intbl three\\cell four\\cell\\row\\pard c\\par d}");
    modNodes::NodeSelectFull(f.document, root);
    f.select(start, 0);
    g_sSearchFind = u"\r\n"_s;
    g_sSearchReplace = replacement;
    modSearch::SearchReplaceAll();
    for (const QString &cell : {u"one"_s, u"two"_s, u"three"_s, u"four"_s})
        QVERIFY2(f.box.Text().contains(cell), qPrintable(f.box.Text()));
    QVERIFY(f.box.Text().contains(u"c"_s + replacement + u'd'));
    QCOMPARE(f.fake.dialogs.notices, QStringList{u"Search completed"_s});
}

void tst_modSearch::halvesOfLineBreaksAreLeft()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, {});
    rawOutline(f.document).tree.setStoredText(root, "{\\rtf1 one\\line two\\par three\\line four\\par five}");
    for (const bool isBackwards : {false, true}) {
        modNodes::NodeSelectFull(f.document, root);
        f.fake.dialogs.notices.clear();
        g_sSearchFind = u"\n"_s;
        g_sSearchReplace = u", "_s;
        g_bSearchBackwards = isBackwards;
        modSearch::SearchReplaceAll();
        QVERIFY(f.box.Text().contains(u"three"_s));
        QVERIFY(f.box.Text().contains(u"\r\nfive"_s));
        QCOMPARE(f.fake.dialogs.notices, QStringList{u"Search completed"_s});
    }
}

void tst_modSearch::replacingOutlivesTheDialogAsAStepToUndo()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"one cat"_s);
    modNodes::NodeSelectFull(f.document, root);
    searchPorts().showDialog = [] {
        g_sSearchFind = u"cat"_s;
        g_sSearchReplace = u"dog"_s;
        modSearch::SearchPerform();
        modSearch::SearchPerformReplace();
    };
    modSearch::SearchReplace();
    QCOMPARE(f.box.Text(), u"one dog"_s);
    QCOMPARE(f.box.SelText(), u"dog"_s);
    f.box.undo();
    QCOMPARE(f.box.Text(), u"one cat"_s);
    QCOMPARE(f.textOf(root), u"one cat"_s);
}

void tst_modSearch::undoNeverLeavesTheEntry()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"a cat"_s);
    Entry *child = f.add(root, u"Child"_s, u"a cat"_s);
    modNodes::NodeSelectFull(f.document, root);
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    g_sSearchScope = u"1"_s;
    modSearch::SearchReplaceAll();
    QCOMPARE(f.document.tree.selected(), child);
    QVERIFY(!f.box.document()->isUndoAvailable());
    QCOMPARE(f.box.Text(), u"a dog"_s);
}

void tst_modSearch::replaceAllThatWouldNeverEndEnds()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"ab"_s);
    Entry *child = f.add(root, u"Child"_s, u"aab"_s);
    g_sSearchFind = u"ab"_s;
    g_sSearchReplace = u"ba"_s;
    for (const QString &scope : {u"0"_s, u"1"_s}) {
        g_sSearchScope = scope;
        modNodes::NodeSelectFull(f.document, child);
        modSearch::SearchReplaceAll();
        QCOMPARE(f.textOf(child), u"baa"_s);
    }
    // Each replacement makes more matches than it takes away.
    g_sSearchReplace = u"bbaa"_s;
    rawOutline(f.document).tree.setStoredText(child, NodeTextCompressIfRequired(SearchFixture::rtf(u"aab"_s)));
    g_sSearchScope = u"0"_s;
    modNodes::NodeSelectFull(f.document, child);
    modSearch::SearchReplaceAll();
    QVERIFY(f.box.Text().size() > 3);
    rawOutline(f.document).tree.setLabel(child, u"aab"_s);
    g_sSearchScope = u"2"_s;
    modSearch::SearchReplaceAll();
    QVERIFY(child->label().size() > 3);
}

void tst_modSearch::replaceAllLeavesDamagedTexts()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"a cat"_s);
    Entry *child = f.add(root, u"Child"_s, {});
    rawOutline(f.document).tree.setStoredText(child, "12,cat");
    modNodes::NodeSelectFull(f.document, root);
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    g_sSearchScope = u"1"_s;
    modSearch::SearchReplaceAll();
    QCOMPARE(f.textOf(root), u"a dog"_s);
    QCOMPARE(f.document.tree.storedText(child), QByteArray("12,cat"));
}

void tst_modSearch::replaceAllTellsWhichTextsItLeft_data()
{
    QTest::addColumn<QString>("scope");
    QTest::addColumn<bool>("backwards");
    QTest::addColumn<bool>("damagedIsShown");
    QTest::newRow("in the current text") << u"0"_s << false << true;
    QTest::newRow("step by step in it") << u"0"_s << true << true;
    QTest::newRow("in all texts, shown") << u"1"_s << false << true;
    QTest::newRow("in all texts, not shown") << u"1"_s << false << false;
}

void tst_modSearch::replaceAllTellsWhichTextsItLeft()
{
    QFETCH(const QString, scope);
    QFETCH(const bool, backwards);
    QFETCH(const bool, damagedIsShown);
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"a cat"_s);
    Entry *child = f.add(root, u"Lost"_s, {});
    rawOutline(f.document).tree.setStoredText(child, "12,cat");
    modNodes::NodeSelectFull(f.document, damagedIsShown ? child : root);
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    g_sSearchScope = scope;
    g_bSearchBackwards = backwards;
    modSearch::SearchReplaceAll();
    const auto &notices = f.document.notices();
    const auto told = std::ranges::find(notices, NoticeKind::NotReplaced, &DocumentNotice::kind);
    QVERIFY(told != notices.end());
    QCOMPARE(told->text, u"Nothing was replaced in the text of \"Lost\", which cannot be shown whole."_s);
    // It is about the last replacement.
    modNodes::NodeTextDiscard(f.document);
    rawOutline(f.document).tree.setStoredText(child, QByteArray());
    modNodes::NodeSelectFull(f.document, root);
    modSearch::SearchReplaceAll();
    QVERIFY(!f.document.hasNotice(NoticeKind::NotReplaced));
}

void tst_modSearch::replaceAllInAllTexts()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"a cat"_s);
    Entry *child = f.add(root, u"Child"_s, u"no"_s);
    Entry *other = f.add(root, u"Other"_s, u"cat cat"_s);
    modNodes::NodeSelectFull(f.document, child);
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    g_sSearchScope = u"1"_s;
    modSearch::SearchReplaceAll();
    QCOMPARE(f.textOf(root), u"a dog"_s);
    QCOMPARE(f.textOf(child), u"no"_s);
    QCOMPARE(f.textOf(other), u"dog dog"_s);
}

void tst_modSearch::replaceAllThatIsCancelledIsOneStepToUndo_data()
{
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<int>("rounds");
    QTest::addColumn<QString>("said");

    QTest::newRow("from text to text") << u"new"_s << 3 << u"Cancelled: 4 matches were replaced"_s;
    QTest::newRow("at once") << u"new"_s << 0 << u"Cancelled: 2 matches were replaced"_s;
    QTest::newRow("by single steps") << u""_s << 4 << u"Cancelled: 4 matches were replaced"_s;
    QTest::newRow("by single steps, at the first") << u""_s << 2 << u"Cancelled: 2 matches were replaced"_s;
}

void tst_modSearch::replaceAllThatIsCancelledIsOneStepToUndo()
{
    QFETCH(QString, replacement);
    QFETCH(int, rounds);
    QFETCH(QString, said);
    Entry *root = m_fixture->add(nullptr, u"Root"_s, u"old and old"_s);
    Entry *one = m_fixture->add(root, u"One"_s, u"old text"_s);
    Entry *two = m_fixture->add(root, u"Two"_s, u"nothing"_s);
    Entry *three = m_fixture->add(root, u"Three"_s, u"an old text"_s);
    Entry *four = m_fixture->add(root, u"Four"_s, u"an old, old text"_s);
    const std::vector<Entry *> entries{root, one, two, three, four};
    modNodes::NodeSelectFull(m_fixture->document, root);
    g_sSearchFind = u"old"_s;
    g_sSearchReplace = replacement;
    g_sSearchScope = u"1"_s;
    int asked = 0;
    int open = 0;
    searchPorts().showProgress = [&](const QString &) -> SearchProgress {
        ++open;
        return [&, closing = std::shared_ptr<int>(&open, [](int *windows) { --*windows; })](int, int) {
            return asked++ < rounds;
        };
    };
    modSearch::SearchReplaceAll();
    searchPorts().showProgress = nullptr;
    QCOMPARE(open, 0);
    QCOMPARE(m_fixture->document.said(), said);
    QVERIFY(m_fixture->fake.dialogs.notices.isEmpty());
    QCOMPARE(m_fixture->document.history.stepCount(), 1);
    int left = 0;
    for (const Entry *each : entries)
        left += int(m_fixture->textOf(each).count(u"old"_s));
    QCOMPARE(left, 6 - QStringView(said).sliced(11, 1).toInt());
    QVERIFY(m_fixture->document.history.undo());
    left = 0;
    for (const Entry *each : entries)
        left += int(m_fixture->textOf(each).count(u"old"_s));
    QCOMPARE(left, 6);
}

void tst_modSearch::replaceAllTellsHowFarItIs()
{
    Entry *root = m_fixture->add(nullptr, u"Root"_s, u"old"_s);
    for (int i = 0; i < 4; ++i)
        m_fixture->add(root, u"Entry"_s, u"old"_s);
    modNodes::NodeSelectFull(m_fixture->document, root);
    g_sSearchFind = u"old"_s;
    g_sSearchReplace = u"new"_s;
    g_sSearchScope = u"1"_s;
    QList<std::pair<int, int>> told;
    searchPorts().showProgress = [&](const QString &what) -> SearchProgress {
        [what] { QCOMPARE(what, u"Replacing - please wait..."_s); }();
        return [&](int done, int all) {
            told.append({done, all});
            return true;
        };
    };
    modSearch::SearchReplaceAll();
    searchPorts().showProgress = nullptr;
    QCOMPARE(told.mid(0, 5), (QList<std::pair<int, int>>{{1, 5}, {2, 5}, {3, 5}, {4, 5}, {5, 5}}));
    QCOMPARE(m_fixture->fake.dialogs.notices, QStringList{u"Search completed"_s});
}

void tst_modSearch::replaceAllInLabels()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"cat"_s, {});
    Entry *child = f.add(root, u"two cats"_s, {});
    modNodes::NodeSelectFull(f.document, root);
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    g_sSearchScope = u"2"_s;
    modSearch::SearchReplaceAll();
    QCOMPARE(root->label(), u"dog"_s);
    QCOMPARE(child->label(), u"two dogs"_s);
}

void tst_modSearch::replaceAllInALongLabel()
{
    SearchFixture &f = *m_fixture;
    constexpr int matches = 20'000;
    Entry *root = f.add(nullptr, QString(matches, u'e'), {});
    modNodes::NodeSelectFull(f.document, root);
    g_sSearchFind = u"e"_s;
    g_sSearchReplace = u"xyz"_s;
    g_sSearchScope = u"2"_s;
    modSearch::SearchReplaceAll();
    QCOMPARE(root->label(), u"xyz"_s.repeated(matches));
}

// Were the rest of the label moved for each match, twice the matches would move four times as much.
void tst_modSearch::replacingInALongLabelMovesNoMoreForEachMatch()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, QString(), {});
    modNodes::NodeSelectFull(f.document, root);
    g_sSearchFind = u"e"_s;
    g_sSearchReplace = u"xyz"_s;
    g_sSearchScope = u"2"_s;
    const auto bytesMoved = [&](int matches) {
        rawOutline(f.document).tree.setLabel(root, u"-e"_s.repeated(matches));
        const qint64 before = movedBytes();
        modSearch::SearchPerformReplace();
        const qint64 moved = movedBytes() - before;
        return root->label() == u"-xyz"_s.repeated(matches) ? moved : -1;
    };
    constexpr int matches = 10'000;
    const qint64 once = bytesMoved(matches);
    const qint64 twice = bytesMoved(2 * matches);
    QVERIFY2(once > matches, qPrintable(u"%1 bytes"_s.arg(once)));
    QVERIFY2(twice < once * 5 / 2, qPrintable(u"%1 bytes, then %2"_s.arg(once).arg(twice)));
}

void tst_modSearch::aReplacementThatHoldsTheExpressionEnds()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"cat"_s, u"cat"_s);
    modNodes::NodeSelectFull(f.document, root);
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"Cats"_s;
    for (const QString &scope : {u"0"_s, u"1"_s, u"2"_s}) {
        g_sSearchScope = scope;
        modSearch::SearchReplaceAll();
        QCOMPARE(root->label(), u"cat"_s);
        QCOMPARE(f.textOf(root), u"cat"_s);
    }
}

void tst_modSearch::noScopeSearchesNothing()
{
    SearchFixture &f = *m_fixture;
    f.show(u"cat"_s);
    g_sSearchFind = u"cat"_s;
    for (const QString &scope : {QString(), u"-1"_s}) {
        g_sSearchScope = scope;
        QVERIFY(!modSearch::SearchPerform());
    }
}

void tst_modSearch::noScopeReplacesNothing_data()
{
    QTest::addColumn<QString>("scope");
    QTest::newRow("none") << QString();
    QTest::newRow("none chosen") << u"-1"_s;
    QTest::newRow("beyond the list") << u"3"_s;
    QTest::newRow("no number") << u"All entry texts"_s;
}

void tst_modSearch::noScopeReplacesNothing()
{
    QFETCH(const QString, scope);
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"a cat"_s, u"a cat"_s);
    modNodes::NodeSelectFull(f.document, root);
    f.document.history.markSaved();
    f.select(2, 3);
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    g_sSearchScope = scope;
    QCOMPARE(searchScope(), SearchScope::None);
    modSearch::SearchPerformReplace();
    QCOMPARE(f.box.Text(), u"a cat"_s);
    QCOMPARE(root->label(), u"a cat"_s);
    QVERIFY(!f.document.m_bDataChanged());
}

void tst_modSearch::selectingAMatchIsAnnouncedOnce()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, {});
    Entry *child = f.add(root, u"Child"_s, {});
    modNodes::NodeSelectFull(f.document, root);
    const QSignalSpy announced(&f.document.tree, &EntryTree::selectedChanged);
    modSearch::SearchNodeSelect(child);
    QCOMPARE(announced.count(), 1);
    QCOMPARE(f.document.tree.selected(), child);
    modSearch::SearchNodeSelect(child);
    modSearch::SearchNodeSelect(nullptr);
    QCOMPARE(f.document.tree.selected(), child);
    f.windows.document = nullptr;
    modSearch::SearchNodeSelect(root);
    f.windows.document = &f.document;
    QCOMPARE(announced.count(), 1);
}

namespace
{

// "foo", a picture and "bar, foo bar".
const QByteArray withPicture("{\\rtf1 foo{\\pict\\pngblip\\picwgoal300\\pichgoal300 "
                             "89504e470d0a1a0a0000000d4948445200000001000000010806000000"
                             "1f15c4890000000d49444154789c6360606060000000050001a5f64540"
                             "0000000049454e44ae426082}bar, foo bar}");

} // namespace

void tst_modSearch::noBlankIsFoundInAPicture()
{
    SearchFixture &f = *m_fixture;
    f.box.setTextRTF(withPicture);
    QCOMPARE(f.box.Text(), u"foo bar, foo bar"_s);
    g_sSearchFind = u"foo bar"_s;
    for (int time = 0; time < 2; ++time) {
        QVERIFY(modSearch::SearchText());
        QCOMPARE(f.box.SelStart(), 9);
    }
    g_bSearchBackwards = true;
    f.select(16, 0);
    modSearch::SearchText();
    QCOMPARE(f.box.SelStart(), 9);
}

void tst_modSearch::replacingAllLeavesPictures_data()
{
    QTest::addColumn<QString>("scope");
    QTest::newRow("in the text") << u"0"_s;
    QTest::newRow("in all texts") << u"1"_s;
}

void tst_modSearch::replacingAllLeavesPictures()
{
    QFETCH(const QString, scope);
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, {});
    Entry *child = f.add(root, u"Child"_s, {});
    rawOutline(f.document).tree.setStoredText(root, withPicture);
    rawOutline(f.document).tree.setStoredText(child, withPicture);
    modNodes::NodeSelectFull(f.document, root);
    g_sSearchFind = u"foo bar"_s;
    g_sSearchReplace = u"baz"_s;
    g_sSearchScope = scope;
    modSearch::SearchReplaceAll();
    QCOMPARE(f.textOf(root), u"foo bar, baz"_s);
    QVERIFY(NodeTextDecompressIfRequired(f.document.tree.storedText(root)).contains("pngblip"));
    QCOMPARE(f.textOf(child), scope == u"1" ? u"foo bar, baz"_s : u"foo bar, foo bar"_s);
    QVERIFY(NodeTextDecompressIfRequired(f.document.tree.storedText(child)).contains("pngblip"));
}

void tst_modSearch::aMatchOverTheBorderOfCellsIsNotReplaced()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, {});
    rawOutline(f.document)
        .tree.setStoredText(root, "{\\rtf1\\trowd\\cellx1000\\cellx2000\\pard\\intbl alpha\\cell beta\\cell\\row}");
    modNodes::NodeSelectFull(f.document, root);
    const QString before = f.box.Text();
    g_sSearchFind = u"a\r\nb"_s;
    g_sSearchReplace = u"-"_s;
    QVERIFY(modSearch::SearchPerform());
    modSearch::SearchPerformReplace();
    QCOMPARE(f.box.Text(), before);
    QVERIFY(!f.box.document()->isUndoAvailable());
}

void tst_modSearch::replacingAllLeavesSelectedCells()
{
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, {});
    rawOutline(f.document)
        .tree.setStoredText(root,
                            "{\\rtf1\\trowd\\cellx1000\\cellx2000\\pard\\intbl one\\cell two\\cell\\row"
                            "\\trowd\\cellx1000\\cellx2000\\pard\\intbl three\\cell four\\cell\\row\\pard a cat}");
    modNodes::NodeSelectFull(f.document, root);
    // The left column.
    f.select(static_cast<int>(f.box.Text().indexOf(u"one"_s)), 0);
    QTextCursor cells = f.box.textCursor();
    cells.setPosition(cells.currentTable()->cellAt(1, 0).lastPosition(), QTextCursor::KeepAnchor);
    f.box.setTextCursor(cells);
    QVERIFY(f.box.SelHoldsCells());
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    modSearch::SearchReplaceAll();
    for (const QString &kept : {u"one"_s, u"two"_s, u"three"_s, u"four"_s, u"a dog"_s})
        QVERIFY2(f.box.Text().contains(kept), qPrintable(f.box.Text()));
}

void tst_modSearch::replacingAllLeavesWhatAnEarlierDialogFound_data()
{
    QTest::addColumn<QString>("scope");
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("text");
    for (const QString &scope : {u"0"_s, u"1"_s}) {
        QTest::addRow("something else, scope %s", qPrintable(scope)) << scope << u"cat"_s << u"a bird, a dog, a bird"_s;
        QTest::addRow("the same, scope %s", qPrintable(scope)) << scope << u"Dog"_s << u"a cat, a bird, a cat"_s;
    }
}

void tst_modSearch::replacingAllLeavesWhatAnEarlierDialogFound()
{
    QFETCH(const QString, scope);
    QFETCH(const QString, expression);
    QFETCH(const QString, text);
    SearchFixture &f = *m_fixture;
    Entry *root = f.add(nullptr, u"Root"_s, u"a cat, a dog, a cat"_s);
    modNodes::NodeSelectFull(f.document, root);
    g_sSearchScope = scope;
    searchPorts().showDialog = [] {
        g_sSearchFind = u"dog"_s;
        QVERIFY(modSearch::SearchPerform());
    };
    modSearch::SearchFind();
    QCOMPARE(f.box.SelText(), u"dog"_s);
    searchPorts().showDialog = [&expression] {
        g_sSearchFind = expression;
        g_sSearchReplace = u"bird"_s;
        modSearch::SearchReplaceAll();
    };
    modSearch::SearchReplace();
    QCOMPARE(f.textOf(root), text);
}

void tst_modSearch::withoutADocumentNothingIsFound()
{
    SearchFixture &f = *m_fixture;
    f.show(u"cat"_s);
    f.windows.document = nullptr;
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    int next = 0;
    int previous = 0;
    modSearch::SearchTextBackwards(0, 9, next, previous);
    QVERIFY(next == -1 && previous == -1);
    for (const QString &scope : {u"0"_s, u"1"_s, u"2"_s}) {
        g_sSearchScope = scope;
        QVERIFY(!modSearch::SearchPerform());
        modSearch::SearchPerformReplace();
        modSearch::SearchReplaceAll();
    }
    QVERIFY(!modSearch::SearchAllText());
    modSearch::SearchNodeSelect(nullptr);
    QCOMPARE(f.box.Text(), u"cat"_s);
}

void tst_modSearch::theCommandsTakeTheSelectedText()
{
    SearchFixture &f = *m_fixture;
    g_iSearchMode = 0;
    Entry *root = f.add(nullptr, u"Root"_s, u"one two"_s);
    modNodes::NodeSelectFull(f.document, root);
    f.select(4, 3);
    QList<qint16> modes;
    searchPorts().showDialog = [&modes] { modes.append(g_iSearchMode); };
    modSearch::SearchFind();
    QCOMPARE(g_sSearchFind, u"two"_s);
    modSearch::SearchReplace();
    QCOMPARE(modes, (QList<qint16>{1, 2}));
    QCOMPARE(g_iSearchMode, qint16(0));
    // Without a selection the old expression stays.
    QCOMPARE(g_sSearchFind, u"two"_s);
    QCOMPARE(f.box.Text(), u"one two"_s);
}

void tst_modSearch::theMatchStaysSelectedWhenTheDialogCloses_data()
{
    QTest::addColumn<bool>("shownAnew");
    QTest::newRow("the text is shown as it is") << false;
    QTest::newRow("the text is shown anew") << true;
}

void tst_modSearch::theMatchStaysSelectedWhenTheDialogCloses()
{
    QFETCH(const bool, shownAnew);
    SearchFixture &f = *m_fixture;
    g_iSearchMode = 0;
    Entry *root = f.add(nullptr, u"Root"_s, u"cat dog cat"_s);
    modNodes::NodeSelectFull(f.document, root);
    // As the pane itself writes it, there is nothing to be shown anew.
    if (!shownAnew)
        modNodes::NodeTextPut(f.document, root);
    searchPorts().showDialog = [] {
        g_sSearchFind = u"cat"_s;
        QVERIFY(modSearch::SearchPerform());
    };
    modSearch::SearchFind();
    QCOMPARE(f.box.SelStart(), 0);
    QCOMPARE(f.box.SelText(), u"cat"_s);
    modSearch::SearchRepeat();
    QCOMPARE(f.box.SelStart(), 8);
    QCOMPARE(f.box.SelText(), u"cat"_s);
}

void tst_modSearch::repeatingTakesTheValuesAsTheyAre()
{
    SearchFixture &f = *m_fixture;
    g_iSearchMode = 0;
    f.show(u"one two one"_s);
    g_sSearchFind = u"one"_s;
    modSearch::SearchRepeat();
    QCOMPARE(f.box.SelStart(), 0);
    modSearch::SearchRepeat();
    QCOMPARE(f.box.SelStart(), 8);
    QCOMPARE(g_iSearchMode, qint16(0));
}

// The long way: every text goes through the pane, as the steps of the search say.
static bool searchAllTextsSlowly(Document &document)
{
    const EntryCollection &entries = document.tree.collection();
    const int first = document.tree.selected() ? entries.indexOf(document.tree.selected()) : 1;
    std::vector<int> order;
    for (int i = first; i <= document.tree.entryCount(); ++i)
        order.push_back(i);
    for (int i = 1; i < first; ++i)
        order.push_back(i);
    for (std::size_t i = 0; i < order.size(); ++i) {
        Entry *entry = entries.at(order[i]);
        if (i > 0) {
            modNodes::NodeTextGet(document, entry);
            document.view()->txtRTF.setSelStart(0);
        }
        if (modSearch::SearchAllText()) {
            modSearch::SearchNodeSelect(entry);
            return true;
        }
    }
    modNodes::NodeTextGetSelected();
    document.view()->txtRTF.setSelStart(0);
    return false;
}

void tst_modSearch::randomSearchesAreAsTheStepsSay()
{
    std::mt19937 random(20260305);
    const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
    const QString words[] = {u"ab"_s, u"Ab"_s, u"abc"_s, u" "_s, u"\n"_s, u"b"_s, u"-"_s, u"ab1"_s};
    for (int round = 0; round < 60; ++round) {
        // One after the other: each registers its ports and takes them back.
        m_fixture.reset();
        m_fixture = std::make_unique<SearchFixture>();
        SearchFixture &f = *m_fixture;
        const auto text = [&] {
            QString made;
            for (int i = below(9); i > 0; --i)
                made += words[below(int(std::size(words)))];
            return made;
        };
        Entry *root = f.add(nullptr, u"Root"_s, text());
        for (int i = below(8); i > 0; --i)
            f.add(root, u"Child"_s, text());
        const int start = below(f.document.tree.entryCount()) + 1;
        g_sSearchFind = words[below(3)];
        g_sSearchScope = u"1"_s;
        g_bSearchMatchCase = below(2) == 0;
        g_bSearchWholeWord = below(2) == 0;
        g_bSearchBackwards = below(3) == 0;

        struct Outcome {
            bool found;
            const Entry *selected;
            int start;
            int length;
            QString text;
            bool operator==(const Outcome &) const = default;
        };

        const auto outcomes = [&](bool (*search)(Document &)) {
            modNodes::NodeSelectFull(f.document, f.document.tree.collection().at(start));
            f.select(0, 0);
            std::vector<Outcome> all;
            for (int i = 0; i < 12; ++i) {
                const bool found = search(f.document);
                all.push_back({found, f.document.tree.selected(), f.box.SelStart(), f.box.SelLength(), f.box.Text()});
            }
            return all;
        };
        const auto expected = outcomes(searchAllTextsSlowly);
        const auto actual = outcomes([](Document &) { return modSearch::SearchAllTexts(); });
        QVERIFY2(actual == expected, qPrintable(u"round %1"_s.arg(round)));
    }
}

QTEST_MAIN(tst_modSearch)
#include "tst_modSearch.moc"
