// The drawing's text is written item by item rather than from one JSON tree; it must stay byte for byte
// what the tree would print, in every indentation the files and the command line use.
#include <gtest/gtest.h>

#include <string>

#include "orvex/document/headless.h"
#include "orvex/formats/drawing_file.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

TEST(DrawingJsonText, ItemByItemTextEqualsTheWholeTree) {
    const TORXHeadlessLabel empty;
    TORXHeadlessLabel drawing;
    drawing.SetEditorMode(TQVLEditorMode::emDrawing);  // dimension styles are written in this mode
    ASSERT_TRUE(
        LoadDrawingText(R"({"Version":3200,"EditorMode":2,"Layers":[{"Name":"A"}],"Counters":[{"Name":"N"}],
        "Items":[{"Type":2,"Points":[{"X":1,"Y":2},{"X":3,"Y":4}]},
                 {"Type":10,"Text":"two\nlines \"quoted\" é","Points":[{"X":0,"Y":0},{"X":9,"Y":9}]},
                 {"Type":4,"Points":[{"X":0,"Y":0},{"X":5,"Y":5},{"X":9,"Y":0}],"Extra":{"Nested":[1,[2,{}]]}}]})",
                        "test", drawing));
    ASSERT_EQ(drawing.GetItemsCount(), 3);
    const TORXHeadlessLabel* const docs[] = {&empty, &drawing};
    for (const TORXHeadlessLabel* doc : docs) {
        for (const int indent : {-1, 0, 2, 4}) {
            SCOPED_TRACE(testing::Message() << "items " << doc->GetItemsCount() << ", indent " << indent);
            EXPECT_EQ(doc->GetJsonString(indent), doc->GetJson().dump(indent));
        }
    }
}

}  // namespace
}  // namespace Orvex
