// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "EveryCommand.h"
#include "OutlineFixture.h"
#include "document/UndoRedo.h"
#include "document/modFile.h"
#include "support/ErrorRecorder.h"
#include "support/OutlineState.h"
#include "support/RawOutline.h"

#include <QTest>

using namespace Qt::StringLiterals;

// Every command of the outline undone and redone in a document.

namespace
{

QStringList grownOutline()
{
    return {u"Root +"_s, u" D +"_s, u"  D2 *"_s, u"  D1"_s, u" B +*"_s, u"  B1"_s, u"   B11"_s, u"  B2"_s, u" C"_s};
}

QStringList stateOf(Document &document)
{
    return ::stateOf(document.outline());
}

} // namespace

class tst_UndoCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCommandIsUndoneAndRedone_data();
    void everyCommandIsUndoneAndRedone();
    void everySequenceIsUndoneToTheStart();
    void aCommandIsOneStepWithAName_data();
    void aCommandIsOneStepWithAName();
    void aSortingOfManyEntriesSaysHowMany();
    void aStepInEachDocumentWhereAnEntryWentFromOneToTheOther();
    void undoingShowsTheTextThatCameBack();
    void theFirstEntryOfADocumentIsNotUndone();
    void aCommandWithoutADifferenceIsNoStepButAChange();
    void undoingToTheSavedPositionMakesADocumentUnchanged();
};

void tst_UndoCommands::everyCommandIsUndoneAndRedone_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("selected");
    for (size_t i = 0; i < everyCommand.size(); ++i) {
        for (const char *selected : {"Root", "D", "D2", "B", "B11", "C"})
            QTest::addRow("%s on %s", everyCommand[i].name.constData(), selected)
                << int(i) << QString::fromLatin1(selected);
    }
}

void tst_UndoCommands::everyCommandIsUndoneAndRedone()
{
    QFETCH(const int, command);
    QFETCH(const QString, selected);
    const ErrorRecorder errors;
    OutlineFixture fixture(grownOutline());
    answerCommands(fixture.fakes.dialogs);
    fixture.select(u"D1"_s);
    modOutline::OutlineCopy();
    fixture.select(selected);
    Document &document = fixture.document();
    document.history.startAnew();
    document.history.markSaved();
    const QStringList before = stateOf(document);
    everyCommand[size_t(command)].run();
    const QStringList after = stateOf(document);
    QVERIFY(document.history.stepCount() <= 1);
    if (document.history.stepCount() == 0)
        return;
    QVERIFY(undoStep(document));
    QCOMPARE(stateOf(document), before);
    QVERIFY(!document.m_bDataChanged());
    QVERIFY(!undoStep(document));
    QVERIFY(redoStep(document));
    QCOMPARE(stateOf(document), after);
    QVERIFY(document.m_bDataChanged());
    QVERIFY(goToStep(document, 0));
    QCOMPARE(stateOf(document), before);
}

void tst_UndoCommands::everySequenceIsUndoneToTheStart()
{
    OutlineFixture fixture(grownOutline());
    fixture.select(u"B"_s);
    modOutline::OutlineCopy();
    Document &document = fixture.document();
    document.history.startAnew();
    const QStringList before = stateOf(document);
    for (size_t stride = 1; stride < 12; ++stride) {
        for (size_t i = 0; i < everyCommand.size(); i += stride) {
            answerCommands(fixture.fakes.dialogs);
            everyCommand[i].run();
        }
        // An entry that ended up hidden is shown again when it is gone back to.
        const QStringList after = contentOf(document.outline());
        const int there = document.history.position();
        QVERIFY(there > 0);
        QVERIFY(goToStep(document, 0));
        QCOMPARE(stateOf(document), before);
        QVERIFY(goToStep(document, there));
        QCOMPARE(contentOf(document.outline()), after);
        QVERIFY(goToStep(document, 0));
    }
}

void tst_UndoCommands::aCommandIsOneStepWithAName_data()
{
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *command, const char *name) {
        const auto found =
            std::ranges::find_if(everyCommand, [&](const OutlineRoutine &each) { return each.name == command; });
        QTest::newRow(command) << int(found - everyCommand.begin()) << QString::fromLatin1(name);
    };
    row("OutlineInsertAbove", "insertion of an entry");
    row("OutlineInsertChild", "insertion of an entry");
    row("OutlineIndent", "move of \"B\"");
    row("OutlineMoveDown", "move of \"B\"");
    row("OutlinePaste", "pasting of \"D1\"");
    row("OutlinePasteAndDelete", "pasting of \"D1\"");
    row("OutlineDelete", "deletion of \"B\"");
    row("OutlineTaggedEntry", "untagging of \"B\"");
    row("OutlinePasteTaggedEntries", "pasting of 2 tagged entries");
    row("OutlineDeleteTaggedEntries", "deletion of 2 tagged entries");
    row("OutlineSortAll", "sorting of 2 branches");
    row("drop on the root", "move of \"B\"");
    row("drop a copy on the root", "insertion of a copy of \"B\"");
}

