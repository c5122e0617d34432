// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/AppFakes.h"
#include "app/modMRU.h"
#include "support/FakePorts.h"
#include "util/Procedure.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

std::vector<ErrorReport> s_reports;

void keepReport(const ErrorReport &report)
{
    s_reports.push_back(report);
}

QStringList numbered(int count)
{
    QStringList names;
    for (int name = 1; name <= count; ++name)
        names.append(u"/docs/%1.qly"_s.arg(name));
    return names;
}

} // namespace

class tst_modMRU : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void anEmptyStoreShowsNoItemsAndNoSeparator();
    void aFileOpenedAgainMovesToTheTopAndTheOthersKeepTheirOrder();
    void namesDifferingOnlyInCaseAreOneEntrySpeltAsJustOpened();
    void outerBlanksDoNotMakeANewName();
    void openingAFileBeyondTheBoundDropsTheOldest();
    void removingTheOnlyNameEmptiesTheListAndHidesTheSeparator();
    void removingANameKeepsTheOthersUpToTheBound();
    void accessKeysRunFrom1To9ThenFrom0Again();
    void aRunThatOpensNoDocumentSavesAnEmptyFirstValueAndTheSameNames();
    void moreThanNineNamesComeBackInOrder();
    void aSmallerKeyShortensTheListToIt();
    void aGapBetweenKeysLeavesEmptyElementsThatAreNotShown();
    void aHostileKeyIsLoggedAndEndsTheReading_data();
    void aHostileKeyIsLoggedAndEndsTheReading();
    void theLargestIndexIsAccepted();
    void aBoundOfZeroKeepsTheFileJustOpened();
    void itemCaptionsAreThoseShown();
    void saveReplacesWhateverTheSectionHeld();
    void aStoreThatCannotBeWrittenIsLogged();

private:
    void store(const QStringList &names);
    QStringList stored() const;

    std::unique_ptr<FakePorts> m_ports;
    std::unique_ptr<FakeSettingsStore> m_settings;
    std::unique_ptr<FakeRecentFileItems> m_items;
    std::unique_ptr<modMRU> m_mru;
};

void tst_modMRU::init()
{
    s_reports.clear();
    setErrorReporter(keepReport);
    m_ports = std::make_unique<FakePorts>();
    m_settings = std::make_unique<FakeSettingsStore>();
    m_items = std::make_unique<FakeRecentFileItems>();
    m_mru = std::make_unique<modMRU>(*m_settings, *m_items);
}

void tst_modMRU::cleanup()
{
    setErrorReporter(nullptr);
    m_mru.reset();
    m_ports.reset();
}

void tst_modMRU::store(const QStringList &names)
{
    for (qsizetype i = 0; i < names.size(); ++i)
        m_settings->values[{u"MRU"_s, QString::number(i + 1)}] = names.at(i);
}

QStringList tst_modMRU::stored() const
{
    QStringList names;
    for (const auto &[key, name] : m_settings->section(u"MRU"_s))
        names.append(key + u'=' + name);
    return names;
}

void tst_modMRU::anEmptyStoreShowsNoItemsAndNoSeparator()
{
    m_items->separator = true;
    m_mru->LoadMRUFiles();
    QCOMPARE(m_items->shown, QStringList());
    QVERIFY(!m_items->separator);
    QCOMPARE(m_mru->list(), QStringList(QString()));
}

void tst_modMRU::aFileOpenedAgainMovesToTheTopAndTheOthersKeepTheirOrder()
{
    store(numbered(4));
    m_mru->LoadMRUFiles();
    m_mru->UpdateMRUFile(u"/docs/3.qly"_s, false);
    QCOMPARE(m_mru->list(), QStringList({u"/docs/3.qly"_s, u"/docs/1.qly"_s, u"/docs/2.qly"_s, u"/docs/4.qly"_s}));
    QCOMPARE(m_items->shown.first(), u"&1 /docs/3.qly"_s);
    QVERIFY(m_items->separator);
}

void tst_modMRU::namesDifferingOnlyInCaseAreOneEntrySpeltAsJustOpened()
{
    m_mru->UpdateMRUFile(u"/docs/ÄPFEL.qly"_s, false);
    m_mru->UpdateMRUFile(u"/docs/äpfel.QLY"_s, false);
    QCOMPARE(m_mru->list(), QStringList(u"/docs/äpfel.QLY"_s));
}

