// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "panes/FindPaneFixture.h"

#include "panes/FindHitDelegate.h"

#include <QFile>
#include <QPushButton>

using namespace Qt::StringLiterals;

// Replacing what is found, in the running main window.
class tst_FindPaneReplace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_pane.reset(); }

    void theRowOpensWithTheKeyboardInIt();
    void applyingIsOneStepThatCtrlZTakesBack();
    void eachHitIsCheckedForItself();
    void anEntryIsCheckedWithItsHits();
    void allAreCheckedAtOnce();
    void aClickOnACheckMarkChecksAlone();
    void spaceChecksInTheList();
    void eachDocumentHasItsStep();
    void whatWasChangedMeanwhileIsLeftAndSaid();
    void aReadOnlyDocumentStaysAndSaysSo();
    void groupsOfAnExpressionArePutIn();
    void aBadReplacementIsSaid();
    void nothingIsReplacedBeforeAllIsFound();
    void anEmptyReplacementTakesAway();
    void whatTakesLongCanBeCancelled();

private:
    Document &plant();

    // Opens the row and types a replacement.
    void replaceBy(const QString &text);
    QString textOf(const Document &document, const QString &label) const;

    QPushButton &apply() const { return m_pane->child<QPushButton>(u"cmdApply"_s); }

    QCheckBox &all() const { return m_pane->child<QCheckBox>(u"chkAll"_s); }

    int checked(int row) const { return m_pane->list().model()->index(row, 0).data(Qt::CheckStateRole).toInt(); }

    std::unique_ptr<FindPaneFixture> m_pane;
};

void tst_FindPaneReplace::init()
{
    m_pane = std::make_unique<FindPaneFixture>();
}

Document &tst_FindPaneReplace::plant()
{
    return m_pane->plant(
        {{u"Cat +<"_s, u"A cat sat\nwith a cat"_s}, {u" Dog"_s, u"No such animal"_s}, {u" Third"_s, u"cats"_s}});
}

void tst_FindPaneReplace::replaceBy(const QString &text)
{
    if (!m_pane->button(u"cmdReplacing"_s).isChecked())
        m_pane->click(u"cmdReplacing"_s);
    auto &line = m_pane->child<QLineEdit>(u"txtReplacement"_s);
    line.setFocus();
    line.clear();
    m_pane->type(text);
}

QString tst_FindPaneReplace::textOf(const Document &document, const QString &label) const
{
    return plainTextOf(document.tree, entryLabelled(document.tree, label)).trimmed();
}

void tst_FindPaneReplace::theRowOpensWithTheKeyboardInIt()
{
    plant();
    m_pane->find(u"cat"_s);
    QVERIFY(!apply().isVisible());
    QVERIFY(!m_pane->list().model()->index(0, 0).data(Qt::CheckStateRole).isValid());
    m_pane->button(u"cmdReplacing"_s).setFocus();
    m_pane->press(Qt::Key_Space);
    QVERIFY(apply().isVisible());
    QVERIFY(m_pane->child<QLineEdit>(u"txtReplacement"_s).hasFocus());
    QCOMPARE(checked(0), static_cast<int>(Qt::Checked));
    QCOMPARE(all().text(), u"4 of 4"_s);
    // Up and Down look at the hits from here, too.
    m_pane->press(Qt::Key_Down);
    QTRY_VERIFY(DocumentActive()->view()->window.previewPane()->isShown());
    m_pane->press(Qt::Key_Escape);
    QVERIFY(m_pane->child<QLineEdit>(u"txtReplacement"_s).hasFocus());
}

void tst_FindPaneReplace::applyingIsOneStepThatCtrlZTakesBack()
{
    const Document &document = plant();
    m_pane->find(u"cat"_s);
    replaceBy(u"bird"_s);
    QTest::mouseClick(&apply(), Qt::LeftButton);
    QCOMPARE(document.tree.root()->label(), u"bird"_s);
    QCOMPARE(textOf(document, u"bird"_s), u"A bird sat\r\nwith a bird"_s);
    QCOMPARE(textOf(document, u"Third"_s), u"birds"_s);
    QCOMPARE(document.history.steps().size(), std::size_t(1));
    const QString said = u"Replaced 4 hits in 2 entries – Ctrl+Z takes it back"_s;
    QCOMPARE(m_pane->counts(), said);
    QTRY_COMPARE(m_pane->status(), said);
    QVERIFY(m_pane->list().hasFocus());
    m_pane->press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(document.tree.root()->label(), u"Cat"_s);
    QCOMPARE(textOf(document, u"Cat"_s), u"A cat sat\r\nwith a cat"_s);
    QVERIFY(!document.hasUnsavedChanges());
    QTRY_COMPARE(m_pane->list().model()->rowCount(), 6);
    m_pane->press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(textOf(document, u"Third"_s), u"birds"_s);
}

