// The text-bearing items: a single text, a paragraph, the text of a data table, the multi-purpose item
// (text, linear barcode, QR code or DataMatrix) with its data-bound variant, and rich text. Painting is
// the host's; these hold the data, its JSON form, picking, snapping, bounds, quarter turns and SVG.
//
// Font heights, paddings, radii, widths and interline spacing are millimetres; point coordinates are base
// units. A text's size follows its content: point 1 is its top-left corner and point 2 is derived from
// the text metrics (orvex/items/text_metrics.h). A paragraph, a multi-purpose item and a rich text keep
// the box the user gives them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/document/layer.h"
#include "orvex/document/point_items.h"
#include "orvex/items/item_props.h"
#include "orvex/items/rich_text.h"
#include "orvex/items/table_item.h"
#include "orvex/items/text_place.h"
#include "orvex/items/text_pos.h"

namespace Orvex {

enum class TQVLPolyType : std::uint8_t { poText, poBarcode, poQR, poDataMatrix };
enum class TQVLFillType : std::uint8_t {
    ftNone,
    ftField,
    ftCounter,
    ftJson,
    ftCsv,
    ftAsk,
    ftList,
    ftFieldCount,
    ftJsonCount,
    ftCsvCount,
    ftImg64
};

// Property indexes of the text kinds (undo commands carry them).
namespace TextProp {
inline constexpr std::uint16_t kText = kPropFirstKind;
inline constexpr std::uint16_t kFontName = kPropFirstKind + 1;
inline constexpr std::uint16_t kFontHeight = kPropFirstKind + 2;
inline constexpr std::uint16_t kFontColor = kPropFirstKind + 3;
inline constexpr std::uint16_t kBold = kPropFirstKind + 4;
inline constexpr std::uint16_t kItalic = kPropFirstKind + 5;
inline constexpr std::uint16_t kUnderline = kPropFirstKind + 6;
inline constexpr std::uint16_t kStrikeout = kPropFirstKind + 7;
inline constexpr std::uint16_t kRadio = kPropFirstKind + 8;
inline constexpr std::uint16_t kHorzAlign = kPropFirstKind + 9;
inline constexpr std::uint16_t kVertAlign = kPropFirstKind + 10;
inline constexpr std::uint16_t kPaddingX = kPropFirstKind + 11;
inline constexpr std::uint16_t kPaddingY = kPropFirstKind + 12;
inline constexpr std::uint16_t kScaleX = kPropFirstKind + 13;
inline constexpr std::uint16_t kDispWidth = kPropFirstKind + 14;
inline constexpr std::uint16_t kName = kPropFirstKind + 15;
inline constexpr std::uint16_t kFillType = kPropFirstKind + 16;
inline constexpr std::uint16_t kField = kPropFirstKind + 17;
inline constexpr std::uint16_t kData = kPropFirstKind + 18;
inline constexpr std::uint16_t kFormat = kPropFirstKind + 19;
inline constexpr std::uint16_t kInterline = kPropFirstKind + 20;
inline constexpr std::uint16_t kIncreaseHeight = kPropFirstKind + 21;
inline constexpr std::uint16_t kDecreaseHeight = kPropFirstKind + 22;
inline constexpr std::uint16_t kBaseX = kPropFirstKind + 23;
inline constexpr std::uint16_t kBaseY = kPropFirstKind + 24;
inline constexpr std::uint16_t kTextPos = kPropFirstKind + 25;
inline constexpr std::uint16_t kFromPos = kPropFirstKind + 26;
inline constexpr std::uint16_t kToPos = kPropFirstKind + 27;
inline constexpr std::uint16_t kFillBackground = kPropFirstKind + 28;
// The rich text's whole-text setters, each keeping the markup and the font together (seven in a row).
inline constexpr std::uint16_t kRichContent = kPropFirstKind + 29;
inline constexpr std::uint16_t kRichContentCount = 7;
}  // namespace TextProp

// What texts, paragraphs and data texts share: the text, its font, alignment, padding, a rounded
// background and the data binding ("FillType", "Field", "Data", "Format").
class TORXTextItem : public TPropItem<TORX2DItem> {
  public:
    TORXTextItem(TORXBaseLabel* owner, TQVLItemType type, bool preview);