void tst_UndoCommands::aCommandIsOneStepWithAName()
{
    QFETCH(const int, command);
    QFETCH(const QString, name);
    OutlineFixture fixture(grownOutline());
    answerCommands(fixture.fakes.dialogs);
    fixture.select(u"D1"_s);
    modOutline::OutlineCopy();
    fixture.select(u"B"_s);
    fixture.document().history.startAnew();
    everyCommand[size_t(command)].run();
    QCOMPARE(fixture.document().history.undoName(), name);
    QCOMPARE(fixture.document().history.stepCount(), 1);
}

void tst_UndoCommands::aSortingOfManyEntriesSaysHowMany()
{
    OutlineFixture fixture({u"Root <"_s, u" D"_s, u" C"_s, u"  C2"_s, u"  C1"_s, u" B"_s, u"  B1"_s, u"  B2"_s});
    fixture.document().history.startAnew();
    modOutline::OutlineSortAll();
    QCOMPARE(fixture.document().history.undoName(), u"sorting of 2 branches"_s);
    QVERIFY(undoStep(fixture.document()));
    fixture.document().history.remove(fixture.entry(u"D"_s));
    fixture.document().history.remove(fixture.entry(u"C"_s));
    fixture.document().history.setLabel(fixture.entry(u"B2"_s), u"A"_s);
    modOutline::OutlineSortAll();
    QCOMPARE(fixture.document().history.undoName(), u"sorting below \"B\""_s);
}

void tst_UndoCommands::aStepInEachDocumentWhereAnEntryWentFromOneToTheOther()
{
    OutlineFixture fixture(grownOutline());
    Document &source = fixture.document();
    fixture.select(u"B"_s);
    modOutline::OutlineCopy();
    source.history.startAnew();
    const QStringList sourceBefore = stateOf(source);
    modDoc::DocNew();
    Document &target = *DocumentActive();
    plantOutline(rawOutline(target).tree, {u"Other <"_s});
    const QStringList targetBefore = stateOf(target);
    modOutline::OutlinePasteAndDelete();
    QCOMPARE(source.history.undoName(), u"deletion of \"B\""_s);
    QCOMPARE(target.history.undoName(), u"pasting of \"B\""_s);
    QVERIFY(undoStep(target));
    QCOMPARE(stateOf(target), targetBefore);
    QVERIFY(undoStep(source));
    QCOMPARE(stateOf(source), sourceBefore);
}

void tst_UndoCommands::undoingShowsTheTextThatCameBack()
{
    OutlineFixture fixture(grownOutline());
    fixture.fakes.dialogs.answers = {Answer::Yes};
    Document &document = fixture.document();
    rawOutline(document).tree.setStoredText(fixture.entry(u"C"_s), "{\\rtf1 of C}");
    fixture.select(u"C"_s);
    document.history.startAnew();
    modOutline::OutlineDelete();
    QVERIFY(!document.view()->txtRTF.TextRTF().contains("of C"));
    QVERIFY(undoStep(document));
    QCOMPARE(document.tree.selected(), fixture.entry(u"C"_s));
    QVERIFY(document.view()->txtRTF.TextRTF().contains("of C"));
}

void tst_UndoCommands::theFirstEntryOfADocumentIsNotUndone()
{
    const FakePorts fakes;
    modFile::FileNew();
    Document &document = *DocumentActive();
    QVERIFY(document.tree.root());
    QVERIFY(!document.history.canUndo());
    QVERIFY(document.m_bDataChanged());
}

void tst_UndoCommands::aCommandWithoutADifferenceIsNoStepButAChange()
{
    OutlineFixture fixture(grownOutline());
    fixture.select(u"Root"_s);
    fixture.document().history.startAnew();
    fixture.document().history.markSaved();
    modOutline::OutlineMoveUp();
    QVERIFY(!fixture.document().history.canUndo());
    QVERIFY(fixture.document().m_bDataChanged());
}

void tst_UndoCommands::undoingToTheSavedPositionMakesADocumentUnchanged()
{
    OutlineFixture fixture(grownOutline());
    fixture.select(u"C"_s);
    modOutline::OutlineMoveUp();
    fixture.document().history.markSaved();
    modOutline::OutlineMoveUp();
    modOutline::OutlineMoveDown();
    QVERIFY(fixture.document().hasUnsavedChanges());
    undoStep(fixture.document());
    QVERIFY(fixture.document().hasUnsavedChanges());
    undoStep(fixture.document());
    QVERIFY(!fixture.document().hasUnsavedChanges());
    undoStep(fixture.document());
    QVERIFY(fixture.document().hasUnsavedChanges());
}

QTEST_GUILESS_MAIN(tst_UndoCommands)
#include "tst_UndoCommands.moc"
