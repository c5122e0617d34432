// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

class Entry;
constexpr int none = 0;
inline Entry *s_last = nullptr;
