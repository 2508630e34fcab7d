// The agent loop: send, run the calls, return the results, until the model stops calling tools.
#include "orvex/agent/ai_conversation.h"

#include <fmt/format.h>

#include <exception>
#include <thread>
#include <utility>

#include "orvex/agent/ai_messages.h"
#include "orvex/agent/mcp_jsonrpc.h"

namespace Orvex {

namespace {

constexpr std::size_t kLineArgumentBytes = 160;
constexpr std::size_t kLineErrorBytes = 160;

// Cuts at a character boundary so that a shortened line stays valid UTF-8.
std::string Shorten(std::string_view aText, std::size_t aBytes) {
    if (aText.size() <= aBytes) return std::string(aText);
    std::size_t cut = aBytes;
    while (cut > 0 && (static_cast<unsigned char>(aText[cut]) & 0xC0U) == 0x80U) --cut;
    return std::string(aText.substr(0, cut)) + "...";
}

bool IsRetryable(const TAIResponse& aResponse) {
    return aResponse.ConnectionFailed || aResponse.HttpStatus == 429 || aResponse.HttpStatus >= 500;
}

void Add(TAIUsage& aTotal, const TAIUsage& aPart) {
    aTotal.InputTokens += aPart.InputTokens;
    aTotal.OutputTokens += aPart.OutputTokens;
}

}  // namespace

TAIConversation::TAIConversation(TMCPAIClient& aClient, std::string aSystem, TJSON aTools,
                                 TAIToolExecutor aExecutor)
    : fClient(aClient),
      fSystem(std::move(aSystem)),
      fTools(aTools.is_array() ? std::move(aTools) : TJSON::array()),
      fExecutor(std::move(aExecutor)),
      fMessages(TJSON::array()) {
    SetSleep(nullptr);
}

void TAIConversation::SetSleep(TAISleep aSleep) {
    fSleep = aSleep ? std::move(aSleep)
                    : [](std::chrono::milliseconds aPause) { std::this_thread::sleep_for(aPause); };
}

TAIConversationResult TAIConversation::Run(std::string_view aUserText) {
    return RunMessage(MakeUserMessage(aUserText));
}

TAIConversationResult TAIConversation::RunMessage(TJSON aUserMessage) {
    TAIConversationResult result;
    fMessages.push_back(std::move(aUserMessage));
    for (std::int32_t turn = 0; turn < fTurnLimit; ++turn) {
        const TAIResponse response = SendWithRetry();
        if (!response.ErrorMessage.empty()) {
            result.ErrorMessage = response.ErrorMessage;
            return result;
        }
        ++result.Turns;
        Add(result.Usage, response.Usage);
        Add(fTotalUsage, response.Usage);
        result.Text = response.Text;
        result.StopReason = response.StopReason;
        if (!response.Text.empty() && fOnText) fOnText(response.Text);

        // Calls are run whatever the stop reason says: the provider expects a result for every call, and
        // some report calls under a plain stop.
        if (response.ToolCalls.empty()) {
            // An empty assistant turn would be refused when the dialogue goes on.
            if (!response.Text.empty()) {
                fMessages.push_back(MakeAssistantMessage(
                    response.Text, response.ReasoningDetails ? *response.ReasoningDetails : TJSON()));
            }
            result.Ok = true;
            return result;
        }
        fMessages.push_back(
            MakeAssistantToolUses(response.Text, response.ToolCalls, response.ReasoningDetails));
        for (const auto& call : response.ToolCalls) {
            const TJSON arguments = call.Arguments != nullptr ? *call.Arguments : TJSON::object();
            const TAIToolOutcome outcome = Execute(call);
            ++result.ToolCalls;
            if (fOnToolCall) fOnToolCall(FormatToolCallLine(call.Name, arguments, outcome));
            fMessages.push_back(outcome.Images.empty()
                                    ? MakeToolResult(call.Id, call.Name, outcome.Text, outcome.IsError)
                                    : MakeToolResultWithImages(call.Id, call.Name, outcome.Text,
                                                               outcome.Images, outcome.IsError));
        }
    }
    result.TurnLimitReached = true;
    result.ErrorMessage = fmt::format("Stopped after {} turns", fTurnLimit);
    return result;
}

TAIResponse TAIConversation::SendWithRetry() {
    std::chrono::milliseconds pause = fRetryDelay;
    for (std::int32_t attempt = 0;; ++attempt) {
        TAIResponse response = fClient.Send(fMessages, fSystem, fTools);
        if (response.ErrorMessage.empty() || attempt >= kMaxRetries || !IsRetryable(response))
            return response;
        fSleep(pause);
        pause *= 2;
    }
}

TAIToolOutcome TAIConversation::Execute(const TAIToolCall& aCall) const {
    if (!fExecutor) return {"Error: no tool executor", true};
    try {
        return fExecutor(aCall.Name, aCall.Arguments != nullptr ? *aCall.Arguments : TJSON::object());
    } catch (const std::exception& error) {
        return {std::string("Error: ") + error.what(), true};
    } catch (...) {
        return {"Error: unknown failure", true};
    }
}

std::string FormatToolCallLine(std::string_view aName, const TJSON& aArguments,
                               const TAIToolOutcome& aOutcome) {
    std::string line(aName);
    line += ' ';
    line += Shorten(DumpCompact(aArguments.is_null() ? TJSON::object() : aArguments), kLineArgumentBytes);
    if (aOutcome.IsError) {
        const std::string_view text = aOutcome.Text;
        line += " -> ";
        line += Shorten(text.substr(0, text.find('\n')), kLineErrorBytes);
    }
    return line;
}

TAIToolOutcome ToolOutcomeFromResponse(const TJSON& aResponse) {
    if (!aResponse.is_object()) return {"Error: no response", true};
    if (const auto error = aResponse.find("error"); error != aResponse.end()) {
        const auto message = error->is_object() ? error->find("message") : error->end();
        const bool hasText = error->is_object() && message != error->end() && message->is_string();
        return {std::string("Error: ") + (hasText ? message->get<std::string>() : "tool call failed"), true};
    }
    const auto result = aResponse.find("result");
    if (result == aResponse.end() || !result->is_object()) return {"Error: no result", true};
    TAIToolOutcome outcome;
    const auto isError = result->find("isError");
    outcome.IsError = isError != result->end() && *isError == true;
    const auto content = result->find("content");
    if (content != result->end() && content->is_array()) {
        for (const auto& item : *content) {
            if (!item.is_object()) continue;
            const std::string type = item.value("type", std::string());
            std::string piece;
            if (type == "text") {
                const auto text = item.find("text");
                if (text != item.end() && text->is_string()) piece = text->get<std::string>();
            } else if (type == "image" && item.contains("data") && item["data"].is_string()) {
                outcome.Images.push_back(
                    {item.value("mimeType", std::string("image/png")), item["data"].get<std::string>()});
            } else if (!type.empty()) {
                piece = "[" + type + " content]";  // audio, resources: the conversation carries none
            }
            if (piece.empty()) continue;
            if (!outcome.Text.empty()) outcome.Text += '\n';
            outcome.Text += piece;
        }
    }
    if (outcome.Text.empty()) {
        const auto structured = result->find("structuredContent");
        if (structured != result->end()) outcome.Text = DumpCompact(*structured);
    }
    return outcome;
}

TAIToolExecutor MakeServerToolExecutor(TORXMCPServer& aServer) {
    return [&aServer](const std::string& aName, const TJSON& aArguments) {
        const TJSON params = {{"name", aName},
                              {"arguments", aArguments.is_object() ? aArguments : TJSON::object()}};
        return ToolOutcomeFromResponse(aServer.HandleToolsCall(1, &params));
    };
}

}  // namespace Orvex
