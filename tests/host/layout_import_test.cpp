// What the full importer's model looks like once drawn: frames around their members, styles on the
// elements, readable circles, the title above, and links that keep their form.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "host/layout/diagram_loader.h"
#include "orvex/document/headless.h"
#include "orvex/items/flow_items.h"
#include "orvex/items/line_items.h"
#include "orvex/items/link_items.h"
#include "orvex/items/text_items.h"

namespace Orvex {
namespace {

template <class T>
std::vector<T*> ItemsOf(const TORXBaseLabel& doc) {
    std::vector<T*> items;
    for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i)
        if (auto* item = dynamic_cast<T*>(doc.GetItem(i))) items.push_back(item);
    return items;
}

TORXBaseFlow* FlowWithText(const TORXBaseLabel& doc, std::string_view text) {
    for (auto* flow : ItemsOf<TORXBaseFlow>(doc))
        if (flow->Text() == text) return flow;
    return nullptr;
}

TORXBaseText* TextItem(const TORXBaseLabel& doc, std::string_view text) {
    for (auto* item : ItemsOf<TORXBaseText>(doc))
        if (item->Text() == text) return item;
    return nullptr;
}

bool Encloses(const TQVLRect& outer, const TQVLRect& inner) {
    return outer.Left <= inner.Left && outer.Top <= inner.Top && outer.Right >= inner.Right &&
           outer.Bottom >= inner.Bottom;
}

// The frame of a container: the document container captioned with the title.
TORXBaseFlow* FrameTitled(const TORXBaseLabel& doc, std::string_view title) {
    for (auto* flow : ItemsOf<TORXBaseFlow>(doc))
        if (flow->IsContainerFrame() && flow->Text() == title) return flow;
    return nullptr;
}

std::int32_t IndexOf(const TORXBaseLabel& doc, const TORXBaseItem* item) {
    for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i)
        if (doc.GetItem(i) == item) return i;
    return -1;
}

TEST(LayoutImport, FramesEncloseTheirMembersBehindThemAndTakeLinks) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDiagramWithLayout(doc,
                                      "flowchart TB\n"
                                      "  classDef hot fill:#ff9966,stroke:#333333,stroke-width:4px\n"
                                      "  subgraph outer [Outer]\n"
                                      "    subgraph inner [Inner]\n"
                                      "      A:::hot --> B\n"
                                      "    end\n"
                                      "    C\n"
                                      "  end\n"
                                      "  D --> inner\n",
                                      TQVLDiagramFormat::dgMermaid));
    TORXBaseFlow* outer = FrameTitled(doc, "Outer");
    TORXBaseFlow* inner = FrameTitled(doc, "Inner");
    ASSERT_NE(outer, nullptr);
    ASSERT_NE(inner, nullptr);
    TORXBaseFlow* a = FlowWithText(doc, "A");
    TORXBaseFlow* c = FlowWithText(doc, "C");
    TORXBaseFlow* d = FlowWithText(doc, "D");
    ASSERT_NE(a, nullptr);
    EXPECT_TRUE(Encloses(inner->Box(), a->Box()));
    EXPECT_TRUE(Encloses(inner->Box(), FlowWithText(doc, "B")->Box()));
    EXPECT_TRUE(Encloses(outer->Box(), inner->Box()));
    EXPECT_TRUE(Encloses(outer->Box(), c->Box()));
    EXPECT_FALSE(Encloses(outer->Box(), d->Box()));
    EXPECT_FALSE(Encloses(inner->Box(), c->Box()));
    EXPECT_LT(IndexOf(doc, outer), IndexOf(doc, inner));
    EXPECT_LT(IndexOf(doc, inner), IndexOf(doc, a));
    // The frames are containers of the document: moving the outer one takes everything inside along.
    EXPECT_EQ(doc.ContainerOf(a->InID()), inner->InID());
    EXPECT_EQ(doc.ContainerOf(inner->InID()), outer->InID());
    EXPECT_EQ(doc.ContainerOf(c->InID()), outer->InID());
    EXPECT_EQ(doc.ContainerOf(d->InID()), 0);
    const auto aBefore = a->Box();
    const auto dBefore = d->Box();
    doc.MoveItems({outer->InID()}, 5000, 0);
    EXPECT_EQ(a->Box().Left, aBefore.Left + 5000);
    EXPECT_EQ(d->Box().Left, dBefore.Left);
    // The classDef's look.
    EXPECT_TRUE(a->Filled());
    EXPECT_EQ(a->BackColor(), 0xFFFF9966u);
    EXPECT_EQ(a->Color(), 0xFF333333u);
    EXPECT_GT(a->GetPenWidthMM(), c->GetPenWidthMM());
    // "D --> inner" ends at the inner frame.
    bool toFrame = false;
    for (auto* link : ItemsOf<TORXBaseLink>(doc))
        toFrame |= link->FromID() == d->InID() && link->ToID() == inner->InID();
    EXPECT_TRUE(toFrame);
}

