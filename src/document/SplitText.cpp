// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/SplitText.h"

#include "model/SealedDocument.h"
#include "model/ShownText.h"
#include "model/StoredText.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextFrame>

#include <memory>
#include <utility>

namespace
{

// A text as the pane shows it; null where it would not show all of it.
std::unique_ptr<SealedDocument> wholeText(const QByteArray &storedText, const QFont &base)
{
    auto document = std::make_unique<SealedDocument>();
    document->setUndoRedoEnabled(false);
    document->setDefaultFont(base);
    return readShownText(storedText, *document).state == TextState::Whole ? std::move(document) : nullptr;
}

bool isNothing(const QTextDocument &document)
{
    return document.blockCount() == 1 && document.firstBlock().length() == 1;
}

// Behind a table there is a paragraph anyway.
bool hasRoomAtEnd(const QTextDocument &document)
{
    const QTextBlock last = document.lastBlock();
    const QTextCursor before(last.previous());
    return last.length() == 1 && (!last.previous().isValid() || before.currentFrame() != document.rootFrame());
}

// The cursor in an empty paragraph at the end, which nothing of what stands before has formatted.
QTextCursor newParagraph(QTextDocument &document)
{
    QTextCursor end(&document);
    end.movePosition(QTextCursor::End);
    if (!hasRoomAtEnd(document))
        end.insertBlock(QTextBlockFormat(), QTextCharFormat());
    return end;
}

// Takes a stretch away that ends, or begins, with whole paragraphs; what is left of the paragraph at its edge keeps its
// look, which the text engine would take from the other edge where the paragraph is empty.
void takeAway(QTextDocument &document, int from, int to, const QTextBlock &kept)
{
    const QTextBlockFormat format = kept.blockFormat();
    const QTextCharFormat mark = kept.charFormat();
    QTextCursor cursor(&document);
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    cursor.setBlockFormat(format);
    cursor.setBlockCharFormat(mark);
}

QByteArray storedForm(const QTextDocument &document)
{
    return isNothing(document) ? QByteArray() : NodeTextCompressIfRequired(rtf::write(document));
}

} // namespace

std::optional<JoinedText> joinedText(const std::vector<JoinedPart> &parts, const QFont &base)
{
    JoinedText joined;
    std::unique_ptr<SealedDocument> whole;
    for (const JoinedPart &part : parts) {
        std::unique_ptr<SealedDocument> text = wholeText(part.storedText, base);
        if (!text)
            return std::nullopt;
        if (!whole) {
            whole = std::move(text);
            joined.text = part.storedText;
            joined.seam = whole->characterCount() - 1;
            continue;
        }
        const bool isSecond = &part == &parts[1];
        bool isSeam = isSecond;
        const auto append = [&](const QByteArray &rtf) {
            QTextCursor end = newParagraph(*whole);
            if (std::exchange(isSeam, false))
                joined.seam = end.position();
            rtf::append(rtf, end);
        };
        if (isNothing(*text) && part.heading.isEmpty())
            continue;
        if (!part.heading.isEmpty()) {
            SealedDocument heading;
            heading.setDefaultFont(base);
            heading.setPlainText(QString(part.heading).replace(u'\n', QChar::LineSeparator));
            append(rtf::write(heading));
        }
        if (!isNothing(*text))
            append(rtf::write(*text));
        joined.text = storedForm(*whole);
    }
    if (shownText(joined.text, base).state != TextState::Whole)
        return std::nullopt;
    return joined;
}

std::optional<SplitText> splitText(const QByteArray &storedText, const QFont &base, const QTextCursor &place)
{
    const std::unique_ptr<SealedDocument> before = wholeText(storedText, base);
    const std::unique_ptr<SealedDocument> behind = wholeText(storedText, base);
    if (!before || !behind || before->toRawText() != place.document()->toRawText())
        return std::nullopt;
    const int at = place.selectionStart();
    SplitText split;
    {
        QTextCursor cut(behind.get());
        cut.setPosition(at);
        if (!cut.atBlockStart())
            cut.insertBlock();
        takeAway(*behind, 0, cut.position(), cut.block());
    }
    {
        QTextCursor cut(before.get());
        cut.setPosition(at);
        QTextBlock last = cut.block();
        int from = at;
        // A paragraph that begins there goes as a whole, with the break before it; but a table needs one behind it.
        if (cut.atBlockStart() && last.previous().isValid() &&
            QTextCursor(last.previous()).currentFrame() == before->rootFrame()) {
            last = last.previous();
            from = at - 1;
        }
        cut.movePosition(QTextCursor::End);
        takeAway(*before, from, cut.position(), last);
    }
    split.before = storedForm(*before);
    split.behind = storedForm(*behind);
    split.words = rtf::plainText(*behind);
    return split;
}

QString firstLine(const QString &text, qsizetype longest)
{
    QString line;
    for (qsizetype at = 0; at < text.size() && line.isEmpty();) {
        qsizetype end = at;
        while (end < text.size() && text[end] != u'\n' && text[end] != u'\r' && text[end] != QChar::LineSeparator &&
               text[end] != QChar::ParagraphSeparator)
            ++end;
        line = text.sliced(at, end - at).remove(QChar::ObjectReplacementCharacter).simplified();
        at = end + 1;
    }
    if (line.size() <= longest)
        return line;
    const qsizetype blank = line.lastIndexOf(u' ', longest);
    qsizetype end = blank > 0 ? blank : longest;
    if (blank <= 0 && line[end - 1].isHighSurrogate())
        --end;
    return line.first(end);
}
