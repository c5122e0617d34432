// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Document.h"

#include "util/Procedure.h"

// Runs a routine's body as procedure() does. But a routine that is a part of a step of the document's history fails for
// the step as well: its failure is passed on to the command that opened the step, which is then taken back as a whole
// and reports it. Half a step, done as if nothing had failed, would be worse than none.
template <typename Body>
auto stepProcedure(const Document *document, const char *name, Body &&body) -> std::invoke_result_t<Body>
{
    if (!document || !document->history.isStepOpen())
        return procedure(name, std::forward<Body>(body));
    detail::enterProcedure(name);
    return std::forward<Body>(body)();
}
