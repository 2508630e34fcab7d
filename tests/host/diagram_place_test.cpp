// A diagram load that answers with everything it did: the format, the parser's findings on success and
// on failure, and the items it created with their bounds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <tuple>

#include "host/layout/diagram_loader.h"
#include "orvex/diagrams/diagram_parse.h"
#include "orvex/document/headless.h"

namespace Orvex {
namespace {

bool HasCode(const TQVLDiagramLoad& load, const std::string& code, std::int32_t line) {
    return std::any_of(load.Diagnostics.begin(), load.Diagnostics.end(),
                       [&](const TQVLDiagramDiagnostic& d) { return d.Code == code && d.Line == line; });
}

TEST(DiagramPlace, ARefusalCarriesTheFindingsOfItsOneParse) {
    TORXHeadlessLabel doc;
    const std::string before = doc.GetJsonString();
    const TQVLDiagramLoadResult empty = PlaceDiagramText(doc, "", TQVLDiagramFormat::dgAuto);
    EXPECT_EQ(empty.Code, QVLErr::kInvalid);
    EXPECT_EQ(empty.Message.rfind("DIAGRAM_", 0), 0u) << empty.Message;  // the first error, as a line
    EXPECT_EQ(empty.Value.Format, TQVLDiagramFormat::dgMermaid);
    EXPECT_FALSE(empty.Value.Diagnostics.empty());

    const TQVLDiagramLoadResult nonsense =
        PlaceDiagramText(doc, "flowchart TD\n  ??? nonsense\n", TQVLDiagramFormat::dgAuto);
    EXPECT_FALSE(nonsense.Ok());
    EXPECT_TRUE(HasCode(nonsense.Value, "MERMAID_UNRECOGNIZED_LINE", 2));  // warnings come with the errors
    EXPECT_TRUE(nonsense.Value.Placement.Items.empty());
    EXPECT_EQ(doc.GetJsonString(), before);
    EXPECT_TRUE(doc.IsUndoEmpty());
}

TEST(DiagramPlace, ASuccessNamesTheCreatedItemsAndWhatTheyCover) {
    TORXHeadlessLabel doc;
    const TQVLDiagramLoadResult first =
        PlaceDiagramText(doc, "flowchart LR\n  A[Start] --> B[End]\n", TQVLDiagramFormat::dgAuto);
    ASSERT_TRUE(first.Ok()) << first.Message;
    EXPECT_TRUE(first.Message.empty());
    EXPECT_EQ(first.Value.Placement.Items.size(), static_cast<std::size_t>(doc.GetItemsCount()));
    EXPECT_EQ(first.Value.Placement.Nodes.size(), 2u);
    const TQVLRect all = doc.ItemsBounds();
    const TQVLRect& bounds = first.Value.Placement.Bounds;
    EXPECT_EQ(std::tie(bounds.Left, bounds.Top, bounds.Right, bounds.Bottom),
              std::tie(all.Left, all.Top, all.Right, all.Bottom));

    // A second load onto the same document reports its own items only, a warning included.
    const std::int32_t before = doc.GetItemsCount();
    const TQVLDiagramLoadResult second =
        PlaceDiagramText(doc, "flowchart TD\n  C --> D\n  ??? nonsense\n", TQVLDiagramFormat::dgMermaid);
    ASSERT_TRUE(second.Ok()) << second.Message;
    ASSERT_EQ(second.Value.Placement.Items.size(), static_cast<std::size_t>(doc.GetItemsCount() - before));
    EXPECT_EQ(second.Value.Placement.Items.front(), doc.GetItem(before)->InID());
    EXPECT_TRUE(HasCode(second.Value, "MERMAID_UNRECOGNIZED_LINE", 3));
}

TEST(DiagramPlace, FilesAndTheBoolEntryAgree) {
    TORXHeadlessLabel doc;
    const TQVLDiagramLoadResult missing =
        PlaceDiagramFile(doc, "/nonexistent/x.mmd", TQVLDiagramFormat::dgAuto);
    EXPECT_EQ(missing.Code, QVLErr::kNoFile);
    EXPECT_EQ(missing.Message, "/nonexistent/x.mmd: cannot read the file");

    // The extension's format wins over what the text looks like.
    const std::string path = ::testing::TempDir() + "diagram_place_test.mmd";
    std::ofstream(path) << "@startuml\nAlice -> Bob : hi\n@enduml\n";
    const TQVLDiagramLoadResult fromFile = PlaceDiagramFile(doc, path, TQVLDiagramFormat::dgAuto);
    std::remove(path.c_str());
    EXPECT_EQ(fromFile.Value.Format, TQVLDiagramFormat::dgMermaid);

    TORXHeadlessLabel other;
    TDiagramPlacement placement;
    EXPECT_FALSE(LoadDiagramWithLayout(other, "", TQVLDiagramFormat::dgAuto, placement));
    EXPECT_TRUE(placement.Items.empty());
    EXPECT_TRUE(
        LoadDiagramWithLayout(other, "flowchart TD\n  A --> B\n", TQVLDiagramFormat::dgAuto, placement));
    EXPECT_EQ(placement.Items.size(), static_cast<std::size_t>(other.GetItemsCount()));
}

}  // namespace
}  // namespace Orvex
