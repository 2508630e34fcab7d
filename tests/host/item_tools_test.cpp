// The add_ tools, modify_item, delete_item, batching and undo through the JSON-RPC layer.
#include <gtest/gtest.h>

#include "orvex/io/json_utils.h"
#include "tests/host/tool_test_support.h"

namespace Orvex::Testing {
namespace {

using ItemToolsTest = ToolsTest;

TEST_F(ItemToolsTest, EveryAddToolAnswersWithNameIdIndexAndBounds) {
    struct Case {
        std::string Tool;
        TJSON Args;
        std::string Kind;
        TJSON Bounds;  // x, y, width, height
    };
    const Case cases[] = {
        {"add_flow",
         {{"x", 10}, {"y", 20}, {"width", 30}, {"height", 12}, {"text", "Go"}},
         "flow",
         {10, 20, 30, 12}},
        {"add_shape",
         {{"kind", "line"}, {"x1", 5}, {"y1", 50}, {"x2", 1}, {"y2", 40}},
         "line",
         {1, 40, 4, 10}},
        {"add_shape",
         {{"kind", "polyline"},
          {"points", {{{"x", 0}, {"y", 0}}, {{"x", 10}, {"y", 5}}, {{"x", 20}, {"y", 0}}}},
          {"end", "arrow"}},
         "polyline",
         {0, 0, 20, 5}},
        {"add_shape",
         {{"kind", "rectangle"}, {"x", 1}, {"y", 2}, {"width", 3}, {"height", 4}, {"fill_color", "#00FF00"}},
         "rectangle",
         {1, 2, 3, 4}},
        {"add_shape",
         {{"kind", "polygon"},
          {"points", {{{"x", 0}, {"y", 0}}, {{"x", 8}, {"y", 0}}, {{"x", 4}, {"y", 6}}}}},
         "polygon",
         {0, 0, 8, 6}},
        {"add_shape",
         {{"kind", "bezier"},
          {"points",
           {{{"x", 0}, {"y", 0}}, {{"x", 2}, {"y", 4}}, {{"x", 6}, {"y", 4}}, {{"x", 8}, {"y", 0}}}}},
         "bezier",
         {0, 0, 8, 4}},
        {"add_shape",
         {{"kind", "circle"}, {"cx", 50}, {"cy", 50}, {"radius", 5}},
         "circle",
         {45, 45, 10, 10}},
        {"add_shape",
         {{"kind", "ellipse"}, {"cx", 50}, {"cy", 50}, {"rx", 6}, {"ry", 3}},
         "ellipse",
         {44, 47, 12, 6}},
        {"add_shape",
         {{"kind", "sector"}, {"cx", 20}, {"cy", 20}, {"radius", 10}, {"sweep_angle", 360}},
         "sector",
         {10, 10, 20, 20}},
        {"add_shape",
         {{"kind", "arc"}, {"cx", 20}, {"cy", 20}, {"radius", 10}, {"start_angle", 0}, {"end_angle", 90}},
         "arc",
         {20, 10, 10, 10}},
        {"add_shape",
         {{"kind", "arrow_line"}, {"x1", 0}, {"y1", 0}, {"x2", 30}, {"y2", 0}},
         "arrow_line",
         nullptr},
        {"add_shape",
         {{"kind", "dimension"}, {"x1", 0}, {"y1", 30}, {"x2", 40}, {"y2", 30}, {"dim_type", "horizontal"}},
         "dimension",
         nullptr},
        {"add_shape", {{"kind", "text"}, {"x", 5}, {"y", 6}, {"text", "Hello"}}, "text", nullptr},
        {"add_shape",
         {{"kind", "paragraph"}, {"x", 5}, {"y", 6}, {"width", 40}, {"height", 20}, {"text", "Some words"}},
         "paragraph",
         {5, 6, 40, 20}},
        {"add_shape",
         {{"kind", "rich_text"}, {"x", 5}, {"y", 6}, {"width", 40}, {"height", 20}, {"text", "a<B>b</B>"}},
         "rich_text",
         {5, 6, 40, 20}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Tool);
        const std::int32_t index = fDoc.GetItemsCount();
        const TJSON result = Call(c.Tool, c.Args);
        ASSERT_FALSE(result.value("isError", false)) << result.dump();
        const TJSON& added = result["structuredContent"];
        EXPECT_EQ(TJSON::parse(Text(result)), added);
        EXPECT_EQ(added["index"], index);
        EXPECT_EQ(added["kind"], c.Kind);
        EXPECT_EQ(added["id"], fDoc.GetItem(index)->InID());
        EXPECT_EQ(added["name"], fDoc.GetItem(index)->ID());
        EXPECT_EQ(added["layer"], 1);
        if (!c.Bounds.is_null() && c.Kind != "bezier" && c.Kind != "polyline" && c.Kind != "polygon" &&
            c.Kind != "line") {
            EXPECT_EQ((TJSON{added["x"], added["y"], added["width"], added["height"]}), c.Bounds);
        }
    }
    EXPECT_EQ(fDoc.GetItemsCount(), static_cast<std::int32_t>(std::size(cases)));
}

TEST_F(ItemToolsTest, NullArgumentsCountAsAbsent) {
    const TJSON line = Ok("add_shape", {{"kind", "line"},
                                        {"x1", 0},
                                        {"y1", 0},
                                        {"x2", 1},
                                        {"y2", 1},
                                        {"name", nullptr},
                                        {"layer", nullptr}});
    EXPECT_EQ(line["name"], "Line001");
    EXPECT_EQ(Refused("add_shape", {{"kind", "line"}, {"x1", 0}, {"y1", 0}, {"x2", 1}, {"y2", nullptr}}),
              "kind \"line\" needs \"x1\", \"y1\", \"x2\" and \"y2\"; missing \"y2\"");
}

TEST_F(ItemToolsTest, PointListsKeepEveryPointExactlyAndUndoInOneStep) {
    // Polylines, polygons and curves take their points directly rather than through the file form.
    TJSON points = TJSON::array();
    for (int i = 0; i < 1000; ++i) points.push_back({{"x", i * 0.5}, {"y", (i % 7) * 1.25}});
    const TJSON result =
        Call("add_shape", {{"kind", "polyline"}, {"points", points}, {"name", "Trace"}, {"end", "arrow"}});
    ASSERT_FALSE(result.value("isError", false)) << result.dump();
    const TORXBaseItem* line = fDoc.GetItem(0);
    ASSERT_EQ(line->Points().size(), 1000U);
    EXPECT_EQ(line->Points()[999].X, 499500);
    EXPECT_EQ(line->Points()[6].Y, 7500);
    EXPECT_EQ(line->ID(), "Trace");
    const TJSON& added = result["structuredContent"];
    EXPECT_DOUBLE_EQ(added["width"].get<double>(), 499.5);
    EXPECT_DOUBLE_EQ(added["height"].get<double>(), 7.5);
    Call("undo");
    EXPECT_EQ(fDoc.GetItemsCount(), 0);
    Call("redo");
    ASSERT_EQ(fDoc.GetItemsCount(), 1);
    EXPECT_EQ(fDoc.GetItem(0)->Points().size(), 1000U);
}

TEST_F(ItemToolsTest, AddToolsStoreTheirPropertiesInTheDrawing) {
    Ok("add_shape", {{"kind", "rectangle"},
                     {"x", 0},
                     {"y", 0},
                     {"width", 10},
                     {"height", 6},
                     {"fill_color", "#8000FF00"},
                     {"color", "#0000FF"},
                     {"pen_width", 0.5},
                     {"line_type", "dash_2_1"},
                     {"corner_radius", 2}});
    const TJSON json = fDoc.GetItem(0)->WriteJson();
    EXPECT_EQ(TJSONUtils::GetColor(json, "BackColor"), 0x8000FF00u);
    EXPECT_EQ(json["Filled"], true);
    EXPECT_EQ(fDoc.GetItem(0)->Color(), 0xFF0000FFu);
    EXPECT_EQ(fDoc.GetItem(0)->PenWidth(), 500);
    EXPECT_EQ(json["LineType"], 3);
    EXPECT_EQ(json["Radio"], 2.0);
}

TEST_F(ItemToolsTest, ItemsGoOnTheActiveLayerOrTheOneGiven) {
    Ok("add_layer", {{"name", "Two"}});
    EXPECT_EQ(Ok("add_shape", {{"kind", "circle"}, {"cx", 5}, {"cy", 5}, {"radius", 1}})["layer"], 2);
    EXPECT_EQ(
        Ok("add_shape", {{"kind", "circle"}, {"cx", 5}, {"cy", 5}, {"radius", 1}, {"layer", 1}})["layer"], 1);
}

TEST_F(ItemToolsTest, FlowchartOfThreeElementsAndTwoLinks) {
    Ok("setup_drawing", {{"mode", "flowchart"}});
    const TJSON a = Ok("add_flow", {{"x", 10}, {"y", 10}, {"text", "Start"}, {"shape", "terminator"}});
    const TJSON b = Ok("add_flow", {{"x", 10}, {"y", 50}, {"text", "Work?"}, {"shape", "decision"}});
    const TJSON c = Ok("add_flow", {{"x", 10}, {"y", 90}, {"text", "End"}, {"shape", "terminator"}});
    const TJSON ab = Ok("add_link", {{"from_id", a["id"]}, {"to_id", b["id"]}});
    const TJSON bc = Ok("add_link", {{"from_name", b["name"]}, {"to_name", c["name"]}, {"to_side", "top"}});
    EXPECT_EQ(ab["kind"], "link");
    const TJSON link = fDoc.GetItem(bc["index"].get<int>())->WriteJson();
    EXPECT_EQ(link["FromID"], b["id"]);
    EXPECT_EQ(link["ToID"], c["id"]);
    EXPECT_EQ(link["ToIndex"], 0);
    EXPECT_EQ(link["ToType"], 4);  // a filled arrow at the target unless told otherwise
    EXPECT_EQ(fDoc.GetItem(b["index"].get<int>())->WriteJson()["FlowType"], 4);
    EXPECT_EQ(Ok("list_items", {{"kind", "flow"}})["total"], 3);
}

TEST_F(ItemToolsTest, RefusedArgumentsSayWhatIsWrongAndChangeNothing) {
    Ok("add_flow", {{"x", 0}, {"y", 0}, {"text", "A"}, {"name", "A"}});
    Ok("add_shape", {{"kind", "line"}, {"x1", 0}, {"y1", 0}, {"x2", 1}, {"y2", 1}, {"name", "L"}});
    struct Case {
        std::string Tool;
        TJSON Args;
        std::string Message;
    };
    const Case cases[] = {
        {"add_shape",
         {{"kind", "line"}, {"x1", 0}, {"y1", 0}, {"x2", 1}},
         "kind \"line\" needs \"x1\", \"y1\", \"x2\" and \"y2\"; missing \"y2\""},
        {"add_shape",
         {{"kind", "line"}, {"x1", "0"}, {"y1", 0}, {"x2", 1}, {"y2", 1}},
         "argument \"x1\" must be a number"},
        {"add_shape",
         {{"kind", "line"}, {"x1", 1e12}, {"y1", 0}, {"x2", 1}, {"y2", 1}},
         "argument \"x1\" must lie between -1e+08 and 1e+08 mm"},
        {"add_link",
         {{"from_id", 1}, {"to_id", 2}, {"colour", "#000000"}},
         "unknown argument \"colour\"; expected \"from_id\", \"from_name\", \"to_id\", \"to_name\", "
         "\"from_side\", \"to_side\", \"link_type\", \"label\", \"start\", \"end\", \"layer\", \"color\", "
         "\"pen_width\", \"line_type\" or \"name\""},
        // One schema serves every kind of add_shape; each kind still takes only its own part of it.
        {"add_shape",
         {{"kind", "rectangle"}, {"x", 0}, {"y", 0}},
         "kind \"rectangle\" needs \"x\", \"y\", \"width\" and \"height\"; missing \"width\" and \"height\""},
        {"add_shape",
         {{"kind", "circle"}, {"cx", 0}, {"cy", 0}, {"radius", 1}, {"width", 3}},
         "kind \"circle\" does not take \"width\""},
        {"add_shape",
         {{"kind", "dimension"}, {"x1", 0}, {"y1", 0}, {"x2", 1}, {"y2", 1}, {"line_type", "dot"}},
         "kind \"dimension\" does not take \"line_type\""},
        {"add_shape",
         {{"kind", "text"}, {"x", 0}, {"y", 0}, {"text", "a"}, {"start", "arrow"}},
         "kind \"text\" does not take \"start\""},
        {"add_shape",
         {{"kind", "sector"},
          {"cx", 0},
          {"cy", 0},
          {"radius", 1},
          {"sweep_angle", 90},
          {"start_angle", -360}},
         "argument \"start_angle\" must be at least -359 for a sector"},
        {"add_shape",
         {{"kind", "bezier"}, {"points", {{{"x", 0}, {"y", 0}}, {{"x", 1}, {"y", 1}}, {{"x", 2}, {"y", 1}}}}},
         "argument \"points\": a bezier needs at least 4 points"},
        {"add_shape", {{"kind", "square"}, {"x", 0}}, ""},
        {"add_shape", {{"x", 0}, {"y", 0}}, "missing required argument \"kind\""},
        {"add_shape",
         {{"kind", "line"}, {"x1", 0}, {"y1", 0}, {"x2", 1}, {"y2", 1}, {"layer", 2}},
         "no layer 2: layers are numbered from 1 to 1"},
        {"add_shape",
         {{"kind", "line"}, {"x1", 0}, {"y1", 0}, {"x2", 1}, {"y2", 1}, {"name", "a"}},
         "the name \"a\" is taken by the item at index 0"},
        {"add_shape",
         {{"kind", "line"}, {"x1", 0}, {"y1", 0}, {"x2", 1}, {"y2", 1}, {"color", "#12345"}},
         "argument \"color\" must be a colour \"#RRGGBB\" or \"#AARRGGBB\"; got \"#12345\""},
        {"add_shape",
         {{"kind", "line"}, {"x1", 0}, {"y1", 0}, {"x2", 1}, {"y2", 1}, {"pen_width", -1}},
         "argument \"pen_width\" must lie between 0 and 100 mm"},
        {"add_shape",
         {{"kind", "rectangle"}, {"x", 0}, {"y", 0}, {"width", 0}, {"height", 1}},
         "argument \"width\" must be greater than 0 mm"},
        {"add_shape",
         {{"kind", "circle"}, {"cx", 0}, {"cy", 0}, {"radius", -2}},
         "argument \"radius\" must be greater than 0 mm"},
        {"add_shape",
         {{"kind", "polygon"}, {"points", {{{"x", 0}, {"y", 0}}, {{"x", 1}, {"y", 1}}}}},
         "argument \"points\": a polygon needs at least 3 points"},
        {"add_shape",
         {{"kind", "polyline"}, {"points", {{{"x", 0}, {"y", 0}}, {{"x", 1}}}}},
         "missing required argument \"points[1].y\""},
        {"add_shape",
         {{"kind", "bezier"},
          {"points",
           {{{"x", 0}, {"y", 0}},
            {{"x", 1}, {"y", 1}},
            {{"x", 2}, {"y", 1}},
            {{"x", 3}, {"y", 0}},
            {{"x", 4}, {"y", 0}}}}},
         "a Bézier curve takes 1 + 3n points (start, then two control points and an end point per segment); "
         "got 5"},
        {"add_shape",
         {{"kind", "sector"}, {"cx", 0}, {"cy", 0}, {"radius", 1}, {"sweep_angle", 400}},
         "argument \"sweep_angle\" must be at most 360, got 400"},
        {"add_flow", {{"x", 0}, {"y", 0}, {"shape", "cloud"}}, ""},
        {"add_link", {{"from_id", 1}}, "give exactly one of \"to_id\" or \"to_name\""},
        {"add_link", {{"from_id", 1}, {"to_id", 1}}, "a link joins two different elements; both ends are A"},
        {"add_link",
         {{"from_id", 1}, {"to_name", "L"}},
         "the to item L is a line, not a flow element; links join flow elements"},
        {"add_link", {{"from_id", 7}, {"to_name", "A"}}, "argument \"from_id\": no item has the id 7"},
        {"add_link", {{"from_id", 1}, {"to_name", "Z"}}, "argument \"to_name\": no item is named \"Z\""},
        {"modify_item",
         {{"name", "L"}, {"text", "x"}},
         "argument \"text\" applies to flow elements, texts, arrow lines and dimensions; L is a line"},
        {"modify_item", {{"name", "A"}}, "nothing to change: give at least one property"},
        {"modify_item",
         {{"name", "A"}, {"x", 1}, {"dx", 1}},
         "give either x and y (move to) or dx and dy (move by), not both"},
        {"modify_item",
         {{"name", "L"}, {"width", 3}},
         "argument \"width\" applies to box items (flow, rectangle, text...); L is a line"},
        {"modify_item",
         {{"name", "L"}, {"points", {{{"x", 0}, {"y", 0}}, {{"x", 1}, {"y", 1}}, {{"x", 2}, {"y", 2}}}}},
         "L has 2 points; give exactly that many, got 3"},
        {"modify_item", {{"name", "L"}, {"new_name", "A"}}, "the name \"A\" is taken by the item at index 0"},
        {"delete_item", {{"index", 2}}, "no item at index 2: indexes run from 0 to 1"},
        {"delete_item", {{"index", -1}}, "argument \"index\" must be at least 0, got -1"},
    };
    const std::string before = fDoc.GetJsonString();
    const std::size_t undo = fDoc.UndoCount();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Tool + " " + c.Args.dump());
        const std::string message = Refused(c.Tool, c.Args);
        if (!c.Message.empty()) {
            EXPECT_EQ(message, c.Message);
        }
        EXPECT_EQ(fDoc.GetJsonString(), before);
        EXPECT_EQ(fDoc.UndoCount(), undo);
    }
}

