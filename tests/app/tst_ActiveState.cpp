// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DocumentFrame.h"
#include "app/MainFixture.h"
#include "app/ToolbarSupport.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "outline/modOutline.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "support/OutlineText.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QFile>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

using Act = void (*)(Document &);

// Menus, toolbar and status bar follow what happens to the documents, though nobody tells them.
class tst_ActiveState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_main.reset(); }

    void everyChangeShowsWhenTheEventLoopComesRound_data();
    void everyChangeShowsWhenTheEventLoopComesRound();
    void aMenuThatOpensShowsWhatHasJustChanged();
    void aMenuThatOpensShowsItsCheckMarksAsTheyAre();
    void whatACommandDidShowsAtOnce();
    void anOptionShowsAsSoonAsItsCommandIsDone();
    void manyChangesMakeOneRefresh();
    void typingOnAnnouncesNothingThatMenusShow();
    void aDocumentInTheBackgroundShowsInNoMenu();
    void aClickIntoAnotherDocumentShowsThatOne();
    void anEntryCopiedFromADocumentThatClosesCannotBePasted();
    void whatIsSaidInPassingEndsWithTheSelection();
    void whatIsSaidWithoutADocumentIsShown();

private:
    Document &plant() const;
    QStringList shown() const;
    QStringList shownByHand() const;

    void comeRound() const { QCoreApplication::sendPostedEvents(&m_main->main.activeState(), QEvent::MetaCall); }

    QString status() const { return m_main->main.findChild<QLabel *>(u"sbStatusBarText"_s)->text(); }

    QString undoCaption() const { return m_main->main.findChild<QAction *>(u"mnuToolsUndo"_s)->text(); }

    frmDocument &form() const { return dynamic_cast<frmDocument &>(DocumentActive()->view()->window); }

    std::unique_ptr<MainFixture> m_main;
};

void tst_ActiveState::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.resize(1200, 700);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
}

// A document with B selected and the keyboard in its outline.
Document &tst_ActiveState::plant() const
{
    modDoc::DocNew();
    Document &document = *DocumentActive();
    plantOutline(rawOutline(document).tree, {u"Root +"_s, u" A"_s, u" B <"_s, u"  B1"_s, u" C"_s});
    modNodes::NodeSelectFull(document, document.tree.selected());
    document.giveUpChanges();
    form().treeView->setFocus();
    comeRound();
    return document;
}

// What is enabled, shown and pressed, the captions that change, and the status bar.
QStringList tst_ActiveState::shown() const
{
    QStringList found;
    for (const CommandRow &row : commandTable) {
        if (row.kind != RowKind::Menu && row.kind != RowKind::Command)
            continue;
        const QString name = toText(row.name);
        const auto *menu = m_main->main.findChild<QMenu *>(name);
        const QAction *item = menu ? menu->menuAction() : m_main->main.findChild<QAction *>(name);
        if (item && item->isEnabled())
            found.append(name + (row.captionNow ? u' ' + item->text() : QString()));
    }
    for (const ToolbarRow &row : toolbarTable) {
        const QToolButton *button = buttonOf(m_main->main, row.key);
        if (!button->isHidden())
            found.append(toText(row.key) + (button->isChecked() ? u" pressed"_s : QString()));
    }
    return found << status();
}

// The same once everything was shown anew.
QStringList tst_ActiveState::shownByHand() const
{
    MainSurface &surface = m_main->main.surface();
    surface.MenuEnableDynamic();
    surface.UpdateToolbarStatus();
    surface.UpdateStatusBar(DocumentActive() ? DocumentActive()->tree.selected() : nullptr);
    return shown();
}

