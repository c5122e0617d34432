// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindPaneFixture.h"

#include "document/modDoc.h"
#include "search/clsHistory.h"

#include <QAccessible>

using namespace Qt::StringLiterals;

// What is found everywhere while one types, in the running main window, with real keys and clicks.
class tst_FindPane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_pane.reset(); }

    void itsKeyOpensItWithTheKeyboardInTheBox();
    void theMenuShowsAndHidesIt();
    void whatIsSelectedStandsInTheBox();
    void whatIsTypedIsFoundInLabelsAndTexts();
    void aSearchRestsWhileOneTypes();
    void nothingOfTheDocumentMovesByFinding();
    void theBoxHasAListOfEarlierSearches();
    void severalWordsAreInOneEntryAndQuotesMakeAPhrase();
    void labelsAndTextsAreFoundApart();
    void caseWordsAndAccentsCountWhereWanted();
    void aRegularExpressionSaysWhatIsWrongWithIt();
    void onlyTaggedEntriesAreFoundWhereWanted();
    void aBranchIsThatOfTheEntrySelectedWhenItWasChosen();
    void allDocumentsAreFoundBelowTheirNames();
    void hitsFollowWhatIsTyped();
    void withoutADocumentItSaysSo();
    void aClosedDocumentTakesItsHitsAlong();
    void theManualIsSearchedToo();
    void nothingIsLookedForWhileItIsHidden();
    void keysOfEditingInTheBoxAreTheBoxes();
    void tabGoesThroughItAndF6AndEscLeadOut();
    void everythingHasAName();
    void itFitsANarrowDock();

private:
    Document &plant();

    std::unique_ptr<FindPaneFixture> m_pane;
};

void tst_FindPane::init()
{
    m_pane = std::make_unique<FindPaneFixture>();
}

Document &tst_FindPane::plant()
{
    return m_pane->plant({{u"Garden +"_s, u"What grows in it"_s},
                          {u" Trees +*"_s, u"An apple tree\nand a pear tree"_s},
                          {u"  Apple <"_s, u"Red apples, green APPLES"_s},
                          {u" Caf\u00e9"_s, u"Nothing to see"_s}});
}

void tst_FindPane::itsKeyOpensItWithTheKeyboardInTheBox()
{
    plant();
    for (QWidget *pane :
         {static_cast<QWidget *>(m_pane->form().treeView), static_cast<QWidget *>(m_pane->form().textBox)}) {
        pane->setFocus();
        m_pane->open();
        QVERIFY(m_pane->box().hasFocus() && m_pane->list().isVisible());
    }
    m_pane->type(u"one"_s);
    // Once more, from within: what stands there is selected, to be typed over.
    m_pane->open();
    QVERIFY(m_pane->box().hasFocus() && m_pane->list().isVisible());
    QCOMPARE(m_pane->box().lineEdit()->selectedText(), u"one"_s);
    // From a label that is being edited, too.
    m_pane->form().treeView->setFocus();
    m_pane->press(Qt::Key_F2);
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    m_pane->open();
    QVERIFY(m_pane->box().hasFocus());
}

void tst_FindPane::theMenuShowsAndHidesIt()
{
    plant();
    m_pane->main().choose("mnuToolsFindEverywhere");
    QVERIFY(m_pane->list().isVisible() && m_pane->box().hasFocus());
    QVERIFY(m_pane->main().action(u"mnuToolsFindEverywhere"_s)->isChecked());
    m_pane->main().choose("mnuToolsFindEverywhere");
    QVERIFY(!m_pane->list().isVisible() && m_pane->form().treeView->hasFocus());
}