TEST_F(ItemToolsTest, ModifyItemChangesOnlyWhatIsGivenAndUndoesAsOneStep) {
    Ok("add_flow", {{"x", 10}, {"y", 10}, {"width", 20}, {"height", 10}, {"text", "Old"}});
    const std::string before = fDoc.GetJsonString();
    const TJSON changed = Ok("modify_item", {{"index", 0},
                                             {"text", "New"},
                                             {"dx", 5},
                                             {"height", 14},
                                             {"fill_color", "#FFFF00"},
                                             {"new_name", "Box"}});
    EXPECT_EQ(changed["name"], "Box");
    EXPECT_EQ(changed["x"], 15.0);
    EXPECT_EQ(changed["width"], 20.0);
    EXPECT_EQ(changed["height"], 14.0);
    const TJSON json = fDoc.GetItem(0)->WriteJson();
    EXPECT_EQ(json["Text"], "New");
    EXPECT_EQ(json["Filled"], true);
    const std::string after = fDoc.GetJsonString();

    EXPECT_EQ(Ok("undo")["undone"], 1);
    EXPECT_EQ(fDoc.GetJsonString(), before);
    EXPECT_EQ(Ok("redo")["redone"], 1);
    EXPECT_EQ(fDoc.GetJsonString(), after);
}

