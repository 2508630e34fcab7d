// add_layer and modify_layer. Layers are numbered from 1; the active layer receives new items.
#include <fmt/format.h>

#include <optional>

#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/core/text.h"
#include "orvex/document/document.h"

namespace Orvex::Host {

namespace {

constexpr std::int32_t kMaxLayers = 1000;

TJSON LayerProps() {
    return ObjectSchema({{"name", StringProp("")},
                         {"color", ColorProp("")},
                         {"visible", BoolProp("")},
                         {"printable", BoolProp("")},
                         {"selectable", BoolProp("")},
                         {"exportable", BoolProp("")},
                         {"active", BoolProp("")}});
}

struct TLayerChange {
    std::optional<std::string> Name;
    std::optional<TAlphaColor> Color;
    TQVLayerOpts Options;
    bool Activate = false;
};

// Reads everything first, so a refused call changes nothing.
TLayerChange ReadChange(const TJSON& aArgs, TQVLayerOpts aOptions) {
    TLayerChange change;
    if (aArgs.contains("name")) {
        change.Name = aArgs["name"].get<std::string>();
        if (Trim(*change.Name).empty()) throw EToolArgument("argument \"name\" must not be empty");
    }
    if (aArgs.contains("color")) change.Color = ParseToolColor(aArgs["color"].get<std::string>(), "color");
    const auto flag = [&](std::string_view aKey, TQVLayerOp aOp) {
        if (!aArgs.contains(std::string(aKey))) return;
        if (aArgs[std::string(aKey)].get<bool>())
            aOptions.Include(aOp);
        else
            aOptions.Exclude(aOp);
    };
    flag("visible", TQVLayerOp::lopVisible);
    flag("printable", TQVLayerOp::lopPrint);
    flag("selectable", TQVLayerOp::lopSelectable);
    flag("exportable", TQVLayerOp::lopExport);
    change.Options = aOptions;
    change.Activate = aArgs.value("active", false);
    return change;
}

void Apply(TORXBaseLabel& aDoc, TORXLayer& aLayer, const TLayerChange& aChange) {
    if (aChange.Name) aLayer.fName = *aChange.Name;
    if (aChange.Color) aLayer.fColor = *aChange.Color;
    aLayer.fOptions = aChange.Options;
    if (aChange.Activate) aDoc.SetActiveLayer(aDoc.LayerIdx(&aLayer) + 1);
    aDoc.ChangeState(TOrvexState::lsUpdate);
}

TJSON Describe(const TORXBaseLabel& aDoc, const TORXLayer& aLayer) {
    return {{"index", aDoc.LayerIdx(&aLayer) + 1},
            {"name", aLayer.fName},
            {"color", ToolColorText(aLayer.fColor)},
            {"visible", aLayer.fOptions.Contains(TQVLayerOp::lopVisible)},
            {"printable", aLayer.fOptions.Contains(TQVLayerOp::lopPrint)},
            {"selectable", aLayer.fOptions.Contains(TQVLayerOp::lopSelectable)},
            {"exportable", aLayer.fOptions.Contains(TQVLayerOp::lopExport)},
            {"active", aDoc.GetActiveLayer() == &aLayer}};
}

TJSON AddLayer(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    if (aDoc.GetLayersCount() >= kMaxLayers)
        throw EToolArgument(fmt::format("the drawing already has the most layers allowed ({})", kMaxLayers));
    TJSON args = aArgs;
    if (!args.contains("active")) args["active"] = true;
    const TLayerChange change = ReadChange(args, kDefaultItemOptions);
    TORXLayer* layer = aDoc.AddLayer();
    Apply(aDoc, *layer, change);
    return StructuredResult(Describe(aDoc, *layer));
}

TJSON ModifyLayer(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    TORXLayer* layer = ResolveLayer(aDoc, aArgs, "layer");
    if (aArgs.contains("active") && !aArgs["active"].get<bool>())
        throw EToolArgument("argument \"active\" can only be true: activate another layer instead");
    const TLayerChange change = ReadChange(aArgs, layer->fOptions);
    Apply(aDoc, *layer, change);
    return StructuredResult(Describe(aDoc, *layer));
}

}  // namespace

void RegisterLayerTools(TToolRegistry& aRegistry) {
    aRegistry.Add("add_layer",
                  "Add a layer; it becomes the active one (new items go there) unless active is false.",
                  LayerProps(), AddLayer, ObjectResultSchema());
    aRegistry.Add("modify_layer", "Change the given properties of a layer (index from 1).",
                  WithProperties(LayerProps(), {{"layer", IntegerProp("", 1, INT32_MAX)}}, {"layer"}),
                  ModifyLayer, ObjectResultSchema());
}

}  // namespace Orvex::Host
