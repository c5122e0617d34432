// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindPaneFixture.h"

#include "window/PreviewOverlay.h"

#include <QMdiSubWindow>

using namespace Qt::StringLiterals;

namespace
{

// Where a document stands before the user's eyes.
struct Stand {
    QStringList outline;
    QPoint scrolled;
    int caret;
    int selected;
    qsizetype steps;
    bool isChanged;
    bool operator==(const Stand &) const = default;
};

Stand standOf(const Document &document)
{
    const frmDocument &form = FindPaneFixture::formOf(document);
    return {dumpOutline(document.tree),
            {form.treeView->verticalScrollBar()->value(), form.textBox->verticalScrollBar()->value()},
            form.textBox->SelStart(),
            form.textBox->SelLength(),
            static_cast<qsizetype>(document.history.steps().size()),
            document.hasUnsavedChanges()};
}

} // namespace

// Walking through hits in the running main window: looking at them, coming back and going there.
class tst_FindPanePreview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_pane.reset(); }

    void downLooksAtHitsAndEscComesBack();
    void upAndDownGoThroughHitsAlone();
    void whatWasTakenBackIsShownAgain();
    void keysOfTheDocumentDoNothingInThePane_data();
    void keysOfTheDocumentDoNothingInThePane();
    void enterGoesThereAndSelectsTheMatch();
    void enterAtOnceGoesToTheFirstHit();
    void aHitInALabelIsGoneToInTheOutline();
    void aMatchInATableIsSelected();
    void aClickLooksAndADoubleClickGoes();
    void aClickOnWhatIsShownGoesThere();
    void anotherSearchComesBack();
    void typingInTheDocumentEndsTheLook();
    void closingThePaneComesBack();
    void aHitOfAnotherDocumentIsLookedAtInItsWindow();
    void enterGoesToAnotherDocument();
    void aMinimisedWindowComesUpWhenItIsGoneTo();
    void whatWasGoneToIsNotLookedForNext();
    void anEntryDeletedMeanwhileIsNotGoneTo();
    void aDocumentClosedMeanwhileIsNotGoneTo();
    void theRestOfManyHitsIsListedOnRequest();

private:
    Document &plant();

    bool isShown() const { return isShown(*DocumentActive()); }

    static bool isShown(const Document &document) { return document.view()->window.previewPane()->isShown(); }

    QString shownText() const
    {
        return FindPaneFixture::formOf(*DocumentActive()).preview->findChild<RichTextBox *>(u"txtPreview"_s)->SelText();
    }

    std::unique_ptr<FindPaneFixture> m_pane;
};

void tst_FindPanePreview::init()
{
    m_pane = std::make_unique<FindPaneFixture>();
}

// A hundred entries, of which every tenth holds a rare word at the end of a long text, in closed branches.
Document &tst_FindPanePreview::plant()
{
    FindPaneFixture::Planted planted{{u"Root +"_s, u"Root text"_s}};
    for (int number = 1; number <= 100; ++number) {
        QString text = u"Line\n"_s.repeated(80);
        if (number % 10 == 0)
            text += u"here is the needle\nand a needle more"_s;
        planted.append({(number % 2 == 1 ? u" Entry %1"_s : u"  Entry %1"_s).arg(number), text});
    }
    planted[9].first += u" <"_s;
    planted[9].second += u" and more"_s;
    Document &document = m_pane->plant(planted);
    frmDocument &form = m_pane->form();
    form.textBox->setSelStart(40);
    form.textBox->setSelLength(3);
    form.textBox->verticalScrollBar()->setValue(77);
    form.treeView->verticalScrollBar()->setValue(3);
    document.giveUpChanges();
    return document;
}

void tst_FindPanePreview::downLooksAtHitsAndEscComesBack()
{
    const Document &document = plant();
    const Stand before = standOf(document);
    m_pane->find(u"needle"_s);
    QVERIFY(standOf(document) == before);
    for (int step = 0; step < 15; ++step) {
        m_pane->press(Qt::Key_Down);
        QTRY_VERIFY(isShown() && m_pane->box().hasFocus());
        QTRY_COMPARE(shownText(), u"needle"_s);
        QCOMPARE(document.tree.selected()->label(), u"Entry 9"_s);
    }
    QVERIFY(m_pane->list().viewport()->rect().contains(m_pane->list().visualRect(m_pane->list().currentIndex())));
    m_pane->press(Qt::Key_Escape);
    QVERIFY(!isShown() && m_pane->box().hasFocus());
    QVERIFY(standOf(document) == before);
    m_pane->press(Qt::Key_Escape);
    QVERIFY(m_pane->form().treeView->hasFocus());
    QVERIFY(standOf(document) == before);
}