void tst_FindPane::whatIsSelectedStandsInTheBox()
{
    plant();
    auto &text = *m_pane->form().textBox;
    text.setFocus();
    text.setSelStart(0);
    text.setSelLength(3);
    m_pane->open();
    QCOMPARE(m_pane->box().currentText(), u"Red"_s);
    QCOMPARE(m_pane->box().lineEdit()->selectedText(), u"Red"_s);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->rows(), QStringList({u"Apple"_s, u" [Red] apples, green APPLES"_s}));
    // Of more than a line nothing is taken.
    modNodes::NodeSelectFull(*DocumentActive(), entryLabelled(DocumentActive()->tree, u"Trees"_s));
    text.setFocus();
    text.selectAll();
    m_pane->open();
    QCOMPARE(m_pane->box().currentText(), u"Red"_s);
}

void tst_FindPane::whatIsTypedIsFoundInLabelsAndTexts()
{
    plant();
    m_pane->find(u"apple"_s);
    QCOMPARE(m_pane->rows(), QStringList({u"Trees"_s, u" An [apple] tree"_s, u"Apple"_s, u" [Apple]"_s,
                                          u" Red [apple]s, green APPLES"_s, u" Red apples, green [APPLE]S"_s}));
    QCOMPARE(m_pane->counts(), u"4 hits in 2 entries"_s);
    m_pane->type(u"x"_s);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->rows(), QStringList());
    QCOMPARE(m_pane->counts(), u"Nothing found"_s);
    m_pane->press(Qt::Key_A, Qt::ControlModifier);
    m_pane->press(Qt::Key_Delete);
    QTRY_COMPARE(m_pane->counts(), QString());
    QVERIFY(m_pane->list().accessibleDescription().contains(u"Of several words all must be in an entry"_s));
}

// A key is shown before anything is begun for it.
void tst_FindPane::aSearchRestsWhileOneTypes()
{
    plant();
    m_pane->open();
    const auto &model = *static_cast<const FindHitsModel *>(m_pane->list().model());
    for (const QChar each : u"apple"_s) {
        QTest::keyClick(QApplication::focusWidget(), each.toLatin1());
        QCOMPARE(model.query().text(), QString());
    }
    QTRY_COMPARE(model.query().text(), u"apple"_s);
}

void tst_FindPane::nothingOfTheDocumentMovesByFinding()
{
    const Document &document = plant();
    const QStringList before = dumpOutline(document.tree);
    const int steps = static_cast<int>(document.history.steps().size());
    m_pane->find(u"tree"_s);
    QCOMPARE(dumpOutline(document.tree), before);
    QCOMPARE(m_pane->form().textBox->SelStart(), 0);
    QVERIFY(!m_pane->list().currentIndex().isValid());
    QVERIFY(!document.view()->window.previewPane()->isShown());
    QCOMPARE(static_cast<int>(document.history.steps().size()), steps);
    QVERIFY(!document.hasUnsavedChanges());
}

void tst_FindPane::theBoxHasAListOfEarlierSearches()
{
    plant();
    for (const QString &each : {u"apple"_s, u"tree"_s, u"pear"_s, u"apple"_s}) {
        m_pane->find(each);
        m_pane->press(Qt::Key_Return);
    }
    const auto kept = [this] {
        QStringList items;
        for (int item = 0; item < m_pane->box().count(); ++item)
            items.append(m_pane->box().itemText(item));
        return items;
    };
    QCOMPARE(kept(), QStringList({u"apple"_s, u"pear"_s, u"tree"_s}));
    // By keys: the list opens, and what is chosen is looked for.
    m_pane->open();
    m_pane->press(Qt::Key_Down, Qt::AltModifier);
    QTRY_VERIFY(m_pane->box().view()->isVisible());
    QTest::keyClick(m_pane->box().view(), Qt::Key_End);
    QTest::keyClick(m_pane->box().view(), Qt::Key_Return);
    QTRY_COMPARE(m_pane->box().currentText(), u"tree"_s);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->rows().front(), u"Trees"_s);
    // They outlive the program, the last twenty.
    for (int number = 0; number < 25; ++number) {
        m_pane->find(u"number%1"_s.arg(number));
        m_pane->form().treeView->setFocus();
        m_pane->main().choose("mnuToolsFindEverywhere");
    }
    clsHistory history(u"FindEverywhereHistory"_s);
    history.Load(m_pane->main().app.settings);
    bool atEnd = false;
    history.FirstEntry(atEnd);
    QCOMPARE(history.NextEntry(atEnd), u"number24"_s);
    int count = 1;
    for (history.NextEntry(atEnd); !atEnd; history.NextEntry(atEnd))
        ++count;
    QCOMPARE(count, 20);
}