    const std::string& Text() const { return fText; }
    void SetText(const std::string& text) { SetField<TORXTxtCmd>(fText, text, TextProp::kText); }
    const TQVLFont& Font() const { return fFont; }
    void SetFontName(const std::string& name) { SetField<TORXTxtCmd>(fFont.Name, name, TextProp::kFontName); }
    void SetFontHeight(float mm) { SetField<TORXFloatCmd>(fFont.FontHeight, mm, TextProp::kFontHeight); }
    void SetFontColor(TAlphaColor c) { SetField<TORXColorCmd>(fFont.FontColor, c, TextProp::kFontColor); }
    void SetBold(bool on) { SetField<TORXBoolCmd>(fFont.Bold, on, TextProp::kBold); }
    void SetItalic(bool on) { SetField<TORXBoolCmd>(fFont.Italic, on, TextProp::kItalic); }
    void SetUnderline(bool on) { SetField<TORXBoolCmd>(fFont.Underline, on, TextProp::kUnderline); }
    void SetStrikeout(bool on) { SetField<TORXBoolCmd>(fFont.Strikeout, on, TextProp::kStrikeout); }
    float Radio() const { return fRadio; }
    void SetRadio(float mm) { SetField<TORXFloatCmd>(fRadio, mm, TextProp::kRadio); }
    TQVLHorzAlign HorzAlign() const { return fHorzAlign; }
    void SetHorzAlign(TQVLHorzAlign a) { SetEnumField(fHorzAlign, a, TextProp::kHorzAlign); }
    TQVLVertAlign VertAlign() const { return fVertAlign; }
    void SetVertAlign(TQVLVertAlign a) { SetEnumField(fVertAlign, a, TextProp::kVertAlign); }
    float PaddingX() const { return fPaddingX; }
    void SetPaddingX(float mm) { SetField<TORXFloatCmd>(fPaddingX, mm, TextProp::kPaddingX); }
    float PaddingY() const { return fPaddingY; }
    void SetPaddingY(float mm) { SetField<TORXFloatCmd>(fPaddingY, mm, TextProp::kPaddingY); }
    const std::string& DataName() const { return fName; }  // "Name": the name the data binding asks by
    void SetDataName(const std::string& name) { SetField<TORXTxtCmd>(fName, name, TextProp::kName); }
    TQVLFillType FillType() const { return fFillType; }
    void SetFillType(TQVLFillType t) { SetEnumField(fFillType, t, TextProp::kFillType); }
    const std::string& FieldName() const { return fField; }
    void SetFieldName(const std::string& f) { SetField<TORXTxtCmd>(fField, f, TextProp::kField); }
    const std::string& Data() const { return fData; }
    void SetData(const std::string& d) { SetField<TORXTxtCmd>(fData, d, TextProp::kData); }
    const std::string& Format() const { return fFormat; }
    void SetFormat(const std::string& f) { SetField<TORXTxtCmd>(fFormat, f, TextProp::kFormat); }
    bool GetIsData() const override { return fFillType != TQVLFillType::ftNone; }

    // Where the lines stand, in the text's own frame (see orvex/items/text_place.h).
    virtual std::vector<TTextLinePos> TextLines() const;
    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                    TQVLRef& ref) override;
    void CheckFit(std::int64_t& minX, std::int64_t& maxX, std::int64_t& minY,
                  std::int64_t& maxY) const override;
    void UpdateBounds() override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    std::int64_t GetEnumProp(std::uint16_t p) const override;
    void SetEnumProp(std::uint16_t p, std::int64_t v) override;
    // The common keys only: text kinds place "BackColor" and "Filled" among their own keys.
    void WriteKeys(TJsonWriter& writer) const override;

  protected:
    TAlphaColor* ColorField(std::uint16_t p) override;
    bool* BoolField(std::uint16_t p) override;
    std::string* TextField(std::uint16_t p) override;
    float* FloatField(std::uint16_t p) override;
    void PropChanged(std::uint16_t p) override;
    TQVLRect Box() const;  // the item's rectangle, normalised
    virtual bool HasBackground() const { return fFill; }
    void WriteSVGText(std::vector<std::string>& body, const std::vector<TTextLinePos>& lines) const;
    void WriteFontKeys(TJSON& obj) const;  // "Font", "FontHeight", "FontColor", "Bold" .. "Strikeout"
    void ReadFontKeys(const TJSON& obj);
    void WriteBindingKeys(TJSON& obj) const;  // "Name", "FillType", "Field", "Data", "Format"
    void ReadBindingKeys(const TJSON& obj);

    std::string fText;
    TQVLFont fFont;
    float fRadio = 0.0f;
    TQVLHorzAlign fHorzAlign = TQVLHorzAlign::haLeft;
    TQVLVertAlign fVertAlign = TQVLVertAlign::vaTop;
    float fPaddingX = 0.0f;
    float fPaddingY = 0.0f;
    std::string fName;
    TQVLFillType fFillType = TQVLFillType::ftNone;
    std::string fField;
    std::string fData;
    std::string fFormat;
};

// A text whose box follows its content: point 1 is the top-left corner, point 2 follows from the text,
// font, paddings, horizontal scale and display width, turned with the angle.
class TORXBaseText : public TTableItem<TORXTextItem, TORXBaseText> {
  public:
    TORXBaseText(TORXBaseLabel* owner, bool preview);
    TORXBaseText(TORXBaseLabel* owner, TORXLayer* layer, bool preview);

    float ScaleX() const { return fScaleX; }  // 1 is the font's own width
    void SetScaleX(float scale) { SetField<TORXFloatCmd>(fScaleX, scale, TextProp::kScaleX); }
    float DispWidth() const { return fDispWidth; }  // 0: as wide as the text
    void SetDispWidth(float mm) { SetField<TORXFloatCmd>(fDispWidth, mm, TextProp::kDispWidth); }
    TQVLSPoint Position(const TORXBaseDraw& draw) const;  // point 1 on the device

