// How far the frames of a command are, on one line of a terminal: a bar over all of them, the percentage, the stage
// that is worked on, the time gone and left, and the rate. It stands on standard error and is gone at the end; where
// that is no terminal nothing is ever written.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace kovalune::cli {

/// A part of a frame, and how often the effect reports while it lasts.
struct ProgressStage {
    std::string name;
    int calls = 0;
};

struct ProgressFrame {
    std::string title; ///< at the front of the line, if it is not empty
    std::vector<ProgressStage>
        stages; ///< in order; none: only the effect's own percentage tells how far it is
};

class ProgressLine {
public:
    /// All frames to come, the first of which begins; `pixels` are those of one.
    ProgressLine(std::vector<ProgressFrame> frames, uint64_t pixels, bool quiet);
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// The effect's report: `current` of `total` of this frame. May be called by several threads at once, and as often as
    /// they like: most calls write nothing.
    void report(int current, int total);

    void nextFrame();

    void clear(); ///< erases the line, until the next report

private:
    using Clock = std::chrono::steady_clock;

    bool isCounted() const { return callsInAll_ > 0; }
    double reached(int current, int total) const;
    std::string stage() const;

    const std::vector<ProgressFrame> frames_; ///< at least one
    const uint64_t pixels_;
    const bool shown_;
    const int callsInAll_; ///< 0: not all frames tell
    const Clock::time_point start_ = Clock::now();
    std::mutex mutex_; ///< of what follows
    Clock::time_point next_ = start_;
    std::size_t frame_ = 0;
    int callsBefore_ = 0;  ///< of the frames that are done
    int calls_ = 0;        ///< of this one
    double reached_ = 0.0; ///< of 1; never goes back
    std::size_t letters_ = 0;
};

/// "4 s", "3:05 min", "1:00 h"
std::string durationText(double seconds);

/// Writes the text over what stood on the terminal's line, of which `letters` are known, and returns its own.
std::size_t showOnTerminal(const std::string& text, std::size_t letters);

/// "[#####-----]  50 %  Base  4 s gone, 4 s left, 12.3 megapixels/s"; without times and rate as long as nothing is
/// reached, and without a stage that has no name.
std::string progressText(double reached, uint64_t pixels, double seconds, const std::string& stage = {});

} // namespace kovalune::cli
