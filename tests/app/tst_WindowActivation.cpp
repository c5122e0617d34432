// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/DocumentFrame.h"
#include "app/MainFixture.h"
#include "commands/ToolbarTable.h"
#include "document/modDoc.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QMdiArea>
#include <QRandomGenerator>
#include <QStyle>
#include <QStyleOptionTitleBar>
#include <QTest>
#include <QToolButton>
#include <QWindow>

using namespace Qt::StringLiterals;

// Which of several documents is the active one, as a person changes it with mouse and keys.
class tst_WindowActivation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_main.reset(); }

    void aClickActivatesTheDocumentThatItMeets_data();
    void aClickActivatesTheDocumentThatItMeets();
    void whatIsTypedAfterAClickGoesIntoTheDocumentThatWasClicked();
    void theMaximiseButtonOfAnotherDocumentActivatesIt();
    void aDoubleClickOnAMinimisedDocumentActivatesIt();
    void aPaneThatIsGivenTheFocusActivatesItsDocument();
    void ctrlF6LeavesAMinimisedDocument();
    void ctrlF6LeavesADocumentWhoseSplitIsBeingMoved();
    void aClickIntoAnotherDocumentEndsAMoveOfTheSplit();
    void whateverIsDoneTheProgramAgreesOnTheActiveDocument_data();
    void whateverIsDoneTheProgramAgreesOnTheActiveDocument();

private:
    void openDocuments(int count);
    bool clickIn(const QWidget &widget, const QRect &area) const;
    bool clickTitle(const DocumentFrame &frame, QStyle::SubControl part, bool twice = false) const;
    void agree(const char *after) const;
    QByteArray step(QRandomGenerator &random);
    QByteArray clickSomewhere(QRandomGenerator &random, DocumentFrame &frame) const;

    // In the order in which they were opened.
    QList<DocumentFrame *> frames() const
    {
        QList<DocumentFrame *> all;
        for (QMdiSubWindow *each : area().subWindowList(QMdiArea::CreationOrder))
            all.append(static_cast<DocumentFrame *>(each));
        return all;
    }

    QMdiArea &area() const { return *m_main->main.findChild<QMdiArea *>(); }

    frmDocument &form(int index) const { return *frames().at(index)->form(); }

    void pressKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(m_main->main.windowHandle(), key, modifiers);
    }

    std::unique_ptr<MainFixture> m_main;
};

void tst_WindowActivation::init()
{
    m_main = std::make_unique<MainFixture>();
    m_main->start();
    m_main->main.resize(1000, 800);
    m_main->main.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
}

// Side by side, so that a part of each is to be seen; the last is the active one.
void tst_WindowActivation::openDocuments(int count)
{
    for (int number = 1; number <= count; ++number)
        modDoc::DocLoad(m_main->app.makeFile(u"%1.txt"_s.arg(number), "text"));
    QCOMPARE(frames().size(), count);
    m_main->choose("mnuWindowTileVertical");
    QCOMPARE(m_main->main.windows().activeDocument(), &form(count - 1).document());
}

