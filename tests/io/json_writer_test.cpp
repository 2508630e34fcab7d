#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "orvex/document/layer.h"
#include "orvex/io/json.h"
#include "orvex/io/json_writer.h"

namespace Orvex {
namespace {

// Writes the same value through a text writer and a tree writer.
template <class TWrite>
void WriteBoth(TWrite write, std::string& text, TJSON& tree, int indent, int depth) {
    TJsonTextWriter textWriter(text, indent, depth);
    write(static_cast<TJsonWriter&>(textWriter));
    TJsonTreeWriter treeWriter;
    write(static_cast<TJsonWriter&>(treeWriter));
    tree = treeWriter.Take();
}

// Everything the writer might get wrong: empty and nested containers, separators, awkward numbers and
// strings, colours and fonts, a ready-made tree.
void Awkward(TJsonWriter& w) {
    w.BeginObject();
    w.Key("Empty");
    w.BeginObject();
    w.EndObject();
    w.Key("None");
    w.BeginArray();
    w.EndArray();
    w.Key("Numbers");
    w.BeginArray();
    w.Int(0);
    w.Int(-7);
    w.Int(std::numeric_limits<std::int64_t>::min());
    w.Float(0.1);
    w.Float(-0.0);
    w.Float(1e300);
    w.Float(2.0);
    w.Float(123.456);
    w.Float(std::nan(""));
    w.Float(std::numeric_limits<double>::infinity());
    w.EndArray();
    w.Key("Texts");
    w.BeginArray();
    w.String("");
    w.String("plain");
    w.String("quote \" backslash \\ tab \t newline \n bell \x07 del \x7f");
    w.String("\xc3\xa9t\xc3\xa9 \xe2\x82\xac");
    w.EndArray();
    w.Key("Nested");
    w.BeginArray();
    w.BeginArray();
    w.BeginObject();
    w.Key("A");
    w.Bool(true);
    w.Key("B");
    w.Bool(false);
    w.EndObject();
    w.EndArray();
    w.EndArray();
    w.Key("Color");
    w.Color(0x80FF4020u);
    TQVLFont font;
    font.Name = "Sans";
    font.Bold = true;
    font.FontHeight = 3.1f;
    w.Key("Font");
    w.Font(font);
    w.Key("Tree");
    w.Tree(TJSON::parse(R"({"x":[1,{"y":[]},{}],"z":"\u0001"})"));
    w.EndObject();
}

TEST(JsonWriterTest, TextIsTheLibrarysDumpOfTheTreeAtEveryIndentAndDepth) {
    for (const int indent : {-1, 0, 2, 4}) {
        for (const int depth : {0, 2}) {
            SCOPED_TRACE(testing::Message() << "indent " << indent << ", depth " << depth);
            std::string text;
            TJSON tree;
            WriteBoth(Awkward, text, tree, indent, depth);
            // A value depth levels deep in a larger dump: the library's own serializer at that indentation.
            std::string expected;
            nlohmann::detail::serializer<TJSON> lib(nlohmann::detail::output_adapter<char>(expected), ' ',
                                                    nlohmann::detail::error_handler_t::strict);
            const auto step = static_cast<unsigned>(std::max(indent, 0));
            lib.dump(tree, indent >= 0, false, step, step * static_cast<unsigned>(depth));
            EXPECT_EQ(text, expected);
            if (depth == 0) {
                EXPECT_EQ(text, tree.dump(indent));
            }
        }
    }
}

TEST(JsonWriterTest, TreeHoldsTheValuesWritten) {
    std::string text;
    TJSON tree;
    WriteBoth(Awkward, text, tree, -1, 0);
    EXPECT_EQ(tree["Numbers"][2].get<std::int64_t>(), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(tree["Texts"][3].get<std::string>(), "\xc3\xa9t\xc3\xa9 \xe2\x82\xac");
    EXPECT_EQ(tree["Color"], TJSON::parse(R"({"R":255,"G":64,"B":32,"A":128})"));
    EXPECT_TRUE(tree["Nested"][0][0]["A"].get<bool>());
    EXPECT_EQ(tree["Tree"]["x"][1]["y"], TJSON::array());
    EXPECT_EQ(TJSON::parse(text).dump(), tree.dump());  // by text: NaN equals nothing, itself included
}

TEST(JsonWriterTest, InvalidUtf8IsRefusedAsTheLibraryRefusesIt) {
    std::string text;
    TJsonTextWriter writer(text, -1);
    EXPECT_THROW(writer.String("bad \xff byte"), nlohmann::json::type_error);
    EXPECT_THROW(TJSON("bad \xff byte").dump(), nlohmann::json::type_error);
}

}  // namespace
}  // namespace Orvex
