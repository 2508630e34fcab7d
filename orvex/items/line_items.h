// The open line kinds of a drawing: straight line, polyline, circular arc, arrow line with a label, and
// dimension. Painting is the host's (Draw and Print stay abstract); everything else is here: properties
// with undo, picking, snapping, bounds, quarter turns, the JSON keys and SVG.
//
// Angles (arc, labels) are degrees counter-clockwise on screen from +x, as they are entered on paper.
// Every kind (here and in shape_items.h) has a constructor (owner, preview) and one (owner, layer, preview)
// that puts the new item on the given layer instead of the document's first.
//
// [SECTION] Property indexes   [SECTION] TORXTermLine   [SECTION] TORXBaseLine   [SECTION] TORXBasePolyLine
// [SECTION] TORXBaseArc   [SECTION] TORXBaseArrowLine   [SECTION] TORXBaseDim
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/document/point_items.h"
#include "orvex/items/text_pos.h"
#include "orvex/render/draw_context.h"

namespace Orvex {

class TORXDimStyle;

// [SECTION] Property indexes, shared by the line and shape kinds (each kind uses its own subset).
inline constexpr std::uint16_t kPropLineType = kPropFirstKind;
inline constexpr std::uint16_t kPropFromType = kPropFirstKind + 1;
inline constexpr std::uint16_t kPropToType = kPropFirstKind + 2;
inline constexpr std::uint16_t kPropFromColor = kPropFirstKind + 3;
inline constexpr std::uint16_t kPropToColor = kPropFirstKind + 4;
inline constexpr std::uint16_t kPropSizeFrom = kPropFirstKind + 5;
inline constexpr std::uint16_t kPropSizeTo = kPropFirstKind + 6;
inline constexpr std::uint16_t kPropKindFirst = kPropFirstKind + 8;  // each kind's own from here

enum class TQVDimType : std::uint8_t {
    dmtHorz,
    dmtVert,
    dmtAligned,
    dmtRadial1,
    dmtRadial2,
    dmtDiameter1,
    dmtDiameter2,
    dmtAngle
};

// [SECTION] TORXTermLine: a dashed line with a terminator at each end (polyline, arc, arrow line, Bézier).
class TORXTermLine : public TORXBasePoint {
  public:
    // Terminator colours and sizes of a new line come from the document's settings.
    TORXTermLine(TORXBaseLabel* owner, TQVLItemType type, bool preview);

    TQVLineType LineType() const { return fLineType; }
    void SetLineType(TQVLineType type);
    TQVLTermType FromType() const { return fFromType; }
    void SetFromType(TQVLTermType type);
    TQVLTermType ToType() const { return fToType; }
    void SetToType(TQVLTermType type);
    TAlphaColor FromColor() const { return fFromColor; }
    void SetFromColor(TAlphaColor color);
    TAlphaColor ToColor() const { return fToColor; }
    void SetToColor(TAlphaColor color);
    // Sizes in the document's unit; the Base forms in base units.
    float SizeFrom() const;
    void SetSizeFrom(float size);
    float SizeTo() const;
    void SetSizeTo(float size);
    std::int32_t BaseSizeFrom() const { return fSizeFrom; }
    void SetBaseSizeFrom(std::int32_t size);
    std::int32_t BaseSizeTo() const { return fSizeTo; }
    void SetBaseSizeTo(std::int32_t size);

    void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;
    std::int64_t GetBaseValueProp(std::uint16_t property) const override;
    void SetBaseValueProp(std::uint16_t property, std::int64_t value) override;
    std::int64_t GetEnumProp(std::uint16_t property) const override;
    void SetEnumProp(std::uint16_t property, std::int64_t value) override;
    TAlphaColor GetColorProp(std::uint16_t property) const override;
    void SetColorProp(std::uint16_t property, TAlphaColor value) override;

