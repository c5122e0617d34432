// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// What it costs to keep documents against a crash: typing that is taken down beside typing that is not, and changes in
// a small and in a large document, in the window's thread and until the writer has them on disk.

#include "GeneratedDocument.h"
#include "Instructions.h"

#include "app/MainFixture.h"
#include "document/modNodes.h"
#include "formats/Format.h"
#include "model/StoredText.h"
#include "platform/RichTextBox.h"
#include "support/RawOutline.h"
#include "vault/Vault.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace
{

// A quick typist's.
constexpr int keysPerSecond = 10;
constexpr int keyCount = 600;

// With tables and a list among its paragraphs, if that is asked for.
QByteArray textOf(qsizetype characters, bool isRich)
{
    QByteArray rtf("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}}"
                   "{\\*\\listtable{\\list{\\listlevel\\levelnfc0\\levelstartat1{\\leveltext\\'02\\'00.;}"
                   "{\\levelnumbers\\'01;}}\\listid1}}{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}"
                   "\\f0\\fs20 ");
    for (int line = 0; rtf.size() < characters; ++line)
        if (isRich && line % 20 == 0)
            rtf += "\\trowd\\cellx2000\\cellx4000\\pard\\intbl one\\cell {\\b two}\\cell\\row\\pard ";
        else if (isRich && line % 5 == 0)
            rtf += "\\pard\\ls1\\ilvl0 item " + QByteArray::number(line) + "\\par\\pard ";
        else
            rtf += "the quick brown fox no. " + QByteArray::number(line) +
                   " {\\b jumps} over {\\i the lazy} dog and runs\\par\n";
    return rtf + "}";
}

// In the picture, too, which the platform would draw some milliseconds later.
void settle(frmMain &main)
{
    QApplication::processEvents();
    QEvent draw(QEvent::UpdateRequest);
    QApplication::sendEvent(&main, &draw);
}

// Naming an entry beside naming one in an outline of a few: what the first change costs, which takes the outline down
// as it was, and what each costs that follows.
void naming(benchmark::State &state)
{
    constexpr int textLength = 600;
    constexpr int namings = 100;
    const auto entries = static_cast<int>(state.range(0));
    Instructions first;
    Instructions following;
    for (auto _ : state) {
        state.PauseTiming();
        ReadOutline read =
            formatOfVersion(formatVersion::native).read(generatedDocument(entries, textLength, Shape::Bushy));
        const QTemporaryDir folder;
        qint64 time = 0;
        Vault vault({folder.filePath(u"recovery"_s), [&time] { return time; }, false});
        Document document(std::move(read.outline));
        vault.attach(document);
        Entry *entry = document.tree.root()->firstChild();
        const auto name = [&](Instructions &instructions, int number) {
            instructions.start();
            document.history.setLabel(entry, QString::number(number));
            time += Journal::lookInterval;
            vault.look();
            instructions.stop();
            vault.waitUntilWritten();
        };
        state.ResumeTiming();
        name(first, 0);
        for (int number = 1; number <= namings; ++number)
            name(following, number);
        if (!vault.flush())
            state.SkipWithError("not kept");
        state.PauseTiming();
        document.history.markSaved();
        state.ResumeTiming();
    }
    const auto times = static_cast<double>(state.iterations());
    state.counters["first"] = first.count() / times;
    state.counters["each"] = following.count() / times / namings;
}

struct Cost {
    double instructions = 0;
    double milliseconds = 0;
};

// The time that the journal reads is that of the keys, so that a minute's typing need not take a minute.
Cost typing(qsizetype characters, bool isRich, bool isKept)
{
    MainFixture program;
    program.start();
    program.main.resize(1000, 700);
    qint64 time = 0;
    Vault vault({program.app.folder.filePath(u"recovery"_s), [&time] { return time; }, false});
    program.choose("mnuFileNew");
    Document &document = *DocumentActive();
    Entry *root = document.tree.root();
    rawOutline(document).tree.setStoredText(root, NodeTextCompressIfRequired(textOf(characters, isRich)));
    document.history.startAnew();
    if (isKept)
        vault.attach(document);
    modNodes::NodeSelectFull(document, root);
    auto &box = dynamic_cast<RichTextBox &>(document.view()->txtRTF);
    box.setFocus();
    box.setSelStart(static_cast<int>(box.Text().size()));
    box.ensureCursorVisible();
    QTest::qWait(1500);
    Instructions instructions;
    QElapsedTimer timer;
    timer.start();
    instructions.start();
    for (int key = 0; key < keyCount; ++key) {
        QTest::keyClick(&box, key % 40 == 39 ? Qt::Key_Return : key % 6 == 5 ? Qt::Key_Space : Qt::Key_A);
        settle(program.main);
        time += 1000 / keysPerSecond;
        // As often as by itself.
        if (time % Journal::lookInterval < 1000 / keysPerSecond)
            vault.look();
    }
    instructions.stop();
    const Cost cost{instructions.count(), static_cast<double>(timer.nsecsElapsed()) / 1e6};
    if (isKept && (!vault.flush() || vault.journalOf(document)->isEmpty()))
        qFatal("What was typed is not kept");
    document.history.markSaved();
    return cost;
}

void typingBesideUnkept(benchmark::State &state)
{
    const auto characters = static_cast<qsizetype>(state.range(0));
    const bool isRich = state.range(1) != 0;
    Cost kept;
    Cost unkept;
    for (auto _ : state) {
        unkept = typing(characters, isRich, false);
        kept = typing(characters, isRich, true);
        state.SetIterationTime((kept.milliseconds - unkept.milliseconds) / 1e3 / keyCount);
    }
    state.counters["kept_to_unkept"] = kept.instructions / unkept.instructions;
    state.counters["instructions_more"] = (kept.instructions - unkept.instructions) / keyCount;
    state.counters["instructions"] = unkept.instructions / keyCount;
    constexpr double millisecondsOfKey = 1000.0 / keysPerSecond;
    state.counters["share_of_time"] = (kept.milliseconds - unkept.milliseconds) / keyCount / millisecondsOfKey;
}

} // namespace

BENCHMARK(typingBesideUnkept)
    ->ArgNames({"characters", "tables_and_lists"})
    ->Args({200, 0})
    ->Args({2'000, 0})
    ->Args({100'000, 0})
    ->Args({1'000'000, 0})
    ->Args({100'000, 1})
    ->Args({1'000'000, 1})
    ->UseManualTime()
    ->Iterations(1)
    ->Unit(benchmark::kMicrosecond);

BENCHMARK(naming)->ArgName("entries")->Arg(1000)->Arg(32'700)->Iterations(3)->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
