// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// What goes from the text to the clipboard and comes from there, or by a drop.

#include "platform/RichTextBox.h"

#include "document/LeftOutText.h"
#include "document/Ports.h"
#include "document/TextDeed.h"
#include "model/BoundedHtml.h"
#include "model/HtmlTokens.h"
#include "model/LayoutStrain.h"
#include "model/Limits.h"
#include "model/TextBounds.h"
#include "platform/HtmlPictures.h"
#include "platform/PastedPicture.h"
#include "platform/RichTextMime.h"
#include "platform/ScrollBarAhead.h"
#include "rtf/EditBlock.h"
#include "rtf/Families.h"
#include "rtf/Limits.h"
#include "rtf/Pictures.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"
#include "rtf/VisibleText.h"

#include <QDropEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTextTable>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

// A pasted picture is shown no wider than the text, but even in a narrow pane it can be made out.
constexpr int leastPictureWidth = 480; // pixels

const QString tooLong = u"This is more text than one entry can show, so nothing was put in. It is still where it was "
                        "copied from."_s;
const QString badPicture = u"This picture is damaged, or larger than an entry can hold, so nothing was put in."_s;
const QString onlyItsWords =
    u"This has so many tables or so much formatting that only its words were put into the entry."_s;
const QString wordsInstead =
    u"This has so many tables or so much formatting that showing it would take minutes. Do you "
    "want to put only its words into the entry?"_s;

// How many cells the tables of a frame have, those left out that lie wholly in a stretch of the document. They count
// twice for each table around theirs.
qsizetype cellsIn(const QTextFrame *frame, int from, int to, int depth = 0)
{
    qsizetype cells = 0;
    for (const QTextFrame *child : frame->childFrames()) {
        if (child->firstPosition() > from && child->lastPosition() < to)
            continue;
        const auto *table = qobject_cast<const QTextTable *>(child);
        if (table)
            cells += (qsizetype(table->rows()) * table->columns()) << depth;
        cells += cellsIn(child, from, to, depth + (table ? 1 : 0));
    }
    return cells;
}

// How many tables there are around a place.
int tablesAround(const QTextCursor &cursor)
{
    int tables = 0;
    for (const QTextFrame *frame = cursor.currentFrame(); frame; frame = frame->parentFrame())
        tables += qobject_cast<const QTextTable *>(frame) ? 1 : 0;
    return tables;
}

// The pictures of a stretch of the document, from the last to the first; each is one character.
std::vector<std::pair<int, QTextImageFormat>> picturesIn(const QTextDocument &document, int from, int to)
{
    std::vector<std::pair<int, QTextImageFormat>> pictures;
    for (QTextBlock block = document.findBlock(from); block.isValid() && block.position() < to; block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.charFormat().isImageFormat())
                continue;
            const int end = std::min(to, fragment.position() + fragment.length());
            for (int at = std::max(from, fragment.position()); at < end; ++at)
                pictures.emplace_back(at, fragment.charFormat().toImageFormat());
        }
    }
    std::ranges::reverse(pictures);
    return pictures;
}

// Whether the page is nothing but a picture, as browsers copy one.
bool isPictureAlone(const QString &html)
{
    return html.size() < 10'000 && html.contains("<img"_L1, Qt::CaseInsensitive) &&
           plainTextOfHtml(html).trimmed().isEmpty();
}

} // namespace

QMimeData *RichTextBox::createMimeDataFromSelection() const
{
    const QTextCursor cursor = textCursor();
    auto *mimeData = new QMimeData;
    mimeData->setData(RichTextMime::written, rtf::write(cursor));
    mimeData->setHtml(htmlWithPictures(cursor.selection().toHtml(), *document()));
    mimeData->setText(rtf::plainText(cursor).replace("\r\n"_L1, "\n"_L1));
    return mimeData;
}

bool RichTextBox::canInsertFromMimeData(const QMimeData *source) const
{
    return !Locked() &&
           (RichTextMime::isIn(*source) || source->hasHtml() || source->hasText() || PastedPicture::isIn(*source));
}

void RichTextBox::insertFromMimeData(const QMimeData *source)
{
    if (!source || !canInsertFromMimeData(source))
        return;
    const QByteArray richText = RichTextMime::textOf(*source);
    const bool hasPicture = PastedPicture::isIn(*source);
    std::optional<TextDeed> deed;
    if (!m_isDropping)
        deed.emplace(*this, "pasting in"_L1);
    if (!richText.isEmpty())
        pasteRTF(richText);
    else if (source->hasHtml() && !(hasPicture && isPictureAlone(source->html())))
        pasteHtml(source->html(), source->text());
    else if (source->hasText() && !hasPicture)
        pasteText(withParagraphs(source->text()));
    else
        pastePicture(PastedPicture::fileIn(*source));
    ensureCursorVisible();
}

