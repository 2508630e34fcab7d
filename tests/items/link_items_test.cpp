#include <cmath>

#include <gtest/gtest.h>

#include "orvex/document/headless.h"
#include "orvex/io/json.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"

namespace Orvex {
namespace {

class LinkItemsTest : public ::testing::Test {
  protected:
    TORXBaseFlow* Flow(const TQVLRect& box) {
        auto* flow = fDoc.AddNew<THeadlessItem<TORXBaseFlow>>(false);
        flow->SetBase(1, box.Left, box.Top);
        flow->SetBase(2, box.Right, box.Bottom);
        return flow;
    }
    TORXBaseLink* Link(TQVLinkType type) {
        auto* link = fDoc.AddNew<THeadlessItem<TORXBaseLink>>(false);
        link->SetLinkType(type);
        link->Bind(fA, -1, fB, -1);
        fDoc.EndUpdate();
        return link;
    }

    TORXHeadlessLabel fDoc;
    TORXBaseFlow* fA = Flow({10000, 10000, 30000, 20000});
    TORXBaseFlow* fB = Flow({60000, 50000, 80000, 60000});  // right of and below fA
};

TEST_F(LinkItemsTest, SetLinkTypeLeavesThePointCountOfTheType) {
    auto* link = fDoc.AddNew<THeadlessItem<TORXBaseLink>>(false);
    link->InsertPoint(1000, 1000, 1);
    link->InsertPoint(2000, 2000, 2);
    struct TCase {
        TQVLinkType Type;
        std::int32_t Points;
    };
    const TCase cases[] = {{TQVLinkType::ltLeftRightTopBottom, 1},
                           {TQVLinkType::ltTopBottomLeftRight, 1},
                           {TQVLinkType::ltStepLineTwoPto, 1},
                           {TQVLinkType::ltArc, 1},
                           {TQVLinkType::ltCurve, 0},
                           {TQVLinkType::ltRoundCorner, 14},
                           {TQVLinkType::ltPolyline, 14},
                           {TQVLinkType::ltDirLine, 0},
                           {TQVLinkType::ltPolyline, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.Type));
        link->SetLinkType(c.Type);
        EXPECT_EQ(link->LinkType(), c.Type);
        EXPECT_EQ(link->GetNumLinkPoints(), c.Points);
        EXPECT_TRUE(fDoc.HasState(TOrvexState::lsCalc));
    }
    const std::size_t count = fDoc.UndoCount();
    link->SetLinkType(TQVLinkType::ltPolyline);  // unchanged: no command, no change
    EXPECT_EQ(fDoc.UndoCount(), count);
}

TEST_F(LinkItemsTest, UndoingATypeChangeBringsBackTheDroppedPoints) {
    auto* link = Link(TQVLinkType::ltPolyline);
    link->InsertPoint(45000, 15000, 1);
    link->InsertPoint(45000, 55000, 2);
    const auto points = link->LinkPoints();
    const std::size_t count = fDoc.UndoCount();
    link->SetLinkType(TQVLinkType::ltDirLine);
    EXPECT_EQ(fDoc.UndoCount(), count + 1);
    EXPECT_EQ(link->GetNumLinkPoints(), 0);
    fDoc.Undo();
    EXPECT_EQ(link->LinkType(), TQVLinkType::ltPolyline);
    EXPECT_EQ(link->LinkPoints(), points);
    fDoc.Redo();
    EXPECT_EQ(link->LinkType(), TQVLinkType::ltDirLine);
    EXPECT_EQ(link->GetNumLinkPoints(), 0);
}

TEST_F(LinkItemsTest, OrthogonalRoutesLeaveAndEnterAcrossTheSides) {
    struct TCase {
        TQVLinkType Type;
        TQVLPto64 Start, End;  // fB lies right of and below fA
    };
    const TCase cases[] = {
        {TQVLinkType::ltLeftRightTopBottom, {30000, 15000}, {70000, 50000}},  // right side to top side
        {TQVLinkType::ltTopBottomLeftRight, {20000, 20000}, {60000, 55000}},  // bottom side to left side
        {TQVLinkType::ltStepLineTwoPto, {30000, 15000}, {60000, 55000}},      // wider than high: sideways
        {TQVLinkType::ltRoundCorner, {30000, 15000}, {60000, 55000}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.Type));
        auto* link = Link(c.Type);
        EXPECT_EQ(link->StartPoint(), c.Start);
        EXPECT_EQ(link->EndPoint(), c.End);
        const auto course = link->Course();
        ASSERT_GE(course.size(), 3u);
        // The first leg runs perpendicular to the side it leaves, the last one to the side it enters.
        const bool leavesSideways = c.Start.X == 30000;
        EXPECT_EQ(leavesSideways ? course[1].Y : course[1].X, leavesSideways ? c.Start.Y : c.Start.X);
        const bool entersSideways = c.End.X == 60000;
        const auto& last = course[course.size() - 2];
        EXPECT_EQ(entersSideways ? last.Y : last.X, entersSideways ? c.End.Y : c.End.X);
        if (c.Type == TQVLinkType::ltRoundCorner) continue;
        for (std::size_t i = 0; i + 1 < course.size(); ++i) {  // every leg is horizontal or vertical
            EXPECT_TRUE(course[i].X == course[i + 1].X || course[i].Y == course[i + 1].Y) << i;
        }
    }
}

