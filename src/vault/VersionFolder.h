// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "vault/Database.h"

#include <QString>

#include <functional>

// Where the versions of documents lie, a database each. All of it may be asked by any thread.

// $XDG_DATA_HOME/Quillery/versions
QString versionsFolder();

// The database of a document's file, by the file's path without links; it need not exist.
QString versionsPathOf(const QString &folder, const QString &file);

// The database of a file, as far as it has one. Where it has none under its name, that of a file which held when it was
// saved last what this one holds now, and is no longer where it was: the file was moved or renamed. Its database is
// renamed with it where it is the same file for certain; else the old name, under which a file may return, keeps its
// own, and this one gets a copy. Empty when there is none, and for the copy of a file that is there. The digest of the
// content is asked for only where it is needed.
QString findVersions(const QString &folder, const QString &file, const std::function<QByteArray()> &digestOfFile);

// The digest of what a file holds, as a document remembers it; empty when it cannot be read.
QByteArray fileDigestOf(const QString &file);

// Whether a database was made by a later version of the program, which is no damage.
bool isOfLaterProgram(const QString &path, const DatabaseSchema &schema);

// Puts a database that cannot be used out of the way, and answers what it is called now. Throws a file error.
QString setAside(const QString &path);
