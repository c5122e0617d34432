// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "rtf/Limits.h"

#include <QString>

#include <array>

namespace rtf
{

// A level of a list as its labels show it: the kind of its numbers (\levelnfc) and the one it has come to.
struct CountedLevel {
    int kind = 0;
    int number = 1;
};

// A number as a level of that kind shows it: decimal for kinds that are not known, and for what its kind cannot count.
QString countedNumber(const CountedLevel &level);

// The label in which the characters 0 to 8 stand for the numbers of the levels.
QString countedLabel(const QString &label, const std::array<CountedLevel, mostListLevels> &levels);

} // namespace rtf
