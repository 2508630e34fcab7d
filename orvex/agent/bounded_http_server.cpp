// The connection loop of TBoundedHttpServer and the socket stream it reads through. The library's line
// reader takes one byte per read and keeps the line in a string until its end arrives; the stream counts
// those bytes so that neither a head without its blank line nor an endless line inside a chunked body
// can grow that string beyond kMaxRequestHeadBytes.
#include "orvex/agent/bounded_http_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace Orvex {
namespace {

constexpr std::string_view kHeadTooLarge =
    "HTTP/1.1 431 Request Header Fields Too Large\r\n"
    "Content-Type: application/json\r\n"
    "Content-Length: 43\r\n"
    "Connection: close\r\n"
    "\r\n"
    R"({"error":"Request header fields too large"})";
static_assert(kHeadTooLarge.size() - kHeadTooLarge.find("\r\n\r\n") - 4 == 43);

// How long an idle kept-alive connection waits between checks that the server is still running, so that
// stopping the server does not wait for every idle connection's keep-alive timeout.
constexpr int kIdleSliceMs = 50;

int ToMilliseconds(time_t aSeconds, time_t aMicroseconds) {
    return static_cast<int>(aSeconds * 1000 + aMicroseconds / 1000);
}

bool WaitFor(socket_t aSocket, short aEvents, int aTimeoutMs) {
    pollfd descriptor{aSocket, aEvents, 0};
    for (;;) {
        const int ready = ::poll(&descriptor, 1, aTimeoutMs);
        if (ready < 0 && errno == EINTR) continue;
        return ready > 0 && (descriptor.revents & (aEvents | POLLHUP | POLLERR)) != 0;
    }
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

// A buffered socket stream that fails its reads once the current request's head, or any line read one
// byte at a time, passes kMaxRequestHeadBytes.
class THeadBoundedStream final : public httplib::Stream {
  public:
    THeadBoundedStream(socket_t aSocket, int aReadTimeoutMs, int aWriteTimeoutMs)
        : fSocket(aSocket), fReadTimeoutMs(aReadTimeoutMs), fWriteTimeoutMs(aWriteTimeoutMs) {}

    void BeginRequest() {
        fInHead = true;
        fHeadBytes = 0;
        fLineBytes = 0;
        fLineLength = 0;
        fSawLine = false;
        fOverflow = false;
        fAnswered = false;
    }
    bool HeadOverflowed() const { return fOverflow && fInHead; }
    bool HeadEnded() const { return !fInHead; }
    bool Answered() const { return fAnswered; }
    bool HasBuffered() const { return fOffset < fSize; }

    bool is_readable() const override { return HasBuffered() || WaitFor(fSocket, POLLIN, fReadTimeoutMs); }
    bool is_writable() const override { return WaitFor(fSocket, POLLOUT, fWriteTimeoutMs); }

    ssize_t read(char* aBuffer, size_t aSize) override {
        if (fOverflow) return -1;
        if (!HasBuffered()) {
            const auto received = Receive();
            if (received <= 0) return received;
        }
        auto count = std::min(aSize, fSize - fOffset);
        const char* data = fBuffer.data() + fOffset;
        if (fInHead) count = CountHead(data, count);
        if (aSize == 1 && !fInHead) CountLineByte(*data);
        if (fOverflow) return -1;
        std::memcpy(aBuffer, data, count);
        fOffset += count;
        return static_cast<ssize_t>(count);
    }

    ssize_t write(const char* aData, size_t aSize) override {
        if (!is_writable()) return -1;
        fAnswered = true;
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
    ssize_t Receive() {
        if (!WaitFor(fSocket, POLLIN, fReadTimeoutMs)) return -1;
        for (;;) {
            const auto received = ::recv(fSocket, fBuffer.data(), fBuffer.size(), 0);
            if (received < 0 && errno == EINTR) continue;
            fOffset = 0;
            fSize = received > 0 ? static_cast<std::size_t>(received) : 0;
            return received;
        }
    }

    // Counts head bytes up to and including the blank line that ends the head (a bare line feed ends a
    // line too; blank lines before the request line do not end it), and returns how many of aCount bytes
    // belong to the head.
    std::size_t CountHead(const char* aData, std::size_t aCount) {
        for (std::size_t i = 0; i < aCount; ++i) {
            if (++fHeadBytes > kMaxRequestHeadBytes) {
                fOverflow = true;
                return 0;
            }
            if (aData[i] == '\n') {
                if (fLineLength == 0 && fSawLine) {
                    fInHead = false;
                    return i + 1;
                }
                fSawLine = fSawLine || fLineLength > 0;
                fLineLength = 0;
            } else if (aData[i] != '\r') {
                ++fLineLength;
            }
        }
        return aCount;
    }

    // Past the head only the framing lines of a chunked body are read a byte at a time.
    void CountLineByte(char aByte) {
        fLineBytes = aByte == '\n' ? 0 : fLineBytes + 1;
        if (fLineBytes > kMaxRequestHeadBytes) fOverflow = true;
    }

    socket_t fSocket;
    int fReadTimeoutMs;
    int fWriteTimeoutMs;
    std::array<char, 16 * 1024> fBuffer{};
    std::size_t fOffset = 0;
    std::size_t fSize = 0;
    bool fInHead = true;
    bool fSawLine = false;
    bool fOverflow = false;
    bool fAnswered = false;
    std::size_t fHeadBytes = 0;
    std::size_t fLineLength = 0;
    std::size_t fLineBytes = 0;
};

}  // namespace

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
    fThread = std::thread([this] {
        listen_after_bind();
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
    THeadBoundedStream stream(aSocket, ToMilliseconds(read_timeout_sec_, read_timeout_usec_),
                              ToMilliseconds(write_timeout_sec_, write_timeout_usec_));
    const auto idleLimit = std::chrono::seconds(keep_alive_timeout_sec_);
    const auto waitForNextRequest = [&] {
        const auto start = std::chrono::steady_clock::now();
        // The listening socket is closed as soon as the server stops, while is_running() stays true until
        // every connection has ended.
        while (svr_sock_ != INVALID_SOCKET) {
            if (stream.HasBuffered() || WaitFor(aSocket, POLLIN, kIdleSliceMs)) return true;
            if (std::chrono::steady_clock::now() - start > idleLimit) return false;
        }
        return false;
    };

    bool served = false;
    for (std::size_t left = keep_alive_max_count_; left > 0 && waitForNextRequest(); --left) {
        stream.BeginRequest();
        bool closed = false;
        served = process_request(stream, left == 1, closed, nullptr);
        // When its reads fail in the request line the library answers nothing; in a header it answers 400.
        if (stream.HeadOverflowed() && !stream.Answered()) {
            stream.write(kHeadTooLarge.data(), kHeadTooLarge.size());
            served = false;
        }
        // A head the library refused part-way leaves the rest of it unread: the connection is out of step.
        if (!served || closed || !stream.HeadEnded()) break;
    }
    ::shutdown(aSocket, SHUT_RDWR);
    ::close(aSocket);
    return served;
}

}  // namespace Orvex
