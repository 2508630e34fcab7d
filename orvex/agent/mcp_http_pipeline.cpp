// The request pipeline of TORXMCPServer, from a request record to a response record: path, origin, CORS,
// preflight, token, method, body size, JSON, batches, protocol-version and modern-header checks, in that
// order. It keeps its state in locals and only reads the server's configuration.
//
// [SECTION] Helpers
// [SECTION] Origin, token and version checks
// [SECTION] Modern request validation
// [SECTION] DoCommandGet
#include "orvex/agent/mcp_http_pipeline.h"

#include <fmt/format.h>

#include <array>
#include <exception>

#include "orvex/agent/mcp_jsonrpc.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/core/text.h"
#include "orvex/io/json_text.h"

namespace Orvex {

using Qvl::Utils::IsValidUtf8;
using Qvl::Utils::SameTextIgnoringCase;
using Qvl::Utils::StartsWithIgnoringCase;
using Qvl::Utils::ToLowerAscii;
using Qvl::Utils::Trim;
using Qvl::Utils::Utf16Length;

// [SECTION] Helpers

std::string_view FindHeader(const TMCPHeaders& aHeaders, std::string_view aName) {
    for (const auto& [name, value] : aHeaders) {
        if (SameTextIgnoringCase(name, aName)) return value;
    }
    return {};
}

namespace {

constexpr const char* kJsonType = "application/json";
// JSON text cannot hold a raw NUL (inside a string it is written \u0000), but the parser takes one for the
// end of its input and would accept `{valid}\0junk` as `{valid}`.
bool HoldsNul(std::string_view aText) {
    return aText.find('\0') != std::string_view::npos;
}

// The number of elements of a top-level array, counted in the text before anything is parsed, so that a
// batch of millions of tiny elements is refused before it costs their memory; 0 for any other value.
std::size_t BatchLength(std::string_view aText) {
    const auto start = aText.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos || aText[start] != '[') return 0;
    std::size_t depth = 0;
    std::size_t commas = 0;
    bool inString = false;
    bool escaped = false;
    bool any = false;
    for (const char c : aText.substr(start)) {
        if (inString) {
            if (escaped) {
                escaped = false;
            } else if (c == '\\') {
                escaped = true;
            } else if (c == '"') {
                inString = false;
            }
            continue;
        }
        if (depth == 1 && c != ' ' && c != '\t' && c != '\r' && c != '\n' && c != ']') any = true;
        if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            ++depth;
        } else if (c == ']' || c == '}') {
            if (depth > 0 && --depth == 0) break;
        } else if (c == ',' && depth == 1) {
            ++commas;
        }
    }
    return any ? commas + 1 : 0;
}

// Versions whose transport has no JSON-RPC batches. The others, and a client that names no version, may
// send them.
constexpr std::array<std::string_view, 3> kVersionsWithoutBatches{kMCPModernVersion, "2025-11-25",
                                                                  "2025-06-18"};

// A message with a method that is not a notification but no id (or a null one) asks for an answer it
// could not be matched with; it is refused rather than run unanswered or answered with a null id.
bool IsRequestWithoutId(const TJSON& aMessage) {
    const auto jsonrpc = aMessage.find("jsonrpc");
    if (jsonrpc == aMessage.end() || *jsonrpc != "2.0") return false;
    const auto method = aMessage.find("method");
    if (method == aMessage.end() || !method->is_string()) return false;
    const auto& name = method->get_ref<const std::string&>();
    if (name.empty() || name.starts_with("notifications/")) return false;
    const auto id = aMessage.find("id");
    return id == aMessage.end() || id->is_null();
}

TJSON MissingIdError() {
    return MakeError(TJSON(), MCPErrorCode::kInvalidRequest, "Invalid request: a request needs an id");
}

// Standard alphabet; padding optional; anything else makes the text invalid.
bool DecodeBase64(std::string_view aText, std::string& aBytes) {
    static constexpr auto kValues = [] {
        std::array<std::int8_t, 256> values{};
        values.fill(-1);
        constexpr std::string_view kAlphabet =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
            values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::int8_t>(i);
        }
        return values;
    }();
    while (!aText.empty() && aText.back() == '=') aText.remove_suffix(1);
    if (aText.size() % 4 == 1) return false;
    aBytes.clear();
    std::uint32_t bits = 0;
    int count = 0;
    for (const char c : aText) {
        const auto value = kValues[static_cast<unsigned char>(c)];
        if (value < 0) return false;
        bits = (bits << 6) | static_cast<std::uint32_t>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            aBytes += static_cast<char>((bits >> count) & 0xFFU);
        }
    }
    return true;
}

