// The server's connection limits through loopback sockets: peers that trickle or stall hold no thread
// and cannot keep a request open past its deadline; refused requests are answered before their body and
// end their connection; endless bodies are stopped; one client cannot take every connection or thread.
#include <gtest/gtest.h>
#include <httplib.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "orvex/agent/mcp_server.h"
#include "tests/agent/mcp_test_support.h"
#include "tests/agent/raw_socket.h"

using namespace Orvex;
using namespace Orvex::Testing;
using namespace std::chrono_literals;

namespace {

using TClock = std::chrono::steady_clock;

class MCPConnection : public ::testing::Test {
  protected:
    MCPConnection() {
        fServer.SetPort(0);
        fServer.SetLabel(FakeLabel());
        fServer.RegisterTool("add_count", "Counts", nullptr, [this](TORXBaseLabel&, const TJSON&) {
            return TextResult(std::to_string(++fCount));
        });
    }
    ~MCPConnection() override { fServer.Stop(); }

    void Start(TConnectionLimits aLimits) {
        fServer.SetConnectionLimits(aLimits);
        fServer.Start();
        fPort = fServer.BoundPort();
    }
    static std::string CallBody(const char* aTool, int aId) {
        return Rpc("tools/call", {{"name", aTool}}, aId).dump();
    }
    // One call over a fresh connection; the status line's code, or 0.
    int CallOnce(const char* aTool, const char* aSource = "127.0.0.1") const {
        TRawSocket socket(fPort, aSource);
        const std::string body = CallBody(aTool, 1);
        if (!socket.Send(PostHead(body.size(), "Connection: close\r\n") + body)) return 0;
        const std::string answer = socket.ReadUntilClosed(5s);
        return answer.size() > 12 ? std::stoi(answer.substr(9, 3)) : 0;
    }

