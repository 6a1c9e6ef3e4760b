// Where a layer over the host may have it behave otherwise than the interface says, or than hosts usually do. Every
// function of this class gives what a host with good manners gives.
#pragma once

#include "hostapi/HostApi.h"

#include <cstdint>
#include <string_view>

namespace kovalune::host {

/// The sides that a picture or a world may have.
struct SideLimits {
    A_long smallest = 1;
    A_long largest = PF_MAX_WORLD_WIDTH;

    bool allow(A_long side) const { return side >= smallest && side <= largest; }
    bool allowEmpty() const { return smallest == 0; }
};

class HostManners {
public:
    HostManners() = default;
    virtual ~HostManners() = default;
    HostManners(const HostManners&) = delete;
    HostManners& operator=(const HostManners&) = delete;

    /// Before every operation; throws HostError where the layer's own options are out of range.
    virtual void check() const {}

    virtual SideLimits sides() const { return {}; }

    virtual bool offersBasicSuite() const { return true; }
    virtual bool offersSuite(std::string_view /*name*/, std::int32_t /*version*/) const { return true; }

    /// Whether a check-out that succeeds gives a world.
    virtual bool givesInputWorld() const { return true; }
    virtual bool givesOutputWorld() const { return true; }

    /// Where the output's world is to lie; `place` is what the effect promised.
    virtual PF_LRect outputPlace(const PF_LRect& place) const { return place; }

    /// What PF_GetPixelFormat answers.
    virtual PF_PixelFormat formatTold(PF_PixelFormat format) const { return format; }

    /// Parameter 0, once its layer is in.
    virtual void firstParamFilled(PF_ParamDef& /*param*/) const {}

    /// A record has been written, or is about to be, for the effect, which owns it. `end` is where it ends.
    virtual void recordHandedOver(void* /*end*/) const {}
};

} // namespace kovalune::host
