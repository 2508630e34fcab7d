// MCP servers with tool sets and tool options of their own beside one on the process-wide registration,
// in one process: each lists its own tools and serves calls on its own document, at the same time.
#include <gtest/gtest.h>
#include <httplib.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "host/drawing_server.h"
#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/document/headless.h"
#include "orvex/items/flow_items.h"

namespace Orvex {
namespace {

namespace fs = std::filesystem;

void RegisterGlobalOnly(TORXMCPServer& aServer) {
    aServer.RegisterTool("global_only", "The process-wide registration's tool", nullptr,
                         [](TORXBaseLabel&, const TJSON&) { return MakeTextContent("global"); });
}

// A tool set of the embedder's own, with state of its own: every stamp carries the registration's label.
TMCPToolsRegistration StampTools(std::string aLabel) {
    return [label = std::move(aLabel)](TORXMCPServer& aServer) {
        aServer.RegisterTool("count_items", "How many items the drawing holds", nullptr,
                             [](TORXBaseLabel& aDoc, const TJSON&) {
                                 return MakeTextContent(std::to_string(aDoc.GetItemsCount()));
                             });
        aServer.RegisterTool("stamp", "Adds a flow element with the stamp's label", nullptr,
                             [label](TORXBaseLabel& aDoc, const TJSON&) {
                                 auto* flow =
                                     dynamic_cast<TORXBaseFlow*>(aDoc.CreateItem(TQVLItemType::itFlow));
                                 flow->SetText(label);
                                 return MakeTextContent(label);
                             });
    };
}

TJSON Rpc(const std::string& aMethod, TJSON aParams = TJSON::object()) {
    return {{"jsonrpc", "2.0"}, {"id", 1}, {"method", aMethod}, {"params", std::move(aParams)}};
}

TJSON Call(const std::string& aTool, TJSON aArguments = TJSON::object()) {
    return Rpc("tools/call", {{"name", aTool}, {"arguments", std::move(aArguments)}});
}

std::vector<std::string> ToolNames(const TJSON& aResponse) {
    std::vector<std::string> names;
    for (const TJSON& tool : aResponse["result"]["tools"]) names.push_back(tool["name"].get<std::string>());
    return names;
}

bool Lists(const std::vector<std::string>& aNames, const std::string& aName) {
    return std::find(aNames.begin(), aNames.end(), aName) != aNames.end();
}

// A server on a loopback port of its own, stopped before its document goes.
struct TServed {
    TORXHeadlessLabel Doc;
    TInlineRunner Runner;
    TORXMCPServer Server;

    void Start() {
        Server.SetPort(0);
        Server.Start();
    }
    // The JSON-RPC response over HTTP; a null value when the exchange failed.
    TJSON Post(const TJSON& aRequest) const {
        httplib::Client client("127.0.0.1", Server.BoundPort());
        client.set_connection_timeout(2);
        client.set_read_timeout(10);
        const auto answer = client.Post("/mcp", aRequest.dump(), "application/json");
        if (!answer || answer->status != 200) return nullptr;
        return TJSON::parse(answer->body);
    }
};

class MCPServices : public ::testing::Test {
  protected:
    MCPServices() : fSaved(MCPDefaultToolsRegistration()) {
        MCPSetDefaultToolsRegistration(&RegisterGlobalOnly);
        fs::remove_all(Folder());
        fs::create_directories(Folder() / "a");
        fs::create_directories(Folder() / "b");
    }
    ~MCPServices() override {
        MCPSetDefaultToolsRegistration(fSaved);
        fs::remove_all(Folder());
    }
    static fs::path Folder() {
        return fs::temp_directory_path() / ("orvex_services_" + std::to_string(::getpid()));
    }
    static Host::TToolOptions RootedAt(const fs::path& aRoot) {
        Host::TToolOptions options;
        options.FilesRoot = aRoot;
        return options;
    }