TEST_F(ItemToolsTest, LinksFollowAnElementThatMovesAndUndoMovesThemBack) {
    const TJSON a = Ok("add_flow", {{"x", 0}, {"y", 0}, {"width", 20}, {"height", 10}});
    const TJSON b = Ok("add_flow", {{"x", 0}, {"y", 40}, {"width", 20}, {"height", 10}});
    const TJSON link = Ok("add_link", {{"from_id", a["id"]}, {"to_id", b["id"]}});
    EXPECT_EQ((TJSON{link["x"], link["y"], link["width"], link["height"]}), (TJSON{10.0, 10.0, 0.0, 30.0}));
    const std::string before = fDoc.GetJsonString();
    Ok("modify_item", {{"id", b["id"]}, {"x", 40}});
    EXPECT_GE(Ok("get_item", {{"id", link["id"]}})["width"].get<double>(), 20.0);  // it reaches over to b
    Ok("undo");
    EXPECT_EQ(Ok("get_item", {{"id", link["id"]}})["width"], 0.0);
    EXPECT_EQ(fDoc.GetJsonString(), before);
}

TEST_F(ItemToolsTest, TextsSizeThemselvesAndTakeTheirFont) {
    const TJSON text = Ok("add_shape", {{"kind", "text"},
                                        {"x", 5},
                                        {"y", 6},
                                        {"text", "Hello"},
                                        {"font_height", 7},
                                        {"bold", true},
                                        {"text_color", "#FF0000"}});
    EXPECT_GT(text["width"].get<double>(), 7.0);
    EXPECT_GT(text["height"].get<double>(), 6.0);
    const TJSON json = fDoc.GetItem(0)->WriteJson();
    EXPECT_EQ(json["FontHeight"], 7.0);
    EXPECT_EQ(json["Bold"], true);
    EXPECT_EQ(TJSONUtils::GetColor(json, "FontColor"), 0xFFFF0000u);
    Ok("add_flow", {{"x", 0}, {"y", 0}, {"text", "F"}, {"font_height", 5}});
    EXPECT_EQ(fDoc.GetItem(1)->WriteJson()["Font"]["FontHeight"], 5.0);
    EXPECT_EQ(fDoc.GetItem(1)->WriteJson()["Font"]["Name"], "Arial");  // the rest of the font stays
    Ok("modify_item", {{"index", 1}, {"text", "G"}});
    EXPECT_EQ(fDoc.GetItem(1)->WriteJson()["Text"], "G");
}

