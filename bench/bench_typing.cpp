// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Typing into the text pane of the real main window: the time from a key to the picture with its character. The worst
// of 200 keys counts, as whoever types feels that one.

#include "Instructions.h"

#include "app/MainFixture.h"
#include "document/modNodes.h"
#include "model/StoredText.h"
#include "platform/RichTextBox.h"
#include "platform/TreeView.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTest>

#include <algorithm>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr int keyCount = 200;

enum Place { AtTheStart, InTheMiddle, AtTheEnd };

QByteArray textOf(qsizetype characters)
{
    QByteArray rtf("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 ");
    for (int line = 0; rtf.size() < characters; ++line)
        rtf += "the quick brown fox no. " + QByteArray::number(line) +
               " {\\b jumps} over {\\i the lazy} dog and runs\\par\n";
    return rtf + "}";
}

void settle()
{
    for (int i = 0; i < 50; ++i)
        QApplication::processEvents();
}

void typing(benchmark::State &state)
{
    const auto characters = static_cast<qsizetype>(state.range(0));
    MainFixture program;
    program.start();
    program.main.resize(1000, 700);
    program.choose("mnuFileNew");
    Document &document = *DocumentActive();
    Entry *root = document.tree.root();
    rawOutline(document).tree.setStoredText(root, NodeTextCompressIfRequired(textOf(characters)));
    modNodes::NodeSelectFull(document, root);
    auto &box = dynamic_cast<RichTextBox &>(document.view()->txtRTF);
    box.setFocus();
    const auto length = static_cast<int>(box.Text().size());
    box.setSelStart(state.range(1) == AtTheStart ? 0 : state.range(1) == AtTheEnd ? length : length / 2);
    box.ensureCursorVisible();
    QTest::qWait(1500);
    double worst = 0;
    double sum = 0;
    Instructions instructions;
    for (auto _ : state) {
        for (int key = 0; key < keyCount; ++key) {
            QElapsedTimer timer;
            timer.start();
            instructions.start();
            QTest::keyClick(&box, key % 40 == 39 ? Qt::Key_Return : key % 6 == 5 ? Qt::Key_Space : Qt::Key_A);
            settle();
            instructions.stop();
            const double milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
            worst = std::max(worst, milliseconds);
            sum += milliseconds;
        }
        state.SetIterationTime(sum / 1e3);
    }
    state.counters["worst_ms"] = worst;
    state.counters["mean_ms"] = sum / keyCount;
    state.counters["instructions"] = instructions.count() / keyCount;
    QElapsedTimer timer;
    timer.start();
    if (!NodeTextDecompressIfRequired(document.tree.storedText(root)).contains("aaaaa"))
        state.SkipWithError("the text is not stored");
    state.counters["store_ms"] = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    document.history.markSaved();
}

} // namespace

BENCHMARK(typing)
    ->ArgNames({"characters", "place"})
    ->ArgsProduct({{2'000, 1'000'000}, {AtTheStart, InTheMiddle, AtTheEnd}})
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
