// What became of the frames of a run, in a few lines whatever their number.
#pragma once

#include "render/shots/ShotRun.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kovalune::shots {

class ShotSummary {
public:
    explicit ShotSummary(const SequencePlan& plan) : plan_(plan) {}

    void add(const FrameRecord& record);

    std::size_t written() const { return written_; }
    std::size_t ended() const { return written_ + passedOver_ + failures_.size() + givenUp_; }

    /// "12 frames: 11 written, 1 failed (0005: it is cut short)"
    std::string line() const;

    /// What frames have in common: "'Color 3' (#FF0000) selects no pixel in 4 of 12 frames (0005-0008)".
    std::vector<std::string> notices() const;

    /// The kind of the worst failure; none where no frame failed.
    std::optional<text::FailureKind> worst() const { return worst_; }

    /// How many settings did nothing in any frame that was rendered.
    std::size_t idleSettings() const;

    /// Of all frames together, pass by pass; none of an effect that does not report.
    const std::vector<std::optional<FrameReport>>& counts() const { return counts_; }

    /// Milliseconds of all frames.
    const FrameTimes& times() const { return times_; }

private:
    using Frames = std::vector<std::size_t>; ///< their places in the plan

    void addCounts(const FrameRecord& record);
    std::string in(const Frames& frames) const;

    const SequencePlan& plan_;
    std::size_t written_ = 0;
    std::size_t passedOver_ = 0;
    std::size_t givenUp_ = 0;
    std::vector<std::pair<std::size_t, std::string>> failures_; ///< the frame and why
    std::optional<text::FailureKind> worst_;
    std::vector<std::pair<std::string, Frames>> notes_; ///< in the order that they came up in
    std::vector<std::pair<std::string, Frames>> leftOut_;
    std::vector<std::pair<std::string, Frames>> losses_;
    std::vector<std::optional<FrameReport>> counts_;
    FrameTimes times_;
};

} // namespace kovalune::shots
