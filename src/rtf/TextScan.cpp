// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/TextScan.h"

#include "rtf/ControlWords.h"
#include "rtf/Tokenizer.h"

#include <QVarLengthArray>

#include <algorithm>

#include <string_view>
#include <utility>

// Nothing here has to be right about the text, only never to leave out or put in anything between two characters that
// stand side by side in it. What is not plain in this respect is given up: then the text has to be read.
namespace rtf
{

namespace
{

constexpr char small(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c;
}

bool isPlainAscii(char16_t unit)
{
    return unit >= 0x20 && unit < 0x7F;
}

// Whether a \u stands for one character that is not ASCII and is not taken for it without regard to case. A symbol
// font's may mean anything.
bool isForeign(qint32 number)
{
    constexpr qint32 longS = 0x17F;
    constexpr qint32 kelvinSign = 0x212A;
    const qint32 unit = number < 0 ? number + 0x10000 : number;
    const bool isSurrogate = unit >= 0xD800 && unit <= 0xDFFF;
    const bool isGlyph = unit >= 0xF000 && unit <= 0xF0FF;
    return unit >= 0x80 && unit < 0xFFFC && !isSurrogate && !isGlyph && unit != longS && unit != kelvinSign;
}

// The text so far in small letters, with the words that only look or mean something left out.
class Reader
{
public:
    Reader(QByteArrayView rtf, std::string_view needle, bool needleHasBlank)
        : m_tokens(rtf)
        , m_needle(needle)
        , m_needleHasBlank(needleHasBlank)
        , m_text(rtf.size(), Qt::Uninitialized)
        , m_end(m_text.data())
    {
    }

    bool mayHoldNeedle()
    {
        for (;;) {
            const Token token = m_tokens.next();
            if (token.kind == Token::Kind::End || (token.kind == Token::Kind::GroupClose && m_depth == 1)) {
                return std::string_view(m_text.constData(), m_end).find(m_needle) != std::string_view::npos;
            }
            if (!pass(token)) {
                return true;
            }
        }
    }

private:
    // A field that is open, and its result where that is open in it; both by their depth.
    struct OpenField {
        int depth = 0;
        int result = 0;
        const char *text = nullptr; // where its own begins
    };

    bool isInField() const { return !m_fields.isEmpty() && m_fields.last().result == 0; }

    // Whether the text stays clear behind the token.
    bool pass(const Token &token)
    {
        switch (token.kind) {
        case Token::Kind::GroupOpen:
            m_isFresh = true;
            return ++m_depth < deepestClear;
        case Token::Kind::GroupClose:
            return closeGroup();
        default:
            break;
        }
        const bool wasFresh = std::exchange(m_isFresh, false);
        const bool wasIgnorable = std::exchange(m_isIgnorable, false);
        switch (token.kind) {
        case Token::Kind::Word:
            return m_depth == 0 || passWord(token, wasIgnorable);
        case Token::Kind::Symbol:
            m_isIgnorable = wasFresh && token.byte == '*';
            return token.byte != '\\' && token.byte != '{' && token.byte != '}' ? true : append(char(token.byte));
        case Token::Kind::Text:
            return append(token.bytes);
        case Token::Kind::Byte:
            return !isPlainAscii(token.byte) || append(char(token.byte));
        default:
            return true;
        }
    }

    bool append(QByteArrayView bytes)
    {
        // As much as was read at most.
        m_end = std::transform(bytes.begin(), bytes.end(), m_end, small);
        return !isInField();
    }

    bool append(char byte) { return append(QByteArrayView(&byte, 1)); }

    bool closeGroup()
    {
        m_isFresh = false;
        if (m_depth == 0) {
            return true;
        }
        --m_depth;
        if (m_fields.isEmpty()) {
            return true;
        }
        if (m_fields.last().result > m_depth) {
            m_fields.last().result = 0;
        }
        if (m_fields.last().depth <= m_depth) {
            return true;
        }
        // A hyperlink without a text shows its address.
        const bool hasText = m_fields.last().text != m_end;
        m_fields.removeLast();
        return hasText;
    }

    bool passWord(const Token &token, bool isIgnorable)
    {
        const ControlWord *word = findControlWord(token.bytes);
        if (word == nullptr) {
            if (isIgnorable && m_depth > 1) {
                m_tokens.skipGroup();
            }
            return true;
        }
        if (word->action == Action::Destination) {
            // The outermost group stays text.
            return m_depth <= 1 || passDestination(static_cast<Destination>(word->argument));
        }
        if (word->action != Action::Special) {
            return true;
        }
        switch (static_cast<Special>(word->argument)) {
        case Special::Unicode:
            return isForeign(token.number);
        case Special::Row:
        case Special::NestedRow:
            // Cells that are part of another lose their own break.
            return false;
        default:
            return true;
        }
    }

    bool passDestination(Destination destination)
    {
        switch (destination) {
        case Destination::Content:
            return !isInField();
        case Destination::Container:
        case Destination::ShapeText:
        case Destination::NestedRow:
            return false;
        case Destination::Field:
            m_fields.append({m_depth, 0, m_end});
            return true;
        case Destination::FieldInstruction:
            return !isInField() ? skip() : passInstruction();
        case Destination::FieldResult:
            if (!isInField()) {
                return skip();
            }
            m_fields.last().result = m_depth;
            return true;
        case Destination::Picture:
            // It counts as a blank.
            return !m_needleHasBlank && skip();
        default:
            // What names fonts, styles and lists, and what is passed over altogether.
            return skip();
        }
    }

    bool skip()
    {
        m_tokens.skipGroup();
        return true;
    }

    // A hyperlink's instruction shows nothing; others may stand for characters.
    bool passInstruction()
    {
        int groups = 1;
        Token token = m_tokens.next();
        for (; token.kind == Token::Kind::GroupOpen; token = m_tokens.next()) {
            ++groups;
        }
        constexpr QByteArrayView hyperlink("HYPERLINK ");
        if (token.kind != Token::Kind::Text || !token.bytes.trimmed().startsWith(hyperlink.chopped(1)) ||
            groups > deepestClear) {
            return false;
        }
        for (; groups > 1; --groups) {
            m_tokens.skipGroup();
            m_tokens.next();
        }
        return skip();
    }

    static constexpr int deepestClear = 100;

    Tokenizer m_tokens;
    const std::string_view m_needle;
    const bool m_needleHasBlank;
    QByteArray m_text;
    char *m_end;
    QVarLengthArray<OpenField, 4> m_fields;
    int m_depth = 0;
    bool m_isFresh = false;
    bool m_isIgnorable = false;
};

} // namespace

TextScan::TextScan(QStringView expression)
{
    QByteArray run;
    for (const QChar c : expression) {
        if (!isPlainAscii(c.unicode())) {
            run.clear();
            continue;
        }
        run += small(c.toLatin1());
        if (run.size() > m_needle.size()) {
            m_needle = run;
        }
    }
    m_hasBlank = m_needle.contains(' ');
}

bool TextScan::mayBeIn(QByteArrayView rtf) const
{
    if (m_needle.isEmpty()) {
        return true;
    }
    return Reader(rtf, std::string_view(m_needle.constData(), std::size_t(m_needle.size())), m_hasBlank)
        .mayHoldNeedle();
}

} // namespace rtf
