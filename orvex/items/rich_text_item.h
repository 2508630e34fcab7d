// TORXBaseRichText: a box of text with inline markup (orvex/items/rich_text.h). The item's font and
// alignment are the base that the markup changes; lines end only at <BR>.
//
// Positions: the plain text is the segments' text with "\n" for each line break; positions in it and in
// the markup are byte offsets into the UTF-8 texts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvex/items/text_items.h"

namespace Orvex {

class TORXBaseRichText : public TPropItem<TORX2DItem> {
public:
    TORXBaseRichText(TORXBaseLabel* owner, bool preview);
    TORXBaseRichText(TORXBaseLabel* owner, TORXLayer* layer, bool preview);

    // [SECTION] Content. Each setter is one undo step.
    void SetText(const std::string& plain);  // markup-free text: its newlines become <BR>
    void SetRichText(const std::string& markup) { SetField<TORXTxtCmd>(fRichText, markup, TextProp::kText); }
    const std::string& GetRichText() const { return fRichText; }
    void SetRichTextValue(const std::string& markup);  // a data value: no undo
    std::string GetPlainText() const;
    TRichTextParseResult Parse() const;
    TRichTextFormat BaseFormat() const;  // the item's font as a markup format (size in points)
    std::size_t PlainPosToRichPos(std::size_t pos) const;  // the markup position of that character
    std::size_t RichPosToPlainPos(std::size_t pos) const;  // a position inside a tag maps to the tag's
    // The segment holding plain position pos and the offset in it; false past the end of the text. The newline
    // of a line break belongs to the segment that carries the break.
    bool GetSegmentAtPlainPos(std::size_t pos, std::int32_t& segment, std::size_t& offset) const;

    // [SECTION] Whole-text formats: the item's font changes and the markup loses its own settings of
    // that attribute, so every segment shows the new value.
    const TQVLFont& Font() const { return fFont; }
    void SetFontHeight(float mm);
    void SetRichFontName(const std::string& name);
    void SetRichFontColor(TAlphaColor color);
    void SetRichBold(bool on);
    void SetRichItalic(bool on);
    void SetRichUnderline(bool on);
    void SetRichStrikeout(bool on);

    // [SECTION] Layout
    TQVLHorzAlign HorzAlign() const { return fHorzAlign; }
    void SetHorzAlign(TQVLHorzAlign a) { SetEnumField(fHorzAlign, a, TextProp::kHorzAlign); }
    TQVLVertAlign VertAlign() const { return fVertAlign; }
    void SetVertAlign(TQVLVertAlign a) { SetEnumField(fVertAlign, a, TextProp::kVertAlign); }
    float PaddingX() const { return fPaddingX; }
    void SetPaddingX(float mm) { SetField<TORXFloatCmd>(fPaddingX, mm, TextProp::kPaddingX); }
    float PaddingY() const { return fPaddingY; }
    void SetPaddingY(float mm) { SetField<TORXFloatCmd>(fPaddingY, mm, TextProp::kPaddingY); }
    float Interline() const { return fInterline; }
    void SetInterline(float mm) { SetField<TORXFloatCmd>(fInterline, mm, TextProp::kInterline); }

    bool Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const override;
    bool CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap, TQVLRef& ref) override;
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body, TQVLExportSVG mode, float factor,
                  bool flag) const override;
    void CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const override;
    std::int64_t GetEnumProp(std::uint16_t p) const override;
    void SetEnumProp(std::uint16_t p, std::int64_t v) override;
    std::string GetTextProp(std::uint16_t p) const override;  // kRichContent..: markup and font together
    void SetTextProp(std::uint16_t p, const std::string& v) override;

protected:
    std::string* TextField(std::uint16_t p) override;
    float* FloatField(std::uint16_t p) override;
    template <class TEdit>
    void EditWhole(std::uint16_t property, TEdit edit);  // edit(TQVLFont&) on the font and every segment: one command for both

    std::string fRichText;
    TQVLFont fFont;
    TQVLHorzAlign fHorzAlign = TQVLHorzAlign::haLeft;
    TQVLVertAlign fVertAlign = TQVLVertAlign::vaTop;
    float fPaddingX = 0.0f;
    float fPaddingY = 0.0f;
    float fInterline = 0.0f;
};

// Font heights in millimetres and markup sizes in points.
std::int32_t MMToPoints(float mm);
float PointsToMM(std::int32_t points);

}  // namespace Orvex
