// The drawing as the live view shows it: the main thread publishes the SVG of each state of the drawing,
// the HTTP threads read the latest and wait for the next. Nothing here touches the document.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace Orvex::Host {

struct TLiveSnapshot {
    std::uint64_t Version = 0;  // 0 until the first Publish; then 1, 2, ... one per distinct drawing
    std::shared_ptr<const std::string> SVG;  // never null; shared so a reader copies no text under the lock
    std::size_t Items = 0;
};

class TLiveViewStore {
  public:
    TLiveViewStore();

    // Stores aSVG as the next version when it differs from the current one; false when it is the same
    // drawing (a read-only tool, a change undone inside one call), so viewers are not woken for nothing.
    bool Publish(std::string aSVG, std::size_t aItems);
    TLiveSnapshot Current() const;

    // Waits up to aTimeout for a version newer than aAfter and returns it; nullopt when none came or the
    // store is closed. Returns at once when the current version is already newer.
    std::optional<TLiveSnapshot> WaitNewer(std::uint64_t aAfter, std::chrono::milliseconds aTimeout) const;

    // Wakes every waiter, and later waits return at once: the server is stopping.
    void Close();
    bool Closed() const;

  private:
    mutable std::mutex fMutex;
    mutable std::condition_variable fChanged;
    TLiveSnapshot fCurrent;
    bool fClosed = false;
};

}  // namespace Orvex::Host
