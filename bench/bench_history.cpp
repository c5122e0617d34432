// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// What it costs to record changes of a large outline, and to undo them.

#include "model/History.h"
#include "model/Outline.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace
{

constexpr int manyEntries = 10'000;

// That many siblings below the root, each with a label and a text.
std::unique_ptr<Outline> siblings()
{
    auto outline = std::make_unique<Outline>();
    EntryTree &tree = outline->tree;
    Entry *root = tree.insert(Relationship::tvwFirst, nullptr);
    for (int i = 0; i < manyEntries; ++i) {
        Entry *entry = tree.insert(Relationship::tvwChild, root);
        tree.setLabel(entry, QStringLiteral("Entry %1").arg(i));
        tree.setStoredText(entry, QByteArray(200, 'x'));
    }
    return outline;
}

std::vector<Entry *> childrenOf(const Entry *parent)
{
    std::vector<Entry *> children;
    for (int row = 0; row < parent->childCount(); ++row)
        children.push_back(parent->child(row));
    return children;
}

void moveAmongSiblings(benchmark::State &state)
{
    const std::unique_ptr<Outline> outline = siblings();
    History history(*outline);
    Entry *root = outline->tree.root();
    for (auto _ : state) {
        history.move(root->child(0), Relationship::tvwLast, root->child(1));
        history.undo();
        // What a numbering costs that somebody asks for.
        benchmark::DoNotOptimize(outline->tree.collection().indexOf(root));
    }
}

void deleteUnrecorded(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const std::unique_ptr<Outline> outline = siblings();
        const std::vector<Entry *> all = childrenOf(outline->tree.root());
        state.ResumeTiming();
        outline->tree.removeAll(all);
    }
}

void deleteRecorded(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const std::unique_ptr<Outline> outline = siblings();
        auto history = std::make_unique<History>(*outline);
        const std::vector<Entry *> all = childrenOf(outline->tree.root());
        state.ResumeTiming();
        history->removeAll(all);
        state.PauseTiming();
        history.reset();
        state.ResumeTiming();
    }
}

void undoDelete(benchmark::State &state)
{
    for (auto _ : state) {
        state.PauseTiming();
        const std::unique_ptr<Outline> outline = siblings();
        auto history = std::make_unique<History>(*outline);
        history->removeAll(childrenOf(outline->tree.root()));
        state.ResumeTiming();
        history->undo();
        state.PauseTiming();
        history.reset();
        state.ResumeTiming();
    }
}

void fillTree(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(siblings());
}

} // namespace

BENCHMARK(moveAmongSiblings)->Unit(benchmark::kMicrosecond);
BENCHMARK(deleteUnrecorded)->Unit(benchmark::kMicrosecond);
BENCHMARK(deleteRecorded)->Unit(benchmark::kMicrosecond);
BENCHMARK(undoDelete)->Unit(benchmark::kMicrosecond);
BENCHMARK(fillTree)->Unit(benchmark::kMicrosecond);
