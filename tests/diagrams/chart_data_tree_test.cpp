// JSON and YAML diagrams: the YAML subset read into the same tree JSON gives, the document between the
// markers with its highlights, and errors that name their line.
#include <gtest/gtest.h>

#include <string>

#include "orvex/diagrams/chart_data_tree.h"
#include "orvex/diagrams/diagram_import.h"
#include "orvex/diagrams/yaml_tree.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

TEST(YamlTree, ReadsTheBlockAndFlowForms) {
    const struct {
        const char* Name;
        const char* Yaml;
        const char* Json;
    } cases[] = {
        {"scalars", "a: 1\nb: -2.5\nc: true\nd: ~\ne: text with: colon\nf: 'it''s'\ng: \"q\\\"x\"\n",
         R"({"a":1,"b":-2.5,"c":true,"d":null,"e":"text with: colon","f":"it's","g":"q\"x"})"},
        {"nesting", "top:\n  mid:\n    low: x\n  next: y\nlast: z\n",
         R"({"top":{"mid":{"low":"x"},"next":"y"},"last":"z"})"},
        {"sequences", "list:\n  - a\n  - b\nsame:\n- c\n- - d\n  - e\n",
         R"({"list":["a","b"],"same":["c",["d","e"]]})"},
        {"items of mappings", "people:\n  - name: Ann\n    age: 31\n  - name: Bo\n",
         R"({"people":[{"name":"Ann","age":31},{"name":"Bo"}]})"},
        {"flow", "a: [1, two, [3]]\nb: {x: 1, y: [a, b]}\nc: []\nd: {}\n",
         R"({"a":[1,"two",[3]],"b":{"x":1,"y":["a","b"]},"c":[],"d":{}})"},
        {"block scalars", "lit: |\n  one\n  two\nfold: >-\n  one\n  two\nend: 1\n",
         R"({"lit":"one\ntwo\n","fold":"one two","end":1})"},
        {"comments and markers", "---\n# heading\na: 1 # trailing\nb: \"#not\"\n...\nignored: 2\n",
         R"({"a":1,"b":"#not"})"},
        {"top-level sequence", "- 1\n- x: 2\n", R"([1,{"x":2}])"},
        {"plain scalars over lines", "a: one\n  two\n  three\nb:\n  - four\n    five\n",
         R"({"a":"one two three","b":["four five"]})"},
        {"empty", "# nothing\n", "null"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        const TYamlResult result = QVLParseYaml(c.Yaml);
        ASSERT_TRUE(result) << result.Error << " at " << result.ErrorLine;
        EXPECT_EQ(result.Value, TJSON::parse(c.Json));
    }
}

TEST(YamlTree, RefusesWhatItCannotReadWithItsLine) {
    const struct {
        const char* Yaml;
        std::int32_t Line;
    } cases[] = {
        {"a: 1\n  b: 2\n", 2},          // deeper than a scalar allows
        {"a:\n  b: 1\n c: 2\n", 3},     // between two levels
        {"a: 1\na: 2\n", 2},            // the key twice
        {"a:\n\t- x\n", 2},             // a tab
        {"a: &anchor 1\n", 1},          // anchors
        {"a: [1, 2\n", 1},              // an open flow sequence
        {"---\na: 1\n---\nb: 2\n", 3},  // a second document
        {"a: \"open\n", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Yaml);
        const TYamlResult result = QVLParseYaml(c.Yaml, 10);
        EXPECT_FALSE(result);
        EXPECT_EQ(result.ErrorLine, c.Line + 9);
    }
}

const TQVLDataTreeChart& DataChart(const TORXDiagramModel& model) {
    EXPECT_EQ(model.Kind(), TQVLDiagramKind::dkChart);
    return dynamic_cast<const TQVLDataTreeChart&>(*model.Chart());
}

TEST(DataTreeChart, JsonKeepsTheKeyOrderAndTheHighlights) {
    const auto model = QVLImportDiagram(
        "@startjson\n"
        "#highlight \"b\" / \"0\"\n"
        "#highlight \"z\" <<mark>>\n"
        "{\"z\": 1, \"b\": [{\"c\": null}], \"a\": \"x\"}\n"
        "@endjson\n",
        TQVLDiagramFormat::dgPlantUML);
    const auto& chart = DataChart(*model);
    EXPECT_EQ(chart.Type(), "json");
    EXPECT_EQ(chart.Root.dump(), R"({"z":1,"b":[{"c":null}],"a":"x"})");
    EXPECT_EQ(chart.Highlights, (std::vector<std::vector<std::string>>{{"b", "0"}, {"z"}}));
    EXPECT_TRUE(model->Diagnostics().empty());
    TJSON out;
    chart.WriteJson(out);
    EXPECT_EQ(out.dump(), R"({"root":{"z":1,"b":[{"c":null}],"a":"x"},"highlights":[["b","0"],["z"]]})");
}

TEST(DataTreeChart, YamlDocumentsAndTheirStyleBlocks) {
    const auto model =
        QVLImportDiagram("@startyaml\n<style>\nyamlDiagram { }\n</style>\nname: x\nlist:\n  - 1\n@endyaml\n",
                         TQVLDiagramFormat::dgPlantUML);
    const auto& chart = DataChart(*model);
    EXPECT_EQ(chart.Type(), "yaml");
    EXPECT_EQ(chart.Root, TJSON::parse(R"({"name":"x","list":[1]})"));
    ASSERT_EQ(model->Diagnostics().size(), 1u);
    EXPECT_EQ(model->Diagnostics()[0].Code, "UNSUPPORTED_STATEMENT");
    EXPECT_EQ(model->Diagnostics()[0].Line, 2);
}

TEST(DataTreeChart, ErrorsNameTheDiagramLine) {
    const struct {
        const char* Text;
        const char* Code;
        std::int32_t Line;
    } cases[] = {
        {"@startjson\n{\n  \"a\": 1,\n  \"b\" 2\n}\n@endjson\n", "DATA_SYNTAX", 4},
        {"@startyaml\na: 1\n b: 2\n@endyaml\n", "DATA_SYNTAX", 3},
        {"@startjson\n\n@endjson\n", "DATA_EMPTY", 1},
        {"@startjson\n#highlight \"missing\"\n{\"a\": 1}\n@endjson\n", "DATA_HIGHLIGHT", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Text);
        const auto model = QVLImportDiagram(c.Text, TQVLDiagramFormat::dgPlantUML);
        ASSERT_FALSE(model->Diagnostics().empty());
        EXPECT_EQ(model->Diagnostics()[0].Code, c.Code);
        EXPECT_EQ(model->Diagnostics()[0].Line, c.Line);
    }
}

}  // namespace
}  // namespace Orvex
