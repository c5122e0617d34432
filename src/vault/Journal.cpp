// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/Journal.h"

#include "document/Document.h"
#include "document/Ports.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool isToBeMade(const LoggedChange &change)
{
    const auto *text = std::get_if<logged::Text>(&change);
    return text && text->state == logged::Text::State::ToBeMade;
}

// Whether a document was a file's, or holds something that a new one does not.
bool isWorthKeeping(const Document &document)
{
    const Entry *root = document.tree.root();
    return root && (!document.m_sFile.isEmpty() || document.tree.entryCount() > 1 ||
                    !EntryTree::textLastStored(root).isEmpty());
}

} // namespace

Journal::Journal(JournalKeeper &keeper, int number, Document &document)
    : m_keeper(keeper)
    , m_number(number)
    , m_document(&document)
{
    document.history.setWitness(this);
    connect(&document.texts, &LiveTexts::changed, this, &Journal::noteTyping);
    // What is unsaved from the start, as what was imported, or because its file went, is taken down without a change.
    connect(&document.history, &History::positionChanged, this, [this] { m_keeper.wake(); });
}

Journal::~Journal()
{
    if (m_document)
        m_document->history.setWitness(nullptr);
}

void Journal::noteException()
{
    const ErrorReport error = currentError();
    noteFailed(error.description, errorDescription(static_cast<ErrorNumber>(error.number)));
}

void Journal::begin(EntryId typedIn)
{
    // A text that is being typed into is taken as it was before.
    const Entry *typed = m_document->tree.entry(typedIn);
    if (!typed || !m_document->tree.isPending(typed))
        m_document->tree.resolvePendingText();
    auto base = std::make_shared<RecoveryBase>();
    base->facts = facts();
    base->snapshot = snapshotOf(m_document->outline());
    if (!m_changedAt.isValid())
        noteChange();
    reset();
    m_base = std::move(base);
    m_begun = true;
    m_keeper.wake();
}

void Journal::beginIfUnsaved()
{
    if (!m_begun && m_document->hasUnsavedChanges() && isWorthKeeping(*m_document) && !m_document->history.isStepOpen())
        begin();
}

DocumentFacts Journal::facts() const
{
    DocumentFacts facts;
    facts.file = m_document->m_sFile;
    facts.origin = m_document->m_sRecoveredFrom;
    facts.caption = m_document->caption();
    facts.formatVersion = m_document->m_iFileFormatVersion;
    facts.isFromOutline = m_document->m_bFromOutline;
    facts.isSaved = !m_document->hasUnsavedChanges();
    facts.baseFont = m_document->baseFont().toString();
    if (const std::optional<FileStamp> &stamp = m_document->fileRecord.own) {
        facts.fileSize = stamp->identity ? stamp->identity->size : -1;
        facts.fileTime = stamp->identity ? stamp->identity->modified : -1;
        facts.digestBeingMade = stamp->digest;
    }
    return facts;
}

EntryId Journal::selected() const
{
    const Entry *entry = m_document->tree.selected();
    return entry ? entry->id() : EntryId::None;
}

void Journal::reset()
{
    m_begun = false;
    m_broken = false;
    m_open.clear();
    m_touched.clear();
    m_move.reset();
    m_typing.reset();
    m_followed.reset();
    m_lines.clear();
    m_done = 0;
    m_lastRecord = 0;
    m_baseSize = 0;
    m_isHandedOverAsChanged = false;
    m_base.reset();
    m_records.clear();
}

// Nothing is to be recovered any more.
void Journal::drop()
{
    const bool wasOnDisk = m_begun || m_broken;
    reset();
    m_changedAt = {};
    if (wasOnDisk)
        m_keeper.discard(m_number);
    if (std::exchange(m_isTold, false))
        m_document->dismiss(NoticeKind::NoRecovery);
}

void Journal::stepBegins() noexcept
{
    guard([&] { endTyping(); });
}

void Journal::aboutToApply(const Change &change) noexcept
{
    guard([&] {
        // What is open and closed alone is nothing to be lost.
        if (m_begun)
            endTyping();
        else if (!std::holds_alternative<change::Expand>(change))
            begin();
    });
}

void Journal::carriedOut(const Change &inverse) noexcept
{
    guard([&] {
        if (const auto *typed = std::get_if<change::TextStep>(&inverse); typed && !m_begun)
            begin(typed->entry);
        if (m_begun && !(m_move && m_move->target))
            m_open.push_back(loggedChange(inverse, m_document->outline()));
    });
}

void Journal::takenBack() noexcept
{
    guard([&] {
        if (!m_open.empty())
            m_open.pop_back();
        else if (m_begun)
            // It began within the step, behind what is taken back now.
            drop();
    });
}

