#include "render/selfcheck/PixelHash.h"

#include "effect/share/StandardParts.h"

namespace kovalune::selfcheck {

void PixelHash::addFloat(float value) {
    constexpr uint32_t kOneNan = 0x7FC00000;
    addInteger(value != value ? kOneNan : bitCast<uint32_t>(value));
}

std::string PixelHash::text() const {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const uint64_t half : {high_, low_}) {
        for (int shift = 60; shift >= 0; shift -= 4) {
            text += kDigits[half >> shift & 15];
        }
    }
    return text;
}

} // namespace kovalune::selfcheck
