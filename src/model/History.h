// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Change.h"

#include <QDateTime>
#include <QObject>

#include <functional>
#include <map>
#include <optional>
#include <vector>

class HistoryWitness;
class QAbstractItemModel;
struct Outline;

// What was done to one outline, and may be undone and redone: the one road on which an outline that belongs to a
// document is changed. It announces each change before and after.
//
// Changes come in steps, which carry a name that reads behind "Undo " ("move of "Budget""). An expansion alone is no
// step: what is open stays open when the step before it is undone, and everything can be redone that could be before.
// Only when all steps are undone is there one thing more to be undone: what was opened and closed alone.
class History final : public QObject
{
    Q_OBJECT

public:
    // Steps weigh at most this many bytes together, of which nearly all are texts that were removed or replaced. Where
    // they would weigh more, the oldest go; the last one done stays whatever it weighs.
    static constexpr qsizetype maximumWeight = qsizetype(64) << 20;

    struct StepInfo {
        QString name;
        QDateTime time;
        // Where it acted; none when it acted on nothing in particular.
        EntryId entry = EntryId::None;
        // Its own number, which it keeps until it becomes part of another; they grow with time.
        quint64 serial = 0;
    };

    // The outline must stay where it is for as long as the history lives.
    explicit History(Outline &outline);
    ~History() override;

    // What the entries' texts are worked on with; null where nobody does. Must outlive the history.
    void setLiveTexts(LiveTextPort *liveTexts) { m_liveTexts = liveTexts; }

    // What tells the time of a step; without it steps have none.
    void setClock(std::function<QDateTime()> clock) { m_clock = std::move(clock); }

    const std::function<QDateTime()> &clock() const { return m_clock; }

    // Who is told of all that is done; null where nobody is. Must outlive the history, or be taken away before.
    void setWitness(HistoryWitness *witness) { m_witness = witness; }

    void setMaximumWeight(qsizetype weight);

    const Outline &outline() const { return m_outline; }

    // The outline for who shows it. A label that is written through it is a change.
    QAbstractItemModel &itemModel();

private:
    enum class StepKind { OfAction, OfOneChange, OfText };

public:
    // Makes one step of all that is applied while it lives. One inside another joins that, but when it is left by an
    // exception, what was done within it is undone at once and the outline is as it was when it began.
    class Step
    {
    public:
        Step(History &history, const QString &name)
            : Step(history, name, StepKind::OfAction)
        {
        }

        ~Step();
        Step(const Step &) = delete;
        Step &operator=(const Step &) = delete;

        // For a name that only the work tells. The outermost step's name counts.
        void setName(const QString &name);
        // What is done so far stays, even when an exception follows.
        void keep();
        // Undoes what was done within it.
        void takeBack();

    private:
        friend class History;
        Step(History &history, const QString &name, StepKind kind);

        History &m_history;
        int m_exceptions;
        size_t m_begin;
        EntryId m_selected;
    };

    // Carries out a change, in the step that is open or in one of its own, and returns the entry that it is about (null
    // when it is about none, or removed it). When it fails it throws and nothing has changed.
    Entry *apply(Change change);
    // The operations of an EntryTree as changes, with the same errors. Each makes a step of its own where none is open.
    Entry *insert(Relationship relationship, Entry *relative);
    Entry *insertCopy(const EntryTree &sourceTree, const Entry *source, Relationship relationship, Entry *relative);
    void move(Entry *entry, Relationship relationship, Entry *relative);
    void renewInsertion(Entry *entry);
    void remove(Entry *entry);
    void removeAll(const std::vector<Entry *> &entries);
    void setLabel(Entry *entry, const QString &label);
    void setTagged(Entry *entry, bool tagged);
    void setExpanded(Entry *entry, bool expanded);
    void setExpandedAll(Entry *entry, bool expanded);
    void expandAncestors(Entry *entry);
    void expandToLevel(Entry *entry, int level);
    void setSorted(Entry *entry, bool sorted);
    void setStoredText(Entry *entry, const QByteArray &storedText);
    void setFonts(const clsFont &outlineFont, const clsFont &textFont);
    void setForeignRecords(Entry *entry, const ForeignRecordList &records);
    void setFileForeignRecords(const ForeignRecordList &header, const QByteArray &trailer);

    // Takes note that the entry's live text has a new step of its own, and of what was done, as in "bold in", where it
    // was not typed. When it fails, whoever has the text must take that back; the step that is open, if one is, is
    // taken back as a whole when it ends.
    void appendTextStep(EntryId entry, QLatin1StringView what = {});

    // Takes note that a live text has lost what it could redo: nothing can be redone any more.
    void forgetUndone();

    // Makes texts of the steps of an entry's live text, which will be gone: each run of them becomes one step that
    // replaces the text. `textAt` answers the stored text as it is that many of its steps back from now (forward where
    // negative); it may throw, and then nothing has changed. Where the live text belongs to a change, that keeps it.
    void foldTextSteps(EntryId entry, const std::function<QByteArray(int stepsBack)> &textAt);

    bool isStepOpen() const { return m_depth > 0; }

    // Nothing is undone or redone while a step is open. False when there is nothing, or it was impossible; then nothing
    // has changed. The entry that was selected before the step, or after it, is selected again.
    bool undo();
    bool redo();

    bool canUndo() const { return m_position > 0 || (canRedo() && !m_firstTrail.empty()); }

    bool canRedo() const { return m_position < stepCount(); }

