// The packet reader: absolute, single-bit and relative fields, and the gaps, overlaps and reversed
// ranges it reports.
#include <gtest/gtest.h>

#include "orvex/diagrams/chart_packet.h"
#include "tests/diagrams/chart_test_util.h"

namespace Orvex {
namespace {

using ChartTest::ChartOf;
using ChartTest::Diagnostic;
using ChartTest::Read;

TEST(ChartPacket, AbsoluteSingleBitAndRelativeFieldsFollowEachOther) {
    const auto model = Read(
        "packet-beta\n  title UDP\n  0-15: \"Source\"\n  16: \"Flag\"\n  +15: \"Rest\"\n  +8: \"Next\"\n");
    EXPECT_EQ(model->Title(), "UDP");
    const auto* packet = ChartOf<TQVLPacketChart>(*model);
    ASSERT_NE(packet, nullptr);
    ASSERT_EQ(packet->Fields.size(), 4u);
    EXPECT_EQ(packet->Fields[1].Start, 16);
    EXPECT_EQ(packet->Fields[1].End, 16);
    EXPECT_EQ(packet->Fields[2].Start, 17);
    EXPECT_EQ(packet->Fields[2].End, 31);
    EXPECT_EQ(packet->Fields[3].Start, 32);
    EXPECT_EQ(packet->Fields[3].End, 39);
    EXPECT_EQ(packet->Fields[3].Text, "Next");
    EXPECT_TRUE(model->Diagnostics().empty());
}

TEST(ChartPacket, GapsOverlapsAndReversedRangesAreErrors) {
    const auto model = Read(
        "packet\n  0-7: \"A\"\n  10-15: \"Gap before\"\n  12-20: \"Overlap\"\n  30-25: \"Reversed\"\n"
        "  +0: \"Empty\"\n  bits: \"B\"\n");
    const auto* packet = ChartOf<TQVLPacketChart>(*model);
    ASSERT_NE(packet, nullptr);
    ASSERT_EQ(packet->Fields.size(), 2u) << "the gap is reported but the field kept; the others are refused";
    EXPECT_EQ(packet->Fields[1].Start, 10);
    const auto* gap = Diagnostic(*model, "PACKET_GAP");
    ASSERT_NE(gap, nullptr);
    EXPECT_EQ(gap->Line, 3);
    EXPECT_NE(gap->MessageText.find("bit 8"), std::string::npos);
    const auto* overlap = Diagnostic(*model, "PACKET_OVERLAP");
    ASSERT_NE(overlap, nullptr);
    EXPECT_NE(overlap->MessageText.find("bit 16"), std::string::npos);
    std::size_t ranges = 0;
    for (const auto& d : model->Diagnostics()) ranges += d.Code == "PACKET_RANGE" ? 1 : 0;
    EXPECT_EQ(ranges, 2u);
    EXPECT_NE(Diagnostic(*model, "PACKET_UNRECOGNIZED_LINE"), nullptr);
}

TEST(ChartPacket, AHugeFieldIsRefused) {
    const auto model = Read("packet-beta\n  0-99999999: \"Everything\"\n");
    const auto* packet = ChartOf<TQVLPacketChart>(*model);
    ASSERT_NE(packet, nullptr);
    EXPECT_TRUE(packet->Fields.empty());
    EXPECT_NE(Diagnostic(*model, "PACKET_RANGE"), nullptr);
}

}  // namespace
}  // namespace Orvex
