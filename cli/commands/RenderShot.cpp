#include "cli/commands/RenderShot.h"

#include "cli/text/FrameLog.h"
#include "cli/text/Reporting.h"
#include "cli/text/SelectionText.h"
#include "cli/text/SequenceProgress.h"
#include "cli/text/StandardOutput.h"
#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "render/RenderFrame.h"
#include "render/shots/FrameList.h"
#include "render/shots/Machine.h"
#include "render/shots/ShotRun.h"
#include "render/shots/ShotSummary.h"
#include "render/shots/SignalWatch.h"
#include "text/MessageText.h"

#include <optional>

namespace kovalune::cli {

namespace {

shots::ShotRequest requestOf(const RenderArguments& arguments) {
    shots::ShotRequest request;
    request.form = arguments.frame.form;
    request.downsample = arguments.frame.downsample;
    request.legacy = arguments.frame.legacy;
    request.counts = !arguments.effect.plugin;
    request.countsChanges = arguments.report.report || arguments.log;
    request.existing = arguments.sequence.options.existing;
    request.settingsFiles = arguments.effect.paramsFiles;
    request.settingsFiles.insert(request.settingsFiles.end(), arguments.effect.passFiles.begin(),
                                 arguments.effect.passFiles.end());
    if (arguments.saveParams) {
        request.settingsFiles.push_back(*arguments.saveParams);
    }
    request.frame = arguments.valueFrame.value_or(0);
    return request;
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

/// The first picture that can be read says how much memory a frame takes.
shots::DivisionRequest divisionRequest(const shots::SequencePlan& plan, const RenderArguments& arguments) {
    shots::DivisionRequest request;
    request.jobs = arguments.sequence.jobs;
    request.threads = arguments.effect.threads > 0 ? std::optional(arguments.effect.threads) : std::nullopt;
    request.frames = plan.frames.size();
    for (const shots::PlannedFrame& frame : plan.frames) {
        try {
            const pictures::Picture picture = pictures::readPicture(frame.input);
            request.pixels = uint64_t{picture.width} * picture.height;
            request.format = arguments.frame.form.depth ? render::formatOfDepth(*arguments.frame.form.depth)
                                                        : pictures::workingFormat(picture.sampleType);
            break;
        } catch (const std::exception&) {
            continue; // the run tells of it
        }
    }
    return request;
}

/// What is told once all frames are done, but for the line at the end.
void tellNotices(const shots::ShotSummary& summary, const render::ShotSettings& settings,
                 const RenderArguments& arguments, host::Session& session, int64_t frame) {
    for (const std::string& notice : summary.notices()) {
        tell("note: " + notice);
    }
    if (arguments.report.report && !summary.counts().empty()) {
        printOut(
            reportText(session, settings, frame, summary.counts(), summary.notices(), arguments.report.json));
    }
}

void endByWorst(const shots::ShotSummary& summary, const RenderArguments& arguments) {
    std::optional<text::FailureKind> worst = summary.worst();
    std::string line = summary.line();
    if (arguments.report.strict && summary.idleSettings() > 0) {
        worst = text::FailureKind::kEffect;
        line += "; --strict: " +
                (summary.idleSettings() == 1 ? "a setting does"
                                             : std::to_string(summary.idleSettings()) + " settings do") +
                " nothing in any frame";
    }
    if (worst) {
        throw text::Failure(*worst, line);
    }
    if (!arguments.frame.quiet) {
        tell(line);
    }
}

} // namespace

void tellPlan(const shots::SequencePlan& plan, const RenderArguments& arguments) {
    std::string text;
    for (const shots::PlannedFrame& frame : plan.frames) {
        text += text::printable(frame.input) + " -> " + text::printable(frame.output) +
                (frame.isMissing ? "  (missing)" : "") +
                (frame.held ? "  (held for " + plan.nameOf(frame) + ")" : std::string()) + '\n';
    }
    printOut(text);
    tellGaps(plan, arguments.frame.quiet);
    shots::checkOutputs(plan, arguments.sequence.options);
}

int threadsFor(const shots::SequencePlan& plan, RenderArguments& arguments) {
    const shots::DivisionRequest request = divisionRequest(plan, arguments);
    const int processors = shots::usableProcessors();
    const uint64_t memory = shots::freeMemory();
    const shots::Division division = shots::divided(request, processors, memory);
    if (arguments.sequence.verbose) {
        tell(shots::divisionText(division, request, processors, memory));
    }
    arguments.sequence.jobs = division.jobs;
    return division.threads;
}

void renderShot(render::OpenEffect& effect, const render::ShotSettings& settings,
                const shots::ShotAreas& areas, const shots::SequencePlan& plan,
                const RenderArguments& arguments) {
    tellGaps(plan, arguments.frame.quiet);
    std::optional<FrameLog> log;
    if (arguments.log) {
        log.emplace(*arguments.log);
    }
    shots::Interrupt interrupt;
    shots::RunOptions options;
    options.jobs = static_cast<std::size_t>(arguments.sequence.jobs.value_or(1));
    options.keepGoing = arguments.sequence.options.keepGoing;
    options.isToStop = [&interrupt] { return interrupt.came(); };
    shots::ShotRequest request = requestOf(arguments);
    request.areas = areas.any() ? &areas : nullptr;
    shots::ShotSummary summary(plan);
    {
        SequenceProgress progress(plan.frames.size(), arguments.frame.quiet);
        shots::runShot(effect, settings, plan, request, options, [&](const shots::FrameRecord& record) {
            summary.add(record);
            if (log) {
                log->add(plan, settings, record);
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
    const int64_t first = plan.frames.empty() ? 0 : plan.frames.front().number.value_or(0);
    tellNotices(summary, settings, arguments, effect.session(), first);
    endByWorst(summary, arguments);
}

} // namespace kovalune::cli