TEST(LayoutImport, AContainersOwnDirectionHoldsWhenNoLinkLeavesIt) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDiagramWithLayout(doc,
                                      "flowchart TB\n"
                                      "  subgraph S [Row]\n    direction LR\n    a --> b --> c\n  end\n"
                                      "  subgraph T [Column]\n    direction LR\n    x --> y\n  end\n"
                                      "  y --> z\n",
                                      TQVLDiagramFormat::dgMermaid));
    const TQVLRect a = FlowWithText(doc, "a")->Box();
    const TQVLRect c = FlowWithText(doc, "c")->Box();
    EXPECT_EQ(a.Top, c.Top);
    EXPECT_LT(a.Right, c.Left);
    // A link leaves "Column": its nodes keep the diagram's direction.
    EXPECT_LT(FlowWithText(doc, "x")->Box().Bottom, FlowWithText(doc, "y")->Box().Top);
}

TEST(LayoutImport, DirectionHintsPlaceTheTargetWhereTheTextSays) {
    for (const char* direction : {"", "left to right direction\n"}) {
        SCOPED_TRACE(direction);
        TORXHeadlessLabel doc;
        ASSERT_TRUE(LoadDiagramWithLayout(doc,
                                          std::string("@startuml\n") + direction +
                                              "[Hub] -up-> [Top]\n[Hub] -down-> [Bottom]\n"
                                              "[Hub] -left-> [West]\n[Hub] -right-> [East]\n@enduml\n",
                                          TQVLDiagramFormat::dgPlantUML));
        const TQVLRect hub = FlowWithText(doc, "Hub")->Box();
        EXPECT_LT(FlowWithText(doc, "Top")->Box().Bottom, hub.Top);
        EXPECT_GT(FlowWithText(doc, "Bottom")->Box().Top, hub.Bottom);
        EXPECT_LT(FlowWithText(doc, "West")->Box().Right, hub.Left);
        EXPECT_GT(FlowWithText(doc, "East")->Box().Left, hub.Right);
    }
}

TEST(LayoutImport, CirclesStayReadableMarkersStaySmallTitleOnTop) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDiagramWithLayout(doc,
                                      "---\ntitle: Lifecycle\n---\n"
                                      "flowchart LR\n"
                                      "  S((Start)) ==> E(((Done)))\n"
                                      "  E ~~~ M@{ shape: sm-circ }\n",
                                      TQVLDiagramFormat::dgMermaid));
    TORXBaseFlow* start = FlowWithText(doc, "Start");
    TORXBaseFlow* done = FlowWithText(doc, "Done");
    ASSERT_NE(start, nullptr);
    ASSERT_NE(done, nullptr);
    EXPECT_EQ(start->FlowType(), TQVLFlowType::ftEllipse);
    EXPECT_EQ(start->Box().GetWidth(), start->Box().GetHeight());
    // The double circle's second ring lies inside the first.
    std::vector<TORXBaseFlow*> rings;
    for (auto* flow : ItemsOf<TORXBaseFlow>(doc))
        if (flow->FlowType() == TQVLFlowType::ftEllipse && flow->Text().empty()) rings.push_back(flow);
    ASSERT_EQ(rings.size(), 1u);
    EXPECT_TRUE(Encloses(done->Box(), rings[0]->Box()));
    // The marker is a small disc.
    TORXBaseFlow* marker = nullptr;
    for (auto* flow : ItemsOf<TORXBaseFlow>(doc))
        if (flow->FlowType() == TQVLFlowType::ftStart) marker = flow;
    ASSERT_NE(marker, nullptr);
    EXPECT_LT(marker->Box().GetWidth(), start->Box().GetWidth());
    // The thick link is drawn thick; the invisible one is not drawn.
    const auto links = ItemsOf<TORXBaseLink>(doc);
    ASSERT_EQ(links.size(), 1u);
    EXPECT_GE(links[0]->GetPenWidthMM(), 0.4f);
    const TORXBaseText* title = TextItem(doc, "Lifecycle");
    ASSERT_NE(title, nullptr);
    EXPECT_TRUE(title->Font().Bold);
    for (auto* flow : ItemsOf<TORXBaseFlow>(doc)) EXPECT_GT(flow->Box().Top, title->GetPoint(1).Y + 4000);
}

