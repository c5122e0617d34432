// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Starting with a document until the main window is in the picture. Selecting an entry in it, by an arrow key and by a
// click, until its text, the toolbar, the menus, the split and the status bar are up to date and drawn: whoever walks
// through an outline does this all the time, so it must not cost more in a full outline than in a small one.

#include "GeneratedDocument.h"
#include "Instructions.h"

#include "app/MainFixture.h"
#include "document/modDoc.h"
#include "document/modNodes.h"
#include "model/StoredText.h"
#include "platform/TreeView.h"
#include "support/RawOutline.h"
#include "window/frmDocument.h"

#include <QApplication>
#include <QTest>

#include <benchmark/benchmark.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace
{

enum class Order {
    // Branches of 31 entries, all open.
    Branches,
    // Every entry a child of the root.
    Flat,
};

class Program
{
public:
    Program(int entries, Order shape, bool tagged)
    {
        m_program.start();
        m_program.main.resize(1000, 700);
        m_program.choose("mnuFileNew");
        {
            const BulkChange bulk(tree());
            fill(entries, shape);
            if (tagged)
                tree().setTagged(tree().root()->firstChild(), true);
        }
        view().setFocus();
        modNodes::NodeSelectFull(*DocumentActive(), tree().collection().at(entries / 2));
        settle();
        view().scrollTo(view().currentIndex(), QAbstractItemView::PositionAtCenter);
        settle();
    }

    ~Program() { DocumentActive()->history.markSaved(); }

    EntryTree &tree() { return rawOutline(*DocumentActive()).tree; }

    TreeView &view() { return *static_cast<frmDocument &>(DocumentActive()->view()->window).treeView; }

    // The platform draws some milliseconds later, and several steps at once; here every step is drawn.
    void settle()
    {
        QApplication::processEvents();
        QEvent draw(QEvent::UpdateRequest);
        QApplication::sendEvent(&m_program.main, &draw);
    }

    // To the next entry and back, so that the outline does not scroll.
    void step()
    {
        m_down = !m_down;
        QTest::keyClick(&view(), m_down ? Qt::Key_Down : Qt::Key_Up);
        settle();
    }

    void click()
    {
        m_down = !m_down;
        const QRect here = view().visualRect(view().currentIndex());
        const QPoint middle(here.left() + 30, here.center().y() + (m_down ? here.height() : -here.height()));
        QTest::mouseClick(view().viewport(), Qt::LeftButton, Qt::NoModifier, middle);
        settle();
    }

private:
    void fill(int entries, Order shape)
    {
        constexpr int branchSize = 31;
        const QByteArray text = NodeTextCompressIfRequired(
            "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 The text of an {\\b entry}.\\par}");
        Entry *root = tree().root();
        Entry *parent = root;
        while (tree().entryCount() < entries) {
            const bool begins = shape == Order::Branches && tree().entryCount() % (branchSize + 1) == 1;
            Entry *entry = tree().insert(Relationship::tvwChild, begins ? root : parent);
            tree().setLabel(entry, u"Entry %1"_s.arg(tree().entryCount()));
            tree().setStoredText(entry, text);
            tree().setExpanded(entry, begins);
            if (begins)
                parent = entry;
        }
        tree().setExpanded(root, true);
    }

    MainFixture m_program;
    bool m_down = false;
};

void selecting(benchmark::State &state, void (Program::*select)(), Order shape, bool tagged)
{
    Program program(static_cast<int>(state.range(0)), shape, tagged);
    const Entry *before = program.tree().selected();
    for (auto _ : state) {
        (program.*select)();
        if (program.tree().selected() == before) {
            state.SkipWithError("the selection did not move");
            break;
        }
        before = program.tree().selected();
    }
}

void starting(benchmark::State &state)
{
    constexpr int textLength = 600;
    const auto entries = static_cast<int>(state.range(0));
    const QByteArray bytes = entries > 0 ? generatedDocument(entries, textLength, Shape::Bushy) : QByteArray();
    Instructions instructions;
    const auto start = [&] {
        auto program = std::make_unique<MainFixture>();
        const QString file = program->app.makeFile(u"start.qly"_s, bytes);
        state.ResumeTiming();
        instructions.start();
        program->start();
        if (entries > 0 && !modDoc::DocLoad(file))
            state.SkipWithError("not opened");
        QApplication::processEvents();
        QEvent draw(QEvent::UpdateRequest);
        QApplication::sendEvent(&program->main, &draw);
        instructions.stop();
        state.PauseTiming();
    };
    for (auto _ : state) {
        state.PauseTiming();
        start();
        state.ResumeTiming();
    }
    state.counters["instructions"] = instructions.count() / static_cast<double>(state.iterations());
}

void sizes(benchmark::internal::Benchmark *bench)
{
    bench->Arg(1000)->Arg(EntryTree::maximumCount)->Unit(benchmark::kMillisecond);
}

BENCHMARK(starting)->ArgName("entries")->Arg(0)->Arg(100)->Arg(32'700)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK_CAPTURE(selecting, ByKey, &Program::step, Order::Branches, false)->Apply(sizes);
BENCHMARK_CAPTURE(selecting, ByKeyWithTags, &Program::step, Order::Branches, true)->Apply(sizes);
BENCHMARK_CAPTURE(selecting, ByKeyAmongSiblings, &Program::step, Order::Flat, false)->Apply(sizes);
BENCHMARK_CAPTURE(selecting, ByClick, &Program::click, Order::Branches, false)->Apply(sizes);
BENCHMARK_CAPTURE(selecting, ByClickAmongSiblings, &Program::click, Order::Flat, false)->Apply(sizes);

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
