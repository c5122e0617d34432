// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "model/TextSelection.h"

#include "model/EntryText.h"
#include "rtf/CharChange.h"
#include "rtf/EditBlock.h"
#include "rtf/Families.h"
#include "rtf/PlainText.h"
#include "rtf/Rtf.h"
#include "rtf/SelectedStretches.h"
#include "rtf/VisibleText.h"
#include "util/AnsiCodec.h"

#include <QTextBlock>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

// A program's text with its CR LF, CR and LF as the document's own breaks; a lone LF stays in its paragraph.
QString withDocumentBreaks(QString text)
{
    return rtf::visibleText(std::move(text))
        .replace("\r\n"_L1, "\r"_L1)
        .replace(u'\r', QChar::ParagraphSeparator)
        .replace(u'\n', QChar::LineSeparator);
}

} // namespace

QByteArray TextSelection::TextRTF() const
{
    return rtf::write(*caret().document());
}

QString TextSelection::Text() const
{
    learnText();
    return m_known.text;
}

QString TextSelection::FindableText() const
{
    learnText();
    return m_known.findableText;
}

void TextSelection::learnText() const
{
    const QTextDocument *document = caret().document();
    // The revision stands still until a group of changes is at its end.
    if (m_known.document == document && m_known.revision == document->revision() && m_editGroups == 0)
        return;
    m_known = {document, document->revision(), {}, rtf::findableText(*document)};
    m_known.text = m_known.findableText;
    m_known.text.replace(QChar(QChar::ObjectReplacementCharacter), QChar(QChar::Space));
}

void TextSelection::removeSelection(QTextCursor &cursor)
{
    std::optional<int> firstCell;
    if (cursor.hasComplexSelection())
        firstCell = rtf::selectedStretches(cursor).front().from;
    cursor.removeSelectedText();
    if (firstCell)
        cursor.setPosition(*firstCell);
}

QString TextSelection::withParagraphs(QString text)
{
    return withDocumentBreaks(text.replace("\r\n"_L1, "\n"_L1).replace(u'\n', u'\r'));
}

QByteArray TextSelection::SelRTF() const
{
    return rtf::write(caret());
}

void TextSelection::setSelRTF(const QByteArray &rtf)
{
    if (!rtf::isRtf(rtf)) {
        insertPlain(withParagraphs(AnsiCodec::toText(rtf)));
        return;
    }
    QTextCursor cursor = caret();
    {
        const EditBlock edit(cursor);
        removeSelection(cursor);
        const int from = cursor.position();
        rtf::insert(rtf, cursor);
        rtf::boundFamilies(*cursor.document(), from, cursor.position());
    }
    setCaret(cursor);
}

QString TextSelection::SelText() const
{
    return rtf::plainText(caret());
}

void TextSelection::setSelText(const QString &text)
{
    insertPlain(withDocumentBreaks(text));
}

void TextSelection::insertPlain(const QString &text)
{
    QTextCursor cursor = caret();
    // Nothing in the place of nothing is no change.
    if (text.isEmpty() && !cursor.hasSelection())
        return;
    QTextCharFormat format = cursor.charFormat();
    if (cursor.hasSelection()) {
        // The new text looks like the beginning of what it replaces.
        const rtf::SelectedStretch replaced = rtf::selectedStretches(cursor).front();
        QTextCursor first(cursor.document());
        first.setPosition(std::min(replaced.from + 1, replaced.to));
        format = first.charFormat();
    }
    format.clearProperty(QTextFormat::ObjectType);
    {
        const EditBlock edit(cursor);
        removeSelection(cursor);
        cursor.insertText(text, format);
    }
    setCaret(cursor);
}

