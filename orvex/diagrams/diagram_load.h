// What loading a diagram onto a document did, in one answer: the format the text was read as, the
// parser's findings, and what the layout created. A loader that reports this needs no second parse to
// explain a refusal; the process-wide bool loader (QVLSetDiagramLoader) stays for hosts that want less.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/core/result.h"
#include "orvex/core/types.h"
#include "orvex/diagrams/diagram_model.h"

namespace Orvex {

// The items one load created, by the diagram's own names: each placed node with its item, each drawn edge
// with its ends and its item (an edge's label is the link's own). A sequence diagram's participants count
// as nodes and its messages as edges.
struct TQVLDiagramPlacement {
    struct TNode {
        std::string ID;
        std::int32_t ItemID = 0;
    };
    struct TEdge {
        std::string From;
        std::string To;
        std::int32_t ItemID = 0;
    };
    std::vector<TNode> Nodes;
    std::vector<TEdge> Edges;
    std::vector<std::int32_t> Items;  // internal ids of every item created, in creation order
    TQVLRect Bounds;                  // base units: what the created items cover; empty without items
};

struct TQVLDiagramLoad {
    TQVLDiagramFormat Format = TQVLDiagramFormat::dgAuto;  // as the text was read; dgAuto when it was not
    std::vector<TQVLDiagramDiagnostic> Diagnostics;        // the parser's findings, kept on failure too
    TQVLDiagramPlacement Placement;                        // empty on failure: nothing stays created
};

// Codes: QVLErr::kNoFile (the file could not be read), kInvalid (the text has an error diagnostic, or the
// layout could not place it).
using TQVLDiagramLoadResult = TQVLResult<TQVLDiagramLoad>;

}  // namespace Orvex
