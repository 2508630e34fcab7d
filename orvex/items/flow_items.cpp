// Flow elements: properties, outline, connection points, text lines, picking, JSON and SVG.
//
// [SECTION] Geometry   [SECTION] JSON   [SECTION] SVG
#include "orvex/items/flow_items.h"

#include <fmt/format.h>

#include <algorithm>

#include "orvex/io/json.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/box_helpers.h"
#include "orvex/items/container_frame.h"
#include "orvex/items/flow_shapes.h"
#include "orvex/items/link_items.h"
#include "orvex/items/svg_style.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {

namespace {
using U = TJSONUtils;
}  // namespace

TORXBaseFlow::TORXBaseFlow(TORXBaseLabel* owner, bool create)
    : TTableItem(owner, TQVLItemType::itFlow, create) {
    fFill = true;
}

TORXBaseFlow::TORXBaseFlow(TORXBaseLabel* owner, TORXLayer* layer, bool create)
    : TORXBaseFlow(owner, create) {
    fLayer = layer;
}

// [SECTION] Geometry

TQVLRect TORXBaseFlow::Box() const {
    TQVLRect r(GetPointX(1), GetPointY(1), GetPointX(2), GetPointY(2));
    r.NormalizeRect();
    return r;
}

std::vector<TQVLPto64> TORXBaseFlow::Outline() const {
    return FlowOutline(fFlowType, Box());
}

TQVLPto64 TORXBaseFlow::LinkPoint(std::int16_t index) const {
    const TQVLRect box = Box();
    const std::int64_t cx = (box.Left + box.Right) / 2;
    const std::int64_t cy = (box.Top + box.Bottom) / 2;
    if (index < 0 || index >= kLinkPoints) return {cx, cy};
    // Where the outline crosses the box's middle lines: the farthest crossing on the wanted side.
    const std::vector<TQVLPto64> outline = Outline();
    const bool vertical = index == 0 || index == 2;
    const bool low = index == 0 || index == 3;
    std::int64_t best = vertical ? (low ? box.Bottom : box.Top) : (low ? box.Right : box.Left);
    bool found = false;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const TQVLPto64& a = outline[i];
        const TQVLPto64& b = outline[(i + 1) % outline.size()];
        const std::int64_t fixed = vertical ? cx : cy;
        const std::int64_t a1 = vertical ? a.X : a.Y;
        const std::int64_t b1 = vertical ? b.X : b.Y;
        if ((a1 < fixed && b1 < fixed) || (a1 > fixed && b1 > fixed)) continue;
        const std::int64_t a2 = vertical ? a.Y : a.X;
        const std::int64_t b2 = vertical ? b.Y : b.X;
        const std::int64_t at = a1 == b1 ? (low ? std::min(a2, b2) : std::max(a2, b2))
                                         : a2 + static_cast<std::int64_t>(static_cast<double>(b2 - a2) *
                                                                          static_cast<double>(fixed - a1) /
                                                                          static_cast<double>(b1 - a1));
        if (!found || (low ? at < best : at > best)) best = at, found = true;
    }
    if (!found) best = vertical ? (low ? box.Top : box.Bottom) : (low ? box.Left : box.Right);
    return vertical ? TQVLPto64{cx, best} : TQVLPto64{best, cy};
}

bool TORXBaseFlow::CheckLink(std::int64_t x, std::int64_t y, TQVLink& link) const {
    std::int16_t nearest = -1;
    std::int64_t best = kLinkSnap;
    for (std::int16_t i = 0; i < kLinkPoints; ++i) {
        const TQVLPto64 p = LinkPoint(i);
        const std::int64_t d = Orvex::Distance(x, y, p.X, p.Y);
        if (d <= best) best = d, nearest = i;
    }
    if (nearest < 0) return false;
    link = TQVLink{fInID, nearest};
    return true;
}

