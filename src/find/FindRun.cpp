// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/FindRun.h"

#include "document/Document.h"
#include "find/TextIndex.h"
#include "find/Workers.h"

#include <QElapsedTimer>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

namespace
{

// The window's thread gets work ready for so many milliseconds, before others have their turn.
constexpr int sliceMilliseconds = 3;
// So many entries and bytes are given to one worker: few at first, so that there is something to see soon.
constexpr std::size_t mostJobEntries = 2048;
constexpr qsizetype mostJobBytes = 1 << 18;
constexpr qsizetype firstJobBytes = 1 << 15;
constexpr qsizetype entryBytes = 64;
// Ahead of what prepares for searches to come.
constexpr int priority = 1;

int mostJobs()
{
    return findWorkers().maxThreadCount() * 2;
}

} // namespace

// Where the workers find the run, for as long as it is there.
struct FindRun::Answers {
    std::mutex mutex;
    FindRun *run = nullptr;
    std::atomic_bool isEnded = false;
};

FindRun::FindRun(Document &document, FindQuery query, QObject *parent, int rest)
    : QObject(parent)
    , m_document(&document)
    , m_query(std::move(query))
    , m_rest(rest)
    , m_answers(std::make_shared<Answers>())
{
    m_answers->run = this;
    m_going.setSingleShot(true);
    m_following.setSingleShot(true);
    connect(&m_going, &QTimer::timeout, this, &FindRun::goOn);
    connect(&m_following, &QTimer::timeout, this, &FindRun::follow);
    connect(&document, &QObject::destroyed, this, &FindRun::stop);
    if (!m_query.isEmpty()) {
        for (int i = 0; i < m_query.wordCount(); ++i) {
            const QStringList parts = m_query.certainPartsOf(i);
            m_sought.emplace_back(parts.begin(), parts.end());
        }
        m_entries = entriesInScope();
        listen();
    }
    m_going.start(0);
}

FindRun::~FindRun()
{
    stop();
}

void FindRun::stop()
{
    const std::lock_guard lock(m_answers->mutex);
    m_answers->isEnded = true;
    m_answers->run = nullptr;
    m_document = nullptr;
    m_going.stop();
    m_following.stop();
}

void FindRun::listen()
{
    connect(&m_document->tree, &EntryTree::storedTextChanged, this, [this](const Entry *entry) { soil(entry->id()); });
    connect(&m_document->tree, &EntryTree::labelChanged, this, [this](Entry *entry) { soil(entry->id()); });
    connect(&m_document->tree, &EntryTree::modelReset, this, &FindRun::soilScope);
    connect(&m_document->texts, &LiveTexts::changed, this, &FindRun::soil);
    // What is taken back is not announced one by one.
    connect(&m_document->history, &History::rolledBack, this, [this] {
        soilScope();
        soilAll();
    });
    connect(&m_document->history, &History::changed, this,
            [this](ChangeKind kind, const std::vector<EntryId> &entries) {
                switch (kind) {
                case ChangeKind::Structure:
                case ChangeKind::Order:
                case ChangeKind::Sorted:
                    soilScope();
                    break;
                case ChangeKind::Label:
                case ChangeKind::Tag:
                case ChangeKind::Text:
                    if (entries.empty())
                        soilAll();
                    else
                        std::ranges::for_each(entries, [this](EntryId entry) { soil(entry); });
                    break;
                default:
                    break;
                }
            });
}

std::vector<EntryId> FindRun::entriesInScope() const
{
    const EntryTree &tree = m_document->tree;
    const EntryId branch = m_query.options().branch;
    const Entry *top = branch == EntryId::None ? tree.root() : tree.entry(branch);
    std::vector<EntryId> entries;
    if (top && top == tree.root())
        entries.reserve(std::size_t(tree.entryCount()));
    for (const Entry *entry = top; entry; entry = nextInOutline(entry, top))
        entries.push_back(entry->id());
    return entries;
}

bool FindRun::isLookedAt(const Entry &entry) const
{
    return !m_query.options().taggedOnly || entry.tagged();
}

// By the signatures that there are.
quint64 FindRun::possibleWords(const Entry &entry) const
{
    if (!m_index || m_document->tree.isPending(&entry))
        return m_query.allWords();
    quint64 words = 0;
    for (std::size_t i = 0; i < m_sought.size(); ++i) {
        const bool mayHold = std::ranges::all_of(m_sought[i], [&](const SoughtTrigrams &part) {
            return m_index->mayHold(entry, EntryTree::textLastStored(&entry), part);
        });
        if (mayHold)
            words |= quint64(1) << i;
    }
    return words;
}

