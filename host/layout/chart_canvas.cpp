#include "host/layout/chart_canvas.h"

#include <array>
#include <cmath>
#include <cstdio>

#include "host/layout/diagram_loader.h"
#include "orvex/core/units.h"
#include "orvex/document/document.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/shape_items.h"
#include "orvex/items/text_items.h"

namespace Orvex {
namespace {

constexpr TQVLineType kDashed = TQVLineType::ii22;

void ApplyOutline(TORXBaseItem& item, const TChartPaint& paint) {
    item.SetColor(paint.Stroke);
    if (paint.PenMM > 0) item.SetPenWidthMM(paint.PenMM);
}

void ApplyFill(TORX2DItem& item, const TChartPaint& paint) {
    if (!paint.Fill) return;
    item.SetBackColor(*paint.Fill);
    item.SetFilled(true);
}

TQVLPtoA BasePoints(const std::vector<TLayoutPoint>& points) {
    TQVLPtoA out;
    out.reserve(points.size());
    for (const TLayoutPoint& p : points) out.push_back({BaseFromMM(p.X), BaseFromMM(p.Y)});
    return out;
}

template <class T>
void Span(T& item, const TLayoutBox& box) {
    item.SetBase(1, BaseFromMM(box.X), BaseFromMM(box.Y));
    item.SetBase(2, BaseFromMM(box.Right()), BaseFromMM(box.Bottom()));
}

double AlignOffset(TChartAlign align, double extent) {
    switch (align) {
        case TChartAlign::caStart:
            return 0;
        case TChartAlign::caCenter:
            return extent / 2;
        case TChartAlign::caEnd:
            return extent;
    }
    return 0;
}

}  // namespace

std::string ChartNumber(double aValue, int aDecimals) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", aDecimals, aValue);
    std::string text(buffer);
    if (text.find('.') != std::string::npos) {
        while (text.back() == '0') text.pop_back();
        if (text.back() == '.') text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

TAlphaColor ChartSeriesColor(std::size_t aIndex) {
    // Soft, distinct hues that keep black captions readable on them.
    static constexpr std::array<TAlphaColor, 12> kPalette{0xFF8DB4E2u, 0xFFF4B183u, 0xFFA9D18Eu, 0xFFFFD966u,
                                                          0xFFC9A0DCu, 0xFF9DD9D2u, 0xFFF8A5A5u, 0xFFBFBFBFu,
                                                          0xFFB4C7E7u, 0xFFE2C290u, 0xFFC5E0B4u, 0xFFD9B3FFu};
    return kPalette[aIndex % kPalette.size()];
}

TChartCanvas::TChartCanvas(TORXBaseLabel& aDocument, TQVLDiagramPlacement* aPlacement)
    : fDocument(aDocument), fPlacement(aPlacement) {}

template <class T>
T* TChartCanvas::Make(int aType) {
    T* item = dynamic_cast<T*>(fDocument.CreateItem(static_cast<TQVLItemType>(aType)));
    if (item == nullptr) fFailed = true;
    return item;
}

TORXBaseRectangle* TChartCanvas::Rect(const TLayoutBox& aBox, const TChartPaint& aPaint, double aCornerMM) {
    auto* item = Make<TORXBaseRectangle>(static_cast<int>(TQVLItemType::itRectangle));
    if (item == nullptr) return nullptr;
    Span(*item, aBox);
    ApplyOutline(*item, aPaint);
    ApplyFill(*item, aPaint);
    if (aPaint.Dashed) item->SetLineType(kDashed);
    if (aCornerMM > 0) item->SetBaseRadio(static_cast<std::int32_t>(BaseFromMM(aCornerMM)));
    return item;
}

TORXBaseCircle* TChartCanvas::Circle(TLayoutPoint aCenter, double aRadius, const TChartPaint& aPaint) {
    auto* item = Make<TORXBaseCircle>(static_cast<int>(TQVLItemType::itCircle));
    if (item == nullptr) return nullptr;
    Span(*item, {aCenter.X - aRadius, aCenter.Y - aRadius, 2 * aRadius, 2 * aRadius, true});
    ApplyOutline(*item, aPaint);
    ApplyFill(*item, aPaint);
    if (aPaint.Dashed) item->SetLineType(kDashed);
    return item;
}

TORXBaseEllipse* TChartCanvas::Ellipse(const TLayoutBox& aBox, const TChartPaint& aPaint) {
    auto* item = Make<TORXBaseEllipse>(static_cast<int>(TQVLItemType::itEllipse));
    if (item == nullptr) return nullptr;
    Span(*item, aBox);
    ApplyOutline(*item, aPaint);
    ApplyFill(*item, aPaint);
    if (aPaint.Dashed) item->SetLineType(kDashed);
    return item;
}

TORXBaseSector* TChartCanvas::Sector(TLayoutPoint aCenter, double aRadius, double aStartDeg, double aSweepDeg,
                                     const TChartPaint& aPaint) {
    auto* item = Make<TORXBaseSector>(static_cast<int>(TQVLItemType::itSector));
    if (item == nullptr) return nullptr;
    Span(*item, {aCenter.X - aRadius, aCenter.Y - aRadius, 2 * aRadius, 2 * aRadius, true});
    // The item keeps its start within one turn.
    double start = std::fmod(aStartDeg, 360.0);
    if (start < 0) start += 360.0;
    item->SetAngleStart(static_cast<float>(start));
    item->SetAngleGap(static_cast<float>(aSweepDeg));
    ApplyOutline(*item, aPaint);
    ApplyFill(*item, aPaint);
    return item;
}

TORXBaseLine* TChartCanvas::Line(TLayoutPoint aFrom, TLayoutPoint aTo, const TChartPaint& aPaint) {
    auto* item = Make<TORXBaseLine>(static_cast<int>(TQVLItemType::itLine));
    if (item == nullptr) return nullptr;
    item->SetBase(1, BaseFromMM(aFrom.X), BaseFromMM(aFrom.Y));
    item->SetBase(2, BaseFromMM(aTo.X), BaseFromMM(aTo.Y));
    ApplyOutline(*item, aPaint);
    if (aPaint.Dashed) item->SetLineType(kDashed);
    return item;
}

TORXBasePolyLine* TChartCanvas::Polyline(const std::vector<TLayoutPoint>& aPoints,
                                         const TChartPaint& aPaint) {
    auto* item = Make<TORXBasePolyLine>(static_cast<int>(TQVLItemType::itPolyLine));
    if (item == nullptr) return nullptr;
    item->SetPointsProp(BasePoints(aPoints), kPropNone);
    ApplyOutline(*item, aPaint);
    if (aPaint.Dashed) item->SetLineType(kDashed);
    return item;
}

TORXBasePolygon* TChartCanvas::Polygon(const std::vector<TLayoutPoint>& aPoints, const TChartPaint& aPaint) {
    auto* item = Make<TORXBasePolygon>(static_cast<int>(TQVLItemType::itPolygon));
    if (item == nullptr) return nullptr;
    item->SetPointsProp(BasePoints(aPoints), kPropNone);
    ApplyOutline(*item, aPaint);
    if (aPaint.Dashed) item->SetLineType(kDashed);
    return item;
}

TORXBaseText* TChartCanvas::Text(TLayoutPoint aAt, const std::string& aText, const TChartTextStyle& aStyle) {
    if (aText.empty()) return nullptr;
    auto* item = Make<TORXBaseText>(static_cast<int>(TQVLItemType::itText));
    if (item == nullptr) return nullptr;
    const TLayoutSize size = Measure(aText, aStyle);
    const double x = aAt.X - AlignOffset(aStyle.Horizontal, size.Width);
    const double y = aAt.Y - AlignOffset(aStyle.Vertical, size.Height);
    item->SetBase(1, BaseFromMM(x), BaseFromMM(y));
    item->SetFontHeight(aStyle.Height);
    if (aStyle.Bold) item->SetBold(true);
    if (aStyle.Italic) item->SetItalic(true);
    if (aStyle.Color != kOpaqueBlack) item->SetFontColor(aStyle.Color);
    if (aStyle.Horizontal == TChartAlign::caCenter) item->SetHorzAlign(TQVLHorzAlign::haCenter);
    if (aStyle.Horizontal == TChartAlign::caEnd) item->SetHorzAlign(TQVLHorzAlign::haRight);
    item->SetText(aText);
    return item;
}

TORXBaseFlow* TChartCanvas::Box(const TLayoutBox& aBox, TQVLFlowType aShape, const std::string& aCaption,
                                const TChartPaint& aPaint, std::string_view aId) {
    auto* item = Make<TORXBaseFlow>(static_cast<int>(TQVLItemType::itFlow));
    if (item == nullptr) return nullptr;
    Span(*item, aBox);
    item->SetFlowType(aShape);
    item->SetText(aCaption);
    ApplyOutline(*item, aPaint);
    ApplyFill(*item, aPaint);
    if (fPlacement != nullptr && !aId.empty()) fPlacement->Nodes.push_back({std::string(aId), item->InID()});
    return item;
}

TORXBaseLink* TChartCanvas::Link(const TORXBaseFlow& aFrom, const TORXBaseFlow& aTo,
                                 const TChartPaint& aPaint, bool aArrow) {
    auto* item = Make<TORXBaseLink>(static_cast<int>(TQVLItemType::itLink));
    if (item == nullptr) return nullptr;
    item->SetLinkType(TQVLinkType::ltDirLine);
    item->Bind(&aFrom, -1, &aTo, -1);
    item->SetFromType(TQVLTermType::ttNone);
    item->SetToType(aArrow ? TQVLTermType::ttFillArrow : TQVLTermType::ttNone);
    ApplyOutline(*item, aPaint);
    item->SetFromColor(aPaint.Stroke);
    item->SetToColor(aPaint.Stroke);
    if (aPaint.Dashed) item->SetLineType(kDashed);
    return item;
}

TLayoutSize TChartCanvas::Measure(std::string_view aText, const TChartTextStyle& aStyle) const {
    TQVLFont font;
    font.FontHeight = aStyle.Height;
    font.Bold = aStyle.Bold;
    font.Italic = aStyle.Italic;
    return FontMeasure(font)(aText);
}

}  // namespace Orvex
