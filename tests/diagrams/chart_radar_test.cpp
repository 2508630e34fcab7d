// The radar reader: axes with labels, plain and named curve values (over several lines), the options,
// and the curves it refuses.
#include <gtest/gtest.h>

#include "orvex/diagrams/chart_radar.h"
#include "tests/diagrams/chart_test_util.h"

namespace Orvex {
namespace {

using ChartTest::ChartOf;
using ChartTest::Diagnostic;
using ChartTest::Read;

TEST(ChartRadar, AxesCurvesAndOptions) {
    const auto model = Read(
        "radar-beta\n  axis m[\"Math\"], s[\"Science\"]\n  axis e\n  curve a[\"Alice\"]{85, 90, 80}\n"
        "  curve b{ e: 3, m: 1,\n    s: 2 }\n  max 100\n  min 10\n  ticks 4\n  graticule polygon\n  "
        "showLegend false\n");
    const auto* radar = ChartOf<TQVLRadarChart>(*model);
    ASSERT_NE(radar, nullptr);
    ASSERT_EQ(radar->Axes.size(), 3u);
    EXPECT_EQ(radar->Axes[0].Label, "Math");
    EXPECT_EQ(radar->Axes[2].Label, "e");
    ASSERT_EQ(radar->Curves.size(), 2u);
    EXPECT_EQ(radar->Curves[0].Label, "Alice");
    EXPECT_EQ(radar->Curves[1].Values, (std::vector<double>{1, 2, 3}))
        << "named values follow the axes' order";
    EXPECT_EQ(radar->Max.value_or(0), 100);
    EXPECT_EQ(radar->Min, 10);
    EXPECT_EQ(radar->Ticks, 4);
    EXPECT_TRUE(radar->PolygonGraticule);
    EXPECT_FALSE(radar->ShowLegend);
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(ChartRadar, WithoutMaxTheScaleEndsAtTheLargestValue) {
    const auto model = Read("radar-beta\n  axis a, b, c\n  curve x{1, 7, 3}\n  curve y{2, 2, 2}\n");
    const auto* radar = ChartOf<TQVLRadarChart>(*model);
    ASSERT_NE(radar, nullptr);
    EXPECT_FALSE(radar->Max.has_value());
    EXPECT_EQ(radar->Top(), 7);
}

TEST(ChartRadar, MissingNamedValuesMixedFormsAndBadOptionsAreNamed) {
    const auto model = Read(
        "radar-beta\n  axis a, b\n  curve x{a: 1}\n  curve y{1, b: 2}\n  curve z{1, 2, 3}\n  ticks many\n"
        "  graticule star\n  spin 3\n");
    const auto* radar = ChartOf<TQVLRadarChart>(*model);
    ASSERT_NE(radar, nullptr);
    ASSERT_EQ(radar->Curves.size(), 1u) << "only z, with a warning about its count";
    std::size_t curves = 0;
    std::size_t options = 0;
    for (const auto& d : model->Diagnostics()) {
        curves += d.Code == "RADAR_CURVE";
        options += d.Code == "RADAR_OPTION";
    }
    EXPECT_EQ(curves, 3u);
    EXPECT_EQ(options, 2u);
    const auto* missing = Diagnostic(*model, "RADAR_CURVE");
    ASSERT_NE(missing, nullptr);
    EXPECT_NE(missing->MessageText.find("\"b\""), std::string::npos);
    EXPECT_NE(Diagnostic(*model, "RADAR_UNRECOGNIZED_LINE"), nullptr);
}

}  // namespace
}  // namespace Orvex
