// The falling weights of a ramp, value by value.

#include "effect/smoothing/RunBlends.h"
#include "tests/reference/PlainSmooth.h"
#include "tests/smoothing/HandMade.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace kovalune::test {
namespace {

template <class Format>
std::vector<typename SmoothOf<Format>::Weight> weightsOf(WeightRamp<Format> ramp) {
    std::vector<typename SmoothOf<Format>::Weight> weights;
    while (!ramp.finished) {
        weights.push_back(nextWeight(ramp));
    }
    return weights;
}

using Ints = std::vector<int32_t>;
using Ramp16 = WeightRamp<Argb16>;
using Ramp32 = WeightRamp<Argb32>;

TEST(WeightRamp, FallsFromItsPeakByTheMeanOfEveryPixel) {
    EXPECT_EQ(weightsOf(Ramp16(32767, 10000, 0)), (Ints{27767, 17767, 7767, 382}));
    EXPECT_EQ(weightsOf(Ramp16(32767, 10001, 0)), (Ints{27767, 17766, 7765, 381}));
}

TEST(WeightRamp, EndsInThePixelInWhichItReachesZero) {
    EXPECT_EQ(weightsOf(Ramp16(30000, 10000, 0)), (Ints{25000, 15000, 5000}));
    EXPECT_EQ(weightsOf(Ramp16(32767, 40000, 0)), (Ints{13420}));
    EXPECT_EQ(weightsOf(Ramp16(32767, 1638350, 0)), (Ints{327}));
}

TEST(WeightRamp, OfAFloatEndsAtZeroLikewise) {
    EXPECT_EQ(weightsOf(Ramp32(0.5F, 0.25F, 0)), (std::vector<float>{0.375F, 0.125F}));
    EXPECT_EQ(weightsOf(Ramp32(0.5F, 0.375F, 0)), (std::vector<float>{0.3125F, 0.125F * 0.125F / 0.75F}));
    EXPECT_EQ(weightsOf(Ramp32(0.5F, 2.0F, 0)), (std::vector<float>{0.0625F}));
}

/// At a tiny strength the square of a taper's weight does not fit 32 bits; the product keeps its low bits.
TEST(WeightRamp, WrapsTheSquareOfAFullWeight) {
    EXPECT_EQ(weightsOf(Ramp16(65535, 3276700, 0)), (Ints{0}));
    EXPECT_EQ(weightsOf(Ramp16(65535, 65536, 0)), (Ints{0}));
    EXPECT_EQ(weightsOf(Ramp16(46340, 46340, 0)), (Ints{23170}));
}

TEST(WeightRamp, BendsTowardACubicWithoutMovingItsEnds) {
    const auto first = [](int32_t peak, int32_t step, int32_t curve) {
        Ramp16 ramp(peak, step, curve);
        return nextWeight(ramp);
    };
    // Half way down a ramp of 32767: a half, an eighth, seven eighths.
    EXPECT_EQ(first(32767, 32767, 0), 16383);
    EXPECT_EQ(first(32767, 32767, 100), 4095);
    EXPECT_EQ(first(32767, 32767, -100), 28670);
    EXPECT_EQ(first(32767, 32767, 50), 10239);
    EXPECT_EQ(first(32767, 32767, -50), 22526);
    // The ends stay.
    for (const int32_t curve : {-100, -33, 1, 33, 100}) {
        EXPECT_EQ(first(32767, 0, curve), 32767) << curve;
        EXPECT_EQ(first(32767, 1000000000, curve), 0) << curve;
    }
}

TEST(WeightRamp, OfAFloatBendsWithoutRounding) {
    Ramp32 held(0.5F, 0.25F, 100);
    EXPECT_EQ(nextWeight(held), 0.5F * 0.75F * 0.75F * 0.75F);
    EXPECT_EQ(nextWeight(held), 0.5F * 0.25F * 0.25F * 0.25F);
    Ramp32 bold(0.5F, 0.25F, -100);
    EXPECT_EQ(nextWeight(bold), 0.5F * (1.0F - 0.25F * 0.25F * 0.25F));
    EXPECT_EQ(nextWeight(bold), 0.5F * (1.0F - 0.75F * 0.75F * 0.75F));
}

/// The bend works on the weight of the pixel, not on the level, which falls as without it.
TEST(WeightRamp, KeepsItsLengthUnderACurve) {
    for (const int32_t curve : {-100, -7, 0, 60}) {
        EXPECT_EQ(weightsOf(Ramp16(65535, 9000, curve)).size(), 8U);
    }
}

TEST(WeightRamp, AgreesWithTheTwin) {
    Random random(77);
    for (int n = 0; n < 4000; ++n) {
        const int32_t peak = random.chance(50) ? 32767 : random.chance(50) ? 65535 : 21844;
        const int32_t step = 1 + random.below(random.chance(20) ? 4000000 : 20000);
        const int32_t curve = random.between(-100, 100);
        Ramp16 real(peak, step, curve);
        PlainRamp plain = {false, double(peak), double(peak), double(step), curve};
        Ramp32 realFloat(static_cast<float>(peak) / 65535.0F, static_cast<float>(step) / 65535.0F, curve);
        PlainRamp plainFloat = {false, double(realFloat.peak), double(realFloat.level),
                                double(realFloat.step), curve};
        for (int i = 0; i < 40; ++i) {
            if (!real.finished) {
                ASSERT_EQ(nextWeight(real), plainNextWeight(PF_PixelFormat_ARGB64, plain));
                ASSERT_EQ(real.finished, plain.finished);
            }
            if (!realFloat.finished) {
                ASSERT_EQ(double(nextWeight(realFloat)), plainNextWeight(PF_PixelFormat_ARGB128, plainFloat));
                ASSERT_EQ(realFloat.finished, plainFloat.finished);
            }
        }
    }
}

template <class Format>
auto runWeights(int32_t strength, int32_t length, int32_t stretch) {
    const HandScene<Format> scene({}, strength);
    return weightsOf(runRamp(scene.context(), length, stretch));
}

template <class Format>
auto taperWeights(int32_t strength, int32_t length) {
    const HandScene<Format> scene({}, strength);
    return weightsOf(taperRamp(scene.context(), length));
}

TEST(RampOfARun, StartsAtHalfWeightAndLastsItsStretch) {
    // Step 3276700 / (50 * 4) = 16383.
    EXPECT_EQ(runWeights<Argb8>(70, 3, 50), (Ints{24576, 8193, 0}));
    EXPECT_EQ(runWeights<Argb16>(70, 3, 100).size(), 5U);
    EXPECT_EQ(runWeights<Argb32>(70, 3, 50), (std::vector<float>{0.375F, 0.125F}));
}

TEST(RampOfARun, CountsAStretchBelowOneAsOne) {
    // Step 1638350: all in the first pixel.
    for (const int32_t stretch : {1, 0, -100}) {
        EXPECT_EQ(runWeights<Argb8>(70, 1, stretch), (Ints{327})) << stretch;
        EXPECT_EQ(runWeights<Argb32>(70, 1, stretch), (std::vector<float>{0.25F / 50.0F})) << stretch;
    }
}

TEST(RampOfATaper, StartsAtFullWeightWithThePlainStrength) {
    // Step 2 * (3276700 / 140) = 46810.
    EXPECT_EQ(taperWeights<Argb8>(70, 1), (Ints{42130, 3745}));
    EXPECT_EQ(taperWeights<Argb16>(70, 1), (Ints{42130, 3745}));
    EXPECT_EQ(taperWeights<Argb32>(100, 1), (std::vector<float>{0.75F, 0.25F}));
}

} // namespace
} // namespace kovalune::test
