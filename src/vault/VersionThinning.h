// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>

#include <optional>
#include <vector>

// What decides whether a version is kept.
struct VersionAge {
    QDateTime time;
    // It was read again from the disk and was what had been saved.
    bool isVerified = false;
};

// Up to these ages all versions are kept, the last one of each hour, and the last one of each day; beyond, the last one
// of each week, which begins on Monday.
namespace versionAges
{
inline constexpr qint64 allSeconds = 24 * 3600;
inline constexpr qint64 hourlySeconds = 7 * allSeconds;
inline constexpr qint64 dailySeconds = 91 * allSeconds;
} // namespace versionAges

// The places of the versions that are to go, of which the oldest comes first. The newest one and the last verified one
// always stay.
std::vector<size_t> supernumeraryVersions(const std::vector<VersionAge> &versions, const QDateTime &now);

// The place of the version that goes first where there is no room for all; none when no more may go.
std::optional<size_t> firstToGo(const std::vector<VersionAge> &versions);
