// A hash of a picture's pixels: 128 bits of FNV-1a, by Fowler, Noll and Vo. Not against forgery: against chance.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kovalune::selfcheck {

class PixelHash {
public:
    void add(uint8_t byte) {
        low_ ^= byte;
        multiply();
    }

    /// Low byte first, whatever this machine's order is.
    template <class Integer>
    void addInteger(Integer value) {
        for (std::size_t i = 0; i < sizeof value; ++i) {
            add(static_cast<uint8_t>(value >> (8 * i)));
        }
    }

    /// The bits, but every NaN counts as the same one.
    void addFloat(float value);

    /// 32 digits.
    std::string text() const;

private:
    /// By 2^88 + 315.
    void multiply() {
        constexpr uint64_t kFactor = 315;
        const uint64_t lower = (low_ & 0xFFFFFFFF) * kFactor;
        const uint64_t upper = (low_ >> 32) * kFactor + (lower >> 32);
        high_ = high_ * kFactor + (upper >> 32) + (low_ << 24);
        low_ = upper << 32 | (lower & 0xFFFFFFFF);
    }

    uint64_t high_ = 0x6C62272E07BB0142;
    uint64_t low_ = 0x62B821756295C58D;
};

} // namespace kovalune::selfcheck
