#include "render/RenderFrame.h"

#include "hostapi/Constants.h"
#include "render/FrameArea.h"
#include "render/ParamText.h"
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

/// True for an effect without views, too.
bool isNormalView(const host::Session& session, const host::ParamValues& values) {
    const std::optional<int> index = session.findParam(std::string(kViewLabel));
    if (!index) {
        return true;
    }
    const std::vector<std::string> choices = session.choices(*index);
    host::ParamValue value = choices.empty() ? host::ParamValue() : session.value(*index);
    for (const auto& [each, own] : values) {
        value = each == *index ? own : value;
    }
    const auto* const choice = std::get_if<A_long>(&value);
    const auto place = static_cast<std::size_t>(choice == nullptr ? 0 : *choice);
    return place < 1 || place > choices.size() || choices[place - 1] == "Normal";
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
        const host::Image cut = request.area == nullptr ? host::Image() : cutTo(image, *request.area);
        const host::Image& seen = request.area == nullptr ? image : cut;
        result = session.render(seen.view(), output.view(), hostRequest(session, request));
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
    if (request.area != nullptr && isNormalView(session, request.values)) {
        restoreOutside(output, image, *request.area);
    } else if (request.area != nullptr) {
        clearOutside(output, *request.area);
    }
    return output;
}

} // namespace kovalune::render
