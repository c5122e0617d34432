// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/ActiveDocument.h"

// What all outline commands have in common.

// Runs a command that changes the outline of the active document, as onActiveDocument does: the document counts as
// changed even when nothing comes of it.
template <typename Body>
void changeActiveDocument(const char *name, Body &&body)
{
    onActiveDocument(name, [&](Document &document) {
        document.history.touch();
        body(document);
    });
}
