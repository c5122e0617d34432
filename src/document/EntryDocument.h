// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/ChangedStretch.h"
#include "model/LiveTextPort.h"
#include "model/SealedDocument.h"
#include "model/StoredText.h"

#include <QFont>
#include <QTextCursor>

#include <map>
#include <optional>
#include <vector>

// How many frames and cells a text document has.
int frameCount(const QTextDocument &document);

// An entry's text as a text document that can be shown, typed into and undone, with what the pane remembers of it while
// it shows another.
class EntryDocument final : public LiveText
{
public:
    // Of what can be shown of an entry's stored text; the base font is that of what names none.
    EntryDocument(const QByteArray &storedText, const QFont &base, EntryId entry);
    // Of a text that is no entry's, and that nobody stores.
    EntryDocument(const Inflated &text, const QFont &base);

    ~EntryDocument() override;
    EntryDocument(const EntryDocument &) = delete;
    EntryDocument &operator=(const EntryDocument &) = delete;

    EntryId entry() const { return m_entry; }

    // What is not whole is another text than the entry's, and never takes its place.
    TextState state() const { return m_state; }

    QTextDocument &document() { return m_document; }

    const QTextDocument &document() const { return m_document; }

    // What the text has that cannot be shown, in words; empty once it was changed, which takes that away.
    QString leftOut() const { return m_isChanged ? QString() : m_leftOut; }

    // As it is stored: byte for byte as it was, once everything is undone.
    QByteArray toStored() const;

    // The same, for who compresses it elsewhere.
    struct Uncompressed {
        QByteArray text;
        // It is as it is stored.
        bool isStored = false;
    };

    Uncompressed toUncompressed() const;

    // Whether the text is what it was read from, byte for byte, and what that was; null for one that is no entry's.
    bool isAsRead() const;

    const QByteArray &storedWhenRead() const { return m_stored; }

    // What of the text is another one now. The text engine says where only of what has a layout.
    struct Changes {
        bool isKnown = true;
        ChangedStretch stretch;
        // How many characters the text had before, as the text document counts them, and how many frames and cells.
        int charactersBefore = 0;
        int framesBefore = 0;
    };

    // Since it was read, and since the last call of the other one, which begins to count anew.
    const Changes &changesSinceRead() const { return m_sinceRead; }

    Changes takeChanges();

    // The base font. A change of it is a step of the text and can be undone, which brings the earlier one back.
    const QFont &font() const;
    void setFont(const QFont &font);
    void changeFont(const QFont &font);
    // To be called when the text has changed: a step that was undone may have brought another base font.
    void takeFont();

    // What is being done to it, as the name of the step begins; empty while it is typed into (see TextDeed).
    QLatin1StringView deed() const { return m_deed; }

    void setDeed(QLatin1StringView what) { m_deed = what; }

    // What is typed from here on begins a new step.
    void endMerging() noexcept;

    // Grows with each step, and is again what it was when that is undone.
    int depth() const { return m_document.availableUndoSteps(); }

    struct Selection {
        int anchor = 0;
        int position = 0;
    };

    // Remembers what was selected before the last step, and behind it unless that is where it ends. Given up where
    // there is no memory.
    void markStep(Selection before, std::optional<Selection> behind) noexcept;

    // Go back or forth by one step of the text, which there must be, and say where that was, and what was selected.
    QTextCursor undo();
    QTextCursor redo();

    // What the text needs to keep up with the step that it has just got; throws where there is no memory.
    void makeRoom();

    // Whether what is announced as a new step belongs to the one before.
    bool isJoiningStep() const { return m_isJoiningStep; }

    qsizetype weight() const override;

    // Where the caret stood and how far the text was scrolled when the pane turned to another text.
    struct Place {
        int caret = 0;
        int scrolled = 0;
    };

    Place place;

private:
    EntryDocument(const QFont &base, EntryId entry);
    void begin(const Inflated &text);
    void noteStretch(int at, int removed, int added);
    void noteChange();
    std::size_t fontIndex() const;
    void keepFirstLook();
    QTextCursor selected(const Selection &selection);

    const EntryId m_entry;
    TextState m_state = TextState::Whole;
    QByteArray m_stored;
    SealedDocument m_document;
    // The base fonts that the text has had, the first one first.
    std::vector<QFont> m_fonts;
    // The same of the formats of its first paragraph's mark.
    std::vector<QTextCharFormat> m_firstLooks;
    bool m_isStepping = false;
    bool m_isKeepingLook = false;
    bool m_isJoiningStep = false;
    bool m_hasNewStep = false;
    QLatin1StringView m_deed;

    struct Mark {
        Selection before;
        std::optional<Selection> behind;
    };

    // By the depth behind the step. What lies beyond that of the text when it gets a step is there no more.
    std::map<int, Mark> m_marks;
    int m_lastDepth = 0;
    QString m_leftOut;
    bool m_isChanged = false;
    Changes m_sinceRead;
    Changes m_sinceTaken;
    bool m_hasLayout = false;
    bool m_isStretchTold = false;
    int m_characters = 0;
    qsizetype m_pictures = 0;
    // Characters that were put in since, some of which are kept to be put in again.
    qsizetype m_added = 0;
};
