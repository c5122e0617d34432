// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "platform/IniSettingsStore.h"

#include "util/RunTimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

class EnvironmentGuard
{
public:
    EnvironmentGuard(const char *name, const QByteArray &value)
        : m_name(name)
        , m_before(qgetenv(name))
    {
        qputenv(name, value);
    }

    ~EnvironmentGuard() { qputenv(m_name, m_before); }

    EnvironmentGuard(const EnvironmentGuard &) = delete;
    EnvironmentGuard &operator=(const EnvironmentGuard &) = delete;

private:
    const char *m_name;
    QByteArray m_before;
};

} // namespace

class tst_IniSettingsStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_file = m_folder->filePath(u"store.ini"_s);
    }

    void aKeyNeverSetHasNoValue()
    {
        const IniSettingsStore store(m_file);
        QCOMPARE(store.value(u"Settings"_s, u"AutoSplit"_s), std::nullopt);
        QVERIFY(store.section(u"Settings"_s).empty());
    }

    void anEmptyValueIsAValue()
    {
        IniSettingsStore store(m_file);
        store.setValue(u"Settings"_s, u"A"_s, u""_s);
        store.setValue(u"Settings"_s, u"B"_s, QString());
        store.flush();
        QCOMPARE(IniSettingsStore(m_file).value(u"Settings"_s, u"A"_s), std::optional(QString()));
        QCOMPARE(IniSettingsStore(m_file).value(u"Settings"_s, u"B"_s), std::optional(QString()));
    }

    void aPipeInPlaceOfTheFileIsNeitherReadNorWritten()
    {
        QCOMPARE(mkfifo(qPrintable(m_file), 0600), 0);
        IniSettingsStore store(m_file);
        QCOMPARE(store.value(u"Settings"_s, u"A"_s), std::nullopt);
        store.setValue(u"Settings"_s, u"A"_s, u"1"_s);
        QCOMPARE(store.value(u"Settings"_s, u"A"_s), std::optional(u"1"_s));
        QVERIFY_THROWS_EXCEPTION(RunTimeError, store.flush());
        QCOMPARE(store.fileName(), m_file);
        QVERIFY(QFileInfo::exists(m_file) && !QFileInfo(m_file).isFile());
    }

    void aFileFarTooLargeIsLeftAlone()
    {
        constexpr qint64 size = 90 * 1024 * 1024;
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("[Settings]\nA=1\n") > 0);
        QVERIFY(file.resize(size));
        file.close();
        IniSettingsStore store(m_file);
        QCOMPARE(store.value(u"Settings"_s, u"A"_s), std::nullopt);
        store.setValue(u"Settings"_s, u"A"_s, u"2"_s);
        QVERIFY_THROWS_EXCEPTION(RunTimeError, store.flush());
        QCOMPARE(QFileInfo(m_file).size(), size);
    }

    void firstSettingsHoldUntilThereAreTheUsersOwn()
    {
        const EnvironmentGuard config("XDG_CONFIG_HOME", m_folder->filePath(u"config"_s).toUtf8());
        const IniSettingsStore::FirstSettings first{m_file};
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("[Settings]\nMainWidth=19200\nMainLeft=600\n") > 0);
        file.close();
        {
            IniSettingsStore store(first);
            QCOMPARE(store.value(u"Settings"_s, u"MainWidth"_s), std::optional(u"19200"_s));
            QCOMPARE(store.value(u"Settings"_s, u"Backup"_s), std::nullopt);
            QVERIFY(!QFileInfo::exists(store.fileName()));
            store.setValue(u"Settings"_s, u"MainWidth"_s, u"15000"_s);
            QCOMPARE(store.value(u"Settings"_s, u"MainWidth"_s), std::optional(u"15000"_s));
            store.flush();
        }
        const IniSettingsStore store(first);
        QCOMPARE(store.value(u"Settings"_s, u"MainWidth"_s), std::optional(u"15000"_s));
        QCOMPARE(store.value(u"Settings"_s, u"MainLeft"_s), std::nullopt);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("[Settings]\nMainWidth=19200\nMainLeft=600\n"));
    }

    void anEmptyStoreOfTheUserNeedsNoFirstSettings()
    {
        const EnvironmentGuard config("XDG_CONFIG_HOME", m_folder->path().toUtf8());
        QVERIFY(QDir(m_folder->path()).mkdir(u"Quillery"_s));
        QFile own(m_folder->filePath(u"Quillery/Quillery.ini"_s));
        QVERIFY(own.open(QIODevice::WriteOnly));
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("[Settings]\nMainWidth=19200\n") > 0);
        file.close();
        const IniSettingsStore store(IniSettingsStore::FirstSettings{m_file});
        QCOMPARE(store.value(u"Settings"_s, u"MainWidth"_s), std::nullopt);
    }

    void everyTextComesBack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << u"True"_s;
        QTest::newRow("blanks around") << u"  \tx \t "_s;
        QTest::newRow("only blanks") << u"   "_s;
        QTest::newRow("commas") << u"a, b,c,,"_s;
        QTest::newRow("quotes") << u"\"a\" 'b' \"\""_s;
        QTest::newRow("at sign") << u"@Invalid()"_s;
        QTest::newRow("at sign, text") << u"@ByteArray(x)"_s;
        QTest::newRow("backslashes") << u"C:\\temp\\new \\x41 \\"_s;
        QTest::newRow("line ends") << u"a\r\nb\nc\rd\n"_s;
        QTest::newRow("semicolon, equals, percent") << u"a;b=c%20d#e[f]"_s;
        QTest::newRow("NUL") << u"a"_s + QChar(0) + u"b"_s + QChar(0);
        QTest::newRow("accents and scripts") << u"Größe Кириллица 日本"_s;
        QTest::newRow("beyond the first plane") << u"😀"_s;
        QTest::newRow("lone surrogates") << u"a"_s + QChar(0xd83d) + u"b"_s + QChar(0xdc00);
        QTest::newRow("hexadecimal digit behind an escape") << QString(QChar(0x07)) + u"f"_s;
    }

    void everyTextComesBack()
    {
        QFETCH(QString, text);
        {
            IniSettingsStore store(m_file);
            store.setValue(u"Workspace"_s, u"Key"_s, text);
            QCOMPARE(store.value(u"Workspace"_s, u"Key"_s), std::optional(text));
            store.flush();
        }
        const IniSettingsStore store(m_file);
        QCOMPARE(store.value(u"Workspace"_s, u"Key"_s), std::optional(text));
        QCOMPARE(store.section(u"Workspace"_s), SettingsStore::Section({{u"Key"_s, text}}));
    }

    void namesOfAnyKindComeBack()
    {
        const QStringList names = {u"a/b"_s,     u"a\\b"_s, u"%2F"_s,          u"50 %"_s,
                                   u"General"_s, u" x "_s,  u"Schlüssel=[1]"_s};
        {
            IniSettingsStore store(m_file);
            for (const QString &name : names) {
                store.setValue(name, u"key"_s, name);
                store.setValue(u"Names"_s, name, name);
            }
            store.flush();
        }
        const IniSettingsStore store(m_file);
        for (const QString &name : names) {
            QCOMPARE(store.value(name, u"key"_s), std::optional(name));
            QCOMPARE(store.value(u"Names"_s, name), std::optional(name));
        }
        const SettingsStore::Section section = store.section(u"Names"_s);
        QCOMPARE(section.size(), static_cast<size_t>(names.size()));
        for (const auto &[key, value] : section)
            QCOMPARE(key, value);
    }

    void sectionsAreListedInNumericOrder()
    {
        {
            IniSettingsStore store(m_file);
            for (int key = 12; key > 0; --key)
                store.setValue(u"MRU"_s, QString::number(key), u"file %1"_s.arg(key));
            store.setValue(u"MRU"_s, u"100000000000000000000"_s, u"large"_s);
            store.setValue(u"MRU"_s, u"-1"_s, u"negative"_s);
            store.setValue(u"MRU"_s, u"Name"_s, u"name"_s);
            store.setValue(u"Other"_s, u"3"_s, u"elsewhere"_s);
            store.flush();
        }
        const SettingsStore::Section section = IniSettingsStore(m_file).section(u"MRU"_s);
        QStringList keys;
        for (const auto &[key, value] : section)
            keys.append(key);
        QCOMPARE(keys.join(u' '), u"1 2 3 4 5 6 7 8 9 10 11 12 100000000000000000000 -1 Name"_s);
        QCOMPARE(section[9].second, u"file 10"_s);
    }

    void aSectionDoesNotListTheOneItsNameBegins()
    {
        IniSettingsStore store(m_file);
        store.setValue(u"Font"_s, u"a"_s, u"1"_s);
        store.setValue(u"FontSize"_s, u"b"_s, u"2"_s);
        store.setValue(u"Font/Size"_s, u"c"_s, u"3"_s);
        QCOMPARE(store.section(u"Font"_s), SettingsStore::Section({{u"a"_s, u"1"_s}}));
    }

    void removedValuesAreGone()
    {
        IniSettingsStore store(m_file);
        store.setValue(u"MRU"_s, u"1"_s, u"a"_s);
        store.setValue(u"MRU"_s, u"2"_s, u"b"_s);
        store.removeValue(u"MRU"_s, u"1"_s);
        store.removeValue(u"MRU"_s, u"7"_s);
        store.flush();
        QCOMPARE(IniSettingsStore(m_file).section(u"MRU"_s), SettingsStore::Section({{u"2"_s, u"b"_s}}));
    }

    void aValueWithABareCommaWrittenByHandIsOneText()
    {
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[Settings]\nName=one, two\n");
        file.close();
        QCOMPARE(IniSettingsStore(m_file).value(u"Settings"_s, u"Name"_s), std::optional(u"one, two"_s));
    }

    void aFileThatCannotBeWrittenIsError75()
    {
        // A folder stands where the file should be.
        QVERIFY(QDir(m_folder->path()).mkdir(u"store.ini"_s));
        IniSettingsStore store(m_file);
        store.setValue(u"Settings"_s, u"A"_s, u"1"_s);
        try {
            store.flush();
            QFAIL("no error");
        } catch (const RunTimeError &error) {
            QCOMPARE(error.number(), ErrorNumber::PathFileAccess);
            QVERIFY(error.description().contains(m_file));
        }
    }

    void aDamagedFileKeepsTakingValues()
    {
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("\x01\xff\xfe no section\n[Settings\nA=1\n]]]=\n[Settings]\nB=2\n");
        file.close();
        {
            IniSettingsStore store(m_file);
            QCOMPARE(store.value(u"Settings"_s, u"B"_s), std::optional(u"2"_s));
            store.setValue(u"Settings"_s, u"C"_s, u"3"_s);
            store.flush();
        }
        const IniSettingsStore store(m_file);
        QCOMPARE(store.value(u"Settings"_s, u"C"_s), std::optional(u"3"_s));
    }

    void theUsersStoreLiesInTheConfigurationFolder()
    {
        const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME");
        QVERIFY(!folder.isEmpty());
        QCOMPARE(IniSettingsStore().fileName(), folder + u"/Quillery/Quillery.ini"_s);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
};

QTEST_GUILESS_MAIN(tst_IniSettingsStore)
#include "tst_IniSettingsStore.moc"
