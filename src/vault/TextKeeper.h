// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "vault/FollowedText.h"
#include "vault/RecoveryDatabase.h"

#include <map>
#include <memory>
#include <utility>

// Makes of texts that are told of as stretches of changes what is written down of them: how each differs, as bytes,
// from one that the database has. For the thread that writes.
class TextKeeper
{
public:
    // Thrown where a text cannot be followed any further.
    struct Lost {
    };

    // What is to be written for the batch.
    RecoveryBatch prepared(const RecoveryBatch &batch);

private:
    // The entry's text that the database has.
    struct Kept {
        qint64 number = 0;
        QByteArray storedText;
        // What was written of texts that are made up of it.
        qint64 spent = 0;
    };

    struct Followed {
        EntryId entry = EntryId::None;
        std::unique_ptr<FollowedText> document;
        // As it was written out last.
        QByteArray text;
        // The same as it differs from the kept text of that number.
        PiecedText pieces;
        qint64 number = -1;
        qint64 record = 0;
    };

    void begin(const RecoveryBase &base);
    LoggedChange kept(const logged::Text &text, qint64 record, RecoveryBatch &batch);
    QByteArray follow(const logged::Text &text);
    void compare(const QByteArray &text, qint64 record, RecoveryBatch &batch);

    std::map<EntryId, Kept> m_kept;
    Followed m_followed;
    qint64 m_lastText = 0;
};
