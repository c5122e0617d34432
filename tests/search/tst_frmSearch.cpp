// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/TreeView.h"
#include "search/SearchFixture.h"
#include "search/clsHistory.h"
#include "search/frmSearch.h"
#include "support/ErrorRecorder.h"
#include "support/RawOutline.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

// The dialog, driven with keys and the mouse.
class tst_frmSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_fixture = std::make_unique<SearchFixture>();
        m_saves = 0;
        m_settings = FakeSettingsStore();
        searchPorts() = {&m_settings, [] {}, [this] { ++m_saves; }};
        g_hisFind = clsHistory(u"FindHistory"_s);
        g_hisReplace = clsHistory(u"ReplaceHistory"_s);
    }

    void cleanup()
    {
        m_dialog.reset();
        m_fixture.reset();
    }

    void theLayoutFollowsTheMode();
    void everyControlIsNamed();
    void findWaitsForAnExpressionAndAScope();
    void blanksAloneAreNotLookedFor();
    void expressionAndReplacementAreTrimmed();
    void nothingCanBeReplacedDuringASearch();
    void thePointerIsNormalAfterEveryButton_data();
    void thePointerIsNormalAfterEveryButton();
    void theValuesOfTheLastTimeAreShown();
    void enterFinds();
    void theKeyboardStaysOnFind_data();
    void theKeyboardStaysOnFind();
    void theKeyboardGoesFromReplaceToFind();
    void replaceIsForAMatch();
    void aReplacementThatHoldsTheExpressionIsNotUsed();
    void replaceAllReplacesAll();
    void closeStoresWhatWasTyped();
    void closeClosesThoughNothingCanBeSaved();
    void findingAddsNoBlankRowsToTheReplacements();
    void escapeIsClose();
    void closingTheWindowSavesNothing();
    void itKeepsOffTheMatch();
    void itKeepsOffTheLabel();
    void itOpensOffTheSelectedText();

private:
    void open(qint16 mode)
    {
        g_iSearchMode = mode;
        m_dialog = std::make_unique<frmSearch>();
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    }

    const Entry *openOverTwoCats();

    QComboBox *input(int place) const { return m_dialog->findChild<QComboBox *>(u"cmbInput%1"_s.arg(place)); }

    QPushButton *button(int place) const { return m_dialog->findChild<QPushButton *>(u"cmdInput%1"_s.arg(place)); }

    void type(int place, const QString &text) const
    {
        input(place)->lineEdit()->selectAll();
        QTest::keyClicks(input(place)->lineEdit(), text);
    }

    QStringList rows(int place) const
    {
        QStringList all;
        for (int i = 0; i < input(place)->count(); ++i)
            all.append(input(place)->itemText(i));
        return all;
    }

    std::unique_ptr<SearchFixture> m_fixture;
    std::unique_ptr<frmSearch> m_dialog;
    FakeSettingsStore m_settings;
    int m_saves = 0;
};

void tst_frmSearch::theLayoutFollowsTheMode()
{
    for (const qint16 mode : {qint16(1), qint16(2)}) {
        open(mode);
        for (const QWidget *part : std::initializer_list<const QWidget *>{
                 input(1), m_dialog->findChild<QLabel *>(u"lblInput1"_s), button(1), button(2)})
            QCOMPARE(part->isVisible(), mode == 2);
        QCOMPARE(rows(2), QStringList({u"Current entry text"_s, u"All entry texts"_s, u"All entry names"_s}));
        QCOMPARE(m_dialog->windowTitle(), u"Search"_s);
    }
}

void tst_frmSearch::everyControlIsNamed()
{
    open(2);
    for (const QComboBox *box : m_dialog->findChildren<QComboBox *>()) {
        QVERIFY(!box->accessibleName().isEmpty());
        // What is typed into has the keyboard, and is what a screen reader tells of.
        if (box->isEditable())
            QCOMPARE(box->lineEdit()->accessibleName(), box->accessibleName());
    }
    QCOMPARE(m_dialog->findChild<QLabel *>(u"lblInput0"_s)->text(), u"Fi&nd expression"_s);
    QCOMPARE(m_dialog->findChild<QLabel *>(u"lblInput0"_s)->buddy(), input(0));
    QCOMPARE(button(2)->text(), u"Replace &All"_s);
}