// Compares without leaving the position of the first difference in the timing.
bool ConstantTimeEquals(std::string_view aGiven, std::string_view aExpected) {
    const std::size_t length = std::max(aGiven.size(), aExpected.size());
    unsigned difference = aGiven.size() == aExpected.size() ? 0U : 1U;
    for (std::size_t i = 0; i < length; ++i) {
        const auto a = i < aGiven.size() ? static_cast<unsigned char>(aGiven[i]) : 0U;
        const auto b = i < aExpected.size() ? static_cast<unsigned char>(aExpected[i]) : 0U;
        difference |= a ^ b;
    }
    return difference == 0;
}

void Send(TMCPHttpResponse& aResponse, int aStatus, std::string aBody) {
    aResponse.Status = aStatus;
    aResponse.ContentType = kJsonType;
    aResponse.Body = std::move(aBody);
}

void SendJson(TMCPHttpResponse& aResponse, int aStatus, const TJSON& aBody) {
    Send(aResponse, aStatus, DumpCompact(aBody));
}

void SendEmpty(TMCPHttpResponse& aResponse, int aStatus) {
    aResponse.Status = aStatus;
    aResponse.ContentType.clear();
    aResponse.Body.clear();
}

}  // namespace

// [SECTION] Origin, token and version checks

bool TORXMCPServer::IsOriginAllowed(std::string_view aOrigin) const {
    if (Trim(aOrigin).empty()) return true;
    const std::string port = std::to_string(OriginPort());
    for (const std::string_view prefix :
         {"http://localhost:", "http://127.0.0.1:", "https://localhost:", "https://127.0.0.1:"}) {
        if (SameTextIgnoringCase(aOrigin, std::string(prefix) + port)) return true;
    }
    std::string_view rest = fAllowedOrigins;
    while (!rest.empty()) {
        const auto end = rest.find(';');
        const auto entry = Trim(rest.substr(0, end));
        if (!entry.empty() && SameTextIgnoringCase(entry, aOrigin)) return true;
        if (end == std::string_view::npos) break;
        rest.remove_prefix(end + 1);
    }
    return false;
}

bool TORXMCPServer::IsAuthorized(std::string_view aAuthorization) const {
    if (Trim(fAuthToken).empty()) return true;
    constexpr std::string_view kScheme = "Bearer ";
    if (aAuthorization.size() <= kScheme.size() || !StartsWithIgnoringCase(aAuthorization, kScheme))
        return false;
    return ConstantTimeEquals(aAuthorization.substr(kScheme.size()), fAuthToken);
}

bool TORXMCPServer::IsProtocolVersionValid(std::string_view aVersion) {
    if (Trim(aVersion).empty()) return true;
    for (const auto version : MCP_SUPPORTED_VERSIONS) {
        if (aVersion == version) return true;
    }
    return false;
}

std::string TORXMCPServer::GetRequestProtocolVersion(const TJSON& aRequest) {
    const auto params = aRequest.find("params");
    if (params == aRequest.end() || !params->is_object()) return {};
    const auto meta = params->find("_meta");
    if (meta == params->end() || !meta->is_object()) return {};
    const auto version = meta->find("io.modelcontextprotocol/protocolVersion");
    return version != meta->end() && version->is_string() ? version->get<std::string>() : std::string();
}

bool TORXMCPServer::IsModernRequest(const TJSON& aRequest, std::string_view aHeaderVersion) {
    if (SameTextIgnoringCase(Trim(aHeaderVersion), kMCPModernVersion)) return true;
    if (!GetRequestProtocolVersion(aRequest).empty()) return true;
    const auto method = aRequest.find("method");
    return method != aRequest.end() && method->is_string() &&
           SameTextIgnoringCase(method->get_ref<const std::string&>(), "server/discover");
}

// [SECTION] Modern request validation

