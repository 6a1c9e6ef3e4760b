#include "cli/Commands.h"

#include "cli/commands/EffectSettings.h"
#include "cli/commands/RememberedDefaults.h"
#include "cli/commands/RenderPicture.h"
#include "cli/commands/RenderShot.h"
#include "cli/commands/RunFrames.h"
#include "cli/text/Reporting.h"
#include "cli/text/SelectionText.h"
#include "cli/text/StandardOutput.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "render/EffectVersion.h"
#include "render/ShotSettings.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/FrameList.h"
#include "render/shots/OutputFile.h"
#include "render/shots/ParamsFile.h"
#include "render/shots/SequenceInput.h"
#include "render/shots/SequencePlan.h"
#include "render/shots/ShotAreas.h"
#include "render/shots/TemporaryFiles.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace kovalune::cli {

namespace {

/// Milliseconds since it was asked last.
class Stopwatch {
public:
    double lap() {
        const Clock::time_point now = Clock::now();
        return std::chrono::duration<double, std::milli>(now - std::exchange(start_, now)).count();
    }

private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point start_ = Clock::now();
};

struct Times {
    double reading = 0.0;
    double effect = 0.0;
    double writing = 0.0;
};

std::string timesText(const Times& times) {
    std::string text;
    for (const auto& [what, milliseconds] :
         {std::pair("reading", times.reading), {"effect", times.effect}, {"writing", times.writing}}) {
        text += std::string(what) + ' ' + text::fixedText(milliseconds, 3) + " ms\n";
    }
    return text;
}

struct Frame {
    host::Image image;
    std::vector<std::optional<FrameReport>> counts; ///< of each pass; none of an effect from a file
    std::vector<std::string> notes;
};

Frame frameOf(render::OpenEffect& effect, const render::ShotSettings& settings, const shots::ShotAreas& areas,
              const shots::PlannedFrame& names, const shots::SourceFrame& source,
              const RenderArguments& arguments) {
    Frame frame;
    host::Session& session = effect.session();
    const int64_t number = arguments.valueFrame.value_or(0);
    std::vector<ProgressFrame> progressFrames;
    for (std::size_t pass = 0; pass < settings.passCount(); ++pass) {
        render::setValues(session, settings.valuesAt(pass, number));
        progressFrames.push_back(progressFrame(session, arguments.frame, settings.passName(pass)));
    }
    ProgressLine progress(std::move(progressFrames), source.pixels(), arguments.frame.quiet);
    for (std::size_t pass = 0; pass < settings.passCount(); ++pass) {
        render::setValues(session, settings.valuesAt(pass, number));
        frame.counts.emplace_back();
        if (!arguments.effect.plugin) {
            frame.counts.back() = FrameReport{.countsChanges = arguments.report.report};
        }
        FrameReport* const counts = frame.counts.back() ? &*frame.counts.back() : nullptr;
        const auto area = areas.areaOf(pass, names, source.image.width(), source.image.height(), frame.notes);
        frame.image = renderPicture(effect, source.name, pass == 0 ? source.image : frame.image,
                                    arguments.frame, progress, counts, area.get());
        progress.nextFrame();
        const std::vector<std::string> notes = passNotes(session, settings, pass, frame.counts.back());
        frame.notes.insert(frame.notes.end(), notes.begin(), notes.end());
    }
    return frame;
}

/// As a file of parameters may have them.
std::string commented(const std::string& lines) {
    std::string text;
    bool atStart = true;
    for (const char letter : lines) {
        text += atStart ? "; " : "";
        text += letter;
        atStart = letter == '\n';
    }
    return text;
}

/// Of the settings, the report and the notes; then, where they are strict, the end of it.
void tellSettings(const RenderArguments& arguments, host::Session& session,
                  const render::ShotSettings& settings, const Frame& frame) {
    tellNotes(frame.notes, frame.counts.back(), arguments.report);
    if (arguments.printParams) {
        printOut(settings.text(session));
    }
    if (arguments.report.report) {
        const std::string report = reportText(session, settings, arguments.valueFrame.value_or(0),
                                              frame.counts, frame.notes, arguments.report.json);
        printOut(arguments.printParams ? commented(report) : report);
    }
    checkStrict(frame.notes.size(), arguments.report, arguments.sequence.output);
}

/// A settings file keeps its time where nothing changes.
void saveParams(const RenderArguments& arguments, const render::ShotSettings& settings,
                host::Session& session) {
    if (!arguments.saveParams) {
        return;
    }
    const std::string text = settings.text(session);
    std::error_code error;
    if (std::filesystem::exists(*arguments.saveParams, error) &&
        shots::paramsTextOf(*arguments.saveParams) == text) {
        return;
    }
    const std::vector<uint8_t> bytes(text.begin(), text.end());
    shots::writeAtomically(*arguments.saveParams, bytes);
}

void renderFile(render::OpenEffect& effect, const render::ShotSettings& settings,
                const shots::ShotAreas& areas, const shots::PlannedFrame& names,
                const RenderArguments& arguments) {
    const pictures::FileFormat format = shots::outputFormat(names.output, arguments.frame.form);
    Times times;
    Stopwatch watch;
    const shots::SourceFrame source = shots::readFrame(names.input, arguments.frame.form);
    times.reading = watch.lap();
    const Frame frame = frameOf(effect, settings, areas, names, source, arguments);
    times.effect = watch.lap();
    const pictures::PictureForm form = shots::outputForm(source.picture, format, arguments.frame.form);
    pictures::EncodeOptions encoding = arguments.frame.form.encoding;
    if (arguments.frame.form.embeds) {
        host::Session& session = effect.session();
        encoding.settings =
            render::settingsWithVersion(session, settings.textAt(session, arguments.valueFrame.value_or(0)));
    }
    const std::vector<uint8_t> bytes = pictures::encodePicture(
        format, pictures::pictureOf(frame.image, source.image, source.picture, form), encoding);
    tellSettings(arguments, effect.session(), settings, frame);
    shots::writeOutput(names.output, bytes);
    times.writing = watch.lap();
    if (arguments.time) {
        printOut(arguments.printParams ? commented(timesText(times)) : timesText(times));
    }
    noteLeftOut(source, format);
}

/// What is written beside the pictures may replace none of them, nor what they are made with. Settings may be saved to where they
/// came from.
void checkSideFiles(const shots::SequencePlan& plan, const shots::ShotAreas& areas,
                    const RenderArguments& arguments) {
    std::vector<std::string> settings = arguments.effect.paramsFiles;
    settings.insert(settings.end(), arguments.effect.passFiles.begin(), arguments.effect.passFiles.end());
    std::vector<std::string> pictures;
    for (const shots::PlannedFrame& frame : plan.frames) {
        pictures.push_back(frame.input);
        pictures.push_back(frame.output);
        const std::vector<std::string> masks = areas.masksOf(frame);
        pictures.insert(pictures.end(), masks.begin(), masks.end());
    }
    if (arguments.saveParams) {
        shots::checkWritable(*arguments.saveParams, arguments.sequence.options.force);
        shots::checkReplacesNone(*arguments.saveParams, pictures, "the picture");
        settings.push_back(*arguments.saveParams);
    }
    if (arguments.log) {
        shots::checkWritable(*arguments.log, arguments.sequence.options.force);
        shots::checkReplacesNone(*arguments.log, pictures, "the picture");
        shots::checkReplacesNone(*arguments.log, settings, "the settings file");
    }
}

/// What a single picture takes no part in counts as several.
bool isPlain(const shots::SequencePlan& plan, const RenderArguments& arguments) {
    const shots::SequenceOptions& options = arguments.sequence.options;
    return plan.isOnePicture && options.existing == shots::ExistingOutputs::kReplace && !options.dryRun &&
           !options.part && !arguments.log;
}

void printParams(const RenderArguments& arguments) {
    const RememberedDefaults remembered(arguments.effect, arguments.view);
    render::OpenEffect effect = openEffect(arguments.effect);
    const render::ShotSettings settings = shotSettings(effect.session(), arguments.effect, arguments.view);
    saveParams(arguments, settings, effect.session());
    if (arguments.printParams) {
        printOut(settings.text(effect.session()));
    }
    render::setValues(effect.session(), settings.valuesAt(settings.passCount() - 1, 0));
    if (!arguments.frame.quiet) {
        remembered.tellIfTheyCount(effect.session());
    }
}

/// What runs that were killed have left beside the outputs.
void sweepOutputs(const shots::SequencePlan& plan) {
    std::set<std::filesystem::path> folders;
    for (const shots::PlannedFrame& frame : plan.frames) {
        folders.insert(shots::folderWrittenTo(frame.output));
    }
    for (const std::filesystem::path& folder : folders) {
        const shots::SweptFolder swept = shots::sweepFolder(folder);
        for (const std::filesystem::path& file : swept.removed) {
            tell("removed " + text::inQuotes(file.string()) + ", which a run that was killed has left");
        }
        for (const std::string& file : swept.left) {
            tell("note: cannot sweep " + file);
        }
    }
}

/// Names that the run would end on all the same.
void checkOutputNames(const shots::SequencePlan& plan, const shots::FrameForm& form) {
    for (const shots::PlannedFrame& frame : plan.frames) {
        shots::outputFormat(frame.output, form);
    }
}

/// Frames that a part will fail with.
void tellMissing(const shots::SequencePlan& plan, bool quiet) {
    std::vector<int64_t> numbers;
    for (const shots::PlannedFrame& frame : plan.frames) {
        if (frame.isMissing) {
            numbers.push_back(*frame.number);
        }
    }
    if (!quiet && !numbers.empty()) {
        tell("note: no file for " + text::shown(shots::framesText(numbers, plan.width)) +
             ", which will fail alone");
    }
}

/// False where frames are missing that were asked for.
bool renderPlan(RenderArguments arguments, const shots::SequencePlan& plan) {
    if (isEmptyPart(plan, arguments.sequence, arguments.frame.quiet)) {
        return true;
    }
    if (arguments.sequence.options.part && arguments.log) {
        arguments.log = shots::nameForPart(*arguments.log, *arguments.sequence.options.part);
    }
    const bool plain = isPlain(plan, arguments);
    if (arguments.listMissing) {
        checkOutputNames(plan, arguments.frame.form);
    } else if (!arguments.sequence.options.dryRun) {
        shots::checkOutputs(plan, arguments.sequence.options, arguments.frame.form);
    }
    const RememberedDefaults remembered(arguments.effect, arguments.view);
    if (!plain && !arguments.listFrames && !arguments.listMissing) {
        const FrameDivision division =
            divisionOf(plan, arguments.sequence, arguments.frame.form, arguments.effect.threads);
        arguments.effect.threads = division.threads;
        arguments.sequence.jobs = division.jobs;
    }
    render::OpenEffect effect = openEffect(arguments.effect);
    const render::ShotSettings settings = shotSettings(effect.session(), arguments.effect, arguments.view);
    checkKeys(settings, plan, arguments.valueFrame);
    const shots::ShotAreas areas(settings, arguments.area, arguments.frame.form.decoding.mostPixels);
    areas.check(plan);
    if (!arguments.listMissing) {
        checkSideFiles(plan, areas, arguments);
    }

    if (arguments.listFrames) {
        tellMissing(plan, arguments.frame.quiet);
        printOut(framesForFarm(plan, arguments));
        return true;
    }
    if (arguments.sweep) {
        sweepOutputs(plan);
    }
    if (arguments.listMissing) {
        const std::string missing = missingText(effect, settings, areas, plan, arguments);
        printOut(missing);
        return missing.empty();
    }
    if (arguments.sequence.options.dryRun) {
        tellPlan(plan, arguments.sequence, arguments.frame.form, arguments.frame.quiet);
        return true;
    }
    if (arguments.sequence.options.makeFolders) {
        shots::makeFolders(plan);
    }
    saveParams(arguments, settings, effect.session());
    if (plain) {
        const shots::PlannedFrame& names = plan.frames.front();
        pictures::withMemoryFor(names.input, [&] { renderFile(effect, settings, areas, names, arguments); });
    } else {
        if (arguments.printParams) {
            printOut(settings.text(effect.session()));
        }
        renderShot(effect, settings, areas, plan, arguments);
    }
    if (!arguments.frame.quiet) {
        const int64_t frame = plan.frames.empty() ? 0 : plan.frames.front().number.value_or(0);
        render::setValues(effect.session(), settings.valuesAt(settings.passCount() - 1, frame));
        remembered.tellIfTheyCount(effect.session());
    }
    return true;
}

} // namespace

bool runRender(const RenderArguments& arguments) {
    const SequenceArguments& sequence = arguments.sequence;
    if (sequence.inputs.empty()) {
        printParams(arguments);
        return true;
    }
    const shots::SequenceInput input = shots::sequenceInput(sequence.inputs);
    shots::SequenceOptions options = sequence.options;
    // Each part goes on after an input that is not there, so what speaks of all parts does.
    options.keepGoing = options.keepGoing || arguments.listMissing || arguments.listFrames;
    return renderPlan(arguments, shots::planSequence(input, sequence.output, options));
}

} // namespace kovalune::cli
