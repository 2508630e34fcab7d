// Load on loopback: 64 slow peers (trickled heads, idle connections, trickled bodies with and without the
// token) stay open while 8 clients make mixed tool calls, and every call is answered within a second;
// then the memory that batches of many small requests cost stays under a stated bound. Bounded in time:
// the whole test runs for a few seconds and stops by itself.
#include <gtest/gtest.h>
#include <httplib.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <fstream>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "orvex/agent/main_thread.h"
#include "orvex/agent/mcp_server.h"
#include "tests/agent/mcp_test_support.h"
#include "tests/agent/raw_socket.h"

using namespace Orvex;
using namespace Orvex::Testing;
using namespace std::chrono_literals;

namespace {

using TClock = std::chrono::steady_clock;

const std::string kToken = "load-test-token";

std::size_t ResidentBytes() {
    std::ifstream statm("/proc/self/statm");
    std::size_t pages = 0;
    std::size_t resident = 0;
    statm >> pages >> resident;
    return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

// A slow peer of one of four kinds, re-opened whenever the server ends it, one byte further at each step.
class TSlowPeer {
  public:
    enum class TKind { skTrickledHead, skIdle, skBodyWithoutToken, skBodyWithToken };

    TSlowPeer(std::uint16_t aPort, TKind aKind) : fPort(aPort), fKind(aKind) { Open(); }

    void Step() {
        if (fKind == TKind::skIdle) return;
        if (fSent >= fScript.size() || !fSocket->Send(fScript.substr(fSent, 1))) {
            Open();
            return;
        }
        ++fSent;
    }

  private:
    void Open() {
        fSocket = std::make_unique<TRawSocket>(fPort);
        const std::string body = Rpc("tools/call", {{"name", "add_count"}}).dump();
        const std::string auth = "Authorization: Bearer " + kToken + "\r\n";
        fSent = 0;
        switch (fKind) {
            case TKind::skTrickledHead:
                fScript = PostHead(body.size(), auth) + body;
                break;
            case TKind::skIdle:
                fScript.clear();
                break;
            case TKind::skBodyWithoutToken:
            case TKind::skBodyWithToken: {
                // The head goes out whole; the body trickles.
                const std::string head = PostHead(body.size(), fKind == TKind::skBodyWithToken ? auth : "");
                fSocket->Send(head);
                fScript = body;
                break;
            }
        }
    }

    std::uint16_t fPort;
    TKind fKind;
    std::unique_ptr<TRawSocket> fSocket;
    std::string fScript;
    std::size_t fSent = 0;
};

TEST(MCPLoad, SlowPeersDoNotDelayOtherClients) {
    TMainThreadQueue mainThread;
    TORXMCPServer server;
    server.SetPort(0);
    server.SetLabel(FakeLabel());
    server.SetAuthToken(kToken);
    server.SetMainThreadRunner(&mainThread);
    std::atomic<int> count{0};
    server.RegisterTool("add_count", "Counts", nullptr,
                        [&](TORXBaseLabel&, const TJSON&) { return TextResult(std::to_string(++count)); });
    server.RegisterTool("list_items", "Lists", nullptr, [](TORXBaseLabel&, const TJSON&) {
        TJSON items = TJSON::array();
        for (int i = 0; i < 200; ++i) items.push_back({{"index", i}, {"name", "Item" + std::to_string(i)}});
        return TextResult(items.dump());
    });
    server.Start();
    const std::uint16_t port = server.BoundPort();

    std::atomic<bool> done{false};
    std::thread slow([&] {
        std::vector<std::unique_ptr<TSlowPeer>> peers;
        for (int i = 0; i < 64; ++i)
            peers.push_back(std::make_unique<TSlowPeer>(port, static_cast<TSlowPeer::TKind>(i % 4)));
        while (!done) {
            for (auto& peer : peers) peer->Step();
            std::this_thread::sleep_for(100ms);
        }
    });
    std::this_thread::sleep_for(300ms);  // every slow peer is connected and under way

    std::mutex resultsMutex;
    std::vector<std::chrono::milliseconds> latencies;
    std::atomic<int> failures{0};
    std::vector<std::thread> clients;
    std::atomic<int> clientsLeft{8};
    for (int c = 0; c < 8; ++c) {
        clients.emplace_back([&, c] {
            httplib::Client client("127.0.0.1", port);
            client.set_keep_alive(true);
            client.set_read_timeout(5, 0);
            client.set_bearer_token_auth(kToken);
            const char* methods[] = {"add_count", "list_items", "tools/list", "ping"};
            const auto end = TClock::now() + 2500ms;
            for (int i = 0; TClock::now() < end; ++i) {
                const std::string method = methods[(i + c) % 4];
                const TJSON body = method.find('/') != std::string::npos || method == "ping"
                                       ? Rpc(method, nullptr, i)
                                       : Rpc("tools/call", {{"name", method}}, i);
                const auto start = TClock::now();
                const auto response = client.Post("/mcp", body.dump(), "application/json");
                const auto took =
                    std::chrono::duration_cast<std::chrono::milliseconds>(TClock::now() - start);
                if (!response || response->status != 200) ++failures;
                std::lock_guard lock(resultsMutex);
                latencies.push_back(took);
            }
            --clientsLeft;
        });
    }
    mainThread.Await([&] { return clientsLeft == 0; });
    for (auto& client : clients) client.join();
    done = true;
    slow.join();

    EXPECT_EQ(failures, 0);
    ASSERT_GT(latencies.size(), 80u);
    const auto slowest = *std::max_element(latencies.begin(), latencies.end());
    EXPECT_LT(slowest, 1000ms);
    RecordProperty("calls", static_cast<int>(latencies.size()));
    RecordProperty("slowest_ms", static_cast<int>(slowest.count()));

    // Memory: eight clients at once each send a batch of 256 tools/list calls and a batch of two
    // million tiny elements (refused on its length). The resident size, sampled throughout, grows by
    // less than 256 MiB: each request holds at most its body (MaxRequestBytes), the tree of at most
    // MaxBatchRequests elements, and an answer of at most MaxResponseBytes.
    std::string tiny = "[";
    for (int i = 0; i < 2'000'000; ++i) tiny += "{},";
    tiny.back() = ']';
    TJSON lists = TJSON::array();
    for (int i = 0; i < kDefaultMaxBatchRequests; ++i) lists.push_back(Rpc("tools/list", nullptr, i));
    const std::string listsText = lists.dump();
    const std::size_t before = ResidentBytes();
    std::atomic<std::size_t> peak{before};
    std::atomic<bool> sampling{true};
    std::thread sampler([&] {
        while (sampling) {
            peak = std::max(peak.load(), ResidentBytes());
            std::this_thread::sleep_for(2ms);
        }
    });
    std::atomic<int> batchFailures{0};
    std::vector<std::thread> batches;
    for (int c = 0; c < 8; ++c) {
        batches.emplace_back([&] {
            httplib::Client client("127.0.0.1", port);
            client.set_read_timeout(10, 0);
            client.set_bearer_token_auth(kToken);
            const auto listed = client.Post("/mcp", listsText, "application/json");
            if (!listed || listed->status != 200) ++batchFailures;
            const auto refused = client.Post("/mcp", tiny, "application/json");
            if (!refused || refused->status != 400) ++batchFailures;
        });
    }
    for (auto& batch : batches) batch.join();
    sampling = false;
    sampler.join();
    server.Stop();
    EXPECT_EQ(batchFailures, 0);
    const std::size_t growth = peak > before ? peak - before : 0;
    RecordProperty("batch_rss_growth_mib", static_cast<int>(growth >> 20));
    EXPECT_LT(growth, std::size_t{256} << 20);
}

}  // namespace
