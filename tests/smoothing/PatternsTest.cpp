// The fixed patterns, each on a flag map made by hand: what it asks, what it writes, and that nothing less
// brings it up.

#include "effect/smoothing/Patterns.h"
#include "tests/reference/PlainSmooth.h"
#include "tests/smoothing/HandMade.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace kovalune::test {
namespace {

constexpr int32_t kX = 6;
constexpr int32_t kY = 5;

enum class Share { kHalf, kThreeQuarters, kSixth, kSmall };

/// At strength 70.
double weightOf(PF_PixelFormat format, Share share) {
    const bool isFloat = format == PF_PixelFormat_ARGB128;
    switch (share) {
    case Share::kHalf:
        return isFloat ? 0.5 : 32767;
    case Share::kThreeQuarters:
        return isFloat ? 0.75 : 49151;
    case Share::kSixth:
        return isFloat ? double(0.16666667F) : 10922;
    default:
        return isFloat ? double(0.1F) : 6553;
    }
}

/// (dx, dy) from the visited pixel must have and must lack these flags.
struct Asked {
    int32_t dx, dy;
    int has;
    int lacks;
};

enum class Step { kMendRight, kMendDown, kMendDownRight, kRestore };

struct Restoring {
    const char* name;
    Step step;
    int own; ///< the flags that bring the visit here
    std::vector<Asked> asked;
    int32_t dx, dy; ///< the target, which takes its own source pixel
    Share share = Share::kHalf;
};

const Restoring kRestoring[] = {
    {"RightMend1",
     Step::kMendRight,
     1,
     {{0, -1, 2, 0},
      {0, 0, 0, 4},
      {-1, -1, 2, 0},
      {-1, 0, 2, 1},
      {-2, 0, 1, 0},
      {-2, -1, 3, 4},
      {-2, -2, 2, 0}},
     -1,
     0},
    {"RightMend2",
     Step::kMendRight,
     1,
     {{-1, 0, 1, 0}, {0, -1, 3, 8}, {1, -1, 3, 0}, {0, -2, 1, 0}, {1, -2, 0, 2}, {1, -3, 1, 8}},
     1,
     -1},
    {"RightMend3",
     Step::kMendRight,
     1,
     {{-1, 0, 1, 0},
      {0, -1, 2, 0},
      {-1, -1, 3, 4},
      {-2, -1, 1, 0},
      {-1, -2, 1, 2},
      {-1, -3, 2, 0},
      {-2, -3, 0, 4}},
     -1,
     -1},
    {"DownMend1",
     Step::kMendDown,
     2,
     {{0, -1, 3, 8}, {1, -1, 2, 0}, {1, -2, 2, 0}, {-1, -1, 2, 0}, {-2, 0, 1, 8}, {-1, 0, 0, 1}},
     0,
     0},
    {"DownMend2",
     Step::kMendDown,
     2,
     {{-1, 0, 1, 0},
      {0, -1, 2, 0},
      {-1, -1, 3, 4},
      {-1, -2, 2, 0},
      {-2, -1, 2, 1},
      {-3, -1, 1, 0},
      {-3, -2, 0, 4}},
     -1,
     -1},
    {"DownMend3",
     Step::kMendDown,
     2,
     {{-1, 0, 1, 0},
      {0, -1, 1, 2},
      {-1, -1, 1, 0},
      {0, -2, 2, 0},
      {-1, -2, 3, 4},
      {-2, -2, 1, 0},
      {0, 0, 0, 4}},
     0,
     -1},
    {"DownRightMend1",
     Step::kMendDownRight,
     3,
     {{0, -1, 3, 8}, {1, -1, 2, 1}, {1, -2, 2, 0}, {2, -1, 3, 0}, {2, -2, 0, 8}},
     1,
     -1},
    {"DownRightMend2",
     Step::kMendDownRight,
     3,
     {{0, -1, 1, 2}, {0, -2, 3, 8}, {-1, -1, 1, 0}, {1, -2, 3, 0}, {-1, 0, 0, 8}},
     0,
     -1},
    {"Restore1",
     Step::kRestore,
     1,
     {{0, -2, 0, 4}, {1, -2, 2, 0}, {2, -2, 2, 0}, {0, -1, 1, 0}, {1, -1, 0, 3}},
     1,
     -1,
     Share::kThreeQuarters},
    {"Restore2",
     Step::kRestore,
     1,
     {{-1, -1, 2, 0}, {0, -1, 2, 8}, {-1, 0, 0, 1}, {0, 0, 0, 2}, {0, 1, 1, 0}},
     0,
     0,
     Share::kThreeQuarters},
    {"Restore3",
     Step::kRestore,
     1,
     {{0, -1, 1, 2}, {-1, 0, 2, 1}, {0, 0, 2, 4}},
     0,
     0,
     Share::kThreeQuarters},
    {"Restore4",
     Step::kRestore,
     2,
     {{-1, -1, 1, 0}, {0, -1, 0, 2}, {-1, 0, 1, 8}, {1, 0, 2, 0}},
     0,
     0,
     Share::kThreeQuarters},
};

template <class Format>
void perform(Step step, const HandScene<Format>& scene, int32_t x, int32_t y) {
    const FlagWindow around(scene.context().map, x, y);
    switch (step) {
    case Step::kMendRight:
        mendRightStep(scene.context(), around, x, y);
        break;
    case Step::kMendDown:
        mendDownStep(scene.context(), around, x, y);
        break;
    case Step::kMendDownRight:
        mendDownRightStep(scene.context(), around, x, y);
        break;
    case Step::kRestore:
        restoreSharpPixel(scene.context(), around, x, y);
        break;
    }
}

/// Just what is asked around (x, y), and the visited pixel's own flags.
std::vector<MarkedCell> cellsFor(const Restoring& pattern, int32_t x = kX, int32_t y = kY) {
    std::vector<MarkedCell> cells = {{x, y, pattern.own}};
    for (const Asked& asked : pattern.asked) {
        cells.push_back({x + asked.dx, y + asked.dy, asked.has});
    }
    return cells;
}

template <class Format>
class FixedPatterns : public testing::Test {
protected:
    static constexpr PF_PixelFormat kFormat = formatOf<Format>();

