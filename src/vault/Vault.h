// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "vault/Journal.h"
#include "vault/JournalWriter.h"

#include <QObject>
#include <QThread>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>

// Keeps what is done to the open documents against a crash: a journal each, which one thread writes down for all.
class Vault final : public QObject, private JournalKeeper
{
    Q_OBJECT

public:
    struct Settings {
        QString folder;
        // Milliseconds that only grow; without it the system's own.
        std::function<qint64()> clock = {};
        // Whether it looks after its journals by itself, and not only when look() is called.
        bool isSelfActing = true;
    };

    explicit Vault(Settings settings);
    ~Vault() override;

    const QString &folder() const { return m_settings.folder; }

    // From now on until it closes the document is looked after. It must not outlive the vault.
    void attach(Document &document);
    // The journal of a document; null when it is not looked after.
    Journal *journalOf(const Document &document) const;

    // Hands over what has waited long enough.
    void look();
    // Puts everything on disk and waits for it, at most so many milliseconds. False when some of it is not there.
    bool flush(int patience = 5000);
    // The program ends, and not by the user's closing it: what is not saved is left for the next start, and the vault
    // looks after nothing any more.
    void endSession();

    // Waits for what was handed over already.
    bool waitUntilWritten(int patience = 5000);

    // For tests.
    JournalWriter &writer() { return *m_writer; }

private:
    qint64 now() const override;
    void wake() override;
    void write(int journal, RecoveryBatch batch) override;
    void discard(int journal) override;
    void leave(int journal) override;
    void end(int journal);
    bool waitForWriter(int patience);

    struct Watched {
        const Document *document;
        std::unique_ptr<Journal> journal;
    };

    Settings m_settings;
    QThread m_thread;
    std::unique_ptr<JournalWriter> m_writer;
    std::map<int, Watched> m_journals;
    QTimer m_timer;
    int m_lastJournal = 0;
    bool m_ended = false;
};
