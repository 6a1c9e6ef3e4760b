#include "cli/Commands.h"

#include "cli/commands/EffectSettings.h"
#include "cli/commands/RememberedDefaults.h"
#include "cli/commands/RenderPicture.h"
#include "cli/text/SelectionText.h"
#include "cli/text/StandardOutput.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "render/SelectionNotes.h"
#include "render/SettingsText.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/OutputFile.h"
#include "text/NumberText.h"

#include <chrono>
#include <optional>
#include <utility>

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
    std::optional<FrameReport> counts; ///< none of an effect from a file
};

Frame frameOf(render::OpenEffect& effect, const shots::SourceFrame& source,
              const RenderArguments& arguments) {
    Frame frame;
    if (!arguments.effect.plugin) {
        frame.counts = FrameReport{.countsChanges = arguments.report.report};
    }
    ProgressLine progress({progressFrame(effect.session(), arguments.frame)}, source.pixels(),
                          arguments.frame.quiet);
    frame.image =
        renderPicture(effect, source, arguments.frame, progress, frame.counts ? &*frame.counts : nullptr);
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

/// Of the picture to write; none where the parameters are printed and nothing is rendered.
std::optional<pictures::FileFormat> plannedFormat(const RenderArguments& arguments) {
    return arguments.input.empty()
               ? std::nullopt
               : std::optional(shots::checkedOutputFormat(arguments.output, arguments.force));
}

/// Of the settings, the report and the notes; then, where they are strict, the end of it.
void tellSettings(const RenderArguments& arguments, const host::Session& session,
                  const render::NamedParams& named, const std::optional<FrameReport>& counts) {
    const std::vector<std::string> notes = render::selectionNotes(session, named, counts);
    tellNotes(notes, counts, arguments.report);
    if (arguments.printParams) {
        printOut(render::paramsFileText(session));
    }
    if (arguments.report.report) {
        const std::string report = selectionText(session, counts, notes, arguments.report.json);
        printOut(arguments.printParams ? commented(report) : report);
    }
    checkStrict(notes, arguments.report, arguments.output);
}

void renderFile(render::OpenEffect& effect, const RenderArguments& arguments,
                const render::NamedParams& named, pictures::FileFormat format) {
    Times times;
    Stopwatch watch;
    const shots::SourceFrame source = shots::readFrame(arguments.input, arguments.frame.form);
    times.reading = watch.lap();
    const Frame frame = frameOf(effect, source, arguments);
    times.effect = watch.lap();
    const pictures::PictureForm form = shots::outputForm(source.picture, format, arguments.frame.form);
    const std::vector<uint8_t> bytes =
        pictures::encodePicture(format, pictures::pictureOf(frame.image, source.image, source.picture, form),
                                arguments.frame.form.encoding);
    tellSettings(arguments, effect.session(), named, frame.counts);
    shots::writeAtomically(arguments.output, bytes);
    times.writing = watch.lap();
    if (arguments.time) {
        printOut(arguments.printParams ? commented(timesText(times)) : timesText(times));
    }
    noteLeftOut(source, format);
}

} // namespace

void runRender(const RenderArguments& arguments) {
    const std::optional<pictures::FileFormat> format = plannedFormat(arguments);
    const RememberedDefaults remembered(arguments.effect, arguments.view);
    render::OpenEffect effect = openEffect(arguments.effect);
    const render::NamedParams named = applySettings(effect.session(), arguments.effect, arguments.view);
    if (format) {
        pictures::withMemoryFor(arguments.input, [&] { renderFile(effect, arguments, named, *format); });
    } else {
        printOut(render::paramsFileText(effect.session()));
    }
    if (!arguments.frame.quiet) {
        remembered.tellIfTheyCount(effect.session());
    }
}

} // namespace kovalune::cli
