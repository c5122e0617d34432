// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Interpreter.h"

#include <algorithm>

namespace rtf
{

CharState CharState::plain()
{
    CharState state;
    state[CharNumber::Size] = 24;
    state[CharNumber::Foreground] = -1;
    state[CharNumber::Background] = -1;
    state[CharNumber::Pattern] = -1;
    state[CharNumber::Highlight] = -1;
    state[CharNumber::UnderlineColor] = -1;
    state[CharNumber::Scale] = 100;
    return state;
}

ParaState ParaState::plain()
{
    ParaState state;
    state[ParaNumber::OutlineLevel] = 9;
    state[ParaNumber::Shade] = -1;
    return state;
}

Interpreter::Interpreter(QByteArrayView rtf, Sink &sink, Detail detail)
    : m_tokens(rtf)
    , m_sink(sink)
    , m_detail(detail)
{
    constexpr std::size_t usualDepth = 16;
    m_stack.reserve(usualDepth);
    m_tables.fonts.emplace_back();
    m_state.chars = CharState::plain();
    m_state.para = ParaState::plain();
}

void Interpreter::run()
{
    m_sink.begin(m_tables);
    while (handle(m_tokens.next())) {
    }
    finish();
    m_sink.end();
}

// Whether the text goes on behind the token.
bool Interpreter::handle(const Token &token)
{
    const bool isInDocument = !m_stack.empty();
    switch (token.kind) {
    case Token::Kind::End:
        return false;
    case Token::Kind::GroupOpen:
        openGroup();
        return true;
    case Token::Kind::GroupClose:
        if (m_stack.size() + m_unstacked <= 1) {
            return !isInDocument;
        }
        closeGroup();
        return true;
    default:
        break;
    }
    if (!isInDocument) {
        return true;
    }
    const bool wasFresh = std::exchange(m_groupIsFresh, false);
    const bool wasIgnorable = std::exchange(m_isIgnorable, false);
    switch (token.kind) {
    case Token::Kind::Word:
        onWord(token, wasIgnorable);
        break;
    case Token::Kind::Symbol:
        onSymbol(token.byte);
        break;
    case Token::Kind::Text:
        onText(token.bytes);
        break;
    case Token::Kind::Byte:
        onByte(token.byte);
        break;
    default:
        onBinary(token.bytes);
    }
    // Only the first thing in a group can make all of it ignorable.
    m_isIgnorable = wasFresh && token.kind == Token::Kind::Symbol && token.byte == '*';
    return true;
}

void Interpreter::openGroup()
{
    m_groupIsFresh = true;
    m_fallback = 0;
    if (m_stack.size() >= deepestGroup) {
        ++m_unstacked;
        return;
    }
    m_stack.push_back(m_state);
}

void Interpreter::closeGroup()
{
    m_groupIsFresh = false;
    m_fallback = 0;
    if (m_unstacked > 0) {
        --m_unstacked;
        return;
    }
    const Group &outer = m_stack.back();
    const Destination destination = m_state.destination;
    if (destination != Destination::Content || outer.destination != destination) {
        flush();
    } else if (outer.chars != m_state.chars) {
        beforeCharChange();
    }
    leaveDestination(destination, outer.destination);
    const qint32 legacyList = m_state.para[ParaNumber::LegacyList];
    m_state = m_stack.back();
    m_stack.pop_back();
    if (destination == Destination::LegacyList && m_state.destination != destination) {
        m_state.para[ParaNumber::LegacyList] = legacyList;
    }
    if (!m_openFields.empty() && m_stack.size() < m_openFields.back().depth) {
        finishField();
    }
}

// What the end of a group completes.
void Interpreter::leaveDestination(Destination destination, Destination outer)
{
    if (destination == Destination::StyleSheet && m_stack.size() == m_styleDepth + 1) {
        finishStyle();
    }
    if (destination == outer) {
        return;
    }
    switch (destination) {
    case Destination::FontTable:
        finishFont();
        resolveDefaultFont();
        break;
    case Destination::List:
        finishList();
        break;
    case Destination::ListLevel:
        finishListLevel();
        break;
    case Destination::Override:
        finishOverride();
        break;
    case Destination::LegacyList:
        m_paragraphLegacy = m_legacyIsContinued ? 0 : internLegacyList();
        setPara(ParaNumber::LegacyList, m_paragraphLegacy);
        break;
    case Destination::Picture:
        finishPicture();
        break;
    case Destination::ShapeText:
        endContentParagraph();
        break;
    default:
        break;
    }
}

bool Interpreter::isContent() const
{
    return m_state.destination == Destination::Content || m_state.destination == Destination::ShapeText;
}

// Whether characters mean anything where the text stands.
bool Interpreter::collectsText() const
{
    switch (m_state.destination) {
    case Destination::Content:
    case Destination::ShapeText:
    case Destination::FontTable:
    case Destination::ColorTable:
    case Destination::StyleSheet:
    case Destination::LevelText:
    case Destination::LegacyBefore:
    case Destination::LegacyAfter:
    case Destination::FieldInstruction:
    case Destination::FormEntry:
    case Destination::FormText:
        return true;
    default:
        return false;
    }
}

void Interpreter::onText(QByteArrayView bytes)
{
    if (m_state.destination == Destination::Picture) {
        addPictureText(bytes);
        return;
    }
    if (m_fallback > 0) {
        const qsizetype passed = std::min<qsizetype>(m_fallback, bytes.size());
        m_fallback -= static_cast<int>(passed);
        bytes = bytes.sliced(passed);
    }
    if (!bytes.isEmpty() && collectsText()) {
        choosePage();
        m_characters.appendPlain(bytes);
    }
}

void Interpreter::onByte(quint8 byte)
{
    if (m_fallback > 0) {
        --m_fallback;
        return;
    }
    if (m_state.destination == Destination::LevelText && byte < 0x20) {
        m_characters.appendRaw(byte);
    } else if (collectsText()) {
        choosePage();
        m_characters.appendByte(byte);
    }
}

void Interpreter::onSymbol(quint8 symbol)
{
    switch (symbol) {
    case '\r':
    case '\n':
        if (isContent()) {
            endParagraph(tableDepth());
        }
        break;
    case '~':
        appendCharacter(QChar::Nbsp);
        break;
    case '-':
        appendCharacter(QChar::SoftHyphen);
        break;
    case '_':
        appendCharacter(0x2011);
        break;
    case '\t':
        appendCharacter('\t');
        break;
    case '\\':
    case '{':
    case '}': {
        const char byte = static_cast<char>(symbol);
        onText(QByteArrayView(&byte, 1));
        break;
    }
    default:
        // \| \: and the like mark index entries and formulas; they show nothing.
        break;
    }
}

void Interpreter::onWord(const Token &token, bool isIgnorable)
{
    const ControlWord *word = findControlWord(token.bytes);
    if (word != nullptr) {
        apply(*word, token.number, token.hasNumber);
    } else if (isIgnorable) {
        enter(Destination::Skip);
    }
}

void Interpreter::onBinary(QByteArrayView bytes)
{
    if (m_state.destination == Destination::Picture && m_detail == Detail::Everything) {
        m_picture.data.append(bytes);
    }
}

void Interpreter::appendCharacter(char16_t unit)
{
    if (m_fallback > 0) {
        --m_fallback;
    } else if (collectsText()) {
        choosePage();
        m_characters.appendRaw(unit);
    }
}

// Lets the characters be decoded as the font in force says, or the font that is being named.
void Interpreter::choosePage()
{
    const bool isFontName = m_state.destination == Destination::FontTable;
    const int place = isFontName ? qMax(m_openFont, 0) : m_state.chars[CharNumber::Font];
    if (place == m_pageFont && isContent()) {
        return;
    }
    m_pageFont = isContent() ? place : -1;
    const Font &font = m_tables.fonts[std::size_t(place)];
    // Labels and names of styles are in the document's own code page, whatever font there is.
    const bool isDocuments = m_hasDocumentPage && (m_state.destination == Destination::LevelText ||
                                                   m_state.destination == Destination::StyleSheet);
    const int number = font.codePage != 0 && !isDocuments ? font.codePage : m_documentPage;
    const bool hasGlyphs = font.symbol && isContent();
    // A font without a name is shown in the default one, whose glyphs its bytes then mean.
    const QString &family = font.family.isEmpty() ? m_tables.fonts[0].family : font.family;
    const bool isSymbol = family.startsWith(QLatin1StringView("Symbol"), Qt::CaseInsensitive);
    if (m_page == nullptr || number != m_pageNumber) {
        m_pageNumber = number;
        m_page = &codePage(number);
    }
    m_characters.setPage(*m_page, !hasGlyphs ? Characters::Glyphs::None
                                  : isSymbol ? Characters::Glyphs::Symbol
                                             : Characters::Glyphs::Other);
}

// Hands the characters so far to whom they belong, before something changes.
void Interpreter::flush()
{
    if (m_characters.isEmpty()) {
        return;
    }
    takeText(m_characters.text());
    m_characters.clear();
}

// What follows looks different. Where looks do not count, the text goes on, but no character reaches across.
void Interpreter::beforeCharChange()
{
    if (!isContent()) {
        return;
    }
    if (m_detail == Detail::Everything) {
        flush();
    } else {
        m_characters.complete();
    }
}

void Interpreter::takeText(QStringView text)
{
    switch (m_state.destination) {
    case Destination::Content:
    case Destination::ShapeText:
        if (isBehindCell() && std::ranges::all_of(text, [](QChar c) { return c == QLatin1Char(' '); })) {
            m_blankChars = m_blanks.isEmpty() ? m_state.chars : m_blankChars;
            m_blanks += text;
        } else if (!text.isEmpty()) {
            takeBlanks();
            sendText(text);
            m_hasContent = true;
            ++m_shown;
            m_shownField = m_state.chars[CharNumber::Link];
            m_isPlain = false;
        }
        break;
    case Destination::FontTable:
        addFontName(text);
        break;
    case Destination::ColorTable:
        addColorText(text);
        break;
    case Destination::StyleSheet:
        addStyleName(text);
        break;
    case Destination::LevelText:
        m_tables.lists.back().levels.back().text += text;
        break;
    case Destination::LegacyBefore:
        m_legacyList.before += text;
        break;
    case Destination::LegacyAfter:
        m_legacyList.after += text;
        break;
    case Destination::FieldInstruction:
        if (!m_openFields.empty()) {
            m_openFields.back().instruction += text;
        }
        break;
    case Destination::FormEntry:
        if (!m_openFields.empty() && !m_openFields.back().form.entries.isEmpty()) {
            m_openFields.back().form.entries.back() += text;
        }
        break;
    case Destination::FormText:
        if (!m_openFields.empty()) {
            m_openFields.back().form.text += text;
        }
        break;
    default:
        break;
    }
}

} // namespace rtf