TEST(LayoutImport, ActorsNotesAndAliasesOfStructureDiagrams) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDiagramWithLayout(doc,
                                      "@startuml\n"
                                      "actor Client\n"
                                      "component \"Web shop\" as W\n"
                                      "W -right-> (Pay)\n"
                                      "Client \"1\" --> \"many\" W\n"
                                      "note right of W : the front\n"
                                      "@enduml\n",
                                      TQVLDiagramFormat::dgPlantUML));
    int shops = 0;
    for (auto* flow : ItemsOf<TORXBaseFlow>(doc)) shops += flow->Text() == "Web shop";
    EXPECT_EQ(shops, 1);
    TORXBaseFlow* client = FlowWithText(doc, "Client");
    ASSERT_NE(client, nullptr);
    EXPECT_EQ(client->VertAlign(), TQVLVertAlign::vaBottom);
    EXPECT_GE(ItemsOf<TORXBaseLine>(doc).size(), 4u);  // the stick figure
    // "-right->": the use case stands beside the shop, not below it.
    TORXBaseFlow* web = FlowWithText(doc, "Web shop");
    TORXBaseFlow* pay = FlowWithText(doc, "Pay");
    ASSERT_NE(pay, nullptr);
    EXPECT_GT(pay->Box().Left, web->Box().Right);
    EXPECT_LT(pay->Box().Top, web->Box().Bottom);
    // Multiplicities stand at the ends of their link, near the element they belong to.
    const TORXBaseText* one = TextItem(doc, "1");
    const TORXBaseText* many = TextItem(doc, "many");
    ASSERT_NE(one, nullptr);
    ASSERT_NE(many, nullptr);
    auto distance = [](const TORXBaseText* t, const TORXBaseFlow* f) {
        const TQVLRect b = f->Box();
        return std::hypot(static_cast<double>(t->GetPoint(1).X - (b.Left + b.Right) / 2),
                          static_cast<double>(t->GetPoint(1).Y - (b.Top + b.Bottom) / 2));
    };
    EXPECT_LT(distance(one, client), distance(one, web));
    EXPECT_LT(distance(many, web), distance(many, client));
    TORXBaseFlow* note = FlowWithText(doc, "the front");
    ASSERT_NE(note, nullptr);
    bool joined = false;
    for (auto* link : ItemsOf<TORXBaseLink>(doc))
        joined |= link->FromID() == web->InID() && link->ToID() == note->InID() &&
                  link->LineType() == TQVLineType::ii22;
    EXPECT_TRUE(joined);
}

// Graphviz frees twice what it laid out for this one (clusters, a choice looping back into a composite):
// the load must neither crash nor lose the containers.
TEST(LayoutImport, ClustersThatUpsetGraphvizStillLoad) {
    TORXHeadlessLabel doc;
    ASSERT_TRUE(LoadDiagramWithLayout(doc,
                                      "stateDiagram-v2\n"
                                      "    [*] --> Idle\n"
                                      "    Idle --> Printing : job arrives\n"
                                      "    state Printing {\n"
                                      "        [*] --> Warming\n"
                                      "        Warming --> Feeding\n"
                                      "        Feeding --> [*]\n"
                                      "        --\n"
                                      "        [*] --> Spooling\n"
                                      "        Spooling --> [*]\n"
                                      "    }\n"
                                      "    Printing --> check\n"
                                      "    state check <<choice>>\n"
                                      "    check --> Idle : queue empty\n"
                                      "    check --> Printing : more jobs\n",
                                      TQVLDiagramFormat::dgMermaid));
    int containers = 0;
    int dashed = 0;
    for (auto* flow : ItemsOf<TORXBaseFlow>(doc)) {
        if (!flow->IsContainerFrame()) continue;
        ++containers;
        dashed += flow->LineType() == TQVLineType::ii22 ? 1 : 0;
    }
    EXPECT_GE(containers, 3);  // the composite and its two regions
    EXPECT_EQ(dashed, 2);      // the regions' frames: the separator between them
    EXPECT_EQ(FrameTitled(doc, "Printing")->LineType(), TQVLineType::iiSolid);
}

}  // namespace
}  // namespace Orvex
