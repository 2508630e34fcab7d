// The live view of `orvex serve`: one small page on 127.0.0.1 that shows the drawing as SVG and follows
// every change within a second, so that a person can watch an agent draw. It is read-only. The main thread
// renders the drawing into the store (Update); the HTTP threads only read the store.
//
//   GET /                      the page (self-contained: inline script and style, nothing fetched elsewhere)
//   GET /drawing.svg           the current SVG; headers X-Drawing-Version and X-Drawing-Items
//   GET /drawing.svg?after=V   the same once the version differs from V, waiting up to LongPollTimeout;
//                              204 when nothing changed in that time
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "host/live_view_store.h"

namespace Orvex {
class TORXBaseLabel;
}

namespace Orvex::Host {

class TLiveView {
  public:
    TLiveView();
    ~TLiveView();  // stops
    TLiveView(const TLiveView&) = delete;
    TLiveView& operator=(const TLiveView&) = delete;

    // Main thread only: renders aDocument as SVG and publishes it when it differs from the last; true then.
    bool Update(const TORXBaseLabel& aDocument);

    // Listens on 127.0.0.1 only, on aPort (0 picks a free one), and returns the port; throws
    // std::runtime_error when it cannot bind, also when another server holds the port. Stop wakes the
    // waiting requests and joins every thread; it closes the store, so a stopped view is not started again.
    std::uint16_t Start(std::uint16_t aPort);
    void Stop();
    std::uint16_t BoundPort() const { return fPort; }

    std::chrono::milliseconds LongPollTimeout() const { return fLongPollTimeout; }
    void SetLongPollTimeout(std::chrono::milliseconds aValue) { fLongPollTimeout = aValue; }  // while stopped

    TLiveViewStore& Store() { return fStore; }

  private:
    struct TImpl;
    TLiveViewStore fStore;
    std::unique_ptr<TImpl> fImpl;
    std::uint16_t fPort = 0;
    std::chrono::milliseconds fLongPollTimeout{20000};
};

}  // namespace Orvex::Host
