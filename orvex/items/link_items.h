// TORXBaseLink: a connector between two flow elements, bound to them by internal id and connection
// point. Its course follows the link type: a straight line, an L leaving horizontally or vertically, a
// step with two bends, an arc, a smooth curve, the user's polyline or an orthogonal route with rounded
// corners. The ends are recomputed from the elements whenever they move (the document's pending
// calculations run CalcValues), so the stored course is derived except for the user's polyline points.
//
// Connection index -1 lets the link choose the sides that suit its type and the elements' positions.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/document/point_items.h"
#include "orvex/items/flow_types.h"
#include "orvex/items/table_item.h"
#include "orvex/render/draw_context.h"

namespace Orvex {

class TORXBaseFlow;

namespace LinkProp {
inline constexpr std::uint16_t kLinkType = kPropFirstKind + 100;
inline constexpr std::uint16_t kLineType = kPropFirstKind + 101;
inline constexpr std::uint16_t kFromID = kPropFirstKind + 102;
inline constexpr std::uint16_t kFromIndex = kPropFirstKind + 103;
inline constexpr std::uint16_t kFromType = kPropFirstKind + 104;
inline constexpr std::uint16_t kFromColor = kPropFirstKind + 105;
inline constexpr std::uint16_t kToID = kPropFirstKind + 106;
inline constexpr std::uint16_t kToIndex = kPropFirstKind + 107;
inline constexpr std::uint16_t kToType = kPropFirstKind + 108;
inline constexpr std::uint16_t kToColor = kPropFirstKind + 109;
inline constexpr std::uint16_t kLinkPoints = kPropFirstKind + 110;
}  // namespace LinkProp

// Intermediate points that SetLinkType leaves; -1 keeps the array as it is (the user's polyline).
std::int32_t LinkTypePointCount(TQVLinkType type);

class TORXBaseLink : public TTableItem<TORXBasePoint, TORXBaseLink> {
  public:
    TORXBaseLink(TORXBaseLabel* owner, bool create);
    TORXBaseLink(TORXBaseLabel* owner, TORXLayer* layer, bool create);
    TORXBaseLink(TORXBaseLabel* owner, TQVLinkType type, bool create);

    void IniLink();  // type, terminators and arc to zero; terminator colours from the document's settings

    // [SECTION] Properties. SetLinkType records one command that also keeps the points it drops.
    TQVLinkType LinkType() const { return fLinkType; }
    void SetLinkType(TQVLinkType type);
    TQVLineType LineType() const { return fLineType; }
    void SetLineType(TQVLineType t) { SetEnumProp(LinkProp::kLineType, static_cast<std::int64_t>(t)); }
    std::int32_t FromID() const { return static_cast<std::int32_t>(fFromID); }
    void SetFromID(std::int32_t id) {
        SetField<TORXBaseValueCmd>(fFromID, std::int64_t{id}, LinkProp::kFromID);
    }
    std::int16_t FromIndex() const { return static_cast<std::int16_t>(fFromIndex); }
    void SetFromIndex(std::int16_t i) {
        SetField<TORXBaseValueCmd>(fFromIndex, std::int64_t{i}, LinkProp::kFromIndex);
    }
    TQVLTermType FromType() const { return fFromType; }
    void SetFromType(TQVLTermType t) { SetEnumProp(LinkProp::kFromType, static_cast<std::int64_t>(t)); }
    TAlphaColor FromColor() const { return fFromColor; }
    void SetFromColor(TAlphaColor c) { SetField<TORXColorCmd>(fFromColor, c, LinkProp::kFromColor); }
    std::int32_t ToID() const { return static_cast<std::int32_t>(fToID); }
    void SetToID(std::int32_t id) { SetField<TORXBaseValueCmd>(fToID, std::int64_t{id}, LinkProp::kToID); }
    std::int16_t ToIndex() const { return static_cast<std::int16_t>(fToIndex); }
    void SetToIndex(std::int16_t i) {
        SetField<TORXBaseValueCmd>(fToIndex, std::int64_t{i}, LinkProp::kToIndex);
    }
    TQVLTermType ToType() const { return fToType; }
    void SetToType(TQVLTermType t) { SetEnumProp(LinkProp::kToType, static_cast<std::int64_t>(t)); }
    TAlphaColor ToColor() const { return fToColor; }
    void SetToColor(TAlphaColor c) { SetField<TORXColorCmd>(fToColor, c, LinkProp::kToColor); }
    // Both ends at once, as one undo step: what add_link and the diagram layout call.
    void Bind(const TORXBaseFlow* from, std::int16_t fromIndex, const TORXBaseFlow* to, std::int16_t toIndex);

