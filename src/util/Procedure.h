// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <type_traits>
#include <utility>

// The routine entered last, "module routine"; never cleared, so it outlives the routine.
inline QString g_sProcedure;

// What the shared error report tells of a failure: error number, description, source.
struct ErrorReport {
    qint32 number = 0;
    QString description;
    QString source;
};

// Receives every failure that a routine catches. Set by the program at start-up; without one, failures go to stderr.
using ErrorReporter = void (*)(const ErrorReport &);
void setErrorReporter(ErrorReporter reporter);

// What the error report would tell of the exception being handled.
ErrorReport currentError();

namespace detail
{
void enterProcedure(const char *name);
// Reports the exception being handled in the name of the routine that caught it; a cancelled dialog is not reported.
void reportCurrentException(const char *name) noexcept;
} // namespace detail

// Runs a routine's body under its name: records the name, and on any exception reports it once and returns the default
// value of the body's result. Never throws. What is a part of several routines and is to end them by its failure is a
// function of its own that throws; a routine that others call by name runs that function here.
template <typename Body>
auto procedure(const char *name, Body &&body) -> std::invoke_result_t<Body>
{
    using Result = std::invoke_result_t<Body>;
    detail::enterProcedure(name);
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        detail::reportCurrentException(name);
    }
    if constexpr (!std::is_void_v<Result>)
        return Result{};
}

// Receives what is worth a line in the session log though nothing failed. Without one, remarks are dropped.
using RemarkWriter = void (*)(const QString &);
void setRemarkWriter(RemarkWriter writer);
void remark(const QString &line);

class RunTimeError;

// Reports an error in the name of a routine that goes on after it, whatever failure scope is open.
void reportError(const char *name, const RunTimeError &error);
