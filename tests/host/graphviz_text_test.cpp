// dot sizes link captions with the process's own text metrics, the ones they are painted with.
#include <gtest/gtest.h>

#include <graphviz/cgraph.h>
#include <graphviz/gvc.h>
#include <graphviz/types.h>

#include <string>

#include "host/layout/graphviz_text.h"
#include "host/paint/item_painters.h"

namespace {

char* Mutable(const char* s) {
    return const_cast<char*>(s);
}

// The width dot gave the caption of the only edge of a two-node graph.
double DotCaptionWidth(GVC_t* aContext, const std::string& aCaption, const char* aPoints) {
    Agraph_t* g = agopen(Mutable("t"), Agdirected, nullptr);
    agattr(g, AGEDGE, Mutable("fontsize"), Mutable(aPoints));
    Agnode_t* a = agnode(g, Mutable("a"), 1);
    Agnode_t* b = agnode(g, Mutable("b"), 1);
    Agedge_t* e = agedge(g, a, b, nullptr, 1);
    agsafeset(e, Mutable("label"), Mutable(aCaption.c_str()), Mutable(""));
    double width = -1;
    if (gvLayout(aContext, g, "dot") == 0) {
        width = ED_label(e)->dimen.x;
        gvFreeLayout(aContext, g);
    }
    agclose(g);
    return width;
}

// With the painter's Pango metrics, as in the command; released at the end so later tests see the
// process as they found it.
class GraphvizText : public ::testing::Test {
  protected:
    void SetUp() override { Orvex::Paint::RetainTextMetrics(); }
    void TearDown() override { Orvex::Paint::ReleaseTextMetrics(); }
};

TEST_F(GraphvizText, ExtentGrowsWithTextAndSize) {
    const Orvex::TLayoutSize narrow = Orvex::GraphvizTextExtent("iiii", 9);
    const Orvex::TLayoutSize wide = Orvex::GraphvizTextExtent("WWWW", 9);
    const Orvex::TLayoutSize twice = Orvex::GraphvizTextExtent("WWWWWWWW", 9);
    const Orvex::TLayoutSize larger = Orvex::GraphvizTextExtent("WWWW", 18);
    EXPECT_GT(narrow.Width, 0);
    EXPECT_LT(narrow.Width, wide.Width);
    EXPECT_NEAR(twice.Width, 2 * wide.Width, 1.0);
    EXPECT_NEAR(larger.Width, 2 * wide.Width, 1.0);
    EXPECT_NEAR(larger.Height, 2 * wide.Height, 1.0);
    // A line is taller than the font size, as in any text layout.
    EXPECT_GT(wide.Height, 9);
    EXPECT_LT(wide.Height, 9 * 1.5);
}

TEST_F(GraphvizText, DotTakesCaptionWidthsFromTheProcessMetrics) {
    // Freeing a context leaves one block of libgvc's behind (Debian 12's Graphviz), so this context lives
    // for the process, as the layout's own does.
    static GVC_t* const context = Orvex::NewGraphvizContextWithOwnText();
    ASSERT_NE(context, nullptr);
    // Narrow and wide letters: a Times estimate or another face would miss one of them by far more than
    // the padding Graphviz adds around a label.
    for (const std::string& caption : {std::string(60, 'i'), std::string(60, 'W'), std::string("edge 12")}) {
        const double ours = Orvex::GraphvizTextExtent(caption, 9).Width;
        const double dots = DotCaptionWidth(context, caption, "9");
        EXPECT_GE(dots, ours) << caption;
        EXPECT_LE(dots, ours + 8) << caption;
    }
}

}  // namespace