    // Arc of an ltArc link (derived): radius and centre in base units, angles in radians (as TDraw2D;
    // drawing files hold degrees).
    std::int64_t Radio() const { return fRadio; }
    std::int64_t Cx() const { return fCx; }
    std::int64_t Cy() const { return fCy; }
    double StartAngle() const { return fStart; }
    double EndAngle() const { return fEnd; }
    double Sweep() const { return fSweep; }
    bool ClockWise() const { return fClockWise; }

    // [SECTION] Link points: the intermediate points between the two ends (one-based like item points).
    std::int32_t GetNumLinkPoints() const { return static_cast<std::int32_t>(fLinkPoints.size()); }
    TQVLPto64 GetLinkPoint(std::int32_t i) const;
    float GetLinkPointMMX(std::int32_t i) const;
    float GetLinkPointMMY(std::int32_t i) const;
    void SetLinkPoint(std::int32_t i, float xMM, float yMM);
    const std::vector<TQVLPto64>& LinkPoints() const { return fLinkPoints; }
    void InsertPoint(std::int64_t x, std::int64_t y, std::int32_t index) override;  // a link point
    // The whole course from the first end to the last, arcs and curves flattened.
    std::vector<TQVLPto64> Course() const;
    TQVLPto64 StartPoint() const { return fStartPt; }
    TQVLPto64 EndPoint() const { return fEndPt; }

    // A caption carried by the link itself, drawn halfway along its course over a white ground, so that it
    // moves and goes with the link. Kept in drawing files under the extra key "Label". Not recorded: the
    // caller records the change (the tools do, through the item's file form).
    const std::string& Label() const { return fLabel; }
    void SetLabel(std::string label);
    TQVLPto64 LabelPoint() const;  // halfway along the course, base units

    // [SECTION] Routing. Recomputes the ends from the bound elements and the course from the type. With
    // reset false a step keeps where the user moved its middle; with true it is placed midway again.
    // An end whose element is missing keeps its last position.
    void CalcLinkPoints(bool reset);
    TORXBaseFlow* FromFlow() const;
    TORXBaseFlow* ToFlow() const;
    // An end terminator's shape as a closed or open polyline in base units (empty for ttNone): for hosts
    // that paint it themselves. atEnd selects the to-end.
    std::vector<TQVLPto64> Arrow(bool atEnd) const;

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    void CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                  std::int64_t& maxY) const override;
    void UpdateBounds() override;
    void CalcValues(std::int16_t value) override;
    void RotateLeft() override;
    void RotateRight() override;
    void BaseMove(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2, TQVLMoveOpt option,
                  bool flag) override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;  // then the ends as saved, routed later
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;
    void SetEnumProp(std::uint16_t p, std::int64_t v) override;  // the link type through SetLinkType
    // The link's properties and keys after those of every point item, in the order of its drawing files.
    static const TPropTable<TORXBaseLink>& PropTable();

    // Used by the link's own undo command: type and link points together.
    void RestoreLinkState(TQVLinkType type, const std::vector<TQVLPto64>& points, std::uint16_t property);

  protected:
    void PropChanged(std::uint16_t p) override;
    std::array<std::int32_t, 2> LinkEndIDs() const override;
    void SetLinkPoints(const std::vector<TQVLPto64>& points);  // one undo step
    void Turn(bool right);

    TQVLinkType fLinkType = TQVLinkType::ltDirLine;
    TQVLineType fLineType = TQVLineType::iiSolid;
    std::int64_t fFromID = 0;
    std::int64_t fFromIndex = -1;
    TQVLTermType fFromType = TQVLTermType::ttNone;
    TAlphaColor fFromColor = kOpaqueBlack;
    std::int64_t fToID = 0;
    std::int64_t fToIndex = -1;
    TQVLTermType fToType = TQVLTermType::ttNone;
    TAlphaColor fToColor = kOpaqueBlack;
    std::int64_t fRadio = 0;
    std::int64_t fCx = 0;
    std::int64_t fCy = 0;
    double fStart = 0.0;
    double fEnd = 0.0;
    double fSweep = 0.0;
    bool fClockWise = false;
    std::vector<TQVLPto64> fLinkPoints;
    std::string fLabel;
    TQVLPto64 fStartPt;
    TQVLPto64 fEndPt;
    int fFromSide = 1;  // the sides the last routing used
    int fToSide = 3;
    bool fArcFromMiddle = false;  // the user placed the arc's middle point: the next routing follows it
};

// Binds every link of the document to its elements by id and routes it: a document family calls this
// from AssignSymbolAndFlowLinks, after a read.
void QVLAssignFlowLinks(TORXBaseLabel& document);

}  // namespace Orvex
