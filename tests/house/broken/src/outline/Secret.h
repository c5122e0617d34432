// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "document/Document.h"

// Whatever it is called: the history is not told of it.
inline void renameSecretly(const Document &document, const QString &label)
{
    auto *root = document.tree.root();
    auto &tree = const_cast<EntryTree &>(document.tree);
    tree.setLabel(root, label);
}
