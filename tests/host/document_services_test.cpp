// Documents with their own services beside documents on the process-wide defaults, in one process: each
// imports diagrams with its own loader and lays its texts out with its own metrics.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/layout/diagram_loader.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/document/headless.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/text_items.h"
#include "orvex/items/text_metrics.h"

namespace Orvex {
namespace {

// The host's layout, as the one overload a loader slot takes.
const TQVLDiagramLoader kLayout = &LoadDiagramWithLayout;
constexpr std::string_view kFlowchart =
    "flowchart LR\n  A[Receive the order] --> B[Pack the parcel]\n  B --> C[Ship it to the customer]\n";

template <class T>
std::vector<const T*> Items(const TORXBaseLabel& aDoc) {
    std::vector<const T*> found;
    for (std::int32_t i = 0; i < aDoc.GetItemsCount(); ++i)
        if (const auto* item = dynamic_cast<const T*>(aDoc.GetItem(i))) found.push_back(item);
    return found;
}

// Every character as wide as the font is high: far wider than either the approximation or Pango.
class TWideMetrics final : public ITextMetrics {
  public:
    std::int64_t TextWidth(std::string_view text, const TQVLFont& font) const override {
        return static_cast<std::int64_t>(CodePointCount(text)) * SetBaseValue(font.FontHeight);
    }
    std::int64_t LineHeight(const TQVLFont& font) const override { return 2 * SetBaseValue(font.FontHeight); }
    std::int64_t Ascent(const TQVLFont& font) const override { return SetBaseValue(font.FontHeight); }
};

// The process-wide loader and metrics as the test found them, put back however it ends.
class DocumentServices : public ::testing::Test {
  protected:
    DocumentServices() : fLoader(QVLGetDiagramLoader()), fMetrics(QVLGetTextMetrics()) {
        QVLSetDiagramLoader(nullptr);
        QVLSetTextMetrics(nullptr);
    }
    ~DocumentServices() override {
        QVLSetDiagramLoader(fLoader);
        QVLSetTextMetrics(fMetrics);
    }

