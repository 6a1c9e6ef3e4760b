#include "host/LayerWorlds.h"

#include "host/HostError.h"
#include "host/HostState.h"
#include "host/Image.h"
#include "host/Rects.h"
#include "host/WorldOps.h"

#include <algorithm>
#include <new>

namespace kovalune::host {

namespace {

/// The pixels of a view that stand at `place`, which lies inside it.
ImageView partOf(const ImageView& view, const PF_LRect& place) {
    std::byte* const first =
        view.row(place.top) + static_cast<std::size_t>(place.left) * bytesPerPixel(view.format);
    return {view.format, place.right - place.left, place.bottom - place.top, first, view.rowBytes};
}

} // namespace

PF_Err makeLayerWorld(HostState& host, const LayerPicture& picture, const PF_LRect& place,
                      PF_EffectWorld& world) {
    const ImageView& pixels = picture.pixels;
    const bool inside = isInside(place, wholeLongRect(pixels.width, pixels.height));
    if (picture.inPlace && inside && !isEmpty(place)) {
        return host.worlds.lend(partOf(pixels, place), world);
    }
    WorldRequest request{pixels.format, place.right - place.left, place.bottom - place.top};
    // Every pixel that the picture covers is about to be written anyway.
    request.clear = !inside;
    const PF_Err code = host.worlds.make(request, host.options, world);
    if (code != PF_Err_NONE) {
        return code;
    }
    if (const std::optional<WorldInfo> info = host.worlds.find(&world)) {
        pictureToWorld(host.rowWork, pixels, place, *info);
    }
    return PF_Err_NONE;
}

PF_Err makeInputWorld(HostState& host, const LayerPicture& picture, const PF_LRect& place,
                      PF_EffectWorld& world) {
    const PF_Err code = makeLayerWorld(host, picture, place, world);
    if (const std::optional<WorldInfo> info = host.worlds.find(&world); code == PF_Err_NONE && info) {
        host.memory.inputLent(world.reserved_long4, *info);
    }
    return code;
}

void requireWorld(PF_Err code) {
    if (code == PF_Err_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    if (code != PF_Err_NONE) {
        throw HostError("no world can be made for the render");
    }
}

void dropInputWorld(HostState& host, const PF_EffectWorld& world) {
    if (const std::optional<WorldInfo> info = host.worlds.find(&world)) {
        host.memory.inputBack(world.reserved_long4, *info);
    }
    host.worlds.dispose(world, false, host.options);
}

void takeLayer(HostState& host, const PF_EffectWorld& world, const PF_LRect& place,
               const LayerPicture& picture) {
    std::optional<WorldInfo> info = host.worlds.find(&world);
    if (!info || info->foreign) {
        return;
    }
    // Only what was promised counts, even if the world was made larger.
    info->width = std::min(info->width, place.right - place.left);
    info->height = std::min(info->height, place.bottom - place.top);
    worldToPicture(host.rowWork, *info, place, picture.pixels);
}

LegacyWorlds::LegacyWorlds(HostState& host, const LayerPicture& input, const LayerPicture& output)
    : host_(host), input_(input), output_(output),
      place_(wholeLongRect(input.pixels.width, input.pixels.height)) {
    try {
        make();
    } catch (...) {
        drop();
        throw;
    }
}

void LegacyWorlds::make() {
    requireWorld(makeInputWorld(host_, input_, place_, inputWorld));
    requireWorld(makeLayerWorld(host_, output_, host_.manners.outputPlace(place_), outputWorld));
}

void LegacyWorlds::drop() {
    dropInputWorld(host_, inputWorld);
    host_.worlds.dispose(outputWorld, false, host_.options);
}

} // namespace kovalune::host
