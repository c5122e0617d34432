// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// The absolute, cleaned path of a file name, relative names taken from the current folder; empty for an empty name.
QString FullPathName(const QString &sFile);

// A path as people write it, with "~" for their own folder.
QString ShownPathName(const QString &sFile);

// A file's path as it is called without links. Of a file that is not there only the folder is known.
QString RealPathName(const QString &sFile);
