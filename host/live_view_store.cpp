#include "host/live_view_store.h"

#include <utility>

namespace Orvex::Host {

TLiveViewStore::TLiveViewStore() {
    fCurrent.SVG = std::make_shared<const std::string>();
}

bool TLiveViewStore::Publish(std::string aSVG, std::size_t aItems) {
    {
        std::lock_guard lock(fMutex);
        if (fCurrent.Version > 0 && *fCurrent.SVG == aSVG) return false;
        fCurrent.SVG = std::make_shared<const std::string>(std::move(aSVG));
        fCurrent.Items = aItems;
        ++fCurrent.Version;
    }
    fChanged.notify_all();
    return true;
}

TLiveSnapshot TLiveViewStore::Current() const {
    std::lock_guard lock(fMutex);
    return fCurrent;
}

std::optional<TLiveSnapshot> TLiveViewStore::WaitNewer(std::uint64_t aAfter,
                                                       std::chrono::milliseconds aTimeout) const {
    std::unique_lock lock(fMutex);
    // A version other than the current one counts as older: a page kept open across a restart of the
    // server holds a number from the previous run, possibly larger than this run's.
    const auto differs = [&] { return fCurrent.Version > 0 && fCurrent.Version != aAfter; };
    fChanged.wait_for(lock, aTimeout, [&] { return fClosed || differs(); });
    if (!differs()) return std::nullopt;
    return fCurrent;
}

void TLiveViewStore::Close() {
    {
        std::lock_guard lock(fMutex);
        fClosed = true;
    }
    fChanged.notify_all();
}

bool TLiveViewStore::Closed() const {
    std::lock_guard lock(fMutex);
    return fClosed;
}

}  // namespace Orvex::Host
