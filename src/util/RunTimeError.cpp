// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "util/RunTimeError.h"

#include <cerrno>
#include <cstring>

using namespace Qt::StringLiterals;

RunTimeError::RunTimeError(ErrorNumber number, const QString &description, const QString &source)
    : m_number(number)
    , m_description(description.isEmpty() ? errorDescription(number) : description)
    , m_source(source)
    , m_what(m_description.toUtf8())
{
}

QString errorDescription(ErrorNumber number)
{
    switch (number) {
    case ErrorNumber::InvalidCall:
        return u"Invalid procedure call or argument"_s;
    case ErrorNumber::Overflow:
        return u"Overflow"_s;
    case ErrorNumber::OutOfMemory:
        return u"Out of memory"_s;
    case ErrorNumber::TypeMismatch:
        return u"Type mismatch"_s;
    case ErrorNumber::FileNotFound:
        return u"File not found"_s;
    case ErrorNumber::DiskFull:
        return u"Disk full"_s;
    case ErrorNumber::PermissionDenied:
        return u"Permission denied"_s;
    case ErrorNumber::PathFileAccess:
        return u"Path/File access error"_s;
    case ErrorNumber::PathNotFound:
        return u"Path not found"_s;
    case ErrorNumber::ObjectNotSet:
        return u"Object variable not set"_s;
    case ErrorNumber::InvalidFileFormat:
        return u"Invalid file format"_s;
    case ErrorNumber::Cancelled:
        return u"Cancel was selected"_s;
    case ErrorNumber::ElementNotFound:
        return u"Element not found"_s;
    }
    return u"Application-defined or object-defined error"_s;
}

static ErrorNumber numberOfSystemError(int systemError)
{
    switch (systemError) {
    case ENOENT:
        return ErrorNumber::FileNotFound;
    case ENOTDIR:
        return ErrorNumber::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
        return ErrorNumber::PermissionDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ErrorNumber::DiskFull;
    case ENOMEM:
        return ErrorNumber::OutOfMemory;
    default:
        return ErrorNumber::PathFileAccess;
    }
}

RunTimeError fileError(int systemError, const QString &path)
{
    const ErrorNumber number = numberOfSystemError(systemError);
    const QString reason = QString::fromLocal8Bit(std::strerror(systemError));
    return RunTimeError(number, u"%1: %2 (%3)"_s.arg(errorDescription(number), path, reason));
}
