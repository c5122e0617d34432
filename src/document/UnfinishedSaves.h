// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <vector>

// What a save that was cut short, by a crash or a power cut, has left behind: the whole new content of a file that
// still has its old one, or that was never there.
struct UnfinishedSave {
    // The temporary file with the content.
    QString path;
    // The file that it was to become.
    QString target;
    // Whether it is what the target held before it was written over in place; then the new content is there as well.
    bool isOldContent = false;
};

// The unfinished saves of a file, and of files that are not there, in the file's folder and its side folder. Removes
// beside them what is of no use to anybody: content that is not whole, or as old as its file, or the same. What a
// running program is writing is left alone.
std::vector<UnfinishedSave> unfinishedSaves(const QString &sFile);

// Gives the content a name of its own beside its target, or the target's if that is free and no other unfinished save
// is to become it, and returns it; where the folder takes no file, in the state folder. Throws a file error.
QString nameUnfinishedSave(const UnfinishedSave &save, const std::vector<UnfinishedSave> &all);
