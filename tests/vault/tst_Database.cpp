// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/ErrorRecorder.h"
#include "vault/Database.h"
#include "vault/PrivateFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

DatabaseSchema wordsSchema()
{
    return {0x51'74'65'73, {{u"CREATE TABLE words (place INTEGER PRIMARY KEY, word TEXT, picture BLOB)"_s}}};
}

int modeOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 0777U) : -1;
}

} // namespace

class tst_Database : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsPutInIsThereWhenItIsOpenedAgain();
    void whatIsNotCommittedIsTakenBack();
    void bytesAndWordsOfAnyValueComeBack();
    void aSecondOneAtTheSameTimeIsRefused();
    void onlyTheUserMayReadItWhateverTheUmask();
    void aFolderIsMadeWithThoseAboveIt();
    void anExistingFileIsNotTakenForANewOne();
    void anOlderOneIsBroughtUpToDate();
    void oneOfALaterVersionIsLeftAlone();
    void oneOfAnotherKindIsLeftAlone();
    void noDatabaseAndADamagedOneAreErrors();
    void oneThatWasCutShortWhileItWasMadeIsMadeAnew();
    void aFullDiskIsAnError();
};

void tst_Database::whatIsPutInIsThereWhenItIsOpenedAgain()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"wörter.db"_s);
    {
        Database database(path, wordsSchema(), Database::Opening::Create);
        Database::Transaction transaction(database);
        database.run(u"INSERT INTO words (word) VALUES (?)"_s, {u"one"_s});
        database.run(u"INSERT INTO words (word) VALUES (?)"_s, {u"two"_s});
        QCOMPARE(database.lastKey(), 2);
        transaction.commit();
    }
    Database database(path, wordsSchema(), Database::Opening::Existing);
    QStringList words;
    database.select(u"SELECT word FROM words ORDER BY place"_s, {}, [&words](const QSqlQuery &row) {
        words.append(row.value(0).toString());
        return true;
    });
    QCOMPARE(words, (QStringList{u"one"_s, u"two"_s}));
    QCOMPARE(database.value(u"PRAGMA synchronous"_s).toInt(), 2);
    QCOMPARE(database.value(u"PRAGMA journal_mode"_s).toString(), u"wal"_s);
    QVERIFY2(!QFileInfo::exists(path + u"-shm"_s), "it needs no memory that network folders lack");
}

void tst_Database::whatIsNotCommittedIsTakenBack()
{
    const QTemporaryDir folder;
    Database database(folder.filePath(u"words.db"_s), wordsSchema(), Database::Opening::Create);
    {
        const Database::Transaction transaction(database);
        database.run(u"INSERT INTO words (word) VALUES (?)"_s, {u"gone"_s});
    }
    QCOMPARE(database.value(u"SELECT count(*) FROM words"_s).toInt(), 0);
    QVERIFY(!database.value(u"SELECT word FROM words"_s).isValid());
}

void tst_Database::bytesAndWordsOfAnyValueComeBack()
{
    const QTemporaryDir folder;
    Database database(folder.filePath(u"words.db"_s), wordsSchema(), Database::Opening::Create);
    const QString word = u"a\0b \U0001F600 \u00e9"_s;
    QByteArray picture;
    for (int value = 0; value < 256; ++value)
        picture.append(static_cast<char>(value));
    database.run(u"INSERT INTO words (word, picture) VALUES (?, ?)"_s, {word, picture});
    QCOMPARE(database.value(u"SELECT picture FROM words"_s).toByteArray(), picture);
    QCOMPARE(database.value(u"SELECT word FROM words"_s).toString(), word);
}

void tst_Database::aSecondOneAtTheSameTimeIsRefused()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"words.db"_s);
    Database database(path, wordsSchema(), Database::Opening::Create);
    database.run(u"INSERT INTO words (word) VALUES ('mine')"_s);
    QCOMPARE(errorNumberOf([&] { Database(path, wordsSchema(), Database::Opening::Existing); }), 70);
    QCOMPARE(database.value(u"SELECT count(*) FROM words"_s).toInt(), 1);
}

