// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/TextKeeper.h"

#include "model/StoredText.h"

#include <algorithm>

namespace
{

// Stored ones that are shorter, in bytes, are not made up of others.
constexpr qsizetype shortStoredText = 100;

// What a text may have of its own beside its share, in bytes.
constexpr qint64 leastRoom = 1000;

} // namespace

RecoveryBatch TextKeeper::prepared(const RecoveryBatch &batch)
{
    if (batch.base)
        begin(*batch.base);
    RecoveryBatch made = batch;
    for (LogRecord &record : made.records) {
        for (LoggedChange &change : record.step.changes) {
            const auto *text = std::get_if<logged::Text>(&change);
            if (text && text->state == logged::Text::State::Followed)
                change = kept(logged::Text(*text), record.number, made);
        }
    }
    return made;
}

void TextKeeper::begin(const RecoveryBase &base)
{
    m_kept.clear();
    m_lastText = 0;
    m_followed.number = -1;
    for (const EntryRecord &entry : base.snapshot.entries) {
        if (entry.storedText.size() >= shortStoredText)
            m_kept.emplace(entry.id, Kept{0, entry.storedText, 0});
    }
}

LoggedChange TextKeeper::kept(const logged::Text &text, qint64 record, RecoveryBatch &batch)
{
    const QByteArray whole = follow(text);
    compare(whole, record, batch);
    return logged::TextPieces{text.entry, m_followed.number, m_followed.pieces, checkSum(whole)};
}

QByteArray TextKeeper::follow(const logged::Text &text)
{
    const logged::TextPath &path = *text.path;
    if (path.start) {
        if (m_followed.entry != text.entry)
            m_followed = {};
        m_followed.entry = text.entry;
        m_followed.document = std::make_unique<FollowedText>(path.start->storedText, path.start->baseFont);
    }
    if (m_followed.entry != text.entry || !m_followed.document)
        throw Lost();
    for (const LiveStretch &stretch : path.stretches) {
        if (!m_followed.document->take(stretch)) {
            m_followed.document.reset();
            throw Lost();
        }
    }
    return m_followed.document->toRtf();
}

// How it differs from the text that is kept, or that one anew where it has become another.
void TextKeeper::compare(const QByteArray &text, qint64 record, RecoveryBatch &batch)
{
    Kept &kept = m_kept.try_emplace(m_followed.entry, Kept{-1, {}, 0}).first->second;
    const bool isKnown = kept.number >= 0;
    if (isKnown && m_followed.number != kept.number) {
        const std::optional<QByteArray> other = soundText(kept.storedText);
        m_followed.text = other.value_or(QByteArray());
        m_followed.pieces = PiecedText(m_followed.text.size());
        m_followed.number = other ? kept.number : -1;
    }
    if (isKnown && m_followed.number == kept.number) {
        const QByteArray &before = m_followed.text;
        const qsizetype shorter = std::min(before.size(), text.size());
        const qsizetype same =
            std::mismatch(before.begin(), before.begin() + shorter, text.begin()).first - before.begin();
        const auto rest = std::make_reverse_iterator(before.begin() + (before.size() - (shorter - same)));
        const qsizetype sameBehind = std::mismatch(before.rbegin(), rest, text.rbegin()).first - before.rbegin();
        m_followed.pieces.replace(same, before.size() - same - sameBehind,
                                  text.mid(same, text.size() - same - sameBehind));
        m_followed.text = text;
        if (std::exchange(m_followed.record, record) != record)
            kept.spent += m_followed.pieces.weight();
        constexpr qint64 share = 4;
        const qint64 room = leastRoom + text.size() / share;
        if (m_followed.pieces.weight() <= room && kept.spent <= room * share)
            return;
    }
    kept = {++m_lastText, compressedText(text), 0};
    batch.texts.push_back({kept.number, kept.storedText});
    m_followed.text = text;
    m_followed.pieces = PiecedText(text.size());
    m_followed.number = kept.number;
    m_followed.record = record;
}
