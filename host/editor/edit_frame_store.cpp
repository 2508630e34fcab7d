#include "host/editor/edit_frame_store.h"

#include <utility>

namespace Orvex::Host {

namespace {
// Replaces aPart when the text differs; true then.
bool Replace(std::shared_ptr<const std::string>& aPart, std::string&& aText) {
    if (*aPart == aText) return false;
    aPart = std::make_shared<const std::string>(std::move(aText));
    return true;
}
}  // namespace

TEditFrameStore::TEditFrameStore() {
    fCurrent.Drawing = std::make_shared<const std::string>();
    fCurrent.Overlay = std::make_shared<const std::string>();
    fCurrent.State = std::make_shared<const std::string>();
}

bool TEditFrameStore::Publish(std::string aDrawing, std::string aOverlay, std::string aState) {
    {
        std::lock_guard lock(fMutex);
        const bool first = fCurrent.Version == 0;
        const bool drawing = Replace(fCurrent.Drawing, std::move(aDrawing)) || first;
        const bool overlay = Replace(fCurrent.Overlay, std::move(aOverlay));
        const bool state = Replace(fCurrent.State, std::move(aState));
        if (!drawing && !overlay && !state) return false;
        if (drawing) ++fCurrent.DrawingVersion;
        ++fCurrent.Version;
    }
    fChanged.notify_all();
    return true;
}

TEditFrame TEditFrameStore::Current() const {
    std::lock_guard lock(fMutex);
    return fCurrent;
}

std::optional<TEditFrame> TEditFrameStore::WaitNewer(std::uint64_t aAfter,
                                                     std::chrono::milliseconds aTimeout) const {
    std::unique_lock lock(fMutex);
    // Any other version counts: a page kept open across a restart holds a number from the previous run.
    const auto differs = [&] { return fCurrent.Version > 0 && fCurrent.Version != aAfter; };
    fChanged.wait_for(lock, aTimeout, [&] { return fClosed || differs(); });
    if (fClosed || !differs()) return std::nullopt;
    return fCurrent;
}

void TEditFrameStore::Close() {
    {
        std::lock_guard lock(fMutex);
        fClosed = true;
    }
    fChanged.notify_all();
}

bool TEditFrameStore::Closed() const {
    std::lock_guard lock(fMutex);
    return fClosed;
}

}  // namespace Orvex::Host