TEST_F(ItemToolsTest, DeletingAnElementTakesItsLinksAndUndoBringsThemBack) {
    const TJSON a = Ok("add_flow", {{"x", 0}, {"y", 0}});
    const TJSON b = Ok("add_flow", {{"x", 0}, {"y", 40}});
    const TJSON c = Ok("add_flow", {{"x", 40}, {"y", 40}});
    Ok("add_link", {{"from_id", a["id"]}, {"to_id", b["id"]}});
    Ok("add_link", {{"from_id", b["id"]}, {"to_id", c["id"]}});
    Ok("add_link", {{"from_id", a["id"]}, {"to_id", c["id"]}});
    const std::string before = fDoc.GetJsonString();
    const TJSON deleted = Ok("delete_item", {{"id", b["id"]}});
    EXPECT_EQ(deleted["deleted"].size(), 3u);
    EXPECT_EQ(deleted["items_count"], 3);
    Ok("undo");
    EXPECT_EQ(fDoc.GetJsonString(), before);
}

TEST_F(ItemToolsTest, UndoAndRedoWalkTheToolCallsBackAndForth) {
    const std::string empty = fDoc.GetJsonString();
    Ok("add_shape", {{"kind", "circle"}, {"cx", 5}, {"cy", 5}, {"radius", 1}});
    const std::string one = fDoc.GetJsonString();
    Ok("add_shape", {{"kind", "line"}, {"x1", 0}, {"y1", 0}, {"x2", 1}, {"y2", 1}});
    const std::string two = fDoc.GetJsonString();

    TJSON state = Ok("undo", {{"steps", 5}});
    EXPECT_EQ(state["undone"], 2);
    EXPECT_EQ(state["can_undo"], false);
    EXPECT_EQ(state["can_redo"], true);
    EXPECT_EQ(fDoc.GetJsonString(), empty);
    EXPECT_EQ(Ok("undo")["undone"], 0);
    Ok("redo");
    EXPECT_EQ(fDoc.GetJsonString(), one);
    Ok("redo");
    EXPECT_EQ(fDoc.GetJsonString(), two);
    EXPECT_EQ(Refused("undo", {{"steps", 0}}), "argument \"steps\" must be at least 1, got 0");
}

TEST_F(ItemToolsTest, ClearDrawingRemovesItemsAndOptionallyResets) {
    Ok("add_layer", {{"name", "Extra"}});
    Ok("add_shape", {{"kind", "circle"}, {"cx", 5}, {"cy", 5}, {"radius", 1}});
    EXPECT_EQ(Ok("clear_drawing")["removed_items"], 1);
    EXPECT_EQ(fDoc.GetItemsCount(), 0);
    EXPECT_EQ(fDoc.GetLayersCount(), 2);
    EXPECT_EQ(Ok("clear_drawing", {{"reset", true}})["layers_count"], 1);
}

TEST_F(ItemToolsTest, BeginAndEndUpdateBracketABatch) {
    Ok("begin_update");
    EXPECT_TRUE(fDoc.HasState(TOrvexState::lsUpdating));
    Ok("end_update");
    EXPECT_FALSE(fDoc.HasState(TOrvexState::lsUpdating));
    Ok("end_update");  // a second close is harmless
}

}  // namespace
}  // namespace Orvex::Testing
