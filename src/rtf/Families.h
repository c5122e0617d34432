// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class QTextDocument;

namespace rtf
{

// Keeps a document within mostFamilies: what stands between two places and brings in more of them gets the document's
// own family instead. Each family is looked for among the fonts installed when it is shown first, which takes a
// millisecond.
void boundFamilies(QTextDocument &document, int from, int to);

} // namespace rtf
