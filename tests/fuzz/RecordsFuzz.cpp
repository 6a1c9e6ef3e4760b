// Any records at the entry point that a host can fill without lying about its memory: sizes of the pictures and of the frame,
// rectangles, distances between rows, formats, origins, reductions, views and settings. The effect renders or returns an error;
// it writes the output's pixels alone, gives back what it holds and throws nothing.

#include "host/EffectModule.h"
#include "host/HostError.h"
#include "host/Session.h"
#include "host/judge/JudgedHost.h"
#include "hostapi/EntryPoint.h"
#include "tests/fuzz/Require.h"
#include "tests/fuzz/Taken.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

using namespace host;

constexpr A_long kLongest = 24;

// ---- What the effect is told beside the pictures

/// Fields of a frame's records that say nothing of memory.
struct Told {
    bool any = false;
    PF_Rect hint{};
    PF_RationalScale scaleX{};
    PF_RationalScale scaleY{};
    A_long width = 0;
    A_long height = 0;
    A_long originX = 0;
    A_long originY = 0;
    A_long quality = 0;
    A_long field = 0;
    A_long applId = 0;
    A_long time = 0;
    A_u_long timeScale = 0;
};
Told told;

PF_Rect takenRect(Taken& taken) {
    PF_Rect rect{};
    for (auto* const side : {&rect.left, &rect.top, &rect.right, &rect.bottom}) {
        using Side = std::remove_reference_t<decltype(*side)>;
        *side = static_cast<Side>(taken.number());
    }
    return rect;
}

PF_RationalScale takenScale(Taken& taken) {
    const A_long numerator = taken.number();
    return {numerator, static_cast<A_u_long>(taken.number())};
}

Told takenTold(Taken& taken) {
    constexpr A_long kHosts[] = {PF_AppID_FXTC, PF_AppID_PrMr, 0, -1};
    Told result;
    result.any = taken.bit();
    if (!result.any) {
        return result;
    }
    result.hint = takenRect(taken);
    result.scaleX = takenScale(taken);
    result.scaleY = takenScale(taken);
    for (A_long* const number : {&result.width, &result.height, &result.originX, &result.originY,
                                 &result.quality, &result.field, &result.time}) {
        *number = taken.number();
    }
    result.applId = taken.oneOf(kHosts);
    result.timeScale = static_cast<A_u_long>(taken.number());
    return result;
}

void tell(PF_InData& in) {
    in.extent_hint = told.hint;
    in.downsample_x = told.scaleX;
    in.downsample_y = told.scaleY;
    in.width = told.width;
    in.height = told.height;
    in.output_origin_x = told.originX;
    in.output_origin_y = told.originY;
    in.pre_effect_source_origin_x = told.originY;
    in.quality = told.quality;
    in.field = told.field;
    in.appl_id = told.applId;
    in.current_time = told.time;
    in.time_scale = told.timeScale;
}

void tellWorld(PF_EffectWorld& world) {
    world.origin_x = told.originX;
    world.origin_y = told.originY;
    world.extent_hint = told.hint;
    world.pix_aspect_ratio = told.scaleY;
}

PF_Err (*hostsPixels)(PF_ProgPtr, A_long, PF_EffectWorld**) = nullptr;

PF_Err toldPixels(PF_ProgPtr ref, A_long id, PF_EffectWorld** pixels) {
    const PF_Err code = hostsPixels(ref, id, pixels);
    if (code == PF_Err_NONE && *pixels != nullptr) {
        tellWorld(**pixels);
    }
    return code;
}

PF_Err toldEntry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output,
                 void* extra) {
    PF_InData changed = *in;
    if (!told.any || (cmd != PF_Cmd_RENDER && cmd != PF_Cmd_SMART_PRE_RENDER && cmd != PF_Cmd_SMART_RENDER)) {
        return EntryPointFunc(cmd, in, out, params, output, extra);
    }
    tell(changed);
    if (cmd == PF_Cmd_RENDER) {
        tellWorld(params[0]->u.ld);
        tellWorld(*output);
        return EntryPointFunc(cmd, &changed, out, params, output, extra);
    }
    if (cmd == PF_Cmd_SMART_PRE_RENDER) {
        return EntryPointFunc(cmd, &changed, out, params, output, extra);
    }
    auto* const smart = static_cast<PF_SmartRenderExtra*>(extra);
    PF_SmartRenderCallbacks callbacks = *smart->cb;
    hostsPixels = callbacks.checkout_layer_pixels;
    callbacks.checkout_layer_pixels = toldPixels;
    PF_SmartRenderExtra own = *smart;
    own.cb = &callbacks;
    return EntryPointFunc(cmd, &changed, out, params, output, &own);
}

