// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Pasting what strains the text engine most while it still may be pasted, until it is in the picture; showing such
// texts anew; and selecting what is left of them.

#include "Instructions.h"

#include "document/EntryDocument.h"
#include "model/LayoutStrain.h"
#include "model/SealedDocument.h"
#include "model/ShownText.h"
#include "model/StoredText.h"
#include "platform/RichTextBox.h"
#include "rtf/Rtf.h"
#include "support/FakePorts.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTest>

#include <benchmark/benchmark.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

// Tables of some columns as spreadsheets and pages have them, each cell with a word of its own.
QString htmlTable(int cells, int columns)
{
    QString html = u"<html><body><table border=1>"_s;
    for (int cell = 0; cell < cells; ++cell) {
        if (cell % columns == 0)
            html += u"<tr>"_s;
        html += u"<td>Cell %1</td>"_s.arg(cell);
        if (cell % columns == columns - 1)
            html += u"</tr>"_s;
    }
    return html + u"</table></body></html>"_s;
}

// Links to as many places, in one paragraph.
QByteArray rtfLinks(int count)
{
    QByteArray rtf("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 ");
    for (int link = 0; link < count; ++link) {
        const QByteArray number = QByteArray::number(link);
        rtf +=
            "{\\field{\\*\\fldinst{HYPERLINK \"https://example.org/" + number + "\"}}{\\fldrslt word" + number + "}} ";
    }
    return rtf + "}";
}

class Pane
{
public:
    Pane()
    {
        m_box.setDialogs(&m_ports.dialogs);
        m_box.resize(600, 400);
        m_box.show();
        m_box.setFocus();
        QTest::qWait(100);
    }

    RichTextBox &box() { return m_box; }

    void draw()
    {
        QApplication::processEvents();
        m_box.repaint();
    }

    bool wasAsked() const { return !m_ports.dialogs.questions.isEmpty(); }

private:
    FakePorts m_ports;
    RichTextBox m_box;
};

void pasteCells(benchmark::State &state)
{
    const QString html = htmlTable(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    Instructions instructions;
    for (auto _ : state) {
        state.PauseTiming();
        auto pane = std::make_unique<Pane>();
        auto *data = new QMimeData;
        data->setHtml(html);
        QApplication::clipboard()->setMimeData(data);
        state.ResumeTiming();
        instructions.start();
        pane->box().paste();
        pane->draw();
        instructions.stop();
        if (pane->wasAsked())
            state.SkipWithError("Not pasted as a table");
        state.PauseTiming();
        pane.reset();
        state.ResumeTiming();
    }
    state.counters["instructions"] = instructions.count() / static_cast<double>(state.iterations());
}

void pasteLinks(benchmark::State &state)
{
    const QByteArray rtf = rtfLinks(static_cast<int>(state.range(0)));
    Instructions instructions;
    for (auto _ : state) {
        state.PauseTiming();
        auto pane = std::make_unique<Pane>();
        state.ResumeTiming();
        instructions.start();
        pane->box().pasteRTF(rtf);
        pane->draw();
        instructions.stop();
        if (pane->wasAsked())
            state.SkipWithError("Not pasted as links");
        state.PauseTiming();
        pane.reset();
        state.ResumeTiming();
    }
    state.counters["instructions"] = instructions.count() / static_cast<double>(state.iterations());
}

void readLinks(benchmark::State &state)
{
    const QByteArray rtf = rtfLinks(static_cast<int>(state.range(0)));
    Instructions instructions;
    for (auto _ : state) {
        instructions.start();
        QTextDocument document;
        document.setUndoRedoEnabled(false);
        rtf::read(rtf, document);
        benchmark::DoNotOptimize(layoutStrain(document));
        instructions.stop();
    }
    state.counters["instructions"] = instructions.count() / static_cast<double>(state.iterations());
}

} // namespace

BENCHMARK(pasteCells)
    ->ArgNames({"cells", "columns"})
    ->Args({2'000, 10})
    ->Args({20'000, 10})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(readLinks)->Arg(1000)->Arg(10'000)->Arg(100'000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(pasteLinks)->Arg(1000)->Arg(10'000)->Arg(100'000)->Iterations(1)->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
