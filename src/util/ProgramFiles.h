// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The path of a file that comes with the program: beside the program, else in ../share/quillery, where an installed
// program has it. The first of the two when neither exists.
QString programFile(const QString &name);

// The same for an installed program alone: whether or not there is one.
QString sharedFile(const QString &name);