  protected:
    void WriteLineTypeJson(TJSON& obj) const;
    void WriteTermJson(TJSON& obj) const;  // "FromType" to "SizeTo"
    void ReadTermJson(const TJSON& obj);   // "LineType" and the terminators
    // ' marker-start="..." marker-end="..."' for the ends that have a terminator.
    std::string SvgMarkers(std::vector<std::string>& defs) const;
    std::string SvgStrokeOf(float factor) const;  // the pen, dashes included, scaled for the drawing

    TQVLineType fLineType = TQVLineType::iiSolid;
    TQVLTermType fFromType = TQVLTermType::ttNone;
    TQVLTermType fToType = TQVLTermType::ttNone;
    TAlphaColor fFromColor = kOpaqueBlack;
    TAlphaColor fToColor = kOpaqueBlack;
    std::int32_t fSizeFrom = 2500;
    std::int32_t fSizeTo = 2500;
};

// [SECTION] TORXBaseLine: a straight segment from point 1 to point 2.
class TORXBaseLine : public TORXBasePoint {
  public:
    explicit TORXBaseLine(TORXBaseLabel* owner, bool preview = false)
        : TORXBasePoint(owner, TQVLItemType::itLine, preview) {}
    TORXBaseLine(TORXBaseLabel* owner, TORXLayer* layer, bool preview) : TORXBaseLine(owner, preview) {
        fLayer = layer;
    }

    TQVLineType LineType() const { return fLineType; }
    void SetLineType(TQVLineType type);

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;
    std::int64_t GetEnumProp(std::uint16_t property) const override;
    void SetEnumProp(std::uint16_t property, std::int64_t value) override;

  private:
    TQVLineType fLineType = TQVLineType::iiSolid;
};

// [SECTION] TORXBasePolyLine: an open chain through its points (none when new; InsertPoint adds them).
class TORXBasePolyLine : public TORXTermLine {
  public:
    explicit TORXBasePolyLine(TORXBaseLabel* owner, bool preview = false)
        : TORXTermLine(owner, TQVLItemType::itPolyLine, preview) {}
    TORXBasePolyLine(TORXBaseLabel* owner, TORXLayer* layer, bool preview)
        : TORXBasePolyLine(owner, preview) {
        fLayer = layer;
    }

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;  // nothing for fewer than two points
};

// [SECTION] TORXBaseArc: part of the circle inscribed in the square of points 1 and 2 (centre their
// midpoint, radius half their horizontal distance), from StartAngle to EndAngle; ClockWise turns the
// other way round. SweepAngle (0 < sweep <= 360) follows from the two angles; equal angles make a circle.
class TORXBaseArc : public TORXTermLine {
  public:
    explicit TORXBaseArc(TORXBaseLabel* owner, bool preview = false)
        : TORXTermLine(owner, TQVLItemType::itArc, preview) {}
    TORXBaseArc(TORXBaseLabel* owner, TORXLayer* layer, bool preview) : TORXBaseArc(owner, preview) {
        fLayer = layer;
    }

    float StartAngle() const { return fStartAngle; }
    void SetStartAngle(float degrees);
    float EndAngle() const { return fEndAngle; }
    void SetEndAngle(float degrees);
    float SweepAngle() const { return fSweepAngle; }
    bool ClockWise() const { return fClockWise; }
    void SetClockWise(bool clockWise);
    // A numbered defining point's coordinate in the document's unit (one undo step per point and axis).
    void SetPX(std::int32_t index, float value);
    void SetPY(std::int32_t index, float value);
    TQVLPto64 Center() const { return {fCX, fCY}; }
    std::int64_t Radius() const { return fRadius; }  // base units
    // Places the arc on a centre and radius (base units): points 1 and 2 become the circle's square.
    void SetCircle(std::int64_t cx, std::int64_t cy, std::int64_t radius);
    TQVLPto64 StartPoint() const;
    TQVLPto64 EndPoint() const;
    double SignedSweep() const { return fClockWise ? -fSweepAngle : fSweepAngle; }

