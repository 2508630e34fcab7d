#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/agent/mcp_tools.h"
#include "tests/agent/mcp_test_support.h"

using namespace Orvex;
using namespace Orvex::Testing;

namespace {

class MCPJsonRpc : public ::testing::Test {
  protected:
    MCPJsonRpc() {
        fServer.SetLabel(FakeLabel());
        fServer.SetDocumentHooks({[this](TORXBaseLabel& aLabel) {
                                      EXPECT_EQ(&aLabel, FakeLabel());
                                      fHookCalls.push_back("EndUpdate");
                                  },
                                  [this](TORXBaseLabel&) { fHookCalls.push_back("Refresh"); }});
    }

    void AddTool(const std::string& aName, TJSON aSchema = nullptr) {
        fServer.RegisterTool(aName, "does " + aName, std::move(aSchema),
                             [this, aName](TORXBaseLabel&, const TJSON& aArgs) {
                                 fHookCalls.push_back("run " + aName + " " + aArgs.dump());
                                 return TextResult(aName);
                             });
    }

    TJSON Call(const TJSON& aRequest, bool aModern = false) {
        const auto response = fServer.ProcessJsonRpc(aRequest, aModern);
        return response ? *response : TJSON("none");
    }

    TORXMCPServer fServer;
    std::vector<std::string> fHookCalls;
};

TEST_F(MCPJsonRpc, EnvelopeErrors) {
    EXPECT_EQ(
        Call({{"jsonrpc", "1.0"}, {"method", "ping"}}).dump(),
        R"({"jsonrpc":"2.0","id":null,"error":{"code":-32600,"message":"Invalid or missing jsonrpc version"}})");
    EXPECT_EQ(Call({{"id", 3}, {"method", "ping"}})["error"]["code"], -32600);
    EXPECT_EQ(Call({{"jsonrpc", "2.0"}, {"id", {1, 2}}})["error"]["message"], "Missing method");
    EXPECT_EQ(Call({{"jsonrpc", "2.0"}, {"id", {1, 2}}})["id"], TJSON({1, 2}));
    EXPECT_EQ(Call({{"jsonrpc", "2.0"}, {"method", ""}}), "none");
    EXPECT_EQ(Call({{"jsonrpc", "2.0"}, {"method", "no/such"}}), "none");
    EXPECT_EQ(Call(Rpc("no/such"))["error"]["message"], "Method not found: no/such");
}

TEST_F(MCPJsonRpc, DispatchDependsOnTheProtocolGeneration) {
    struct TCase {
        const char* Method;
        bool Modern;
        const char* Outcome;  // "result", "not found" or "none"
    };
    const std::vector<TCase> cases = {
        {"server/discover", false, "not found"},
        {"server/discover", true, "result"},
        {"initialize", false, "result"},
        {"initialize", true, "not found"},
        {"ping", false, "result"},
        {"ping", true, "not found"},
        {"tools/list", true, "result"},
        {"resources/list", true, "result"},
        {"Tools/List", false, "not found"},
        {"notifications/initialized", true, "none"},
        {"notifications/cancelled", false, "none"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.Method) + (c.Modern ? " modern" : " older"));
        const auto response = Call(Rpc(c.Method), c.Modern);
        if (std::string(c.Outcome) == "none") {
            EXPECT_EQ(response, "none");
        } else if (std::string(c.Outcome) == "not found") {
            EXPECT_EQ(response["error"]["message"], std::string("Method not found: ") + c.Method);
        } else {
            EXPECT_TRUE(response["result"].is_object());
        }
    }
    EXPECT_FALSE(fServer.Initialized());  // the modern generation keeps no state
    Call({{"jsonrpc", "2.0"}, {"method", "notifications/initialized"}});
    EXPECT_TRUE(fServer.Initialized());
}

