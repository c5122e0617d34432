// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

// Native documents of a given size and shape, the same bytes at every call, for benchmarks.

enum class Shape {
    // Branches of ten entries, each with up to ten of its own: what a real outline looks like.
    Bushy,
    // Every entry a child of the root.
    Flat,
    // Every entry the only child of the one before.
    Chain,
};

// A file of so many entries whose texts are RTF of about so many characters, stored compressed. Every entry of a chain
// and of the top two levels of the others is visible.
QByteArray generatedDocument(int entries, int textLength, Shape shape);
