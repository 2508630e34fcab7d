// The multi-purpose item: one box that shows its data as text, a linear barcode, a QR code or a
// DataMatrix, and its data-bound variant. The barcode settings are kept and stored here; encoding the
// symbols belongs to the barcode encoders, so until they are wired the SVG shows the box and the data.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/items/text_items.h"

namespace Orvex {

namespace PolyProp {
inline constexpr std::uint16_t kPolyType = kPropFirstKind + 40;
inline constexpr std::uint16_t kItems = kPropFirstKind + 41;
inline constexpr std::uint16_t kData = kPropFirstKind + 42;
inline constexpr std::uint16_t kRadio = kPropFirstKind + 43;
inline constexpr std::uint16_t kHorzAlign = kPropFirstKind + 44;
inline constexpr std::uint16_t kVertAlign = kPropFirstKind + 45;
inline constexpr std::uint16_t kPaddingX = kPropFirstKind + 46;
inline constexpr std::uint16_t kPaddingY = kPropFirstKind + 47;
inline constexpr std::uint16_t kDistance = kPropFirstKind + 48;
inline constexpr std::uint16_t kFactor = kPropFirstKind + 49;
inline constexpr std::uint16_t kBarcodeType = kPropFirstKind + 50;
inline constexpr std::uint16_t kBarHeight = kPropFirstKind + 51;
inline constexpr std::uint16_t kBarWidth = kPropFirstKind + 52;
inline constexpr std::uint16_t kCheckSum = kPropFirstKind + 53;
inline constexpr std::uint16_t kCheckType = kPropFirstKind + 54;
inline constexpr std::uint16_t kAutoType128 = kPropFirstKind + 55;
inline constexpr std::uint16_t kEncoding = kPropFirstKind + 56;
inline constexpr std::uint16_t kShowNumber = kPropFirstKind + 57;
inline constexpr std::uint16_t kDMShape = kPropFirstKind + 58;
inline constexpr std::uint16_t kDMSize = kPropFirstKind + 59;
inline constexpr std::uint16_t kFillType = kPropFirstKind + 60;
inline constexpr std::uint16_t kField = kPropFirstKind + 61;
inline constexpr std::uint16_t kFormat = kPropFirstKind + 62;
inline constexpr std::uint16_t kAddParenthesis = kPropFirstKind + 63;
inline constexpr std::uint16_t kIA = kPropFirstKind + 64;
}  // namespace PolyProp

// "Filled" and "FillColor" are the box's fill (the 2D item's Filled and BackColor); the item colour is
// the ink of the text or the bars. Items holds the lines of a text; Data is what a code encodes.
class TORXBasePoly : public TPropItem<TORX2DItem> {
public:
    TORXBasePoly(TORXBaseLabel* owner, bool preview) : TPropItem(owner, TQVLItemType::itPolyText, preview) {}

    TQVLPolyType PolyType() const { return fPolyType; }
    void SetPolyType(TQVLPolyType t) { SetEnumField(fPolyType, t, PolyProp::kPolyType); }
    const std::vector<std::string>& Items() const { return fItems; }
    void SetItems(const std::vector<std::string>& items);  // one undo step
    const std::string& Data() const { return fData; }
    void SetData(const std::string& d) { SetField<TORXTxtCmd>(fData, d, PolyProp::kData); }
    float Radio() const { return fRadio; }
    void SetRadio(float mm) { SetField<TORXFloatCmd>(fRadio, mm, PolyProp::kRadio); }
    TQVLHorzAlign HorzAlign() const { return fHorzAlign; }
    void SetHorzAlign(TQVLHorzAlign a) { SetEnumField(fHorzAlign, a, PolyProp::kHorzAlign); }
    TQVLVertAlign VertAlign() const { return fVertAlign; }
    void SetVertAlign(TQVLVertAlign a) { SetEnumField(fVertAlign, a, PolyProp::kVertAlign); }
    float PaddingX() const { return fPaddingX; }
    void SetPaddingX(float mm) { SetField<TORXFloatCmd>(fPaddingX, mm, PolyProp::kPaddingX); }
    float PaddingY() const { return fPaddingY; }
    void SetPaddingY(float mm) { SetField<TORXFloatCmd>(fPaddingY, mm, PolyProp::kPaddingY); }
    float Distance() const { return fDistance; }  // mm between the bars and the human-readable number
    void SetDistance(float mm) { SetField<TORXFloatCmd>(fDistance, mm, PolyProp::kDistance); }
    float Factor() const { return fFactor; }  // module size factor of the codes
    void SetFactor(float f) { SetField<TORXFloatCmd>(fFactor, f, PolyProp::kFactor); }
    std::int64_t BarcodeType() const { return fBarcodeType; }
    void SetBarcodeType(std::int64_t t) { SetField<TORXBaseValueCmd>(fBarcodeType, t, PolyProp::kBarcodeType); }
    float BarHeight() const { return fBarHeight; }
    void SetBarHeight(float mm) { SetField<TORXFloatCmd>(fBarHeight, mm, PolyProp::kBarHeight); }
    float BarWidth() const { return fBarWidth; }
    void SetBarWidth(float mm) { SetField<TORXFloatCmd>(fBarWidth, mm, PolyProp::kBarWidth); }
    bool CheckSum() const { return fCheckSum; }
    void SetCheckSum(bool on) { SetField<TORXBoolCmd>(fCheckSum, on, PolyProp::kCheckSum); }
    std::int64_t CheckType() const { return fCheckType; }
    void SetCheckType(std::int64_t t) { SetField<TORXBaseValueCmd>(fCheckType, t, PolyProp::kCheckType); }
    bool AutoType128() const { return fAutoType128; }
    void SetAutoType128(bool on) { SetField<TORXBoolCmd>(fAutoType128, on, PolyProp::kAutoType128); }
    std::int64_t Encoding() const { return fEncoding; }
    void SetEncoding(std::int64_t e) { SetField<TORXBaseValueCmd>(fEncoding, e, PolyProp::kEncoding); }
    bool ShowNumber() const { return fShowNumber; }
    void SetShowNumber(bool on) { SetField<TORXBoolCmd>(fShowNumber, on, PolyProp::kShowNumber); }
    std::int64_t DMShape() const { return fDMShape; }
    void SetDMShape(std::int64_t s) { SetField<TORXBaseValueCmd>(fDMShape, s, PolyProp::kDMShape); }
    std::int64_t DMSize() const { return fDMSize; }
    void SetDMSize(std::int64_t s) { SetField<TORXBaseValueCmd>(fDMSize, s, PolyProp::kDMSize); }
    std::string ShownText() const;  // the lines of Items, or Data when there are none

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap, TQVLRef& ref) override;
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode, float factor,
                  bool flag) const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;
    std::int64_t GetEnumProp(std::uint16_t p) const override;
    void SetEnumProp(std::uint16_t p, std::int64_t v) override;
    std::string GetTextProp(std::uint16_t p) const override;  // Items as JSON text
    void SetTextProp(std::uint16_t p, const std::string& v) override;

