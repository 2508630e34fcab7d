// TORXMCPServer: exposes one drawing document to AI agents over the Model Context Protocol, in the
// stateless form of its streamable HTTP transport (one POST per message, one JSON answer, no sessions, no
// event streams). The server is configured while stopped; Start binds the socket and serves requests on
// per-connection threads. Tool bodies run on the host's main thread through an IMainThreadRunner.
//
// [SECTION] Protocol versions and provider kinds
// [SECTION] Document hooks
// [SECTION] TORXMCPServer
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/agent/connection_limits.h"
#include "orvex/agent/mcp_http_pipeline.h"
#include "orvex/agent/mcp_tools.h"
#include "orvex/io/json.h"

namespace Orvex {

class IMainThreadRunner;
class TMCPHttpListener;

// [SECTION] Protocol versions and provider kinds

// Newest first. The first is the modern, stateless protocol; the others are initialize-based.
inline constexpr std::array<std::string_view, 5> MCP_SUPPORTED_VERSIONS{
    "2026-07-28", "2025-11-25", "2025-06-18", "2025-03-26", "2024-11-05"};
inline constexpr std::string_view kMCPModernVersion = MCP_SUPPORTED_VERSIONS[0];

// Defaults of the server's own limits (beside MaxRequestBytes).
inline constexpr std::int32_t kDefaultMaxBatchRequests = 256;
inline constexpr std::int32_t kDefaultMaxResponseBytes = 64 * 1024 * 1024;

enum class TMCPAIProvider : std::uint8_t { aiAnthropic, aiOpenAI, aiGemini, aiOpenRouter };

// [SECTION] Document hooks

// What the server asks of the document, so that the protocol layer needs nothing but a forward
// declaration. Both run on the main thread after a tool that changes the drawing; an unset hook is skipped.
// EndUpdate must tolerate being called with no update open: it closes a bracket an agent left open.
struct TMCPDocumentHooks {
    std::function<void(TORXBaseLabel&)> EndUpdate;
    std::function<void(TORXBaseLabel&)> Refresh;
};

// [SECTION] TORXMCPServer

class TORXMCPServer;
using TMCPLogEvent = std::function<void(TORXMCPServer& aSender, const std::string& aMessage)>;

class TORXMCPServer {
  public:
    TORXMCPServer();
    ~TORXMCPServer();
    TORXMCPServer(const TORXMCPServer&) = delete;
    TORXMCPServer& operator=(const TORXMCPServer&) = delete;

    // Start throws std::runtime_error when the address is not loopback and no token is set, and when the
    // address cannot be bound; nothing is started then. Both are no-ops in the state they lead to.
    void Start();
    void Stop();
    // From any thread, a signal handler's helper for one: takes no connection from now on and closes the
    // idle ones; Stop, on the main thread, still waits for the requests that run.
    void StopAccepting();
    bool Active() const { return fActive; }
    void SetActive(bool aValue);
    std::uint16_t BoundPort() const;  // the port listened on (Port, or the one chosen for Port 0)