TEST_F(MCPJsonRpc, InitializeAgreesAnOlderVersionOnly) {
    const auto before = fServer.SessionId();
    EXPECT_EQ(before.size(), 38u);
    EXPECT_EQ(before.front(), '{');
    const auto modern = Call(Rpc("initialize", {{"protocolVersion", "2026-07-28"}}));
    EXPECT_EQ(modern["result"]["protocolVersion"], "2025-11-25");
    EXPECT_NE(fServer.SessionId(), before);
    const auto older = Call(Rpc("initialize", {{"protocolVersion", "2024-11-05"}}));
    EXPECT_EQ(fServer.ProtocolVersion(), "2024-11-05");
    const auto& result = older["result"];
    std::vector<std::string> keys;
    for (const auto& item : result.items()) keys.push_back(item.key());
    EXPECT_EQ(keys,
              (std::vector<std::string>{"protocolVersion", "serverInfo", "capabilities", "instructions"}));
    EXPECT_EQ(result["serverInfo"].dump(), R"({"name":"Orvex-mcp","version":"1.0.0"})");
    EXPECT_EQ(result["capabilities"].dump(), R"({"tools":{"listChanged":false}})");
    EXPECT_EQ(result["instructions"], DefaultInstructions());
}

TEST_F(MCPJsonRpc, ModernResultsAreDecorated) {
    AddTool("list_items");
    const auto list = Call(Rpc("tools/list"), true)["result"];
    EXPECT_EQ(list["resultType"], "complete");
    EXPECT_EQ(list["_meta"].dump(),
              R"({"io.modelcontextprotocol/serverInfo":{"name":"Orvex-mcp","version":"1.0.0"}})");
    EXPECT_EQ(list["ttlMs"], 300000);
    EXPECT_EQ(list["cacheScope"], "private");

    const auto discover = Call(Rpc("server/discover"), true)["result"];
    EXPECT_EQ(discover["supportedVersions"].dump(),
              R"(["2026-07-28","2025-11-25","2025-06-18","2025-03-26","2024-11-05"])");
    EXPECT_EQ(discover["ttlMs"], 300000);

    const auto call = Call(Rpc("tools/call", {{"name", "list_items"}}), true)["result"];
    EXPECT_EQ(call["resultType"], "complete");
    EXPECT_TRUE(call.contains("_meta"));
    EXPECT_FALSE(call.contains("ttlMs"));

    const auto error = Call(Rpc("ping"), true);
    EXPECT_FALSE(error.contains("result"));
    EXPECT_EQ(error["error"].size(), 2u);

    EXPECT_FALSE(Call(Rpc("tools/list"))["result"].contains("resultType"));
}

TEST_F(MCPJsonRpc, ToolsListDescribesEachToolInRegistrationOrder) {
    AddTool("get_drawing_info");
    AddTool("add_flow", {{"type", "object"}, {"properties", {{"x", {{"type", "number"}}}}}});
    const auto tools = Call(Rpc("tools/list"))["result"]["tools"];
    ASSERT_EQ(tools.size(), 2u);
    EXPECT_EQ(
        tools[0].dump(),
        R"({"name":"get_drawing_info","title":"Get Drawing Info","description":"does get_drawing_info",)"
        R"("inputSchema":{"type":"object"},"annotations":{"title":"Get Drawing Info","readOnlyHint":true,)"
        R"("destructiveHint":false,"idempotentHint":true,"openWorldHint":false},"outputSchema":{"type":"object",)"
        R"("properties":{"units":{"type":"string"},"editor_mode":{"type":"string"},"items_count":{"type":)"
        R"("integer"},"layers_count":{"type":"integer"},"selection_count":{"type":"integer"},"paper":)"
        R"({"type":"object"}},"required":["units","editor_mode","items_count","layers_count",)"
        R"("selection_count","paper"]}})");
    EXPECT_EQ(tools[1]["inputSchema"]["properties"]["x"]["type"], "number");
    EXPECT_FALSE(tools[1].contains("outputSchema"));
}

TEST_F(MCPJsonRpc, ToolsCallFailures) {
    AddTool("get_drawing_info");
    EXPECT_EQ(Call(Rpc("tools/call"))["error"].dump(), R"({"code":-32602,"message":"Missing params"})");
    EXPECT_EQ(Call(Rpc("tools/call", {{"name", ""}}))["error"]["message"], "Missing tool name");
    EXPECT_EQ(Call(Rpc("tools/call", {{"name", "nope"}}))["error"]["message"], "Unknown tool: nope");

    fServer.Notification(FakeLabel());
    EXPECT_EQ(
        Call(Rpc("tools/call", {{"name", "nope"}}))["result"].dump(),
        R"({"content":[{"type":"text","text":"Error: No DrawLabel assigned to MCP server"}],"isError":true})");
}

