// The common item keys of drawing files: written by every item before its kind's own keys, read tolerantly.
#include <algorithm>
#include <cstdint>

#include "orvex/document/document.h"
#include "orvex/document/point_items.h"
#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"

namespace Orvex {
namespace {

constexpr std::size_t kWrittenKeysHint = 40;

}  // namespace

TJSON TORXBaseItem::WriteJson() const {
    using U = TJSONUtils;
    TJSON obj = TJSON::object();
    // Room for the kinds' own keys too, and values set key by key rather than from initializer lists,
    // which copy each value once more: items are written by the hundred thousand.
    obj.get_ref<TJSON::object_t&>().reserve(kWrittenKeysHint);
    obj["Type"] = static_cast<int>(fItemType);
    obj["TypeName"] = std::string(NameItem(fItemType));
    obj["InID"] = fInID;
    obj["ID"] = fID;
    obj["Layer"] = fOwner->LayerIdx(fLayer);
    // A symbol takes its look from the library entry it shows.
    if (fItemType != TQVLItemType::itSymbol) {
        obj["Angle"] = static_cast<int>(fAngle);
        obj["Color"] = U::SetAlphaColor(fColor);
        obj["PenWidth"] = U::BaseToMM(fPenWidth);
    }
    TJSON& options = obj["Options"];
    options["Visible"] = fOptions.Contains(TQVLayerOp::lopVisible);
    options["Print"] = fOptions.Contains(TQVLayerOp::lopPrint);
    options["Selectable"] = fOptions.Contains(TQVLayerOp::lopSelectable);
    options["Export"] = fOptions.Contains(TQVLayerOp::lopExport);
    const TQVLUnits units = fOwner->Units();
    TJSON points = TJSON::array();
    points.get_ref<TJSON::array_t&>().reserve(fPoints.size());
    for (const auto& p : fPoints) {
        TJSON& point = points.emplace_back(TJSON::object());
        point["X"] = U::BaseToUnit(p.X, units);
        point["Y"] = U::BaseToUnit(p.Y, units);
    }
    obj["Points"] = std::move(points);
    // Containers: written only where they apply, so that other drawings keep their exact form.
    if (fContainerFrame != TQVLContainerFrame::cfNone) obj["Container"] = static_cast<int>(fContainerFrame);
    if (fContainerID != 0) obj["ContainerID"] = fContainerID;
    return obj;
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

TJSON TORX2DItem::WriteJson() const {
    TJSON obj = TORXBaseItem::WriteJson();
    obj["BackColor"] = TJSONUtils::SetAlphaColor(fBackColor);
    obj["Filled"] = fFill;
    return obj;
}

void TORX2DItem::ReadJson(std::int32_t version, const TJSON& obj) {
    TORXBaseItem::ReadJson(version, obj);
    fBackColor = TJSONUtils::GetColor(obj, "BackColor");
    fFill = TJSONUtils::GetBool(obj, "Filled");
}

}  // namespace Orvex
