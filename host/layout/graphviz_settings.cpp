// The choice and the tuning. Measured on generated flowcharts (bench/layout_bench.cpp): the times and
// the edge crossings behind these limits are in bench/RESULTS.md.
#include "host/layout/graphviz_settings.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

#include "host/layout/graph_layout.h"
#include "host/layout/isolated_run.h"
#include "host/layout/layered_layout.h"
#include "orvex/diagrams/diagram_model.h"

namespace Orvex {
namespace {

char* Mutable(const char* s) {
    return const_cast<char*>(s);  // the C interface takes char* but never writes through it
}

void Set(Agraph_t* g, const char* name, const char* value) {
    agattr(g, AGRAPH, Mutable(name), Mutable(value));
}

}  // namespace

TGraphSize MeasureGraph(const TORXDiagramModel& aModel) {
    TGraphSize size;
    size.Nodes = aModel.Nodes().size();
    std::vector<std::pair<int, int>> edges;
    edges.reserve(aModel.Edges().size());
    for (const TQVLDiagEdge& e : aModel.Edges()) {
        const int from = aModel.NodeIndexOf(e.FromID);
        const int to = aModel.NodeIndexOf(e.ToID);
        if (from >= 0 && to >= 0) edges.emplace_back(from, to);
    }
    size.Edges = edges.size();
    const std::vector<int> rank = LongestPathRanks(size.Nodes, edges);
    size.Work = size.Nodes;
    for (const auto& [from, to] : edges) {
        const int span = std::abs(rank[static_cast<std::size_t>(to)] - rank[static_cast<std::size_t>(from)]);
        size.Work += static_cast<std::size_t>(std::max(span, 1));
    }
    return size;
}

TGraphvizSettings ChooseGraphviz(const TGraphSize& aSize, const TGraphLayoutOptions& aOptions) {
    TGraphvizSettings s;
    if (aSize.Nodes > aOptions.LayeredAbove || aSize.Edges > aOptions.LayeredAboveEdges ||
        aSize.Work > aOptions.LayeredAboveWork) {
        s.Engine = TGraphEngine::geLayered;
        return s;
    }
    s.StraightEdges = aSize.Nodes > aOptions.StraightEdgesAbove;
    s.QuickOrdering = aSize.Nodes > aOptions.QuickOrderingAbove;
    s.Isolated = aOptions.TimeBudget > 0 && aSize.Work > aOptions.IsolateAboveWork && IsolationAvailable();
    s.BudgetSeconds = aOptions.TimeBudget;
    return s;
}

void ApplyGraphvizSettings(Agraph_t* aGraph, const TGraphvizSettings& aSettings) {
    Set(aGraph, "splines", aSettings.StraightEdges ? "line" : "polyline");
    if (aSettings.QuickOrdering) {
        // Fewer crossing-reduction passes and a bounded network simplex: the order is a little worse,
        // the time grows close to linearly instead of quadratically.
        Set(aGraph, "mclimit", "0.1");
        Set(aGraph, "nslimit", "2");
        Set(aGraph, "nslimit1", "2");
        Set(aGraph, "searchsize", "10");
    }
}

}  // namespace Orvex