  private:
    TMCPRegisterProc fSaved;
};

TEST_F(MCPServices, TwoServersWithTheirOwnToolSetsServeAtTheSameTime) {
    TServed drawing;
    Host::BindDrawingServer(drawing.Server, drawing.Doc, drawing.Runner, RootedAt(Folder() / "a"));
    TServed stamps;
    stamps.Server.SetLabel(&stamps.Doc);
    stamps.Server.SetMainThreadRunner(&stamps.Runner);
    stamps.Server.SetToolsRegistration(StampTools("checked"));
    // Binding a server leaves the process-wide registration as it was.
    EXPECT_EQ(MCPDefaultToolsRegistration(), &RegisterGlobalOnly);
    drawing.Start();
    stamps.Start();

    constexpr int kRounds = 8;
    std::mutex failuresMutex;
    std::vector<std::string> failures;
    const auto fail = [&](std::string aWhat) {
        std::lock_guard lock(failuresMutex);
        failures.push_back(std::move(aWhat));
    };
    std::thread drawingClient([&] {
        for (int i = 0; i < kRounds; ++i) {
            const auto names = ToolNames(drawing.Post(Rpc("tools/list")));
            if (!Lists(names, "add_flow") || Lists(names, "stamp") || Lists(names, "global_only"))
                fail("drawing tools/list");
            const TJSON added = drawing.Post(Call("add_flow", {{"x", 10 * i}, {"y", 0}, {"text", "step"}}));
            if (added.is_null() || added["result"].value("isError", false)) fail("add_flow " + added.dump());
        }
    });
    std::thread stampsClient([&] {
        for (int i = 0; i < kRounds; ++i) {
            if (ToolNames(stamps.Post(Rpc("tools/list"))) != std::vector<std::string>{"count_items", "stamp"})
                fail("stamps tools/list");
            const TJSON stamped = stamps.Post(Call("stamp"));
            if (stamped.is_null() || stamped["result"]["content"][0]["text"] != "checked")
                fail("stamp " + stamped.dump());
        }
    });
    drawingClient.join();
    stampsClient.join();
    EXPECT_TRUE(failures.empty()) << failures.front();

    // Each server's calls reached its own document only.
    EXPECT_EQ(drawing.Doc.GetItemsCount(), kRounds);
    ASSERT_EQ(stamps.Doc.GetItemsCount(), kRounds);
    EXPECT_EQ(dynamic_cast<const TORXBaseFlow*>(stamps.Doc.GetItem(0))->Text(), "checked");
    EXPECT_EQ(stamps.Post(Call("count_items"))["result"]["content"][0]["text"], std::to_string(kRounds));
    // A tool the other server has is unknown here.
    EXPECT_EQ(stamps.Post(Call("add_flow"))["error"]["message"], "Unknown tool: add_flow");
}

TEST_F(MCPServices, ToolOptionsBelongToTheServerAndTheRestFallBackToTheProcessWideTools) {
    TServed first;
    Host::BindDrawingServer(first.Server, first.Doc, first.Runner, RootedAt(Folder() / "a"));
    TServed second;
    Host::BindDrawingServer(second.Server, second.Doc, second.Runner, RootedAt(Folder() / "b"));
    TORXMCPServer bare;  // nothing of its own: the process-wide registration
    TORXHeadlessLabel bareDoc;
    bare.SetLabel(&bareDoc);
    for (TORXMCPServer* server : {&first.Server, &second.Server, &bare}) server->RegisterDefaultTools();

    // The same call writes into each server's own files folder.
    const auto save = [](TORXMCPServer& aServer) {
        return aServer.ProcessJsonRpc(Call("save_drawing", {{"path", "out.json"}}), false).value();
    };
    EXPECT_FALSE(save(first.Server)["result"].value("isError", false));
    EXPECT_TRUE(fs::exists(Folder() / "a" / "out.json"));
    EXPECT_FALSE(fs::exists(Folder() / "b" / "out.json"));
    EXPECT_FALSE(save(second.Server)["result"].value("isError", false));
    EXPECT_TRUE(fs::exists(Folder() / "b" / "out.json"));

    EXPECT_EQ(ToolNames(*bare.ProcessJsonRpc(Rpc("tools/list"), false)),
              std::vector<std::string>{"global_only"});
    EXPECT_EQ(save(bare)["error"]["message"], "Unknown tool: save_drawing");
    EXPECT_FALSE(bare.HasToolsRegistration());
    EXPECT_TRUE(first.Server.HasToolsRegistration());

    // An emptied registration hands the server back to the process-wide one.
    TORXMCPServer reset;
    reset.SetToolsRegistration(StampTools("x"));
    reset.SetToolsRegistration(nullptr);
    EXPECT_EQ(reset.BuildAIToolDefinitions().size(), 1u);
    EXPECT_EQ(reset.BuildAIToolDefinitions()[0]["name"], "global_only");
}

}  // namespace
}  // namespace Orvex
