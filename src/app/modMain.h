// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

struct ErrorReport;

// The start and the end of a run, its session log and the user's settings.
namespace modMain
{

// Everything that precedes the main window's first appearance: the log's start record, the settings, the recent files
// and the documents to open.
void Initialise();
// Stores the settings, the recent files and the list of open documents, and ends the session in the log. The document
// windows must still be open.
void Finalise();
// Stores the settings, the recent files and the list of open documents.
void StoreState();

// Gives every global its state at the start of the program.
void InitialiseGlobals();

// The absolute paths of those names of an argument text that name existing files. Single blanks separate names; quotes
// mean nothing, so a path with a blank cannot be given. A list of one empty element when there are none.
QStringList GetCommandLineFiles(const QString &arguments);

// The same of arguments, each of which is first tried as one name, as the desktop gives it for a path with a blank.
QStringList GetArgumentFiles(const QStringList &arguments);

// The full paths of those names that are files.
QStringList ExistingFiles(const QStringList &names);

// Opens the files of the command line, up to the first that cannot be read whole; without any, what the options
// StartWithLatestDocuments and StartWithNewDocument ask for.
void LoadInitialFiles();
// The open documents' files, an empty name for one that was never saved.
QStringList OpenFiles();
// The documents of the last run as they are stored.
QStringList WorkingFiles();
// Opens the documents of the last run, but for those whose files have gone.
void LoadWorkingFiles();
// Stores the open documents' files in the section "Workspace".
void SaveWorkingFiles();

// Reads the options, the default fonts and the main window's place; what is not stored has its default. A stored text
// that is no such value is logged and ends the reading.
void LoadSettings();
void SaveSettings();

// Appends a record to the session log; a log that cannot be written is given up silently.
void WriteLog(const QString &record);
// The shared error report: one record in the session log, and the mouse pointer back to its default.
void ReportError(const ErrorReport &report);

} // namespace modMain
