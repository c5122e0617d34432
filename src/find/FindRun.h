// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "find/EntryLook.h"
#include "find/FindHit.h"
#include "find/FindQuery.h"
#include "find/TextSignature.h"

#include <QObject>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class Document;
class Entry;
class TextIndex;

// Looks for something in all entries of a document, and goes on to follow what changes in it: what it has told is, a
// moment after each change, what another run would tell. Workers do the looking, on values; the window's thread is
// never held up for long. Destroyed, it stops at once. The document may go first, and then nothing more is told.
class FindRun final : public QObject
{
    Q_OBJECT

public:
    // Of an entry so many hits are told, and of those beyond only how many they are (see tellMore). Fewer once so many
    // were told in all.
    static constexpr int mostOfEntry = 100;
    static constexpr int mostOfAll = 50'000;
    static constexpr int mostOnceFull = 1;
    static constexpr int mostEver = 10'000;

    // Nothing is told before the event loop runs again. Changes are looked at so many milliseconds after the first.
    FindRun(Document &document, FindQuery query, QObject *parent = nullptr, int rest = 200);
    ~FindRun() override;

    // Null when it went.
    Document *document() const { return m_document; }

    const FindQuery &query() const { return m_query; }

    // Whether all entries were looked at. What changes afterwards is told without another finished().
    bool isFinished() const { return m_isFinished; }

    // Whether all changes were looked at, too.
    bool isUpToDate() const;

    // How many hits there are, and in how many entries, as far as is known.
    qint64 hitCount() const { return m_hits; }

    int entryCount() const { return static_cast<int>(m_known.size()); }

    // In so many entries a regular expression was given up somewhere, and of so many the text could not be looked at.
    int givenUpCount() const { return static_cast<int>(m_givenUp.size()); }

    int unreadableCount() const { return static_cast<int>(m_unreadable.size()); }

    // How many entries workers were given, those that were looked at again each time.
    qint64 lookedAt() const { return m_looked; }

    // Answers with changed(), with up to mostEver hits of this entry; also whenever it changes from now on.
    void tellMore(EntryId entry);

Q_SIGNALS:
    // Entries with hits, in the order of the outline, behind those told before.
    void found(const std::vector<EntryHits> &entries);
    void finished();
    // An entry has other hits than were told, or has some for the first time; its place is where it stands in the
    // outline.
    void changed(EntryId entry, const EntryHits &hits);
    // An entry has no hits any more, or is gone.
    void gone(EntryId entry);
    // Entries stand in another order, or below others.
    void orderChanged();
    // hitCount() and the like may answer differently.
    void countsChanged();

private:
    struct Answers;

    // What is given to a worker at once.
    struct Job {
        std::vector<SearchedEntry> entries;
        // All labels, each with a line break behind it, and where they end: copied in a row, so that no thread counts
        // who has them.
        QString labels;
        std::vector<qsizetype> labelEnds;
        // In the order of the outline; of what is followed, none.
        std::optional<quint64> number;
    };

    struct Known {
        int count = 0;
        quint64 sum = 0;
    };

    void listen();
    void stop();
    std::vector<EntryId> entriesInScope() const;
    bool isLookedAt(const Entry &entry) const;
    quint64 possibleWords(const Entry &entry) const;
    void goOn();
    qsizetype add(Job &job, const Entry &entry, int most) const;
    static std::vector<EntryHits> lookAt(Job &job, const FindQuery &query, const std::atomic_bool &isEnded);
    void start(Job job);
    void take(std::optional<quint64> number, std::vector<EntryHits> answers);
    void tellInOrder();
    void tellFollowed(const EntryHits &hits);
    void note(const EntryHits &hits);
    void forget(EntryId entry);
    void soil(EntryId entry);
    void soilScope();
    void soilAll();
    void follow();
    void compareScope();

    Document *m_document;
    const FindQuery m_query;
    const int m_rest;
    const std::shared_ptr<Answers> m_answers;
    // Of each word.
    std::vector<std::vector<SoughtTrigrams>> m_sought;
    // As of the last turn; null without one.
    const TextIndex *m_index = nullptr;
    // What is to be looked at, in the order of the outline, and how far that is.
    std::vector<EntryId> m_entries;
    std::size_t m_next = 0;
    QTimer m_going;
    int m_working = 0;
    quint64 m_given = 0;
    quint64 m_told = 0;
    // Answers whose turn has not come.
    std::map<quint64, std::vector<EntryHits>> m_waiting;
    bool m_isFinished = false;

    std::unordered_map<EntryId, Known> m_known;
    std::unordered_set<EntryId> m_givenUp;
    std::unordered_set<EntryId> m_unreadable;
    // Those of which more is told.
    std::unordered_set<EntryId> m_wanted;
    qint64 m_hits = 0;
    qint64 m_toldHits = 0;
    qint64 m_looked = 0;

    // Entries of the document or the branch, sorted, as of the last look; none before all were looked at.
    std::vector<EntryId> m_scope;
    std::unordered_set<EntryId> m_soiled;
    bool m_isScopeSoiled = false;
    int m_followed = 0;
    QTimer m_following;
};
