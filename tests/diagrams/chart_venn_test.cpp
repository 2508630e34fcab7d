// The venn reader: sets and unions with labels and sizes (or the default shares), texts under them,
// styles, and unions of sets never defined.
#include <gtest/gtest.h>

#include "orvex/diagrams/chart_venn.h"
#include "tests/diagrams/chart_test_util.h"

namespace Orvex {
namespace {

using ChartTest::ChartOf;
using ChartTest::Diagnostic;
using ChartTest::Read;

TEST(ChartVenn, SetsUnionsTextsAndStyles) {
    const auto model = Read(
        "venn-beta\n  title Languages\n  set en[\"English\"]:20\n  set fr\n  set de\n  union fr, "
        "en[\"Both\"]\n"
        "    text t1[\"Canada\"]\n  union en, fr, de:0.5\n  text de fr x\n  style en fill:#ff0000\n");
    const auto* venn = ChartOf<TQVLVennChart>(*model);
    ASSERT_NE(venn, nullptr);
    ASSERT_EQ(venn->Areas.size(), 5u);
    EXPECT_EQ(venn->Areas[0].Label, "English");
    EXPECT_EQ(venn->Areas[0].Size, 20);
    EXPECT_EQ(venn->Areas[1].Label, "fr") << "a set without a label is named by its id";
    EXPECT_EQ(venn->Areas[1].Size, 10) << "a set counts 10 by default";
    const auto* both = venn->Find({"en", "fr"});
    ASSERT_NE(both, nullptr) << "union members are sorted, whatever the order written";
    EXPECT_DOUBLE_EQ(both->Size, 2.5) << "an overlap of two counts 10 / 2^2 by default";
    ASSERT_EQ(both->Texts.size(), 1u);
    EXPECT_EQ(both->Texts[0].Label, "Canada");
    EXPECT_EQ(venn->Areas[4].Size, 0.5);
    const auto* deFr = venn->Find({"de", "fr"});
    EXPECT_EQ(deFr, nullptr);
    EXPECT_NE(Diagnostic(*model, "VENN_TEXT"), nullptr) << "de and fr have no union to hold a text";
    EXPECT_EQ(venn->Areas[0].Style.Fill.value_or(0), 0xFFFF0000u);
}

TEST(ChartVenn, UnionsOfUnknownSetsAndSingleSetUnionsAreErrors) {
    const auto model = Read("venn-beta\n  set a\n  union a, b\n  union a\n  set c: big\n  circle a\n");
    const auto* venn = ChartOf<TQVLVennChart>(*model);
    ASSERT_NE(venn, nullptr);
    EXPECT_EQ(venn->Areas.size(), 1u);
    std::size_t sets = 0;
    for (const auto& d : model->Diagnostics()) sets += d.Code == "VENN_SETS";
    EXPECT_EQ(sets, 2u);
    const auto* unknown = Diagnostic(*model, "VENN_SETS");
    EXPECT_NE(unknown->MessageText.find("b"), std::string::npos);
    EXPECT_NE(Diagnostic(*model, "VENN_SIZE"), nullptr);
    EXPECT_NE(Diagnostic(*model, "VENN_UNRECOGNIZED_LINE"), nullptr);
}

}  // namespace
}  // namespace Orvex
