#include <functional>

#include <gtest/gtest.h>

#include "orvex/document/headless.h"
#include "orvex/io/json.h"
#include "orvex/items/poly_items.h"
#include "orvex/items/rich_text_item.h"
#include "orvex/items/text_items.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {
namespace {

template <class T>
T* Make(TORXBaseLabel& doc) {
    return doc.AddNew<THeadlessItem<T>>(false);
}

std::vector<std::string> KeysAfter(const TJSON& obj, const std::string& last) {
    std::vector<std::string> keys;
    bool after = false;
    for (const auto& [key, value] : obj.items()) {
        if (after) keys.push_back(key);
        if (key == last) after = true;
    }
    return keys;
}

// Writes the document, reads it into a new one and gives both texts.
std::pair<std::string, std::string> RoundTrip(const TORXBaseLabel& doc) {
    TORXHeadlessLabel copy;
    copy.ReadJson(doc.GetJson());
    return {doc.GetJsonString(), copy.GetJsonString()};
}

TEST(TextItemsTest, KindKeysFollowTheCommonKeysInOrder) {
    TORXHeadlessLabel doc;
    const std::vector<std::string> text{
        "Text",      "Font",   "FontHeight", "FontColor", "Bold",      "Italic",   "Underline", "Strikeout",
        "BackColor", "Filled", "Radio",      "HorzAlign", "VertAlign", "PaddingX", "PaddingY",  "ScaleX",
        "DispWidth", "Name",   "FillType",   "Field",     "Data",      "Format"};
    EXPECT_EQ(KeysAfter(Make<TORXBaseText>(doc)->WriteJson(), "Points"), text);
    const std::vector<std::string> para{
        "Text",      "Font",           "FontHeight",     "FontColor", "Bold",      "Italic",   "Underline",
        "Strikeout", "BackColor",      "Radio",          "HorzAlign", "VertAlign", "PaddingX", "PaddingY",
        "Interline", "IncreaseHeight", "DecreaseHeight", "BaseX",     "BaseY",     "TextPos",  "FromPos",
        "ToPos",     "Name",           "FillType",       "Field",     "Data",      "Format"};
    EXPECT_EQ(KeysAfter(Make<TORXBasePara>(doc)->WriteJson(), "Points"), para);
    const std::vector<std::string> data{"Text",      "Font",           "FontHeight", "FontColor",
                                        "Bold",      "Italic",         "Underline",  "Strikeout",
                                        "BackColor", "FillBackground", "Name"};
    EXPECT_EQ(KeysAfter(Make<TORXBaseData>(doc)->WriteJson(), "Points"), data);
    const std::vector<std::string> poly{"PolyType", "Items",     "Data",        "Filled",    "FillColor",
                                        "Radio",    "HorzAlign", "VertAlign",   "PaddingX",  "PaddingY",
                                        "Distance", "Factor",    "BarcodeType", "BarHeight", "BarWidth",
                                        "CheckSum", "CheckType", "AutoType128", "Encoding",  "ShowNumber",
                                        "DMShape",  "DMSize"};
    EXPECT_EQ(KeysAfter(Make<TORXBasePoly>(doc)->WriteJson(), "Points"), poly);
    EXPECT_EQ(KeysAfter(Make<TORXDataPoly>(doc)->WriteJson(), "DMSize"),
              (std::vector<std::string>{"FillType", "Field", "Format", "AddParenthesis", "IA"}));
}

TEST(TextItemsTest, EveryKindReadsBackWhatItWrote) {
    TORXHeadlessLabel doc;
    auto* text = Make<TORXBaseText>(doc);
    text->SetBase(1, 5000, 6000);
    text->SetText("Ship <to> & \"you\"");
    text->SetFontName("Courier New");
    text->SetFontHeight(4.25f);
    text->SetBold(true);
    text->SetFilled(true);
    text->SetBackColor(0x80FFFF00u);
    text->SetScaleX(1.5f);
    text->SetPaddingX(0.5f);
    text->SetFillType(TQVLFillType::ftField);
    text->SetFieldName("customer");
    auto* para = Make<TORXBasePara>(doc);
    para->SetBase(2, 40000, 30000);
    para->SetText("A paragraph of several words that wraps");
    para->SetInterline(0.75f);
    para->SetFromPos(2);
    para->SetTextPos(TQVLTextPos::tpMiddle);
    auto* poly = Make<TORXDataPoly>(doc);
    poly->SetBase(2, 30000, 20000);
    poly->SetPolyType(TQVLPolyType::poQR);
    poly->SetItems({"first", "second"});
    poly->SetData("https://example.org/?a=1&b=2");
    poly->SetDMSize(24);
    poly->SetBarHeight(12.5f);
    poly->SetIA("01");
    auto* rich = Make<TORXBaseRichText>(doc);
    rich->SetBase(2, 50000, 20000);
    rich->SetRichText("<B>Fragile</B><BR><FC:FF0000>this side up");
    rich->SetPaddingY(1.25f);
    auto [written, read] = RoundTrip(doc);
    EXPECT_EQ(read, written);

    TORXHeadlessLabel other;  // the data text has no kind of its own yet: its keys round-trip directly
    auto* data = Make<TORXBaseData>(doc);
    data->SetText("cell");
    data->SetFillBackground(true);
    data->SetDataName("qty");
    auto* back = Make<TORXBaseData>(other);
    back->ReadJson(kDrawingVersion, data->WriteJson());
    EXPECT_EQ(KeysAfter(back->WriteJson(), "InID"), KeysAfter(data->WriteJson(), "InID"));
    EXPECT_EQ(back->WriteJson().dump(), data->WriteJson().dump());
}

TEST(TextItemsTest, ParagraphAcceptsTheOldLineSpacingKey) {
    TORXHeadlessLabel doc;
    auto* para = Make<TORXBasePara>(doc);
    TJSON obj = para->WriteJson();
    obj.erase("Interline");
    obj["LineSize"] = 1.5;
    para->ReadJson(kDrawingVersion, obj);
    EXPECT_FLOAT_EQ(para->Interline(), 1.5f);
    obj["Interline"] = 0.5;  // the current key wins
    para->ReadJson(kDrawingVersion, obj);
    EXPECT_FLOAT_EQ(para->Interline(), 0.5f);
}

TEST(TextItemsTest, EachSetterIsOneUndoStepAndOnlyOnChange) {
    TORXHeadlessLabel doc;
    auto* text = Make<TORXBaseText>(doc);
    auto* para = Make<TORXBasePara>(doc);
    auto* poly = Make<TORXDataPoly>(doc);
    struct TCase {
        const char* Name;
        TORXBaseItem* Item;
        std::function<void()> Set;
    };
    const TCase cases[] = {
        {"text", text, [&] { text->SetText("x"); }},
        {"font name", text, [&] { text->SetFontName("Times"); }},
        {"font height", text, [&] { text->SetFontHeight(7.0f); }},
        {"font colour", text, [&] { text->SetFontColor(0xFF0000FFu); }},
        {"italic", text, [&] { text->SetItalic(true); }},
        {"strikeout", text, [&] { text->SetStrikeout(true); }},
        {"horizontal alignment", text, [&] { text->SetHorzAlign(TQVLHorzAlign::haRight); }},
        {"display width", text, [&] { text->SetDispWidth(30.0f); }},
        {"fill type", text, [&] { text->SetFillType(TQVLFillType::ftCsv); }},
        {"increase height", para, [&] { para->SetIncreaseHeight(true); }},
        {"to position", para, [&] { para->SetToPos(9); }},
        {"text position", para, [&] { para->SetTextPos(TQVLTextPos::tpVert); }},
        {"base y", para, [&] { para->SetBaseY(2.0f); }},
        {"poly type", poly, [&] { poly->SetPolyType(TQVLPolyType::poBarcode); }},
        {"items", poly,
         [&] {
             poly->SetItems({"a", "b"});
         }},
        {"barcode type", poly, [&] { poly->SetBarcodeType(7); }},
        {"show number", poly, [&] { poly->SetShowNumber(false); }},
        {"add parenthesis", poly, [&] { poly->SetAddParenthesis(true); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        const std::string before = c.Item->WriteJson().dump();
        const std::size_t count = doc.UndoCount();
        c.Set();
        const std::string after = c.Item->WriteJson().dump();
        EXPECT_NE(after, before);
        EXPECT_EQ(doc.UndoCount(), count + 1);
        c.Set();  // the same value again records nothing
        EXPECT_EQ(doc.UndoCount(), count + 1);
        doc.Undo();
        EXPECT_EQ(c.Item->WriteJson().dump(), before);
        doc.Redo();
        EXPECT_EQ(c.Item->WriteJson().dump(), after);
    }
}

TEST(TextItemsTest, TextBoxFollowsContentAndQuarterTurns) {
    TORXHeadlessLabel doc;
    auto* text = Make<TORXBaseText>(doc);
    text->SetBase(1, 10000, 20000);
    text->SetFontHeight(4.0f);
    text->SetText("ABCD");  // 4 x 0.5 x 4 mm wide, 1.2 x 4 mm high
    EXPECT_EQ(text->BoundsRect(), TQVLRect(10000, 20000, 18000, 24800));
    text->SetPaddingX(1.0f);
    EXPECT_EQ(text->BoundsRect().GetWidth(), 10000);
    text->SetDispWidth(25.0f);
    EXPECT_EQ(text->BoundsRect().GetWidth(), 25000);

    text->RotateRight();  // about the centre: width and height swap
    EXPECT_EQ(text->Angle(), TQVLAngle::ag90);
    EXPECT_EQ(text->BoundsRect(), TQVLRect(20100, 9900, 24900, 34900));
    doc.Undo();
    EXPECT_EQ(text->Angle(), TQVLAngle::ag0);
    EXPECT_EQ(text->BoundsRect(), TQVLRect(10000, 20000, 35000, 24800));
    doc.Redo();
    EXPECT_EQ(text->BoundsRect(), TQVLRect(20100, 9900, 24900, 34900));
}

TEST(TextItemsTest, ParagraphBreaksLinesAndGrowsWhenAllowed) {
    TORXHeadlessLabel doc;
    auto* para = Make<TORXBasePara>(doc);
    para->SetBase(2, 20000, 5000);
    para->SetFontHeight(2.0f);  // one character is 1 mm: twenty to a line
    para->SetText("alpha beta gamma delta epsilon zeta eta");
    const auto lines = para->TextLines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].Text, "alpha beta gamma");
    for (const auto& line : lines) EXPECT_LE(line.Width, 20000);
    EXPECT_EQ(lines[1].Y - lines[0].Y, 2400);
    para->SetIncreaseHeight(true);
    doc.EndUpdate();  // runs the pending height calculation
    EXPECT_EQ(para->BoundsRect().GetHeight(), 3 * 2400);
    para->SetFromPos(17);  // from "delta" on
    EXPECT_EQ(para->ShownText(), "delta epsilon zeta eta");
}

TEST(TextItemsTest, JustifiedLinesSpreadExceptAtParagraphEnds) {
    TORXHeadlessLabel doc;
    auto* para = Make<TORXBasePara>(doc);
    para->SetBase(2, 20000, 20000);
    para->SetFontHeight(2.0f);
    para->SetText("alpha beta gamma delta\nshort\nepsilon zeta eta theta iota");
    std::vector<std::int64_t> spread;
    for (const auto& line : para->TextLines()) spread.push_back(line.Spread);
    EXPECT_EQ(spread, (std::vector<std::int64_t>{20000, 0, 0, 20000, 0}));
    para->SetHorzAlign(TQVLHorzAlign::haLeft);
    for (const auto& line : para->TextLines()) EXPECT_EQ(line.Spread, 0);
}

TEST(TextItemsTest, PickCoversTheBoxAndNotBeyond) {
    TORXHeadlessLabel doc;
    auto* poly = Make<TORXBasePoly>(doc);
    poly->SetBase(1, 10000, 10000);
    poly->SetBase(2, 30000, 20000);
    poly->SetData("123");
    struct TCase {
        std::int64_t X, Y;
        bool Hit;
    };
    const TCase cases[] = {{20000, 15000, true},
                           {9600, 15000, true},
                           {9400, 15000, false},
                           {20000, 20400, true},
                           {31000, 15000, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.X * 100000 + c.Y);
        EXPECT_EQ(poly->Pick(c.X, c.Y, 500, false), c.Hit);
    }
    poly->SetData("");  // an empty, unfilled text box is picked on its outline only
    EXPECT_FALSE(poly->Pick(20000, 15000, 500, false));
    EXPECT_TRUE(poly->Pick(20000, 10200, 500, false));
    TQVLRef ref;
    EXPECT_TRUE(poly->CheckPoint(20300, 15000, 500, TQVLSnap::snCenter, ref));
    EXPECT_EQ(ref.X, 20000);
    EXPECT_TRUE(poly->CheckPoint(29900, 20100, 500, TQVLSnap::snEndPoint, ref));
    EXPECT_EQ(ref.Index, 3);
}

TEST(TextItemsTest, SvgEscapesTextAndTurnsWithTheItem) {
    TORXHeadlessLabel doc;
    auto* text = Make<TORXBaseText>(doc);
    text->SetText("a < b & \"c\"");
    text->SetUnderline(true);
    text->RotateLeft();
    std::vector<std::string> defs, body;
    text->WriteSVG(defs, body, TQVLExportSVG::esFile, 1.0f, false);
    std::string svg;
    for (const auto& line : body) svg += line;
    EXPECT_NE(svg.find("a &lt; b &amp; &quot;c&quot;"), std::string::npos) << svg;
    EXPECT_NE(svg.find("rotate(270 "), std::string::npos) << svg;
    EXPECT_NE(svg.find("text-decoration=\"underline\""), std::string::npos) << svg;
    EXPECT_NE(svg.find("font-family=\"Arial\""), std::string::npos) << svg;
}

// A host's font engine replaces the approximation everywhere text is measured.
class TFixedMetrics final : public ITextMetrics {
  public:
    std::int64_t TextWidth(std::string_view text, const TQVLFont&) const override {
        return 1000 * static_cast<std::int64_t>(text.size());
    }
    std::int64_t LineHeight(const TQVLFont&) const override { return 3000; }
    std::int64_t Ascent(const TQVLFont&) const override { return 2000; }
};

TEST(TextItemsTest, HostMetricsReplaceTheApproximation) {
    TORXHeadlessLabel doc;
    const TFixedMetrics metrics;
    QVLSetTextMetrics(&metrics);
    auto* text = Make<TORXBaseText>(doc);
    text->SetText("abc");
    EXPECT_EQ(text->BoundsRect(), TQVLRect(0, 0, 3000, 3000));
    QVLSetTextMetrics(nullptr);
    text->SetText("abcd");
    EXPECT_EQ(text->BoundsRect().GetWidth(), 4 * SetBaseValue(3.5f) / 2);
}

}  // namespace
}  // namespace Orvex
