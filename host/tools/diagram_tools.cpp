// load_diagram: a Mermaid or PlantUML text laid out into items, placed beside what the drawing holds (or
// in its place), with the page grown to the content and an answer that maps the diagram's own node names
// to the items created for them.
#include <fmt/format.h>

#include <algorithm>

#include "host/layout/diagram_loader.h"
#include "host/tools/diagram_tools.h"
#include "host/tools/item_build.h"
#include "host/tools/preview.h"
#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/core/text.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/diagram_json.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/document/document.h"

namespace Orvex::Host {

namespace {

// Room left between a new diagram and the content it lands beside.
constexpr std::int64_t kDiagramGap = 15 * kBasePerMM;

struct TDiagramLoadRequest {
    bool Replace = false;
    bool Below = false;  // else to the right
};

// One line per finding, so that a client that shows only the text still tells the model what to fix.
std::string DiagnosticLines(const TJSON& aDiagnostics) {
    std::string text;
    for (const auto& d : aDiagnostics) {
        const auto line = d.value("line", 0);
        // "dsWarning" reads as "warning".
        std::string severity = d.value("severity", std::string());
        if (severity.starts_with("ds")) severity = Qvl::Utils::ToLowerAscii(severity.substr(2));
        text += fmt::format("\n{} {} {}: {}", line > 0 ? fmt::format("line {}:", line) : std::string("text:"),
                            severity, d.value("code", std::string()), d.value("message", std::string()));
        if (const auto source = d.value("source", std::string()); !source.empty())
            text += fmt::format(" Source: {}", source);
    }
    return text;
}

bool HoldsOnlyLoadedItems(const TORXBaseLabel& aDoc, const std::vector<std::int32_t>& aLoaded) {
    for (std::int32_t i = 0; i < aDoc.GetItemsCount(); ++i)
        if (!std::binary_search(aLoaded.begin(), aLoaded.end(), aDoc.GetItem(i)->InID())) return false;
    return true;
}

void DeleteAllItems(TORXBaseLabel& aDoc) {
    const TORXBaseLabel::TUndoGroup group(aDoc);
    aDoc.ClearSelection(false);
    while (aDoc.GetItemsCount() > 0) aDoc.DeleteItem(aDoc.GetItem(aDoc.GetItemsCount() - 1), true);
}

}  // namespace

// What follows a successful layout, whichever importer made it: the new items move beside the content
// that was there before, the page grows to hold everything, and the answer names what was created.
TJSON PlaceLoadedDiagram(TORXBaseLabel& aDoc, const TDiagramPlacement& aPlacement,
                         const std::vector<TORXBaseItem*>& aCreated, const TQVLRect& aExisting,
                         bool aHadItems, bool aBelow) {
    const TQVLRect fresh = BoundsOf(aCreated);
    if (aHadItems && !aCreated.empty()) {
        const std::int64_t dx =
            aBelow ? aExisting.Left - fresh.Left : aExisting.Right + kDiagramGap - fresh.Left;
        const std::int64_t dy =
            aBelow ? aExisting.Bottom + kDiagramGap - fresh.Top : aExisting.Top - fresh.Top;
        OffsetItems(aDoc, aCreated, dx, dy);
    }
    const bool grown = GrowPageToContent(aDoc);
    TJSON nodes = TJSON::object();
    for (const auto& node : aPlacement.Nodes) nodes[node.ID] = node.ItemID;
    TJSON edges = TJSON::array();
    for (const auto& edge : aPlacement.Edges) {
        edges.push_back({{"from", edge.From}, {"to", edge.To}, {"id", edge.ItemID}});
    }
    return {{"nodes", std::move(nodes)},
            {"edges", std::move(edges)},
            {"bounds", BoxJson(aDoc, BoundsOf(aCreated))},
            {"page",
             {{"width", ToUnit(aDoc, aDoc.Measure().fLabelWidth)},
              {"height", ToUnit(aDoc, aDoc.Measure().fLabelHeight)},
              {"grown", grown}}}};
}

namespace {

TJSON LoadDiagram(TToolSession& aSession, TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const std::string& text = aArgs["text"].get_ref<const std::string&>();
    const std::string formatName = aArgs.value("format", std::string("auto"));
    const auto format = formatName == "mermaid"    ? TQVLDiagramFormat::dgMermaid
                        : formatName == "plantuml" ? TQVLDiagramFormat::dgPlantUML
                                                   : QVLDetectDiagramFormat(text);
    const auto model = QVLImportDiagram(text, format);
    TJSON result = {{"loaded", false},
                    {"items_created", 0},
                    {"diagnostics", QVLDiagramModelToJson(*model, format)["diagnostics"]}};
    if (model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsError)) {
        // Written before the result is handed over: argument order is unspecified.
        const std::string message =
            "the diagram has errors; fix them and load it again:" + DiagnosticLines(result["diagnostics"]);
        return ErrorResult(message, std::move(result));
    }
    const TQVLDiagramLoaderFunc loader = QVLDiagramLoaderOf(aDoc);
    if (!loader)
        return ErrorResult(
            "no diagram layout is installed; build the diagram with add_flow and add_link instead",
            std::move(result));

