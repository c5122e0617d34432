// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/EntryDocument.h"

#include "document/LeftOutText.h"
#include "model/EntryText.h"
#include "model/ShownText.h"
#include "rtf/Rtf.h"
#include "util/MakeRoom.h"

#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextTable>

#include <algorithm>
#include <utility>
#include <vector>

namespace
{

// Of the document's frame: the place of the base font in the list of those that the text has had.
constexpr int baseFontProperty = QTextFormat::UserProperty + 0x1000;
// The same of the format of the first paragraph's mark.
constexpr int firstLookProperty = QTextFormat::UserProperty + 0x1001;

// What the text engine keeps of a document, of a paragraph that is laid out, and of a step that can be undone; bytes.
constexpr qsizetype documentWeight = 8000;
constexpr qsizetype paragraphWeight = 1500;
constexpr qsizetype stepWeight = 100;

} // namespace

int frameCount(const QTextDocument &document)
{
    // Asking for the outermost frame makes it, which the engine does not survive where memory is refused.
    if (document.isEmpty())
        return 0;
    int count = 0;
    std::vector<QTextFrame *> waiting{document.rootFrame()};
    while (!waiting.empty()) {
        QTextFrame *frame = waiting.back();
        waiting.pop_back();
        const QList<QTextFrame *> inner = frame->childFrames();
        waiting.insert(waiting.end(), inner.begin(), inner.end());
        count += static_cast<int>(inner.size());
        if (const auto *table = qobject_cast<QTextTable *>(frame))
            count += table->rows() * table->columns();
    }
    return count;
}

// Filled before it is shown: no layout runs meanwhile, and its undo history begins behind the text.
EntryDocument::EntryDocument(const QFont &base, EntryId entry)
    : m_entry(entry)
    , m_fonts{base}
{
    m_document.setUndoRedoEnabled(false);
    m_document.setDefaultFont(base);
}

EntryDocument::EntryDocument(const QByteArray &storedText, const QFont &base, EntryId entry)
    : EntryDocument(base, entry)
{
    // That there is no text is as good as any.
    m_stored = storedText.isNull() ? QByteArray("") : storedText;
    begin(readShownText(storedText, m_document));
}

EntryDocument::EntryDocument(const Inflated &text, const QFont &base)
    : EntryDocument(base, EntryId::None)
{
    readEntryText(text.text, m_document);
    begin(text);
}

// From here on the text that was read is worked on.
void EntryDocument::begin(const Inflated &text)
{
    m_state = text.state;
    m_document.setUndoRedoEnabled(true);
    m_document.setModified(false);
    m_firstLooks = {m_document.firstBlock().charFormat()};
    m_leftOut = m_state == TextState::Whole ? leftOutParts(text.text) : QString();
    m_pictures = text.text.contains("\\pict") ? text.text.size() : 0;
    m_characters = m_document.characterCount();
    m_sinceRead = m_sinceTaken = {true, {}, m_characters, frameCount(m_document)};
    QObject::connect(&m_document, &QTextDocument::documentLayoutChanged, &m_document, [this] { m_hasLayout = true; });
    QObject::connect(&m_document, &QTextDocument::contentsChange, &m_document,
                     [this](int at, int removed, int added) { noteStretch(at, removed, added); });
    QObject::connect(&m_document, &QTextDocument::undoCommandAdded, &m_document, [this] {
        m_hasNewStep = true;
        m_marks.erase(m_marks.upper_bound(m_lastDepth), m_marks.end());
    });
    QObject::connect(&m_document, &QTextDocument::contentsChanged, &m_document, [this] {
        m_isChanged = true;
        noteChange();
        keepFirstLook();
        m_lastDepth = depth();
    });
}

void EntryDocument::noteStretch(int at, int removed, int added)
{
    const int before = std::exchange(m_characters, m_document.characterCount());
    // A new layout is told of all that there is as if it had come just now.
    if (before == m_characters && removed == 0 && added == m_characters)
        return;
    m_added += added;
    m_isStretchTold = true;
    for (Changes *changes : {&m_sinceRead, &m_sinceTaken}) {
        changes->stretch.note(at, removed, added);
        // In some cases the engine tells of more than there was.
        changes->isKnown =
            changes->isKnown && before - removed + added == m_characters && changes->stretch.removed >= 0;
    }
}

// With a layout each change says where it is; what says nothing has changed nothing.
void EntryDocument::noteChange()
{
    m_characters = m_document.characterCount();
    if (!std::exchange(m_isStretchTold, false) && !m_hasLayout)
        m_sinceRead.isKnown = m_sinceTaken.isKnown = false;
}

EntryDocument::~EntryDocument() = default;

