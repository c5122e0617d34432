// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "commands/CommandState.h"

#include <QString>

#include <optional>
#include <string_view>

class TextSelection;
struct CommandRow;

// What rows say by functions: words that change with the state, and the formats that buttons show.
namespace commandRows
{

QString tagCaption(const CommandState &state);
QString tagToolTip(const CommandState &state);
// With the name of the step: "&Undo move of "Budget"".
QString undoCaption(const CommandState &state);
QString redoCaption(const CommandState &state);

// None where the text's selection mixes what has the format with what has not.
std::optional<bool> bold(const TextSelection &text);
std::optional<bool> italic(const TextSelection &text);
std::optional<bool> underlined(const TextSelection &text);
std::optional<bool> alignedLeft(const TextSelection &text);
std::optional<bool> centred(const TextSelection &text);
std::optional<bool> alignedRight(const TextSelection &text);

} // namespace commandRows

// A text of the command table, which holds plain ASCII, as widgets take it.
inline QString toText(std::string_view text)
{
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}
