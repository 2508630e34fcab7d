#include <gtest/gtest.h>

#include <stdexcept>

#include "orvex/core/types.h"
#include "orvex/io/json.h"
#include "orvex/io/json_color.h"

using namespace Orvex;

TEST(Colors, PackingAndPlatformColours) {
    EXPECT_EQ(AlphaColor(0x12, 0x34, 0x56, 0x78), 0x78123456u);
    EXPECT_EQ(ColorToAlphaColor(0x563412), 0xFF123456u);  // the platform keeps red in the low byte
    EXPECT_EQ(AlphaColorToColor(0x80123456), 0x563412u);
    EXPECT_EQ(ColorToTAlphaColor(0x0000FF, 0x40), 0x40FF0000u);
    EXPECT_EQ(AlphaColorToHex(0x80FF0000), "#FF000080");
    EXPECT_EQ(AlphaColorToHex(0xFF0A0B0C), "#0A0B0CFF");
}

TEST(Colors, TryParseHashForms) {
    struct Case {
        const char* text;
        bool ok;
        TAlphaColor color;
    };
    const Case cases[] = {
        {"#FF0000", true, 0xFFFF0000},
        {"  #00ff00 ", true, 0xFF00FF00},
        {"#FF000080", true, 0x80FF0000},
        {"#FFF", false, 0},
        {"#FF00000", false, 0},
        {"#FF0000800", false, 0},
        {"#GG0000", false, 0},
        {"", false, 0},
        {"   ", false, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        TAlphaColor out = 0x12345678;
        EXPECT_EQ(TryParseColor(c.text, out), c.ok);
        EXPECT_EQ(out, c.color);
    }
}

TEST(Colors, TryParseNamesAndNumbers) {
    struct Case {
        const char* text;
        TAlphaColor color;
    };
    const Case cases[] = {
        {"red", 0xFFFF0000},
        {"claRed", 0xFFFF0000},
        {"CLAREBECCAPURPLE", 0xFF663399},
        {"LightGoldenrodYellow", 0xFFFAFAD2},
        {"grey", 0xFF808080},
        {"gray", 0xFF808080},
        {"claNull", 0x00000000},
        {"$80FF0000", 0x80FF0000},
        {"0xFF00FF00", 0xFF00FF00},
        {"4278190335", 0xFF0000FF},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        TAlphaColor out = 0;
        EXPECT_TRUE(TryParseColor(c.text, out));
        EXPECT_EQ(out, c.color);
    }
    TAlphaColor out = 1;
    EXPECT_FALSE(TryParseColor("notacolour", out));
    EXPECT_EQ(out, 0u);
    EXPECT_EQ(ParseColor("blue"), 0xFF0000FFu);
    EXPECT_EQ(ParseColor("nonsense"), 0u);
}

TEST(Colors, HexToAlphaColorPutsAlphaFirst) {
    // The same eight digits mean different colours to the two readers: both orders exist on purpose.
    EXPECT_EQ(ParseColor("#FF000080"), 0x80FF0000u);
    EXPECT_EQ(HexToTAlphaColor("#FF000080"), 0xFF000080u);
    EXPECT_EQ(HexToTAlphaColor("336699"), 0xFF336699u);
    EXPECT_EQ(HexToTAlphaColor("##33#6699"), 0xFF336699u);
    try {
        HexToTAlphaColor("#12345");
        FAIL() << "a five-digit colour was accepted";
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "Formato de color inválido. Use #RRGGBB o #AARRGGBB");
    }
    EXPECT_THROW(HexToTAlphaColor("#12345Z"), std::invalid_argument);
}

TEST(Colors, JsonForms) {
    TJSON hex = TJSON::object();
    ColorHex(hex, 0x80FF0000);
    EXPECT_EQ(hex.dump(), R"({"Color":"#FF000080"})");
    TJSON rgba = TJSON::object();
    ColorRGBA(rgba, 0x80102030);
    EXPECT_EQ(rgba.dump(), R"({"R":16,"G":32,"B":48,"A":128})");

    EXPECT_EQ(ParseJsonColor(hex), 0x80FF0000u);
    EXPECT_EQ(ParseJsonColor(rgba), 0x80102030u);
    EXPECT_EQ(ParseJsonColor(TJSON::parse(R"({"R":1,"G":2,"B":3})")), 0xFF010203u);
    EXPECT_EQ(ParseJsonColor(TJSON::parse(R"({"R":300,"G":-5,"B":"x"})")), 0xFFFF0000u);
    EXPECT_EQ(ParseJsonColor(TJSON::parse(R"({"G":2})")), 0xFFFFFFFFu);
    EXPECT_EQ(ParseJsonColor(TJSON::parse(R"({"Color":"bogus"})")), 0u);
}
