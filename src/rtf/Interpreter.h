// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Characters.h"
#include "rtf/ControlWords.h"
#include "rtf/FieldText.h"
#include "rtf/Limits.h"
#include "rtf/Sink.h"
#include "rtf/State.h"
#include "rtf/Tables.h"
#include "rtf/Tokenizer.h"

#include <QByteArrayView>
#include <QHash>

#include <map>
#include <vector>

namespace rtf
{

// Tells a sink what an RTF text says: reads tokens, keeps the stack of formatting, fills the tables, and turns notation
// (escapes, fallbacks, merged or repeated definitions, sloppy table rows) into plain events.
class Interpreter
{
public:
    enum class Detail : quint8 { Everything, TextOnly };

    // With TextOnly, the sink gets its text in stretches whose character formatting may differ, and pictures without
    // their data.
    Interpreter(QByteArrayView rtf, Sink &sink, Detail detail = Detail::Everything);

    void run();

    // The distance of the stops that no paragraph sets (\deftab), known once the text is read.
    int defaultTab() const { return m_tables.defaultTab; }

private:
    struct Group {
        CharState chars;
        ParaState para;
        Destination destination = Destination::Content;
        quint16 fallbackLength = 1; // \uc
    };

    struct OpenField {
        std::size_t depth = 0; // of its group
        QString instruction;
        qint64 shownBefore = 0; // m_shown at its beginning
        bool isLocked = false;  // its result is never to be made anew
        FormField form;
    };

    struct StyleWord {
        const ControlWord *word;
        qint32 number;
        bool hasNumber;
    };

    struct Style {
        int basedOn = -1;
        bool isCharStyle = false;
        std::vector<StyleWord> words;
    };

    // Character styles are numbered apart from paragraph styles.
    static int charStyleKey(int number) { return -1 - qMax(0, number); }

    struct ResolvedStyle {
        CharState chars;
        ParaState para;
    };

    // What a row of a table has so far.
    struct OpenRow {
        std::size_t cells = 0;
        bool cellIsOpen = false;
    };

    // Groups and text (Interpreter.cpp)
    bool handle(const Token &token);
    void openGroup();
    void closeGroup();
    void leaveDestination(Destination destination, Destination outer);
    void onText(QByteArrayView bytes);
    void onByte(quint8 byte);
    void onSymbol(quint8 symbol);
    void onWord(const Token &token, bool isIgnorable);
    void onBinary(QByteArrayView bytes);
    void appendCharacter(char16_t unit);
    bool collectsText() const;
    bool isContent() const;
    void choosePage();
    void flush();
    void beforeCharChange();
    void takeText(QStringView text);

    // Control words (InterpreterWords.cpp)
    void apply(const ControlWord &word, qint32 number, bool hasNumber);
    void applySpecial(Special word, qint32 number);
    void applyRowWord(RowWord word, qint32 number);
    void applyStyleable(const ControlWord &word, qint32 number, bool isOn);
    void applyStyleNumber(Special kind, int number);
    void applyStyle(int key, bool isWhole);
    void applyCharDefaults();
    void setChar(CharNumber number, qint32 value);
    void setCharFlag(CharFlag flag, bool on);
    void setPara(ParaNumber number, qint32 value);
    void setParaFlag(ParaFlag flag, bool on);
    void addTab(qint32 position);
    void changeBorders(qint16 Border::*part, qint32 value);
    ResolvedStyle resolveStyle(int key, bool isWhole);

    // Destinations and what stands in the tables (InterpreterTables.cpp)
    void enter(Destination destination);
    void defineFont(int number);
    void setFontPage(DefinitionWord kind, int number);
    void applyDefinition(DefinitionWord word, qint32 number, bool hasNumber);
    void applyListDefinition(DefinitionWord word, qint32 number);
    void addFontName(QStringView text);
    void finishFont();
    int fontPlace(int number);
    void resolveDefaultFont();
    void addColorText(QStringView text);
    void addStyleName(QStringView text);
    void finishStyle();
    void finishList();
    void finishListLevel();
    void finishOverride();
    int internLegacyList();
    int internField(const QString &instruction, int around);
    qint32 commonField(qint32 one, qint32 other) const;
    void addPictureText(QByteArrayView bytes);
    void finishPicture();
    void finishField();
    void showField(const OpenField &field);
    void keepUnshown(const QString &instruction);
    int internUnshown();
    void sendText(QStringView text);
    CharState charsOfWord();