void tst_FindPane::severalWordsAreInOneEntryAndQuotesMakeAPhrase()
{
    plant();
    m_pane->find(u"pear apple"_s);
    QCOMPARE(m_pane->rows(), QStringList({u"Trees"_s, u" An [apple] tree"_s, u" and a [pear] tree"_s}));
    m_pane->find(u"\"a pear\""_s);
    QCOMPARE(m_pane->rows(), QStringList({u"Trees"_s, u" and [a pear] tree"_s}));
}

void tst_FindPane::labelsAndTextsAreFoundApart()
{
    plant();
    m_pane->find(u"apple"_s);
    m_pane->choose(u"cmbPart"_s, 1);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->rows(), QStringList({u"Apple"_s, u" [Apple]"_s}));
    m_pane->choose(u"cmbPart"_s, 2);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->rows().size(), 5);
    QVERIFY(!m_pane->rows().contains(u" [Apple]"_s));
}

void tst_FindPane::caseWordsAndAccentsCountWhereWanted()
{
    plant();
    m_pane->find(u"apple"_s);
    m_pane->click(u"cmdMatchCase"_s);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->counts(), u"2 hits in 2 entries"_s);
    m_pane->click(u"cmdMatchCase"_s);
    m_pane->click(u"cmdWholeWord"_s);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->rows(), QStringList({u"Trees"_s, u" An [apple] tree"_s, u"Apple"_s, u" [Apple]"_s}));
    m_pane->click(u"cmdWholeWord"_s);
    m_pane->find(u"cafe"_s);
    QCOMPARE(m_pane->counts(), u"1 hit in 1 entry"_s);
    m_pane->click(u"cmdAccents"_s);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->counts(), u"Nothing found"_s);
}

void tst_FindPane::aRegularExpressionSaysWhatIsWrongWithIt()
{
    plant();
    m_pane->click(u"cmdExpression"_s);
    m_pane->find(u"[ap"_s);
    const auto &error = m_pane->child<QLabel>(u"lblFindError"_s);
    QVERIFY(error.isVisible() && !error.text().isEmpty());
    QCOMPARE(m_pane->box().accessibleDescription(), error.text());
    m_pane->type(u"]+le"_s);
    m_pane->waitForEnd();
    QVERIFY(!error.isVisible());
    QCOMPARE(m_pane->counts(), u"4 hits in 2 entries"_s);
}

void tst_FindPane::onlyTaggedEntriesAreFoundWhereWanted()
{
    plant();
    m_pane->find(u"apple"_s);
    m_pane->click(u"chkTagged"_s);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->rows(), QStringList({u"Trees"_s, u" An [apple] tree"_s}));
}

void tst_FindPane::aBranchIsThatOfTheEntrySelectedWhenItWasChosen()
{
    Document &document = plant();
    m_pane->find(u"t"_s);
    const QString all = m_pane->counts();
    modNodes::NodeSelectFull(document, entryLabelled(document.tree, u"Trees"_s));
    m_pane->choose(u"cmbWhere"_s, 1);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->combo(u"cmbWhere"_s).currentText(), u"Branch “Trees”"_s);
    QCOMPARE(m_pane->rows().front(), u"Trees"_s);
    QVERIFY(!m_pane->rows().contains(u"Garden"_s));
    // It stays that one.
    modNodes::NodeSelectFull(document, document.tree.root());
    m_pane->find(u"e"_s);
    QVERIFY(!m_pane->rows().contains(u"Garden"_s));
    m_pane->choose(u"cmbWhere"_s, 0);
    m_pane->find(u"t"_s);
    QCOMPARE(m_pane->counts(), all);
    QCOMPARE(m_pane->combo(u"cmbWhere"_s).itemText(1), u"This branch"_s);
}