bool TORXBaseFlow::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    const std::vector<TQVLPto64> outline = Outline();
    const std::int64_t reach = std::max<std::int64_t>(tolerance, fPenWidth / 2);
    if (PointOnPolyline(outline, true, x, y, reach)) return true;
    // A transparent fill lets clicks through to what lies below; a text still catches them.
    const bool solid = (fFill && AlphaOf(fBackColor) != 0) || fFlowType == TQVLFlowType::ftStart;
    if (solid && PointInPolygon(outline, x, y)) return true;
    return !fText.empty() && FlowTextArea(fFlowType, Box()).Contains(x, y);
}

bool TORXBaseFlow::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                              TQVLRef& ref) {
    const auto near = [&](const TQVLPto64& p, std::int32_t index) {
        if (Orvex::Distance(x, y, p.X, p.Y) > tolerance) return false;
        ref = TQVLRef{this, index, p.X, p.Y};
        return true;
    };
    switch (snap) {
        case TQVLSnap::snEndPoint:
        case TQVLSnap::snMidPoint:
        case TQVLSnap::snNearest:
            for (std::int16_t i = 0; i < kLinkPoints; ++i)
                if (near(LinkPoint(i), i + 1)) return true;
            return false;
        case TQVLSnap::snCenter:
            return near(CenterPoint(), 0);
        case TQVLSnap::snNone:
        case TQVLSnap::snIntersection:
            return false;
    }
    return false;
}

void TORXBaseFlow::CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                            std::int64_t& maxY) const {
    TQVLRect r = Box();
    r.Inflate(fPenWidth / 2, fPenWidth / 2);
    FitRect(r, minX, maxX, minY, maxY);
    if (AlphaOf(fShadowColor) != 0) {
        r.Offset(SetBaseValue(fShadowDX), SetBaseValue(fShadowDY));
        FitRect(r, minX, maxX, minY, maxY);
    }
}

void TORXBaseFlow::UpdateBounds() {
    const TQVLRect before = fBoundsRect;
    fBoundsRect = Box();
    if (fBoundsRect == before) return;
    if (fBoundsRect.GetWidth() != before.GetWidth() || fBoundsRect.GetHeight() != before.GetHeight())
        UpdatePoints();
    QueueLinks();
}

void TORXBaseFlow::QueueLinks() {
    // A read lays out every link once it ends (AssignSymbolAndFlowLinks); asking every item for links at
    // every flow read made a large drawing's read quadratic.
    if (fOwner->HasState(TOrvexState::lsReading)) return;
    // The document's index names the links of this element; a walk over every item made moving one
    // element of a large flowchart cost as much as the whole drawing.
    for (TORXBaseItem* link : fOwner->LinksOf(fInID)) fOwner->ChangeState(TOrvexState::lsCalc, link);
}

void TORXBaseFlow::UpdatePoints() {
    const ITextMetrics& metrics = QVLTextMetrics(QVLab());
    TQVLRect area = FlowTextArea(fFlowType, Box());
    const auto lines = WrapText(fText, fFont, area.GetWidth() - 2 * SetBaseValue(fPaddingX), metrics);
    const auto placed =
        PosBaseLinesText(lines, fFont, area, fHorzAlign, fVertAlign, TQVLAngle::ag0, SetBaseValue(fPaddingX),
                         SetBaseValue(fPaddingY), SetBaseValue(fInterline), metrics);
    fTextPos.clear();
    std::size_t cursor = 0;
    for (const auto& line : placed) {
        std::size_t from = fText.find(line.Text, cursor);
        if (from == std::string::npos) from = cursor;
        cursor = std::min(fText.size(), from + line.Text.size());
        fTextPos.push_back(TQVLFlowTextPos{static_cast<std::int64_t>(from), static_cast<std::int64_t>(cursor),
                                           GetBaseValue(line.X - GetPointX(1)),
                                           GetBaseValue(line.Y - GetPointY(1))});
    }
}

void TORXBaseFlow::PropChanged(std::uint16_t p) {
    (void)p;
    UpdatePoints();
}

// [SECTION] JSON

