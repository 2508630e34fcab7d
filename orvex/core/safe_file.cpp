#include "orvex/core/safe_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <string>

namespace Orvex {

namespace {

namespace fs = std::filesystem;

// Closes a descriptor on every way out.
class TFd {
  public:
    explicit TFd(int aFd) : fFd(aFd) {}
    ~TFd() { Close(); }
    TFd(const TFd&) = delete;
    TFd& operator=(const TFd&) = delete;
    int Get() const { return fFd; }
    bool Close() {
        if (fFd < 0) return true;
        const int fd = fFd;
        fFd = -1;
        return ::close(fd) == 0;
    }

  private:
    int fFd;
};

TQVLSafeFileResult Refused(const std::string& aFileName, std::string_view aWhy) {
    std::string message = aFileName + ": cannot be written";
    if (!aWhy.empty()) message.append(" (").append(aWhy).append(")");
    return TQVLSafeFileResult::Failure(QVLErr::kWrite, std::move(message));
}

// What stands at the target now. Opening with O_PATH never follows the last link, never blocks on a FIFO
// and needs no read permission; fstat then tells what the entry is.
struct TTargetCheck {
    bool Exists = false;
    mode_t Mode = 0;
    std::string Refusal;  // empty when the target may be replaced
};

TTargetCheck CheckTarget(const std::string& aFileName) {
    TTargetCheck check;
    const TFd fd(::open(aFileName.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (fd.Get() < 0) {
        if (errno != ENOENT) check.Refusal = "cannot be examined";
        return check;
    }
    struct stat st {};
    if (::fstat(fd.Get(), &st) != 0) {
        check.Refusal = "cannot be examined";
        return check;
    }
    check.Exists = true;
    check.Mode = st.st_mode & 07777;
    if (S_ISLNK(st.st_mode))
        check.Refusal = "a symbolic link";
    else if (!S_ISREG(st.st_mode))
        check.Refusal = "not a regular file";
    else if (st.st_nlink > 1)
        check.Refusal = "a file with other hard links";
    return check;
}

// A name beside the target that no one else uses: the process id and a counter, created exclusively so
// that a name taken meanwhile (or planted as a link) is never opened.
int CreateTemporary(const fs::path& aTarget, std::string& aName) {
    static std::atomic<unsigned> counter{0};
    const std::string stem = "." + aTarget.filename().string() + ".";
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path candidate = aTarget.parent_path() / (stem + std::to_string(::getpid()) + "-" +
                                                            std::to_string(counter.fetch_add(1)) + ".tmp");
        // 0666 before the umask: a new file gets the permissions any other new file would get.
        const int fd = ::open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (fd >= 0) {
            aName = candidate.string();
            return fd;
        }
        if (errno != EEXIST) return -1;
    }
    return -1;
}

bool WriteAll(int aFd, std::string_view aText) {
    while (!aText.empty()) {
        const ssize_t written = ::write(aFd, aText.data(), aText.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        aText.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// The rename itself is made durable too; a folder that refuses fsync (some network file systems) still
// has the new file in place, so a failure here is not reported.
void SyncFolder(const fs::path& aFolder) {
    const TFd fd(::open(aFolder.empty() ? "." : aFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (fd.Get() >= 0) (void)::fsync(fd.Get());
}

}  // namespace

TQVLSafeFileResult WriteFileAtomic(const std::string& fileName, const TQVLFileProducer& producer) {
    if (fileName.empty()) return Refused(fileName, "no file name");
    const TTargetCheck target = CheckTarget(fileName);
    if (!target.Refusal.empty()) return Refused(fileName, target.Refusal);

    const fs::path path(fileName);
    std::string tempName;
    TFd fd(CreateTemporary(path, tempName));
    if (fd.Get() < 0) return Refused(fileName, "");
    bool ok = false;
    try {
        ok = producer([&](std::string_view aPiece) { return WriteAll(fd.Get(), aPiece); });
    } catch (...) {
        ok = false;
    }
    // The old file keeps its permissions; a new one has those the open above gave it.
    if (ok && target.Exists) ok = ::fchmod(fd.Get(), target.Mode) == 0;
    if (ok) ok = ::fsync(fd.Get()) == 0;
    ok = fd.Close() && ok;
    if (ok) ok = ::rename(tempName.c_str(), fileName.c_str()) == 0;
    if (!ok) {
        (void)::unlink(tempName.c_str());
        return Refused(fileName, "");
    }
    SyncFolder(path.parent_path());
    return {};
}

TQVLSafeFileResult WriteFileAtomic(const std::string& fileName, std::string_view content) {
    return WriteFileAtomic(fileName, [content](const TQVLFileSink& aSink) { return aSink(content); });
}

TQVLSafeFileResult ReadRegularFile(const std::string& fileName, std::size_t maxBytes, std::string& content) {
    const auto failed = [&](std::string_view aWhy, std::string_view aCode = QVLErr::kNoFile) {
        std::string message = fileName + ": cannot be read";
        if (!aWhy.empty()) message.append(" (").append(aWhy).append(")");
        return TQVLSafeFileResult::Failure(aCode, std::move(message));
    };
    // O_NONBLOCK: opening a FIFO for reading would otherwise wait for a writer.
    const TFd fd(::open(fileName.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (fd.Get() < 0) return failed("");
    struct stat st {};
    if (::fstat(fd.Get(), &st) != 0) return failed("");
    if (!S_ISREG(st.st_mode)) return failed("not a regular file");
    if (static_cast<std::uintmax_t>(st.st_size) > maxBytes)
        return failed("larger than " + std::to_string(maxBytes) + " bytes", QVLErr::kLimit);
    content.clear();
    content.reserve(static_cast<std::size_t>(st.st_size));
    char buffer[65536];
    for (;;) {
        const ssize_t got = ::read(fd.Get(), buffer, sizeof buffer);
        if (got < 0) {
            if (errno == EINTR) continue;
            return failed("");
        }
        if (got == 0) break;
        // A file that grows while it is read is still held to the limit.
        if (content.size() + static_cast<std::size_t>(got) > maxBytes)
            return failed("larger than " + std::to_string(maxBytes) + " bytes", QVLErr::kLimit);
        content.append(buffer, static_cast<std::size_t>(got));
    }
    return {};
}

}  // namespace Orvex
