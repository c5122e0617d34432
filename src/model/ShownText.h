// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/StoredText.h"

// What the text pane shows of a stored text: all of it, the beginning as plain characters where it is too long to be
// laid out, or the bytes that could not be inflated, and no more of those than may be laid out.
Inflated shownText(const QByteArray &storedText);
