// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace rtf
{

// RTF being written: pure ASCII, with the one blank between a control word and the text behind it where it is needed.
class Output
{
public:
    // Symbols, braces: what is no control word and needs no blank before it.
    void raw(QByteArrayView bytes);

    // A control word, its name with the backslash.
    void word(QByteArrayView name);
    void word(QByteArrayView name, int number);

    // The end of a paragraph, row or header line: a line end, which is no text.
    void lineEnd();

    // Characters, escaped. With onlyUnicode, letters are written as \u too, for fonts whose bytes are no letters.
    void text(QStringView text, bool onlyUnicode = false);

    void hex(const QByteArray &bytes);

    void append(const Output &other);

    const QByteArray &bytes() const { return m_bytes; }

private:
    void chunk(QStringView text, bool onlyUnicode);

    QByteArray m_bytes;
    bool m_endsInWord = false;
};

} // namespace rtf
