// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "app/PlaceKeeper.h"
#include "document/modDoc.h"
#include "panes/GoToFinder.h"
#include "panes/frmGoTo.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "support/ModalSteps.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

// The line that finds entries, commands and documents, in the real main window.
class tst_GoToAnything : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_main.reset(); }

    void entriesComeFirstAndThenTheRest();
    void aSignSaysWhatIsLookedFor_data();
    void aSignSaysWhatIsLookedFor();
    void aWayOfAncestorsTellsEntriesApart();
    void nothingTypedOffersWhereOneHasBeen();
    void commandsSayTheirKeysAndWhyTheyCannotBeRun();
    void lettersThatWereTypedAreMarked();
    void everyCommandThatAPersonCanChooseIsThere();
    void anEntryIsGoneToByKeysAlone();
    void anEntryOfAnotherDocumentIsGoneTo();
    void whereOneGoesIsAPlace();
    void aCommandIsRunAsByItsMenu();
    void aCommandOfTheTextWorksInTheText();
    void whatCannotBeDoneSaysWhyAndKeepsTheLine();
    void aReadOnlyDocumentRefusesWithItsReason();
    void aDocumentComesToTheFront();
    void aRecentFileIsOpened();
    void escapeLeavesEverythingAsItWas();
    void aClickOnARowGoesThere();
    void theArrowsAndPagesMoveAndTheLineKeepsTheKeyboard();
    void anOpenLabelIsEndedFirst();
    void withoutADocumentCommandsAndFilesAreThere();
    void thePathAndKindAreHeard();
    void keysThatMeanSomethingElsewhereDoNothingBehindIt();

private:
    Document &open(const QString &name, const QStringList &outline);
    GoToWorld world() const;
    QStringList found(const QString &typed) const;
    // Opens the line by its key, types, presses keys, and lets a step look at it before it is closed.
    void inLine(const QString &typed, const std::vector<Qt::Key> &keys,
                const std::function<void(frmGoTo &)> &look = {});

    static QString here()
    {
        const Entry *selected = DocumentActive() ? DocumentActive()->tree.selected() : nullptr;
        return selected ? selected->label() : QString();
    }

    frmDocument &form() const { return static_cast<frmDocument &>(DocumentActive()->view()->window); }

    static QListView &listOf(frmGoTo &line) { return *line.findChild<QListView *>(u"lstGoTo"_s); }

    static QString noteOf(frmGoTo &line) { return line.findChild<QLabel *>(u"lblGoTo"_s)->text(); }

    static QLineEdit &editorOf(frmGoTo &line) { return *line.findChild<QLineEdit *>(u"txtGoTo"_s); }

    ModalSteps m_steps;
    std::unique_ptr<MainFixture> m_main;
};

void tst_GoToAnything::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.resize(1000, 800);
    m_main->main.places().setRest(-1);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    open(u"home.qly"_s, {u"Household"_s, u" Budget"_s, u"  2023"_s, u"  2024"_s, u"   Repairs"_s, u" Plans"_s,
                         u"  2024"_s, u" Mov\u00e9 up"_s});
}

Document &tst_GoToAnything::open(const QString &name, const QStringList &outline)
{
    m_main->app.core.dialogs.openNames = {m_main->app.makeFile(name, nativeBytes(outline))};
    m_main->choose("mnuFileOpen");
    form().treeView->setFocus();
    m_main->main.places().settle();
    return *DocumentActive();
}

GoToWorld tst_GoToAnything::world() const
{
    QStringList recentFiles = m_main->recentFiles.list();
    recentFiles.removeAll(QString());
    return {.active = DocumentActive(),
            .documents = m_main->main.windows().documents(),
            .recentFiles = recentFiles,
            .visited = m_main->main.places().trail().others(),
            .dispatcher = m_main->main.dispatcher()};
}

QStringList tst_GoToAnything::found(const QString &typed) const
{
    KnownEntryNames known;
    GoToFinder finder(world(), known);
    finder.find(typed);
    QStringList rows;
    for (int place = 0; place < finder.count(); ++place) {
        const GoToRow row = finder.row(place);
        rows += row.way.isEmpty() ? row.name : row.name + u" < "_s + row.way;
    }
    return rows;
}