bool TORXMCPServer::DecodeMCPHeaderValue(std::string_view aValue, std::string& aDecoded) {
    aDecoded = aValue;
    constexpr std::string_view kPrefix = "=?base64?";
    constexpr std::string_view kSuffix = "?=";
    if (aValue.size() < kPrefix.size() + kSuffix.size() || !aValue.starts_with(kPrefix) ||
        !aValue.ends_with(kSuffix)) {
        return true;
    }
    std::string bytes;
    const auto encoded = aValue.substr(kPrefix.size(), aValue.size() - kPrefix.size() - kSuffix.size());
    if (!DecodeBase64(encoded, bytes) || !IsValidUtf8(bytes)) return false;
    aDecoded = std::move(bytes);
    return true;
}

bool TORXMCPServer::ValidateModernRequest(const TJSON& aRequest, std::string_view aHeaderVersion,
                                          std::string_view aHeaderMethod, std::string_view aHeaderName,
                                          std::string_view aAccept, TJSON& aError) {
    const auto idIt = aRequest.find("id");
    const TJSON id = idIt != aRequest.end() ? *idIt : TJSON();
    const std::string metaVersion = GetRequestProtocolVersion(aRequest);
    const auto fail = [&](std::int32_t aCode, std::string_view aMessage) {
        aError = MakeError(id, aCode, aMessage);
        return false;
    };
    if (metaVersion.empty() || Trim(aHeaderVersion).empty()) {
        return fail(MCPErrorCode::kHeaderMismatch,
                    "Header mismatch: protocol version is required in both HTTP header and request _meta");
    }
    if (aHeaderVersion != metaVersion) {
        return fail(MCPErrorCode::kHeaderMismatch,
                    "Header mismatch: MCP-Protocol-Version does not match request _meta");
    }
    if (metaVersion != kMCPModernVersion) {
        aError = MakeUnsupportedProtocolError(id, metaVersion);
        return false;
    }
    const auto& meta = aRequest.at("params").at("_meta");
    const auto capabilities = meta.find("io.modelcontextprotocol/clientCapabilities");
    if (capabilities == meta.end() || !capabilities->is_object()) {
        return fail(MCPErrorCode::kMissingCapabilities, "Missing required client capability metadata");
    }
    const auto methodIt = aRequest.find("method");
    const std::string method =
        methodIt != aRequest.end() && methodIt->is_string() ? methodIt->get<std::string>() : "";
    if (aHeaderMethod.empty() || aHeaderMethod != method) {
        return fail(MCPErrorCode::kHeaderMismatch,
                    "Header mismatch: Mcp-Method does not match the JSON-RPC method");
    }
    if (SameTextIgnoringCase(method, "tools/call")) {
        const auto& params = aRequest.at("params");
        const auto nameIt = params.find("name");
        const std::string name =
            nameIt != params.end() && nameIt->is_string() ? nameIt->get<std::string>() : "";
        std::string decoded;
        if (aHeaderName.empty() || !DecodeMCPHeaderValue(aHeaderName, decoded) || decoded != name) {
            return fail(MCPErrorCode::kHeaderMismatch,
                        "Header mismatch: Mcp-Name does not match the tool name");
        }
    }
    const std::string accept = ToLowerAscii(aAccept);
    if (accept.find("application/json") == std::string::npos ||
        accept.find("text/event-stream") == std::string::npos) {
        return fail(MCPErrorCode::kInvalidRequest,
                    "Accept must include application/json and text/event-stream");
    }
    return true;
}

// [SECTION] DoCommandGet

bool TORXMCPServer::AdmitRequestHead(const TMCPHttpRequest& aRequest, TMCPHttpResponse& aResponse) const {
    aResponse = TMCPHttpResponse();
    if (!Trim(fEndpointPath).empty() && !SameTextIgnoringCase(aRequest.Path, fEndpointPath)) {
        Send(aResponse, 404, R"({"error":"MCP endpoint not found"})");
        return false;
    }
    const auto origin = FindHeader(aRequest.Headers, "Origin");
    if (!IsOriginAllowed(origin)) {
        Send(aResponse, 403, R"({"error":"Origin not allowed"})");
        return false;
    }
    if (!origin.empty()) {
        aResponse.Headers.emplace_back("Access-Control-Allow-Origin", origin);
        aResponse.Headers.emplace_back("Vary", "Origin");
    }
    aResponse.Headers.emplace_back("Access-Control-Allow-Methods", "POST, OPTIONS");
    aResponse.Headers.emplace_back(
        "Access-Control-Allow-Headers",
        "Content-Type, Authorization, Accept, MCP-Protocol-Version, Mcp-Method, Mcp-Name");
    // A browser's preflight carries no token, so it is answered before the token is checked.
    if (SameTextIgnoringCase(aRequest.Method, "OPTIONS")) {
        SendEmpty(aResponse, 204);
        return false;
    }
    if (!IsAuthorized(FindHeader(aRequest.Headers, "Authorization"))) {
        aResponse.Headers.emplace_back("WWW-Authenticate", "Bearer");
        Send(aResponse, 401, R"({"error":"Unauthorized"})");
        return false;
    }
    if (SameTextIgnoringCase(aRequest.Method, "DELETE")) {
        Send(aResponse, 405, R"({"error":"This server does not use transport sessions"})");
        return false;
    }
    if (aRequest.Method != "POST") {
        Send(aResponse, 405, R"({"error":"Method not allowed"})");
        return false;
    }
    if (aRequest.HasBody && BodyTooLarge(aRequest)) {
        Send(aResponse, 413, R"({"error":"Request body too large"})");
        return false;
    }
    return true;
}

