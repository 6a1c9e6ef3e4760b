#include "host/LayerWorlds.h"

#include "host/HostError.h"
#include "host/HostState.h"
#include "host/Rects.h"
#include "host/WorldOps.h"

#include <new>

namespace kovalune::host {

PF_Err makeLayerWorld(HostState& host, const Image& picture, const PF_LRect& place, PF_EffectWorld& world) {
    WorldRequest request{picture.format(), place.right - place.left, place.bottom - place.top};
    // Every pixel that the picture covers is about to be written anyway.
    request.clear = !isInside(place, wholeLongRect(picture.width(), picture.height()));
    const PF_Err code = host.worlds.make(request, host.options, world);
    if (code != PF_Err_NONE) {
        return code;
    }
    if (const std::optional<WorldInfo> info = host.worlds.find(&world)) {
        pictureToWorld(picture, place, *info);
    }
    return PF_Err_NONE;
}

void requireWorld(PF_Err code) {
    if (code == PF_Err_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    if (code != PF_Err_NONE) {
        throw HostError("no world can be made for the render");
    }
}

void dropInputWorld(HostState& host, const Image& picture, const PF_LRect& place,
                    const PF_EffectWorld& world) {
    const std::optional<WorldInfo> info = host.worlds.find(&world);
    if (host.options.audit && info && !worldEqualsPicture(*info, place, picture)) {
        host.ledger.addGuardDamage("the input's pixels were written");
    }
    host.worlds.dispose(world, false, host.options);
}

LegacyWorlds::LegacyWorlds(HostState& host, const Image& input, const Image& output)
    : host_(host), input_(input), place_(wholeLongRect(input.width(), input.height())) {
    try {
        make(output);
    } catch (...) {
        drop();
        throw;
    }
}

void LegacyWorlds::make(const Image& output) {
    const PF_LRect outputPlace{0, 0, place_.right + host_.options.outputWidthDelta,
                               place_.bottom + host_.options.outputHeightDelta};
    requireWorld(makeLayerWorld(host_, input_, place_, inputWorld));
    requireWorld(makeLayerWorld(host_, output, outputPlace, outputWorld));
}

void LegacyWorlds::takeOutput(Image& output) const {
    if (const std::optional<WorldInfo> info = host_.worlds.find(&outputWorld)) {
        worldToPicture(*info, place_, output);
    }
}

void LegacyWorlds::drop() {
    dropInputWorld(host_, input_, place_, inputWorld);
    host_.worlds.dispose(outputWorld, false, host_.options);
}

} // namespace kovalune::host
