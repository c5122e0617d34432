// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QLabel;

// A text whose lines may end within a word that may be longer than a line, such as a path.
QString breakable(const QString &text);

// Shows a message that may name files so, and gives assistive technology the text as it is.
void setBreakableText(QLabel &label, const QString &text);
