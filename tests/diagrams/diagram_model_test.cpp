#include "orvex/diagrams/diagram_model.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "orvex/diagrams/diagram_parse.h"
#include "orvex/diagrams/diagram_text.h"
#include "orvex/document/headless.h"

using namespace Orvex;

namespace {

std::string ParseErrorMessage(std::string_view text, TQVLDiagramFormat format) {
    try {
        QVLParseDiagram(text, format, true);
    } catch (const EQVLDiagramParseError& e) {
        return e.what();
    }
    return "(no raise)";
}

}  // namespace

TEST(DiagramModel, ReferencedNodeTakesFirstExplicitShapeAndCaption) {
    TORXDiagramModel model;
    EXPECT_EQ(model.AddNode("A", "", TQVLFlowType::ftProcess, false), 0);
    EXPECT_EQ(model.Nodes()[0].Text, "A");
    EXPECT_EQ(model.AddNode("A", "Start", TQVLFlowType::ftTerminator, true), 0);
    ASSERT_EQ(model.Nodes().size(), 1u);
    EXPECT_EQ(model.Nodes()[0].Text, "Start");
    EXPECT_EQ(model.Nodes()[0].Shape, TQVLFlowType::ftTerminator);
    EXPECT_TRUE(model.Nodes()[0].HasShape);
}

TEST(DiagramModel, ShapeOnceStatedIsNeverOverwrittenNorARealCaption) {
    TORXDiagramModel model;
    model.AddNode("B", "Ok?", TQVLFlowType::ftDecision, true);
    model.AddNode("B", "Other", TQVLFlowType::ftData, true);
    model.AddNode("B", "Plain", TQVLFlowType::ftProcess, false);
    EXPECT_EQ(model.Nodes()[0].Shape, TQVLFlowType::ftDecision);
    EXPECT_EQ(model.Nodes()[0].Text, "Ok?");
    // A plain reference may still give a caption to a node that so far only showed its identifier.
    model.AddNode("C", "", TQVLFlowType::ftProcess, false);
    model.AddNode("C", "Named", TQVLFlowType::ftProcess, false);
    EXPECT_EQ(model.Nodes()[1].Text, "Named");
}

TEST(DiagramModel, ExplicitShapeWithEmptyCaptionStaysEmptyAndEmptyIdIsRefused) {
    TORXDiagramModel model;
    model.AddNode("X", "", TQVLFlowType::ftDecision, true, 2, 0xFF112233, true);
    EXPECT_EQ(model.Nodes()[0].Text, "");
    EXPECT_EQ(model.Nodes()[0].Side, 2);
    EXPECT_EQ(model.AddNode("", "t", TQVLFlowType::ftProcess, true), -1);
    EXPECT_EQ(model.Nodes().size(), 1u);
    EXPECT_EQ(model.NodeIndexOf("X"), 0);
    EXPECT_EQ(model.NodeIndexOf("x"), -1);  // identifiers are case-sensitive
}

TEST(DiagramModel, InIdsAndEdgesAndParticipants) {
    TORXDiagramModel model;
    model.AddNode("A", "", TQVLFlowType::ftProcess, false);
    model.SetNodeInId("A", 42);
    model.SetNodeInId("Nope", 7);
    EXPECT_EQ(model.GetNodeInId("A"), 42);
    EXPECT_EQ(model.GetNodeInId("Nope"), 0);

    model.AddEdge("A", "", "x", false, TQVLDiagEdgeArrow::eaArrow);
    model.AddEdge("", "A", "x", false, TQVLDiagEdgeArrow::eaArrow);
    EXPECT_TRUE(model.Edges().empty());
    model.AddEdge("A", "Ghost", "go", true, TQVLDiagEdgeArrow::eaCross);
    ASSERT_EQ(model.Edges().size(), 1u);
    EXPECT_EQ(model.Edges()[0].FromArrow, TQVLDiagEdgeArrow::eaNone);
    EXPECT_EQ(model.Edges()[0].Arrow, TQVLDiagEdgeArrow::eaCross);

    model.AddParticipant("Bob", "");
    model.AddParticipant("Bob", "Bobby");
    model.AddParticipant("Bob", "Bob");  // the ID itself never replaces an alias
    model.AddParticipant("", "x");
    ASSERT_EQ(model.Participants().size(), 1u);
    EXPECT_EQ(model.Participants()[0].Display, "Bobby");
}

