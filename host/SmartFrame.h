// One frame of the two-step render: what the effect asked of the layer, the worlds handed out for it, and
// the callbacks of both steps.
#pragma once

#include "host/LayerWorlds.h"
#include "hostapi/HostApi.h"

#include <map>
#include <mutex>

namespace kovalune::host {

struct HostState;

class SmartFrame {
public:
    SmartFrame(HostState& host, const LayerPicture& input, const LayerPicture& output)
        : host_(host), input_(input), outputPicture_(output) {}
    ~SmartFrame(); ///< takes back all worlds; books the layers that are still checked out
    SmartFrame(const SmartFrame&) = delete;
    SmartFrame& operator=(const SmartFrame&) = delete;

    /// The output world, filled with the picture's pixels at `place`. A code if it cannot be had.
    [[nodiscard]] PF_Err makeOutput(const PF_LRect& place);

    /// What the effect wrote, back into the picture.
    void takeOutput(const PF_LRect& place) const { takeLayer(host_, output_, place, outputPicture_); }

    PF_LRect lastRequest() const;

    /// Behind the callbacks. A checkout answers with the common part of request and layer.
    [[nodiscard]] PF_Err checkoutLayer(PF_ParamIndex index, A_long id, const PF_RenderRequest& request,
                                       const PF_ParamDef& param, PF_CheckoutResult& result);
    [[nodiscard]] PF_Err checkoutPixels(A_long id, PF_EffectWorld*& pixels);
    [[nodiscard]] PF_Err checkinPixels(A_long id);
    void excuse(A_long id); ///< the host refused the check-in
    PF_EffectWorld* output() { return hasOutput_ ? &output_ : nullptr; }

private:
    struct Layer {
        PF_LRect place{};
        PF_EffectWorld world{};
        bool hasWorld = false;
        bool out = false;
        bool excused = false;
    };

    [[nodiscard]] PF_Err makePixels(Layer& layer); ///< with mutex_ held, like the next
    void dropPixels(Layer& layer);

    HostState& host_;
    const LayerPicture input_;
    const LayerPicture outputPicture_;
    mutable std::mutex mutex_;
    std::map<A_long, Layer> layers_; ///< by checkout id
    PF_LRect lastRequest_{};
    PF_EffectWorld output_{};
    bool hasOutput_ = false;
};

PF_PreRenderCallbacks* preRenderCallbacks();
PF_SmartRenderCallbacks* smartRenderCallbacks();

} // namespace kovalune::host