    // The names of the steps that undo() and redo() would go back and forth; empty when there is none.
    QString undoName() const;
    QString redoName() const;

    // From the oldest to the newest, those undone included.
    std::vector<StepInfo> steps() const;

    int stepCount() const { return static_cast<int>(m_steps.size()); }

    // How many of the steps are done. It moves back when the oldest steps go.
    int position() const { return m_position; }

    // Undoes or redoes until that many steps are done; of none, also what was opened and closed alone. False when it
    // did not get there.
    bool goTo(int position);

    qsizetype weight() const { return m_weight; }

    // Whether the outline is another than the one that was saved last, or counts as another.
    bool isChanged() const;

    // The position that was saved last, while steps lead there.
    std::optional<int> savedPosition() const { return m_saved; }

    void markSaved();
    // Counts as changed without a difference, until it is saved or a step leads to what was saved: the same entries, of
    // which the same are open and the same one is selected.
    void touch();
    // To be called when what is selected was brought into sight behind a step that was undone or redone, which may have
    // made it what was saved, or another.
    void noteSight();
    // Counts as changed whatever is undone, as when the file is gone.
    void forgetSaved();

    // Forgets all steps: nothing leads back behind what the outline is now. What counts as changed still does.
    void startAnew();

    // Selects an entry, which is no change but is remembered by the steps.
    void select(Entry *entry);
    // Selects several, of which the current one need not be one. A step that does not do so itself leaves only the
    // current one selected when it is done.
    void select(Entry *current, const std::vector<Entry *> &several);

Q_SIGNALS:
    void aboutToChange(ChangeKind kind);
    // No entries: all may be concerned.
    void changed(ChangeKind kind, const std::vector<EntryId> &entries);
    // Another step is the last one done, or isChanged() may answer differently.
    void positionChanged();
    // There are other steps.
    void stepsChanged();
    // What was done in a step was taken back because it failed.
    void rolledBack();

private:
    // What was opened and closed alone at a position: how it was before.
    using Trail = std::map<EntryId, bool>;

    // What a file holds of an outline that no step knows of: what is open, in order, and what is selected.
    struct Look {
        std::vector<EntryId> open;
        EntryId selected = EntryId::None;
    };

    struct Recorded {
        StepInfo info;
        EntryId selectedBefore = EntryId::None;
        EntryId selectedAfter = EntryId::None;
        // Of several that were selected.
        std::vector<EntryId> severalBefore;
        std::vector<EntryId> severalAfter;
        // How to undo it while it is done, and how to redo it while it is undone; in the order in which it was done.
        std::vector<Change> changes;
        // Since it was done; empty while it is undone.
        Trail trail;
        qsizetype weight = 0;
    };

    friend class HistoryBulk;
    class Announcement;
    class Moving;

    struct TextRun;
    std::vector<TextRun> textRuns(EntryId entry, bool undone) const;
    void fold(EntryId entry, TextRun &run);
    void begin(const QString &name, StepKind kind);
    void end() noexcept;
    void rollBack(size_t begin, EntryId selected) noexcept;
    void commit();
    void expandAlone(Change change);
    void addToTrail(const change::Expand &inverse);
    void passOver(Recorded &step, Trail &below, const std::vector<EntryId> &own) noexcept;
    bool takeBackFirstTrail();
    Look look() const;
    bool looksLike(const Look &seen) const noexcept;

    bool isAsSaved() const noexcept { return looksLike(m_savedLook) || (m_leftLook && looksLike(*m_leftLook)); }

    void leave() noexcept;
    void goBack(Recorded &step);
    void goForth(Recorded &step);
    void landOn(int position, EntryId selected, const std::vector<EntryId> &several);
    void selectAgain(EntryId selected, const std::vector<EntryId> &several);
    void weigh(Recorded &step);
    void dropRedoable() noexcept;
    bool dropBeyondWeight() noexcept;
    EntryId selectedId() const;

    Outline &m_outline;
    LiveTextPort *m_liveTexts = nullptr;
    HistoryWitness *m_witness = nullptr;
    std::function<QDateTime()> m_clock;
    std::vector<Recorded> m_steps;
    int m_position = 0;
    // What was opened and closed alone while no step is done.
    Trail m_firstTrail;
    // Expansions that were asked for while something was undone.
    std::vector<Change> m_deferred;
    Recorded m_open;
    bool m_openIsBroken = false;
    // It has said itself which several are selected.
    bool m_openSelects = false;
    int m_depth = 0;
    quint64 m_lastSerial = 0;
    bool m_moving = false;
    qsizetype m_weight = 0;
    qsizetype m_maximumWeight = maximumWeight;
    // The position that was saved, none when no step leads there any more; what the file holds, and what was seen when
    // the position was left last, if that counted as no change either.
    std::optional<int> m_saved = 0;
    Look m_savedLook;
    std::optional<Look> m_leftLook;
    bool m_touched = false;
};

// The usual name of a step: what is done, and the label of the entry to which it is done.
QString stepName(QLatin1StringView what, const Entry &entry);

// The name of a step that is one change alone, before it is carried out.
QString stepName(const Change &change, const EntryTree &tree);

// Announces what is applied to a document's tree while it lives as one reset, so that the pane is laid out once.
class HistoryBulk
{
public:
    explicit HistoryBulk(History &history);
    ~HistoryBulk();
    HistoryBulk(const HistoryBulk &) = delete;
    HistoryBulk &operator=(const HistoryBulk &) = delete;

private:
    History &m_history;
};
