#include "host/ThreadPool.h"

#include <algorithm>
#include <atomic>
#include <system_error>

namespace kovalune::host {

/// Lives on the caller's stack: the caller leaves only after `helpersInside` has come back to 0.
struct ThreadPool::Job {
    const Work& work;
    const int count;
    const int maxSlots;
    int slots = 1;         ///< handed out; guarded by the pool's mutex
    int helpersInside = 0; ///< likewise
    std::atomic<int> next{0};

    void drain(int slot) {
        for (int piece = next.fetch_add(1); piece < count; piece = next.fetch_add(1)) {
            work(slot, piece);
        }
    }
};

ThreadPool::~ThreadPool() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    for (std::thread& worker : workers_) {
        worker.join();
    }
}

void ThreadPool::startWorkers(int wanted) {
    try {
        while (static_cast<int>(workers_.size()) < wanted) {
            workers_.emplace_back([this] { workerLoop(); });
        }
    } catch (const std::system_error&) {
        // The caller does the work alone if the system gives no more threads.
        return;
    }
}

ThreadPool::Job* ThreadPool::openJob() {
    const auto found = std::find_if(jobs_.begin(), jobs_.end(), [](const Job* job) {
        return job->slots < job->maxSlots && job->next.load() < job->count;
    });
    return found == jobs_.end() ? nullptr : *found;
}

void ThreadPool::workerLoop() {
    std::unique_lock lock(mutex_);
    for (;;) {
        Job* job = nullptr;
        wake_.wait(lock, [&] { return stopping_ || (job = openJob()) != nullptr; });
        if (job == nullptr) {
            return;
        }
        const int slot = job->slots++;
        ++job->helpersInside;
        lock.unlock();
        job->drain(slot);
        lock.lock();
        if (--job->helpersInside == 0) {
            left_.notify_all();
        }
    }
}

/// A job that helpers may join, until this ends: then no helper is inside any more.
class ThreadPool::OpenJob {
public:
    OpenJob(ThreadPool& pool, Job& job) : pool_(pool), job_(job) {
        {
            const std::lock_guard lock(pool_.mutex_);
            pool_.startWorkers(job_.maxSlots - 1);
            pool_.jobs_.push_back(&job_);
        }
        pool_.wake_.notify_all();
    }
    ~OpenJob() {
        job_.next = job_.count; // no news unless the caller's part was cut short
        std::unique_lock lock(pool_.mutex_);
        pool_.jobs_.remove(&job_);
        pool_.left_.wait(lock, [&] { return job_.helpersInside == 0; });
    }
    OpenJob(const OpenJob&) = delete;
    OpenJob& operator=(const OpenJob&) = delete;

private:
    ThreadPool& pool_;
    Job& job_;
};

void ThreadPool::run(int count, int helpers, const Work& work) {
    Job job{work, count, std::min(helpers + 1, count)};
    if (job.maxSlots <= 1) {
        job.drain(0);
        return;
    }
    const OpenJob open(*this, job);
    job.drain(0);
}

int ThreadPool::startedThreads() const {
    const std::lock_guard lock(mutex_);
    return static_cast<int>(workers_.size());
}

} // namespace kovalune::host
