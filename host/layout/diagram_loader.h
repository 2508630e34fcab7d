// The diagram loader of the reference host: parses Mermaid or PlantUML text, lays the model out and
// creates flow elements, links, lines and texts on the document.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/layout/layout_types.h"
#include "orvex/diagrams/diagram_model.h"
#include "orvex/document/layer.h"

namespace Orvex {
class TORXBaseLabel;

// Installs LoadDiagramWithLayout as the process-wide loader; the command line and the server call it at
// start-up.
void RegisterDiagramLayout();

// The loader itself. False, with the document untouched, when the text does not parse without an error
// diagnostic or the document's item family lacks flow elements; otherwise the whole diagram is one
// undo step and the document is in flowchart mode.
bool LoadDiagramWithLayout(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat);

// What one load created, by the diagram's own names: each placed node with its item, each drawn edge with
// its ends and its item (an edge's label is the link's own). A sequence diagram's participants count as
// nodes and its messages as edges.
struct TDiagramPlacement {
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
};
// The same load, reporting what it created into aPlacement (cleared first).
bool LoadDiagramWithLayout(TORXBaseLabel& aDocument, std::string_view aText, TQVLDiagramFormat aFormat,
                           TDiagramPlacement& aPlacement);

// Caption extents (lines broken at line feeds) under QVLTextMetrics() as it is when measuring, in
// millimetres: the loading document's metrics while LoadDiagramWithLayout runs.
TTextMeasure FontMeasure(const TQVLFont& aFont);

}  // namespace Orvex
