// Every checked-in seed and every past fuzzer finding, run through the fuzz targets' bodies: a finding
// that comes back crashes this test in any build, and the sanitizer build shows what it broke.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/targets/fuzz_targets.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesUnder(const fs::path& aDir) {
    std::vector<fs::path> files;
    if (!fs::is_directory(aDir)) return files;
    for (const auto& entry : fs::directory_iterator(aDir))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<fs::path> TargetFolders(const char* aRoot) {
    std::vector<fs::path> folders;
    const fs::path root = fs::path(ORVEX_SOURCE_DIR) / "fuzz" / aRoot;
    if (!fs::is_directory(root)) return folders;
    for (const auto& entry : fs::directory_iterator(root))
        if (entry.is_directory()) folders.push_back(entry.path());
    std::sort(folders.begin(), folders.end());
    return folders;
}

std::string ReadBytes(const fs::path& aFile) {
    std::ifstream in(aFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Returns the number of files replayed; a folder named after no target is a failure, not a silent skip.
int Replay(const char* aRoot) {
    int replayed = 0;
    for (const auto& folder : TargetFolders(aRoot)) {
        const auto entry = Orvex::Fuzz::FuzzEntryByName(folder.filename().string());
        EXPECT_NE(entry, nullptr) << "no fuzz target is named " << folder.filename();
        if (entry == nullptr) continue;
        for (const auto& file : FilesUnder(folder)) {
            SCOPED_TRACE(file.string());
            const std::string bytes = ReadBytes(file);
            EXPECT_EQ(entry(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()), 0);
            ++replayed;
        }
    }
    return replayed;
}

TEST(FuzzReplay, SeedCorporaRunClean) {
    EXPECT_GT(Replay("corpus"), 20);
}

TEST(FuzzReplay, PastFindingsStayFixed) {
    Replay("regressions");
}

// The empty input and a lone byte reach every target's early exits, which seeds rarely do.
TEST(FuzzReplay, EmptyAndTinyInputs) {
    for (const char* name : {"mermaid", "plantuml", "color", "drawing_json", "mcp_request", "rich_text"}) {
        SCOPED_TRACE(name);
        const auto entry = Orvex::Fuzz::FuzzEntryByName(name);
        ASSERT_NE(entry, nullptr);
        const std::uint8_t bytes[] = {'1', '{', 0xFF};
        for (std::size_t n = 0; n <= sizeof bytes; ++n) EXPECT_EQ(entry(bytes, n), 0);
    }
}

}  // namespace
