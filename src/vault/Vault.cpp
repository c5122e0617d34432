// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/Vault.h"

#include "document/Document.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QSemaphore>
#include <QSqlDatabase>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

Vault::Vault(Settings settings)
    : m_settings(std::move(settings))
    , m_writer(std::make_unique<JournalWriter>(m_settings.folder))
{
    // At the program's end what Qt keeps of databases is to go after what may still write to one then.
    QSqlDatabase::connectionNames();
    m_thread.setObjectName(u"journal"_s);
    m_writer->moveToThread(&m_thread);
    connect(m_writer.get(), &JournalWriter::written, this, [this](int journal, qint64 size) {
        if (const auto found = m_journals.find(journal); found != m_journals.end())
            found->second.journal->noteWritten(size);
    });
    connect(m_writer.get(), &JournalWriter::failed, this, [this](int journal, const QString &why, const QString &said) {
        if (const auto found = m_journals.find(journal); found != m_journals.end())
            found->second.journal->noteFailed(why, said);
    });
    connect(m_writer.get(), &JournalWriter::textLost, this, [this](int journal) {
        if (const auto found = m_journals.find(journal); found != m_journals.end())
            found->second.journal->noteLost();
    });
    m_timer.setInterval(static_cast<int>(Journal::lookInterval));
    connect(&m_timer, &QTimer::timeout, this, &Vault::look);
}

Vault::~Vault()
{
    m_journals.clear();
    if (m_thread.isRunning()) {
        constexpr int patience = 5000;
        waitForWriter(patience);
        // Databases are closed by the thread that opened them.
        m_writer.release()->deleteLater();
        m_thread.quit();
        m_thread.wait();
    }
}

qint64 Vault::now() const
{
    using namespace std::chrono;
    return m_settings.clock ? m_settings.clock()
                            : duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void Vault::attach(Document &document)
{
    if (m_ended)
        return;
    const int number = ++m_lastJournal;
    JournalKeeper &keeper = *this;
    auto journal = std::make_unique<Journal>(keeper, number, document);
    connect(journal.get(), &Journal::ended, this, &Vault::end, Qt::QueuedConnection);
    m_journals.emplace(number, Watched{&document, std::move(journal)});
}

Journal *Vault::journalOf(const Document &document) const
{
    // The newest: another document may once have stood in the same place.
    const auto found = std::find_if(m_journals.rbegin(), m_journals.rend(),
                                    [&](const auto &watched) { return watched.second.document == &document; });
    return found == m_journals.rend() ? nullptr : found->second.journal.get();
}

void Vault::end(int journal)
{
    m_journals.erase(journal);
}

void Vault::wake()
{
    if (m_settings.isSelfActing && !m_ended && !m_timer.isActive())
        m_timer.start();
}

void Vault::look()
{
    bool isWaiting = false;
    for (auto &[number, watched] : m_journals)
        isWaiting = watched.journal->look() || isWaiting;
    if (!isWaiting)
        m_timer.stop();
}

void Vault::write(int journal, RecoveryBatch batch)
{
    if (!m_thread.isRunning())
        m_thread.start(QThread::LowPriority);
    QMetaObject::invokeMethod(
        m_writer.get(), [writer = m_writer.get(), journal, batch = std::move(batch)] { writer->write(journal, batch); },
        Qt::QueuedConnection);
}

void Vault::discard(int journal)
{
    if (m_thread.isRunning())
        QMetaObject::invokeMethod(
            m_writer.get(), [writer = m_writer.get(), journal] { writer->discard(journal); }, Qt::QueuedConnection);
}

void Vault::leave(int journal)
{
    if (m_thread.isRunning())
        QMetaObject::invokeMethod(
            m_writer.get(), [writer = m_writer.get(), journal] { writer->leave(journal); }, Qt::QueuedConnection);
}

bool Vault::waitForWriter(int patience)
{
    if (!m_thread.isRunning())
        return true;
    const auto reached = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(
        m_writer.get(), [reached] { reached->release(); }, Qt::QueuedConnection);
    return reached->tryAcquire(1, patience);
}

bool Vault::flush(int patience)
{
    for (auto &[number, watched] : m_journals)
        watched.journal->handOver();
    if (!waitUntilWritten(patience))
        return false;
    return std::ranges::all_of(m_journals, [](const auto &watched) { return watched.second.journal->isWritten(); });
}

bool Vault::waitUntilWritten(int patience)
{
    if (!waitForWriter(patience))
        return false;
    // The writer's answers lie in this thread's queue.
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    return true;
}

void Vault::endSession()
{
    if (std::exchange(m_ended, true))
        return;
    m_timer.stop();
    for (auto &[number, watched] : m_journals)
        watched.journal->leave();
    constexpr int patience = 5000;
    waitForWriter(patience);
}