void tst_FindPane::allDocumentsAreFoundBelowTheirNames()
{
    const Document &first = plant();
    const Document &second = m_pane->plant({{u"Kitchen <"_s, u"apple pie"_s}});
    m_pane->find(u"apple"_s);
    QCOMPARE(m_pane->rows(), QStringList({u"Kitchen"_s, u" [apple] pie"_s}));
    m_pane->choose(u"cmbWhere"_s, 2);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->rows().size(), 10);
    QCOMPARE(m_pane->rows().front(), first.caption());
    QCOMPARE(m_pane->rows().at(7), second.caption());
    QCOMPARE(m_pane->rows().mid(8), QStringList({u"Kitchen"_s, u" [apple] pie"_s}));
    QCOMPARE(m_pane->counts(), u"5 hits in 3 entries"_s);
    // A file by its name, wherever it lies.
    QCOMPARE(modDoc::DocSave(m_pane->main().app.folder.filePath(u"kitchen.qly"_s)), SaveOutcome::Saved);
    QCOMPARE(m_pane->rows().at(7), u"kitchen.qly"_s);
}

void tst_FindPane::hitsFollowWhatIsTyped()
{
    Document &document = plant();
    m_pane->find(u"pear"_s);
    QCOMPARE(m_pane->counts(), u"1 hit in 1 entry"_s);
    m_pane->form().textBox->setFocus();
    const int scrolled = m_pane->form().textBox->verticalScrollBar()->value();
    m_pane->type(u"pear "_s);
    QTRY_COMPARE(m_pane->rows(),
                 QStringList({u"Trees"_s, u" and a [pear] tree"_s, u"Apple"_s, u" [pear] Red apples, green APPLES"_s}));
    QCOMPARE(m_pane->counts(), u"2 hits in 2 entries"_s);
    QVERIFY(m_pane->form().textBox->hasFocus());
    QCOMPARE(m_pane->form().textBox->SelStart(), 5);
    QCOMPARE(m_pane->form().textBox->verticalScrollBar()->value(), scrolled);
    // What is new stands where it stands in the outline.
    document.history.setLabel(document.tree.root(), u"Pears"_s);
    QTRY_COMPARE(m_pane->rows().front(), u"Pears"_s);
    m_pane->press(Qt::Key_Z, Qt::ControlModifier);
    QTRY_VERIFY(m_pane->rows().front() != u"Pears"_s);
}

void tst_FindPane::withoutADocumentItSaysSo()
{
    m_pane->open();
    QVERIFY(m_pane->box().hasFocus());
    QCOMPARE(m_pane->list().accessibleDescription(), u"No document is open."_s);
    m_pane->type(u"apple"_s);
    QTest::qWait(200);
    m_pane->press(Qt::Key_Down);
    m_pane->press(Qt::Key_Return);
    plant();
    QTRY_COMPARE(m_pane->counts(), u"4 hits in 2 entries"_s);
}

void tst_FindPane::aClosedDocumentTakesItsHitsAlong()
{
    plant();
    Document &second = m_pane->plant({{u"Kitchen <"_s, u"apple pie"_s}});
    m_pane->find(u"apple"_s);
    m_pane->choose(u"cmbWhere"_s, 2);
    m_pane->waitForEnd();
    second.giveUpChanges();
    m_pane->main().choose("mnuFileClose");
    QTRY_COMPARE(m_pane->counts(), u"4 hits in 2 entries"_s);
    m_pane->waitForEnd();
    QCOMPARE(m_pane->rows().filter(u"Kitchen"_s).size(), 0);
    DocumentActive()->giveUpChanges();
    m_pane->main().choose("mnuFileClose");
    QTRY_COMPARE(m_pane->rows(), QStringList());
}

