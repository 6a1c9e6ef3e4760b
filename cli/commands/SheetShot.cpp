#include "cli/commands/SheetShot.h"

#include "cli/commands/EffectSettings.h"
#include "cli/commands/RememberedDefaults.h"
#include "cli/commands/RunFrames.h"
#include "cli/commands/SheetPage.h"
#include "cli/text/SelectionText.h"
#include "cli/text/StandardOutput.h"
#include "pictures/PictureMemory.h"
#include "pictures/TextDrawing.h"
#include "render/shots/DrawnFile.h"
#include "render/shots/OutputFile.h"
#include "render/shots/ShotAreas.h"
#include "render/shots/SignalWatch.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

namespace kovalune::cli {

namespace {

/// Its number, or the end of its picture's name, in which names of one kind differ.
std::string captionOf(const shots::SequencePlan& plan, const shots::PlannedFrame& frame) {
    if (frame.number) {
        return plan.nameOf(frame);
    }
    constexpr std::size_t kMostLetters = 24;
    const std::string name = text::printable(std::filesystem::path(frame.input).filename().string());
    return name.size() <= kMostLetters ? name : "..." + name.substr(name.size() - kMostLetters);
}

/// About as many rows as columns.
std::size_t columnsFor(std::size_t frames) {
    return static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(frames))));
}

SheetLayout layoutOfFrames(const shots::SequencePlan& plan, const pictures::Picture& first,
                           const SheetArguments& arguments) {
    SheetContent content{.count = plan.frames.size(), .width = first.width, .height = first.height};
    for (const shots::PlannedFrame& frame : plan.frames) {
        content.textWidth = std::max(content.textWidth, pictures::textSize(captionOf(plan, frame), 1).width);
    }
    return layoutFor(content, arguments, columnsFor(plan.frames.size()), "frames");
}

void requireSize(const pictures::Picture& picture, const pictures::Picture& first, const std::string& file) {
    if (picture.width != first.width || picture.height != first.height) {
        throw text::Failure(text::FailureKind::kFile,
                            text::inQuotes(file) + " is " + std::to_string(picture.width) + " x " +
                                std::to_string(picture.height) + " pixels and the first frame " +
                                std::to_string(first.width) + " x " + std::to_string(first.height) +
                                "; a sheet has frames of one size");
    }
}

shots::ShotRequest requestOf(const SheetArguments& arguments, const shots::ShotAreas& areas) {
    shots::ShotRequest request;
    request.pictures.form = arguments.frame.form;
    request.pictures.areas = areas.any() ? &areas : nullptr;
    request.downsample = arguments.frame.downsample;
    request.legacy = arguments.frame.legacy;
    request.counts = !arguments.effect.plugin;
    request.countsChanges = arguments.report.report;
    request.frame = arguments.valueFrame.value_or(0);
    return request;
}

/// Once every frame is drawn.
void tellSelection(host::Session& session, const render::ShotSettings& settings,
                   const shots::SequencePlan& plan, const shots::ShotSummary& summary,
                   const SheetArguments& arguments) {
    tellNotices(summary);
    if (arguments.report.report && !summary.counts().empty()) {
        const int64_t first = plan.frames.front().number.value_or(0);
        printOut(
            reportText(session, settings, first, summary.counts(), summary.notices(), arguments.report.json));
    }
    checkStrict(summary.idleSettings(), arguments.report, arguments.output);
}

shots::ShotSummary drawFrames(render::OpenEffect& effect, const render::ShotSettings& settings,
                              const shots::SequencePlan& plan, const shots::ShotRequest& request, int jobs,
                              const SheetArguments& arguments) {
    try {
        return runFrames(plan, jobs, false, arguments.frame.quiet,
                         [&](const shots::RunOptions& options, const shots::FrameListener& ended) {
                             shots::runShot(effect, settings, plan, request, options,
                                            [&](shots::FrameRecord& record) {
                                                ended(record);
                                                if (record.state == shots::FrameState::kFailed) {
                                                    throw text::Failure(record.kind, record.message);
                                                }
                                            });
                         });
    } catch (const shots::Interruption& interruption) {
        throw shots::Interruption(interruption.signalNumber(),
                                  "interrupted: " + text::inQuotes(arguments.output) + " is not written");
    }
}

void drawFile(render::OpenEffect& effect, const render::ShotSettings& settings, const shots::ShotAreas& areas,
              const shots::SequencePlan& plan, const SheetArguments& arguments, pictures::FileFormat format,
              int jobs) {
    const std::string& firstFile = plan.frames.front().input;
    const pictures::Picture first = pictures::withMemoryFor(
        firstFile, [&] { return pictures::readPicture(firstFile, arguments.frame.form.decoding); });
    const SheetSamples samples = sheetSamples(first, format, arguments.frame.form);
    SheetPage page(layoutOfFrames(plan, first, arguments), samples.drawn);
    for (std::size_t cell = 0; cell < plan.frames.size(); ++cell) {
        page.name(cell, captionOf(plan, plan.frames[cell]));
    }
    shots::ShotRequest request = requestOf(arguments, areas);
    request.pictures.take = [&](std::size_t cell, const shots::SourceFrame& source,
                                const host::Image& result) {
        requireSize(source.picture, first, source.name);
        page.picture(cell, result, source);
    };
    const shots::ShotSummary summary = drawFrames(effect, settings, plan, request, jobs, arguments);
    tellSelection(effect.session(), settings, plan, summary, arguments);
    shots::writeOutput(arguments.output, shots::encodeDrawn(format, std::move(page).drawn(), samples.written,
                                                            arguments.frame.form.encoding));
}

} // namespace

void drawShot(const SheetArguments& arguments, const shots::SequencePlan& plan, pictures::FileFormat format) {
    if (!arguments.views.empty()) {
        throw text::Failure(text::FailureKind::kUsage,
                            "--views: is for one picture; of a shot one view is drawn, that of --view");
    }
    // What a sheet shows goes by its command line alone.
    const std::string view = arguments.view.value_or("Normal");
    const RememberedDefaults remembered(arguments.effect, view);
    const FrameDivision division =
        divisionOf(plan, SequenceArguments{}, arguments.frame.form, arguments.effect.threads);
    EffectArguments effectArguments = arguments.effect;
    effectArguments.threads = division.threads;
    render::OpenEffect effect = openEffect(effectArguments);
    const render::ShotSettings settings = shotSettings(effect.session(), arguments.effect, view);
    checkKeys(settings, plan, arguments.valueFrame);
    const shots::ShotAreas areas(settings, arguments.area, arguments.frame.form.decoding.mostPixels);
    areas.check(plan);
    pictures::withMemoryFor(
        arguments.output, [&] { drawFile(effect, settings, areas, plan, arguments, format, division.jobs); });
    if (!arguments.frame.quiet) {
        const int64_t frame = plan.frames.front().number.value_or(0);
        render::setValues(effect.session(), settings.valuesAt(settings.passCount() - 1, frame));
        remembered.tellIfTheyCount(effect.session());
    }
}

} // namespace kovalune::cli
