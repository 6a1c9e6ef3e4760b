// The innermost loops, once for each instruction set of the processor: functions over plain pointers and integers, with the
// very same results from every set. `plain` is their definition; the choice is made once, at run time.
//
// A function writes whole vectors: where a pointer is called padded, it has room for kPadding entries past the last
// one, which may be read and written. All other memory is touched only where the counts say.
#pragma once

#include <cstdint>

namespace kovalune {

enum class InstructionSet : uint8_t { kPlain, kSse2, kAvx2, kAvx512 };
/// All of them, the narrower ones first.
inline constexpr InstructionSet kInstructionSets[] = {InstructionSet::kPlain, InstructionSet::kSse2,
                                                      InstructionSet::kAvx2, InstructionSet::kAvx512};

/// Entries of 4 or 8 bytes: the widest vector's.
inline constexpr int32_t kPadding = 16;

/// One or three lines that are weighed at once, and where their sums go; all padded.
template <class Number>
struct WeighedLines {
    const Number* line;
    int64_t lineStep; ///< entries from one line to the next
    Number* sums;
    int64_t sumsStep;
    int32_t channels;
    int32_t count;
};

/// A 16-bit pixel is taken as one number, alpha lowest; its channels 1 to 3 are red, green and blue.
struct Kernels {
    InstructionSet set;

    /// Takes the colours of `count` 16-bit pixels apart into three padded lines, 0 where the mask is 0. True if any colour
    /// exceeds 49151, for which `pairUp` is wrong.
    bool (*splitColors16)(const void* pixels, const uint8_t* mask, int32_t count, uint32_t* red,
                          uint32_t* green, uint32_t* blue);
    /// The same for alpha alone.
    bool (*splitAlpha16)(const void* pixels, const uint8_t* mask, int32_t count, uint32_t* alpha);
    /// 1 where the mask is not 0.
    void (*splitMask)(const uint8_t* mask, int32_t count, uint32_t* counted);

    /// Replaces each of `count` numbers by the pair (itself - bias, its right neighbour - bias), as two signed 16-bit numbers,
    /// its own in the lower half. Reads one number past the last one.
    void (*pairUp)(uint32_t* numbers, uint32_t bias, int32_t count);
    /// sums[i] = start + the products of both halves of pairs[i + 2 k] and taps[2 k], taps[2 k + 1], at most 32767, over all k
    /// below `tapPairs`, modulo 2^32.
    void (*weighPairs)(const WeighedLines<uint32_t>& lines, const uint16_t* taps, int32_t tapPairs,
                       uint32_t start);
    /// sums[i] += factor * table[i], modulo 2^32.
    void (*addScaled)(const uint32_t* table, uint32_t factor, uint32_t* sums, int32_t count);
    void (*addScaledDoubles)(const double* table, double factor, double* sums, int32_t count);

    /// 1 / weights[i]; anything finite where a weight is 0.
    void (*reciprocals)(const uint32_t* weights, double* reciprocal, int32_t count);
    /// means[i] = (sums[i] + weights[i] / 2) / weights[i], with the weights' reciprocals; sums below 2^31 - 2^15, weights up to
    /// 32768; anything where a weight is 0.
    void (*coreMeans16)(const uint32_t* sums, const uint32_t* weights, const double* reciprocal,
                        uint32_t* means, int32_t count);
    /// The same where every weight is 32768.
    void (*wholeMeans16)(const uint32_t* sums, uint32_t* means, int32_t count);
    /// means[i] = (box * tailWeight + core * (32768 - tailWeight) + 16384) >> 15, where box is boxes[i] / counts[i] and core is
    /// sums[i] / weights[i], or 0 where no weight is; anything where a count is 0, boxes below 2^31.
    void (*mixedMeans16)(const uint32_t* boxes, const uint32_t* counts, const uint32_t* sums,
                         const uint32_t* weights, uint32_t tailWeight, uint32_t* means, int32_t count);
    /// means[i] = (sums[i] + counts[i] / 2) / counts[i], the sum taken as signed; anything where a count is 0.
    void (*flatMeans16)(const uint32_t* sums, const uint32_t* counts, uint32_t* means, int32_t count);

    /// Puts the low halves of three lines into the colours of `count` pixels; alpha stays.
    void (*mergeColors16)(const uint32_t* red, const uint32_t* green, const uint32_t* blue, void* pixels,
                          int32_t count);
    /// The same where the mask is not 0; nothing else is written.
    void (*layColors16)(const uint32_t* red, const uint32_t* green, const uint32_t* blue, const uint8_t* mask,
                        void* pixels, int32_t count);

    /// As splitColors16, for float pixels. True if sums of products of these numbers and taps are exact in whatever order they
    /// are added: a product has 24 and 15 of a double's 53 bits, and 14 are left for how far the numbers differ in size. So are
    /// products of the sum of two numbers and a tap up to a half.
    bool (*splitColors32)(const void* pixels, const uint8_t* mask, int32_t count, double* red, double* green,
                          double* blue);
    bool (*splitAlpha32)(const void* pixels, const uint8_t* mask, int32_t count, double* alpha);
    /// sums[i]: the sum of line[i - k] * taps[k] for k from 1 to `reach`, then of line[i + k] * taps[k] for k from 0 to `reach`,
    /// added in this order. Products must be exact. A line has `reach` entries before the first one.
    void (*weighDoubles)(const WeighedLines<double>& lines, const double* taps, int32_t reach);
    /// The same where they are exact in any order, all taps but the first up to a half.
    void (*weighExactDoubles)(const WeighedLines<double>& lines, const double* taps, int32_t reach);
    /// means[i] = sums[i] * (32768 / weight), with the weights' reciprocals.
    void (*coreMeans32)(const double* sums, const double* reciprocal, float* means, int32_t count);
    /// The same where every weight is 32768.
    void (*wholeMeans32)(const double* sums, float* means, int32_t count);
    /// means[i] = sums[i] * (32768 / weights[i] * (1 - tailShare)) + boxes[i] / counts[i] * tailShare, without the first product
    /// where no weight is.
    void (*mixedMeans32)(const double* boxes, const uint32_t* counts, const double* sums,
                         const uint32_t* weights, double tailShare, float* means, int32_t count);
    /// means[i] = sums[i] / counts[i]; anything where a count is 0.
    void (*flatMeans32)(const double* sums, const uint32_t* counts, float* means, int32_t count);
    void (*mergeColors32)(const float* red, const float* green, const float* blue, void* pixels,
                          int32_t count);
    void (*layColors32)(const float* red, const float* green, const float* blue, const uint8_t* mask,
                        void* pixels, int32_t count);
};

/// The set in use: the widest that this machine has, unless another one was asked for.
const Kernels& kernels();

/// The kernels of a set, or null where this machine, or the processor that this was compiled for, lacks it.
const Kernels* kernelsOf(InstructionSet set);

/// For tests and tools, while nothing is rendered. False where `kernelsOf` gives null; nothing changes then.
[[nodiscard]] bool useInstructionSet(InstructionSet set);

/// For tests: another table, which outlives its use, in place of the one in use, which is returned.
const Kernels& exchangeKernels(const Kernels& table);

/// "plain", "sse2", "avx2" or "avx512".
const char* nameOf(InstructionSet set);

} // namespace kovalune
