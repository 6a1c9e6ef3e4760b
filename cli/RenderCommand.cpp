#include "cli/RenderCommand.h"

#include "cli/AtomicFile.h"
#include "cli/EffectSettings.h"
#include "cli/FrameRender.h"
#include "cli/NumberText.h"
#include "cli/ParamsFile.h"
#include "cli/PictureMemory.h"
#include "cli/StandardOutput.h"
#include "cli/picture/PictureFile.h"

#include <chrono>
#include <utility>

namespace kovalune {

namespace {

// Milliseconds since it was asked last.
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

// Behind parameters, the lines are such that a file of parameters may have them.
std::string timesText(const Times& times, bool behindParams) {
    std::string text;
    for (const auto& [what, milliseconds] :
         {std::pair("reading", times.reading), {"effect", times.effect}, {"writing", times.writing}})
        text += (behindParams ? "; " : "") + std::string(what) + ' ' + fixedText(milliseconds, 3) + " ms\n";
    return text;
}

void renderFile(OpenEffect& effect, const RenderArguments& arguments, FileFormat format) {
    Times times;
    Stopwatch watch;
    const SourceFrame source = readFrame(arguments.input, arguments.frame);
    times.reading = watch.lap();
    const host::Image result = renderFrame(effect, source, arguments.frame);
    times.effect = watch.lap();
    const PictureForm form = outputForm(source.picture, format, arguments.frame);
    const std::vector<std::uint8_t> bytes =
        encodePicture(format, pictureOf(result, source.image, source.picture, form));
    if (arguments.printParams)
        printOut(paramsFileText(effect.session()));
    writeAtomically(arguments.output, bytes);
    times.writing = watch.lap();
    if (arguments.time)
        printOut(timesText(times, arguments.printParams));
    noteLeftOut(source, format);
}

} // namespace

void runRender(const RenderArguments& arguments) {
    const bool printsOnly = arguments.input.empty();
    const FileFormat format =
        printsOnly ? FileFormat::Png : checkedOutputFormat(arguments.output, arguments.force);
    OpenEffect effect = openEffect(arguments.effect);
    applySettings(effect.session(), arguments.effect, arguments.view);
    if (printsOnly)
        printOut(paramsFileText(effect.session()));
    else
        withMemoryFor(arguments.input, [&] { renderFile(effect, arguments, format); });
}

} // namespace kovalune
