// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Document.h"

// A document's outline, to be set up or to be changed by "somebody else": what is done to it is no step of the
// document's history, as if it had been read so. The program has no such way (see house_includes): there every change
// is the history's.
inline Outline &rawOutline(Document &document)
{
    return const_cast<Outline &>(document.outline());
}