TEST_F(LinkItemsTest, ArcCurveAndStraightCourses) {
    auto* arc = Link(TQVLinkType::ltArc);
    EXPECT_GT(arc->Radio(), 0);
    const double toStart = std::hypot(arc->StartPoint().X - arc->Cx(), arc->StartPoint().Y - arc->Cy());
    const double toEnd = std::hypot(arc->EndPoint().X - arc->Cx(), arc->EndPoint().Y - arc->Cy());
    EXPECT_NEAR(toStart, static_cast<double>(arc->Radio()), 2.0);
    EXPECT_NEAR(toEnd, static_cast<double>(arc->Radio()), 2.0);
    EXPECT_EQ(arc->GetNumLinkPoints(), 1);  // the arc's middle
    auto* curve = Link(TQVLinkType::ltCurve);
    EXPECT_EQ(curve->GetNumLinkPoints(), 0);
    EXPECT_GT(curve->Course().size(), 10u);
    auto* line = Link(TQVLinkType::ltDirLine);
    EXPECT_EQ(line->Course().size(), 2u);
    EXPECT_TRUE(line->Pick(45000, 35000, 300, false));  // on the straight course
    EXPECT_FALSE(line->Pick(45000, 20000, 300, false));
}

TEST_F(LinkItemsTest, MovingAnElementDragsItsLinks) {
    auto* link = Link(TQVLinkType::ltDirLine);
    const TQVLPto64 end = link->EndPoint();
    fB->BaseMove(0, 0, 5000, -2000, TQVLMoveOpt::moMove, false);
    fDoc.EndUpdate();  // the pending calculations route the link again
    EXPECT_EQ(link->EndPoint(), (TQVLPto64{end.X + 5000, end.Y - 2000}));
    fB->SetBase(2, 85000, 70000);  // resizing moves the connection point as well
    fDoc.EndUpdate();
    EXPECT_EQ(link->EndPoint(), fB->LinkPoint(3));
    EXPECT_NE(link->EndPoint(), (TQVLPto64{end.X + 5000, end.Y - 2000}));
    fDoc.Undo();
    fDoc.EndUpdate();
    EXPECT_EQ(link->EndPoint(), (TQVLPto64{end.X + 5000, end.Y - 2000}));
}

TEST_F(LinkItemsTest, StaysBoundByIdAcrossSaveAndLoad) {
    auto* link = Link(TQVLinkType::ltStepLineTwoPto);
    link->SetToType(TQVLTermType::ttFillArrow);
    link->SetFromIndex(1);  // the user fixes the right side
    fDoc.EndUpdate();
    const std::string saved = fDoc.GetJsonString();

    TORXHeadlessLabel copy;
    copy.ReadJson(TJSON::parse(saved));
    EXPECT_EQ(copy.GetJsonString(), saved);
    TORXBaseLink* back = nullptr;
    TORXBaseFlow* target = nullptr;
    for (std::int32_t i = 0; i < copy.GetItemsCount(); ++i) {
        if (auto* l = dynamic_cast<TORXBaseLink*>(copy.GetItem(i))) back = l;
        if (copy.GetItem(i)->InID() == fB->InID()) target = dynamic_cast<TORXBaseFlow*>(copy.GetItem(i));
    }
    ASSERT_NE(back, nullptr);
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(back->ToFlow(), target);
    EXPECT_EQ(back->FromIndex(), 1);
    EXPECT_EQ(back->StartPoint(), (TQVLPto64{30000, 15000}));
    target->BaseMove(0, 0, 0, 10000, TQVLMoveOpt::moMove, false);  // the read link follows its element too
    copy.EndUpdate();
    EXPECT_EQ(back->EndPoint(), target->LinkPoint(3));
}

TEST_F(LinkItemsTest, SvgCarriesTerminatorsAtBothEnds) {
    auto* link = Link(TQVLinkType::ltArc);
    link->SetFromType(TQVLTermType::ttCircle);
    link->SetToType(TQVLTermType::ttFillArrow);
    link->SetToColor(0xFFFF0000u);
    std::vector<std::string> defs, body;
    link->WriteSVG(defs, body, TQVLExportSVG::esFile, 1.0f, false);
    ASSERT_EQ(body.size(), 1u);
    EXPECT_EQ(defs.size(), 2u);
    EXPECT_NE(body[0].find("marker-start=\"url(#term1_"), std::string::npos) << body[0];
    EXPECT_NE(body[0].find("marker-end=\"url(#term4_FFFF0000)\""), std::string::npos) << body[0];
    EXPECT_NE(body[0].find(" A"), std::string::npos) << body[0];
    EXPECT_EQ(link->Arrow(true).size(), 3u);
    EXPECT_EQ(link->Arrow(true)[1], link->EndPoint());
}

TEST_F(LinkItemsTest, TerminatorColoursComeFromTheDocumentSettings) {
    fDoc.Settings().fTermColor = 0xFF123456u;
    auto* link = fDoc.AddNew<THeadlessItem<TORXBaseLink>>(TQVLinkType::ltCurve, false);
    EXPECT_EQ(link->FromColor(), 0xFF123456u);
    EXPECT_EQ(link->ToColor(), 0xFF123456u);
    EXPECT_EQ(link->LinkType(), TQVLinkType::ltCurve);
    EXPECT_EQ(link->FromType(), TQVLTermType::ttNone);
}

}  // namespace
}  // namespace Orvex
