#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "orvex/document/headless.h"
#include "orvex/io/json.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/text_items.h"

namespace Orvex {
namespace {

// A flowchart's kinds with every property away from its default, so that a key written or read wrongly
// shows in the bytes.
class PropTableTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fFlow = fDoc.AddNew<THeadlessItem<TORXBaseFlow>>(false);  // the document owns its items
        fFlow->SetBase(1, 10000, 10000);
        fFlow->SetBase(2, 42000, 27500);
        fFlow->SetFlowType(TQVLFlowType::ftDecision);
        fFlow->SetLineType(TQVLineType::ii21);
        fFlow->SetHorzAlign(TQVLHorzAlign::haRight);
        fFlow->SetPaddingX(1.5f);
        fFlow->SetPaddingY(1.5f);  // files keep one padding: a different one would not come back
        fFlow->SetShadowColor(0x40102030u);
        fFlow->SetShadowDX(0.7f);
        fFlow->SetGradient(TQVLGradient::grRadial);
        fFlow->SetGradColor(0xFF00FF00u);
        fFlow->SetBold(true);
        fFlow->SetFontHeight(3.3f);
        fFlow->SetInterline(0.25f);
        fFlow->SetText("Approved \"as is\"?\nthen ship \xe2\x86\x92 now");
        auto* other = fDoc.AddNew<THeadlessItem<TORXBaseFlow>>(false);
        other->SetBase(1, 80000, 10000);
        other->SetBase(2, 100000, 20000);
        fLink = fDoc.AddNew<THeadlessItem<TORXBaseLink>>(false);
        fLink->SetLinkType(TQVLinkType::ltRoundCorner);
        fLink->SetFromType(TQVLTermType::ttCrowZeroMany);
        fLink->SetToColor(0xFF123456u);
        fLink->Bind(fFlow, 1, other, 3);
        fLink->SetLabel("yes, \\ then");
        fText = fDoc.AddNew<THeadlessItem<TORXBaseText>>(false);
        fText->SetBase(1, 5000, 60000);
        fText->SetText("caption\tone");
        fText->SetFontName("Serif");
        fText->SetItalic(true);
        fText->SetVertAlign(TQVLVertAlign::vaBottom);
        fText->SetScaleX(1.25f);
        fText->SetFillType(TQVLFillType::ftCounter);
        fText->SetFormat("%03d");
        fDoc.EndUpdate();
    }

    TORXHeadlessLabel fDoc;
    TORXBaseFlow* fFlow = nullptr;
    TORXBaseLink* fLink = nullptr;
    TORXBaseText* fText = nullptr;
};

TEST_F(PropTableTest, StreamedTextIsTheTreesDumpAndSurvivesARoundTripByteForByte) {
    for (const int indent : {-1, 2}) {
        SCOPED_TRACE(indent);
        const std::string text = fDoc.GetJsonString(indent);
        EXPECT_EQ(text, fDoc.GetJson().dump(indent));  // the tree form comes from the same rows
        TORXHeadlessLabel copy;
        copy.ReadJson(TJSON::parse(text));
        EXPECT_TRUE(copy.ReadWarnings().empty());
        EXPECT_EQ(copy.GetJsonString(indent), text);
    }
}

TEST_F(PropTableTest, EachKindsObjectRoundTripsAlone) {
    for (TORXBaseItem* item : {static_cast<TORXBaseItem*>(fFlow), static_cast<TORXBaseItem*>(fLink),
                               static_cast<TORXBaseItem*>(fText)}) {
        SCOPED_TRACE(std::string(NameItem(item->ItemType())));
        const TJSON written = item->WriteJson();
        TORXHeadlessLabel other;
        TORXBaseItem* back = other.CreateItem(item->ItemType());
        ASSERT_NE(back, nullptr);
        back->ReadJson(kDrawingVersion, written);
        TJSON again = back->WriteJson();
        // Identity and layer belong to the document the item lives in; everything else must come back.
        for (const char* key : {"InID", "ID", "Layer"}) again[key] = written[key];
        EXPECT_EQ(again.dump(), written.dump());
    }
}

// An entry of "Items" with some of its keys replaced.
std::string DrawingWithItem(TJSON item) {
    TORXHeadlessLabel empty;
    TJSON drawing = empty.GetJson();
    drawing["Items"] = TJSON::array({std::move(item)});
    return drawing.dump();
}

