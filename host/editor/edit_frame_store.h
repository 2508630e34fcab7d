// What the editor page shows, as the main thread last rendered it: the drawing's SVG, the editor's marks
// over it (rubber band, handles, snap mark, caret) and the state of the panels. Each part carries its own
// version so that a page is sent the drawing again only when the drawing itself changed; a pointer move
// that only moves the rubber band sends the small overlay alone. The HTTP threads read; nothing here touches
// the document.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace Orvex::Host {

struct TEditFrame {
    std::uint64_t Version = 0;                   // 0 until the first Publish; advances when any part changed
    std::uint64_t DrawingVersion = 0;            // advances only when the drawing's SVG changed
    std::shared_ptr<const std::string> Drawing;  // never null; shared so readers copy no text under the lock
    std::shared_ptr<const std::string> Overlay;  // SVG elements in the drawing's coordinates
    std::shared_ptr<const std::string> State;    // JSON text: tool, selection, layers, page, undo
};

class TEditFrameStore {
  public:
    TEditFrameStore();

    // Stores the parts that differ from the current frame; false when none did, so waiters stay asleep.
    bool Publish(std::string aDrawing, std::string aOverlay, std::string aState);
    TEditFrame Current() const;

    // Waits up to aTimeout for a frame whose version differs from aAfter; nullopt when none came or the
    // store is closed.
    std::optional<TEditFrame> WaitNewer(std::uint64_t aAfter, std::chrono::milliseconds aTimeout) const;

    void Close();  // wakes every waiter; later waits return at once
    bool Closed() const;

  private:
    mutable std::mutex fMutex;
    mutable std::condition_variable fChanged;
    TEditFrame fCurrent;
    bool fClosed = false;
};

}  // namespace Orvex::Host
