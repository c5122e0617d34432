// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// What keeping a version of a large document costs: the window's thread, which makes values of it, and the worker,
// which stores them and reads them again; and what comparing two versions costs.

#include "GeneratedDocument.h"

#include "formats/Format.h"
#include "model/Outline.h"
#include "vault/OutlineComparison.h"
#include "vault/VersionStore.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int manyEntries = 32'700;
constexpr int textLength = 2000;

const Outline &largeOutline()
{
    static const ReadOutline read =
        formatOfVersion(formatVersion::native).read(generatedDocument(manyEntries, textLength, Shape::Bushy));
    return *read.outline;
}

VersionSave saveNumber(int number)
{
    return {QDateTime(QDate(2026, 1, 1), QTime(0, 0)).addSecs(number), u"/document.qly"_s, {}};
}

// In the window's thread.
void makeValues(benchmark::State &state)
{
    const Outline &outline = largeOutline();
    for (auto _ : state)
        benchmark::DoNotOptimize(keptOutline(outline));
}

// In the worker's: the first version, and one in which one text is another.
void keepVersion(benchmark::State &state)
{
    const bool isFirst = state.range(0) == 0;
    const QTemporaryDir folder;
    KeptOutline kept = keptOutline(largeOutline());
    const QString common = folder.filePath(u"versions.db"_s);
    if (!isFirst)
        VersionStore(common, Database::Opening::Create).keep(kept, saveNumber(0));
    qint64 before = QFileInfo(common).size();
    int number = 0;
    for (auto _ : state) {
        ++number;
        kept.entries[1000].storedText = QByteArray::number(number);
        const QString path = isFirst ? folder.filePath(QString::number(number)) : common;
        qint64 version = 0;
        {
            VersionStore store(path, isFirst ? Database::Opening::Create : Database::Opening::Existing);
            version = store.keep(kept, saveNumber(number));
        }
        VersionStore store(path, Database::Opening::Existing);
        if (!store.verify(version, kept))
            state.SkipWithError("The version is not what was kept");
        if (isFirst)
            state.counters["bytes"] = static_cast<double>(QFileInfo(path).size());
    }
    if (!isFirst)
        state.counters["bytes"] = static_cast<double>(QFileInfo(common).size() - before) / number;
}

// What the window waits for that shows the versions: the list of them, and the newest one.
void listVersions(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"versions.db"_s);
    constexpr int someEntries = 1000;
    const ReadOutline read =
        formatOfVersion(formatVersion::native).read(generatedDocument(someEntries, textLength, Shape::Bushy));
    KeptOutline kept = keptOutline(*read.outline);
    const auto versions = static_cast<int>(state.range(0));
    {
        VersionStore store(path, Database::Opening::Create);
        for (int number = 0; number < versions; ++number) {
            kept.entries[static_cast<size_t>(number % someEntries)].storedText = QByteArray::number(number);
            store.keep(kept, saveNumber(number));
        }
    }
    for (auto _ : state) {
        VersionStore store(path, Database::Opening::Existing);
        const std::vector<VersionInfo> list = store.list();
        if (static_cast<int>(list.size()) != versions)
            state.SkipWithError("There are not all versions");
        benchmark::DoNotOptimize(store.read(list.back().number));
    }
    state.counters["bytes"] = static_cast<double>(QFileInfo(path).size());
}

void compareVersions(benchmark::State &state)
{
    const std::vector<ComparedEntry> before = comparedEntries(keptOutline(largeOutline()));
    std::vector<ComparedEntry> after = before;
    for (size_t place = 1; place < after.size(); place += 100)
        after[place].text = "another";
    for (auto _ : state)
        benchmark::DoNotOptimize(compareOutlines(before, after));
}

BENCHMARK(makeValues)->Unit(benchmark::kMillisecond);
BENCHMARK(keepVersion)->Arg(0)->Unit(benchmark::kMillisecond);
// A database grows by whole pages, and the first few versions find room in those that are there.
BENCHMARK(keepVersion)->Arg(1)->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK(listVersions)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(compareVersions)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
