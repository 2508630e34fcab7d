#include "orvex/diagrams/mermaid_parser.h"

#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/diagram_parse.h"

using namespace Orvex;

namespace {

std::unique_ptr<TORXDiagramModel> Mermaid(std::string_view text) {
    return QVLParseDiagram(text, TQVLDiagramFormat::dgMermaid);
}

std::string EdgeList(const TORXDiagramModel& model) {
    std::string out;
    for (const auto& e : model.Edges()) out += e.FromID + ">" + e.ToID + " ";
    return out;
}

}  // namespace

TEST(MermaidFlow, HeaderShapesAndOneEdge) {
    const auto m = Mermaid("graph LR\nA[Start] --> B{Ok?}");
    EXPECT_EQ(m->Direction(), TQVLFlowDirection::fdLeftRight);
    ASSERT_EQ(m->Nodes().size(), 2u);
    EXPECT_EQ(m->Nodes()[0].Text, "Start");
    EXPECT_EQ(m->Nodes()[0].Shape, TQVLFlowType::ftProcess);
    EXPECT_EQ(m->Nodes()[1].Text, "Ok?");
    EXPECT_EQ(m->Nodes()[1].Shape, TQVLFlowType::ftDecision);
    ASSERT_EQ(m->Edges().size(), 1u);
    EXPECT_EQ(m->Edges()[0].Arrow, TQVLDiagEdgeArrow::eaArrow);
    EXPECT_TRUE(m->Diagnostics().empty());
}

TEST(MermaidFlow, GroupsAreJoinedFromMajorAndChainsContinue) {
    EXPECT_EQ(EdgeList(*Mermaid("graph TD\nA & B --> C & D")), "A>C A>D B>C B>D ");
    EXPECT_EQ(EdgeList(*Mermaid("graph TD\nA --> B --> C")), "A>B B>C ");
    // A dangling operator keeps the edges already added; the rest of the line is ignored silently.
    const auto m = Mermaid("graph TD\nA --> B --> ");
    EXPECT_EQ(EdgeList(*m), "A>B ");
    EXPECT_TRUE(m->Diagnostics().empty());
}

TEST(MermaidFlow, EdgeOperators) {
    struct TCase {
        const char* Line;
        const char* Label;
        bool Dotted;
        TQVLDiagEdgeArrow Arrow;
    };
    const TCase cases[] = {
        {"A -- yes --> B", "yes", false, TQVLDiagEdgeArrow::eaArrow},
        {"A -->|no| B", "no", false, TQVLDiagEdgeArrow::eaArrow},
        {"A -.-> B", "", true, TQVLDiagEdgeArrow::eaArrow},
        {"A -. maybe .-> B", "maybe", true, TQVLDiagEdgeArrow::eaArrow},
        {"A == big ==> B", "big", false, TQVLDiagEdgeArrow::eaArrow},
        {"A --x B", "", false, TQVLDiagEdgeArrow::eaCross},
        {"A --o B", "", false, TQVLDiagEdgeArrow::eaCircle},
        {"A --- B", "", false, TQVLDiagEdgeArrow::eaNone},
        {"A === B", "", false, TQVLDiagEdgeArrow::eaNone},
        {"A ==> B", "", false, TQVLDiagEdgeArrow::eaArrow},
        {"A---B", "", false, TQVLDiagEdgeArrow::eaNone},
        {"A -->|\"a<br>b\"| B", "a\r\nb", false, TQVLDiagEdgeArrow::eaArrow},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Line);
        const auto m = Mermaid(std::string("graph TD\n") + c.Line);
        ASSERT_EQ(m->Edges().size(), 1u);
        EXPECT_EQ(m->Edges()[0].FromID, "A");
        EXPECT_EQ(m->Edges()[0].ToID, "B");
        EXPECT_EQ(m->Edges()[0].Text, c.Label);
        EXPECT_EQ(m->Edges()[0].Dotted, c.Dotted);
        EXPECT_EQ(m->Edges()[0].Arrow, c.Arrow);
        EXPECT_EQ(m->Edges()[0].FromArrow, TQVLDiagEdgeArrow::eaNone);
    }
}