bool EntryDocument::isAsRead() const
{
    return !m_stored.isNull() && !m_document.isUndoAvailable();
}

EntryDocument::Changes EntryDocument::takeChanges()
{
    return std::exchange(m_sinceTaken, {true, {}, m_document.characterCount(), frameCount(m_document)});
}

QByteArray EntryDocument::toStored() const
{
    return isAsRead() ? m_stored : NodeTextCompressIfRequired(rtf::write(m_document));
}

EntryDocument::Uncompressed EntryDocument::toUncompressed() const
{
    return isAsRead() ? Uncompressed{m_stored, true} : Uncompressed{rtf::write(m_document), false};
}

// The document's frame keeps which one it is, so that undoing brings an earlier one back.
std::size_t EntryDocument::fontIndex() const
{
    return static_cast<std::size_t>(m_document.rootFrame()->frameFormat().intProperty(baseFontProperty));
}

const QFont &EntryDocument::font() const
{
    return m_fonts[fontIndex()];
}

void EntryDocument::setFont(const QFont &font)
{
    m_fonts[fontIndex()] = font;
    takeFont();
}

void EntryDocument::changeFont(const QFont &font)
{
    if (this->font() == font)
        return;
    QTextFrameFormat format = m_document.rootFrame()->frameFormat();
    format.setProperty(baseFontProperty, static_cast<int>(m_fonts.size()));
    m_fonts.push_back(font);
    m_document.rootFrame()->setFrameFormat(format);
    takeFont();
}

// No step of the text engine holds how the mark of the first paragraph looked, so undoing would leave that as it is.
// The frame keeps it, as part of the step that changed it.
void EntryDocument::keepFirstLook()
{
    const bool hasStep = std::exchange(m_hasNewStep, false);
    QTextFrameFormat format = m_document.rootFrame()->frameFormat();
    const QTextCharFormat &kept = m_firstLooks[static_cast<std::size_t>(format.intProperty(firstLookProperty))];
    QTextCursor first(m_document.firstBlock());
    if (m_isKeepingLook || first.blockCharFormat() == kept)
        return;
    const QScopedValueRollback keeping(m_isKeepingLook, true);
    if (m_isStepping) {
        first.setBlockCharFormat(kept);
        return;
    }
    const QScopedValueRollback joining(m_isJoiningStep, hasStep);
    format.setProperty(firstLookProperty, static_cast<int>(m_firstLooks.size()));
    m_firstLooks.push_back(first.blockCharFormat());
    if (hasStep)
        first.joinPreviousEditBlock();
    else
        first.beginEditBlock();
    m_document.rootFrame()->setFrameFormat(format);
    first.endEditBlock();
    m_hasNewStep = false;
}

void EntryDocument::makeRoom()
{
    makeRoomBehind(m_firstLooks, 1);
}

// The text control merges what is typed with what was typed before only in a text that counts as changed.
void EntryDocument::endMerging() noexcept
{
    m_document.setModified(false);
}

void EntryDocument::markStep(Selection before, std::optional<Selection> behind) noexcept
{
    try {
        m_marks[depth()] = {before, behind};
    } catch (...) {
        // The caret is put where the step was.
        return;
    }
}

QTextCursor EntryDocument::selected(const Selection &selection)
{
    QTextCursor cursor(&m_document);
    const int end = m_document.characterCount() - 1;
    cursor.setPosition(std::min(selection.anchor, end));
    cursor.setPosition(std::min(selection.position, end), QTextCursor::KeepAnchor);
    return cursor;
}

QTextCursor EntryDocument::undo()
{
    const QScopedValueRollback stepping(m_isStepping, true);
    const auto mark = m_marks.find(depth());
    QTextCursor there(&m_document);
    m_document.undo(&there);
    return mark == m_marks.end() ? there : selected(mark->second.before);
}

QTextCursor EntryDocument::redo()
{
    const QScopedValueRollback stepping(m_isStepping, true);
    QTextCursor there(&m_document);
    m_document.redo(&there);
    const auto mark = m_marks.find(depth());
    return mark == m_marks.end() || !mark->second.behind ? there : selected(*mark->second.behind);
}

void EntryDocument::takeFont()
{
    // The document would be laid out anew even for the same one.
    if (m_document.defaultFont() != font())
        m_document.setDefaultFont(font());
}

qsizetype EntryDocument::weight() const
{
    const qsizetype characters = m_document.characterCount() + m_added;
    return documentWeight + characters * qsizetype(sizeof(QChar)) + m_document.blockCount() * paragraphWeight +
           (m_document.availableUndoSteps() + m_document.availableRedoSteps()) * stepWeight + m_pictures;
}
