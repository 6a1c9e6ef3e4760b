#include "cli/RenderCommand.h"

#include "cli/AtomicFile.h"
#include "cli/EffectSettings.h"
#include "cli/FrameRender.h"
#include "cli/NumberText.h"
#include "cli/ParamsFile.h"
#include "cli/PictureMemory.h"
#include "cli/RememberedDefaults.h"
#include "cli/Selection.h"
#include "cli/StandardOutput.h"
#include "cli/picture/PictureFile.h"

#include <chrono>
#include <optional>
#include <utility>

namespace kovalune {

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
        text += std::string(what) + ' ' + fixedText(milliseconds, 3) + " ms\n";
    }
    return text;
}

struct Frame {
    host::Image image;
    std::optional<FrameReport> counts; ///< none of an effect from a file
};

Frame frameOf(OpenEffect& effect, const SourceFrame& source, const RenderArguments& arguments) {
    Frame frame;
    if (!arguments.effect.plugin) {
        frame.counts = FrameReport{.countsChanges = arguments.report.report};
    }
    ProgressLine progress({progressFrame(effect.session(), arguments.frame)}, pixelsOf(source),
                          arguments.frame.quiet);
    frame.image =
        renderFrame(effect, source, arguments.frame, progress, frame.counts ? &*frame.counts : nullptr);
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

void renderFile(OpenEffect& effect, const RenderArguments& arguments, const NamedParams& named,
                FileFormat format) {
    Times times;
    Stopwatch watch;
    const SourceFrame source = readFrame(arguments.input, arguments.frame);
    times.reading = watch.lap();
    const Frame frame = frameOf(effect, source, arguments);
    times.effect = watch.lap();
    const PictureForm form = outputForm(source.picture, format, arguments.frame);
    const std::vector<uint8_t> bytes =
        encodePicture(format, pictureOf(frame.image, source.image, source.picture, form));
    const std::vector<std::string> notes = selectionNotes(effect.session(), named, frame.counts);
    tellNotes(notes, frame.counts, arguments.report);
    if (arguments.printParams) {
        printOut(paramsFileText(effect.session()));
    }
    if (arguments.report.report) {
        const std::string report =
            selectionText(effect.session(), frame.counts, notes, arguments.report.json);
        printOut(arguments.printParams ? commented(report) : report);
    }
    checkStrict(notes, arguments.report, arguments.output);
    writeAtomically(arguments.output, bytes);
    times.writing = watch.lap();
    if (arguments.time) {
        printOut(arguments.printParams ? commented(timesText(times)) : timesText(times));
    }
    noteLeftOut(source, format);
}

} // namespace

void runRender(const RenderArguments& arguments) {
    const bool printsOnly = arguments.input.empty();
    const FileFormat format =
        printsOnly ? FileFormat::kPng : checkedOutputFormat(arguments.output, arguments.force);
    const RememberedDefaults remembered(arguments.effect, arguments.view);
    OpenEffect effect = openEffect(arguments.effect);
    const NamedParams named = applySettings(effect.session(), arguments.effect, arguments.view);
    if (printsOnly) {
        printOut(paramsFileText(effect.session()));
    } else {
        withMemoryFor(arguments.input, [&] { renderFile(effect, arguments, named, format); });
    }
    if (!arguments.frame.quiet) {
        remembered.tellIfTheyCount(effect.session());
    }
}

} // namespace kovalune