protected:
    bool* BoolField(std::uint16_t p) override;
    std::string* TextField(std::uint16_t p) override;
    float* FloatField(std::uint16_t p) override;
    std::int64_t* IntField(std::uint16_t p) override;

    TQVLPolyType fPolyType = TQVLPolyType::poText;
    std::vector<std::string> fItems;
    std::string fData;
    float fRadio = 0.0f;
    TQVLHorzAlign fHorzAlign = TQVLHorzAlign::haCenter;
    TQVLVertAlign fVertAlign = TQVLVertAlign::vaCenter;
    float fPaddingX = 0.0f;
    float fPaddingY = 0.0f;
    float fDistance = 0.0f;
    float fFactor = 1.0f;
    std::int64_t fBarcodeType = 0;
    float fBarHeight = 0.0f;
    float fBarWidth = 0.0f;
    bool fCheckSum = false;
    std::int64_t fCheckType = 0;
    bool fAutoType128 = true;
    std::int64_t fEncoding = 0;
    bool fShowNumber = true;
    std::int64_t fDMShape = 0;
    std::int64_t fDMSize = 0;
};

// The multi-purpose item filled from data: its keys follow the item's own, "Data" being shared.
// AddParenthesis writes GS1 application identifiers in parentheses; IA is the identifier prefix.
class TORXDataPoly : public TORXBasePoly {
public:
    using TORXBasePoly::TORXBasePoly;

    TQVLFillType FillType() const { return fFillType; }
    void SetFillType(TQVLFillType t) { SetEnumField(fFillType, t, PolyProp::kFillType); }
    const std::string& FieldName() const { return fField; }
    void SetFieldName(const std::string& f) { SetField<TORXTxtCmd>(fField, f, PolyProp::kField); }
    const std::string& Format() const { return fFormat; }
    void SetFormat(const std::string& f) { SetField<TORXTxtCmd>(fFormat, f, PolyProp::kFormat); }
    bool AddParenthesis() const { return fAddParenthesis; }
    void SetAddParenthesis(bool on) { SetField<TORXBoolCmd>(fAddParenthesis, on, PolyProp::kAddParenthesis); }
    const std::string& IA() const { return fIA; }
    void SetIA(const std::string& ia) { SetField<TORXTxtCmd>(fIA, ia, PolyProp::kIA); }
    bool GetIsData() const override { return fFillType != TQVLFillType::ftNone; }

    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    std::int64_t GetEnumProp(std::uint16_t p) const override;
    void SetEnumProp(std::uint16_t p, std::int64_t v) override;

protected:
    bool* BoolField(std::uint16_t p) override;
    std::string* TextField(std::uint16_t p) override;

    TQVLFillType fFillType = TQVLFillType::ftNone;
    std::string fField;
    std::string fFormat;
    bool fAddParenthesis = false;
    std::string fIA;
};

}  // namespace Orvex
