// Private to the hosts' HTTP servers: an httplib::Server that no peer can stall. A connection holds a
// request thread only once the whole head of a request has arrived: one reception thread waits for every
// connection's bytes, so peers that trickle their headers, or keep idle connections open, hold nothing but
// a socket. Each request has one deadline for its head and body together; heads are bounded in size
// (431); connections are capped in total and per client address, and one client may hold only part of
// the request threads (TConnectionLimits). Bodies are bounded by the request handlers.
#pragma once

#include <httplib.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>

#include "orvex/agent/connection_limits.h"

namespace Orvex {

// Request line plus every header line plus the blank line that ends them.
inline constexpr std::size_t kMaxRequestHeadBytes = 64 * 1024;
// Called by a request handler: the connection closes once this response is sent, for a handler that
// answers without reading the body (what is left of it would be taken for the next request).
void CloseConnectionAfterResponse();
// Called by a request handler that answers without reading a body of aBytes declared bytes: once the
// answer is out, a small body that arrives at once is skipped and the connection goes on; otherwise it
// closes.
void SkipBodyAfterResponse(std::uint64_t aBytes);

class TBoundedHttpServer final : public httplib::Server {
  public:
    // The library's default socket options add SO_REUSEPORT, which lets a second server bind a port
    // already in use and take half of its connections; here a taken port fails to bind instead, while
    // SO_REUSEADDR alone still allows a quick restart.
    TBoundedHttpServer();
    ~TBoundedHttpServer() override;

    void SetLimits(const TConnectionLimits& aLimits) { fLimits = aLimits; }  // before Serve
    const TConnectionLimits& Limits() const { return fLimits; }

    // Binds aAddress:aPort (port 0: one the system chooses) and serves on threads of its own; returns
    // once the loop runs, with the bound port. Throws std::runtime_error when the address cannot be bound.
    std::uint16_t Serve(const std::string& aAddress, std::uint16_t aPort);
    // The server has stopped accepting, every connection is closed and no request thread runs.
    bool Finished() const { return fFinished; }
    // Stops serving and waits for every thread; what a caller needs to do meanwhile it does before.
    void StopAndJoin();

  private:
    // Hands the accepted connection to the reception thread and returns at once.
    bool process_and_close_socket(socket_t aSocket) override;

    struct TReception;
    friend struct TReception;
    bool RunRequest(socket_t aSocket, std::string& aReadAhead,
                    std::chrono::steady_clock::time_point aDeadline, bool aLastRequest);

    TConnectionLimits fLimits;

    std::unique_ptr<TReception> fReception;
    std::thread fThread;
    std::atomic<bool> fFinished{false};
};

}  // namespace Orvex
