// Private to host/layout: which layout a flowchart-like graph gets and how Graphviz's dot is tuned for it.
// dot's time grows faster than the graph, with the edges as much as with the nodes, and it cannot be
// cancelled: graphs beyond what it handles in time go to the plain layered layout (layered_layout.h) at once,
// and graphs whose time is uncertain are laid out in a child process that is given up after a time budget.
#pragma once

#include <graphviz/cgraph.h>

#include <cstddef>
#include <cstdint>

namespace Orvex {
class TORXDiagramModel;
struct TGraphLayoutOptions;

enum class TGraphEngine : std::uint8_t { geDot, geLayered };

struct TGraphvizSettings {
    TGraphEngine Engine = TGraphEngine::geDot;
    bool StraightEdges = false;  // straight routes, edge labels left out of dot's ranks
    bool QuickOrdering = false;  // crossing reduction and network simplex cut short
    bool Isolated = false;       // dot runs in a child process, killed after BudgetSeconds
    double BudgetSeconds = 0;
};

// What dot's time depends on. Its ranks make every edge that spans several ranks a chain of virtual
// nodes, so Work, the nodes plus the ranks every edge spans (at least one each), counts what it orders
// and places; a dense graph's chains multiply.
struct TGraphSize {
    std::size_t Nodes = 0;
    std::size_t Edges = 0;  // edges between two nodes
    std::size_t Work = 0;
};
TGraphSize MeasureGraph(const TORXDiagramModel& aModel);

TGraphvizSettings ChooseGraphviz(const TGraphSize& aSize, const TGraphLayoutOptions& aOptions);

// The graph attributes for these settings; call before any node or edge is made.
void ApplyGraphvizSettings(Agraph_t* aGraph, const TGraphvizSettings& aSettings);

}  // namespace Orvex
