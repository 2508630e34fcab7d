#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/document/editor_fixture.h"

namespace Orvex::Testing {
namespace {

using A = TQVLEdAction;

TEST_F(TEditorTest, PickGapIsDevicePixelsThroughTheDrawContext) {
    struct TCase {
        std::int32_t Dpi;
        std::int64_t Scale;
        std::int64_t Tolerance;
    };
    const TCase cases[] = {{254, 1, 400}, {96, 1, 1058}, {96, 10, 10583}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Dpi * 100 + c.Scale);
        ed.fDraw.fDpix = ed.fDraw.fDpiy = c.Dpi;
        ed.fDraw.fDrawScale = c.Scale;
        EXPECT_EQ(ed.Tolerance(), c.Tolerance);
    }
    ed.fDraw.fDpix = ed.fDraw.fDpiy = 96;
    ed.fDraw.fDrawScale = 1;
    ed.fDraw.fDX = 48;  // scrolled by half an inch
    EXPECT_EQ(ed.ToBase(96, 96), (TQVLPto64{12700, 25400}));
}

TEST_F(TEditorTest, ALineStartsExactlyOnANearbyEndPoint) {
    Line(10, 10, 50, 10);
    ed.fSnap = {TQVLSnapMode::smEndPoint};
    doc.SetAction(A::eaLine);
    Click(50.2, 10.3);  // within the 0.4 mm pick gap of the end
    Click(50.2, 40);
    EXPECT_EQ(Points(Items()[1]), (TPts{{50, 10}, {50.2, 40}}));
}

TEST_F(TEditorTest, GridSnapsWhenNoItemPointIsNear) {
    Line(10, 10, 50, 10);
    ed.fSnap = {TQVLSnapMode::smGrid, TQVLSnapMode::smEndPoint, TQVLSnapMode::smMidPoint};
    ed.fGridX = ed.fGridY = 5000;
    doc.SetAction(A::eaLine);
    Click(30.1, 9.8);  // the line's middle beats the grid
    Click(43, 33);
    EXPECT_EQ(Points(Items()[1]), (TPts{{30, 10}, {45, 35}}));
}

TEST_F(TEditorTest, SearchPointFindsEachEnabledKind) {
    Line(0, 20, 40, 20);
    Line(20, 0, 20, 40);
    Add(TQVLItemType::itCircle, {{60, 0}, {80, 20}});
    ed.fPickGap = 20;  // 2 mm
    struct TCase {
        const char* Name;
        TQVLSnapMode Mode;
        double X, Y;
        bool From;
        double WantX, WantY;
        double FromX = 30, FromY = 30;
    };
    const TCase cases[] = {
        {"end point", TQVLSnapMode::smEndPoint, 1, 21, false, 0, 20},
        {"middle of both lines", TQVLSnapMode::smMidPoint, 21, 21, false, 20, 20},
        {"centre of the circle", TQVLSnapMode::smCenter, 71, 11, false, 70, 10},
        {"perpendicular foot from (30, 30)", TQVLSnapMode::smPerpendicular, 31, 21, true, 30, 20},
        // From 45 degrees off the circle at radius x sqrt 2, the lines touch it at its top and left.
        {"tangent", TQVLSnapMode::smTangent, 61, 11, true, 60, 10, 60, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        ed.fSnap = {c.Mode};
        std::int64_t x = B(c.X);
        std::int64_t y = B(c.Y);
        TQVLSnapHit hit;
        const TQVLPto64 from{B(c.FromX), B(c.FromY)};
        const bool found = ed.SearchPoint(x, y, hit, c.From ? &from : nullptr);
        ASSERT_TRUE(found);
        EXPECT_EQ(hit.Mode, c.Mode);
        EXPECT_NEAR(static_cast<double>(x), static_cast<double>(B(c.WantX)), 1.0);
        EXPECT_NEAR(static_cast<double>(y), static_cast<double>(B(c.WantY)), 1.0);
    }
}

TEST_F(TEditorTest, IntersectionsComeFromTheWorker) {
    Line(0, 20, 40, 20);
    Line(20, 0, 20, 40);
    doc.ComputeIntersections();
    for (int i = 0; i < 500 && doc.IntersectionsRunning(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    ed.fSnap = {TQVLSnapMode::smIntersection};
    std::int64_t x = B(20.3);
    std::int64_t y = B(19.8);
    TQVLSnapHit hit;
    ASSERT_TRUE(ed.SearchPoint(x, y, hit));
    EXPECT_EQ(hit.Mode, TQVLSnapMode::smIntersection);
    EXPECT_EQ(x, B(20));
    EXPECT_EQ(y, B(20));
}

TEST_F(TEditorTest, ReferenceLinesLineThePointerUpWithEndPoints) {
    Line(10, 10, 50, 10);
    ed.fRefLines = true;
    std::int64_t x = B(50.3);
    std::int64_t y = B(40);
    TQVLSnapHit hit;
    EXPECT_TRUE(ed.SearchPoint(x, y, hit));
    EXPECT_EQ(x, B(50));
    EXPECT_EQ(y, B(40));
    ASSERT_EQ(ed.Guides().size(), 1u);
    EXPECT_EQ(ed.Guides()[0].Kind, TQVLGuideKind::glReference);
    EXPECT_EQ(ed.Guides()[0].From, (TQVLPto64{B(50), B(10)}));
    EXPECT_EQ(ed.Guides()[0].To, (TQVLPto64{B(50), B(40)}));
}

TEST_F(TEditorTest, AMovedItemAlignsWithTheEdgesOfOthers) {
    Rect(10, 10, 30, 20);
    Rect(50, 40, 70, 50);
    ed.fAlignLines = true;
    Down(60, 45);
    MoveTo(25, 42);
    MoveTo(20.3, 45);  // left edge would be at 10.3: it lines up with the first box's left edge
    ASSERT_FALSE(ed.Guides().empty());
    EXPECT_EQ(ed.Guides()[0].Kind, TQVLGuideKind::glAlign);
    EXPECT_EQ(ed.Guides()[0].From.X, B(10));
    Up(20.3, 45);
    EXPECT_EQ(Points(Items()[1]), (TPts{{10, 40}, {30, 50}}));
    EXPECT_TRUE(ed.Guides().empty());  // gone with the drag
}

}  // namespace
}  // namespace Orvex::Testing
