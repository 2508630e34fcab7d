#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include "orvex/agent/main_thread.h"

using namespace Orvex;
using namespace std::chrono_literals;

namespace {

TEST(MainThreadQueue, RunsWorkerTasksOnTheMainThreadAndWaits) {
    TMainThreadQueue queue;
    const auto mainId = std::this_thread::get_id();
    std::atomic<bool> done{false};
    std::thread::id ranOn;
    std::string error;
    std::thread worker([&] {
        queue.RunSync([&] { ranOn = std::this_thread::get_id(); });
        try {
            queue.RunSync([] { throw std::runtime_error("tool failed"); });
        } catch (const std::runtime_error& e) {
            error = e.what();
        }
        done = true;
    });
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (!done && std::chrono::steady_clock::now() < deadline) queue.PumpOne(10ms);
    worker.join();
    EXPECT_EQ(ranOn, mainId);
    EXPECT_EQ(error, "tool failed");
}

TEST(MainThreadQueue, MainThreadRunsItsOwnTasksAtOnce) {
    TMainThreadQueue queue;
    int runs = 0;
    queue.RunSync([&] { ++runs; });
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(queue.PumpOne(1ms));
    EXPECT_EQ(queue.PumpPending(), 0u);
}

TEST(MainThreadQueue, StopReleasesWaitingCallersAndRefusesNewOnes) {
    TMainThreadQueue queue;
    std::atomic<int> refused{0};
    std::atomic<bool> ran{false};
    std::thread worker([&] {
        try {
            queue.RunSync([&] { ran = true; });
        } catch (const std::runtime_error&) {
            ++refused;
        }
    });
    // Stop only once the task is queued, so that it is dropped rather than refused at the door.
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (queue.PendingCount() == 0 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(1ms);
    queue.Stop();
    worker.join();
    EXPECT_FALSE(ran);
    EXPECT_EQ(refused, 1);
    std::thread late([&] { EXPECT_THROW(queue.RunSync([] {}), std::runtime_error); });
    late.join();
    EXPECT_FALSE(queue.PumpOne(1ms));
    queue.Run();  // returns at once once stopped
}

}  // namespace
