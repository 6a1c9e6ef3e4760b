// Runs frames through their three steps, several at once, so that reading, effect and writing of neighbouring frames overlap.
#pragma once

#include "text/Failure.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace kovalune::shots {

/// One frame on its way. Each step is called once, in this order, by any thread and at the same time as steps of other frames.
/// What a step throws ends the frame.
class FrameTask {
public:
    virtual ~FrameTask() = default;

    virtual void read() = 0;
    /// `job` counts from 0 to the jobs less one; no other frame is made with the same one meanwhile.
    virtual void make(std::size_t job) = 0;
    virtual void write() = 0;
};

enum class FrameEnd {
    kDone,
    kFailed,
    kGivenUp, ///< since the run was to stop
};

struct FrameOutcome {
    FrameEnd end = FrameEnd::kDone;
    text::FailureKind kind = text::FailureKind::kFile; ///< of a failure
    std::string reason;                                ///< likewise
};

struct RunOptions {
    std::size_t jobs = 1;
    bool keepGoing = false; ///< otherwise the first failure is the last: frames under way are finished
    std::function<bool()>
        isToStop; ///< asked by several threads at once; frames under way are given up before `write`
};

/// `begin` makes the task of a frame, from 0 to `count` less one in order, or nothing where there is nothing to do; `ended`
/// tells of each that was begun, as they end. Neither is called by two threads at once, and both may take part in what the caller
/// keeps without a lock; what they throw ends the run and is thrown here. At most 2 * jobs + 1 tasks live at once.
void runSequence(
    std::size_t count, const RunOptions& options,
    const std::function<std::unique_ptr<FrameTask>(std::size_t frame)>& begin,
    const std::function<void(std::size_t frame, FrameTask& task, const FrameOutcome& outcome)>& ended);

} // namespace kovalune::shots
