// The catalogue an agent reads first: complete, and guarded against growing further.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "host/tools/register_tools.h"
#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"

namespace Orvex::Testing {
namespace {

TJSON ToolsList(const Host::TToolOptions& aOptions) {
    TORXMCPServer server;
    Host::RegisterStandardTools(server, aOptions);
    const auto response =
        server.ProcessJsonRpc({{"jsonrpc", "2.0"}, {"id", 1}, {"method", "tools/list"}}, false);
    return response ? (*response)["result"] : TJSON();
}

TEST(ToolCatalogue, EverySchemaIsCompleteAndTheListDoesNotGrow) {
    for (const bool files : {false, true}) {
        SCOPED_TRACE(files ? "with a files folder" : "inline");
        Host::TToolOptions options;
        if (files) options.FilesRoot = std::filesystem::temp_directory_path();
        const TJSON list = ToolsList(options);
        // Each tool states its full input schema, annotations and output schema on its own.
        EXPECT_LE(DumpCompact(list).size(), 56U * 1024U);
        std::set<std::string> names;
        for (const auto& tool : list["tools"]) {
            const std::string name = tool["name"];
            SCOPED_TRACE(name);
            EXPECT_TRUE(names.insert(name).second);
            EXPECT_FALSE(tool.value("description", "").empty());
            const TJSON& input = tool["inputSchema"];
            EXPECT_EQ(input["type"], "object");
            EXPECT_TRUE(input.contains("properties"));
            for (const auto& [key, property] : input["properties"].items())
                EXPECT_TRUE(property.contains("type")) << key;
            for (const auto& key : input.value("required", TJSON::array()))
                EXPECT_TRUE(input["properties"].contains(key.get<std::string>())) << key;
            // Every tool answers with structured content, so every tool declares its shape.
            ASSERT_TRUE(tool.contains("outputSchema"));
            const TJSON& output = tool["outputSchema"];
            EXPECT_EQ(output["type"], "object");
            for (const auto& key : output.value("required", TJSON::array()))
                EXPECT_TRUE(output["properties"].contains(key.get<std::string>())) << key;
        }
        for (const auto* tool : {"add_items", "align_items", "distribute_items", "duplicate_items"})
            EXPECT_TRUE(names.contains(tool)) << tool;
    }
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
