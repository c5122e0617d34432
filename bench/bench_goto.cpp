// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// What a key costs in the line that finds entries, in a full outline: beside a pass that only looks whether each label
// holds the letters as they stand.

#include "find/EntryNames.h"
#include "find/Folding.h"
#include "model/EntryTree.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <random>

using namespace Qt::StringLiterals;

namespace
{

// Labels of three words of a language that nobody speaks, in branches of eight.
void fillWithNames(EntryTree &tree)
{
    static const QString syllables[] = {u"ta"_s, u"re"_s,  u"ni"_s, u"so"_s,  u"mel"_s, u"dor"_s,
                                        u"an"_s, u"qui"_s, u"vo"_s, u"tre"_s, u"lin"_s, u"B\u00e9"_s};
    std::minstd_rand random(1);
    std::vector<Entry *> entries{tree.insert(Relationship::tvwFirst, nullptr)};
    constexpr std::size_t branch = 8;
    for (std::size_t i = 1; i < EntryTree::maximumCount; ++i) {
        Entry *entry = tree.insert(Relationship::tvwChild, entries[(i - 1) / branch]);
        QString label;
        for (int word = 0; word < 3; ++word) {
            for (int syllable = 0; syllable < 3; ++syllable)
                label += syllables[random() % std::size(syllables)];
            label += word < 2 ? u" "_s : QString();
        }
        tree.setLabel(entry, label);
        entries.push_back(entry);
    }
}

double seconds(std::clock_t begin)
{
    return double(std::clock() - begin) / CLOCKS_PER_SEC;
}

const EntryTree &fullTree()
{
    static EntryTree tree;
    if (!tree.root())
        fillWithNames(tree);
    return tree;
}

void openingTheLine(benchmark::State &state)
{
    const bool isKnown = state.range(0) != 0;
    const EntryTree &tree = fullTree();
    EntryNames known;
    if (isKnown)
        known.take(tree);
    for (auto _ : state) {
        EntryNames fresh;
        EntryNames &names = isKnown ? known : fresh;
        names.take(tree);
        benchmark::DoNotOptimize(names.names().count());
    }
}

// The last of the letters, with what was typed before it just typed.
void typingALetter(benchmark::State &state, const QString &typed)
{
    EntryNames names;
    names.take(fullTree());
    NameRanking ranking(names.names());
    double typing = 0;
    double looking = 0;
    for (auto _ : state) {
        state.PauseTiming();
        NameRanking fresh(names.names());
        if (typed.size() > 1)
            fresh.find(NamePattern(QStringView(typed).chopped(1)));
        const std::clock_t plain = std::clock();
        const QString letters = folded(typed);
        int holding = 0;
        for (int place = 0; place < names.names().count(); ++place)
            holding += names.names().at(place).folded.contains(letters) ? 1 : 0;
        benchmark::DoNotOptimize(holding);
        looking += seconds(plain);
        const std::clock_t begin = std::clock();
        state.ResumeTiming();
        benchmark::DoNotOptimize(fresh.find(NamePattern(typed)).data());
        state.PauseTiming();
        typing += seconds(begin);
        state.counters["found"] = fresh.count();
        state.ResumeTiming();
    }
    state.counters["ratio"] = typing / looking;
}

} // namespace

BENCHMARK(openingTheLine)->Arg(0)->Arg(1)->ArgName("known")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typingALetter, theFirst, u"t"_s)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typingALetter, theSecond, u"ta"_s)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typingALetter, theFourth, u"tare"_s)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typingALetter, anEighth, u"tarenimo"_s)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typingALetter, aWay, u"tare/"_s)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typingALetter, behindAWay, u"tare/n"_s)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
