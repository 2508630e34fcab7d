// The catalogue an agent reads first: complete, and guarded against growing further.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "host/tools/register_tools.h"
#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"
#include "tests/host/tool_test_support.h"

namespace Orvex::Testing {
namespace {

TJSON ToolsList(const Host::TToolOptions& aOptions) {
    TORXMCPServer server;
    Host::RegisterStandardTools(server, aOptions);
    const auto response =
        server.ProcessJsonRpc({{"jsonrpc", "2.0"}, {"id", 1}, {"method", "tools/list"}}, false);
    return response ? (*response)["result"] : TJSON();
}

TEST(ToolCatalogue, EverySchemaIsCompleteAndTheListStaysSmall) {
    for (const bool files : {false, true}) {
        SCOPED_TRACE(files ? "with a files folder" : "inline");
        Host::TToolOptions options;
        if (files) options.FilesRoot = std::filesystem::temp_directory_path();
        const TJSON list = ToolsList(options);
        // Clients read the whole list into the model's context, often a small one.
        EXPECT_LE(DumpCompact(list).size(), 25'000U);
        std::set<std::string> names;
        for (const auto& tool : list["tools"]) {
            const std::string name = tool["name"];
            SCOPED_TRACE(name);
            EXPECT_TRUE(names.insert(name).second);
            EXPECT_FALSE(tool.value("description", "").empty());
            const TJSON& input = tool["inputSchema"];
            EXPECT_EQ(input["type"], "object");
            EXPECT_EQ(input["additionalProperties"], false);
            for (const auto& [key, property] : input["properties"].items())
                EXPECT_TRUE(property.contains("type")) << key;
            for (const auto& key : input.value("required", TJSON::array()))
                EXPECT_TRUE(input["properties"].contains(key.get<std::string>())) << key;
            if (tool.contains("outputSchema")) {
                EXPECT_EQ(tool["outputSchema"]["type"], "object");
            }
        }
        for (const auto* tool : {"add_flow", "add_link", "add_shape", "add_items", "align_items",
                                 "distribute_items", "duplicate_items", "undo", "redo"})
            EXPECT_TRUE(names.contains(tool)) << tool;
    }
}

// Every tool once, as an agent would call it: a tool that answers with structured content declares an
// output schema and the content matches it (Ok checks both), and no tool is left out.
class ToolCatalogueCalls : public ToolsTest {};

TEST_F(ToolCatalogueCalls, EveryToolWithStructuredContentDeclaresItsShape) {
    std::set<std::string> called;
    const auto ok = [&](const std::string& aName, TJSON aArgs = TJSON::object()) {
        called.insert(aName);
        return Ok(aName, std::move(aArgs));
    };
    ok("get_drawing_info");
    ok("setup_drawing", {{"units", "mm"}});
    const auto a = ok("add_flow", {{"x", 0}, {"y", 0}, {"text", "A"}})["id"];
    const auto b = ok("add_flow", {{"x", 0}, {"y", 40}, {"text", "B"}})["id"];
    ok("add_link", {{"from_id", a}, {"to_id", b}});
    ok("add_shape", {{"kind", "rectangle"}, {"x", 60}, {"y", 0}, {"width", 5}, {"height", 5}});
    ok("add_items", {{"items", {{{"kind", "circle"}, {"cx", 80}, {"cy", 5}, {"radius", 2}}}}});
    ok("list_items");
    ok("get_item", {{"id", a}});
    ok("modify_item", {{"id", a}, {"dx", 1}});
    ok("align_items", {{"ids", {a, b}}, {"align", "left"}});
    ok("distribute_items", {{"ids", {a, b}}, {"direction", "vertical"}, {"gap", 5}});
    ok("duplicate_items", {{"ids", {a}}});
    const auto group = ok("group_items", {{"ids", {a, b}}, {"title", "G"}})["id"];
    ok("ungroup_items", {{"id", group}});
    ok("add_layer", {{"name", "Two"}});
    ok("modify_layer", {{"layer", 2}, {"visible", true}});
    ok("list_layers");
    ok("begin_update");
    ok("end_update");
    ok("undo");
    ok("redo");
    ok("render_preview", {{"max_side", 200}});
    ok("export_document", {{"format", "svg"}});
    ok("save_drawing");
    ok("load_drawing", {{"json", fDoc.GetJsonString()}});
    // Without a layout installed the load is refused, and still answers in its declared shape.
    called.insert("load_diagram");
    const TJSON refused = Call("load_diagram", {{"text", "graph TD\n  A --> B"}});
    ExpectMatches("load_diagram", BuildToolOutputSchema("load_diagram"), refused["structuredContent"]);
    ok("delete_item", {{"index", 0}});
    ok("clear_drawing");
    for (const auto& tool : fServer.Tools())
        EXPECT_TRUE(called.contains(tool.Name)) << tool.Name << " not called";
}

TEST(ToolCatalogue, ExactlyOneOfRulesAreStated) {
    const TJSON list = ToolsList({});
    const auto tool = [&](const std::string& aName) {
        for (const auto& t : list["tools"])
            if (t["name"] == aName) return t;
        return TJSON();
    };
    const TJSON oneOfItem =
        TJSON::parse(R"([{"required":["index"]},{"required":["name"]},{"required":["id"]}])");
    for (const auto* name : {"get_item", "modify_item", "delete_item"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(tool(name)["inputSchema"]["oneOf"], oneOfItem);
    }
    const TJSON link = tool("add_link")["inputSchema"];
    EXPECT_EQ(link["allOf"][0]["oneOf"],
              TJSON::parse(R"([{"required":["from_id"]},{"required":["from_name"]}])"));
    EXPECT_EQ(link["allOf"][1]["oneOf"],
              TJSON::parse(R"([{"required":["to_id"]},{"required":["to_name"]}])"));
}

}  // namespace
}  // namespace Orvex::Testing
