// Staircases as long as no picture of a test could hold: the tracers work on a context that is nothing but one staircase.

#include "effect/smoothing/DiagonalTracers.h"
#include "effect/smoothing/SmoothOf.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

namespace kovalune::test {
namespace {

/// A staircase of `cells` from the tracer's start, for a visited pixel at (0, 0). Counts what a tracer writes and refuses
/// what lies beyond the last cell: there a picture may end.
template <class FormatType>
struct StaircaseContext {
    using Format = FormatType;
    using Smooth = SmoothOf<Format>;
    using Pixel = typename Format::Pixel;
    using Weight = typename SmoothOf<Format>::Weight;

    const DiagonalTracer& tracer;
    int32_t cells;
    int32_t strength;
    int32_t curve = 0;
    mutable int32_t innerWrites = 0;
    mutable int32_t outerWrites = 0;

    bool has(int32_t x, int32_t y, int flags) const {
        const int32_t step = stepOf(x, y, tracer.start);
        return step >= 0 && step < cells && (flags & tracer.carry) != 0;
    }
    bool lacks(int32_t x, int32_t y, int flags) const { return !has(x, y, flags); }

    Pixel src(int32_t x, int32_t y) const {
        require(stepOf(x, y, tracer.source));
        return {};
    }
    void blend(int32_t x, int32_t y, const Pixel& /*color*/, Weight weight) const {
        const int32_t inner = stepOf(x, y, tracer.inner);
        (inner >= 0 ? innerWrites : outerWrites) += 1;
        require(inner >= 0 ? inner : stepOf(x, y, tracer.source));
        if (weight < 0) {
            throw std::logic_error("a weight below 0");
        }
    }

private:
    /// How many moves from that place of the first step the pixel lies; -1 for one that is not on its line.
    int32_t stepOf(int32_t x, int32_t y, const Offset& first) const {
        const int32_t step = (x - first.x) * tracer.move.x;
        return step >= 0 && y == first.y + step * tracer.move.y ? step : -1;
    }
    void require(int32_t step) const {
        if (step < 0 || step >= cells) {
            throw std::out_of_range("a tracer left its staircase");
        }
    }
};

template <class Format>
class LongStaircases : public testing::Test {};

using AllFormats = testing::Types<Argb8, Argb16, Argb32>;
TYPED_TEST_SUITE(LongStaircases, AllFormats);

struct Length {
    int32_t strength;
    int32_t cells;
};

/// Around the places where the integer step loses most of what it stands for, and where it becomes 0.
constexpr Length kLengths[] = {{100, 2},     {100, 16383}, {100, 16384}, {100, 21843}, {100, 21844},
                               {100, 32767}, {100, 32768}, {100, 40000}, {76, 21557},  {76, 21558},
                               {76, 21843},  {76, 32767},  {70, 32767},  {70, 46810},  {70, 46811},
                               {1, 32767},   {0, 32767}};

TYPED_TEST(LongStaircases, AreNeverLeft) {
    for (const auto& tracers : {kVerticalTracers, kHorizontalTracers}) {
        for (int number = 0; number < 4; ++number) {
            for (const Length& length : kLengths) {
                SCOPED_TRACE(testing::Message() << "tracer " << number << " strength " << length.strength
                                                << " cells " << length.cells);
                const StaircaseContext<TypeParam> context{tracers[number], length.cells, length.strength};
                EXPECT_NO_THROW(EXPECT_TRUE(traceDiagonal(context, tracers[number], 0, 0)));
                EXPECT_GE(context.innerWrites, 1);
                EXPECT_EQ(context.outerWrites, tracers[number].writesSource ? context.innerWrites : 0);
            }
        }
    }
}

/// The bound is no other ramp: a staircase that ended by itself ends at the same cell.
TEST(LongStaircaseSteps, AreThoseOfTheRampWhereItEndsByItself) {
    const auto writes = [](int32_t strength, int32_t cells) {
        const StaircaseContext<Argb16> context{kVerticalTracers[1], cells, strength};
        traceDiagonal(context, kVerticalTracers[1], 0, 0);
        return context.innerWrites;
    };
    // 21844 over a step of 3276700 / (strength * cells), rounded up.
    EXPECT_EQ(writes(100, 100), 67);
    EXPECT_EQ(writes(70, 100), 47);
    EXPECT_EQ(writes(100, 16383), 10922);
    EXPECT_EQ(writes(70, 32767), 21844);
    EXPECT_EQ(writes(100, 16384), 16384);
    EXPECT_EQ(writes(100, 21844), 21844);
    EXPECT_EQ(writes(100, 32768), 32768);
}

} // namespace
} // namespace kovalune::test
