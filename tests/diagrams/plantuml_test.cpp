#include "orvex/diagrams/plantuml_parser.h"

#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/diagram_parse.h"
#include "orvex/diagrams/plantuml_relation.h"

using namespace Orvex;
using TKind = TORXPlantUMLParser::TPumlKind;

namespace {

std::unique_ptr<TORXDiagramModel> Puml(std::string_view text) {
    return QVLParseDiagram(text, TQVLDiagramFormat::dgPlantUML);
}

TKind Detect(std::string_view text) {
    TORXDiagramModel model;
    return TORXPlantUMLParser::DetectKind(TORXPlantUMLParser::ContentLines(text, model));
}

}  // namespace

TEST(PlantUml, FramedSequenceMessage) {
    const auto m = Puml("@startuml\nAlice -> Bob: hi\n@enduml\n");
    EXPECT_EQ(m->Kind(), TQVLDiagramKind::dkSequence);
    ASSERT_EQ(m->Participants().size(), 2u);
    ASSERT_EQ(m->SeqEvents().size(), 1u);
    EXPECT_EQ(m->SeqEvents()[0].Arrow, TQVLSeqArrow::saOpen);
    EXPECT_TRUE(m->Diagnostics().empty());
}

TEST(PlantUml, ContentLinesDropFramingDecorationAndTakeTheTitle) {
    TORXDiagramModel model;
    const auto lines = TORXPlantUMLParser::ContentLines(
        "@startuml\n' comment\n!include x\nskinparam a b\nhide empty\nscale 2\nTitle  My title\n  A -> B : x "
        " \n"
        "headers stay\n@enduml",
        model);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "A -> B : x");
    EXPECT_EQ(lines[1], "headers stay");  // "header" needs a word boundary
    EXPECT_EQ(model.Title(), "My title");
    const auto empty = Puml("@startuml\nskinparam x y\ntitle Only a title\n' note\n@enduml");
    EXPECT_EQ(empty->Title(), "Only a title");
    ASSERT_EQ(empty->Diagnostics().size(), 1u);
    EXPECT_EQ(empty->Diagnostics()[0].Code, "DIAGRAM_EMPTY_RESULT");
}

TEST(PlantUml, MarkerDecidesBeforeContent) {
    TORXDiagramModel m1;
    TORXPlantUMLParser::Parse("@startmindmap\n* root\n** child\n@endmindmap", m1);
    EXPECT_EQ(m1.Kind(), TQVLDiagramKind::dkMindMap);
    EXPECT_EQ(TORXPlantUMLParser::KindFromMarker("x @STARTWBS y"), TKind::pkMindMap);
    EXPECT_EQ(TORXPlantUMLParser::KindFromMarker("@startyaml"), TKind::pkData);
    EXPECT_EQ(TORXPlantUMLParser::KindFromMarker("@startuml"), TKind::pkUnknown);
    EXPECT_EQ(TORXPlantUMLParser::KindFromMarker("@startganttx"), TKind::pkUnknown);
    // The marker wins even over content that says otherwise.
    TORXDiagramModel m2;
    TORXPlantUMLParser::Parse("@startgantt\nclass A\n[Task] requires 2 days\n@endgantt", m2);
    EXPECT_EQ(m2.NodeIndexOf("puml_gantt_task_1"), 0);
}

TEST(PlantUml, DetectKindRulesInOrder) {
    struct TCase {
        const char* Text;
        TKind Kind;
    };
    const TCase cases[] = {
        {"foo\n[Design] happens on 2024-01-01", TKind::pkChronology},
        {"{\n\"a\": 1\n}", TKind::pkData},
        {"\"key\" : 1", TKind::pkData},
        {"Person(a, \"A\")", TKind::pkC4},
        {"Rel(a, b, \"x\")", TKind::pkC4},
        {"concise \"User\" as U", TKind::pkTiming},
        {"nwdiag {", TKind::pkNetwork},
        {"Rel_Association(a, b, \"x\")", TKind::pkArchimate},
        {"Class Foo", TKind::pkStructure},
        {"** item", TKind::pkMindMap},
        {"stop", TKind::pkActivity},
        {":do it;", TKind::pkActivity},
        {"while (more?)", TKind::pkActivity},
        {"[*] --> A", TKind::pkState},
        {"participant A\nA -> B : x", TKind::pkSequence},
        // Sequence lines only remember; a later deciding line wins.
        {"participant A\nnode server", TKind::pkStructure},
        {"Alice -> Bob : hi\nA <|-- B", TKind::pkStructure},
        // Without ": text" an arrow is no message but a relation, and a relation decides.
        {"A -> B", TKind::pkStructure},
        {"Bob --> Alice", TKind::pkStructure},
        {"participant Bob\nBob -> Alice : hi\nBob --> Alice", TKind::pkStructure},
        {"nothing here", TKind::pkSequence},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Text);
        EXPECT_EQ(Detect(c.Text), c.Kind);
    }
    // No deciding line: sequence parsing without the fallback warning.
    const auto m = Puml("@startuml\nfoo bar\n@enduml");
    for (const auto& d : m->Diagnostics()) EXPECT_NE(d.Code, "PLANTUML_KIND_FALLBACK");
}

