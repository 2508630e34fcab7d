// Private to the agent module: the socket side of TORXMCPServer. Kept apart so that no public header
// depends on the HTTP library.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

namespace Orvex {

class IMainThreadRunner;
class TORXMCPServer;

class TMCPHttpListener {
  public:
    explicit TMCPHttpListener(TORXMCPServer& aServer);
    ~TMCPHttpListener();
    TMCPHttpListener(const TMCPHttpListener&) = delete;
    TMCPHttpListener& operator=(const TMCPHttpListener&) = delete;

    // Binds and starts serving on a thread of its own; returns the bound port (chosen by the system for
    // port 0). Throws std::runtime_error when the address cannot be bound.
    std::uint16_t Listen(const std::string& aAddress, std::uint16_t aPort);
    // Stops accepting, lets running requests finish (serving aRunner meanwhile when called on the main
    // thread) and joins every thread.
    void Shutdown(IMainThreadRunner* aRunner);
    // From any thread: no connection is taken from now on; Shutdown still waits for the running ones.
    void StopAccepting();
    std::uint16_t Port() const { return fPort; }

  private:
    struct TImpl;
    TORXMCPServer& fServer;
    std::unique_ptr<TImpl> fImpl;
    std::mutex fImplMutex;  // StopAccepting may come from another thread than Listen and Shutdown
    std::uint16_t fPort = 0;
};

}  // namespace Orvex