    // Published properties. Change them while stopped; connection threads read them without locks.
    std::uint16_t Port() const { return fPort; }
    void SetPort(std::uint16_t aValue) { fPort = aValue; }
    TORXBaseLabel* DrawLabel() const { return fLabel.load(); }
    void SetLabel(TORXBaseLabel* aLabel) { fLabel.store(aLabel); }  // not owned
    // The document calls this when it is destroyed; the server forgets it if it was bound to it.
    void Notification(const TORXBaseLabel* aDestroyed);
    const std::string& ServerName() const { return fServerName; }
    void SetServerName(std::string aValue) { fServerName = std::move(aValue); }
    const std::string& ServerVersion() const { return fServerVersion; }
    void SetServerVersion(std::string aValue) { fServerVersion = std::move(aValue); }
    const std::string& BindAddress() const { return fBindAddress; }
    void SetBindAddress(std::string aValue) { fBindAddress = std::move(aValue); }
    const std::string& AllowedOrigins() const { return fAllowedOrigins; }  // extra origins, ";"-separated
    void SetAllowedOrigins(std::string aValue) { fAllowedOrigins = std::move(aValue); }
    bool LogPayloads() const { return fLogPayloads; }
    void SetLogPayloads(bool aValue) { fLogPayloads = aValue; }
    const std::string& EndpointPath() const { return fEndpointPath; }  // empty: every path
    void SetEndpointPath(std::string aValue) { fEndpointPath = std::move(aValue); }
    std::int32_t MaxRequestBytes() const { return fMaxRequestBytes; }  // 0 or less: no limit
    void SetMaxRequestBytes(std::int32_t aValue) { fMaxRequestBytes = aValue; }
    // Requests in one JSON-RPC batch; a longer batch is refused before it is parsed. 0 or less: no limit.
    std::int32_t MaxBatchRequests() const { return fMaxBatchRequests; }
    void SetMaxBatchRequests(std::int32_t aValue) { fMaxBatchRequests = aValue; }
    // Bytes of one answer (a whole batch's together); beyond them the answer is an error. 0 or less: no
    // limit.
    std::int32_t MaxResponseBytes() const { return fMaxResponseBytes; }
    void SetMaxResponseBytes(std::int32_t aValue) { fMaxResponseBytes = aValue; }
    // Threads, connections and the request deadline of the HTTP side; set them while stopped.
    const TConnectionLimits& ConnectionLimits() const { return fConnectionLimits; }
    void SetConnectionLimits(const TConnectionLimits& aValue) { fConnectionLimits = aValue; }
    std::int64_t MaxAIImageBytes() const { return fMaxAIImageBytes; }
    void SetMaxAIImageBytes(std::int64_t aValue) { fMaxAIImageBytes = aValue; }
    std::int32_t ToolListCacheTTL() const { return fToolListCacheTTL; }  // milliseconds
    void SetToolListCacheTTL(std::int32_t aValue) { fToolListCacheTTL = aValue; }
    const std::string& Instructions() const { return fInstructions; }
    void SetInstructions(std::string aValue) { fInstructions = std::move(aValue); }
    void SetOnLog(TMCPLogEvent aValue);  // called from connection threads: the sink must be thread-safe
    TMCPAIProvider AIProvider() const { return fAIProvider; }
    void SetAIProvider(TMCPAIProvider aValue) { fAIProvider = aValue; }
    const std::string& AIModel() const { return fAIModel; }
    void SetAIModel(std::string aValue) { fAIModel = std::move(aValue); }
    std::int32_t AIMaxTokens() const { return fAIMaxTokens; }
    void SetAIMaxTokens(std::int32_t aValue) { fAIMaxTokens = aValue; }

    // Secrets: settable from code, never streamed and never logged.
    const std::string& AuthToken() const { return fAuthToken; }
    void SetAuthToken(std::string aValue) { fAuthToken = std::move(aValue); }
    const std::string& AIApiKey() const { return fAIApiKey; }
    void SetAIApiKey(std::string aValue) { fAIApiKey = std::move(aValue); }

    // Where tools run. Without a runner they run on the connection thread, one at a time.
    void SetMainThreadRunner(IMainThreadRunner* aRunner) { fRunner = aRunner; }  // not owned
    void SetDocumentHooks(TMCPDocumentHooks aHooks) { fHooks = std::move(aHooks); }

    std::string SessionId() const;
    std::string ProtocolVersion() const;  // the version the last initialize agreed
    bool Initialized() const { return fInitialized; }
    static std::string GenerateSessionId();  // a new GUID, braced

    void Log(const std::string& aMessage);

    // The HTTP request pipeline, free of sockets.
    TMCPHttpResponse DoCommandGet(const TMCPHttpRequest& aRequest);
    // The pipeline's checks that need no body: path, origin, preflight, token, method and, when BodySize
    // holds a declared length, the size limit. True when the request may go on (aResponse then carries
    // the CORS headers); false when aResponse is the whole answer. The socket side reads a body only after
    // this passes.
    bool AdmitRequestHead(const TMCPHttpRequest& aRequest, TMCPHttpResponse& aResponse) const;

    bool IsOriginAllowed(std::string_view aOrigin) const;
    bool IsAuthorized(std::string_view aAuthorization) const;  // the token is compared in constant time
    static bool IsProtocolVersionValid(std::string_view aVersion);
    static std::string GetRequestProtocolVersion(const TJSON& aRequest);
    static bool IsModernRequest(const TJSON& aRequest, std::string_view aHeaderVersion);
    // Plain values pass through; "=?base64?...?=" is decoded. False when that Base64 or UTF-8 is invalid.
    static bool DecodeMCPHeaderValue(std::string_view aValue, std::string& aDecoded);
    static bool ValidateModernRequest(const TJSON& aRequest, std::string_view aHeaderVersion,
                                      std::string_view aHeaderMethod, std::string_view aHeaderName,
                                      std::string_view aAccept, TJSON& aError);