const TPropTable<TORXBaseFlow>& TORXBaseFlow::PropTable() {
    using R = TPropRows<TORXBaseFlow>;
    using F = TORXBaseFlow;
    static const TPropTable<TORXBaseFlow> table(std::vector<TPropRow<F>>{
        R::Enum<&F::fFlowType>(FlowProp::kFlowType, "FlowType", TQVLFlowType::ftEnd).Shown(),
        R::Enum<&F::fLineType>(FlowProp::kLineType, "LineType", TQVLineType::ii411),
        R::Enum<&F::fHorzAlign>(FlowProp::kHorzAlign, "HorzAlign", TQVLHorzAlign::haJustify),
        R::Enum<&F::fVertAlign>(FlowProp::kVertAlign, "VertAlign", TQVLVertAlign::vaBottom),
        R::Value<&F::fPaddingX>(FlowProp::kPaddingX, "PaddingX"),
        // Drawings have always kept one padding for both directions: "PaddingY" is written, not read.
        R::Value<&F::fPaddingY>(FlowProp::kPaddingY, "PaddingY").WrittenOnly(),
        R::Value<&F::fShadowColor>(FlowProp::kShadowColor, "ShadowColor"),
        R::Value<&F::fShadowDX>(FlowProp::kShadowDX, "ShadowDX"),
        R::Value<&F::fShadowDY>(FlowProp::kShadowDY, "ShadowDY"),
        R::Enum<&F::fGradient>(FlowProp::kGradient, "Gradient", TQVLGradient::grRadial),
        R::Value<&F::fGradColor>(FlowProp::kGradColor, "GradColor"),
        R::Custom("Font", {[](const F& f, TJsonWriter& w) {
                               w.Key("Font");
                               w.Font(f.fFont);
                           },
                           [](F& f, const TJSON& obj) { f.fFont = U::GetFont(U::GetObject(obj, "Font")); }}),
        R::Field<std::string>(FlowProp::kFontName, {}, [](F& f) { return &f.fFont.Name; }),
        R::Field<bool>(FlowProp::kBold, {}, [](F& f) { return &f.fFont.Bold; }),
        R::Field<bool>(FlowProp::kItalic, {}, [](F& f) { return &f.fFont.Italic; }),
        R::Field<bool>(FlowProp::kUnderline, {}, [](F& f) { return &f.fFont.Underline; }),
        R::Field<bool>(FlowProp::kStrikeout, {}, [](F& f) { return &f.fFont.Strikeout; }),
        R::Field<float>(FlowProp::kFontHeight, {}, [](F& f) { return &f.fFont.FontHeight; }),
        R::Field<TAlphaColor>(FlowProp::kFontColor, {}, [](F& f) { return &f.fFont.FontColor; }),
        R::Value<&F::fInterline>(FlowProp::kInterline, "Interline"),
        R::Value<&F::fText>(FlowProp::kText, "Text").ShownWith(TQVLInsType::inText),
        // The saved line placement is kept: it came from the fonts of the host that wrote the drawing.
        R::Custom("TextPos", {[](const F& f, TJsonWriter& w) {
                                  w.Key("TextPos");
                                  w.BeginArray();
                                  for (const auto& p : f.fTextPos) {
                                      w.BeginObject();
                                      w.Key("FromPos");
                                      w.Int(p.FromPos);
                                      w.Key("ToPos");
                                      w.Int(p.ToPos);
                                      w.Key("BaseX");
                                      w.Float(U::Round(p.BaseX));
                                      w.Key("BaseY");
                                      w.Float(U::Round(p.BaseY));
                                      w.EndObject();
                                  }
                                  w.EndArray();
                              },
                              [](F& f, const TJSON& obj) {
                                  f.fTextPos.clear();
                                  for (const auto& p : U::GetArray(obj, "TextPos"))
                                      f.fTextPos.push_back(
                                          TQVLFlowTextPos{U::GetInt(p, "FromPos"), U::GetInt(p, "ToPos"),
                                                          static_cast<float>(U::GetFloat(p, "BaseX")),
                                                          static_cast<float>(U::GetFloat(p, "BaseY"))});
                              }}),
    });
    return table;
}

