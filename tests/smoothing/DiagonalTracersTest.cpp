// The ramps along exact staircases, each tracer on a flag map made by hand.

#include "effect/smoothing/DiagonalTracers.h"
#include "tests/reference/PlainSmooth.h"
#include "tests/smoothing/HandMade.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kovalune::test {
namespace {

constexpr int32_t kX = 7;
constexpr int32_t kY = 6;
constexpr int kStrength = 100;

struct Place {
    int32_t x, y;
};

/// All places count from the visited pixel.
struct Tracer {
    const char* name;
    bool vertical;
    Place start;
    Place move;
    int stop;
    Place source;
    Place inner;
    bool writesSource;
};

const Tracer kTracers[] = {
    {"Vertical1", true, {1, -1}, {1, -1}, 8, {1, -1}, {1, 0}, true},
    {"Vertical2", true, {0, 1}, {-1, 1}, 8, {0, 2}, {0, 1}, false},
    {"Vertical3", true, {0, -1}, {-1, -1}, 4, {0, -1}, {0, 0}, true},
    {"Vertical4", true, {1, 1}, {1, 1}, 4, {1, 2}, {1, 1}, false},
    {"Horizontal1", false, {0, 0}, {1, -1}, 8, {1, 0}, {0, 0}, true},
    {"Horizontal2", false, {-2, 1}, {-1, 1}, 8, {-2, 1}, {-1, 1}, false},
    {"Horizontal3", false, {-2, 0}, {-1, -1}, 4, {-2, 0}, {-1, 0}, true},
    {"Horizontal4", false, {0, 1}, {1, 1}, 4, {1, 1}, {0, 1}, false},
};

/// The straight edge that the tracers ask for.
std::vector<MarkedCell> straightEdge(bool vertical) {
    return vertical ? std::vector<MarkedCell>{{kX, kY + 1, 1}} : std::vector<MarkedCell>{{kX - 1, kY, 2}};
}

/// The edge and a staircase of this many cells.
std::vector<MarkedCell> cellsFor(const Tracer& t, int cells) {
    std::vector<MarkedCell> marked = straightEdge(t.vertical);
    for (int i = 0; i < cells; ++i) {
        marked.push_back({kX + t.start.x + i * t.move.x, kY + t.start.y + i * t.move.y, t.vertical ? 2 : 1});
    }
    return marked;
}

template <class Format>
bool trace(const HandScene<Format>& scene, bool vertical) {
    const FlagWindow around(scene.context().map, kX, kY);
    return vertical ? traceVerticalDiagonals(scene.context(), around, kX, kY)
                    : traceHorizontalDiagonals(scene.context(), around, kX, kY);
}

struct Weights {
    double inner, outer;
};

/// Of a staircase of two cells: a step of 3276700 / 200, or a quarter.
constexpr Weights kOfTwoInteger[] = {{13653, 24576}, {910, 8193}};
/// Of three: 3276700 / 300.
constexpr Weights kOfThreeInteger[] = {{16383, 27306}, {5461, 16384}};

/// Lays these weights along the tracer's places.
template <class Format, std::size_t count>
void walk(PlainPicture& expected, const HandScene<Format>& scene, const Tracer& t,
          const Weights (&weights)[count]) {
    for (int i = 0; i < static_cast<int>(count); ++i) {
        const Place source = {kX + t.source.x + i * t.move.x, kY + t.source.y + i * t.move.y};
        const PlainPixel colour = scene.src(source.x, source.y);
        PlainPixel& inner = expected.at(kX + t.inner.x + i * t.move.x, kY + t.inner.y + i * t.move.y);
        plainBlend(expected.format, inner, colour, weights[i].inner);
        if (t.writesSource) {
            plainBlend(expected.format, expected.at(source.x, source.y), colour, weights[i].outer);
        }
    }
}

template <class Format>
class DiagonalTracers : public testing::Test {};

using AllFormats = testing::Types<Argb8, Argb16, Argb32>;
TYPED_TEST_SUITE(DiagonalTracers, AllFormats);

TYPED_TEST(DiagonalTracers, LayARampAlongAStaircaseOfTwo) {
    for (const Tracer& t : kTracers) {
        const HandScene<TypeParam> scene(cellsFor(t, 2), kStrength);
        PlainPicture expected = scene.result();
        if (expected.format == PF_PixelFormat_ARGB128) {
            const float third = 0.33333334F;
            const float rest = third - 0.25F;
            walk(expected, scene, t, {{double(third - 0.125F), 0.375}, {double(rest * rest / 0.5F), 0.125}});
        } else {
            walk(expected, scene, t, kOfTwoInteger);
        }
        EXPECT_TRUE(trace(scene, t.vertical)) << t.name;
        EXPECT_EQ(difference(expected, scene.result()), "") << t.name;
    }
}

TEST(DiagonalTracersOfThree, GoOnWithASlowerFall) {
    for (const Tracer& t : kTracers) {
        const HandScene<Argb16> scene(cellsFor(t, 3), kStrength);
        PlainPicture expected = scene.result();
        walk(expected, scene, t, kOfThreeInteger);
        EXPECT_TRUE(trace(scene, t.vertical)) << t.name;
        EXPECT_EQ(difference(expected, scene.result()), "") << t.name;
    }
}

class DiagonalConditions : public testing::TestWithParam<Tracer> {
protected:
    static bool fires(const std::vector<MarkedCell>& cells) {
        const HandScene<Argb8> scene(cells, kStrength);
        const PlainPicture before = scene.result();
        const bool fired = trace(scene, GetParam().vertical);
        EXPECT_EQ(difference(before, scene.result()).empty(), !fired);
        return fired;
    }

