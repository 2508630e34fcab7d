// TIntersectThread: the document's one worker. It crosses the outlines of a snapshot of the items and
// appends the crossings to the document's guarded point list; it reads nothing else of the document.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "orvex/document/intersect_segments.h"

namespace Orvex {

struct TIntSecPoint;

// One item's outline as the worker sees it.
struct TIntersectShape {
    std::int32_t ID = 0;
    TQVLRect Bounds;
    std::vector<Detail::TSegment> Segments;
};

class TIntersectThread {
  public:
    // Starts at once. onFinished runs on the worker as its last step, also after Terminate.
    TIntersectThread(std::vector<TIntersectShape> shapes, std::vector<TIntSecPoint>& out, std::mutex& lock,
                     std::function<void()> onFinished);
    ~TIntersectThread();  // terminates and joins
    TIntersectThread(const TIntersectThread&) = delete;
    TIntersectThread& operator=(const TIntersectThread&) = delete;

    void Terminate() { fStop = true; }
    void WaitFor();

  private:
    void Execute();

    std::vector<TIntersectShape> fShapes;
    std::vector<TIntSecPoint>& fOut;
    std::mutex& fLock;
    std::function<void()> fOnFinished;
    std::atomic<bool> fStop{false};
    std::thread fThread;
};

}  // namespace Orvex