void tst_GoToAnything::inLine(const QString &typed, const std::vector<Qt::Key> &keys,
                              const std::function<void(frmGoTo &)> &look)
{
    m_steps.clear();
    m_steps.next([&](QWidget *window) {
        auto *line = qobject_cast<frmGoTo *>(window);
        QVERIFY(line);
        QTest::keyClicks(&editorOf(*line), typed);
        for (const Qt::Key key : keys)
            QTest::keyClick(&editorOf(*line), key);
        if (look)
            look(*line);
        line->close();
    });
    m_main->refresh();
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_K, Qt::ControlModifier);
    QVERIFY(m_steps.isDone());
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_GoToAnything::entriesComeFirstAndThenTheRest()
{
    const QStringList rows = found(u"move up"_s);
    QCOMPARE(rows.value(0), u"Mov\u00e9 up < Household"_s);
    QCOMPARE(rows.value(1), u"Move up < Outline ▸ Move"_s);
    // Those of the active document even with somewhat longer labels, which otherwise count for less.
    DocumentActive()->history.setLabel(entryLabelled(DocumentActive()->tree, u"Mov\u00e9 up"_s), u"Move up there"_s);
    QCOMPARE(found(u"move up"_s).value(0), u"Move up there < Household"_s);
    open(u"work.qly"_s, {u"Work"_s, u" Repairs of the roof"_s});
    QCOMPARE(found(u"repairs"_s).value(0), u"Repairs of the roof < Work"_s);
    QCOMPARE(found(u"repairs"_s).value(1), u"Repairs < home.qly ▸ Household ▸ Budget ▸ 2024"_s);
}

void tst_GoToAnything::aSignSaysWhatIsLookedFor_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("first");
    QTest::newRow("commands") << u">move up"_s << u"Move up < Outline ▸ Move"_s;
    QTest::newRow("entries") << u"#move up"_s << u"Mov\u00e9 up < Household"_s;
    QTest::newRow("all that are there") << u"#"_s << u"Household"_s;
    QTest::newRow("a blank keeps the sign a letter") << u" #move"_s << QString();
    QTest::newRow("a command by its menu") << u">expand/3"_s << u"Expand to level 3 < Outline ▸ Expand to level"_s;
}

void tst_GoToAnything::aSignSaysWhatIsLookedFor()
{
    QFETCH(const QString, typed);
    QFETCH(const QString, first);
    QCOMPARE(found(typed).value(0), first);
}

void tst_GoToAnything::aWayOfAncestorsTellsEntriesApart()
{
    QCOMPARE(found(u"bud/2024"_s).value(0), u"2024 < Household ▸ Budget"_s);
    QCOMPARE(found(u"plans > 24"_s).value(0), u"2024 < Household ▸ Plans"_s);
    QCOMPARE(found(u"#2024"_s), (QStringList{u"2024 < Household ▸ Budget"_s, u"2024 < Household ▸ Plans"_s}));
}

void tst_GoToAnything::nothingTypedOffersWhereOneHasBeen()
{
    for (const QString &label : {u"Repairs"_s, u"Plans"_s, u"2023"_s}) {
        modNodes::NodeSelect(*DocumentActive(), entryLabelled(DocumentActive()->tree, label));
        m_main->main.places().settle();
    }
    m_main->recentFiles.UpdateMRUFile(u"/elsewhere/old.qly"_s, false);
    const QStringList rows = found(QString());
    QCOMPARE(rows, (QStringList{u"Plans < Household"_s, u"Repairs < Household ▸ Budget ▸ 2024"_s, u"Household"_s,
                                u"old.qly < /elsewhere"_s}));
}

