// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/VersionThinning.h"

namespace
{

enum class Span { Hour, Day, Week };

// The hours, days or weeks of a calendar, numbered. They lie within each other, so that the last version of a longer
// one was the last of a shorter one.
qint64 spanNumber(const QDateTime &time, Span span)
{
    constexpr int hoursOfDay = 24;
    constexpr int daysOfWeek = 7;
    const qint64 day = time.date().toJulianDay();
    switch (span) {
    case Span::Hour:
        return day * hoursOfDay + time.time().hour();
    case Span::Day:
        return day;
    case Span::Week:
        // Day 0 was a Monday.
        return day / daysOfWeek;
    }
    return day;
}

// The place of the last verified version; beyond the last one without any.
size_t lastVerified(const std::vector<VersionAge> &versions)
{
    for (size_t place = versions.size(); place-- > 0;) {
        if (versions[place].isVerified)
            return place;
    }
    return versions.size();
}

} // namespace

std::vector<size_t> supernumeraryVersions(const std::vector<VersionAge> &versions, const QDateTime &now)
{
    std::vector<size_t> places;
    const size_t verified = lastVerified(versions);
    for (size_t place = 0; place + 1 < versions.size(); ++place) {
        const qint64 age = versions[place].time.secsTo(now);
        if (age <= versionAges::allSeconds || place == verified)
            continue;
        const Span span = age <= versionAges::hourlySeconds  ? Span::Hour
                          : age <= versionAges::dailySeconds ? Span::Day
                                                             : Span::Week;
        // A later one of the same span stands for it.
        if (spanNumber(versions[place].time, span) == spanNumber(versions[place + 1].time, span))
            places.push_back(place);
    }
    return places;
}

std::optional<size_t> firstToGo(const std::vector<VersionAge> &versions)
{
    const size_t verified = lastVerified(versions);
    for (size_t place = 0; place + 1 < versions.size(); ++place) {
        if (place != verified)
            return place;
    }
    return std::nullopt;
}
