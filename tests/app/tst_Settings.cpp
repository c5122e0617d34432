// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "app/AppFixture.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const WindowPlace defaultPlace{1000, 1000, 6500, 6500};

} // namespace

class tst_Settings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void cleanup() { m_app.reset(); }

    void anEmptyStoreGivesEveryDefault();
    void nothingIsWrittenByReading();
    void whatIsSavedIsReadBack();
    void everyValueIsStoredUnderItsNameInItsForm();
    void withPreserveSettingsOffTheStoredPlaceIsIgnoredButStillWritten();
    void theOutlineFontOfTheNextRunIsTheTextFontOfThisOne();
    void aMinimisedMainWindowKeepsTheStoredPlace();
    void aToolbarStoredAsZeroIsHidden();
    void booleansAreReadAsWordsOrNumbers_data();
    void booleansAreReadAsWordsOrNumbers();
    void aTextThatIsNoSuchValueIsLoggedAndEndsTheReading_data();
    void aTextThatIsNoSuchValueIsLoggedAndEndsTheReading();
    void fractionsOfATwipSurvive();
    void aStoreThatCannotBeWrittenIsLogged();
    void maximisedWindowsAreRemembered();
    void aMaximisedMainWindowRemembersWhereItWas();
    void firstSettingsFitTheWindowToTheScreenOnce();

private:
    void put(const char *key, const QString &value);
    QString got(const char *section, const char *key) const;

    std::unique_ptr<AppFixture> m_app;
};

void tst_Settings::init()
{
    m_app = std::make_unique<AppFixture>();
    modMain::InitialiseGlobals();
}

void tst_Settings::put(const char *key, const QString &value)
{
    m_app->settings.values[{u"Settings"_s, QString::fromLatin1(key)}] = value;
}

QString tst_Settings::got(const char *section, const char *key) const
{
    return m_app->settings.value(QString::fromLatin1(section), QString::fromLatin1(key)).value_or(u"(none)"_s);
}

void tst_Settings::anEmptyStoreGivesEveryDefault()
{
    // Whatever a run had before, reading an empty store gives the defaults.
    g_options.MaxMRUFiles = 3;
    g_options.Backup = g_options.ViewToolbar = g_options.ViewStatusbar = false;
    g_options.StartWithNewDocument = true;
    g_fntDefaultTextFont.setBold(true);
    modMain::LoadSettings();

    QCOMPARE(g_options.MaxMRUFiles, qint16(10));
    QVERIFY(!g_options.AutoLabelEdit && g_options.AutoSplit && g_options.Backup && g_options.PreserveSettings);
    QVERIFY(!g_options.StartWithNewDocument && g_options.StartWithLatestDocuments);
    QVERIFY(g_options.ViewStatusbar && g_options.ViewToolbar);
    clsFont plain;
    plain.setSize(10 * clsFont::point);
    QVERIFY(g_fntDefaultOutlineFont == plain);
    QVERIFY(g_fntDefaultTextFont == plain);
    QVERIFY(m_app->mainWindow.place() == defaultPlace);
    QCOMPARE(m_app->logLines(), QStringList());
}

void tst_Settings::nothingIsWrittenByReading()
{
    modMain::LoadSettings();
    QVERIFY(m_app->settings.values.empty());
}

void tst_Settings::whatIsSavedIsReadBack()
{
    g_options = {1, true, false, false, true, true, false, false, false};
    g_fntDefaultTextFont.setName(u"Ünïcode, \"Sans\""_s);
    g_fntDefaultTextFont.setSize(82500);
    g_fntDefaultTextFont.setUnderline(true);
    const clsFont font = g_fntDefaultTextFont;
    m_app->mainWindow.current = {-150, 30.5F, 12345, 6789};
    modMain::SaveSettings();

    modMain::InitialiseGlobals();
    m_app->mainWindow.current = {};
    modMain::LoadSettings();
    QCOMPARE(g_options.MaxMRUFiles, qint16(1));
    QVERIFY(g_options.AutoLabelEdit && !g_options.AutoSplit && !g_options.Backup && g_options.PreserveSettings);
    QVERIFY(g_options.StartWithNewDocument && !g_options.StartWithLatestDocuments);
    QVERIFY(!g_options.ViewStatusbar && !g_options.ViewToolbar);
    QVERIFY(g_fntDefaultTextFont == font);
    const WindowPlace place{-150, 30.5F, 12345, 6789};
    QVERIFY(m_app->mainWindow.place() == place);
}

