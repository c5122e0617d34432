// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Loading and saving whole documents, as the program does it but without a window: how the cost grows with the number
// of entries, and what the extreme shapes of an outline cost.

#include "GeneratedDocument.h"
#include "Instructions.h"

#include "document/modDoc.h"
#include "support/FormatsFixture.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int textLength = 2000;

// A generated document on disk.
class DocumentFile
{
public:
    DocumentFile(int entries, Shape shape)
    {
        QFile file(name());
        const QByteArray bytes = generatedDocument(entries, textLength, shape);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The document cannot be written");
    }

    QString name() const { return m_folder.filePath(u"document.qly"_s); }

    qint64 size() const { return QFile(name()).size(); }

private:
    QTemporaryDir m_folder;
};

void countPerEntry(benchmark::State &state, const DocumentFile &file, int entries)
{
    state.counters["per_entry"] =
        benchmark::Counter(entries, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.SetBytesProcessed(state.iterations() * file.size());
}

void load(benchmark::State &state, Shape shape)
{
    const int entries = static_cast<int>(state.range(0));
    const DocumentFile file(entries, shape);
    FormatsFixture program;
    Instructions instructions;
    for (auto _ : state) {
        instructions.start();
        if (!modDoc::DocLoad(file.name()) || program.active()->document.tree.entryCount() != entries ||
            program.errors.count() > 0)
            state.SkipWithError("The document was not read whole");
        instructions.stop();
        state.PauseTiming();
        program.closeAll();
        state.ResumeTiming();
    }
    countPerEntry(state, file, entries);
    instructions.stop();
    state.counters["instructions"] = instructions.count() / static_cast<double>(state.iterations());
}

void save(benchmark::State &state, Shape shape)
{
    const int entries = static_cast<int>(state.range(0));
    const DocumentFile file(entries, shape);
    const FormatsFixture program;
    modDoc::DocLoad(file.name());
    Instructions instructions;
    instructions.start();
    for (auto _ : state) {
        if (modDoc::DocSave(file.name()) != SaveOutcome::Saved)
            state.SkipWithError("The document was not saved");
    }
    countPerEntry(state, file, entries);
    instructions.stop();
    state.counters["instructions"] = instructions.count() / static_cast<double>(state.iterations());
}

BENCHMARK_CAPTURE(load, bushy, Shape::Bushy)->Arg(1000)->Arg(10000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, flat, Shape::Flat)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, chain, Shape::Chain)->Arg(2000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(save, bushy, Shape::Bushy)->Arg(1000)->Arg(10000)->Arg(32767)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(save, flat, Shape::Flat)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(save, chain, Shape::Chain)->Arg(2000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
