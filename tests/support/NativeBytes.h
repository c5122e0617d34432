// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#pragma once

#include "formats/modDocV1.h"
#include "model/Outline.h"
#include "support/OutlineText.h"
#include "util/ByteSink.h"

// Takes what is written into memory.
class MemorySink final : public ByteSink
{
public:
    void write(QByteArrayView more) override { bytes.append(more.data(), more.size()); }

    QByteArray bytes;
};

// What a native file of an outline holds.
inline QByteArray nativeBytes(const Outline &outline)
{
    MemorySink sink;
    modDocV1::DocSaveVersion(outline, sink);
    return sink.bytes;
}

// The same of an outline as indented text (see OutlineText.h), with the fonts that the format's examples have.
inline QByteArray nativeBytes(const QStringList &lines)
{
    Outline outline;
    plantOutline(outline.tree, lines);
    outline.outlineFont.setName(QStringLiteral("MS Sans Serif"));
    outline.outlineFont.setSize(82500);
    outline.textFont.setName(QStringLiteral("Arial"));
    outline.textFont.setSize(100000);
    return nativeBytes(outline);
}