TEST_F(PropTableTest, OutOfRangeValuesInAFileAreClampedWithAWarningNamingTheEntryAndKey) {
    TJSON flow = fFlow->WriteJson();
    flow["LineType"] = 99;
    flow["FlowType"] = -4;
    TJSON link = fLink->WriteJson();
    link["FromIndex"] = 70000;
    link["ToType"] = 1000000000000;
    TJSON text = fText->WriteJson();
    text["FillType"] = 11;

    TORXHeadlessLabel doc;
    TJSON drawing = TJSON::parse(DrawingWithItem(flow));
    drawing["Items"].push_back(link);
    drawing["Items"].push_back(text);
    doc.ReadJson(drawing);

    const auto lineMax = static_cast<std::int64_t>(TQVLineType::ii411);
    const auto termMax = static_cast<std::int64_t>(kLastTermType);
    const auto fillMax = static_cast<std::int64_t>(TQVLFillType::ftImg64);
    EXPECT_EQ(
        doc.ReadWarnings(),
        (std::vector<std::string>{
            "Items[0] \"FlowType\" -4 is outside 0..14; read as 0",
            fmt::format("Items[0] \"LineType\" 99 is outside 0..{}; read as {}", lineMax, lineMax),
            "Items[1] \"FromIndex\" 70000 is outside -32768..32767; read as 32767",
            fmt::format("Items[1] \"ToType\" 1000000000000 is outside 0..{}; read as {}", termMax, termMax),
            fmt::format("Items[2] \"FillType\" 11 is outside 0..{}; read as {}", fillMax, fillMax)}));
    const auto* readFlow = dynamic_cast<TORXBaseFlow*>(doc.GetItem(0));
    const auto* readLink = dynamic_cast<TORXBaseLink*>(doc.GetItem(1));
    const auto* readText = dynamic_cast<TORXBaseText*>(doc.GetItem(2));
    ASSERT_TRUE(readFlow != nullptr && readLink != nullptr && readText != nullptr);
    EXPECT_EQ(readFlow->LineType(), TQVLineType::ii411);
    EXPECT_EQ(readFlow->FlowType(), TQVLFlowType::ftTerminator);
    EXPECT_EQ(readLink->FromIndex(), 32767);
    EXPECT_EQ(readLink->ToType(), kLastTermType);
    EXPECT_EQ(readText->FillType(), TQVLFillType::ftImg64);
    // What was clamped is written as it now stands.
    EXPECT_EQ(readFlow->WriteJson()["LineType"], lineMax);
}

TEST_F(PropTableTest, SettersClampThroughTheTableAndUndoRestoresTheValueBefore) {
    fFlow->SetEnumProp(FlowProp::kLineType, 250);
    EXPECT_EQ(fFlow->LineType(), TQVLineType::ii411);
    fFlow->SetEnumProp(FlowProp::kGradient, -1);
    EXPECT_EQ(fFlow->Gradient(), TQVLGradient::grNone);
    fLink->SetEnumProp(LinkProp::kLinkType, 77);
    EXPECT_EQ(fLink->LinkType(), TQVLinkType::ltRoundCorner);  // already the last type: nothing recorded
    fLink->SetBaseValueProp(LinkProp::kToIndex, -90000);
    EXPECT_EQ(fLink->ToIndex(), -32768);
    fText->SetEnumProp(TextProp::kHorzAlign, 40);
    EXPECT_EQ(fText->HorzAlign(), TQVLHorzAlign::haJustify);

    fDoc.Undo();
    EXPECT_EQ(fText->HorzAlign(), TQVLHorzAlign::haLeft);
    fDoc.Undo();
    EXPECT_EQ(fLink->ToIndex(), 3);
    fDoc.Undo();
    EXPECT_EQ(fFlow->Gradient(), TQVLGradient::grRadial);
    fDoc.Undo();
    EXPECT_EQ(fFlow->LineType(), TQVLineType::ii21);
}

TEST_F(PropTableTest, PropertiesWithoutAKeyOfTheirOwnReachTheirParentKeysField) {
    fFlow->SetFloatProp(FlowProp::kFontHeight, 4.5);
    fFlow->SetBoolProp(FlowProp::kStrikeout, true);
    EXPECT_FLOAT_EQ(fFlow->Font().FontHeight, 4.5f);
    EXPECT_TRUE(fFlow->Font().Strikeout);
    const TJSON font = fFlow->WriteJson()["Font"];
    EXPECT_DOUBLE_EQ(font["FontHeight"].get<double>(), 4.5);
    EXPECT_TRUE(font["Strikeout"].get<bool>());
    fText->SetTextProp(TextProp::kFontName, "Mono");
    EXPECT_EQ(fText->WriteJson()["Font"], "Mono");
    EXPECT_EQ(fText->GetTextProp(TextProp::kFontName), "Mono");
}

TEST_F(PropTableTest, InspectorListsTheRowsShownWithTheGroupsAsked) {
    const TQVLInsTypeBases none;
    TJSON withText = TJSON::array();
    fFlow->JsonInspector(none, TQVLInsTypes{TQVLInsType::inText}, withText);
    TJSON without = TJSON::array();
    fFlow->JsonInspector(none, TQVLInsTypes{}, without);
    const auto names = [](const TJSON& entries) {
        std::vector<std::string> out;
        for (const auto& e : entries) out.push_back(e["Name"].get<std::string>());
        return out;
    };
    EXPECT_EQ(names(withText), (std::vector<std::string>{"FlowType", "Text"}));
    EXPECT_EQ(names(without), (std::vector<std::string>{"FlowType"}));
    EXPECT_EQ(withText[0]["Value"], static_cast<int>(TQVLFlowType::ftDecision));
    EXPECT_EQ(withText[1]["Value"], fFlow->Text());
    // Every row the table marks as shown is there, under its key.
    const std::vector<std::string> shown = names(withText);
    for (const auto& row : TORXBaseFlow::PropTable().Rows()) {
        if (row.Show == TPropShow::psNever) continue;
        EXPECT_NE(std::ranges::find(shown, std::string(row.Key)), shown.end()) << row.Key;
    }
}

}  // namespace
}  // namespace Orvex
