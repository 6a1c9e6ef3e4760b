// How far the frames of a run are: one line of a terminal, or elsewhere a line every five seconds.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace kovalune::cli {

class SequenceProgress {
public:
    SequenceProgress(std::size_t frames, bool quiet);
    ~SequenceProgress() { clear(); }
    SequenceProgress(const SequenceProgress&) = delete;
    SequenceProgress& operator=(const SequenceProgress&) = delete;

    /// One frame more is done, written or not. Called by one thread at a time.
    void ended(const std::string& frame);

    void clear(); ///< erases the terminal's line

private:
    using Clock = std::chrono::steady_clock;

    const std::size_t frames_;
    const bool shown_;
    const bool onTerminal_;
    const Clock::time_point start_ = Clock::now();
    Clock::time_point next_;
    std::size_t done_ = 0;
    std::size_t letters_ = 0;
};

/// "frame 7 of 12 (0007)  2.1 frames/s  3 s left"
std::string sequenceProgressText(std::size_t done, std::size_t frames, const std::string& frame,
                                 double seconds);

} // namespace kovalune::cli