void Journal::stepEnded(const History::StepInfo &info, EntryId selectedBefore, size_t changes) noexcept
{
    guard([&] {
        const auto own = static_cast<qint64>(m_open.size());
        takeInTouchedTexts();
        if (m_open.empty())
            return;
        const auto *typed = std::get_if<logged::Text>(&m_open.front());
        if (typed && std::ranges::all_of(m_open, [&](const LoggedChange &change) {
                return isToBeMade(change) && std::get<logged::Text>(change).entry == typed->entry;
            })) {
            noteTypedStep(typed->entry, info, selectedBefore, changes);
            m_open.clear();
            return;
        }
        endTyping();
        Line line;
        line.first = line.last = info.serial;
        if (own == static_cast<qint64>(m_open.size()) && own == static_cast<qint64>(changes))
            line.changes = own;
        makeTexts();
        addLine(line, {info.name, info.time, selectedBefore, std::exchange(m_open, {})});
    });
}

void Journal::expandedAlone() noexcept
{
    guard([&] {
        // A text that was changed without a step went on with one from before.
        for (const EntryId entry : std::exchange(m_touched, {}))
            noteLooseTyping(entry);
        if (m_open.empty())
            return;
        add(LogRecord::Kind::Expansion, {QString(), QDateTime(), EntryId::None, std::exchange(m_open, {})});
    });
}

void Journal::aboutToMove(const History::StepInfo &info, bool forth, size_t changes) noexcept
{
    guard([&] {
        if (m_begun)
            endTyping();
        else
            begin();
        Move move{info, forth, static_cast<qint64>(changes)};
        findTarget(move);
        m_move = move;
    });
}

// Which line's undoing or redoing is the same.
void Journal::findTarget(Move &move) const
{
    const quint64 serial = move.info.serial;
    const auto isStep = [&](const Line &line) {
        return line.first == serial && line.last == serial && line.changes == move.changes;
    };
    const auto isItsUndoing = [&](const Line &line) { return line.undoes == serial && line.changes == move.changes; };
    const Line *before = m_done > 0 ? &m_lines[m_done - 1] : nullptr;
    const Line *behind = m_done < m_lines.size() ? &m_lines[m_done] : nullptr;
    const Line *undone = before && (move.forth ? isItsUndoing(*before) : isStep(*before)) ? before : nullptr;
    const Line *redone = behind && (move.forth ? isStep(*behind) : isItsUndoing(*behind)) ? behind : nullptr;
    if (undone)
        move.kind = LogRecord::Kind::Undo;
    else if (redone)
        move.kind = LogRecord::Kind::Redo;
    if (undone || redone)
        move.target = (undone ? undone : redone)->record;
}

void Journal::moved(bool done) noexcept
{
    guard([&] {
        const std::optional<Move> move = std::exchange(m_move, std::nullopt);
        if (!done)
            m_open.clear();
        else if (move)
            apply(*move);
    });
}

void Journal::apply(const Move &move)
{
    if (move.target) {
        if (move.kind == LogRecord::Kind::Undo)
            --m_done;
        else
            ++m_done;
        add(move.kind, {}, move.target);
        return;
    }
    makeTexts();
    if (m_open.empty())
        return;
    Line line;
    if (move.forth)
        line.first = line.last = move.info.serial;
    else
        line.undoes = move.info.serial;
    line.changes = move.changes;
    // Its name is read behind "Undo ", too.
    const QString name = move.forth ? move.info.name : u"undoing of "_s + move.info.name;
    addLine(line, {name, move.info.time, EntryId::None, std::exchange(m_open, {})});
}

void Journal::saved() noexcept
{
    guard([&] {
        if (!m_document->hasUnsavedChanges())
            drop();
    });
    // A journal that could not be written has nothing more to write.
    if (m_document && m_broken && !m_document->hasUnsavedChanges())
        drop();
}

void Journal::startedAnew() noexcept
{
    guard([&] { drop(); });
}

void Journal::aboutToGo() noexcept
{
    if (!m_document)
        return;
    reset();
    m_document = nullptr;
    try {
        m_keeper.discard(m_number);
        Q_EMIT ended(m_number);
    } catch (...) {
        return;
    }
}

void Journal::leave()
{
    if (!m_document)
        return;
    m_document->history.setWitness(nullptr);
    disconnect(&m_document->texts, nullptr, this, nullptr);
    if (m_document->hasUnsavedChanges()) {
        handOver();
        m_keeper.leave(m_number);
    } else {
        m_keeper.discard(m_number);
    }
    m_document = nullptr;
}
