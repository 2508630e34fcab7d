// `orvex chat`: one request to a language model that draws through the standard tools. The tools run inline
// on this thread, so the drawing never leaves it; the drawing is saved at the end when -o names a file.
#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "cli/convert_picture.h"
#include "host/drawing_server.h"
#include "orvex/agent/ai_client.h"
#include "orvex/agent/ai_conversation.h"
#include "orvex/agent/ai_environment.h"
#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"

namespace OrvexCli {
namespace {

struct TChatArgs {
    std::string Request;
    std::string Provider = "anthropic";
    std::string Model;
    std::int32_t MaxTurns = Orvex::TAIConversation::kDefaultTurnLimit;
    std::string Drawing;
    std::string Output;
    bool NoImages = false;
};

// Providers refuse "oneOf", "anyOf" and "allOf" at the top of a tool's parameters; the tools check those
// rules themselves and say what is wrong, so the model loses nothing it cannot learn from the answer.
Orvex::TJSON ProviderTools(Orvex::TJSON aTools) {
    for (auto& tool : aTools) {
        auto schema = tool.find("input_schema");
        if (schema == tool.end() || !schema->is_object()) continue;
        for (const char* key : {"oneOf", "anyOf", "allOf"}) schema->erase(key);
    }
    return aTools;
}

// Provider errors may quote a multi-line body; the command's contract is one line per failure.
std::string OneLine(std::string aText) {
    std::replace_if(
        aText.begin(), aText.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return aText;
}

int Chat(const TChatArgs& args) {
    const auto provider = Orvex::ParseAIProvider(args.Provider);
    if (!provider) {
        fmt::print(stderr, "orvex: unknown provider {} (anthropic, openai, gemini or openrouter)\n",
                   args.Provider);
        return kExitUsage;
    }
    const Orvex::TAIEnvironment env = Orvex::ReadAIEnvironment(*provider, Orvex::ProcessEnvironment());
    if (env.ApiKey.empty()) {
        fmt::print(stderr, "orvex: no API key: set {} or {}\n", Orvex::kAIApiKeyOverride,
                   Orvex::AIApiKeyVariable(*provider));
        return kExitUsage;
    }
    // Refused before the model runs, so that no paid answer is lost to an unwritable name.
    if (!args.Output.empty() && !IsPictureOutput(args.Output) &&
        Orvex::DrawingFormatFromExt(args.Output) == Orvex::TQVLDrawingFormat::dfUnknown) {
        fmt::print(stderr, "orvex: {}: the output must end in .json, .svg, .png or .pdf\n", args.Output);
        return kExitUsage;
    }

    Orvex::TORXHeadlessLabel document;
    const auto opened = Orvex::Host::OpenDrawing(args.Drawing, document);
    if (!opened) {
        fmt::print(stderr, "orvex: {}\n", opened.Message);
        return opened.Code == Orvex::QVLErr::kNoFile ? kExitUsage : kExitInvalid;
    }
    PrintReadWarnings(opened.Value.Warnings);
    Orvex::TORXMCPServer server;
    server.SetAIProvider(*provider);
    server.SetAIApiKey(env.ApiKey);
    server.SetAIModel(args.Model.empty() ? std::string(Orvex::DefaultAIModel(*provider)) : args.Model);
    Orvex::TInlineRunner runner;
    Orvex::Host::BindDrawingServer(server, document, runner, {});

    Orvex::TMCPAIClient client(server);
    if (!env.BaseUrl.empty()) client.SetBaseUrl(env.BaseUrl);
    // The instructions and the tools are the same on every turn: the provider may keep them cached.
    client.SetPromptCaching(true);
    client.SetImageInput(!args.NoImages);
    Orvex::TAIConversation conversation(client, server.EffectiveInstructions(),
                                        ProviderTools(server.BuildAIToolDefinitions()),
                                        Orvex::MakeServerToolExecutor(server));
    conversation.SetTurnLimit(args.MaxTurns);
    conversation.SetOnText([](const std::string& aText) {
        fmt::print("{}\n", aText);
        std::fflush(stdout);
    });
    conversation.SetOnToolCall(
        [](const std::string& aLine) { fmt::print(stderr, "orvex chat: {}\n", aLine); });

    const Orvex::TAIConversationResult result = conversation.Run(args.Request);
    const bool apiFailed = !result.Ok && !result.TurnLimitReached;
    // What the tools drew is kept even when a later request failed.
    int exitCode = apiFailed ? kExitInvalid : kExitOk;
    if (!args.Output.empty() && IsPictureOutput(args.Output)) {
        if (const int written = WritePicture(document, args.Output, TPictureArgs{}); written != kExitOk)
            exitCode = written;
    } else if (!args.Output.empty()) {
        if (const auto saved = Orvex::SaveDrawingAs(args.Output, document); !saved) {
            fmt::print(stderr, "orvex: {}\n", saved.Message);
            exitCode = kExitUsage;
        }
    }
    if (result.TurnLimitReached) fmt::print(stderr, "orvex chat: stopped after {} turns\n", args.MaxTurns);
    fmt::print(stderr, "orvex chat: tokens: {} input, {} output\n", result.Usage.InputTokens,
               result.Usage.OutputTokens);
    if (apiFailed) fmt::print(stderr, "orvex: {}\n", OneLine(result.ErrorMessage));
    return exitCode;
}

}  // namespace

void RegisterChat(CLI::App& app, TCommandRegistry& commands) {
    auto args = std::make_shared<TChatArgs>();
    auto* sub = app.add_subcommand(
        "chat",
        "Ask a language model to draw: it calls the drawing tools until it is done. The API key comes from "
        "ORVEX_AI_API_KEY or the provider's own variable; ORVEX_AI_BASE_URL overrides its address");
    sub->add_option("request", args->Request, "What to draw or change")->required();
    sub->add_option("--provider", args->Provider, "anthropic (default), openai, gemini or openrouter");
    sub->add_option("--model", args->Model, "Model name; default: the provider's usual model");
    sub->add_option("--max-turns", args->MaxTurns, "Most answers to ask for (default 20)")
        ->check(CLI::PositiveNumber);
    sub->add_option("--drawing", args->Drawing, "Drawing (.json) to start from; a missing file starts empty");
    sub->add_option("-o,--output", args->Output, "Where to save the drawing (.json or .svg)");
    sub->add_flag("--no-images", args->NoImages,
                  "The model takes no image input: previews reach it as a short note instead of a picture");
    commands.Add(sub, [args] { return Chat(*args); });
}

}  // namespace OrvexCli
