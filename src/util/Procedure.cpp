// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/Procedure.h"

#include "util/RunTimeError.h"

#include <cstdio>
#include <new>

using namespace Qt::StringLiterals;

namespace
{

ErrorReporter s_reporter = nullptr;
RemarkWriter s_remarkWriter = nullptr;

} // namespace

ErrorReport currentError()
{
    try {
        throw;
    } catch (const RunTimeError &error) {
        return {static_cast<qint32>(error.number()), error.description(), error.source()};
    } catch (const std::bad_alloc &) {
        const auto number = ErrorNumber::OutOfMemory;
        return {static_cast<qint32>(number), errorDescription(number), u"Quillery"_s};
    } catch (const std::exception &error) {
        return {static_cast<qint32>(ErrorNumber::InvalidCall), QString::fromUtf8(error.what()), u"Quillery"_s};
    } catch (...) {
        const auto number = ErrorNumber::InvalidCall;
        return {static_cast<qint32>(number), errorDescription(number), u"Quillery"_s};
    }
}

void setErrorReporter(ErrorReporter reporter)
{
    s_reporter = reporter;
}

void setRemarkWriter(RemarkWriter writer)
{
    s_remarkWriter = writer;
}

void remark(const QString &line)
{
    if (s_remarkWriter)
        s_remarkWriter(line);
}

void detail::enterProcedure(const char *name)
{
    g_sProcedure = QString::fromLatin1(name);
}

void detail::reportCurrentException(const char *name) noexcept
{
    try {
        const ErrorReport report = currentError();
        if (report.number == static_cast<qint32>(ErrorNumber::Cancelled))
            return;
        g_sProcedure = QString::fromLatin1(name);
        if (s_reporter)
            s_reporter(report);
        else
            std::fprintf(stderr, "Error %d - %s (%s)\n", report.number, qPrintable(report.description), name);
    } catch (...) {
        std::fputs("The error report itself failed.\n", stderr);
    }
}

void reportError(const char *name, const RunTimeError &error)
{
    try {
        throw error;
    } catch (...) {
        detail::reportCurrentException(name);
    }
}
