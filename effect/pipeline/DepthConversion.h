// The only place where the two integer scales meet: 8-bit channels with full scale 255, 16-bit channels with
// full scale 32768. Narrowing after widening gives every 8-bit value back unchanged.
#pragma once

#include "effect/raster/MaskedCopy.h"
#include "hostapi/HostApi.h"

#include <cstdint>

namespace kovalune {

/// 0 becomes 0, 1 becomes 129, 255 becomes 32768. The 128 is the constant of the conversion, not half of 255.
inline uint16_t widenChannel(uint8_t c) {
    return static_cast<uint16_t>((uint32_t{c} * Argb16::kFullScale + 128) / Argb8::kFullScale);
}

/// For values up to 32768; a larger one wraps at the store.
inline uint8_t narrowChannel(uint16_t c) {
    return static_cast<uint8_t>((uint32_t{c} * Argb8::kFullScale + Argb16::kFullScale / 2) >>
                                Argb16::kScaleBits);
}

// Convert all four channels under the mask; other pixels of `dst` become zero where `clearOutside` is set
// and stay otherwise. Each returns the host's code, or PF_Err_OUT_OF_MEMORY where a world is missing.
[[nodiscard]] PF_Err widenTo16(PF_InData* inData, MaskedPassRecord record);
[[nodiscard]] PF_Err narrowTo8(PF_InData* inData, MaskedPassRecord record);

} // namespace kovalune
