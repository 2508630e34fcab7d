// The editor page's HTTP side: the bounded HTTP server the other hosts use, serving
//
//   GET  /         the page (self-contained HTML, CSS and script; nothing is fetched elsewhere)
//   GET  /stream   the frames the session publishes, one JSON object a line over a chunked response: the
//                  drawing's SVG when it changed since the last line, the marks over it, the panels' state
//   POST /api      one request of the page, run on the document's thread; 400 with {"error"} when refused
//
// A page elsewhere on the web gets nothing: only loopback Host names are served on a loopback address, a
// request with an Origin must come from the page's own origin (or one allowed by name), and with a token
// every request carries it (the page's address holds it once, as ?token=, and the script sends it as a
// bearer token). An address other than loopback is refused without a token.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace Orvex {
class IMainThreadRunner;
}

namespace Orvex::Host {

class TEditSession;

struct TEditServerOptions {
    std::string Bind = "127.0.0.1";
    std::uint16_t Port = 0;                          // 0 picks a free one
    std::string Token;                               // empty: none (loopback only)
    std::string AllowedOrigins;                      // extra browser origins, ";"-separated
    std::size_t MaxRequestBytes = 16 * 1024 * 1024;  // an opened drawing or a pasted diagram fits
};

class TEditServer {
  public:
    TEditServer(TEditSession& aSession, IMainThreadRunner& aRunner);
    ~TEditServer();  // stops
    TEditServer(const TEditServer&) = delete;
    TEditServer& operator=(const TEditServer&) = delete;

    // Throws std::runtime_error when the address cannot be bound or needs a token it was not given.
    std::uint16_t Start(const TEditServerOptions& aOptions);
    // Ends the streams (the session's store is closed, so a stopped server is not started again) and
    // joins every thread.
    void Stop();
    std::uint16_t BoundPort() const { return fPort; }
    std::string Url() const;  // the address to open, with the token when there is one

  private:
    struct TImpl;
    TEditSession& fSession;
    IMainThreadRunner& fRunner;
    std::unique_ptr<TImpl> fImpl;
    TEditServerOptions fOptions;
    std::uint16_t fPort = 0;
};

}  // namespace Orvex::Host
