// The host's conversion of an 8-bit colour to hue, lightness and saturation in 16.16 fixed point: hue in
// degrees from 0 up to 360, the other two from 0 to 1. Grey has hue 0.
#pragma once

#include "hostapi/Types.h"

namespace kovalune::host {

/// Rounds each result to the nearest step, halves up. The alpha of `colour` is not looked at.
void rgbToHls(const PF_Pixel& colour, PF_Fixed hls[3]);

} // namespace kovalune::host