TEST_F(MCPJsonRpc, ToolsCallRunsTheFirstMatchAndClosesTheUpdateAfterChanges) {
    AddTool("get_drawing_info");
    AddTool("setup_drawing");
    AddTool("set_image_folder");
    fServer.RegisterTool("SETUP_DRAWING", "", nullptr, [](TORXBaseLabel&, const TJSON&) -> TJSON {
        throw std::logic_error("a later duplicate is never reached");
    });

    const auto read = Call(Rpc("tools/call", {{"name", "Get_Drawing_Info"}, {"arguments", "not an object"}}));
    EXPECT_EQ(read["result"], TextResult("get_drawing_info"));
    EXPECT_EQ(fHookCalls, std::vector<std::string>{"run get_drawing_info {}"});

    fHookCalls.clear();
    Call(Rpc("tools/call", {{"name", "setup_drawing"}, {"arguments", {{"mode", "flowchart"}}}}));
    EXPECT_EQ(fHookCalls, (std::vector<std::string>{R"(run setup_drawing {"mode":"flowchart"})", "EndUpdate",
                                                    "Refresh"}));

    fHookCalls.clear();
    Call(Rpc("tools/call", {{"name", "set_image_folder"}}));
    EXPECT_EQ(fHookCalls, std::vector<std::string>{"run set_image_folder {}"});
}

TEST_F(MCPJsonRpc, ThrowingToolGivesAnErrorResult) {
    fServer.RegisterTool("add_flow", "", nullptr, [](TORXBaseLabel&, const TJSON&) -> TJSON {
        throw std::invalid_argument("Unknown flow type: cloud");
    });
    const auto response = Call(Rpc("tools/call", {{"name", "add_flow"}}, "r1"));
    EXPECT_EQ(response.dump(), R"({"jsonrpc":"2.0","id":"r1","result":{"content":[{"type":"text","text":)"
                               R"("Error: Unknown flow type: cloud"}],"isError":true}})");
    EXPECT_TRUE(fHookCalls.empty());
}

TEST(MCPToolMetadata, TitlesFromNames) {
    EXPECT_EQ(ToolTitle("get_drawing_info"), "Get Drawing Info");
    EXPECT_EQ(ToolTitle("load_symbol_library"), "Load Symbol Library");
    EXPECT_EQ(ToolTitle("a.b-c__d"), "A B C  D");
    EXPECT_EQ(ToolTitle("xML_thing"), "XML Thing");
    EXPECT_EQ(ToolTitle(""), "");
}

