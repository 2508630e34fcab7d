// The tools as an agent strings them together: diagrams that land beside each other and answer with their
// ids, findings in the text, items read back in the tools' own vocabulary, labels that belong to links,
// batches that undo as one step, and previews that always come back.
#include <gtest/gtest.h>

#include "host/layout/diagram_loader.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/items/link_items.h"
#include "tests/host/tool_test_support.h"

namespace Orvex::Testing {
namespace {

constexpr const char* kFlowchart = "flowchart TD\n  A[Start] --> B{Ready?}\n  B -->|yes| C[Ship]\n";
constexpr const char* kSecond = "flowchart LR\n  X[One] --> Y[Two]\n";

class AgentLoopTest : public ToolsTest {
  protected:
    AgentLoopTest() { RegisterDiagramLayout(); }
    ~AgentLoopTest() override { QVLSetDiagramLoader(nullptr); }

    TJSON Item(std::int64_t aId) { return Ok("get_item", {{"id", aId}}); }
    double Right(const TJSON& aBox) { return aBox["x"].get<double>() + aBox["width"].get<double>(); }
};

TEST_F(AgentLoopTest, AFailedLoadWritesEveryFindingIntoTheText) {
    const std::string text = Refused("load_diagram", {{"text", "flowchart TD\n  ??? nonsense\n"}});
    EXPECT_NE(text.find("\nline 2: warning MERMAID_UNRECOGNIZED_LINE: "), std::string::npos) << text;
    EXPECT_NE(text.find("Source: "), std::string::npos) << text;
    EXPECT_NE(
        text.find("\ntext: error DIAGRAM_EMPTY_RESULT: The diagram did not produce any renderable element."),
        std::string::npos)
        << text;
    EXPECT_EQ(fDoc.GetItemsCount(), 0);
}

TEST_F(AgentLoopTest, LoadsLandBesideEachOtherAndMapNodeIdsToItems) {
    const TJSON first = Ok("load_diagram", {{"text", kFlowchart}});
    EXPECT_EQ(first["mode"], "replace");
    ASSERT_EQ(first["nodes"].size(), 3u);
    EXPECT_EQ(Item(first["nodes"]["C"])["properties"]["text"], "Ship");
    ASSERT_EQ(first["edges"].size(), 2u);
    for (const auto& edge : first["edges"])
        EXPECT_EQ(Item(edge["id"])["properties"].value("label", ""), edge["from"] == "B" ? "yes" : "");

    const TJSON second = Ok("load_diagram", {{"text", kSecond}, {"mode", "add"}});
    EXPECT_EQ(fDoc.GetItemsCount(), 8);
    EXPECT_GT(second["bounds"]["x"].get<double>(), Right(first["bounds"]));
    EXPECT_DOUBLE_EQ(second["bounds"]["y"].get<double>(), first["bounds"]["y"].get<double>());
    // The page holds everything.
    EXPECT_GE(second["page"]["width"].get<double>(), Right(second["bounds"]));

    const TJSON below = Ok("load_diagram", {{"text", kSecond}, {"mode", "add"}, {"place", "below"}});
    const TJSON info = Ok("get_drawing_info");
    EXPECT_GT(below["bounds"]["y"].get<double>(),
              first["bounds"]["y"].get<double>() + first["bounds"]["height"].get<double>());
    EXPECT_EQ(info["paper"]["name"], "User");

    // Only loads on the drawing: a new load replaces them all, and undoes as one step.
    const TJSON again = Ok("load_diagram", {{"text", kSecond}});
    EXPECT_EQ(again["mode"], "replace");
    EXPECT_EQ(fDoc.GetItemsCount(), 3);
    Ok("undo");
    EXPECT_EQ(fDoc.GetItemsCount(), 11);
}

TEST_F(AgentLoopTest, ALoadBesideOwnItemsAddsByDefault) {
    Ok("add_shape", {{"kind", "rectangle"}, {"x", 0}, {"y", 0}, {"width", 30}, {"height", 10}});
    const TJSON loaded = Ok("load_diagram", {{"text", kSecond}});
    EXPECT_EQ(loaded["mode"], "add");
    EXPECT_GE(loaded["bounds"]["x"].get<double>(), 30.0);
    EXPECT_EQ(fDoc.GetItemsCount(), 4);
}

TEST_F(AgentLoopTest, ItemsReadBackInTheToolsVocabulary) {
    const TJSON flow = Ok("add_flow", {{"x", 10},
                                       {"y", 10},
                                       {"text", "Go"},
                                       {"shape", "decision"},
                                       {"fill_color", "#FF8800"},
                                       {"text_color", "#80112233"},
                                       {"pen_width", 0.5}});
    const TJSON props = Item(flow["id"])["properties"];
    EXPECT_EQ(props["shape"], "decision");
    EXPECT_EQ(props["fill_color"], "#FF8800");
    EXPECT_EQ(props["text_color"], "#80112233");
    EXPECT_DOUBLE_EQ(props["pen_width"].get<double>(), 0.5);
    EXPECT_EQ(props["line_type"], "solid");
    EXPECT_DOUBLE_EQ(props["points"][1]["x"].get<double>(), 50.0);
    const TJSON raw = Ok("get_item", {{"id", flow["id"]}, {"raw", true}});
    EXPECT_EQ(raw["properties"]["FlowType"], 4);
}

TEST_F(AgentLoopTest, ListItemsSearchesTextAndGivesLinkEnds) {
    const TJSON a = Ok("add_flow", {{"x", 0}, {"y", 0}, {"text", "Order received"}});
    const TJSON b = Ok("add_flow", {{"x", 0}, {"y", 40}, {"text", "Ship order"}});
    Ok("add_flow", {{"x", 0}, {"y", 80}, {"text", "Invoice"}});
    Ok("add_link", {{"from_id", a["id"]}, {"to_id", b["id"]}});
    const TJSON found = Ok("list_items", {{"text", "ORDER"}});
    ASSERT_EQ(found["total"], 2);
    EXPECT_EQ(found["items"][1]["id"], b["id"]);
    const TJSON links = Ok("list_items", {{"kind", "link"}});
    ASSERT_EQ(links["items"].size(), 1u);
    EXPECT_EQ(links["items"][0]["from_id"], a["id"]);
    EXPECT_EQ(links["items"][0]["to_id"], b["id"]);
}

TEST_F(AgentLoopTest, ALinksLabelMovesAndGoesWithIt) {
    const TJSON a = Ok("add_flow", {{"x", 0}, {"y", 0}});
    const TJSON b = Ok("add_flow", {{"x", 100}, {"y", 0}});
    const TJSON link = Ok("add_link", {{"from_id", a["id"]}, {"to_id", b["id"]}, {"label", "next"}});
    const auto* item = dynamic_cast<const TORXBaseLink*>(fDoc.GetItem(2));
    ASSERT_NE(item, nullptr);
    const TQVLPto64 before = item->LabelPoint();
    Ok("modify_item", {{"id", b["id"]}, {"dy", 40}});
    EXPECT_GT(item->LabelPoint().Y, before.Y);
    Ok("modify_item", {{"id", link["id"]}, {"label", "then"}});
    EXPECT_EQ(item->WriteJson()["Label"], "then");
    Ok("undo");
    EXPECT_EQ(item->Label(), "next");
    // The label is part of the link: deleting the element takes link and label together.
    Ok("delete_item", {{"id", a["id"]}});
    EXPECT_EQ(fDoc.GetItemsCount(), 1);
}

TEST_F(AgentLoopTest, ABatchUndoesAsOneStep) {
    Ok("add_shape", {{"kind", "rectangle"}, {"x", 0}, {"y", 0}, {"width", 5}, {"height", 5}});
    Ok("begin_update");
    for (int i = 0; i < 3; ++i) Ok("add_flow", {{"x", 20 * i}, {"y", 30}});
    Ok("modify_item", {{"index", 0}, {"dx", 3}});
    EXPECT_EQ(Ok("end_update")["batch_steps"], 1);
    EXPECT_EQ(Ok("undo")["undone"], 1);
    EXPECT_EQ(fDoc.GetItemsCount(), 1);
    EXPECT_EQ(fDoc.GetItem(0)->BoundsRect().Left, 0);
    Ok("redo");
    EXPECT_EQ(fDoc.GetItemsCount(), 4);
}

TEST_F(AgentLoopTest, AddItemsLinksByLocalKeysAllOrNothing) {
    const TJSON made =
        Ok("add_items", {{"items",
                          {{{"kind", "flow"}, {"key", "a"}, {"x", 0}, {"y", 0}, {"text", "A"}},
                           {{"kind", "flow"}, {"key", "b"}, {"x", 0}, {"y", 40}},
                           {{"kind", "link"}, {"from_key", "a"}, {"to_key", "b"}, {"label", "go"}}}}});
    ASSERT_EQ(made["items"].size(), 3u);
    const auto* link = dynamic_cast<const TORXBaseLink*>(fDoc.GetItem(2));
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link->WriteJson()["FromID"], made["ids"]["a"]);
    Ok("undo");
    EXPECT_EQ(fDoc.GetItemsCount(), 0);

