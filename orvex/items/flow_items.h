// TORXBaseFlow: a flowchart element, a box with one of fifteen shapes, a text and four connection
// points (0 top, 1 right, 2 bottom, 3 left) on its outline where links attach. Moving or resizing an
// element queues its links for recalculation.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/document/layer.h"
#include "orvex/document/point_items.h"
#include "orvex/items/flow_types.h"
#include "orvex/items/table_item.h"
#include "orvex/items/text_place.h"
#include "orvex/render/draw2d.h"

namespace Orvex {

namespace FlowProp {
inline constexpr std::uint16_t kFlowType = kPropFirstKind + 70;
inline constexpr std::uint16_t kLineType = kPropFirstKind + 71;
inline constexpr std::uint16_t kHorzAlign = kPropFirstKind + 72;
inline constexpr std::uint16_t kVertAlign = kPropFirstKind + 73;
inline constexpr std::uint16_t kPaddingX = kPropFirstKind + 74;
inline constexpr std::uint16_t kPaddingY = kPropFirstKind + 75;
inline constexpr std::uint16_t kShadowColor = kPropFirstKind + 76;
inline constexpr std::uint16_t kShadowDX = kPropFirstKind + 77;
inline constexpr std::uint16_t kShadowDY = kPropFirstKind + 78;
inline constexpr std::uint16_t kGradient = kPropFirstKind + 79;
inline constexpr std::uint16_t kGradColor = kPropFirstKind + 80;
inline constexpr std::uint16_t kFontName = kPropFirstKind + 81;
inline constexpr std::uint16_t kBold = kPropFirstKind + 82;
inline constexpr std::uint16_t kItalic = kPropFirstKind + 83;
inline constexpr std::uint16_t kUnderline = kPropFirstKind + 84;
inline constexpr std::uint16_t kStrikeout = kPropFirstKind + 85;
inline constexpr std::uint16_t kFontHeight = kPropFirstKind + 86;
inline constexpr std::uint16_t kFontColor = kPropFirstKind + 87;
inline constexpr std::uint16_t kInterline = kPropFirstKind + 88;
inline constexpr std::uint16_t kText = kPropFirstKind + 89;
}  // namespace FlowProp

// How the fill runs from the fill colour to the gradient colour.
enum class TQVLGradient : std::uint8_t { grNone, grVertical, grHorizontal, grRadial };

// One line of the element's text: the part FromPos .. ToPos (byte offsets, end excluded) whose baseline
// starts at (BaseX, BaseY), millimetres from the element's top-left corner.
struct TQVLFlowTextPos {
    std::int64_t FromPos = 0;
    std::int64_t ToPos = 0;
    float BaseX = 0.0f;
    float BaseY = 0.0f;
    friend bool operator==(const TQVLFlowTextPos&, const TQVLFlowTextPos&) = default;
};

class TORXBaseFlow : public TTableItem<TORX2DItem, TORXBaseFlow> {
  public:
    TORXBaseFlow(TORXBaseLabel* owner, bool create);
    TORXBaseFlow(TORXBaseLabel* owner, TORXLayer* layer, bool create);

