// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

// An icon with a dot in its corner, which says that what it stands for has unsaved changes. Drawn in whatever size and
// resolution it is asked for, with a ring in the base colour that the desktop has then.
QIcon unsavedIcon(const QIcon &icon);
