// What a blur's line costs, counted in products of the kernels: a drawing's by its changes of colour, noise by its taps.
#include "effect/kernels/Kernels.h"
#include "tests/blur/BlurDrivers.h"

#include <cstdint>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

constexpr int32_t kLength = 1920;
constexpr int32_t kHalf = 50; // 99 taps
constexpr int64_t kTapsOfAPixel = 2 * kHalf - 1;

int64_t products = 0;

/// The plain kernels, counted.
class CountedKernels {
public:
    CountedKernels() : counted_(*kernelsOf(InstructionSet::kPlain)), before_(exchangeKernels(counted_)) {
        products = 0;
        counted_.weighPairs = [](const WeighedLines<uint32_t>& lines, const uint16_t* taps, int32_t tapPairs,
                                 uint32_t start) {
            products += int64_t{lines.channels} * lines.count * (2 * tapPairs);
            kernelsOf(InstructionSet::kPlain)->weighPairs(lines, taps, tapPairs, start);
        };
        counted_.weighDoubles = [](const WeighedLines<double>& lines, const double* taps, int32_t reach) {
            products += int64_t{lines.channels} * lines.count * (2 * reach + 1);
            kernelsOf(InstructionSet::kPlain)->weighDoubles(lines, taps, reach);
        };
        counted_.weighExactDoubles = counted_.weighDoubles;
        counted_.addScaled = [](const uint32_t* table, uint32_t factor, uint32_t* sums, int32_t count) {
            products += count;
            kernelsOf(InstructionSet::kPlain)->addScaled(table, factor, sums, count);
        };
        counted_.addScaledDoubles = [](const double* table, double factor, double* sums, int32_t count) {
            products += count;
            kernelsOf(InstructionSet::kPlain)->addScaledDoubles(table, factor, sums, count);
        };
    }
    ~CountedKernels() { exchangeKernels(before_); }
    CountedKernels(const CountedKernels&) = delete;
    CountedKernels& operator=(const CountedKernels&) = delete;

private:
    Kernels counted_;
    const Kernels& before_;
};

class BlurCostTest : public testing::TestWithParam<BlurDriver> {
protected:
    /// A line of runs of one colour each, all opaque but every other one in a boundary blur, which looks at alpha alone.
    int64_t productsOf(int32_t runs, bool horizontal) {
        const int32_t width = horizontal ? kLength : 1;
        const int32_t height = horizontal ? 1 : kLength;
        Random random(81);
        BlurScene scene(GetParam(), Mask(width, height, 1), random);
        PlainPicture picture = read(scene.src);
        const double full = GetParam().format == kDeep ? 32768.0 : 1.0;
        for (int32_t i = 0; i < kLength; ++i) {
            const int32_t run = static_cast<int32_t>(int64_t{i} * runs / kLength);
            const double level = full * (run % 7 + 1) / 8.0;
            picture.at(horizontal ? i : 0, horizontal ? 0 : i) = {run % 2 == 0 ? full : full / 4.0, level,
                                                                  full / 2.0, level / 2.0};
        }
        write(picture, scene.src);
        const CountedKernels counted;
        EXPECT_EQ(scene.runPass(horizontal, makeGaussKernel(kHalf, 300.0)), PF_Err_NONE);
        return products;
    }
};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurCostTest, testing::ValuesIn(kBlurDrivers), driverName);

TEST_P(BlurCostTest, OfOneColourIsNothing) {
    EXPECT_EQ(productsOf(1, true), 0);
    EXPECT_EQ(productsOf(1, false), 0);
}

TEST_P(BlurCostTest, OfFewColoursGoesByTheirChanges) {
    // What one change reaches: the windows to either side of it, in at most three channels and their weights.
    const int64_t ofAChange = 4 * 2 * kTapsOfAPixel;
    for (const bool horizontal : {true, false}) {
        for (const int32_t runs : {2, 3, 8, 12}) {
            EXPECT_LE(productsOf(runs, horizontal), runs * ofAChange) << runs;
        }
        EXPECT_GT(productsOf(2, horizontal), 0);
    }
}

TEST_P(BlurCostTest, OfNoiseGoesByItsTaps) {
    const int64_t channels = GetParam().isBoundary() ? 1 : 3;
    const int64_t all = channels * kLength * kTapsOfAPixel;
    const int64_t counted = productsOf(kLength, true);
    EXPECT_GE(counted, all);
    EXPECT_LE(counted, all + all / 20);
}

} // namespace
} // namespace kovalune::test
