// The editor session: the page's requests drive the engine's editor on a document, and what the page shows
// (drawing, marks, panels) is rendered from it.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "host/editor/edit_frame_store.h"
#include "host/editor/edit_session.h"
#include "host/editor/edit_tool_caller.h"
#include "host/layout/diagram_loader.h"
#include "host/tools/register_tools.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/document/document.h"
#include "orvex/document/headless.h"
#include "orvex/io/json_utils.h"

namespace Orvex::Testing {
namespace {

namespace fs = std::filesystem;
constexpr double kPixelsPerMM = 96.0 / 25.4;

class EditSessionTest : public ::testing::Test {
  protected:
    EditSessionTest() {
        fRoot = fs::temp_directory_path() /
                fs::path("orvex-edit-" + std::to_string(::getpid()) + "-" +
                         ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(fRoot);
        Host::TToolOptions tools;
        tools.FilesRoot = fs::canonical(fRoot);
        Host::RegisterStandardTools(fServer, tools);
        Host::TEditOptions options;
        options.FilesRoot = tools.FilesRoot;
        options.FileName = "drawing.json";
        fSession = std::make_unique<Host::TEditSession>(fDoc, Host::ToolCallerOf(fServer, fDoc), options);
    }
    ~EditSessionTest() override {
        std::error_code ec;
        fs::remove_all(fRoot, ec);
    }

    TJSON Do(TJSON aRequest) {
        TJSON answer = fSession->Handle(aRequest);
        fSession->Publish();
        return answer;
    }
    void Pointer(const std::string& aKind, double aX, double aY, bool aShift = false) {
        Do({{"op", "pointer"},
            {"kind", aKind},
            {"x", aX},
            {"y", aY},
            {"ppu", kPixelsPerMM},
            {"shift", aShift}});
    }
    void Drag(double aX1, double aY1, double aX2, double aY2) {
        Pointer("down", aX1, aY1);
        Pointer("move", (aX1 + aX2) / 2, (aY1 + aY2) / 2);
        Pointer("move", aX2, aY2);
        Pointer("up", aX2, aY2);
    }
    void Type(const std::string& aText) { Do({{"op", "chars"}, {"text", aText}}); }
    void Key(const std::string& aKey) { Do({{"op", "key"}, {"key", aKey}}); }
    TJSON State() { return TJSON::parse(*fSession->Store().Current().State); }
    std::string Overlay() { return *fSession->Store().Current().Overlay; }
    TQVLRect Bounds(std::int32_t aIndex) { return fDoc.GetItem(aIndex)->BoundsRect(); }

    fs::path fRoot;
    TORXHeadlessLabel fDoc;
    TORXMCPServer fServer;
    std::unique_ptr<Host::TEditSession> fSession;
};

TEST_F(EditSessionTest, DragDrawsARectangleOnTheGridAndShowsTheRubberWhileDragging) {
    Do({{"op", "tool"}, {"name", "rectangle"}});
    Pointer("down", 10.2, 9.8);
    Pointer("move", 25, 20);
    EXPECT_NE(Overlay().find("class=\"rubber\""), std::string::npos);
    EXPECT_NE(Overlay().find("class=\"snap\""), std::string::npos);
    Pointer("move", 40.3, 29.6);
    Pointer("up", 40.3, 29.6);
    ASSERT_EQ(fDoc.GetItemsCount(), 1);
    EXPECT_EQ(Bounds(0), TQVLRect(10000, 10000, 40000, 30000));  // snapped to the 1 mm grid
    EXPECT_EQ(Overlay().find("class=\"rubber\""), std::string::npos);
    EXPECT_TRUE(State()["can_undo"].get<bool>());
}

TEST_F(EditSessionTest, WithoutSnapThePointLandsWhereThePointerIs) {
    Do({{"op", "settings"}, {"snap", false}});
    Do({{"op", "tool"}, {"name", "rectangle"}});
    Drag(10.25, 10.5, 30.75, 20.25);
    ASSERT_EQ(fDoc.GetItemsCount(), 1);
    EXPECT_NEAR(static_cast<double>(Bounds(0).Left), 10250, 2);
    EXPECT_NEAR(static_cast<double>(Bounds(0).Right), 30750, 2);
    EXPECT_FALSE(State()["snap"].get<bool>());
}

TEST_F(EditSessionTest, SelectMoveAndResizeByAHandleAreOneUndoStepEach) {
    Do({{"op", "settings"}, {"grid_step", 5}});
    Do({{"op", "tool"}, {"name", "rectangle"}});
    Drag(10, 10, 40, 30);
    Do({{"op", "tool"}, {"name", "select"}});
    Pointer("down", 20, 30);  // on the bottom edge
    Pointer("up", 20, 30);
    ASSERT_EQ(fDoc.Selection().size(), 1u);
    EXPECT_NE(Overlay().find("class=\"handle\""), std::string::npos);
    EXPECT_EQ(State()["selection"]["kind"], "rectangle");

    Drag(20, 30, 31.4, 42.2);  // moved by 11.4, 12.2: the grabbed point snaps to the 5 mm grid
    EXPECT_EQ(Bounds(0), TQVLRect(20000, 20000, 50000, 40000));
    const auto afterMove = fDoc.UndoCount();

    Drag(50, 40, 61, 52);  // the bottom-right corner handle
    EXPECT_EQ(Bounds(0), TQVLRect(20000, 20000, 60000, 50000));
    EXPECT_EQ(fDoc.UndoCount(), afterMove + 1);
    Do({{"op", "command"}, {"name", "undo"}});
    EXPECT_EQ(Bounds(0), TQVLRect(20000, 20000, 50000, 40000));
    Do({{"op", "command"}, {"name", "redo"}});
    EXPECT_EQ(Bounds(0), TQVLRect(20000, 20000, 60000, 50000));
}

TEST_F(EditSessionTest, ADragShowsTheItemWhereItWouldLandBeforeTheButtonComesUp) {
    Do({{"op", "tool"}, {"name", "rectangle"}});
    Drag(10, 10, 40, 30);
    Do({{"op", "tool"}, {"name", "select"}});
    Pointer("down", 10, 20);
    const std::string before = *fSession->Store().Current().Drawing;
    Pointer("move", 15, 20);
    Pointer("move", 20, 20);
    EXPECT_EQ(Bounds(0), TQVLRect(20000, 10000, 50000, 30000));
    EXPECT_NE(*fSession->Store().Current().Drawing, before);
    Pointer("up", 20, 20);
    EXPECT_EQ(Bounds(0), TQVLRect(20000, 10000, 50000, 30000));
}

TEST_F(EditSessionTest, ATextToolTypesOverItsPlaceholderAndShowsACaret) {
    Do({{"op", "tool"}, {"name", "text"}});
    Drag(10, 10, 60, 20);
    ASSERT_EQ(fDoc.GetItemsCount(), 1);
    EXPECT_TRUE(State()["editing_text"].get<bool>());
    EXPECT_EQ(State()["text"], "");
    Type("Hello");
    Type(" wörld");
    EXPECT_NE(Overlay().find("class=\"caret\""), std::string::npos);
    Key("Backspace");
    Key("Enter");
    EXPECT_FALSE(State()["editing_text"].get<bool>());
    EXPECT_EQ(State()["tool"], "text");  // back to the tool the text was made with
    EXPECT_EQ(fDoc.GetItem(0)->WriteJson()["Text"], "Hello wörl");
    Do({{"op", "command"}, {"name", "undo"}});
    EXPECT_NE(fDoc.GetItem(0)->WriteJson()["Text"], "Hello wörl");
}

TEST_F(EditSessionTest, FlowElementsAreLinkedByDraggingBetweenTheirLinkPoints) {
    Do({{"op", "tool"}, {"name", "flow"}, {"shape", "decision"}});
    Drag(10, 10, 40, 30);
    Do({{"op", "tool"}, {"name", "flow"}, {"shape", "process"}});
    Drag(70, 10, 100, 30);
    ASSERT_EQ(fDoc.GetItemsCount(), 2);
    EXPECT_EQ(State()["flow_shape"], "process");
    Do({{"op", "tool"}, {"name", "link"}});
    Drag(40, 20, 70, 20);  // right middle of the first to left middle of the second
    ASSERT_EQ(fDoc.GetItemsCount(), 3);
    const TJSON link = fDoc.GetItem(2)->WriteJson();
    EXPECT_EQ(link["FromID"], fDoc.GetItem(0)->InID()) << link.dump();
    EXPECT_EQ(link["ToID"], fDoc.GetItem(1)->InID()) << link.dump();
}

TEST_F(EditSessionTest, PropertyPanelEditsGoThroughUndo) {
    Do({{"op", "tool"}, {"name", "rectangle"}});
    Drag(10, 10, 40, 30);
    Do({{"op", "tool"}, {"name", "select"}});
    Pointer("down", 10, 20);
    Pointer("up", 10, 20);
    const TJSON props = State()["selection"]["properties"];
    bool colorEditable = false;
    for (const auto& p : props)
        if (p["name"] == "Color") colorEditable = p["editable"].get<bool>() && p["type"] == "color";
    EXPECT_TRUE(colorEditable) << props.dump();
    const TAlphaColor before = TJSONUtils::GetColor(fDoc.GetItem(0)->WriteJson(), "Color");

    Do({{"op", "property"}, {"name", "Color"}, {"value", "#ff0000"}});
    EXPECT_EQ(TJSONUtils::GetColor(fDoc.GetItem(0)->WriteJson(), "Color"), 0xFFFF0000u);
    Do({{"op", "property"}, {"name", "PenWidth"}, {"value", 0.7}});
    EXPECT_DOUBLE_EQ(fDoc.GetItem(0)->WriteJson()["PenWidth"].get<double>(), 0.7);
    Do({{"op", "command"}, {"name", "undo"}});
    Do({{"op", "command"}, {"name", "undo"}});
    EXPECT_EQ(TJSONUtils::GetColor(fDoc.GetItem(0)->WriteJson(), "Color"), before);

    EXPECT_THROW(Do({{"op", "property"}, {"name", "Color"}, {"value", "not a colour"}}),
                 std::invalid_argument);
    EXPECT_THROW(Do({{"op", "property"}, {"name", "Points"}, {"value", 7}}),
                 std::invalid_argument);  // read-only
}

TEST_F(EditSessionTest, ThePersonsUndoTakesBackTheirOwnLastStepNotTheAgents) {
    Do({{"op", "tool"}, {"name", "rectangle"}});
    Drag(10, 10, 40, 30);
    ASSERT_EQ(fDoc.GetItemsCount(), 1);
    // The agent works on the same document through MCP, after the person.
    fServer.SetLabel(&fDoc);
    const TJSON call{{"name", "add_shape"},
                     {"arguments", {{"kind", "text"}, {"x", 60}, {"y", 60}, {"text", "agent"}}}};
    ASSERT_FALSE(fServer.HandleToolsCall(1, &call)["result"].value("isError", false));
    ASSERT_EQ(fDoc.GetItemsCount(), 2);

    Do({{"op", "command"}, {"name", "undo"}});
    ASSERT_EQ(fDoc.GetItemsCount(), 1);
    EXPECT_EQ(fDoc.GetItem(0)->ItemType(), TQVLItemType::itText);  // the agent's text stays
    Do({{"op", "command"}, {"name", "undo"}});
    EXPECT_EQ(fDoc.GetItemsCount(), 1);
    EXPECT_EQ(State()["message"], "Nothing of yours to undo.");
    Do({{"op", "command"}, {"name", "redo"}});
    EXPECT_EQ(fDoc.GetItemsCount(), 2);
}

TEST_F(EditSessionTest, ThePersonsUndoStopsWhereTheAgentChangedTheSameItem) {
    Do({{"op", "tool"}, {"name", "rectangle"}});
    Drag(10, 10, 40, 30);
    fServer.SetLabel(&fDoc);
    const TJSON call{{"name", "modify_item"}, {"arguments", {{"index", 0}, {"color", "#FF0000"}}}};
    ASSERT_FALSE(fServer.HandleToolsCall(1, &call)["result"].value("isError", false));
    Do({{"op", "command"}, {"name", "undo"}});
    EXPECT_EQ(fDoc.GetItemsCount(), 1);  // the agent's colour would be lost with the rectangle
    EXPECT_NE(State()["message"].get<std::string>().find("agent"), std::string::npos);
}

TEST_F(EditSessionTest, ClipboardDeleteAndZOrder) {
    Do({{"op", "tool"}, {"name", "rectangle"}});
    Drag(10, 10, 40, 30);
    Drag(20, 20, 50, 40);
    Do({{"op", "tool"}, {"name", "select"}});
    Pointer("down", 10, 15);
    Pointer("up", 10, 15);
    const auto first = fDoc.GetItem(0);
    Do({{"op", "command"}, {"name", "front"}});
    EXPECT_EQ(fDoc.GetItem(1), first);
    Do({{"op", "command"}, {"name", "copy"}});
    Do({{"op", "command"}, {"name", "paste"}});
    EXPECT_EQ(fDoc.GetItemsCount(), 3);
    Do({{"op", "command"}, {"name", "delete"}});
    EXPECT_EQ(fDoc.GetItemsCount(), 2);
    Do({{"op", "command"}, {"name", "cut"}});  // nothing selected after the delete
    EXPECT_EQ(fDoc.GetItemsCount(), 2);
}

TEST_F(EditSessionTest, LayersAndPageSettings) {
    Do({{"op", "layer"}, {"action", "add"}});
    Do({{"op", "layer"}, {"action", "rename"}, {"index", 2}, {"name", "Notes"}});
    Do({{"op", "layer"}, {"action", "locked"}, {"index", 2}, {"value", true}});
    Do({{"op", "layer"}, {"action", "up"}, {"index", 2}});
    TJSON layers = State()["layers"];
    ASSERT_EQ(layers.size(), 2u);
    EXPECT_EQ(layers[0]["name"], "Notes");
    EXPECT_TRUE(layers[0]["locked"].get<bool>());
    EXPECT_THROW(Do({{"op", "layer"}, {"action", "up"}, {"index", 1}}), std::invalid_argument);
    EXPECT_THROW(Do({{"op", "layer"}, {"action", "rename"}, {"index", 9}, {"name", "x"}}),
                 std::invalid_argument);

    Do({{"op", "page"}, {"width", 210}, {"height", 297}, {"mode", "drawing"}});
    const TJSON page = State()["page"];
    EXPECT_DOUBLE_EQ(page["width"].get<double>(), 210);
    EXPECT_EQ(page["mode"], "drawing");
    EXPECT_THROW(Do({{"op", "page"}, {"scale", 0.5}}), std::invalid_argument);
    EXPECT_THROW(Do({{"op", "page"}, {"units", "furlong"}}), std::invalid_argument);
}

TEST_F(EditSessionTest, SaveOpenAndImportStayInsideTheFilesFolder) {
    Do({{"op", "tool"}, {"name", "rectangle"}});
    Drag(10, 10, 40, 30);
    Do({{"op", "file"}, {"action", "save"}});
    ASSERT_TRUE(fs::exists(fRoot / "drawing.json"));
    EXPECT_FALSE(State()["modified"].get<bool>());
    EXPECT_THROW(Do({{"op", "file"}, {"action", "save"}, {"path", "../escape.json"}}), std::invalid_argument);
    Do({{"op", "file"}, {"action", "export"}, {"format", "svg"}, {"path", "drawing.svg"}});
    EXPECT_TRUE(fs::exists(fRoot / "drawing.svg"));
    EXPECT_EQ(Do({{"op", "file"}, {"action", "list"}})["files"], TJSON::array({"drawing.json"}));

    try {
        Do({{"op", "file"},
            {"action", "import"},
            {"text", "sequenceDiagram\n  A->>: hi\n"},
            {"format", "mermaid"}});
        ADD_FAILURE() << "a broken diagram was imported";
    } catch (const std::invalid_argument& e) {
        const TJSON error = TJSON::parse(e.what(), nullptr, false);
        ASSERT_TRUE(error.is_object()) << e.what();
        EXPECT_EQ(error["diagnostics"].back()["code"], "DIAGRAM_EMPTY_RESULT") << e.what();
    }
    RegisterDiagramLayout();
    const TJSON imported = Do({{"op", "file"}, {"action", "import"}, {"text", "flowchart LR\n  A --> B\n"}});
    EXPECT_EQ(imported["result"]["structuredContent"]["items_created"], 3);
    Do({{"op", "tool"}, {"name", "ellipse"}});
    Drag(50, 10, 60, 20);
    Do({{"op", "file"}, {"action", "open"}, {"path", "drawing.json"}});
    EXPECT_EQ(fDoc.GetItemsCount(), 1);
}

TEST_F(EditSessionTest, BadRequestsAreRefusedWithAReason) {
    EXPECT_THROW(Do({{"op", "fly"}}), std::invalid_argument);
    EXPECT_THROW(Do(TJSON::array()), std::invalid_argument);
    EXPECT_THROW(Do({{"op", "tool"}, {"name", "lasso"}}), std::invalid_argument);
    EXPECT_THROW(Do({{"op", "tool"}, {"name", "flow"}, {"shape", "cloud9"}}), std::invalid_argument);
    EXPECT_THROW(Do({{"op", "pointer"}, {"kind", "down"}, {"x", "a"}, {"y", 1}}), std::invalid_argument);
    EXPECT_THROW(Do({{"op", "key"}, {"key", "F13"}}), std::invalid_argument);
    EXPECT_THROW(Do({{"op", "settings"}, {"grid_step", 0}}), std::invalid_argument);
    EXPECT_EQ(fDoc.GetItemsCount(), 0);
}

TEST(EditFrameStoreTest, TheDrawingVersionMovesOnlyWithTheDrawing) {
    Host::TEditFrameStore store;
    EXPECT_TRUE(store.Publish("<svg/>", "<g/>", "{}"));
    EXPECT_FALSE(store.Publish("<svg/>", "<g/>", "{}"));
    EXPECT_TRUE(store.Publish("<svg/>", "<g><rect/></g>", "{}"));
    auto frame = store.Current();
    EXPECT_EQ(frame.Version, 2u);
    EXPECT_EQ(frame.DrawingVersion, 1u);
    EXPECT_TRUE(store.Publish("<svg><rect/></svg>", "<g><rect/></g>", "{}"));
    frame = store.Current();
    EXPECT_EQ(frame.Version, 3u);
    EXPECT_EQ(frame.DrawingVersion, 2u);
    EXPECT_EQ(store.WaitNewer(1, std::chrono::milliseconds(1))->Version, 3u);
    EXPECT_FALSE(store.WaitNewer(3, std::chrono::milliseconds(20)).has_value());
    store.Close();
    EXPECT_FALSE(store.WaitNewer(1, std::chrono::seconds(5)).has_value());
}

}  // namespace
}  // namespace Orvex::Testing