void tst_GoToAnything::commandsSayTheirKeysAndWhyTheyCannotBeRun()
{
    KnownEntryNames known;
    GoToFinder finder(world(), known);
    finder.find(u">indent"_s);
    GoToRow row = finder.row(0);
    QCOMPARE(row.name, u"Indent"_s);
    QCOMPARE(row.key, u"Alt+Right"_s);
    QCOMPARE(row.whyNot, u"the document's topmost entry is selected"_s);
    finder.find(u">save as"_s);
    row = finder.row(0);
    QCOMPARE(row.name, u"Save as..."_s);
    QCOMPARE(row.key, u"Ctrl+Shift+S"_s);
    QCOMPARE(row.whyNot, QString());
    QCOMPARE(row.spoken(), u"Save as..., command, in File, Ctrl+Shift+S"_s);
}

void tst_GoToAnything::lettersThatWereTypedAreMarked()
{
    KnownEntryNames known;
    GoToFinder finder(world(), known);
    finder.find(u"#move"_s);
    QCOMPARE(finder.row(0).marks, (std::vector{0, 1, 2, 3}));
    finder.find(u"#bdt"_s);
    QCOMPARE(finder.row(0).marks, (std::vector{0, 2, 5}));
    finder.find(u"bud/24"_s);
    QCOMPARE(finder.row(0).name, u"2024"_s);
    QVERIFY(!finder.row(0).marks.empty());
}

// What is in the menus and has a function, but this command itself.
void tst_GoToAnything::everyCommandThatAPersonCanChooseIsThere()
{
    KnownEntryNames known;
    GoToFinder finder(world(), known);
    finder.find(u">"_s);
    std::set<std::string_view> commands;
    for (int place = 0; place < finder.count(); ++place)
        commands.insert(finder.row(place).target.command);
    for (const CommandRow &row : commandTable) {
        const bool isWanted =
            row.kind == RowKind::Command && !row.routine.name.empty() && row.name != "mnuToolsGoToAnything";
        QVERIFY2(commands.contains(row.name) == isWanted, row.name.data());
    }
}

void tst_GoToAnything::anEntryIsGoneToByKeysAlone()
{
    inLine(u"repa"_s, {Qt::Key_Return});
    QCOMPARE(here(), u"Repairs"_s);
    QVERIFY(form().treeView->hasFocus());
    QVERIFY(DocumentActive()->tree.selected()->visible());
    inLine(u"2024"_s, {Qt::Key_Down, Qt::Key_Enter});
    QCOMPARE(DocumentActive()->tree.selected()->parent()->label(), u"Plans"_s);
}

void tst_GoToAnything::anEntryOfAnotherDocumentIsGoneTo()
{
    Document *first = DocumentActive();
    open(u"work.qly"_s, {u"Work"_s, u" Repairs of the roof"_s});
    inLine(u"house/repairs"_s, {}, [](frmGoTo &line) {
        QVERIFY(listOf(line).currentIndex().data(Qt::AccessibleTextRole).toString().contains(u"home.qly"_s));
        QTest::keyClick(&editorOf(line), Qt::Key_Return);
    });
    QCOMPARE(DocumentActive(), first);
    QCOMPARE(here(), u"Repairs"_s);
    // The active document's own come first.
    inLine(u"rep"_s, {Qt::Key_Return});
    QCOMPARE(DocumentActive(), first);
    inLine(u"roof"_s, {Qt::Key_Return});
    QVERIFY(DocumentActive() != first);
    QVERIFY(form().treeView->hasFocus());
}

void tst_GoToAnything::whereOneGoesIsAPlace()
{
    inLine(u"repa"_s, {Qt::Key_Return});
    inLine(u"plans"_s, {Qt::Key_Return});
    inLine(QString(), {Qt::Key_Return});
    QCOMPARE(here(), u"Repairs"_s);
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_Left, Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(here(), u"Plans"_s);
}

void tst_GoToAnything::aCommandIsRunAsByItsMenu()
{
    inLine(u"repa"_s, {Qt::Key_Return});
    inLine(u">tag"_s, {Qt::Key_Return});
    QVERIFY(DocumentActive()->tree.selected()->tagged());
    QCOMPARE(DocumentActive()->history.stepCount(), 1);
    // Its caption is the one that it has now.
    inLine(u">untag"_s, {Qt::Key_Return});
    QVERIFY(!DocumentActive()->tree.selected()->tagged());
}

