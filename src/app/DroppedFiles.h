// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class QMimeData;

// The files that dropped data names: its list of local files; else its plain text, else its rich text, as one name.
QStringList droppedFiles(const QMimeData &data);
