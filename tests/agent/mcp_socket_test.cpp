// The server through real loopback sockets: the adapter, the body limit, keep-alive and concurrent calls.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_server.h"
#include "tests/agent/mcp_test_support.h"

using namespace Orvex;
using namespace Orvex::Testing;
using namespace std::chrono_literals;

namespace {

std::unique_ptr<httplib::Client> Connect(const TORXMCPServer& aServer) {
    auto client = std::make_unique<httplib::Client>("127.0.0.1", aServer.BoundPort());
    client->set_connection_timeout(2);
    client->set_read_timeout(10);
    client->set_write_timeout(10);
    client->set_keep_alive(true);
    client->set_tcp_nodelay(true);
    return client;
}

// Sends aRequest over a fresh connection, half-closes nothing, and returns everything the server writes
// until it closes the connection (or two seconds of silence).
std::string RawExchange(std::uint16_t aPort, const std::string& aRequest) {
    const int sock = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(aPort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(sock, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
        ::close(sock);
        return "connect failed";
    }
    // The server may stop reading and close while the request is still going out.
    for (std::size_t sent = 0; sent < aRequest.size();) {
        const auto n = ::send(sock, aRequest.data() + sent, aRequest.size() - sent, MSG_NOSIGNAL);
        if (n <= 0) break;
        sent += static_cast<std::size_t>(n);
    }
    std::string answer;
    char buffer[4096];
    pollfd descriptor{sock, POLLIN, 0};
    while (::poll(&descriptor, 1, 2000) > 0) {
        const auto n = ::recv(sock, buffer, sizeof(buffer), 0);
        if (n <= 0) break;
        answer.append(buffer, static_cast<std::size_t>(n));
    }
    ::close(sock);
    return answer;
}

std::string PostHead(std::size_t aBodyLength, const std::string& aExtraHeaders = {}) {
    return "POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/json\r\n" + aExtraHeaders +
           "Content-Length: " + std::to_string(aBodyLength) + "\r\n\r\n";
}

int CountOf(const std::string& aText, const std::string& aPart) {
    int count = 0;
    for (auto at = aText.find(aPart); at != std::string::npos; at = aText.find(aPart, at + 1)) ++count;
    return count;
}

class MCPSocket : public ::testing::Test {
  protected:
    MCPSocket() {
        fServer.SetPort(0);
        fServer.SetLabel(FakeLabel());
        fServer.SetOnLog([this](TORXMCPServer&, const std::string& aLine) {
            std::lock_guard lock(fLogMutex);
            fLog.push_back(aLine);
        });
        fServer.RegisterTool("add_count", "Counts", nullptr, [this](TORXBaseLabel&, const TJSON&) {
            // Serialised calls never overlap; an overlap would show as a second caller inside.
            if (fInside.exchange(true)) throw std::logic_error("two calls at once");
            const int value = ++fCount;
            fInside = false;
            return TextResult(std::to_string(value));
        });
    }

    // The log sink writes into members that die before the server, so stop while they live.
    ~MCPSocket() override { fServer.Stop(); }

    std::string CallBody(int aId) const { return Rpc("tools/call", {{"name", "add_count"}}, aId).dump(); }

    TORXMCPServer fServer;
    std::atomic<int> fCount{0};
    std::atomic<bool> fInside{false};
    std::mutex fLogMutex;
    std::vector<std::string> fLog;
};

TEST_F(MCPSocket, EveryMethodReachesThePipeline) {
    fServer.Start();
    auto client = Connect(fServer);
    // A connection each: this is about the methods, and a kept-alive connection that the server ends after
    // an error answer could be reused by the client at the moment it closes (keep-alive has its own test).
    client->set_keep_alive(false);
    const auto list = client->Post("/mcp", Rpc("tools/list").dump(), "application/json");
    ASSERT_TRUE(list);
    EXPECT_EQ(list->status, 200);
    EXPECT_EQ(list->get_header_value("Content-Type"), "application/json");
    EXPECT_EQ(list->get_header_value("Access-Control-Allow-Methods"), "POST, OPTIONS");
    EXPECT_EQ(TJSON::parse(list->body)["result"]["tools"][0]["name"], "add_count");

    const auto get = client->Get("/mcp");
    ASSERT_TRUE(get);
    EXPECT_EQ(get->status, 405);
    EXPECT_EQ(get->body, R"({"error":"Method not allowed"})");
    const auto put = client->Put("/mcp", "{}", "application/json");
    ASSERT_TRUE(put);
    EXPECT_EQ(put->body, R"({"error":"Method not allowed"})");
    const auto del = client->Delete("/mcp");
    ASSERT_TRUE(del);
    EXPECT_EQ(del->body, R"({"error":"This server does not use transport sessions"})");
    const auto options = client->Options("/mcp");
    ASSERT_TRUE(options);
    EXPECT_EQ(options->status, 204);
    const auto wrongPath = client->Post("/other", "{}", "application/json");
    ASSERT_TRUE(wrongPath);
    EXPECT_EQ(wrongPath->status, 404);
    const auto notification =
        client->Post("/mcp", R"({"jsonrpc":"2.0","method":"notifications/initialized"})", "application/json");
    ASSERT_TRUE(notification);
    EXPECT_EQ(notification->status, 202);
    EXPECT_EQ(notification->body, "");
}

TEST_F(MCPSocket, BodyLimitHoldsWithAndWithoutDeclaredLength) {
    const std::string body = CallBody(1);
    fServer.SetMaxRequestBytes(static_cast<std::int32_t>(body.size()));
    fServer.Start();
    auto client = Connect(fServer);

    const auto exact = client->Post("/mcp", body, "application/json");
    ASSERT_TRUE(exact);
    EXPECT_EQ(exact->status, 200);
    const auto oneMore = client->Post("/mcp", body + " ", "application/json");
    ASSERT_TRUE(oneMore);
    EXPECT_EQ(oneMore->status, 413);
    EXPECT_EQ(oneMore->body, R"({"error":"Request body too large"})");
    // Far beyond the limit: refused on the declared length before the body is read; the connection then
    // ends, and the client opens another.
    const auto huge = client->Post("/mcp", body + std::string(1 << 20, ' '), "application/json");
    ASSERT_TRUE(huge);
    EXPECT_EQ(huge->status, 413);

    // Without a declared length (chunked), reading stops keeping bytes at the limit.
    const auto chunked = [&](const std::string& aText) {
        return client->Post(
            "/mcp",
            [aText](size_t aOffset, httplib::DataSink& aSink) {
                if (aOffset < aText.size()) {
                    aSink.write(aText.data() + aOffset, std::min<size_t>(7, aText.size() - aOffset));
                } else {
                    aSink.done();
                }
                return true;
            },
            "application/json");
    };
    const auto chunkedTooLarge = chunked(body + std::string(4096, ' '));
    ASSERT_TRUE(chunkedTooLarge);
    EXPECT_EQ(chunkedTooLarge->status, 413);
    const auto chunkedFits = chunked(body);
    ASSERT_TRUE(chunkedFits);
    EXPECT_EQ(chunkedFits->status, 200);

    const auto after = client->Post("/mcp", body, "application/json");
    ASSERT_TRUE(after);
    EXPECT_EQ(after->status, 200);
    EXPECT_EQ(fCount, 3);
}

TEST_F(MCPSocket, RequestHeadsAreBoundedAndAnsweredWith431) {
    fServer.Start();
    const auto port = fServer.BoundPort();
    const std::string body = CallBody(1);
    const std::string tooLarge = "HTTP/1.1 431 Request Header Fields Too Large";

    // A request line that never ends, a header that never ends, and many ordinary headers each get one
    // refusal (431 from the head limit, or 400 from the library's own line limit) and the connection ends.
    const auto refusedOnce = [](const std::string& aAnswer) {
        return aAnswer.rfind("HTTP/1.1 4", 0) == 0 && CountOf(aAnswer, "HTTP/1.1 ") == 1;
    };
    const auto longLine = RawExchange(port, "POST /" + std::string(200'000, 'a'));
    EXPECT_EQ(longLine.rfind(tooLarge, 0), 0u) << longLine;
    const auto longHeader = RawExchange(port, PostHead(body.size(), "X-Long: " + std::string(200'000, 'b')));
    EXPECT_TRUE(refusedOnce(longHeader)) << longHeader;
    std::string manyHeaders;
    for (int i = 0; i < 5000; ++i) manyHeaders += "X-Header-" + std::to_string(i) + ": value\r\n";
    const auto many = RawExchange(port, PostHead(body.size(), manyHeaders) + body);
    EXPECT_TRUE(refusedOnce(many)) << many;

    // A chunk-size line that never ends cannot grow without bound either; the connection is dropped.
    const auto endlessChunk = RawExchange(
        port, "POST /mcp HTTP/1.1\r\nContent-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n" +
                  std::string(200'000, '1'));
    EXPECT_EQ(endlessChunk.find("200 OK"), std::string::npos) << endlessChunk.substr(0, 200);

    // A large but acceptable head and pipelined requests on one kept-alive connection are served.
    std::string bigHeaders;
    for (int i = 0; i < 6; ++i)
        bigHeaders += "X-Big-" + std::to_string(i) + ": " + std::string(8000, 'c') + "\r\n";
    const auto bigHead = RawExchange(port, PostHead(body.size(), bigHeaders) + body +
                                               PostHead(body.size(), "Connection: close\r\n") + body);
    EXPECT_EQ(CountOf(bigHead, "HTTP/1.1 200 OK"), 2) << bigHead.substr(0, 300);
    EXPECT_EQ(fCount, 2);
}

TEST_F(MCPSocket, StartRefusesAnExposedAddressWithoutToken) {
    fServer.SetBindAddress("0.0.0.0");
    fServer.SetAuthToken("  ");
    try {
        fServer.Start();
        FAIL() << "started without a token";
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "AuthToken is required when the MCP server is not bound to localhost");
    }
    EXPECT_FALSE(fServer.Active());
    EXPECT_TRUE(fLog.empty());

    fServer.SetBindAddress("127.0.0.1");
    fServer.SetActive(true);
    fServer.SetActive(true);
    const auto port = fServer.BoundPort();
    EXPECT_NE(port, 0);
    fServer.SetActive(false);
    EXPECT_EQ(fLog, (std::vector<std::string>{"MCP server started on port " + std::to_string(port),
                                              "MCP server stopped"}));
    EXPECT_FALSE(fServer.Initialized());
}

TEST_F(MCPSocket, ASecondServerCannotShareATakenPort) {
    fServer.Start();
    TORXMCPServer rival;
    rival.SetPort(fServer.BoundPort());
    rival.SetLabel(FakeLabel());
    EXPECT_THROW(rival.Start(), std::runtime_error);
    EXPECT_FALSE(rival.Active());
}

TEST_F(MCPSocket, ConcurrentToolCallsRunOnceEachOnTheMainThread) {
    TMainThreadQueue mainThread;
    const auto mainId = std::this_thread::get_id();
    std::atomic<int> offMain{0};
    fServer.SetMainThreadRunner(&mainThread);
    fServer.SetDocumentHooks({[&](TORXBaseLabel&) {
                                  if (std::this_thread::get_id() != mainId) ++offMain;
                              },
                              nullptr});
    fServer.Start();

    constexpr int kClients = 8;
    constexpr int kCalls = 200;
    std::atomic<int> finished{0};
    std::atomic<int> malformed{0};
    std::mutex valuesMutex;
    std::set<int> values;
    std::vector<std::thread> clients;
    for (int c = 0; c < kClients; ++c) {
        clients.emplace_back([&, c] {
            auto client = Connect(fServer);
            for (int i = 0; i < kCalls; ++i) {
                const int id = c * kCalls + i;
                const auto response = client->Post("/mcp", CallBody(id), "application/json");
                const auto json = response && response->status == 200
                                      ? TJSON::parse(response->body, nullptr, false)
                                      : TJSON(TJSON::value_t::discarded);
                if (json.is_discarded() || json.value("id", -1) != id || json["result"].contains("isError")) {
                    ++malformed;
                    continue;
                }
                std::lock_guard lock(valuesMutex);
                values.insert(std::stoi(json["result"]["content"][0]["text"].get<std::string>()));
            }
            ++finished;
        });
    }
    const auto deadline = std::chrono::steady_clock::now() + 120s;
    while (finished < kClients && std::chrono::steady_clock::now() < deadline) mainThread.PumpOne(10ms);
    for (auto& client : clients) client.join();
    fServer.Stop();

    EXPECT_EQ(malformed, 0);
    EXPECT_EQ(fCount, kClients * kCalls);
    EXPECT_EQ(values.size(), static_cast<size_t>(kClients * kCalls));
    EXPECT_EQ(*values.begin(), 1);
    EXPECT_EQ(*values.rbegin(), kClients * kCalls);
    EXPECT_EQ(offMain, 0);
}

TEST_F(MCPSocket, StopFromTheMainThreadServesAWaitingCall) {
    TMainThreadQueue mainThread;
    fServer.SetMainThreadRunner(&mainThread);
    fServer.Start();
    std::atomic<int> status{0};
    std::thread caller([&] {
        auto client = Connect(fServer);
        const auto response = client->Post("/mcp", CallBody(1), "application/json");
        status = response ? response->status : -1;
    });
    const auto received = [&] {
        std::lock_guard lock(fLogMutex);
        return fLog.size() >= 2;  // started, request received
    };
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (!received() && std::chrono::steady_clock::now() < deadline) std::this_thread::sleep_for(1ms);
    std::this_thread::sleep_for(20ms);
    // The call now waits for the main thread; Stop keeps serving it instead of deadlocking.
    fServer.Stop();
    caller.join();
    EXPECT_EQ(status, 200);
    EXPECT_EQ(fCount, 1);
}

TEST_F(MCPSocket, StoppedQueueTurnsCallsIntoToolErrors) {
    TMainThreadQueue mainThread;
    mainThread.Stop();
    fServer.SetMainThreadRunner(&mainThread);
    fServer.Start();
    auto client = Connect(fServer);
    const auto response = client->Post("/mcp", CallBody(1), "application/json");
    ASSERT_TRUE(response);
    EXPECT_EQ(
        TJSON::parse(response->body)["result"].dump(),
        R"({"content":[{"type":"text","text":"Error: The main thread no longer accepts work"}],"isError":true})");
    client.reset();
    fServer.Stop();
}

}  // namespace
