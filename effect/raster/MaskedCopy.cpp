#include "effect/raster/MaskedCopy.h"

#include "effect/raster/MaskedPass.h"
#include "effect/raster/PixelTraits.h"

namespace kovalune {
namespace {

template <class Format>
typename Format::Pixel samePixel(const typename Format::Pixel& pixel) {
    return pixel;
}

} // namespace

PF_Err copyMasked16(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src, const FrameRect& rect,
                    const MaskPlane& mask, bool clearOutside) {
    return runMaskedPass(inData, dst, src, rect, mask, clearOutside,
                         maskedPass<Argb16, Argb16, samePixel<Argb16>>);
}

PF_Err copyMasked32(PF_InData* inData, PF_EffectWorld* dst, PF_EffectWorld* src, const FrameRect& rect,
                    const MaskPlane& mask, bool clearOutside) {
    return runMaskedPass(inData, dst, src, rect, mask, clearOutside,
                         maskedPass<Argb32, Argb32, samePixel<Argb32>>);
}

} // namespace kovalune
