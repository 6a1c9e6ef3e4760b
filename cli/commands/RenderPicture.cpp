#include "cli/commands/RenderPicture.h"

#include "cli/text/Reporting.h"
#include "render/RenderFrame.h"
#include "render/Stages.h"
#include "render/shots/SignalWatch.h"
#include "text/MessageText.h"

namespace kovalune::cli {

namespace {

/// Leaves a terminal's line clean for a message, whatever becomes of the frame.
class CleanLine {
public:
    explicit CleanLine(ProgressLine& progress) : progress_(progress) {}
    ~CleanLine() { progress_.clear(); }
    CleanLine(const CleanLine&) = delete;
    CleanLine& operator=(const CleanLine&) = delete;

private:
    ProgressLine& progress_;
};

} // namespace

void noteLosses(const pictures::Picture& picture, const std::string& name) {
    if (const std::optional<std::string> losses = shots::lossesOf(picture)) {
        tell("note: " + text::inQuotes(name) + " is " + *losses);
    }
}

void noteLeftOut(const shots::SourceFrame& source, std::optional<pictures::FileFormat> format) {
    std::string list;
    for (const std::string& part : shots::leftOutOf(source.picture, format)) {
        list += (list.empty() ? "" : ", ") + part;
    }
    if (!list.empty()) {
        tell("left out of " + text::inQuotes(source.name) + ": " + text::shown(list));
    }
    noteLosses(source.picture, source.name);
}

ProgressFrame progressFrame(const host::Session& session, const FrameArguments& arguments,
                            const std::string& title) {
    ProgressFrame frame{title, {}};
    const std::optional<ProgressSettings> settings = render::progressSettings(session, arguments.downsample);
    if (!settings) {
        return frame;
    }
    std::size_t stage = 0;
    for (const int32_t calls : progressCalls(*settings)) {
        frame.stages.push_back({render::stageName(stage++), calls});
    }
    return frame;
}

host::Image renderPicture(render::OpenEffect& effect, const std::string& name, const host::Image& image,
                          const FrameArguments& arguments, ProgressLine& progress, FrameReport* counts,
                          const render::FrameArea* area) {
    shots::Interrupt interrupt;
    render::FrameRequest request;
    request.name = name;
    request.downsample = arguments.downsample;
    request.legacy = arguments.legacy;
    request.onProgress = [&progress, &interrupt](int current, int total) {
        progress.report(current, total);
        return !interrupt.came();
    };
    request.counts = counts;
    request.area = area;
    host::Image result;
    // Whatever becomes of the frame after a signal, it is not wanted any more.
    interrupt.during([&] {
        const CleanLine clean(progress);
        result = render::renderFrame(effect, image, request);
    });
    return result;
}

} // namespace kovalune::cli