void tst_Database::onlyTheUserMayReadItWhateverTheUmask()
{
    const QTemporaryDir folder;
    for (const mode_t mask : {0000, 0022, 0777}) {
        const mode_t before = umask(mask);
        const QString path = folder.filePath(u"words %1.db"_s.arg(mask));
        {
            Database database(path, wordsSchema(), Database::Opening::Create);
            database.run(u"INSERT INTO words (word) VALUES ('mine')"_s);
            umask(before);
            QCOMPARE(modeOf(path), 0600);
            QCOMPARE(modeOf(path + u"-wal"_s), 0600);
        }
    }
}

void tst_Database::aFolderIsMadeWithThoseAboveIt()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"state/Quillery/recovery"_s);
    makePrivateFolder(path);
    makePrivateFolder(path);
    QCOMPARE(modeOf(path), 0700);
    QFile file(folder.filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(errorNumberOf([&] { makePrivateFolder(file.fileName()); }) != 0);
    QVERIFY(errorNumberOf([&] { makePrivateFolder(file.fileName() + u"/below"_s); }) != 0);
}

void tst_Database::anExistingFileIsNotTakenForANewOne()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"words.db"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("mine");
    file.close();
    QVERIFY(errorNumberOf([&] { Database(file.fileName(), wordsSchema(), Database::Opening::Create); }) != 0);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("mine"));
}

void tst_Database::anOlderOneIsBroughtUpToDate()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"words.db"_s);
    {
        Database database(path, wordsSchema(), Database::Opening::Create);
        database.run(u"INSERT INTO words (word) VALUES ('kept')"_s);
    }
    DatabaseSchema later = wordsSchema();
    later.upgrades.push_back({u"ALTER TABLE words ADD COLUMN colour TEXT DEFAULT 'red'"_s});
    Database database(path, later, Database::Opening::Existing);
    QCOMPARE(database.value(u"SELECT word || colour FROM words"_s).toString(), u"keptred"_s);
    QCOMPARE(database.value(u"PRAGMA user_version"_s).toInt(), 2);
}

void tst_Database::oneOfALaterVersionIsLeftAlone()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"words.db"_s);
    {
        DatabaseSchema later = wordsSchema();
        later.upgrades.push_back({u"CREATE TABLE colours (colour TEXT)"_s});
        const Database database(path, later, Database::Opening::Create);
    }
    QCOMPARE(errorNumberOf([&] { Database(path, wordsSchema(), Database::Opening::Existing); }), 321);
}

void tst_Database::oneOfAnotherKindIsLeftAlone()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"words.db"_s);
    DatabaseSchema other = wordsSchema();
    ++other.applicationId;
    {
        const Database database(path, other, Database::Opening::Create);
    }
    QCOMPARE(errorNumberOf([&] { Database(path, wordsSchema(), Database::Opening::Existing); }), 321);
}

void tst_Database::noDatabaseAndADamagedOneAreErrors()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"words.db"_s);
    QCOMPARE(errorNumberOf([&] { Database(path, wordsSchema(), Database::Opening::Existing); }), 53);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(5000, 'x'));
    file.close();
    QCOMPARE(errorNumberOf([&] { Database(path, wordsSchema(), Database::Opening::Existing); }), 321);
}

void tst_Database::oneThatWasCutShortWhileItWasMadeIsMadeAnew()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"words.db"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    Database database(path, wordsSchema(), Database::Opening::Existing);
    database.run(u"INSERT INTO words (word) VALUES ('new')"_s);
    QCOMPARE(database.value(u"SELECT count(*) FROM words"_s).toInt(), 1);
}

void tst_Database::aFullDiskIsAnError()
{
    const QTemporaryDir folder;
    Database database(folder.filePath(u"words.db"_s), wordsSchema(), Database::Opening::Create);
    database.run(u"PRAGMA max_page_count = 16"_s);
    database.run(u"INSERT INTO words (word) VALUES ('kept')"_s);
    QCOMPARE(errorNumberOf([&] {
                 Database::Transaction transaction(database);
                 database.run(u"INSERT INTO words (word) VALUES ('lost')"_s);
                 database.run(u"INSERT INTO words (picture) VALUES (?)"_s, {QByteArray(1 << 20, 'x')});
                 transaction.commit();
             }),
             61);
    QCOMPARE(database.value(u"SELECT group_concat(word) FROM words"_s).toString(), u"kept"_s);
}

QTEST_GUILESS_MAIN(tst_Database)
#include "tst_Database.moc"
