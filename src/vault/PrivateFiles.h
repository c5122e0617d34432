// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// What the vault keeps holds the words of documents, so nobody but the user may read it, whatever the umask says. Both
// throw file errors.

// Makes sure of a folder (0700) with the folders above it.
void makePrivateFolder(const QString &path);

// Makes an empty file (0600); error 75 when there is a file of that name.
void makePrivateFile(const QString &path);
