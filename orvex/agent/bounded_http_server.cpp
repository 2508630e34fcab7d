// The reception thread, request threads and socket stream of TBoundedHttpServer.
//
// [SECTION] Helpers
// [SECTION] TRequestStream: what a request thread reads through
// [SECTION] TReception: waiting connections and request threads
// [SECTION] TBoundedHttpServer
#include "orvex/agent/bounded_http_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Orvex {
namespace {

using TClock = std::chrono::steady_clock;

// [SECTION] Helpers

thread_local bool tCloseAfterResponse = false;
thread_local std::uint64_t tSkipAfterResponse = 0;
// What a refused request's body may be for the connection to go on after the refusal, and how long it may
// take to come.
constexpr std::uint64_t kSkipBodyBytes = 64 * 1024;
constexpr auto kSkipBodyTime = std::chrono::milliseconds(200);

constexpr std::string_view kHeadTooLarge =
    "HTTP/1.1 431 Request Header Fields Too Large\r\n"
    "Content-Type: application/json\r\n"
    "Content-Length: 43\r\n"
    "Connection: close\r\n"
    "\r\n"
    R"({"error":"Request header fields too large"})";
static_assert(kHeadTooLarge.size() - kHeadTooLarge.find("\r\n\r\n") - 4 == 43);

constexpr std::string_view kTimedOut =
    "HTTP/1.1 408 Request Timeout\r\n"
    "Content-Type: application/json\r\n"
    "Content-Length: 29\r\n"
    "Connection: close\r\n"
    "\r\n"
    R"({"error":"Request timed out"})";
static_assert(kTimedOut.size() - kTimedOut.find("\r\n\r\n") - 4 == 29);

constexpr std::string_view kTooManyConnections =
    "HTTP/1.1 503 Service Unavailable\r\n"
    "Content-Type: application/json\r\n"
    "Content-Length: 32\r\n"
    "Connection: close\r\n"
    "\r\n"
    R"({"error":"Too many connections"})";
static_assert(kTooManyConnections.size() - kTooManyConnections.find("\r\n\r\n") - 4 == 32);

// The reception thread wakes at least this often, to notice that the server stops.
constexpr int kReceptionSliceMs = 200;
// A connection closed after an answer given before its body was read (a refusal) first takes and
// drops what comes for this long, up to this many bytes: closing with unread bytes resets the connection,
// and a peer still writing its body would lose the answer.
constexpr int kLingerMs = 500;
constexpr std::size_t kLingerBytes = 8 << 20;

int ToMilliseconds(time_t aSeconds, time_t aMicroseconds) {
    return static_cast<int>(aSeconds * 1000 + aMicroseconds / 1000);
}

int MillisecondsUntil(TClock::time_point aWhen) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(aWhen - TClock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, 1'000'000));
}

bool WaitFor(socket_t aSocket, short aEvents, int aTimeoutMs) {
    pollfd descriptor{aSocket, aEvents, 0};
    for (;;) {
        const int ready = ::poll(&descriptor, 1, aTimeoutMs);
        if (ready < 0 && errno == EINTR) continue;
        return ready > 0 && (descriptor.revents & (aEvents | POLLHUP | POLLERR)) != 0;
    }
}

// A short fixed answer from the reception thread, which never waits on a peer: what does not fit into
// the socket's buffer at once is dropped with the connection.
void SendAndClose(socket_t aSocket, std::string_view aAnswer) {
    if (!aAnswer.empty()) ::send(aSocket, aAnswer.data(), aAnswer.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    ::shutdown(aSocket, SHUT_RDWR);
    ::close(aSocket);
}

void AddressOf(const sockaddr_storage& aAddress, std::string& aIp, int& aPort) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (aAddress.ss_family == AF_INET) {
        const auto& v4 = reinterpret_cast<const sockaddr_in&>(aAddress);
        ::inet_ntop(AF_INET, &v4.sin_addr, text.data(), text.size());
        aPort = ntohs(v4.sin_port);
    } else if (aAddress.ss_family == AF_INET6) {
        const auto& v6 = reinterpret_cast<const sockaddr_in6&>(aAddress);
        ::inet_ntop(AF_INET6, &v6.sin6_addr, text.data(), text.size());
        aPort = ntohs(v6.sin6_port);
    }
    aIp = text.data();
}