void tst_GoToAnything::aCommandOfTheTextWorksInTheText()
{
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"words"_s);
    inLine(u">select all"_s, {Qt::Key_Return});
    QCOMPARE(form().textBox->SelText(), u"words"_s);
    inLine(u">upper"_s, {Qt::Key_Return});
    QCOMPARE(form().textBox->Text(), u"WORDS"_s);
    QVERIFY(form().textBox->hasFocus());
}

void tst_GoToAnything::whatCannotBeDoneSaysWhyAndKeepsTheLine()
{
    const int steps = DocumentActive()->history.stepCount();
    inLine(u">indent"_s, {Qt::Key_Return}, [](frmGoTo &line) {
        QVERIFY(line.isVisible());
        QCOMPARE(noteOf(line), u"Not now: the document's topmost entry is selected."_s);
        QTest::keyClick(&editorOf(line), Qt::Key_Escape);
    });
    QCOMPARE(DocumentActive()->history.stepCount(), steps);
    QCOMPARE(here(), u"Household"_s);
}

void tst_GoToAnything::aReadOnlyDocumentRefusesWithItsReason()
{
    const QString file = m_main->app.makeFile(u"read.qly"_s, nativeBytes({u"Help"_s, u" Topic"_s}));
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    m_main->app.core.dialogs.openNames = {file};
    m_main->choose("mnuFileOpen");
    inLine(u">rename"_s, {Qt::Key_Return},
           [](frmGoTo &line) { QCOMPARE(noteOf(line), u"Not now: the document is read-only."_s); });
    inLine(u"#topic"_s, {Qt::Key_Return});
    QCOMPARE(here(), u"Topic"_s);
    QCOMPARE(DocumentActive()->history.stepCount(), 0);
}

void tst_GoToAnything::aDocumentComesToTheFront()
{
    Document *first = DocumentActive();
    open(u"work.qly"_s, {u"Work"_s});
    inLine(u"@home"_s, {Qt::Key_Return});
    QCOMPARE(DocumentActive(), first);
    form().parentWidget()->showMinimized();
    inLine(u"@work"_s, {Qt::Key_Return});
    QVERIFY(DocumentActive() != first);
    inLine(u"@home"_s, {Qt::Key_Return});
    QCOMPARE(DocumentActive(), first);
    QVERIFY(!form().parentWidget()->isMinimized());
}

void tst_GoToAnything::aRecentFileIsOpened()
{
    const QString file = m_main->app.makeFile(u"older.qly"_s, nativeBytes({u"Older"_s}));
    m_main->recentFiles.UpdateMRUFile(file, false);
    inLine(u"@older"_s, {Qt::Key_Return});
    QCOMPARE(here(), u"Older"_s);
    QCOMPARE(DocumentActive()->m_sFile, file);
    // Now it is open, and no longer only a file.
    QCOMPARE(found(u"@older"_s), QStringList());
}

void tst_GoToAnything::escapeLeavesEverythingAsItWas()
{
    form().textBox->setFocus();
    QTest::keyClicks(form().textBox, u"words"_s);
    form().textBox->setSelStart(1);
    form().textBox->setSelLength(3);
    const int steps = DocumentActive()->history.stepCount();
    inLine(u"repa"_s, {Qt::Key_Down, Qt::Key_Escape});
    QCOMPARE(here(), u"Household"_s);
    QVERIFY(form().textBox->hasFocus());
    QCOMPARE(form().textBox->SelText(), u"ord"_s);
    QCOMPARE(DocumentActive()->history.stepCount(), steps);
    QVERIFY(!m_main->main.places().trail().canGoBack());
}

void tst_GoToAnything::aClickOnARowGoesThere()
{
    inLine(u"2024"_s, {}, [](frmGoTo &line) {
        QListView &list = listOf(line);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(list.model()->index(1, 0)).center());
        QVERIFY(!line.isVisible());
    });
    QCOMPARE(DocumentActive()->tree.selected()->parent()->label(), u"Plans"_s);
}

