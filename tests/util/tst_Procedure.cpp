// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "support/ErrorRecorder.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <QTest>

#include <cerrno>
#include <new>
#include <stdexcept>

using namespace Qt::StringLiterals;

class tst_Procedure : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRoutineRecordsItsNameAndNeverClearsIt();
    void aRoutineReturnsWhatItsBodyReturns();
    void aFailureIsReportedOnceAndGivesTheDefaultValue();
    void theReportNamesTheRoutineThatCaughtTheError();
    void everyKindOfExceptionIsReported_data();
    void everyKindOfExceptionIsReported();
    void aCancelledDialogIsNotReported();
    void anErrorCanBeReportedWithoutEndingTheRoutine();
    void withoutAReporterNothingIsLostOrThrown();
    void everyErrorNumberHasItsWords();
    void systemErrorsGetTheClassicNumbers_data();
    void systemErrorsGetTheClassicNumbers();
};

static void failWith(ErrorNumber number)
{
    throw RunTimeError(number);
}

void tst_Procedure::aRoutineRecordsItsNameAndNeverClearsIt()
{
    procedure("modOne Outer", [] {
        QCOMPARE(g_sProcedure, u"modOne Outer"_s);
        procedure("modTwo Inner", [] { QCOMPARE(g_sProcedure, u"modTwo Inner"_s); });
        QCOMPARE(g_sProcedure, u"modTwo Inner"_s);
    });
    QCOMPARE(g_sProcedure, u"modTwo Inner"_s);
}

void tst_Procedure::aRoutineReturnsWhatItsBodyReturns()
{
    const ErrorRecorder errors;
    QCOMPARE(procedure("modOne Value", [] { return 42; }), 42);
    QCOMPARE(procedure("modOne Text", [] { return u"text"_s; }), u"text"_s);
    QCOMPARE(errors.count(), 0);
}

void tst_Procedure::aFailureIsReportedOnceAndGivesTheDefaultValue()
{
    const ErrorRecorder errors;
    const int number = procedure("modOne Number", []() -> int {
        failWith(ErrorNumber::Overflow);
        return 42;
    });
    const QString text = procedure("modOne Text", []() -> QString {
        failWith(ErrorNumber::TypeMismatch);
        return u"text"_s;
    });
    const void *pointer = procedure("modOne Pointer", []() -> const void * {
        failWith(ErrorNumber::ElementNotFound);
        return &errno;
    });
    QCOMPARE(number, 0);
    QVERIFY(text.isNull());
    QVERIFY(!pointer);
    QCOMPARE(errors.summary(), QStringList({u"6 modOne Number"_s, u"13 modOne Text"_s, u"35601 modOne Pointer"_s}));
}

void tst_Procedure::theReportNamesTheRoutineThatCaughtTheError()
{
    const ErrorRecorder errors;
    procedure("modOne Outer", [] {
        procedure("modTwo Inner", [] {});
        failWith(ErrorNumber::InvalidCall);
    });
    QCOMPARE(errors.summary(), QStringList(u"5 modOne Outer"_s));
    QCOMPARE(g_sProcedure, u"modOne Outer"_s);
}

void tst_Procedure::everyKindOfExceptionIsReported_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<qint32>("number");
    QTest::addColumn<QString>("description");

    QTest::newRow("a run-time error with words of its own") << 0 << 53 << u"No such outline"_s;
    QTest::newRow("memory exhausted") << 1 << 7 << u"Out of memory"_s;
    QTest::newRow("a standard exception") << 2 << 5 << u"went wrong"_s;
    QTest::newRow("something else altogether") << 3 << 5 << u"Invalid procedure call or argument"_s;
}

