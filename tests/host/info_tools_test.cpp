// The reading tools, setup_drawing and the catalogue as a client sees it.
#include <gtest/gtest.h>

#include "orvex/agent/mcp_tools.h"
#include "tests/host/tool_test_support.h"

namespace Orvex::Testing {
namespace {

using InfoToolsTest = ToolsTest;

TEST_F(InfoToolsTest, CatalogueListsEveryToolWithAClosedSchemaAndADescription) {
    const auto response =
        fServer.ProcessJsonRpc({{"jsonrpc", "2.0"}, {"id", 1}, {"method", "tools/list"}}, false);
    ASSERT_TRUE(response.has_value());
    std::vector<std::string> names;
    for (const auto& tool : (*response)["result"]["tools"]) {
        names.push_back(tool["name"]);
        SCOPED_TRACE(names.back());
        EXPECT_GT(tool["description"].get<std::string>().size(), 40u);
        EXPECT_EQ(tool["inputSchema"]["type"], "object");
        EXPECT_EQ(tool["inputSchema"]["additionalProperties"], false);
    }
    for (const char* expected : {"get_drawing_info",
                                 "list_items",
                                 "get_item",
                                 "list_layers",
                                 "setup_drawing",
                                 "add_flow",
                                 "add_link",
                                 "add_shape",
                                 "add_layer",
                                 "modify_item",
                                 "modify_layer",
                                 "delete_item",
                                 "clear_drawing",
                                 "load_drawing",
                                 "save_drawing",
                                 "load_diagram",
                                 "export_document",
                                 "begin_update",
                                 "end_update",
                                 "undo",
                                 "redo"})
        EXPECT_NE(std::find(names.begin(), names.end(), expected), names.end()) << expected;
}

TEST_F(InfoToolsTest, StructuredResultsMatchTheirOutputSchemaAndRepeatAsText) {
    Ok("add_flow", {{"x", 10}, {"y", 10}, {"text", "A"}});
    for (const char* tool : {"get_drawing_info", "list_items", "list_layers"}) {
        SCOPED_TRACE(tool);
        const TJSON result = Call(tool);
        const TJSON schema = BuildToolOutputSchema(tool);
        for (const auto& key : schema["required"])
            EXPECT_TRUE(result["structuredContent"].contains(key)) << key;
        for (const auto& [key, property] : schema["properties"].items()) {
            const auto& value = result["structuredContent"][key];
            const std::string type = property["type"];
            if (type == "string") {
                EXPECT_TRUE(value.is_string()) << key;
            }
            if (type == "integer") {
                EXPECT_TRUE(value.is_number_integer()) << key;
            }
            if (type == "array") {
                EXPECT_TRUE(value.is_array()) << key;
            }
            if (type == "object") {
                EXPECT_TRUE(value.is_object()) << key;
            }
        }
        EXPECT_EQ(TJSON::parse(Text(result)), result["structuredContent"]);
    }
}

TEST_F(InfoToolsTest, DrawingInfoSpeaksInTheCurrentUnits) {
    Ok("setup_drawing",
       {{"mode", "drawing"}, {"units", "cm"}, {"width", 30}, {"height", 20}, {"draw_scale", 50}});
    const TJSON info = Ok("get_drawing_info");
    EXPECT_EQ(info["units"], "cm");
    EXPECT_EQ(info["editor_mode"], "drawing");
    EXPECT_EQ(info["draw_scale"], 50);
    EXPECT_EQ(info["paper"], (TJSON{{"name", "User"}, {"width", 30.0}, {"height", 20.0}}));
    EXPECT_EQ(fDoc.Measure().fLabelWidth, 300000);
}

TEST_F(InfoToolsTest, SetupDrawingTakesNamedPapersTurnedOrNot) {
    Ok("setup_drawing", {{"paper", "a4"}, {"landscape", true}});
    EXPECT_EQ(fDoc.Measure().fLabelWidth, 297000);
    EXPECT_EQ(fDoc.Measure().fLabelHeight, 210000);
    EXPECT_EQ(fDoc.Measure().fPaperName, "A4");
    EXPECT_EQ(Ok("get_drawing_info")["paper"], (TJSON{{"name", "A4"}, {"width", 297.0}, {"height", 210.0}}));
}

TEST_F(InfoToolsTest, SetupDrawingRefusalsChangeNothing) {
    struct Case {
        TJSON Args;
        std::string Message;
    };
    const Case cases[] = {
        {{{"units", "m"}},
         "units \"m\" are only available in drawing mode; use mm, inch or cm, or set mode \"drawing\""},
        {{{"draw_scale", 20}}, "draw_scale applies to drawing mode only; set mode \"drawing\" as well"},
        {{{"mode", "drawing"}, {"draw_scale", 0}}, "argument \"draw_scale\" must be at least 1, got 0"},
        {{{"mode", "sketch"}},
         "argument \"mode\" must be one of \"labelling\", \"flowchart\" or \"drawing\"; got \"sketch\""},
        {{{"width", -5}}, "argument \"width\" must be greater than 0 and at most 1e+08 mm"},
        {{{"paper", "A99"}, {"mode", "flowchart"}}, ""},
        {{{"paper", "A4"}, {"width", 10}}, "give either \"paper\" or \"width\" and \"height\", not both"},
        {{{"units", 3}}, "argument \"units\" must be a string"},
        {{{"colour", "#FF0000"}}, ""},
    };
    const std::string before = fDoc.GetJsonString();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Args.dump());
        const std::string message = Refused("setup_drawing", c.Args);
        if (!c.Message.empty()) {
            EXPECT_EQ(message, c.Message);
        }
        EXPECT_EQ(fDoc.GetJsonString(), before);
    }
    EXPECT_EQ(fDoc.EditorMode(), TQVLEditorMode::emLabelling);
}

