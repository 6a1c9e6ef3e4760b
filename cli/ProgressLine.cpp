#include "cli/ProgressLine.h"

#include "cli/NumberText.h"

#include <algorithm>
#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace kovalune {

namespace {

constexpr std::chrono::milliseconds kPause(100);

// Of the terminal; 0 where it does not tell.
std::size_t columns() {
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

// "4 s", "3:05 min", "1:00 h"
std::string durationText(double seconds) {
    constexpr double kLongest = 360000.0;
    const auto whole = static_cast<std::int64_t>(std::clamp(seconds, 0.0, kLongest) + 0.5);
    if (whole < 60)
        return std::to_string(whole) + " s";
    const bool hours = whole >= 3600;
    const std::int64_t smaller = hours ? whole / 60 : whole;
    const std::string digits = std::to_string(smaller % 60);
    return std::to_string(smaller / 60) + (digits.size() < 2 ? ":0" : ":") + digits + (hours ? " h" : " min");
}

} // namespace

std::string progressText(double reached, std::uint64_t pixels, double seconds) {
    constexpr std::size_t kBarLetters = 20;
    constexpr double kPixelsInMegapixel = 1e6;
    const auto done = static_cast<std::size_t>(reached * static_cast<double>(kBarLetters));
    std::string percent = std::to_string(static_cast<int>(reached * 100.0));
    percent.insert(0, 3 - std::min<std::size_t>(percent.size(), 3), ' ');
    std::string text =
        '[' + std::string(done, '#') + std::string(kBarLetters - done, '-') + "] " + percent + " %";
    if (reached > 0.0 && seconds > 0.0) {
        const double rate = static_cast<double>(pixels) * reached / seconds / kPixelsInMegapixel;
        text += "  " + fixedText(rate, 1) + " megapixels/s  " +
                durationText(seconds * (1.0 - reached) / reached) + " left";
    }
    return text;
}

ProgressLine::ProgressLine(std::string title, std::uint64_t pixels, bool quiet)
    : title_(std::move(title)), pixels_(pixels), shown_(!quiet && ::isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
    if (letters_ > 0)
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(letters_), "");
}

void ProgressLine::report(int current, int total) {
    if (!shown_ || total <= 0)
        return;
    const std::unique_lock lock(mutex_, std::try_to_lock); // who comes second has nothing newer to tell
    if (!lock.owns_lock())
        return;
    reached_ = std::max(reached_, std::clamp(static_cast<double>(current) / total, 0.0, 1.0));
    const Clock::time_point now = Clock::now();
    if (now < next_)
        return;
    next_ = now + kPause;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    show((title_.empty() ? "" : title_ + "  ") + progressText(reached_, pixels_, seconds));
}

// Cut to the terminal: a line that wraps could not be written over.
void ProgressLine::show(const std::string& text) {
    const std::size_t room = columns();
    const std::string line = room > 1 ? text.substr(0, room - 1) : text;
    const std::size_t rest = letters_ > line.size() ? letters_ - line.size() : 0;
    std::fprintf(stderr, "\r%s%*s", line.c_str(), static_cast<int>(rest), "");
    std::fflush(stderr);
    letters_ = line.size();
}

} // namespace kovalune
