// The hand-off that keeps the drawing document on one thread: the MCP server's connection threads ask the
// host's main thread to run a tool and wait for it. A host with an event loop implements IMainThreadRunner
// on top of it; a host without one (a console server) creates a TMainThreadQueue and pumps it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace Orvex {

class IMainThreadRunner {
  public:
    virtual ~IMainThreadRunner() = default;

    // Runs aTask on the main thread and returns when it has finished; an exception aTask throws reaches
    // the caller as a std::runtime_error with the same message. Throws std::runtime_error when the main
    // thread no longer takes work. Called from any thread; from the main thread itself it runs aTask at once.
    virtual void RunSync(const std::function<void()>& aTask) = 0;

    // On the main thread: keeps serving RunSync until aDone() holds, so that the main thread can wait for
    // workers that may still need it. On another thread: simply waits until aDone() holds.
    virtual void Await(const std::function<bool()>& aDone) = 0;
};

// A FIFO of tasks for the thread that created it. Tasks run one at a time, in the order they came.
class TMainThreadQueue final : public IMainThreadRunner {
  public:
    TMainThreadQueue();  // the creating thread is the main thread
    ~TMainThreadQueue() override;
    TMainThreadQueue(const TMainThreadQueue&) = delete;
    TMainThreadQueue& operator=(const TMainThreadQueue&) = delete;

    void RunSync(const std::function<void()>& aTask) override;
    void Await(const std::function<bool()>& aDone) override;

    // Main thread only. PumpOne waits up to aTimeout for a task and runs it; false when none came or the
    // queue is stopped. PumpPending runs what is queued now without waiting. Run pumps until Stop.
    bool PumpOne(std::chrono::milliseconds aTimeout);
    std::size_t PumpPending();
    void Run();

    // From any thread: Run returns, queued tasks are dropped (their callers get an exception) and later
    // RunSync calls fail at once.
    void Stop();
    bool Stopped() const;
    std::size_t PendingCount() const;  // tasks waiting to run
    bool IsMainThread() const { return std::this_thread::get_id() == fOwner; }

  private:
    struct TTask;
    std::shared_ptr<TTask> TakeTask(std::unique_lock<std::mutex>& aLock, std::chrono::milliseconds aTimeout);
    static void Execute(TTask& aTask);

    const std::thread::id fOwner;
    mutable std::mutex fMutex;
    std::condition_variable fQueued;
    std::deque<std::shared_ptr<TTask>> fTasks;
    bool fStopped = false;
};

// Runs every task on the calling thread, one at a time: for hosts whose document tolerates any thread, and
// for tests.
class TInlineRunner final : public IMainThreadRunner {
  public:
    void RunSync(const std::function<void()>& aTask) override;
    void Await(const std::function<bool()>& aDone) override;

  private:
    std::mutex fMutex;
};

}  // namespace Orvex