bool FindRun::isUpToDate() const
{
    return m_isFinished && m_soiled.empty() && !m_isScopeSoiled && m_followed == 0;
}

// Gives the workers entries in the order of the outline, as many as they can take.
void FindRun::goOn()
{
    m_index = TextIndex::of(*m_document);
    QElapsedTimer timer;
    timer.start();
    while (m_next < m_entries.size() && m_working < mostJobs() && timer.elapsed() < sliceMilliseconds) {
        Job job;
        job.entries.reserve(std::min(mostJobEntries, m_entries.size() - m_next));
        job.labelEnds.reserve(job.entries.capacity());
        const qsizetype mostBytes = m_given < quint64(mostJobs()) ? firstJobBytes : mostJobBytes;
        const int most = m_toldHits < mostOfAll ? mostOfEntry : mostOnceFull;
        for (qsizetype bytes = 0; m_next < m_entries.size() && bytes < mostBytes && job.entries.size() < mostJobEntries;
             ++m_next) {
            const Entry *entry = m_document->tree.entry(m_entries[m_next]);
            if (!entry) {
                soil(m_entries[m_next]);
                continue;
            }
            if (!isLookedAt(*entry))
                continue;
            bytes += add(job, *entry, most);
        }
        job.number = m_given++;
        start(std::move(job));
    }
    if (m_next < m_entries.size()) {
        // Where all workers are busy, the next answer goes on.
        if (m_working < mostJobs())
            m_going.start(0);
    } else if (m_told == m_given && !std::exchange(m_isFinished, true)) {
        m_scope = std::exchange(m_entries, {});
        std::ranges::sort(m_scope);
        Q_EMIT finished();
        follow();
    }
}

// Answers about how many bytes there are to be looked at.
qsizetype FindRun::add(Job &job, const Entry &entry, int most) const
{
    job.entries.push_back(searchedEntry(*m_document, entry, m_query, possibleWords(entry)));
    SearchedEntry &searched = job.entries.back();
    searched.most = most;
    job.labels += entry.label();
    job.labelEnds.push_back(job.labels.size());
    job.labels += u'\n';
    return entryBytes + searched.storedText.size();
}

std::vector<EntryHits> FindRun::lookAt(Job &job, const FindQuery &query, const std::atomic_bool &isEnded)
{
    std::vector<EntryHits> found;
    // Mostly no label holds anything of what is looked for.
    const bool isInLabels = query.options().labels && query.mayStandIn(job.labels);
    qsizetype begin = 0;
    for (std::size_t i = 0; i < job.entries.size() && !isEnded; ++i) {
        SearchedEntry &searched = job.entries[i];
        const qsizetype end = job.labelEnds[i];
        searched.label = QStringView(job.labels).sliced(begin, end - begin);
        begin = end + 1;
        if (job.number && !isInLabels && searched.possible == 0)
            continue;
        EntryHits hits = hitsIn(searched, query, &isEnded);
        // Of what is followed, that there is nothing is told, too.
        if (!job.number || hits.count > 0 || hits.isGivenUp || hits.isUnreadable)
            found.push_back(std::move(hits));
    }
    return found;
}

void FindRun::start(Job job)
{
    ++m_working;
    m_looked += qint64(job.entries.size());
    auto work = [answers = m_answers, query = m_query, job = std::move(job)]() mutable {
        std::vector<EntryHits> found = lookAt(job, query, answers->isEnded);
        const std::lock_guard lock(answers->mutex);
        if (FindRun *run = answers->run)
            QMetaObject::invokeMethod(
                run,
                [run, number = job.number, found = std::move(found)]() mutable { run->take(number, std::move(found)); },
                Qt::QueuedConnection);
    };
    findWorkers().start(std::move(work), priority);
}

void FindRun::take(std::optional<quint64> number, std::vector<EntryHits> answers)
{
    if (!m_document)
        return;
    --m_working;
    if (number) {
        m_waiting.emplace(*number, std::move(answers));
        tellInOrder();
        if (!m_going.isActive())
            goOn();
        return;
    }
    --m_followed;
    for (const EntryHits &each : answers)
        tellFollowed(each);
    Q_EMIT countsChanged();
    if (m_followed == 0 && (!m_soiled.empty() || m_isScopeSoiled) && !m_following.isActive())
        m_following.start(m_rest);
}

