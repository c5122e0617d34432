// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/Document.h"
#include "model/Ports.h"

#include "util/Procedure.h"

// What all outline commands have in common.

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

// The same for a command that changes the outline: the document counts as changed even when nothing comes of it.
template <typename Body>
void changeActiveDocument(const char *name, Body &&body)
{
    onActiveDocument(name, [&](Document &document) {
        document.m_bDataChanged = true;
        body(document);
    });
}
