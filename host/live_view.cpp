// The socket side of the live view over cpp-httplib: a GET-only server on loopback whose handlers read the
// store and nothing else.
#include "host/live_view.h"

#include <charconv>
#include <stdexcept>
#include <string>
#include <string_view>

#include "host/live_view_page.h"
#include "orvex/agent/bounded_http_server.h"
#include "orvex/document/document.h"

namespace Orvex::Host {
namespace {

constexpr const char* kLoopback = "127.0.0.1";
// Each open page holds one request thread in a long poll; a few tabs and a script fit with room to spare.
constexpr std::size_t kConnectionThreads = 16;
// An idle kept-alive connection holds Stop back this long at most.
constexpr time_t kKeepAliveSeconds = 1;
// Every route is a GET; a request body is never read.
constexpr std::size_t kMaxRequestBytes = 65536;

// A page elsewhere on the web may resolve its own name to 127.0.0.1 and read the drawing; its requests
// still carry its name in Host, so only the loopback names are served.
bool IsLoopbackHost(std::string_view aHost) {
    if (aHost.empty()) return true;  // HTTP/1.0 without Host: no browser sends that
    if (const auto colon = aHost.rfind(':'); colon != std::string_view::npos) aHost = aHost.substr(0, colon);
    return aHost == kLoopback || aHost == "localhost";
}

bool ParseVersion(std::string_view aText, std::uint64_t& aVersion) {
    const auto* end = aText.data() + aText.size();
    const auto [ptr, ec] = std::from_chars(aText.data(), end, aVersion);
    return !aText.empty() && ec == std::errc{} && ptr == end;
}

void NoStore(httplib::Response& aResponse) {
    aResponse.set_header("Cache-Control", "no-store");
    aResponse.set_header("X-Content-Type-Options", "nosniff");
}

void SendSnapshot(const TLiveSnapshot& aSnapshot, httplib::Response& aResponse) {
    aResponse.set_header("X-Drawing-Version", std::to_string(aSnapshot.Version));
    aResponse.set_header("X-Drawing-Items", std::to_string(aSnapshot.Items));
    aResponse.set_content(*aSnapshot.SVG, "image/svg+xml");
}

}  // namespace

struct TLiveView::TImpl {
    TBoundedHttpServer fHttp;
};

TLiveView::TLiveView() = default;

TLiveView::~TLiveView() {
    Stop();
}

bool TLiveView::Update(const TORXBaseLabel& aDocument) {
    return fStore.Publish(aDocument.SVG(TQVLExportSVG::esFile, 1.0f, true),
                          static_cast<std::size_t>(aDocument.GetItemsCount()));
}

std::uint16_t TLiveView::Start(std::uint16_t aPort) {
    if (fImpl) return fPort;
    auto impl = std::make_unique<TImpl>();
    auto& http = impl->fHttp;
    TConnectionLimits limits;
    limits.RequestThreads = kConnectionThreads;
    limits.RequestThreadsPerClient = kConnectionThreads;
    http.SetLimits(limits);
    http.set_keep_alive_timeout(kKeepAliveSeconds);
    http.set_tcp_nodelay(true);
    http.set_payload_max_length(kMaxRequestBytes);
    http.set_pre_routing_handler([](const httplib::Request& aRequest, httplib::Response& aResponse) {
        if (IsLoopbackHost(aRequest.get_header_value("Host")))
            return httplib::Server::HandlerResponse::Unhandled;
        aResponse.status = 403;
        NoStore(aResponse);
        aResponse.set_content("Forbidden host\n", "text/plain");
        return httplib::Server::HandlerResponse::Handled;
    });
    http.Get("/", [](const httplib::Request&, httplib::Response& aResponse) {
        NoStore(aResponse);
        // The page needs its own inline script and style, the SVG's embedded images, and this server.
        aResponse.set_header("Content-Security-Policy",
                             "default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'; "
                             "img-src 'self' data:; connect-src 'self'; base-uri 'none'; form-action 'none'");
        aResponse.set_content(std::string(LiveViewPage()), "text/html; charset=utf-8");
    });
    const auto timeout = fLongPollTimeout;
    http.Get("/drawing.svg", [this, timeout](const httplib::Request& aRequest, httplib::Response& aResponse) {
        NoStore(aResponse);
        if (!aRequest.has_param("after")) {
            const auto current = fStore.Current();
            if (current.Version == 0) {
                aResponse.status = 503;
                aResponse.set_content("No drawing yet\n", "text/plain");
                return;
            }
            SendSnapshot(current, aResponse);
            return;
        }
        std::uint64_t after = 0;
        if (!ParseVersion(aRequest.get_param_value("after"), after)) {
            aResponse.status = 400;
            aResponse.set_content("after must be a version number\n", "text/plain");
            return;
        }
        if (const auto newer = fStore.WaitNewer(after, timeout)) {
            SendSnapshot(*newer, aResponse);
        } else {
            aResponse.status = 204;
        }
    });

    fPort = http.Serve(kLoopback, aPort);
    fImpl = std::move(impl);
    return fPort;
}

void TLiveView::Stop() {
    if (!fImpl) return;
    // Waiting requests answer first, so no connection thread is still inside a handler when the pool joins.
    fStore.Close();
    fImpl->fHttp.StopAndJoin();
    fImpl.reset();
    fPort = 0;
}

}  // namespace Orvex::Host
