// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/MainFixture.h"
#include "app/StatusBar.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "window/frmDocument.h"

#include <QLabel>
#include <QLocale>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace Qt::StringLiterals;

class tst_StatusBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init() { m_main = std::make_unique<MainFixture>(); }

    void cleanup() { m_main.reset(); }

    void thePanelsStandInTheirOrder();
    void thePanelsAreNamed();
    void lockKeysAreShown();
    void aClickTogglesItsLockOnly();
    void aLockThatNobodyTellsOfShowsNothing();
    void withoutAKeyboardThePanelsDoNothing();
    void theLockKeysAreFollowed();
    void insFollowsTheActiveDocument();
    void theInsertKeySwitchesTheTextPane();
    void otherInsertKeysAreTheControlsOwn();
    void theClockShowsTheShortForms();
    void theClockGoesOn();
    void theStateIsReadAnewWhenTheProgramComesToTheFront();
    void keysThatAreOffArePale();
    void thePanelsTakeNoFocus();

private:
    QToolButton *panel(const char *key) const
    {
        m_main->refresh();
        return m_main->main.findChild<QToolButton *>(u"sbStatusBar"_s + QString::fromLatin1(key));
    }

    QLabel *label(const char *key) const
    {
        return m_main->main.findChild<QLabel *>(u"sbStatusBar"_s + QString::fromLatin1(key));
    }

    void start() const
    {
        m_main->start();
        m_main->main.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_main->main));
    }

    RichTextBox &newText() const
    {
        m_main->choose("mnuFileNew");
        DocumentActive()->view()->trvOutline.EndLabelEdit();
        m_main->choose("mnuViewGoToText");
        return *static_cast<frmDocument &>(DocumentActive()->view()->window).textBox;
    }

    std::unique_ptr<MainFixture> m_main;
};

void tst_StatusBar::thePanelsStandInTheirOrder()
{
    m_main->main.resize(900, 500);
    start();
    int last = -1;
    for (const char *key : {"Text", "Caps", "Num", "Ins", "Time", "Date"}) {
        const auto *widget = m_main->main.findChild<QWidget *>(u"sbStatusBar"_s + QString::fromLatin1(key));
        QVERIFY2(widget && widget->isVisible(), key);
        const int left = widget->mapTo(&m_main->main, QPoint()).x();
        QVERIFY2(left > last, key);
        last = left;
    }
}

void tst_StatusBar::thePanelsAreNamed()
{
    QCOMPARE(panel("Caps")->text(), u"Caps"_s);
    QCOMPARE(panel("Caps")->accessibleName(), u"Caps Lock"_s);
    QCOMPARE(panel("Num")->text(), u"Num"_s);
    QCOMPARE(panel("Num")->accessibleName(), u"Num Lock"_s);
    QCOMPARE(panel("Ins")->text(), u"Ins"_s);
    QCOMPARE(panel("Ins")->accessibleName(), u"Overwrite"_s);
    QCOMPARE(label("Time")->accessibleDescription(), u"Time"_s);
    QCOMPARE(label("Date")->accessibleDescription(), u"Date"_s);
}

void tst_StatusBar::lockKeysAreShown()
{
    start();
    QVERIFY(!panel("Caps")->isChecked() && panel("Caps")->isEnabled());
    QVERIFY(panel("Num")->isChecked() && panel("Num")->isEnabled());
}

void tst_StatusBar::aClickTogglesItsLockOnly()
{
    start();
    auto &states = m_main->app.lockKeys.states;
    QTest::mouseClick(panel("Caps"), Qt::LeftButton);
    QVERIFY(states[LockKey::Caps] && states[LockKey::Num]);
    QVERIFY(panel("Caps")->isChecked());
    QTest::mouseClick(panel("Num"), Qt::LeftButton);
    QVERIFY(states[LockKey::Caps] && !states[LockKey::Num]);
    QVERIFY(!panel("Num")->isChecked());
    QTest::mouseClick(panel("Caps"), Qt::LeftButton);
    QVERIFY(!states[LockKey::Caps]);
    QVERIFY(!panel("Caps")->isChecked());
    QTest::mouseClick(label("Time"), Qt::LeftButton);
    QTest::mouseClick(label("Date"), Qt::LeftButton);
    QVERIFY(!states[LockKey::Caps] && !states[LockKey::Num]);
}

void tst_StatusBar::aLockThatNobodyTellsOfShowsNothing()
{
    m_main->app.lockKeys.states.erase(LockKey::Num);
    start();
    QVERIFY(panel("Caps")->isEnabled());
    QVERIFY(!panel("Num")->isEnabled());
    QTest::mouseClick(panel("Num"), Qt::LeftButton);
    QVERIFY(!m_main->app.lockKeys.states.contains(LockKey::Num));
    // Its room stays, empty.
    const QImage image = panel("Num")->grab().toImage();
    const QColor background = image.pixelColor(0, 0);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            QCOMPARE(image.pixelColor(x, y), background);
    }
}

void tst_StatusBar::withoutAKeyboardThePanelsDoNothing()
{
    appPorts().lockKeys = nullptr;
    start();
    QVERIFY(!panel("Caps")->isEnabled() && !panel("Num")->isEnabled());
    QTest::keyClick(&m_main->main, Qt::Key_CapsLock);
    QCoreApplication::processEvents();
    QVERIFY(!panel("Caps")->isEnabled());
}

void tst_StatusBar::theLockKeysAreFollowed()
{
    start();
    m_main->app.lockKeys.states[LockKey::Caps] = true;
    QTest::keyClick(&m_main->main, Qt::Key_A);
    QCoreApplication::processEvents();
    QVERIFY(!panel("Caps")->isChecked());
    QTest::keyClick(&m_main->main, Qt::Key_CapsLock);
    QTRY_VERIFY(panel("Caps")->isChecked());
    m_main->app.lockKeys.states[LockKey::Num] = false;
    QTest::keyClick(&m_main->main, Qt::Key_NumLock);
    QTRY_VERIFY(!panel("Num")->isChecked());
}