TEST(DiagramModel, DiagnosticsBySeverityAndClear) {
    TORXDiagramModel model;
    model.AddDiagnostic(TQVLDiagramDiagnosticSeverity::dsWarning, 3, "C", "m", "s");
    EXPECT_TRUE(model.HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsInfo));
    EXPECT_TRUE(model.HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsWarning));
    EXPECT_FALSE(model.HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsError));
    model.fKind = TQVLDiagramKind::dkSequence;
    model.fTitle = "t";
    model.AddNode("A", "", TQVLFlowType::ftProcess, false);
    model.Clear();
    EXPECT_EQ(model.Kind(), TQVLDiagramKind::dkFlowChart);
    EXPECT_EQ(model.Title(), "");
    EXPECT_TRUE(model.Diagnostics().empty());
    EXPECT_EQ(model.NodeIndexOf("A"), -1);
}

TEST(DiagramFormat, DetectionAndExtensions) {
    EXPECT_EQ(QVLDetectDiagramFormat("@startuml\nA -> B : x\n@enduml"), TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(QVLDetectDiagramFormat("text @STARTMINDMAP more"), TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(QVLDetectDiagramFormat("@startumlx\n"), TQVLDiagramFormat::dgMermaid);
    EXPECT_EQ(QVLDetectDiagramFormat(""), TQVLDiagramFormat::dgMermaid);
    struct TCase {
        const char* Name;
        TQVLDiagramFormat Format;
    };
    for (const TCase& c : {TCase{"a.PUML", TQVLDiagramFormat::dgPlantUML},
                           {"dir.x/b.wsd", TQVLDiagramFormat::dgPlantUML},
                           {"c.iuml", TQVLDiagramFormat::dgPlantUML},
                           {"d.Mermaid", TQVLDiagramFormat::dgMermaid},
                           {"e.mmd", TQVLDiagramFormat::dgMermaid},
                           {"f.txt", TQVLDiagramFormat::dgAuto},
                           {"dir.mmd/noext", TQVLDiagramFormat::dgAuto}}) {
        SCOPED_TRACE(c.Name);
        EXPECT_EQ(QVLDiagramFormatFromExt(c.Name), c.Format);
    }
}

TEST(DiagramParse, RaisingModeMessagesAndEmptyResult) {
    EXPECT_EQ(ParseErrorMessage("", TQVLDiagramFormat::dgAuto),
              "DIAGRAM_EMPTY_RESULT: The diagram did not produce any renderable element.");
    const std::string text = "graph TD\nA --> B\n???\n";
    EXPECT_EQ(ParseErrorMessage(text, TQVLDiagramFormat::dgMermaid),
              "MERMAID_UNRECOGNIZED_LINE at line 3: The line was not recognized and was ignored.");
    const auto model = QVLParseDiagram(text, TQVLDiagramFormat::dgMermaid);
    ASSERT_EQ(model->Diagnostics().size(), 1u);
    EXPECT_EQ(model->Diagnostics()[0].Line, 3);
    EXPECT_FALSE(model->HasDiagnostics(TQVLDiagramDiagnosticSeverity::dsError));
    // Edges alone do not count as content.
    const auto comment = QVLParseDiagram("%% only a comment", TQVLDiagramFormat::dgAuto);
    ASSERT_EQ(comment->Diagnostics().size(), 1u);
    EXPECT_EQ(comment->Diagnostics()[0].Code, "DIAGRAM_EMPTY_RESULT");
    EXPECT_EQ(comment->Diagnostics()[0].Line, 0);
}

TEST(DiagramText, EveryCrAndLfEndsALine) {
    const auto lines = QVLSplitDiagramLines("a\r\nb\n\nc\r");
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[0], "a");
    EXPECT_EQ(lines[1], "");
    EXPECT_EQ(lines[2], "b");
    EXPECT_EQ(lines[4], "c");
    EXPECT_EQ(lines[5], "");
    // The third text line of a CR LF file is line 5.
    const auto model = QVLParseDiagram("graph TD\r\nA\r\n???", TQVLDiagramFormat::dgMermaid);
    ASSERT_FALSE(model->Diagnostics().empty());
    EXPECT_EQ(model->Diagnostics()[0].Line, 5);
}

TEST(DiagramText, CaptionCleaning) {
    struct TCase {
        const char* In;
        const char* Out;
    };
    for (const TCase& c : {TCase{"  \" quoted \"  ", "quoted"},
                           {"a<BR/>b<br>c\\nd", "a\r\nb\r\nc\r\nd"},
                           {"&QUOT;x&quot; &amp;amp;", "\"x\" &amp;"},
                           {"\"", "\""},
                           {"\\N", "\\N"},
                           {"<br>x<br/>", "x"}}) {
        SCOPED_TRACE(c.In);
        EXPECT_EQ(QVLCleanCaption(c.In), c.Out);
    }
}

TEST(DiagramFile, ReadsUtf8WithoutBomAndFallsBackToWindows1252) {
    const std::string path = testing::TempDir() + "orvex_diagram_file.mmd";
    {
        std::ofstream out(path, std::ios::binary);
        out << "\xEF\xBB\xBFgraph TD\nA[Caf\xE9]";
    }
    std::string text;
    ASSERT_TRUE(QVLReadDiagramFile(path, text));
    EXPECT_EQ(text, "graph TD\nA[Caf\xC3\xA9]");
    EXPECT_FALSE(QVLReadDiagramFile(path + ".missing", text));
    EXPECT_FALSE(QVLReadDiagramFile(testing::TempDir(), text));
    EXPECT_EQ(QVLResolveFileFormat(path, TQVLDiagramFormat::dgAuto), TQVLDiagramFormat::dgMermaid);
    EXPECT_EQ(QVLResolveFileFormat(path, TQVLDiagramFormat::dgPlantUML), TQVLDiagramFormat::dgPlantUML);
    std::remove(path.c_str());
}

namespace {
std::string gLoaderText;
TQVLDiagramFormat gLoaderFormat = TQVLDiagramFormat::dgAuto;
bool FakeLoader(TORXBaseLabel&, std::string_view text, TQVLDiagramFormat format) {
    gLoaderText = std::string(text);
    gLoaderFormat = format;
    return true;
}
}  // namespace

TEST(DiagramFile, LoaderHookIsReplacedAndRemoved) {
    QVLSetDiagramLoader(&FakeLoader);
    EXPECT_EQ(QVLGetDiagramLoader(), &FakeLoader);
    QVLSetDiagramLoader(nullptr);
    EXPECT_EQ(QVLGetDiagramLoader(), nullptr);
}

TEST(DiagramFile, DocumentLoadsGoThroughTheRegisteredLoader) {
    TORXHeadlessLabel doc;
    EXPECT_FALSE(doc.LoadFromDiagramText("graph TD\nA-->B", TQVLDiagramFormat::dgAuto));  // no loader yet

    QVLSetDiagramLoader(&FakeLoader);
    EXPECT_TRUE(doc.LoadFromDiagramText("graph TD\nA-->B", TQVLDiagramFormat::dgAuto));
    EXPECT_EQ(gLoaderText, "graph TD\nA-->B");
    EXPECT_EQ(gLoaderFormat, TQVLDiagramFormat::dgAuto);  // passed on unchanged: the loader detects

    const std::string path = testing::TempDir() + "document_load.puml";
    {
        std::ofstream out(path, std::ios::binary);
        out << "\xEF\xBB\xBF@startuml\nA -> B\n@enduml\n";
    }
    EXPECT_TRUE(doc.LoadFromDiagram(path, TQVLDiagramFormat::dgAuto));
    EXPECT_EQ(gLoaderText, "@startuml\nA -> B\n@enduml\n");   // the byte-order mark is gone
    EXPECT_EQ(gLoaderFormat, TQVLDiagramFormat::dgPlantUML);  // from the extension
    EXPECT_FALSE(doc.LoadFromDiagram(path + ".missing", TQVLDiagramFormat::dgAuto));
    QVLSetDiagramLoader(nullptr);
    std::remove(path.c_str());
}
