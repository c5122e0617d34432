// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/EveryCommand.h"
#include "support/ErrorRecorder.h"
#include "support/RawOutline.h"
#include "support/ShownRows.h"
#include "window/WindowFixture.h"

#include "document/modDoc.h"
#include "platform/OutlineWidth.h"
#include "search/modSearch.h"

#include <QElapsedTimer>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;

// Every command of the outline in a real document window, on the shapes that strain it.
class tst_LargeOutlines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void onAChain2000LevelsDeep_data() { commands(); }

    void onAChain2000LevelsDeep();

    void among10000Siblings_data() { commands(); }

    void among10000Siblings();
    void tenThousandTaggedEntriesTakeWellUnderASecond();
    void everythingOpensInAFullOutline();
    void everyLabelOfAFullOutlineIsReplaced();
    void fittingAFullOutlineMeasuresFewLabels();

private:
    static void commands();
    void run();
    void fill();

    EntryTree &tree() { return rawOutline(*DocumentActive()).tree; }

    std::unique_ptr<WindowFixture> m_fixture;
    std::unique_ptr<ErrorRecorder> m_errors;
};

void tst_LargeOutlines::init()
{
    m_errors = std::make_unique<ErrorRecorder>();
    m_fixture = std::make_unique<WindowFixture>();
    QVERIFY(QTest::qWaitForWindowActive(&m_fixture->main));
    modDoc::DocNew();
    tree().clear();
}

void tst_LargeOutlines::cleanup()
{
    modOutline::copiedEntry().clear();
    m_fixture.reset();
    m_errors.reset();
}

void tst_LargeOutlines::commands()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < everyCommand.size(); ++i)
        QTest::newRow(everyCommand[i].name) << static_cast<int>(i);
}

// Runs the row's command, answering Yes, and lets the window draw what came of it.
void tst_LargeOutlines::run()
{
    QFETCH(const int, index);
    answerCommands(m_fixture->fakes.dialogs);
    everyCommand[static_cast<size_t>(index)].run();
    m_fixture->fakes.dialogs.answers.clear();
    m_fixture->fakes.dialogs.fonts.clear();
    QCoreApplication::processEvents();
    QCOMPARE(m_errors->summary(), QStringList());
    QCOMPARE(tree().brokenInvariant(), QString());
    QCOMPARE(shownDifference(*m_fixture->form().treeView, tree()), QString());
    QCOMPARE(iActionDepth, qint16(0));
}

void tst_LargeOutlines::onAChain2000LevelsDeep()
{
    Entry *selected = growChain(tree(), 2000, 1990);
    modNodes::NodeSelect(*DocumentActive(), selected);
    modNodes::NodeTagOn(*DocumentActive(), selected);
    modOutline::OutlineCopy();
    run();
}

void tst_LargeOutlines::among10000Siblings()
{
    Entry *selected = growSiblings(tree(), 10000);
    modNodes::NodeSelect(*DocumentActive(), selected);
    modNodes::NodeTagOn(*DocumentActive(), selected->previous());
    modOutline::OutlineCopy();
    run();
}

void tst_LargeOutlines::tenThousandTaggedEntriesTakeWellUnderASecond()
{
    Entry *selected = growSiblings(tree(), 10000);
    for (int row = 0; row < 10000; ++row)
        modNodes::NodeTagOn(*DocumentActive(), selected->parent()->child(row));
    modNodes::NodeSelect(*DocumentActive(), tree().root());
    QElapsedTimer timer;
    timer.start();
    modOutline::OutlinePasteTaggedEntries();
    QCOMPARE(tree().entryCount(), 20002);
    m_fixture->fakes.dialogs.answers = {Answer::Yes};
    modOutline::OutlineDeleteTaggedEntries();
    QCoreApplication::processEvents();
    QCOMPARE(tree().entryCount(), 10002);
    QCOMPARE(shownDifference(*m_fixture->form().treeView, tree()), QString());
    // Some 0.1 seconds; one change of the pane after the other would take several.
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
}

// As many entries as there can be, in three levels.
void tst_LargeOutlines::fill()
{
    const BulkChange bulk(tree());
    Entry *root = tree().insert(Relationship::tvwChild, nullptr);
    while (tree().entryCount() < EntryTree::maximumCount) {
        Entry *parent = tree().insert(Relationship::tvwChild, root);
        while (parent->childCount() < 31 && tree().entryCount() < EntryTree::maximumCount)
            tree().insert(Relationship::tvwChild, parent);
    }
}

void tst_LargeOutlines::everythingOpensInAFullOutline()
{
    fill();
    modNodes::NodeSelect(*DocumentActive(), tree().root());
    modOutline::OutlineExpandAll();
    QCoreApplication::processEvents();
    QCOMPARE(shownDifference(*m_fixture->form().treeView, tree()), QString());
    modOutline::OutlineCollapseAll();
    QCoreApplication::processEvents();
    QCOMPARE(shownDifference(*m_fixture->form().treeView, tree()), QString());
}

// The split is fitted once, at the end: fitting it to every label in turn would take minutes.
void tst_LargeOutlines::everyLabelOfAFullOutlineIsReplaced()
{
    fill();
    {
        const BulkChange bulk(tree());
        for (int i = 1; i <= tree().entryCount(); ++i)
            tree().setLabel(tree().collection().at(i), u"a cat"_s);
    }
    modNodes::NodeSelect(*DocumentActive(), tree().root());
    modOutline::OutlineExpandAll();
    const auto again = qScopeGuard([] { g_sSearchFind = g_sSearchReplace = g_sSearchScope = QString(); });
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"very long dog"_s;
    g_sSearchScope = u"2"_s;
    const float width = m_fixture->form().m_fTreeWidth;
    QElapsedTimer timer;
    timer.start();
    modSearch::SearchReplaceAll();
    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
    QCoreApplication::processEvents();
    QCOMPARE(shownDifference(*m_fixture->form().treeView, tree()), QString());
    QCOMPARE(tree().root()->label(), u"a very long dog"_s);
    QVERIFY(m_fixture->form().m_fTreeWidth > width);
}

// All are equally wide, so that each can be the widest: their widths must be known without drawing them.
void tst_LargeOutlines::fittingAFullOutlineMeasuresFewLabels()
{
    const Entry *last = growSiblings(tree(), EntryTree::maximumCount - 2);
    {
        const BulkChange bulk(tree());
        for (int i = 1; i <= tree().entryCount(); ++i)
            tree().setLabel(tree().collection().at(i), u"Entry %1 of many"_s.arg(i + 10'000));
    }
    tree().setExpanded(tree().root(), true);
    OutlineWidth &width = *m_fixture->form().outlineWidth;
    const int before = width.measuredRows();
    // What was known is forgotten.
    tree().setLabel(tree().root(), u"Root"_s);
    const int widest = width.widestRow();
    QVERIFY(width.measuredRows() - before < 10);
    QCOMPARE(widest, 3 * m_fixture->form().treeView->indentation() +
                         m_fixture->form().treeView->sizeHintForIndex(tree().indexOf(last)).width());
}

QTEST_MAIN(tst_LargeOutlines)
#include "tst_LargeOutlines.moc"