  private:
    TQVLDiagramLoader fLoader;
    const ITextMetrics* fMetrics;
};

// A loader with state of its own: every node in one column, no links, and a count of its loads.
TQVLDiagramLoaderFunc ColumnLoader(std::shared_ptr<int> aLoads) {
    return [aLoads](TORXBaseLabel& aDoc, std::string_view aText, TQVLDiagramFormat aFormat) {
        const auto model = QVLParseDiagram(aText, aFormat);
        if (model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsError)) return false;
        std::int64_t top = 0;
        for (const TQVLDiagNode& node : model->Nodes()) {
            auto* flow = dynamic_cast<TORXBaseFlow*>(aDoc.CreateItem(TQVLItemType::itFlow));
            flow->SetBase(1, 0, top);
            flow->SetBase(2, 30 * kBasePerMM, top + 10 * kBasePerMM);
            flow->SetText(node.Text);
            top += 20 * kBasePerMM;
        }
        ++*aLoads;
        return true;
    };
}

TEST_F(DocumentServices, TwoDocumentsLoadTheSameTextWithTheirOwnLoaders) {
    TORXHeadlessLabel laidOut;
    laidOut.SetServices({kLayout, nullptr});
    TORXHeadlessLabel columns;
    const auto loads = std::make_shared<int>(0);
    columns.SetServices({ColumnLoader(loads), nullptr});
    TORXHeadlessLabel plain;  // nothing of its own, and no process-wide loader

    ASSERT_TRUE(laidOut.LoadFromDiagramText(kFlowchart, TQVLDiagramFormat::dgAuto));
    ASSERT_TRUE(columns.LoadFromDiagramText(kFlowchart, TQVLDiagramFormat::dgAuto));
    EXPECT_FALSE(plain.LoadFromDiagramText(kFlowchart, TQVLDiagramFormat::dgAuto));

    // The host's layout runs left to right and links the elements; the column loader stacks them unlinked.
    const auto laidFlows = Items<TORXBaseFlow>(laidOut);
    ASSERT_EQ(laidFlows.size(), 3u);
    EXPECT_EQ(Items<TORXBaseLink>(laidOut).size(), 2u);
    EXPECT_LT(laidFlows[0]->BoundsRect().Right, laidFlows[1]->BoundsRect().Left);
    const auto stacked = Items<TORXBaseFlow>(columns);
    ASSERT_EQ(stacked.size(), 3u);
    EXPECT_TRUE(Items<TORXBaseLink>(columns).empty());
    EXPECT_EQ(stacked[0]->BoundsRect().Left, stacked[2]->BoundsRect().Left);
    EXPECT_EQ(stacked[2]->Text(), "Ship it to the customer");
    EXPECT_EQ(*loads, 1);
    EXPECT_EQ(plain.GetItemsCount(), 0);

    // A process-wide loader serves only the documents without their own, files included.
    QVLSetDiagramLoader([](TORXBaseLabel&, std::string_view, TQVLDiagramFormat) { return true; });
    EXPECT_TRUE(plain.LoadFromDiagramText(kFlowchart, TQVLDiagramFormat::dgAuto));
    EXPECT_EQ(plain.GetItemsCount(), 0);
    EXPECT_TRUE(columns.LoadFromDiagram(std::string(ORVEX_SOURCE_DIR) + "/examples/mermaid/mindmap.mmd",
                                        TQVLDiagramFormat::dgAuto));
    EXPECT_EQ(*loads, 2);
    EXPECT_GT(columns.GetItemsCount(), 3);

    // Emptied services hand the document back to the process-wide loader.
    columns.SetServices({});
    const std::int32_t before = columns.GetItemsCount();
    EXPECT_TRUE(columns.LoadFromDiagramText(kFlowchart, TQVLDiagramFormat::dgAuto));
    EXPECT_EQ(columns.GetItemsCount(), before);
    EXPECT_EQ(*loads, 2);
}

TEST_F(DocumentServices, ALoaderMayReplaceTheServicesOfItsDocumentWhileItRuns) {
    TORXHeadlessLabel doc;
    const auto loads = std::make_shared<int>(0);
    doc.SetServices({[loads](TORXBaseLabel& aDoc, std::string_view aText, TQVLDiagramFormat aFormat) {
                         aDoc.SetServices({});  // destroys the stored loader, not the one running
                         return ColumnLoader(loads)(aDoc, aText, aFormat);
                     },
                     nullptr});
    EXPECT_TRUE(doc.LoadFromDiagramText(kFlowchart, TQVLDiagramFormat::dgMermaid));
    EXPECT_EQ(*loads, 1);
    EXPECT_FALSE(doc.LoadFromDiagramText(kFlowchart, TQVLDiagramFormat::dgMermaid));
}

TEST_F(DocumentServices, TextsAreMeasuredWithTheirDocumentsMetrics) {
    const TWideMetrics wide;
    TORXHeadlessLabel measured;
    measured.SetServices({{}, &wide});
    TORXHeadlessLabel approximated;

    auto* a = dynamic_cast<TORXBaseText*>(measured.CreateItem(TQVLItemType::itText));
    auto* b = dynamic_cast<TORXBaseText*>(approximated.CreateItem(TQVLItemType::itText));
    a->SetText("Pallet");
    b->SetText("Pallet");
    const std::int64_t height = SetBaseValue(a->Font().FontHeight);
    EXPECT_EQ(a->BoundsRect().GetWidth(), 6 * height);
    EXPECT_EQ(b->BoundsRect().GetWidth(), 3 * height);  // half the height per character
    EXPECT_EQ(&QVLTextMetrics(&measured), &wide);
    EXPECT_EQ(&QVLTextMetrics(&approximated), &QVLTextMetrics());
    EXPECT_EQ(&QVLTextMetrics(nullptr), &QVLTextMetrics());
}

TEST_F(DocumentServices, TheLayoutSizesCaptionsWithTheLoadingDocumentsMetrics) {
    const TWideMetrics wide;
    TORXHeadlessLabel measured;
    measured.SetServices({kLayout, &wide});
    TORXHeadlessLabel approximated;
    approximated.SetServices({kLayout, nullptr});
    ASSERT_TRUE(measured.LoadFromDiagramText(kFlowchart, TQVLDiagramFormat::dgAuto));
    ASSERT_TRUE(approximated.LoadFromDiagramText(kFlowchart, TQVLDiagramFormat::dgAuto));
    const auto wideFlows = Items<TORXBaseFlow>(measured);
    const auto narrowFlows = Items<TORXBaseFlow>(approximated);
    ASSERT_EQ(wideFlows.size(), 3u);
    ASSERT_EQ(narrowFlows.size(), 3u);
    // Wider captions make larger elements (wider, or taller where the layout wraps them).
    const auto area = [](const TORXBaseFlow* aFlow) {
        const TQVLRect box = aFlow->BoundsRect();
        return static_cast<double>(box.GetWidth()) * static_cast<double>(box.GetHeight());
    };
    for (std::size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(wideFlows[i]->Text());
        EXPECT_GE(wideFlows[i]->BoundsRect().GetWidth(), narrowFlows[i]->BoundsRect().GetWidth());
        EXPECT_GT(area(wideFlows[i]), 1.5 * area(narrowFlows[i]));
    }
    // The load's metrics ended with it.
    EXPECT_EQ(QVLGetTextMetrics(), nullptr);
    TQVLFont font;
    EXPECT_EQ(QVLTextMetrics().TextWidth("ab", font), 2 * SetBaseValue(font.FontHeight) / 2);
}

TEST_F(DocumentServices, MetricsScopesNestAndADocumentsOwnMetricsComeFirst) {
    const TWideMetrics outer;
    const TApproxTextMetrics inner;
    const TWideMetrics own;
    TORXHeadlessLabel doc;
    {
        const TTextMetricsScope first(outer);
        EXPECT_EQ(&QVLTextMetrics(), &outer);
        EXPECT_EQ(&QVLTextMetrics(&doc), &outer);
        {
            const TTextMetricsScope second(inner);
            EXPECT_EQ(&QVLTextMetrics(), &inner);
            doc.SetServices({{}, &own});
            EXPECT_EQ(&QVLTextMetrics(&doc), &own);
        }
        EXPECT_EQ(&QVLTextMetrics(), &outer);
    }
    EXPECT_NE(&QVLTextMetrics(), &outer);
    EXPECT_EQ(QVLGetTextMetrics(), nullptr);
}

}  // namespace
}  // namespace Orvex
