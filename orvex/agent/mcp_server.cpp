// TORXMCPServer: configuration, start and stop, logging and the session identity. The request pipeline is
// in mcp_http_pipeline.cpp, the JSON-RPC layer in mcp_jsonrpc.cpp, tools in mcp_tools.cpp.
#include "orvex/agent/mcp_server.h"

#include <fmt/format.h>

#include <random>
#include <stdexcept>

#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_http_listener.h"
#include "orvex/core/text.h"

namespace Orvex {

using Qvl::Utils::SameTextIgnoringCase;
using Qvl::Utils::Trim;

TORXMCPServer::TORXMCPServer()
    : fHTTPServer(std::make_unique<TMCPHttpListener>(*this)), fSessionId(GenerateSessionId()) {}

TORXMCPServer::~TORXMCPServer() {
    Stop();
}

void TORXMCPServer::SetActive(bool aValue) {
    if (aValue == fActive) return;
    if (aValue) {
        Start();
    } else {
        Stop();
    }
}

void TORXMCPServer::Start() {
    if (fActive) return;
    const auto address = Trim(fBindAddress);
    const bool loopback = SameTextIgnoringCase(address, "127.0.0.1") ||
                          SameTextIgnoringCase(address, "localhost") || SameTextIgnoringCase(address, "::1");
    if (!loopback && Trim(fAuthToken).empty()) {
        throw std::runtime_error("AuthToken is required when the MCP server is not bound to localhost");
    }
    if (ToolCount() == 0) RegisterDefaultTools();
    const std::uint16_t port = fHTTPServer->Listen(fBindAddress, fPort);
    fActive = true;
    Log(fmt::format("MCP server started on port {}", port));
}

void TORXMCPServer::Stop() {
    if (!fActive) return;
    fHTTPServer->Shutdown(fRunner);
    fActive = false;
    fInitialized = false;
    Log("MCP server stopped");
}

void TORXMCPServer::StopAccepting() {
    fHTTPServer->StopAccepting();
}

std::uint16_t TORXMCPServer::BoundPort() const {
    return fActive ? fHTTPServer->Port() : fPort;
}

std::uint16_t TORXMCPServer::OriginPort() const {
    return fPort == 0 ? BoundPort() : fPort;
}

void TORXMCPServer::Notification(const TORXBaseLabel* aDestroyed) {
    TORXBaseLabel* expected = const_cast<TORXBaseLabel*>(aDestroyed);
    fLabel.compare_exchange_strong(expected, nullptr);
}

void TORXMCPServer::SetOnLog(TMCPLogEvent aValue) {
    std::lock_guard lock(fLogMutex);
    fOnLog = std::move(aValue);
}

void TORXMCPServer::Log(const std::string& aMessage) {
    TMCPLogEvent sink;
    {
        std::lock_guard lock(fLogMutex);
        sink = fOnLog;
    }
    if (sink) sink(*this, aMessage);
}

std::string TORXMCPServer::SessionId() const {
    std::lock_guard lock(fStateMutex);
    return fSessionId;
}

std::string TORXMCPServer::ProtocolVersion() const {
    std::lock_guard lock(fStateMutex);
    return fProtocolVersion;
}

std::string TORXMCPServer::GenerateSessionId() {
    static thread_local std::mt19937_64 generator{std::random_device{}()};
    std::uniform_int_distribution<std::uint64_t> any;
    std::uint64_t high = any(generator);
    std::uint64_t low = any(generator);
    high = (high & ~0xF000ULL) | 0x4000ULL;            // version 4: random
    low = (low & ~(0xC0ULL << 56)) | (0x80ULL << 56);  // RFC 4122 variant
    return fmt::format("{{{:08X}-{:04X}-{:04X}-{:04X}-{:012X}}}", high >> 32, (high >> 16) & 0xFFFFU,
                       high & 0xFFFFU, low >> 48, low & 0xFFFFFFFFFFFFULL);
}

}  // namespace Orvex
