// TMCPAIClient: endpoints, headers and the exchange, then per provider the request builder and the answer
// parser. Builders and parsers read the JSON defensively: an unexpected shape yields an empty part of the
// response, never an exception.
//
// [SECTION] JSON helpers
// [SECTION] Endpoint, headers and Send
// [SECTION] Anthropic
// [SECTION] OpenAI and OpenRouter
// [SECTION] Gemini
// [SECTION] Image limit
#include "orvex/agent/ai_client.h"

#include <fmt/format.h>

#include <exception>
#include <utility>

#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/io/json_text.h"

namespace Orvex {

namespace {

// [SECTION] JSON helpers

const TJSON* Member(const TJSON& aObject, const char* aKey) {
    if (!aObject.is_object()) return nullptr;
    const auto it = aObject.find(aKey);
    return it == aObject.end() ? nullptr : &*it;
}

std::string StringOf(const TJSON* aValue) {
    return aValue != nullptr && aValue->is_string() ? aValue->get<std::string>() : std::string();
}

std::string StringMember(const TJSON& aObject, const char* aKey) {
    return StringOf(Member(aObject, aKey));
}

std::int64_t IntegerOf(const TJSON* aValue) {
    if (aValue == nullptr || !aValue->is_number()) return 0;
    if (aValue->is_number_float()) return static_cast<std::int64_t>(aValue->get<double>());
    return aValue->get<std::int64_t>();
}

const TJSON& ArrayMember(const TJSON& aObject, const char* aKey) {
    static const TJSON empty = TJSON::array();
    const TJSON* value = Member(aObject, aKey);
    return value != nullptr && value->is_array() ? *value : empty;
}

// A tool result's content may be plain text or a list of blocks; the OpenAI and Gemini shapes take text.
std::string ContentText(const TJSON* aContent) {
    if (aContent == nullptr) return {};
    if (aContent->is_string()) return aContent->get<std::string>();
    std::string text;
    if (aContent->is_array()) {
        for (const auto& block : *aContent) {
            if (StringMember(block, "type") == "text") text += StringMember(block, "text");
        }
    }
    return text;
}

// The first aLimit UTF-16 code units of aText, never splitting a character.
std::string_view FirstUtf16Units(std::string_view aText, std::size_t aLimit) {
    std::size_t units = 0;
    std::size_t pos = 0;
    while (pos < aText.size()) {
        const auto lead = static_cast<unsigned char>(aText[pos]);
        std::size_t bytes = 1;
        if (lead >= 0xF0 && lead < 0xF8) {
            bytes = 4;
        } else if (lead >= 0xE0) {
            bytes = lead < 0xF0 ? 3 : 1;
        } else if (lead >= 0xC0) {
            bytes = 2;
        }
        if (pos + bytes > aText.size()) bytes = 1;
        const std::size_t width = bytes == 4 ? 2 : 1;
        if (units + width > aLimit) break;
        units += width;
        pos += bytes;
    }
    return aText.substr(0, pos);
}

TAIResponse Failure(std::string aMessage) {
    TAIResponse response;
    response.ErrorMessage = std::move(aMessage);
    return response;
}

}  // namespace

// [SECTION] Endpoint, headers and Send

TMCPAIClient::TMCPAIClient(TORXMCPServer& aServer) : fServer(aServer), fTransport(MakeCurlTransport()) {}

TMCPAIClient::~TMCPAIClient() = default;

void TMCPAIClient::SetTransport(std::unique_ptr<IAIHttpTransport> aTransport) {
    fTransport = aTransport ? std::move(aTransport) : MakeCurlTransport();
}

std::string TMCPAIClient::DefaultBaseUrl(TMCPAIProvider aProvider) {
    switch (aProvider) {
        case TMCPAIProvider::aiAnthropic:
            return "https://api.anthropic.com";
        case TMCPAIProvider::aiOpenAI:
            return "https://api.openai.com";
        case TMCPAIProvider::aiGemini:
            return "https://generativelanguage.googleapis.com";
        case TMCPAIProvider::aiOpenRouter:
            return "https://openrouter.ai";
    }
    return {};
}

std::string TMCPAIClient::GetApiUrl() const {
    const TMCPAIProvider provider = fServer.AIProvider();
    std::string base = fBaseUrl.empty() ? DefaultBaseUrl(provider) : fBaseUrl;
    while (!base.empty() && base.back() == '/') base.pop_back();
    switch (provider) {
        case TMCPAIProvider::aiAnthropic:
            return base + "/v1/messages";
        case TMCPAIProvider::aiOpenAI:
            return base + "/v1/chat/completions";
        case TMCPAIProvider::aiGemini:
            return base + "/v1beta/models/" + fServer.AIModel() + ":generateContent";
        case TMCPAIProvider::aiOpenRouter:
            return base + "/api/v1/chat/completions";
    }
    return {};
}

TAIHttpHeaders TMCPAIClient::BuildHeaders(TMCPAIProvider aProvider) const {
    const std::string& key = fServer.AIApiKey();
    switch (aProvider) {
        case TMCPAIProvider::aiAnthropic:
            return {{"x-api-key", key},
                    {"anthropic-version", "2023-06-01"},
                    {"content-type", "application/json"}};
        case TMCPAIProvider::aiGemini:
            return {{"x-goog-api-key", key}, {"content-type", "application/json"}};
        case TMCPAIProvider::aiOpenAI:
        case TMCPAIProvider::aiOpenRouter:
            break;
    }
    return {{"Authorization", "Bearer " + key}, {"content-type", "application/json"}};
}

const TJSON* TMCPAIClient::OwnToolArguments(TJSON aArguments) {
    fOwned.push_back(std::make_unique<TJSON>(std::move(aArguments)));
    return fOwned.back().get();
}

namespace {

constexpr std::string_view kNoImageNote = "[a picture was made here, but this model takes no image input]";

// The conversation with every image replaced by a note, for a model that cannot see.
TJSON WithImageNotes(const TJSON& aMessages) {
    TJSON messages = aMessages;
    const auto replace = [](TJSON& aBlocks, const auto& aSelf) -> void {
        for (auto& block : aBlocks) {
            if (!block.is_object()) continue;
            const std::string type = StringMember(block, "type");
            if (type == "image") {
                block = {{"type", "text"}, {"text", kNoImageNote}};
            } else if (type == "tool_result") {
                const auto content = block.find("content");
                if (content != block.end() && content->is_array()) aSelf(*content, aSelf);
            }
        }
    };
    for (auto& message : messages) {
        if (!message.is_object()) continue;
        const auto content = message.find("content");
        if (content != message.end() && content->is_array()) replace(*content, replace);
    }
    return messages;
}

// The image blocks a tool result carries beside its text.
std::vector<const TJSON*> ResultImages(const TJSON& aBlock) {
    std::vector<const TJSON*> images;
    const TJSON* content = Member(aBlock, "content");
    if (content == nullptr || !content->is_array()) return images;
    for (const auto& inner : *content)
        if (StringMember(inner, "type") == "image") images.push_back(&inner);
    return images;
}

}  // namespace

TAIResponse TMCPAIClient::Send(const TJSON& aOriginalMessages, std::string_view aSystem,
                               const TJSON& aTools) {
    fOwned.clear();
    fLastResponse = nullptr;
    try {
        const TJSON noted = fImageInput ? TJSON() : WithImageNotes(aOriginalMessages);
        const TJSON& aMessages = fImageInput ? aOriginalMessages : noted;
        const TMCPAIProvider provider = fServer.AIProvider();
        TJSON request;
        switch (provider) {
            case TMCPAIProvider::aiAnthropic:
                request = BuildAnthropicRequest(aMessages, aSystem, aTools);
                break;
            case TMCPAIProvider::aiOpenAI:
            case TMCPAIProvider::aiOpenRouter:
                request = BuildOpenAIRequest(aMessages, aSystem, aTools);
                break;
            case TMCPAIProvider::aiGemini:
                request = BuildGeminiRequest(aMessages, aSystem, aTools);
                break;
            default:
                return Failure("Unknown AI provider");
        }
        if (std::string refused = CheckImageSizes(aMessages); !refused.empty())
            return Failure(std::move(refused));

        TAIHttpResult http;
        try {
            http = fTransport->Post(GetApiUrl(), BuildHeaders(provider), DumpCompact(request));
        } catch (const std::exception& error) {
            const std::string what = error.what();
            http = TAIHttpResult::Failure(QVLErr::kNoAnswer, what.empty() ? "unknown error" : what);
        }
        if (!http.Ok()) {
            TAIResponse failed = Failure("Connection error: " + http.Message);
            failed.ConnectionFailed = true;
            return failed;
        }
        fServer.Log(fmt::format("AI API status: {}", http.Value.Status));
        if (http.Value.Status != 200) {
            TAIResponse failed = Failure(
                fmt::format("API error {}: {}", http.Value.Status, FirstUtf16Units(http.Value.Body, 300)));
            failed.HttpStatus = http.Value.Status;
            return failed;
        }
        TJSONTextResult parsed = ParseJsonText(http.Value.Body);
        TJSON body = std::move(parsed.Value);
        if (!body.is_object()) {
            // A text beyond the reader's limits says which limit, so that it is not taken for a garbled one.
            const bool limited =
                parsed.Error == TJSONTextError::jeTooDeep || parsed.Error == TJSONTextError::jeTooLarge;
            TAIResponse failed = Failure(limited ? "Failed to parse API response: " + parsed.Message
                                                 : std::string("Failed to parse API response"));
            failed.HttpStatus = http.Value.Status;
            return failed;
        }
        fLastResponse = std::move(body);
        TAIResponse response = provider == TMCPAIProvider::aiAnthropic ? ParseAnthropicResponse(fLastResponse)
                               : provider == TMCPAIProvider::aiGemini  ? ParseGeminiResponse(fLastResponse)
                                                                       : ParseOpenAIResponse(fLastResponse);
        response.HttpStatus = http.Value.Status;
        return response;
    } catch (const std::exception& error) {
        fOwned.clear();
        return Failure(error.what());
    }
}

// [SECTION] Anthropic

TJSON TMCPAIClient::BuildAnthropicRequest(const TJSON& aMessages, std::string_view aSystem,
                                          const TJSON& aTools) const {
    TJSON request = TJSON::object();
    request["model"] = fServer.AIModel();
    request["max_tokens"] = fServer.AIMaxTokens();
    if (!aSystem.empty()) {
        if (fPromptCaching)
            request["system"] = TJSON::array(
                {{{"type", "text"}, {"text", aSystem}, {"cache_control", {{"type", "ephemeral"}}}}});
        else
            request["system"] = aSystem;
    }
    // The neutral shape is Anthropic's own, but the members kept for the other providers are not, and the
    // API refuses members it does not know.
    TJSON messages = aMessages.is_array() ? aMessages : TJSON::array();
    for (auto& message : messages) {
        if (!message.is_object()) continue;
        message.erase("reasoning_details");
        const auto content = message.find("content");
        if (content == message.end() || !content->is_array()) continue;
        for (auto& block : *content) {
            if (!block.is_object()) continue;
            block.erase("tool_name");
            block.erase("thought_signature");
        }
    }
    request["messages"] = std::move(messages);
    if (aTools.is_array() && !aTools.empty()) {
        request["tools"] = aTools;
        // A marker on the last tool caches every tool before it, and the system text with them.
        if (fPromptCaching && request["tools"].back().is_object())
            request["tools"].back()["cache_control"] = {{"type", "ephemeral"}};
    }
    return request;
}

TAIResponse TMCPAIClient::ParseAnthropicResponse(const TJSON& aBody) {
    TAIResponse response;
    const std::string stop = StringMember(aBody, "stop_reason");
    response.StopReason = stop.empty() ? "end_turn" : stop;
    response.HasToolUse = response.StopReason == "tool_use";
    for (const auto& block : ArrayMember(aBody, "content")) {
        const std::string type = StringMember(block, "type");
        if (type == "text") {
            response.Text += StringMember(block, "text");
        } else if (type == "tool_use") {
            TAIToolCall call;
            call.Id = StringMember(block, "id");
            call.Name = StringMember(block, "name");
            if (const TJSON* input = Member(block, "input")) call.Arguments = OwnToolArguments(*input);
            response.ToolCalls.push_back(std::move(call));
        }
    }
    if (const TJSON* usage = Member(aBody, "usage")) {
        response.Usage.InputTokens = IntegerOf(Member(*usage, "input_tokens"));
        response.Usage.OutputTokens = IntegerOf(Member(*usage, "output_tokens"));
    }
    return response;
}

// [SECTION] OpenAI and OpenRouter

namespace {

constexpr const char* kPictureMark = "orvex_tool_pictures";

TJSON OpenAIImagePart(const TJSON& aBlock) {
    const TJSON* source = Member(aBlock, "source");
    const std::string url = source == nullptr ? std::string()
                                              : "data:" + StringMember(*source, "media_type") + ";base64," +
                                                    StringMember(*source, "data");
    return {{"type", "image_url"}, {"image_url", {{"url", url}}}};
}

void CarryReasoning(const TJSON& aFrom, TJSON& aTo) {
    const TJSON* details = Member(aFrom, "reasoning_details");
    if (details != nullptr && !details->is_null()) aTo["reasoning_details"] = *details;
}

TJSON OpenAIAssistant(const TJSON& aMessage, const TJSON& aBlocks) {
    std::string text;
    TJSON calls = TJSON::array();
    for (const auto& block : aBlocks) {
        const std::string type = StringMember(block, "type");
        if (type == "text") {
            text += StringMember(block, "text");
        } else if (type == "tool_use") {
            const TJSON* input = Member(block, "input");
            const std::string arguments = input == nullptr || input->is_null() ? "{}" : DumpCompact(*input);
            calls.push_back(
                {{"id", StringMember(block, "id")},
                 {"type", "function"},
                 {"function", {{"name", StringMember(block, "name")}, {"arguments", arguments}}}});
        }
    }
    TJSON message = {{"role", "assistant"}, {"content", text}};
    if (!calls.empty()) message["tool_calls"] = std::move(calls);
    CarryReasoning(aMessage, message);
    return message;
}

// A user turn may hold tool results and ordinary parts; the results come first because they must follow
// the assistant's calls directly.
void AppendOpenAIUser(const std::string& aRole, const TJSON& aBlocks, TJSON& aOut) {
    TJSON parts = TJSON::array();
    TJSON pictures = TJSON::array();
    for (const auto& block : aBlocks) {
        const std::string type = StringMember(block, "type");
        if (type == "tool_result") {
            aOut.push_back({{"role", "tool"},
                            {"tool_call_id", StringMember(block, "tool_use_id")},
                            {"content", ContentText(Member(block, "content"))}});
            // A tool message carries text only: its pictures follow in a user message of their own.
            const auto images = ResultImages(block);
            if (!images.empty())
                pictures.push_back(
                    {{"type", "text"},
                     {"text", "The picture that " + StringMember(block, "tool_name") + " returned:"}});
            for (const TJSON* image : images) pictures.push_back(OpenAIImagePart(*image));
        } else if (type == "text") {
            parts.push_back({{"type", "text"}, {"text", StringMember(block, "text")}});
        } else if (type == "image") {
            parts.push_back(OpenAIImagePart(block));
        }
    }
    if (!parts.empty()) aOut.push_back({{"role", aRole}, {"content", std::move(parts)}});
    if (!pictures.empty())
        aOut.push_back({{"role", "user"}, {"content", std::move(pictures)}, {kPictureMark, true}});
}

// Tool messages must follow the assistant's calls without a break, so the pictures of a run of results
// move behind the whole run.
TJSON PicturesAfterToolRuns(TJSON aMessages) {
    TJSON out = TJSON::array();
    TJSON held = TJSON::array();
    for (auto& message : aMessages) {
        const bool picture = message.contains(kPictureMark);
        const bool tool = StringMember(message, "role") == "tool";
        if (!tool && !picture) {
            for (auto& h : held) out.push_back(std::move(h));
            held = TJSON::array();
        }
        if (picture) {
            message.erase(kPictureMark);
            held.push_back(std::move(message));
        } else {
            out.push_back(std::move(message));
        }
    }
    for (auto& h : held) out.push_back(std::move(h));
    return out;
}

}  // namespace

TJSON TMCPAIClient::BuildOpenAIRequest(const TJSON& aMessages, std::string_view aSystem,
                                       const TJSON& aTools) const {
    TJSON request = TJSON::object();
    request["model"] = fServer.AIModel();
    request["max_tokens"] = fServer.AIMaxTokens();
    if (fServer.AIProvider() == TMCPAIProvider::aiOpenRouter) request["reasoning"] = {{"enabled", true}};
    TJSON messages = TJSON::array();
    if (!aSystem.empty()) messages.push_back({{"role", "system"}, {"content", aSystem}});
    if (aMessages.is_array()) {
        for (const auto& message : aMessages) {
            const std::string role = StringMember(message, "role");
            const TJSON* content = Member(message, "content");
            if (content != nullptr && content->is_array()) {
                if (role == "assistant") {
                    messages.push_back(OpenAIAssistant(message, *content));
                } else {
                    AppendOpenAIUser(role, *content, messages);
                }
            } else {
                TJSON plain = {{"role", role}, {"content", ContentText(content)}};
                if (role == "assistant") CarryReasoning(message, plain);
                messages.push_back(std::move(plain));
            }
        }
    }
    request["messages"] = PicturesAfterToolRuns(std::move(messages));
    if (aTools.is_array() && !aTools.empty()) request["tools"] = ConvertToolsToOpenAI(aTools);
    return request;
}

TJSON TMCPAIClient::ConvertToolsToOpenAI(const TJSON& aTools) {
    TJSON converted = TJSON::array();
    if (!aTools.is_array()) return converted;
    for (const auto& tool : aTools) {
        const TJSON* schema = Member(tool, "input_schema");
        if (schema == nullptr) schema = Member(tool, "inputSchema");
        TJSON parameters = schema != nullptr && !schema->is_null()
                               ? *schema
                               : TJSON{{"type", "object"}, {"properties", TJSON::object()}};
        converted.push_back({{"type", "function"},
                             {"function",
                              {{"name", StringMember(tool, "name")},
                               {"description", StringMember(tool, "description")},
                               {"parameters", std::move(parameters)}}}});
    }
    return converted;
}

TAIResponse TMCPAIClient::ParseOpenAIResponse(const TJSON& aBody) {
    TAIResponse response;
    const TJSON& choices = ArrayMember(aBody, "choices");
    const TJSON* choice = choices.empty() ? nullptr : &choices.front();
    std::string finish = choice == nullptr ? std::string() : StringMember(*choice, "finish_reason");
    if (finish.empty()) finish = "stop";
    response.HasToolUse = finish == "tool_calls";
    response.StopReason = response.HasToolUse ? "tool_use" : "end_turn";
    if (const TJSON* message = choice == nullptr ? nullptr : Member(*choice, "message")) {
        response.Text = StringMember(*message, "content");
        const TJSON* details = Member(*message, "reasoning_details");
        if (details != nullptr && !details->is_null()) response.ReasoningDetails = OwnToolArguments(*details);
        for (const auto& entry : ArrayMember(*message, "tool_calls")) {
            TAIToolCall call;
            call.Id = StringMember(entry, "id");
            const TJSON* function = Member(entry, "function");
            std::string arguments;
            if (function != nullptr) {
                call.Name = StringMember(*function, "name");
                arguments = StringMember(*function, "arguments");
            }
            TJSON parsed = ParseJsonOrDiscarded(arguments.empty() ? std::string_view("{}") : arguments);
            // Arguments that are not an object cannot be handed to a tool; it sees none and says what it
            // missed.
            call.Arguments = OwnToolArguments(parsed.is_object() ? std::move(parsed) : TJSON::object());
            response.ToolCalls.push_back(std::move(call));
        }
    }
    if (const TJSON* usage = Member(aBody, "usage")) {
        response.Usage.InputTokens = IntegerOf(Member(*usage, "prompt_tokens"));
        response.Usage.OutputTokens = IntegerOf(Member(*usage, "completion_tokens"));
    }
    return response;
}

// [SECTION] Gemini

namespace {

TJSON GeminiParts(const TJSON* aContent) {
    TJSON parts = TJSON::array();
    if (aContent == nullptr) return parts;
    if (!aContent->is_array()) {
        const std::string text = ContentText(aContent);
        if (!text.empty()) parts.push_back({{"text", text}});
        return parts;
    }
    for (const auto& block : *aContent) {
        const std::string type = StringMember(block, "type");
        if (type == "text") {
            // The API refuses a part without data, and an empty text is one.
            const std::string text = StringMember(block, "text");
            if (!text.empty()) parts.push_back({{"text", text}});
        } else if (type == "image") {
            const TJSON* source = Member(block, "source");
            if (source == nullptr) continue;
            parts.push_back({{"inlineData",
                              {{"mimeType", StringMember(*source, "media_type")},
                               {"data", StringMember(*source, "data")}}}});
        } else if (type == "tool_use") {
            const TJSON* input = Member(block, "input");
            TJSON part = {{"functionCall",
                           {{"name", StringMember(block, "name")},
                            {"args", input != nullptr && input->is_object() ? *input : TJSON::object()}}}};
            const std::string signature = StringMember(block, "thought_signature");
            if (!signature.empty()) part["thoughtSignature"] = signature;
            parts.push_back(std::move(part));
        } else if (type == "tool_result") {
            parts.push_back({{"functionResponse",
                              {{"name", StringMember(block, "tool_name")},
                               {"response", {{"content", ContentText(Member(block, "content"))}}}}}});
            // The response object holds text; the picture goes beside it in the same turn.
            for (const TJSON* image : ResultImages(block)) {
                const TJSON* source = Member(*image, "source");
                if (source == nullptr) continue;
                parts.push_back({{"inlineData",
                                  {{"mimeType", StringMember(*source, "media_type")},
                                   {"data", StringMember(*source, "data")}}}});
            }
        }
    }
    return parts;
}

// Members of JSON Schema that the function-declaration schema does not accept; dropping them only loosens
// the hint the model gets.
void StripUnsupportedSchema(TJSON& aSchema) {
    if (aSchema.is_object()) {
        aSchema.erase("additionalProperties");
        aSchema.erase("$schema");
        for (auto& [key, value] : aSchema.items()) StripUnsupportedSchema(value);
    } else if (aSchema.is_array()) {
        for (auto& value : aSchema) StripUnsupportedSchema(value);
    }
}

}  // namespace

TJSON TMCPAIClient::BuildGeminiRequest(const TJSON& aMessages, std::string_view aSystem,
                                       const TJSON& aTools) const {
    TJSON request = TJSON::object();
    if (!aSystem.empty()) request["systemInstruction"] = {{"parts", TJSON::array({{{"text", aSystem}}})}};
    TJSON contents = TJSON::array();
    if (aMessages.is_array()) {
        for (const auto& message : aMessages) {
            const std::string role = StringMember(message, "role") == "assistant" ? "model" : "user";
            TJSON parts = GeminiParts(Member(message, "content"));
            if (parts.empty()) continue;
            // Several results for one turn of parallel calls belong in one content, so turns of the same
            // role are merged.
            if (!contents.empty() && contents.back()["role"] == role) {
                for (auto& part : parts) contents.back()["parts"].push_back(std::move(part));
            } else {
                contents.push_back({{"role", role}, {"parts", std::move(parts)}});
            }
        }
    }
    request["contents"] = std::move(contents);
    if (aTools.is_array() && !aTools.empty()) {
        request["tools"] = TJSON::array({{{"functionDeclarations", ConvertToolsToGemini(aTools)}}});
    }
    request["generationConfig"] = {{"maxOutputTokens", fServer.AIMaxTokens()}};
    return request;
}

TJSON TMCPAIClient::ConvertToolsToGemini(const TJSON& aTools) {
    TJSON converted = TJSON::array();
    if (!aTools.is_array()) return converted;
    for (const auto& tool : aTools) {
        TJSON declaration = {{"name", StringMember(tool, "name")},
                             {"description", StringMember(tool, "description")}};
        const TJSON* schema = Member(tool, "input_schema");
        if (schema == nullptr) schema = Member(tool, "inputSchema");
        // An object schema without properties is refused; a tool without arguments simply has none.
        const TJSON* properties = schema == nullptr ? nullptr : Member(*schema, "properties");
        if (properties != nullptr && properties->is_object() && !properties->empty()) {
            TJSON parameters = *schema;
            StripUnsupportedSchema(parameters);
            declaration["parameters"] = std::move(parameters);
        }
        converted.push_back(std::move(declaration));
    }
    return converted;
}

TAIResponse TMCPAIClient::ParseGeminiResponse(const TJSON& aBody) {
    TAIResponse response;
    const TJSON& candidates = ArrayMember(aBody, "candidates");
    const TJSON* content = candidates.empty() ? nullptr : Member(candidates.front(), "content");
    if (content != nullptr) {
        for (const auto& part : ArrayMember(*content, "parts")) {
            const TJSON* thought = Member(part, "thought");
            if (const TJSON* text = Member(part, "text")) {
                // Thought summaries are the model's notes to itself, not part of the answer.
                if (thought == nullptr || *thought != true) response.Text += StringOf(text);
            }
            if (const TJSON* function = Member(part, "functionCall")) {
                TAIToolCall call;
                call.Id = fmt::format("gemini_{}", response.ToolCalls.size());
                call.Name = StringMember(*function, "name");
                const TJSON* args = Member(*function, "args");
                call.Arguments =
                    OwnToolArguments(args != nullptr && args->is_object() ? *args : TJSON::object());
                call.ThoughtSignature = StringMember(part, "thoughtSignature");
                response.ToolCalls.push_back(std::move(call));
            }
        }
    }
    response.HasToolUse = !response.ToolCalls.empty();
    response.StopReason = response.HasToolUse ? "tool_use" : "end_turn";
    if (const TJSON* usage = Member(aBody, "usageMetadata")) {
        response.Usage.InputTokens = IntegerOf(Member(*usage, "promptTokenCount"));
        // Thinking is billed as output, so it counts here.
        response.Usage.OutputTokens = IntegerOf(Member(*usage, "candidatesTokenCount")) +
                                      IntegerOf(Member(*usage, "thoughtsTokenCount"));
    }
    return response;
}

// [SECTION] Image limit

namespace {

std::int64_t DecodedBase64Size(std::string_view aData) {
    std::int64_t symbols = 0;
    for (const char c : aData) {
        if (c != '=' && c != '\r' && c != '\n' && c != ' ' && c != '\t') ++symbols;
    }
    return symbols * 3 / 4;
}

}  // namespace

std::string TMCPAIClient::CheckImageSizes(const TJSON& aMessages) const {
    const std::int64_t limit = fServer.MaxAIImageBytes();
    if (limit <= 0 || !aMessages.is_array()) return {};
    std::string refused;
    const auto check = [&](const TJSON& aBlocks, const auto& aSelf) -> void {
        for (const auto& block : aBlocks) {
            if (!refused.empty()) return;
            const std::string type = StringMember(block, "type");
            if (type == "image") {
                const TJSON* source = Member(block, "source");
                const std::int64_t size =
                    source == nullptr ? 0 : DecodedBase64Size(StringMember(*source, "data"));
                if (size > limit) {
                    refused = fmt::format("Image too large: {} bytes, the limit is {} bytes", size, limit);
                }
            } else if (type == "tool_result") {
                const TJSON* content = Member(block, "content");
                if (content != nullptr && content->is_array()) aSelf(*content, aSelf);
            }
        }
    };
    for (const auto& message : aMessages) {
        const TJSON* content = Member(message, "content");
        if (content != nullptr && content->is_array()) check(*content, check);
        if (!refused.empty()) break;
    }
    return refused;
}

}  // namespace Orvex
