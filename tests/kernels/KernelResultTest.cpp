// What each kernel gives, beside its formula written down once more.
#include "tests/kernels/KernelSets.h"
#include "tests/support/Random.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace kovalune::test {
namespace {

using Numbers = std::vector<uint32_t>;

class KernelResultTest : public KernelTest {
protected:
    static constexpr int kRounds = 400;

    static std::size_t at(int32_t i) { return static_cast<std::size_t>(i); }
    static std::size_t padded(int32_t count) { return at(count + kPadding); }

    Numbers numbers(int32_t count, uint32_t below) {
        Numbers made(at(count));
        for (uint32_t& number : made) {
            number = random.chance(10) ? below - 1 : static_cast<uint32_t>(random.unit() * below);
        }
        return made;
    }
    int32_t width() { return random.between(1, 150); }
    std::vector<uint8_t> maskOf(int32_t count) {
        std::vector<uint8_t> mask(at(count));
        for (uint8_t& byte : mask) {
            byte = random.chance(60) ? static_cast<uint8_t>(random.between(1, 255)) : uint8_t{0};
        }
        return mask;
    }

    Random random{91};
};

INSTANTIATE_TEST_SUITE_P(Sets, KernelResultTest, testing::ValuesIn(allSets()), setName);

TEST_P(KernelResultTest, TakesPixelsOf16BitsApart) {
    for (int round = 0; round < kRounds; ++round) {
        const int32_t count = width();
        const bool high = random.chance(20);
        std::vector<uint16_t> pixels(at(4 * count));
        const std::vector<uint8_t> mask = maskOf(count);
        for (uint16_t& channel : pixels) {
            channel = static_cast<uint16_t>(random.below(high ? 65536 : 49152));
        }
        Numbers planes[3] = {Numbers(padded(count)), Numbers(padded(count)), Numbers(padded(count))};
        Numbers alpha(padded(count));
        Numbers counted(padded(count));
        const bool above = kernel().splitColors16(pixels.data(), mask.data(), count, planes[0].data(),
                                                  planes[1].data(), planes[2].data());
        const bool alphaAbove = kernel().splitAlpha16(pixels.data(), mask.data(), count, alpha.data());
        kernel().splitMask(mask.data(), count, counted.data());
        bool expectedAbove = false;
        bool expectedAlphaAbove = false;
        for (int32_t i = 0; i < count; ++i) {
            const bool in = mask[at(i)] != 0;
            for (int32_t c = 0; c < 3; ++c) {
                const uint32_t value = in ? pixels[at(4 * i + 1 + c)] : 0U;
                ASSERT_EQ(planes[c][at(i)], value);
                expectedAbove = expectedAbove || value > 49151;
            }
            ASSERT_EQ(alpha[at(i)], in ? pixels[at(4 * i)] : 0U);
            expectedAlphaAbove = expectedAlphaAbove || alpha[at(i)] > 49151;
            ASSERT_EQ(counted[at(i)], in ? 1U : 0U);
        }
        EXPECT_EQ(above, expectedAbove);
        EXPECT_EQ(alphaAbove, expectedAlphaAbove);
    }
}

TEST_P(KernelResultTest, WeighsPairsOfNumbers) {
    constexpr uint32_t kBias = 16384;
    for (int round = 0; round < kRounds; ++round) {
        const int32_t count = width();
        const int32_t tapPairs = random.between(1, 40);
        const Numbers values = numbers(count + 2 * tapPairs, 49152);
        Numbers pairs = values;
        pairs.resize(padded(count + 2 * tapPairs) + 1);
        std::vector<uint16_t> taps(at(2 * tapPairs));
        uint32_t start = 7;
        for (uint16_t& tap : taps) {
            tap = static_cast<uint16_t>(random.chance(10) ? 32767 : random.below(3000));
            start += kBias * tap;
        }
        kernel().pairUp(pairs.data(), kBias, count + 2 * tapPairs - 1);
        // Three lines: the same one from three places on.
        const int32_t channels = random.chance(50) ? 3 : 1;
        Numbers sums(3 * padded(count));
        const auto step = static_cast<int64_t>(padded(count));
        const int32_t weighed = count > 2 ? count - 2 : count;
        const int32_t lines = count > 2 ? channels : 1;
        kernel().weighPairs({.line = pairs.data(),
                             .lineStep = 1,
                             .sums = sums.data(),
                             .sumsStep = step,
                             .channels = lines,
                             .count = weighed},
                            taps.data(), tapPairs, start);
        for (int32_t i = 0; i < weighed + lines - 1; ++i) {
            uint32_t sum = 7;
            for (int32_t k = 0; k < 2 * tapPairs; ++k) {
                sum += values[at(i + k)] * taps[at(k)];
            }
            for (int32_t c = std::max(0, i - weighed + 1); c < lines && c <= i; ++c) {
                ASSERT_EQ(sums[at(i - c) + at(c) * padded(count)], sum)
                    << i << " of " << weighed << ", line " << c;
            }
        }
    }
}

TEST_P(KernelResultTest, AddsAScaledTable) {
    for (int round = 0; round < kRounds; ++round) {
        const int32_t count = width();
        const Numbers table = numbers(count, 32769);
        const Numbers before = numbers(count, 4000000000U);
        const uint32_t factor = random.next();
        Numbers sums = before;
        kernel().addScaled(table.data(), factor, sums.data(), count);
        for (int32_t i = 0; i < count; ++i) {
            ASSERT_EQ(sums[at(i)], before[at(i)] + factor * table[at(i)]);
        }
    }
}

TEST_P(KernelResultTest, DividesAsWholeNumbersDo) {
    for (int round = 0; round < 4 * kRounds; ++round) {
        const int32_t count = width();
        Numbers weights = numbers(count, 32769);
        Numbers counts = numbers(count, 32768);
        Numbers sums(at(count));
        Numbers boxes(at(count));
        for (int32_t i = 0; i < count; ++i) {
            counts[at(i)] += 1;
            const uint32_t weight = weights[at(i)];
            // Also next to whole quotients, where a rounding would show.
            const auto quotient = static_cast<uint32_t>(random.below(65536));
            const uint32_t near = quotient * weight + static_cast<uint32_t>(random.below(3));
            sums[at(i)] = weight == 0 ? 0 : (near > 1 ? near - 1 : 0);
            const uint32_t box = quotient * counts[at(i)] + static_cast<uint32_t>(random.below(3));
            boxes[at(i)] = box > 0 ? box - 1 : 0;
            if (boxes[at(i)] >= 0x80000000U) {
                boxes[at(i)] = 0x7FFFFFFF;
            }
        }
        const auto tail = static_cast<uint32_t>(random.between(1, 32768));
        constexpr uint32_t kUntouched = 0xABABABAB;
        Numbers core(padded(count), kUntouched);
        Numbers mixed = core;
        Numbers flat = core;
        std::vector<double> reciprocals(at(count));
        kernel().reciprocals(weights.data(), reciprocals.data(), count);
        kernel().coreMeans16(sums.data(), weights.data(), reciprocals.data(), core.data(), count);
        kernel().mixedMeans16(boxes.data(), counts.data(), sums.data(), weights.data(), tail, mixed.data(),
                              count);
        Numbers wrapped = boxes;
        for (uint32_t& box : wrapped) {
            box = random.chance(50) ? box : random.next();
        }
        kernel().flatMeans16(wrapped.data(), counts.data(), flat.data(), count);
        for (const Numbers* const means : {&core, &mixed, &flat}) {
            ASSERT_EQ((*means)[at(count)], kUntouched);
        }
        for (int32_t i = 0; i < count; ++i) {
            const uint32_t weight = weights[at(i)];
            const uint32_t sum = sums[at(i)];
            if (weight != 0) {
                ASSERT_EQ(core[at(i)], (sum + weight / 2) / weight) << sum << '/' << weight;
            }
            const uint32_t whole = weight != 0 ? sum / weight * (32768 - tail) : 0;
            ASSERT_EQ(mixed[at(i)], (boxes[at(i)] / counts[at(i)] * tail + whole + 16384) >> 15);
            const auto signedSum = static_cast<int32_t>(wrapped[at(i)] + counts[at(i)] / 2);
            ASSERT_EQ(static_cast<int32_t>(flat[at(i)]), signedSum / static_cast<int32_t>(counts[at(i)]));
        }
    }
}

TEST_P(KernelResultTest, PutsColoursIntoPixelsOf16Bits) {
    for (int round = 0; round < kRounds; ++round) {
        const int32_t count = width();
        std::vector<uint16_t> pixels(at(4 * count));
        for (uint16_t& channel : pixels) {
            channel = static_cast<uint16_t>(random.below(65536));
        }
        const std::vector<uint16_t> before = pixels;
        const Numbers planes[3] = {numbers(count, 65536), numbers(count, 65536), numbers(count, 65536)};
        kernel().mergeColors16(planes[0].data(), planes[1].data(), planes[2].data(), pixels.data(), count);
        const std::vector<uint8_t> mask = maskOf(count);
        std::vector<uint16_t> laid = before;
        kernel().layColors16(planes[0].data(), planes[1].data(), planes[2].data(), mask.data(), laid.data(),
                             count);
        for (int32_t i = 0; i < count; ++i) {
            ASSERT_EQ(pixels[at(4 * i)], before[at(4 * i)]);
            for (int32_t c = 0; c < 3; ++c) {
                ASSERT_EQ(pixels[at(4 * i + 1 + c)], planes[c][at(i)]);
            }
            for (int32_t c = 0; c < 4; ++c) {
                ASSERT_EQ(laid[at(4 * i + c)], (mask[at(i)] != 0 ? pixels : before)[at(4 * i + c)]);
            }
        }
    }
}

float anyFloat(Random& random) {
    switch (random.below(8)) {
    case 0:
        return std::bit_cast<float>(random.next());
    case 1:
        return random.chance(50) ? 0.0F : -0.0F;
    case 2:
        return random.chance(50) ? std::numeric_limits<float>::infinity()
                                 : std::numeric_limits<float>::denorm_min();
    default:
        return static_cast<float>(random.unit());
    }
}

/// One NaN is like any other.
uint64_t bitsOf(double value) {
    return std::isnan(value) ? ~uint64_t{0} : std::bit_cast<uint64_t>(value);
}

TEST_P(KernelResultTest, TakesFloatPixelsApartAndPutsColoursBack) {
    for (int round = 0; round < kRounds; ++round) {
        const int32_t count = width();
        std::vector<float> pixels(at(4 * count));
        const std::vector<uint8_t> mask = maskOf(count);
        for (float& channel : pixels) {
            channel = anyFloat(random);
        }
        std::vector<double> planes[3] = {std::vector<double>(padded(count)),
                                         std::vector<double>(padded(count)),
                                         std::vector<double>(padded(count))};
        std::vector<double> alpha(padded(count));
        kernel().splitColors32(pixels.data(), mask.data(), count, planes[0].data(), planes[1].data(),
                               planes[2].data());
        kernel().splitAlpha32(pixels.data(), mask.data(), count, alpha.data());
        std::vector<float> back[3];
        for (std::vector<float>& plane : back) {
            plane.resize(at(count));
            for (float& value : plane) {
                value = anyFloat(random);
            }
        }
        for (int32_t i = 0; i < count; ++i) {
            for (int32_t c = 0; c < 3; ++c) {
                const float value = mask[at(i)] != 0 ? pixels[at(4 * i + 1 + c)] : 0.0F;
                ASSERT_EQ(bitsOf(planes[c][at(i)]), bitsOf(static_cast<double>(value)));
            }
            const float value = mask[at(i)] != 0 ? pixels[at(4 * i)] : 0.0F;
            ASSERT_EQ(bitsOf(alpha[at(i)]), bitsOf(static_cast<double>(value)));
        }
        std::vector<float> merged = pixels;
        kernel().mergeColors32(back[0].data(), back[1].data(), back[2].data(), merged.data(), count);
        std::vector<float> laid = pixels;
        kernel().layColors32(back[0].data(), back[1].data(), back[2].data(), mask.data(), laid.data(), count);
        for (int32_t i = 0; i < count; ++i) {
            for (int32_t c = 0; c < 4; ++c) {
                ASSERT_EQ(std::bit_cast<uint32_t>(laid[at(4 * i + c)]),
                          std::bit_cast<uint32_t>((mask[at(i)] != 0 ? merged : pixels)[at(4 * i + c)]));
            }
            ASSERT_EQ(std::bit_cast<uint32_t>(merged[at(4 * i)]), std::bit_cast<uint32_t>(pixels[at(4 * i)]));
            for (int32_t c = 0; c < 3; ++c) {
                ASSERT_EQ(bitsOf(static_cast<double>(merged[at(4 * i + 1 + c)])),
                          bitsOf(static_cast<double>(back[c][at(i)])));
            }
        }
    }
}

TEST_P(KernelResultTest, WeighsFloatsInTheOrderThatIsPartOfTheResult) {
    for (int round = 0; round < kRounds; ++round) {
        const int32_t count = width();
        const int32_t reach = random.between(0, 60);
        const bool ordinary = random.chance(70);
        std::vector<double> line(padded(count + 2 * reach));
        for (double& value : line) {
            value = static_cast<double>(ordinary ? static_cast<float>(random.unit()) : anyFloat(random));
        }
        std::vector<double> taps(at(reach + 1));
        for (double& tap : taps) {
            tap = random.below(32769) / 32768.0;
        }
        std::vector<double> sums(3 * padded(count));
        const auto step = static_cast<int64_t>(padded(count));
        const int32_t lines = count > 2 && random.chance(50) ? 3 : 1;
        const int32_t weighed = count - lines + 1;
        kernel().weighDoubles({.line = line.data() + reach,
                               .lineStep = 1,
                               .sums = sums.data(),
                               .sumsStep = step,
                               .channels = lines,
                               .count = weighed},
                              taps.data(), reach);
        for (int32_t i = 0; i < count; ++i) {
            double sum = 0.0;
            for (int32_t k = 1; k <= reach; ++k) {
                sum += line[at(reach + i - k)] * taps[at(k)];
            }
            for (int32_t k = 0; k <= reach; ++k) {
                sum += line[at(reach + i + k)] * taps[at(k)];
            }
            for (int32_t c = std::max(0, i - weighed + 1); c < lines && c <= i; ++c) {
                ASSERT_EQ(bitsOf(sums[at(i - c) + at(c) * padded(count)]), bitsOf(sum));
            }
        }
    }
}

/// Some bits at the end, so that sums of products take all that they may.
float floatOfSize(Random& random, int32_t exponent) {
    const double mantissa = 1.0 + (random.below(1 << 23) | 1) * 0x1p-23;
    return static_cast<float>(std::ldexp(random.chance(30) ? -mantissa : mantissa, exponent));
}

TEST_P(KernelResultTest, WeighsFloatsInAnyOrderWhereThatIsExact) {
    for (int round = 0; round < kRounds; ++round) {
        const int32_t count = width();
        const int32_t reach = random.between(0, 60);
        const int32_t least = random.between(-120, 100);
        const int32_t lines = count > 2 && random.chance(50) ? 3 : 1;
        const int32_t weighed = count - lines + 1;
        std::vector<double> line(padded(count + 2 * reach));
        for (int32_t i = 0; i < count + 2 * reach; ++i) {
            line[at(i)] = random.chance(20)
                              ? 0.0
                              : static_cast<double>(floatOfSize(random, least + random.between(0, 14)));
        }
        // Never more than 1 in all, as of a kernel.
        std::vector<double> taps(at(reach + 1));
        if (reach > 0 && random.chance(20)) {
            taps[at(random.between(1, reach))] = 0.5;
        } else {
            for (double& tap : taps) {
                tap = random.below(32768 / (2 * reach + 1) + 1) / 32768.0;
            }
        }
        std::vector<double> ordered(3 * padded(count));
        std::vector<double> sums = ordered;
        const auto step = static_cast<int64_t>(padded(count));
        WeighedLines<double> job = {.line = line.data() + reach,
                                    .lineStep = 1,
                                    .sums = ordered.data(),
                                    .sumsStep = step,
                                    .channels = lines,
                                    .count = weighed};
        kernelsOf(InstructionSet::kPlain)->weighDoubles(job, taps.data(), reach);
        job.sums = sums.data();
        kernel().weighExactDoubles(job, taps.data(), reach);
        for (int32_t c = 0; c < lines; ++c) {
            for (int32_t i = 0; i < weighed; ++i) {
                ASSERT_EQ(bitsOf(sums[at(i) + at(c) * padded(count)]),
                          bitsOf(ordered[at(i) + at(c) * padded(count)]))
                    << i << " of " << weighed << ", line " << c << ", reach " << reach;
            }
        }
    }
}

TEST_P(KernelResultTest, TellsWhichFloatsAreExactInAnyOrder) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    struct Case {
        float one;
        float other;
        bool exact;
    };
    const Case cases[] = {{1.0F, 0x1p-14F, true},    {1.0F, 0x1p-15F, false},    {-1.5F, 0x1.8p-15F, false},
                          {0.0F, -0.0F, true},       {0.0F, 1e30F, true},        {1e-40F, 0x1p-126F, true},
                          {1e-40F, 0x1p-112F, true}, {1e-40F, 0x1p-111F, false}, {1.0F, infinity, false},
                          {0.0F, -infinity, false},  {nan, 1.0F, false}};
    for (const auto& [one, other, exact] : cases) {
        for (int round = 0; round < kRounds; ++round) {
            const int32_t count = width() + 1;
            std::vector<float> pixels(at(4 * count), one);
            std::vector<uint8_t> mask(at(count), 1);
            const int32_t place = random.below(count);
            const int32_t channel = random.below(4);
            pixels[at(4 * place + channel)] = other;
            const bool isSeen = random.chance(70);
            mask[at(place)] = isSeen ? 1 : 0;
            const bool onesAreExact = count - (isSeen ? 0 : 1) == 0 || std::isfinite(one);
            std::vector<double> planes[3] = {std::vector<double>(padded(count)),
                                             std::vector<double>(padded(count)),
                                             std::vector<double>(padded(count))};
            const bool colors = kernel().splitColors32(pixels.data(), mask.data(), count, planes[0].data(),
                                                       planes[1].data(), planes[2].data());
            const bool alpha = kernel().splitAlpha32(pixels.data(), mask.data(), count, planes[0].data());
            // Of one pixel alone the one channel has no other to be compared with.
            const bool isAlone = count == 1;
            if (!isSeen) {
                ASSERT_EQ(colors, onesAreExact || isAlone);
                ASSERT_EQ(alpha, onesAreExact || isAlone);
            } else if (!isAlone) {
                ASSERT_EQ(channel != 0 ? colors : alpha, exact) << one << " and " << other;
                ASSERT_EQ(channel != 0 ? alpha : colors, std::isfinite(one));
            }
        }
    }
}

