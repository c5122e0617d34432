// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "vault/RecoveryDatabase.h"
#include "vault/RecoveryFolder.h"

#include <QString>

#include <memory>
#include <vector>

class Document;
struct Outline;

// A document that a program which is no more had open with unsaved changes, as its recovery database has it. No other
// program finds it while it lives.
class LeftBehind
{
public:
    // All of a folder, the oldest first. Those without unsaved changes are removed, as nothing is lost with them,
    // unless such changes are known to be missing; what cannot even be looked at stays where it is.
    static std::vector<std::unique_ptr<LeftBehind>> find(const QString &folder);

    LeftBehind(std::unique_ptr<RecoveryLock> lock, std::unique_ptr<RecoveryDatabase> database, QString damage);

    const DocumentFacts &facts() const { return m_facts; }

    const DocumentState &state() const { return m_state; }

    // What keeps it from being read, in words; empty when nothing does.
    const QString &damage() const { return m_damage; }

    // The document's file without its folder, or what it was called.
    QString name() const;

    // The file that it has, or that it was recovered of without getting its name; empty when it never had one.
    const QString &fileBehind() const { return m_facts.file.isEmpty() ? m_facts.origin : m_facts.file; }

    // How many of its last records are known to have been there, and are not.
    qint64 recordsCutOff() const { return m_recordsCutOff; }

    enum class FileNow {
        // It never had one.
        None,
        AsItWas,
        Changed,
        Gone
    };

    FileNow fileNow() const;

    struct Content {
        std::unique_ptr<Outline> outline;
        Snapshot snapshot;
        std::vector<LogRecord> records;
        // What could not be read.
        int damagedEntries = 0;
        qint64 lostRecords = 0;
    };

    // The document as it was before the first change, and what was done to it. Throws where nothing can be read.
    Content read();

    // Does to a document that was made of the content what was done. How many records could not be done again.
    static qint64 replay(Document &document, const Content &content, const DocumentState &state);

    // Removes it for good.
    void discard();

private:
    void compareWithMark();

    // The database goes before the lock does.
    std::unique_ptr<RecoveryLock> m_lock;
    std::unique_ptr<RecoveryDatabase> m_database;
    DocumentFacts m_facts;
    DocumentState m_state;
    qint64 m_recordsCutOff = 0;
    QString m_damage;
};
