// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Writer.h"

#include "rtf/FieldInstruction.h"
#include "rtf/Limits.h"
#include "rtf/Pictures.h"
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
    , m_cells(selectedCells(selection))
{
    m_isWhole = m_cells.has_value();
}

QByteArray Writer::write()
{
    const QTextTableCell cell = m_isWhole ? QTextTableCell() : commonCell(m_document, m_from, m_to);
    Paragraphs place;
    if (m_cells) {
        writeTable(*m_cells, 1);
    } else if (cell.isValid()) {
        writeFrame(cell.begin(), cell.end(), place);
    } else {
        const QTextFrame *root = m_document.rootFrame();
        writeFrame(root->begin(), root->end(), place);
    }
    // A selection that ends inside a paragraph leaves that one open, so that it goes into another text without a break.
    if (place.isOpen && (m_isWhole || m_document.findBlock(m_to).position() == m_to)) {
        endParagraph();
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
            // The paragraph before a frame ends where the frame begins, and the one behind it begins where it ends.
            if (!m_isWhole && (frame->lastPosition() < m_from || frame->firstPosition() > m_to)) {
                continue;
            }
            if (place.isOpen) {
                endParagraph();
                place.isOpen = false;
            }
            closeFields(0);
            const auto *table = qobject_cast<QTextTable *>(frame);
            if (table != nullptr && place.depth < deepestTable) {
                writeTable(allCells(*table), place.depth + 1);
            } else {
                writeFrame(frame->begin(), frame->end(), place);
            }
            continue;
        }
        const QTextBlock block = it.currentBlock();
        if (!m_isWhole && (block.position() + block.length() <= m_from || block.position() > m_to)) {
            continue;
        }
        if (place.isOpen) {
            endParagraph();
        }
        const bool isLead = block.length() == 1 && block.blockFormat().boolProperty(TableLeadProperty);
        place.isOpen = !isLead;
        if (!isLead) {
            QTextFrame::iterator next = it;
            ++next;
            writeParagraph(block, place.depth,
                           place.depth > 0 ? CellPlace{it == begin, next == end} : CellPlace{false, false});
        }
    }
}

void Writer::endParagraph()
{
    endWith("\\par");
    m_body.lineEnd();
}

// Ends a paragraph or a cell. Where that is an empty one in superscript, its end alone is.
void Writer::endWith(const char *word)
{
    if (!endSuperscript()) {
        m_body.word(word);
        return;
    }
    m_body.raw("{");
    m_body.word("\\super");
    m_body.word(word);
    m_body.raw("}");
}

void Writer::writeParagraph(const QTextBlock &block, int depth, CellPlace place)
{
    const int length = block.length() - 1;
    const int begin = m_isWhole ? 0 : std::max(0, m_from - block.position());
    const int end = m_isWhole ? length : std::min(length, m_to - block.position());
    const QString behind = place.isLast ? QString() : block.blockFormat().stringProperty(OpenFieldsProperty);
    const QStringList fieldsBehind = behind.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const QTextBlock::iterator first = block.begin();
    closeFields(commonFields(first.atEnd() ? fieldsBehind : charWords(first.fragment().charFormatIndex()).fields));
    writeParagraphFormat(block, depth);
    const bool hasLabel = !m_listPlace.label.isEmpty() && begin == 0;
    if (length == 0) {
        setChars(markWords(block, place.isFirst));
        if (hasLabel) {
            writeListLabel();
        }
    } else if (begin < end) {
        if (hasLabel) {
            setChars(charWords(block.begin().fragment().charFormatIndex()));
            writeListLabel();
        }
        writeRuns(block, begin, end);
    }
    // A field goes on where its paragraph and the text before agree that it does.
    closeFields(commonFields(fieldsBehind));
    if (length != 0) {
        endSuperscript();
    }
    setParagraphWords(m_paragraph);
    const QString last = end == length ? block.blockFormat().stringProperty(LastFieldsProperty) : QString();
    if (last != m_lastUnshown) {
        writeUnshown(last);
    }
    m_lastUnshown = last;
}

// Paragraph formatting goes on from one paragraph to the next, so it is written where it changes.
void Writer::writeParagraphFormat(const QTextBlock &block, int depth)
{
    const int formatIndex = block.blockFormatIndex();
    if (formatIndex == m_plainFormatIndex && depth == m_plainDepth) {
        return;
    }
    const QTextBlockFormat format = m_formats.at(formatIndex).toBlockFormat();
    const QTextList *list = format.objectIndex() >= 0 ? block.textList() : nullptr;
    m_plainFormatIndex = list == nullptr ? formatIndex : -1;
    m_plainDepth = depth;
    m_listPlace = {};

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
        m_listPlace = m_tables.list(*list, look);
        words.word("\\ls", m_listPlace.number);
        words.word("\\ilvl", m_listPlace.level);
    }
    m_paragraph = words;
    setParagraphWords(words);
}

