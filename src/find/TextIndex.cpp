// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "find/TextIndex.h"

#include "document/Document.h"
#include "find/Workers.h"
#include "model/StoredText.h"
#include "rtf/Rtf.h"
#include "util/AnsiCodec.h"

#include <algorithm>
#include <atomic>
#include <mutex>

namespace
{

// So many entries are looked at, and so many bytes given to one worker, before others have their turn.
constexpr int slice = 4096;
constexpr std::size_t batchTexts = 256;
constexpr qsizetype batchBytes = 1 << 19;

// One waits for each worker while it is at another.
int mostBatches()
{
    return findWorkers().maxThreadCount() * 2;
}

std::optional<TextSignature> signatureOf(const QByteArray &storedText)
{
    const std::optional<QByteArray> text = soundText(storedText);
    if (!text)
        return std::nullopt;
    return TextSignature(rtf::isRtf(*text) ? rtf::toPlainText(*text) : AnsiCodec::toText(*text));
}

} // namespace

// Where the workers find the index, for as long as it is there.
struct TextIndex::Answers {
    std::mutex mutex;
    TextIndex *index = nullptr;
    std::atomic_bool isEnded = false;
};

TextIndex::TextIndex(Document &document, int rest)
    : QObject(&document)
    , m_document(document)
    , m_rest(rest)
    , m_answers(std::make_shared<Answers>())
{
    m_answers->index = this;
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &TextIndex::goOn);
    connect(&document.tree, &EntryTree::storedTextChanged, this, &TextIndex::startAnew);
    connect(&document.history, &History::changed, this, [this](ChangeKind kind) {
        if (kind == ChangeKind::Structure || kind == ChangeKind::Text)
            startAnew();
    });
    startAnew();
}

// Of the document nothing but its children is left by now.
TextIndex::~TextIndex()
{
    const std::lock_guard lock(m_answers->mutex);
    m_answers->isEnded = true;
    m_answers->index = nullptr;
}

const TextIndex *TextIndex::of(const Document &document)
{
    return document.findChild<const TextIndex *>(QString(), Qt::FindDirectChildrenOnly);
}

bool TextIndex::mayHold(const Entry &entry, const QByteArray &storedText, const SoughtTrigrams &sought) const
{
    if (sought.isEmpty())
        return true;
    const auto found = m_signed.find(entry.id());
    if (found == m_signed.end() || !found->second.signature)
        return true;
    const QByteArray &text = found->second.text;
    const bool isOther = text.constData() != storedText.constData() || text.size() != storedText.size();
    return isOther || found->second.signature->mayHold(sought);
}

qsizetype TextIndex::weight() const
{
    // What a map's node and an array's header take besides what they hold.
    constexpr qsizetype overhead = 64;
    qsizetype weight = 0;
    for (const auto &[entry, each] : m_signed)
        weight += qsizetype(sizeof(Signed)) + overhead + (each.signature ? each.signature->weight() : 0);
    return weight;
}

void TextIndex::startAnew()
{
    m_next = 1;
    m_isComplete = false;
    m_timer.start(m_rest);
}

// Gives the workers texts without a signature, as many as they can take.
void TextIndex::goOn()
{
    const EntryTree &tree = m_document.tree;
    Batch batch;
    qsizetype bytes = 0;
    for (int looked = 0; looked < slice && m_working < mostBatches(); ++looked) {
        if (m_next > tree.entryCount()) {
            if (!batch.empty())
                start(std::move(batch));
            if (m_working == 0 && !std::exchange(m_isComplete, true)) {
                letGoOfGone();
                Q_EMIT completed();
            }
            return;
        }
        const Entry *entry = tree.collection().at(m_next++);
        // What is still to be made of what was typed changes with the next letter.
        if (tree.isPending(entry))
            continue;
        const QByteArray &text = EntryTree::textLastStored(entry);
        const auto found = m_signed.find(entry->id());
        if (found != m_signed.end() && found->second.text.constData() == text.constData() &&
            found->second.text.size() == text.size())
            continue;
        batch.emplace_back(entry->id(), Signed{text, std::nullopt});
        bytes += text.size();
        if (batch.size() == batchTexts || bytes >= batchBytes) {
            start(std::exchange(batch, {}));
            bytes = 0;
        }
    }
    if (!batch.empty())
        start(std::move(batch));
    // Where all workers are busy, the next answer goes on.
    if (m_working < mostBatches())
        m_timer.start(0);
}

void TextIndex::start(Batch batch)
{
    ++m_working;
    findWorkers().start([answers = m_answers, batch = std::move(batch)]() mutable {
        for (auto &[entry, each] : batch) {
            if (answers->isEnded)
                return;
            each.signature = signatureOf(each.text);
        }
        const std::lock_guard lock(answers->mutex);
        if (TextIndex *index = answers->index)
            QMetaObject::invokeMethod(
                index, [index, batch = std::move(batch)]() mutable { index->take(std::move(batch)); },
                Qt::QueuedConnection);
    });
}

void TextIndex::take(Batch batch)
{
    --m_working;
    for (auto &[entry, each] : batch)
        m_signed.insert_or_assign(entry, std::move(each));
    if (!m_timer.isActive())
        goOn();
}

void TextIndex::letGoOfGone()
{
    if (m_signed.size() > std::size_t(m_document.tree.entryCount()))
        std::erase_if(m_signed, [this](const auto &each) { return !m_document.tree.entry(each.first); });
}
