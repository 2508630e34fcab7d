// Shared helpers of the item kind tests: typed creation and the undo contract of one setter.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "orvex/document/headless.h"
#include "orvex/io/json.h"

namespace Orvex::ItemTest {

template <class T>
T* Create(TORXBaseLabel& doc, TQVLItemType type) {
    auto* item = dynamic_cast<T*>(doc.CreateItem(type));
    EXPECT_NE(item, nullptr);
    return item;
}

// A setter that changes the value records exactly one undo step; undo restores the item's JSON and redo
// brings the change back; setting the value it already has records nothing.
struct TSetterCase {
    const char* Name;
    std::function<void(TORXBaseItem&)> Set;
};

inline void ExpectSetterUndo(TORXBaseLabel& doc, TORXBaseItem& item, const TSetterCase& c) {
    SCOPED_TRACE(c.Name);
    const std::string before = item.WriteJson().dump();
    const std::size_t steps = doc.UndoCount();
    c.Set(item);
    const std::string after = item.WriteJson().dump();
    EXPECT_NE(after, before) << "the setter changed nothing";
    EXPECT_EQ(doc.UndoCount(), steps + 1);
    doc.Undo();
    EXPECT_EQ(item.WriteJson().dump(), before);
    doc.Redo();
    EXPECT_EQ(item.WriteJson().dump(), after);
    item.SetColor(item.Color() ^ 0x00010101u);  // another command on top, so a repeat could not merge
    const std::size_t top = doc.UndoCount();
    c.Set(item);
    EXPECT_EQ(doc.UndoCount(), top) << "setting the current value recorded a step";
}

// Writes every item of doc, reads the text into a fresh document and writes again: the same bytes.
inline void ExpectRoundTrip(const TORXBaseLabel& doc) {
    const std::string text = doc.GetJsonString(2);
    TORXHeadlessLabel copy;
    copy.ReadJson(TJSON::parse(text));
    EXPECT_EQ(copy.GetJsonString(2), text);
}

}  // namespace Orvex::ItemTest