void tst_frmSearch::findWaitsForAnExpressionAndAScope()
{
    open(1);
    QVERIFY(!button(0)->isEnabled());
    type(0, u"cat"_s);
    QVERIFY(!button(0)->isEnabled());
    input(2)->setCurrentIndex(0);
    QVERIFY(button(0)->isEnabled());
    QCOMPARE(g_sSearchFind, u"cat"_s);
    QCOMPARE(g_sSearchScope, u"0"_s);
    type(0, u" "_s);
    QVERIFY(!button(0)->isEnabled());
}

void tst_frmSearch::blanksAloneAreNotLookedFor()
{
    g_sSearchFind = u"  "_s;
    g_sSearchWhere = u"Current entry text"_s;
    open(1);
    QVERIFY(!button(0)->isEnabled());
}

void tst_frmSearch::expressionAndReplacementAreTrimmed()
{
    open(2);
    type(0, u"  a cat "_s);
    type(1, u" a dog  "_s);
    QCOMPARE(g_sSearchFind, u"a cat"_s);
    QCOMPARE(g_sSearchReplace, u"a dog"_s);
}

void tst_frmSearch::nothingCanBeReplacedDuringASearch()
{
    openOverTwoCats();
    type(1, u"dog"_s);
    QVERIFY(button(2)->isEnabled());
    // The settings are saved between the pressing and the search.
    bool isReplaceEnabled = true;
    bool isReplaceAllEnabled = true;
    searchPorts().saveSettings = [&] {
        isReplaceEnabled = button(1)->isEnabled();
        isReplaceAllEnabled = button(2)->isEnabled();
    };
    QTest::mouseClick(button(0), Qt::LeftButton);
    QVERIFY(!isReplaceEnabled);
    QVERIFY(!isReplaceAllEnabled);
    QVERIFY(button(1)->isEnabled());
    isReplaceEnabled = true;
    QTest::mouseClick(button(0), Qt::LeftButton);
    QVERIFY(!isReplaceEnabled);
}

void tst_frmSearch::thePointerIsNormalAfterEveryButton_data()
{
    QTest::addColumn<int>("pressed");
    QTest::newRow("find") << 0;
    QTest::newRow("replace") << 1;
    QTest::newRow("replace all") << 2;
    QTest::newRow("close") << 3;
}

void tst_frmSearch::thePointerIsNormalAfterEveryButton()
{
    QFETCH(const int, pressed);
    openOverTwoCats();
    type(1, u"dog"_s);
    if (pressed == 1)
        QTest::mouseClick(button(0), Qt::LeftButton);
    const int before = m_fixture->fake.pointer.timesHourglass;
    QVERIFY(button(pressed)->isEnabled());
    QTest::mouseClick(button(pressed), Qt::LeftButton);
    QVERIFY(m_fixture->fake.pointer.timesHourglass > before);
    QVERIFY(!m_fixture->fake.pointer.hourglass);
}

void tst_frmSearch::findingAddsNoBlankRowsToTheReplacements()
{
    open(2);
    type(0, u"cat"_s);
    type(1, u"dog"_s);
    QTest::mouseClick(button(3), Qt::LeftButton);
    const auto stored = m_settings.section(u"ReplaceHistory"_s);
    QCOMPARE(stored.size(), std::size_t(1));
    g_sSearchReplace.clear();
    for (int time = 0; time < 5; ++time) {
        open(1);
        QTest::mouseClick(button(3), Qt::LeftButton);
    }
    QVERIFY(m_settings.section(u"ReplaceHistory"_s) == stored);
    open(2);
    QCOMPARE(rows(1), QStringList({QString(), u"dog"_s}));
    type(1, u"bird"_s);
    QTest::mouseClick(button(3), Qt::LeftButton);
    open(2);
    QCOMPARE(rows(1), QStringList({QString(), u"bird"_s, u"dog"_s}));
}

void tst_frmSearch::theValuesOfTheLastTimeAreShown()
{
    g_sSearchFind = u"cat"_s;
    g_sSearchReplace = u"dog"_s;
    g_sSearchWhere = u"All entry names"_s;
    g_bSearchWholeWord = true;
    open(2);
    QCOMPARE(input(0)->currentText(), u"cat"_s);
    QCOMPARE(input(1)->currentText(), u"dog"_s);
    QCOMPARE(input(2)->currentIndex(), 2);
    QVERIFY(m_dialog->findChild<QCheckBox *>(u"chkInput1"_s)->isChecked());
    QVERIFY(!m_dialog->findChild<QCheckBox *>(u"chkInput0"_s)->isChecked());
    QVERIFY(button(0)->isEnabled());
    QVERIFY(button(2)->isEnabled());
}