    void CalcFromPoints();  // centre and radius from points 1 and 2
    void CalcPoints();      // points 1 and 2 from centre and radius, without recording

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    void CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                  std::int64_t& maxY) const override;
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    void UpdateBounds() override;  // the arc's own extent, not the whole circle's
    void RotateLeft() override;
    void RotateRight() override;
    void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const override;
    TQVLPto64 CenterPoint() const override { return Center(); }
    double GetFloatProp(std::uint16_t property) const override;
    void SetFloatProp(std::uint16_t property, double value) override;
    bool GetBoolProp(std::uint16_t property) const override;
    void SetBoolProp(std::uint16_t property, bool value) override;

    static constexpr std::uint16_t kPropStartAngle = kPropKindFirst;
    static constexpr std::uint16_t kPropEndAngle = kPropKindFirst + 1;
    static constexpr std::uint16_t kPropClockWise = kPropKindFirst + 2;

  private:
    void CalcSweep();
    void Turn(bool right);

    float fStartAngle = 0.0f;
    float fEndAngle = 90.0f;
    float fSweepAngle = 90.0f;
    bool fClockWise = false;
    std::int64_t fCX = 0;
    std::int64_t fCY = 0;
    std::int64_t fRadius = 0;
};

// [SECTION] TORXBaseArrowLine: a line from point 1 to point 2 with a label. Points 3 and 4 follow from the
// others: the label's anchor (the middle of its baseline) and the end of its baseline.
class TORXBaseArrowLine : public TORXTermLine {
  public:
    // A new arrow line points at its second end; its label (empty) is set in "Arial".
    explicit TORXBaseArrowLine(TORXBaseLabel* owner, bool preview = false);
    TORXBaseArrowLine(TORXBaseLabel* owner, TORXLayer* layer, bool preview)
        : TORXBaseArrowLine(owner, preview) {
        fLayer = layer;
    }

    const std::string& Text() const { return fText; }
    void SetText(const std::string& text);
    const std::string& Font() const { return fFont; }
    void SetFont(const std::string& font);
    float FontHeight() const { return fFontHeight; }  // millimetres
    void SetFontHeight(float mm);
    TAlphaColor FontColor() const { return fFontColor; }
    void SetFontColor(TAlphaColor color);
    bool Bold() const { return fBold; }
    void SetBold(bool on);
    bool Italic() const { return fItalic; }
    void SetItalic(bool on);
    bool Underline() const { return fUnderline; }
    void SetUnderline(bool on);
    bool Strikeout() const { return fStrikeout; }
    void SetStrikeout(bool on);
    float TextAngle() const { return fTextAngle; }  // degrees, added to the placement's own angle
    void SetTextAngle(float degrees);
    TQVLTextPos TextPos() const { return fTextPos; }
    void SetTextPos(TQVLTextPos pos);
    bool TextMeasure() const { return fTextMeasure; }
    void SetTextMeasure(bool on);
    const std::string& Format() const { return fFormat; }  // empty: "0.00"
    void SetFormat(const std::string& format);
    // Binds the label to a data source; the values are kept for the host's data binding.
    void SetData(std::int32_t fillType, const std::string& field, const std::string& format);
    std::int32_t FillType() const { return fFillType; }
    const std::string& Field() const { return fField; }
    const std::string& Data() const { return fData; }
    const std::string& DataName() const { return fName; }  // the data source's name
    void SetDataName(const std::string& name);
    std::string LabelText() const;  // what the label shows: the measured length or Text

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool PickExtent(TQVLRect& extent) const override;  // unbounded with a label, placed by the measure
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    void UpdateBounds() override;  // the label's points follow the line first
    void UpdatePoints() override;
    void CalcValues(std::int16_t value) override { (void)value, UpdatePoints(); }
    void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;
    std::string GetTextProp(std::uint16_t property) const override;
    void SetTextProp(std::uint16_t property, const std::string& value) override;
    double GetFloatProp(std::uint16_t property) const override;
    void SetFloatProp(std::uint16_t property, double value) override;
    bool GetBoolProp(std::uint16_t property) const override;
    void SetBoolProp(std::uint16_t property, bool value) override;
    std::int64_t GetEnumProp(std::uint16_t property) const override;
    void SetEnumProp(std::uint16_t property, std::int64_t value) override;
    TAlphaColor GetColorProp(std::uint16_t property) const override;
    void SetColorProp(std::uint16_t property, TAlphaColor value) override;

