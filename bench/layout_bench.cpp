// Layout time of generated flowcharts: a layered graph of N steps in which every step follows one of the
// recent ones and every fifth also joins another, as long hand-written flowcharts do.
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "host/layout/graph_layout.h"
#include "orvex/diagrams/diagram_model.h"

namespace {

using namespace Orvex;

TORXDiagramModel GeneratedFlowchart(int count) {
    TORXDiagramModel model;
    std::mt19937 random(20240607);
    for (int i = 0; i < count; ++i) {
        const std::string id = "n" + std::to_string(i);
        const auto shape = i % 7 == 3 ? TQVLFlowType::ftDecision : TQVLFlowType::ftProcess;
        model.AddNode(id, "Step " + std::to_string(i), shape, true);
        if (i == 0) continue;
        std::uniform_int_distribution<int> recent(std::max(0, i - 8), i - 1);
        model.AddEdge("n" + std::to_string(recent(random)), id, i % 7 == 4 ? "yes" : "", false,
                      TQVLDiagEdgeArrow::eaArrow);
        if (i % 5 == 0 && i > 20) {
            std::uniform_int_distribution<int> earlier(0, i - 10);
            model.AddEdge(id, "n" + std::to_string(earlier(random)), "", true, TQVLDiagEdgeArrow::eaArrow);
        }
    }
    return model;
}

std::vector<TLayoutSize> Sizes(const TORXDiagramModel& model) {
    const TTextMeasure measure = FixedPitchMeasure(2.0, 4.5);
    std::vector<TLayoutSize> sizes;
    for (const TQVLDiagNode& n : model.Nodes()) sizes.push_back(FlowBoxSize(n.Shape, measure(n.Text)));
    return sizes;
}

// What the loader runs: Graphviz up to its limit, the plain layered layout above.
void BM_LayoutGeneratedFlowchart(benchmark::State& state) {
    const TORXDiagramModel model = GeneratedFlowchart(static_cast<int>(state.range(0)));
    const auto sizes = Sizes(model);
    for (auto _ : state) benchmark::DoNotOptimize(LayoutGraph(model, sizes));
    state.counters["edges"] = static_cast<double>(model.Edges().size());
}
BENCHMARK(BM_LayoutGeneratedFlowchart)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

// Graphviz alone around its limit, to see where the limit should stand.
void BM_LayoutGraphvizOnly(benchmark::State& state) {
    const TORXDiagramModel model = GeneratedFlowchart(static_cast<int>(state.range(0)));
    const auto sizes = Sizes(model);
    TGraphLayoutOptions options;
    options.LayeredAbove = static_cast<std::size_t>(-1);
    for (auto _ : state) benchmark::DoNotOptimize(LayoutGraph(model, sizes, options));
}
BENCHMARK(BM_LayoutGraphvizOnly)->Arg(150)->Arg(250)->Arg(400)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
