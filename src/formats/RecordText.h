// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

// A stored text as a record can carry it. The record ends where the next one opens, so no record's opener may stand
// within it. Compressed bytes can hold one by chance and an imported text on purpose: the same text then takes another
// stored form. Every other text is the same bytes.
QByteArray recordText(const QByteArray &storedText);
