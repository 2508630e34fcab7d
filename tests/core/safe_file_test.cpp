// Whole-file writes: the old file stays whole whatever happens to the writer, and targets that are not a
// plain single-link file are refused without blocking.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "orvex/core/safe_file.h"

namespace Orvex {
namespace {

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& aFile) {
    std::ifstream in(aFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

class SafeFileTest : public ::testing::Test {
  protected:
    void SetUp() override {
        fDir = fs::temp_directory_path() / ("orvex_safe_" + std::to_string(::getpid()) + "_" +
                                            ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(fDir);
        fs::create_directories(fDir);
        fTarget = fDir / "drawing.json";
        std::ofstream(fTarget, std::ios::binary) << "old content, whole";
    }
    void TearDown() override { fs::remove_all(fDir); }

    // Only the target is left in the folder: no temporary file survives a write, failed or not.
    void ExpectOnlyTarget() const {
        int entries = 0;
        for (const auto& entry : fs::directory_iterator(fDir)) {
            ++entries;
            EXPECT_EQ(entry.path().filename(), fTarget.filename());
        }
        EXPECT_EQ(entries, 1);
    }

    fs::path fDir;
    fs::path fTarget;
};

TEST_F(SafeFileTest, ReplacesTheFileAndKeepsItsPermissions) {
    fs::permissions(fTarget, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    ASSERT_TRUE(WriteFileAtomic(fTarget.string(), "new content"));
    EXPECT_EQ(ReadAll(fTarget), "new content");
    EXPECT_EQ(fs::status(fTarget).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    ExpectOnlyTarget();

    const fs::path fresh = fDir / "fresh.svg";
    ASSERT_TRUE(WriteFileAtomic(fresh.string(), "<svg/>"));
    EXPECT_EQ(ReadAll(fresh), "<svg/>");
}

TEST_F(SafeFileTest, AWriterThatFailsMidwayLeavesTheOldFileWhole) {
    const auto halfThenFail = [](const TQVLFileSink& aSink) { return aSink("new, but only ha") && false; };
    const auto halfThenThrow = [](const TQVLFileSink& aSink) -> bool {
        (void)aSink("new, but only ha");
        throw std::runtime_error("painting failed");
    };
    EXPECT_FALSE(WriteFileAtomic(fTarget.string(), halfThenFail));
    EXPECT_FALSE(WriteFileAtomic(fTarget.string(), halfThenThrow));
    EXPECT_EQ(ReadAll(fTarget), "old content, whole");
    ExpectOnlyTarget();
}

TEST_F(SafeFileTest, AWriterKilledMidwayLeavesTheOldFileWhole) {
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // The child writes half of a large new content, then dies as a SIGKILL would leave it.
        (void)WriteFileAtomic(fTarget.string(), [](const TQVLFileSink& aSink) {
            (void)aSink(std::string(4 << 20, 'x'));
            ::raise(SIGKILL);
            return true;
        });
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(ReadAll(fTarget), "old content, whole");
}

TEST_F(SafeFileTest, RefusesLinksFifosAndFoldersAtOnce) {
    const fs::path outside = fDir / "outside.json";
    std::ofstream(outside) << "outside";
    const fs::path hard = fDir / "hard.json";
    fs::create_hard_link(outside, hard);
    const fs::path soft = fDir / "soft.json";
    fs::create_symlink(outside, soft);
    const fs::path fifo = fDir / "pipe.json";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const fs::path folder = fDir / "folder.json";
    fs::create_directory(folder);

    struct TCase {
        fs::path Target;
        std::string Why;
    };
    const auto started = std::chrono::steady_clock::now();
    for (const TCase& c : {TCase{hard, "a file with other hard links"}, TCase{soft, "a symbolic link"},
                           TCase{fifo, "not a regular file"}, TCase{folder, "not a regular file"}}) {
        SCOPED_TRACE(c.Target.string());
        const auto result = WriteFileAtomic(c.Target.string(), "replaced");
        EXPECT_FALSE(result);
        EXPECT_EQ(result.Code, QVLErr::kWrite);
        EXPECT_EQ(result.Message, c.Target.string() + ": cannot be written (" + c.Why + ")");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(2));
    EXPECT_EQ(ReadAll(outside), "outside");
    EXPECT_EQ(fs::hard_link_count(outside), 2u);
    EXPECT_TRUE(fs::is_symlink(soft));
    EXPECT_TRUE(fs::is_fifo(fifo));
    EXPECT_FALSE(WriteFileAtomic((fDir / "no-such-folder" / "x.json").string(), "x"));
}

TEST_F(SafeFileTest, ReadsOnlyRegularFilesWithinTheLimit) {
    std::string text;
    ASSERT_TRUE(ReadRegularFile(fTarget.string(), 1024, text));
    EXPECT_EQ(text, "old content, whole");

    const auto tooLarge = ReadRegularFile(fTarget.string(), 4, text);
    EXPECT_FALSE(tooLarge);
    EXPECT_EQ(tooLarge.Code, QVLErr::kLimit);
    EXPECT_EQ(tooLarge.Message, fTarget.string() + ": cannot be read (larger than 4 bytes)");

    // A FIFO without a writer would block a plain open; here it is refused at once.
    const fs::path fifo = fDir / "pipe.json";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const auto piped = ReadRegularFile(fifo.string(), 1024, text);
    EXPECT_FALSE(piped);
    EXPECT_EQ(piped.Code, QVLErr::kNoFile);
    EXPECT_EQ(piped.Message, fifo.string() + ": cannot be read (not a regular file)");
    EXPECT_FALSE(ReadRegularFile((fDir / "missing.json").string(), 1024, text));
}

}  // namespace
}  // namespace Orvex
