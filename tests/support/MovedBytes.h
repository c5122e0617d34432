// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

// How many bytes the program and its libraries have moved and copied in memory, in a test program that links
// MovedBytes.cpp: what texts cost that are put together or taken apart.
qint64 movedBytes();