bool TORXMCPServer::BodyTooLarge(const TMCPHttpRequest& aRequest) const {
    const std::uint64_t size = aRequest.BodySize.value_or(aRequest.Body.size());
    return fMaxRequestBytes > 0 && size > static_cast<std::uint64_t>(fMaxRequestBytes);
}

TMCPHttpResponse TORXMCPServer::DoCommandGet(const TMCPHttpRequest& aRequest) {
    TMCPHttpResponse response;
    if (!AdmitRequestHead(aRequest, response)) return response;
    const auto version = FindHeader(aRequest.Headers, "MCP-Protocol-Version");
    const auto methodHeader = FindHeader(aRequest.Headers, "Mcp-Method");
    const auto nameHeader = FindHeader(aRequest.Headers, "Mcp-Name");
    const auto accept = FindHeader(aRequest.Headers, "Accept");
    try {
        HandleBody(aRequest, version, methodHeader, nameHeader, accept, response);
    } catch (const std::exception& e) {
        try {
            Log(std::string("Error: ") + e.what());
        } catch (...) {
            // A failing log sink must not keep the client from its answer.
        }
        SendJson(response, 500, MakeError(TJSON(), MCPErrorCode::kInternalError, e.what()));
    }
    return response;
}

void TORXMCPServer::HandleBody(const TMCPHttpRequest& aRequest, std::string_view aVersionHeader,
                               std::string_view aMethodHeader, std::string_view aNameHeader,
                               std::string_view aAccept, TMCPHttpResponse& aResponse) {
    const std::string_view body = aRequest.HasBody ? std::string_view(aRequest.Body) : std::string_view();
    // The count is in UTF-16 code units although the line says bytes; log readers rely on the wording.
    Log(fLogPayloads ? ">> " + std::string(body)
                     : fmt::format("MCP request received ({} bytes)", Utf16Length(body)));
    if (body.empty()) {
        Send(aResponse, 400, R"({"error":"Empty request body"})");
        return;
    }
    const std::size_t batchLength = BatchLength(body);
    if (fMaxBatchRequests > 0 && batchLength > static_cast<std::size_t>(fMaxBatchRequests)) {
        SendJson(aResponse, 400,
                 MakeError(TJSON(), MCPErrorCode::kInvalidRequest,
                           fmt::format("Batch too large: at most {} requests", fMaxBatchRequests)));
        return;
    }
    // Deeper documents are refused before parsing: writing them back out recurses once per level.
    TJSON parsed = HoldsNul(body) ? TJSON(TJSON::value_t::discarded) : ParseJsonOrDiscarded(body);
    if (parsed.is_discarded()) {
        SendJson(aResponse, 400, MakeError(TJSON(), MCPErrorCode::kParseError, "Parse error"));
        return;
    }
    if (parsed.is_array()) {
        for (const auto refused : kVersionsWithoutBatches) {
            if (SameTextIgnoringCase(aVersionHeader, refused)) {
                SendJson(aResponse, 400,
                         MakeError(TJSON(), MCPErrorCode::kInvalidRequest,
                                   fmt::format("JSON-RPC batches are not supported by MCP {}", refused)));
                return;
            }
        }
        if (parsed.empty()) {
            SendJson(aResponse, 400, MakeError(TJSON(), MCPErrorCode::kInvalidRequest, "Empty batch"));
            return;
        }
        HandleBatch(parsed, aResponse);
        if (fLogPayloads && aResponse.Status == 200) Log("<< " + aResponse.Body);
        return;
    }
    if (!parsed.is_object()) {
        SendJson(aResponse, 400, MakeError(TJSON(), MCPErrorCode::kInvalidRequest, "Invalid request"));
        return;
    }

    if (IsRequestWithoutId(parsed)) {
        SendJson(aResponse, 400, MissingIdError());
        return;
    }
    const bool modern = IsModernRequest(parsed, aVersionHeader);
    const auto idIt = parsed.find("id");
    const TJSON id = idIt != parsed.end() ? *idIt : TJSON();
    if (!modern && !IsProtocolVersionValid(aVersionHeader)) {
        SendJson(aResponse, 400, MakeUnsupportedProtocolError(id, aVersionHeader));
        return;
    }
    if (modern) {
        if (!StartsWithIgnoringCase(aRequest.ContentType, kJsonType)) {
            SendJson(
                aResponse, 415,
                MakeError(TJSON(), MCPErrorCode::kInvalidRequest, "Content-Type must be application/json"));
            return;
        }
        TJSON error;
        if (!ValidateModernRequest(parsed, aVersionHeader, aMethodHeader, aNameHeader, aAccept, error)) {
            SendJson(aResponse, 400, error);
            return;
        }
    }
    if (std::string listed; AnswerToolsList(parsed, modern, listed)) {
        if (!FitsResponse(listed.size(), aResponse)) return;
        Send(aResponse, 200, std::move(listed));
        if (fLogPayloads) Log("<< " + aResponse.Body);
        return;
    }
    auto result = ProcessJsonRpc(parsed, modern);
    if (!result) {
        SendEmpty(aResponse, 202);
        return;
    }
    int status = 200;
    const auto error = result->find("error");
    if (modern && error != result->end() && error->is_object() &&
        error->value("code", 0) == MCPErrorCode::kMethodNotFound) {
        status = 404;
    }
    std::string text = DumpCompact(*result);
    if (!FitsResponse(text.size(), aResponse)) return;
    Send(aResponse, status, std::move(text));
    if (fLogPayloads) Log("<< " + aResponse.Body);
}

