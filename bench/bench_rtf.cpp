// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

#include "rtf/Rtf.h"

#include <QGuiApplication>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFragment>

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

// Reading, writing and plain text in MB/s of RTF, each beside the least that the same task can cost.
namespace
{

constexpr int smallText = 2 << 10;
constexpr int middleText = 100 << 10;
constexpr int largeText = 1 << 20;
constexpr int hugeText = 50 << 20;

// Paragraphs of some 100 characters in four runs, as notes have them.
QByteArray sampleText(qint64 size)
{
    QByteArray rtf("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}"
                   "{\\colortbl;\\red200\\green0\\blue0;\\red0\\green0\\blue200;}\\fs20\n");
    rtf.reserve(size + 256);
    for (int number = 0; rtf.size() < size; ++number) {
        rtf += "The quick brown fox no. " + QByteArray::number(number) +
               " jumps \\b over the lazy\\b0  dog and runs \\i\\cf" + QByteArray::number(number % 3) +
               " away to the caf\\'e9\\i0\\cf0  of its choice, {\\f1\\ul as it always does}.\\par\n";
    }
    return rtf + "}";
}

struct PreparedBlock {
    QTextBlockFormat format;
    QTextCharFormat mark;
    std::vector<std::pair<QString, QTextCharFormat>> runs;
};

std::vector<PreparedBlock> prepare(const QTextDocument &document)
{
    std::vector<PreparedBlock> blocks;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        PreparedBlock prepared{block.blockFormat(), block.charFormat(), {}};
        for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
            prepared.runs.emplace_back(it.fragment().text(), it.fragment().charFormat());
        }
        blocks.push_back(std::move(prepared));
    }
    return blocks;
}

void countBytes(benchmark::State &state, qint64 bytes)
{
    state.SetBytesProcessed(state.iterations() * bytes);
}

void read(benchmark::State &state)
{
    const QByteArray rtf = sampleText(state.range(0));
    for (auto _ : state) {
        QTextDocument document;
        rtf::read(rtf, document);
        benchmark::DoNotOptimize(document.characterCount());
    }
    countBytes(state, rtf.size());
}

// The same document by cursor calls from runs that are ready.
void readBaseline(benchmark::State &state)
{
    const QByteArray rtf = sampleText(state.range(0));
    QTextDocument source;
    rtf::read(rtf, source);
    const std::vector<PreparedBlock> blocks = prepare(source);
    for (auto _ : state) {
        QTextDocument document;
        document.setUndoRedoEnabled(false);
        QTextCursor cursor(&document);
        cursor.beginEditBlock();
        bool isFirst = true;
        for (const PreparedBlock &block : blocks) {
            if (isFirst) {
                cursor.setBlockFormat(block.format);
                cursor.setBlockCharFormat(block.mark);
            } else {
                cursor.insertBlock(block.format, block.mark);
            }
            isFirst = false;
            for (const auto &[text, format] : block.runs) {
                cursor.insertText(text, format);
            }
        }
        cursor.endEditBlock();
        document.setUndoRedoEnabled(true);
        benchmark::DoNotOptimize(document.characterCount());
    }
    countBytes(state, rtf.size());
}

void plainText(benchmark::State &state)
{
    const QByteArray rtf = sampleText(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(rtf::toPlainText(rtf));
    }
    countBytes(state, rtf.size());
}

// One look at every byte.
void plainTextBaseline(benchmark::State &state)
{
    const QByteArray rtf = sampleText(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::memchr(rtf.constData(), 0, std::size_t(rtf.size())));
    }
    countBytes(state, rtf.size());
}

void write(benchmark::State &state)
{
    const QByteArray rtf = sampleText(state.range(0));
    QTextDocument document;
    rtf::read(rtf, document);
    for (auto _ : state) {
        benchmark::DoNotOptimize(rtf::write(document));
    }
    countBytes(state, rtf.size());
}

// A walk over the runs of the document.
void writeBaseline(benchmark::State &state)
{
    const QByteArray rtf = sampleText(state.range(0));
    QTextDocument document;
    rtf::read(rtf, document);
    for (auto _ : state) {
        int sum = 0;
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            for (QTextBlock::iterator it = block.begin(); !it.atEnd(); ++it) {
                sum += it.fragment().charFormatIndex();
            }
        }
        benchmark::DoNotOptimize(sum);
    }
    countBytes(state, rtf.size());
}

} // namespace

BENCHMARK(read)->Arg(smallText)->Arg(middleText)->Arg(largeText)->Arg(hugeText)->Unit(benchmark::kMillisecond);
BENCHMARK(readBaseline)->Arg(smallText)->Arg(middleText)->Arg(largeText)->Arg(hugeText)->Unit(benchmark::kMillisecond);
BENCHMARK(plainText)->Arg(smallText)->Arg(middleText)->Arg(largeText)->Arg(hugeText)->Unit(benchmark::kMillisecond);
BENCHMARK(plainTextBaseline)
    ->Arg(smallText)
    ->Arg(middleText)
    ->Arg(largeText)
    ->Arg(hugeText)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(write)->Arg(smallText)->Arg(middleText)->Arg(largeText)->Arg(hugeText)->Unit(benchmark::kMillisecond);
BENCHMARK(writeBaseline)->Arg(smallText)->Arg(middleText)->Arg(largeText)->Arg(hugeText)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
