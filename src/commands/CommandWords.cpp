// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "commands/CommandWords.h"

#include "model/TextSelection.h"

using namespace Qt::StringLiterals;

namespace
{

std::optional<bool> aligned(const TextSelection &text, TextSelection::Alignment which)
{
    const std::optional<TextSelection::Alignment> alignment = text.SelAlignment();
    return alignment ? std::optional(*alignment == which) : std::nullopt;
}

bool untags(const CommandState &state)
{
    return state.Several ? state.Several.tagged : state.Tagged;
}

// An "&" in a label is meant, and marks no access key.
QString asCaption(QString name)
{
    return name.replace(u'&', u"&&"_s);
}

} // namespace

namespace commandRows
{

// The blanks differ so that the keys line up.
QString tagCaption(const CommandState &state)
{
    return untags(state) ? u"Unta&g entry    Alt+T"_s : u"Ta&g entry      Alt+T"_s;
}

QString tagToolTip(const CommandState &state)
{
    return untags(state) ? u"Untag entry"_s : u"Tag entry"_s;
}

QString undoCaption(const CommandState &state)
{
    return state.CanUndo ? u"&Undo "_s + asCaption(state.undoName) : u"&Undo"_s;
}

QString redoCaption(const CommandState &state)
{
    return state.CanRedo ? u"&Redo "_s + asCaption(state.redoName) : u"&Redo"_s;
}

std::optional<bool> bold(const TextSelection &text)
{
    return text.SelBold();
}

std::optional<bool> italic(const TextSelection &text)
{
    return text.SelItalic();
}

std::optional<bool> underlined(const TextSelection &text)
{
    return text.SelUnderline();
}

std::optional<bool> alignedLeft(const TextSelection &text)
{
    return aligned(text, TextSelection::Left);
}

std::optional<bool> centred(const TextSelection &text)
{
    return aligned(text, TextSelection::Centre);
}

std::optional<bool> alignedRight(const TextSelection &text)
{
    return aligned(text, TextSelection::Right);
}

} // namespace commandRows
