// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Limits.h"

#include <QString>

// What is shown of a label where it is only looked at: all of it, or its beginning and an ellipsis, so many characters
// in all.
QString shownLabel(const QString &label, qsizetype longest = limits::shownLabel);

// A label as it is named in a sentence: on one line, its beginning where there is more than so many characters.
QString briefLabel(const QString &label, qsizetype longest = 40);
