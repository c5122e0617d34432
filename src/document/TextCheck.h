// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QStringList>
#include <QTimer>

#include <memory>
#include <vector>

class Document;

// Tells in a document's window of the texts that cannot be inflated. They are looked for while nothing else is to be
// done, a few milliseconds at a time, from a moment after the start on: opening a file does not wait for it. Its memory
// does not grow with what a text inflates to. Destroyed, it gives up.
class TextCheck
{
public:
    // Looks at the texts as they are stored now.
    explicit TextCheck(Document &document);
    ~TextCheck();
    TextCheck(const TextCheck &) = delete;
    TextCheck &operator=(const TextCheck &) = delete;

    // Goes on for a few milliseconds. False when all is done and told.
    bool goOn();

private:
    class Probe;

    void take(const QByteArray &storedText);
    void tell();

    Document &m_document;
    std::vector<QByteArray> m_texts;
    std::size_t m_next = 0;
    std::unique_ptr<Probe> m_probe;
    std::vector<QByteArray> m_damaged;
    qint64 m_inflated = 0;
    QTimer m_timer;
};

// Tells that so many texts are damaged, those of the labels among them.
void tellOfDamagedTexts(Document &document, const QStringList &labels, qsizetype count);
