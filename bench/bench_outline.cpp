// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// The commands of the outline in a real document window, until its rows are laid out and drawn again: on 10,000
// siblings, on a chain 2,000 levels deep and on a full outline of 32,767 entries.

#include "document/UndoRedo.h"
#include "outline/SelectedEntries.h"
#include "outline/modOutline.h"
#include "support/RawOutline.h"
#include "window/WindowFixture.h"

#include "document/modDoc.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

using namespace Qt::StringLiterals;
using namespace modOutline;

namespace
{

enum class Shape {
    // 10,000 siblings under a child of the root, the one in the middle selected.
    Wide,
    // 2,000 levels of one child each, the last of three siblings at the end of them selected.
    Chain,
    // 32,767 entries on three levels.
    Full,
};

// Labels of equal length in no order.
QString label(int number)
{
    return u"Entry %1"_s.arg(number * 7919 % 32771, 5, 10, QLatin1Char('0'));
}

Entry *add(EntryTree &tree, Entry *parent)
{
    Entry *entry = tree.insert(Relationship::tvwChild, parent);
    tree.setLabel(entry, label(tree.entryCount()));
    tree.setExpanded(entry, true);
    return entry;
}

class Program
{
public:
    explicit Program(Shape shape)
    {
        modDoc::DocNew();
        tree().clear();
        const Entry *selected = nullptr;
        {
            const BulkChange bulk(tree());
            selected = build(shape);
        }
        modNodes::NodeSelect(document(), const_cast<Entry *>(selected));
        settle();
    }

    ~Program() { copiedEntry().clear(); }

    Document &document() { return *DocumentActive(); }

    EntryTree &tree() { return rawOutline(document()).tree; }

    // Until all is laid out and drawn.
    void settle() { QCoreApplication::processEvents(); }

    void answerYes() { m_fixture.fakes.dialogs.answers = {Answer::Yes}; }

private:
    const Entry *build(Shape shape)
    {
        Entry *root = add(tree(), nullptr);
        if (shape == Shape::Wide) {
            Entry *parent = add(tree(), root);
            for (int i = 0; i < 10000; ++i)
                add(tree(), parent);
            return parent->child(5000);
        }
        if (shape == Shape::Chain) {
            Entry *end = root;
            for (int i = 0; i < 2000; ++i)
                end = add(tree(), end);
            add(tree(), end);
            add(tree(), end);
            return add(tree(), end);
        }
        while (tree().entryCount() < EntryTree::maximumCount - 32) {
            Entry *parent = add(tree(), root);
            for (int i = 0; i < 31; ++i)
                add(tree(), parent);
        }
        return root;
    }

