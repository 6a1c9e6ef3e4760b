// The tone curve of "Boundary Bias" on one alpha, by format. One object serves one iteration.
#pragma once

#include "effect/raster/PixelTraits.h"

#include <cstdint>
#include <memory>

namespace kovalune {

/// Undefined for formats that no layer has.
template <class Format>
class AlphaCurveOf;

/// Integer results are exact. A cosine is costly and alphas come back again and again, so each is computed once; where there
/// is no memory to keep them, each is computed anew.
template <>
class AlphaCurveOf<Argb16> {
public:
    explicit AlphaCurveOf(double bias);
    uint16_t operator()(uint16_t alpha);

private:
    uint16_t onCosine(uint16_t alpha);
    uint16_t onRamp(uint16_t alpha) const;

    int32_t cosineAt(uint16_t alpha) const;

    bool isRamp_;
    int32_t low_ = 0;       ///< cosine: below is transparent
    int32_t high_ = 0;      ///< cosine: from here on is opaque
    int32_t span_ = 0;      ///< cosine: half a period
    int32_t rampWidth_ = 0; ///< ramp: how far below full scale alpha reaches 0
    /// Cosine: the result of each alpha plus 1; 0 is none yet. Not on the stack, which hosts' worker threads have little of.
    std::unique_ptr<uint16_t[]> known_;
};

template <>
class AlphaCurveOf<Argb32> {
public:
    explicit AlphaCurveOf(double bias);
    float operator()(float alpha) const;

private:
    bool isRamp_;
    float low_ = 0.0F;
    float high_ = 0.0F;
    float span_ = 0.0F;
    double rampWidth_ = 0.0;
};

} // namespace kovalune
