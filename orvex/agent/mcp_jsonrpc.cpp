// The JSON-RPC layer of TORXMCPServer: envelopes, the dispatch table of both protocol generations, and the
// method handlers. Everything but a tool body reads configuration only, so it runs on connection threads.
#include "orvex/agent/mcp_jsonrpc.h"

#include <exception>
#include <optional>

#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/core/text.h"

namespace Orvex {

using Qvl::Utils::SameTextIgnoringCase;
using Qvl::Utils::StartsWithIgnoringCase;

TJSON MakeResult(const TJSON& aId, TJSON aResult) {
    TJSON response = TJSON::object();
    response["jsonrpc"] = "2.0";
    response["id"] = aId;
    response["result"] = std::move(aResult);
    return response;
}

TJSON MakeError(const TJSON& aId, std::int32_t aCode, std::string_view aMessage) {
    TJSON response = TJSON::object();
    response["jsonrpc"] = "2.0";
    response["id"] = aId;
    response["error"] = {{"code", aCode}, {"message", aMessage}};
    return response;
}

TJSON MakeTextContent(std::string_view aText, bool aIsError) {
    TJSON result = TJSON::object();
    result["content"] = TJSON::array({{{"type", "text"}, {"text", aText}}});
    if (aIsError) result["isError"] = true;
    return result;
}

TJSON MakeUnsupportedProtocolError(const TJSON& aId, std::string_view aRequested) {
    TJSON response = MakeError(aId, MCPErrorCode::kUnsupportedVersion, "Unsupported protocol version");
    TJSON supported = TJSON::array();
    for (const auto version : MCP_SUPPORTED_VERSIONS) supported.push_back(version);
    response["error"]["data"] = {{"supported", std::move(supported)}, {"requested", aRequested}};
    return response;
}

std::string DumpCompact(const TJSON& aValue) {
    return aValue.dump(-1, ' ', false, TJSON::error_handler_t::replace);
}

namespace {

TJSON ToolsCapability() {
    return {{"tools", {{"listChanged", false}}}};
}

std::string StringMember(const TJSON& aObject, const char* aName) {
    const auto it = aObject.find(aName);
    return it != aObject.end() && it->is_string() ? it->get<std::string>() : std::string();
}

bool IsListMethod(std::string_view aMethod) {
    for (const std::string_view listed :
         {"tools/list", "resources/list", "resources/templates/list", "prompts/list", "server/discover"}) {
        if (SameTextIgnoringCase(aMethod, listed)) return true;
    }
    return false;
}

}  // namespace

std::optional<TJSON> TORXMCPServer::ProcessJsonRpc(const TJSON& aRequest, bool aModern) {
    const auto idIt = aRequest.find("id");
    const TJSON id = idIt != aRequest.end() ? *idIt : TJSON();
    if (StringMember(aRequest, "jsonrpc") != "2.0") {
        return MakeError(id, MCPErrorCode::kInvalidRequest, "Invalid or missing jsonrpc version");
    }
    const auto paramsIt = aRequest.find("params");
    const TJSON* params = paramsIt != aRequest.end() && paramsIt->is_object() ? &*paramsIt : nullptr;
    const std::string method = StringMember(aRequest, "method");
    if (method.empty()) {
        if (id.is_null()) return std::nullopt;
        return MakeError(id, MCPErrorCode::kInvalidRequest, "Missing method");
    }

    std::optional<TJSON> response;
    if (method == "server/discover" && aModern) {
        response = HandleServerDiscover(id);
    } else if (method == "initialize" && !aModern) {
        response = HandleInitialize(id, params);
    } else if (method == "notifications/initialized") {
        if (!aModern) fInitialized = true;
    } else if (method == "ping" && !aModern) {
        response = HandlePing(id);
    } else if (method == "tools/list") {
        response = HandleToolsList(id);
    } else if (method == "tools/call") {
        response = HandleToolsCall(id, params);
    } else if (method == "resources/list") {
        response = HandleEmptyList(id, "resources");
    } else if (method == "resources/templates/list") {
        response = HandleEmptyList(id, "resourceTemplates");
    } else if (method == "prompts/list") {
        response = HandleEmptyList(id, "prompts");
    } else if (method.starts_with("notifications/")) {
        // Notifications need no answer, known or not.
    } else if (!id.is_null()) {
        response = MakeError(id, MCPErrorCode::kMethodNotFound, "Method not found: " + method);
    }
    if (response && aModern) DecorateModernResult(method, *response);
    return response;
}

TJSON TORXMCPServer::HandleServerDiscover(const TJSON& aId) const {
    TJSON versions = TJSON::array();
    for (const auto version : MCP_SUPPORTED_VERSIONS) versions.push_back(version);
    TJSON result = TJSON::object();
    result["supportedVersions"] = std::move(versions);
    result["capabilities"] = ToolsCapability();
    result["instructions"] = EffectiveInstructions();
    return MakeResult(aId, std::move(result));
}

TJSON TORXMCPServer::HandleInitialize(const TJSON& aId, const TJSON* aParams) {
    // The modern version is never agreed here: it has no initialize.
    std::string agreed(MCP_SUPPORTED_VERSIONS[1]);
    if (aParams != nullptr) {
        const std::string asked = StringMember(*aParams, "protocolVersion");
        for (std::size_t i = 1; i < MCP_SUPPORTED_VERSIONS.size(); ++i) {
            if (asked == MCP_SUPPORTED_VERSIONS[i]) agreed = asked;
        }
    }
    TJSON result = TJSON::object();
    result["protocolVersion"] = agreed;
    result["serverInfo"] = {{"name", fServerName}, {"version", fServerVersion}};
    result["capabilities"] = ToolsCapability();
    result["instructions"] = EffectiveInstructions();
    {
        std::lock_guard lock(fStateMutex);
        fProtocolVersion = agreed;
        fSessionId = GenerateSessionId();
    }
    return MakeResult(aId, std::move(result));
}

TJSON TORXMCPServer::HandlePing(const TJSON& aId) {
    return MakeResult(aId, TJSON::object());
}

TJSON TORXMCPServer::HandleEmptyList(const TJSON& aId, std::string_view aKey) {
    TJSON result = TJSON::object();
    result[std::string(aKey)] = TJSON::array();
    return MakeResult(aId, std::move(result));
}

TJSON TORXMCPServer::BuildToolsArray() const {
    TJSON tools = TJSON::array();
    for (const auto& tool : fTools) {
        TJSON entry = TJSON::object();
        entry["name"] = tool.Name;
        entry["title"] = ToolTitle(tool.Name);
        entry["description"] = tool.Description;
        entry["inputSchema"] = tool.InputSchema.is_null() ? TJSON{{"type", "object"}} : tool.InputSchema;
        entry["annotations"] = BuildToolAnnotations(tool.Name);
        TJSON output = tool.OutputSchema.is_null() ? BuildToolOutputSchema(tool.Name) : tool.OutputSchema;
        if (!output.is_null()) entry["outputSchema"] = std::move(output);
        tools.push_back(std::move(entry));
    }
    return tools;
}

TJSON TORXMCPServer::HandleToolsList(const TJSON& aId) const {
    std::shared_lock lock(fToolsMutex);
    TJSON tools = BuildToolsArray();
    lock.unlock();
    return MakeResult(aId, {{"tools", std::move(tools)}});
}

bool TORXMCPServer::AnswerToolsList(const TJSON& aRequest, bool aModern, std::string& aBody) const {
    if (StringMember(aRequest, "jsonrpc") != "2.0" || StringMember(aRequest, "method") != "tools/list")
        return false;
    // The list is tens of kilobytes of schemas: building and writing it for every request was most of
    // the request's cost, so it is written once per registration and the envelope is put around it.
    std::shared_ptr<const std::string> tools;
    {
        std::shared_lock lock(fToolsMutex);
        std::lock_guard text(fToolsTextMutex);
        if (!fToolsText || fToolsTextGeneration != fToolsGeneration) {
            fToolsText = std::make_shared<const std::string>(DumpCompact(BuildToolsArray()));
            fToolsTextGeneration = fToolsGeneration;
        }
        tools = fToolsText;
    }
    const auto idIt = aRequest.find("id");
    const std::string id = DumpCompact(idIt != aRequest.end() ? *idIt : TJSON());
    // The same members in the same order as MakeResult and DecorateModernResult would give.
    std::string extra;
    if (aModern) {
        TJSON decoration = {{"resultType", "complete"}};
        TJSON envelope = MakeResult(TJSON(), std::move(decoration));
        DecorateModernResult("tools/list", envelope);
        const std::string text = DumpCompact(envelope["result"]);
        // Appended piecewise: GCC 12 at -O3 reports a false -Wrestrict on `"," + text.substr(...)`.
        extra.reserve(text.size());
        extra.push_back(',');
        extra.append(text, 1, text.size() - 2);
    }
    std::string body;
    body.reserve(tools->size() + id.size() + extra.size() + 48);
    body.append(R"({"jsonrpc":"2.0","id":)").append(id).append(R"(,"result":{"tools":)");
    body.append(*tools).append(extra).append("}}");
    aBody = std::move(body);
    return true;
}

TJSON TORXMCPServer::HandleToolsCall(const TJSON& aId, const TJSON* aParams) {
    if (aParams == nullptr) return MakeError(aId, MCPErrorCode::kInvalidParams, "Missing params");
    const std::string name = StringMember(*aParams, "name");
    if (name.empty()) return MakeError(aId, MCPErrorCode::kInvalidParams, "Missing tool name");
    const auto argumentsIt = aParams->find("arguments");
    // Referred to, not copied: the call runs before this function returns, and arguments can be large.
    static const TJSON kNoArguments = TJSON::object();
    const TJSON& arguments =
        argumentsIt != aParams->end() && argumentsIt->is_object() ? *argumentsIt : kNoArguments;
    if (DrawLabel() == nullptr) {
        return MakeResult(aId, MakeTextContent("Error: No DrawLabel assigned to MCP server", true));
    }
    TMCPToolCall handler;
    {
        std::shared_lock lock(fToolsMutex);
        for (const auto& tool : fTools) {
            if (SameTextIgnoringCase(tool.Name, name)) {
                handler = tool.Handler;
                break;
            }
        }
    }
    if (!handler) return MakeError(aId, MCPErrorCode::kInvalidParams, "Unknown tool: " + name);

    const bool changes = ToolChangesDrawing(name);
    TJSON result;
    const auto body = [&] {
        // The document may have gone between the check above and this turn of the main thread.
        TORXBaseLabel* label = DrawLabel();
        if (label == nullptr) {
            result = MakeTextContent("Error: No DrawLabel assigned to MCP server", true);
            return;
        }
        result = handler(*label, arguments);
        if (changes) {
            if (fHooks.EndUpdate) fHooks.EndUpdate(*label);
            if (fHooks.Refresh) fHooks.Refresh(*label);
        }
    };
    try {
        if (fRunner != nullptr) {
            fRunner->RunSync(body);
        } else {
            std::lock_guard lock(fInlineMutex);
            body();
        }
    } catch (const std::exception& e) {
        result = MakeTextContent(std::string("Error: ") + e.what(), true);
    } catch (...) {
        result = MakeTextContent("Error: unknown exception", true);
    }
    return MakeResult(aId, std::move(result));
}

void TORXMCPServer::DecorateModernResult(std::string_view aMethod, TJSON& aResponse) const {
    const auto resultIt = aResponse.find("result");
    if (resultIt == aResponse.end() || !resultIt->is_object()) return;
    TJSON& result = *resultIt;
    if (!result.contains("resultType")) result["resultType"] = "complete";
    result["_meta"] = {
        {"io.modelcontextprotocol/serverInfo", {{"name", fServerName}, {"version", fServerVersion}}}};
    if (IsListMethod(aMethod)) {
        result["ttlMs"] = fToolListCacheTTL;
        result["cacheScope"] = "private";
    }
}

}  // namespace Orvex
