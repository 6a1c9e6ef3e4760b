#include "effect/raster/MaskedCopy.h"

#include "effect/raster/MaskedPass.h"

namespace kovalune {
namespace {

template <class Format>
typename Format::Pixel samePixel(const typename Format::Pixel& pixel) {
    return pixel;
}

} // namespace

template <class Format>
PF_Err copyMasked(PF_InData* inData, MaskedPassRecord record) {
    return runMasked<Format, Format, samePixel<Format>>(inData, record);
}

template PF_Err copyMasked<Argb16>(PF_InData*, MaskedPassRecord);
template PF_Err copyMasked<Argb32>(PF_InData*, MaskedPassRecord);

} // namespace kovalune
