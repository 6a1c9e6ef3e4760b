#include "effect/blur/GaussKernel.h"

#include "tests/reference/PlainKernel.h"

#include <gtest/gtest.h>
#include <vector>

namespace kovalune::test {
namespace {

std::vector<int32_t> tapsOf(const GaussKernel& kernel) {
    return {kernel.taps(), kernel.taps() + kernel.tapCount};
}

int64_t symmetricSum(const GaussKernel& kernel) {
    int64_t sum = (2 * int64_t{kernel.length} - 1) * kernel.tail - kernel.taps()[0];
    for (const int32_t tap : tapsOf(kernel)) {
        sum += int64_t{2} * tap;
    }
    return sum;
}

TEST(GaussKernel, OfSmallLengthsHasTheKnownTaps) {
    EXPECT_EQ(tapsOf(makeGaussKernel(2, 0.5)), (std::vector<int32_t>{18880, 6944}));
    EXPECT_EQ(tapsOf(makeGaussKernel(3, 1.125)), (std::vector<int32_t>{12506, 8018, 2113}));
    EXPECT_EQ(tapsOf(makeGaussKernel(10, 12.5)),
              (std::vector<int32_t>{3724, 3578, 3174, 2598, 1964, 1370, 882, 524, 287, 145}));
}

TEST(GaussKernel, RecordsItsLengthAndNoTailUpTo300) {
    for (const int32_t n : {2, 3, 10, 299, 300}) {
        const GaussKernel kernel = makeGaussKernel(n, n * n * 0.125);
        EXPECT_EQ(kernel.length, n);
        EXPECT_EQ(kernel.tapCount, n);
        EXPECT_EQ(kernel.tail, 0);
        EXPECT_EQ(kernel.tailWeight, 0);
    }
}

TEST(GaussKernel, Of301IsTheFirstWithACore) {
    const GaussKernel kernel = makeGaussKernel(301, 200000.0);
    EXPECT_EQ(kernel.length, 301);
    EXPECT_EQ(kernel.tapCount, 300);
    EXPECT_GT(kernel.tail, 0);
    EXPECT_EQ(kernel.tailWeight, 601 * kernel.tail);
    EXPECT_EQ(symmetricSum(kernel), 32768);
}

TEST(GaussKernel, Of400HasTheKnownTail) {
    const GaussKernel kernel = makeGaussKernel(400, 20000.0);
    EXPECT_EQ(kernel.tail, 4);
    EXPECT_EQ(kernel.tailWeight, 3196);
    EXPECT_EQ(kernel.tapCount, 300);
    EXPECT_EQ(kernel.length, 400);
    EXPECT_EQ(kernel.taps()[0], 90);
    EXPECT_EQ(kernel.taps()[299], 6);
    EXPECT_EQ(symmetricSum(kernel), 32768);
}

TEST(GaussKernel, Of1000IsOverHalfTail) {
    const GaussKernel kernel = makeGaussKernel(1000, 125000.0);
    EXPECT_EQ(kernel.tail, 9);
    EXPECT_EQ(kernel.tailWeight, 17991);
    EXPECT_EQ(symmetricSum(kernel), 32768);
}

TEST(GaussKernel, OfLengthOneHasItsTapAtOne) {
    for (const int32_t n : {1, 0, -7}) {
        const GaussKernel kernel = makeGaussKernel(n, 1.0);
        EXPECT_EQ(kernel.tapCount, 1);
        EXPECT_EQ(kernel.length, 1);
        EXPECT_EQ(kernel.tail, 0);
        EXPECT_EQ(kernel.tailWeight, 0);
        EXPECT_EQ(kernel.taps()[0], 32768);
    }
}

TEST(GaussKernel, SharesItsTableWithItsCopiesOnly) {
    const GaussKernel kernel = makeGaussKernel(5, 3.0);
    EXPECT_EQ(kernel.table.useCount(), 1);
    const GaussKernel copy = kernel;
    EXPECT_EQ(copy.taps(), kernel.taps());
    EXPECT_EQ(kernel.table.useCount(), 2);
    EXPECT_NE(makeGaussKernel(5, 3.0).taps(), kernel.taps());
}

TEST(GaussKernel, ByDefaultHasNoTable) {
    const GaussKernel kernel;
    EXPECT_EQ(kernel.taps(), nullptr);
    EXPECT_EQ(kernel.tapCount, 0);
    EXPECT_EQ(kernel.length, 0);
    EXPECT_EQ(kernel.tail, 0);
    EXPECT_EQ(kernel.tailWeight, 0);
}

void expectLikeThePlainOne(int32_t n, double variance) {
    const GaussKernel kernel = makeGaussKernel(n, variance);
    const PlainKernel plain = plainKernel(n, variance);
    ASSERT_EQ(tapsOf(kernel), plain.taps) << n << ", " << variance;
    ASSERT_EQ(kernel.length, plain.length);
    ASSERT_EQ(kernel.tail, plain.tail);
    ASSERT_EQ(kernel.tailWeight, plain.tailWeight);
    ASSERT_EQ(symmetricSum(kernel), 32768) << n << ", " << variance;
}

TEST(GaussKernel, SumsToOneForEveryLengthAndTheVariancesInUse) {
    for (int32_t n = 2; n <= 1001; n += n < 40 || (n > 295 && n < 305) ? 1 : 31) {
        const double amount = n - 0.5;
        expectLikeThePlainOne(n, amount * amount * 0.125);
        expectLikeThePlainOne(n, amount * amount);
    }
}

TEST(GaussKernel, SumsToOneForExtremeVariances) {
    for (const int32_t n : {2, 3, 17, 299, 300, 301, 302, 640, 1001}) {
        for (const double variance : {1.0e-9, 1.0e-3, 0.5, 40.0, 1.0e5, 1.0e12, 1.0e300}) {
            expectLikeThePlainOne(n, variance);
        }
    }
}

TEST(GaussKernel, OfAVeryLargeVarianceIsNearlyFlat) {
    const std::vector<int32_t> taps = tapsOf(makeGaussKernel(100, 1.0e9));
    // 32768 / 199 is 164.7, truncated; what that loses goes to the low taps, an odd unit to the centre.
    EXPECT_EQ(taps[0], 166);
    for (std::size_t i = 1; i < taps.size(); ++i) {
        EXPECT_EQ(taps[i], i < 66 ? 165 : 164) << i;
    }
}

TEST(GaussKernel, TruncatesWhatThePlainOneThenHandsBack) {
    EXPECT_EQ(plainKernel(2, 0.5).firstRest, 2);
    EXPECT_EQ(plainKernel(3, 1.125).firstRest, 3);
    EXPECT_EQ(plainKernel(400, 20000.0).firstRest, 978);
}

} // namespace
} // namespace kovalune::test
