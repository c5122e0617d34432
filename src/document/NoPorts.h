// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Ports.h"

// The ports of a program without a user interface: no window is open and none opens, questions are cancelled, and what
// would be shown is not.
Ports portsOfNobody();
