// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/DocumentNotice.h"
#include "document/FileStamp.h"
#include "document/LiveTexts.h"
#include "formats/Format.h"
#include "model/History.h"
#include "model/Outline.h"

#include <QFont>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

class DocumentView;
class TextCheck;

enum class FileAccess { Unknown, Writable, ReadOnly };

// What is known of a document's file.
struct FileRecord {
    // What it was when it was last read or written; nothing without a file.
    std::optional<FileStamp> own;
    // What another has written there since, as far as it was told of.
    std::optional<FileStamp> theirs;
    // What of it may be replaced without another question.
    std::optional<FileStamp> conceded;
    bool isGone = false;
    // The position in the history at which it went, if that is why the document counts as changed.
    std::optional<int> lostAt;
};

// One open document: its outline, its file and what is to be told of it. Nobody needs to show it; see DocumentView.
// Whoever shows something of it listens: to the history, the tree and the texts, and to what it announces itself.
class Document final : public QObject
{
    Q_OBJECT

public:
    // Without an outline it begins with an empty one.
    explicit Document(std::unique_ptr<Outline> read = nullptr);
    ~Document() override;
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;

    static constexpr qint16 nativeFormat = formatVersion::native;
    static constexpr qint16 plainTextFormat = formatVersion::plainText;

    // Whether the document has a file that the current user may not write, or is there for reading alone. Asked of the
    // file system at every call.
    bool bReadOnly() const;

    // Whether there may be something to save: unless it is read-only and was so from the start. A file that turns
    // read-only is not to take away what was changed before.
    bool mayBeSaved() const { return m_fileAccess == FileAccess::Writable || !bReadOnly(); }

    // The same by what was seen when the file was last looked at: for menus and buttons, which ask at every step.
    bool bReadOnlyAsSeen() const;

    bool mayBeSavedAsSeen() const { return m_fileAccess == FileAccess::Writable || !bReadOnlyAsSeen(); }

    // To be called when the document's file was read or written, or is the document's no longer.
    void takeFile(const std::optional<FileStamp> &stamp);

    // To be called when the window gets the keyboard and when the file was written.
    void lookAtFileAgain();

    // Whether closing would lose what is not in the document's file.
    bool hasUnsavedChanges() const { return m_bDataChanged() || m_bSaveRefused || fileRecord.isGone; }

    bool m_bDataChanged() const { return history.isChanged(); }

    // The user does not want what is not saved.
    void giveUpChanges()
    {
        fileRecord.isGone = false;
        history.markSaved();
        m_bSaveRefused = false;
    }

    // Whether the text pane shows something else than the entry's text: bytes that could not be inflated, or only its
    // beginning. It is locked then, and what is done to it is not stored.
    bool bTextWithheld() const { return texts.shown() && texts.shown()->state() != TextState::Whole; }

    // The panes and the window that show it; null when nobody does.
    DocumentView *view() const { return m_view; }

    // Locks the text pane, or frees it: where no entry would take what is typed, in a document that was opened
    // read-only, and where the text is withheld.
    void updateTextLock();

    // The fonts in which the panes show what names none. What a description leaves open stays as it is.
    void setPaneFonts(const clsFont &outlineFont, const clsFont &textFont);

    // The font of the outline: what its description leaves open is as the pane had it when it came.
    QFont shownOutlineFont() const;
    // The base font of the texts: that of text which names none.
    QFont baseFont() const;
    void setBaseFont(const QFont &font);
    // To be called when the texts' font description is another one by undoing or redoing.
    void takeBaseFont();

    // What the window is called: the document's file, or "Document" and a number.
    const QString &caption() const { return m_sCaption; }

    void setCaption(const QString &sCaption);

    // Fits the split between the panes, if there are any, when the option says so.
    void autoFitSplit();

    // What the status bar says in passing, instead of the selected label: until another entry is selected or named, or
    // the window becomes the active one again. No text leaves the status bar empty.
    void say(const QString &text);
    // The same of the step that was just done, undone or redone: until there is another.
    void sayOfStep(const QString &text);
    // The same of the document's file, which is said again whenever the window becomes the active one.
    void note(const QString &text);
    // What was said in passing is not said any more, or nothing is.
    void endPassing();
    void unsay();

    const QString &noted() const { return m_noted; }

    // What is said now: in passing, else what is noted. Nothing where the selected entry's label is to be said.
    std::optional<QString> said() const;

    // The level that the whole outline was last expanded to; -1 all levels, 0 none in particular.
    qint16 m_iExpansionLevel() const { return m_expansionLevel; }

    void setExpansionLevel(int level);

    // Looks for damaged texts, behind whatever else is to be done.
    void checkTexts();

    // Tells the user of a failure until it is dismissed or mended, in place of an earlier notice of its kind.
    void tell(DocumentNotice told);
    // What the notice of a kind told of is mended, or the user has read it.
    void dismiss(NoticeKind kind);

    bool hasNotice(NoticeKind kind) const { return notice(kind); }

    // The one of a kind; null without one.
    const DocumentNotice *notice(NoticeKind kind) const;

    // The standing notices, the gravest first.
    const std::vector<DocumentNotice> &notices() const { return m_notices; }

    // What its file holds of it, or will hold. It is given out to be read: every change is made by the history.
    const Outline &outline() const { return *m_outline; }

    // Full path; empty for a document that was never saved.
    QString m_sFile;
    // The file whose unsaved state was recovered as a document without a file; empty for any other document.
    QString m_sRecoveredFrom;
    // A save of changes was given up at a question. By then they no longer count as changed.
    bool m_bSaveRefused = false;
    // The file is an outline, whatever its name says.
    bool m_bFromOutline = false;
    // It shows what once was, and has no file: it may be looked at only, until it is saved as a file.
    bool m_bForReading = false;
    // What the file was when it was read or last written.
    FileAccess m_fileAccess = FileAccess::Unknown;
    FileRecord fileRecord;
    // 1 native, -1 plain text.
    qint16 m_iFileFormatVersion = nativeFormat;

private:
    const std::unique_ptr<Outline> m_outline;

public:
    // The parts of the outline by their own names.
    const EntryTree &tree;
    const clsFont &m_fntOutlineFont;
    const clsFont &m_fntTextFont;

    // The texts that are worked on.
    LiveTexts texts;

    // What was done to it, and the only way to do more.
    History history;

Q_SIGNALS:
    // The status bar is to say something else.
    void statusTextChanged();
    // Its file or that file's access may be another, or the level that it is expanded to is.
    void stateChanged();

private:
    friend class DocumentView;
    void setView(DocumentView *shownBy);
    void dropUntrueNotices();

    struct SeenFile {
        QString sFile;
        bool bReadOnly = false;
    };

    std::vector<DocumentNotice> m_notices;
    // How many entries it had when it was told to be full.
    int m_entriesWhenFull = 0;
    std::unique_ptr<TextCheck> m_textCheck;
    DocumentView *m_view = nullptr;
    QFont m_ownOutlineFont;
    // Of a document without a view; a view's pane has its own.
    QFont m_baseFont;
    // The base fonts that earlier descriptions came with: what these leave open is not to be had from them.
    std::vector<std::pair<clsFont, QFont>> m_earlierFonts;
    QString m_sCaption;
    qint16 m_expansionLevel = 0;
    // What was said in passing; an empty text is something else than none.
    std::optional<QString> m_passing;
    bool m_passingIsOfStep = false;
    QString m_noted;
    mutable std::optional<SeenFile> m_seenFile;
};
