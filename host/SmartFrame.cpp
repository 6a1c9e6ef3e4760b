#include "host/SmartFrame.h"

#include "host/HostState.h"
#include "host/Rects.h"

namespace kovalune::host {

SmartFrame::~SmartFrame() {
    int open = 0;
    int excused = 0;
    for (auto& [id, layer] : layers_) {
        if (layer.out) {
            ++(layer.excused ? excused : open);
        }
        dropPixels(layer);
    }
    host_.watch.layersLeftOut(open, excused);
    if (hasOutput_) {
        host_.worlds.dispose(output_, false, host_.options);
    }
}

PF_Err SmartFrame::makeOutput(const PF_LRect& place) {
    const PF_Err code = makeLayerWorld(host_, outputPicture_, host_.manners.outputPlace(place), output_);
    hasOutput_ = code == PF_Err_NONE;
    output_.origin_x = place.left;
    output_.origin_y = place.top;
    return code;
}

PF_LRect SmartFrame::lastRequest() const {
    const std::lock_guard lock(mutex_);
    return lastRequest_;
}

PF_Err SmartFrame::checkoutLayer(PF_ParamIndex index, A_long id, const PF_RenderRequest& request,
                                 const PF_ParamDef& param, PF_CheckoutResult& result) {
    if (param.param_type != PF_Param_LAYER) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    // A layer parameter other than the input has no layer here.
    const PF_LRect whole =
        index == 0 ? wholeLongRect(input_.pixels.width, input_.pixels.height) : wholeLongRect(0, 0);
    const std::lock_guard lock(mutex_);
    Layer layer;
    layer.place = intersection(request.rect, whole);
    if (!layers_.emplace(id, layer).second) {
        host_.watch.misused("checkout_layer with a checkout id that is in use");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    lastRequest_ = request.rect;
    PF_CheckoutResult answer{};
    answer.result_rect = layer.place;
    answer.max_result_rect = whole;
    answer.par = {1, 1};
    answer.ref_width = whole.right;
    answer.ref_height = whole.bottom;
    result = answer;
    return PF_Err_NONE;
}

PF_Err SmartFrame::makePixels(Layer& layer) {
    if (isEmpty(layer.place) && !host_.manners.sides().allowEmpty()) {
        return PF_Err_NONE;
    }
    const PF_Err code = makeInputWorld(host_, input_, layer.place, layer.world);
    layer.hasWorld = code == PF_Err_NONE;
    layer.world.origin_x = layer.place.left;
    layer.world.origin_y = layer.place.top;
    return code;
}

void SmartFrame::dropPixels(Layer& layer) {
    if (layer.hasWorld) {
        dropInputWorld(host_, layer.world);
    }
    layer.hasWorld = false;
}

PF_Err SmartFrame::checkoutPixels(A_long id, PF_EffectWorld*& pixels) {
    const std::lock_guard lock(mutex_);
    const auto found = layers_.find(id);
    if (found == layers_.end() || found->second.out) {
        host_.watch.misused("checkout_layer_pixels of a layer that is unknown or checked out already");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    Layer& layer = found->second;
    if (host_.manners.givesInputWorld()) {
        if (const PF_Err code = makePixels(layer); code != PF_Err_NONE) {
            return code;
        }
    }
    layer.out = true;
    layer.excused = false;
    pixels = layer.hasWorld ? &layer.world : nullptr;
    return PF_Err_NONE;
}

PF_Err SmartFrame::checkinPixels(A_long id) {
    const std::lock_guard lock(mutex_);
    const auto found = layers_.find(id);
    if (found == layers_.end() || !found->second.out) {
        host_.watch.misused("check-in of a layer that is not checked out");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    found->second.out = false;
    dropPixels(found->second);
    return PF_Err_NONE;
}

void SmartFrame::excuse(A_long id) {
    const std::lock_guard lock(mutex_);
    const auto found = layers_.find(id);
    if (found != layers_.end()) {
        found->second.excused = found->second.out;
    }
}

} // namespace kovalune::host