// ---- Pictures in blocks that end with their last byte

struct Block {
    Block(PF_PixelFormat format, A_long width, A_long height, std::size_t padding, bool bottomUp)
        : used(static_cast<std::size_t>(width) * bytesPerPixel(format)), rowBytes(used + padding),
          bytes(rowBytes * static_cast<std::size_t>(height)) {
        view = {format, width, height, bytes.data(), static_cast<std::ptrdiff_t>(rowBytes)};
        if (bottomUp && height > 0) {
            view.data += static_cast<std::ptrdiff_t>(rowBytes * static_cast<std::size_t>(height - 1));
            view.rowBytes = -view.rowBytes;
        }
    }

    bool paddingIs(std::byte value) const {
        for (std::size_t row = 0; row < bytes.size(); row += rowBytes) {
            const auto* const first = bytes.data() + row;
            if (!std::all_of(first + used, first + rowBytes,
                             [value](std::byte each) { return each == value; })) {
                return false;
            }
        }
        return true;
    }

    std::size_t used;
    std::size_t rowBytes;
    std::vector<std::byte> bytes;
    ImageView view;
};

/// Runs of a few patterns of bytes.
void fill(Block& block, Taken& taken) {
    std::byte pattern[4][16];
    for (auto& each : pattern) {
        const uint8_t base = taken.byte();
        for (std::size_t i = 0; i < sizeof each; ++i) {
            each[i] = static_cast<std::byte>(i < 4 ? 255 : base + i % 4 * 20);
        }
        if (block.view.format == PF_PixelFormat_ARGB128) {
            const float channel = static_cast<float>(base) / 200.0F;
            const float pixel[] = {1.0F, channel, channel / 2.0F,
                                   base == 7 ? std::numeric_limits<float>::quiet_NaN() : 0.0F};
            std::memcpy(each, pixel, sizeof pixel);
        }
    }
    const std::size_t size = bytesPerPixel(block.view.format);
    uint32_t mix = taken.byte();
    for (A_long y = 0; y < block.view.height; ++y) {
        for (A_long x = 0; x < block.view.width; ++x) {
            mix = mix * 1664525U + 1013904223U;
            std::memcpy(block.view.row(y) + static_cast<std::size_t>(x) * size, pattern[mix >> 28U & 3U],
                        size);
        }
    }
}

// ---- Frames

ParamValue takenValue(Taken& taken, const PF_ParamDef& param) {
    constexpr double kNumbers[] = {0.0, 3.0, 7.5, 20.0, 40.0, 100.0, -1.0};
    if (param.param_type == PF_Param_COLOR) {
        const uint8_t level = taken.byte();
        return PF_Pixel{255, level, static_cast<uint8_t>(level + 20), static_cast<uint8_t>(level + 40)};
    }
    if (param.param_type == PF_Param_FLOAT_SLIDER) {
        return taken.oneOf(kNumbers);
    }
    return A_long{taken.below(10)};
}

ParamValues takenValues(Taken& taken, const Session& session) {
    ParamValues values;
    const std::vector<PF_ParamDef>& params = session.params();
    for (int count = taken.below(24); count > 0; --count) {
        const int index = taken.below(static_cast<int32_t>(params.size()));
        const PF_ParamDef& param = params[static_cast<std::size_t>(index)];
        switch (param.param_type) {
        case PF_Param_SLIDER:
        case PF_Param_CHECKBOX:
        case PF_Param_POPUP:
        case PF_Param_FLOAT_SLIDER:
        case PF_Param_COLOR:
            values.emplace_back(index, takenValue(taken, param));
            break;
        default:
            break;
        }
    }
    return values;
}

