// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>

#include <array>

// The names of a native file's records, in the order in which they are written.
namespace recordNames
{

// What every record begins with.
inline constexpr QByteArrayView opener = "{\\qlf_";

inline constexpr std::array<QByteArrayView, 14> header = {
    "formatversion",     "selecteditemkey",          "outlinefontname",       "outlinefontsize",  "outlinefontbold",
    "outlinefontitalic", "outlinefontstrikethrough", "outlinefontunderline",  "textfontname",     "textfontsize",
    "textfontbold",      "textfontitalic",           "textfontstrikethrough", "textfontunderline"};

inline constexpr std::array<QByteArrayView, 5> entry = {"nodekey", "nodelabel", "nodetagged", "nodevisible",
                                                        "nodetext"};

// Behind the label whose whole it holds (see LabelRecords.h).
inline constexpr QByteArrayView exactLabel = "nodelabelexact";

} // namespace recordNames