void tst_frmSearch::enterFinds()
{
    m_fixture->show(u"a cat"_s);
    open(1);
    input(2)->setCurrentIndex(0);
    type(0, u"cat"_s);
    QTest::keyClick(input(0)->lineEdit(), Qt::Key_Return);
    QCOMPARE(m_fixture->box.SelText(), u"cat"_s);
    QCOMPARE(m_saves, 1);
    QVERIFY(m_dialog->isVisible());
    QVERIFY(button(0)->isEnabled());
}

void tst_frmSearch::theKeyboardStaysOnFind_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("find") << 1;
    QTest::newRow("find and replace") << 2;
}

void tst_frmSearch::theKeyboardStaysOnFind()
{
    QFETCH(const int, mode);
    m_fixture->show(u"a cat, a cat"_s);
    open(static_cast<qint16>(mode));
    input(2)->setCurrentIndex(0);
    type(0, u"cat"_s);
    if (mode == 2)
        type(1, u"dog"_s);
    button(0)->setFocus();
    for (const int start : {2, 9, 2}) {
        QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Space);
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(m_dialog->focusWidget(), button(0));
        QCOMPARE(m_fixture->box.SelStart(), start);
    }
    QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Return);
    QCOMPARE(m_dialog->focusWidget(), button(0));
    QCOMPARE(m_fixture->box.SelStart(), 9);
    QTest::mouseClick(button(0), Qt::LeftButton);
    QCOMPARE(m_dialog->focusWidget(), button(0));
    QCOMPARE(m_fixture->box.SelStart(), 2);
    // In a field it stays where it is, with what was typed.
    input(0)->setFocus();
    QTest::keyClick(input(0)->lineEdit(), Qt::Key_Return);
    QVERIFY(input(0)->hasFocus() || input(0)->lineEdit()->hasFocus());
}

// The dialog for replacing, about to make a dog of a cat in the text of the entry that is returned.
const Entry *tst_frmSearch::openOverTwoCats()
{
    Entry *root = m_fixture->add(nullptr, u"Root"_s, u"a cat, a cat"_s);
    modNodes::NodeSelectFull(m_fixture->document, root);
    open(2);
    input(2)->setCurrentIndex(0);
    type(0, u"cat"_s);
    type(1, u"dog"_s);
    return root;
}

void tst_frmSearch::theKeyboardGoesFromReplaceToFind()
{
    openOverTwoCats();
    QTest::mouseClick(button(0), Qt::LeftButton);
    button(1)->setFocus();
    QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Space);
    QCOMPARE(m_fixture->box.Text(), u"a dog, a cat"_s);
    QCOMPARE(m_dialog->focusWidget(), button(0));
    QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Space);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(m_fixture->box.SelText(), u"cat"_s);
}

void tst_frmSearch::replaceIsForAMatch()
{
    openOverTwoCats();
    QVERIFY(!button(1)->isEnabled());
    QTest::mouseClick(button(0), Qt::LeftButton);
    QVERIFY(button(1)->isEnabled());
    QTest::mouseClick(button(1), Qt::LeftButton);
    QCOMPARE(m_fixture->box.Text(), u"a dog, a cat"_s);
    QVERIFY(!button(1)->isEnabled());
    QVERIFY(!button(2)->isEnabled());
}

void tst_frmSearch::aReplacementThatHoldsTheExpressionIsNotUsed()
{
    m_fixture->show(u"a cat"_s);
    open(2);
    input(2)->setCurrentIndex(0);
    type(0, u"cat"_s);
    type(1, u"Cat"_s);
    QVERIFY(!button(2)->isEnabled());
    QTest::mouseClick(button(0), Qt::LeftButton);
    QCOMPARE(m_fixture->box.SelText(), u"cat"_s);
    QVERIFY(!button(1)->isEnabled());
    m_dialog->findChild<QCheckBox *>(u"chkInput0"_s)->setChecked(true);
    QVERIFY(button(2)->isEnabled());
}

void tst_frmSearch::replaceAllReplacesAll()
{
    const Entry *root = openOverTwoCats();
    QTest::mouseClick(button(2), Qt::LeftButton);
    QCOMPARE(m_fixture->textOf(root), u"a dog, a dog"_s);
    QVERIFY(!button(2)->isEnabled());
}

