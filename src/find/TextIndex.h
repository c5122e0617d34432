// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/TextSignature.h"
#include "model/EntryId.h"

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

class Document;
class Entry;

// The signatures of a document's texts, made by workers while nothing else is to be done, from a moment after the start
// on and again after changes. What is not there yet, or is of a text that the entry no longer has, rules nothing out:
// whoever asks is never told wrong.
class TextIndex final : public QObject
{
    Q_OBJECT

public:
    // Belongs to the document and goes with it. The workers begin so many milliseconds after the start and after the
    // last change: the document is to be seen first, and who types is to be left alone.
    explicit TextIndex(Document &document, int rest = 500);
    ~TextIndex() override;

    // A document's own; null when it has none.
    static const TextIndex *of(const Document &document);

    // Whether an expression may stand in an entry's text, which is stored so.
    bool mayHold(const Entry &entry, const QByteArray &storedText, const SoughtTrigrams &sought) const;

    // Whether all texts were looked at since the last change.
    bool isComplete() const { return m_isComplete; }

    // The memory that it takes, in bytes, about.
    qsizetype weight() const;

Q_SIGNALS:
    void completed();

private:
    // Of a text as it is stored, which is kept so that no other can have its bytes' place. No signature when it cannot
    // be inflated.
    struct Signed {
        QByteArray text;
        std::optional<TextSignature> signature;
    };

    using Batch = std::vector<std::pair<EntryId, Signed>>;

    struct Answers;

    void startAnew();
    void goOn();
    void start(Batch batch);
    void take(Batch batch);
    void letGoOfGone();

    Document &m_document;
    const int m_rest;
    std::unordered_map<EntryId, Signed> m_signed;
    // The next to be looked at, by its place in the order of insertion.
    int m_next = 1;
    int m_working = 0;
    bool m_isComplete = false;
    const std::shared_ptr<Answers> m_answers;
    QTimer m_timer;
};