void FindRun::tellInOrder()
{
    std::vector<EntryHits> told;
    for (auto next = m_waiting.begin(); next != m_waiting.end() && next->first == m_told;
         next = m_waiting.erase(next), ++m_told) {
        for (EntryHits &hits : next->second) {
            // What went may come back.
            if (!m_document->tree.entry(hits.entry)) {
                soil(hits.entry);
                continue;
            }
            note(hits);
            if (hits.count == 0)
                continue;
            if (m_toldHits > mostOfAll && hits.hits.size() > std::size_t(mostOnceFull))
                hits.hits.resize(std::size_t(mostOnceFull));
            m_toldHits += qint64(hits.hits.size());
            told.push_back(std::move(hits));
        }
    }
    if (told.empty())
        return;
    Q_EMIT found(told);
    Q_EMIT countsChanged();
}

void FindRun::note(const EntryHits &hits)
{
    if (hits.isGivenUp)
        m_givenUp.insert(hits.entry);
    else
        m_givenUp.erase(hits.entry);
    if (hits.isUnreadable)
        m_unreadable.insert(hits.entry);
    else
        m_unreadable.erase(hits.entry);
    if (hits.count == 0)
        return;
    Known &known = m_known[hits.entry];
    m_hits += hits.count - known.count;
    known = {hits.count, hits.sum};
}

void FindRun::tellFollowed(const EntryHits &hits)
{
    // It may have gone since, and come back later.
    const Entry *entry = m_document->tree.entry(hits.entry);
    if (!entry || hits.count == 0) {
        if (entry)
            note(hits);
        forget(hits.entry);
        return;
    }
    const auto known = m_known.find(hits.entry);
    const bool isSame = known != m_known.end() && known->second.count == hits.count && known->second.sum == hits.sum;
    note(hits);
    if (!isSame || m_wanted.contains(hits.entry))
        Q_EMIT changed(hits.entry, hits);
}

void FindRun::forget(EntryId entry)
{
    const auto known = m_known.find(entry);
    if (known == m_known.end())
        return;
    m_hits -= known->second.count;
    m_known.erase(known);
    Q_EMIT gone(entry);
}

void FindRun::tellMore(EntryId entry)
{
    m_wanted.insert(entry);
    soil(entry);
    if (m_isFinished && m_document)
        m_following.start(0);
}

void FindRun::soil(EntryId entry)
{
    if (!m_document)
        return;
    m_soiled.insert(entry);
    if (!m_following.isActive())
        m_following.start(m_rest);
}

void FindRun::soilScope()
{
    if (!m_document)
        return;
    m_isScopeSoiled = true;
    if (!m_following.isActive())
        m_following.start(m_rest);
}

void FindRun::soilAll()
{
    const std::vector<EntryId> &all = m_isFinished ? m_scope : m_entries;
    std::ranges::for_each(all, [this](EntryId entry) { soil(entry); });
}

// Entries that went are told to be gone, and those that came are looked at.
void FindRun::compareScope()
{
    std::vector<EntryId> scope = entriesInScope();
    std::ranges::sort(scope);
    std::vector<EntryId> left;
    std::ranges::set_difference(m_scope, scope, std::back_inserter(left));
    std::vector<EntryId> came;
    std::ranges::set_difference(scope, m_scope, std::back_inserter(came));
    m_scope = std::move(scope);
    for (const EntryId entry : left) {
        m_givenUp.erase(entry);
        m_unreadable.erase(entry);
        m_soiled.erase(entry);
        forget(entry);
    }
    m_soiled.insert(came.begin(), came.end());
    Q_EMIT orderChanged();
}

// The first look comes before, and what changes while workers are at it, afterwards.
void FindRun::follow()
{
    if (!m_document || !m_isFinished || m_followed > 0)
        return;
    m_index = TextIndex::of(*m_document);
    if (std::exchange(m_isScopeSoiled, false))
        compareScope();
    const std::unordered_set<EntryId> soiled = std::exchange(m_soiled, {});
    Job job;
    qsizetype bytes = 0;
    const auto give = [&] {
        ++m_followed;
        start(std::exchange(job, {}));
        bytes = 0;
    };
    for (const EntryId id : soiled) {
        const Entry *entry = m_document->tree.entry(id);
        const bool isIn = entry && isLookedAt(*entry) && std::ranges::binary_search(m_scope, id);
        if (!isIn) {
            m_givenUp.erase(id);
            m_unreadable.erase(id);
            forget(id);
            continue;
        }
        bytes += add(job, *entry, m_wanted.contains(id) ? mostEver : mostOfEntry);
        if (bytes >= mostJobBytes || job.entries.size() >= mostJobEntries)
            give();
    }
    if (!job.entries.empty())
        give();
    Q_EMIT countsChanged();
}
