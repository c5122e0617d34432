// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "OutlineSource.h"

#include <QHash>

// The named styles of a source.
using StyleTable = QHash<QString, QTextCharFormat>;

// Attributes such as "size 14; colour C00000; font DejaVu Sans; bold". The line number is for SourceError.
QTextCharFormat parseAttributes(QStringView attributes, int line);

// The runs of one paragraph's text. A mark left open is a SourceError.
std::vector<SourceRun> parseInlineMarkup(QStringView text, const StyleTable &styles, int line);
