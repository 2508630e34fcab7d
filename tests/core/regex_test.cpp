#include "orvex/core/regex.h"

#include <gtest/gtest.h>

#include <string>

using namespace Qvl::Types;

TEST(Regex, CapturesAreViewsIntoTheSubject) {
    static const TRegex re(R"((\w+)\s*-->\s*(?<to>\w+))");
    TRegexMatch m;
    const std::string line = "  A --> B";
    ASSERT_TRUE(re.Match(line, m));
    EXPECT_EQ(m.Group(1), "A");
    EXPECT_EQ(m.Named("to"), "B");
    EXPECT_EQ(m.Start(0), 2u);
    EXPECT_EQ(m.End(0), line.size());
    EXPECT_EQ(m.Group(1).data(), line.data() + 2);
}
