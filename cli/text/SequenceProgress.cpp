#include "cli/text/SequenceProgress.h"

#include "cli/text/ProgressLine.h"
#include "cli/text/Reporting.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <cstdio>
#include <unistd.h>

namespace kovalune::cli {

namespace {

constexpr std::chrono::milliseconds kTerminalPause(100);
constexpr std::chrono::seconds kPlainPause(5);

} // namespace

std::string sequenceProgressText(std::size_t done, std::size_t frames, const std::string& frame,
                                 double seconds) {
    std::string text =
        "frame " + std::to_string(done) + " of " + std::to_string(frames) + " (" + text::shown(frame) + ')';
    if (done > 0 && seconds > 0.0) {
        const double rate = static_cast<double>(done) / seconds;
        text += "  " + text::fixedText(rate, rate < 1.0 ? 2 : 1) + " frames/s  " +
                durationText(static_cast<double>(frames - done) / rate) + " left";
    }
    return text;
}

SequenceProgress::SequenceProgress(std::size_t frames, bool quiet)
    : frames_(frames), shown_(!quiet), onTerminal_(::isatty(STDERR_FILENO) == 1),
      next_(start_ + (onTerminal_ ? Clock::duration() : Clock::duration(kPlainPause))) {}

void SequenceProgress::ended(const std::string& frame) {
    ++done_;
    const Clock::time_point now = Clock::now();
    if (!shown_ || now < next_) {
        return;
    }
    next_ = now + (onTerminal_ ? Clock::duration(kTerminalPause) : Clock::duration(kPlainPause));
    const std::string text =
        sequenceProgressText(done_, frames_, frame, std::chrono::duration<double>(now - start_).count());
    if (!onTerminal_) {
        tell(text);
        return;
    }
    letters_ = showOnTerminal(text, letters_);
}

void SequenceProgress::clear() {
    if (letters_ > 0) {
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(letters_), "");
    }
    letters_ = 0;
}

} // namespace kovalune::cli
