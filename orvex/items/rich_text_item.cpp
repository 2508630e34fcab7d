// [SECTION] Content and positions   [SECTION] Whole-text formats   [SECTION] Picking, JSON, SVG
#include "orvex/items/rich_text_item.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "orvex/core/text.h"

#include "orvex/io/json_text.h"
#include "orvex/io/json_utils.h"
#include "orvex/items/box_helpers.h"
#include "orvex/items/enum_bounds.h"
#include "orvex/items/rich_text_layout.h"
#include "orvex/items/svg_style.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {

namespace {
using U = TJSONUtils;

TRichTextFormat FormatOf(const TQVLFont& font) {
    TRichTextFormat f;
    f.FontName = font.Name;
    f.FontSize = MMToPoints(font.FontHeight);
    f.FontColor = font.FontColor;
    f.Bold = font.Bold;
    f.Italic = font.Italic;
    f.Underline = font.Underline;
    f.Strikeout = font.Strikeout;
    return f;
}

// Walks the markup as the parser does, telling each character of the plain text with its markup offset.
template <class TVisit>
void WalkMarkup(std::string_view text, TVisit visit) {
    std::size_t pos = 0;
    while (pos < text.size()) {
        if (text[pos] == '<') {
            const std::size_t start = pos;
            std::size_t end = text.find('>', pos);
            end = end == std::string_view::npos ? text.size() : end + 1;
            std::string name(text.substr(start + 1, end - start - 1));
            if (!name.empty() && name.back() == '>') name.pop_back();
            if (Qvl::Utils::ToUpperAscii(name) == "BR") visit(start, end);
            pos = end;
            continue;
        }
        if (text[pos] != '\r' && text[pos] != '\n') visit(pos, pos + 1);
        ++pos;
    }
}
}  // namespace

std::int32_t MMToPoints(float mm) {
    return static_cast<std::int32_t>(std::lround(static_cast<double>(mm) * kPointsPerInch / kMMPerInch));
}

float PointsToMM(std::int32_t points) {
    return static_cast<float>(static_cast<double>(points) * kMMPerInch / kPointsPerInch);
}

// [SECTION] Content and positions

TORXBaseRichText::TORXBaseRichText(TORXBaseLabel* owner, bool preview)
    : TPropItem(owner, TQVLItemType::itRichText, preview) {
    fBackColor = 0;
}

TORXBaseRichText::TORXBaseRichText(TORXBaseLabel* owner, TORXLayer* layer, bool preview)
    : TORXBaseRichText(owner, preview) {
    fLayer = layer;
}

TRichTextFormat TORXBaseRichText::BaseFormat() const {
    return FormatOf(fFont);
}

TRichTextParseResult TORXBaseRichText::Parse() const {
    return TRichTextParser::Parse(fRichText, BaseFormat(), fHorzAlign);
}

void TORXBaseRichText::SetText(const std::string& plain) {
    std::string markup;
    for (char c : plain) {
        if (c == '\n')
            markup += "<BR>";
        else if (c != '\r')
            markup += c;
    }
    SetRichText(markup);
}

