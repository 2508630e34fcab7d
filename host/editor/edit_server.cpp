#include "host/editor/edit_server.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string_view>

#include "host/editor/edit_page.h"
#include "host/editor/edit_session.h"
#include "orvex/agent/bounded_http_server.h"
#include "orvex/agent/main_thread.h"
#include "orvex/core/text.h"
#include "orvex/io/json.h"

namespace Orvex::Host {

namespace {

// Each open page holds one thread in its stream; a few tabs and the API requests fit with room to spare.
constexpr std::size_t kConnectionThreads = 16;
constexpr time_t kKeepAliveSeconds = 1;
// A stream idle this long sends an empty line, which finds out a page that went away.
constexpr std::chrono::seconds kStreamHeartbeat{10};

bool IsLoopbackAddress(std::string_view aAddress) {
    return aAddress == "127.0.0.1" || aAddress == "localhost" || aAddress == "::1";
}

std::string_view HostName(std::string_view aHost) {
    if (aHost.starts_with('[')) return aHost.substr(0, aHost.find(']') + 1);
    if (const auto colon = aHost.rfind(':'); colon != std::string_view::npos) return aHost.substr(0, colon);
    return aHost;
}

bool SameToken(std::string_view aGiven, std::string_view aExpected) {
    // Every byte is compared whatever the first difference, so the time taken tells nothing.
    unsigned diff = aGiven.size() == aExpected.size() ? 0U : 1U;
    for (std::size_t i = 0; i < aExpected.size(); ++i)
        diff |= static_cast<unsigned>(static_cast<unsigned char>(aExpected[i]) ^
                                      static_cast<unsigned char>(i < aGiven.size() ? aGiven[i] : 0));
    return diff == 0;
}

bool OriginAllowed(std::string_view aOrigin, std::string_view aHost, std::string_view aAllowed) {
    if (aOrigin.empty()) return true;  // not a browser's cross-origin request
    if (SameTextIgnoringCase(aOrigin, fmt::format("http://{}", aHost))) return true;
    while (!aAllowed.empty()) {
        const auto end = aAllowed.find(';');
        if (const auto entry = Trim(aAllowed.substr(0, end));
            !entry.empty() && SameTextIgnoringCase(entry, aOrigin))
            return true;
        if (end == std::string_view::npos) break;
        aAllowed.remove_prefix(end + 1);
    }
    return false;
}

void NoStore(httplib::Response& aResponse) {
    aResponse.set_header("Cache-Control", "no-store");
    aResponse.set_header("X-Content-Type-Options", "nosniff");
}

void Refuse(httplib::Response& aResponse, int aStatus, std::string_view aMessage) {
    aResponse.status = aStatus;
    NoStore(aResponse);
    aResponse.set_content(TJSON({{"error", aMessage}}).dump(), "application/json");
}

// One line of the stream: the parts of aFrame the page has not seen yet.
std::string StreamLine(const TEditFrame& aFrame, std::uint64_t aDrawingSent) {
    std::string line = fmt::format(
        "{{\"version\":{},\"drawing_version\":{},\"state\":{},\"overlay\":{}", aFrame.Version,
        aFrame.DrawingVersion, aFrame.State->empty() ? "{}" : *aFrame.State, TJSON(*aFrame.Overlay).dump());
    if (aFrame.DrawingVersion != aDrawingSent) line += ",\"drawing\":" + TJSON(*aFrame.Drawing).dump();
    line += "}\n";
    return line;
}

}  // namespace

struct TEditServer::TImpl {
    TBoundedHttpServer fHttp;
};

TEditServer::TEditServer(TEditSession& aSession, IMainThreadRunner& aRunner)
    : fSession(aSession), fRunner(aRunner) {}

TEditServer::~TEditServer() {
    Stop();
}

std::string TEditServer::Url() const {
    const std::string host =
        fOptions.Bind == "0.0.0.0" || fOptions.Bind == "::" ? "127.0.0.1" : fOptions.Bind;
    const std::string shown = host.find(':') != std::string::npos ? "[" + host + "]" : host;
    return fmt::format("http://{}:{}/{}", shown, fPort,
                       fOptions.Token.empty() ? "" : "?token=" + fOptions.Token);
}

std::uint16_t TEditServer::Start(const TEditServerOptions& aOptions) {
    if (fImpl) return fPort;
    if (!IsLoopbackAddress(aOptions.Bind) && Trim(aOptions.Token).empty())
        throw std::runtime_error(
            fmt::format("the editor listens on {} only with a token (set ORVEX_MCP_TOKEN); without one it "
                        "stays on 127.0.0.1",
                        aOptions.Bind));
    fOptions = aOptions;
    auto impl = std::make_unique<TImpl>();
    auto& http = impl->fHttp;
    http.new_task_queue = [] { return new httplib::ThreadPool(kConnectionThreads); };
    http.set_keep_alive_timeout(kKeepAliveSeconds);
    http.set_tcp_nodelay(true);
    http.set_payload_max_length(aOptions.MaxRequestBytes);
    const bool loopback = IsLoopbackAddress(aOptions.Bind);
    http.set_pre_routing_handler([this, loopback](const httplib::Request& aRequest,
                                                  httplib::Response& aResponse) {
        const std::string host = aRequest.get_header_value("Host");
        // Another site's page may resolve its own name to this address; its requests still name it in Host.
        if (loopback && !host.empty()) {
            const auto name = HostName(host);
            if (name != "127.0.0.1" && name != "localhost" && name != "[::1]") {
                Refuse(aResponse, 403, "Forbidden host");
                return httplib::Server::HandlerResponse::Handled;
            }
        }
        if (!OriginAllowed(aRequest.get_header_value("Origin"), host, fOptions.AllowedOrigins)) {
            Refuse(aResponse, 403, "Forbidden origin");
            return httplib::Server::HandlerResponse::Handled;
        }
        if (!fOptions.Token.empty()) {
            const std::string authorization = aRequest.get_header_value("Authorization");
            const bool header = authorization.starts_with("Bearer ") &&
                                SameToken(std::string_view(authorization).substr(7), fOptions.Token);
            // Only the page itself may carry the token in its address: a browser cannot send a header
            // when it follows a link.
            const bool query =
                aRequest.path == "/" && SameToken(aRequest.get_param_value("token"), fOptions.Token);
            if (!header && !query) {
                Refuse(aResponse, 401, "Unauthorized: open the address the editor printed, with its token");
                return httplib::Server::HandlerResponse::Handled;
            }
        }
        return httplib::Server::HandlerResponse::Unhandled;
    });
    http.Get("/", [](const httplib::Request&, httplib::Response& aResponse) {
        NoStore(aResponse);
        aResponse.set_header(
            "Content-Security-Policy",
            "default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'; "
            "img-src 'self' data: blob:; connect-src 'self'; base-uri 'none'; form-action 'none'");
        aResponse.set_header("Referrer-Policy", "no-referrer");
        aResponse.set_content(std::string(EditPage()), "text/html; charset=utf-8");
    });
    http.Get("/stream", [this](const httplib::Request&, httplib::Response& aResponse) {
        NoStore(aResponse);
        auto sent = std::make_shared<std::pair<std::uint64_t, std::uint64_t>>(0, 0);  // version, drawing
        TEditFrameStore& store = fSession.Store();
        aResponse.set_chunked_content_provider(
            "application/x-ndjson", [&store, sent](std::size_t, httplib::DataSink& aSink) {
                const auto frame = store.WaitNewer(sent->first, kStreamHeartbeat);
                if (store.Closed()) {
                    aSink.done();
                    return true;
                }
                std::string line = "\n";
                if (frame) {
                    line = StreamLine(*frame, sent->second);
                    *sent = {frame->Version, frame->DrawingVersion};
                }
                return aSink.write(line.data(), line.size());
            });
    });
    http.Post("/api", [this](const httplib::Request& aRequest, httplib::Response& aResponse) {
        NoStore(aResponse);
        TJSON request;
        try {
            request = TJSON::parse(aRequest.body);
        } catch (const std::exception&) {
            Refuse(aResponse, 400, "the request is not JSON");
            return;
        }
        TJSON answer;
        std::string error;
        try {
            fRunner.RunSync([&] {
                try {
                    answer = fSession.Handle(request);
                } catch (const std::invalid_argument& e) {
                    error = e.what();
                } catch (const TJSON::exception& e) {
                    error = fmt::format("malformed request: {}", e.what());
                } catch (const std::exception& e) {
                    error = e.what();
                }
            });
        } catch (const std::exception& e) {
            Refuse(aResponse, 503, e.what());
            return;
        }
        if (!error.empty()) {
            // A tool's diagnostics come as a JSON object of their own.
            TJSON body = TJSON::parse(error, nullptr, false);
            if (!body.is_object())
                body = {{"error", error}};
            else
                body["error"] = body.value("message", std::string("the action failed"));
            aResponse.status = 400;
            aResponse.set_content(body.dump(), "application/json");
            return;
        }
        aResponse.set_content(answer.dump(), "application/json");
    });

    fPort = http.Serve(aOptions.Bind, aOptions.Port);
    fImpl = std::move(impl);
    return fPort;
}

void TEditServer::Stop() {
    if (!fImpl) return;
    fSession.Store().Close();  // streams end, so no connection thread is left inside a handler
    fImpl->fHttp.StopAndJoin();
    fImpl.reset();
    fPort = 0;
}

}  // namespace Orvex::Host
