#include "host/CallbackSupport.h"
#include "host/LayerWorlds.h"
#include "host/Rects.h"
#include "host/Session.h"
#include "host/SessionState.h"
#include "host/SmartFrame.h"

#include <limits>

namespace kovalune::host {

namespace {

void checkSide(A_long side, const SideLimits& sides) {
    if (side < sides.smallest) {
        throw HostError("an empty picture cannot be rendered");
    }
    if (side > sides.largest) {
        throw HostError("a picture of more than " + std::to_string(sides.largest) +
                        " pixels on a side cannot be rendered");
    }
}

void checkAlike(const ConstImageView& input, const ConstImageView& output) {
    if (output.format != input.format || output.width != input.width || output.height != input.height) {
        throw HostError("input and output differ in format or size");
    }
}

/// The interface has no worlds to read only; the host itself writes nothing of an input.
ImageView withoutConst(const ConstImageView& view) {
    return {view.format, view.width, view.height, const_cast<std::byte*>(view.data), view.rowBytes};
}

void checkScale(const PF_RationalScale& scale) {
    if (scale.num <= 0 || scale.den == 0) {
        throw HostError("a downsample factor must be above 0");
    }
}

A_long fullSize(A_long reduced, const PF_RationalScale& scale) {
    const int64_t full = int64_t{reduced} * scale.den / scale.num;
    return static_cast<A_long>(std::min<int64_t>(full, std::numeric_limits<A_long>::max()));
}

bool withinReach(const PF_LRect& rect) {
    const PF_LRect reach{-kFarthest, -kFarthest, kFarthest, kFarthest};
    return isInside(rect, reach);
}

/// Of an empty rectangle too, whose sides may then be worked out.
bool cornersWithinReach(const PF_LRect& rect) {
    const auto reachable = [](A_long coordinate) {
        return coordinate >= -kFarthest && coordinate <= kFarthest;
    };
    return reachable(rect.left) && reachable(rect.top) && reachable(rect.right) && reachable(rect.bottom);
}

PF_RenderRequest smartRequest(const ImageView& input, const RenderRequest& request) {
    PF_RenderRequest smart{};
    smart.rect = request.rect.value_or(wholeLongRect(input.width, input.height));
    smart.field = PF_Field_FRAME;
    smart.channel_mask = PF_ChannelMask_ARGB;
    return smart;
}

/// The data that pass from the first smart command to the second: the host's from the first one's return on.
class PreRenderData {
public:
    PreRenderData(const CommandTarget& target, Operation& operation, const PF_PreRenderOutput& output)
        : target_(target), operation_(operation), data_(output.pre_render_data),
          remove_(output.delete_pre_render_data_func) {
        if (remove_ == nullptr) {
            target_.host.handles.setHostOwned(handle(), true);
        }
    }
    PreRenderData(const PreRenderData&) = delete;
    PreRenderData& operator=(const PreRenderData&) = delete;

    /// Without memory for the books the data may be left behind, which the audit then shows.
    ~PreRenderData() {
        shielded([this] { drop(); });
    }

    void* get() const { return data_; }

private:
    PF_Handle handle() const { return static_cast<PF_Handle>(data_); }

    void drop() {
        if (data_ == nullptr) {
            return;
        }
        if (remove_ != nullptr) {
            callWithContext(target_, operation_, PF_Cmd_SMART_PRE_RENDER, [this] { remove_(data_); });
        } else if (target_.host.handles.isLive(handle())) {
            target_.host.handles.dispose(handle(), target_.host.options);
        } else {
            target_.host.watch.misused("pre-render data that are neither a live handle nor come with a "
                                       "delete function");
        }
    }

    CommandTarget target_;
    Operation& operation_;
    void* data_;
    PF_DeletePreRenderDataFunc remove_;
};

void takeResult(RenderResult& result, const CommandResult& command) {
    static_cast<CommandResult&>(result) = command;
}

bool rendersResult(const HostState& host, const PF_PreRenderOutput& promised) {
    return !isEmpty(promised.result_rect) || host.manners.sides().allowEmpty();
}

/// A code ends the frame, with the misuse booked: for what is to be rendered, no world can be made.
PF_Err acceptRects(HostState& host, const PF_PreRenderOutput& output, const PF_LRect& request) {
    const PF_LRect& result = output.result_rect;
    const auto refused = [&host](const char* text) -> PF_Err {
        host.watch.misused(text);
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    };
    if (!cornersWithinReach(result)) {
        return refused("the pre-render's result is out of all bounds");
    }
    const SideLimits sides = host.manners.sides();
    if (!sides.allow(result.right - result.left) || !sides.allow(result.bottom - result.top)) {
        return refused("the pre-render's result is of a size that no world has");
    }
    const bool extraPixels = (output.flags & PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS) != 0;
    if (!extraPixels && !isInside(result, request)) {
        host.watch.misused("the pre-render's result exceeds the request");
    }
    if (!isInside(result, output.max_result_rect)) {
        host.watch.misused("the pre-render's result exceeds its largest result");
    }
    return PF_Err_NONE;
}

/// One frame by the two smart commands.
class SmartRender {
public:
    SmartRender(const CommandTarget& target, Operation& operation, const Invocation& base,
                const LayerPicture& input, const LayerPicture& output)
        : target_(target), operation_(operation), base_(base),
          bitsPerChannel_(bitsPerChannel(output.pixels.format)), frame_(target.host, input, output) {
        base_.smart = &frame_;
    }