void tst_Procedure::everyKindOfExceptionIsReported()
{
    QFETCH(const int, kind);
    QFETCH(const qint32, number);
    QFETCH(const QString, description);
    const ErrorRecorder errors;
    procedure("modOne Fails", [&] {
        switch (kind) {
        case 0:
            throw RunTimeError(ErrorNumber::FileNotFound, u"No such outline"_s);
        case 1:
            throw std::bad_alloc();
        case 2:
            throw std::runtime_error("went wrong");
        default:
            throw 17;
        }
    });
    QCOMPARE(errors.count(), 1);
    QCOMPARE(errors.records()[0].report.number, number);
    QCOMPARE(errors.records()[0].report.description, description);
    QCOMPARE(errors.records()[0].report.source, u"Quillery"_s);
}

void tst_Procedure::aCancelledDialogIsNotReported()
{
    const ErrorRecorder errors;
    bool wentOn = false;
    const int result = procedure("modFile FileOpen", [&]() -> int {
        failWith(ErrorNumber::Cancelled);
        wentOn = true;
        return 1;
    });
    QCOMPARE(result, 0);
    QVERIFY(!wentOn);
    QCOMPARE(errors.summary(), QStringList());
}

void tst_Procedure::anErrorCanBeReportedWithoutEndingTheRoutine()
{
    const ErrorRecorder errors;
    const int result = procedure("modOne Outer", [] {
        reportError("modTwo Remarks", RunTimeError(ErrorNumber::InvalidFileFormat, u"a label was cut"_s));
        return 3;
    });
    QCOMPARE(result, 3);
    QCOMPARE(errors.summary(), QStringList(u"321 modTwo Remarks"_s));
    QCOMPARE(errors.records()[0].report.description, u"a label was cut"_s);
}

void tst_Procedure::withoutAReporterNothingIsLostOrThrown()
{
    setErrorReporter(nullptr);
    procedure("modOne Fails", [] { failWith(ErrorNumber::InvalidCall); });
    QCOMPARE(g_sProcedure, u"modOne Fails"_s);
}

void tst_Procedure::everyErrorNumberHasItsWords()
{
    QCOMPARE(RunTimeError(ErrorNumber::Overflow).description(), u"Overflow"_s);
    QCOMPARE(RunTimeError(ErrorNumber::ElementNotFound).description(), u"Element not found"_s);
    QCOMPARE(RunTimeError(ErrorNumber::DiskFull).description(), u"Disk full"_s);
    QCOMPARE(RunTimeError(ErrorNumber::DiskFull, u"x"_s, u"zlib"_s).source(), u"zlib"_s);
    QCOMPARE(QByteArray(RunTimeError(ErrorNumber::Overflow).what()), QByteArray("Overflow"));
    QCOMPARE(errorDescription(ErrorNumber(9999)), u"Application-defined or object-defined error"_s);
}

void tst_Procedure::systemErrorsGetTheClassicNumbers_data()
{
    QTest::addColumn<int>("systemError");
    QTest::addColumn<int>("number");

    QTest::newRow("no such file") << ENOENT << 53;
    QTest::newRow("a file in a folder's place") << ENOTDIR << 76;
    QTest::newRow("access refused") << EACCES << 70;
    QTest::newRow("not permitted") << EPERM << 70;
    QTest::newRow("read-only file system") << EROFS << 70;
    QTest::newRow("no space") << ENOSPC << 61;
    QTest::newRow("quota used up") << EDQUOT << 61;
    QTest::newRow("file too large") << EFBIG << 61;
    QTest::newRow("no memory") << ENOMEM << 7;
    QTest::newRow("input/output") << EIO << 75;
    QTest::newRow("is a folder") << EISDIR << 75;
}

void tst_Procedure::systemErrorsGetTheClassicNumbers()
{
    QFETCH(const int, systemError);
    QFETCH(const int, number);
    const RunTimeError error = fileError(systemError, u"/folder/notes.qly"_s);
    QCOMPARE(static_cast<int>(error.number()), number);
    QVERIFY(error.description().startsWith(errorDescription(error.number())));
    QVERIFY(error.description().contains(u"/folder/notes.qly"_s));
}

QTEST_APPLESS_MAIN(tst_Procedure)
#include "tst_Procedure.moc"
