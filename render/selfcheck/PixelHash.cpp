#include "render/selfcheck/PixelHash.h"

#include <bit>

namespace kovalune::selfcheck {

void PixelHash::addFloat(float value) {
    constexpr uint32_t oneNan = 0x7FC00000;
    addInteger(value != value ? oneNan : std::bit_cast<uint32_t>(value));
}

std::string PixelHash::text() const {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const uint64_t half : {high_, low_}) {
        for (int shift = 60; shift >= 0; shift -= 4) {
            text += digits[half >> shift & 15];
        }
    }
    return text;
}

} // namespace kovalune::selfcheck
