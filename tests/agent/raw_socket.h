// Plain loopback sockets for the server tests that need a peer no HTTP client library would be: one that
// trickles, stops half-way, or comes from another loopback address.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace Orvex::Testing {

// A connected socket, closed when it goes.
class TRawSocket {
  public:
    // aSource: the local loopback address to connect from (any of 127.0.0.0/8 works on Linux).
    explicit TRawSocket(std::uint16_t aPort, const char* aSource = "127.0.0.1") {
        fSocket = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in local{};
        local.sin_family = AF_INET;
        ::inet_pton(AF_INET, aSource, &local.sin_addr);
        sockaddr_in remote{};
        remote.sin_family = AF_INET;
        remote.sin_port = htons(aPort);
        remote.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (::bind(fSocket, reinterpret_cast<sockaddr*>(&local), sizeof(local)) != 0 ||
            ::connect(fSocket, reinterpret_cast<sockaddr*>(&remote), sizeof(remote)) != 0) {
            ::close(fSocket);
            fSocket = -1;
        }
    }
    ~TRawSocket() {
        if (fSocket >= 0) ::close(fSocket);
    }
    TRawSocket(const TRawSocket&) = delete;
    TRawSocket& operator=(const TRawSocket&) = delete;

    bool Connected() const { return fSocket >= 0; }

    // False once the peer no longer takes bytes.
    bool Send(std::string_view aBytes) const {
        for (std::size_t sent = 0; sent < aBytes.size();) {
            const auto n = ::send(fSocket, aBytes.data() + sent, aBytes.size() - sent, MSG_NOSIGNAL);
            if (n <= 0) return false;
            sent += static_cast<std::size_t>(n);
        }
        return true;
    }

    // What arrives until the peer closes, or until aSilence passes without a byte.
    std::string ReadUntilClosed(std::chrono::milliseconds aSilence = std::chrono::milliseconds(2000)) {
        std::string answer;
        char buffer[4096];
        pollfd descriptor{fSocket, POLLIN, 0};
        while (::poll(&descriptor, 1, static_cast<int>(aSilence.count())) > 0) {
            const auto n = ::recv(fSocket, buffer, sizeof(buffer), 0);
            if (n <= 0) {
                fClosed = true;
                break;
            }
            answer.append(buffer, static_cast<std::size_t>(n));
        }
        return answer;
    }
    // The last ReadUntilClosed ended because the peer closed the connection.
    bool PeerClosed() const { return fClosed; }

  private:
    int fSocket = -1;
    bool fClosed = false;
};

inline std::string PostHead(std::size_t aBodyLength, const std::string& aExtraHeaders = {}) {
    return "POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/json\r\n" + aExtraHeaders +
           "Content-Length: " + std::to_string(aBodyLength) + "\r\n\r\n";
}

}  // namespace Orvex::Testing
