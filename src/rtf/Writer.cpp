// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Writer.h"

#include "rtf/FieldInstruction.h"
#include "rtf/Properties.h"
#include "rtf/Units.h"

#include <QTextDocument>
#include <QTextFragment>
#include <QTextList>
#include <QTextOption>
#include <QTextTable>

#include <algorithm>

namespace rtf
{

namespace
{

// Tables inside more tables than this are written as their text.
constexpr int deepestWrittenTable = 8;

constexpr int standardTab = 720; // twips; what a reader takes without \deftab

// The innermost cell that holds both positions; an invalid one if no cell does.
QTextTableCell commonCell(const QTextDocument &document, int from, int to)
{
    QTextFrame *frame = document.frameAt(from);
    for (; frame != nullptr; frame = frame->parentFrame()) {
        if (const auto *table = qobject_cast<QTextTable *>(frame)) {
            const QTextTableCell cell = table->cellAt(from);
            if (cell.isValid() && cell == table->cellAt(to)) {
                return cell;
            }
        }
    }
    return {};
}

} // namespace

Writer::Writer(const QTextDocument &document)
    : m_document(document)
    , m_formats(document.allFormats())
    , m_to(document.characterCount() - 1)
{
}

Writer::Writer(const QTextDocument &document, const QTextCursor &selection)
    : m_document(document)
    , m_formats(document.allFormats())
    , m_from(selection.selectionStart())
    , m_to(selection.selectionEnd())
    , m_isWhole(false)
{
}

QByteArray Writer::write()
{
    const QTextTableCell cell = m_isWhole ? QTextTableCell() : commonCell(m_document, m_from, m_to);
    Paragraphs place;
    if (cell.isValid()) {
        writeFrame(cell.begin(), cell.end(), place);
    } else {
        const QTextFrame *root = m_document.rootFrame();
        writeFrame(root->begin(), root->end(), place);
    }
    // A selection that ends inside a paragraph leaves that one open, so that it goes into another text without a break.
    if (place.isOpen && (m_isWhole || m_document.findBlock(m_to).position() == m_to)) {
        endParagraph(place);
    }

    Output output;
    output.raw("{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1");
    const int tab = twipsFromPixels(m_document.defaultTextOption().tabStopDistance());
    if (tab != standardTab && tab > 0) {
        output.word("\\deftab", tab);
    }
    m_tables.write(output);
    output.append(m_body);
    output.raw("}");
    return output.bytes();
}

// Writes blocks and tables in order. The last paragraph stays open, because what ends it depends on where it stands.
void Writer::writeFrame(QTextFrame::iterator begin, QTextFrame::iterator end, Paragraphs &place)
{
    for (QTextFrame::iterator it = begin; it != end; ++it) {
        if (QTextFrame *frame = it.currentFrame()) {
            if (!isSelected(frame->firstPosition() - 1, frame->lastPosition() + 1)) {
                continue;
            }
            if (place.isOpen) {
                endParagraph(place);
                place.isOpen = false;
            }
            const auto *table = qobject_cast<QTextTable *>(frame);
            if (table != nullptr && place.depth < deepestWrittenTable) {
                writeTable(*table, place.depth + 1);
            } else {
                writeFrame(frame->begin(), frame->end(), place);
            }
            continue;
        }
        const QTextBlock block = it.currentBlock();
        if (!isSelected(block.position(), block.position() + block.length() - 1)) {
            continue;
        }
        if (place.isOpen) {
            endParagraph(place);
        }
        const bool isLead = block.length() == 1 && block.blockFormat().boolProperty(TableLeadProperty);
        place.isOpen = !isLead;
        if (!isLead) {
            writeParagraph(block, place.depth, place.depth > 0 && it == begin);
        }
    }
}

void Writer::endParagraph(const Paragraphs &place)
{
    Q_UNUSED(place)
    m_body.word("\\par");
    m_body.lineEnd();
}

void Writer::writeParagraph(const QTextBlock &block, int depth, bool isFirstOfCell)
{
    writeParagraphFormat(block, depth);
    const int last = block.position() + block.length() - 1;
    const int from = std::max(m_from, block.position());
    const int to = std::min(m_to, last);
    if (block.length() == 1) {
        setChars(markWords(block, isFirstOfCell));
    } else if (from < to) {
        writeRuns(block, from, to);
    }
    closeField();
}

// Paragraph formatting goes on from one paragraph to the next, so it is written where it changes.
void Writer::writeParagraphFormat(const QTextBlock &block, int depth)
{
    const QTextList *list = block.textList();
    const QTextBlockFormat format = block.blockFormat();
    const int steps = format.indent() + (list != nullptr ? list->format().indent() : 0);
    const ParaLook look = paraLook(format, list != nullptr, steps * m_document.indentWidth());
    Output words;
    words.word("\\pard");
    if (depth > 0) {
        words.word("\\intbl");
    }
    if (depth > 1) {
        words.word("\\itap", depth);
    }
    writeParaLook(words, look, list != nullptr);
    if (list != nullptr) {
        const WriterTables::ListPlace place = m_tables.list(*list, look);
        words.word("\\ls", place.number);
        words.word("\\ilvl", place.level);
    }
    if (words.bytes() != m_paragraphWords) {
        m_body.append(words);
        m_paragraphWords = words.bytes();
    }
}

void Writer::writeRuns(const QTextBlock &block, int from, int to)
{
    const QString text = block.text();
    for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const int begin = std::max(from, fragment.position());
        const int end = std::min(to, fragment.position() + fragment.length());
        if (begin >= end) {
            continue;
        }
        const CharWords &words = charWords(fragment.charFormatIndex());
        openField(words);
        setChars(words);
        const QStringView run = QStringView(text).sliced(begin - block.position(), end - begin);
        if (!run.contains(QChar::ObjectReplacementCharacter)) {
            m_body.text(run, words.isPictureFont);
        } else {
            for (qsizetype i = 0; i < run.size(); ++i) {
                writePicture(fragment.charFormat());
            }
        }
    }
}

void Writer::openField(const CharWords &words)
{
    if (m_isInField && words.target == m_target && words.instruction == m_instruction) {
        return;
    }
    closeField();
    if (words.instruction.isEmpty() && words.target.isEmpty()) {
        return;
    }
    m_isInField = true;
    m_target = words.target;
    m_instruction = words.instruction;
    m_outerChars = m_chars;
    m_body.raw("{\\field{\\*\\fldinst{");
    m_body.text(words.instruction.isEmpty() ? hyperlinkInstruction(words.target) : words.instruction);
    m_body.raw("}}{");
    m_body.word("\\fldrslt");
}

void Writer::closeField()
{
    if (m_isInField) {
        m_body.raw("}}");
        m_chars = m_outerChars;
        m_isInField = false;
    }
}

} // namespace rtf
