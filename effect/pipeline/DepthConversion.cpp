#include "effect/pipeline/DepthConversion.h"

#include "effect/raster/MaskedPass.h"
#include "effect/raster/PixelTraits.h"

namespace kovalune {
namespace {

PF_Pixel16 widenPixel(const PF_Pixel& p) {
    return {widenChannel(p.alpha), widenChannel(p.red), widenChannel(p.green), widenChannel(p.blue)};
}

PF_Pixel narrowPixel(const PF_Pixel16& p) {
    return {narrowChannel(p.alpha), narrowChannel(p.red), narrowChannel(p.green), narrowChannel(p.blue)};
}

} // namespace

PF_Err widenTo16(PF_InData* inData, MaskedPassRecord record) {
    return runMasked<Argb16, Argb8, widenPixel>(inData, record);
}

PF_Err narrowTo8(PF_InData* inData, MaskedPassRecord record) {
    return runMasked<Argb8, Argb16, narrowPixel>(inData, record);
}

} // namespace kovalune
