// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/LockKeys.h"

#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;

// Runs on the platform that it is started on: with a keyboard under X, without one elsewhere.
class tst_LockKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAWayNothingIsKnownAndNothingHappens();
    void eachLockIsReadAndSetByItself();
};

void tst_LockKeys::withoutAWayNothingIsKnownAndNothingHappens()
{
    if (QGuiApplication::platformName() == u"xcb"_s)
        QSKIP("X has a way");
    DesktopLockKeys keys;
    for (const LockKey key : {LockKey::Caps, LockKey::Num}) {
        keys.toggle(key);
        QVERIFY(!keys.isOn(key).has_value());
    }
}

void tst_LockKeys::eachLockIsReadAndSetByItself()
{
    if (QGuiApplication::platformName() != u"xcb"_s)
        QSKIP("only X has a way");
    DesktopLockKeys keys;
    for (const LockKey key : {LockKey::Caps, LockKey::Num}) {
        const LockKey other = key == LockKey::Caps ? LockKey::Num : LockKey::Caps;
        const std::optional<bool> before = keys.isOn(key);
        const std::optional<bool> otherBefore = keys.isOn(other);
        QVERIFY(before.has_value());
        keys.toggle(key);
        QCOMPARE(keys.isOn(key), std::optional(!*before));
        QCOMPARE(keys.isOn(other), otherBefore);
        // Another client of the server, as a desktop's own indicator is, sees it as well.
        QCOMPARE(DesktopLockKeys().isOn(key), std::optional(!*before));
        keys.toggle(key);
        QCOMPARE(keys.isOn(key), before);
    }
}

QTEST_MAIN(tst_LockKeys)
#include "tst_LockKeys.moc"
