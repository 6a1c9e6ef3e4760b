#include "effect/raster/MaskedCopy.h"

#include "effect/raster/MaskedPass.h"

#include <algorithm>

namespace kovalune {
namespace {

template <class Format>
void samePixels(typename Format::Pixel* dst, const typename Format::Pixel* src, int32_t count) {
    std::copy_n(src, count, dst);
}

} // namespace

template <class Format>
PF_Err copyMasked(PF_InData* inData, MaskedPassRecord record) {
    return runMasked<Format, Format, samePixels<Format>>(inData, record);
}

template PF_Err copyMasked<Argb16>(PF_InData*, MaskedPassRecord);
template PF_Err copyMasked<Argb32>(PF_InData*, MaskedPassRecord);

} // namespace kovalune