void tst_FindPanePreview::upAndDownGoThroughHitsAlone()
{
    plant();
    m_pane->find(u"needle"_s);
    const auto current = [this] { return m_pane->list().currentIndex().row(); };
    for (const int row : {1, 2, 4, 5}) {
        m_pane->press(Qt::Key_Down);
        QCOMPARE(current(), row);
    }
    m_pane->press(Qt::Key_Up);
    QCOMPARE(current(), 4);
    m_pane->press(Qt::Key_PageDown);
    QCOMPARE(current(), 19);
    m_pane->press(Qt::Key_PageDown);
    QCOMPARE(current(), 29);
    m_pane->press(Qt::Key_Down);
    QCOMPARE(current(), 29);
}

void tst_FindPanePreview::whatWasTakenBackIsShownAgain()
{
    plant();
    m_pane->find(u"\"Entry 30\""_s);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up}) {
        m_pane->press(key);
        QTRY_VERIFY(isShown());
        m_pane->press(Qt::Key_Escape);
        QVERIFY(!isShown());
    }
}

void tst_FindPanePreview::keysOfTheDocumentDoNothingInThePane_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("a tab") << Qt::Key_Tab << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("bold") << Qt::Key_B << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("joining") << Qt::Key_J << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("splitting") << Qt::Key_J << (Qt::ControlModifier | Qt::ShiftModifier);
}

void tst_FindPanePreview::keysOfTheDocumentDoNothingInThePane()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    const Document &document = plant();
    m_pane->form().textBox->setFocus();
    m_pane->form().textBox->selectAll();
    const Stand before = standOf(document);
    m_pane->find(u"needle"_s);
    m_pane->press(key, modifiers);
    m_pane->press(Qt::Key_Down);
    QTRY_VERIFY(isShown());
    m_pane->press(key, modifiers);
    QVERIFY(isShown() && m_pane->box().hasFocus());
    m_pane->list().setFocus();
    m_pane->press(key, modifiers);
    m_pane->press(Qt::Key_Escape);
    QVERIFY(!isShown());
    QVERIFY(standOf(document) == before);
}

void tst_FindPanePreview::enterGoesThereAndSelectsTheMatch()
{
    const Document &document = plant();
    m_pane->find(u"needle"_s);
    m_pane->press(Qt::Key_Down);
    m_pane->press(Qt::Key_Down);
    m_pane->press(Qt::Key_Return);
    QVERIFY(!isShown());
    QCOMPARE(document.tree.selected()->label(), u"Entry 10"_s);
    QVERIFY(document.tree.selected()->parent()->expanded());
    QVERIFY(m_pane->form().textBox->hasFocus());
    QCOMPARE(m_pane->form().textBox->SelText(), u"needle"_s);
    QCOMPARE(m_pane->form().textBox->textCursor().block().text(), u"and a needle more"_s);
    QVERIFY(m_pane->form().textBox->viewport()->rect().contains(m_pane->form().textBox->cursorRect().center()));
    // The list stays, and the next hit is one key away.
    m_pane->open();
    m_pane->press(Qt::Key_Down);
    m_pane->press(Qt::Key_Return);
    QCOMPARE(document.tree.selected()->label(), u"Entry 20"_s);
    QVERIFY(!document.history.canUndo());
}

void tst_FindPanePreview::enterAtOnceGoesToTheFirstHit()
{
    const Document &document = plant();
    m_pane->open();
    m_pane->type(u"needle"_s);
    m_pane->press(Qt::Key_Return);
    QTRY_COMPARE(document.tree.selected()->label(), u"Entry 10"_s);
    QTRY_VERIFY(m_pane->form().textBox->hasFocus());
    QCOMPARE(m_pane->form().textBox->SelText(), u"needle"_s);
}

void tst_FindPanePreview::aHitInALabelIsGoneToInTheOutline()
{
    const Document &document = plant();
    m_pane->find(u"\"Entry 77\""_s);
    m_pane->press(Qt::Key_Down);
    const auto &head = *m_pane->form().preview->findChild<QLabel *>(u"lblPreview"_s);
    QTRY_VERIFY2(head.text().contains(u">Entry 77</span>"_s), qPrintable(head.text()));
    m_pane->press(Qt::Key_Return);
    QCOMPARE(document.tree.selected()->label(), u"Entry 77"_s);
    QVERIFY(m_pane->form().treeView->hasFocus());
}

