// Network diagrams read from their token stream: networks with members and addresses, hosts defined
// anywhere, groups, peer links, statements sharing lines, and diagnostics for what is not drawn.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orvex/diagrams/chart_network.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

const TQVLNetworkChart& Network(const TORXDiagramModel& model) {
    EXPECT_EQ(model.Kind(), TQVLDiagramKind::dkChart);
    return dynamic_cast<const TQVLNetworkChart&>(*model.Chart());
}

std::vector<std::string> Codes(const TORXDiagramModel& model) {
    std::vector<std::string> out;
    for (const auto& d : model.Diagnostics()) out.push_back(d.Code + "@" + std::to_string(d.Line));
    return out;
}

TEST(NetworkChart, NetworksHostsGroupsAndPeers) {
    const auto model = QVLImportDiagram(
        "@startuml\n"
        "title Office\n"
        "nwdiag {\n"
        "  inet [shape = cloud]; inet -- fw -- router\n"
        "  network dmz { address = \"10.0.0.0/24\"; fw [address = \"10.0.0.1\"]; web\n"
        "    web [address = \"10.0.0.2\"]  // named twice: one member, with the address\n"
        "  }\n"
        "  network lan {\n"
        "    width = full\n"
        "    color = \"#ddeeff\"\n"
        "    description = \"Office LAN\"\n"
        "    web [address = \"192.168.0.2\",\n"
        "         description = \"<&globe> Web server\"];\n"
        "    group { db; color = \"#ffeedd\" }\n"
        "  }\n"
        "  db [shape = database]\n"
        "}\n"
        "@enduml\n",
        TQVLDiagramFormat::dgPlantUML);
    const auto& chart = Network(*model);
    EXPECT_TRUE(model->Diagnostics().empty()) << Codes(*model)[0];
    EXPECT_EQ(model->Title(), "Office");
    TJSON out;
    chart.WriteJson(out);
    EXPECT_EQ(
        out["networks"].dump(),
        R"([{"id":"dmz","text":"dmz","address":"10.0.0.0/24","full":false,"hosts":[{"id":"fw","address":"10.0.0.1"},)"
        R"({"id":"web","address":"10.0.0.2"}]},{"id":"lan","text":"Office LAN","address":"","full":true,)"
        R"("hosts":[{"id":"web","address":"192.168.0.2"},{"id":"db","address":""}]}])");
    EXPECT_EQ(out["hosts"].dump(),
              R"([{"id":"inet","text":"inet","shape":"cloud"},{"id":"fw","text":"fw","shape":""},)"
              R"({"id":"router","text":"router","shape":""},{"id":"web","text":"Web server","shape":""},)"
              R"({"id":"db","text":"db","shape":"database"}])");
    EXPECT_EQ(out["groups"].dump(), R"([{"text":"","hosts":["db"]}])");
    EXPECT_EQ(out["peers"].dump(), R"([{"from":"inet","to":"fw"},{"from":"fw","to":"router"}])");
    EXPECT_TRUE(chart.Networks[1].Color.has_value());
    EXPECT_TRUE(chart.Groups[0].Color.has_value());
}

TEST(NetworkChart, StartMarkerOfItsOwn) {
    const auto model = QVLImportDiagram("@startnwdiag\nnwdiag {\n  network n { a; }\n}\n@endnwdiag\n",
                                        TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(Network(*model).Networks.size(), 1u);
}

TEST(NetworkChart, WhatIsNotDrawnIsNamed) {
    const auto model = QVLImportDiagram(
        "@startuml\n"
        "skinparam shadowing false\n"  // 2
        "nwdiag {\n"
        "  network n {\n"
        "    width = half\n"                    // 5: not drawn
        "    a [address = \"1\", rack = 3];\n"  // 6
        "    b [color = \"nocolour\"];\n"       // 7
        "  }\n"
        "  c [address = \"2\"];\n"  // 9: an address outside a network
        "  ] \n"                    // 10
        "}\n"
        "stray\n"  // 12
        "@enduml\n",
        TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(Codes(*model),
              (std::vector<std::string>{"UNSUPPORTED_STATEMENT@2", "UNSUPPORTED_STATEMENT@5",
                                        "UNSUPPORTED_STATEMENT@6", "NWDIAG_COLOR@7", "NWDIAG_ATTRIBUTE@9",
                                        "NWDIAG_UNRECOGNIZED_LINE@10", "NWDIAG_UNRECOGNIZED_LINE@12"}));
    const auto unclosed = QVLImportDiagram("@startuml\nnwdiag {\n  network n {\n    a;\n@enduml\n",
                                           TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(Codes(*unclosed), (std::vector<std::string>{"NWDIAG_UNCLOSED@2"}));
    EXPECT_EQ(Network(*unclosed).Hosts.size(), 1u);  // the end marker is no host
}

}  // namespace
}  // namespace Orvex
