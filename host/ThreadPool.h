// Worker threads that help a caller through a numbered set of pieces. The caller always takes part, so a
// call from inside a piece, or from several threads at once, cannot block for want of a free worker.
#pragma once

#include "host/LentThreads.h"

#include <atomic>
#include <concepts>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <vector>

namespace kovalune::host {

class ThreadPool {
public:
    /// A callable that is the caller's own, called as work(slot, piece). `slot` is below min(helpers + 1, count) and
    /// differs between pieces of one call that run at once; the caller's is 0. `piece` counts from 0. Must not throw on a
    /// helper's thread. No copy is made, so that a call needs no memory.
    class Work {
    public:
        template <std::invocable<int, int> Callable>
        requires(!std::is_same_v<std::remove_cvref_t<Callable>, Work>) Work(const Callable& callable)
            : callable_(std::addressof(callable)), call_([](const void* object, int slot, int piece) {
                  (*static_cast<const Callable*>(object))(slot, piece);
              }) {}

        void operator()(int slot, int piece) const { call_(callable_, slot, piece); }

    private:
        const void* callable_;
        void (*call_)(const void* callable, int slot, int piece);
    };

    /// With `lent`, which outlives the pool, no threads are started: those do the work.
    explicit ThreadPool(LentThreads* lent = nullptr) : lent_(lent) {}
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// Returns when all pieces are done. Threads are started as calls first need them, as many as have a
    /// piece to take, those of several callers at once together, and kept. What `work` throws on the caller's thread, or on a lent
    /// one, comes out when all helpers have left; pieces not begun by then are left out.
    void run(int count, int helpers, const Work& work);

    int startedThreads() const;

private:
    struct Job;
    class OpenJob;
    class LentJob;

    int openSlots() const;
    Job* openJob() const;
    void workerLoop();
    void startWorkers(int wanted);
    void awaitJob(std::unique_lock<std::mutex>& lock);

    LentThreads* const lent_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable left_;
    Job* firstJob_ = nullptr; ///< of those that helpers may join
    std::vector<std::thread> workers_;
    std::atomic<bool> stopping_{false};
    std::atomic<unsigned> jobsOpened_{0}; ///< wraps round
};

} // namespace kovalune::host
