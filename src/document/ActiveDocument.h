// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Document.h"
#include "document/Ports.h"

#include "util/Procedure.h"

// Runs a command on the active document, under the hourglass pointer and under its name.
template <typename Body>
void onActiveDocument(const char *name, Body &&body)
{
    procedure(name, [&] {
        if (Document *document = DocumentActive()) {
            const HourglassPointer hourglass;
            body(*document);
        }
    });
}
