// Running a computation that cannot be cancelled (a Graphviz layout) where it can be abandoned: in a
// child process made by fork, which writes its answer into a pipe and is killed when it overruns its
// time. The parent's threads, open documents and memory are never at risk: the child has its own copy of
// the memory and only the calling thread.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace Orvex {

struct TIsolatedLimits {
    double Seconds = 2.0;                // wall-clock time until the child is killed
    std::size_t ExtraMemory = 1u << 30;  // bytes of address space the child may add to what it inherits
};

// Runs aWork in a forked child and returns what it returned, or nothing when the child overran the time,
// ran out of memory, crashed, or could not be started. aWork runs in a copy of this process with only the
// calling thread: it must not wait for anything another thread holds (a lock taken elsewhere at the
// moment of the fork would never be released; the time limit then ends the child).
std::optional<std::string> RunIsolated(const std::function<std::string()>& aWork,
                                       const TIsolatedLimits& aLimits);

// False where a forked child cannot run the work safely (builds under ThreadSanitizer); callers then run
// it in process.
bool IsolationAvailable();

}  // namespace Orvex
