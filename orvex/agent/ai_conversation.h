// TAIConversation: the agent loop a host runs on top of TMCPAIClient. It sends the conversation, runs each
// tool call the model makes through the host's executor, returns the results, and repeats until the model
// answers without calls or the turn limit is reached. Failed requests that may succeed later (429, 5xx, no
// connection) are retried with a growing pause.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/agent/ai_client.h"
#include "orvex/io/json.h"

namespace Orvex {

struct TAIToolImage {
    std::string MediaType;  // "image/png"
    std::string Data;       // Base64
};

struct TAIToolOutcome {
    std::string Text;
    bool IsError = false;
    std::vector<TAIToolImage> Images = {};  // pictures the tool returned, passed on to the model
};

// Runs one tool; on the main thread when it touches the drawing. What it throws becomes an error outcome.
using TAIToolExecutor = std::function<TAIToolOutcome(const std::string& aName, const TJSON& aArguments)>;
using TAISleep = std::function<void(std::chrono::milliseconds)>;
using TAITextSink = std::function<void(const std::string& aText)>;

struct TAIConversationResult {
    bool Ok = false;           // the model finished its answer
    std::string ErrorMessage;  // the failure that ended the run, after retries
    bool TurnLimitReached = false;
    std::string Text;        // the last answer's text
    std::string StopReason;  // of the last answer
    std::int32_t Turns = 0;  // answers received in this run
    std::int32_t ToolCalls = 0;
    TAIUsage Usage;  // totals of this run
};

class TAIConversation {
  public:
    static constexpr std::int32_t kDefaultTurnLimit = 20;
    static constexpr std::int32_t kMaxRetries = 3;

    // aSystem: the server's EffectiveInstructions; aTools: its BuildAIToolDefinitions. aClient must outlive
    // the conversation.
    TAIConversation(TMCPAIClient& aClient, std::string aSystem, TJSON aTools, TAIToolExecutor aExecutor);

    void SetTurnLimit(std::int32_t aValue) { fTurnLimit = aValue < 1 ? 1 : aValue; }
    std::int32_t TurnLimit() const { return fTurnLimit; }
    void SetOnText(TAITextSink aSink) { fOnText = std::move(aSink); }          // each answer's text
    void SetOnToolCall(TAITextSink aSink) { fOnToolCall = std::move(aSink); }  // one line per tool call
    void SetSleep(TAISleep aSleep);  // for tests; the default really sleeps
    void SetRetryDelay(std::chrono::milliseconds aFirst) { fRetryDelay = aFirst; }  // doubled per retry

    // Appends the user's turn and runs the loop. The conversation keeps growing across runs, so a host can
    // hold a dialogue.
    TAIConversationResult Run(std::string_view aUserText);
    TAIConversationResult RunMessage(TJSON aUserMessage);  // e.g. MakeUserImageMessage

    const TJSON& Messages() const { return fMessages; }
    const TAIUsage& TotalUsage() const { return fTotalUsage; }  // over every run

  private:
    TAIResponse SendWithRetry();
    TAIToolOutcome Execute(const TAIToolCall& aCall) const;

    TMCPAIClient& fClient;
    std::string fSystem;
    TJSON fTools;
    TAIToolExecutor fExecutor;
    TJSON fMessages;
    std::int32_t fTurnLimit = kDefaultTurnLimit;
    TAITextSink fOnText;
    TAITextSink fOnToolCall;
    TAISleep fSleep;
    std::chrono::milliseconds fRetryDelay{1000};
    TAIUsage fTotalUsage;
};

// "name {arguments}", shortened to a line, and the first line of the error when the tool failed.
std::string FormatToolCallLine(std::string_view aName, const TJSON& aArguments,
                               const TAIToolOutcome& aOutcome);

// An MCP tools/call response (result or JSON-RPC error) as an outcome: text items joined by line breaks,
// image items as pictures.
TAIToolOutcome ToolOutcomeFromResponse(const TJSON& aResponse);

// Runs tools through aServer.HandleToolsCall, so that they run on its main-thread runner with the drawing's
// update bracket, exactly as for an outside agent. aServer must outlive the executor.
TAIToolExecutor MakeServerToolExecutor(TORXMCPServer& aServer);

}  // namespace Orvex