void tst_FindPaneReplace::eachHitIsCheckedForItself()
{
    const Document &document = plant();
    m_pane->find(u"cat"_s);
    replaceBy(u"bird"_s);
    auto &model = *m_pane->list().model();
    QVERIFY(model.setData(model.index(2, 0), Qt::Unchecked, Qt::CheckStateRole));
    QCOMPARE(checked(0), static_cast<int>(Qt::PartiallyChecked));
    QCOMPARE(checked(4), static_cast<int>(Qt::Checked));
    QCOMPARE(all().checkState(), Qt::PartiallyChecked);
    QCOMPARE(all().text(), u"3 of 4"_s);
    apply().click();
    QCOMPARE(textOf(document, u"bird"_s), u"A cat sat\r\nwith a bird"_s);
    QCOMPARE(textOf(document, u"Third"_s), u"birds"_s);
}

void tst_FindPaneReplace::anEntryIsCheckedWithItsHits()
{
    const Document &document = plant();
    m_pane->find(u"cat"_s);
    replaceBy(u"bird"_s);
    auto &model = *m_pane->list().model();
    QVERIFY(model.setData(model.index(0, 0), Qt::Unchecked, Qt::CheckStateRole));
    for (const int row : {0, 1, 2, 3})
        QCOMPARE(checked(row), static_cast<int>(Qt::Unchecked));
    apply().click();
    QCOMPARE(document.tree.root()->label(), u"Cat"_s);
    QCOMPARE(textOf(document, u"Third"_s), u"birds"_s);
    QCOMPARE(m_pane->counts(), u"Replaced 1 hit in 1 entry – Ctrl+Z takes it back"_s);
}

void tst_FindPaneReplace::allAreCheckedAtOnce()
{
    plant();
    m_pane->find(u"cat"_s);
    replaceBy(u"bird"_s);
    all().setFocus();
    m_pane->press(Qt::Key_Space);
    QCOMPARE(all().text(), u"0 of 4"_s);
    QVERIFY(!apply().isEnabled());
    auto &model = *m_pane->list().model();
    QVERIFY(model.setData(model.index(5, 0), Qt::Checked, Qt::CheckStateRole));
    QCOMPARE(all().checkState(), Qt::PartiallyChecked);
    m_pane->press(Qt::Key_Space);
    QCOMPARE(all().checkState(), Qt::Checked);
    QVERIFY(apply().isEnabled());
}

void tst_FindPaneReplace::aClickOnACheckMarkChecksAlone()
{
    plant();
    m_pane->find(u"cat"_s);
    replaceBy(u"bird"_s);
    const QRect row = m_pane->list().visualRect(m_pane->list().model()->index(5, 0));
    // Beside the line's beginning.
    for (int x = row.left(); x < row.left() + 60 && checked(5) == Qt::Checked; ++x)
        QTest::mouseClick(m_pane->list().viewport(), Qt::LeftButton, {}, {x, row.center().y()});
    QCOMPARE(checked(5), static_cast<int>(Qt::Unchecked));
    m_pane->clickRow(5);
    QCOMPARE(checked(5), static_cast<int>(Qt::Unchecked));
}

void tst_FindPaneReplace::spaceChecksInTheList()
{
    plant();
    m_pane->find(u"cat"_s);
    replaceBy(u"bird"_s);
    m_pane->list().setFocus();
    m_pane->list().setCurrentIndex(m_pane->list().model()->index(4, 0));
    m_pane->press(Qt::Key_Space);
    QCOMPARE(checked(5), static_cast<int>(Qt::Unchecked));
    m_pane->press(Qt::Key_Space);
    QCOMPARE(checked(5), static_cast<int>(Qt::Checked));
}

void tst_FindPaneReplace::eachDocumentHasItsStep()
{
    const Document &first = plant();
    const Document &second = plant();
    m_pane->find(u"cat"_s);
    m_pane->choose(u"cmbWhere"_s, 2);
    m_pane->waitForEnd();
    replaceBy(u"bird"_s);
    apply().click();
    QCOMPARE(m_pane->counts(), u"Replaced 8 hits in 4 entries – Ctrl+Z takes it back in each of 2 documents"_s);
    for (const Document *each : {&first, &second}) {
        QCOMPARE(each->history.steps().size(), std::size_t(1));
        QCOMPARE(textOf(*each, u"Third"_s), u"birds"_s);
    }
    m_pane->press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(textOf(second, u"Third"_s), u"cats"_s);
    QCOMPARE(textOf(first, u"Third"_s), u"birds"_s);
}

