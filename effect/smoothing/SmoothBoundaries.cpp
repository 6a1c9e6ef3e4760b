#include "effect/smoothing/SmoothBoundaries.h"

#include "effect/share/AEUtil/AEWorldSuite.h"
#include "effect/share/AEUtil/SuiteHolder.h"
#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/PixelProcedure.h"
#include "effect/smoothing/PixelSource.h"
#include "effect/smoothing/SmoothContext.h"

namespace kovalune {
namespace {

template <class Format, KeyMode mode>
PF_Err smooth(const SmoothParams& params) {
    AEUtil::SuiteHolder suites(params.inData->pica_basicP);
    const PF_ProgPtr effectRef = params.inData->effect_ref;
    const PixelSource<Format, mode> source(params);
    if constexpr (mode == KeyMode::kPlain) {
        const PF_Err err =
            suites.worldTransform().copy(effectRef, params.srcWorld, params.dstWorld, nullptr, nullptr);
        if (err != PF_Err_NONE) {
            return err;
        }
    } else {
        applyKeyCopy(params, source);
    }
    const int32_t width = params.dstWorld->width;
    const int32_t height = params.dstWorld->height;
    if (params.strength == 0 || width <= 0 || height <= 0) {
        return PF_Err_NONE;
    }
    const AEUtil::ScopedWorld memory(suites.world1(), effectRef, EdgeFlagMap::rowCells(width) / 4,
                                     EdgeFlagMap::rowCount(height));
    if (memory.err() != PF_Err_NONE) {
        return memory.err();
    }
    EdgeFlagMap map(memory.world(), width, height);
    fillEdgeFlags<Format>(map, *params.dstWorld, SmoothOf<Format>::limitOf(params.threshold));
    visitFlagged(SmoothContext<Format, mode>(params, source, map));
    return PF_Err_NONE;
}

template <class Format>
PF_Err smoothInMode(const SmoothParams& params) {
    switch (keyModeOf(params)) {
    case KeyMode::kRemoved:
        return smooth<Format, KeyMode::kRemoved>(params);
    case KeyMode::kOnly:
        return smooth<Format, KeyMode::kOnly>(params);
    default:
        return smooth<Format, KeyMode::kPlain>(params);
    }
}

bool worldsFit(const SmoothParams& params) {
    const PF_EffectWorld* const source = params.srcWorld;
    const PF_EffectWorld* const destination = params.dstWorld;
    return source != nullptr && destination != nullptr && source != destination &&
           source->width == destination->width && source->height == destination->height;
}

} // namespace

PF_Err smoothBoundaries(const SmoothParams& params) {
    PF_Err (*smoothFormat)(const SmoothParams&) = nullptr;
    switch (params.pixelFormat) {
    case PF_PixelFormat_ARGB32:
        smoothFormat = smoothInMode<Argb8>;
        break;
    case PF_PixelFormat_ARGB64:
        smoothFormat = smoothInMode<Argb16>;
        break;
    case PF_PixelFormat_ARGB128:
        smoothFormat = smoothInMode<Argb32>;
        break;
    default:
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
    return worldsFit(params) ? smoothFormat(params) : PF_Err{PF_Err_BAD_CALLBACK_PARAM};
}

} // namespace kovalune