TEST(PlantUml, SequenceHeadsNotesAndAliases) {
    const auto m = Puml(
        "@startuml\nparticipant Alice as A\nactor \"Bob B\"\nAlice -->> \"Bob B\" : filled\nAlice ->x Bob : "
        "lost\n"
        "note left of Alice : one\nnote over Alice, Bob\nfirst\nsecond\nend note\n@enduml");
    ASSERT_EQ(m->Participants().size(), 3u);
    EXPECT_EQ(m->Participants()[0].Display, "A");
    EXPECT_EQ(m->Participants()[1].ID, "Bob B");
    ASSERT_EQ(m->SeqEvents().size(), 4u);
    EXPECT_TRUE(m->SeqEvents()[0].Dotted);
    EXPECT_EQ(m->SeqEvents()[0].Arrow, TQVLSeqArrow::saFilled);
    EXPECT_EQ(m->SeqEvents()[1].Arrow, TQVLSeqArrow::saCross);
    EXPECT_EQ(m->SeqEvents()[2].NotePosition, "left of");
    EXPECT_EQ(m->SeqEvents()[3].Text, "first\r\nsecond");
    EXPECT_EQ(m->SeqEvents()[3].ToActor, "Bob");
}

TEST(PlantUml, ActivityWiring) {
    // An if without else lets the decision flow on to what follows endif.
    const auto m = Puml("@startuml\nstart\nif (ok?) then (yes)\n:work;\nendif\n:next;\nstop\n@enduml");
    std::string edges;
    for (const auto& e : m->Edges()) edges += e.FromID.substr(9) + ">" + e.ToID.substr(9) + e.Text + " ";
    EXPECT_EQ(edges, "1>2 2>3yes 3>4 2>4 4>5 ");
}

TEST(PlantUml, StructureRelations) {
    struct TCase {
        const char* Line;
        const char* From;
        const char* To;
        TQVLDiagEdgeArrow Tail;
        TQVLDiagEdgeArrow Head;
        bool Dotted;
        const char* Label;
    };
    using A = TQVLDiagEdgeArrow;
    const TCase cases[] = {
        {"A <|-- B", "A", "B", A::eaArrow, A::eaNone, false, ""},
        {"A ..|> B : implements", "A", "B", A::eaNone, A::eaArrow, true, "implements"},
        {"A \"1\" *-- \"n\" B", "A", "B", A::eaFillRhombus, A::eaNone, false, ""},
        {"A --o B", "A", "B", A::eaNone, A::eaRhombus, false, ""},
        {"[Web] -up-> [Db]", "Web", "Db", A::eaNone, A::eaArrow, false, ""},
        {"(Use) .. (Other)", "Use", "Other", A::eaNone, A::eaNone, true, ""},
        {"A -[#red]-> B", "A", "B", A::eaNone, A::eaArrow, false, ""},
        {"A -- oracle", "A", "oracle", A::eaNone, A::eaNone, false, ""},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Line);
        TPumlRelation r;
        ASSERT_TRUE(ParsePumlRelation(c.Line, r));
        EXPECT_EQ(r.From, c.From);
        EXPECT_EQ(r.To, c.To);
        EXPECT_EQ(r.TailMark, c.Tail);
        EXPECT_EQ(r.HeadMark, c.Head);
        EXPECT_EQ(r.Dotted, c.Dotted);
        EXPECT_EQ(r.Label, c.Label);
    }
    TPumlRelation r;
    EXPECT_FALSE(ParsePumlRelation("just words here", r));
}
