// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "util/RunTimeError.h"
#include "vault/RecoveryDatabase.h"
#include "vault/RecoveryFolder.h"
#include "vault/TextKeeper.h"

#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <vector>

// Writes journals down, each into a database of its own, on whatever thread it lives. It is given values only. A
// journal that fails keeps what it has on disk, and goes on with the next batch that brings a base.
class JournalWriter final : public QObject
{
    Q_OBJECT

public:
    explicit JournalWriter(QString folder);
    ~JournalWriter() override;

    void write(int journal, const RecoveryBatch &given);
    // The journal is of no use any more.
    void discard(int journal);
    // The journal is left for the next start.
    void leave(int journal);

    // For tests: runs before a batch is written, and may throw.
    void setObstacle(std::function<void()> obstacle) { m_obstacle = std::move(obstacle); }

Q_SIGNALS:
    // What the journal takes on disk, in bytes.
    void written(int journal, qint64 size);
    // What goes into the log, and what is said to the user.
    void failed(int journal, const QString &why, const QString &said);
    // See Journal.
    void textLost(int journal);

private:
    struct File {
        std::unique_ptr<RecoveryLock> lock;
        std::unique_ptr<RecoveryDatabase> database;
    };

    QString inWords(ErrorNumber number) const;
    File create();
    void remove(File file);
    void removeWhatStayed();
    static void mark(const File &file, const RecoveryBatch &batch);
    void begin(int journal, const RecoveryBatch &batch);

    const QString m_folder;
    std::map<int, File> m_files;
    std::map<int, TextKeeper> m_texts;
    // Of databases that could not be removed.
    std::vector<std::unique_ptr<RecoveryLock>> m_stayed;
    std::function<void()> m_obstacle;
};
