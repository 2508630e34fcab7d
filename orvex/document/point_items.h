// The two refinements of TORXBaseItem: point-list items with link points for connectors (TORXBasePoint)
// and box items spanned by two corners with a fill (TORX2DItem).
#pragma once

#include <cstdint>

#include "orvex/document/base_item.h"

namespace Orvex {

class TORXBasePoint : public TORXBaseItem {
  public:
    using TORXBaseItem::TORXBaseItem;

    std::int32_t InternalID() const { return fInID; }
    // Link position codes: 0 top, 1 right, 2 bottom, 3 left (middles of the bounds' sides); any other
    // code gives the centre.
    virtual TQVLPto64 LinkPoint(std::int16_t position) const;
    // True when (x, y) lies within the link tolerance of a link point; link then names this item and it.
    virtual bool CheckLink(std::int64_t x, std::int64_t y, TQVLink& link) const;
    static constexpr std::int64_t kLinkTolerance = 1000;  // base units: 1 mm around a link point

    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    TQVLPto64 CenterPoint() const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;
};

class TORX2DItem : public TORXBaseItem {
  public:
    using TORXBaseItem::TORXBaseItem;

    TAlphaColor BackColor() const { return fBackColor; }
    void SetBackColor(TAlphaColor color);
    bool Filled() const { return fFill; }
    void SetFilled(bool filled);
    std::int64_t Width() const;  // base units, from point 1 to point 2
    std::int64_t Height() const;
    std::int64_t BaseScaleWidth() const;  // the real-world size at the document's drawing scale
    std::int64_t BaseScaleHeight() const;
    float WidthPx(std::int32_t dpi) const;
    float HeightPx(std::int32_t dpi) const;

    void WriteKeys(TJsonWriter& writer) const override;  // the common keys, then "BackColor" and "Filled"
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void CalcValues(std::int16_t value) override;  // corners to top-left and bottom-right, then bounds
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    TQVLPto64 CenterPoint() const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;

    TAlphaColor GetColorProp(std::uint16_t property) const override;
    void SetColorProp(std::uint16_t property, TAlphaColor value) override;
    bool GetBoolProp(std::uint16_t property) const override;
    void SetBoolProp(std::uint16_t property, bool value) override;

  protected:
    TAlphaColor fBackColor = kOpaqueWhite;
    bool fFill = false;
};

}  // namespace Orvex