void tst_Settings::everyValueIsStoredUnderItsNameInItsForm()
{
    g_fntDefaultTextFont.setSize(82500);
    g_fntDefaultTextFont.setName(u"Serif"_s);
    m_app->mainWindow.current = {1005, -15, 16777216, 7.5F};
    modMain::SaveSettings();
    const std::map<std::pair<QString, QString>, QString> expected{
        {{u"OutlineFont"_s, u"Bold"_s}, u"False"_s},
        {{u"OutlineFont"_s, u"Italic"_s}, u"False"_s},
        {{u"OutlineFont"_s, u"Name"_s}, u"Serif"_s},
        {{u"OutlineFont"_s, u"Size"_s}, u"8.25"_s},
        {{u"OutlineFont"_s, u"StrikeThrough"_s}, u"False"_s},
        {{u"OutlineFont"_s, u"Underline"_s}, u"False"_s},
        {{u"Settings"_s, u"AutoLabelEdit"_s}, u"False"_s},
        {{u"Settings"_s, u"AutoSplit"_s}, u"True"_s},
        {{u"Settings"_s, u"Backup"_s}, u"True"_s},
        {{u"Settings"_s, u"MaxMRUFiles"_s}, u"10"_s},
        {{u"Settings"_s, u"PreserveSettings"_s}, u"True"_s},
        {{u"Settings"_s, u"StartWithNewDocument"_s}, u"False"_s},
        {{u"Settings"_s, u"StartWithLatestDocuments"_s}, u"True"_s},
        {{u"Settings"_s, u"ViewStatusbar"_s}, u"True"_s},
        {{u"Settings"_s, u"ViewToolbar"_s}, u"True"_s},
        {{u"Settings"_s, u"MainLeft"_s}, u"1005"_s},
        {{u"Settings"_s, u"MainTop"_s}, u"-15"_s},
        {{u"Settings"_s, u"MainWidth"_s}, u"16777216"_s},
        {{u"Settings"_s, u"MainHeight"_s}, u"7.5"_s},
    };
    QVERIFY(m_app->settings.values == expected);
    QCOMPARE(m_app->settings.timesFlushed, 1);
}

void tst_Settings::withPreserveSettingsOffTheStoredPlaceIsIgnoredButStillWritten()
{
    put("PreserveSettings", u"False"_s);
    put("MainLeft", u"3000"_s);
    modMain::LoadSettings();
    QCOMPARE(m_app->mainWindow.timesPlaced, 0);
    m_app->mainWindow.current.left = 4500;
    modMain::SaveSettings();
    QCOMPARE(got("Settings", "PreserveSettings"), u"False"_s);
    QCOMPARE(got("Settings", "MainLeft"), u"4500"_s);
}

void tst_Settings::theOutlineFontOfTheNextRunIsTheTextFontOfThisOne()
{
    g_fntDefaultOutlineFont.setName(u"Outline Sans"_s);
    g_fntDefaultOutlineFont.setBold(true);
    g_fntDefaultTextFont.setName(u"Text Serif"_s);
    g_fntDefaultTextFont.setItalic(true);
    modMain::SaveSettings();
    modMain::InitialiseGlobals();
    modMain::LoadSettings();
    QCOMPARE(g_fntDefaultOutlineFont.Name(), u"Text Serif"_s);
    QVERIFY(g_fntDefaultOutlineFont.Italic() && !g_fntDefaultOutlineFont.Bold());
    QVERIFY(g_fntDefaultOutlineFont == g_fntDefaultTextFont);
}

void tst_Settings::aMinimisedMainWindowKeepsTheStoredPlace()
{
    modMain::SaveSettings();
    const auto before = m_app->settings.values;
    m_app->mainWindow.isMinimised = true;
    m_app->mainWindow.current = {-480000, -480000, 2400, 300};
    g_options.Backup = false;
    m_app->settings.written.clear();
    modMain::SaveSettings();
    for (const char *key : {"MainLeft", "MainTop", "MainWidth", "MainHeight"})
        QCOMPARE(got("Settings", key), before.at({u"Settings"_s, QString::fromLatin1(key)}));
    QCOMPARE(got("Settings", "Backup"), u"False"_s);
    // The other 9 options and the 6 font values, which are written twice.
    QCOMPARE(m_app->settings.written.size(), 9 + 12);
}

void tst_Settings::aToolbarStoredAsZeroIsHidden()
{
    put("ViewToolbar", u"0"_s);
    modMain::LoadSettings();
    QVERIFY(!g_options.ViewToolbar);
    QVERIFY(g_options.ViewStatusbar);
}

void tst_Settings::booleansAreReadAsWordsOrNumbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("value");
    QTest::newRow("True") << u"True"_s << true;
    QTest::newRow("any case") << u"tRUE"_s << true;
    QTest::newRow("False") << u"False"_s << false;
    QTest::newRow("-1") << u"-1"_s << true;
    QTest::newRow("2.5") << u"2.5"_s << true;
    QTest::newRow("0.0") << u"0.0"_s << false;
}

void tst_Settings::booleansAreReadAsWordsOrNumbers()
{
    QFETCH(QString, text);
    QFETCH(bool, value);
    put("StartWithNewDocument", text);
    put("StartWithLatestDocuments", text);
    modMain::LoadSettings();
    QCOMPARE(g_options.StartWithNewDocument, value);
    QCOMPARE(g_options.StartWithLatestDocuments, value);
}

