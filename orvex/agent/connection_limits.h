// What one HTTP server of the library grants its peers: request threads, connections, the time a request
// may take to arrive, and the queue of connections not yet accepted.
#pragma once

#include <chrono>
#include <cstddef>

namespace Orvex {

inline constexpr std::size_t kDefaultRequestThreads = 64;
inline constexpr std::size_t kDefaultRequestThreadsPerClient = 48;  // below the thread cap
inline constexpr std::size_t kDefaultMaxConnections = 512;
inline constexpr std::size_t kDefaultMaxConnectionsPerClient = 256;
inline constexpr std::chrono::milliseconds kDefaultRequestDeadline{10000};
inline constexpr int kDefaultListenBacklog = 511;

struct TConnectionLimits {
    // Threads that run requests whose head has arrived (handlers included); further requests wait for one.
    // A connection that waits for the head of its next request holds no thread.
    std::size_t RequestThreads = kDefaultRequestThreads;
    // Request threads one client address may hold at once; the rest of its requests wait.
    std::size_t RequestThreadsPerClient = kDefaultRequestThreadsPerClient;
    // Open connections, in total and per client address; beyond them a connection is answered 503 and
    // closed.
    std::size_t Connections = kDefaultMaxConnections;
    std::size_t ConnectionsPerClient = kDefaultMaxConnectionsPerClient;
    // From a request's first byte to the last byte of its body. Past it a head still arriving is answered
    // 408, a body still arriving fails, and the connection closes.
    std::chrono::milliseconds RequestDeadline = kDefaultRequestDeadline;
    int ListenBacklog = kDefaultListenBacklog;  // connections the system queues before they are accepted
};

}  // namespace Orvex