// Clicks on the first place of a widget that nothing else covers; false where all of it is covered.
bool tst_WindowActivation::clickIn(const QWidget &widget, const QRect &rect) const
{
    QWidget &top = m_main->main;
    for (int y = rect.top() + 1; y < rect.bottom(); y += 5) {
        for (int x = rect.left() + 1; x < rect.right(); x += 5) {
            const QPoint place = widget.mapTo(&top, QPoint(x, y));
            if (top.childAt(place) != &widget)
                continue;
            QTest::mouseClick(top.windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
            return true;
        }
    }
    return false;
}

bool tst_WindowActivation::clickTitle(const DocumentFrame &frame, QStyle::SubControl part, bool twice) const
{
    QStyleOptionTitleBar title;
    title.initFrom(&frame);
    title.subControls = QStyle::SC_All;
    title.titleBarFlags = frame.windowFlags();
    title.titleBarState = frame.isMinimized() ? Qt::WindowMinimized : Qt::WindowNoState;
    const int height = frame.style()->pixelMetric(QStyle::PM_TitleBarHeight, &title, &frame);
    title.rect = QRect(0, 0, frame.width(), height);
    const QRect rect = frame.style()->subControlRect(QStyle::CC_TitleBar, &title, part, &frame);
    const QPoint place = frame.mapTo(&m_main->main, rect.center());
    if (m_main->main.childAt(place) != &frame)
        return false;
    // Two clicks of a test follow one another so closely that they would count as one double click.
    QTest::qWait(QApplication::doubleClickInterval() / 100);
    if (twice)
        QTest::mouseDClick(m_main->main.windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    else
        QTest::mouseClick(m_main->main.windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
    return true;
}

static bool holds(const QWidget &pane, const QWidget *focus)
{
    return focus && (focus == &pane || pane.isAncestorOf(focus));
}

// What the program says in its different places is one and the same.
void tst_WindowActivation::agree(const char *after) const
{
    const frmMain &main = m_main->main;
    const auto *frame = qobject_cast<DocumentFrame *>(area().activeSubWindow());
    QVERIFY2((frame != nullptr) == !frames().isEmpty(), after);
    QVERIFY2(m_main->enabled("mnuFileClose") == (frame != nullptr), after);
    QVERIFY2(m_main->enabled("mnuFileSave") == (frame != nullptr), after);
    if (!frame)
        return;
    const Document &document = frame->form()->document();
    QVERIFY2(main.windows().activeDocument() == &document, after);
    QVERIFY2(m_main->enabled("mnuEditSelectAll") == document.view()->m_bTextHasFocus(), after);
    QVERIFY2(m_main->enabled("mnuOutlineRename"), after);
    if (frame->isMinimized())
        return;
    const QWidget *focus = QApplication::focusWidget();
    QVERIFY2(holds(*frame->form()->treeView, focus) || holds(*frame->form()->textBox, focus), after);
    QVERIFY2(document.view()->m_bOutlineHasFocus() == holds(*frame->form()->treeView, focus), after);
    QVERIFY2(document.view()->m_bTextHasFocus() == holds(*frame->form()->textBox, focus), after);
    const auto *toText =
        main.findChild<QToolButton *>(u"tb"_s + QLatin1StringView(toolbarTable[toolbarRow("Go To Text")].icon));
    // The bar lays its buttons out a moment later.
    QVERIFY2(toText && toText->isHidden() != document.view()->m_bOutlineHasFocus(), after);
}

void tst_WindowActivation::aClickActivatesTheDocumentThatItMeets_data()
{
    QTest::addColumn<QByteArray>("part");
    QTest::newRow("text") << QByteArray("text");
    QTest::newRow("outline") << QByteArray("outline");
    QTest::newRow("title bar") << QByteArray("title");
}

void tst_WindowActivation::aClickActivatesTheDocumentThatItMeets()
{
    QFETCH(const QByteArray, part);
    openDocuments(3);
    for (const int index : {0, 2, 1, 0}) {
        const QWidget *pane = part == "text" ? form(index).textBox->viewport() : form(index).treeView->viewport();
        if (part == "title")
            QVERIFY(clickTitle(*frames().at(index), QStyle::SC_TitleBarLabel));
        else
            QVERIFY(clickIn(*pane, pane->rect()));
        QCOMPARE(m_main->main.windows().activeDocument(), &form(index).document());
        agree(part.constData());
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(form(index).document().view()->m_bTextHasFocus(), part == "text");
    }
}

void tst_WindowActivation::whatIsTypedAfterAClickGoesIntoTheDocumentThatWasClicked()
{
    openDocuments(2);
    QVERIFY(clickIn(*form(0).textBox->viewport(), form(0).textBox->viewport()->rect()));
    pressKey(Qt::Key_A);
    QVERIFY(clickIn(*form(1).textBox->viewport(), form(1).textBox->viewport()->rect()));
    pressKey(Qt::Key_B);
    QVERIFY(form(0).document().view()->txtRTF.Text().contains(u'a'));
    QVERIFY(!form(0).document().view()->txtRTF.Text().contains(u'b'));
    QVERIFY(form(1).document().view()->txtRTF.Text().contains(u'b'));
}

void tst_WindowActivation::theMaximiseButtonOfAnotherDocumentActivatesIt()
{
    openDocuments(2);
    QVERIFY(clickTitle(*frames().at(0), QStyle::SC_TitleBarMaxButton));
    QVERIFY(frames().at(0)->isMaximized());
    QCOMPARE(m_main->main.windows().activeDocument(), &form(0).document());
    agree("maximising");
}

void tst_WindowActivation::aDoubleClickOnAMinimisedDocumentActivatesIt()
{
    openDocuments(2);
    QVERIFY(clickTitle(*frames().at(0), QStyle::SC_TitleBarMinButton));
    QVERIFY(frames().at(0)->isMinimized());
    QVERIFY(clickIn(*form(1).textBox->viewport(), form(1).textBox->viewport()->rect()));
    QCOMPARE(m_main->main.windows().activeDocument(), &form(1).document());
    m_main->choose("mnuWindowTileVertical");
    QVERIFY(clickTitle(*frames().at(0), QStyle::SC_TitleBarLabel, true));
    QVERIFY(!frames().at(0)->isMinimized());
    QCOMPARE(m_main->main.windows().activeDocument(), &form(0).document());
    agree("restoring");
}

// As assistive technology does it.
void tst_WindowActivation::aPaneThatIsGivenTheFocusActivatesItsDocument()
{
    openDocuments(2);
    form(0).textBox->setFocus();
    QCOMPARE(m_main->main.windows().activeDocument(), &form(0).document());
    agree("the focus");
}

void tst_WindowActivation::ctrlF6LeavesAMinimisedDocument()
{
    openDocuments(2);
    QVERIFY(clickTitle(*frames().at(1), QStyle::SC_TitleBarMinButton));
    area().setActiveSubWindow(frames().at(1));
    QCOMPARE(m_main->main.windows().activeDocument(), &form(1).document());
    pressKey(Qt::Key_F6, Qt::ControlModifier);
    QCOMPARE(m_main->main.windows().activeDocument(), &form(0).document());
    agree("Ctrl+F6");
}

void tst_WindowActivation::ctrlF6LeavesADocumentWhoseSplitIsBeingMoved()
{
    openDocuments(2);
    m_main->choose("mnuViewMoveSplit");
    QVERIFY(form(1).m_bMovingSplit);
    pressKey(Qt::Key_F6, Qt::ControlModifier);
    QVERIFY(!form(1).m_bMovingSplit);
    QCOMPARE(m_main->main.windows().activeDocument(), &form(0).document());
    agree("Ctrl+F6");
}

void tst_WindowActivation::aClickIntoAnotherDocumentEndsAMoveOfTheSplit()
{
    openDocuments(2);
    m_main->choose("mnuViewMoveSplit");
    QVERIFY(clickIn(*form(0).textBox->viewport(), form(0).textBox->viewport()->rect()));
    QVERIFY(!form(1).m_bMovingSplit);
    QCOMPARE(m_main->main.windows().activeDocument(), &form(0).document());
    agree("a click");
    QVERIFY(form(0).document().view()->m_bTextHasFocus());
}

QByteArray tst_WindowActivation::clickSomewhere(QRandomGenerator &random, DocumentFrame &frame) const
{
    const frmDocument &form = *frame.form();
    switch (random.bounded(6)) {
    case 0:
        return clickIn(*form.textBox->viewport(), form.textBox->viewport()->rect()) ? "a click into the text" : "";
    case 1:
        return clickIn(*form.treeView->viewport(), form.treeView->viewport()->rect()) ? "a click into the outline" : "";
    case 2:
        if (frame.isMaximized())
            return "";
        return clickTitle(frame, QStyle::SC_TitleBarLabel) ? "a click on the title" : "";
    case 3:
        if (frame.isMaximized())
            return "";
        return clickTitle(frame, QStyle::SC_TitleBarLabel, true) ? "a double click on the title" : "";
    case 4:
        if (frame.isMaximized() || frame.isMinimized())
            return "";
        return clickTitle(frame, QStyle::SC_TitleBarMaxButton) ? "maximising" : "";
    default:
        if (frame.isMaximized() || frame.isMinimized() || !clickTitle(frame, QStyle::SC_TitleBarMinButton))
            return "";
        return "minimising";
    }
}

// One thing that a person does, chosen at random; its name, or nothing where it could not be done.
QByteArray tst_WindowActivation::step(QRandomGenerator &random)
{
    const auto count = static_cast<int>(frames().size());
    DocumentFrame *frame = count == 0 ? nullptr : frames().at(random.bounded(count));
    const int choice = count == 0 ? 0 : random.bounded(20);
    switch (choice) {
    case 0:
        if (count > 5)
            return "";
        m_main->choose("mnuFileNew");
        return "a new document";
    case 1:
        m_main->app.core.dialogs.answers.assign(1, Answer::No);
        m_main->choose("mnuFileClose");
        m_main->app.core.dialogs.answers.clear();
        // The closed window goes with the event that deletes it.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTest::qWait(0);
        return "closing";
    case 2:
        pressKey(Qt::Key_F6, Qt::ControlModifier);
        return "Ctrl+F6";
    case 3:
        m_main->choose("mnuWindowTileVertical");
        return "tiling";
    case 4:
        m_main->choose("mnuWindowTileHorizontal");
        return "tiling the other way";
    case 5:
        m_main->choose("mnuWindowCascade");
        return "cascading";
    case 6:
        if (!area().activeSubWindow()->isMaximized())
            return "";
        area().activeSubWindow()->showNormal();
        return "restoring";
    case 7:
        pressKey(Qt::Key_Tab);
        return "Tab";
    case 8:
        pressKey(Qt::Key_X);
        return "typing";
    case 9:
        pressKey(Qt::Key_F2);
        pressKey(Qt::Key_Y);
        return "editing a label";
    case 10:
        if (area().activeSubWindow()->isMinimized())
            return "";
        m_main->choose("mnuViewMoveSplit");
        pressKey(Qt::Key_Right);
        pressKey(random.bounded(2) == 0 ? Qt::Key_Return : Qt::Key_Tab);
        return "a moved split";
    default: {
        // A minimised window is drawn by its title alone; what is clicked in it is the title.
        const QByteArray done = clickSomewhere(random, *frame);
        if (!done.isEmpty() && done != "minimising" && area().activeSubWindow() != frame)
            return "FAILED: " + done;
        return done;
    }
    }
}

void tst_WindowActivation::whateverIsDoneTheProgramAgreesOnTheActiveDocument_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2U, 3U})
        QTest::addRow("%u", seed) << seed;
}

void tst_WindowActivation::whateverIsDoneTheProgramAgreesOnTheActiveDocument()
{
    QFETCH(const quint32, seed);
    QRandomGenerator random(seed);
    openDocuments(3);
    QByteArray done;
    for (int number = 0; number < 150; ++number) {
        const QByteArray name = step(random);
        if (name.isEmpty())
            continue;
        done += name + "; ";
        QVERIFY2(!name.startsWith("FAILED"), done.constData());
        agree(done.constData());
        if (QTest::currentTestFailed())
            return;
    }
}

QTEST_MAIN(tst_WindowActivation)
#include "tst_WindowActivation.moc"
