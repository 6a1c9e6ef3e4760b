#include "host/CallbackSupport.h"
#include "host/LayerWorlds.h"
#include "host/Rects.h"
#include "host/Session.h"
#include "host/SessionState.h"
#include "host/SmartFrame.h"

#include <limits>

namespace kovalune::host {

namespace {

void checkSide(A_long side, const HostOptions& options) {
    if (side == 0 && !options.allowEmpty) {
        throw HostError("an empty picture cannot be rendered");
    }
    if (side > PF_MAX_WORLD_WIDTH && !options.allowHuge) {
        throw HostError("a picture of more than " + std::to_string(PF_MAX_WORLD_WIDTH) +
                        " pixels on a side cannot be rendered");
    }
}

void checkPictures(const Image& input, Image& output, const HostOptions& options) {
    checkSide(input.width(), options);
    checkSide(input.height(), options);
    if (output.empty()) {
        output = Image(input.format(), input.width(), input.height());
    }
    if (output.format() != input.format() || output.width() != input.width() ||
        output.height() != input.height()) {
        throw HostError("input and output differ in format or size");
    }
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

PF_RenderRequest smartRequest(const Image& input, const RenderRequest& request) {
    PF_RenderRequest smart{};
    smart.rect = request.rect.value_or(wholeLongRect(input.width(), input.height()));
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
            target_.host.ledger.addMisuse("pre-render data that are neither a live handle nor come with a "
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

bool rendersResult(const HostOptions& options, const PF_PreRenderOutput& promised) {
    return !isEmpty(promised.result_rect) || options.allowEmpty;
}

/// A code ends the frame, with the misuse booked: for what is to be rendered, no world can be made.
PF_Err acceptRects(HostState& host, const PF_PreRenderOutput& output, const PF_LRect& request) {
    const PF_LRect& result = output.result_rect;
    const auto refused = [&host](const char* text) -> PF_Err {
        host.ledger.addMisuse(text);
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    };
    if (!cornersWithinReach(result)) {
        return refused("the pre-render's result is out of all bounds");
    }
    if (!worldSizeAllowed(result.right - result.left, result.bottom - result.top, host.options)) {
        return refused("the pre-render's result is of a size that no world has");
    }
    const bool extraPixels = (output.flags & PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS) != 0;
    if (!extraPixels && !isInside(result, request)) {
        host.ledger.addMisuse("the pre-render's result exceeds the request");
    }
    if (!isInside(result, output.max_result_rect)) {
        host.ledger.addMisuse("the pre-render's result exceeds its largest result");
    }
    return PF_Err_NONE;
}

/// One frame by the two smart commands.
class SmartRender {
public:
    SmartRender(const CommandTarget& target, Operation& operation, const Invocation& base, const Image& input,
                Image& output)
        : target_(target), operation_(operation), base_(base), output_(output), frame_(target.host, input) {
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
        if (!result_.ok() || !rendersResult(target_.host.options, promised)) {
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
        input.bitdepth = bitsPerChannel(output_.format());
        PF_PreRenderExtra extra{&input, &promised, preRenderCallbacks()};
        Invocation invocation = base_;
        invocation.command = PF_Cmd_SMART_PRE_RENDER;
        invocation.extra = &extra;
        takeResult(result_, sendCommand(target_, operation_, invocation, &result_.preRenderSeconds));
    }

    void render(const PF_RenderRequest& request, void* data) {
        const PF_LRect place = result_.resultRect;
        requireWorld(frame_.makeOutput(output_, place));
        PF_SmartRenderInput input{};
        input.output_request = request;
        input.bitdepth = bitsPerChannel(output_.format());
        input.pre_render_data = data;
        PF_SmartRenderExtra extra{&input, smartRenderCallbacks()};
        Invocation invocation = base_;
        invocation.command = PF_Cmd_SMART_RENDER;
        invocation.extra = &extra;
        takeResult(result_, sendCommand(target_, operation_, invocation, &result_.renderSeconds));
        result_.rendered = true;
        frame_.takeOutput(output_, place);
    }

    CommandTarget target_;
    Operation& operation_;
    Invocation base_;
    Image& output_;
    SmartFrame frame_;
    RenderResult result_;
};

RenderResult legacyRender(const CommandTarget& target, Operation& operation, Invocation invocation,
                          const Image& input, Image& output) {
    LegacyWorlds worlds(target.host, input, output);
    PF_EffectWorld outputWorld = worlds.outputWorld;
    invocation.command = PF_Cmd_RENDER;
    invocation.inputLayer = &worlds.inputWorld;
    invocation.output = &outputWorld;
    RenderResult result;
    takeResult(result, sendCommand(target, operation, invocation, &result.renderSeconds));
    result.rendered = true;
    worlds.takeOutput(output);
    return result;
}

} // namespace

RenderResult Session::render(const Image& input, Image& output, const RenderRequest& request) {
    const HostOptions& options = state_->host.options;
    state_->requireOpen();
    checkOptions(options);
    checkPictures(input, output, options);
    checkScale(request.downsampleX);
    checkScale(request.downsampleY);
    if (request.rect && !withinReach(*request.rect)) {
        throw HostError("the request is out of all bounds");
    }

    Invocation base;
    base.time = request.time;
    base.handles = state_->currentHandles();
    base.quality = request.quality.value_or(options.quality);
    base.width = fullSize(input.width(), request.downsampleX);
    base.height = fullSize(input.height(), request.downsampleY);
    base.extentHint = request.extentHint.value_or(wholeRect(input.width(), input.height()));
    base.downsampleX = request.downsampleX;
    base.downsampleY = request.downsampleY;

    Operation operation(state_->host.takePlan());
    RenderResult result;
    if (request.flow == RenderFlow::kLegacy) {
        result = legacyRender(state_->target(), operation, base, input, output);
    } else {
        result =
            SmartRender(state_->target(), operation, base, input, output).run(smartRequest(input, request));
    }
    result.callsCounted = operation.callsCounted();
    result.failedCall = operation.failedCall();
    state_->host.noteEnded(operation);
    return result;
}

} // namespace kovalune::host
