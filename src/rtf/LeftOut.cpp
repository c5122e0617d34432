// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/LeftOut.h"

#include "rtf/Tokenizer.h"

#include <algorithm>
#include <string_view>

namespace rtf
{

namespace
{

struct LeftOutWord {
    std::string_view name;
    LeftOut kind;
};

constexpr LeftOutWord leftOutWords[] = {
    {"annotation", LeftOut::Comments}, {"bkmkstart", LeftOut::Bookmarks},
    {"footer", LeftOut::Headers},      {"footerf", LeftOut::Headers},
    {"footerl", LeftOut::Headers},     {"footerr", LeftOut::Headers},
    {"footnote", LeftOut::Footnotes},  {"header", LeftOut::Headers},
    {"headerf", LeftOut::Headers},     {"headerl", LeftOut::Headers},
    {"headerr", LeftOut::Headers},     {"mmath", LeftOut::Formulas},
    {"objdata", LeftOut::Objects},     {"tc", LeftOut::Marks},
    {"tcn", LeftOut::Marks},           {"xe", LeftOut::Marks},
};

std::string_view viewOf(QByteArrayView bytes)
{
    return {bytes.data(), std::size_t(bytes.size())};
}

const LeftOutWord *leftOutWord(std::string_view name)
{
    const auto *word = std::ranges::find(leftOutWords, name, &LeftOutWord::name);
    return word != std::end(leftOutWords) ? word : nullptr;
}

// Whether any of the words stands there; what Quillery writes has none of them.
bool mayLeaveOut(std::string_view rtf)
{
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    constexpr std::string_view initials = "abfhmotx";
    for (std::size_t at = rtf.find('\\'); at != std::string_view::npos; at = rtf.find('\\', at)) {
        ++at;
        if (at == rtf.size() || initials.find(rtf[at]) == std::string_view::npos) {
            continue;
        }
        const std::string_view rest = rtf.substr(at);
        const auto *end =
            std::find_if_not(rest.begin(), rest.begin() + std::min<std::size_t>(rest.size(), 12), isLetter);
        if (leftOutWord({rest.begin(), end}) != nullptr) {
            return true;
        }
    }
    return false;
}

// Goes through the groups and looks what stands in those that are left out.
class LeftOutReader
{
public:
    explicit LeftOutReader(QByteArrayView rtf)
        : m_tokens(rtf)
    {
    }

    LeftOutKinds read()
    {
        for (;;) {
            const Token token = m_tokens.next();
            switch (token.kind) {
            case Token::Kind::End:
                return m_found;
            case Token::Kind::GroupOpen:
                ++m_depth;
                break;
            case Token::Kind::GroupClose:
                if (--m_depth <= 0) {
                    return m_found;
                }
                m_depthLeftOut = m_depth < m_depthLeftOut ? 0 : m_depthLeftOut;
                break;
            case Token::Kind::Word:
                passWord(viewOf(token.bytes));
                break;
            case Token::Kind::Text:
                passText(viewOf(token.bytes));
                break;
            case Token::Kind::Byte:
            case Token::Kind::Binary:
                found();
                break;
            default:
                break;
            }
        }
    }

private:
    void found()
    {
        if (m_depthLeftOut > 0) {
            m_found |= m_kind;
        }
    }

    void passText(std::string_view text)
    {
        // The names of the bookmarks that word processors set begin so.
        const bool isHidden = m_kind == LeftOut::Bookmarks && text.starts_with('_');
        if (!isHidden && text.find_first_not_of(' ') != std::string_view::npos) {
            found();
        }
    }

    void passWord(std::string_view name)
    {
        const LeftOutWord *word = m_depth > 1 ? leftOutWord(name) : nullptr;
        if (m_depthLeftOut == 0) {
            if (word != nullptr) {
                m_depthLeftOut = m_depth;
                m_kind = word->kind;
            }
        } else if (name == "u" || name == "chpgn") {
            found();
        } else if (name == "bkmkstart" || name == "bkmkend") {
            m_tokens.skipGroup();
        }
    }

    Tokenizer m_tokens;
    LeftOutKinds m_found;
    LeftOut m_kind{};
    int m_depth = 0;
    int m_depthLeftOut = 0; // of the outermost group that is left out; 0 outside
};

} // namespace

LeftOutKinds leftOut(QByteArrayView rtf)
{
    return mayLeaveOut(viewOf(rtf)) ? LeftOutReader(rtf).read() : LeftOutKinds();
}

} // namespace rtf
