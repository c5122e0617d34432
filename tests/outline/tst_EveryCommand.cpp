// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "outline/EveryCommand.h"
#include "outline/OutlineFixture.h"
#include "support/RawOutline.h"

#include "support/ErrorRecorder.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// Every command where a command has little to work on, or very much.
class tst_EveryCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void everyCommandIsHere();

    void withoutADocument_data() { commands(); }

    void withoutADocument();

    void onAnEmptyOutline_data() { commands(); }

    void onAnEmptyOutline();

    void withNothingSelected_data() { commands(); }

    void withNothingSelected();

    void onTheRootAlone_data() { commands(); }

    void onTheRootAlone();

    void onAReadOnlyDocument_data() { commands(); }

    void onAReadOnlyDocument();

    void onAChain20000LevelsDeep_data() { commands(); }

    void onAChain20000LevelsDeep();

    void onTheRootOfAChain20000LevelsDeep_data() { commands(); }

    void onTheRootOfAChain20000LevelsDeep();

    void among10000Siblings_data() { commands(); }

    void among10000Siblings();

    void onAFullOutline_data() { commands(); }

    void onAFullOutline();

private:
    static void commands();
    static QStringList errorsWithoutSelection();
    void run(OutlineFixture &fixture);

    std::unique_ptr<ErrorRecorder> m_errors;
};

void tst_EveryCommand::init()
{
    m_errors = std::make_unique<ErrorRecorder>();
}

void tst_EveryCommand::cleanup()
{
    modOutline::copiedEntry().clear();
    m_errors.reset();
}

void tst_EveryCommand::commands()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < everyCommand.size(); ++i)
        QTest::newRow(everyCommand[i].name.constData()) << static_cast<int>(i);
}

// Each that the module declares is tried below; one without a row would be tried by nobody.
void tst_EveryCommand::everyCommandIsHere()
{
    QFile header(QStringLiteral(QUILLERY_SOURCE_DIR "/src/outline/modOutline.h"));
    QVERIFY(header.open(QIODevice::ReadOnly));
    QSet<QString> declared;
    static const QRegularExpression declaration(u"^void (\\w+)\\("_s, QRegularExpression::MultilineOption);
    for (auto found = declaration.globalMatch(QString::fromUtf8(header.readAll())); found.hasNext();)
        declared.insert(found.next().captured(1));
    QSet<QString> tried;
    for (const OutlineRoutine &each : everyCommand)
        tried.insert(QString::fromLatin1(each.name).section(u' ', 0, 0));
    QVERIFY(declared.size() > 20);
    QCOMPARE(declared - tried, QSet<QString>());
}

// What the row's command reports when no entry is selected.
QStringList tst_EveryCommand::errorsWithoutSelection()
{
    QFETCH(const int, index);
    const QByteArray command = everyCommand[static_cast<size_t>(index)].name;
    if (command == "OutlineExpand" || command == "OutlineCollapse")
        return {u"91 modOutline "_s + QString::fromLatin1(command)};
    return {};
}

// Runs the row's command, answering Yes, and checks what holds afterwards whatever it did.
void tst_EveryCommand::run(OutlineFixture &fixture)
{
    QFETCH(const int, index);
    Document &document = fixture.document();
    const OutlineRoutine &command = everyCommand[static_cast<size_t>(index)];
    document.history.markSaved();
    answerCommands(fixture.fakes.dialogs);
    command.run();
    fixture.fakes.dialogs.answers.clear();
    QCOMPARE(document.tree.brokenInvariant(), QString());
    QVERIFY(document.m_bDataChanged() || !command.marksChanged);
    QVERIFY(!fixture.fakes.pointer.hourglass);
    QVERIFY(document.view()->trvOutline.PaneVisible());
    QVERIFY(document.view()->txtRTF.PaneVisible());
    QCOMPARE(iActionDepth, qint16(0));
}

void tst_EveryCommand::withoutADocument()
{
    QFETCH(const int, index);
    FakePorts fakes;
    everyCommand[static_cast<size_t>(index)].run();
    QCOMPARE(fakes.pointer.timesHourglass, 0);
    QCOMPARE(fakes.dialogs.questions, QStringList());
    QCOMPARE(m_errors->summary(), QStringList());
}

void tst_EveryCommand::onAnEmptyOutline()
{
    OutlineFixture fixture({});
    run(fixture);
    QVERIFY(fixture.document().tree.entryCount() <= 1);
    QCOMPARE(m_errors->summary(), errorsWithoutSelection());
}

