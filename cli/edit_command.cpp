// `orvex edit [FILE]`: a person edits a drawing in the browser. The page at the printed address drives the
// engine's own editor; this process holds the document, runs every request of the page on its main thread
// and renders what the page shows after each. SIGINT or SIGTERM stops it; nothing is saved unasked.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "host/drawing_server.h"
#include "host/editor/edit_server.h"
#include "host/editor/edit_session.h"
#include "host/editor/edit_tool_caller.h"
#include "host/tools/register_tools.h"
#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/document/document.h"
#include "orvex/document/headless.h"

namespace OrvexCli {
namespace {

namespace fs = std::filesystem;

struct TEditArgs {
    std::string File;
    std::uint16_t Port = 3002;
    std::string Bind = "127.0.0.1";
    std::string FilesRoot;
    std::string AllowedOrigins;
};

std::atomic<bool> gEditStop{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void OnEditStopSignal(int) {
    gEditStop.store(true);
}

// The folder the page may open and save in: --files-root, else the drawing's folder, else the current one.
bool ResolveRoot(const TEditArgs& aArgs, fs::path& aRoot, std::string& aFileName) {
    std::error_code ec;
    fs::path root = !aArgs.FilesRoot.empty() ? fs::path(aArgs.FilesRoot)
                    : !aArgs.File.empty()    ? fs::absolute(aArgs.File, ec).parent_path()
                                             : fs::current_path(ec);
    if (!fs::is_directory(root, ec)) {
        fmt::print(stderr, "orvex: {} is not a folder\n", root.string());
        return false;
    }
    aRoot = fs::canonical(root, ec);
    if (aArgs.File.empty()) return true;
    const fs::path file = fs::weakly_canonical(fs::absolute(aArgs.File, ec), ec);
    const fs::path inside = file.lexically_relative(aRoot);
    if (inside.empty() || inside.begin()->string() == "..") {
        fmt::print(stderr, "orvex: {} lies outside the files folder {}\n", aArgs.File, aRoot.string());
        return false;
    }
    aFileName = inside.generic_string();
    return true;
}

int Edit(const TEditArgs& args) {
    Orvex::Host::TEditOptions options;
    fs::path root;
    if (!ResolveRoot(args, root, options.FileName)) return kExitUsage;
    options.FilesRoot = root;

    Orvex::TORXHeadlessLabel document;
    if (const auto opened = Orvex::Host::OpenDrawing(args.File, document); !opened) {
        fmt::print(stderr, "orvex: {}\n", opened.Message);
        return opened.Code == Orvex::QVLErr::kNoFile ? kExitUsage : kExitInvalid;
    }
    Orvex::TORXMCPServer tools;  // never started: its tools serve the page's file and layer actions
    Orvex::Host::TToolOptions toolOptions;
    toolOptions.FilesRoot = root;
    Orvex::Host::RegisterStandardTools(tools, toolOptions);

    Orvex::TMainThreadQueue queue;
    Orvex::Host::TEditSession session(document, Orvex::Host::ToolCallerOf(tools, document), options);
    session.Publish();
    Orvex::Host::TEditServer server(session, queue);
    Orvex::Host::TEditServerOptions serverOptions;
    serverOptions.Bind = args.Bind;
    serverOptions.Port = args.Port;
    serverOptions.AllowedOrigins = args.AllowedOrigins;
    if (const char* token = std::getenv("ORVEX_MCP_TOKEN"); token != nullptr) serverOptions.Token = token;
    try {
        server.Start(serverOptions);
    } catch (const std::exception& e) {
        fmt::print(stderr, "orvex: {}\n", e.what());
        return kExitUsage;
    }
    struct sigaction action {};
    action.sa_handler = OnEditStopSignal;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    fmt::print("orvex edit: {} on {}\n", options.FileName.empty() ? "a new drawing" : options.FileName,
               server.Url());
    std::fflush(stdout);

    while (!gEditStop.load()) {
        if (queue.PumpOne(std::chrono::milliseconds(100))) session.Publish();
    }
    server.Stop();
    queue.Stop();
    if (document.HasState(Orvex::TOrvexState::lsModified))
        fmt::print(stderr, "orvex edit: stopped with changes that were not saved\n");
    return kExitOk;
}

}  // namespace

void RegisterEdit(CLI::App& app, TCommandRegistry& commands) {
    auto args = std::make_shared<TEditArgs>();
    auto* sub =
        app.add_subcommand("edit",
                           "Edit a drawing in the browser: serves an editor page and prints its address. "
                           "A bearer token, needed beyond loopback, comes from ORVEX_MCP_TOKEN");
    sub->add_option("file", args->File,
                    "Drawing (.json) to edit; a missing file starts empty and is saved there");
    sub->add_option("--port", args->Port, "TCP port; 0 picks a free one (default 3002)");
    sub->add_option("--bind", args->Bind, "Address to listen on (default 127.0.0.1; others need a token)");
    sub->add_option("--files-root", args->FilesRoot,
                    "The only folder the page opens, saves and exports in (default: the drawing's folder)");
    sub->add_option("--allowed-origins", args->AllowedOrigins, "Extra browser origins, separated by \";\"");
    commands.Add(sub, [args] { return Edit(*args); });
}

}  // namespace OrvexCli
