// The runs of masked-in pixels along a line, and those between them, eight mask bytes at a time.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace kovalune {

// Of eight mask bytes in a number the first is the lowest.
static_assert(std::endian::native == std::endian::little);

inline uint64_t eightOf(const uint8_t* mask) {
    uint64_t eight = 0;
    std::memcpy(&eight, mask, sizeof eight);
    return eight;
}

/// The first place from `x` on that is masked in, or `end`.
inline int32_t nextMaskedIn(const uint8_t* mask, int32_t x, int32_t end) {
    for (; end - x >= 8; x += 8) {
        if (const uint64_t in = eightOf(mask + x); in != 0) {
            return x + std::countr_zero(in) / 8;
        }
    }
    while (x < end && mask[x] == 0) {
        ++x;
    }
    return x;
}

/// The first place from `x` on that is masked out, or `end`.
inline int32_t nextMaskedOut(const uint8_t* mask, int32_t x, int32_t end) {
    constexpr uint64_t kLowest = 0x0101010101010101;
    for (; end - x >= 8; x += 8) {
        const uint64_t eight = eightOf(mask + x);
        // The lowest of these bits belongs to the first byte that is 0.
        if (const uint64_t out = (eight - kLowest) & ~eight & (kLowest << 7); out != 0) {
            return x + std::countr_zero(out) / 8;
        }
    }
    while (x < end && mask[x] != 0) {
        ++x;
    }
    return x;
}

/// Past the last place before `end` that is masked in, or `x`.
inline int32_t endOfMaskedIn(const uint8_t* mask, int32_t x, int32_t end) {
    for (; end - x >= 8; end -= 8) {
        if (const uint64_t in = eightOf(mask + end - 8); in != 0) {
            return end - std::countl_zero(in) / 8;
        }
    }
    while (end > x && mask[end - 1] == 0) {
        --end;
    }
    return end;
}

/// Calls `run(first, end)` for each run of masked-in places of [x, end), in order.
template <class Run>
void forEachRun(const uint8_t* mask, int32_t x, int32_t end, const Run& run) {
    for (int32_t first = nextMaskedIn(mask, x, end); first < end;) {
        const int32_t past = nextMaskedOut(mask, first, end);
        run(first, past);
        first = nextMaskedIn(mask, past, end);
    }
}

/// Calls `gap(first, end)` for each run of masked-out places of [x, end), in order.
template <class Gap>
void forEachGap(const uint8_t* mask, int32_t x, int32_t end, const Gap& gap) {
    for (int32_t first = nextMaskedOut(mask, x, end); first < end;) {
        const int32_t past = nextMaskedIn(mask, first, end);
        gap(first, past);
        first = nextMaskedOut(mask, past, end);
    }
}

} // namespace kovalune
