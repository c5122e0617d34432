// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/PackedBytes.h"

#include "model/modCompress.h"
#include "util/RunTimeError.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

constexpr int digitBits = 7;
constexpr quint64 digitMask = 0x7f;
constexpr quint64 moreFollow = 0x80;

// How words are written.
enum WordsForm : quint64 { Utf8, Utf16 };

[[noreturn]] void failUnpacking()
{
    throw RunTimeError(ErrorNumber::InvalidFileFormat, u"What was kept of a version is damaged"_s);
}

} // namespace

void Packer::number(quint64 value)
{
    while (value > digitMask) {
        m_packed.append(static_cast<char>((value & digitMask) | moreFollow));
        value >>= digitBits;
    }
    m_packed.append(static_cast<char>(value));
}

void Packer::difference(qint64 value)
{
    number(value < 0 ? (~static_cast<quint64>(value) << 1) | 1 : static_cast<quint64>(value) << 1);
}

void Packer::bytes(const QByteArray &value)
{
    number(static_cast<quint64>(value.size()));
    m_packed.append(value);
}

void Packer::words(const QString &value)
{
    const QByteArray utf8 = value.toUtf8();
    if (QString::fromUtf8(utf8) == value) {
        number(Utf8);
        bytes(utf8);
        return;
    }
    number(Utf16);
    bytes(QByteArray(reinterpret_cast<const char *>(value.utf16()), value.size() * qsizetype(sizeof(char16_t))));
}

Unpacker::Unpacker(QByteArray packed)
    : m_packed(std::move(packed))
{
}

quint64 Unpacker::number()
{
    quint64 value = 0;
    for (int shift = 0; shift < std::numeric_limits<quint64>::digits; shift += digitBits) {
        if (atEnd())
            failUnpacking();
        const auto digit = static_cast<quint8>(m_packed[m_place++]);
        value |= (digit & digitMask) << shift;
        if ((digit & moreFollow) == 0)
            return value;
    }
    failUnpacking();
}

qint64 Unpacker::difference()
{
    const quint64 value = number();
    return static_cast<qint64>((value & 1) != 0 ? ~(value >> 1) : value >> 1);
}

QByteArray Unpacker::bytes()
{
    const quint64 size = number();
    if (size > static_cast<quint64>(m_packed.size() - m_place))
        failUnpacking();
    const QByteArray value = m_packed.sliced(m_place, static_cast<qsizetype>(size));
    m_place += value.size();
    return value;
}

QString Unpacker::words()
{
    const quint64 form = number();
    const QByteArray value = bytes();
    if (form == Utf8)
        return QString::fromUtf8(value);
    if (form != Utf16 || value.size() % qsizetype(sizeof(char16_t)) != 0)
        failUnpacking();
    QString words(value.size() / qsizetype(sizeof(char16_t)), Qt::Uninitialized);
    std::copy(value.begin(), value.end(), reinterpret_cast<char *>(words.data()));
    return words;
}

QByteArray deflated(const QByteArray &bytes)
{
    QByteArray stream;
    if (!bytes.isEmpty() && modCompress::CompressString(bytes, stream) != 0)
        throw RunTimeError(ErrorNumber::OutOfMemory);
    Packer packer;
    packer.number(static_cast<quint64>(bytes.size()));
    return packer.packed() + stream;
}

QByteArray inflatedBytes(const QByteArray &bytes)
{
    Unpacker unpacker(bytes);
    const quint64 size = unpacker.number();
    if (size == 0)
        return {};
    if (size > static_cast<quint64>(std::numeric_limits<qint32>::max()))
        failUnpacking();
    Packer head;
    head.number(size);
    QByteArray inflated;
    if (modCompress::DecompressString(bytes.sliced(head.packed().size()), static_cast<qint32>(size), inflated) != 0 ||
        static_cast<quint64>(inflated.size()) != size)
        failUnpacking();
    return inflated;
}
