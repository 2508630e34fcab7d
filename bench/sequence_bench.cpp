// A long sequence diagram end to end: reading the text, laying it out, placing its items and painting them.
// A diagram of 2,000 messages with activations, fragments and notes should take well under a second.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "host/layout/diagram_loader.h"
#include "host/layout/sequence_layout.h"
#include "host/paint/export.h"
#include "orvex/diagrams/sequence_import.h"
#include "orvex/document/headless.h"

namespace {

using namespace Orvex;

// Eight participants; every tenth message opens a loop or alt, every call activates its receiver.
std::string GeneratedSequence(int messages) {
    std::string text = "sequenceDiagram\nautonumber\nactor U as User\n";
    for (int p = 1; p < 8; ++p)
        text += "participant P" + std::to_string(p) + " as Service " + std::to_string(p) + "\n";
    for (int i = 0; i < messages; i += 2) {
        const std::string a = i % 16 == 0 ? "U" : "P" + std::to_string(1 + (i / 2) % 7);
        const std::string b = "P" + std::to_string(1 + (i / 2 + 3) % 7);
        if (i % 20 == 0)
            text += i % 40 == 0 ? "loop every " + std::to_string(i) + " ms\n"
                                : "alt case " + std::to_string(i) + "\n";
        text += a + "->>+" + b + ": request " + std::to_string(i) + "\n";
        if (i % 30 == 0) text += "Note over " + b + ": busy\n";
        text += b + "-->>-" + a + ": answer " + std::to_string(i) + "\n";
        if (i % 20 == 18) text += "end\n";
    }
    return text;
}

void BM_SequenceImport(benchmark::State& state) {
    const std::string text = GeneratedSequence(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        TORXDiagramModel model;
        benchmark::DoNotOptimize(QVLImportSequence(text, TQVLDiagramFormat::dgMermaid, model));
    }
}
BENCHMARK(BM_SequenceImport)->Arg(2000)->Unit(benchmark::kMillisecond);

void BM_SequenceLayout(benchmark::State& state) {
    TORXDiagramModel model;
    QVLImportSequence(GeneratedSequence(static_cast<int>(state.range(0))), TQVLDiagramFormat::dgMermaid,
                      model);
    const TTextMeasure measure = FontMeasure(TQVLFont{});
    for (auto _ : state) benchmark::DoNotOptimize(LayoutSequence(model, measure));
}
BENCHMARK(BM_SequenceLayout)->Arg(2000)->Unit(benchmark::kMillisecond);

// What `orvex convert long.mmd -o long.pdf` does after reading the file: import, layout, items, painting.
void BM_SequenceLoadAndPaint(benchmark::State& state) {
    const std::string text = GeneratedSequence(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        TORXHeadlessLabel doc;
        LoadDiagramWithLayout(doc, text, TQVLDiagramFormat::dgMermaid);
        std::vector<std::uint8_t> pdf;
        std::string error;
        benchmark::DoNotOptimize(EncodePdf(doc, pdf, error));
        state.counters["items"] = static_cast<double>(doc.GetItemsCount());
    }
}
BENCHMARK(BM_SequenceLoadAndPaint)->Arg(2000)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