void TextSelection::mapSelText(const std::function<QString(const QString &)> &map)
{
    struct Piece {
        int position;
        int length;
        QString text;
        QTextCharFormat format;
    };

    QTextCursor cursor = caret();
    std::vector<Piece> pieces;
    const std::vector<rtf::SelectedStretch> selected = rtf::selectedStretches(cursor);
    bool isFirst = true;
    for (const auto [from, to] : selected) {
        for (QTextBlock block = cursor.document()->findBlock(from); block.isValid() && block.position() <= to;
             block = block.next()) {
            if (!isFirst)
                map(u"\r\n"_s);
            isFirst = false;
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                const QTextFragment fragment = it.fragment();
                const int begin = std::max(from, fragment.position());
                const int last = std::min(to, fragment.position() + fragment.length());
                if (begin >= last)
                    continue;
                const QString old = fragment.text().mid(begin - fragment.position(), last - begin);
                const QString fresh = map(old);
                if (fresh != old && !fragment.charFormat().isImageFormat())
                    pieces.push_back({begin, last - begin, fresh, fragment.charFormat()});
            }
        }
    }
    // From the end on, so that the places of those before stay right.
    int grown = 0;
    QTextCursor editor(cursor.document());
    {
        const EditBlock edit(editor);
        for (auto piece = pieces.crbegin(); piece != pieces.crend(); ++piece) {
            editor.setPosition(piece->position);
            editor.setPosition(piece->position + piece->length, QTextCursor::KeepAnchor);
            editor.insertText(piece->text, piece->format);
            grown += static_cast<int>(piece->text.size()) - piece->length;
        }
    }
    if (!selected.empty())
        cursor.setPosition(selected.back().to + grown);
    setCaret(cursor);
}

void TextSelection::changeText(const rtf::CharChange &change)
{
    QTextCursor all(caret().document());
    all.select(QTextCursor::Document);
    const bool isFirstEmpty = all.document()->firstBlock().length() == 1;
    if (change.isSeenIn(all) ||
        (isFirstEmpty && change.isSeenIn(all.document()->firstBlock().charFormat(), *all.document())))
        ::changeText(*all.document(), change);
}

void TextSelection::replaceText(const std::vector<TextReplacement> &replacements)
{
    ::replaceText(*caret().document(), replacements);
}

void TextSelection::beginEditGroup()
{
    ++m_editGroups;
    m_known = {};
    caret().beginEditBlock();
}

void TextSelection::endEditGroup()
{
    caret().endEditBlock();
    --m_editGroups;
}

void TextSelection::clearText()
{
    QTextCursor cursor(caret().document());
    const bool isClear = cursor.document()->isEmpty() && cursor.blockFormat() == QTextBlockFormat() &&
                         cursor.blockCharFormat() == QTextCharFormat();
    if (!isClear) {
        const EditBlock edit(cursor);
        cursor.select(QTextCursor::Document);
        cursor.removeSelectedText();
        cursor.setBlockFormat(QTextBlockFormat());
        cursor.setBlockCharFormat(QTextCharFormat());
    }
    cursor.setCharFormat(QTextCharFormat());
    setCaret(cursor);
}

bool TextSelection::SelHoldsCells() const
{
    return caret().hasComplexSelection();
}

int TextSelection::SelStart() const
{
    const QTextCursor cursor = caret();
    const std::vector<rtf::SelectedStretch> selected = rtf::selectedStretches(cursor);
    return rtf::textOffset(*cursor.document(), selected.empty() ? cursor.position() : selected.front().from);
}

void TextSelection::setSelStart(int start)
{
    QTextCursor cursor = caret();
    cursor.setPosition(rtf::documentPosition(*cursor.document(), std::max(start, 0)));
    setCaret(cursor);
}

int TextSelection::SelLength() const
{
    const QTextCursor cursor = caret();
    const std::vector<rtf::SelectedStretch> selected = rtf::selectedStretches(cursor);
    return selected.empty() ? 0 : rtf::textOffset(*cursor.document(), selected.back().to) - SelStart();
}

void TextSelection::setSelLength(int length)
{
    const qint64 end = qint64(SelStart()) + std::max(length, 0);
    QTextCursor cursor = caret();
    cursor.setPosition(cursor.selectionStart());
    cursor.setPosition(rtf::documentPosition(*cursor.document(),
                                             static_cast<int>(std::min<qint64>(end, std::numeric_limits<int>::max()))),
                       QTextCursor::KeepAnchor);
    setCaret(cursor);
}
