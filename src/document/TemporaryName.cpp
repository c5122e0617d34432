// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "document/TemporaryName.h"

#include <array>

namespace
{

constexpr qsizetype uniqueSize = 6;
// By stage.
constexpr std::array<QByteArrayView, 5> namePrefixes = {".quillery-part-", ".quillery-whole-", ".quillery-old-",
                                                        ".quillery-over-", ".quillery-before-"};

} // namespace

QByteArray TemporaryName::text() const
{
    return namePrefixes[stage].toByteArray() + unique + '-' + carried(file);
}

std::optional<TemporaryName> TemporaryName::parse(const QByteArray &name)
{
    for (const Stage stage : {Part, Whole, Old, Over, Before}) {
        if (!name.startsWith(namePrefixes[stage]))
            continue;
        const QByteArray rest = name.sliced(namePrefixes[stage].size());
        if (rest.size() > uniqueSize + 1 && rest[uniqueSize] == '-')
            return TemporaryName{stage, rest.first(uniqueSize), rest.sliced(uniqueSize + 1)};
    }
    return std::nullopt;
}

QByteArray TemporaryName::carried(const QByteArray &fileName)
{
    qsizetype end = qMin(fileName.size(), longestFile);
    // Not in the midst of a character of several bytes.
    while (end > 0 && end < fileName.size() && (static_cast<uchar>(fileName[end]) & 0xC0) == 0x80)
        --end;
    return fileName.first(end);
}
