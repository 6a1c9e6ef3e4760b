#include "cli/commands/RenderShot.h"

#include "cli/commands/RunFrames.h"
#include "cli/text/FrameLog.h"
#include "cli/text/SelectionText.h"
#include "cli/text/StandardOutput.h"
#include "render/EffectVersion.h"
#include "render/shots/FinishedOutput.h"
#include "render/shots/FrameList.h"
#include "text/MessageText.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kovalune::cli {

namespace {

shots::ShotRequest requestOf(const RenderArguments& arguments) {
    shots::ShotRequest request;
    request.pictures.form = arguments.frame.form;
    request.downsample = arguments.frame.downsample;
    request.legacy = arguments.frame.legacy;
    request.counts = !arguments.effect.plugin;
    request.countsChanges = arguments.report.report || arguments.log;
    request.pictures.existing = arguments.sequence.options.existing;
    request.pictures.settingsFiles = arguments.effect.paramsFiles;
    request.pictures.settingsFiles.insert(request.pictures.settingsFiles.end(),
                                          arguments.effect.passFiles.begin(),
                                          arguments.effect.passFiles.end());
    if (arguments.saveParams) {
        request.pictures.settingsFiles.push_back(*arguments.saveParams);
    }
    request.frame = arguments.valueFrame.value_or(0);
    return request;
}

/// Made beforehand, since the session is for one thread; without keys all frames share one text.
std::function<std::string(const shots::PlannedFrame&)> embeddedTexts(host::Session& session,
                                                                     const render::ShotSettings& settings,
                                                                     const shots::SequencePlan& plan,
                                                                     int64_t frame) {
    std::map<int64_t, std::string> texts;
    const auto numberOf = [frame, hasKeys = settings.hasKeys()](const shots::PlannedFrame& planned) {
        return hasKeys ? planned.number.value_or(frame) : frame;
    };
    for (const shots::PlannedFrame& planned : plan.frames) {
        const int64_t number = numberOf(planned);
        if (!texts.contains(number)) {
            texts.emplace(number, render::settingsWithVersion(session, settings.textAt(session, number)));
        }
    }
    return [texts = std::move(texts), numberOf](const shots::PlannedFrame& planned) {
        return texts.at(numberOf(planned));
    };
}

shots::ShotRequest requestOf(const RenderArguments& arguments, host::Session& session,
                             const render::ShotSettings& settings, const shots::ShotAreas& areas,
                             const shots::SequencePlan& plan) {
    shots::ShotRequest request = requestOf(arguments);
    if (arguments.frame.form.embeds) {
        request.pictures.settingsOf = embeddedTexts(session, settings, plan, request.frame);
    }
    request.pictures.areas = areas.any() ? &areas : nullptr;
    return request;
}

} // namespace

std::string missingText(render::OpenEffect& effect, const render::ShotSettings& settings,
                        const shots::ShotAreas& areas, const shots::SequencePlan& plan,
                        const RenderArguments& arguments) {
    const shots::ShotRequest request = requestOf(arguments, effect.session(), settings, areas, plan);
    std::vector<int64_t> numbers;
    std::string names;
    for (const shots::PlannedFrame& frame : plan.frames) {
        if (shots::isFinished(frame, request.pictures)) {
            continue;
        }
        if (frame.number) {
            numbers.push_back(*frame.number);
        } else {
            names += text::printable(frame.input) + '\n';
        }
    }
    return numbers.empty() ? names : shots::framesText(numbers, plan.width) + '\n';
}

std::string framesForFarm(const shots::SequencePlan& plan, const RenderArguments& arguments) {
    constexpr uint64_t kMebibyte = uint64_t{1} << 20U;
    std::vector<int64_t> numbers;
    for (const shots::PlannedFrame& frame : plan.frames) {
        if (frame.number) {
            numbers.push_back(*frame.number);
        }
    }
    const uint64_t bytes = memoryFor(plan, arguments.sequence, arguments.frame.form);
    const shots::SequenceOptions& options = arguments.sequence.options;
    const std::filesystem::path folder = std::filesystem::path(plan.frames.front().output).parent_path();
    return "frames " + shots::framesText(numbers, plan.width) + "\ncount " +
           std::to_string(plan.frames.size()) + "\nmebibytes " +
           std::to_string((bytes + kMebibyte - 1) / kMebibyte) + "\ngiven" +
           (options.frames ? " frames" : "") +
           (options.existing != shots::ExistingOutputs::kReplace ? " existing" : "") + "\nfolder " +
           (folder.empty() ? "." : folder.string()) + '\n';
}

void renderShot(render::OpenEffect& effect, const render::ShotSettings& settings,
                const shots::ShotAreas& areas, const shots::SequencePlan& plan,
                const RenderArguments& arguments) {
    tellGaps(plan, arguments.frame.quiet);
    std::optional<FrameLog> log;
    if (arguments.log) {
        log.emplace(*arguments.log);
    }
    const shots::ShotRequest request = requestOf(arguments, effect.session(), settings, areas, plan);
    const shots::ShotSummary summary = runFrames(
        plan, arguments.sequence.jobs.value_or(1), arguments.sequence.options.keepGoing,
        arguments.frame.quiet, [&](const shots::RunOptions& options, const shots::FrameListener& ended) {
            shots::runShot(effect, settings, plan, request, options, [&](shots::FrameRecord& record) {
                if (log) {
                    log->add(plan, settings, record);
                }
                ended(record);
            });
        });
    tellNotices(summary);
    if (arguments.report.report && !summary.counts().empty()) {
        const int64_t first = plan.frames.front().number.value_or(request.frame);
        printOut(reportText(effect.session(), settings, first, summary.counts(), summary.notices(),
                            arguments.report.json));
    }
    endByWorst(summary, arguments.report.strict, arguments.frame.quiet);
}

} // namespace kovalune::cli
