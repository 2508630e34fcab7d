// The socket side of TORXMCPServer over cpp-httplib: every method reaches DoCommandGet, and no request
// makes the server hold more than MaxRequestBytes of body, whether or not it declares its length, nor
// more than kMaxRequestHeadBytes of request line and headers.
#include "orvex/agent/mcp_http_listener.h"

#include <condition_variable>
#include <deque>
#include <limits>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include "orvex/agent/bounded_http_server.h"
#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_server.h"

namespace Orvex {
namespace {

constexpr std::size_t kMaxConnectionThreads = 64;
constexpr std::size_t kKeepAliveRequests = 1000;

// A thread for each open connection, started when the connection arrives, up to a ceiling beyond which
// connections wait for a thread to come free. Threads are kept for later connections until shutdown.
class TConnectionThreads final : public httplib::TaskQueue {
  public:
    void enqueue(std::function<void()> aJob) override {
        std::lock_guard lock(fMutex);
        fJobs.push_back(std::move(aJob));
        if (fIdle == 0 && fThreads.size() < kMaxConnectionThreads) {
            fThreads.emplace_back([this] { Work(); });
        }
        fWake.notify_one();
    }

    void shutdown() override {
        {
            std::lock_guard lock(fMutex);
            fShutdown = true;
        }
        fWake.notify_all();
        for (auto& thread : fThreads) thread.join();
        fThreads.clear();
    }

  private:
    void Work() {
        for (;;) {
            std::function<void()> job;
            {
                std::unique_lock lock(fMutex);
                ++fIdle;
                fWake.wait(lock, [this] { return fShutdown || !fJobs.empty(); });
                --fIdle;
                if (fJobs.empty()) return;
                job = std::move(fJobs.front());
                fJobs.pop_front();
            }
            job();
        }
    }

    std::mutex fMutex;
    std::condition_variable fWake;
    std::deque<std::function<void()>> fJobs;
    std::vector<std::thread> fThreads;
    std::size_t fIdle = 0;
    bool fShutdown = false;
};

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

// Reads the body into the record, keeping at most aLimit bytes (no limit when 0). Whatever lies beyond is
// read and dropped so that a kept-alive connection stays in step with the next request. Returns false
// when the body ends before its framing says it should (a broken chunk, a peer that went away).
bool ReadBody(const httplib::Request& aRequest, const httplib::ContentReader& aReader, std::size_t aLimit,
              TMCPHttpRequest& aRecord) {
    aRecord.HasBody = true;
    if (aLimit > 0 && aRequest.has_header("Content-Length")) {
        const auto declared = aRequest.get_header_value<std::uint64_t>("Content-Length");
        if (declared > aLimit) {
            aRecord.BodySize = declared;
            // The library skips a body over its payload limit by itself and reports that as a failure.
            aReader([](const char*, std::size_t) { return true; });
            return true;
        }
    }
    std::uint64_t seen = 0;
    const bool complete = aReader([&](const char* aData, std::size_t aLength) {
        seen += aLength;
        if (aLimit == 0 || seen <= aLimit) {
            aRecord.Body.append(aData, aLength);
        } else if (aRecord.Body.size() < aLimit) {
            aRecord.Body.append(aData, aLimit - aRecord.Body.size());
        }
        return true;
    });
    if (aLimit > 0 && seen > aLimit) aRecord.BodySize = seen;
    return complete || (aLimit > 0 && seen > aLimit);
}

void Answer(TORXMCPServer& aServer, const TMCPHttpRequest& aRecord, httplib::Response& aResponse) {
    TMCPHttpResponse answer;
    try {
        answer = aServer.DoCommandGet(aRecord);
    } catch (...) {
        answer = TMCPHttpResponse{500, "application/json", {}, R"({"error":"Internal server error"})"};
    }
    aResponse.status = answer.Status;
    for (const auto& [name, value] : answer.Headers) aResponse.set_header(name, value);
    // Moved, not copied: a tools/list answer is tens of kilobytes.
    if (!answer.ContentType.empty()) aResponse.set_header("Content-Type", answer.ContentType);
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
    http.new_task_queue = [] { return new TConnectionThreads(); };
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
        if (ReadBody(aRequest, aReader, limit, record)) {
            Answer(fServer, record, aResponse);
        } else {
            aResponse.status = 400;
            aResponse.set_header("Connection", "close");
            aResponse.set_content(R"({"error":"Incomplete request body"})", "application/json");
        }
    };
    http.Post(".*", withBody);
    http.Put(".*", withBody);
    http.Patch(".*", withBody);
    http.Delete(".*", withBody);

    fPort = http.Serve(aAddress, aPort);
    fImpl = std::move(impl);
    return fPort;
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
    fImpl.reset();
    fPort = 0;
}

}  // namespace Orvex