void tst_modMRU::outerBlanksDoNotMakeANewName()
{
    m_mru->UpdateMRUFile(u"/docs/a.qly"_s, false);
    m_mru->UpdateMRUFile(u"  /docs/a.qly "_s, false);
    QCOMPARE(m_mru->list(), QStringList(u"/docs/a.qly"_s));
    // Only blanks are passed over: another white space is part of a name.
    m_mru->UpdateMRUFile(u"/docs/a.qly\t"_s, false);
    QCOMPARE(m_mru->list(), QStringList({u"/docs/a.qly\t"_s, u"/docs/a.qly"_s}));
}

void tst_modMRU::openingAFileBeyondTheBoundDropsTheOldest()
{
    g_options.MaxMRUFiles = 4;
    store(numbered(4));
    m_mru->LoadMRUFiles();
    m_mru->UpdateMRUFile(u"/docs/5.qly"_s, false);
    QCOMPARE(m_mru->list(), QStringList({u"/docs/5.qly"_s, u"/docs/1.qly"_s, u"/docs/2.qly"_s, u"/docs/3.qly"_s}));
    QCOMPARE(m_items->shown.size(), 4);
}

void tst_modMRU::removingTheOnlyNameEmptiesTheListAndHidesTheSeparator()
{
    m_mru->UpdateMRUFile(u"/docs/a.qly"_s, false);
    QVERIFY(m_items->separator);
    m_mru->UpdateMRUFile(u"/docs/A.qly"_s, true);
    QCOMPARE(m_mru->list(), QStringList(QString()));
    QCOMPARE(m_items->shown, QStringList());
    QVERIFY(!m_items->separator);
}

void tst_modMRU::removingANameKeepsTheOthersUpToTheBound()
{
    store(numbered(5));
    m_mru->LoadMRUFiles();
    g_options.MaxMRUFiles = 3;
    m_mru->UpdateMRUFile(u"/docs/2.qly"_s, true);
    QCOMPARE(m_mru->list(), QStringList({u"/docs/1.qly"_s, u"/docs/3.qly"_s, u"/docs/4.qly"_s}));
}

void tst_modMRU::accessKeysRunFrom1To9ThenFrom0Again()
{
    g_options.MaxMRUFiles = 12;
    store(numbered(12));
    m_mru->LoadMRUFiles();
    QString accessKeys;
    for (const QString &caption : std::as_const(m_items->shown)) {
        QCOMPARE(caption.at(0), u'&');
        QCOMPARE(caption.at(2), u' ');
        accessKeys += caption.at(1);
    }
    QCOMPARE(accessKeys, u"123456789012"_s);
}

void tst_modMRU::aRunThatOpensNoDocumentSavesAnEmptyFirstValueAndTheSameNames()
{
    store(numbered(2));
    m_mru->LoadMRUFiles();
    m_mru->SaveMRUFiles();
    QCOMPARE(stored(), QStringList({u"1="_s, u"2=/docs/1.qly"_s, u"3=/docs/2.qly"_s}));
    m_mru->LoadMRUFiles();
    QCOMPARE(m_items->shown, QStringList({u"&1 /docs/1.qly"_s, u"&2 /docs/2.qly"_s}));
}

void tst_modMRU::moreThanNineNamesComeBackInOrder()
{
    store(numbered(10));
    m_mru->LoadMRUFiles();
    QCOMPARE(m_mru->list(), QStringList(QString()) + numbered(10));
}

void tst_modMRU::aSmallerKeyShortensTheListToIt()
{
    // Both keys are the number 1, so the second one in order takes the first one's place.
    m_settings->values[{u"MRU"_s, u"01"_s}] = u"/docs/first.qly"_s;
    m_settings->values[{u"MRU"_s, u"1"_s}] = u"/docs/second.qly"_s;
    m_mru->LoadMRUFiles();
    QCOMPARE(m_mru->list(), QStringList({QString(), u"/docs/second.qly"_s}));

    m_settings->values.clear();
    m_settings->values[{u"MRU"_s, u"2"_s}] = u"/docs/two.qly"_s;
    // The store lists words, which have no numeric order, before numbers; this one reads as the number 3.
    m_settings->values[{u"MRU"_s, u"3.0"_s}] = u"/docs/three.qly"_s;
    m_mru->LoadMRUFiles();
    QCOMPARE(m_mru->list(), QStringList({QString(), QString(), u"/docs/two.qly"_s}));
}