void tst_ActiveState::everyChangeShowsWhenTheEventLoopComesRound_data()
{
    QTest::addColumn<Act>("act");
    const auto row = [](const char *name, Act act) { QTest::newRow(name) << act; };
    row("an entry is inserted", [](Document &d) { d.history.insert(Relationship::tvwNext, d.tree.selected()); });
    row("the last child is removed", [](Document &d) { d.history.remove(d.tree.selected()->child(0)); });
    row("the entry moves up", [](Document &d) {
        d.history.move(d.tree.selected(), Relationship::tvwPrevious, d.tree.selected()->previous());
    });
    row("the entry is tagged", [](Document &d) { d.history.setTagged(d.tree.selected(), true); });
    row("the entry is renamed", [](Document &d) { d.history.setLabel(d.tree.selected(), u"Beech"_s); });
    row("the entry is expanded", [](Document &d) { d.history.setExpanded(d.tree.selected(), true); });
    row("another entry's text is stored", [](Document &d) { d.history.setStoredText(d.tree.root(), "new"); });
    row("fonts", [](Document &d) {
        clsFont font = d.m_fntTextFont;
        font.setBold(!font.Bold());
        d.history.setFonts(d.m_fntOutlineFont, font);
    });
    row("another entry is selected", [](Document &d) { modNodes::NodeSelect(d, d.tree.root()); });
    row("nothing is selected", [](Document &d) { d.history.select(nullptr); });
    row("the first key in a text", [](Document &d) {
        auto &box = dynamic_cast<RichTextBox &>(d.view()->txtRTF);
        QTest::keyClick(&box, Qt::Key_A);
    });
    row("the text gets the keyboard", [](Document &d) { d.view()->txtRTF.setFocus(); });
    row("another level is open", [](Document &d) { d.setExpansionLevel(3); });
    row("many entries are removed", [](Document &d) {
        d.history.removeAll({d.tree.root()->child(0), d.tree.root()->child(2)});
    });
    row("a step that fails is taken back", [](Document &d) {
        d.history.setTagged(d.tree.selected(), true);
        History::Step step(d.history, u"nothing"_s);
        d.history.setTagged(d.tree.root()->child(0), true);
        step.takeBack();
    });
    row("what is done is undone", [](Document &d) {
        d.history.setTagged(d.tree.selected(), true);
        QCoreApplication::sendPostedEvents();
        QVERIFY(d.history.undo());
    });
    row("the file turns read-only", [](Document &d) {
        d.m_sFile = u"/proc/version"_s;
        d.m_fileAccess = FileAccess::ReadOnly;
        d.lookAtFileAgain();
    });
    row("a text that is not to be had whole", [](Document &d) {
        d.view()->txtRTF.setFocus();
        QCoreApplication::sendPostedEvents();
        d.history.setStoredText(d.tree.selected(), "30,no such stream");
        QCoreApplication::sendPostedEvents();
        modNodes::NodeTextGet(d, d.tree.selected());
    });
    row("a format at the selection", [](Document &d) {
        d.view()->txtRTF.setFocus();
        QCoreApplication::sendPostedEvents();
        d.view()->txtRTF.setSelBold(true);
    });
}

void tst_ActiveState::everyChangeShowsWhenTheEventLoopComesRound()
{
    QFETCH(const Act, act);
    Document &document = plant();
    const QStringList before = shown();
    act(document);
    comeRound();
    const QStringList after = shown();
    QVERIFY(after != before);
    QCOMPARE(after, shownByHand());
}

void tst_ActiveState::aMenuThatOpensShowsWhatHasJustChanged()
{
    Document &document = plant();
    document.history.setTagged(document.tree.selected(), true);
    QMenu &menu = *m_main->main.findChild<QMenu *>(u"mnuTools"_s);
    menu.popup(m_main->main.mapToGlobal(QPoint(100, 100)));
    QCOMPARE(undoCaption(), u"&Undo tagging of \"B\""_s);
    menu.close();
}

// A click turns an item's mark whatever its command does then.
void tst_ActiveState::aMenuThatOpensShowsItsCheckMarksAsTheyAre()
{
    plant();
    QAction &item = *m_main->main.findChild<QAction *>(u"mnuViewOptionsBackupOnSave"_s);
    item.setChecked(!g_options.Backup);
    QMenu &menu = *m_main->main.findChild<QMenu *>(u"mnuView"_s);
    menu.popup(m_main->main.mapToGlobal(QPoint(100, 100)));
    QCOMPARE(item.isChecked(), g_options.Backup);
    menu.close();
}

void tst_ActiveState::whatACommandDidShowsAtOnce()
{
    plant();
    m_main->main.findChild<QAction *>(u"mnuOutlineMoveUp"_s)->trigger();
    const QStringList after = shown();
    QCOMPARE(after, shownByHand());
    QVERIFY(after.contains(u"mnuToolsUndo &Undo move of \"B\""_s));
}

// Nothing but the end of its command tells of an option that a document does not have. What a click does to the mark is
// not it: the mark was wrong before.
void tst_ActiveState::anOptionShowsAsSoonAsItsCommandIsDone()
{
    comeRound();
    QAction &item = *m_main->main.findChild<QAction *>(u"mnuViewOptionsBackupOnSave"_s);
    for (const bool backup : {!g_options.Backup, g_options.Backup}) {
        item.setChecked(backup);
        item.trigger();
        QCOMPARE(g_options.Backup, backup);
        QCOMPARE(item.isChecked(), backup);
    }
}

void tst_ActiveState::manyChangesMakeOneRefresh()
{
    Document &document = plant();
    const QSignalSpy shows(m_main->main.findChild<QAction *>(u"mnuToolsUndo"_s), &QAction::changed);
    for (int i = 0; i < 100; ++i)
        document.history.setLabel(document.tree.root(), QString::number(i));
    QCOMPARE(shows.count(), 0);
    comeRound();
    QVERIFY(shows.count() > 0 && shows.count() <= 2);
}

