#include "orvex/core/regex.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <string>

using namespace Qvl::Types;

TEST(Regex, CapturesAreViewsIntoTheSubject) {
    static const TRegex re(R"((\w+)\s*-->\s*(?<to>\w+))");
    TRegexMatch m;
    const std::string line = "  A --> B";
    ASSERT_TRUE(re.Match(line, m));
    EXPECT_EQ(m.Group(1), "A");
    EXPECT_EQ(m.Named("to"), "B");
    EXPECT_TRUE(m.MatchedNamed("to"));
    EXPECT_FALSE(m.MatchedNamed("nope"));
    EXPECT_EQ(m.Start(0), 2u);
    EXPECT_EQ(m.End(0), line.size());
    EXPECT_EQ(m.Group(1).data(), line.data() + 2);
    EXPECT_EQ(re.CaptureCount(), 2u);
    EXPECT_EQ(re.GroupNumber("to"), 2);
}

TEST(Regex, UnsetGroupsAreEmptyAndReported) {
    static const TRegex re(R"(a(b)?(c))");
    TRegexMatch m;
    ASSERT_TRUE(re.Match("ac", m));
    EXPECT_FALSE(m.Matched(1));
    EXPECT_EQ(m.Group(1), "");
    EXPECT_TRUE(m.Matched(2));
    EXPECT_FALSE(m.Matched(7));
}

TEST(Regex, CaselessAndUnicodeAware) {
    static const TRegex keyword(R"(^\s*flowchart\b)", {TRegexFlag::rfCaseless});
    EXPECT_TRUE(keyword.Match("  FlowChart TD"));
    EXPECT_FALSE(keyword.Match("flowcharts"));
    static const TRegex word(R"(^\w+$)");
    EXPECT_TRUE(word.Match("Größe"));  // \w covers letters beyond ASCII
    static const TRegex caseless(R"(^ÄBC$)", {TRegexFlag::rfCaseless});
    EXPECT_TRUE(caseless.Match("äbc"));
}

TEST(Regex, MatchAtIsAnchoredAtTheOffset) {
    static const TRegex re(R"(\d+)");
    TRegexMatch m;
    const std::string text = "ab12cd345";
    EXPECT_FALSE(re.MatchAt(text, 0, m));
    ASSERT_TRUE(re.MatchAt(text, 2, m));
    EXPECT_EQ(m.Group(0), "12");
    ASSERT_TRUE(re.Match(text, m, 4));
    EXPECT_EQ(m.Group(0), "345");
    EXPECT_FALSE(re.Match(text, text.size() + 1));
}

TEST(Regex, MatchAllStepsOverEmptyMatches) {
    static const TRegex digits(R"(\d+)");
    const auto all = digits.MatchAll("a1b22c333");
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[2].Group(0), "333");
    static const TRegex empty(R"(x*)");
    EXPECT_EQ(empty.MatchAll("ab").size(), 3u);  // before a, before b, at the end
    EXPECT_EQ(empty.MatchAll("é").size(), 2u);   // never inside a character
}

TEST(Regex, InvalidUtf8AndNulBytesAreJustBytes) {
    static const TRegex re(R"(B(\w*)C)");
    const std::string bad = std::string("A\xFF\xFE") + "B" + std::string("x\0y", 3) + "BzzC";
    TRegexMatch m;
    ASSERT_TRUE(re.Match(bad, m));
    EXPECT_EQ(m.Group(1), "zz");
}

TEST(Regex, RunawayBacktrackingGivesUpInsteadOfHanging) {
    static const TRegex evil(R"(^(a+)+$)");
    const std::string subject = std::string(5000, 'a') + "!";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(evil.Match(subject));
    // Generous: an unbounded match would run for longer than the universe has existed.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(Regex, BadPatternThrowsWithItsPosition) {
    try {
        TRegex broken("(unclosed");
        FAIL() << "compiled an unbalanced pattern";
    } catch (const std::invalid_argument& e) {
        EXPECT_NE(std::string(e.what()).find("(unclosed"), std::string::npos);
    }
}