    RenderResult run(const PF_RenderRequest& request) {
        PF_PreRenderOutput promised{};
        preRender(request, promised);
        const PreRenderData data(target_, operation_, promised);
        result_.requestRect = request.rect;
        result_.resultRect = promised.result_rect;
        result_.maxResultRect = promised.max_result_rect;
        result_.layerRequest = frame_.lastRequest();
        if (!result_.ok() || !rendersResult(target_.host, promised)) {
            return result_;
        }
        result_.code = acceptRects(target_.host, promised, request.rect);
        if (result_.code == PF_Err_NONE) {
            render(request, data.get());
        }
        return result_;
    }

private:
    void preRender(const PF_RenderRequest& request, PF_PreRenderOutput& promised) {
        PF_PreRenderInput input{};
        input.output_request = request;
        input.bitdepth = bitsPerChannel_;
        PF_PreRenderExtra extra{&input, &promised, preRenderCallbacks()};
        Invocation invocation = base_;
        invocation.command = PF_Cmd_SMART_PRE_RENDER;
        invocation.extra = &extra;
        takeResult(result_, sendCommand(target_, operation_, invocation, &result_.preRenderSeconds));
    }

    void render(const PF_RenderRequest& request, void* data) {
        const PF_LRect place = result_.resultRect;
        requireWorld(frame_.makeOutput(place));
        PF_SmartRenderInput input{};
        input.output_request = request;
        input.bitdepth = bitsPerChannel_;
        input.pre_render_data = data;
        PF_SmartRenderExtra extra{&input, smartRenderCallbacks()};
        Invocation invocation = base_;
        invocation.command = PF_Cmd_SMART_RENDER;
        invocation.extra = &extra;
        takeResult(result_, sendCommand(target_, operation_, invocation, &result_.renderSeconds));
        result_.rendered = true;
        frame_.takeOutput(place);
    }

    CommandTarget target_;
    Operation& operation_;
    Invocation base_;
    const short bitsPerChannel_;
    SmartFrame frame_;
    RenderResult result_;
};

RenderResult legacyRender(const CommandTarget& target, Operation& operation, Invocation invocation,
                          const LayerPicture& input, const LayerPicture& output) {
    LegacyWorlds worlds(target.host, input, output);
    PF_EffectWorld outputWorld = worlds.outputWorld;
    invocation.command = PF_Cmd_RENDER;
    invocation.inputLayer = &worlds.inputWorld;
    invocation.output = &outputWorld;
    RenderResult result;
    takeResult(result, sendCommand(target, operation, invocation, &result.renderSeconds));
    result.rendered = true;
    worlds.takeOutput();
    return result;
}

} // namespace

RenderResult Session::State::renderLayers(const LayerPicture& input, const LayerPicture& output,
                                          const RenderRequest& request) {
    const A_long width = input.pixels.width;
    const A_long height = input.pixels.height;
    Invocation base;
    base.time = request.time;
    base.handles = currentHandles();
    base.quality = request.quality.value_or(host.options.quality);
    base.width = fullSize(width, request.downsampleX);
    base.height = fullSize(height, request.downsampleY);
    base.extentHint = request.extentHint.value_or(wholeRect(width, height));
    base.downsampleX = request.downsampleX;
    base.downsampleY = request.downsampleY;

    std::optional<ParamStore> own;
    if (!request.values.empty()) {
        own.emplace(params, request.values);
    }
    const CommandTarget target{host, module, own ? *own : params};
    const std::unique_ptr<Operation> operation = host.watch.beginOperation(request.onProgress);
    if (request.flow == RenderFlow::kLegacy) {
        return legacyRender(target, *operation, base, input, output);
    }
    return SmartRender(target, *operation, base, input, output).run(smartRequest(input.pixels, request));
}

void Session::State::checkRender(A_long width, A_long height, const RenderRequest& request) const {
    requireOpen();
    host.checkOptions();
    const SideLimits sides = host.manners.sides();
    checkSide(width, sides);
    checkSide(height, sides);
    checkScale(request.downsampleX);
    checkScale(request.downsampleY);
    if (request.rect && !withinReach(*request.rect)) {
        throw HostError("the request is out of all bounds");
    }
}

RenderResult Session::render(const Image& input, Image& output, const RenderRequest& request) {
    state_->checkRender(input.width(), input.height(), request);
    if (output.empty()) {
        output = Image(input.format(), input.width(), input.height());
    }
    checkAlike(input.view(), output.view());
    return state_->renderLayers({withoutConst(input.view())}, {output.view()}, request);
}

RenderResult Session::render(const ConstImageView& input, const ImageView& output,
                             const RenderRequest& request) {
    checkView(input, "input");
    checkView(output, "output");
    state_->checkRender(input.width, input.height, request);
    checkAlike(input, output);
    if (overlap(input, output)) {
        throw HostError("input and output share memory");
    }
    return state_->renderLayers({withoutConst(input), true}, {output, true}, request);
}

} // namespace kovalune::host