void tst_FindPanePreview::aMatchInATableIsSelected()
{
    Document &document = m_pane->plant({{u"Root <"_s, u"x"_s}, {u" Table"_s, u"y"_s}});
    rawOutline(document).tree.setStoredText(
        entryLabelled(document.tree, u"Table"_s),
        "{\\rtf1 before\\par\\trowd\\cellx2000\\cellx4000\\intbl one\\cell two needle\\cell"
        "\\row\\pard after needle}");
    m_pane->find(u"needle"_s);
    QCOMPARE(m_pane->counts(), u"2 hits in 1 entry"_s);
    m_pane->press(Qt::Key_Down);
    QTRY_COMPARE(shownText(), u"needle"_s);
    m_pane->press(Qt::Key_Return);
    QCOMPARE(m_pane->form().textBox->SelText(), u"needle"_s);
    QCOMPARE(m_pane->form().textBox->textCursor().block().text(), u"two needle"_s);
}

void tst_FindPanePreview::aClickLooksAndADoubleClickGoes()
{
    const Document &document = plant();
    const Stand before = standOf(document);
    m_pane->find(u"needle"_s);
    m_pane->clickRow(4);
    QTRY_VERIFY(isShown());
    QTRY_COMPARE(shownText(), u"needle"_s);
    m_pane->press(Qt::Key_Escape);
    QVERIFY(!isShown() && standOf(document) == before);
    QTest::mouseDClick(m_pane->list().viewport(), Qt::LeftButton, {}, m_pane->centreOf(7));
    QCOMPARE(document.tree.selected()->label(), u"Entry 30"_s);
    QVERIFY(m_pane->form().textBox->hasFocus());
}

void tst_FindPanePreview::aClickOnWhatIsShownGoesThere()
{
    const Document &document = plant();
    m_pane->find(u"needle"_s);
    m_pane->press(Qt::Key_Down);
    QTRY_VERIFY(isShown());
    QTest::mouseClick(m_pane->form().preview->findChild<RichTextBox *>(u"txtPreview"_s)->viewport(), Qt::LeftButton);
    QVERIFY(!isShown());
    QCOMPARE(document.tree.selected()->label(), u"Entry 10"_s);
    QVERIFY(m_pane->form().textBox->hasFocus());
}

void tst_FindPanePreview::anotherSearchComesBack()
{
    const Document &document = plant();
    const Stand before = standOf(document);
    m_pane->find(u"needle"_s);
    m_pane->press(Qt::Key_Down);
    m_pane->type(u"x"_s);
    m_pane->waitForEnd();
    QVERIFY(!isShown() && standOf(document) == before);
}

void tst_FindPanePreview::typingInTheDocumentEndsTheLook()
{
    const Document &document = plant();
    const Stand before = standOf(document);
    m_pane->find(u"needle"_s);
    m_pane->press(Qt::Key_Down);
    m_pane->press(Qt::Key_F6);
    QVERIFY(!isShown() && standOf(document) == before);
    QVERIFY(m_pane->form().treeView->hasFocus());
    QTest::qWait(300);
    QVERIFY(standOf(document) == before);
}

void tst_FindPanePreview::closingThePaneComesBack()
{
    const Document &document = plant();
    const Stand before = standOf(document);
    m_pane->find(u"needle"_s);
    m_pane->press(Qt::Key_Down);
    m_pane->main().choose("mnuToolsFindEverywhere");
    QVERIFY(!isShown() && standOf(document) == before);
}

void tst_FindPanePreview::aHitOfAnotherDocumentIsLookedAtInItsWindow()
{
    const Document &first = plant();
    const Document &second = m_pane->plant({{u"Kitchen"_s, u"nothing"_s}, {u" Drawer <"_s, u"a needle"_s}});
    const Stand before = standOf(first);
    const Stand beforeHere = standOf(second);
    m_pane->find(u"needle"_s);
    m_pane->choose(u"cmbWhere"_s, 2);
    m_pane->waitForEnd();
    m_pane->open();
    m_pane->press(Qt::Key_Down);
    QTRY_VERIFY(isShown(first) && DocumentActive() == &first && m_pane->box().hasFocus());
    QTest::qWait(300);
    QTRY_VERIFY(isShown(first) && DocumentActive() == &first && m_pane->box().hasFocus());
    QCOMPARE(m_pane->rows().size(), 34);
    m_pane->press(Qt::Key_PageDown);
    m_pane->press(Qt::Key_PageDown);
    m_pane->press(Qt::Key_Down);
    QTRY_VERIFY(isShown(second) && !isShown(first) && DocumentActive() == &second);
    QVERIFY(standOf(first) == before);
    m_pane->press(Qt::Key_Up);
    QTRY_VERIFY(isShown(first) && !isShown(second));
    m_pane->press(Qt::Key_Escape);
    QVERIFY(!isShown(first) && DocumentActive() == &second && m_pane->box().hasFocus());
    QVERIFY(standOf(first) == before && standOf(second) == beforeHere);
}

