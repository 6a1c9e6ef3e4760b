// Which colours look like light and shadow: each rule at its limit, and the drawings of the examples.

#include "pictures/regions/ColorPairs.h"

#include "pictures/PictureFile.h"
#include "pictures/PixelValues.h"

#include <gtest/gtest.h>

#include <set>

namespace kovalune::test {

using namespace pictures;

namespace {

ColorRegion regionOf(const std::array<uint8_t, 3>& rgb, std::size_t pixels, uint64_t outline) {
    ColorRegion region;
    region.color = {{rgb[0], rgb[1], rgb[2]}, pixels};
    region.outline = outline;
    return region;
}

/// A light and a smaller colour whose outline is 200 sides.
std::vector<ColorPair> pairsOf(const std::array<uint8_t, 3>& light, const std::array<uint8_t, 3>& second,
                               uint64_t border = 100, std::size_t pixels = 1000) {
    std::vector<ColorRegion> regions = {regionOf(light, 5000, 400), regionOf(second, pixels, 200)};
    regions[0].borders = {{1, border}};
    regions[1].borders = {{0, border}};
    return pairsIn(regions, SampleType::kUint8);
}

bool arePair(const std::array<uint8_t, 3>& light, const std::array<uint8_t, 3>& second, uint64_t border = 100,
             std::size_t pixels = 1000) {
    return !pairsOf(light, second, border, pixels).empty();
}

TEST(ColorPairs, TellShadowFromHighlightAndHaveTheirFigures) {
    const std::vector<ColorPair> shadow = pairsOf({200, 100, 100}, {160, 60, 60}, 50);
    ASSERT_EQ(shadow.size(), 1U);
    EXPECT_EQ(shadow[0].neighbour, 0U);
    EXPECT_EQ(shadow[0].second, 1U);
    EXPECT_FALSE(shadow[0].isHighlight());
    EXPECT_EQ(shadow[0].border, 50U);
    EXPECT_EQ(shadow[0].borderShare, 25.0);
    EXPECT_NEAR(shadow[0].lightnessApart, -100.0 * 80 / 510, 0.01);
    EXPECT_TRUE(pairsOf({160, 60, 60}, {200, 100, 100}).at(0).isHighlight());
}

TEST(ColorPairs, TheLargerOneIsTheNeighbourWhereverItStands) {
    std::vector<ColorRegion> regions = {regionOf({160, 60, 60}, 500, 100),
                                        regionOf({200, 100, 100}, 9000, 500)};
    regions[0].borders = {{1, 50}};
    regions[1].borders = {{0, 50}};
    const std::vector<ColorPair> pairs = pairsIn(regions, SampleType::kUint8);
    ASSERT_EQ(pairs.size(), 1U);
    EXPECT_EQ(pairs[0].neighbour, 1U);
    EXPECT_EQ(pairs[0].borderShare, 50.0);
}

TEST(ColorPairs, BordersAreFivePerCentAtLeast) {
    EXPECT_TRUE(arePair({200, 100, 100}, {160, 60, 60}, 10));
    EXPECT_FALSE(arePair({200, 100, 100}, {160, 60, 60}, 9));
}

TEST(ColorPairs, LinesAreNone) {
    EXPECT_TRUE(arePair({200, 100, 100}, {160, 60, 60}, 100, 400));
    EXPECT_FALSE(arePair({200, 100, 100}, {160, 60, 60}, 100, 399));
}

TEST(ColorPairs, LightnessIsThreeToThirtyPerCentApart) {
    // Sums of the largest and the smallest channel, of 510: 15 are 2.94 per cent, 16 are 3.14.
    EXPECT_FALSE(arePair({200, 100, 100}, {193, 92, 92}));
    EXPECT_TRUE(arePair({200, 100, 100}, {192, 92, 92}));
    EXPECT_TRUE(arePair({255, 155, 155}, {178, 79, 79}));
    EXPECT_FALSE(arePair({255, 155, 155}, {178, 78, 78}));
}

TEST(ColorPairs, HuesAreNearAlsoAcrossRed) {
    EXPECT_TRUE(arePair({240, 0, 100}, {200, 0, 0}));  // 335 and 0 degrees
    EXPECT_FALSE(arePair({240, 0, 104}, {200, 0, 0})); // 334 and 0
    EXPECT_TRUE(arePair({240, 0, 40}, {200, 50, 0}));  // 350 and 15
}

TEST(ColorPairs, HuesOfGreysSayNothing) {
    EXPECT_TRUE(arePair({120, 100, 100}, {80, 80, 90}));
    EXPECT_FALSE(arePair({120, 100, 100}, {70, 70, 110})); // 22 per cent saturated
}

/// "#LIGHT #SECOND" of each pair.
std::set<std::string> pairsOfFile(const std::string& name) {
    const Picture picture = readPicture(std::string(KOVALUNE_EXAMPLES) + '/' + name);
    const std::vector<ColorRegion> regions = regionsOf(picture, flatColorsOf(picture));
    std::set<std::string> found;
    for (const ColorPair& pair : pairsIn(regions, picture.sampleType)) {
        const auto hexOf = [&](std::size_t place) {
            return hexText(nearestRgb(regions[place].color, picture.sampleType));
        };
        found.insert(hexOf(pair.neighbour) + ' ' + hexOf(pair.second));
    }
    return found;
}

TEST(ColorPairs, OfTheExamplesAreSixEach) {
    EXPECT_EQ(pairsOfFile("cel1.png"),
              (std::set<std::string>{"#3264B4 #1E4682", "#5A3C8C #8C6EC8", "#787864 #505046",
                                     "#C87828 #F0AA50", "#F0C8A0 #D29678", "#FFD9BE #E8A98C"}));
    EXPECT_EQ(pairsOfFile("cel3.png"),
              (std::set<std::string>{"#28B4E6 #A0F0FF", "#B4BEC8 #828C96", "#B4BEC8 #DCE6F0",
                                     "#E6A01E #B4780A", "#E6C83C #FFF078", "#FFD9BE #E8A98C"}));
}

} // namespace
} // namespace kovalune::test
