// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Reading again from the disk what was written there.

#include "document/SafeFile.h"

#include "document/FileCalls.h"

#include "util/RunTimeError.h"

#include <cerrno>
#include <exception>
#include <future>
#include <new>
#include <system_error>
#include <zlib.h>

using namespace Qt::StringLiterals;

quint32 SafeFile::checkSumOf(QByteArrayView bytes, quint32 before)
{
    return static_cast<quint32>(
        crc32_z(before, reinterpret_cast<const Bytef *>(bytes.data()), static_cast<z_size_t>(bytes.size())));
}

void SafeFile::checkWritten(const Check &check)
{
    QByteArray content;
    try {
        content.reserve(check ? m_written : 0);
    } catch (const std::bad_alloc &) {
        content = QByteArray();
    }
    const bool remembers = check && content.capacity() >= m_written;
    if (!remembers) {
        if (!holdsWritten(m_descriptor))
            failDifferent();
        return;
    }
    if (!readWritten(content))
        failDifferent();
    // Meanwhile on another core, as both take their time; behind it where there is no thread to be had.
    std::future<quint32> sum;
    try {
        sum = std::async(std::launch::async, [&content] { return checkSumOf(content); });
    } catch (const std::system_error &) {
        sum = {};
    } catch (const std::bad_alloc &) {
        sum = {};
    }
    std::exception_ptr judgement;
    try {
        check(content);
    } catch (const std::bad_alloc &) {
        // If it is what was written byte by byte, that is more than could be said of a document that was not saved.
        judgement = nullptr;
    } catch (...) {
        judgement = std::current_exception();
    }
    // What is not what was written need not be judged.
    if ((sum.valid() ? sum.get() : checkSumOf(content)) != m_checkSum)
        failDifferent();
    if (judgement)
        std::rethrow_exception(judgement);
}

// Throws where it cannot be read.
bool SafeFile::holdsWritten(int descriptor) const
{
    quint32 sum = 0;
    qint64 size = 0;
    const bool isRead = readFromDisk(descriptor, [&](QByteArrayView bytes) {
        sum = checkSumOf(bytes, sum);
        size += bytes.size();
    });
    if (!isRead)
        throw fileError(errno, m_target);
    return size == m_written && sum == m_checkSum;
}

// Reads what was written, without looking at the check sum, to where there is room for it. False when it is not as
// much. Throws where it cannot be read.
bool SafeFile::readWritten(QByteArray &content) const
{
    qint64 size = 0;
    const bool isRead = readFromDisk(m_descriptor, [&](QByteArrayView bytes) {
        size += bytes.size();
        if (size <= m_written)
            content.append(bytes);
    });
    if (!isRead)
        throw fileError(errno, m_target);
    return size == m_written;
}

void SafeFile::failDifferent() const
{
    throw RunTimeError(ErrorNumber::InvalidFileFormat, u"%1: %2 does not hold on disk what was written"_s.arg(
                                                           errorDescription(ErrorNumber::InvalidFileFormat), m_target));
}
