// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/WorkProgress.h"

#include <QGuiApplication>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

class tst_WorkProgress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsDoneSoonShowsNothing();
    void aLongWorkIsShownWithHowFarItIs();
    void theButtonStopsIt();
    void escapeStopsItAndTheWindowStays();
    void whoHasToPressAButtonSeesAnArrow();
};

void tst_WorkProgress::whatIsDoneSoonShowsNothing()
{
    WorkProgress progress(u"Replacing..."_s);
    for (int i = 0; i < 1000; ++i)
        QVERIFY(progress.goOn(i, 1000));
    QVERIFY(!progress.isVisible());
    QTest::qWait(520);
    QVERIFY(progress.goOn(1000, 1000));
    QVERIFY(progress.isVisible());
}

void tst_WorkProgress::aLongWorkIsShownWithHowFarItIs()
{
    WorkProgress progress(u"Replacing..."_s, nullptr, 0);
    const auto *bar = progress.findChild<QProgressBar *>(u"barProgress"_s);
    QVERIFY(progress.goOn(30, 100));
    QVERIFY(progress.isVisible());
    QCOMPARE(bar->value(), 30);
    QCOMPARE(bar->maximum(), 100);
    QTest::qWait(60);
    QVERIFY(progress.goOn(60, 100));
    QCOMPARE(bar->value(), 60);
    // Where nobody knows, the bar only moves.
    QTest::qWait(60);
    QVERIFY(progress.goOn(70, 0));
    QCOMPARE(bar->maximum(), 0);
}

void tst_WorkProgress::theButtonStopsIt()
{
    WorkProgress progress(u"Replacing..."_s, nullptr, 0);
    QVERIFY(progress.goOn(1, 100));
    auto *cancel = progress.findChild<QPushButton *>(u"cmdCancel"_s);
    QTimer::singleShot(0, cancel, [cancel] { QTest::mouseClick(cancel, Qt::LeftButton); });
    QTest::qSleep(60);
    QVERIFY(!progress.goOn(2, 100));
    QVERIFY(!progress.goOn(3, 100));
}

void tst_WorkProgress::escapeStopsItAndTheWindowStays()
{
    WorkProgress progress(u"Replacing..."_s, nullptr, 0);
    QVERIFY(progress.goOn(1, 100));
    QTest::keyClick(&progress, Qt::Key_Escape);
    QVERIFY(progress.isVisible());
    QVERIFY(!progress.goOn(2, 100));
}

void tst_WorkProgress::whoHasToPressAButtonSeesAnArrow()
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    {
        WorkProgress progress(u"Replacing..."_s, nullptr, 0);
        QVERIFY(progress.goOn(1, 100));
        QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::ArrowCursor);
    }
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QGuiApplication::restoreOverrideCursor();
}

QTEST_MAIN(tst_WorkProgress)
#include "tst_WorkProgress.moc"