// The label once more, as text, for readers that know no lists. Those that do pass over it.
void Writer::writeListLabel()
{
    m_body.raw("{");
    m_body.word("\\listtext");
    if (m_listPlace.font >= 0) {
        m_body.word("\\f", m_listPlace.font);
    }
    m_body.text(m_listPlace.label, m_listPlace.font >= 0 && m_tables.isPictureFont(m_listPlace.font));
    m_body.word("\\tab");
    m_body.raw("}");
}

void Writer::setParagraphWords(const Output &words)
{
    if (words.bytes() != m_paragraphWords) {
        m_body.append(words);
        m_paragraphWords = words.bytes();
    }
}

// The characters [begin, end) of a paragraph. Positions in a document are dear, so places are counted along.
void Writer::writeRuns(const QTextBlock &block, int begin, int end)
{
    const QString text = block.text();
    int offset = 0;
    QString unshown; // before the word that is being written
    for (QTextBlock::iterator it = block.begin(); offset < end && !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const int first = std::max(begin, offset);
        const bool isWhole = first == offset;
        offset += fragment.length();
        const int last = std::min(end, offset);
        if (first >= last) {
            unshown = fragment.charFormat().stringProperty(UnshownFieldsProperty);
            continue;
        }
        const CharWords &words = charWords(fragment.charFormatIndex());
        if (words.unshown != unshown) {
            unshown = words.unshown;
            if (isWhole) {
                endSuperscript();
                closeFields(commonFields(words.fields));
                setParagraphWords(m_paragraph);
                writeUnshown(unshown);
            }
        }
        openFields(words.fields);
        setParagraphWords(m_paragraph);
        setChars(words);
        const QStringView run = QStringView(text).sliced(first, last - first);
        if (!run.contains(QChar::ObjectReplacementCharacter)) {
            m_body.text(run, words.isPictureFont);
        } else {
            writeRunWithPictures(run, words, fragment.charFormat());
        }
    }
}

// The character of a picture may also stand in a text from elsewhere, where it is a character like any other.
void Writer::writeRunWithPictures(QStringView run, const CharWords &words, const QTextCharFormat &format)
{
    const std::optional<Picture> picture = pictureOf(m_document, format.toImageFormat());
    qsizetype begin = 0;
    for (qsizetype i = 0; picture && i < run.size(); ++i) {
        if (run[i] == QChar::ObjectReplacementCharacter) {
            m_body.text(run.sliced(begin, i - begin), words.isPictureFont);
            writePicture(*picture);
            begin = i + 1;
        }
    }
    m_body.text(run.sliced(begin), words.isPictureFont);
}

void Writer::writeUnshown(const QString &instructions)
{
    for (const QString &instruction : instructions.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        m_body.raw("{\\field{\\*\\fldinst{");
        m_body.text(instruction);
        m_body.raw("}}{");
        m_body.word("\\fldrslt");
        m_body.raw("}}");
    }
}

// Closes the fields that what comes is not in, and opens those that it is in. Paragraph formatting that was set in a
// field ends with it.
void Writer::openFields(const QStringList &wanted)
{
    closeFields(commonFields(wanted));
    for (auto i = qsizetype(m_fields.size()); i < wanted.size(); ++i) {
        endSuperscript();
        m_fields.push_back({wanted[i], m_chars, m_paragraphWords});
        m_body.raw("{\\field{\\*\\fldinst{");
        m_body.text(wanted[i]);
        m_body.raw("}}{");
        m_body.word("\\fldrslt");
    }
}

void Writer::closeFields(std::size_t left)
{
    while (m_fields.size() > left) {
        m_body.raw("}}");
        m_chars = m_fields.back().chars;
        if (m_paragraphWords != m_fields.back().paragraphWords) {
            m_paragraphWords = m_fields.back().paragraphWords;
            m_plainFormatIndex = -1;
        }
        m_fields.pop_back();
    }
}

// How many of the open fields these begin with.
std::size_t Writer::commonFields(const QStringList &fields) const
{
    const auto differs = std::ranges::mismatch(m_fields, fields, {}, &OpenField::instruction);
    return std::size_t(differs.in1 - m_fields.begin());
}

} // namespace rtf