void tst_frmSearch::closeStoresWhatWasTyped()
{
    open(2);
    type(0, u"cat"_s);
    type(1, u"dog"_s);
    QTest::mouseClick(button(3), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_settings.section(u"FindHistory"_s).at(0).second, u"cat"_s);
    QCOMPARE(m_settings.section(u"ReplaceHistory"_s).at(0).second, u"dog"_s);
    // The list of the next dialog begins with a blank row.
    open(2);
    QCOMPARE(rows(0), QStringList({QString(), u"cat"_s}));
    QCOMPARE(rows(1), QStringList({QString(), u"dog"_s}));
}

void tst_frmSearch::closeClosesThoughNothingCanBeSaved()
{
    const ErrorRecorder errors;
    open(2);
    type(0, u"cat"_s);
    type(1, u"dog"_s);
    m_settings.failing = true;
    QTest::mouseClick(button(3), Qt::LeftButton);
    QVERIFY(!m_dialog->isVisible());
    // Of either history.
    QCOMPARE(errors.count(), 2);
}

void tst_frmSearch::escapeIsClose()
{
    open(1);
    type(0, u"cat"_s);
    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_settings.section(u"FindHistory"_s).size(), std::size_t(1));
}

void tst_frmSearch::closingTheWindowSavesNothing()
{
    open(1);
    type(0, u"cat"_s);
    m_dialog->close();
    QVERIFY(m_settings.section(u"FindHistory"_s).empty());
}

void tst_frmSearch::itKeepsOffTheMatch()
{
    m_fixture->show(u"one\ntwo\na cat in the third line"_s);
    m_fixture->box.resize(500, 300);
    m_fixture->box.show();
    open(1);
    m_dialog->move(m_fixture->box.mapToGlobal(QPoint(10, 10)));
    input(2)->setCurrentIndex(0);
    type(0, u"cat"_s);
    QTest::keyClick(input(0)->lineEdit(), Qt::Key_Return);
    const QRect caret = m_fixture->box.cursorRect();
    const QRect match(m_fixture->box.viewport()->mapToGlobal(caret.topLeft()), caret.size());
    QVERIFY(!m_dialog->frameGeometry().intersects(match));
}

void tst_frmSearch::itKeepsOffTheLabel()
{
    Document &document = m_fixture->document;
    TreeView view;
    view.setHistory(&document.history);
    view.resize(300, 300);
    view.show();
    Entry *root = m_fixture->add(nullptr, u"Root"_s, {});
    m_fixture->add(root, u"a dog"_s, {});
    Entry *cat = m_fixture->add(root, u"a cat"_s, {});
    modNodes::NodeSelectFull(document, root);
    rawOutline(document).tree.setExpanded(root, true);
    open(1);
    m_dialog->move(view.mapToGlobal(QPoint(10, 10)));
    input(2)->setCurrentIndex(2);
    type(0, u"cat"_s);
    const QRect row = view.visualRect(document.tree.indexOf(cat));
    m_fixture->outline.selectedRow = QRect(view.viewport()->mapToGlobal(row.topLeft()), row.size());
    QVERIFY(m_dialog->frameGeometry().intersects(m_fixture->outline.selectedRow));
    QTest::keyClick(input(0)->lineEdit(), Qt::Key_Return);
    QCOMPARE(document.tree.selected(), cat);
    QCOMPARE(view.SelectedRow(), m_fixture->outline.selectedRow);
    QVERIFY(!m_dialog->frameGeometry().intersects(m_fixture->outline.selectedRow));
    view.setHistory(nullptr);
}

void tst_frmSearch::itOpensOffTheSelectedText()
{
    m_fixture->show(u"one\ntwo\na cat in the third line"_s);
    m_fixture->box.resize(500, 300);
    m_fixture->box.show();
    m_fixture->select(12, 3);
    QCOMPARE(m_fixture->box.SelText(), u"cat"_s);
    const QRect caret = m_fixture->box.cursorRect();
    const QRect match(m_fixture->box.viewport()->mapToGlobal(caret.topLeft()), caret.size());
    g_iSearchMode = 1;
    m_dialog = std::make_unique<frmSearch>();
    m_dialog->move(match.topLeft() - QPoint(20, 20));
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    QVERIFY(!m_dialog->frameGeometry().intersects(match));
}

QTEST_MAIN(tst_frmSearch)
#include "tst_frmSearch.moc"
