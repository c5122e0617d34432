// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

// Numbers, bytes and words one behind the other, in as few bytes as they need.
class Packer
{
public:
    void number(quint64 value);
    // One that may be negative, and is small either way.
    void difference(qint64 value);
    void bytes(const QByteArray &value);
    // Of any characters, also such as no UTF-8 has.
    void words(const QString &value);

    const QByteArray &packed() const { return m_packed; }

private:
    QByteArray m_packed;
};

// Gives them back in the same order; error 321 where the bytes are none.
class Unpacker
{
public:
    explicit Unpacker(QByteArray packed);

    bool atEnd() const { return m_place == m_packed.size(); }

    quint64 number();
    qint64 difference();
    QByteArray bytes();
    QString words();

private:
    QByteArray m_packed;
    qsizetype m_place = 0;
};

// Deflated, and back; error 321 for bytes that were not deflated here.
QByteArray deflated(const QByteArray &bytes);
QByteArray inflatedBytes(const QByteArray &bytes);
