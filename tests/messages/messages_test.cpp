#include "orvex/messages/messages.h"

#include <gtest/gtest.h>

#include <unistd.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

using Orvex::TORXMsg;

namespace {

std::string ReadAll(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Every test leaves the built-ins behind, so suites that read default names are unaffected.
class Messages : public testing::Test {
  protected:
    void SetUp() override {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        fDir = std::filesystem::temp_directory_path() /
               (std::string("orvex_messages_") + info->name() + "_" + std::to_string(getpid()));
        std::filesystem::create_directories(fDir);
        TORXMsg::LoadResources("");
    }
    void TearDown() override {
        TORXMsg::LoadResources("");
        std::filesystem::remove_all(fDir);
    }

    std::string Write(const std::string& name, const std::string& content) const {
        const auto path = fDir / name;
        std::ofstream(path, std::ios::binary) << content;
        return path.string();
    }
    std::string PathOf(const std::string& name) const { return (fDir / name).string(); }

    std::filesystem::path fDir;
};

TEST_F(Messages, BuiltinGroupsHaveTheirCounts) {
    struct Case {
        std::string_view prefix, section;
        std::size_t count;
    };
    const Case expected[] = {{"err", "Error", 16},       {"inf", "Info", 5},     {"cmd", "Commands", 0},
                             {"pro", "Properties", 166}, {"dia", "Dialogs", 76}, {"edi", "Editor", 34},
                             {"act", "Actions", 66},     {"lis", "List", 57}};
    const auto groups = TORXMsg::GetGroups();
    ASSERT_EQ(groups.size(), std::size(expected));
    std::size_t total = 0;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        SCOPED_TRACE(expected[i].prefix);
        EXPECT_EQ(groups[i].Prefix, expected[i].prefix);
        EXPECT_EQ(groups[i].Section, expected[i].section);
        EXPECT_EQ(groups[i].Count, expected[i].count);
        total += groups[i].Count;
    }
    EXPECT_EQ(total, 420u);
}

TEST_F(Messages, QuotedBuiltinTexts) {
    using Getter = std::string (*)(std::string_view);
    struct Case {
        Getter get;
        std::string_view name, text;
    };
    const Case cases[] = {
        {TORXMsg::GetErrorValue, "EmptyText", "The text cannot be empty"},
        {TORXMsg::GetErrorValue, "EmptyID", "The ID cannot be empty"},
        {TORXMsg::GetErrorValue, "RepeatID", "The ID must be unique"},
        {TORXMsg::GetErrorValue, "RepeatName", "The name must be unique"},
        {TORXMsg::GetErrorValue, "SameName", "The name is already assigned"},
        {TORXMsg::GetErrorValue, "OddNumber", "Need odd number of values"},
        {TORXMsg::GetErrorValue, "EvenNumber", "Need even number of values"},
        {TORXMsg::GetErrorValue, "Polygon", "Polygon needs at leat three points"},
        {TORXMsg::GetErrorValue, "LimitCounters", "The maximum number of counters is five"},
        {TORXMsg::GetErrorValue, "NoJson", "Not a valid JSON"},
        {TORXMsg::GetErrorValue, "NoFile", "File does not exist"},
        {TORXMsg::GetErrorValue, "NoSep", "Need to assign the csv separator"},
        {TORXMsg::GetErrorValue, "DelDefStyle", "Default style cannot be removed"},
        {TORXMsg::GetErrorValue, "LocNotFound", "Location not found"},
        {TORXMsg::GetErrorValue, "Geocoding", "Geocoding error"},
        {TORXMsg::GetInfoValue, "LabelName", "My label"},
        {TORXMsg::GetInfoValue, "DrawingName", "My drawing"},
        {TORXMsg::GetInfoValue, "NewLayer", "New Layer"},
        {TORXMsg::GetInfoValue, "BoxLayer", "Box Layer"},
        {TORXMsg::GetPropValue, "Label", "Label properties"},
        {TORXMsg::GetPropValue, "Drawing", "Drawing properties"},
        {TORXMsg::GetPropValue, "DimStyles", "Dimension styles"},
        {TORXMsg::GetPropValue, "Default", "Default"},
        // One caption per remaining group, to catch a group filed under the wrong prefix.
        {TORXMsg::GetPropValue, "Radio", "Radius"},
        {TORXMsg::GetListValue, "FilledArrow", "Filled arrow"},
        {TORXMsg::GetDialogsValue, "Ok", "OK"},
        {TORXMsg::GetEditorValue, "OrtoLines", "Orthogonal lines"},
        {TORXMsg::GetActionsValue, "DrawCircle3P", "Circle by three points"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.get(c.name), c.text);
    }
}

TEST_F(Messages, UnknownKeysAreNotFound) {
    EXPECT_EQ(TORXMsg::GetErrorValue("NoSuchError"), "not found");
    EXPECT_EQ(TORXMsg::GetErrorValue(""), "not found");
    EXPECT_EQ(TORXMsg::GetPropValue("default"), "not found");  // names are case-sensitive
    EXPECT_EQ(TORXMsg::GetListValue("Default"), "not found");  // a name belongs to its own group only
    EXPECT_EQ(TORXMsg::GetCommandValue("Open"), "not found");  // commands come only from a language file
}

TEST_F(Messages, LanguageFileOverridesOnlyWhatItNames) {
    const auto file = Write("es.ini",
                            "[language]\nname=spanish\nDefault=Wrong\n"
                            "; a comment\n"
                            "[Properties]\nDefault=Standard\n"
                            "[Info]\n  NewLayer = Nueva capa  \n"
                            "[Commands]\nOpen=Abrir\n"
                            "[Unknown]\nRadio=Wrong\n");
    TORXMsg::LoadResources(file);
    EXPECT_EQ(TORXMsg::GetPropValue("Default"), "Standard");
    EXPECT_EQ(TORXMsg::GetInfoValue("NewLayer"), "Nueva capa");
    EXPECT_EQ(TORXMsg::GetCommandValue("Open"), "Abrir");
    EXPECT_EQ(TORXMsg::GetPropValue("Radio"), "Radius");
    EXPECT_EQ(TORXMsg::GetInfoValue("BoxLayer"), "Box Layer");
    EXPECT_EQ(TORXMsg::GetErrorValue("Polygon"), "Polygon needs at leat three points");
    EXPECT_EQ(TORXMsg::GetPropValue("name"), "not found");  // the language section is not read
}

TEST_F(Messages, ByteOrderMarkIsSkipped) {
    // With the mark left in place the first header would not be recognised and its entries would be lost.
    TORXMsg::LoadResources(Write("bom.ini", "\xEF\xBB\xBF[Error]\r\nNoFile=Datei fehlt\r\n"));
    EXPECT_EQ(TORXMsg::GetErrorValue("NoFile"), "Datei fehlt");
}

TEST_F(Messages, ValuesAreTakenLiterally) {
    const std::string longText(500, 'x');
    TORXMsg::LoadResources(Write("literal.ini",
                                 "[Dialogs]\nSeparator=Separator ; or , = choose one # here\n"
                                 "Quotes=\"quoted\"\nLong=" +
                                     longText +
                                     "\n"
                                     "Empty=\n"
                                     "  Indented=its own entry\n"
                                     "Add=Añadir ✓\n"));
    EXPECT_EQ(TORXMsg::GetDialogsValue("Separator"), "Separator ; or , = choose one # here");
    EXPECT_EQ(TORXMsg::GetDialogsValue("Quotes"), "\"quoted\"");
    EXPECT_EQ(TORXMsg::GetDialogsValue("Long"), longText);
    EXPECT_EQ(TORXMsg::GetDialogsValue("Empty"), "");
    EXPECT_EQ(TORXMsg::GetDialogsValue("Indented"), "its own entry");
    EXPECT_EQ(TORXMsg::GetDialogsValue("Add"), "Añadir ✓");
}

TEST_F(Messages, MissingFileRestoresBuiltins) {
    TORXMsg::LoadResources(Write("de.ini", "[Properties]\nDefault=Standard\n[Commands]\nOpen=Öffnen\n"));
    ASSERT_EQ(TORXMsg::GetPropValue("Default"), "Standard");
    TORXMsg::LoadResources(PathOf("missing.ini"));
    EXPECT_EQ(TORXMsg::GetPropValue("Default"), "Default");
    EXPECT_EQ(TORXMsg::GetCommandValue("Open"), "not found");
    EXPECT_EQ(TORXMsg::GetGroups()[2].Count, 0u);
}

TEST_F(Messages, SavedBuiltinsListLanguageThenGroupsInStoredOrder) {
    const auto file = PathOf("en.ini");
    ASSERT_TRUE(TORXMsg::SaveToIniFile(file));
    const auto text = ReadAll(file);
    EXPECT_EQ(text.rfind("[language]\nname=english\n\n[Error]\nEmptyText=The text cannot be empty\n", 0), 0u);
    std::vector<std::size_t> positions;
    for (const char* header :
         {"[Error]", "[Info]", "[Properties]", "[List]", "[Dialogs]", "[Editor]", "[Actions]"}) {
        SCOPED_TRACE(header);
        const auto at = text.find(std::string("\n") + header + "\n");
        ASSERT_NE(at, std::string::npos);
        EXPECT_EQ(text.find(std::string("\n") + header + "\n", at + 1),
                  std::string::npos);  // one header per group
        if (!positions.empty()) {
            EXPECT_GT(at, positions.back());
        }
        positions.push_back(at);
    }
    EXPECT_EQ(text.find("[Commands]"), std::string::npos);
}

TEST_F(Messages, SaveAndReloadReproducesEveryText) {
    // Overrides that an INI reader could mangle, plus entries the built-ins do not have.
    TORXMsg::LoadResources(Write("tricky.ini",
                                 "[Actions]\nMove=Déplacer ; vite\nUnknownAction=a=b=c\n"
                                 "[Commands]\nOpen=#Ouvrir\n[Properties]\nDefault=Défaut\n"));
    const auto first = PathOf("first.ini");
    ASSERT_TRUE(TORXMsg::SaveToIniFile(first));
    TORXMsg::LoadResources("");
    TORXMsg::LoadResources(first);
    const auto second = PathOf("second.ini");
    ASSERT_TRUE(TORXMsg::SaveToIniFile(second));
    // The file holds every entry in stored order, so equal bytes mean every text and its place survived.
    EXPECT_EQ(ReadAll(first), ReadAll(second));
    EXPECT_EQ(TORXMsg::GetActionsValue("Move"), "Déplacer ; vite");
    EXPECT_EQ(TORXMsg::GetActionsValue("UnknownAction"), "a=b=c");
    EXPECT_EQ(TORXMsg::GetCommandValue("Open"), "#Ouvrir");
    EXPECT_EQ(TORXMsg::GetPropValue("Default"), "Défaut");
    // Groups a file added come after the built-in ones.
    const auto text = ReadAll(second);
    EXPECT_GT(text.find("\n[Commands]\n"), text.find("\n[Actions]\n"));
}

TEST_F(Messages, SaveFailsWhenTheFileCannotBeWritten) {
    EXPECT_FALSE(TORXMsg::SaveToIniFile(PathOf("no_such_dir/en.ini")));
    EXPECT_FALSE(TORXMsg::SaveToIniFile(fDir.string()));
}

}  // namespace
