// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Finding in all entries of a document: how soon the first and the last hit are told, and for how long the window's
// thread is busy, beside passes that only inflate the texts, only read them, or look through their characters.

#include "GeneratedText.h"

#include "document/Document.h"
#include "find/EntryLook.h"
#include "find/FindReplace.h"
#include "find/FindRun.h"
#include "find/TextIndex.h"
#include "model/Entry.h"
#include "support/RawOutline.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>

#include <benchmark/benchmark.h>

#include <cstring>
#include <ctime>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{

constexpr int entryCount = 32767;

double threadSeconds(clockid_t clock)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

// Of 32,767 entries, the one in the middle holds the word "match"; made once.
Document &document()
{
    static const auto made = [] {
        auto document = std::make_unique<Document>();
        EntryTree &tree = rawOutline(*document).tree;
        Entry *root = tree.insert(Relationship::tvwChild, nullptr);
        Entry *branch = root;
        for (int i = 1; i < entryCount; ++i) {
            Entry *entry = tree.insert(Relationship::tvwChild, i % 30 == 0 ? root : branch);
            branch = i % 30 == 0 ? entry : branch;
            tree.setLabel(entry, u"Entry number %1"_s.arg(i));
            tree.setStoredText(entry, generatedText(i, i == entryCount / 2 ? 1 : 0));
        }
        auto *index = new TextIndex(*document, 0);
        QEventLoop loop;
        QObject::connect(index, &TextIndex::completed, &loop, &QEventLoop::quit);
        loop.exec();
        return document;
    }();
    return *made;
}

struct Spent {
    double whole = 0;
    double until100 = 0;
    double processor = 0;
    double window = 0;
    qint64 hits = 0;
};

Spent spentOn(const QString &text, const FindOptions &options)
{
    Spent spent;
    const double processor = threadSeconds(CLOCK_PROCESS_CPUTIME_ID);
    const double window = threadSeconds(CLOCK_THREAD_CPUTIME_ID);
    QElapsedTimer timer;
    timer.start();
    FindRun run(document(), FindQuery(text, options));
    QEventLoop loop;
    QObject::connect(&run, &FindRun::found, &loop, [&] {
        if (run.hitCount() >= 100 && spent.until100 == 0)
            spent.until100 = double(timer.nsecsElapsed()) * 1e-6;
    });
    QObject::connect(&run, &FindRun::finished, &loop, &QEventLoop::quit);
    loop.exec();
    spent.whole = double(timer.nsecsElapsed()) * 1e-6;
    spent.processor = (threadSeconds(CLOCK_PROCESS_CPUTIME_ID) - processor) * 1e3;
    spent.window = (threadSeconds(CLOCK_THREAD_CPUTIME_ID) - window) * 1e3;
    spent.hits = run.hitCount();
    return spent;
}

template <typename Look>
double millisecondsOf(Look look)
{
    const double start = threadSeconds(CLOCK_THREAD_CPUTIME_ID);
    const EntryTree &tree = document().tree;
    for (int i = 1; i <= tree.entryCount(); ++i)
        look(EntryTree::textLastStored(tree.collection().at(i)));
    return (threadSeconds(CLOCK_THREAD_CPUTIME_ID) - start) * 1e3;
}

double inflating()
{
    return millisecondsOf([](const QByteArray &text) { benchmark::DoNotOptimize(soundText(text)); });
}

double reading()
{
    return millisecondsOf([](const QByteArray &text) { benchmark::DoNotOptimize(findableText(text)); });
}

// Looking through characters that lie there as they are.
double scanning(const char *word)
{
    static const auto texts = [] {
        std::vector<QByteArray> made;
        millisecondsOf([&](const QByteArray &text) { made.push_back(findableText(text)->toLatin1()); });
        return made;
    }();
    const double start = threadSeconds(CLOCK_THREAD_CPUTIME_ID);
    for (const QByteArray &text : texts)
        benchmark::DoNotOptimize(memmem(text.constData(), std::size_t(text.size()), word, std::strlen(word)));
    return (threadSeconds(CLOCK_THREAD_CPUTIME_ID) - start) * 1e3;
}

void find(benchmark::State &state, const char *text, bool isExpression)
{
    FindOptions options;
    options.regularExpression = isExpression;
    document();
    Spent spent;
    int rounds = 0;
    double again = 0;
    double inflated = 0;
    double read = 0;
    double scanned = 0;
    for (auto _ : state) {
        const Spent each = spentOn(QString::fromUtf8(text), options);
        state.PauseTiming();
        // As when one types on.
        again += spentOn(QString::fromUtf8(text), options).processor;
        spent.whole += each.whole;
        spent.until100 += each.until100;
        spent.processor += each.processor;
        spent.window += each.window;
        spent.hits = each.hits;
        ++rounds;
        inflated += inflating();
        read += reading();
        scanned += scanning(text);
        state.ResumeTiming();
    }
    state.counters["first_100"] = spent.until100 / rounds;
    state.counters["processor"] = spent.processor / rounds;
    state.counters["window"] = spent.window / rounds;
    state.counters["again"] = again / rounds;
    state.counters["hits"] = double(spent.hits);
    state.counters["inflating"] = inflated / rounds;
    state.counters["reading"] = read / rounds;
    state.counters["scanning"] = scanned / rounds;
    state.counters["to_inflating"] = spent.processor / inflated;
}

// Replacing two hits in each of so many texts, and undoing it.
void replace(benchmark::State &state)
{
    const int entries = static_cast<int>(state.range(0));
    double undoing = 0;
    double replacing = 0;
    for (auto _ : state) {
        state.PauseTiming();
        Document document;
        EntryTree &tree = rawOutline(document).tree;
        Entry *root = tree.insert(Relationship::tvwChild, nullptr);
        for (int i = 1; i <= entries; ++i)
            tree.setStoredText(tree.insert(Relationship::tvwChild, root), generatedText(i, 2));
        const FindQuery query(u"match"_s, {});
        FindRun run(document, query);
        std::vector<FindReplace::Choice> choices;
        QEventLoop loop;
        QObject::connect(&run, &FindRun::found, &loop, [&](const std::vector<EntryHits> &found) {
            for (const EntryHits &each : found)
                choices.push_back(FindReplace::wholeOf(each));
        });
        QObject::connect(&run, &FindRun::finished, &loop, &QEventLoop::quit);
        loop.exec();
        state.ResumeTiming();
        const double start = threadSeconds(CLOCK_THREAD_CPUTIME_ID);
        const FindReplace::Result result = FindReplace(query, u"word"_s).apply(document, choices);
        const double done = threadSeconds(CLOCK_THREAD_CPUTIME_ID);
        if (result.replaced != entries * 2)
            state.SkipWithError("not replaced");
        state.PauseTiming();
        if (!document.history.undo())
            state.SkipWithError("not undone");
        undoing += threadSeconds(CLOCK_THREAD_CPUTIME_ID) - done;
        replacing += done - start;
        state.ResumeTiming();
    }
    state.counters["undo_to_doing"] = undoing / replacing;
}

} // namespace

BENCHMARK(replace)->Arg(5000)->Iterations(2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(find, once, "match", false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(find, nowhere, "nowhere", false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(find, twoLetters, "ta", false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(find, frequentWord, "dorni", false)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(find, expression, "m[aeo]t+ch\\b", true)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(find, expressionOfClasses, "\\d{4}-\\d\\d", true)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(find, frequentExpression, "\\b(qui|vo)\\w+an\\b", true)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