    // The JSON-RPC layer. ProcessJsonRpc returns nullopt for a notification.
    std::optional<TJSON> ProcessJsonRpc(const TJSON& aRequest, bool aModern);
    TJSON HandleServerDiscover(const TJSON& aId) const;
    TJSON HandleInitialize(const TJSON& aId, const TJSON* aParams);
    static TJSON HandlePing(const TJSON& aId);
    TJSON HandleToolsList(const TJSON& aId) const;
    // The whole answer to a tools/list request as text, from the tool list written once per registration
    // rather than per request; false (and aBody untouched) for any other request.
    bool AnswerToolsList(const TJSON& aRequest, bool aModern, std::string& aBody) const;
    TJSON HandleToolsCall(const TJSON& aId, const TJSON* aParams);
    static TJSON HandleEmptyList(const TJSON& aId, std::string_view aKey);
    void DecorateModernResult(std::string_view aMethod, TJSON& aResponse) const;

    // Tools, in registration order. RegisterTool keeps duplicates; lookups find the first.
    void RegisterTool(std::string aName, std::string aDescription, TJSON aInputSchema, TMCPToolCall aHandler,
                      TJSON aOutputSchema = nullptr);
    // Calls the server's own registration when it has one, else the procedure set by
    // MCPSetDefaultToolsRegistration, if any. Start and BuildAIToolDefinitions call it while no tool is
    // registered.
    void RegisterDefaultTools();
    // The registration this server uses instead of the process-wide one; an empty one restores that. Set
    // it while stopped, before the first tool is registered.
    void SetToolsRegistration(TMCPToolsRegistration aRegistration);
    bool HasToolsRegistration() const;
    std::size_t ToolCount() const;
    std::vector<TMCPToolDef> Tools() const;  // a snapshot
    std::string EffectiveInstructions() const;
    TJSON BuildAIToolDefinitions();  // [{name, description, input_schema}], the provider-neutral shape

  private:
    TJSON BuildToolsArray() const;
    void HandleBody(const TMCPHttpRequest& aRequest, std::string_view aVersionHeader,
                    std::string_view aMethodHeader, std::string_view aNameHeader, std::string_view aAccept,
                    TMCPHttpResponse& aResponse);
    void HandleBatch(const TJSON& aBatch, TMCPHttpResponse& aResponse);
    bool BodyTooLarge(const TMCPHttpRequest& aRequest) const;
    bool FitsResponse(std::size_t aSize, TMCPHttpResponse& aResponse) const;
    std::uint16_t OriginPort() const;

    std::unique_ptr<TMCPHttpListener> fHTTPServer;
    std::atomic<TORXBaseLabel*> fLabel{nullptr};
    std::uint16_t fPort = 3001;
    std::atomic<bool> fActive{false};
    std::string fServerName = "Orvex-mcp";
    std::string fServerVersion = "1.0.0";
    std::vector<TMCPToolDef> fTools;
    std::string fSessionId;
    std::string fProtocolVersion = "2025-11-25";
    std::string fInstructions;
    std::atomic<bool> fInitialized{false};
    TMCPLogEvent fOnLog;
    std::string fBindAddress = "127.0.0.1";
    std::string fAllowedOrigins;
    std::string fAuthToken;
    bool fLogPayloads = false;
    std::string fEndpointPath = "/mcp";
    std::int32_t fMaxRequestBytes = 8388608;
    std::int32_t fMaxBatchRequests = kDefaultMaxBatchRequests;
    std::int32_t fMaxResponseBytes = kDefaultMaxResponseBytes;
    TConnectionLimits fConnectionLimits;
    std::int64_t fMaxAIImageBytes = 20971520;
    std::int32_t fToolListCacheTTL = 300000;
    TMCPAIProvider fAIProvider = TMCPAIProvider::aiAnthropic;
    std::string fAIApiKey;
    std::string fAIModel = "claude-sonnet-4-20250514";
    std::int32_t fAIMaxTokens = 4096;

    IMainThreadRunner* fRunner = nullptr;
    TMCPDocumentHooks fHooks;
    std::mutex fInlineMutex;                                // serialises tools when no runner is set
    TMCPToolsRegistration fToolsRegistration;               // guarded by fToolsMutex
    mutable std::shared_mutex fToolsMutex;                  // fTools, fToolsGeneration, fToolsRegistration
    std::uint64_t fToolsGeneration = 0;                     // advances with every registration
    mutable std::mutex fToolsTextMutex;                     // fToolsText, fToolsTextGeneration
    mutable std::shared_ptr<const std::string> fToolsText;  // the tools array of tools/list, compact
    mutable std::uint64_t fToolsTextGeneration = 0;
    mutable std::mutex fStateMutex;  // fSessionId, fProtocolVersion
    mutable std::mutex fLogMutex;    // fOnLog
};

}  // namespace Orvex
