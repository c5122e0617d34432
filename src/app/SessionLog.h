// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

// The session log "Quillery.log": records separated by CR LF, oldest first, of which only the newest are kept. The file
// is UTF-8 and is replaced whole by each record, so that at any moment it is either the old log or the new one.
class SessionLog
{
public:
    // The most characters (UTF-16 units) before the file's final CR LF.
    static constexpr qsizetype maximumLength = 8192;

    // The log lies in the first of the folders that can be written.
    explicit SessionLog(const QStringList &folders);

    // Appends a record. False when no folder takes the log, which is then given up without a word.
    bool append(const QString &record) const;

    // The folders to try: the program's own, unless it is installed (its data in its shared folder and not beside it),
    // then the user's folder for program state ($XDG_STATE_HOME/Quillery).
    static QStringList folders(const QString &programFolder);

    // The log's contents cut to their bound: whole lines are dropped from the beginning until the rest fits; a line
    // that is too long by itself keeps its end.
    static QString bounded(const QString &contents);

private:
    QStringList m_folders;
};