void tst_Settings::aTextThatIsNoSuchValueIsLoggedAndEndsTheReading_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("errorNumber");
    const QString settings = u"Settings"_s;
    QTest::newRow("a word for a number") << settings << u"MaxMRUFiles"_s << u"abc"_s << 13;
    QTest::newRow("beyond 16 bits") << settings << u"MaxMRUFiles"_s << u"32768"_s << 6;
    QTest::newRow("no Boolean") << settings << u"Backup"_s << u"perhaps"_s << 13;
    QTest::newRow("an empty Boolean") << settings << u"Backup"_s << QString() << 13;
    QTest::newRow("no position") << settings << u"MainTop"_s << u"up"_s << 13;
    QTest::newRow("beyond single precision") << settings << u"MainWidth"_s << u"1e39"_s << 6;
    QTest::newRow("no size") << u"OutlineFont"_s << u"Size"_s << u"large"_s << 13;
    QTest::newRow("a size beyond its range") << u"OutlineFont"_s << u"Size"_s << u"1e30"_s << 6;
}

void tst_Settings::aTextThatIsNoSuchValueIsLoggedAndEndsTheReading()
{
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(int, errorNumber);
    m_app->settings.values[{section, key}] = value;
    put("ViewToolbar", u"False"_s);
    modMain::LoadSettings();
    const QStringList lines = m_app->logLines();
    QCOMPARE(lines.size(), 2);
    QVERIFY2(lines.first().startsWith(u"Error %1 - "_s.arg(errorNumber)), qPrintable(lines.first()));
    QCOMPARE(lines.last(), u"Quillery modMain LoadSettings"_s);
    // What precedes the bad value was read, and what follows has its default.
    QCOMPARE(g_options.ViewToolbar, !key.startsWith(u"Main"_s));
    QCOMPARE(m_app->mainWindow.timesPlaced, 0);
    QCOMPARE(g_fntDefaultTextFont.Size(), 10 * clsFont::point);
}

void tst_Settings::fractionsOfATwipSurvive()
{
    const float third = 1000.0F / 3;
    m_app->mainWindow.current = {third, -third, 1.0e-6F, 3.0e9F};
    const WindowPlace before = m_app->mainWindow.current;
    modMain::SaveSettings();
    m_app->mainWindow.current = {};
    modMain::LoadSettings();
    QVERIFY(m_app->mainWindow.current == before);
}

void tst_Settings::aStoreThatCannotBeWrittenIsLogged()
{
    m_app->settings.failing = true;
    modMain::SaveSettings();
    QCOMPARE(m_app->logLines().value(0).left(10), u"Error 75 -"_s);
    QCOMPARE(m_app->logLines().value(1), u"Quillery modMain SaveSettings"_s);
}

void tst_Settings::maximisedWindowsAreRemembered()
{
    modMain::LoadSettings();
    QVERIFY(m_app->mainWindow.currentStates == WindowStates());
    m_app->mainWindow.currentStates.documentsMaximised = true;
    modMain::SaveSettings();
    QCOMPARE(got("Windows", "DocumentsMaximised"), u"True"_s);
    QCOMPARE(got("Windows", "MainMaximised"), u"(none)"_s);
    m_app->mainWindow.currentStates = {};
    modMain::LoadSettings();
    QVERIFY(m_app->mainWindow.currentStates.documentsMaximised);
    QVERIFY(!m_app->mainWindow.currentStates.mainMaximised);
    m_app->mainWindow.currentStates = {};
    modMain::SaveSettings();
    QVERIFY(m_app->settings.section(u"Windows"_s).empty());
}

void tst_Settings::aMaximisedMainWindowRemembersWhereItWas()
{
    m_app->mainWindow.current = {0, 0, 19200, 12000};
    m_app->mainWindow.currentStates = {true, false, {600, 450, 9000, 7500}};
    modMain::SaveSettings();
    // A maximised window's values are stored as they stand.
    QCOMPARE(got("Settings", "MainWidth"), u"19200"_s);
    m_app->mainWindow.currentStates = {};
    modMain::LoadSettings();
    QVERIFY(m_app->mainWindow.currentStates.mainMaximised);
    QVERIFY(m_app->mainWindow.current == (WindowPlace{600, 450, 9000, 7500}));
}

void tst_Settings::firstSettingsFitTheWindowToTheScreenOnce()
{
    m_app->settings.values[{u"Windows"_s, u"FitToScreen"_s}] = u"True"_s;
    modMain::LoadSettings();
    QCOMPARE(m_app->mainWindow.timesFitted, 1);
    modMain::SaveSettings();
    modMain::LoadSettings();
    QCOMPARE(m_app->mainWindow.timesFitted, 1);
}

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_Settings.moc"
