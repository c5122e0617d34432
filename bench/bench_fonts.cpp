// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Giving all texts of a document another font.

#include "document/modNodes.h"
#include "model/Entry.h"
#include "model/StoredText.h"
#include "search/SearchFixture.h"
#include "support/RawOutline.h"

#include <QApplication>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace
{

// Some 2,000 characters of text with a few bold words.
QByteArray storedText(int number)
{
    QByteArray rtf("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 Entry " + QByteArray::number(number));
    while (rtf.size() < 2000)
        rtf += " the quick brown fox no. " + QByteArray::number(rtf.size() * 7 % 1009) +
               " {\\b jumps} over the dog\\par\n";
    return NodeTextCompressIfRequired(rtf + "}");
}

void documentFont(benchmark::State &state)
{
    const int entries = static_cast<int>(state.range(0));
    SearchFixture program;
    EntryTree &tree = rawOutline(program.document).tree;
    Entry *root = tree.insert(Relationship::tvwChild, nullptr);
    tree.setStoredText(root, storedText(0));
    for (int i = 1; i < entries; ++i)
        tree.setStoredText(tree.insert(Relationship::tvwChild, root), storedText(i));
    clsFont font;
    font.setName(u"DejaVu Serif"_s);
    font.setSize(14 * clsFont::point);
    for (auto _ : state)
        modNodes::NodeSetFontAll(program.document, root, font);
}

} // namespace

BENCHMARK(documentFont)->Arg(1000)->Arg(32767)->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
