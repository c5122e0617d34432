// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "EveryCommand.h"
#include "OutlineFixture.h"
#include "document/UndoRedo.h"
#include "support/ErrorRecorder.h"
#include "support/OutlineState.h"
#include "support/RefusedMemory.h"

#include <QScopedValueRollback>
#include <QTest>

using namespace Qt::StringLiterals;

// Every command of the outline while memory is refused, each request once: one that fails says so once and has left
// the outline as it was, and what comes of it nevertheless can be undone.

class tst_UndoFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCommandThatFailsLeavesNothingThatCannotBeUndone_data();
    void aCommandThatFailsLeavesNothingThatCannotBeUndone();
};

void tst_UndoFaults::aCommandThatFailsLeavesNothingThatCannotBeUndone_data()
{
    QTest::addColumn<int>("command");
    for (size_t i = 0; i < everyCommand.size(); ++i) {
        // Told to views, a new order asks Qt for memory where it cannot say no.
        if (!everyCommand[i].name.contains("Sort"))
            QTest::newRow(everyCommand[i].name.constData()) << int(i);
    }
}

void tst_UndoFaults::aCommandThatFailsLeavesNothingThatCannotBeUndone()
{
    QFETCH(const int, command);
    // The engine of the texts does not survive that it is refused memory itself, where texts are put together or cut.
    const QByteArray &name = everyCommand[size_t(command)].name;
    const QScopedValueRollback alone(memoryIsRefusedToTheProgramAlone, name.contains("Join") || name.contains("Split"));
    for (long request = 0;; ++request) {
        const ErrorRecorder errors;
        OutlineFixture fixture({u"Root +"_s, u" A +*"_s, u"  A1"_s, u" B +"_s, u"  B1 *"_s, u" C"_s});
        answerCommands(fixture.fakes.dialogs);
        fixture.select(u"A1"_s);
        modOutline::OutlineCopy();
        fixture.select(u"B"_s);
        Document &document = fixture.document();
        document.history.startAnew();
        const QStringList before = contentOf(document.outline());
        const QStringList openBefore = expansionOf(document.outline());
        memoryWasRefused = false;
        requestsUntilRefusal = request;
        everyCommand[size_t(command)].run();
        requestsUntilRefusal = -1;
        QCOMPARE(document.tree.brokenInvariant(), QString());
        QVERIFY(!document.history.isStepOpen());
        if (!memoryWasRefused)
            break;
        const int failures = errors.count();
        QVERIFY2(failures <= 1, qPrintable(errors.summary().join(u", "_s)));
        // Of several tagged entries there stays what was pasted before.
        if (failures == 1 && QByteArray(everyCommand[size_t(command)].name) != "OutlinePasteTaggedEntries") {
            QCOMPARE(contentOf(document.outline()), before);
            QVERIFY(!document.history.canUndo());
        }
        if (document.history.canUndo())
            QVERIFY(document.history.undo());
        QVERIFY(!document.history.canUndo());
        QCOMPARE(contentOf(document.outline()), before);
        if (document.history.canRedo())
            QCOMPARE(expansionOf(document.outline()), openBefore);
        QVERIFY(request < 10'000);
    }
}

QTEST_GUILESS_MAIN(tst_UndoFaults)
#include "tst_UndoFaults.moc"
