#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "orvex/document/headless.h"
#include "orvex/document/intersect_segments.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

void WaitForWorker(const TORXBaseLabel& doc) {
    for (int i = 0; i < 2000 && doc.IntersectionsRunning(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

TEST(IntersectTest, SegmentCrossings) {
    using Detail::SegmentIntersection;
    using Detail::TSegment;
    struct TCase {
        const char* Name;
        TSegment A;
        TSegment B;
        bool Hit;
        TQVLPto64 At;
    };
    const TCase cases[] = {
        {"cross", {{0, 0}, {10, 10}}, {{0, 10}, {10, 0}}, true, {5, 5}},
        {"touching end", {{0, 0}, {10, 0}}, {{10, 0}, {10, 10}}, true, {10, 0}},
        {"rounded", {{0, 0}, {3, 1}}, {{0, 1}, {3, 0}}, true, {2, 1}},  // crosses at (1.5, 0.5)
        {"parallel", {{0, 0}, {10, 0}}, {{0, 1}, {10, 1}}, false, {}},
        {"collinear", {{0, 0}, {10, 0}}, {{5, 0}, {15, 0}}, false, {}},
        {"apart", {{0, 0}, {1, 1}}, {{5, 0}, {6, -1}}, false, {}},
        {"large",
         {{0, 0}, {4000000000, 4000000000}},
         {{0, 4000000000}, {4000000000, 0}},
         true,
         {2000000000, 2000000000}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        const auto p = SegmentIntersection(c.A, c.B);
        ASSERT_EQ(p.has_value(), c.Hit);
        if (c.Hit) {
            EXPECT_EQ(*p, c.At);
        }
    }
}

TEST(IntersectTest, WorkerFindsCrossingsBetweenItemsOnly) {
    TORXHeadlessLabel doc;
    TORXBaseItem* a = doc.CreateItem(TQVLItemType::itLine);
    a->SetBase(1, 0, 0);
    a->SetBase(2, 10000, 10000);
    TORXBaseItem* b = doc.CreateItem(TQVLItemType::itLine);
    b->SetBase(1, 0, 10000);
    b->SetBase(2, 10000, 0);
    TORXBaseItem* box = doc.CreateItem(TQVLItemType::itRectangle);
    box->SetBase(1, 20000, 20000);
    box->SetBase(2, 30000, 30000);
    TORXBaseItem* poly = doc.CreateItem(TQVLItemType::itPolyLine);  // through the box, clear of the lines
    poly->InsertPoint(20000, 25000, 1);
    poly->InsertPoint(40000, 25000, 2);
    doc.ComputeIntersections();
    WaitForWorker(doc);
    auto points = doc.GetIntersections();
    ASSERT_EQ(points.size(), 3u);
    std::sort(points.begin(), points.end(), [](const auto& p, const auto& q) { return p.X < q.X; });
    EXPECT_EQ(points[0], (TIntSecPoint{5000, 5000, a->InID(), b->InID()}));
    EXPECT_EQ(points[1], (TIntSecPoint{20000, 25000, box->InID(), poly->InID()}));
    EXPECT_EQ(points[2].X, 30000);
    EXPECT_EQ(points[2].ItemB, poly->InID());
}

TEST(IntersectTest, WorkerStopsEarlyAndDrawingReadsStartIt) {
    TORXHeadlessLabel doc;
    for (int i = 0; i < 400; ++i) {
        TORXBaseItem* line = doc.CreateItem(TQVLItemType::itPolyLine);
        for (int k = 0; k < 20; ++k) line->InsertPoint(k * 1000, (i + k) % 7 * 1000, k + 1);
    }
    doc.ComputeIntersections();
    doc.TerminarThread();
    EXPECT_FALSE(doc.IntersectionsRunning());
    const std::size_t found = doc.GetIntersections().size();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(doc.GetIntersections().size(), found);  // nothing is added once stopped

    doc.SetEditorMode(TQVLEditorMode::emDrawing);
    const TJSON json = doc.GetJson();
    doc.ReadJson(json);
    WaitForWorker(doc);
    EXPECT_FALSE(doc.GetIntersections().empty());
}

}  // namespace
}  // namespace Orvex
