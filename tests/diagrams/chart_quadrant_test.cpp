// The quadrant chart reader: axes, quadrant titles, points with classes and inline styles, and the
// points it refuses.
#include <gtest/gtest.h>

#include "orvex/diagrams/chart_quadrant.h"
#include "orvex/io/json.h"
#include "tests/diagrams/chart_test_util.h"

namespace Orvex {
namespace {

using ChartTest::ChartOf;
using ChartTest::Diagnostic;
using ChartTest::Read;

TEST(ChartQuadrant, AxesQuadrantsAndEveryPoint) {
    const auto model = Read(
        "quadrantChart\n  title Reach\n  x-axis Low reach --> High reach\n  y-axis Low\n"
        "  quadrant-1 Expand\n  quadrant-2 Promote\n  quadrant-3 Re-evaluate\n  quadrant-4 Improve\n"
        "  Campaign A: [0.3, 0.6]\n  Campaign B: [0.45, 0.23]\n  Campaign C: [1, 0]\n  \"Big, bold\": [0.5, "
        "0.5]\n");
    const auto* q = ChartOf<TQVLQuadrantChart>(*model);
    ASSERT_NE(q, nullptr);
    EXPECT_EQ(q->XAxis, (std::array<std::string, 2>{"Low reach", "High reach"}));
    EXPECT_EQ(q->YAxis, (std::array<std::string, 2>{"Low", ""}));
    EXPECT_EQ(q->Quadrants[1], "Promote");
    EXPECT_EQ(q->Quadrants[3], "Improve");
    ASSERT_EQ(q->Points.size(), 4u);
    EXPECT_EQ(q->Points[1].Text, "Campaign B");
    EXPECT_DOUBLE_EQ(q->Points[1].X, 0.45);
    EXPECT_DOUBLE_EQ(q->Points[1].Y, 0.23);
    EXPECT_EQ(q->Points[3].Text, "Big, bold");
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(ChartQuadrant, InlineStyleWinsOverTheClass) {
    const auto model = Read(
        "quadrantChart\n  A:::hot: [0.9, 0.1] radius: 12\n  B: [0.2, 0.3] color: #ff3300, stroke-width: 2px\n"
        "  classDef hot color: #109060, radius : 10, stroke-color: #310085\n");
    const auto* q = ChartOf<TQVLQuadrantChart>(*model);
    ASSERT_NE(q, nullptr);
    ASSERT_EQ(q->Points.size(), 2u);
    const auto a = q->StyleOf(q->Points[0]);
    EXPECT_EQ(q->Points[0].Class, "hot");
    EXPECT_EQ(a.Radius.value_or(0), 12);
    EXPECT_EQ(a.Color.value_or(0), 0xFF109060u);
    EXPECT_EQ(a.StrokeColor.value_or(0), 0xFF310085u);
    const auto b = q->StyleOf(q->Points[1]);
    EXPECT_EQ(b.Color.value_or(0), 0xFFFF3300u);
    EXPECT_EQ(b.StrokeWidth.value_or(0), 2);
    EXPECT_TRUE(model->Diagnostics().empty());

    TJSON json;
    q->WriteJson(json);
    EXPECT_EQ(json["points"][0]["style"]["class"], "hot");
    EXPECT_EQ(json["points"][0]["style"]["color"], "#109060");
    EXPECT_FALSE(json["points"][1]["style"].contains("class"));
}

TEST(ChartQuadrant, PointsOutsideTheSquareAreErrorsAndUnknownStylesWarnings) {
    const auto model = Read(
        "quadrantChart\n  A: [1.2, 0.5]\n  B: [0.5, -0.1]\n  C: [0.5]\n  D: [0.5, 0.5] size: 3\n"
        "  E:::nowhere: [0.1, 0.1]\n  what is this\n");
    const auto* q = ChartOf<TQVLQuadrantChart>(*model);
    ASSERT_NE(q, nullptr);
    ASSERT_EQ(q->Points.size(), 2u);
    EXPECT_EQ(q->Points[0].Text, "D");
    std::size_t refused = 0;
    for (const auto& d : model->Diagnostics())
        if (d.Code == "QUADRANT_POINT") {
            EXPECT_EQ(d.Severity, TQVLDiagramDiagnosticSeverity::dsError);
            ++refused;
        }
    EXPECT_EQ(refused, 3u);
    EXPECT_NE(Diagnostic(*model, "QUADRANT_STYLE"), nullptr);
    EXPECT_NE(Diagnostic(*model, "QUADRANT_CLASS"), nullptr);
    EXPECT_NE(Diagnostic(*model, "QUADRANT_UNRECOGNIZED_LINE"), nullptr);
}

}  // namespace
}  // namespace Orvex
