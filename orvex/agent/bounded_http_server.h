// Private to the hosts' HTTP servers: an httplib::Server whose connections cannot make it hold an unbounded
// request line or header block. The HTTP library reads the head of a request line by line into a string
// that grows until the line ends, so a peer that never sends a line end would grow it without limit; here
// each connection reads through a stream that fails once the head passes kMaxRequestHeadBytes and
// answers 431. Bodies are bounded by the listener itself.
#pragma once

#include <httplib.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>

namespace Orvex {

// Request line plus every header line plus the blank line that ends them.
inline constexpr std::size_t kMaxRequestHeadBytes = 64 * 1024;

class TBoundedHttpServer final : public httplib::Server {
  public:
    // The library's default socket options add SO_REUSEPORT, which lets a second server bind a port
    // already in use and take half of its connections; here a taken port fails to bind instead, while
    // SO_REUSEADDR alone still allows a quick restart.
    TBoundedHttpServer();
    ~TBoundedHttpServer() override;

    // Binds aAddress:aPort (port 0: one the system chooses) and serves on a thread of its own; returns
    // once the loop runs, with the bound port. Throws std::runtime_error when the address cannot be bound.
    std::uint16_t Serve(const std::string& aAddress, std::uint16_t aPort);
    // The serving loop has ended (after stop(), once every connection has closed).
    bool Finished() const { return fFinished; }
    // Stops serving and waits for the loop's thread; what a caller needs to do meanwhile it does before.
    void StopAndJoin();

  private:
    // Runs the kept-alive request loop of one connection, as the library's own does, over a stream that
    // bounds each request's head.
    bool process_and_close_socket(socket_t aSocket) override;

    std::thread fThread;
    std::atomic<bool> fFinished{false};
};

}  // namespace Orvex
