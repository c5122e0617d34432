// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/HistoryWitness.h"
#include "vault/RecoveryDatabase.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

class Document;
class EntryDocument;

// What a journal needs of the vault that holds it.
class JournalKeeper
{
public:
    virtual ~JournalKeeper() = default;
    // Milliseconds that only grow.
    virtual qint64 now() const = 0;
    // Something waits to be written.
    virtual void wake() = 0;
    // Each is carried out in the order in which it was asked for.
    virtual void write(int journal, RecoveryBatch batch) = 0;
    virtual void discard(int journal) = 0;
    virtual void leave(int journal) = 0;
};

// Takes down what is done to a document while it has unsaved changes, so that it can be done again after a crash:
// the document as it was before the first change, and from then on each step, as values that a writer puts on disk.
//
// Undoing and redoing are taken down as such where the steps are in the journal. What was done before it began, and
// parts of a stretch of typing, are taken down as what they did. The typed text of an entry is taken down when it has
// stood for a while, or something else is done; the steps of typing between make one step.
class Journal final : public QObject, private HistoryWitness
{
    Q_OBJECT

public:
    // How long typed text waits, in milliseconds, and until it is looked at. Longer where taking it down is slow, so
    // that it costs typing a twentieth of its time at most; and never longer than that makes.
    static constexpr qint64 typingDelay = 1000;
    static constexpr qint64 longestTypingDelay = 1500;
    static constexpr qint64 lookInterval = 250;
    // How long after a failure it is tried again.
    static constexpr qint64 retryDelay = 10000;
    // When what is logged takes this much beyond this many times the document, the document is taken down anew, and the
    // steps before can no longer be undone after a crash.
    static constexpr qint64 roomForLog = qint64(16) << 20;
    static constexpr qint64 logFactor = 4;

    // The document must outlive it, or go first and tell.
    Journal(JournalKeeper &keeper, int number, Document &document);
    ~Journal() override;

    int number() const { return m_number; }

    // Nothing of it is on disk, or will be.
    bool isEmpty() const { return !m_begun; }

    // Whether everything is on disk that is to be there.
    bool isWritten() const { return !m_broken && !m_inFlight && !hasWaiting(); }

    // Hands over what has waited long enough. True while something waits.
    bool look();
    // Hands over everything now.
    void handOver();
    // The program ends: what is not saved is left for the next start.
    void leave();

    // Says of what was done so far when it was done, of old.
    void setChangedAt(const QDateTime &time) { m_changedAt = time; }

    void setRoomForLog(qint64 room) { m_roomForLog = room; }

    // The writer's answers.
    void noteWritten(qint64 size);
    void noteFailed(const QString &why, const QString &said);
    // The text that was followed is lost, and what was handed over with it.
    void noteLost();

Q_SIGNALS:
    // The document goes.
    void ended(int number);

private:
    // A step of the history that replaying the journal makes.
    struct Line {
        qint64 record = 0;
        // The steps of the document's history that it does; 0 for none.
        quint64 first = 0;
        quint64 last = 0;
        // The step of the document's history that it undoes; 0 for none.
        quint64 undoes = 0;
        // How many changes such a step has if this one is the same; -1 when it is not.
        qint64 changes = -1;
        // For one that is typing.
        EntryId typedIn = EntryId::None;
    };

    struct Typing {
        EntryId entry = EntryId::None;
        quint64 first = 0;
        quint64 last = 0;
        qint64 changes = 0;
        LoggedStep step;
        // Of what is taken down of it; 0 before anything is.
        qint64 record = 0;
        bool isDirty = false;
        qint64 since = 0;
    };

    struct Move {
        History::StepInfo info;
        bool forth = false;
        qint64 changes = 0;
        // The record that undoing or redoing it means; 0 where it has to be taken down as what it does.
        qint64 target = 0;
        LogRecord::Kind kind = LogRecord::Kind::Undo;
    };

    void stepBegins() noexcept override;
    void aboutToApply(const Change &change) noexcept override;
    void carriedOut(const Change &inverse) noexcept override;
    void takenBack() noexcept override;
    void stepEnded(const History::StepInfo &info, EntryId selectedBefore, size_t changes) noexcept override;
    void expandedAlone() noexcept override;
    void aboutToMove(const History::StepInfo &info, bool forth, size_t changes) noexcept override;
    void moved(bool done) noexcept override;
    void saved() noexcept override;
    void startedAnew() noexcept override;
    void aboutToGo() noexcept override;

    // A journal is never the reason that something cannot be done: where it fails it says so, and begins anew later.
    template <typename Body>
    void guard(Body &&body) noexcept
    {
        if (!m_document || m_broken)
            return;
        try {
            body();
        } catch (...) {
            noteException();
        }
    }

    void noteException();
    void noteChange();
    void begin(EntryId typedIn = EntryId::None);
    void beginIfUnsaved();
    void reset();
    void drop();
    void noteTyping(EntryId entry);
    void noteLooseTyping(EntryId entry);
    void takeInTouchedTexts();
    void noteTypedStep(EntryId entry, const History::StepInfo &info, EntryId selectedBefore, size_t changes);
    void takeDownTyping();
    void endTyping();
    void makeTexts();
    logged::Text textOf(EntryId entry);
    std::shared_ptr<const logged::TextPath> pathTo(const std::shared_ptr<EntryDocument> &live);
    void replaceWaiting(LogRecord &waiting, LoggedStep step);
    void add(LogRecord::Kind kind, LoggedStep step, qint64 target = 0);
    void addLine(Line line, LoggedStep step);
    void findTarget(Move &move) const;
    void apply(const Move &move);
    bool isToBeWritten() const;
    bool hasWaiting() const;
    bool isTypingDue() const;
    RecoveryBatch takeBatch();
    DocumentFacts facts() const;
    EntryId selected() const;

    JournalKeeper &m_keeper;
    const int m_number;
    Document *m_document;
    bool m_begun = false;
    bool m_broken = false;
    bool m_isTold = false;
    bool m_inFlight = false;
    qint64 m_retryAt = 0;
    qint64 m_typingDelay = typingDelay;
    qint64 m_roomForLog = roomForLog;
    qint64 m_baseSize = 0;
    bool m_isHandedOverAsChanged = false;
    // The last change.
    QDateTime m_changedAt;
    // What is done in a step that is not over.
    std::vector<LoggedChange> m_open;
    // Texts that were changed in it, told of as steps or not.
    std::vector<EntryId> m_touched;
    std::optional<Move> m_move;
    std::optional<Typing> m_typing;
    // The text that the writer follows, and the one that he could not.
    std::weak_ptr<EntryDocument> m_followed;
    std::weak_ptr<EntryDocument> m_lost;
    // Those done come first.
    std::vector<Line> m_lines;
    size_t m_done = 0;
    qint64 m_lastRecord = 0;
    // What waits to be written.
    std::shared_ptr<const RecoveryBase> m_base;
    std::vector<LogRecord> m_records;
};