// Each element is answered as text as soon as it has run, so a batch holds its answers' text and never
// their trees; tools/list is answered from the text written once per registration.
void TORXMCPServer::HandleBatch(const TJSON& aBatch, TMCPHttpResponse& aResponse) {
    std::string answers = "[";
    std::size_t ran = 0;
    for (const auto& element : aBatch) {
        std::string text;
        if (!element.is_object()) {
            text = DumpCompact(MakeError(TJSON(), MCPErrorCode::kInvalidRequest, "Invalid request"));
        } else if (IsRequestWithoutId(element)) {
            text = DumpCompact(MissingIdError());
        } else if (!AnswerToolsList(element, false, text)) {
            if (auto result = ProcessJsonRpc(element, false)) text = DumpCompact(*result);
        }
        ++ran;
        if (text.empty()) continue;
        if (answers.size() > 1) answers += ',';
        answers += text;
        if (fMaxResponseBytes > 0 && answers.size() + 1 > static_cast<std::size_t>(fMaxResponseBytes)) {
            // What already ran stays done; the rest of the batch is not run.
            SendJson(aResponse, 500,
                     MakeError(TJSON(), MCPErrorCode::kInternalError,
                               fmt::format("Response too large: {} of {} requests of the batch ran", ran,
                                           aBatch.size())));
            return;
        }
    }
    if (answers.size() == 1) {
        SendEmpty(aResponse, 202);
        return;
    }
    answers += ']';
    Send(aResponse, 200, std::move(answers));
}

// False, with the error answer in aResponse, when an answer of aSize bytes is beyond MaxResponseBytes.
bool TORXMCPServer::FitsResponse(std::size_t aSize, TMCPHttpResponse& aResponse) const {
    if (fMaxResponseBytes <= 0 || aSize <= static_cast<std::size_t>(fMaxResponseBytes)) return true;
    SendJson(aResponse, 500,
             MakeError(TJSON(), MCPErrorCode::kInternalError,
                       fmt::format("Response too large: {} bytes, at most {}", aSize, fMaxResponseBytes)));
    return false;
}

}  // namespace Orvex
