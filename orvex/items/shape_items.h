// The closed shapes of a drawing: rectangle (optionally with rounded corners), polygon, Bézier curve with
// terminators, circle, ellipse and circular sector. Rectangle, circle, ellipse and sector are box items
// spanned by points 1 and 2; polygon and Bézier are point lists. Painting is the host's.
//
// [SECTION] TORXBaseRectangle   [SECTION] TORXBasePolygon   [SECTION] TORXBaseBezier
// [SECTION] TORXBaseCircle   [SECTION] TORXBaseEllipse   [SECTION] TORXBaseSector
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/items/line_items.h"

namespace Orvex {

// Box shapes share the outline's dash pattern and keep point 1 at the top-left corner after a turn.
class TORXBoxShape : public TORX2DItem {
  public:
    using TORX2DItem::TORX2DItem;

    TQVLineType LineType() const { return fLineType; }
    void SetLineType(TQVLineType type);

    void RotateLeft() override;
    void RotateRight() override;
    void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;
    std::int64_t GetEnumProp(std::uint16_t property) const override;
    void SetEnumProp(std::uint16_t property, std::int64_t value) override;
    // "LineType" after the common keys; each shape adds its own keys behind it.
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;

  protected:
    bool FilledInk() const;                    // filled with a colour that is not fully transparent
    std::string SvgPaint(float factor) const;  // fill and stroke attributes
    virtual void Turned() {}                   // after a quarter turn: derived values follow

    TQVLineType fLineType = TQVLineType::iiSolid;
};

// [SECTION] TORXBaseRectangle
class TORXBaseRectangle : public TORXBoxShape {
  public:
    explicit TORXBaseRectangle(TORXBaseLabel* owner, bool preview = false)
        : TORXBoxShape(owner, TQVLItemType::itRectangle, preview) {}
    TORXBaseRectangle(TORXBaseLabel* owner, TORXLayer* layer, bool preview)
        : TORXBaseRectangle(owner, preview) {
        fLayer = layer;
    }

    float GetRadio() const;    // corner radius in the document's unit
    float GetMMRadio() const;  // in millimetres; exactly 0 for square corners
    // Limited to half the height (only the height, even when the rectangle is wider than tall).
    void SetRadio(float value);
    std::int32_t BaseRadio() const { return fRadio; }
    void SetBaseRadio(std::int32_t radius);

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const override;
    std::int64_t GetBaseValueProp(std::uint16_t property) const override;
    void SetBaseValueProp(std::uint16_t property, std::int64_t value) override;

    static constexpr std::uint16_t kPropRadio = kPropKindFirst;

  private:
    std::int32_t fRadio = 0;  // base units
};

// [SECTION] TORXBasePolygon: a closed outline through its points (none when new).
class TORXBasePolygon : public TORXBasePoint {
  public:
    explicit TORXBasePolygon(TORXBaseLabel* owner, bool preview = false)
        : TORXBasePoint(owner, TQVLItemType::itPolygon, preview) {}
    TORXBasePolygon(TORXBaseLabel* owner, TORXLayer* layer, bool preview) : TORXBasePolygon(owner, preview) {
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

// [SECTION] TORXBaseBezier: a chain of cubic segments p0 (c1 c2 p)...; points left after the last whole
// segment are joined by straight lines. A new curve has no terminators and the settings' colour and size.
class TORXBaseBezier : public TORXTermLine {
  public:
    explicit TORXBaseBezier(TORXBaseLabel* owner, bool preview = false)
        : TORXTermLine(owner, TQVLItemType::itBezier, preview) {}
    TORXBaseBezier(TORXBaseLabel* owner, TORXLayer* layer, bool preview) : TORXBaseBezier(owner, preview) {
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

// [SECTION] TORXBaseCircle: centre and radius are cached from points 1 and 2 (the midpoint, half the
// horizontal distance) whenever the bounds are updated.
class TORXBaseCircle : public TORXBoxShape {
  public:
    explicit TORXBaseCircle(TORXBaseLabel* owner, bool preview = false)
        : TORXBoxShape(owner, TQVLItemType::itCircle, preview) {}
    TORXBaseCircle(TORXBaseLabel* owner, TORXLayer* layer, bool preview) : TORXBaseCircle(owner, preview) {
        fLayer = layer;
    }

    float GetRadio() const;  // document units
    std::int64_t GetBaseRadio() const;
    void SetRadio(float value);
    void SetBaseRadio(std::int64_t radius);  // around the cached centre, one undo step
    float CenterX() const;                   // document units
    float CenterY() const;
    void SetCenterX(float value);  // moves the circle
    void SetCenterY(float value);
    std::int64_t BaseCenterX() const { return fCX; }
    std::int64_t BaseCenterY() const { return fCY; }
    std::int32_t BaseRadius() const { return fRadius; }

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const override;
    void UpdateBounds() override;
    TQVLPto64 CenterPoint() const override { return {fCX, fCY}; }

  protected:
    TORXBaseCircle(TORXBaseLabel* owner, TQVLItemType type, bool preview)
        : TORXBoxShape(owner, type, preview) {}
    void MoveCenter(std::int64_t cx, std::int64_t cy);

    std::int64_t fCX = 0;
    std::int64_t fCY = 0;
    std::int32_t fRadius = 0;
};

// [SECTION] TORXBaseEllipse: the ellipse inscribed in the box of points 1 and 2.
class TORXBaseEllipse : public TORXBoxShape {
  public:
    explicit TORXBaseEllipse(TORXBaseLabel* owner, bool preview = false)
        : TORXBoxShape(owner, TQVLItemType::itEllipse, preview) {}
    TORXBaseEllipse(TORXBaseLabel* owner, TORXLayer* layer, bool preview) : TORXBaseEllipse(owner, preview) {
        fLayer = layer;
    }

    float GetRadioX() const;  // document units
    float GetRadioY() const;
    void SetRadioX(float value);
    void SetRadioY(float value);
    void SetCenterX(float value);
    void SetCenterY(float value);

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
};

// [SECTION] TORXBaseSector: the part of the circle (as for TORXBaseCircle) from the effective start angle
// over SweepAngle degrees, counter-clockwise on screen when positive. The effective start is StartAngle
// corrected by the item's quarter turns.
class TORXBaseSector : public TORXBaseCircle {
  public:
    explicit TORXBaseSector(TORXBaseLabel* owner, bool preview = false);
    TORXBaseSector(TORXBaseLabel* owner, TORXLayer* layer, bool preview) : TORXBaseSector(owner, preview) {
        fLayer = layer;
    }

    float StartAngle() const { return fStartAngle; }
    float SweepAngle() const { return fSweepAngle; }
    float EffectiveStart() const { return fEffStart; }
    void SetAngleStart(float degrees);  // clamped to -359..360
    void SetAngleGap(float degrees);    // clamped to -360..360

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    void JsonInspector(TQVLInsTypeBases baseSet, TQVLInsTypes set, TJSON& array) const override;
    void SetEnumProp(std::uint16_t property, std::int64_t value) override;
    double GetFloatProp(std::uint16_t property) const override;
    void SetFloatProp(std::uint16_t property, double value) override;

    static constexpr std::uint16_t kPropStartAngle = kPropKindFirst;
    static constexpr std::uint16_t kPropSweepAngle = kPropKindFirst + 1;

  protected:
    void Turned() override { CalcEffectiveStart(); }

  private:
    void CalcEffectiveStart();
    std::vector<TQVLPto64> Outline() const;  // centre, then the arc flattened

    float fStartAngle = 0.0f;
    float fSweepAngle = 90.0f;
    float fEffStart = 0.0f;
};

}  // namespace Orvex