TEST_P(KernelResultTest, MakesMeansOfFloats) {
    for (int round = 0; round < kRounds; ++round) {
        const int32_t count = width();
        const Numbers weights = numbers(count, 32769);
        Numbers counts = numbers(count, 32768);
        std::vector<double> sums(at(count));
        std::vector<double> boxes(at(count));
        for (int32_t i = 0; i < count; ++i) {
            counts[at(i)] += 1;
            sums[at(i)] =
                random.chance(5) ? std::numeric_limits<double>::infinity() : random.unit() * 3.0 - 1.0;
            boxes[at(i)] = random.unit() * counts[at(i)];
        }
        const double share = random.between(1, 32768) / 32768.0;
        constexpr float kUntouched = -7.0F;
        std::vector<float> core(padded(count), kUntouched);
        std::vector<float> mixed = core;
        std::vector<double> reciprocals(at(count));
        kernel().reciprocals(weights.data(), reciprocals.data(), count);
        kernel().coreMeans32(sums.data(), reciprocals.data(), core.data(), count);
        kernel().mixedMeans32(boxes.data(), counts.data(), sums.data(), weights.data(), share, mixed.data(),
                              count);
        ASSERT_EQ(core[at(count)], kUntouched);
        ASSERT_EQ(mixed[at(count)], kUntouched);
        for (int32_t i = 0; i < count; ++i) {
            const double weight = weights[at(i)];
            const double box = boxes[at(i)] / counts[at(i)] * share;
            if (weights[at(i)] != 0) {
                const volatile auto expected = static_cast<float>(sums[at(i)] * (32768.0 / weight));
                ASSERT_EQ(bitsOf(static_cast<double>(core[at(i)])), bitsOf(static_cast<double>(expected)));
            }
            const volatile auto expected = static_cast<float>(
                weights[at(i)] != 0 ? sums[at(i)] * (32768.0 / weight * (1.0 - share)) + box : box);
            ASSERT_EQ(bitsOf(static_cast<double>(mixed[at(i)])), bitsOf(static_cast<double>(expected)));
        }
    }
}

} // namespace
} // namespace kovalune::test
