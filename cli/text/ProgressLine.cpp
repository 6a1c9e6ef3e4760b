#include "cli/text/ProgressLine.h"

#include "text/NumberText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace kovalune::cli {

namespace {

constexpr std::chrono::milliseconds kPause(100);

/// Of the terminal; 0 where it does not tell.
std::size_t columns() {
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

int callsOf(const ProgressFrame& frame) {
    int calls = 0;
    for (const ProgressStage& stage : frame.stages) {
        calls += stage.calls;
    }
    return calls;
}

int callsOf(const std::vector<ProgressFrame>& frames) {
    int calls = 0;
    for (const ProgressFrame& frame : frames) {
        if (frame.stages.empty()) {
            return 0;
        }
        calls += callsOf(frame);
    }
    return calls;
}

} // namespace

std::string durationText(double seconds) {
    constexpr double kLongest = 360000.0;
    const auto whole = static_cast<int64_t>(std::lround(std::clamp(seconds, 0.0, kLongest)));
    if (whole < 60) {
        return std::to_string(whole) + " s";
    }
    const bool hours = whole >= 3600;
    const int64_t smaller = hours ? whole / 60 : whole;
    const std::string digits = std::to_string(smaller % 60);
    return std::to_string(smaller / 60) + (digits.size() < 2 ? ":0" : ":") + digits + (hours ? " h" : " min");
}

std::string progressText(double reached, uint64_t pixels, double seconds, const std::string& stage) {
    constexpr std::size_t kBarLetters = 20;
    constexpr double kPixelsInMegapixel = 1e6;
    const auto done = static_cast<std::size_t>(reached * static_cast<double>(kBarLetters));
    std::string percent = std::to_string(static_cast<int>(reached * 100.0));
    percent.insert(0, 3 - std::min<std::size_t>(percent.size(), 3), ' ');
    std::string text =
        '[' + std::string(done, '#') + std::string(kBarLetters - done, '-') + "] " + percent + " %";
    if (!stage.empty()) {
        text += "  " + stage;
    }
    if (reached > 0.0 && seconds > 0.0) {
        const double rate = static_cast<double>(pixels) * reached / seconds / kPixelsInMegapixel;
        text += "  " + durationText(seconds) + " gone, " + durationText(seconds * (1.0 - reached) / reached) +
                " left, " + text::fixedText(rate, 1) + " megapixels/s";
    }
    return text;
}

ProgressLine::ProgressLine(std::vector<ProgressFrame> frames, uint64_t pixels, bool quiet)
    : frames_(std::move(frames)), pixels_(pixels * frames_.size()),
      shown_(!quiet && ::isatty(STDERR_FILENO) == 1), callsInAll_(callsOf(frames_)) {}

void ProgressLine::clear() {
    const std::scoped_lock lock(mutex_);
    if (letters_ > 0) {
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(letters_), "");
    }
    letters_ = 0;
}

void ProgressLine::report(int current, int total) {
    if (!shown_ || total <= 0) {
        return;
    }
    const std::scoped_lock lock(mutex_);
    ++calls_;
    reached_ = std::max(reached_, reached(current, total));
    const Clock::time_point now = Clock::now();
    const bool isLast = isCounted() && callsBefore_ + calls_ == callsInAll_;
    if (now < next_ && !isLast) {
        return;
    }
    next_ = now + kPause;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const std::string& title = frames_[frame_].title;
    letters_ = showOnTerminal(
        (title.empty() ? "" : title + "  ") + progressText(reached_, pixels_, seconds, stage()), letters_);
}

void ProgressLine::nextFrame() {
    const std::scoped_lock lock(mutex_);
    callsBefore_ += callsOf(frames_[frame_]); // also where it made fewer
    calls_ = 0;
    frame_ = std::min(frame_ + 1, frames_.size() - 1);
}

double ProgressLine::reached(int current, int total) const {
    const double share =
        isCounted()
            ? static_cast<double>(callsBefore_ + calls_) / callsInAll_
            : (static_cast<double>(frame_) + std::clamp(static_cast<double>(current) / total, 0.0, 1.0)) /
                  static_cast<double>(frames_.size());
    return std::min(share, 1.0);
}

/// What makes the next report.
std::string ProgressLine::stage() const {
    int calls = 0;
    std::string name;
    for (const ProgressStage& stage : frames_[frame_].stages) {
        if (stage.calls == 0) {
            continue;
        }
        calls += stage.calls;
        name = stage.name;
        if (calls_ < calls) {
            break;
        }
    }
    return name;
}

/// Cut to the terminal: a line that wraps could not be written over.
std::size_t showOnTerminal(const std::string& text, std::size_t letters) {
    const std::size_t room = columns();
    const std::string line = room > 1 ? text.substr(0, room - 1) : text;
    const std::size_t rest = letters > line.size() ? letters - line.size() : 0;
    std::fprintf(stderr, "\r%s%*s", line.c_str(), static_cast<int>(rest), "");
    std::fflush(stderr);
    return line.size();
}

} // namespace kovalune::cli
