// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

// The sample document that comes with the program.
namespace Tour
{

bool isThere();
// Opens it as a document that has no file, so that whoever writes in it writes in a copy.
void open();

} // namespace Tour
