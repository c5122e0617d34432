// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/ScreenPlacement.h"

#include <QTest>

#include <limits>

namespace
{

const QRect primary(0, 0, 1920, 1040);
const QRect right(1920, 100, 1280, 924);

} // namespace

class tst_ScreenPlacement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void windowsAreBroughtBackOntoAScreen_data();
    void windowsAreBroughtBackOntoAScreen();
    void withoutScreensThePlaceIsTaken();
    void fifteenTwipsAreAPixelAtNinetySixDots();
    void placesSurviveTheWayToPixelsAndBack();
    void absurdPlacesAreCut();
};

void tst_ScreenPlacement::windowsAreBroughtBackOntoAScreen_data()
{
    QTest::addColumn<QRect>("wanted");
    QTest::addColumn<QRect>("placed");
    const auto stays = [](const char *name, const QRect &place) { QTest::newRow(name) << place << place; };
    stays("inside the first screen", QRect(67, 67, 433, 433));
    stays("on the second screen", QRect(2000, 200, 600, 400));
    stays("across both", QRect(1700, 200, 600, 400));
    stays("mostly below, but with its title in sight", QRect(100, 1000, 600, 400));
    stays("larger than the screens", QRect(0, 0, 5000, 5000));
    stays("narrow", QRect(10, 10, 40, 200));
    QTest::newRow("left of everything") << QRect(-3000, 50, 600, 400) << QRect(0, 50, 600, 400);
    QTest::newRow("title above the screen") << QRect(100, -20, 600, 400) << QRect(100, 0, 600, 400);
    QTest::newRow("title below the screen") << QRect(100, 1030, 600, 400) << QRect(100, 640, 600, 400);
    QTest::newRow("on a screen that is gone") << QRect(4000, 300, 600, 400) << QRect(2600, 300, 600, 400);
    QTest::newRow("too large and nowhere") << QRect(-9000, -9000, 5000, 5000) << QRect(0, 0, 1920, 1040);
    QTest::newRow("too little to grab") << QRect(-560, 50, 600, 400) << QRect(0, 50, 600, 400);
}

void tst_ScreenPlacement::windowsAreBroughtBackOntoAScreen()
{
    QFETCH(QRect, wanted);
    QFETCH(QRect, placed);
    QCOMPARE(placedOnScreens(wanted, {primary, right}), placed);
}

void tst_ScreenPlacement::withoutScreensThePlaceIsTaken()
{
    QCOMPARE(placedOnScreens(QRect(-5000, 0, 10, 10), {}), QRect(-5000, 0, 10, 10));
}

void tst_ScreenPlacement::fifteenTwipsAreAPixelAtNinetySixDots()
{
    QCOMPARE(pixelsFromPlace({1000, 1000, 6500, 6500}, 96), QRect(67, 67, 433, 433));
    QCOMPARE(pixelsFromPlace({1440, -1440, 2880, 720}, 144), QRect(144, -144, 288, 72));
}

void tst_ScreenPlacement::placesSurviveTheWayToPixelsAndBack()
{
    for (const double dots : {72.0, 96.0, 101.6, 144.0, 288.0}) {
        const QRect pixels(-13, 7, 1279, 803);
        QCOMPARE(pixelsFromPlace(placeFromPixels(pixels, dots), dots), pixels);
    }
}

void tst_ScreenPlacement::absurdPlacesAreCut()
{
    const float most = std::numeric_limits<float>::max();
    const QRect pixels = pixelsFromPlace({-most, most, most, -most}, 96);
    QCOMPARE(pixels, QRect(-1'000'000, 1'000'000, 1'000'000, 1));
    QVERIFY(primary.contains(placedOnScreens(pixels, {primary})));
}

QTEST_APPLESS_MAIN(tst_ScreenPlacement)
#include "tst_ScreenPlacement.moc"
