// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Interpreter.h"

// The style sheet: what its styles say, and what a text takes from them.
namespace rtf
{

void Interpreter::addStyleName(QStringView text)
{
    if (m_stack.size() == m_styleDepth + 1) {
        m_styleName += text;
    }
}

void Interpreter::finishStyle()
{
    if (m_isParagraphStyle) {
        const QString name = m_styleName.section(QLatin1Char(';'), 0, 0).trimmed();
        m_tables.styleNames.insert(m_styleNumber, name);
        m_styles[qMax(0, m_styleNumber)] = m_style;
    } else if (m_isCharStyle) {
        m_style.isCharStyle = true;
        m_styles[charStyleKey(m_styleNumber)] = m_style;
    }
    m_style = {};
    m_styleName.clear();
    m_styleNumber = 0;
    m_isParagraphStyle = true;
    m_isCharStyle = false;
}

// \s, \cs and \ts: the number of a style that is being defined, or the style that the text takes.
void Interpreter::applyStyleNumber(Special kind, int number)
{
    if (m_state.destination == Destination::StyleSheet) {
        m_styleNumber = number;
        m_isParagraphStyle = kind == Special::Style;
        m_isCharStyle = kind == Special::CharStyle;
    } else if (kind == Special::Style) {
        setPara(ParaNumber::Style, number);
        applyStyle(number, !m_isPlain);
    } else if (kind == Special::CharStyle) {
        applyStyle(charStyleKey(number), true);
    }
}

// A style sets what it says and leaves the rest; a whole one also what the styles say that it is based on. Word
// processors write \plain first, then the style and all that differs from \plain once more, so that what a style only
// inherits and the paragraph does not say is off. Texts made by hand lean on their styles.
void Interpreter::applyStyle(int key, bool isWhole)
{
    if (!m_styles.contains(key)) {
        return;
    }
    const ResolvedStyle style = resolveStyle(key, isWhole);
    const CharState plainChars = CharState::plain();
    for (std::size_t i = 0; i < plainChars.numbers.size(); ++i) {
        if (style.chars.numbers[i] != plainChars.numbers[i]) {
            setChar(static_cast<CharNumber>(i), style.chars.numbers[i]);
        }
    }
    if ((m_state.chars.flags | style.chars.flags) != m_state.chars.flags) {
        flush();
        m_state.chars.flags |= style.chars.flags;
    }
    const ParaState plainPara = ParaState::plain();
    for (std::size_t i = 0; i < plainPara.numbers.size(); ++i) {
        if (style.para.numbers[i] != plainPara.numbers[i]) {
            m_state.para.numbers[i] = style.para.numbers[i];
        }
    }
    m_state.para.flags |= style.para.flags;
    if (style.para[ParaNumber::Tabs] != 0) {
        m_state.para.flags |= TabsAreStyles;
    }
}

// The formatting of a style and, for the whole of it, of those it is based on.
Interpreter::ResolvedStyle Interpreter::resolveStyle(int key, bool isWhole)
{
    if (const auto known = m_resolvedStyles.constFind({key, isWhole}); known != m_resolvedStyles.constEnd()) {
        return *known;
    }
    std::vector<const Style *> chain;
    for (int next = key; chain.size() < longestStyleChain;) {
        const auto style = m_styles.constFind(next);
        if (style == m_styles.constEnd()) {
            break;
        }
        chain.push_back(&*style);
        if (!isWhole) {
            break;
        }
        next = style->isCharStyle ? charStyleKey(style->basedOn) : style->basedOn;
    }
    flush();
    const Group before = m_state;
    m_state.chars = CharState::plain();
    m_state.para = ParaState::plain();
    for (auto style = chain.rbegin(); style != chain.rend(); ++style) {
        m_state.para.flags |= TabsAreStyles;
        for (const StyleWord &word : (*style)->words) {
            apply(*word.word, word.number, word.hasNumber);
        }
    }
    m_state.para.flags &= ~quint32(TabsAreStyles);
    const ResolvedStyle resolved{m_state.chars, m_state.para};
    m_state = before;
    m_resolvedStyles[{key, isWhole}] = resolved;
    return resolved;
}

} // namespace rtf
