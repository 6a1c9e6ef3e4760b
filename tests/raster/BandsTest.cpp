#include "effect/raster/Bands.h"

#include "tests/reference/PlainBands.h"
#include "tests/support/StrictHost.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <mutex>
#include <vector>

namespace kovalune::test {
namespace {

TEST(Bands, FollowTheFormula) {
    for (int32_t lines = 0; lines <= 70; ++lines) {
        for (int32_t n = 1; n <= 16; ++n) {
            for (int32_t i = 0; i < n; ++i) {
                const Band band = bandOf(lines, i, n);
                const Band plain = plainBand(lines, i, n);
                ASSERT_EQ(band.first, plain.first) << lines << " lines, " << i << " of " << n;
                ASSERT_EQ(band.end, plain.end) << lines << " lines, " << i << " of " << n;
            }
        }
    }
}

TEST(Bands, CoverAllLinesOnceWithTheLongerBandsFirst) {
    for (int32_t lines = 0; lines <= 70; ++lines) {
        for (int32_t n = 1; n <= 16; ++n) {
            int32_t next = 0;
            int32_t length = std::numeric_limits<int32_t>::max();
            for (int32_t i = 0; i < n; ++i) {
                const Band band = bandOf(lines, i, n);
                ASSERT_EQ(band.first, next);
                ASSERT_GE(band.end, band.first);
                ASSERT_LE(band.end - band.first, length);
                next = band.end;
                length = band.end - band.first;
            }
            ASSERT_EQ(next, lines);
            ASSERT_LE(bandOf(lines, 0, n).end - length, 1) << "the bands are as even as possible";
        }
    }
}

TEST(Bands, OfMoreIterationsThanLinesAreEmptyAtTheEnd) {
    EXPECT_EQ(bandOf(3, 2, 8).first, 2);
    EXPECT_EQ(bandOf(3, 2, 8).end, 3);
    EXPECT_EQ(bandOf(3, 3, 8).first, bandOf(3, 3, 8).end);
    EXPECT_EQ(bandOf(0, 0, 8).first, bandOf(0, 0, 8).end);
}

TEST(Bands, DoNotOverflowForTheLargestPictures) {
    EXPECT_EQ(bandOf(32767, 63, 64).end, 32767);
    EXPECT_EQ(bandOf(32767, 4095, 4096).end, 32767);
    EXPECT_EQ(bandOf(32767, 1999999999, 2000000000).end, 32767);
}

struct Visits {
    std::mutex mutex;
    std::vector<A_long> iterations;
    A_long count = 0;
};

PF_Err visit(void* refcon, A_long /*thread*/, A_long i, A_long n) {
    auto& visits = *static_cast<Visits*>(refcon);
    const std::lock_guard lock(visits.mutex);
    visits.iterations.push_back(i);
    visits.count = n;
    return PF_Err_NONE;
}

PF_Err fail(void* /*refcon*/, A_long /*thread*/, A_long /*i*/, A_long /*n*/) {
    return 77;
}

TEST(Iterate, AsksForOneIterationAProcessorByDefault) {
    host::judge::JudgeOptions options = strictOptions();
    options.iterations = 5;
    StrictHost host(options);
    Visits visits;
    EXPECT_EQ(iterate(host.in(), visits, visit), PF_Err_NONE);
    std::sort(visits.iterations.begin(), visits.iterations.end());
    EXPECT_EQ(visits.iterations, (std::vector<A_long>{0, 1, 2, 3, 4}));
    EXPECT_EQ(visits.count, 5);
}

TEST(Iterate, TakesAGivenNumberAndReturnsThePassesCode) {
    StrictHost host;
    Visits visits;
    EXPECT_EQ(iterate(host.in(), 3, visits, visit), PF_Err_NONE);
    EXPECT_EQ(visits.count, 3);
    EXPECT_EQ(iterate(host.in(), 3, visits, fail), 77);
}

} // namespace
} // namespace kovalune::test
