// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

struct Outline;

// What a native file gives back of an outline that is not what it was given, in words; empty when all of it is there:
// the entries in their places, labels, texts and tags, and the fonts. What the format itself writes in another way, as
// a text that holds the beginning of a record, is no difference.
QString outlineDifference(const Outline &written, const Outline &read);