void TORXBaseRichText::SetRichTextValue(const std::string& markup) {
    fRichText = markup;
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

std::string TORXBaseRichText::GetPlainText() const {
    return TRichTextParser::PlainText(Parse());
}

std::size_t TORXBaseRichText::PlainPosToRichPos(std::size_t pos) const {
    std::size_t plain = 0;
    std::size_t found = fRichText.size();
    bool done = false;
    WalkMarkup(fRichText, [&](std::size_t start, std::size_t end) {
        (void)end;
        if (done) return;
        if (plain == pos) found = start, done = true;
        ++plain;
    });
    return found;
}

std::size_t TORXBaseRichText::RichPosToPlainPos(std::size_t pos) const {
    std::size_t plain = 0;
    WalkMarkup(fRichText, [&](std::size_t start, std::size_t end) {
        (void)end;
        if (start < pos) ++plain;
    });
    return plain;
}

bool TORXBaseRichText::GetSegmentAtPlainPos(std::size_t pos, std::int32_t& segment,
                                            std::size_t& offset) const {
    const TRichTextParseResult parsed = Parse();
    std::size_t start = 0;
    for (std::size_t i = 0; i < parsed.Segments.size(); ++i) {
        const auto& seg = parsed.Segments[i];
        const std::size_t length = seg.Text.size() + (seg.LineBreak ? 1 : 0);
        if (pos < start + length) {
            segment = static_cast<std::int32_t>(i);
            offset = pos - start;
            return true;
        }
        start += length;
    }
    return false;
}

// [SECTION] Whole-text formats

namespace {
bool IsContent(std::uint16_t p) {
    return p >= TextProp::kRichContent && p < TextProp::kRichContent + TextProp::kRichContentCount;
}

// The item state one whole-text command keeps: the markup and the font together.
std::string ContentState(const std::string& markup, const TQVLFont& font) {
    return TJSON{{"Text", markup}, {"Font", U::SetFont(font)}}.dump();
}
}  // namespace

template <class TEdit>
void TORXBaseRichText::EditWhole(std::uint16_t property, TEdit edit) {
    TRichTextParseResult parsed = Parse();
    TQVLFont font = fFont;
    edit(font);
    const TRichTextFormat base = FormatOf(font);
    // Every segment takes the new value, which is now the base's: the markup drops its own tags for it.
    for (auto& f : parsed.Formats) {
        f = TRichTextFormat{font.Name != fFont.Name ? base.FontName : f.FontName,
                            font.FontHeight != fFont.FontHeight ? base.FontSize : f.FontSize,
                            font.FontColor != fFont.FontColor ? base.FontColor : f.FontColor,
                            f.BackColor,
                            font.Bold != fFont.Bold ? base.Bold : f.Bold,
                            font.Italic != fFont.Italic ? base.Italic : f.Italic,
                            font.Underline != fFont.Underline ? base.Underline : f.Underline,
                            font.Strikeout != fFont.Strikeout ? base.Strikeout : f.Strikeout};
    }
    SetTextProp(property, ContentState(TRichTextParser::Compose(parsed, base, fHorzAlign), font));
}

void TORXBaseRichText::SetFontHeight(float mm) {
    EditWhole(TextProp::kRichContent + 0, [mm](TQVLFont& f) { f.FontHeight = mm; });
}
void TORXBaseRichText::SetRichFontName(const std::string& name) {
    EditWhole(TextProp::kRichContent + 1, [&name](TQVLFont& f) { f.Name = name; });
}
void TORXBaseRichText::SetRichFontColor(TAlphaColor color) {
    EditWhole(TextProp::kRichContent + 2, [color](TQVLFont& f) { f.FontColor = color; });
}
void TORXBaseRichText::SetRichBold(bool on) {
    EditWhole(TextProp::kRichContent + 3, [on](TQVLFont& f) { f.Bold = on; });
}
void TORXBaseRichText::SetRichItalic(bool on) {
    EditWhole(TextProp::kRichContent + 4, [on](TQVLFont& f) { f.Italic = on; });
}
void TORXBaseRichText::SetRichUnderline(bool on) {
    EditWhole(TextProp::kRichContent + 5, [on](TQVLFont& f) { f.Underline = on; });
}
void TORXBaseRichText::SetRichStrikeout(bool on) {
    EditWhole(TextProp::kRichContent + 6, [on](TQVLFont& f) { f.Strikeout = on; });
}

std::string TORXBaseRichText::GetTextProp(std::uint16_t p) const {
    if (IsContent(p)) return ContentState(fRichText, fFont);
    return TPropItem::GetTextProp(p);
}

void TORXBaseRichText::SetTextProp(std::uint16_t p, const std::string& v) {
    if (!IsContent(p)) return TPropItem::SetTextProp(p, v);
    if (v == ContentState(fRichText, fFont)) return;
    const TJSON state = ParseJsonOrDiscarded(v);
    TORXTxtCmd::AddCommand(this, p);
    fRichText = U::GetString(state, "Text");
    fFont = U::GetFont(U::GetObject(state, "Font"));
    fOwner->ChangeState(TOrvexState::lsUpdate, this);
}

std::string* TORXBaseRichText::TextField(std::uint16_t p) {
    return p == TextProp::kText ? &fRichText : nullptr;
}

float* TORXBaseRichText::FloatField(std::uint16_t p) {
    switch (p) {
        case TextProp::kPaddingX:
            return &fPaddingX;
        case TextProp::kPaddingY:
            return &fPaddingY;
        case TextProp::kInterline:
            return &fInterline;
        default:
            return nullptr;
    }
}

std::int64_t TORXBaseRichText::GetEnumProp(std::uint16_t p) const {
    if (p == TextProp::kHorzAlign) return static_cast<std::int64_t>(fHorzAlign);
    if (p == TextProp::kVertAlign) return static_cast<std::int64_t>(fVertAlign);
    return TPropItem::GetEnumProp(p);
}

void TORXBaseRichText::SetEnumProp(std::uint16_t p, std::int64_t v) {
    if (p == TextProp::kHorzAlign) return SetHorzAlign(EnumWithin(v, TQVLHorzAlign::haJustify));
    if (p == TextProp::kVertAlign) return SetVertAlign(EnumWithin(v, TQVLVertAlign::vaBottom));
    TPropItem::SetEnumProp(p, v);
}

// [SECTION] Picking, JSON, SVG

namespace {
TQVLRect BoxOf(const TORX2DItem& item) {
    TQVLRect r(item.GetPointX(1), item.GetPointY(1), item.GetPointX(2), item.GetPointY(2));
    r.NormalizeRect();
    return r;
}
}  // namespace

bool TORXBaseRichText::Pick(std::int64_t x, std::int64_t y, std::int32_t tolerance, bool flag) const {
    (void)flag;
    return PickBox(BoxOf(*this), x, y, tolerance, true);  // text covers its box
}

bool TORXBaseRichText::CheckPoint(std::int64_t x, std::int64_t y, std::int32_t tolerance, TQVLSnap snap,
                                  TQVLRef& ref) {
    return SnapBox(this, BoxOf(*this), x, y, tolerance, snap, ref);
}

TJSON TORXBaseRichText::WriteJson() const {
    TJSON obj = TPropItem::WriteJson();  // the common keys, "BackColor" and "Filled"
    obj["RichText"] = fRichText;
    obj["Font"] = U::SetFont(fFont);
    obj["HorzAlign"] = static_cast<int>(fHorzAlign);
    obj["VertAlign"] = static_cast<int>(fVertAlign);
    obj["PaddingX"] = U::Round(fPaddingX);
    obj["PaddingY"] = U::Round(fPaddingY);
    obj["Interline"] = U::Round(fInterline);
    return obj;
}

void TORXBaseRichText::ReadJson(std::int32_t version, const TJSON& obj) {
    TPropItem::ReadJson(version, obj);
    fRichText = U::GetString(obj, "RichText");
    fFont = U::GetFont(U::GetObject(obj, "Font"));
    fHorzAlign = EnumWithin(U::GetInt(obj, "HorzAlign"), TQVLHorzAlign::haJustify);
    fVertAlign = EnumWithin(U::GetInt(obj, "VertAlign"), TQVLVertAlign::vaBottom);
    fPaddingX = static_cast<float>(U::GetFloat(obj, "PaddingX"));
    fPaddingY = static_cast<float>(U::GetFloat(obj, "PaddingY"));
    fInterline = static_cast<float>(U::GetFloat(obj, "Interline"));
}

void TORXBaseRichText::WriteSVG(std::vector<std::string>& defs, std::vector<std::string>& body,
                                TQVLExportSVG mode, float factor, bool flag) const {
    (void)defs, (void)mode, (void)factor, (void)flag;
    const TQVLUnits unit = fOwner->Units();
    const TQVLRect box = BoxOf(*this);
    const ITextMetrics& metrics = QVLTextMetrics(QVLab());
    body.push_back(fmt::format("<g id=\"{}\">", SvgEscape(fID)));
    if (fFill) body.push_back(SvgBoxRect(box, 0.0f, unit, SvgFill(fBackColor, true)));

    const TRichTextPlacement placement = PlaceRichText(*this, metrics);
    const auto& formats = placement.Parsed.Formats;
    std::vector<std::string> backs;  // run backgrounds go under the text
    // Runs meet at their own spaces, which a viewer would otherwise drop at each run's edge.
    std::string text = fmt::format("<text xml:space=\"preserve\"{}{}>", SvgFontAttributes(fFont, unit),
                                   SvgRotation(fAngle, box, unit));
    for (const TRichTextPlacedLine& line : placement.Lines) {
        std::int64_t x = line.Left;
        const std::int64_t y = line.Baseline;
        bool first = true;
        for (const TRichTextRun& run : line.Line.Runs) {
            const TRichTextFormat& format = formats[static_cast<std::size_t>(run.FormatIndex)];
            const TQVLFont font = RichTextFont(format);
            if (!run.Text.empty()) {
                if (AlphaOf(format.BackColor) != 0) {
                    const TQVLRect r(x, y - metrics.Ascent(font), x + run.Width,
                                     y - metrics.Ascent(font) + line.Height);
                    backs.push_back(SvgBoxRect(
                        r, 0.0f, unit, SvgFill(format.BackColor, true) + SvgRotation(fAngle, box, unit)));
                }
                // Only a line's first run is placed: the others follow the real glyphs of the viewer.
                const std::string at =
                    first ? fmt::format(" x=\"{}\" y=\"{}\"", SvgLength(x, unit), SvgLength(y, unit))
                          : std::string{};
                text += fmt::format("<tspan{}{}>{}</tspan>", at, SvgFontAttributes(font, unit),
                                    SvgEscape(run.Text));
                first = false;
            }
            x += run.Width;
        }
    }
    body.insert(body.end(), backs.begin(), backs.end());
    body.push_back(text + "</text>");
    body.push_back("</g>");
}

void TORXBaseRichText::CheckProp(TQVLInsTypeBases& baseSet, TQVLInsTypes& set) const {
    (void)baseSet;
    set = set & TQVLInsTypes{TQVLInsType::inFont, TQVLInsType::inText, TQVLInsType::inBackColor,
                             TQVLInsType::inFill};
}

}  // namespace Orvex