    const std::string refused =
        Refused("add_items", {{"items",
                               {{{"kind", "flow"}, {"key", "a"}, {"x", 0}, {"y", 0}},
                                {{"kind", "link"}, {"from_key", "a"}, {"to_key", "zz"}}}}});
    EXPECT_EQ(refused, "items[1] (link): to_key \"zz\" names no earlier item of this batch");
    EXPECT_EQ(fDoc.GetItemsCount(), 0);
}

TEST_F(AgentLoopTest, AddItemsTakesShapeKindsAsKindsOfTheirOwn) {
    const TJSON made =
        Ok("add_items", {{"items",
                          {{{"kind", "rectangle"}, {"x", 0}, {"y", 0}, {"width", 8}, {"height", 4}},
                           {{"kind", "text"}, {"key", "t"}, {"x", 1}, {"y", 1}, {"text", "Hi"}},
                           {{"kind", "circle"}, {"cx", 20}, {"cy", 5}, {"radius", 2}}}}});
    ASSERT_EQ(made["items"].size(), 3u);
    EXPECT_EQ(made["items"][0]["kind"], "rectangle");
    EXPECT_EQ(made["items"][1]["kind"], "text");
    EXPECT_EQ(made["items"][2]["kind"], "circle");
    EXPECT_EQ(made["ids"]["t"], fDoc.GetItem(1)->InID());
    // A shape entry is held to its kind, and the batch leaves nothing behind.
    EXPECT_EQ(Refused("add_items", {{"items",
                                     {{{"kind", "line"}, {"x1", 0}, {"y1", 0}, {"x2", 5}, {"y2", 5}},
                                      {{"kind", "ellipse"}, {"cx", 0}, {"cy", 0}, {"rx", 2}}}}}),
              "items[1] (ellipse): kind \"ellipse\" needs \"cx\", \"cy\", \"rx\" and \"ry\"; missing \"ry\"");
    EXPECT_EQ(Refused("add_items", {{"items", {{{"kind", "shape"}, {"x", 0}}}}}),
              "argument \"items[0].kind\" must be one of \"flow\", \"link\", \"line\", \"polyline\", "
              "\"rectangle\", \"polygon\", \"bezier\", \"circle\", \"ellipse\", \"sector\", \"arc\", "
              "\"arrow_line\", \"dimension\", \"text\", \"paragraph\" or \"rich_text\"; got \"shape\"");
    EXPECT_EQ(fDoc.GetItemsCount(), 3);
}

TEST_F(AgentLoopTest, AlignDistributeAndDuplicate) {
    std::vector<std::int64_t> ids;
    for (const auto& [x, y] : {std::pair{0, 0}, {50, 7}, {120, 3}})
        ids.push_back(Ok("add_flow", {{"x", x}, {"y", y}, {"width", 20}, {"height", 10}})["id"]);
    Ok("align_items", {{"ids", ids}, {"align", "top"}});
    for (int i = 0; i < 3; ++i) EXPECT_EQ(fDoc.GetItem(i)->BoundsRect().Top, 0);
    Ok("distribute_items", {{"ids", ids}, {"direction", "horizontal"}});
    EXPECT_EQ(fDoc.GetItem(1)->BoundsRect().Left, 60'000);
    Ok("undo");
    EXPECT_EQ(fDoc.GetItem(1)->BoundsRect().Left, 50'000);
    Ok("add_link", {{"from_id", ids[0]}, {"to_id", ids[1]}});
    const TJSON copies = Ok("duplicate_items", {{"ids", {ids[0], ids[1], fDoc.GetItem(3)->InID()}}});
    ASSERT_EQ(copies["items"].size(), 3u);
    const TJSON link = Ok("get_item", {{"id", copies["items"][2]["id"]}})["properties"];
    EXPECT_EQ(link["from_id"], copies["copies"][std::to_string(ids[0])]);
    EXPECT_EQ(Refused("align_items", {{"ids", {ids[0], fDoc.GetItem(3)->InID()}}, {"align", "left"}}),
              "ids: " + std::to_string(fDoc.GetItem(3)->InID()) +
                  " is a link, which follows the elements it joins");
}

TEST_F(AgentLoopTest, AGroupMovesItsMembersAndUngroupingLeavesThem) {
    std::vector<std::int64_t> ids;
    for (const int x : {0, 40})
        ids.push_back(Ok("add_flow", {{"x", x}, {"y", 20}, {"width", 20}, {"height", 10}})["id"]);
    const TJSON grouped = Ok("group_items", {{"ids", ids}, {"title", "Pair"}});
    const auto group = grouped["id"].get<std::int32_t>();
    EXPECT_EQ(grouped["members"], TJSON(ids));
    EXPECT_TRUE(fDoc.IsContainer(group));
    const auto left = [&](std::int64_t aId) {
        for (std::int32_t i = 0; i < fDoc.GetItemsCount(); ++i)
            if (fDoc.GetItem(i)->InID() == aId) return fDoc.GetItem(i)->BoundsRect().Left;
        return std::int64_t{-1};
    };
    Ok("modify_item", {{"id", group}, {"dx", 10}});
    EXPECT_EQ(left(ids[1]), 50'000);
    Ok("undo");
    EXPECT_EQ(left(ids[1]), 40'000);
    EXPECT_EQ(Ok("ungroup_items", {{"id", group}})["members"], TJSON(ids));
    EXPECT_FALSE(fDoc.IsContainer(group));
    EXPECT_EQ(fDoc.ContainerOf(static_cast<std::int32_t>(ids[0])), 0);
    EXPECT_EQ(Refused("ungroup_items", {{"id", ids[0]}}),
              "id: " + std::to_string(ids[0]) + " is not a group");
}

TEST_F(AgentLoopTest, ACaptionCutOffByTheSizeGivenIsReported) {
    const TJSON flow = Ok("add_flow", {{"x", 10},
                                       {"y", 10},
                                       {"width", 12},
                                       {"height", 6},
                                       {"text", "Reject and notify the customer by mail"}});
    EXPECT_EQ(flow["text_clipped"], true);
    // A size given with the text is kept, and the result says the caption does not fit it.
    const TJSON kept = Ok("modify_item", {{"id", flow["id"]}, {"text", "Reject it"}, {"width", 14}});
    EXPECT_FALSE(kept.contains("grown_to_fit_text"));
    EXPECT_EQ(kept["text_clipped"], true);
    const TJSON fits = Ok("modify_item", {{"id", flow["id"]}, {"text", "Ok"}});
    EXPECT_FALSE(fits.contains("text_clipped"));

    const TJSON para = Ok("add_shape", {{"kind", "paragraph"},
                                        {"x", 0},
                                        {"y", 40},
                                        {"width", 30},
                                        {"height", 5},
                                        {"text",
                                         "A paragraph with far more words than five millimetres "
                                         "of height can show on one line"}});
    EXPECT_EQ(para["text_clipped"], true);
    EXPECT_FALSE(Ok("modify_item", {{"id", para["id"]}, {"height", 60}}).contains("text_clipped"));
}

TEST_F(AgentLoopTest, ALongerCaptionGrowsItsElement) {
    const TJSON flow = Ok("add_flow", {{"x", 10}, {"y", 10}, {"width", 20}, {"height", 10}, {"text", "Ok"}});
    Ok("add_shape", {{"kind", "rectangle"}, {"x", 0}, {"y", 0}, {"width", 5}, {"height", 5}});
    const TJSON changed =
        Ok("modify_item", {{"id", flow["id"]}, {"text", "Reject and notify the customer by mail"}});
    EXPECT_EQ(changed["grown_to_fit_text"], true);
    EXPECT_GT(changed["width"].get<double>(), 20.0);
    // The caption is laid out anew: its lines reach the end of the new text, not of the old one.
    const TJSON lines = fDoc.GetItem(0)->WriteJson()["TextPos"];
    ASSERT_FALSE(lines.empty());
    EXPECT_GE(lines.back()["ToPos"].get<int>(), 36);
    Ok("undo");
    EXPECT_DOUBLE_EQ(Item(flow["id"])["width"].get<double>(), 20.0);
    const TJSON styled = Ok("modify_item", {{"id", flow["id"]},
                                            {"font", "Courier"},
                                            {"bold", true},
                                            {"rotation", 90},
                                            {"z_order", "bring_to_front"}});
    EXPECT_EQ(styled["index"], 1);
    EXPECT_EQ(Item(flow["id"])["properties"]["font"], "Courier");
    EXPECT_EQ(Item(flow["id"])["properties"]["rotation"], 90);
}

TEST_F(AgentLoopTest, APreviewAlwaysComesBackAndCrops) {
    for (int i = 0; i < 400; ++i)
        Ok("add_shape", {{"kind", "rectangle"}, {"x", 0}, {"y", 30 * i}, {"width", 20}, {"height", 20}});
    const TJSON result = Call("render_preview", {{"max_side", 800}});
    ASSERT_FALSE(result.value("isError", false)) << Text(result);
    const TJSON info = result["structuredContent"];
    EXPECT_LE(info["height"].get<int>(), 800);
    EXPECT_EQ(result["content"][0]["type"], "image");
    const TJSON cropped = Ok("render_preview", {{"item_ids", {fDoc.GetItem(5)->InID()}}, {"scale", 1}});
    EXPECT_LT(cropped["height"].get<int>(), 200);
    EXPECT_GT(cropped["width"].get<int>(), 80);
}

class FileNamesTest : public ToolsTest {
  protected:
    FileNamesTest() : ToolsTest(Options()) {}
    static Host::TToolOptions Options() {
        Host::TToolOptions options;
        options.FilesRoot = std::filesystem::temp_directory_path();
        return options;
    }
};

TEST_F(FileNamesTest, MustSayWhatTheyHold) {
    EXPECT_EQ(Refused("save_drawing", {{"path", "notes.txt"}}),
              "path \"notes.txt\" must end in .json (the drawing is saved in the JSON drawing format)");
    EXPECT_EQ(Refused("export_document", {{"format", "svg"}, {"path", "x.png"}}),
              "path \"x.png\" must end in .svg (the format asked for is svg)");
}

}  // namespace
}  // namespace Orvex::Testing