void tst_StatusBar::insFollowsTheActiveDocument()
{
    start();
    QVERIFY(!panel("Ins")->isEnabled());
    const RichTextBox &first = newText();
    QVERIFY(panel("Ins")->isEnabled() && !panel("Ins")->isChecked());
    QTest::mouseClick(panel("Ins"), Qt::LeftButton);
    QVERIFY(first.overwriteMode());
    QVERIFY(panel("Ins")->isChecked());
    Document *firstDocument = DocumentActive();
    const RichTextBox &second = newText();
    QVERIFY(!second.overwriteMode());
    QVERIFY(!panel("Ins")->isChecked());
    DocumentActive()->history.markSaved();
    firstDocument->history.markSaved();
    firstDocument->view()->window.activate();
    QVERIFY(panel("Ins")->isChecked());
    m_main->choose("mnuFileClose");
    QVERIFY(panel("Ins")->isEnabled() && !panel("Ins")->isChecked());
    m_main->choose("mnuFileClose");
    QVERIFY(!panel("Ins")->isEnabled());
}

void tst_StatusBar::theInsertKeySwitchesTheTextPane()
{
    start();
    RichTextBox &text = newText();
    text.setSelText(u"abc"_s);
    text.setSelStart(0);
    QTest::keyClick(&text, Qt::Key_Insert);
    QVERIFY(panel("Ins")->isChecked());
    QTest::keyClicks(&text, u"X"_s);
    QCOMPARE(text.Text(), u"Xbc"_s);
    QTest::keyClick(&text, Qt::Key_Insert, Qt::KeypadModifier);
    QVERIFY(!panel("Ins")->isChecked());
    QTest::keyClicks(&text, u"Y"_s);
    QCOMPARE(text.Text(), u"XYbc"_s);
    // The outline has no use for it.
    m_main->choose("mnuViewGoToOutline");
    QTest::keyClick(static_cast<frmDocument &>(DocumentActive()->view()->window).treeView, Qt::Key_Insert);
    QVERIFY(!text.overwriteMode());
}

void tst_StatusBar::otherInsertKeysAreTheControlsOwn()
{
    start();
    RichTextBox &text = newText();
    QTest::keyClick(&text, Qt::Key_Insert, Qt::ControlModifier);
    QTest::keyClick(&text, Qt::Key_Insert, Qt::ShiftModifier);
    QVERIFY(!text.overwriteMode());
}

void tst_StatusBar::theClockShowsTheShortForms()
{
    start();
    const QLocale locale = QLocale::system();
    const QDateTime moment = m_main->app.clock.moment;
    QCOMPARE(label("Time")->text(), locale.toString(moment.time(), QLocale::ShortFormat));
    QCOMPARE(label("Date")->text(), locale.toString(moment.date(), QLocale::ShortFormat));
    QVERIFY(label("Date")->text().contains(u"2026"_s));
}

void tst_StatusBar::theClockGoesOn()
{
    // Just before midnight; the fake clock has gone on when the bar looks next.
    m_main->app.clock.moment = QDateTime(QDate(2026, 12, 31), QTime(23, 59, 59, 950));
    m_main->main.MDIForm_Load();
    m_main->app.clock.moment = QDateTime(QDate(2027, 1, 1), QTime(0, 0, 0));
    QTRY_VERIFY(label("Date")->text().contains(u"2027"_s));
    // And not before the shown time changes: the next look is a whole second or minute away.
    const auto timers = m_main->main.statusBar()->findChildren<QTimer *>(Qt::FindDirectChildrenOnly);
    int running = 0;
    for (const QTimer *timer : timers) {
        if (timer->isActive()) {
            ++running;
            QVERIFY(timer->isSingleShot());
            QVERIFY(timer->interval() == 1000 || timer->interval() == 60'000);
        }
    }
    QCOMPARE(running, 1);
}

void tst_StatusBar::theStateIsReadAnewWhenTheProgramComesToTheFront()
{
    start();
    m_main->app.lockKeys.states[LockKey::Caps] = true;
    m_main->app.clock.moment = QDateTime(QDate(2031, 5, 6), QTime(7, 8, 9));
    QEvent activate(QEvent::ApplicationActivate);
    QCoreApplication::sendEvent(qApp, &activate);
    QVERIFY(panel("Caps")->isChecked());
    QVERIFY(label("Date")->text().contains(u"2031"_s));
}

void tst_StatusBar::keysThatAreOffArePale()
{
    start();
    const auto contrast = [](QToolButton *shown) {
        const QImage image = shown->grab().toImage();
        const int background = qGray(image.pixel(0, 0));
        int greatest = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                greatest = std::max(greatest, std::abs(qGray(image.pixel(x, y)) - background));
        }
        return greatest;
    };
    const int off = contrast(panel("Caps"));
    QTest::mouseClick(panel("Caps"), Qt::LeftButton);
    const int on = contrast(panel("Caps"));
    QVERIFY(off > 20);
    QVERIFY(on > off + 50);
}

void tst_StatusBar::thePanelsTakeNoFocus()
{
    start();
    const RichTextBox &text = newText();
    for (const char *key : {"Caps", "Num", "Ins"}) {
        QCOMPARE(panel(key)->focusPolicy(), Qt::NoFocus);
        QTest::mouseClick(panel(key), Qt::LeftButton);
        QVERIFY(text.hasFocus());
    }
}

QTEST_MAIN(tst_StatusBar)
#include "tst_StatusBar.moc"
