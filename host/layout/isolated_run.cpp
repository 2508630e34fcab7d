// The child reports through a pipe: the work's bytes, then a fixed trailer, so that the parent knows the
// answer is whole without relying on the exit status (a host that reaps every child itself would take
// that from us).
#include "host/layout/isolated_run.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>

namespace Orvex {
namespace {

constexpr char kTrailer[] = "\n#orvex-isolated-end#";
constexpr std::size_t kTrailerSize = sizeof(kTrailer) - 1;

// The address space the process holds now, from /proc; 0 when unknown.
std::size_t AddressSpace() {
    std::FILE* f = std::fopen("/proc/self/statm", "r");
    if (f == nullptr) return 0;
    unsigned long pages = 0;
    const int read = std::fscanf(f, "%lu", &pages);
    std::fclose(f);
    if (read != 1) return 0;
    return static_cast<std::size_t>(pages) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

bool WriteAll(int fd, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t n = write(fd, data, size);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        data += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

[[noreturn]] void RunChild(int out, const std::function<std::string()>& work, const TIsolatedLimits& limits,
                           std::size_t inherited) {
    // The host's handlers (a server's orderly shutdown on SIGTERM, say) belong to the parent: a signal to
    // the process group must simply end the child.
    for (int sig = 1; sig < NSIG; ++sig)
        if (sig != SIGKILL && sig != SIGSTOP) signal(sig, SIG_DFL);
    sigset_t all;
    sigemptyset(&all);
    sigprocmask(SIG_SETMASK, &all, nullptr);
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // a parent that dies does not leave the work running
#if !defined(__SANITIZE_ADDRESS__)     // the sanitizer's shadow memory would not fit any limit
    if (inherited > 0) {
        const rlim_t cap = static_cast<rlim_t>(inherited + limits.ExtraMemory);
        const rlimit memory{cap, cap};
        setrlimit(RLIMIT_AS, &memory);
    }
#else
    (void)inherited;
    (void)limits;
#endif
    int status = 1;
    try {
        const std::string answer = work();
        if (WriteAll(out, answer.data(), answer.size()) && WriteAll(out, kTrailer, kTrailerSize)) status = 0;
    } catch (...) {
        // no answer: the parent sees no trailer
    }
    _exit(status);  // no atexit handlers, no flushing of buffers that belong to the parent
}

}  // namespace

bool IsolationAvailable() {
#if defined(__SANITIZE_THREAD__)
    return false;
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
    return false;
#else
    return true;
#endif
#else
    return true;
#endif
}

std::optional<std::string> RunIsolated(const std::function<std::string()>& aWork,
                                       const TIsolatedLimits& aLimits) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                             std::chrono::duration<double>(aLimits.Seconds));
    int fds[2];
    // Close-on-exec, so that a program another thread starts meanwhile does not hold the write end open.
    if (pipe2(fds, O_CLOEXEC) != 0) return std::nullopt;
    const std::size_t inherited = AddressSpace();
    // Buffered output would otherwise be written twice should the child end through exit() (Graphviz
    // does when an allocation fails).
    std::fflush(nullptr);
    const pid_t pid = fork();
    if (pid < 0) {
        close(fds[0]);
        close(fds[1]);
        return std::nullopt;
    }
    if (pid == 0) {
        close(fds[0]);
        RunChild(fds[1], aWork, aLimits, inherited);
    }
    close(fds[1]);

    std::string received;
    bool finished = false;  // the child closed its end
    char buffer[65536];
    while (!finished) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) break;
        pollfd p{fds[0], POLLIN, 0};
        const int ready = poll(&p, 1, static_cast<int>(std::min<long long>(left, 1000)));
        if (ready < 0 && errno != EINTR) break;
        if (ready <= 0) continue;
        const ssize_t n = read(fds[0], buffer, sizeof buffer);
        if (n < 0) {
            if (errno == EINTR || errno == EAGAIN) continue;
            break;
        }
        if (n == 0)
            finished = true;
        else
            received.append(buffer, static_cast<std::size_t>(n));
    }
    close(fds[0]);
    if (!finished) kill(pid, SIGKILL);
    // The child has ended or is being killed; either way it is reaped here (unless the host reaps every
    // child itself, which waitpid then reports as ECHILD).
    while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    if (!finished || received.size() < kTrailerSize ||
        received.compare(received.size() - kTrailerSize, kTrailerSize, kTrailer) != 0)
        return std::nullopt;
    received.resize(received.size() - kTrailerSize);
    return received;
}

}  // namespace Orvex