void tst_ActiveState::typingOnAnnouncesNothingThatMenusShow()
{
    Document &document = plant();
    RichTextBox &box = *form().textBox;
    box.setFocus();
    QTest::keyClicks(&box, u"be"_s);
    QCoreApplication::processEvents();
    int announced = 0;
    // Until the end of this: closing the window announces much.
    const QObject listener;
    const auto count = [&announced] { ++announced; };
    connect(&document.history, &History::changed, &listener, count);
    connect(&document.history, &History::positionChanged, &listener, count);
    connect(&document.history, &History::stepsChanged, &listener, count);
    connect(&document.tree, &EntryTree::selectedChanged, &listener, count);
    connect(&document, &Document::stateChanged, &listener, count);
    connect(&document, &Document::statusTextChanged, &listener, count);
    connect(&document.texts, &LiveTexts::shownChanged, &listener, count);
    QTest::keyClicks(&box, u"ech"_s);
    QCOMPARE(announced, 0);
    QCOMPARE(box.Text(), u"beech"_s);
}

void tst_ActiveState::aDocumentInTheBackgroundShowsInNoMenu()
{
    Document &behind = plant();
    plant();
    const QStringList before = shown();
    behind.history.setTagged(behind.tree.selected(), true);
    modNodes::NodeSelect(behind, behind.tree.root());
    behind.say(u"Nobody hears this"_s);
    behind.view()->txtRTF.setSelBold(true);
    comeRound();
    QCOMPARE(shown(), before);
    QCOMPARE(undoCaption(), u"&Undo"_s);
    QVERIFY(behind.history.undo());
    comeRound();
    QCOMPARE(shown(), before);
    behind.view()->window.activate();
    comeRound();
    QCOMPARE(m_main->main.findChild<QAction *>(u"mnuToolsRedo"_s)->text(), u"&Redo tagging of \"B\""_s);
}

void tst_ActiveState::aClickIntoAnotherDocumentShowsThatOne()
{
    Document &first = plant();
    frmDocument &firstForm = form();
    first.history.setTagged(first.tree.selected(), true);
    plant();
    m_main->choose("mnuWindowTileVertical");
    comeRound();
    QCOMPARE(undoCaption(), u"&Undo"_s);
    const QWidget &viewport = *firstForm.textBox->viewport();
    const QPoint place = viewport.mapTo(&m_main->main, viewport.rect().center());
    QCOMPARE(m_main->main.childAt(place), &viewport);
    QTest::mouseClick(m_main->main.windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    comeRound();
    QCOMPARE(DocumentActive(), &first);
    QCOMPARE(undoCaption(), u"&Undo tagging of \"B\""_s);
    QCOMPARE(shown(), shownByHand());
    QVERIFY(m_main->main.findChild<QAction *>(u"mnuEditSelectAll"_s)->isEnabled());
}

void tst_ActiveState::anEntryCopiedFromADocumentThatClosesCannotBePasted()
{
    Document &source = plant();
    m_main->choose("mnuOutlineCopy");
    plant();
    comeRound();
    QVERIFY(m_main->main.findChild<QAction *>(u"mnuOutlinePaste"_s)->isEnabled());
    source.giveUpChanges();
    QVERIFY(source.view()->window.close());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    comeRound();
    QVERIFY(!m_main->main.findChild<QAction *>(u"mnuOutlinePaste"_s)->isEnabled());
}

void tst_ActiveState::whatIsSaidInPassingEndsWithTheSelection()
{
    Document &document = plant();
    document.say(u"Undid something"_s);
    comeRound();
    QCOMPARE(status(), u"Undid something"_s);
    modNodes::NodeSelect(document, document.tree.root());
    comeRound();
    QCOMPARE(status(), u"Root"_s);
    document.note(u"The file could not be saved"_s);
    document.say(QString());
    comeRound();
    QCOMPARE(status(), QString());
    form().Form_Activate();
    comeRound();
    QCOMPARE(status(), u"The file could not be saved"_s);
    document.history.setLabel(document.tree.root(), u"Trees"_s);
    comeRound();
    QCOMPARE(status(), u"Trees"_s);
}

void tst_ActiveState::whatIsSaidWithoutADocumentIsShown()
{
    QVERIFY(modDoc::DocLoad(u"/no/such/file.qly"_s));
    comeRound();
    QCOMPARE(status(), u"The file /no/such/file.qly could not be found"_s);
    plant();
    QCOMPARE(status(), u"B"_s);
    DocumentActive()->giveUpChanges();
    QVERIFY(DocumentActive()->view()->window.close());
    comeRound();
    QCOMPARE(status(), QString());
}

QTEST_MAIN(tst_ActiveState)
#include "tst_ActiveState.moc"
