#include "cli/commands/RunFrames.h"

#include "cli/text/Reporting.h"
#include "cli/text/SequenceProgress.h"
#include "cli/text/StandardOutput.h"
#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "render/RenderFrame.h"
#include "render/shots/FrameList.h"
#include "render/shots/Machine.h"
#include "render/shots/SignalWatch.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace kovalune::cli {

namespace {

/// The first picture that can be read says how much memory a frame takes.
shots::DivisionRequest divisionRequest(const shots::SequencePlan& plan, const SequenceArguments& sequence,
                                       const shots::FrameForm& form, int threads) {
    shots::DivisionRequest request;
    request.jobs = sequence.jobs;
    request.threads = threads > 0 ? std::optional(threads) : std::nullopt;
    request.frames = plan.frames.size();
    for (const shots::PlannedFrame& frame : plan.frames) {
        try {
            const pictures::Picture picture = pictures::readPicture(frame.input, form.decoding);
            request.pixels = uint64_t{picture.width} * picture.height;
            request.format =
                form.depth ? render::formatOfDepth(*form.depth) : pictures::workingFormat(picture.sampleType);
            break;
        } catch (const std::exception&) {
            continue; // the run tells of it
        }
    }
    return request;
}

/// The first output says how large the others will be.
void tellLackOfRoom(const shots::SequencePlan& plan, std::size_t first) {
    const std::filesystem::path output = plan.frames[first].output;
    std::error_code error;
    const uintmax_t bytes = std::filesystem::file_size(output, error);
    if (error) {
        return; // nothing was written there
    }
    const std::filesystem::path folder = output.has_parent_path() ? output.parent_path() : ".";
    const std::filesystem::space_info space = std::filesystem::space(folder, error);
    const uintmax_t rest = plan.frames.size() - 1;
    if (!error && rest > 0 && space.available / rest < bytes) {
        tell("note: the disk of " + text::inQuotes(folder.string()) + " has room for " +
             std::to_string(space.available / std::max<uintmax_t>(bytes, 1)) + " of the " +
             std::to_string(rest) + " frames that are left, if they are as large as the first");
    }
}

} // namespace

void checkKeys(const render::ShotSettings& settings, const shots::SequencePlan& plan,
               const std::optional<int64_t>& frame) {
    if (frame && plan.isSequence) {
        throw text::Failure(text::FailureKind::kUsage,
                            "--frame: is for a picture without a number, and the INPUT has "
                            "numbers; --frames chooses among them");
    }
    if (settings.hasKeys() && !plan.isSequence && !(plan.isOnePicture && frame)) {
        throw text::Failure(
            text::FailureKind::kUsage,
            plan.isOnePicture ? "the settings have keys, and the INPUT has no number; --frame N gives it one"
                              : "the settings have keys, and these INPUTs have no numbers; write a pattern");
    }
}

bool isEmptyPart(const shots::SequencePlan& plan, const SequenceArguments& sequence, bool quiet) {
    const std::optional<shots::FramePart>& part = sequence.options.part;
    if (!part || !plan.frames.empty()) {
        return false;
    }
    if (!quiet) {
        tell("part " + std::to_string(part->number) + " of " + std::to_string(part->count) +
             " has no frame to make");
    }
    return true;
}

void tellGaps(const shots::SequencePlan& plan, bool quiet) {
    if (quiet) {
        return;
    }
    if (!plan.gaps.empty()) {
        tell("note: no file for " + text::shown(shots::framesText(plan.gaps, plan.width)) +
             " between the first frame and the last");
    }
    if (!plan.skipped.empty()) {
        tell("note: no file for " + text::shown(shots::framesText(plan.skipped, plan.width)) + ", left out");
    }
}

void tellPlan(const shots::SequencePlan& plan, const SequenceArguments& sequence,
              const shots::FrameForm& form, bool quiet) {
    std::string text;
    for (const shots::PlannedFrame& frame : plan.frames) {
        text += text::printable(frame.input) + " -> " + text::printable(frame.output) +
                (frame.isMissing ? "  (missing)" : "") +
                (frame.held ? "  (held for " + plan.nameOf(frame) + ")" : std::string()) + '\n';
    }
    printOut(text);
    tellGaps(plan, quiet);
    shots::checkOutputs(plan, sequence.options, form);
}

uint64_t memoryFor(const shots::SequencePlan& plan, const SequenceArguments& sequence,
                   const shots::FrameForm& form) {
    constexpr uint64_t kOfTheCommand = uint64_t{16} << 20U; // its code, its libraries, and what a process has
    const shots::DivisionRequest request = divisionRequest(plan, sequence, form, 0);
    if (request.pixels == 0) {
        return 0;
    }
    return kOfTheCommand + shots::bytesOfFrame(request.pixels, request.format) *
                               static_cast<uint64_t>(sequence.jobs.value_or(1));
}

FrameDivision divisionOf(const shots::SequencePlan& plan, const SequenceArguments& sequence,
                         const shots::FrameForm& form, int threads) {
    const shots::DivisionRequest request = divisionRequest(plan, sequence, form, threads);
    const int processors = shots::usableProcessors();
    const uint64_t memory = shots::freeMemory();
    const shots::Division division = shots::divided(request, processors, memory);
    if (sequence.verbose) {
        tell(shots::divisionText(division, request, processors, memory));
    }
    return {division.jobs, division.threads};
}

shots::ShotSummary
runFrames(const shots::SequencePlan& plan, int jobs, bool keepGoing, bool quiet,
          const std::function<void(const shots::RunOptions&, const shots::FrameListener&)>& run) {
    shots::Interrupt interrupt;
    shots::RunOptions options;
    options.jobs = static_cast<std::size_t>(jobs);
    options.keepGoing = keepGoing;
    options.isToStop = [&interrupt] { return interrupt.came(); };
    shots::ShotSummary summary(plan);
    {
        SequenceProgress progress(plan.frames.size(), quiet);
        run(options, [&](shots::FrameRecord& record) {
            summary.add(record);
            if (record.state == shots::FrameState::kWritten && summary.written() == 1) {
                tellLackOfRoom(plan, record.index);
            }
            progress.ended(plan.nameOf(plan.frames[record.index]));
        });
    }
    interrupt.release();
    if (interrupt.came()) {
        throw shots::Interruption(interrupt.signalNumber(),
                                  "interrupted: " + std::to_string(summary.written()) + " of " +
                                      std::to_string(plan.frames.size()) + " written");
    }
    return summary;
}

void tellNotices(const shots::ShotSummary& summary) {
    for (const std::string& notice : summary.notices()) {
        tell("note: " + notice);
    }
}

void endByWorst(const shots::ShotSummary& summary, bool strict, bool quiet) {
    std::optional<text::FailureKind> worst = summary.worst();
    std::string line = summary.line();
    if (strict && summary.idleSettings() > 0) {
        worst = text::FailureKind::kEffect;
        line += "; --strict: " +
                (summary.idleSettings() == 1 ? "a setting does"
                                             : std::to_string(summary.idleSettings()) + " settings do") +
                " nothing in any frame";
    }
    if (worst) {
        throw text::Failure(*worst, line);
    }
    if (!quiet) {
        tell(line);
    }
}

} // namespace kovalune::cli
