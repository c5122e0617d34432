// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "OutlineSource.h"

#include <QByteArray>

struct Outline;

// Fills an empty outline from a source: fonts, entries with their texts in stored form, tags, the open levels, and the
// root as the selected entry.
void buildOutline(const OutlineSource &source, Outline &outline);

// The bytes of a native file made from a source. Throws SourceError for a mistake in the source.
QByteArray makeNativeFile(QStringView source);
