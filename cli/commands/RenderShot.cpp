#include "cli/commands/RenderShot.h"

#include "cli/commands/RunFrames.h"
#include "cli/text/FrameLog.h"
#include "cli/text/SelectionText.h"
#include "cli/text/StandardOutput.h"

#include <optional>

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

} // namespace

void renderShot(render::OpenEffect& effect, const render::ShotSettings& settings,
                const shots::ShotAreas& areas, const shots::SequencePlan& plan,
                const RenderArguments& arguments) {
    tellGaps(plan, arguments.frame.quiet);
    std::optional<FrameLog> log;
    if (arguments.log) {
        log.emplace(*arguments.log);
    }
    shots::ShotRequest request = requestOf(arguments);
    request.pictures.areas = areas.any() ? &areas : nullptr;
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
