// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/Document.h"

#include "document/DocumentView.h"
#include "document/DocumentWindow.h"
#include "document/LeftOutText.h"
#include "document/OutlinePane.h"
#include "document/Ports.h"
#include "document/SafeFile.h"
#include "document/TextCheck.h"
#include "document/TextPane.h"

#include <QSignalBlocker>

#include <algorithm>

Document::Document(std::unique_ptr<Outline> read)
    : m_outline(read ? std::move(read) : std::make_unique<Outline>())
    , tree(m_outline->tree)
    , m_fntOutlineFont(m_outline->outlineFont)
    , m_fntTextFont(m_outline->textFont)
    , texts(m_outline->tree)
    , history(*m_outline)
{
    history.setLiveTexts(&texts);
    connect(&texts, &LiveTexts::stepAdded, &history, &History::appendTextStep);
    connect(&texts, &LiveTexts::undoneForgotten, &history, &History::forgetUndone);
    connect(&history, &History::positionChanged, this, [this] {
        if (m_passing && m_passingIsOfStep)
            endPassing();
        dropUntrueNotices();
    });
    connect(&texts, &LiveTexts::changed, this, [this] {
        if (hasNotice(NoticeKind::LeftOutParts))
            tellOfLeftOutParts(*this);
    });
    texts.setFolder([this](EntryId entry, const auto &textAt) {
        if (history.isStepOpen())
            return false;
        history.foldTextSteps(entry, textAt);
        return true;
    });
    history.setClock([] { return ports().clock ? ports().clock->now() : QDateTime(); });
    connect(&history, &History::aboutToChange, this, [this](ChangeKind kind) {
        // Not where it is undone or redone.
        if (kind != ChangeKind::Fonts || !history.isStepOpen())
            return;
        std::erase_if(m_earlierFonts, [this](const auto &earlier) { return earlier.first == m_fntTextFont; });
        m_earlierFonts.emplace_back(m_fntTextFont, baseFont());
    });
    // The panes show the font that was there before a step of fonts that failed.
    connect(&history, &History::rolledBack, this, [this] {
        if (!m_earlierFonts.empty() && m_earlierFonts.back().first == m_fntTextFont)
            takeBaseFont();
    });
    connect(&tree, &EntryTree::selectedChanged, this, &Document::unsay);
    connect(&tree, &EntryTree::labelChanged, this, [this](const Entry *entry) {
        if (entry == tree.selected())
            unsay();
    });
    // What is told of damaged texts may have gone with their entries.
    const auto lookAgain = [this] {
        if (hasNotice(NoticeKind::DamagedText))
            checkTexts();
        dropUntrueNotices();
    };
    connect(&tree, &EntryTree::rowsRemoved, this, lookAgain);
    connect(&tree, &EntryTree::modelReset, this, lookAgain);
}

Document::~Document()
{
    // What goes with it is not to tell it any more.
    tree.disconnect(this);
    texts.disconnect(this);
}

void Document::setView(DocumentView *shownBy)
{
    // The panes go with their window, and their font stays.
    m_baseFont = baseFont();
    m_view = shownBy;
    if (m_view)
        m_ownOutlineFont = m_view->trvOutline.Font();
    // A window that is going has nobody left who could be told that texts are let go.
    const QSignalBlocker quiet(m_view ? nullptr : &history);
    texts.setShown(nullptr);
    if (m_view && !m_sCaption.isEmpty())
        m_view->window.setCaption(m_sCaption);
}

void Document::setPaneFonts(const clsFont &outlineFont, const clsFont &textFont)
{
    if (m_view) {
        QFont font = m_view->trvOutline.Font();
        outlineFont.SetFont(font);
        m_view->trvOutline.setFont(font);
    }
    QFont font = baseFont();
    textFont.SetFont(font);
    setBaseFont(font);
}

QFont Document::shownOutlineFont() const
{
    QFont font = m_ownOutlineFont;
    m_fntOutlineFont.SetFont(font);
    return font;
}

QFont Document::baseFont() const
{
    return m_view ? m_view->txtRTF.Font() : m_baseFont;
}

void Document::setBaseFont(const QFont &font)
{
    if (m_view)
        m_view->txtRTF.setFont(font);
    else
        m_baseFont = font;
}

