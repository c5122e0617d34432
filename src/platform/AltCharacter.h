// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class QKeyEvent;

// Whether a key press is Alt, with or without Shift, and a character, which Qt's editors would type though it is no
// text. A character that AltGr makes is text.
bool isAltCharacter(const QKeyEvent &event);
