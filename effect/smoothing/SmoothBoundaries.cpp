#include "effect/smoothing/SmoothBoundaries.h"

#include "effect/share/AEUtil/SuiteHolder.h"

namespace kovalune {
namespace {

bool isKnownFormat(PF_PixelFormat format) {
    return format == PF_PixelFormat_ARGB32 || format == PF_PixelFormat_ARGB64 ||
           format == PF_PixelFormat_ARGB128;
}

} // namespace

PF_Err smoothBoundaries(const SmoothParams& params) {
    if (!isKnownFormat(params.pixelFormat)) {
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
    PF_EffectWorld* const source = params.srcWorld;
    PF_EffectWorld* const destination = params.dstWorld;
    if (source == nullptr || destination == nullptr || source->width != destination->width ||
        source->height != destination->height) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    AEUtil::SuiteHolder suites(params.inData->pica_basicP);
    return suites.worldTransform().copy(params.inData->effect_ref, source, destination, nullptr, nullptr);
}

} // namespace kovalune
