// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "util/Procedure.h"
#include "util/RunTimeError.h"

#include <QStringList>

#include <vector>

// Takes the place of the program's error report while it lives, and keeps what was reported and remarked.
class ErrorRecorder
{
public:
    struct Record {
        QString procedure;
        ErrorReport report;
    };

    ErrorRecorder()
    {
        clear();
        setRemarkWriter([](const QString &line) { s_remarks.append(line); });
        setErrorReporter([](const ErrorReport &report) { s_records.push_back({g_sProcedure, report}); });
    }

    ~ErrorRecorder()
    {
        setErrorReporter(nullptr);
        setRemarkWriter(nullptr);
    }

    ErrorRecorder(const ErrorRecorder &) = delete;
    ErrorRecorder &operator=(const ErrorRecorder &) = delete;

    const std::vector<Record> &records() const { return s_records; }

    int count() const { return static_cast<int>(s_records.size()); }

    // The lines that the log was given though nothing failed.
    const QStringList &remarks() const { return s_remarks; }

    void clear()
    {
        s_records.clear();
        s_remarks.clear();
    }

    // One line for each report, "number procedure", for comparisons that show what came instead.
    QStringList summary() const
    {
        QStringList lines;
        for (const Record &record : s_records)
            lines.append(QString::number(record.report.number) + QLatin1Char(' ') + record.procedure);
        return lines;
    }

private:
    static inline std::vector<Record> s_records;
    static inline QStringList s_remarks;
};

// The number of the RunTimeError that a call ends in; 0 when it ends in none.
template <typename Call>
qint32 errorNumberOf(Call &&call)
{
    try {
        call();
    } catch (const RunTimeError &error) {
        return static_cast<qint32>(error.number());
    }
    return 0;
}
