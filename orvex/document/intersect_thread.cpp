#include "orvex/document/intersect_thread.h"

#include "orvex/document/document.h"
#include "orvex/document/point_items.h"

namespace Orvex {

TIntersectThread::TIntersectThread(std::vector<TIntersectShape> shapes, std::vector<TIntSecPoint>& out,
                                   std::mutex& lock, std::function<void()> onFinished)
    : fShapes(std::move(shapes)), fOut(out), fLock(lock), fOnFinished(std::move(onFinished)) {
    fThread = std::thread([this] { Execute(); });
}

TIntersectThread::~TIntersectThread() {
    Terminate();
    WaitFor();
}

void TIntersectThread::WaitFor() {
    if (fThread.joinable()) fThread.join();
}

void TIntersectThread::Execute() {
    for (std::size_t i = 0; i < fShapes.size() && !fStop; ++i) {
        for (std::size_t j = i + 1; j < fShapes.size() && !fStop; ++j) {
            const TIntersectShape& a = fShapes[i];
            const TIntersectShape& b = fShapes[j];
            // Touching boxes still count: an outline may lie on the box edge.
            if (a.Bounds.Right < b.Bounds.Left || b.Bounds.Right < a.Bounds.Left ||
                a.Bounds.Bottom < b.Bounds.Top || b.Bounds.Bottom < a.Bounds.Top)
                continue;
            std::vector<TIntSecPoint> found;
            for (const auto& s : a.Segments)
                for (const auto& t : b.Segments)
                    if (const auto p = Detail::SegmentIntersection(s, t))
                        found.push_back({p->X, p->Y, a.ID, b.ID});
            if (found.empty()) continue;
            std::scoped_lock guard(fLock);
            fOut.insert(fOut.end(), found.begin(), found.end());
        }
    }
    if (fOnFinished) fOnFinished();
}

// [SECTION] The document's side

namespace {
TIntersectShape Outline(const TORXBaseItem& item) {
    TIntersectShape shape{item.InID(), item.BoundsRect(), {}};
    const auto& pts = item.Points();
    const auto seg = [&](TQVLPto64 a, TQVLPto64 b) { shape.Segments.push_back({a, b}); };
    if (dynamic_cast<const TORX2DItem*>(&item) != nullptr) {  // a box item's outline is its rectangle
        const TQVLRect& r = item.BoundsRect();
        seg({r.Left, r.Top}, {r.Right, r.Top});
        seg({r.Right, r.Top}, {r.Right, r.Bottom});
        seg({r.Right, r.Bottom}, {r.Left, r.Bottom});
        seg({r.Left, r.Bottom}, {r.Left, r.Top});
        return shape;
    }
    for (std::size_t i = 1; i < pts.size(); ++i) seg({pts[i - 1].X, pts[i - 1].Y}, {pts[i].X, pts[i].Y});
    if (item.ItemType() == TQVLItemType::itPolygon && pts.size() > 2)
        seg({pts.back().X, pts.back().Y}, {pts.front().X, pts.front().Y});
    return shape;
}
}  // namespace

void TORXBaseLabel::ComputeIntersections() {
    TerminarThread();
    {
        std::scoped_lock lock(fIntersectLock);
        fIntersections.clear();
    }
    std::vector<TIntersectShape> shapes;
    for (const auto& item : fItems)
        if (item->Options().Contains(TQVLayerOp::lopVisible)) shapes.push_back(Outline(*item));
    fIntersectRunning = true;
    fIntersectThread = std::make_unique<TIntersectThread>(std::move(shapes), fIntersections, fIntersectLock,
                                                          [this] { ThreadFinished(); });
}

void TORXBaseLabel::ThreadFinished() {
    fIntersectRunning = false;
}

void TORXBaseLabel::TerminarThread() {
    if (fIntersectThread) fIntersectThread.reset();  // terminates and joins
    fIntersectRunning = false;
}

void TORXBaseLabel::CheckIntersetions() {
    if (fEditorMode == TQVLEditorMode::emDrawing) ComputeIntersections();
}

std::vector<TIntSecPoint> TORXBaseLabel::GetIntersections() const {
    std::scoped_lock lock(fIntersectLock);
    return fIntersections;
}

}  // namespace Orvex
