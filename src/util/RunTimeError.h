// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <exception>

// The classic run-time error numbers that the program raises.
enum class ErrorNumber : qint32 {
    InvalidCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    TypeMismatch = 13,
    FileNotFound = 53,
    DiskFull = 61,
    PermissionDenied = 70,
    PathFileAccess = 75,
    PathNotFound = 76,
    ObjectNotSet = 91,
    InvalidFileFormat = 321,
    Cancelled = 32755,
    ElementNotFound = 35601,
};

// A run-time error: its number, what happened (in words for the session log) and which library or program raised it.
class RunTimeError : public std::exception
{
public:
    explicit RunTimeError(ErrorNumber number, const QString &description = QString(),
                          const QString &source = QStringLiteral("Quillery"));

    ErrorNumber number() const { return m_number; }

    QString description() const { return m_description; }

    QString source() const { return m_source; }

    const char *what() const noexcept override { return m_what.constData(); }

private:
    ErrorNumber m_number;
    QString m_description;
    QString m_source;
    QByteArray m_what;
};

// The standard wording of an error number, for errors raised without a description of their own.
QString errorDescription(ErrorNumber number);

// The run-time error for a failed system call (errno), with the path that it concerned.
RunTimeError fileError(int systemError, const QString &path);
