#include "host/ColorConversion.h"

#include <algorithm>
#include <cmath>

namespace kovalune::host {

namespace {

constexpr double kFixedOne = 65536.0;
constexpr PF_Fixed kFullTurn = 360 * 65536;

PF_Fixed roundedFixed(double steps) {
    return static_cast<PF_Fixed>(std::floor(steps + 0.5));
}

} // namespace

void rgbToHls(const PF_Pixel& colour, PF_Fixed hls[3]) {
    const int r = colour.red;
    const int g = colour.green;
    const int b = colour.blue;
    const int largest = std::max({r, g, b});
    const int smallest = std::min({r, g, b});
    const int spread = largest - smallest;
    const int sum = largest + smallest;
    hls[1] = roundedFixed(sum * kFixedOne / 510.0);
    if (spread == 0) {
        hls[0] = 0;
        hls[2] = 0;
        return;
    }
    hls[2] = roundedFixed(spread * kFixedOne / (sum <= 255 ? sum : 510 - sum));
    double degrees = 0.0;
    if (r == largest) {
        degrees = 60.0 * (g - b) / spread;
    } else if (g == largest) {
        degrees = 120.0 + 60.0 * (b - r) / spread;
    } else {
        degrees = 240.0 + 60.0 * (r - g) / spread;
    }
    if (degrees < 0.0) {
        degrees += 360.0;
    }
    const PF_Fixed hue = roundedFixed(degrees * kFixedOne);
    hls[0] = hue >= kFullTurn ? hue - kFullTurn : hue;
}

} // namespace kovalune::host
