// `orvex serve`: exposes one drawing to AI agents over MCP, on HTTP or, with --stdio, over standard input
// and output, and with --view-port shows it live on a loopback page. The main thread runs the tools and
// renders the live view. A first SIGINT or SIGTERM stops taking work at once and ends the server once the
// running tool has finished; a second ends the process at once, saving first when --save-on-exit asks.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <atomic>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>

#include "cli/commands.h"
#include "host/drawing_server.h"
#include "host/editor/edit_server.h"
#include "host/editor/edit_session.h"
#include "host/editor/edit_tool_caller.h"
#include "host/live_view.h"
#include "host/mcp_stdio.h"
#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/core/text.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"

namespace OrvexCli {
namespace {

struct TServeArgs {
    std::uint16_t Port = 3001;
    std::string Bind = "127.0.0.1";
    std::string Endpoint = "/mcp";
    std::string AllowedOrigins;
    std::int32_t MaxRequestBytes = 8388608;
    bool LogPayloads = false;
    std::string Drawing;
    bool SaveOnExit = false;
    std::string FilesRoot;
    std::string InstructionsFile;
    bool Stdio = false;
    std::int32_t ViewPort = -1;  // -1: no live view
    std::int32_t EditPort = -1;  // -1: no editor page
};

// The signal handler touches only these, a pipe's write end and _exit, which are async-signal-safe.
std::atomic<int> gStopSignals{0};
std::atomic<bool> gSaveOnExit{false};
int gSignalPipe[2] = {-1, -1};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

// How long a second signal waits for the running tool to let go of the drawing and for the save.
constexpr auto kExitSaveBudget = std::chrono::seconds(5);

extern "C" void OnStopSignal(int aSignal) {
    if (gStopSignals.fetch_add(1) >= 1 && !gSaveOnExit.load()) _exit(128 + aSignal);
    const char byte = 1;
    [[maybe_unused]] const auto written = write(gSignalPipe[1], &byte, 1);
}

void InstallSignalHandlers() {
    if (pipe2(gSignalPipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
    struct sigaction action {};
    action.sa_handler = OnStopSignal;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

bool StopRequested() {
    return gStopSignals.load() > 0;
}

std::mutex gLogMutex;

void LogLine(const std::string& aMessage) {
    std::lock_guard lock(gLogMutex);
    fmt::print(stderr, "orvex serve: {}\n", aMessage);
    std::fflush(stderr);
}

bool ReadWholeFile(const std::string& aFileName, std::string& aText) {
    std::ifstream in(aFileName, std::ios::binary);
    if (!in) return false;
    std::ostringstream text;
    text << in.rdbuf();
    aText = text.str();
    return static_cast<bool>(in) || in.eof();
}

// Held by the main thread while a tool may touch the drawing, so that a save on the signal watcher's thread
// never reads it half-changed.
std::timed_mutex gDocumentMutex;

bool SaveOnExit(const std::string& aFile, const Orvex::TORXBaseLabel& aDocument) {
    if (const auto saved = Orvex::SaveDrawingFile(aFile, aDocument); !saved) {
        fmt::print(stderr, "orvex: {}\n", saved.Message);
        return false;
    }
    LogLine(fmt::format("saved {}", aFile));
    return true;
}

// Waits on the signal pipe beside the main thread. The first signal stops the server taking connections
// and the main thread taking tools, at once, even while a slow tool runs; the main thread then ends
// normally. A second signal (the handler ends the process itself when nothing is to be saved) saves the
// drawing here, within kExitSaveBudget, and ends the process.
class TSignalWatcher {
  public:
    TSignalWatcher(Orvex::TORXMCPServer& aServer, Orvex::TMainThreadQueue& aQueue,
                   const std::string& aDrawing, const Orvex::TORXBaseLabel& aDocument)
        : fServer(aServer), fQueue(aQueue), fDrawing(aDrawing), fDocument(aDocument) {
        if (gSignalPipe[0] >= 0) fThread = std::thread([this] { Watch(); });
    }
    ~TSignalWatcher() {
        fDone.store(true);
        if (fThread.joinable()) fThread.join();
    }
    TSignalWatcher(const TSignalWatcher&) = delete;
    TSignalWatcher& operator=(const TSignalWatcher&) = delete;

  private:
    void Watch() {
        int seen = 0;
        while (!fDone.load()) {
            pollfd descriptor{gSignalPipe[0], POLLIN, 0};
            if (poll(&descriptor, 1, 50) <= 0) continue;
            char byte = 0;
            if (read(gSignalPipe[0], &byte, 1) != 1) continue;
            if (++seen == 1) {
                LogLine("stopping: no new work is taken; a second signal ends at once");
                fServer.StopAccepting();
                fQueue.Stop();
            } else {
                SaveAndExit();
            }
        }
    }

    [[noreturn]] void SaveAndExit() {
        // Neither a tool that keeps the drawing nor a save that hangs may hold the exit back.
        std::thread([] {
            std::this_thread::sleep_for(kExitSaveBudget);
            LogLine("the drawing could not be saved in time; the file keeps what was saved before");
            _exit(kExitUsage);
        }).detach();
        std::unique_lock lock(gDocumentMutex, kExitSaveBudget);
        if (!lock.owns_lock()) {
            LogLine("a tool still changes the drawing; it is not saved");
            _exit(kExitUsage);
        }
        _exit(SaveOnExit(fDrawing, fDocument) ? kExitOk : kExitUsage);
    }

    Orvex::TORXMCPServer& fServer;
    Orvex::TMainThreadQueue& fQueue;
    const std::string& fDrawing;
    const Orvex::TORXBaseLabel& fDocument;
    std::atomic<bool> fDone{false};
    std::thread fThread;
};

// Pumps the tool queue until a stop signal, or until aDone holds (the stdio client went away). After each
// task the live view, if any, renders the drawing: every tool, undo included, is seen without a list of
// which tools change it, and a drawing that did not change wakes no viewer. The editor page, if any, is
// rendered the same way, so that an agent's change reaches it as the person's own do.
void PumpUntilStopped(Orvex::TMainThreadQueue& aQueue, const std::atomic<bool>* aDone,
                      Orvex::Host::TLiveView* aView, const Orvex::TORXBaseLabel& aDocument,
                      Orvex::Host::TEditSession* aEdit) {
    while (!StopRequested() && (aDone == nullptr || !aDone->load())) {
        const std::lock_guard lock(gDocumentMutex);
        if (!aQueue.PumpOne(std::chrono::milliseconds(100))) continue;
        if (aView != nullptr) aView->Update(aDocument);
        if (aEdit != nullptr) aEdit->Publish();
    }
}

// The editor page on the same document as the agents, beside the MCP endpoint; false (with the reason on
// stderr) when its port cannot be bound.
bool StartEditor(Orvex::Host::TEditServer& aServer, Orvex::Host::TEditSession& aSession,
                 const TServeArgs& aArgs) {
    aSession.Publish();
    Orvex::Host::TEditServerOptions options;
    options.Bind = aArgs.Bind;
    options.Port = static_cast<std::uint16_t>(aArgs.EditPort);
    options.AllowedOrigins = aArgs.AllowedOrigins;
    if (const char* token = std::getenv("ORVEX_MCP_TOKEN"); token != nullptr) options.Token = token;
    try {
        aServer.Start(options);
    } catch (const std::exception& e) {
        fmt::print(stderr, "orvex: editor: {}\n", e.what());
        return false;
    }
    LogLine(fmt::format("editor on {}", aServer.Url()));
    return true;
}

// Starts the live view on the drawing as it is now; false (with the reason on stderr) when the port is taken.
bool StartLiveView(Orvex::Host::TLiveView& aView, std::uint16_t aPort,
                   const Orvex::TORXBaseLabel& aDocument) {
    aView.Update(aDocument);
    try {
        aView.Start(aPort);
    } catch (const std::exception& e) {
        fmt::print(stderr, "orvex: live view: {}\n", e.what());
        return false;
    }
    LogLine(fmt::format("live view on http://127.0.0.1:{}/", aView.BoundPort()));
    return true;
}

// A token shorter than this is guessable by anyone who can reach a public address.
constexpr std::size_t kMinPublicTokenLength = 32;

bool IsLoopbackBind(std::string_view aAddress) {
    const std::string_view address = Orvex::Trim(aAddress);
    return Orvex::SameTextIgnoringCase(address, "127.0.0.1") ||
           Orvex::SameTextIgnoringCase(address, "localhost") || Orvex::SameTextIgnoringCase(address, "::1");
}

// The token's refusals, before anything starts: an empty ORVEX_MCP_TOKEN is a mistake (a variable exported
// without its value), not a wish to switch authentication off, and a public address needs a long token.
// Returns the message, empty when the settings may be used.
std::string CheckToken(const TServeArgs& args, const char* aToken) {
    if (aToken != nullptr && Orvex::Trim(aToken).empty())
        return "ORVEX_MCP_TOKEN is set but empty; give it a token, or unset it to serve loopback without one";
    if (args.Stdio || IsLoopbackBind(args.Bind)) return {};
    if (aToken == nullptr || std::string_view(aToken).size() < kMinPublicTokenLength)
        return fmt::format("serving on {} needs ORVEX_MCP_TOKEN of at least {} characters", args.Bind,
                           kMinPublicTokenLength);
    return {};
}

int Serve(const TServeArgs& args) {
    if (args.SaveOnExit && args.Drawing.empty()) {
        fmt::print(stderr, "orvex: --save-on-exit needs --drawing FILE\n");
        return kExitUsage;
    }
    const char* token = std::getenv("ORVEX_MCP_TOKEN");
    if (const std::string refusal = CheckToken(args, token); !refusal.empty()) {
        fmt::print(stderr, "orvex: {}\n", refusal);
        return kExitUsage;
    }
    Orvex::Host::TToolOptions tools;
    if (!args.FilesRoot.empty()) {
        std::error_code ec;
        if (!std::filesystem::is_directory(args.FilesRoot, ec)) {
            fmt::print(stderr, "orvex: --files-root {} is not a folder\n", args.FilesRoot);
            return kExitUsage;
        }
        tools.FilesRoot = std::filesystem::canonical(args.FilesRoot);
    }
    Orvex::TORXHeadlessLabel document;
    const auto opened = Orvex::Host::OpenDrawing(args.Drawing, document);
    if (!opened) {
        fmt::print(stderr, "orvex: {}\n", opened.Message);
        return opened.Code == Orvex::QVLErr::kNoFile ? kExitUsage : kExitInvalid;
    }
    PrintReadWarnings(opened.Value.Warnings);

    Orvex::TORXMCPServer server;
    server.SetPort(args.Port);
    server.SetBindAddress(args.Bind);
    server.SetEndpointPath(args.Endpoint);
    server.SetAllowedOrigins(args.AllowedOrigins);
    server.SetMaxRequestBytes(args.MaxRequestBytes);
    server.SetLogPayloads(args.LogPayloads);
    if (token != nullptr) server.SetAuthToken(token);
    if (!args.InstructionsFile.empty()) {
        std::string text;
        if (!ReadWholeFile(args.InstructionsFile, text)) {
            fmt::print(stderr, "orvex: cannot read {}\n", args.InstructionsFile);
            return kExitUsage;
        }
        server.SetInstructions(std::move(text));
    }
    server.SetOnLog([](Orvex::TORXMCPServer&, const std::string& aMessage) { LogLine(aMessage); });

    Orvex::TMainThreadQueue queue;
    Orvex::Host::BindDrawingServer(server, document, queue, tools);
    gSaveOnExit.store(args.SaveOnExit);
    InstallSignalHandlers();
    const TSignalWatcher watcher(server, queue, args.Drawing, document);
    std::unique_ptr<Orvex::Host::TLiveView> view;
    if (args.ViewPort >= 0) view = std::make_unique<Orvex::Host::TLiveView>();
    std::unique_ptr<Orvex::Host::TEditSession> edit;
    std::unique_ptr<Orvex::Host::TEditServer> editServer;
    if (args.EditPort >= 0) {
        Orvex::Host::TEditOptions editOptions;
        editOptions.FilesRoot = tools.FilesRoot;
        if (tools.FilesRoot && !args.Drawing.empty()) {
            std::error_code ec;
            const auto inside =
                std::filesystem::weakly_canonical(args.Drawing, ec).lexically_relative(*tools.FilesRoot);
            if (!inside.empty() && inside.begin()->string() != "..")
                editOptions.FileName = inside.generic_string();
        }
        edit = std::make_unique<Orvex::Host::TEditSession>(
            document, Orvex::Host::ToolCallerOf(server, document), editOptions);
        editServer = std::make_unique<Orvex::Host::TEditServer>(*edit, queue);
    }

    if (args.Stdio) {
        server.RegisterDefaultTools();
        if (view && !StartLiveView(*view, static_cast<std::uint16_t>(args.ViewPort), document))
            return kExitUsage;
        if (editServer && !StartEditor(*editServer, *edit, args)) return kExitUsage;
        LogLine(fmt::format("serving MCP over standard input and output, {} tools", server.ToolCount()));
        std::atomic<bool> clientDone{false};
        std::thread reader([&] {
            Orvex::Host::ServeStdio(server, std::cin, std::cout);
            clientDone.store(true);
        });
        PumpUntilStopped(queue, &clientDone, view.get(), document, edit.get());
        if (editServer) editServer->Stop();
        if (view) view->Stop();
        queue.Stop();
        // A reader still blocked on input cannot be woken portably; the process ends around it.
        if (clientDone.load())
            reader.join();
        else
            reader.detach();
    } else {
        try {
            server.Start();
        } catch (const std::exception& e) {
            fmt::print(stderr, "orvex: {}\n", e.what());
            return kExitUsage;
        }
        LogLine(fmt::format("listening on http://{}:{}{}", args.Bind, server.BoundPort(), args.Endpoint));
        if ((view && !StartLiveView(*view, static_cast<std::uint16_t>(args.ViewPort), document)) ||
            (editServer && !StartEditor(*editServer, *edit, args))) {
            if (view) view->Stop();
            server.Stop();
            queue.Stop();
            return kExitUsage;
        }
        PumpUntilStopped(queue, nullptr, view.get(), document, edit.get());
        if (editServer) editServer->Stop();
        if (view) view->Stop();
        server.Stop();
        queue.Stop();
    }

    if (args.SaveOnExit) {
        // A second signal may be saving on the watcher's thread; it ends the process when done.
        const std::lock_guard lock(gDocumentMutex);
        if (!SaveOnExit(args.Drawing, document)) return kExitUsage;
    }
    return kExitOk;
}

}  // namespace

void RegisterServe(CLI::App& app, TCommandRegistry& commands) {
    auto args = std::make_shared<TServeArgs>();
    auto* sub =
        app.add_subcommand("serve",
                           "Serve a drawing to AI agents over MCP (HTTP, or --stdio). The bearer token comes "
                           "from the environment variable ORVEX_MCP_TOKEN");
    sub->add_option("--port", args->Port, "TCP port; 0 picks a free one (default 3001)");
    sub->add_option("--bind", args->Bind,
                    "Address to listen on (default 127.0.0.1; others need a token of 32 characters or more)");
    sub->add_option("--endpoint", args->Endpoint, "The one path served (default /mcp)");
    sub->add_option("--allowed-origins", args->AllowedOrigins, "Extra browser origins, separated by \";\"");
    sub->add_option("--max-request-bytes", args->MaxRequestBytes, "Largest request body; 0 for no limit")
        ->check(CLI::NonNegativeNumber);
    sub->add_flag("--log-payloads", args->LogPayloads, "Log whole requests and responses to stderr");
    sub->add_option("--drawing", args->Drawing, "Drawing (.json) to open; a missing file starts empty");
    sub->add_flag("--save-on-exit", args->SaveOnExit, "Save the drawing to --drawing when the server stops");
    sub->add_option("--files-root", args->FilesRoot, "The only folder file tools may read and write");
    sub->add_option("--instructions-file", args->InstructionsFile, "Instructions text offered to agents");
    sub->add_flag("--stdio", args->Stdio, "Serve one JSON-RPC message per line on standard input and output");
    sub->add_option("--view-port", args->ViewPort,
                    "Also serve a live view of the drawing at http://127.0.0.1:PORT/ (loopback only; 0 picks "
                    "a free port)")
        ->check(CLI::Range(0, 65535));
    sub->add_option(
           "--edit-port", args->EditPort,
           "Also serve the editor page on this port, on the same drawing as the agents (0 picks a free "
           "port; beyond loopback only with ORVEX_MCP_TOKEN)")
        ->check(CLI::Range(0, 65535));
    commands.Add(sub, [args] { return Serve(*args); });
}

}  // namespace OrvexCli
