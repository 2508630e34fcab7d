// The socket side of TORXMCPServer over cpp-httplib: every method reaches DoCommandGet, and no request
// makes the server hold more than MaxRequestBytes of body, whether or not it declares its length, nor
// more than kMaxRequestHeadBytes of request line and headers. A body is read only once the request's
// head has passed the origin and token checks.
#include "orvex/agent/mcp_http_listener.h"

#include <limits>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "orvex/agent/bounded_http_server.h"
#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_server.h"

namespace Orvex {
namespace {

constexpr std::size_t kKeepAliveRequests = 1000;

bool CarriesBody(const std::string& aMethod) {
    return aMethod == "POST" || aMethod == "PUT" || aMethod == "PATCH" || aMethod == "DELETE";
}

TMCPHttpRequest ToRecord(const httplib::Request& aRequest) {
    TMCPHttpRequest record;
    record.Method = aRequest.method;
    record.Path = aRequest.path;
    record.Headers.reserve(aRequest.headers.size());
    for (const auto& [name, value] : aRequest.headers) record.Headers.emplace_back(name, value);
    record.ContentType = aRequest.get_header_value("Content-Type");
    return record;
}

// Reads the body into the record, up to aLimit bytes (no limit when 0). A body that goes beyond is not
// read further: it is answered 413 and its connection closed, since an endless body would otherwise be
// read for as long as it comes. Returns false when the body ends before its framing says it should (a
// broken chunk, a peer that went away, the request's deadline).
bool ReadBody(const httplib::ContentReader& aReader, std::size_t aLimit, TMCPHttpRequest& aRecord) {
    aRecord.HasBody = true;
    std::uint64_t seen = 0;
    const bool complete = aReader([&](const char* aData, std::size_t aLength) {
        seen += aLength;
        if (aLimit > 0 && seen > aLimit) {
            aRecord.Body.append(aData, aLimit - aRecord.Body.size());
            return false;
        }
        aRecord.Body.append(aData, aLength);
        return true;
    });
    if (aLimit > 0 && seen > aLimit) aRecord.BodySize = seen;
    return complete || aRecord.BodySize.has_value();
}

void Send(const TMCPHttpResponse& aAnswer, httplib::Response& aResponse) {
    aResponse.status = aAnswer.Status;
    for (const auto& [name, value] : aAnswer.Headers) aResponse.set_header(name, value);
    if (!aAnswer.ContentType.empty()) aResponse.set_header("Content-Type", aAnswer.ContentType);
}

void Answer(TORXMCPServer& aServer, const TMCPHttpRequest& aRecord, httplib::Response& aResponse) {
    TMCPHttpResponse answer;
    try {
        answer = aServer.DoCommandGet(aRecord);
    } catch (...) {
        answer = TMCPHttpResponse{500, "application/json", {}, R"({"error":"Internal server error"})"};
    }
    Send(answer, aResponse);
    // Moved, not copied: a tools/list answer is tens of kilobytes.
    aResponse.body = std::move(answer.Body);
}

}  // namespace

struct TMCPHttpListener::TImpl {
    TBoundedHttpServer fHttp;
};

TMCPHttpListener::TMCPHttpListener(TORXMCPServer& aServer) : fServer(aServer) {}

TMCPHttpListener::~TMCPHttpListener() {
    Shutdown(nullptr);
}

std::uint16_t TMCPHttpListener::Listen(const std::string& aAddress, std::uint16_t aPort) {
    auto impl = std::make_unique<TImpl>();
    auto& http = impl->fHttp;
    const auto limit = static_cast<std::size_t>(std::max(fServer.MaxRequestBytes(), 0));
    http.SetLimits(fServer.ConnectionLimits());
    http.set_keep_alive_max_count(kKeepAliveRequests);
    // Small request-answer exchanges: waiting to coalesce segments only adds latency.
    http.set_tcp_nodelay(true);
    // Bodies beyond the limit are dropped unread by the library itself: a second guard behind ReadBody.
    http.set_payload_max_length(limit > 0 ? limit : std::numeric_limits<std::size_t>::max());
    http.set_pre_routing_handler([this](const httplib::Request& aRequest, httplib::Response& aResponse) {
        if (CarriesBody(aRequest.method)) return httplib::Server::HandlerResponse::Unhandled;
        Answer(fServer, ToRecord(aRequest), aResponse);
        return httplib::Server::HandlerResponse::Handled;
    });
    const auto withBody = [this, limit](const httplib::Request& aRequest, httplib::Response& aResponse,
                                        const httplib::ContentReader& aReader) {
        auto record = ToRecord(aRequest);
        record.HasBody = true;
        if (aRequest.has_header("Content-Length")) {
            record.BodySize = aRequest.get_header_value<std::uint64_t>("Content-Length");
        }
        // Origin, token, method and declared size are settled before a byte of the body is read; a refused
        // request's body is never read, so its connection cannot go on.
        if (TMCPHttpResponse refusal; !fServer.AdmitRequestHead(record, refusal)) {
            Send(refusal, aResponse);
            aResponse.body = std::move(refusal.Body);
            if (record.BodySize) {
                SkipBodyAfterResponse(*record.BodySize);
            } else {
                CloseConnectionAfterResponse();
            }
            return;
        }
        record.BodySize.reset();
        if (ReadBody(aReader, limit, record)) {
            if (record.BodySize) CloseConnectionAfterResponse();
            Answer(fServer, record, aResponse);
        } else {
            aResponse.status = 400;
            CloseConnectionAfterResponse();
            aResponse.set_content(R"({"error":"Incomplete request body"})", "application/json");
        }
    };
    http.Post(".*", withBody);
    http.Put(".*", withBody);
    http.Patch(".*", withBody);
    http.Delete(".*", withBody);

    fPort = http.Serve(aAddress, aPort);
    std::lock_guard lock(fImplMutex);
    fImpl = std::move(impl);
    return fPort;
}

void TMCPHttpListener::StopAccepting() {
    std::lock_guard lock(fImplMutex);
    if (fImpl) fImpl->fHttp.stop();
}

void TMCPHttpListener::Shutdown(IMainThreadRunner* aRunner) {
    if (!fImpl) return;
    fImpl->fHttp.stop();
    auto* impl = fImpl.get();
    // Running requests may wait for the main thread, which must keep serving them until the loop ends.
    const auto finished = [impl] { return impl->fHttp.Finished(); };
    if (aRunner != nullptr) {
        aRunner->Await(finished);
    } else {
        while (!finished()) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    fImpl->fHttp.StopAndJoin();
    std::lock_guard lock(fImplMutex);
    fImpl.reset();
    fPort = 0;
}

}  // namespace Orvex
