#include "effect/pipeline/StageRegion.h"

#include "effect/smoothing/SmoothBoundaries.h"

namespace kovalune {

void addColorMatch(Frame& frame, ColorMatches& matches, const FrameColor& color, HlsColor& hls) {
    frame.attempt([&] { return convertToHls(frame.inData(), color.color, hls); });
    matches.push_back(makeColorMatch(hls, color.rangeFraction));
}

MatchCounts extractColors(Frame& frame, const ColorMatches& matches) {
    MatchCounts counts = {};
    frame.attempt([&] {
        return frame.passes.extractColors(frame.planes.extractMask, frame.inData(), frame.settings.inputWorld,
                                          frame.rect(), matches, frame.report != nullptr ? &counts : nullptr);
    });
    return counts;
}

void mergeStageMask(Frame& frame) {
    FramePlanes& planes = frame.planes;
    planes.allColorsMask.unionWith(planes.stageMask);
    planes.regionMask.unionWith(planes.stageMask);
    planes.layerLimitMask.unionWith(planes.stageMask);
}

void smoothMasked(Frame& frame, PF_EffectWorld* from, const MaskPlane& mask, PF_EffectWorld* smoothed) {
    PF_EffectWorld* const masked = frame.worlds.maskedWorld.get();
    frame.attempt([&] {
        return frame.passes.copyMasked(
            frame.inData(),
            {.dst = masked, .src = from, .rect = frame.rect(), .mask = mask, .clearOutside = true});
    });
    SmoothParams params;
    params.inData = frame.inData();
    params.pixelFormat = frame.passes.workFormat;
    params.srcWorld = masked;
    params.dstWorld = smoothed;
    frame.regardless([&] { return smoothBoundaries(params); });
}

} // namespace kovalune
