// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "OutlineSource.h"

class QTextDocument;

// Builds the text of an entry in an empty document. What a run does not say comes from the font description, so that
// every run names its font and size.
void buildEntryText(const SourceEntry &entry, const clsFont &textFont, QTextDocument &document);
