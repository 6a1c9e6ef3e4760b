// How far a frame is, on one line of a terminal: a bar, the percentage, the rate and the time left. It stands
// on standard error and is gone at the end; where that is no terminal nothing is ever written.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>

namespace kovalune {

class ProgressLine {
public:
    // `title` stands at the front, if it is not empty; `pixels` are those of the whole frame.
    ProgressLine(std::string title, std::uint64_t pixels, bool quiet);
    ~ProgressLine(); // erases the line
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // May be called by several threads at once, and as often as they like: most calls write nothing.
    void report(int current, int total);

private:
    using Clock = std::chrono::steady_clock;

    void show(const std::string& text);

    const std::string title_;
    const std::uint64_t pixels_;
    const bool shown_;
    const Clock::time_point start_ = Clock::now();
    std::mutex mutex_; // of what follows
    Clock::time_point next_ = start_;
    double reached_ = 0.0; // of 1; never goes back
    std::size_t letters_ = 0;
};

// "[#####-----]  50 %  12.3 megapixels/s  4 s left"; without rate and time as long as nothing is reached.
std::string progressText(double reached, std::uint64_t pixels, double seconds);

} // namespace kovalune