    static std::vector<MarkedCell> with(std::vector<MarkedCell> cells, const MarkedCell& cell) {
        cells.push_back(cell);
        return cells;
    }
};

INSTANTIATE_TEST_SUITE_P(All, DiagonalConditions, testing::ValuesIn(kTracers),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(DiagonalConditions, AskForTwoCells) {
    EXPECT_FALSE(fires(cellsFor(GetParam(), 0)));
    EXPECT_FALSE(fires(cellsFor(GetParam(), 1)));
    EXPECT_TRUE(fires(cellsFor(GetParam(), 2)));
}

TEST_P(DiagonalConditions, EndAtTheStopFlagOfACellOrItsCompanion) {
    const Tracer& t = GetParam();
    const Place beside = t.vertical ? Place{-1, 0} : Place{0, -1};
    const int other = 12 - t.stop;
    for (int i = 0; i < 2; ++i) {
        const MarkedCell cell = {kX + t.start.x + i * t.move.x, kY + t.start.y + i * t.move.y, t.stop};
        const MarkedCell companion = {cell.x + beside.x, cell.y + beside.y, t.stop};
        EXPECT_FALSE(fires(with(cellsFor(t, 2), cell))) << i;
        EXPECT_FALSE(fires(with(cellsFor(t, 2), companion))) << i;
        EXPECT_TRUE(fires(with(cellsFor(t, 2), {cell.x, cell.y, other}))) << i;
        EXPECT_TRUE(fires(with(cellsFor(t, 2), {companion.x, companion.y, other}))) << i;
    }
}

TEST_P(DiagonalConditions, AskForAStraightEdge) {
    const Tracer& t = GetParam();
    std::vector<MarkedCell> none = cellsFor(t, 2);
    none.erase(none.begin());
    EXPECT_FALSE(fires(none));
    const std::vector<MarkedCell> forbidden =
        t.vertical ? std::vector<MarkedCell>{{kX, kY, 2}, {kX + 1, kY, 2}}
                   : std::vector<MarkedCell>{{kX - 1, kY, 1}, {kX - 1, kY + 1, 1}};
    for (const MarkedCell& cell : forbidden) {
        EXPECT_FALSE(fires(with(cellsFor(t, 2), cell)));
    }
}

TEST(DiagonalTracersTogether, AllRunInTheirOrder) {
    for (const bool vertical : {true, false}) {
        std::vector<MarkedCell> cells;
        for (const Tracer& t : kTracers) {
            if (t.vertical == vertical) {
                const std::vector<MarkedCell> more = cellsFor(t, 2);
                cells.insert(cells.end(), more.begin(), more.end());
            }
        }
        const HandScene<Argb16> scene(cells, kStrength);
        PlainPicture expected = scene.result();
        for (const Tracer& t : kTracers) {
            if (t.vertical == vertical) {
                walk(expected, scene, t, kOfTwoInteger);
            }
        }
        EXPECT_TRUE(trace(scene, vertical));
        EXPECT_EQ(difference(expected, scene.result()), "");
    }
}

/// The picture ends the staircase: a tracer neither reads nor writes beyond it, up to the full strength.
TEST(DiagonalTracersAtTheBorder, EndWithThePicture) {
    for (const Tracer& t : kTracers) {
        for (int cells = 2; cells <= 5; ++cells) {
            const HandScene<Argb8> scene(cellsFor(t, cells), kStrength);
            EXPECT_TRUE(trace(scene, t.vertical)) << t.name;
        }
    }
}

} // namespace
} // namespace kovalune::test
