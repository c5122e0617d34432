// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/LiveTexts.h"

#include "model/EntryTree.h"
#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <QScopeGuard>
#include <QScopedValueRollback>

#include <utility>

LiveTexts::LiveTexts(EntryTree &tree)
    : m_tree(tree)
{
    connect(&tree, &EntryTree::storedTextChanged, this, &LiveTexts::forget);
}

LiveTexts::~LiveTexts() = default;

void LiveTexts::setMaximumWeight(qsizetype weight)
{
    m_maximumWeight = weight;
    dropBeyondWeight();
}

std::shared_ptr<EntryDocument> LiveTexts::find(const Entry &entry) const
{
    const auto found = m_texts.find(entry.id());
    return found == m_texts.end() ? nullptr : found->second.text;
}

std::shared_ptr<EntryDocument> LiveTexts::open(const Entry &entry, const QFont &base)
{
    if (std::shared_ptr<EntryDocument> text = find(entry))
        return text;
    auto text = std::make_shared<EntryDocument>(m_tree.storedText(&entry), base, entry.id());
    connect(&text->document(), &QTextDocument::contentsChanged, this, [this, text = text.get()] { noteChange(text); });
    connect(&text->document(), &QTextDocument::undoCommandAdded, this, [this, text = text.get()] { noteStep(text); });
    keep(text);
    return text;
}

void LiveTexts::keep(const std::shared_ptr<EntryDocument> &text)
{
    // In the place of another one of that entry, whose text may be pending.
    const Place place = m_texts.try_emplace(text->entry()).first;
    weigh(place, 0);
    place->second = {text, ++m_shows};
    weigh(place, text == m_shown ? 0 : text->weight());
}

LiveTexts::Place LiveTexts::placeOf(const std::shared_ptr<EntryDocument> &text)
{
    const Place place = text ? m_texts.find(text->entry()) : m_texts.end();
    return place == m_texts.end() || place->second.text == text ? place : m_texts.end();
}

void LiveTexts::weigh(Place place, qsizetype weight)
{
    m_weight += weight - std::exchange(place->second.weight, weight);
}

void LiveTexts::drop(Place place)
{
    weigh(place, 0);
    m_texts.erase(place);
}

void LiveTexts::setShown(std::shared_ptr<EntryDocument> text)
{
    const bool isAnother = m_shown != text;
    if (isAnother)
        endMerging();
    if (const Place before = placeOf(m_shown); before != m_texts.end())
        weigh(before, m_shown->weight());
    m_shown = std::move(text);
    if (isAnother)
        endMerging();
    if (const Place now = placeOf(m_shown); now != m_texts.end()) {
        now->second.lastShown = ++m_shows;
        weigh(now, 0);
    }
    Q_EMIT shownChanged();
    dropBeyondWeight();
}

Entry *LiveTexts::shownEntry() const
{
    return m_shown ? m_tree.entry(m_shown->entry()) : nullptr;
}

Entry *LiveTexts::entryAsShown() const
{
    Entry *entry = shownEntry();
    return entry && find(*entry) == m_shown ? entry : nullptr;
}

// The text engine is in the midst of its work when it tells of a step or a change: an error would leave it in disorder,
// or end the program where a key was typed. A step that nobody can undo, or that an error leaves half done, is taken
// back when the engine is done with it.
void LiveTexts::noteStep(EntryDocument *text) noexcept
{
    if (text->isJoiningStep())
        return;
    m_isStepBroken = true;
    if (std::uncaught_exceptions() > 0)
        return;
    try {
        makeReady(*text);
        text->makeRoom();
        Q_EMIT stepAdded(text->entry(), text->deed());
        m_isStepBroken = false;
    } catch (...) {
        m_stepError = std::current_exception();
    }
}

void LiveTexts::noteChange(EntryDocument *text) noexcept
{
    if (text == m_folded)
        return;
    try {
        if (std::exchange(m_isStepBroken, false))
            takeBackStep(*text);
        else
            storeChange(*text);
    } catch (...) {
        detail::reportCurrentException("LiveTexts noteChange");
    }
}

void LiveTexts::takeBackStep(EntryDocument &text)
{
    const std::exception_ptr error = std::exchange(m_stepError, nullptr);
    text.undo();
    forgetUndone(text.entry());
    Q_EMIT undoneForgotten();
    if (error)
        std::rethrow_exception(error);
}

