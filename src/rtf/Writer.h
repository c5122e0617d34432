// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/CellRange.h"
#include "rtf/Looks.h"
#include "rtf/Output.h"
#include "rtf/WriterTables.h"

#include <QHash>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextFrame>

#include <optional>
#include <vector>

class QTextDocument;
class QTextTable;
class QTextTableCell;
class QTextTableFormat;

namespace rtf
{

struct ColumnWidths;

// Writes a text document, or the part that a cursor selects, as RTF.
class Writer
{
public:
    explicit Writer(const QTextDocument &document);
    Writer(const QTextDocument &document, const QTextCursor &selection);

    QByteArray write();

private:
    // The character formatting in words: what each word of the writer's table is set to.
    struct CharWords {
        std::vector<int> values; // as charWords says
        QStringList fields;      // their instructions, outermost first
        QString unshown;         // those of fields before the word that show nothing, one a line
        bool isPictureFont = false;
    };

    // A field whose result is being written, and what was in force around it.
    struct OpenField {
        QString instruction;
        std::vector<int> chars;
        QByteArray paragraphWords;
    };

    // Where paragraphs are being written.
    struct Paragraphs {
        int depth = 0;
        bool isOpen = false; // one is written but not ended
    };

    // Where a paragraph stands in its cell, if it is in one.
    struct CellPlace {
        bool isFirst = false;
        bool isLast = false;
    };

    void writeFrame(QTextFrame::iterator begin, QTextFrame::iterator end, Paragraphs &place);
    void writeTable(const CellRange &cells, int depth);
    void writeCellSpacing(const QTextTableFormat &format);
    void writeRowHeight(const CellRange &cells, int row);
    void writeRowDefinition(const CellRange &cells, const ColumnWidths &widths, int row);
    void writeTableWidth(const QTextTableFormat &format, const ColumnWidths &widths);
    void writePreferredWidth(const char *kindWord, const char *word, const PreferredWidth &width);
    void writeCellDefinition(const CellRange &cells, const QTextTableCell &cell, int row);
    void writeEmptyCell(int depth);
    void writeBorder(Output &output, const BorderLook &border);
    void endParagraph();
    void endWith(const char *word);
    void writeParagraph(const QTextBlock &block, int depth, CellPlace place);
    void writeParagraphFormat(const QTextBlock &block, int depth);
    void writeListLabel();
    void writeParaLook(Output &output, const ParaLook &look, bool isInList);
    void setParagraphWords(const Output &words);
    void writeRuns(const QTextBlock &block, int begin, int end);
    void writeRunWithPictures(QStringView run, const CharWords &words, const QTextCharFormat &format);
    void writeUnshown(const QString &instructions);
    void openFields(const QStringList &wanted);
    void closeFields(std::size_t left);
    std::size_t commonFields(const QStringList &fields) const;
    void setChars(const CharWords &words);
    bool endSuperscript();
    void writePicture(const Picture &picture);
    const CharWords &charWords(int formatIndex);
    const CharWords &markWords(const QTextBlock &block, bool isFirstOfCell);
    CharWords wordsOf(const QTextCharFormat &format);

    const QTextDocument &m_document;
    const QList<QTextFormat> m_formats;
    int m_from = 0;
    int m_to = 0;
    bool m_isWhole = true;            // what is written, is written from its beginning to its end
    std::optional<CellRange> m_cells; // written instead of a stretch of the text
    WriterTables m_tables;
    Output m_body;
    QHash<int, CharWords> m_charWords;
    QHash<int, CharWords> m_cellMarkWords;
    std::vector<int> m_chars; // in force
    std::vector<OpenField> m_fields;
    QString m_lastUnshown;       // at the end of the paragraph before
    QByteArray m_paragraphWords; // in force; empty before the first paragraph
    Output m_paragraph;          // the words for the paragraph that is being written
    int m_plainFormatIndex = -1; // of the paragraph before, if it is in no list
    int m_plainDepth = 0;
    WriterTables::ListPlace m_listPlace; // of the paragraph being written, if it is in a list
};

} // namespace rtf
