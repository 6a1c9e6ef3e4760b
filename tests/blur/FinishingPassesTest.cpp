#include "effect/blur/FinishingPasses.h"

#include "tests/reference/PlainFinishing.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <string>

namespace kovalune::test {
namespace {

/// A pass by name, with its plain twin.
struct Finishing {
    const char* name;
    PF_PixelFormat format;
    bool readsSource;
    FinishingPass* run;
    void (*plain)(const FrameRect& rect, const Mask& mask, double bias, const PlainPicture& src,
                  PlainPicture& dst);
};

void plainRestore(const FrameRect& rect, const Mask& mask, double /*bias*/, const PlainPicture& src,
                  PlainPicture& dst) {
    plainRestoreMasked(rect, mask, src, dst);
}
void plainClear(const FrameRect& rect, const Mask& mask, double /*bias*/, const PlainPicture& /*src*/,
                PlainPicture& dst) {
    plainClearAlphaOutside(rect, mask, dst);
}
void plainMultiply(const FrameRect& rect, const Mask& mask, double /*bias*/, const PlainPicture& src,
                   PlainPicture& dst) {
    plainMultiplyAlphaOutside(rect, mask, src, dst);
}
void plainBias(const FrameRect& rect, const Mask& mask, double bias, const PlainPicture& /*src*/,
               PlainPicture& dst) {
    plainApplyBoundaryBias(rect, mask, bias, dst);
}
void plainCompose(const FrameRect& rect, const Mask& /*mask*/, double /*bias*/, const PlainPicture& src,
                  PlainPicture& dst) {
    plainComposeOver(rect, src, dst);
}

constexpr PF_PixelFormat k8 = PF_PixelFormat_ARGB32;
constexpr PF_PixelFormat k16 = PF_PixelFormat_ARGB64;
constexpr PF_PixelFormat k32 = PF_PixelFormat_ARGB128;

constexpr std::array<Finishing, 11> kPasses = {{
    {"restoreMasked16", k16, true, restoreMasked16, plainRestore},
    {"restoreMasked32", k32, true, restoreMasked32, plainRestore},
    {"clearAlphaOutside8", k8, false, clearAlphaOutside8, plainClear},
    {"clearAlphaOutside16", k16, false, clearAlphaOutside16, plainClear},
    {"clearAlphaOutside32", k32, false, clearAlphaOutside32, plainClear},
    {"multiplyAlphaOutside16", k16, true, multiplyAlphaOutside16, plainMultiply},
    {"multiplyAlphaOutside32", k32, true, multiplyAlphaOutside32, plainMultiply},
    {"applyBoundaryBias16", k16, false, applyBoundaryBias16, plainBias},
    {"applyBoundaryBias32", k32, false, applyBoundaryBias32, plainBias},
    {"composeOver16", k16, true, composeOver16, plainCompose},
    {"composeOver32", k32, true, composeOver32, plainCompose},
}};

class FinishingPassTest : public testing::TestWithParam<Finishing> {};

INSTANTIATE_TEST_SUITE_P(Passes, FinishingPassTest, testing::ValuesIn(kPasses),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(FinishingPassTest, DoesWhatThePlainOneDoes) {
    const Finishing pass = GetParam();
    Random random(71);
    for (int round = 0; round < 90; ++round) {
        host::judge::JudgeOptions options = shuffledOptions(random.between(1, 9), 2, random.next());
        options.rowPadding = 4 * random.below(5);
        StrictHost host(options);
        const Mask mask = makeMask(kMaskShapes[static_cast<std::size_t>(random.below(9))],
                                   random.between(1, 70), random.between(1, 25), random);
        const FrameRect rect = rectAt(random.below(4), random.below(4), mask.width, mask.height);
        TestWorld dst(host, pass.format, rect.right + random.below(3), rect.bottom + random.below(3));
        TestWorld src(host, pass.format, dst.width(), dst.height());
        const Range range = round % 2 == 0 ? Range::kOrdinary : Range::kWild;
        PlainPicture expected = randomPicture(pass.format, dst.width(), dst.height(), random, range);
        const PlainPicture source =
            round % 3 == 0 ? flatPicture(pass.format, dst.width(), dst.height(), random, range)
                           : randomPicture(pass.format, dst.width(), dst.height(), random, range);
        write(expected, dst);
        write(source, src);
        const double biases[] = {0.0, 100.0, -100.0, random.unit() * 100.0, random.unit() * -100.0};
        const double bias = biases[random.below(5)];
        pass.plain(rect, mask, bias, source, expected);
        const MaskPlane plane = planeOf(host, mask);
        EXPECT_EQ(pass.run(host.in(), {dst.get(), src.get(), rect, plane, bias}), PF_Err_NONE);
        ASSERT_EQ(difference(expected, dst), "") << "round " << round << ", bias " << bias;
        ASSERT_EQ(difference(source, src), "") << "the source was written";
    }
}

TEST_P(FinishingPassTest, HandsBackTheHostsCode) {
    const Finishing pass = GetParam();
    StrictHost host;
    TestWorld dst(host, pass.format, 3, 3);
    TestWorld src(host, pass.format, 3, 3);
    MaskPlane mask(host.in(), 3, 3);
    mask.clearTo(0);
    host::judge::FaultPlan plan;
    plan.failCall = 1;
    plan.failCode = 99;
    host.arm(plan);
    EXPECT_EQ(pass.run(host.in(), {dst.get(), src.get(), wholeRect(3, 3), mask, 10.0}), 99);
}

TEST_P(FinishingPassTest, OfAMissingWorldIsOutOfMemory) {
    const Finishing pass = GetParam();
    StrictHost host;
    TestWorld world(host, pass.format, 3, 3);
    MaskPlane mask(host.in(), 3, 3);
    mask.clearTo(0);
    EXPECT_EQ(pass.run(host.in(), {nullptr, world.get(), wholeRect(3, 3), mask, 10.0}), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(pass.run(host.in(), {world.get(), nullptr, wholeRect(3, 3), mask, 10.0}),
              pass.readsSource ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE);
}

/// One pixel in `dst` and `src` through a pass, under a mask of one element.
PlainPixel onePixel(const Finishing& pass, const PlainPixel& under, const PlainPixel& over,
                    uint8_t element = 1, double bias = 0.0, bool active = true) {
    StrictHost host;
    TestWorld dst(host, pass.format, 1, 1);
    TestWorld src(host, pass.format, 1, 1);
    PlainPicture picture(pass.format, 1, 1);
    picture.at(0, 0) = over;
    write(picture, src);
    picture.at(0, 0) = under;
    write(picture, dst);
    MaskPlane mask = planeOf(host, Mask(1, 1, element));
    summariesOf(mask).rows[0] = active ? 1 : 0;
    EXPECT_EQ(pass.run(host.in(), {dst.get(), src.get(), wholeRect(1, 1), mask, bias}), PF_Err_NONE);
    return read(dst).at(0, 0);
}

const Finishing& passNamed(const std::string& name) {
    for (const Finishing& pass : kPasses) {
        if (name == pass.name) {
            return pass;
        }
    }
    throw std::invalid_argument(name);
}

TEST(RestoreMasked, SkipsRowsWithoutActivity) {
    for (const char* name : {"restoreMasked16", "restoreMasked32"}) {
        const Finishing& pass = passNamed(name);
        const PlainPixel over = {1, 0, 1, 1};
        EXPECT_EQ(onePixel(pass, {}, over, 7, 0.0, true).green, 1.0);
        EXPECT_EQ(onePixel(pass, {}, over, 7, 0.0, false).green, 0.0);
    }
}

TEST(OtherFinishingPasses, DoNotLookAtRowActivity) {
    const PlainPixel half = {0.25, 0.5, 0.5, 0.5};
    EXPECT_EQ(onePixel(passNamed("clearAlphaOutside32"), half, half, 0, 0.0, false).alpha, 0.0);
    EXPECT_EQ(onePixel(passNamed("multiplyAlphaOutside32"), half, half, 0, 0.0, false).alpha, 0.0625);
    EXPECT_EQ(onePixel(passNamed("applyBoundaryBias32"), half, half, 1, -50.0, false).alpha, 0.0);
    EXPECT_EQ(onePixel(passNamed("composeOver32"), half, {1, 0, 0, 0}, 0, 0.0, false).red, 0.0);
}

TEST(MultiplyAlphaOutside, KeepsFullAlphaAndWorksOutsideOnly) {
    const Finishing& pass = passNamed("multiplyAlphaOutside16");
    const auto alpha = [&](double under, double over, uint8_t element) {
        return onePixel(pass, {under, 1, 2, 3}, {over, 4, 5, 6}, element).alpha;
    };
    EXPECT_EQ(alpha(32768, 32768, 0), 32768.0);
    EXPECT_EQ(alpha(16384, 16384, 0), 8192.0);
    EXPECT_EQ(alpha(1, 32767, 0), 0.0);
    EXPECT_EQ(alpha(16384, 0, 0), 0.0);
    EXPECT_EQ(alpha(16384, 0, 1), 16384.0);
    EXPECT_EQ(onePixel(pass, {32768, 1, 2, 3}, {0, 4, 5, 6}, 0).red, 1.0) << "colour stays";
}

double biased16(double alpha, double bias, uint8_t element = 1) {
    return onePixel(passNamed("applyBoundaryBias16"), {alpha, 0, 0, 0}, {}, element, bias).alpha;
}

double biased32(double alpha, double bias) {
    return onePixel(passNamed("applyBoundaryBias32"), {alpha, 0, 0, 0}, {}, 1, bias).alpha;
}

TEST(ApplyBoundaryBias, OfZeroSteepensTheMiddle) {
    EXPECT_EQ(biased16(100, 0.0), 0.0);
    EXPECT_EQ(biased16(8192, 0.0), 4798.0);
    EXPECT_EQ(biased16(16384, 0.0), 16383.0);
    EXPECT_EQ(biased16(24576, 0.0), 27969.0);
    EXPECT_EQ(biased16(32768, 0.0), 32768.0);
    EXPECT_FLOAT_EQ(static_cast<float>(biased32(0.25, 0.0)), 0.14644661F);
    EXPECT_EQ(biased32(0.5, 0.0), 0.5);
    EXPECT_EQ(biased32(1.0, 0.0), 1.0);
}

TEST(ApplyBoundaryBias, OfFiftyRisesBetweenItsEnds) {
    EXPECT_EQ(biased16(1637, 50.0), 0.0);
    EXPECT_EQ(biased16(1638, 50.0), 0.0);
    EXPECT_EQ(biased16(9000, 50.0), 13787.0);
    EXPECT_LT(biased16(17900, 50.0), 32768.0);
    EXPECT_EQ(biased16(18023, 50.0), 32768.0);
    EXPECT_EQ(biased32(0.04, 50.0), 0.0);
    EXPECT_EQ(biased32(0.56, 50.0), 1.0);
}

TEST(ApplyBoundaryBias, OfAHundredIsAStep) {
    EXPECT_EQ(biased16(3275, 100.0), 0.0);
    EXPECT_EQ(biased16(3278, 100.0), 32768.0);
    EXPECT_EQ(biased32(0.0999, 100.0), 0.0);
    EXPECT_EQ(biased32(0.1001, 100.0), 1.0);
}

TEST(ApplyBoundaryBias, BelowZeroIsARampThatKeepsFullAlpha) {
    EXPECT_EQ(biased16(16384, -50.0), 0.0);
    EXPECT_EQ(biased16(100, -50.0), 0.0);
    EXPECT_EQ(biased16(24576, -50.0), 16384.0);
    EXPECT_EQ(biased16(32768, -50.0), 32768.0);
    EXPECT_EQ(biased32(1.0, -50.0), 1.0);
    EXPECT_EQ(biased32(0.5, -50.0), 0.0);
    const double ramp = (-50.0 + 100.0) / 100.0 * 0.9999998807907104;
    EXPECT_EQ(biased32(0.75, -50.0), static_cast<double>(static_cast<float>(1.0 - 0.25 / ramp)))
        << "in double up to the store";
}

TEST(ApplyBoundaryBias, OfMinusAHundredDropsEveryAlpha) {
    for (const double alpha : {1.0, 16384.0, 32767.0, 32768.0, 32769.0, 65535.0}) {
        EXPECT_EQ(biased16(alpha, -100.0), 0.0) << alpha;
    }
    EXPECT_EQ(biased32(0.5, -100.0), 0.0);
    EXPECT_EQ(biased32(1.0, -100.0), 0.0);
}

TEST(ApplyBoundaryBias, LeavesTransparentAndMaskedOutPixels) {
    for (const double bias : {-100.0, -50.0, 0.0, 50.0, 100.0}) {
        EXPECT_EQ(biased16(0, bias), 0.0);
        EXPECT_EQ(biased16(12345, bias, 0), 12345.0);
        EXPECT_EQ(biased32(0.0, bias), 0.0);
    }
}

TEST(ApplyBoundaryBias, EndsForEveryNumber) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double bias : {-1e300, -150.0, -100.0, 100.002, 150.0, 200.0, 1e9, kInfinity, -kInfinity,
                              std::numeric_limits<double>::quiet_NaN()}) {
        for (const double alpha : {1.0, 3276.0, 32768.0, 65535.0}) {
            biased16(alpha, bias);
        }
        for (const double alpha :
             {-kInfinity, -1.0, 0.1, 1.0, 3.0, kInfinity, std::numeric_limits<double>::quiet_NaN()}) {
            biased32(alpha, bias);
        }
    }
}

TEST(ComposeOver, MixesColourAndKeepsAlpha) {
    const Finishing& pass = passNamed("composeOver16");
    const PlainPixel half = onePixel(pass, {32768, 1000, 30000, 7}, {16384, 3000, 10000, 8});
    EXPECT_EQ(half.alpha, 32768.0);
    EXPECT_EQ(half.red, 2000.0);
    EXPECT_EQ(half.green, 20000.0);
    EXPECT_EQ(half.blue, 7.0) << "truncated";
    const PlainPixel thin = onePixel(pass, {8192, 1000, 30000, 7}, {16384, 3000, 10000, 8});
    EXPECT_EQ(thin.alpha, 8192.0);
    EXPECT_EQ(thin.red, (1000 * 4096 + 3000 * 16384) / (4096 + 16384));
    const PlainPixel inFloat = onePixel(passNamed("composeOver32"), {0.25, 0, 1, 0}, {0.5, 1, 0, 0.25});
    EXPECT_EQ(inFloat.alpha, 0.25);
    EXPECT_EQ(inFloat.red, static_cast<double>(static_cast<float>(0.5 / 0.625)));
}

TEST(ComposeOver, TakesTheLayersColourWhereItIsFullOrNothingLiesBelow) {
    const Finishing& pass = passNamed("composeOver16");
    const auto red = [&](double underAlpha, double overAlpha) {
        return onePixel(pass, {underAlpha, 1000, 0, 0}, {overAlpha, 3333, 0, 0}).red;
    };
    EXPECT_EQ(red(32768, 32768), 3333.0);
    EXPECT_EQ(red(0, 1), 3333.0);
    EXPECT_EQ(red(0, 12345), 3333.0);
    EXPECT_EQ(red(20000, 0), 1000.0);
    EXPECT_EQ(onePixel(pass, {0, 1000, 0, 0}, {12345, 3333, 0, 0}).alpha, 0.0);
    const auto colour = static_cast<double>(0.7F);
    EXPECT_EQ(onePixel(passNamed("composeOver32"), {0, 0.5, 0, 0}, {0.375, colour, 0, 0}).red, colour);
}

} // namespace
} // namespace kovalune::test
