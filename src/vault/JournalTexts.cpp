// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// How a journal takes down a text that goes on: the whole of it while it is short, and of a longer one what of it was
// changed, which costs the same however long it is.

#include "vault/Journal.h"

#include "document/Document.h"
#include "util/Procedure.h"

using namespace Qt::StringLiterals;

namespace
{

// In characters. To write out one that is shorter costs no more.
constexpr int shortLiveText = 1000;

// What takes down the same text once more goes on from it.
logged::Text *followedIn(LoggedStep &step)
{
    logged::Text *text = step.changes.empty() ? nullptr : std::get_if<logged::Text>(&step.changes.front());
    return text && text->state == logged::Text::State::Followed ? text : nullptr;
}

} // namespace

logged::Text Journal::textOf(EntryId id)
{
    const Entry *entry = m_document->tree.entry(id);
    if (!entry)
        return {id, QByteArray(), logged::Text::State::ToBeMade, {}};
    const std::shared_ptr<EntryDocument> live = m_document->texts.find(*entry);
    if (!live || live->state() != TextState::Whole)
        return {id, m_document->tree.storedText(entry), logged::Text::State::Stored, {}};
    if (!live->isAsRead() && live->document().characterCount() > shortLiveText) {
        if (std::shared_ptr<const logged::TextPath> path = pathTo(live))
            return {id, QByteArray(), logged::Text::State::Followed, std::move(path)};
    }
    EntryDocument::Uncompressed text = live->toUncompressed();
    return {
        id, std::move(text.text), text.isStored ? logged::Text::State::Stored : logged::Text::State::Uncompressed, {}};
}

// Null where it has to be the whole text.
std::shared_ptr<const logged::TextPath> Journal::pathTo(const std::shared_ptr<EntryDocument> &live)
{
    const QTextDocument &document = live->document();
    if (m_lost.lock() == live)
        return nullptr;
    auto path = std::make_shared<logged::TextPath>();
    if (m_followed.lock() == live) {
        if (std::optional<LiveStretch> stretch = liveStretch(document, live->takeChanges())) {
            path->stretches.push_back(std::move(*stretch));
            return path;
        }
    }
    m_followed.reset();
    // What it was read from leads to it, unless most of it was changed since, or something that cannot be told.
    const EntryDocument::Changes &changes = live->changesSinceRead();
    logged::TextPath::Start start{live->storedWhenRead(), BaseFont(document.defaultFont())};
    std::optional<LiveStretch> stretch;
    if (!start.storedText.isNull() && changes.stretch.added <= document.characterCount() / 2)
        stretch = liveStretch(document, changes);
    if (!stretch) {
        start.storedText.clear();
        stretch = wholeStretch(document);
    }
    if (!stretch)
        return nullptr;
    path->stretches.push_back(std::move(*stretch));
    path->start = std::move(start);
    live->takeChanges();
    m_followed = live;
    return path;
}

// A record that was not handed over yet gives way to what follows it.
void Journal::replaceWaiting(LogRecord &waiting, LoggedStep step)
{
    const logged::Text *before = followedIn(waiting.step);
    logged::Text *now = followedIn(step);
    if (before && now && !now->path->start) {
        auto path = std::make_shared<logged::TextPath>(*before->path);
        path->stretches.insert(path->stretches.end(), now->path->stretches.begin(), now->path->stretches.end());
        now->path = std::move(path);
    } else if (before && !now) {
        // The writer never gets to where it led.
        m_followed.reset();
    }
    waiting.step = std::move(step);
}

void Journal::noteLost()
{
    m_inFlight = false;
    if (!m_document || !m_begun)
        return;
    remark(u"%1: a text was taken down anew"_s.arg(m_document->caption()));
    m_lost = m_followed;
    guard([&] { begin(); });
}