void Document::takeBaseFont()
{
    const auto earlier = std::ranges::find(m_earlierFonts, m_fntTextFont, &std::pair<clsFont, QFont>::first);
    QFont font = earlier == m_earlierFonts.end() ? baseFont() : earlier->second;
    m_fntTextFont.SetFont(font);
    if (font != baseFont())
        setBaseFont(font);
}

void Document::setCaption(const QString &sCaption)
{
    m_sCaption = sCaption;
    if (m_view)
        m_view->window.setCaption(sCaption);
}

void Document::autoFitSplit()
{
    if (m_view)
        m_view->window.autoFitSplit();
}

void Document::checkTexts()
{
    m_textCheck = std::make_unique<TextCheck>(*this);
}

void Document::takeFile(const std::optional<FileStamp> &stamp)
{
    fileRecord = {stamp, {}, {}, false, {}};
    if (stamp)
        m_sRecoveredFrom.clear();
    dismiss(NoticeKind::FileGone);
    dismiss(NoticeKind::FileChanged);
    if (m_view)
        m_view->window.fileTaken();
}

bool Document::bReadOnly() const
{
    const QString sFile = m_sFile.trimmed();
    return sFile.isEmpty() ? m_bForReading : isReadOnlyFile(sFile);
}

void Document::updateTextLock()
{
    const Entry *entry = texts.shown() ? texts.shownEntry() : tree.selected();
    if (m_view)
        m_view->txtRTF.setLocked(!entry || bTextWithheld() || m_fileAccess == FileAccess::ReadOnly);
}

bool Document::bReadOnlyAsSeen() const
{
    if (!m_seenFile || m_seenFile->sFile != m_sFile)
        m_seenFile = SeenFile{m_sFile, bReadOnly()};
    return m_seenFile->bReadOnly;
}

void Document::lookAtFileAgain()
{
    m_seenFile.reset();
    Q_EMIT stateChanged();
}

void Document::say(const QString &text)
{
    m_passing = text;
    m_passingIsOfStep = false;
    Q_EMIT statusTextChanged();
}

void Document::sayOfStep(const QString &text)
{
    say(text);
    m_passingIsOfStep = true;
}

void Document::note(const QString &text)
{
    m_passing.reset();
    m_noted = text;
    Q_EMIT statusTextChanged();
}

void Document::endPassing()
{
    m_passing.reset();
    Q_EMIT statusTextChanged();
}

void Document::unsay()
{
    m_passing.reset();
    m_noted.clear();
    Q_EMIT statusTextChanged();
}

std::optional<QString> Document::said() const
{
    if (m_passing || m_noted.isEmpty())
        return m_passing;
    return m_noted;
}

void Document::setExpansionLevel(int level)
{
    m_expansionLevel = static_cast<qint16>(level);
    Q_EMIT stateChanged();
}

void Document::tell(DocumentNotice told)
{
    if (told.kind == NoticeKind::DocumentFull)
        m_entriesWhenFull = tree.entryCount();
    const auto place = std::ranges::lower_bound(m_notices, told.kind, {}, &DocumentNotice::kind);
    if (place == m_notices.end() || place->kind != told.kind)
        m_notices.insert(place, std::move(told));
    else if (*place == told)
        return;
    else
        *place = std::move(told);
    if (m_view)
        m_view->window.noticesChanged();
}

void Document::dismiss(NoticeKind kind)
{
    if (std::erase_if(m_notices, [kind](const DocumentNotice &told) { return told.kind == kind; }) > 0 && m_view)
        m_view->window.noticesChanged();
}

const DocumentNotice *Document::notice(NoticeKind kind) const
{
    const auto found = std::ranges::find(m_notices, kind, &DocumentNotice::kind);
    return found == m_notices.end() ? nullptr : &*found;
}

// After whatever was done: what was undone is not in this window only, and what was taken out has made room.
void Document::dropUntrueNotices()
{
    if (m_notices.empty() || history.isStepOpen())
        return;
    const DocumentNotice *notSaved = notice(NoticeKind::NotSaved);
    if (notSaved && (notSaved->file.isEmpty() || notSaved->file == m_sFile) && !m_sFile.isEmpty() &&
        !hasUnsavedChanges())
        dismiss(NoticeKind::NotSaved);
    if (hasNotice(NoticeKind::DocumentFull) && tree.entryCount() < m_entriesWhenFull)
        dismiss(NoticeKind::DocumentFull);
}
