// TMCPAIClient: one request/answer exchange with a large-language-model provider whose model may call the
// tools of a TORXMCPServer. The caller keeps the conversation in one provider-neutral shape (the Anthropic
// Messages shape, see ai_messages.h); the client converts it to the provider's request, posts it and turns
// the answer back into one TAIResponse. The conversation loop itself is TAIConversation.
//
// [SECTION] Response records
// [SECTION] TMCPAIClient
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/agent/ai_transport.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/io/json.h"

namespace Orvex {

// [SECTION] Response records

struct TAIToolCall {
    std::string Id;
    std::string Name;
    std::string ThoughtSignature;      // Gemini only: echoed back with the call
    const TJSON* Arguments = nullptr;  // an object owned by the client; valid until its next Send
};

// Tokens as the provider counted them; zero when it reported none.
struct TAIUsage {
    std::int64_t InputTokens = 0;
    std::int64_t OutputTokens = 0;
};

struct TAIResponse {
    std::string Text;  // the answer's text parts, concatenated
    std::vector<TAIToolCall> ToolCalls;
    const TJSON* ReasoningDetails =
        nullptr;             // OpenRouter reasoning blocks to echo back; owned like Arguments
    std::string StopReason;  // "end_turn" or "tool_use" (Anthropic's own value otherwise)
    bool HasToolUse = false;
    std::string ErrorMessage;  // empty on success
    TAIUsage Usage;
    std::int32_t HttpStatus = 0;    // the provider's HTTP status; 0 when no answer came
    bool ConnectionFailed = false;  // the request got no HTTP answer at all
};

// [SECTION] TMCPAIClient

class TMCPAIClient {
  public:
    // Provider, key, model, token limit and image limit are read from aServer at every Send; it must
    // outlive the client. The transport defaults to libcurl with TAIHttpOptions' timeouts.
    explicit TMCPAIClient(TORXMCPServer& aServer);
    ~TMCPAIClient();
    TMCPAIClient(const TMCPAIClient&) = delete;
    TMCPAIClient& operator=(const TMCPAIClient&) = delete;

    // Never throws: every failure ends in ErrorMessage with the rest of the response empty. Releases the
    // objects the previous response pointed to.
    TAIResponse Send(const TJSON& aMessages, std::string_view aSystem, const TJSON& aTools);

    std::string GetApiUrl() const;
    static std::string DefaultBaseUrl(TMCPAIProvider aProvider);  // the provider's public API host
    const std::string& BaseUrl() const { return fBaseUrl; }       // empty: DefaultBaseUrl
    void SetBaseUrl(std::string aValue) { fBaseUrl = std::move(aValue); }
    void SetTransport(std::unique_ptr<IAIHttpTransport> aTransport);
    TORXMCPServer& Server() const { return fServer; }

    // The provider's request, from the neutral messages and tools. OpenRouter uses the OpenAI shape.
    TJSON BuildAnthropicRequest(const TJSON& aMessages, std::string_view aSystem, const TJSON& aTools) const;
    TJSON BuildOpenAIRequest(const TJSON& aMessages, std::string_view aSystem, const TJSON& aTools) const;
    TJSON BuildGeminiRequest(const TJSON& aMessages, std::string_view aSystem, const TJSON& aTools) const;
    static TJSON ConvertToolsToOpenAI(const TJSON& aTools);
    static TJSON ConvertToolsToGemini(const TJSON& aTools);

    // The provider's answer as a neutral response. The pointers in it refer to objects the client owns.
    TAIResponse ParseAnthropicResponse(const TJSON& aBody);
    TAIResponse ParseOpenAIResponse(const TJSON& aBody);
    TAIResponse ParseGeminiResponse(const TJSON& aBody);

    const TJSON* OwnToolArguments(TJSON aArguments);             // kept until the next Send or destruction
    const TJSON& LastResponse() const { return fLastResponse; }  // the last parsed answer body

    // Empty when every image in aMessages is within MaxAIImageBytes; else the reason it is refused.
    std::string CheckImageSizes(const TJSON& aMessages) const;

    // A model without image input gets a short text note in place of every image. On by default.
    bool ImageInput() const { return fImageInput; }
    void SetImageInput(bool aValue) { fImageInput = aValue; }
    // Marks the system text and the tool list as a cacheable prefix where the provider takes markers
    // (Anthropic's cache_control); the others cache a repeated prefix on their own. Off by default.
    bool PromptCaching() const { return fPromptCaching; }
    void SetPromptCaching(bool aValue) { fPromptCaching = aValue; }

  private:
    TAIHttpHeaders BuildHeaders(TMCPAIProvider aProvider) const;

    TORXMCPServer& fServer;
    std::string fBaseUrl;
    std::unique_ptr<IAIHttpTransport> fTransport;
    TJSON fLastResponse;
    std::vector<std::unique_ptr<TJSON>> fOwned;
    bool fImageInput = true;
    bool fPromptCaching = false;
};

}  // namespace Orvex