TEST(MCPToolMetadata, HintsAndChangesFollowTheCatalogue) {
    struct TCase {
        const char* Name;
        bool Changes, ReadOnly, Destructive, Idempotent, OpenWorld;
    };
    const std::vector<TCase> cases = {
        {"get_drawing_info", false, true, false, true, false},
        {"RENDER_PREVIEW", false, true, false, true, false},
        {"setup_drawing", true, false, false, false, false},
        {"set_image_folder", false, false, false, true, false},
        {"SET_IMAGE_FOLDER", false, false, false, false, false},  // "set_" is a case-sensitive prefix
        {"set_paper", true, false, false, true, false},
        {"add_link", true, false, false, false, false},
        {"add_image", true, false, false, false, true},
        {"modify_layer", true, false, false, true, false},
        {"delete_item", true, false, true, false, false},
        {"load_diagram", true, false, true, false, false},
        {"load_drawing", true, false, true, false, true},
        {"create_symbol_library_from_image", true, false, false, false, true},
        {"save_drawing", false, false, false, false, true},
        {"end_update", false, false, false, true, false},
        {"custom_tool", false, false, false, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        EXPECT_EQ(ToolChangesDrawing(c.Name), c.Changes);
        const auto hints = BuildToolAnnotations(c.Name);
        EXPECT_EQ(hints["title"], ToolTitle(c.Name));
        EXPECT_EQ(hints["readOnlyHint"], c.ReadOnly);
        EXPECT_EQ(hints["destructiveHint"], c.Destructive);
        EXPECT_EQ(hints["idempotentHint"], c.Idempotent);
        EXPECT_EQ(hints["openWorldHint"], c.OpenWorld);
    }
}

TEST(MCPToolMetadata, OutputSchemas) {
    EXPECT_EQ(BuildToolOutputSchema("Get_Item").dump(), R"({"type":"object"})");
    EXPECT_EQ(
        BuildToolOutputSchema("load_diagram").dump(),
        R"({"type":"object","properties":{"loaded":{"type":"boolean"},"items_created":{"type":"integer"},)"
        R"("diagnostics":{"type":"array","items":{"type":"object"}}},"required":["loaded","items_created",)"
        R"("diagnostics"]})");
    EXPECT_EQ(BuildToolOutputSchema("list_layers")["required"], TJSON({"layers"}));
    EXPECT_EQ(BuildToolOutputSchema("render_preview")["required"],
              TJSON({"format", "scale", "item_count", "byte_size"}));
    EXPECT_EQ(BuildToolOutputSchema("render_preview")["properties"]["scale"]["type"], "number");
    EXPECT_TRUE(BuildToolOutputSchema("add_flow").is_null());
}

TEST(MCPToolMetadata, InstructionsAndVersions) {
    const auto& text = DefaultInstructions();
    EXPECT_TRUE(
        text.starts_with("Orvex drawing server. The canvas is a 2D drawing surface with three editor modes: "
                         "\"labelling\" (label/sticker design: texts, barcodes, QR, images, tables...), "));
    EXPECT_NE(text.find(" (e.g. 20 means 1:20). All coordinates"), std::string::npos);
    EXPECT_NE(
        text.find("Colors are \"#RRGGBB\" or \"#AARRGGBB\" strings. Item indexes are zero-based; layer"),
        std::string::npos);
    EXPECT_TRUE(text.ends_with("or read/write a file unless the user request authorizes that action."));
    EXPECT_EQ(text.size(), 1367u);

    TORXMCPServer server;
    EXPECT_EQ(server.EffectiveInstructions(), text);
    server.SetInstructions(" \t");
    EXPECT_EQ(server.EffectiveInstructions(), text);
    server.SetInstructions(" Draw boxes. ");
    EXPECT_EQ(server.EffectiveInstructions(), " Draw boxes. ");

    EXPECT_EQ(MCP_SUPPORTED_VERSIONS.size(), 5u);
    EXPECT_EQ(MCP_SUPPORTED_VERSIONS.front(), "2026-07-28");
    EXPECT_EQ(MCP_SUPPORTED_VERSIONS.back(), "2024-11-05");
}

void RegisterTwoTools(TORXMCPServer& aServer) {
    aServer.RegisterTool("list_items", "Lists", nullptr,
                         [](TORXBaseLabel&, const TJSON&) { return TextResult(""); });
    aServer.RegisterTool("add_flow", "Adds", {{"type", "object"}, {"required", {"x"}}},
                         [](TORXBaseLabel&, const TJSON&) { return TextResult(""); });
}

TEST(MCPToolRegistration, DefaultToolsComeFromTheHostProcedure) {
    MCPSetDefaultToolsRegistration(&RegisterTwoTools);
    TORXMCPServer server;
    EXPECT_EQ(server.ToolCount(), 0u);
    const auto definitions = server.BuildAIToolDefinitions();
    EXPECT_EQ(
        definitions.dump(),
        R"([{"name":"list_items","description":"Lists","input_schema":{"type":"object","properties":{},)"
        R"("additionalProperties":false}},{"name":"add_flow","description":"Adds","input_schema":)"
        R"({"type":"object","required":["x"]}}])");
    server.BuildAIToolDefinitions();  // registers only while there is no tool
    EXPECT_EQ(server.ToolCount(), 2u);

    MCPSetDefaultToolsRegistration(nullptr);
    TORXMCPServer bare;
    bare.RegisterDefaultTools();
    EXPECT_EQ(bare.ToolCount(), 0u);
}

}  // namespace