void tst_EveryCommand::withNothingSelected()
{
    const QStringList outline = {u"Root +"_s, u" A +*"_s, u"  A1"_s, u" B"_s};
    OutlineFixture fixture(outline);
    run(fixture);
    // What is there stays; an insertion or a paste of tagged entries adds to the root's children.
    QCOMPARE(fixture.dump().mid(0, 4), outline);
    QCOMPARE(fixture.fakes.dialogs.questions, QStringList());
    QCOMPARE(m_errors->summary(), errorsWithoutSelection());
}

void tst_EveryCommand::onTheRootAlone()
{
    OutlineFixture fixture({u"Root <"_s});
    modOutline::OutlineCopy();
    run(fixture);
    QVERIFY(fixture.document().tree.entryCount() <= 2);
    QCOMPARE(m_errors->summary(), QStringList());
}

// The commands know no read-only documents: the menus and keys offer there what may be done. The file is safe anyway.
void tst_EveryCommand::onAReadOnlyDocument()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"fixed.qly"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("as it was");
    file.close();
    QVERIFY(file.setPermissions(QFileDevice::ReadOwner));
    OutlineFixture fixture({u"Root +"_s, u" A"_s, u" B <+*"_s, u"  B1"_s, u" C"_s});
    fixture.document().m_sFile = file.fileName();
    QVERIFY(fixture.document().bReadOnly());
    modOutline::OutlineCopy();
    run(fixture);
    QCOMPARE(m_errors->summary(), QStringList());
    QVERIFY(fixture.document().bReadOnly());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("as it was"));
}

void tst_EveryCommand::onAChain20000LevelsDeep()
{
    constexpr int levels = 20000;
    OutlineFixture fixture({});
    Entry *selected = growChain(rawOutline(fixture.document()).tree, levels, levels / 2);
    modNodes::NodeSelect(fixture.document(), selected);
    modNodes::NodeTagOn(fixture.document(), selected);
    modOutline::OutlineCopy();
    run(fixture);
    QCOMPARE(m_errors->summary(), QStringList());
}

void tst_EveryCommand::onTheRootOfAChain20000LevelsDeep()
{
    OutlineFixture fixture({});
    growChain(rawOutline(fixture.document()).tree, 16000, 16000);
    modNodes::NodeSelect(fixture.document(), fixture.document().tree.root());
    modOutline::OutlineCopy();
    run(fixture);
    QCOMPARE(m_errors->summary(), QStringList());
}

void tst_EveryCommand::among10000Siblings()
{
    OutlineFixture fixture({});
    Entry *selected = growSiblings(rawOutline(fixture.document()).tree, 10000);
    modNodes::NodeSelect(fixture.document(), selected);
    for (int row = 0; row < 10000; row += 3)
        modNodes::NodeTagOn(fixture.document(), selected->parent()->child(row));
    modOutline::OutlineCopy();
    run(fixture);
    QCOMPARE(m_errors->summary(), QStringList());
}

// A command that would add an entry too many is refused as a whole, and the outline stays usable.
void tst_EveryCommand::onAFullOutline()
{
    OutlineFixture fixture({});
    EntryTree &tree = rawOutline(fixture.document()).tree;
    Entry *selected = growSiblings(tree, EntryTree::maximumCount - 2);
    modNodes::NodeSelect(fixture.document(), selected);
    modNodes::NodeTagOn(fixture.document(), selected->previous());
    modOutline::OutlineCopy();
    run(fixture);
    QVERIFY(tree.entryCount() <= EntryTree::maximumCount);
    QVERIFY(tree.selected());
    for (const ErrorRecorder::Record &record : m_errors->records())
        QCOMPARE(record.report.number, 6);
    QVERIFY(m_errors->count() <= 1);
    // Whoever wanted more entries is told that they are not there.
    Document &document = fixture.document();
    QCOMPARE(document.hasNotice(NoticeKind::DocumentFull), m_errors->count() == 1);
    if (tree.entryCount() == EntryTree::maximumCount)
        modNodes::NodeDelete(document, tree.selected());
    modNodes::NodeInsert(document, Relationship::tvwChild, tree.root());
    QVERIFY(!document.hasNotice(NoticeKind::DocumentFull));
}

QTEST_GUILESS_MAIN(tst_EveryCommand)
#include "tst_EveryCommand.moc"
