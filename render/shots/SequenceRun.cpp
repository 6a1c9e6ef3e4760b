#include "render/shots/SequenceRun.h"

#include "render/shots/EndingSignals.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace kovalune::shots {

namespace {

/// A frame between two steps.
struct Underway {
    std::size_t frame = 0;
    std::unique_ptr<FrameTask> task;
};

enum class Step { kRead, kMake, kWrite };

class Run {
public:
    Run(std::size_t count, const RunOptions& options,
        const std::function<std::unique_ptr<FrameTask>(std::size_t)>& begin,
        const std::function<void(std::size_t, FrameTask&, const FrameOutcome&)>& ended)
        : count_(count), options_(options), begin_(begin), ended_(ended), most_(2 * options.jobs + 1) {
        for (std::size_t job = options.jobs; job > 0; --job) {
            freeJobs_.push_back(job - 1);
        }
        // While threads work nothing here takes memory: what is thrown in one of them ends the process.
        toMake_.reserve(most_);
        toWrite_.reserve(most_);
    }

    /// The calling thread works too: where the system gives no other, it does all.
    void run() {
        std::vector<std::thread> threads;
        threads.reserve(most_);
        {
            const SignalsHeldBack held; // they are the caller's
            try {
                while (threads.size() + 1 < std::min(most_, count_)) {
                    threads.emplace_back([this] { work(); });
                }
            } catch (const std::system_error&) {
            } catch (const std::bad_alloc&) {
            }
        }
        work();
        for (std::thread& thread : threads) {
            thread.join();
        }
        if (broken_) {
            std::rethrow_exception(broken_);
        }
    }

private:
    bool isToStop() const { return options_.isToStop && options_.isToStop(); }
    bool beginsMore() const { return next_ < count_ && !stopped_; }

    void work() {
        std::unique_lock lock(mutex_);
        while (true) {
            if (!toWrite_.empty() && writing_ < options_.jobs) {
                step(lock, Step::kWrite, take(toWrite_));
            } else if (!toMake_.empty() && !freeJobs_.empty()) {
                step(lock, Step::kMake, take(toMake_));
            } else if (beginsMore() && underway_ < most_ && reading_ < options_.jobs) {
                beginNext(lock);
            } else if (!beginsMore() && underway_ == 0) {
                return;
            } else {
                changed_.wait(lock);
            }
        }
    }

    static Underway take(std::vector<Underway>& queue) {
        Underway first = std::move(queue.front());
        queue.erase(queue.begin());
        return first;
    }

    void beginNext(std::unique_lock<std::mutex>& lock) {
        if (isToStop()) {
            stop();
            return;
        }
        Underway next{next_++, nullptr};
        try {
            next.task = begin_(next.frame);
        } catch (...) {
            breakOff();
            return;
        }
        if (next.task) {
            ++underway_;
            step(lock, Step::kRead, std::move(next));
        } else {
            changed_.notify_all(); // it may have been the last
        }
    }

    void step(std::unique_lock<std::mutex>& lock, Step which, Underway frame) {
        std::size_t job = 0;
        count(which, 1);
        if (which == Step::kMake) {
            job = freeJobs_.back();
            freeJobs_.pop_back();
        }
        lock.unlock();
        FrameOutcome outcome = outcomeOf(which, *frame.task, job);
        // A signal may have come meanwhile: what is not made by now is not wanted.
        if (which != Step::kWrite && isToStop()) {
            outcome = {FrameEnd::kGivenUp, text::FailureKind::kFile, {}};
        }
        lock.lock();
        count(which, -1);
        if (which == Step::kMake) {
            freeJobs_.push_back(job);
        }
        if (outcome.end == FrameEnd::kDone && which != Step::kWrite) {
            (which == Step::kRead ? toMake_ : toWrite_).push_back(std::move(frame));
        } else {
            end(lock, std::move(frame), outcome);
        }
        changed_.notify_all();
    }

    static FrameOutcome outcomeOf(Step which, FrameTask& task, std::size_t job) {
        try {
            switch (which) {
            case Step::kRead:
                task.read();
                break;
            case Step::kMake:
                task.make(job);
                break;
            case Step::kWrite:
                task.write();
                break;
            }
        } catch (const text::Failure& failure) {
            return failed(failure.kind(), failure.what());
        } catch (const std::bad_alloc&) {
            return failed(text::FailureKind::kFile, "not enough memory");
        } catch (const std::exception& exception) {
            return failed(text::FailureKind::kFile, exception.what());
        }
        return {};
    }

    /// Where there is no memory for the reason, that is the reason, in words that take none.
    static FrameOutcome failed(text::FailureKind kind, const char* reason) noexcept {
        FrameOutcome outcome{FrameEnd::kFailed, kind, {}};
        try {
            outcome.reason = reason;
        } catch (const std::bad_alloc&) {
            outcome.reason = "lack of memory";
        }
        return outcome;
    }

    void count(Step which, int change) {
        std::size_t& counter = which == Step::kWrite ? writing_ : reading_;
        if (which != Step::kMake) {
            counter += static_cast<std::size_t>(change);
        }
    }

    void end(std::unique_lock<std::mutex>& lock, Underway frame, const FrameOutcome& outcome) {
        if (outcome.end != FrameEnd::kDone && !options_.keepGoing) {
            stop();
        }
        try {
            ended_(frame.frame, *frame.task, outcome);
        } catch (...) {
            breakOff();
        }
        // Its memory is given back before another frame takes as much.
        lock.unlock();
        frame.task.reset();
        lock.lock();
        --underway_;
    }

    void stop() {
        stopped_ = true;
        changed_.notify_all();
    }

    void breakOff() {
        if (!broken_) {
            broken_ = std::current_exception();
        }
        stop();
    }

    const std::size_t count_;
    const RunOptions& options_;
    const std::function<std::unique_ptr<FrameTask>(std::size_t)>& begin_;
    const std::function<void(std::size_t, FrameTask&, const FrameOutcome&)>& ended_;
    const std::size_t most_;

    std::mutex mutex_; ///< of what follows
    std::condition_variable changed_;
    std::size_t next_ = 0;
    std::size_t underway_ = 0;
    std::size_t reading_ = 0;
    std::size_t writing_ = 0;
    bool stopped_ = false; ///< no frame is begun any more
    std::exception_ptr broken_;
    std::vector<std::size_t> freeJobs_;
    std::vector<Underway> toMake_; ///< a few; the oldest first
    std::vector<Underway> toWrite_;
};

} // namespace

void runSequence(std::size_t count, const RunOptions& options,
                 const std::function<std::unique_ptr<FrameTask>(std::size_t)>& begin,
                 const std::function<void(std::size_t, FrameTask&, const FrameOutcome&)>& ended) {
    Run(count, options, begin, ended).run();
}

} // namespace kovalune::shots