    std::vector<TTextLinePos> TextLines() const override;
    void UpdatePoints() override;  // point 2 and the bounds from the content
    void UpdateBounds() override;
    void CalcValues(std::int16_t value) override;
    void RotateLeft() override;
    void RotateRight() override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;  // then the size from the content
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode,
                  float factor, bool flag) const override;
    void SetEnumProp(std::uint16_t p, std::int64_t v) override;  // an undone turn resizes at once
    // The text's properties and keys after the common ones, in the order of its drawing files.
    static const TPropTable<TORXBaseText>& PropTable();

  protected:
    void PropChanged(std::uint16_t p) override;
    void Turn(int quarters);
    double Scale() const { return fScaleX > 0.0f ? fScaleX : 1.0; }  // a file without a scale reads 0

    float fScaleX = 1.0f;
    float fDispWidth = 0.0f;
};

// A paragraph: the text broken into lines to the box's width. IncreaseHeight lets the box grow and
// DecreaseHeight lets it shrink to the lines; Interline is extra space between lines; FromPos and ToPos
// show a part of the text (byte positions, ToPos 0 to the end), so that one text can flow over several
// paragraphs; BaseX and BaseY move the lines within the box; TextPos is kept for the host.
class TORXBasePara : public TORXTextItem {
  public:
    TORXBasePara(TORXBaseLabel* owner, bool preview);
    TORXBasePara(TORXBaseLabel* owner, TORXLayer* layer, bool preview);

    float Interline() const { return fInterline; }
    void SetInterline(float mm) { SetField<TORXFloatCmd>(fInterline, mm, TextProp::kInterline); }
    bool IncreaseHeight() const { return fIncreaseHeight; }
    void SetIncreaseHeight(bool on) { SetField<TORXBoolCmd>(fIncreaseHeight, on, TextProp::kIncreaseHeight); }
    bool DecreaseHeight() const { return fDecreaseHeight; }
    void SetDecreaseHeight(bool on) { SetField<TORXBoolCmd>(fDecreaseHeight, on, TextProp::kDecreaseHeight); }
    float BaseX() const { return fBaseX; }
    void SetBaseX(float mm) { SetField<TORXFloatCmd>(fBaseX, mm, TextProp::kBaseX); }
    float BaseY() const { return fBaseY; }
    void SetBaseY(float mm) { SetField<TORXFloatCmd>(fBaseY, mm, TextProp::kBaseY); }
    TQVLTextPos TextPos() const { return fTextPos; }
    void SetTextPos(TQVLTextPos pos) { SetEnumField(fTextPos, pos, TextProp::kTextPos); }
    std::int64_t FromPos() const { return fFromPos; }
    void SetFromPos(std::int64_t pos) { SetField<TORXBaseValueCmd>(fFromPos, pos, TextProp::kFromPos); }
    std::int64_t ToPos() const { return fToPos; }
    void SetToPos(std::int64_t pos) { SetField<TORXBaseValueCmd>(fToPos, pos, TextProp::kToPos); }
    std::string ShownText() const;  // the part FromPos .. ToPos
    TQVLSPoint Position(const TORXBaseDraw& draw) const;
    // The height the wrapped lines need, paddings included (base units): more than the box's height means
    // the last lines are cut off.
    std::int64_t LinesHeight() const;

    std::vector<TTextLinePos> TextLines() const override;
    void CalcValues(std::int16_t value) override;  // the height follows the lines when allowed
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    std::int64_t GetEnumProp(std::uint16_t p) const override;
    void SetEnumProp(std::uint16_t p, std::int64_t v) override;

  protected:
    bool* BoolField(std::uint16_t p) override;
    float* FloatField(std::uint16_t p) override;
    std::int64_t* IntField(std::uint16_t p) override;
    void PropChanged(std::uint16_t p) override;
    bool HasBackground() const override { return AlphaOf(fBackColor) != 0; }

    float fInterline = 0.0f;
    bool fIncreaseHeight = false;
    bool fDecreaseHeight = false;
    float fBaseX = 0.0f;
    float fBaseY = 0.0f;
    TQVLTextPos fTextPos = TQVLTextPos::tpAbove;
    std::int64_t fFromPos = 0;
    std::int64_t fToPos = 0;
};

// The text of a data table's cell: a font, an optional background and a name. Tables themselves are
// not in the library yet, so the item carries the table kind; the headless factory still keeps table
// items as they are read.
class TORXBaseData : public TORXTextItem {
  public:
    TORXBaseData(TORXBaseLabel* owner, bool preview) : TORXTextItem(owner, TQVLItemType::itTable, preview) {}

    bool FillBackground() const { return fFillBackground; }
    void SetFillBackground(bool on) { SetField<TORXBoolCmd>(fFillBackground, on, TextProp::kFillBackground); }
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;

  protected:
    bool* BoolField(std::uint16_t p) override;
    bool HasBackground() const override { return fFillBackground; }

    bool fFillBackground = false;
};

}  // namespace Orvex
