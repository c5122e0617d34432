// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "model/EntryId.h"

#include <functional>

// What of an entry is looked at without going there.
struct Preview {
    enum class Part { Label, Text };

    EntryId entry = EntryId::None;
    // What is marked: where it stands in the label, or in the text as TextSelection counts it.
    Part part = Part::Text;
    int start = 0;
    int length = 0;
    // What is done when the user clicks on the text that he looks at; nothing where it is empty.
    std::function<void()> chosen = {};
};

// Shows entries of a document in the place of the text pane, and where they stand in the outline. Nothing of the
// document changes by it: no selection, no branch, no caret and no place that a pane was scrolled to.
class EntryPreview
{
public:
    virtual ~EntryPreview() = default;
    // Shows an entry in place of the one before; nothing happens for one that is not there.
    virtual void show(const Preview &preview) = 0;
    // The document stands as it did before. It ends by itself as soon as the user goes on in the document, or what is
    // looked at becomes another.
    virtual void end() = 0;
    virtual bool isShown() const = 0;
};
