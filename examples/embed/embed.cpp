// A host application that embeds Orvex with nothing but orvex::core: it builds a drawing, places a Mermaid
// flowchart on it with a layout of its own, saves the drawing as JSON and SVG, reads the JSON back, and
// undoes its last edit. It exits non-zero, naming the step, when anything does not hold, so the install
// check can run it.
//
//   embed OUTPUT_FOLDER
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "orvex/core/units.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/shape_items.h"
#include "orvex/version.h"

namespace {

using namespace Orvex;

constexpr std::int64_t kMM = Qvl::Types::kBasePerMM;

constexpr std::string_view kFlowchart = R"(flowchart LR
  order[Order received] --> check{In stock?}
  check -->|yes| ship([Ship])
  check -->|no| wait[Back-order]
  wait --> ship
)";

bool Fail(const char* step, const std::string& detail = {}) {
    std::fprintf(stderr, "embed: %s%s%s\n", step, detail.empty() ? "" : ": ", detail.c_str());
    return false;
}

// The layout stage an embedder supplies when it lays diagrams out itself: the full importer reads the text
// into a model; each node becomes a flow element in the column of its longest path from a source (a
// cycle stops growing after one pass per node), stacked in the order the text names them, and each edge
// a step-shaped link with an arrow. Edge captions are left out of this small layout.
bool PlaceInColumns(TORXBaseLabel& doc, std::string_view text, TQVLDiagramFormat format) {
    const auto model = QVLImportDiagram(text, format);
    if (model->Nodes().empty()) return false;
    std::map<std::string, std::size_t> column;
    for (const TQVLDiagNode& node : model->Nodes()) column[node.ID] = 0;
    for (std::size_t pass = 0; pass < model->Nodes().size(); ++pass)
        for (const TQVLDiagEdge& edge : model->Edges())
            column[edge.ToID] = std::max(column[edge.ToID], column[edge.FromID] + 1);

    const TORXBaseLabel::TUndoGroup group(doc);  // the whole diagram undoes in one step
    std::map<std::string, TORXBaseFlow*> flows;
    std::map<std::size_t, std::int64_t> rowsTaken;
    for (const TQVLDiagNode& node : model->Nodes()) {
        auto* flow = dynamic_cast<TORXBaseFlow*>(doc.CreateItem(TQVLItemType::itFlow));
        if (flow == nullptr) return false;
        const auto left = static_cast<std::int64_t>(10 + 45 * column[node.ID]) * kMM;
        const std::int64_t top = (40 + 25 * rowsTaken[column[node.ID]]++) * kMM;
        flow->SetBase(1, left, top);
        flow->SetBase(2, left + 30 * kMM, top + 15 * kMM);
        flow->SetFlowType(node.Shape);
        flow->SetText(node.Text);
        flows[node.ID] = flow;
    }
    for (const TQVLDiagEdge& edge : model->Edges()) {
        auto* link = dynamic_cast<TORXBaseLink*>(doc.CreateItem(TQVLItemType::itLink));
        if (link == nullptr) return false;
        // Neighbouring columns join right side to left side with a step line; a longer edge leaves and
        // enters from below through two bends under the row, so that it passes under the elements
        // between its ends instead of through them.
        const TORXBaseFlow* from = flows.at(edge.FromID);
        const TORXBaseFlow* to = flows.at(edge.ToID);
        if (column[edge.ToID] == column[edge.FromID] + 1) {
            link->SetLinkType(TQVLinkType::ltStepLineTwoPto);
            link->Bind(from, 1, to, 3);
        } else {
            const std::int64_t below = std::max(from->GetPointY(2), to->GetPointY(2)) + 8 * kMM;
            link->SetLinkType(TQVLinkType::ltPolyline);
            link->InsertPoint((from->GetPointX(1) + from->GetPointX(2)) / 2, below,
                              link->GetNumLinkPoints() + 1);
            link->InsertPoint((to->GetPointX(1) + to->GetPointX(2)) / 2, below, link->GetNumLinkPoints() + 1);
            link->Bind(from, 2, to, 2);
        }
        link->SetToType(TQVLTermType::ttArrow);
    }
    return true;
}

bool Run(const std::filesystem::path& folder) {
    TORXHeadlessLabel doc;

    // Two items of the host's own, one undo step each.
    auto* frame = dynamic_cast<TORXBaseRectangle*>(doc.CreateItem(TQVLItemType::itRectangle));
    if (frame == nullptr) return Fail("no rectangle");
    frame->SetBase(1, 5 * kMM, 5 * kMM);
    frame->SetBase(2, 190 * kMM, 95 * kMM);
    auto* title = dynamic_cast<TORXBaseFlow*>(doc.CreateItem(TQVLItemType::itFlow));
    if (title == nullptr) return Fail("no flow element");
    title->SetBase(1, 10 * kMM, 10 * kMM);
    title->SetBase(2, 90 * kMM, 25 * kMM);
    title->SetText(std::string("Orvex ") + kVersion);
    doc.EndUpdate();

    QVLSetDiagramLoader(&PlaceInColumns);
    const std::string beforeDiagram = doc.GetJsonString();
    if (!doc.LoadFromDiagramText(kFlowchart, TQVLDiagramFormat::dgMermaid)) return Fail("diagram not placed");
    doc.EndUpdate();
    // Four nodes and four edges beside the two items of the host.
    if (doc.GetItemsCount() != 10) return Fail("item count", std::to_string(doc.GetItemsCount()));

    const std::string json = (folder / "embed.json").string();
    const std::string svg = (folder / "embed.svg").string();
    if (auto saved = SaveDrawingFile(json, doc); !saved) return Fail("JSON not saved", saved.Message);
    if (auto saved = SaveDrawingSVG(svg, doc); !saved) return Fail("SVG not saved", saved.Message);
    TORXHeadlessLabel reread;
    if (auto loaded = LoadDrawingFile(json, reread); !loaded) return Fail("JSON not read", loaded.Message);
    if (reread.GetJsonString() != doc.GetJsonString()) return Fail("the drawing changed through its file");

    doc.Undo();
    if (doc.GetJsonString() != beforeDiagram) return Fail("undo left part of the diagram");
    std::printf("embed: %d items saved to %s and %s; undo removed the diagram\n", reread.GetItemsCount(),
                json.c_str(), svg.c_str());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: embed OUTPUT_FOLDER\n");
        return 2;
    }
    return Run(argv[1]) ? 0 : 1;
}
