// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "vault/KeptOutline.h"

#include "model/Outline.h"
#include "util/RunTimeError.h"

using namespace Qt::StringLiterals;

KeptOutline keptOutline(const Outline &outline)
{
    const EntryTree &tree = outline.tree;
    tree.resolvePendingText();
    KeptOutline kept;
    kept.entries = EntryTree::recordsOf(tree.root());
    const EntryId selected = tree.selected() ? tree.selected()->id() : EntryId::None;
    for (size_t place = 0; place < kept.entries.size(); ++place) {
        EntryRecord &record = kept.entries[place];
        if (record.id == selected)
            kept.selected = static_cast<int>(place);
        record.id = EntryId::None;
        record.insertion = 0;
    }
    kept.outlineFont = outline.outlineFont;
    kept.textFont = outline.textFont;
    kept.foreignHeader = outline.foreignHeader;
    kept.foreignTrailer = outline.foreignTrailer;
    return kept;
}

std::unique_ptr<Outline> outlineOf(const KeptOutline &kept)
{
    auto outline = std::make_unique<Outline>();
    EntryTree &tree = outline->tree;
    if (!kept.entries.empty()) {
        Subtree subtree = EntryTree::subtreeOf(kept.entries);
        tree.put(subtree, {nullptr, 0});
        Entry *selected = tree.root();
        for (int place = 0; selected && place < kept.selected; ++place)
            selected = nextInOutline(selected, tree.root());
        if (kept.selected >= 0)
            tree.select(selected);
    }
    outline->outlineFont = kept.outlineFont;
    outline->textFont = kept.textFont;
    outline->foreignHeader = kept.foreignHeader;
    outline->foreignTrailer = kept.foreignTrailer;
    return outline;
}

std::vector<int> parentsOf(const std::vector<int> &levels)
{
    std::vector<int> parents;
    parents.reserve(levels.size());
    // The last entry of each level.
    std::vector<int> path;
    for (size_t place = 0; place < levels.size(); ++place) {
        const int level = levels[place];
        if (level < 0 || static_cast<size_t>(level) > path.size() || (level == 0) != (place == 0))
            throw RunTimeError(ErrorNumber::InvalidFileFormat, u"An entry has no parent"_s);
        parents.push_back(level == 0 ? -1 : path[static_cast<size_t>(level) - 1]);
        path.resize(static_cast<size_t>(level));
        path.push_back(static_cast<int>(place));
    }
    return parents;
}
