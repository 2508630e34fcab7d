// The common item keys of drawing files: written by every item before its kind's own keys, read tolerantly.
#include <algorithm>
#include <cstdint>

#include "orvex/document/document.h"
#include "orvex/document/point_items.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"
#include "orvex/io/json_writer.h"

namespace Orvex {
TJSON TORXBaseItem::WriteJson() const {
    TJsonTreeWriter tree;
    tree.BeginObject();
    WriteKeys(tree);
    tree.EndObject();
    return tree.Take();
}

void TORXBaseItem::WriteJsonTo(TJsonWriter& writer) const {
    writer.Tree(WriteJson());  // kinds that build their object as a tree
}

void TORXBaseItem::WriteKeys(TJsonWriter& w) const {
    using U = TJSONUtils;
    w.Key("Type");
    w.Int(static_cast<int>(fItemType));
    w.Key("TypeName");
    w.String(NameItem(fItemType));
    w.Key("InID");
    w.Int(fInID);
    w.Key("ID");
    w.String(fID);
    w.Key("Layer");
    w.Int(fOwner->LayerIdx(fLayer));
    // A symbol takes its look from the library entry it shows.
    if (fItemType != TQVLItemType::itSymbol) {
        w.Key("Angle");
        w.Int(static_cast<int>(fAngle));
        w.Key("Color");
        w.Color(fColor);
        w.Key("PenWidth");
        w.Float(U::BaseToMM(fPenWidth));
    }
    w.Key("Options");
    w.BeginObject();
    w.Key("Visible");
    w.Bool(fOptions.Contains(TQVLayerOp::lopVisible));
    w.Key("Print");
    w.Bool(fOptions.Contains(TQVLayerOp::lopPrint));
    w.Key("Selectable");
    w.Bool(fOptions.Contains(TQVLayerOp::lopSelectable));
    w.Key("Export");
    w.Bool(fOptions.Contains(TQVLayerOp::lopExport));
    w.EndObject();
    const TQVLUnits units = fOwner->Units();
    w.Key("Points");
    w.BeginArray();
    for (const auto& p : fPoints) {
        w.BeginObject();
        w.Key("X");
        w.Float(U::BaseToUnit(p.X, units));
        w.Key("Y");
        w.Float(U::BaseToUnit(p.Y, units));
        w.EndObject();
    }
    w.EndArray();
    // Containers: written only where they apply, so that other drawings keep their exact form.
    if (fContainerFrame != TQVLContainerFrame::cfNone) {
        w.Key("Container");
        w.Int(static_cast<int>(fContainerFrame));
    }
    if (fContainerID != 0) {
        w.Key("ContainerID");
        w.Int(fContainerID);
    }
}

void TORXBaseItem::ReadJson(std::int32_t version, const TJSON& obj) {
    (void)version;
    using U = TJSONUtils;
    SetInID(static_cast<std::int32_t>(U::GetInt(obj, "InID")));
    fID = U::GetString(obj, "ID");
    fOwner->RaiseNextID(fInID);
    const std::int64_t layer = U::GetInt(obj, "Layer");
    fLayer = (layer >= 0 && layer < fOwner->GetLayersCount())
                 ? fOwner->GetLayer(static_cast<std::int32_t>(layer) + 1)
                 : fOwner->GetLayer(1);
    if (fItemType != TQVLItemType::itSymbol) {
        fAngle = static_cast<TQVLAngle>(std::clamp<std::int64_t>(U::GetInt(obj, "Angle"), 0, 3));
        fColor = U::GetColor(obj, "Color");
        fPenWidth = static_cast<std::int32_t>(U::MMToBase(U::GetFloat(obj, "PenWidth")));
    }
    const TJSON& options = U::GetObject(obj, "Options");
    fOptions.Clear();
    if (U::GetBool(options, "Visible")) fOptions.Include(TQVLayerOp::lopVisible);
    if (U::GetBool(options, "Print")) fOptions.Include(TQVLayerOp::lopPrint);
    if (U::GetBool(options, "Selectable")) fOptions.Include(TQVLayerOp::lopSelectable);
    if (U::GetBool(options, "Export")) fOptions.Include(TQVLayerOp::lopExport);
    fContainerFrame =
        static_cast<TQVLContainerFrame>(std::clamp<std::int64_t>(U::GetInt(obj, "Container"), 0, 2));
    const std::int64_t container = U::GetInt(obj, "ContainerID");
    fContainerID = container > 0 && container <= INT32_MAX ? static_cast<std::int32_t>(container) : 0;
    const TJSON& points = U::GetArray(obj, "Points");
    bool moved = false;
    if (IsPointListKind(fItemType) && fPoints.size() != points.size()) {
        fPoints.resize(points.size());
        moved = true;
    }
    // All points first and the bounds once after them: set one by one, each point recomputed the bounds
    // over every point, and a long polyline took quadratic time. Kinds with a fixed number of points take
    // as many as they have.
    const TQVLUnits units = fOwner->Units();
    const std::size_t count = std::min(points.size(), fPoints.size());
    for (std::size_t i = 0; i < count; ++i) {
        const TQVLPto read{U::UnitToBase(U::GetFloat(points[i], "X"), units),
                           U::UnitToBase(U::GetFloat(points[i], "Y"), units)};
        if (fPoints[i] == read) continue;
        fPoints[i] = read;
        moved = true;
    }
    if (moved) {
        fOwner->ChangeState(TOrvexState::lsUpdate, this);
        PointsChanged();
    } else {
        UpdateBounds();
    }
}

void TORX2DItem::WriteKeys(TJsonWriter& w) const {
    TORXBaseItem::WriteKeys(w);
    w.Key("BackColor");
    w.Color(fBackColor);
    w.Key("Filled");
    w.Bool(fFill);
}

void TORX2DItem::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBaseItem::ReadJson(version, obj);
    fBackColor = TJSONUtils::GetColor(obj, "BackColor");
    fFill = TJSONUtils::GetBool(obj, "Filled");
}

}  // namespace Orvex
