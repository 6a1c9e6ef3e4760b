#include "cli/FrameRender.h"

#include "cli/EffectStages.h"
#include "cli/Failure.h"
#include "cli/Interrupt.h"
#include "cli/Reporting.h"
#include "cli/picture/NoteConversion.h"
#include "cli/picture/PictureFile.h"
#include "hostapi/Constants.h"

#include <new>
#include <optional>

namespace kovalune {

namespace {

PF_PixelFormat formatFor(SampleType type, const FrameArguments& arguments) {
    if (!arguments.depth) {
        return workingFormat(type);
    }
    switch (*arguments.depth) {
    case 8:
        return PF_PixelFormat_ARGB32;
    case 16:
        return PF_PixelFormat_ARGB64;
    default:
        return PF_PixelFormat_ARGB128;
    }
}

bool worksIn(const host::Session& session, PF_PixelFormat format) {
    if (format == PF_PixelFormat_ARGB64) {
        return (session.outFlags() & PF_OutFlag_DEEP_COLOR_AWARE) != 0;
    }
    if (format == PF_PixelFormat_ARGB128) {
        return (session.outFlags2() & PF_OutFlag2_FLOAT_COLOR_AWARE) != 0;
    }
    return true;
}

void checkDepth(const host::Session& session, PF_PixelFormat format) {
    if (!worksIn(session, format)) {
        throw Failure(ExitCode::kEffect, "the effect cannot work on pictures of " +
                                             std::to_string(host::bitsPerChannel(format)) + " bits");
    }
}

/// By the newer road where the effect knows it and the user does not want the older one.
host::RenderRequest requestFor(const host::Session& session, const FrameArguments& arguments) {
    host::RenderRequest request;
    if (arguments.legacy || (session.outFlags2() & PF_OutFlag2_SUPPORTS_SMART_RENDER) == 0) {
        request.flow = host::RenderFlow::kLegacy;
    }
    request.downsampleX = scaleOf(arguments.downsample[0]);
    request.downsampleY = scaleOf(arguments.downsample[1]);
    return request;
}

/// With what the effect says of it, if anything.
Failure lackOfMemory(const SourceFrame& source, const std::string& words = {}) {
    return {ExitCode::kEffect, "not enough memory for the effect on " + inQuotes(source.name) + " (" +
                                   std::to_string(source.picture.width) + 'x' +
                                   std::to_string(source.picture.height) + ')' +
                                   (words.empty() ? "" : ": " + words)};
}

/// For as long as this lives, the host asks whether to go on. It leaves a terminal's line clean for a message.
class Watch {
public:
    Watch(host::Host& host, ProgressLine& progress, const Interrupt& interrupt)
        : host_(host), progress_(progress) {
        host_.options().onProgress = [&progress, &interrupt](int current, int total) {
            progress.report(current, total);
            return !interrupt.came();
        };
    }
    ~Watch() {
        host_.options().onProgress = nullptr;
        progress_.clear();
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

private:
    host::Host& host_;
    ProgressLine& progress_;
};

} // namespace

SourceFrame readFrame(const std::string& file, const FrameArguments& arguments) {
    SourceFrame frame;
    frame.name = file;
    frame.picture = readPicture(file);
    if (arguments.alphaKind) {
        frame.picture.alphaKind = *arguments.alphaKind;
    }
    frame.image = imageOf(frame.picture, formatFor(frame.picture.sampleType, arguments));
    return frame;
}

PictureForm outputForm(const Picture& source, FileFormat format, const FrameArguments& arguments) {
    PictureForm form;
    form.sampleType = source.sampleType;
    if (arguments.depth) {
        form.sampleType = sampleTypeFor(formatFor(source.sampleType, arguments), source.sampleType);
    }
    form.sampleType = sampleTypeIn(format, form.sampleType);
    form.alphaKind = arguments.alphaKind       ? *arguments.alphaKind
                     : format == source.format ? source.alphaKind
                                               : usualAlphaKind(format);
    return form;
}

void noteLeftOut(const SourceFrame& source, std::optional<FileFormat> format) {
    std::vector<std::string> parts = source.picture.leftOut;
    if (format) {
        for (const std::string& part : notesLeftOut(*format, source.picture)) {
            parts.push_back(part);
        }
    }
    std::string list;
    for (const std::string& part : parts) {
        list += (list.empty() ? "" : ", ") + part;
    }
    if (!list.empty()) {
        tell("left out of " + inQuotes(source.name) + ": " + shown(list));
    }
}

ProgressFrame progressFrame(const host::Session& session, const FrameArguments& arguments,
                            const std::string& title) {
    ProgressFrame frame{title, {}};
    const std::optional<ProgressSettings> settings = progressSettings(session, arguments);
    if (!settings) {
        return frame;
    }
    std::size_t stage = 0;
    for (const int32_t calls : progressCalls(*settings)) {
        frame.stages.push_back({stageName(stage++), calls});
    }
    return frame;
}

uint64_t pixelsOf(const SourceFrame& source) {
    return uint64_t{source.picture.width} * source.picture.height;
}

host::Image renderFrame(OpenEffect& effect, const SourceFrame& source, const FrameArguments& arguments,
                        ProgressLine& progress, FrameReport* counts) {
    host::Session& session = effect.session();
    checkDepth(session, source.image.format());
    const host::RenderRequest request = requestFor(session, arguments);
    const Failure noMemory = lackOfMemory(source); // there may be none for the words later
    host::Image output;
    host::RenderResult result;
    Interrupt interrupt;
    try {
        // Whatever becomes of the frame after a signal, it is not wanted any more.
        interrupt.during([&] {
            const Watch watch(effect.host(), progress, interrupt);
            std::optional<FrameReportScope> report;
            if (counts != nullptr) {
                report.emplace(*counts);
            }
            result = session.render(source.image, output, request);
        });
    } catch (const host::HostError& reason) {
        throw Failure(ExitCode::kFile, "cannot render " + inQuotes(source.name) + ": " + reason.what());
    } catch (const std::bad_alloc&) {
        throw noMemory;
    }
    if (!result.threw && result.code == PF_Err_OUT_OF_MEMORY) {
        throw lackOfMemory(source, result.returnMsg);
    }
    requireSuccess(result, "the effect");
    if (!result.rendered) {
        throw Failure(ExitCode::kEffect, "the effect promised no pixel of the picture that it was to render");
    }
    return output;
}

} // namespace kovalune
