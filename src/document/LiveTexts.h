// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/EntryDocument.h"

#include <QObject>
#include <QTextCursor>

#include <exception>
#include <functional>
#include <map>
#include <memory>

class Entry;
class EntryTree;

// The texts of an outline that are, or lately were, shown and typed into. What changes in one is stored in its entry at
// once, whoever changes it; the stored form is made when somebody reads it, because compressing a long text at every
// key would make typing slow. One whose stored text is changed by somebody else is given up.
class LiveTexts final : public QObject, public LiveTextPort
{
    Q_OBJECT

public:
    // Those that are not shown weigh at most this many bytes together; the ones shown longest ago are given up first.
    static constexpr qsizetype maximumWeight = qsizetype(64) << 20;

    explicit LiveTexts(EntryTree &tree);
    ~LiveTexts() override;

    void setMaximumWeight(qsizetype weight);

    // What the history does before a text is given up whose steps it knows (see History::foldTextSteps). False when it
    // cannot do that now.
    using Folder = std::function<bool(EntryId, const std::function<QByteArray(int)> &)>;

    void setFolder(Folder folder) { m_folder = std::move(folder); }

    // The entry's text, made of what is stored unless there is one. The base font is that of what is made.
    std::shared_ptr<EntryDocument> open(const Entry &entry, const QFont &base);
    // The same, but null when there is none.
    std::shared_ptr<EntryDocument> find(const Entry &entry) const;

    // Keeps what a pane shows until it shows another. An empty one is that of no entry.
    void setShown(std::shared_ptr<EntryDocument> text);

    const std::shared_ptr<EntryDocument> &shown() const { return m_shown; }

    // The entry whose text is shown, whatever was done since to what it has stored; null without one, or when it went.
    Entry *shownEntry() const;
    // The same, but null when another text was stored in the entry since.
    Entry *entryAsShown() const;
    // Makes what is shown the entry's text, even if it was not changed.
    void store();

    void undoText(EntryId entry) override;
    void redoText(EntryId entry) override;
    void forgetUndone(EntryId entry) noexcept override;
    std::shared_ptr<LiveText> takeOut(EntryId entry) override;
    void putBack(EntryId entry, std::shared_ptr<LiveText> text) override;
    void endMerging() noexcept override;

    // Where a step was undone or redone since this was asked last; null without one.
    QTextCursor takeSteppedAt() { return std::exchange(m_steppedAt, QTextCursor()); }

    int count() const { return static_cast<int>(m_texts.size()); }

Q_SIGNALS:
    // An entry's text was changed, by the user or for him.
    void changed(EntryId entry);
    // Another text is shown.
    void shownChanged();
    // A text has a new step that can be undone, and what was done if it was not typed (see TextDeed). Where a listener
    // throws, the text takes it back.
    void stepAdded(EntryId entry, QLatin1StringView what);
    // A text has forgotten what it could redo, because a step of it failed.
    void undoneForgotten();

private:
    struct Kept {
        std::shared_ptr<EntryDocument> text;
        quint64 lastShown = 0;
        // As it was when it was last shown; 0 while it is.
        qsizetype weight = 0;
    };

    using Place = std::map<EntryId, Kept>::iterator;

    void keep(const std::shared_ptr<EntryDocument> &text);
    Place placeOf(const std::shared_ptr<EntryDocument> &text);
    void drop(Place place);
    void weigh(Place place, qsizetype weight);
    void noteStep(EntryDocument *text) noexcept;
    void noteChange(EntryDocument *text) noexcept;
    void takeBackStep(EntryDocument &text);
    Entry *makeReady(const EntryDocument &text);
    void storeChange(EntryDocument &text);
    void step(EntryId entry, bool (QTextDocument::*isPossible)() const, QTextCursor (EntryDocument::*go)());
    void forget(const Entry *entry);
    bool fold(EntryDocument &text);
    void dropBeyondWeight();
    bool dropOldest();

    EntryTree &m_tree;
    std::map<EntryId, Kept> m_texts;
    std::shared_ptr<EntryDocument> m_shown;
    Folder m_folder;
    // The text whose earlier states are looked at.
    EntryDocument *m_folded = nullptr;
    // Whether the step that a text has just got is to be taken back, and why where nobody else tells.
    bool m_isStepBroken = false;
    std::exception_ptr m_stepError;
    QTextCursor m_steppedAt;
    quint64 m_shows = 0;
    qsizetype m_weight = 0;
    qsizetype m_maximumWeight = maximumWeight;
};