judge::JudgeOptions takenOptions(Taken& taken, PF_PixelFormat format) {
    constexpr A_long kOthers[] = {PF_PixelFormat_INVALID, 0, 1, -1, 0x7fffffff, PF_PixelFormat_ARGB32};
    judge::JudgeOptions options;
    options.audit = true;
    options.poisonNewWorlds = true;
    options.allowEmpty = true;
    options.threads = 1;
    options.iterations = 1 + taken.below(5);
    options.shuffleIterations = taken.bit();
    options.rowPadding = 4 * taken.below(5);
    options.dataOffset = 4 * taken.below(4);
    if (taken.below(4) == 0) {
        options.outputWidthDelta = taken.below(9) - 4;
        options.outputHeightDelta = taken.below(9) - 4;
    }
    // Never one of longer pixels than there are.
    const PF_PixelFormat other = taken.oneOf(kOthers);
    if (taken.below(8) == 0 && (other != PF_PixelFormat_ARGB32 || format == PF_PixelFormat_ARGB32)) {
        options.forcePixelFormat = other;
    }
    options.nullInputWorld = taken.below(32) == 1;
    options.nullOutputWorld = taken.below(32) == 1;
    return options;
}

RenderRequest takenRequest(Taken& taken, const Session& session) {
    RenderRequest request;
    request.flow = taken.bit() ? RenderFlow::kSmart : RenderFlow::kLegacy;
    if (taken.bit()) {
        const A_long left = taken.number();
        const A_long top = taken.number();
        const A_long right = taken.number();
        request.rect = PF_LRect{left, top, right, taken.number()};
    }
    if (taken.bit()) {
        request.extentHint = takenRect(taken);
    }
    request.values = takenValues(taken, session);
    return request;
}

/// A frame of the older command gives its parameters back also where it failed before it took them.
constexpr const char* kGivenBackAnyhow = "check-in of a parameter that is not checked out";

void requireClean(const judge::JudgedHost& host) {
    const judge::AuditReport report = host.audit();
    require(report.guardDamage.empty(), "nothing is written around worlds:", report.text());
    const bool hasMisused =
        std::any_of(report.misuse.begin(), report.misuse.end(), [](const std::string& misuse) {
            return misuse.find(kGivenBackAnyhow) == std::string::npos;
        });
    require(!hasMisused, "the host's functions are called as they may be:", report.text());
    require(report.liveHandles == 0 && report.liveLocks == 0 && report.liveSuites == 0 &&
                report.liveWorlds == 0,
            "all is given back:", report.text());
}

void renderOne(Taken& taken) {
    constexpr PF_PixelFormat kFormats[] = {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64,
                                           PF_PixelFormat_ARGB128};
    const PF_PixelFormat format = taken.oneOf(kFormats);
    told = {};
    judge::JudgedHost host(takenOptions(taken, format));
    EffectModule module = EffectModule::linked(toldEntry, SetDown::kNever);
    Session session(host, module);
    require(session.setupResult().ok(), "the effect is set up");

    const A_long width = taken.below(kLongest + 1);
    const A_long height = taken.below(kLongest + 1);
    const std::size_t padding = 4 * static_cast<std::size_t>(taken.below(5));
    const bool bottomUp = taken.bit();
    Block input(format, width, height, padding, bottomUp);
    Block output(format, width, height, padding, !bottomUp);
    fill(input, taken);
    const RenderRequest request = takenRequest(taken, session);
    told = takenTold(taken);
    const std::vector<std::byte> before = input.bytes;
    const RenderResult result = session.render(input.view, output.view, request);
    require(!result.threw, "nothing is thrown out of the entry point:", result.exceptionText);
    require(input.bytes == before, "the input is not written");
    require(output.paddingIs(std::byte{0}), "nothing is written between the output's rows");
    requireClean(host);
}

} // namespace
} // namespace kovalune::test

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    kovalune::test::Taken taken(data, size);
    try {
        kovalune::test::renderOne(taken);
    } catch (const kovalune::host::HostError&) { // the host itself does not take such a request
    }
    return 0;
}