void tst_GoToAnything::theArrowsAndPagesMoveAndTheLineKeepsTheKeyboard()
{
    inLine(u">"_s, {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up}, [](frmGoTo &line) {
        const QListView &list = listOf(line);
        QCOMPARE(list.currentIndex().row(), 1);
        QTest::keyClick(&editorOf(line), Qt::Key_PageDown);
        const int page = list.currentIndex().row() - 1;
        QVERIFY(page > 2);
        QVERIFY(list.viewport()->rect().contains(list.visualRect(list.currentIndex())));
        QTest::keyClick(&editorOf(line), Qt::Key_PageUp);
        QCOMPARE(list.currentIndex().row(), 1);
        QTest::keyClick(&editorOf(line), Qt::Key_PageUp);
        QCOMPARE(list.currentIndex().row(), 0);
        QTest::keyClick(&editorOf(line), Qt::Key_Up);
        QCOMPARE(list.currentIndex().row(), 0);
        QTest::keyClick(&editorOf(line), Qt::Key_Tab);
        QCOMPARE(line.focusWidget(), &editorOf(line));
    });
}

void tst_GoToAnything::anOpenLabelIsEndedFirst()
{
    inLine(u"repa"_s, {Qt::Key_Return});
    QTest::keyClick(m_main->main.windowHandle(), Qt::Key_F2);
    auto *label = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    QVERIFY(label);
    QTest::keyClicks(label, u"Mended"_s);
    inLine(u"mended"_s, {}, [](frmGoTo &line) {
        QCOMPARE(listOf(line).model()->index(0, 0).data().toString(), u"Mended"_s);
        QTest::keyClick(&editorOf(line), Qt::Key_Escape);
    });
    QCOMPARE(here(), u"Mended"_s);
    QVERIFY(form().treeView->hasFocus());
}

void tst_GoToAnything::withoutADocumentCommandsAndFilesAreThere()
{
    form().close();
    QVERIFY(!DocumentActive());
    inLine(u">rename"_s, {Qt::Key_Return},
           [](frmGoTo &line) { QCOMPARE(noteOf(line), u"Not now: no document is open."_s); });
    inLine(u"xyzzy"_s, {Qt::Key_Return}, [](frmGoTo &line) {
        QCOMPARE(listOf(line).model()->rowCount(), 0);
        QCOMPARE(noteOf(line), u"Nothing has these letters in this order."_s);
    });
    inLine(u"home"_s, {Qt::Key_Return});
    QCOMPARE(here(), u"Household"_s);
}

void tst_GoToAnything::thePathAndKindAreHeard()
{
    inLine(u"#2024"_s, {Qt::Key_Down}, [](frmGoTo &line) {
        QCOMPARE(editorOf(line).accessibleName(), u"Go to"_s);
        QCOMPARE(line.accessibleName(), u"Go to anything"_s);
        QAccessibleInterface *list = QAccessible::queryAccessibleInterface(&listOf(line));
        QVERIFY(list && list->childCount() == 2);
        QCOMPARE(list->text(QAccessible::Name), u"Where to go"_s);
        QCOMPARE(list->child(0)->text(QAccessible::Name), u"2024, entry, in Household ▸ Budget"_s);
        QCOMPARE(list->child(1)->text(QAccessible::Name), u"2024, entry, in Household ▸ Plans"_s);
        QVERIFY(list->child(1)->state().selected);
    });
}

void tst_GoToAnything::keysThatMeanSomethingElsewhereDoNothingBehindIt()
{
    const std::size_t documents = m_main->main.windows().documents().size();
    DocumentActive()->history.setLabel(DocumentActive()->tree.root(), u"Renamed"_s);
    inLine(u"repa"_s, {}, [&](frmGoTo &line) {
        QTest::keyClick(m_main->main.windowHandle(), Qt::Key_N, Qt::ControlModifier);
        QTest::keyClick(m_main->main.windowHandle(), Qt::Key_B, Qt::AltModifier);
        QTest::keyClick(m_main->main.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(line.isVisible());
        QCOMPARE(DocumentActive()->history.position(), 1);
    });
    QCOMPARE(m_main->main.windows().documents().size(), documents);
    QCOMPARE(DocumentActive()->tree.entryCount(), 8);
}

QTEST_MAIN(tst_GoToAnything)
#include "tst_GoToAnything.moc"