void TORXBaseFlow::ReadJson(std::int32_t version, const TJSON& obj) {
    TTableItem::ReadJson(version, obj);
    fPaddingY = fPaddingX;
    if (fTextPos.empty() && !fText.empty()) UpdatePoints();
}

// [SECTION] SVG

void TORXBaseFlow::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                            TQVLExportSVG mode, float factor, bool flag) const {
    (void)mode, (void)factor, (void)flag;
    const TQVLUnits unit = fOwner->Units();
    const TQVLRect box = Box();
    const std::string stroke = SvgStroke(fColor, GetPenWidthMM(), fLineType, unit);
    const std::string ink = SvgFill(fColor, true) + stroke;
    body.push_back(fmt::format("<g id=\"{}\">", SvgEscape(fID)));
    if (AlphaOf(fShadowColor) != 0) {
        TQVLRect shadow = box;
        shadow.Offset(SetBaseValue(fShadowDX), SetBaseValue(fShadowDY));
        const std::string paint = SvgFill(fShadowColor, true);
        body.push_back(FlowShapeSVG(fFlowType, shadow, unit, paint, paint, " fill=\"none\""));
    }
    std::string fill = SvgFill(fBackColor, fFill);
    if (fFill && fGradient != TQVLGradient::grNone && AlphaOf(fBackColor) != 0) {
        const std::string id = fmt::format("grad{}", fInID);
        const std::string stops = fmt::format(
            "<stop offset=\"0\" stop-color=\"{}\" stop-opacity=\"{}\"/><stop offset=\"1\" stop-color=\"{}\" "
            "stop-opacity=\"{}\"/>",
            SvgColor(fBackColor), SvgNumber(AlphaOf(fBackColor) / 255.0), SvgColor(fGradColor),
            SvgNumber(AlphaOf(fGradColor) / 255.0));
        if (fGradient == TQVLGradient::grRadial)
            defs.push_back(fmt::format("<radialGradient id=\"{}\">{}</radialGradient>", id, stops));
        else
            defs.push_back(fmt::format(
                "<linearGradient id=\"{}\" x1=\"0\" y1=\"0\" x2=\"{}\" y2=\"{}\">{}</linearGradient>", id,
                fGradient == TQVLGradient::grHorizontal ? 1 : 0,
                fGradient == TQVLGradient::grVertical ? 1 : 0, stops));
        fill = fmt::format(" fill=\"url(#{})\"", id);
    }
    if (IsContainerFrame())
        ContainerSVG(*this, body);
    else
        body.push_back(FlowShapeSVG(fFlowType, box, unit, fill + stroke, ink, " fill=\"none\"" + stroke));
    if (!fTextPos.empty()) {
        std::string text = fmt::format("<text{}>", SvgFontAttributes(fFont, unit));
        for (const auto& p : fTextPos) {
            const auto from =
                static_cast<std::size_t>(std::clamp<std::int64_t>(p.FromPos, 0, std::ssize(fText)));
            const auto to = static_cast<std::size_t>(std::clamp<std::int64_t>(p.ToPos, 0, std::ssize(fText)));
            text += fmt::format("<tspan x=\"{}\" y=\"{}\">{}</tspan>",
                                SvgLength(GetPointX(1) + SetBaseValue(p.BaseX), unit),
                                SvgLength(GetPointY(1) + SetBaseValue(p.BaseY), unit),
                                SvgEscape(std::string_view(fText).substr(from, to > from ? to - from : 0)));
        }
        body.push_back(text + "</text>");
    }
    body.push_back("</g>");
}

void TORXBaseFlow::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    (void)baseSet;
    set = set & TQVLInsTypes{TQVLInsType::inFill, TQVLInsType::inBackColor, TQVLInsType::inLineType,
                             TQVLInsType::inFont, TQVLInsType::inText};
}

}  // namespace Orvex
