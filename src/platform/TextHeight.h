// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

class QTextDocument;

// Pixels beyond which a text is not laid out. The text engine takes a text without pages for one of a single page of
// some eight million pixels, and looks for ever for the place of what does not fit on it.
constexpr qreal tallestText = 4'000'000;

// How tall a text may become, roughly, without laying it out.
qreal roughHeight(const QTextDocument &document);