    TQVLFlowType FlowType() const { return fFlowType; }
    void SetFlowType(TQVLFlowType t) { SetEnumProp(FlowProp::kFlowType, static_cast<std::int64_t>(t)); }
    TQVLineType LineType() const { return fLineType; }
    void SetLineType(TQVLineType t) { SetEnumProp(FlowProp::kLineType, static_cast<std::int64_t>(t)); }
    TQVLHorzAlign HorzAlign() const { return fHorzAlign; }
    void SetHorzAlign(TQVLHorzAlign a) { SetEnumProp(FlowProp::kHorzAlign, static_cast<std::int64_t>(a)); }
    TQVLVertAlign VertAlign() const { return fVertAlign; }
    void SetVertAlign(TQVLVertAlign a) { SetEnumProp(FlowProp::kVertAlign, static_cast<std::int64_t>(a)); }
    float PaddingX() const { return fPaddingX; }  // millimetres
    void SetPaddingX(float mm) { SetField<TORXFloatCmd>(fPaddingX, mm, FlowProp::kPaddingX); }
    float PaddingY() const { return fPaddingY; }
    void SetPaddingY(float mm) { SetField<TORXFloatCmd>(fPaddingY, mm, FlowProp::kPaddingY); }
    TAlphaColor ShadowColor() const { return fShadowColor; }  // transparent: no shadow
    void SetShadowColor(TAlphaColor c) { SetField<TORXColorCmd>(fShadowColor, c, FlowProp::kShadowColor); }
    float ShadowDX() const { return fShadowDX; }
    void SetShadowDX(float mm) { SetField<TORXFloatCmd>(fShadowDX, mm, FlowProp::kShadowDX); }
    float ShadowDY() const { return fShadowDY; }
    void SetShadowDY(float mm) { SetField<TORXFloatCmd>(fShadowDY, mm, FlowProp::kShadowDY); }
    TQVLGradient Gradient() const { return fGradient; }
    void SetGradient(TQVLGradient g) { SetEnumProp(FlowProp::kGradient, static_cast<std::int64_t>(g)); }
    TAlphaColor GradColor() const { return fGradColor; }
    void SetGradColor(TAlphaColor c) { SetField<TORXColorCmd>(fGradColor, c, FlowProp::kGradColor); }
    const TQVLFont& Font() const { return fFont; }
    void SetFontName(const std::string& n) { SetField<TORXTxtCmd>(fFont.Name, n, FlowProp::kFontName); }
    void SetBold(bool on) { SetField<TORXBoolCmd>(fFont.Bold, on, FlowProp::kBold); }
    void SetItalic(bool on) { SetField<TORXBoolCmd>(fFont.Italic, on, FlowProp::kItalic); }
    void SetUnderline(bool on) { SetField<TORXBoolCmd>(fFont.Underline, on, FlowProp::kUnderline); }
    void SetStrikeout(bool on) { SetField<TORXBoolCmd>(fFont.Strikeout, on, FlowProp::kStrikeout); }
    void SetFontHeight(float mm) { SetField<TORXFloatCmd>(fFont.FontHeight, mm, FlowProp::kFontHeight); }
    void SetFontColor(TAlphaColor c) { SetField<TORXColorCmd>(fFont.FontColor, c, FlowProp::kFontColor); }
    float Interline() const { return fInterline; }
    void SetInterline(float mm) { SetField<TORXFloatCmd>(fInterline, mm, FlowProp::kInterline); }
    const std::string& Text() const { return fText; }
    void SetText(const std::string& t) { SetField<TORXTxtCmd>(fText, t, FlowProp::kText); }
    const std::vector<TQVLFlowTextPos>& TextPos() const { return fTextPos; }  // derived from the text

    // [SECTION] Geometry
    TQVLRect Box() const;  // the corners, normalised
    // The outline in base units: a closed polygon, curves flattened. Multi-documents give the front sheet.
    std::vector<TQVLPto64> Outline() const;
    static constexpr std::int16_t kLinkPoints = 4;
    TQVLPto64 LinkPoint(std::int16_t index) const;  // 0 top, 1 right, 2 bottom, 3 left; else the centre
    // Within the snapping distance (kLinkSnap, or the tolerance of the call's caller) of a connection point.
    bool CheckLink(std::int64_t x, std::int64_t y, TQVLink& link) const;
    static constexpr std::int64_t kLinkSnap = 2000;  // base units

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    void CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                  std::int64_t& maxY) const override;
    void UpdateBounds() override;  // also queues the element's links
    void UpdatePoints() override;  // the text lines
    void ReadJson(std::int32_t version,
                  const TJSON& obj) override;  // the text lines placed when a file has none
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;

    // The element's properties and keys after those of every 2D item, in the order of its drawing files.
    static const TPropTable<TORXBaseFlow>& PropTable();

  protected:
    void PropChanged(std::uint16_t p) override;
    void QueueLinks();

    TQVLFlowType fFlowType = TQVLFlowType::ftProcess;
    TQVLineType fLineType = TQVLineType::iiSolid;
    TQVLHorzAlign fHorzAlign = TQVLHorzAlign::haCenter;
    TQVLVertAlign fVertAlign = TQVLVertAlign::vaCenter;
    float fPaddingX = 1.0f;
    float fPaddingY = 1.0f;
    TAlphaColor fShadowColor = 0;
    float fShadowDX = 0.0f;
    float fShadowDY = 0.0f;
    TQVLGradient fGradient = TQVLGradient::grNone;
    TAlphaColor fGradColor = kOpaqueWhite;
    TQVLFont fFont;
    float fInterline = 0.0f;
    std::string fText;
    std::vector<TQVLFlowTextPos> fTextPos;
};

}  // namespace Orvex
