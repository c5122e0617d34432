// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QLatin1StringView>

class QMimeData;

// Rich text on the clipboard and in drags, under the names that programs give it.
namespace RichTextMime
{

// The name under which it is offered; others are understood as well.
inline constexpr QLatin1StringView written("text/rtf");

bool isIn(const QMimeData &source);

// The RTF; empty when there is none, or what is called so is something else.
QByteArray textOf(const QMimeData &source);

} // namespace RichTextMime