    /// What the destination holds when one pixel took another's colour.
    static void take(PlainPicture& picture, int32_t x, int32_t y, const PlainPixel& colour, Share share) {
        plainBlend(kFormat, picture.at(x, y), colour, weightOf(kFormat, share));
    }

    static void expectUntouched(Step step, const std::vector<MarkedCell>& cells, const std::string& what) {
        const HandScene<Format> scene(cells, 70);
        const PlainPicture before = scene.result();
        perform(step, scene, kX, kY);
        EXPECT_EQ(difference(before, scene.result()), "") << what;
    }
};

using AllFormats = testing::Types<Argb8, Argb16, Argb32>;
TYPED_TEST_SUITE(FixedPatterns, AllFormats);

TYPED_TEST(FixedPatterns, GiveTheirTargetItsOwnSourceBack) {
    for (const Restoring& p : kRestoring) {
        const HandScene<TypeParam> scene(cellsFor(p), 70);
        PlainPicture expected = scene.result();
        this->take(expected, kX + p.dx, kY + p.dy, scene.src(kX + p.dx, kY + p.dy), p.share);
        perform(p.step, scene, kX, kY);
        EXPECT_EQ(difference(expected, scene.result()), "") << p.name;
    }
}

TYPED_TEST(FixedPatterns, NeedEveryFlagThatTheyAskFor) {
    for (const Restoring& p : kRestoring) {
        for (std::size_t i = 0; i < p.asked.size(); ++i) {
            const Asked& asked = p.asked[i];
            for (const int flag : {1, 2, 4, 8}) {
                std::vector<MarkedCell> cells = cellsFor(p);
                const bool isOwn = asked.dx == 0 && asked.dy == 0;
                if ((asked.has & flag) != 0 && !isOwn) {
                    cells[i + 1].flags -= flag;
                } else if ((asked.lacks & flag) != 0) {
                    cells[i + 1].flags += flag;
                } else {
                    continue;
                }
                this->expectUntouched(p.step, cells,
                                      std::string(p.name) + " with flag " + std::to_string(flag) + " of " +
                                          std::to_string(asked.dx) + ", " + std::to_string(asked.dy) +
                                          " the other way");
            }
        }
    }
}

TYPED_TEST(FixedPatterns, ActOneAtATime) {
    // First and second both hold; the first alone acts.
    const std::pair<int, int> pairs[] = {{1, 2}, {8, 9}, {8, 10}};
    for (const auto& [first, second] : pairs) {
        const Restoring& p = kRestoring[first];
        std::vector<MarkedCell> cells = cellsFor(p);
        const std::vector<MarkedCell> more = cellsFor(kRestoring[second]);
        cells.insert(cells.end(), more.begin(), more.end());
        const HandScene<TypeParam> scene(cells, 70);
        PlainPicture expected = scene.result();
        this->take(expected, kX + p.dx, kY + p.dy, scene.src(kX + p.dx, kY + p.dy), p.share);
        perform(p.step, scene, kX, kY);
        EXPECT_EQ(difference(expected, scene.result()), "") << p.name;
    }
}

TEST(RestoreOne, StaysClearOfTheRightAndTopBorder) {
    const Restoring& p = kRestoring[8];
    const auto acts = [](const Restoring& pattern, int32_t x, int32_t y) {
        const HandScene<Argb8> scene(cellsFor(pattern, x, y), 70);
        const PlainPicture before = scene.result();
        perform(pattern.step, scene, x, y);
        return !difference(before, scene.result()).empty();
    };
    EXPECT_TRUE(acts(p, 10, 3)) << "of 14 columns";
    EXPECT_FALSE(acts(p, 11, 3));
    EXPECT_FALSE(acts(p, 10, 2));
    EXPECT_TRUE(acts(p, 0, 3)) << "its target is in column 1";
}

struct Shoulder {
    const char* name;
    bool ofVerticalStep;
    std::vector<Asked> asked;
    MarkedCell unless; ///< the flag, by its offset, that closes the corner
    int32_t dx, dy;    ///< the target
    int32_t sx, sy;    ///< the colour's place
};

const std::vector<Asked> kAbove = {{0, -1, 2, 1}, {1, -1, 2, 0}};
const std::vector<Asked> kBelow = {{0, 0, 2, 0}, {1, 0, 2, 0}, {0, 1, 0, 1}};
const std::vector<Asked> kAtLeft = {{-1, 0, 1, 2}, {-1, 1, 1, 0}};
const std::vector<Asked> kAtRight = {{0, 0, 1, 0}, {0, 1, 1, 0}, {1, 0, 0, 2}};

const Shoulder kShoulders[] = {
    {"AboveLeft", true, kAbove, {-1, -1, 4}, 0, -1, 0, 0},
    {"AboveRight", true, kAbove, {1, -1, 8}, 1, -1, 1, 0},
    {"BelowLeft", true, kBelow, {-1, 0, 8}, 0, 1, 0, 0},
    {"BelowRight", true, kBelow, {1, 0, 4}, 1, 1, 1, 0},
    {"LeftUpper", false, kAtLeft, {-1, -1, 4}, -1, 0, 0, 0},
    {"LeftLower", false, kAtLeft, {-1, 1, 8}, -1, 1, 0, 1},
    {"RightUpper", false, kAtRight, {0, -1, 8}, 1, 0, 0, 0},
    {"RightLower", false, kAtRight, {0, 1, 4}, 1, 1, 0, 1},
};

/// The other write of the same pair closed, so that one write stands alone.
const Shoulder& partnerOf(const Shoulder& shoulder) {
    const auto index = &shoulder - kShoulders;
    return kShoulders[index ^ 1];
}

std::vector<MarkedCell> cellsFor(const Shoulder& shoulder) {
    std::vector<MarkedCell> cells;
    for (const Asked& asked : shoulder.asked) {
        cells.push_back({kX + asked.dx, kY + asked.dy, asked.has});
    }
    return cells;
}

MarkedCell placed(const MarkedCell& offset) {
    return {kX + offset.x, kY + offset.y, offset.flags};
}

template <class Format>
PlainPicture blendedShoulders(const HandScene<Format>& scene, const Shoulder& s) {
    const FlagWindow around(scene.context().map, kX, kY);
    if (s.ofVerticalStep) {
        blendVerticalShoulders(scene.context(), around, kX, kY);
    } else {
        blendHorizontalShoulders(scene.context(), around, kX, kY);
    }
    return scene.result();
}

TYPED_TEST(FixedPatterns, OfShouldersTakeColourAcrossTheCorner) {
    for (const Shoulder& s : kShoulders) {
        std::vector<MarkedCell> cells = cellsFor(s);
        cells.push_back(placed(partnerOf(s).unless));
        const HandScene<TypeParam> scene(cells, 70);
        PlainPicture expected = scene.result();
        this->take(expected, kX + s.dx, kY + s.dy, scene.src(kX + s.sx, kY + s.sy), Share::kSixth);
        EXPECT_EQ(difference(expected, blendedShoulders(scene, s)), "") << s.name;
    }
}

TYPED_TEST(FixedPatterns, OfShouldersWriteBothWhereBothCornersAreOpen) {
    for (const Shoulder& s : kShoulders) {
        const Shoulder& other = partnerOf(s);
        const HandScene<TypeParam> scene(cellsFor(s), 70);
        PlainPicture expected = scene.result();
        this->take(expected, kX + s.dx, kY + s.dy, scene.src(kX + s.sx, kY + s.sy), Share::kSixth);
        this->take(expected, kX + other.dx, kY + other.dy, scene.src(kX + other.sx, kY + other.sy),
                   Share::kSixth);
        EXPECT_EQ(difference(expected, blendedShoulders(scene, s)), "") << s.name;
    }
}

TYPED_TEST(FixedPatterns, OfShouldersNeedEveryFlag) {
    for (const Shoulder& s : kShoulders) {
        for (std::size_t i = 0; i < s.asked.size(); ++i) {
            for (const int flag : {1, 2}) {
                std::vector<MarkedCell> cells = cellsFor(s);
                if (((s.asked[i].has | s.asked[i].lacks) & flag) == 0) {
                    continue;
                }
                cells[i].flags ^= flag;
                const HandScene<TypeParam> scene(cells, 70);
                const PlainPicture before = scene.result();
                EXPECT_EQ(difference(before, blendedShoulders(scene, s)), "") << s.name << " " << i;
            }
        }
    }
}

TYPED_TEST(FixedPatterns, OfTheFringeExchangeColourOnTheSidesWithoutARamp) {
    for (const bool leftDone : {false, true}) {
        for (const bool rightDone : {false, true}) {
            const HandScene<TypeParam> scene({}, 70);
            PlainPicture expected = scene.result();
            if (!rightDone) {
                this->take(expected, kX + 1, kY, scene.src(kX, kY), Share::kSmall);
            }
            if (!leftDone) {
                this->take(expected, kX, kY, scene.src(kX + 1, kY), Share::kSmall);
            }
            blendFringe(scene.context(), kX, kY, leftDone, rightDone);
            EXPECT_EQ(difference(expected, scene.result()), "");
        }
    }
}

} // namespace
} // namespace kovalune::test
