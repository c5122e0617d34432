// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "OutlineDocument.h"

#include "EntryText.h"

#include "formats/modDocV1.h"
#include "model/StoredText.h"
#include "rtf/Rtf.h"
#include "util/ByteSink.h"

#include <QTextDocument>

namespace
{

class MemorySink final : public ByteSink
{
public:
    void write(QByteArrayView written) override { bytes.append(written); }

    QByteArray bytes;
};

QByteArray storedText(const SourceEntry &entry, const clsFont &textFont)
{
    if (entry.paragraphs.empty())
        return {};
    QTextDocument text;
    text.setUndoRedoEnabled(false);
    buildEntryText(entry, textFont, text);
    return NodeTextCompressIfRequired(rtf::write(text));
}

} // namespace

void buildOutline(const OutlineSource &source, Outline &outline)
{
    outline.outlineFont = source.outlineFont;
    outline.textFont = source.textFont;
    EntryTree &tree = outline.tree;
    // The entry last seen at each level: the last of them that is shallower than a new entry is its parent.
    std::vector<Entry *> path;
    for (const SourceEntry &sourceEntry : source.entries) {
        path.resize(static_cast<std::size_t>(sourceEntry.level - 1));
        Entry *parent = path.empty() ? nullptr : path.back();
        Entry *entry = tree.insert(parent ? Relationship::tvwChild : Relationship::tvwFirst, parent);
        path.push_back(entry);
        tree.setLabel(entry, sourceEntry.label);
        tree.setStoredText(entry, storedText(sourceEntry, source.textFont));
        tree.setTagged(entry, sourceEntry.tagged);
        if (parent && sourceEntry.level <= source.openLevels)
            tree.setExpanded(parent, true);
    }
    tree.select(tree.root());
}

QByteArray makeNativeFile(QStringView source)
{
    Outline outline;
    buildOutline(parseOutlineSource(source), outline);
    MemorySink sink;
    modDocV1::write(outline, sink);
    return sink.bytes;
}