    static constexpr std::uint16_t kPropText = kPropKindFirst;
    static constexpr std::uint16_t kPropFont = kPropKindFirst + 1;
    static constexpr std::uint16_t kPropFontHeight = kPropKindFirst + 2;
    static constexpr std::uint16_t kPropFontColor = kPropKindFirst + 3;
    static constexpr std::uint16_t kPropBold = kPropKindFirst + 4;
    static constexpr std::uint16_t kPropItalic = kPropKindFirst + 5;
    static constexpr std::uint16_t kPropUnderline = kPropKindFirst + 6;
    static constexpr std::uint16_t kPropStrikeout = kPropKindFirst + 7;
    static constexpr std::uint16_t kPropTextAngle = kPropKindFirst + 8;
    static constexpr std::uint16_t kPropTextPos = kPropKindFirst + 9;
    static constexpr std::uint16_t kPropTextMeasure = kPropKindFirst + 10;
    static constexpr std::uint16_t kPropFormat = kPropKindFirst + 11;
    static constexpr std::uint16_t kPropData = kPropKindFirst + 12;
    static constexpr std::uint16_t kPropField = kPropKindFirst + 13;
    static constexpr std::uint16_t kPropFillType = kPropKindFirst + 14;
    static constexpr std::uint16_t kPropName = kPropKindFirst + 15;

  private:
    struct TLabelPlace {
        TQVLPto64 Anchor;    // middle of the baseline
        double Angle = 0.0;  // degrees, counter-clockwise on screen
        double Width = 0.0;  // base units, estimated from the font height
        double Height = 0.0;
    };
    TLabelPlace PlaceLabel(const std::string& text) const;
    bool SetTextValue(std::string& field, const std::string& value, std::uint16_t property);
    bool SetBoolValue(bool& field, bool value, std::uint16_t property);

    std::string fText;
    std::string fFont = "Arial";
    float fFontHeight = 3.5f;
    TAlphaColor fFontColor = kOpaqueBlack;
    bool fBold = false;
    bool fItalic = false;
    bool fUnderline = false;
    bool fStrikeout = false;
    float fTextAngle = 0.0f;
    TQVLTextPos fTextPos = TQVLTextPos::tpAbove;
    bool fTextMeasure = false;
    std::string fFormat;
    std::string fData;
    std::string fField;
    std::int32_t fFillType = 0;
    std::string fName;
};

// [SECTION] TORXBaseDim: a dimension whose text is measured from its points and styled by the document's
// dimension style IdDimStyle (the first style when that id is unknown).
// Points, one-based:
// - linear kinds (horizontal, vertical, aligned): 1 and 2 the dimension line's ends (the measure is their
//   distance), 3 and 4 the measured feature points the extension lines come from;
// - radial and diameter kinds: 1 the centre (diameter1: one end of the diameter), 2 the point on the
//   circle;
// - angle: 5 and 6 on the start and end arms, 7 on the dimension arc, 8 the stored centre.
// Points 5 and 6 of the non-angle kinds and 9 and 10 of every kind are derived: the corners of the
// dimension's extent (5, 6; so the bounds cover it) and the text's anchor and direction (9, 10).
class TORXBaseDim : public TORXBasePoint {
  public:
    explicit TORXBaseDim(TORXBaseLabel* owner, bool preview = false);
    TORXBaseDim(TORXBaseLabel* owner, TORXLayer* layer, bool preview) : TORXBaseDim(owner, preview) {
        fLayer = layer;
    }