TEST_F(InfoToolsTest, ListItemsPagesAndFilters) {
    Ok("add_layer", {{"name", "Shapes"}});
    for (int i = 0; i < 7; ++i)
        Ok("add_shape", {{"kind", "circle"}, {"cx", 10 * i + 5}, {"cy", 5}, {"radius", 2}});
    Ok("modify_layer", {{"layer", 1}, {"active", true}});
    for (int i = 0; i < 3; ++i)
        Ok("add_shape", {{"kind", "line"}, {"x1", 0}, {"y1", i}, {"x2", 9}, {"y2", i}});

    TJSON page = Ok("list_items", {{"offset", 2}, {"limit", 4}});
    EXPECT_EQ(page["total"], 10);
    ASSERT_EQ(page["items"].size(), 4u);
    EXPECT_EQ(page["items"][0]["index"], 2);
    EXPECT_EQ(page["next_offset"], 6);
    EXPECT_EQ(page["items"][0]["x"], 23.0);
    EXPECT_EQ(page["items"][0]["width"], 4.0);

    page = Ok("list_items", {{"layer", 2}, {"offset", 5}});
    EXPECT_EQ(page["total"], 7);
    ASSERT_EQ(page["items"].size(), 2u);
    EXPECT_TRUE(page["next_offset"].is_null());

    page = Ok("list_items", {{"kind", "line"}});
    EXPECT_EQ(page["total"], 3);
    for (const auto& item : page["items"]) EXPECT_EQ(item["layer"], 1);

    EXPECT_EQ(Ok("list_items", {{"offset", 50}})["items"].size(), 0u);
    EXPECT_EQ(Refused("list_items", {{"layer", 3}}), "no layer 3: layers are numbered from 1 to 2");
    EXPECT_EQ(Refused("list_items", {{"limit", 501}}), "argument \"limit\" must be at most 500, got 501");
    EXPECT_EQ(Refused("list_items", {{"kind", "blob"}}).substr(0, 28), "argument \"kind\" must be one ");
}

TEST_F(InfoToolsTest, GetItemByIndexNameOrId) {
    const TJSON added = Ok("add_flow", {{"x", 10}, {"y", 20}, {"text", "Start"}, {"name", "Begin"}});
    for (const TJSON& selector :
         {TJSON{{"index", 0}}, TJSON{{"name", "begin"}}, TJSON{{"id", added["id"]}}}) {
        SCOPED_TRACE(selector.dump());
        const TJSON item = Ok("get_item", selector);
        EXPECT_EQ(item["name"], "Begin");
        EXPECT_EQ(item["properties"]["text"], "Start");
    }
    EXPECT_EQ(Refused("get_item", {{"index", 1}}), "no item at index 1: indexes run from 0 to 0");
    EXPECT_EQ(Refused("get_item", {{"name", "End"}}), "no item is named \"End\"");
    EXPECT_EQ(Refused("get_item", {{"id", 99}}), "no item has the id 99");
    EXPECT_EQ(Refused("get_item", TJSON::object()),
              "name the item with exactly one of \"index\", \"name\" or \"id\"");
    EXPECT_EQ(Refused("get_item", {{"index", 0}, {"name", "Begin"}}),
              "name the item with exactly one of \"index\", \"name\" or \"id\"");
    EXPECT_EQ(Refused("get_item", {{"index", "0"}}), "argument \"index\" must be an integer");
    EXPECT_EQ(Refused("get_item", {{"index", 0.5}}), "argument \"index\" must be an integer");
}

TEST_F(InfoToolsTest, LayersAreAddedActivatedAndModified) {
    const TJSON layer = Ok("add_layer", {{"name", "Notes"}, {"color", "#80FF0000"}});
    EXPECT_EQ(layer["index"], 2);
    EXPECT_EQ(layer["active"], true);
    EXPECT_EQ(layer["color"], "#80FF0000");
    Ok("add_shape", {{"kind", "line"}, {"x1", 0}, {"y1", 0}, {"x2", 1}, {"y2", 1}});
    Ok("modify_layer", {{"layer", 1}, {"visible", false}, {"active", true}, {"name", "Base"}});
    const TJSON layers = Ok("list_layers")["layers"];
    ASSERT_EQ(layers.size(), 2u);
    EXPECT_EQ(layers[0]["name"], "Base");
    EXPECT_EQ(layers[0]["visible"], false);
    EXPECT_EQ(layers[0]["active"], true);
    EXPECT_EQ(layers[1]["items_count"], 1);
    EXPECT_EQ(Refused("modify_layer", {{"layer", 0}}), "argument \"layer\" must be at least 1, got 0");
    EXPECT_EQ(Refused("modify_layer", {{"layer", 9}, {"name", "X"}}),
              "no layer 9: layers are numbered from 1 to 2");
    EXPECT_EQ(Refused("modify_layer", {{"layer", 1}, {"name", " "}}), "argument \"name\" must not be empty");
    EXPECT_EQ(Refused("add_layer", {{"color", "red"}}),
              "argument \"color\" must be a colour \"#RRGGBB\" or \"#AARRGGBB\"; got \"red\"");
    EXPECT_EQ(fDoc.GetLayersCount(), 2);
}

}  // namespace
}  // namespace Orvex::Testing