void tst_FindPaneReplace::whatWasChangedMeanwhileIsLeftAndSaid()
{
    Document &document = plant();
    m_pane->find(u"cat"_s);
    replaceBy(u"bird"_s);
    // At once, before the list has followed.
    document.history.setLabel(document.tree.root(), u"Puss"_s);
    apply().click();
    QCOMPARE(document.tree.root()->label(), u"Puss"_s);
    QVERIFY2(m_pane->counts().contains(u"1 was changed meanwhile and left alone"_s), qPrintable(m_pane->counts()));
    QVERIFY2(m_pane->counts().contains(u"Replaced 3 hits"_s), qPrintable(m_pane->counts()));
}

void tst_FindPaneReplace::aReadOnlyDocumentStaysAndSaysSo()
{
    Document &document = plant();
    document.m_sFile = m_pane->main().app.makeFile(u"a.qly"_s, "text");
    QVERIFY(QFile::setPermissions(document.m_sFile, QFile::ReadOwner));
    document.lookAtFileAgain();
    m_pane->find(u"cat"_s);
    replaceBy(u"bird"_s);
    const auto &note = m_pane->child<QLabel>(u"lblReplace"_s);
    QVERIFY(note.isVisible() && note.text().contains(u"is read-only and stays as it is"_s));
    QVERIFY(!apply().isEnabled());
    QCOMPARE(document.tree.root()->label(), u"Cat"_s);
}

void tst_FindPaneReplace::groupsOfAnExpressionArePutIn()
{
    const Document &document = plant();
    m_pane->click(u"cmdExpression"_s);
    m_pane->find(u"(c)(at)s"_s);
    replaceBy(u"\\2-\\1"_s);
    const QRect row = m_pane->list().visualRect(m_pane->list().model()->index(1, 0));
    QVERIFY(!m_pane->list().viewport()->grab(row).isNull());
    apply().click();
    QCOMPARE(textOf(document, u"Third"_s), u"at-c"_s);
}

void tst_FindPaneReplace::aBadReplacementIsSaid()
{
    plant();
    m_pane->click(u"cmdExpression"_s);
    m_pane->find(u"c(at)"_s);
    replaceBy(u"\\7"_s);
    const auto &note = m_pane->child<QLabel>(u"lblReplace"_s);
    QVERIFY(note.isVisible() && !note.text().isEmpty());
    QVERIFY(!apply().isEnabled());
    replaceBy(u"x\\1"_s);
    QVERIFY(!note.isVisible() && apply().isEnabled());
}

void tst_FindPaneReplace::nothingIsReplacedBeforeAllIsFound()
{
    const Document &document = plant();
    m_pane->find(u"cat"_s);
    replaceBy(u"bird"_s);
    // Another search is typed, and the button pressed at once.
    m_pane->box().setFocus();
    m_pane->type(u"s"_s);
    QTest::mouseClick(&apply(), Qt::LeftButton);
    QCOMPARE(document.tree.root()->label(), u"Cat"_s);
    QCOMPARE(document.history.steps().size(), std::size_t(0));
}

void tst_FindPaneReplace::anEmptyReplacementTakesAway()
{
    const Document &document = plant();
    m_pane->find(u"\"a cat\""_s);
    replaceBy(QString());
    apply().click();
    QCOMPARE(textOf(document, u"Cat"_s), u"sat\r\nwith"_s);
}

void tst_FindPaneReplace::whatTakesLongCanBeCancelled()
{
    FindPaneFixture::Planted planted{{u"Root +<"_s, u"nothing"_s}};
    for (int number = 0; number < 60; ++number)
        planted.append({u" Entry %1"_s.arg(number), u"a cat"_s});
    Document &document = m_pane->plant(planted);
    m_pane->find(u"cat"_s);
    replaceBy(u"bird"_s);
    // A machine that is in no hurry.
    connect(&document.tree, &EntryTree::storedTextChanged, this, [] { QTest::qSleep(20); });
    bool wasSeen = false;
    QTimer looking;
    connect(&looking, &QTimer::timeout, this, [&] {
        auto *cancel = QApplication::activeModalWidget()
                           ? QApplication::activeModalWidget()->findChild<QPushButton *>(u"cmdCancel"_s)
                           : nullptr;
        if (!cancel)
            return;
        wasSeen = true;
        cancel->click();
    });
    looking.start(10);
    apply().click();
    document.tree.disconnect(this);
    QVERIFY(wasSeen);
    const auto countBirds = [&document] {
        int count = 0;
        for (const Entry *each = document.tree.root(); each; each = nextInOutline(each, document.tree.root()))
            count += plainTextOf(document.tree, each).contains(u"bird"_s) ? 1 : 0;
        return count;
    };
    const int birds = countBirds();
    QVERIFY2(birds > 0 && birds < 60, qPrintable(QString::number(birds)));
    QVERIFY2(m_pane->counts().contains(u"cancelled before the rest"_s), qPrintable(m_pane->counts()));
    QCOMPARE(document.history.steps().size(), std::size_t(1));
    m_pane->press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(countBirds(), 0);
}

QTEST_MAIN(tst_FindPaneReplace)
#include "tst_FindPaneReplace.moc"
