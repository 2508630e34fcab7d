// Parsing generated diagrams of 1,000, 10,000 and 100,000 nodes: the cost per node should stay flat.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/generated_charts.h"
#include "orvex/diagrams/diagram_parse.h"

namespace {

using OrvexBench::MermaidFlowchart;

std::string PlantUmlClasses(int nodes) {
    std::string text = "@startuml\n";
    for (int i = 0; i < nodes; ++i)
        text += "class C" + std::to_string(i) + "\nC" + std::to_string(i) + " <|-- C" +
                std::to_string(i + 1) + " : extends\n";
    return text + "@enduml\n";
}

std::string PlantUmlActivity(int nodes) {
    std::string text = "@startuml\nstart\n";
    for (int i = 0; i < nodes; ++i) text += ":Step " + std::to_string(i) + ";\n";
    return text + "stop\n@enduml\n";
}

void Run(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        auto model = Orvex::QVLParseDiagram(text, Orvex::TQVLDiagramFormat::dgAuto);
        benchmark::DoNotOptimize(model);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The 100,000-node inputs take a good part of a second each: a few iterations say enough.
void Sizes(benchmark::internal::Benchmark* b) {
    b->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->MinTime(0.3);
}

void BM_MermaidFlowchart(benchmark::State& state) {
    Run(state, MermaidFlowchart(static_cast<int>(state.range(0))));
}
BENCHMARK(BM_MermaidFlowchart)->Apply(Sizes);

void BM_PlantUmlClasses(benchmark::State& state) {
    Run(state, PlantUmlClasses(static_cast<int>(state.range(0))));
}
BENCHMARK(BM_PlantUmlClasses)->Apply(Sizes);

void BM_PlantUmlActivity(benchmark::State& state) {
    Run(state, PlantUmlActivity(static_cast<int>(state.range(0))));
}
BENCHMARK(BM_PlantUmlActivity)->Apply(Sizes);

}  // namespace
