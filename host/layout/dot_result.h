// Private to host/layout: what a dot layout yields that the diagram layout reads back: the bounding box, node
// centres, edge routes and cluster boxes, in Graphviz's points (y upwards). A plain record, so that it can
// come from a layout in another process as well as from one in this process.
#pragma once

#include <graphviz/cgraph.h>
#include <graphviz/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Orvex {

struct TDotCluster {
    std::string Name;  // the subgraph's name (Graphviz draws subgraphs named "cluster..." as boxes)
    boxf Box{};
};

struct TDotResult {
    boxf BoundingBox{};
    std::vector<pointf> Nodes;               // centres, parallel to the nodes asked for
    std::vector<std::vector<pointf>> Edges;  // each edge's first Bézier chain; empty when it got none
    std::vector<TDotCluster> Clusters;       // every cluster subgraph, depth first
};

// Reads a graph that gvLayout has laid out; aNodes and aEdges are the items the result is parallel to.
TDotResult CollectDotResult(Agraph_t* aGraph, const std::vector<Agnode_t*>& aNodes,
                            const std::vector<Agedge_t*>& aEdges);

std::string EncodeDotResult(const TDotResult& aResult);
std::optional<TDotResult> DecodeDotResult(std::string_view aBytes);  // nothing for damaged bytes

}  // namespace Orvex