    const std::string mode = aArgs.contains("mode")
                                 ? aArgs["mode"].get<std::string>()
                                 : (HoldsOnlyLoadedItems(aDoc, aSession.LastLoadIDs) ? "replace" : "add");
    const std::size_t undoStart = aDoc.UndoCount();
    if (mode == "replace") DeleteAllItems(aDoc);
    const bool hadItems = aDoc.GetItemsCount() > 0;
    const TQVLRect existing = aDoc.ItemsBounds();
    const std::int32_t before = aDoc.GetItemsCount();

    TDiagramPlacement placement;
    // The host's own layout also reports what it placed, which the result describes.
    const TQVLDiagramLoader* plain = loader.target<TQVLDiagramLoader>();
    const bool loaded = plain != nullptr && *plain == static_cast<TQVLDiagramLoader>(&LoadDiagramWithLayout)
                            ? LoadDiagramWithLayout(aDoc, text, format, placement)
                            : loader(aDoc, text, format);
    std::vector<TORXBaseItem*> created;
    for (std::int32_t i = before; loaded && i < aDoc.GetItemsCount(); ++i) created.push_back(aDoc.GetItem(i));
    result["loaded"] = loaded;
    result["items_created"] = created.size();
    if (!loaded) {
        // Whatever the replacement removed comes back: a failed load leaves the drawing as it was.
        aDoc.JoinUndoSince(undoStart);
        if (aDoc.UndoCount() > undoStart) aDoc.Undo();
        return ErrorResult("the diagram layout could not place this diagram", std::move(result));
    }
    result["mode"] = mode;
    result.update(PlaceLoadedDiagram(aDoc, placement, created, existing, hadItems,
                                     aArgs.value("place", std::string("right")) == "below"));
    // Replacing, loading and placing undo together.
    aDoc.JoinUndoSince(undoStart);

    if (mode == "replace") aSession.LastLoadIDs.clear();
    for (const TORXBaseItem* item : created) aSession.LastLoadIDs.push_back(item->InID());
    std::sort(aSession.LastLoadIDs.begin(), aSession.LastLoadIDs.end());

    TJSON answer = StructuredResult(result);
    // One call from text to a drawing the model can see: the picture comes in the same answer.
    if (aArgs.value("preview", false)) {
        TPreviewRequest request;
        request.MaxBytes = aArgs.value("max_bytes", kDefaultPreviewBytes);
        answer["structuredContent"]["preview"] = AppendPreview(aDoc, request, answer);
        answer["content"][0]["text"] = answer["structuredContent"].dump();
    }
    return answer;
}

}  // namespace

void RegisterDiagramTools(TToolRegistry& aRegistry) {
    const std::shared_ptr<TToolSession> session = aRegistry.Session();
    aRegistry.Add(
        "load_diagram",
        "Lay out Mermaid or PlantUML text (format default auto) as items; the page grows. mode "
        "replace clears first, add puts it right of the content (place below: under it); default "
        "replace if the drawing is empty or only holds earlier loads. Returns nodes (node id -> "
        "item id), edges ({from, to, id}), bounds, diagnostics; on errors fix the text and retry. "
        "preview adds a PNG (max_bytes 750000).",
        ObjectSchema({{"text", StringProp("")},
                      {"format", EnumProp("", {"auto", "mermaid", "plantuml"})},
                      {"mode", EnumProp("", {"add", "replace"})},
                      {"place", EnumProp("", {"right", "below"})},
                      {"preview", BoolProp("")},
                      {"max_bytes", IntegerProp("", 10'000, 10'000'000)}},
                     {"text"}),
        [session](TORXBaseLabel& aDoc, const TJSON& aArgs) { return LoadDiagram(*session, aDoc, aArgs); },
        nullptr);
}

}  // namespace Orvex::Host