void tst_FindPanePreview::enterGoesToAnotherDocument()
{
    const Document &first = plant();
    m_pane->plant({{u"Kitchen <"_s, u"nothing"_s}});
    m_pane->find(u"needle"_s);
    m_pane->choose(u"cmbWhere"_s, 2);
    m_pane->waitForEnd();
    m_pane->open();
    m_pane->press(Qt::Key_Down);
    m_pane->press(Qt::Key_Return);
    QCOMPARE(DocumentActive(), &first);
    QCOMPARE(first.tree.selected()->label(), u"Entry 10"_s);
    QVERIFY(FindPaneFixture::formOf(first).textBox->hasFocus());
}

void tst_FindPanePreview::aMinimisedWindowComesUpWhenItIsGoneTo()
{
    const Document &first = plant();
    m_pane->plant({{u"Kitchen <"_s, u"nothing"_s}});
    FindPaneFixture::formOf(first).parentWidget()->showMinimized();
    m_pane->find(u"needle"_s);
    m_pane->choose(u"cmbWhere"_s, 2);
    m_pane->waitForEnd();
    m_pane->open();
    m_pane->press(Qt::Key_Down);
    m_pane->press(Qt::Key_Return);
    QCOMPARE(DocumentActive(), &first);
    QVERIFY(!FindPaneFixture::formOf(first).parentWidget()->isMinimized());
    QVERIFY(FindPaneFixture::formOf(first).textBox->hasFocus());
}

void tst_FindPanePreview::whatWasGoneToIsNotLookedForNext()
{
    plant();
    m_pane->find(u"needle here"_s);
    m_pane->press(Qt::Key_Down);
    m_pane->press(Qt::Key_Return);
    QCOMPARE(m_pane->form().textBox->SelText(), u"here"_s);
    m_pane->open();
    QCOMPARE(m_pane->box().currentText(), u"needle here"_s);
    m_pane->form().textBox->setFocus();
    m_pane->form().textBox->setSelStart(0);
    m_pane->form().textBox->setSelLength(4);
    m_pane->open();
    QCOMPARE(m_pane->box().currentText(), u"Line"_s);
}

void tst_FindPanePreview::anEntryDeletedMeanwhileIsNotGoneTo()
{
    Document &document = plant();
    m_pane->find(u"needle"_s);
    m_pane->press(Qt::Key_Down);
    document.history.remove(entryLabelled(document.tree, u"Entry 10"_s));
    m_pane->press(Qt::Key_Return);
    QCOMPARE(document.tree.selected()->label(), u"Entry 9"_s);
    QTRY_COMPARE(m_pane->counts(), u"18 hits in 9 entries"_s);
}

void tst_FindPanePreview::aDocumentClosedMeanwhileIsNotGoneTo()
{
    plant();
    Document &second = m_pane->plant({{u"Kitchen <"_s, u"a needle"_s}});
    m_pane->find(u"needle"_s);
    m_pane->choose(u"cmbWhere"_s, 2);
    m_pane->waitForEnd();
    m_pane->open();
    m_pane->press(Qt::Key_Up);
    QTRY_VERIFY(isShown(second));
    m_pane->press(Qt::Key_W, Qt::ControlModifier);
    QTRY_COMPARE(m_pane->main().main.windows().documents().size(), std::size_t(1));
    m_pane->open();
    m_pane->press(Qt::Key_Escape);
    m_pane->open();
    m_pane->waitForEnd();
    m_pane->press(Qt::Key_Up);
    QTRY_VERIFY(isShown());
    DocumentActive()->giveUpChanges();
    m_pane->press(Qt::Key_W, Qt::ControlModifier);
    QTRY_VERIFY(m_pane->main().main.windows().documents().empty());
    QTRY_COMPARE(m_pane->rows(), QStringList());
    m_pane->press(Qt::Key_Return);
}

void tst_FindPanePreview::theRestOfManyHitsIsListedOnRequest()
{
    m_pane->plant({{u"Root <"_s, u"needle "_s.repeated(150)}});
    m_pane->find(u"needle"_s);
    QCOMPARE(m_pane->counts(), u"150 hits in 1 entry"_s);
    QCOMPARE(m_pane->rows().size(), 102);
    QCOMPARE(m_pane->rows().back(), u"50 more"_s);
    m_pane->clickRow(101);
    QTRY_COMPARE(m_pane->rows().size(), 151);
}

QTEST_MAIN(tst_FindPanePreview)
#include "tst_FindPanePreview.moc"
