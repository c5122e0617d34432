// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <functional>
#include <map>
#include <vector>

// Takes down what a test program that links PowerCut.cpp does to the files of some folders, and makes of it what a disk
// may hold after the power was cut at any moment.
//
// What is on the disk for certain is what was flushed: a file's bytes by its own flushing, names by flushing their
// folder. Of the rest, any may be missing: single writes, all of them, a part of one. Names change in the order in
// which they were changed, as file systems with a journal keep it, but any number of the last changes may be missing.
namespace PowerCut
{

// Files by their paths; two names of one file are two of one content here, too.
struct Disk {
    std::map<QByteArray, int> names;
    std::map<int, QByteArray> contents;
};

// Begins with the files that the folders hold now. Folders that are made below them count, too.
void record(const QByteArrayList &folders);
// What was promised to be on disk is from now on.
void mark();
void stop();

// How many changes were taken down, flushes and marks included.
size_t changeCount();

// The marks before a change.
int marksBefore(size_t change);

// Calls with everything that the disk may hold when the power is cut before a change of that number, each once. Writes
// are lost as said; of many, `samples` ways are taken at random.
void everyDisk(size_t change, int samples, const std::function<void(const Disk &)> &each);

// Makes the folders hold what a disk holds, and nothing else. Folders stay.
void restore(const Disk &disk);

} // namespace PowerCut