void tst_modMRU::aGapBetweenKeysLeavesEmptyElementsThatAreNotShown()
{
    m_settings->values[{u"MRU"_s, u"1"_s}] = u"/docs/a.qly"_s;
    m_settings->values[{u"MRU"_s, u"4"_s}] = u"/docs/b.qly"_s;
    m_mru->LoadMRUFiles();
    QCOMPARE(m_mru->list().size(), 5);
    QCOMPARE(m_items->shown, QStringList({u"&1 /docs/a.qly"_s, u"&2 /docs/b.qly"_s}));
}

void tst_modMRU::aHostileKeyIsLoggedAndEndsTheReading_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("errorNumber");
    QTest::newRow("far too large") << u"2000000000"_s << 6;
    QTest::newRow("one too large") << u"32768"_s << 6;
    QTest::newRow("endless digits") << QString(400, u'9') << 13;
    QTest::newRow("negative") << u"-1"_s << 5;
    QTest::newRow("a word") << u"abc"_s << 13;
    QTest::newRow("empty") << QString() << 13;
}

void tst_modMRU::aHostileKeyIsLoggedAndEndsTheReading()
{
    QFETCH(QString, key);
    QFETCH(int, errorNumber);
    m_settings->values[{u"MRU"_s, key}] = u"/docs/x.qly"_s;
    m_mru->LoadMRUFiles();
    QCOMPARE(s_reports.size(), 1U);
    QCOMPARE(s_reports.front().number, errorNumber);
    QCOMPARE(g_sProcedure.section(u' ', 0, 0), u"modMRU"_s);
    QCOMPARE(m_mru->list().size(), 1);

    // The list goes on working.
    m_mru->UpdateMRUFile(u"/docs/a.qly"_s, false);
    QCOMPARE(m_items->shown, QStringList(u"&1 /docs/a.qly"_s));
}

void tst_modMRU::theLargestIndexIsAccepted()
{
    m_settings->values[{u"MRU"_s, u"32767"_s}] = u"/docs/a.qly"_s;
    m_mru->LoadMRUFiles();
    QVERIFY(s_reports.empty());
    QCOMPARE(m_mru->list().size(), 32768);
    QCOMPARE(m_items->shown, QStringList(u"&1 /docs/a.qly"_s));
}

void tst_modMRU::aBoundOfZeroKeepsTheFileJustOpened()
{
    g_options.MaxMRUFiles = 0;
    m_mru->UpdateMRUFile(u"/docs/a.qly"_s, false);
    m_mru->UpdateMRUFile(u"/docs/b.qly"_s, false);
    QCOMPARE(m_mru->list(), QStringList(u"/docs/b.qly"_s));
}

void tst_modMRU::itemCaptionsAreThoseShown()
{
    store(numbered(3));
    m_mru->LoadMRUFiles();
    QCOMPARE(m_mru->itemCaption(1), u"&1 /docs/1.qly"_s);
    QCOMPARE(m_mru->itemCaption(3), u"&3 /docs/3.qly"_s);
    QCOMPARE(m_mru->itemCaption(0), QString());
    QCOMPARE(m_mru->itemCaption(4), QString());
}

void tst_modMRU::saveReplacesWhateverTheSectionHeld()
{
    store(numbered(5));
    m_settings->values[{u"MRU"_s, u"abc"_s}] = u"left over"_s;
    m_mru->UpdateMRUFile(u"/docs/a.qly"_s, false);
    m_mru->SaveMRUFiles();
    QCOMPARE(stored(), QStringList(u"1=/docs/a.qly"_s));
    QCOMPARE(m_settings->timesFlushed, 1);
}

void tst_modMRU::aStoreThatCannotBeWrittenIsLogged()
{
    m_settings->failing = true;
    m_mru->SaveMRUFiles();
    QCOMPARE(s_reports.size(), 1U);
    QCOMPARE(s_reports.front().number, 75);
    QCOMPARE(g_sProcedure, u"modMRU SaveMRUFiles"_s);
}

QTEST_GUILESS_MAIN(tst_modMRU)
#include "tst_modMRU.moc"