void RichTextBox::dropEvent(QDropEvent *event)
{
    const QScopedValueRollback dropping(m_isDropping, true);
    const bool isMove = event->source() == viewport() && event->dropAction() == Qt::MoveAction;
    const TextDeed deed(*this, isMove ? "moving of text in"_L1 : "dropping in"_L1);
    QTextEdit::dropEvent(event);
}

// A drop is still going on in the program that it comes from, which waits for its end.
void RichTextBox::tellUser(const QString &text)
{
    const auto inform = [this, text] {
        if (m_dialogs)
            m_dialogs->inform(text);
    };
    if (m_isDropping)
        QMetaObject::invokeMethod(this, inform, Qt::QueuedConnection);
    else
        inform();
}

// Whether so much text can be laid out in the place of the selection.
bool RichTextBox::hasRoomFor(const QString &text) const
{
    const QTextCursor cursor = textCursor();
    const int from = cursor.selectionStart();
    const int to = cursor.selectionEnd();
    const int left = document()->characterCount() - (to - from);
    const int paragraphsLeft =
        document()->blockCount() + document()->findBlock(from).blockNumber() - document()->findBlock(to).blockNumber();
    const qsizetype paragraphs = paragraphsLeft + text.count(u'\r') + text.count(QChar::ParagraphSeparator);
    return mayBeLaidOut(text, LineFeed::WithinParagraph) == text.size() && left + text.size() <= limits::longestText &&
           paragraphs <= limits::mostParagraphs;
}

// The same of a text that looks like what is around it.
bool RichTextBox::hasRoomForPlain(const QString &text) const
{
    if (!hasRoomFor(text))
        return false;
    if (text.size() <= limits::harmlessText)
        return true;
    QTextDocument pasted;
    pasted.setUndoRedoEnabled(false);
    pasted.setDefaultFont(m_font);
    QTextCursor start(&pasted);
    // Its lists are not those of the text, which the text engine would look for.
    QTextBlockFormat paragraph = textCursor().blockFormat();
    paragraph.setObjectIndex(-1);
    QTextCharFormat letters = currentCharFormat();
    letters.setObjectIndex(-1);
    start.setBlockFormat(paragraph);
    QString words = text;
    words.replace("\r\n"_L1, "\r"_L1).replace(u'\n', QChar::LineSeparator);
    start.insertText(words, letters);
    return isBearableWith(pasted);
}

// Whether so many cells more can be laid out in the place of the selection.
bool RichTextBox::hasRoomForCells(qsizetype cells) const
{
    const QTextCursor cursor = textCursor();
    if (cells == 0)
        return true;
    const qsizetype there = cellsIn(document()->rootFrame(), cursor.selectionStart(), cursor.selectionEnd());
    return there + (cells << tablesAround(cursor)) <= limits::mostCells;
}

// Whether what is pasted can be laid out together with what is there, which it may replace.
bool RichTextBox::isBearableWith(const QTextDocument &pasted) const
{
    LayoutStrain strain = layoutStrain(pasted);
    const QTextCursor cursor = textCursor();
    if (cursor.selectionEnd() - cursor.selectionStart() < document()->characterCount() - 1)
        strain += layoutStrain(*document());
    return strain.isBearable();
}

void RichTextBox::putText(const QString &text)
{
    const ScrollBarAhead bar(*this, text.size(), text.count(u'\r'));
    setSelText(text);
}

bool RichTextBox::pasteText(const QString &text)
{
    if (!hasRoomForPlain(text)) {
        tellUser(tooLong);
        return false;
    }
    putText(text);
    return true;
}

bool RichTextBox::pasteWords(const QString &text)
{
    if (!hasRoomForPlain(text)) {
        tellUser(tooLong);
        return false;
    }
    if (m_isDropping)
        tellUser(onlyItsWords);
    else if (m_dialogs && m_dialogs->ask(wordsInstead) != Answer::Yes)
        return false;
    putText(text);
    return true;
}

