// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Searching all texts of a document: a search that finds nothing beside a pass that only inflates the texts, and
// replacing every match.

#include "GeneratedText.h"

#include "document/UndoRedo.h"
#include "document/modNodes.h"
#include "find/TextIndex.h"
#include "model/Entry.h"
#include "model/StoredText.h"
#include "platform/RichTextBox.h"
#include "rtf/Rtf.h"
#include "search/SearchFixture.h"
#include "search/modSearch.h"
#include "support/RawOutline.h"

#include <QApplication>
#include <QEventLoop>

#include <benchmark/benchmark.h>

#include <ctime>

using namespace Qt::StringLiterals;

namespace
{

void fill(SearchFixture &program, int entries, int matches)
{
    EntryTree &tree = rawOutline(program.document).tree;
    Entry *root = tree.insert(Relationship::tvwChild, nullptr);
    for (int i = 1; i < entries; ++i)
        tree.setStoredText(tree.insert(Relationship::tvwChild, root), generatedText(i, matches));
    tree.setStoredText(root, generatedText(0, matches));
    modNodes::NodeSelectFull(program.document, root);
    g_sSearchScope = u"1"_s;
}

// Every text inflated, and nothing else.
void inflateAll(const EntryTree &tree)
{
    for (int i = 1; i <= tree.entryCount(); ++i)
        benchmark::DoNotOptimize(NodeTextDecompressIfRequired(tree.storedText(tree.collection().at(i))));
}

void findNothing(benchmark::State &state)
{
    const int entries = static_cast<int>(state.range(0));
    SearchFixture program;
    fill(program, entries, 0);
    g_sSearchFind = u"nowhere"_s;
    std::clock_t searching = 0;
    std::clock_t inflating = 0;
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        if (modSearch::SearchAllTexts())
            state.SkipWithError("found");
        state.PauseTiming();
        const std::clock_t middle = std::clock();
        inflateAll(program.document.tree);
        inflating += std::clock() - middle;
        searching += middle - start;
        state.ResumeTiming();
    }
    state.counters["to_inflating"] = static_cast<double>(searching) / static_cast<double>(inflating);
}

// Waits until all texts have their signatures.
void makeIndex(TextIndex &index)
{
    QEventLoop loop;
    QObject::connect(&index, &TextIndex::completed, &loop, &QEventLoop::quit);
    if (!index.isComplete())
        loop.exec();
}

// The same search when the index is there, for a word that is nowhere and one that is in one text.
void findWithIndex(benchmark::State &state)
{
    SearchFixture program;
    fill(program, static_cast<int>(state.range(0)), 0);
    const int entries = program.document.tree.entryCount();
    program.document.history.setStoredText(program.document.tree.collection().at(entries / 2),
                                           generatedText(entries, 1));
    makeIndex(*new TextIndex(program.document));
    g_sSearchFind = state.range(1) != 0 ? u"match"_s : u"nowhere"_s;
    for (auto _ : state) {
        benchmark::DoNotOptimize(modSearch::SearchAllTexts());
        state.PauseTiming();
        modNodes::NodeSelectFull(program.document, program.document.tree.root());
        state.ResumeTiming();
    }
}

// Making the index, by the workers' processor time too; what it takes is in bytes.
void index(benchmark::State &state)
{
    const int entries = static_cast<int>(state.range(0));
    SearchFixture program;
    fill(program, entries, 0);
    std::clock_t indexing = 0;
    std::clock_t inflating = 0;
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        auto made = std::make_unique<TextIndex>(program.document);
        makeIndex(*made);
        state.PauseTiming();
        const std::clock_t middle = std::clock();
        inflateAll(program.document.tree);
        inflating += std::clock() - middle;
        indexing += middle - start;
        state.counters["bytes"] = static_cast<double>(made->weight());
        made.reset();
        state.ResumeTiming();
    }
    state.counters["to_inflating"] = static_cast<double>(indexing) / static_cast<double>(inflating);
}

void inflateOnly(benchmark::State &state)
{
    const int entries = static_cast<int>(state.range(0));
    SearchFixture program;
    fill(program, entries, 0);
    for (auto _ : state)
        inflateAll(program.document.tree);
}

void replaceAll(benchmark::State &state)
{
    const int entries = static_cast<int>(state.range(0));
    const int matches = static_cast<int>(state.range(1));
    for (auto _ : state) {
        state.PauseTiming();
        auto program = std::make_unique<SearchFixture>();
        fill(*program, entries, matches);
        program->box.resize(400, 300);
        program->box.show();
        g_sSearchFind = u"match"_s;
        g_sSearchReplace = u"word"_s;
        state.ResumeTiming();
        modSearch::SearchReplaceAll();
        state.PauseTiming();
        program.reset();
        state.ResumeTiming();
    }
    state.counters["per_match"] = benchmark::Counter(entries * matches, benchmark::Counter::kIsIterationInvariantRate |
                                                                            benchmark::Counter::kInvert);
}

// Undoing it and doing it again, beside doing it.
void undoReplaceAll(benchmark::State &state)
{
    const int entries = static_cast<int>(state.range(0));
    std::clock_t doing = 0;
    std::clock_t undoing = 0;
    std::clock_t redoing = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto program = std::make_unique<SearchFixture>();
        fill(*program, entries, 2);
        g_sSearchFind = u"match"_s;
        g_sSearchReplace = u"word"_s;
        const std::clock_t start = std::clock();
        modSearch::SearchReplaceAll();
        const std::clock_t done = std::clock();
        state.ResumeTiming();
        if (!undoStep(program->document))
            state.SkipWithError("not undone");
        state.PauseTiming();
        const std::clock_t undone = std::clock();
        if (!redoStep(program->document))
            state.SkipWithError("not redone");
        redoing += std::clock() - undone;
        undoing += undone - done;
        doing += done - start;
        program.reset();
        state.ResumeTiming();
    }
    state.counters["undo_to_doing"] = static_cast<double>(undoing) / static_cast<double>(doing);
    state.counters["redo_to_doing"] = static_cast<double>(redoing) / static_cast<double>(doing);
}

} // namespace

BENCHMARK(findNothing)->Arg(1000)->Arg(10000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK(findWithIndex)->ArgsProduct({{1000, 32767}, {0, 1}})->Unit(benchmark::kMillisecond);
BENCHMARK(index)->Arg(1000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK(inflateOnly)->Arg(1000)->Arg(10000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK(undoReplaceAll)->Arg(5000)->Iterations(2)->Unit(benchmark::kMillisecond);
BENCHMARK(replaceAll)->Args({500, 2})->Args({5000, 2})->Args({1, 1000})->Args({1, 2000})->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
