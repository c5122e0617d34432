// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// What it costs to record changes of a large outline, and to undo them.

#include "model/History.h"
#include "model/Outline.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <fstream>
#include <memory>

namespace
{

constexpr int manyEntries = 10'000;

// That many siblings below the root, each with a label and a text.
std::unique_ptr<Outline> siblings(int count = manyEntries, int textLength = 200)
{
    auto outline = std::make_unique<Outline>();
    EntryTree &tree = outline->tree;
    Entry *root = tree.insert(Relationship::tvwFirst, nullptr);
    for (int i = 0; i < count; ++i) {
        Entry *entry = tree.insert(Relationship::tvwChild, root);
        tree.setLabel(entry, QStringLiteral("Entry %1").arg(i));
        tree.setStoredText(entry, QByteArray(textLength, 'x'));
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

// Deleting with its undo beside deleting what nobody records, in turns.
void deleteBesideUnrecorded(benchmark::State &state)
{
    std::clock_t unrecorded = 0;
    std::clock_t recorded = 0;
    std::clock_t undone = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const std::unique_ptr<Outline> plain = siblings();
        const std::vector<Entry *> plainAll = childrenOf(plain->tree.root());
        const std::unique_ptr<Outline> outline = siblings();
        auto history = std::make_unique<History>(*outline);
        const std::vector<Entry *> all = childrenOf(outline->tree.root());
        state.ResumeTiming();
        const std::clock_t start = std::clock();
        plain->tree.removeAll(plainAll);
        const std::clock_t second = std::clock();
        history->removeAll(all);
        const std::clock_t third = std::clock();
        history->undo();
        undone += std::clock() - third;
        recorded += third - second;
        unrecorded += second - start;
        state.PauseTiming();
        history.reset();
        state.ResumeTiming();
    }
    state.counters["delete_to_unrecorded"] = static_cast<double>(recorded) / static_cast<double>(unrecorded);
    state.counters["undo_to_unrecorded"] = static_cast<double>(undone) / static_cast<double>(unrecorded);
}

// The pages that the program holds in memory, in bytes.
double residentBytes()
{
    std::ifstream pages("/proc/self/statm");
    long total = 0;
    long resident = 0;
    pages >> total >> resident;
    constexpr double pageSize = 4096;
    return static_cast<double>(resident) * pageSize;
}

// What it takes to keep all entries of a large document that were deleted: they are not copied.
void keepWhatIsDeleted(benchmark::State &state)
{
    constexpr int entries = 32'700;
    constexpr int textLength = 600;
    constexpr double megabyte = 1 << 20;
    for (auto _ : state) {
        state.PauseTiming();
        const std::unique_ptr<Outline> outline = siblings(entries, textLength);
        auto history = std::make_unique<History>(*outline);
        const std::vector<Entry *> all = childrenOf(outline->tree.root());
        const double before = residentBytes();
        state.ResumeTiming();
        history->removeAll(all);
        state.PauseTiming();
        state.counters["more_MB"] = (residentBytes() - before) / megabyte;
        state.counters["document_MB"] = static_cast<double>(history->weight()) / megabyte;
        history.reset();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(deleteBesideUnrecorded)->Unit(benchmark::kMicrosecond);
BENCHMARK(keepWhatIsDeleted)->Iterations(3)->Unit(benchmark::kMicrosecond);
BENCHMARK(moveAmongSiblings)->Unit(benchmark::kMicrosecond);
BENCHMARK(deleteUnrecorded)->Unit(benchmark::kMicrosecond);
BENCHMARK(deleteRecorded)->Unit(benchmark::kMicrosecond);
BENCHMARK(undoDelete)->Unit(benchmark::kMicrosecond);
BENCHMARK(fillTree)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
