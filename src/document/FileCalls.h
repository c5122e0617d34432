// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>
#include <QString>

#include <functional>

// What saving asks of open files. Each answers false with errno set when it fails.

bool writeAll(int descriptor, QByteArrayView bytes);

// From where both stand to the end of the first.
bool copyAll(int from, int to);

// Hands over a file's content piece by piece, as the disk has it: what the system remembers of it is given up first,
// where it lets itself be asked to.
bool readFromDisk(int descriptor, const std::function<void(QByteArrayView)> &take);

// Has the system put on disk what was written, and tell of a failure that it would tell of only when closing.
bool flushFile(int descriptor);

// A renamed file is safe from a power cut only when its folder's entry is on disk too.
void flushFolder(const QString &folder);

// Makes sure of the room that a file of a size takes, as far as the file system knows how to, without changing it.
bool reserveRoom(int descriptor, qint64 size);

// Gives one open file the whole content of another, on disk. Nothing is cut off before all of it is there.
bool overwriteContent(int from, int to);
