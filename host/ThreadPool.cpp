#include "host/ThreadPool.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <new>
#include <system_error>
#include <utility>

namespace kovalune::host {

namespace {

/// How long a thread looks out for what is about to come before it sleeps. The passes of a frame follow each other
/// within microseconds; to be woken from sleep takes several times as long.
constexpr std::chrono::microseconds kLookout{50};

/// Whether `come` holds in time.
template <class Condition>
bool lookOutFor(const Condition& come) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end = Clock::now() + kLookout;
    while (!come()) {
        if (Clock::now() >= end) {
            return false;
        }
        std::this_thread::yield(); // whoever it depends on may need this very processor
    }
    return true;
}

} // namespace

/// Lives on the caller's stack: the caller leaves only after `helpersInside` has come back to 0.
struct ThreadPool::Job {
    const Work& work;
    const int count;
    const int maxSlots;
    Job* nextJob = nullptr; ///< guarded by the pool's mutex
    int slots = 1;          ///< handed out; likewise
    std::atomic<int> helpersInside{0};
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
    } catch (const std::bad_alloc&) {
        return; // likewise
    }
}

/// For helpers, of all callers at once.
int ThreadPool::openSlots() const {
    int slots = 0;
    for (const Job* job = firstJob_; job != nullptr; job = job->nextJob) {
        slots += job->maxSlots - 1;
    }
    return slots;
}

ThreadPool::Job* ThreadPool::openJob() const {
    Job* job = firstJob_;
    while (job != nullptr && (job->slots >= job->maxSlots || job->next.load() >= job->count)) {
        job = job->nextJob;
    }
    return job;
}

/// Leaves the mutex alone while it looks out.
void ThreadPool::awaitJob(std::unique_lock<std::mutex>& lock) {
    const unsigned seen = jobsOpened_;
    lock.unlock();
    lookOutFor([&] { return stopping_ || jobsOpened_ != seen; });
    lock.lock();
    wake_.wait(lock, [this] { return stopping_ || openJob() != nullptr; });
}

void ThreadPool::workerLoop() {
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        Job* const job = openJob();
        if (job == nullptr) {
            awaitJob(lock);
            continue;
        }
        const int slot = job->slots++;
        ++job->helpersInside;
        lock.unlock();
        job->drain(slot);
        lock.lock();
        if (--job->helpersInside == 0) { // the last sight of the job
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
            job_.nextJob = std::exchange(pool_.firstJob_, &job_);
            pool_.startWorkers(pool_.openSlots());
            ++pool_.jobsOpened_;
        }
        wakeHelpers();
    }
    ~OpenJob() {
        job_.next = job_.count; // no news unless the caller's part was cut short
        {
            const std::lock_guard lock(pool_.mutex_);
            Job** place = &pool_.firstJob_;
            while (*place != &job_) {
                place = &(*place)->nextJob;
            }
            *place = job_.nextJob;
        }
        const auto allHaveLeft = [this] { return job_.helpersInside == 0; };
        if (!lookOutFor(allHaveLeft)) {
            std::unique_lock lock(pool_.mutex_);
            pool_.left_.wait(lock, allHaveLeft);
        }
    }
    OpenJob(const OpenJob&) = delete;
    OpenJob& operator=(const OpenJob&) = delete;

private:
    /// No more than there are slots for: every one that wakes in vain takes time from those that work.
    void wakeHelpers() {
        for (int helper = 1; helper < job_.maxSlots; ++helper) {
            pool_.wake_.notify_one();
        }
    }

    ThreadPool& pool_;
    Job& job_;
};

/// A job that lent threads work at, however many come. What they throw must not get into their owner's code.
class ThreadPool::LentJob {
public:
    explicit LentJob(Job& job) : job_(job) {}

    static void enter(void* self) { static_cast<LentJob*>(self)->work(); }

    void work() noexcept {
        const int slot = slots_.fetch_add(1);
        if (slot >= job_.maxSlots) {
            return;
        }
        try {
            job_.drain(slot);
        } catch (...) {
            job_.next = job_.count;
            const std::lock_guard lock(mutex_);
            thrown_ = std::current_exception();
        }
    }

    void rethrow() const {
        if (thrown_) {
            std::rethrow_exception(thrown_);
        }
    }

private:
    Job& job_;
    std::atomic<int> slots_{0}; ///< handed out
    std::mutex mutex_;
    std::exception_ptr thrown_; ///< the last one
};

void ThreadPool::run(int count, int helpers, const Work& work) {
    Job job{work, count, std::min(helpers + 1, count)};
    if (job.maxSlots <= 1) {
        job.drain(0);
        return;
    }
    if (lent_ != nullptr) {
        LentJob lentJob(job);
        lent_->lend(job.maxSlots, &LentJob::enter, &lentJob);
        lentJob.work(); // where fewer have come
        lentJob.rethrow();
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