TEST(MermaidFlow, ShapesInTheirOrder) {
    struct TCase {
        const char* Node;
        TQVLFlowType Type;
        const char* Caption;
    };
    const TCase cases[] = {
        {"A([Go])", TQVLFlowType::ftTerminator, "Go"},
        {"A[[Sub]]", TQVLFlowType::ftPredefined, "Sub"},
        {"A[(Db)]", TQVLFlowType::ftDatabase, "Db"},
        {"A(((Stop)))", TQVLFlowType::ftEnd, "Stop"},
        {"A((Start))", TQVLFlowType::ftStart, "Start"},
        {"A{{Prep}}", TQVLFlowType::ftPreparation, "Prep"},
        {"A[/Op\\]", TQVLFlowType::ftManualOperation, "Op"},
        {"A[\\Op/]", TQVLFlowType::ftManualOperation, "Op"},
        {"A[/In/]", TQVLFlowType::ftData, "In"},
        {"A[\\In\\]", TQVLFlowType::ftData, "In"},
        {"A>Flag]", TQVLFlowType::ftManualInput, "Flag"},
        {"A[Box]", TQVLFlowType::ftProcess, "Box"},
        {"A{Ok?}", TQVLFlowType::ftDecision, "Ok?"},
        {"A(Round)", TQVLFlowType::ftProcess, "Round"},
        {"my-node.x[\"Say &quot;hi&quot;\"]", TQVLFlowType::ftProcess, "Say \"hi\""},
    };
    for (const TCase& c : cases) {
        SCOPED_TRACE(c.Node);
        const auto m = Mermaid(std::string("flowchart TB\n") + c.Node);
        ASSERT_EQ(m->Nodes().size(), 1u);
        EXPECT_EQ(m->Nodes()[0].Shape, c.Type);
        EXPECT_EQ(m->Nodes()[0].Text, c.Caption);
        EXPECT_TRUE(m->Nodes()[0].HasShape);
    }
}

TEST(MermaidFlow, LaterDeclarationShapesAReferencedNode) {
    const auto m = Mermaid("graph TD\nA --> B\nB((Round))");
    ASSERT_EQ(m->Nodes().size(), 2u);
    EXPECT_EQ(m->Nodes()[1].Shape, TQVLFlowType::ftStart);
    EXPECT_EQ(m->Nodes()[1].Text, "Round");
    // Updating a known node adds nothing, so the line still counts as unrecognised.
    ASSERT_EQ(m->Diagnostics().size(), 1u);
    EXPECT_EQ(m->Diagnostics()[0].Line, 3);
}

TEST(MermaidFlow, UnchangedCountsGiveAnUnrecognizedWarning) {
    const auto m = Mermaid("graph TD\nA\nA B\nC D");
    // "A B" changes nothing (A is known): a warning; "C D" adds C and stops without one.
    ASSERT_EQ(m->Diagnostics().size(), 1u);
    EXPECT_EQ(m->Diagnostics()[0].Code, "MERMAID_UNRECOGNIZED_LINE");
    EXPECT_EQ(m->Diagnostics()[0].Line, 3);
    EXPECT_EQ(m->Diagnostics()[0].SourceText, "A B");
    EXPECT_EQ(m->Nodes().size(), 2u);
}

TEST(MermaidFlow, SubgraphsAreFlattenedWithWarningsAndCommentsCut) {
    const auto m =
        Mermaid("graph TD\nsubgraph one\nA --> B %% trailing\nend\nclassDef x fill:#f00\ntitle: My chart");
    ASSERT_EQ(m->Diagnostics().size(), 3u);
    for (const auto& d : m->Diagnostics()) EXPECT_EQ(d.Code, "MERMAID_UNSUPPORTED_STATEMENT");
    EXPECT_EQ(m->Diagnostics()[0].Line, 2);
    EXPECT_EQ(m->Diagnostics()[1].SourceText, "end");
    EXPECT_EQ(m->Edges().size(), 1u);
    EXPECT_EQ(m->Title(), "My chart");
    EXPECT_EQ(Mermaid("graph\ntitle : x\nA")->Title(), ": x");
}