// What may fail is done before the history takes a step down. Null when the text is not stored.
Entry *LiveTexts::makeReady(const EntryDocument &text)
{
    Entry *entry = m_tree.entry(text.entry());
    if (!entry || text.state() != TextState::Whole)
        return nullptr;
    // One that was given up while it was shown is what the user sees, and goes on with.
    if (m_shown.get() == &text && find(*entry) != m_shown)
        keep(m_shown);
    if (!m_tree.isPending(entry))
        m_tree.resolvePendingText();
    return entry;
}

void LiveTexts::storeChange(EntryDocument &text)
{
    text.takeFont();
    Entry *entry = makeReady(text);
    if (!entry)
        return;
    if (find(*entry).get() == &text && !m_tree.isPending(entry))
        m_tree.setPendingText(entry, [this, id = text.entry()] { return m_texts.at(id).text->toStored(); });
    Q_EMIT changed(text.entry());
}

void LiveTexts::store()
{
    if (m_shown && m_shown.get() != m_folded)
        storeChange(*m_shown);
}

void LiveTexts::forget(const Entry *entry)
{
    if (const Place place = m_texts.find(entry->id()); place != m_texts.end())
        drop(place);
}

// What is typed next is not to be merged with what was there before the step that was undone.
void LiveTexts::step(EntryId entry, bool (QTextDocument::*isPossible)() const, QTextCursor (EntryDocument::*go)())
{
    const auto kept = m_texts.find(entry);
    if (kept == m_texts.end() || !(kept->second.text->document().*isPossible)())
        throw RunTimeError(ErrorNumber::InvalidCall);
    const std::shared_ptr<EntryDocument> text = kept->second.text;
    m_steppedAt = (*text.*go)();
    text->place.caret = m_steppedAt.position();
    text->endMerging();
}

void LiveTexts::undoText(EntryId entry)
{
    step(entry, &QTextDocument::isUndoAvailable, &EntryDocument::undo);
}

void LiveTexts::redoText(EntryId entry)
{
    step(entry, &QTextDocument::isRedoAvailable, &EntryDocument::redo);
}

void LiveTexts::forgetUndone(EntryId entry) noexcept
{
    if (const auto kept = m_texts.find(entry); kept != m_texts.end())
        kept->second.text->document().clearUndoRedoStacks(QTextDocument::RedoStack);
}

std::shared_ptr<LiveText> LiveTexts::takeOut(EntryId entry)
{
    const Place place = m_texts.find(entry);
    if (place == m_texts.end())
        return nullptr;
    if (const Entry *there = m_tree.entry(entry); there && m_tree.isPending(there))
        m_tree.resolvePendingText();
    std::shared_ptr<EntryDocument> text = place->second.text;
    drop(place);
    return text;
}

void LiveTexts::putBack(EntryId, std::shared_ptr<LiveText> text)
{
    if (auto back = std::dynamic_pointer_cast<EntryDocument>(text))
        keep(back);
}

void LiveTexts::endMerging() noexcept
{
    if (m_shown)
        m_shown->endMerging();
}

// Lets the history keep the texts that the steps of this one lead to. It comes back as it is.
bool LiveTexts::fold(EntryDocument &text)
{
    QTextDocument &document = text.document();
    if (!m_folder || !(document.isUndoAvailable() || document.isRedoAvailable()))
        return true;
    const QScopedValueRollback folded(m_folded, &text);
    int at = 0;
    const auto goTo = [&](int stepsBack) {
        for (; at < stepsBack && document.isUndoAvailable(); ++at)
            text.undo();
        for (; at > stepsBack && document.isRedoAvailable(); --at)
            text.redo();
    };
    const auto comeBack = qScopeGuard([&] { goTo(0); });
    return m_folder(text.entry(), [&](int stepsBack) {
        goTo(stepsBack);
        return text.toStored();
    });
}

void LiveTexts::dropBeyondWeight()
{
    try {
        while (m_weight > m_maximumWeight && dropOldest())
            continue;
    } catch (...) {
        // Memory is short, and what holds too much of it stays until another text is shown.
        return;
    }
}

bool LiveTexts::dropOldest()
{
    auto oldest = m_texts.end();
    for (auto kept = m_texts.begin(); kept != m_texts.end(); ++kept) {
        const bool isOlder = oldest == m_texts.end() || kept->second.lastShown < oldest->second.lastShown;
        if (kept->second.text != m_shown && isOlder)
            oldest = kept;
    }
    if (oldest == m_texts.end())
        return false;
    // What is still to be stored of it is made while it lives.
    if (const Entry *entry = m_tree.entry(oldest->first); entry && m_tree.isPending(entry))
        m_tree.resolvePendingText();
    if (!fold(*oldest->second.text))
        return false;
    drop(oldest);
    return true;
}
