// Worker threads that help a caller through a numbered set of pieces. The caller always takes part, so a
// call from inside a piece, or from several threads at once, cannot block for want of a free worker.
#pragma once

#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <thread>
#include <vector>

namespace kovalune::host {

class ThreadPool {
public:
    /// `slot` is below min(helpers + 1, count) and differs between pieces of one call that run at once; the
    /// caller's is 0. `piece` counts from 0. Must not throw on a helper's thread.
    using Work = std::function<void(int slot, int piece)>;

    ThreadPool() = default;
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    /// Returns when all pieces are done. Threads are started as calls first need them, as many as have a
    /// piece to take, and kept. What `work` throws on the caller's thread comes out when all helpers have
    /// left; pieces not begun by then are left out.
    void run(int count, int helpers, const Work& work);

    int startedThreads() const;

private:
    struct Job;
    class OpenJob;

    Job* openJob();
    void workerLoop();
    void startWorkers(int wanted);

    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable left_;
    std::list<Job*> jobs_;
    std::vector<std::thread> workers_;
    bool stopping_ = false;
};

} // namespace kovalune::host