    WindowFixture m_fixture;
};

using Step = void (*)(Program &);

// A command, and what takes it back, which is not measured.
struct Reversible {
    const char *name;
    Step run;
    Step back;
};

template <void command()>
void run(Program &)
{
    command();
}

template <int level>
void expandToLevel(Program &)
{
    OutlineExpandToLevel(level);
}

void deleteSelected(Program &program)
{
    program.answerYes();
    OutlineDelete();
}

void copyAndGoUp(Program &program)
{
    OutlineCopy();
    modNodes::NodeSelect(program.document(), program.tree().selected()->previous());
}

void endRename(Program &program)
{
    program.document().view()->trvOutline.EndLabelEdit();
}

void nothing(Program &) {}

constexpr Reversible onOneEntry[] = {
    {"move up", run<OutlineMoveUp>, run<OutlineMoveDown>},
    {"move down", run<OutlineMoveDown>, run<OutlineMoveUp>},
    {"move first", run<OutlineMoveFirst>, run<OutlineMoveLast>},
    {"move last", run<OutlineMoveLast>, run<OutlineMoveFirst>},
    {"indent", run<OutlineIndent>, run<OutlineUnindent>},
    {"unindent", run<OutlineUnindent>, run<OutlineIndent>},
    {"insert above", run<OutlineInsertAbove>, deleteSelected},
    {"insert below", run<OutlineInsertBelow>, deleteSelected},
    {"insert child", run<OutlineInsertChild>, deleteSelected},
    {"delete", deleteSelected, run<OutlineInsertBelow>},
    {"copy", run<OutlineCopy>, nothing},
    {"paste", run<OutlinePaste>, deleteSelected},
    {"paste and delete", run<OutlinePasteAndDelete>, copyAndGoUp},
    {"tag", run<OutlineTaggedEntry>, nothing},
    {"rename", run<OutlineRename>, endRename},
};

constexpr Reversible onTheParent[] = {
    {"expand", run<OutlineExpand>, run<OutlineCollapse>},
    {"collapse", run<OutlineCollapse>, run<OutlineExpand>},
};

constexpr Reversible onTheOutline[] = {
    {"expand all", run<OutlineExpandAll>, run<OutlineCollapseAll>},
    {"collapse all", run<OutlineCollapseAll>, run<OutlineExpandAll>},
    {"expand to level 2", expandToLevel<2>, run<OutlineExpandAll>},
    {"expand to level 3", expandToLevel<3>, run<OutlineCollapseAll>},
};

void measure(benchmark::State &state, Shape shape, const Reversible &command, bool onParent)
{
    Program program(shape);
    OutlineCopy();
    if (command.run == Step(run<OutlinePasteAndDelete>))
        copyAndGoUp(program);
    if (onParent)
        modNodes::NodeSelect(program.document(), program.tree().selected()->parent());
    program.settle();
    for (auto _ : state) {
        command.run(program);
        program.settle();
        state.PauseTiming();
        command.back(program);
        program.settle();
        state.ResumeTiming();
    }
}

// What cannot be taken back is measured on an outline of its own each time.
struct Lasting {
    const char *name;
    Step run;
    Step prepare;
};

void tagSiblings(Program &program)
{
    const BulkChange bulk(program.tree());
    const Entry *parent = program.tree().selected()->parent();
    for (int row = 0; row < parent->childCount(); ++row)
        program.tree().setTagged(parent->child(row), true);
}

void selectParent(Program &program)
{
    modNodes::NodeSelect(program.document(), program.tree().selected()->parent());
}

void deleteTagged(Program &program)
{
    program.answerYes();
    OutlineDeleteTaggedEntries();
}

// All siblings of the selected entry, or each tenth behind the first.
void selectSiblings(Program &program, int from, int step)
{
    Entry *current = program.tree().selected();
    std::vector<Entry *> siblings;
    for (int row = from; row < current->parent()->childCount(); row += step)
        siblings.push_back(current->parent()->child(row));
    selectEntries(program.document(), current, siblings);
}

void selectAllSiblings(Program &program)
{
    selectSiblings(program, 0, 1);
}

void selectTenths(Program &program)
{
    selectSiblings(program, 1, 10);
}

void moveTenthsUp(Program &program)
{
    selectTenths(program);
    OutlineMoveUp();
}

void takeBack(Program &program)
{
    undoStep(program.document());
}

constexpr Lasting lasting[] = {
    {"select all siblings", selectAllSiblings, nothing},
    {"delete all siblings", deleteSelected, selectAllSiblings},
    {"delete their parent", deleteSelected, selectParent},
    {"tag all siblings", run<OutlineTaggedEntry>, selectAllSiblings},
    {"copy all siblings", run<OutlineCopy>, selectAllSiblings},
    {"move a tenth of them up", run<OutlineMoveUp>, selectTenths},
    {"undo that", takeBack, moveTenthsUp},
    {"indent a tenth of them", run<OutlineIndent>, selectTenths},
    {"sort current", run<OutlineSortCurrent>, selectParent},
    {"sort all", run<OutlineSortAll>, nothing},
    {"paste tagged", run<OutlinePasteTaggedEntries>, tagSiblings},
    {"delete tagged", deleteTagged, tagSiblings},
};

void measureOnce(benchmark::State &state, Shape shape, const Lasting &command)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto program = std::make_unique<Program>(shape);
        command.prepare(*program);
        program->settle();
        state.ResumeTiming();
        command.run(*program);
        program->settle();
        state.PauseTiming();
        program.reset();
        state.ResumeTiming();
    }
}

std::string nameOf(Shape shape, const char *command)
{
    static constexpr const char *shapes[] = {"wide", "chain", "full"};
    return std::string(shapes[static_cast<int>(shape)]) + "/" + command;
}

void registerAll(Shape shape)
{
    const auto add = [shape](const Reversible &command, bool onParent) {
        benchmark::RegisterBenchmark(nameOf(shape, command.name).c_str(), measure, shape, command, onParent)
            ->Unit(benchmark::kMillisecond)
            ->MinTime(0.1);
    };
    if (shape != Shape::Full) {
        for (const Reversible &command : onOneEntry)
            add(command, false);
        for (const Reversible &command : onTheParent)
            add(command, true);
        for (const Lasting &command : lasting)
            benchmark::RegisterBenchmark(nameOf(shape, command.name).c_str(), measureOnce, shape, command)
                ->Unit(benchmark::kMillisecond)
                ->Iterations(5);
    }
    for (const Reversible &command : onTheOutline)
        add(command, false);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    for (const Shape shape : {Shape::Wide, Shape::Chain, Shape::Full})
        registerAll(shape);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
