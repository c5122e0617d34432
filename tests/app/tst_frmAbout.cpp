// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/frmAbout.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_frmAbout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBoxNamesTheProgramTheSystemAndTheVersion();
    void okClosesTheBox();
    void theBannerHasNoButton();
};

void tst_frmAbout::theBoxNamesTheProgramTheSystemAndTheVersion()
{
    QCoreApplication::setApplicationVersion(u"3.2.1"_s);
    const frmAbout box;
    const auto text = [&](const QString &name) { return box.findChild<QLabel *>(name)->text(); };
    QCOMPARE(text(u"lblTitle"_s), u"Quillery"_s);
    QCOMPARE(text(u"lblSubtitle"_s), u"The Outliner"_s);
    QCOMPARE(text(u"lblPlatform"_s), u"Windows 95/98/NT"_s);
    QCOMPARE(text(u"lblVersion"_s), u"Version 3.2.1"_s);
}

void tst_frmAbout::okClosesTheBox()
{
    frmAbout box;
    box.open();
    QTest::mouseClick(box.findChild<QPushButton *>(u"cmdOK"_s), Qt::LeftButton);
    QVERIFY(!box.isVisible());
    QCOMPARE(box.result(), static_cast<int>(QDialog::Accepted));
}

void tst_frmAbout::theBannerHasNoButton()
{
    frmAbout banner(nullptr, frmAbout::Banner);
    banner.show();
    QVERIFY(!banner.findChild<QPushButton *>(u"cmdOK"_s)->isVisible());
    QVERIFY(banner.findChild<QLabel *>(u"lblTitle"_s)->isVisible());
    QVERIFY(!banner.isModal());
}

QTEST_MAIN(tst_frmAbout)
#include "tst_frmAbout.moc"
