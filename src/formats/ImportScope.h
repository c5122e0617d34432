// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Globals.h"
#include "document/Ports.h"

#include <optional>

class Document;

// Frames an import into a new document: hourglass, busy flag and hidden outline while it lives, and at its end, however
// the import went, the outline shown again with the imported entry selected.
class ImportScope
{
public:
    explicit ImportScope(Document &document);
    ~ImportScope();
    ImportScope(const ImportScope &) = delete;
    ImportScope &operator=(const ImportScope &) = delete;

private:
    Document &m_document;
    HourglassPointer m_hourglass;
    std::optional<BusyScope> m_busy;
};
