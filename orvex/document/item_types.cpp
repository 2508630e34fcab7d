#include "orvex/document/item_types.h"

#include <array>

namespace Orvex {
namespace {

struct TKindInfo {
    std::string_view Name;
    std::int32_t Points;
};

constexpr std::array<TKindInfo, kItemTypeCount> kKinds{{
    {"Undefined", 1}, {"Point", 1},      {"Line", 2},        {"ArrowLine", 4}, {"Polyline", 0},
    {"Arc", 2},       {"Rectangle", 2},  {"Polygon", 0},     {"Circle", 2},    {"Ellipse", 2},
    {"Text", 2},      {"Paragraph", 2},  {"Barcode", 2},     {"PDF417", 2},    {"DataMatrix", 2},
    {"QRCode", 2},    {"Image", 2},      {"FlowDiagram", 2}, {"Link", 1},      {"Table", 2},
    {"Polytext", 2},  {"Rank", 2},       {"NutriScore", 2},  {"Level", 2},     {"Symbol", 3},
    {"Bezier", 0},    {"Dimension", 10}, {"Sector", 2},      {"Package", 2},   {"RichText", 2},
}};

}  // namespace

std::string_view NameItem(TQVLItemType type) {
    const auto i = static_cast<std::size_t>(type);
    return i < kKinds.size() ? kKinds[i].Name : std::string_view{"None"};
}

std::int32_t NumPointsItem(TQVLItemType type) {
    const auto i = static_cast<std::size_t>(type);
    return i < kKinds.size() ? kKinds[i].Points : 1;
}

bool IsPointListKind(TQVLItemType type) {
    return type == TQVLItemType::itPolyLine || type == TQVLItemType::itPolygon ||
           type == TQVLItemType::itBezier;
}

}  // namespace Orvex
