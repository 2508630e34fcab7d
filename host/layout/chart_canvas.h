// The small vocabulary every chart layout draws with: rectangles, circles, sectors, lines, polylines,
// polygons, texts, captioned boxes and links, placed in millimetres with y growing downwards. Everything
// is one of the drawing's own items, so a drawn chart stays editable.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/layout/layout_types.h"
#include "orvex/core/color.h"
#include "orvex/items/flow_types.h"

namespace Orvex {
using Qvl::Types::kOpaqueBlack;
using Qvl::Types::kOpaqueWhite;
using Qvl::Types::TAlphaColor;
class TORXBaseLabel;
class TORXBaseRectangle;
class TORXBaseCircle;
class TORXBaseEllipse;
class TORXBaseSector;
class TORXBaseLine;
class TORXBasePolyLine;
class TORXBasePolygon;
class TORXBaseText;
class TORXBaseFlow;
class TORXBaseLink;
struct TQVLDiagramPlacement;

enum class TChartAlign : std::uint8_t { caStart, caCenter, caEnd };

// How a text is drawn: its size, weight and colour, and which point of its box the given position names.
struct TChartTextStyle {
    float Height = 3.5f;  // font height in millimetres
    bool Bold = false;
    bool Italic = false;
    TAlphaColor Color = kOpaqueBlack;
    TChartAlign Horizontal = TChartAlign::caStart;
    TChartAlign Vertical = TChartAlign::caStart;
};

// The outline and fill of a shape; no fill leaves the shape hollow.
struct TChartPaint {
    std::optional<TAlphaColor> Fill;
    TAlphaColor Stroke = kOpaqueBlack;
    float PenMM = 0;  // 0 keeps the document's pen
    bool Dashed = false;
};

// A number as a chart labels it: at most aDecimals decimals, trailing zeros dropped ("85.5", "386").
std::string ChartNumber(double aValue, int aDecimals = 2);

// A palette of distinct, readable fills for series, slices and branches (cycled by index).
TAlphaColor ChartSeriesColor(std::size_t aIndex);

class TChartCanvas {
  public:
    // aPlacement, when given, receives the boxes made with Box() under the ids given to it.
    TChartCanvas(TORXBaseLabel& aDocument, TQVLDiagramPlacement* aPlacement = nullptr);

    // Each returns the item, or null when the document cannot make it (Failed() then turns true).
    TORXBaseRectangle* Rect(const TLayoutBox& aBox, const TChartPaint& aPaint, double aCornerMM = 0);
    TORXBaseCircle* Circle(TLayoutPoint aCenter, double aRadius, const TChartPaint& aPaint);
    TORXBaseEllipse* Ellipse(const TLayoutBox& aBox, const TChartPaint& aPaint);
    // From aStartDeg (0 pointing right, counter-clockwise positive on screen) over aSweepDeg.
    TORXBaseSector* Sector(TLayoutPoint aCenter, double aRadius, double aStartDeg, double aSweepDeg,
                           const TChartPaint& aPaint);
    TORXBaseLine* Line(TLayoutPoint aFrom, TLayoutPoint aTo, const TChartPaint& aPaint = {});
    TORXBasePolyLine* Polyline(const std::vector<TLayoutPoint>& aPoints, const TChartPaint& aPaint = {});
    // An outline only: the drawing's polygons have no fill (a filled diamond is a Box of ftDecision).
    TORXBasePolygon* Polygon(const std::vector<TLayoutPoint>& aPoints, const TChartPaint& aPaint);
    // Null (without failing) for an empty text. Lines are broken at "\n".
    TORXBaseText* Text(TLayoutPoint aAt, const std::string& aText, const TChartTextStyle& aStyle = {});
    // A flow element of aShape holding aCaption: the item to use for what links join or people edit as a
    // unit (a task bar, a card, a commit). aId, when not empty, records it in the placement.
    TORXBaseFlow* Box(const TLayoutBox& aBox, TQVLFlowType aShape, const std::string& aCaption,
                      const TChartPaint& aPaint, std::string_view aId = {});
    // A link bound to two boxes (so it follows them when they move), with an arrow head at the target.
    TORXBaseLink* Link(const TORXBaseFlow& aFrom, const TORXBaseFlow& aTo, const TChartPaint& aPaint = {},
                       bool aArrow = true);

    // The extent of a text drawn in aStyle, in millimetres.
    TLayoutSize Measure(std::string_view aText, const TChartTextStyle& aStyle = {}) const;

    bool Failed() const { return fFailed; }
    TORXBaseLabel& Document() { return fDocument; }

  private:
    template <class T>
    T* Make(int aType);

    TORXBaseLabel& fDocument;
    TQVLDiagramPlacement* fPlacement;
    bool fFailed = false;
};

}  // namespace Orvex
