// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "vault/LeftBehind.h"

class Document;
class Vault;

// Opens what was left behind as a document with its unsaved changes and its steps. It has its file's name where the
// file is as it was and no other open document has changed it; where not, it has none, the file as it is now is open
// beside it, and a notice says so. Nothing is written to the file, and what was left behind goes as soon as the vault
// has all of it on disk again. Null, and the reason is told of in the log, when nothing can be read.
Document *recoverDocument(LeftBehind &left, Vault &vault);

// Opens it to be read only, and leaves it where it is.
Document *lookAtLeftBehind(LeftBehind &left);
