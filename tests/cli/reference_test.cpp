#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

std::string RunCli(const std::string& arguments) {
    std::string output;
    FILE* pipe = popen((std::string("\"") + ORVEX_CLI_PATH + "\" " + arguments).c_str(), "r");
    if (!pipe) return output;
    char buffer[4096];
    while (const auto read = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, read);
    pclose(pipe);
    return output;
}

TEST(ReferenceCommand, ListsMessageGroupsWithTheirSections) {
    const auto output = RunCli("reference");
    EXPECT_NE(output.find("Message groups"), std::string::npos);
    for (const char* row : {"err    Error             16", "cmd    Commands           0",
                            "pro    Properties       166", "lis    List              57"}) {
        SCOPED_TRACE(row);
        EXPECT_NE(output.find(row), std::string::npos);
    }
}

}  // namespace
