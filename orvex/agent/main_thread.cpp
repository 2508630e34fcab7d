#include "orvex/agent/main_thread.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace Orvex {

struct TMainThreadQueue::TTask {
    std::function<void()> fBody;
    // What the body threw, as text. The exception itself stays on the main thread: handing it across
    // with an exception_ptr left its last reference, and its destruction, to whichever thread let go last.
    std::optional<std::string> fError;
    bool fDone = false;
    bool fDropped = false;
    // Each caller waits on its own task: one shared condition woke every waiting connection at every
    // finished task, and the switches to threads with nothing to do cost more than the tasks.
    std::condition_variable fFinished;
};

namespace {
constexpr auto kAwaitSlice = std::chrono::milliseconds(5);
}

TMainThreadQueue::TMainThreadQueue() : fOwner(std::this_thread::get_id()) {}

TMainThreadQueue::~TMainThreadQueue() {
    Stop();
}

void TMainThreadQueue::RunSync(const std::function<void()>& aTask) {
    if (IsMainThread()) {
        aTask();
        return;
    }
    auto task = std::make_shared<TTask>();
    task->fBody = aTask;
    std::unique_lock lock(fMutex);
    if (fStopped) throw std::runtime_error("The main thread no longer accepts work");
    fTasks.push_back(task);
    fQueued.notify_all();  // only the main thread waits on it
    task->fFinished.wait(lock, [&] { return task->fDone || task->fDropped; });
    if (task->fDropped) throw std::runtime_error("The main thread no longer accepts work");
    if (task->fError) throw std::runtime_error(*task->fError);
}

void TMainThreadQueue::Await(const std::function<bool()>& aDone) {
    while (!aDone()) {
        if (IsMainThread() && !Stopped()) {
            PumpOne(kAwaitSlice);
        } else {
            std::this_thread::sleep_for(kAwaitSlice);
        }
    }
}

std::shared_ptr<TMainThreadQueue::TTask> TMainThreadQueue::TakeTask(std::unique_lock<std::mutex>& aLock,
                                                                    std::chrono::milliseconds aTimeout) {
    fQueued.wait_for(aLock, aTimeout, [&] { return fStopped || !fTasks.empty(); });
    if (fStopped || fTasks.empty()) return nullptr;
    auto task = std::move(fTasks.front());
    fTasks.pop_front();
    return task;
}

void TMainThreadQueue::Execute(TTask& aTask) {
    try {
        aTask.fBody();
    } catch (const std::exception& e) {
        aTask.fError = e.what();
    } catch (...) {
        aTask.fError = "unknown exception";
    }
}

bool TMainThreadQueue::PumpOne(std::chrono::milliseconds aTimeout) {
    std::unique_lock lock(fMutex);
    auto task = TakeTask(lock, aTimeout);
    if (!task) return false;
    lock.unlock();
    Execute(*task);
    lock.lock();
    task->fDone = true;
    lock.unlock();
    task->fFinished.notify_one();
    return true;
}

std::size_t TMainThreadQueue::PumpPending() {
    std::size_t count = 0;
    while (PumpOne(std::chrono::milliseconds(0))) ++count;
    return count;
}

void TMainThreadQueue::Run() {
    while (!Stopped()) PumpOne(std::chrono::milliseconds(100));
}

void TMainThreadQueue::Stop() {
    std::lock_guard lock(fMutex);
    fStopped = true;
    for (auto& task : fTasks) {
        task->fDropped = true;
        task->fFinished.notify_one();
    }
    fTasks.clear();
    fQueued.notify_all();
}

bool TMainThreadQueue::Stopped() const {
    std::lock_guard lock(fMutex);
    return fStopped;
}

std::size_t TMainThreadQueue::PendingCount() const {
    std::lock_guard lock(fMutex);
    return fTasks.size();
}

void TInlineRunner::RunSync(const std::function<void()>& aTask) {
    std::lock_guard lock(fMutex);
    aTask();
}

void TInlineRunner::Await(const std::function<bool()>& aDone) {
    while (!aDone()) std::this_thread::sleep_for(kAwaitSlice);
}

}  // namespace Orvex
