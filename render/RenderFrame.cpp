#include "render/RenderFrame.h"

#include "hostapi/Constants.h"
#include "render/Stages.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <new>
#include <optional>
#include <string>

namespace kovalune::render {

namespace {

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
        throw text::Failure(text::FailureKind::kEffect, "the effect cannot work on pictures of " +
                                                            std::to_string(host::bitsPerChannel(format)) +
                                                            " bits");
    }
}

/// By the newer road where the effect knows it and the request does not want the older one.
host::RenderRequest hostRequest(const host::Session& session, const FrameRequest& request) {
    host::RenderRequest result;
    if (request.legacy || (session.outFlags2() & PF_OutFlag2_SUPPORTS_SMART_RENDER) == 0) {
        result.flow = host::RenderFlow::kLegacy;
    }
    result.downsampleX = scaleOf(request.downsample[0]);
    result.downsampleY = scaleOf(request.downsample[1]);
    result.values = request.values;
    result.onProgress = request.onProgress;
    return result;
}

/// With what the effect says of it, if anything.
text::Failure lackOfMemory(const host::Image& image, const std::string& name, const std::string& words = {}) {
    return {text::FailureKind::kEffect, "not enough memory for the effect on " + text::inQuotes(name) + " (" +
                                            std::to_string(image.width()) + 'x' +
                                            std::to_string(image.height()) + ')' +
                                            (words.empty() ? "" : ": " + words)};
}

} // namespace

PF_PixelFormat formatOfDepth(int bits) {
    switch (bits) {
    case 8:
        return PF_PixelFormat_ARGB32;
    case 16:
        return PF_PixelFormat_ARGB64;
    default:
        return PF_PixelFormat_ARGB128;
    }
}

host::Image renderFrame(OpenEffect& effect, const host::Image& image, const FrameRequest& request) {
    host::Session& session = effect.session();
    checkDepth(session, image.format());
    const text::Failure noMemory = lackOfMemory(image, request.name); // there may be none for the words later
    host::Image output;
    host::RenderResult result;
    try {
        std::optional<FrameReportScope> report;
        if (request.counts != nullptr) {
            report.emplace(*request.counts);
        }
        output = host::Image(image.format(), image.width(), image.height());
        result = session.render(image.view(), output.view(), hostRequest(session, request));
    } catch (const host::HostError& reason) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot render " + text::inQuotes(request.name) + ": " + reason.what());
    } catch (const std::bad_alloc&) {
        throw noMemory;
    }
    if (!result.threw && result.code == PF_Err_OUT_OF_MEMORY) {
        throw lackOfMemory(image, request.name, result.returnMsg);
    }
    requireSuccess(result, "the effect");
    if (!result.rendered) {
        throw text::Failure(text::FailureKind::kEffect,
                            "the effect promised no pixel of the picture that it was to render");
    }
    return output;
}

} // namespace kovalune::render