    TQVDimType DimType() const { return fDimType; }
    void SetDimType(TQVDimType type);
    std::int32_t DimExt() const {
        return fDimExt;
    }  // 0 both extension lines, 1 the first, 2 the second, 3 none
    void SetDimExt(std::int32_t ext);
    std::int32_t IdDimStyle() const { return fIdDimStyle; }
    void SetIdDimStyle(std::int32_t id);
    const std::string& Text() const { return fText; }
    void SetText(const std::string& text);
    float TextAngle() const { return fTextAngle; }
    void SetTextAngle(float degrees);
    bool TextMeasure() const { return fTextMeasure; }
    void SetTextMeasure(bool on);
    const std::string& DisplayText() const { return fDisplayText; }
    const TORXDimStyle* Style() const;

    // Placement helpers, each one undo step. offset: the distance of the dimension line from the features
    // (horizontal: above them when negative; aligned: to the left of a to b when negative).
    void SetLinear(TQVDimType type, const TQVLPto64& a, const TQVLPto64& b, std::int64_t offset);
    void SetRadial(TQVDimType type, const TQVLPto64& first, const TQVLPto64& onCircle);
    void SetAngular(const TQVLPto64& centre, const TQVLPto64& startArm, const TQVLPto64& endArm,
                    const TQVLPto64& arcPoint);

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool PickExtent(TQVLRect& extent) const override;  // unbounded: texts and extension lines
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    void CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                  std::int64_t& maxY) const override;
    void UpdateBounds() override;  // derived points first, then the bounds of points 5 and 6
    void UpdatePoints() override;
    void CalcValues(std::int16_t value) override;  // the displayed text
    void RotateLeft() override;
    void RotateRight() override;
    TQVLPto64 CenterPoint() const override;
    void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;
    std::string GetTextProp(std::uint16_t property) const override;
    void SetTextProp(std::uint16_t property, const std::string& value) override;
    double GetFloatProp(std::uint16_t property) const override;
    void SetFloatProp(std::uint16_t property, double value) override;
    bool GetBoolProp(std::uint16_t property) const override;
    void SetBoolProp(std::uint16_t property, bool value) override;
    std::int64_t GetEnumProp(std::uint16_t property) const override;
    void SetEnumProp(std::uint16_t property, std::int64_t value) override;

    static constexpr std::uint16_t kPropDimType = kPropKindFirst;
    static constexpr std::uint16_t kPropDimExt = kPropKindFirst + 1;
    static constexpr std::uint16_t kPropIdDimStyle = kPropKindFirst + 2;
    static constexpr std::uint16_t kPropText = kPropKindFirst + 3;
    static constexpr std::uint16_t kPropTextAngle = kPropKindFirst + 4;
    static constexpr std::uint16_t kPropTextMeasure = kPropKindFirst + 5;

    // The angle arc as found from points 5, 7 and 6: centre, radius and the sweep in degrees.
    struct TAngleArc {
        TQVLPto64 Center;
        std::int64_t Radius = 0;
        double StartDeg = 0.0;  // screen angles, as items use them
        double SweepDeg = 0.0;  // signed: positive counter-clockwise on screen
        double Measure = 0.0;   // the angle shown, radians, in [0, 2 pi)
    };
    TAngleArc AngleArc() const;

  private:
    std::string MeasureText() const;
    void Turn(bool right);

    TQVDimType fDimType = TQVDimType::dmtHorz;
    std::int32_t fDimExt = 0;
    std::int32_t fIdDimStyle = 1;
    std::string fText;
    float fTextAngle = 0.0f;
    bool fTextMeasure = true;
    std::string fDisplayText;
};

}  // namespace Orvex