void tst_FindPane::theManualIsSearchedToo()
{
    QVERIFY(modDoc::DocLoad(QStringLiteral(QUILLERY_MANUAL)));
    m_pane->find(u"\"Find everywhere\""_s);
    QVERIFY(m_pane->list().model()->rowCount() > 3);
    m_pane->press(Qt::Key_Down);
    QTRY_VERIFY(DocumentActive()->view()->window.previewPane()->isShown());
    m_pane->press(Qt::Key_Return);
    QCOMPARE(m_pane->form().textBox->SelText().toLower(), u"find everywhere"_s);
}

void tst_FindPane::nothingIsLookedForWhileItIsHidden()
{
    plant();
    m_pane->find(u"apple"_s);
    m_pane->main().choose("mnuToolsFindEverywhere");
    QCOMPARE(m_pane->list().model()->rowCount(), 0);
    m_pane->open();
    m_pane->waitForEnd();
    QCOMPARE(m_pane->counts(), u"4 hits in 2 entries"_s);
}

void tst_FindPane::keysOfEditingInTheBoxAreTheBoxes()
{
    const Document &document = plant();
    m_pane->press(Qt::Key_Up, Qt::AltModifier);
    const QStringList before = dumpOutline(document.tree);
    m_pane->find(u"apple"_s);
    m_pane->press(Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(m_pane->box().currentText() != u"apple"_s);
    QCOMPARE(dumpOutline(document.tree), before);
    m_pane->press(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(m_pane->box().currentText(), u"apple"_s);
}

void tst_FindPane::tabGoesThroughItAndF6AndEscLeadOut()
{
    plant();
    m_pane->find(u"apple"_s);
    QStringList names;
    for (int step = 0; step < 9; ++step) {
        m_pane->press(Qt::Key_Tab);
        names.append(QApplication::focusWidget()->objectName());
    }
    QCOMPARE(names.join(u' '), u"cmdMatchCase cmdWholeWord cmdExpression cmdAccents cmbPart cmbWhere chkTagged "
                               "cmdReplacing lstHits"_s);
    m_pane->press(Qt::Key_F6);
    QVERIFY(m_pane->form().treeView->hasFocus());
    m_pane->press(Qt::Key_F6);
    QVERIFY(m_pane->box().hasFocus());
    m_pane->press(Qt::Key_Escape);
    QVERIFY(m_pane->form().treeView->hasFocus());
}

void tst_FindPane::everythingHasAName()
{
    plant();
    m_pane->find(u"apple"_s);
    m_pane->click(u"cmdReplacing"_s);
    const QWidget &pane = m_pane->child<QWidget>(u"paneFindEverywhere"_s);
    int checked = 0;
    for (const QWidget *each : pane.findChildren<QWidget *>()) {
        if (!each->isVisible() || each->focusPolicy() == Qt::NoFocus || each->window() != pane.window())
            continue;
        QAccessibleInterface *heard = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(each));
        QVERIFY2(heard && !heard->text(QAccessible::Name).isEmpty(), qPrintable(each->objectName()));
        ++checked;
    }
    QVERIFY(checked >= 12);
    const auto heard = [this](int row) {
        return m_pane->list().model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
    };
    QCOMPARE(heard(0), u"Trees, 1 hit, in Garden"_s);
    QCOMPARE(heard(3), u"Label: Apple"_s);
    QCOMPARE(m_pane->child<QLabel>(u"lblHits"_s).accessibleName(), u"4 hits in 2 entries"_s);
}

void tst_FindPane::itFitsANarrowDock()
{
    plant();
    m_pane->open();
    m_pane->click(u"cmdReplacing"_s);
    const QWidget &pane = m_pane->child<QWidget>(u"paneFindEverywhere"_s);
    QVERIFY2(pane.minimumSizeHint().width() <= pane.fontMetrics().averageCharWidth() * 44,
             qPrintable(QString::number(pane.minimumSizeHint().width())));
}

QTEST_MAIN(tst_FindPane)
#include "tst_FindPane.moc"