    TORXMCPServer fServer;
    std::uint16_t fPort = 0;
    std::atomic<int> fCount{0};
};

TEST_F(MCPConnection, PeersThatTrickleOrIdleHoldNoThread) {
    TConnectionLimits limits;
    limits.RequestThreads = 2;
    limits.RequestThreadsPerClient = 2;
    Start(limits);
    std::vector<std::unique_ptr<TRawSocket>> slow;
    for (int i = 0; i < 12; ++i) {
        slow.push_back(std::make_unique<TRawSocket>(fPort));
        // Half send part of a head, half nothing at all.
        if (i % 2 == 0) {
            ASSERT_TRUE(slow.back()->Send("POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\n"));
        }
    }
    std::this_thread::sleep_for(100ms);
    for (int i = 0; i < 4; ++i) {
        const auto start = TClock::now();
        EXPECT_EQ(CallOnce("add_count"), 200);
        EXPECT_LT(TClock::now() - start, 1s);
    }
    EXPECT_EQ(fCount, 4);
}

TEST_F(MCPConnection, OneDeadlineCoversHeadAndBody) {
    TConnectionLimits limits;
    limits.RequestDeadline = 400ms;
    Start(limits);

    // A head trickled byte by byte gets 408 at the deadline, however steadily the bytes come.
    TRawSocket trickledHead(fPort);
    const std::string head = PostHead(10, std::string(2000, 'x').insert(0, "X-Pad: ") + "\r\n");
    const auto start = TClock::now();
    std::size_t sent = 0;
    while (sent < head.size() && TClock::now() - start < 3s && trickledHead.Send(head.substr(sent, 1))) {
        ++sent;
        std::this_thread::sleep_for(20ms);
    }
    EXPECT_LT(TClock::now() - start, 2s);
    const std::string answer = trickledHead.ReadUntilClosed(1s);
    EXPECT_EQ(answer.rfind("HTTP/1.1 408 Request Timeout", 0), 0u) << answer;

    // A whole head and a trickled body: the body's reading fails at the same deadline.
    TRawSocket trickledBody(fPort);
    const std::string body = CallBody("add_count", 1);
    ASSERT_TRUE(trickledBody.Send(PostHead(body.size())));
    const auto bodyStart = TClock::now();
    for (std::size_t i = 0; i < body.size() && TClock::now() - bodyStart < 3s; ++i) {
        if (!trickledBody.Send(body.substr(i, 1))) break;
        std::this_thread::sleep_for(40ms);
    }
    EXPECT_LT(TClock::now() - bodyStart, 2s);
    trickledBody.ReadUntilClosed(1s);
    EXPECT_TRUE(trickledBody.PeerClosed());
    EXPECT_EQ(fCount, 0);
}

TEST_F(MCPConnection, RefusedHeadsAreAnsweredBeforeTheBodyAndClosed) {
    fServer.SetAuthToken("s3cret");
    fServer.SetMaxRequestBytes(1000);
    Start({});
    struct TCase {
        const char* Name;
        std::string Headers;
        std::size_t Declared;
        const char* Status;
    };
    const TCase cases[] = {
        {"no token", "", 100, "401"},
        {"foreign origin", "Authorization: Bearer s3cret\r\nOrigin: http://evil.example\r\n", 100, "403"},
        {"declared too large", "Authorization: Bearer s3cret\r\n", 5'000'000, "413"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.Name);
        TRawSocket socket(fPort);
        // Only the head goes out: the answer must not wait for the body.
        ASSERT_TRUE(socket.Send(PostHead(c.Declared, c.Headers)));
        const std::string answer = socket.ReadUntilClosed(2s);
        EXPECT_EQ(answer.substr(0, 12), std::string("HTTP/1.1 ") + c.Status) << answer;
        EXPECT_TRUE(socket.PeerClosed());
    }

    // A chunked body that passes the limit is answered 413 once it does, and its connection ends.
    TRawSocket chunked(fPort);
    ASSERT_TRUE(
        chunked.Send("POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\nAuthorization: Bearer s3cret\r\nContent-Type: "
                     "application/json\r\nTransfer-Encoding: chunked\r\n\r\n"));
    ASSERT_TRUE(chunked.Send("800\r\n" + std::string(0x800, ' ') + "\r\n"));
    const std::string answer = chunked.ReadUntilClosed(2s);
    EXPECT_EQ(answer.substr(0, 12), "HTTP/1.1 413") << answer;
    EXPECT_TRUE(chunked.PeerClosed());
}

TEST_F(MCPConnection, EndlessChunkedBodiesAreStopped) {
    const auto pour = [this] {
        TRawSocket socket(fPort);
        socket.Send(
            "POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/json\r\n"
            "Transfer-Encoding: chunked\r\n\r\n");
        const std::string chunk = "10000\r\n" + std::string(0x10000, ' ') + "\r\n";
        std::size_t sent = 0;
        const auto start = TClock::now();
        while (TClock::now() - start < 10s && socket.Send(chunk)) sent += chunk.size();
        return sent;
    };
    fServer.SetMaxRequestBytes(1 << 20);
    TConnectionLimits limits;
    limits.RequestDeadline = 500ms;
    Start(limits);
    // The limit stops it; what got through is the limit plus what the sockets' buffers took.
    EXPECT_LT(pour(), std::size_t{64} << 20);
    fServer.Stop();

    // Without a size limit the deadline stops it.
    fServer.SetMaxRequestBytes(0);
    Start(limits);
    const auto start = TClock::now();
    pour();
    EXPECT_LT(TClock::now() - start, 5s);
}

TEST_F(MCPConnection, OneClientCannotTakeEveryConnectionOrThread) {
    TConnectionLimits limits;
    limits.ConnectionsPerClient = 3;
    limits.RequestThreads = 3;
    limits.RequestThreadsPerClient = 2;
    Start(limits);

    std::vector<std::unique_ptr<TRawSocket>> held;
    for (int i = 0; i < 3; ++i) held.push_back(std::make_unique<TRawSocket>(fPort, "127.0.0.2"));
    TRawSocket fourth(fPort, "127.0.0.2");
    const std::string refused = fourth.ReadUntilClosed(2s);
    EXPECT_EQ(refused.substr(0, 12), "HTTP/1.1 503") << refused;
    EXPECT_TRUE(fourth.PeerClosed());
    // Another address is another client.
    EXPECT_EQ(CallOnce("add_count", "127.0.0.3"), 200);
    held.clear();

    // 127.0.0.2 holds its two threads with bodies still coming; its third request, whole, waits for one
    // of them, while a request from elsewhere takes the thread left.
    const std::string body = CallBody("add_count", 1);
    TRawSocket slowA(fPort, "127.0.0.2");
    TRawSocket slowB(fPort, "127.0.0.2");
    ASSERT_TRUE(slowA.Send(PostHead(body.size()) + body.substr(0, 5)));
    ASSERT_TRUE(slowB.Send(PostHead(body.size()) + body.substr(0, 5)));
    std::this_thread::sleep_for(200ms);
    TRawSocket third(fPort, "127.0.0.2");
    ASSERT_TRUE(third.Send(PostHead(body.size(), "Connection: close\r\n") + body));
    const auto start = TClock::now();
    EXPECT_EQ(CallOnce("add_count"), 200);
    EXPECT_LT(TClock::now() - start, 1s);
    EXPECT_EQ(third.ReadUntilClosed(300ms), "");
    ASSERT_TRUE(slowA.Send(body.substr(5)));
    EXPECT_EQ(slowA.ReadUntilClosed(300ms).substr(0, 12), "HTTP/1.1 200");
    EXPECT_EQ(third.ReadUntilClosed(2s).substr(0, 12), "HTTP/1.1 200");
    EXPECT_EQ(fCount, 4);
}

TEST_F(MCPConnection, PipelinedAndKeptAliveRequestsStillWork) {
    Start({});
    httplib::Client client("127.0.0.1", fPort);
    client.set_keep_alive(true);
    for (int i = 0; i < 5; ++i) {
        const auto response = client.Post("/mcp", CallBody("add_count", i), "application/json");
        ASSERT_TRUE(response);
        EXPECT_EQ(response->status, 200);
    }
    TRawSocket socket(fPort);
    const std::string body = CallBody("add_count", 9);
    ASSERT_TRUE(socket.Send(PostHead(body.size()) + body + PostHead(body.size()) + body +
                            PostHead(body.size(), "Connection: close\r\n") + body));
    const std::string answers = socket.ReadUntilClosed(3s);
    std::size_t count = 0;
    for (auto at = answers.find("HTTP/1.1 200"); at != std::string::npos;
         at = answers.find("HTTP/1.1 200", at + 1))
        ++count;
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(fCount, 8);
}

}  // namespace
