#include "render/shots/ShotSummary.h"

#include "render/shots/FrameList.h"
#include "text/MessageText.h"

#include <algorithm>

namespace kovalune::shots {

namespace {

/// Without what the summary says by itself: that the frame's input could not be read.
std::string reasonOf(const std::string& message, const PlannedFrame& frame) {
    const std::string start = "cannot read " + text::inQuotes(frame.input) + ": ";
    return message.starts_with(start) ? message.substr(start.size()) : message;
}

void add(StageReport& sum, const StageReport& frame) {
    sum.ran = sum.ran || frame.ran;
    for (std::size_t color = 0; color < sum.selected.size(); ++color) {
        sum.selected[color] += frame.selected[color];
    }
    sum.changed += frame.changed;
    sum.edge += frame.edge;
    sum.cut += frame.cut;
    sum.keptInside = frame.ran ? frame.keptInside : sum.keptInside;
}

template <class Lists>
void note(Lists& lists, const std::string& text, std::size_t frame) {
    auto found =
        std::find_if(lists.begin(), lists.end(), [&](const auto& each) { return each.first == text; });
    if (found == lists.end()) {
        found = lists.insert(found, {text, {}});
    }
    found->second.push_back(frame);
}

std::string counted(std::size_t number, const char* what) {
    return number == 0 ? std::string() : ", " + std::to_string(number) + ' ' + what;
}

} // namespace

void ShotSummary::add(const FrameRecord& record) {
    times_.reading += record.times.reading;
    times_.effect += record.times.effect;
    times_.writing += record.times.writing;
    switch (record.state) {
    case FrameState::kPassedOver:
        ++passedOver_;
        return;
    case FrameState::kGivenUp:
        ++givenUp_;
        return;
    case FrameState::kFailed:
        failures_.emplace_back(record.index, reasonOf(record.message, plan_.frames[record.index]));
        worst_ = std::max(worst_.value_or(record.kind), record.kind); // the kinds stand in this order
        return;
    case FrameState::kWritten:
        break;
    }
    ++written_;
    for (const PassRecord& pass : record.passes) {
        for (const std::string& each : pass.notes) {
            note(notes_, each, record.index);
        }
    }
    for (const std::string& part : record.leftOut) {
        note(leftOut_, part, record.index);
    }
    if (record.losses) {
        note(losses_, *record.losses, record.index);
    }
    addCounts(record);
}

void ShotSummary::addCounts(const FrameRecord& record) {
    counts_.resize(std::max(counts_.size(), record.passes.size()));
    for (std::size_t pass = 0; pass < record.passes.size(); ++pass) {
        const std::optional<FrameReport>& frame = record.passes[pass].counts;
        if (!frame) {
            continue;
        }
        if (!counts_[pass]) {
            counts_[pass] = *frame;
            continue;
        }
        counts_[pass]->pixels += frame->pixels;
        for (std::size_t stage = 0; stage < frame->stages.size(); ++stage) {
            shots::add(counts_[pass]->stages[stage], frame->stages[stage]);
        }
    }
}

std::string ShotSummary::line() const {
    const std::size_t all = plan_.frames.size();
    std::string text = std::to_string(all) + (all == 1 ? " frame: " : " frames: ") +
                       std::to_string(written_) + " written" + counted(passedOver_, "passed over");
    if (!failures_.empty()) {
        std::vector<std::pair<std::size_t, std::string>> failures = failures_;
        std::sort(failures.begin(), failures.end());
        text += counted(failures.size(), "failed (");
        for (std::size_t i = 0; i < failures.size(); ++i) {
            text += (i == 0 ? "" : "; ") + plan_.nameOf(plan_.frames[failures[i].first]) + ": " +
                    failures[i].second;
        }
        text += ')';
    }
    return text + counted(givenUp_, "given up") + counted(all - ended(), "not begun");
}

std::string ShotSummary::in(const Frames& frames) const {
    Frames sorted = frames;
    std::sort(sorted.begin(), sorted.end());
    std::string list;
    if (plan_.isSequence) {
        std::vector<int64_t> numbers;
        for (const std::size_t frame : sorted) {
            numbers.push_back(*plan_.frames[frame].number);
        }
        std::sort(numbers.begin(), numbers.end());
        list = framesText(numbers, plan_.width);
    } else {
        for (const std::size_t frame : sorted) {
            list += (list.empty() ? "" : ", ") + plan_.nameOf(plan_.frames[frame]);
        }
    }
    return " in " + std::to_string(frames.size()) + " of " + std::to_string(plan_.frames.size()) +
           " frames (" + text::shown(list) + ')';
}

std::vector<std::string> ShotSummary::notices() const {
    std::vector<std::string> texts;
    for (const auto& [text, frames] : notes_) {
        texts.push_back(text + in(frames));
    }
    for (const auto& [losses, frames] : losses_) {
        texts.push_back("the pictures are " + losses + in(frames));
    }
    for (const auto& [part, frames] : leftOut_) {
        texts.push_back("left out: " + text::shown(part) + in(frames));
    }
    return texts;
}

std::size_t ShotSummary::idleSettings() const {
    return static_cast<std::size_t>(std::count_if(
        notes_.begin(), notes_.end(), [this](const auto& each) { return each.second.size() >= written_; }));
}

} // namespace kovalune::shots
