// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

// Memory that is refused once. A test program that is built with RefusedMemory.cpp requests all of its C++ memory
// there; what Qt's own containers hold comes from elsewhere and is never refused.

// How many requests succeed before one fails; none fails while it is negative.
inline long requestsUntilRefusal = -1;
// Whether Qt's own code, which would lose what it has, is never the one that is refused.
inline bool memoryIsRefusedToTheProgramAlone = false;
// Whether one did fail since this was last false.
inline bool memoryWasRefused = false;
