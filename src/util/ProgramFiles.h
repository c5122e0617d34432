// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// Where a program that is installed in a folder has its data: as far from there as the installation was told to put it
// (../share/quillery by default), so that both may be moved together.
QString sharedFolder(const QString &programFolder);

// The path of a file that comes with the program: beside the program, else in its shared folder. The first of the two
// when neither exists.
QString programFile(const QString &name);

// The same for an installed program alone: whether or not there is one.
QString sharedFile(const QString &name);