std::string PeerAddress(socket_t aSocket) {
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    std::string ip;
    int port = 0;
    if (::getpeername(aSocket, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        AddressOf(address, ip, port);
    return ip;
}

// Finds where the head of the request at the start of a growing buffer ends (just past its blank line),
// looking at each byte once however the bytes trickle in. A bare line feed ends a line too; blank lines
// before the request line are skipped.
class THeadScanner {
  public:
    // 0 while the head has not all arrived.
    std::size_t Feed(std::string_view aBytes) {
        for (; fScanned < aBytes.size(); ++fScanned) {
            if (aBytes[fScanned] == '\n') {
                if (fLineLength == 0 && fSawLine) return ++fScanned;
                fSawLine = fSawLine || fLineLength > 0;
                fLineLength = 0;
            } else if (aBytes[fScanned] != '\r') {
                ++fLineLength;
            }
        }
        return 0;
    }

  private:
    std::size_t fScanned = 0;
    std::size_t fLineLength = 0;
    bool fSawLine = false;
};

void Linger(socket_t aSocket) {
    ::shutdown(aSocket, SHUT_WR);
    const auto end = TClock::now() + std::chrono::milliseconds(kLingerMs);
    std::array<char, 16 * 1024> sink{};
    for (std::size_t dropped = 0; dropped < kLingerBytes;) {
        if (!WaitFor(aSocket, POLLIN, MillisecondsUntil(end))) return;
        const auto received = ::recv(aSocket, sink.data(), sink.size(), MSG_DONTWAIT);
        if (received < 0 && (errno == EAGAIN || errno == EINTR)) continue;
        if (received <= 0) return;
        dropped += static_cast<std::size_t>(received);
    }
}

// Runs each job on the accepting thread: handing a connection to the reception thread takes no time.
class TInlineQueue final : public httplib::TaskQueue {
  public:
    void enqueue(std::function<void()> aJob) override { aJob(); }
    void shutdown() override {}
};

// [SECTION] TRequestStream: what a request thread reads through

// Serves the bytes the reception thread read ahead, then the socket, until the request's deadline. The
// library reads lines (request line, headers, chunk sizes) one byte at a time into a string that grows
// until the line ends, so such reads fail once a line passes kMaxRequestHeadBytes.
class TRequestStream final : public httplib::Stream {
  public:
    TRequestStream(socket_t aSocket, std::string aReadAhead, TClock::time_point aDeadline,
                   int aWriteTimeoutMs)
        : fSocket(aSocket),
          fDeadline(aDeadline),
          fWriteTimeoutMs(aWriteTimeoutMs),
          fBuffer(std::move(aReadAhead)) {}

    bool Failed() const { return fFailed; }
    // Reads and drops aBytes, until aUntil at the latest; false when they did not all come.
    bool Skip(std::uint64_t aBytes, TClock::time_point aUntil) {
        fDeadline = std::min(fDeadline, aUntil);
        std::array<char, 4096> sink{};
        while (aBytes > 0) {
            const auto got =
                read(sink.data(), static_cast<size_t>(std::min<std::uint64_t>(aBytes, sink.size())));
            if (got <= 0) return false;
            aBytes -= static_cast<std::uint64_t>(got);
        }
        return true;
    }
    // Bytes received but not read: the start of a pipelined request.
    std::string TakeUnread() {
        fBuffer.erase(0, fOffset);
        fOffset = 0;
        return std::move(fBuffer);
    }

    bool is_readable() const override {
        return HasBuffered() || WaitFor(fSocket, POLLIN, MillisecondsUntil(fDeadline));
    }
    bool is_writable() const override { return WaitFor(fSocket, POLLOUT, fWriteTimeoutMs); }

    ssize_t read(char* aBuffer, size_t aSize) override {
        if (fFailed) return -1;
        if (!HasBuffered()) {
            const auto received = Receive();
            if (received <= 0) return received;
        }
        const auto count = std::min(aSize, fBuffer.size() - fOffset);
        const char* data = fBuffer.data() + fOffset;
        if (aSize == 1) {
            fLineBytes = *data == '\n' ? 0 : fLineBytes + 1;
            if (fLineBytes > kMaxRequestHeadBytes) {
                fFailed = true;
                return -1;
            }
        }
        std::memcpy(aBuffer, data, count);
        fOffset += count;
        return static_cast<ssize_t>(count);
    }

    ssize_t write(const char* aData, size_t aSize) override {
        if (!is_writable()) return -1;
        for (;;) {
            const auto sent = ::send(fSocket, aData, aSize, MSG_NOSIGNAL);
            if (sent < 0 && errno == EINTR) continue;
            return sent;
        }
    }

    void get_remote_ip_and_port(std::string& aIp, int& aPort) const override {
        sockaddr_storage address{};
        socklen_t length = sizeof(address);
        if (::getpeername(fSocket, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
            AddressOf(address, aIp, aPort);
        }
    }
    void get_local_ip_and_port(std::string& aIp, int& aPort) const override {
        sockaddr_storage address{};
        socklen_t length = sizeof(address);
        if (::getsockname(fSocket, reinterpret_cast<sockaddr*>(&address), &length) == 0) {
            AddressOf(address, aIp, aPort);
        }
    }
    socket_t socket() const override { return fSocket; }

  private:
    bool HasBuffered() const { return fOffset < fBuffer.size(); }

    ssize_t Receive() {
        if (TClock::now() >= fDeadline || !WaitFor(fSocket, POLLIN, MillisecondsUntil(fDeadline))) {
            fFailed = true;
            return -1;
        }
        fBuffer.resize(16 * 1024);
        fOffset = 0;
        for (;;) {
            const auto received = ::recv(fSocket, fBuffer.data(), fBuffer.size(), 0);
            if (received < 0 && errno == EINTR) continue;
            fBuffer.resize(received > 0 ? static_cast<std::size_t>(received) : 0);
            if (received < 0) fFailed = true;
            return received;
        }
    }

    socket_t fSocket;
    TClock::time_point fDeadline;
    int fWriteTimeoutMs;
    std::string fBuffer;
    std::size_t fOffset = 0;
    std::size_t fLineBytes = 0;
    bool fFailed = false;
};

}  // namespace

void CloseConnectionAfterResponse() {
    tCloseAfterResponse = true;
}

void SkipBodyAfterResponse(std::uint64_t aBytes) {
    tSkipAfterResponse = aBytes;
    if (aBytes > kSkipBodyBytes) tCloseAfterResponse = true;
}

// [SECTION] TReception: waiting connections and request threads

// One thread polls every connection that waits for the head of its next request; a connection whose head
// has arrived goes to a request thread, and comes back after its answer when it is kept alive. Connection
// bookkeeping belongs to the reception thread alone; the request threads hand connections back through
// fReturned.
struct TBoundedHttpServer::TReception {
    struct TConnection {
        std::string Client;
        std::string ReadAhead;
        TClock::time_point Deadline;  // of the request once its first byte came; before that of the idle wait
        TClock::time_point ReadySince;
        THeadScanner Head;
        bool Started = false;
        bool Ready = false;  // its head is whole; it waits for a thread
        bool Busy = false;
        std::size_t Served = 0;
    };
    struct TJob {
        socket_t Socket;
        std::string ReadAhead;
        TClock::time_point Deadline;
        bool LastRequest;
    };
    struct TReturn {
        socket_t Socket;
        bool KeepAlive;
        std::string Unread;
    };

    explicit TReception(TBoundedHttpServer& aServer) : fServer(aServer) {
        if (::pipe2(fWake.data(), O_CLOEXEC | O_NONBLOCK) != 0)
            throw std::runtime_error("Cannot create a pipe");
        fThread = std::thread([this] { Run(); });
    }

    ~TReception() {
        {
            std::lock_guard lock(fMutex);
            fStopping = true;
        }
        Wake();
        if (fThread.joinable()) fThread.join();
        {
            std::lock_guard lock(fMutex);
            fQuit = true;
        }
        fWork.notify_all();
        for (auto& worker : fWorkers) worker.join();
        for (const auto socket : fIncoming) ::close(socket);
        ::close(fWake[0]);
        ::close(fWake[1]);
    }

    void Accept(socket_t aSocket) {
        {
            std::lock_guard lock(fMutex);
            fIncoming.push_back(aSocket);
        }
        Wake();
    }

    void Wake() {
        const char byte = 1;
        [[maybe_unused]] const auto written = ::write(fWake[1], &byte, 1);
    }

    void Run() {
        std::vector<pollfd> descriptors;
        std::vector<socket_t> polled;
        for (;;) {
            bool stopping = false;
            std::vector<socket_t> incoming;
            std::vector<TReturn> returned;
            {
                std::lock_guard lock(fMutex);
                stopping = fStopping;
                incoming.swap(fIncoming);
                returned.swap(fReturned);
            }
            for (auto& back : returned) TakeBack(back, stopping);
            for (const auto socket : incoming) Admit(socket, stopping);
            if (stopping) {
                for (auto it = fConnections.begin(); it != fConnections.end();) {
                    if (it->second.Busy) {
                        ++it;
                        continue;
                    }
                    Forget(it->second);
                    ::shutdown(it->first, SHUT_RDWR);
                    ::close(it->first);
                    it = fConnections.erase(it);
                }
                fReady.clear();
                if (fConnections.empty()) return;
            }
            Dispatch();

            descriptors.assign(1, pollfd{fWake[0], POLLIN, 0});
            polled.clear();
            int timeout = kReceptionSliceMs;
            for (auto& [socket, connection] : fConnections) {
                if (connection.Busy || connection.Ready) continue;
                descriptors.push_back(pollfd{socket, POLLIN, 0});
                polled.push_back(socket);
                timeout = std::min(timeout, MillisecondsUntil(connection.Deadline) + 1);
            }
            if (::poll(descriptors.data(), descriptors.size(), timeout) < 0 && errno != EINTR) continue;
            if (descriptors[0].revents != 0) {
                std::array<char, 256> drain{};
                while (::read(fWake[0], drain.data(), drain.size()) > 0) {
                }
            }
            for (std::size_t i = 0; i < polled.size(); ++i) {
                if (descriptors[i + 1].revents != 0) Receive(polled[i]);
            }
            Expire();
        }
    }

    void Admit(socket_t aSocket, bool aStopping) {
        if (aStopping) {
            SendAndClose(aSocket, {});
            return;
        }
        std::string client = PeerAddress(aSocket);
        const auto open = fOpen.find(client);
        const std::size_t ofClient = open != fOpen.end() ? open->second : 0;
        if (fConnections.size() >= fServer.fLimits.Connections ||
            ofClient >= fServer.fLimits.ConnectionsPerClient) {
            SendAndClose(aSocket, kTooManyConnections);
            return;
        }
        ++fOpen[client];
        auto& connection = fConnections[aSocket];
        connection.Client = std::move(client);
        Idle(connection);
    }

    void Idle(TConnection& aConnection) const {
        aConnection.Started = false;
        aConnection.Head = THeadScanner();
        aConnection.Deadline = TClock::now() + std::chrono::seconds(fServer.keep_alive_timeout_sec_);
    }

    void TakeBack(TReturn& aBack, bool aStopping) {
        const auto it = fConnections.find(aBack.Socket);
        if (it == fConnections.end()) return;
        auto& connection = it->second;
        connection.Busy = false;
        --fBusy;
        if (--fBusyOf[connection.Client] == 0) fBusyOf.erase(connection.Client);
        if (!aBack.KeepAlive || aStopping) {
            Close(it);
            return;
        }
        ++connection.Served;
        connection.ReadAhead = std::move(aBack.Unread);
        Idle(connection);
        if (!connection.ReadAhead.empty()) StartRequest(aBack.Socket, connection);
    }

    void Receive(socket_t aSocket) {
        const auto it = fConnections.find(aSocket);
        if (it == fConnections.end()) return;
        auto& connection = it->second;
        std::array<char, 16 * 1024> buffer{};
        const auto received = ::recv(aSocket, buffer.data(), buffer.size(), MSG_DONTWAIT);
        if (received < 0 && (errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR)) return;
        if (received <= 0) {
            Close(it);
            return;
        }
        if (!connection.Started) {
            connection.Started = true;
            connection.Deadline = TClock::now() + fServer.fLimits.RequestDeadline;
        }
        connection.ReadAhead.append(buffer.data(), static_cast<std::size_t>(received));
        StartRequest(aSocket, connection);
    }

    // Called with bytes of a request at hand: queues it for a thread once its head is whole.
    void StartRequest(socket_t aSocket, TConnection& aConnection) {
        if (!aConnection.Started) {
            aConnection.Started = true;
            aConnection.Deadline = TClock::now() + fServer.fLimits.RequestDeadline;
        }
        const auto end = aConnection.Head.Feed(aConnection.ReadAhead);
        if (end > kMaxRequestHeadBytes || (end == 0 && aConnection.ReadAhead.size() > kMaxRequestHeadBytes)) {
            const auto it = fConnections.find(aSocket);
            Forget(it->second);
            SendAndClose(aSocket, kHeadTooLarge);
            fConnections.erase(it);
            return;
        }
        if (end == 0) return;
        aConnection.Ready = true;
        aConnection.ReadySince = TClock::now();
        fReady.push_back(aSocket);
    }

    // Requests whose head has come go to threads in arrival order, within the thread caps.
    void Dispatch() {
        for (auto it = fReady.begin(); it != fReady.end() && fBusy < fServer.fLimits.RequestThreads;) {
            auto& connection = fConnections.at(*it);
            if (fBusyOf[connection.Client] >= fServer.fLimits.RequestThreadsPerClient) {
                ++it;
                continue;
            }
            connection.Ready = false;
            connection.Busy = true;
            ++fBusy;
            ++fBusyOf[connection.Client];
            // The time spent waiting for a thread is the server's, not the peer's.
            const auto deadline = connection.Deadline + (TClock::now() - connection.ReadySince);
            const bool last = connection.Served + 1 >= fServer.keep_alive_max_count_;
            {
                std::lock_guard lock(fMutex);
                fJobs.push_back(TJob{*it, std::move(connection.ReadAhead), deadline, last});
                // Idle threads may not have taken the jobs queued just before this one yet.
                if (fJobs.size() > fIdle && fWorkers.size() < fServer.fLimits.RequestThreads)
                    fWorkers.emplace_back([this] { Work(); });
            }
            connection.ReadAhead.clear();
            fWork.notify_one();
            it = fReady.erase(it);
        }
    }

    void Work() {
        for (;;) {
            TJob job{};
            {
                std::unique_lock lock(fMutex);
                ++fIdle;
                fWork.wait(lock, [this] { return fQuit || !fJobs.empty(); });
                --fIdle;
                if (fJobs.empty()) return;
                job = std::move(fJobs.front());
                fJobs.pop_front();
            }
            tCloseAfterResponse = false;
            tSkipAfterResponse = 0;
            const bool keep = fServer.RunRequest(job.Socket, job.ReadAhead, job.Deadline, job.LastRequest);
            {
                std::lock_guard lock(fMutex);
                fReturned.push_back(TReturn{job.Socket, keep, std::move(job.ReadAhead)});
            }
            Wake();
        }
    }

    void Expire() {
        const auto now = TClock::now();
        for (auto it = fConnections.begin(); it != fConnections.end();) {
            auto& connection = it->second;
            if (connection.Busy || connection.Ready || now < connection.Deadline) {
                ++it;
                continue;
            }
            Forget(connection);
            SendAndClose(it->first, connection.Started ? kTimedOut : std::string_view());
            it = fConnections.erase(it);
        }
    }

    void Close(std::unordered_map<socket_t, TConnection>::iterator aIt) {
        Forget(aIt->second);
        SendAndClose(aIt->first, {});
        fConnections.erase(aIt);
    }

    void Forget(const TConnection& aConnection) {
        if (--fOpen[aConnection.Client] == 0) fOpen.erase(aConnection.Client);
    }

    TBoundedHttpServer& fServer;
    std::array<int, 2> fWake{-1, -1};
    std::thread fThread;

    // The reception thread's own.
    std::unordered_map<socket_t, TConnection> fConnections;
    std::deque<socket_t> fReady;
    std::map<std::string, std::size_t> fOpen;
    std::map<std::string, std::size_t> fBusyOf;
    std::size_t fBusy = 0;

    // Shared with the accepting thread and the request threads.
    std::mutex fMutex;
    std::condition_variable fWork;
    std::vector<socket_t> fIncoming;
    std::vector<TReturn> fReturned;
    std::deque<TJob> fJobs;
    std::vector<std::thread> fWorkers;
    std::size_t fIdle = 0;
    bool fStopping = false;
    bool fQuit = false;
};

// [SECTION] TBoundedHttpServer

TBoundedHttpServer::TBoundedHttpServer() {
    set_socket_options([](socket_t aSocket) {
        int yes = 1;
        ::setsockopt(aSocket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    });
}

TBoundedHttpServer::~TBoundedHttpServer() {
    StopAndJoin();
}

std::uint16_t TBoundedHttpServer::Serve(const std::string& aAddress, std::uint16_t aPort) {
    int port = aPort;
    if (aPort == 0) {
        port = bind_to_any_port(aAddress);
    } else if (!bind_to_port(aAddress, aPort)) {
        port = -1;
    }
    if (port <= 0) throw std::runtime_error("Cannot listen on " + aAddress + ":" + std::to_string(aPort));
    // The library listens with a backlog of 5, which drops connections in a burst; listening again on the
    // bound socket only changes the queue's length.
    ::listen(svr_sock_, fLimits.ListenBacklog);
    new_task_queue = [] { return new TInlineQueue(); };
    fReception = std::make_unique<TReception>(*this);
    fThread = std::thread([this] {
        listen_after_bind();
        fReception.reset();  // closes the waiting connections and lets running requests finish
        fFinished = true;
    });
    // stop() is ignored until the loop runs, so Serve returns only once it does.
    while (!is_running() && !fFinished) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return static_cast<std::uint16_t>(port);
}

void TBoundedHttpServer::StopAndJoin() {
    stop();
    if (fThread.joinable()) fThread.join();
}

bool TBoundedHttpServer::process_and_close_socket(socket_t aSocket) {
    fReception->Accept(aSocket);
    return true;
}

bool TBoundedHttpServer::RunRequest(socket_t aSocket, std::string& aReadAhead, TClock::time_point aDeadline,
                                    bool aLastRequest) {
    TRequestStream stream(aSocket, std::move(aReadAhead), aDeadline,
                          ToMilliseconds(write_timeout_sec_, write_timeout_usec_));
    bool closed = false;
    bool served = process_request(stream, aLastRequest, closed, nullptr);
    if (served && !tCloseAfterResponse && tSkipAfterResponse > 0)
        served = stream.Skip(tSkipAfterResponse, TClock::now() + kSkipBodyTime);
    aReadAhead = stream.TakeUnread();
    const bool keep = served && !closed && !aLastRequest && !tCloseAfterResponse && !stream.Failed();
    if (tCloseAfterResponse && served && !stream.Failed()) Linger(aSocket);
    return keep;
}

}  // namespace Orvex