    // Paragraphs and tables (InterpreterParagraphs.cpp)
    int tableDepth() const;
    void endParagraph(int depth);
    void endContentParagraph();
    void endCell(int depth);
    void endRow(int depth, const RowState &row);
    bool isBehindCell() const;
    void takeBlanks();
    void endNestedRow();
    void closeRowsBelow(int depth);
    void finish();

    RowState &currentRow();

    Tokenizer m_tokens;
    Sink &m_sink;
    Detail m_detail;
    Tables m_tables;
    Characters m_characters;

    Group m_state;
    std::vector<Group> m_stack;
    std::size_t m_unstacked = 0; // open groups deeper than the stack goes
    bool m_groupIsFresh = false; // nothing has come since the last {
    bool m_isIgnorable = false;  // the last token was the \* of a group
    int m_fallback = 0;          // characters still to pass over after \u
    int m_pageFont = -1;         // the font that m_characters decodes for
    int m_pageNumber = 0;        // as the text has it, of m_page
    const CodePage *m_page = nullptr;

    int m_documentPage = windowsLatin;
    bool m_hasDocumentPage = false; // said by its number
    int m_defaultFont = 0;
    QHash<int, int> m_fontPlaces;
    int m_lastFontNumber = -1;
    int m_lastFontPlace = 0;
    int m_openFont = -1; // place of the font being defined
    QString m_fontName;

    Color m_color;
    std::size_t m_styleDepth = 0;
    int m_styleNumber = 0;
    Style m_style;
    QString m_styleName;
    bool m_isParagraphStyle = true;
    bool m_isCharStyle = false;
    QHash<int, Style> m_styles; // by number, or by charStyleKey() of the number
    QHash<std::pair<int, bool>, ResolvedStyle> m_resolvedStyles;

    TabKind m_tabKind = TabKind::Left;
    TabLeader m_tabLeader = TabLeader::None;
    std::map<std::array<qint32, 4>, qint32> m_tabPlaces;

    enum class BorderTarget : quint8 { None, Cell, Paragraph };

    BorderTarget m_borderTarget = BorderTarget::None;
    quint32 m_borderSides = 0;
    std::map<Borders, qint32> m_borderPlaces;

    QHash<qint32, qint32> m_listPlaces; // by \listid
    ListOverride m_override;
    int m_overrideNumber = -1;
    int m_overrideLevel = -1;
    LegacyList m_legacyList;
    QHash<LegacyList, int> m_legacyPlaces;
    bool m_legacyIsContinued = false;
    qint32 m_paragraphLegacy = 0; // the list that a \pn has said for this paragraph, in whichever group

    std::vector<OpenField> m_openFields;
    QHash<std::pair<int, QString>, int> m_fieldPlaces; // by the field around and the instruction
    QHash<QString, int> m_familyPlaces;                // of fonts, by their name
    qint64 m_shown = 0;                                // texts, pictures and paragraph ends so far
    QHash<QString, int> m_unshownPlaces;
    QString m_unshown;          // the instructions of fields that showed nothing, since the last text
    qint32 m_unshownBefore = 0; // those before the word that is being read
    qint32 m_lastUnshown = 0;   // those at the end of the paragraph before
    qint32 m_shownField = 0;    // the field of what was shown last
    int m_shownDepth = 0;       // of the table with the paragraph before

    Picture m_picture;
    int m_nibble = -1;

    RowState m_row;
    RowState m_nestedRow;
    bool m_nestedRowIsDefined = false; // since the last nested row
    QHash<int, RowState> m_nestedRows; // the last that was defined, by depth
    CellState m_cell;
    std::vector<OpenRow> m_openRows;
    CharState m_blankChars;
    QString m_blanks;            // behind a cell, as long as nothing else has come
    bool m_hasContent = false;   // text or a picture since the last paragraph
    bool m_hasParagraph = false; // any paragraph so far
    bool m_pageBreak = false;    // \page before the paragraph that comes
    bool m_sectionEnded = false; // \sect before it
    bool m_sectionsBreak = true; // the section that begins stands on a page of its own
    bool m_isPlain = false;      // \plain since the last text or paragraph
};

} // namespace rtf
