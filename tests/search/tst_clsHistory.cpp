// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "search/clsHistory.h"
#include "support/ErrorRecorder.h"
#include "support/FakePorts.h"

#include <QTest>

using namespace Qt::StringLiterals;

// The list of expressions that were searched for.
class tst_clsHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elevenExpressionsKeepTheLastTen();
    void anExpressionComesToTheHeadOnce();
    void outerBlanksDoNotCount();
    void aSavedListComesBackBehindABlankRow();
    void anEmptySectionGivesOneBlankRow();
    void savingTakesTheOldSectionAway();
    void strangeKeysAreNoPlaces();
    void savingThatFailsIsReported();

private:
    static QStringList entries(clsHistory &history)
    {
        QStringList all;
        bool atEnd = false;
        for (QString entry = history.FirstEntry(atEnd); !atEnd; entry = history.NextEntry(atEnd))
            all.append(entry);
        return all;
    }
};

void tst_clsHistory::elevenExpressionsKeepTheLastTen()
{
    clsHistory history(u"H"_s);
    for (int i = 1; i <= 11; ++i)
        history.Store(QString::number(i));
    QCOMPARE(entries(history),
             (QStringList{u"11"_s, u"10"_s, u"9"_s, u"8"_s, u"7"_s, u"6"_s, u"5"_s, u"4"_s, u"3"_s, u"2"_s}));
}

void tst_clsHistory::anExpressionComesToTheHeadOnce()
{
    clsHistory history(u"H"_s);
    for (const QString &expression : {u"one"_s, u"two"_s, u"One"_s, u"one"_s})
        history.Store(expression);
    QCOMPARE(entries(history), (QStringList{u"one"_s, u"One"_s, u"two"_s}));
}

void tst_clsHistory::outerBlanksDoNotCount()
{
    clsHistory history(u"H"_s);
    history.Store(u"  one "_s);
    history.Store(u" "_s);
    QCOMPARE(entries(history), QStringList({QString(), u"one"_s}));
    history.Store(u"\ttwo"_s);
    QCOMPARE(entries(history), QStringList({u"\ttwo"_s, u"one"_s}));
}

void tst_clsHistory::aSavedListComesBackBehindABlankRow()
{
    FakeSettingsStore settings;
    clsHistory history(u"H"_s);
    history.Store(u"one"_s);
    history.Store(u"two"_s);
    history.Save(settings);
    clsHistory next(u"H"_s);
    next.Load(settings);
    QCOMPARE(entries(next), QStringList({QString(), u"two"_s, u"one"_s}));
    next.Store(u"three"_s);
    QCOMPARE(entries(next), QStringList({u"three"_s, u"two"_s, u"one"_s}));
}

void tst_clsHistory::anEmptySectionGivesOneBlankRow()
{
    clsHistory history(u"H"_s);
    QVERIFY(entries(history).isEmpty());
    history.Load(FakeSettingsStore());
    QCOMPARE(entries(history), QStringList{QString()});
}

void tst_clsHistory::savingTakesTheOldSectionAway()
{
    FakeSettingsStore settings;
    settings.setValue(u"H"_s, u"9"_s, u"old"_s);
    clsHistory history(u"H"_s);
    history.Store(u"one"_s);
    history.Save(settings);
    QCOMPARE(settings.section(u"H"_s), SettingsStore::Section({{u"1"_s, u"one"_s}}));
}

void tst_clsHistory::strangeKeysAreNoPlaces()
{
    FakeSettingsStore settings;
    for (const QString &key : {u"-1"_s, u"x"_s, u"2000000000"_s, u"1"_s})
        settings.setValue(u"H"_s, key, key);
    clsHistory history(u"H"_s);
    history.Load(settings);
    QCOMPARE(entries(history), QStringList({QString(), u"1"_s}));
}

void tst_clsHistory::savingThatFailsIsReported()
{
    const ErrorRecorder errors;
    FakeSettingsStore settings;
    settings.failing = true;
    clsHistory history(u"H"_s);
    history.Store(u"cat"_s);
    history.Save(settings);
    QCOMPARE(errors.count(), 1);
    QCOMPARE(g_sProcedure, u"clsHistory Save"_s);
    QCOMPARE(entries(history), QStringList{u"cat"_s});
}

QTEST_MAIN(tst_clsHistory)
#include "tst_clsHistory.moc"