bool RichTextBox::pasteRTF(const QByteArray &rtf)
{
    const auto [text, cells] = rtf::plainContent(rtf);
    if (!hasRoomForCells(cells))
        return pasteWords(text);
    if (rtf.size() > limits::mostUnlooked && !hasRoomFor(text)) {
        tellUser(tooLong);
        return false;
    }
    QTextDocument pasted;
    pasted.setDefaultFont(m_font);
    rtf::read(rtf, pasted);
    if (!isBearableWith(pasted))
        return pasteWords(text);
    const ScrollBarAhead bar(*this, pasted.characterCount(), pasted.blockCount());
    setSelRTF(rtf);
    if (const QString parts = leftOutParts(rtf); !parts.isEmpty())
        Q_EMIT partsLeftOut(parts);
    return true;
}

void RichTextBox::pasteHtml(const QString &html, const QString &text)
{
    const BoundedHtml bounded = boundedHtml(html);
    const bool isLong = html.size() > limits::mostUnlooked;
    const bool isTooMuch = bounded.isTooMuch || !hasRoomForCells(bounded.cells);
    const QString words = text.isEmpty() ? withParagraphs(plainTextOfHtml(html)) : withParagraphs(text);
    if (isTooMuch) {
        pasteWords(words);
        return;
    }
    if (isLong && !hasRoomFor(words)) {
        tellUser(tooLong);
        return;
    }
    QTextDocument pasted;
    pasted.setUndoRedoEnabled(false);
    pasted.setDefaultFont(m_font);
    pasted.setHtml(bounded.html);
    rtf::boundFamilies(pasted, 0, pasted.characterCount());
    if (!isBearableWith(pasted)) {
        pasteWords(words);
        return;
    }
    const ScrollBarAhead bar(*this, pasted.characterCount(), pasted.blockCount());
    insertHtmlFragment(bounded);
}

bool RichTextBox::pastePicture(const QByteArray &file)
{
    const int widest = std::max(leastPictureWidth, viewport()->width() - qRound(2 * document()->documentMargin()));
    const std::optional<rtf::Picture> picture = PastedPicture::fromFile(file, widest);
    if (!picture) {
        tellUser(badPicture);
        return false;
    }
    const TextDeed deed(*this, "insertion of a picture in"_L1);
    QTextCursor cursor = textCursor();
    {
        const EditBlock edit(cursor);
        removeSelection(cursor);
        qint64 pixels = rtf::mostTextPixels;
        cursor.insertImage(rtf::addPicture(*document(), *picture, cursor.charFormat(), pixels));
    }
    setTextCursor(cursor);
    return true;
}

void RichTextBox::insertHtmlFragment(const BoundedHtml &bounded)
{
    QTextCursor cursor = textCursor();
    {
        const EditBlock edit(cursor);
        removeSelection(cursor);
        const int from = cursor.position();
        cursor.insertFragment(QTextDocumentFragment::fromHtml(bounded.html, document()));
        holdPictures(from, cursor.position(), bounded.pictures);
        rtf::boundFamilies(*document(), from, cursor.position());
    }
    setTextCursor(cursor);
}

// Puts the pictures that came with a web page in the places that name them, and takes out what is only named.
void RichTextBox::holdPictures(int from, int to, const std::vector<QByteArray> &files)
{
    const int widest = std::max(leastPictureWidth, viewport()->width() - qRound(2 * document()->documentMargin()));
    qint64 pixels = rtf::mostTextPixels;
    QTextCursor cursor(document());
    for (const auto &[at, named] : picturesIn(*document(), from, to)) {
        cursor.setPosition(at);
        cursor.setPosition(at + 1, QTextCursor::KeepAnchor);
        bool isNumber = false;
        const std::size_t number =
            named.name().sliced(std::min(named.name().size(), BoundedHtml::pictureName.size())).toULong(&isNumber);
        std::optional<rtf::Picture> picture;
        if (isNumber && named.name().startsWith(BoundedHtml::pictureName) && number < files.size())
            picture = PastedPicture::fromFile(files[number], widest);
        if (!picture) {
            cursor.removeSelectedText();
            continue;
        }
        QTextCharFormat around = named;
        for (const int property : {int(QTextFormat::ImageName), int(QTextFormat::ImageWidth),
                                   int(QTextFormat::ImageHeight), int(QTextFormat::ObjectType)})
            around.clearProperty(property);
        QTextImageFormat held = rtf::addPicture(*document(), *picture, around, pixels);
        if (named.width() > 0 && named.height() > 0) {
            held.setWidth(named.width());
            held.setHeight(named.height());
        }
        cursor.setCharFormat(held);
    }
}
