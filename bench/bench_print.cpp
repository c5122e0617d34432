// SPDX-FileCopyrightText: 2026 The Quillery developers
// SPDX-License-Identifier: MIT

// Printing a whole document to a PDF file: beside Qt laying out and painting the same text in one piece, and how cost
// and memory grow with the number of entries.

#include "model/SealedDocument.h"
#include "model/StoredText.h"
#include "pages/PrintComposition.h"
#include "print/PrintRTF.h"
#include "support/FakeDocument.h"
#include "support/RawOutline.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <climits>
#include <ctime>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace
{

// Some 2,000 characters of text with runs of several looks.
QByteArray textOf(int number)
{
    QByteArray rtf("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Sans;}}\\f0\\fs20 Entry " + QByteArray::number(number));
    while (rtf.size() < 2000)
        rtf += " the quick brown fox no. " + QByteArray::number(rtf.size() * 7 % 1009) +
               " {\\b jumps} over the {\\i lazy} dog\\par\n";
    return rtf + "}";
}

// A tree of entries, each with up to ten children.
class BushyDocument
{
public:
    explicit BushyDocument(int entries)
    {
        EntryTree &tree = rawOutline(m_fake.document).tree;
        std::vector<Entry *> all;
        for (int i = 0; i < entries; ++i) {
            Entry *entry = tree.insert(Relationship::tvwChild, i == 0 ? nullptr : all[std::size_t(i - 1) / 10]);
            tree.setLabel(entry, u"Entry number %1"_s.arg(i));
            tree.setStoredText(entry, NodeTextCompressIfRequired(textOf(i)));
            all.push_back(entry);
        }
    }

    PrintComposition composition()
    {
        return PrintComposition({&m_fake.document, m_fake.document.tree.root(), true}, QFont(u"DejaVu Sans"_s));
    }

private:
    FakeDocument m_fake;
};

class PdfPrinter
{
public:
    PdfPrinter()
    {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setResolution(600);
        printer.setOutputFileName(m_folder.filePath(u"out.pdf"_s));
    }

private:
    QTemporaryDir m_folder;

public:
    QPrinter printer{QPrinter::HighResolution};
};

// The highest memory use of the process so far.
double peakMegabytes()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024;
}

// What other programs do in the meantime does not count.
double processorSeconds()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

double printByProgram(BushyDocument &document, QPrinter &printer)
{
    const double begin = processorSeconds();
    if (PrintRTF(document.composition(), printer, PrintMargins(), [] { return true; }) != PrintOutcome::Printed)
        qFatal("It was not printed");
    return processorSeconds() - begin;
}

// The text is composed already; the pages are those of the program.
double printByQt(QTextDocument &text, QPrinter &printer)
{
    const QSizeF size = devicePixels(printer, drawingRectangle(paperOf(printer), PrintMargins())).size();
    const double begin = processorSeconds();
    text.documentLayout()->setPaintDevice(&printer);
    text.setPageSize(size);
    const int pages = text.pageCount();
    QPainter painter(&printer);
    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            printer.newPage();
        painter.save();
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = QRectF(QPointF(0, page * size.height()), size);
        painter.translate(0, -context.clip.top());
        painter.setClipRect(context.clip);
        text.documentLayout()->draw(&painter, context);
        painter.restore();
    }
    painter.end();
    return processorSeconds() - begin;
}

void besideQt(benchmark::State &state)
{
    BushyDocument document(int(state.range(0)));
    PdfPrinter ours;
    PdfPrinter theirs;
    double own = 0;
    double qt = 0;
    for (auto _ : state) {
        SealedDocument text;
        const PrintComposition composition = document.composition();
        composition.compose(text, composition.first(), {INT_MAX, INT_MAX});
        qt += printByQt(text, theirs.printer);
        own += printByProgram(document, ours.printer);
    }
    state.counters["own_s"] = own / double(state.iterations());
    state.counters["qt_s"] = qt / double(state.iterations());
    state.counters["ratio"] = own / qt;
}

void printDocument(benchmark::State &state)
{
    BushyDocument document(int(state.range(0)));
    PdfPrinter target;
    const double before = peakMegabytes();
    for (auto _ : state)
        printByProgram(document, target.printer);
    state.counters["more_MB"] = peakMegabytes() - before;
    state.counters["per_entry"] = benchmark::Counter(
        double(state.range(0)), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

} // namespace

// The memory first: what Qt needs for a whole text would hide what the program needs.
BENCHMARK(printDocument)->Arg(1000)->Arg(4000)->Arg(16000)->Arg(32767)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(besideQt)->Arg(100)->Arg(1000)->Arg(3000)->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