TEST(MermaidFlow, FrontMatter) {
    const auto closed = Mermaid("\n---\ntitle: Ignored\n---\ngraph LR\nA");
    EXPECT_TRUE(closed->Diagnostics().empty());
    EXPECT_EQ(closed->Title(), "");
    EXPECT_EQ(closed->Direction(), TQVLFlowDirection::fdLeftRight);

    const auto open = Mermaid("\n---\ngraph LR\nA");
    ASSERT_EQ(open->Diagnostics().size(), 2u);
    EXPECT_EQ(open->Diagnostics()[0].Code, "MERMAID_UNCLOSED_FRONTMATTER");
    EXPECT_EQ(open->Diagnostics()[0].Line, 2);
    EXPECT_EQ(open->Diagnostics()[1].Code, "MERMAID_UNSUPPORTED_STATEMENT");
    EXPECT_EQ(open->Diagnostics()[1].Line, 2);
}

TEST(MermaidFlow, HeaderDispatchScansEveryLine) {
    const auto m = Mermaid("graph TD\nA --> B\ntimeline\n");
    EXPECT_EQ(m->Nodes().size(), 0u);  // the timeline routine owns the text and finds no period
    EXPECT_EQ(m->Diagnostics().back().Code, "DIAGRAM_EMPTY_RESULT");
}

TEST(MermaidSequence, MessagesNotesAndParticipants) {
    const auto m = Mermaid(
        "sequenceDiagram\nparticipant A as \"Alice A.\"\nA->>Bob: Hi\nBob-->>A: Ok\nBob-xA: no\nA-)Bob: "
        "async\n"
        "note Right of Bob: thinking\nNOTE over A, Bob: both\nA->>Bob\nloop every day\n");
    EXPECT_EQ(m->Kind(), TQVLDiagramKind::dkSequence);
    ASSERT_EQ(m->Participants().size(), 2u);
    EXPECT_EQ(m->Participants()[0].Display, "Alice A.");
    EXPECT_EQ(m->Participants()[1].ID, "Bob");
    ASSERT_EQ(m->SeqEvents().size(), 6u);
    EXPECT_EQ(m->SeqEvents()[0].Arrow, TQVLSeqArrow::saFilled);
    EXPECT_FALSE(m->SeqEvents()[0].Dotted);
    EXPECT_TRUE(m->SeqEvents()[1].Dotted);
    EXPECT_EQ(m->SeqEvents()[2].Arrow, TQVLSeqArrow::saCross);
    EXPECT_EQ(m->SeqEvents()[3].Arrow, TQVLSeqArrow::saOpen);
    EXPECT_EQ(m->SeqEvents()[4].EventType, TQVLSeqEventType::seNote);
    EXPECT_EQ(m->SeqEvents()[4].NotePosition, "right of");
    EXPECT_EQ(m->SeqEvents()[5].ToActor, "Bob");
    EXPECT_EQ(m->SeqEvents()[5].NotePosition, "over");
    // The message without text is unrecognised; the loop is unsupported.
    ASSERT_EQ(m->Diagnostics().size(), 2u);
    EXPECT_EQ(m->Diagnostics()[0].Code, "MERMAID_UNRECOGNIZED_LINE");
    EXPECT_EQ(m->Diagnostics()[1].Code, "MERMAID_UNSUPPORTED_STATEMENT");
}

TEST(MermaidSequence, NoteAddsOnlyItsFirstParticipant) {
    const auto m = Mermaid("sequenceDiagram\nNote left of X, Y: hello<br/>world");
    ASSERT_EQ(m->Participants().size(), 1u);
    EXPECT_EQ(m->SeqEvents()[0].Text, "hello\r\nworld");
}
