// Git graphs drawn: lanes in order, commits advancing along them, and merge and cherry-pick lines joining
// the lanes of the commits they join.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

#include "host/layout/diagram_loader.h"
#include "orvex/document/headless.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"

namespace Orvex {
namespace {

struct TDrawn {
    TORXHeadlessLabel Doc;
    std::map<std::string, const TORXBaseFlow*> Commits;

    explicit TDrawn(const std::string& text) {
        TDiagramPlacement placement;
        EXPECT_TRUE(LoadDiagramWithLayout(Doc, text, TQVLDiagramFormat::dgMermaid, placement));
        for (const auto& node : placement.Nodes)
            Commits[node.ID] =
                dynamic_cast<const TORXBaseFlow*>(Doc.FindItemByInID(TQVLItemType::itFlow, node.ItemID));
    }
    TLayoutPoint Center(const std::string& id) const {
        const TQVLRect r = Commits.at(id)->Box();
        return {static_cast<double>(r.Left + r.Right) / 2000.0,
                static_cast<double>(r.Top + r.Bottom) / 2000.0};
    }
    const TORXBaseLink* LinkBetween(const std::string& from, const std::string& to) const {
        for (std::int32_t i = 0; i < Doc.GetItemsCount(); ++i)
            if (const auto* link = dynamic_cast<const TORXBaseLink*>(Doc.GetItem(i)))
                if (link->FromID() == Commits.at(from)->InID() && link->ToID() == Commits.at(to)->InID())
                    return link;
        return nullptr;
    }
};

TLayoutPoint Mm(TQVLPto64 p) {
    return {static_cast<double>(p.X) / 1000.0, static_cast<double>(p.Y) / 1000.0};
}

constexpr const char* kMerge =
    "gitGraph\n"
    "  commit id: \"a\"\n"
    "  branch feature\n"
    "  commit id: \"f1\"\n"
    "  commit id: \"f2\" type: HIGHLIGHT\n"
    "  checkout main\n"
    "  commit id: \"b\"\n"
    "  merge feature id: \"m\"\n";

TEST(GitGraphLayout, AMergeRunsAlongTheMergedLaneAndTurnsIntoTheTargetLane) {
    const TDrawn drawn(kMerge);
    ASSERT_EQ(drawn.Commits.size(), 5u);
    const double mainY = drawn.Center("a").Y;
    const double featureY = drawn.Center("f1").Y;
    EXPECT_GT(featureY, mainY + 5);  // the second lane lies below the main one
    EXPECT_NEAR(drawn.Center("b").Y, mainY, 0.01);
    EXPECT_NEAR(drawn.Center("m").Y, mainY, 0.01);
    // Commits advance left to right in the order they were made.
    double x = -1;
    for (const char* id : {"a", "f1", "f2", "b", "m"}) {
        EXPECT_GT(drawn.Center(id).X, x) << id;
        x = drawn.Center(id).X;
    }

    const TORXBaseLink* merge = drawn.LinkBetween("f2", "m");
    ASSERT_NE(merge, nullptr);
    EXPECT_NEAR(Mm(merge->StartPoint()).Y, featureY, 0.5);  // leaves f2 along the feature lane
    EXPECT_NEAR(Mm(merge->EndPoint()).X, drawn.Center("m").X, 0.5);
    EXPECT_NEAR(Mm(merge->EndPoint()).Y, mainY, 3.0);  // enters the merge from below, on the main lane
    ASSERT_NE(drawn.LinkBetween("b", "m"), nullptr);   // and its first parent joins it along main
    EXPECT_NEAR(Mm(drawn.LinkBetween("b", "m")->StartPoint()).Y, mainY, 0.5);
    // Opening the branch drops from its parent and runs along the new lane.
    const TORXBaseLink* branchOff = drawn.LinkBetween("a", "f1");
    ASSERT_NE(branchOff, nullptr);
    EXPECT_NEAR(Mm(branchOff->StartPoint()).X, drawn.Center("a").X, 0.5);
    EXPECT_NEAR(Mm(branchOff->EndPoint()).Y, featureY, 0.5);
}

TEST(GitGraphLayout, CommitTypesHaveTheirShapes) {
    const TDrawn drawn(kMerge);
    EXPECT_EQ(drawn.Commits.at("a")->FlowType(), TQVLFlowType::ftEllipse);
    EXPECT_EQ(drawn.Commits.at("f2")->FlowType(), TQVLFlowType::ftProcess);  // highlighted: a square
    EXPECT_EQ(drawn.Commits.at("m")->BackColor(), kOpaqueWhite);             // a merge is a ring
}

TEST(GitGraphLayout, TopToBottomTurnsLanesIntoColumnsAndCherryPicksAreDashed) {
    const TDrawn drawn(
        "gitGraph TB:\n  commit id: \"a\"\n  branch dev\n  commit id: \"d\"\n  checkout main\n"
        "  cherry-pick id: \"d\"\n");
    ASSERT_EQ(drawn.Commits.size(), 3u);
    EXPECT_GT(drawn.Center("d").X, drawn.Center("a").X + 5);
    EXPECT_GT(drawn.Center("d").Y, drawn.Center("a").Y);
    const TORXBaseFlow* picked = nullptr;
    for (const auto& [id, flow] : drawn.Commits)
        if (id != "a" && id != "d") picked = flow;
    ASSERT_NE(picked, nullptr);
    EXPECT_NEAR(static_cast<double>(picked->Box().Left + picked->Box().Right) / 2000.0, drawn.Center("a").X,
                0.01);
    bool dashed = false;
    for (std::int32_t i = 0; i < drawn.Doc.GetItemsCount(); ++i)
        if (const auto* link = dynamic_cast<const TORXBaseLink*>(drawn.Doc.GetItem(i)))
            if (link->ToID() == picked->InID() && link->FromID() == drawn.Commits.at("d")->InID())
                dashed = link->LineType() != TQVLineType::iiSolid;
    EXPECT_TRUE(dashed);
}

}  // namespace
}  // namespace Orvex
