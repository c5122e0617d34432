// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/StoredText.h"

#include <QFont>

// What the text pane shows of a stored text, where the base font is what nothing else is said of: all of it; the
// beginning of its words as plain characters where it is too long or too much formatted to be laid out; or the bytes
// that could not be inflated, and no more of those than may be laid out.
Inflated shownText(const QByteArray &storedText, const QFont &base);
