// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

inline auto *dialogs()
{
    return ports().dialogs;
}
