// Where flat colours lie: by hand on small pictures, beside a plain twin on noise, and summed over pictures.

#include "pictures/regions/ColorRegions.h"
#include "pictures/regions/ShotColors.h"

#include "tests/pictures/Pictures.h"
#include "tests/pictures/PlainRegions.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

namespace kovalune::test {

using namespace pictures;

namespace {

/// A picture of greys, a row a text: '.' is transparent, a letter a colour of its own.
Picture drawn(const std::vector<std::string>& rows) {
    std::vector<double> values;
    for (const std::string& row : rows) {
        for (const char letter : row) {
            values.push_back(letter == '.' ? 0 : letter);
            values.push_back(letter == '.' ? 0 : 255);
        }
    }
    return pictureWith(SampleType::kUint8, Channels::kGreyAlpha, static_cast<uint32_t>(rows.front().size()),
                       values);
}

std::vector<ColorRegion> regionsIn(const std::vector<std::string>& rows) {
    const Picture picture = drawn(rows);
    return regionsOf(picture, flatColorsOf(picture));
}

/// One line a region, so that two lists are told apart in one look.
std::string textOf(const ColorRegion& region) {
    std::string text = std::to_string(region.color.bits[0]) + ' ' + std::to_string(region.color.pixels) +
                       " at " + std::to_string(region.box.left) + ',' + std::to_string(region.box.top) + ' ' +
                       std::to_string(region.box.width) + 'x' + std::to_string(region.box.height) + ' ' +
                       std::to_string(region.pieces) + " pieces, outline " + std::to_string(region.outline) +
                       ": edge " + std::to_string(region.toEdge) + ", transparent " +
                       std::to_string(region.toTransparent) + ", others " + std::to_string(region.toOthers);
    for (const ColorBorder& border : region.borders) {
        text += ", [" + std::to_string(border.neighbour) + "] " + std::to_string(border.length);
    }
    return text;
}

std::string textOf(const std::vector<ColorRegion>& regions) {
    std::string text;
    for (const ColorRegion& region : regions) {
        text += textOf(region) + '\n';
    }
    return text;
}

TEST(ColorRegions, CountSidesPiecesAndBoxes) {
    EXPECT_EQ(textOf(regionsIn({"AAAA", //
                                "ABB.", //
                                "ABA."})),
              "65 7 at 0,0 4x3 2 pieces, outline 18: edge 10, transparent 2, others 0, [1] 6\n"
              "66 3 at 1,1 2x2 1 pieces, outline 8: edge 1, transparent 1, others 0, [0] 6\n");
}

TEST(ColorRegions, CornersDoNotConnect) {
    EXPECT_EQ(regionsIn({"AB", "BA"}).at(0).pieces, 2U);
    EXPECT_EQ(regionsIn({"ABA", "AAA"}).at(0).pieces, 1U);
    // Arms that meet below, one after the other.
    EXPECT_EQ(regionsIn({"ABABA", "ABABA", "ABAAA", "AAABB"}).at(0).pieces, 1U);
}

TEST(ColorRegions, ThicknessIsTheWidthOfALine) {
    const std::vector<ColorRegion> regions = regionsIn(
        {std::string(500, 'A'), std::string(500, 'A'), std::string(500, 'B'), std::string(500, 'B')});
    EXPECT_NEAR(thicknessOf(regions.at(0)), 2.0, 0.01);
    EXPECT_EQ(borderWith(regions.at(0), 1), 500U);
    EXPECT_EQ(borderWith(regions.at(0), 0), 0U);
}

TEST(ColorRegions, OfOnePixelHaveFourSides) {
    EXPECT_EQ(textOf(regionsIn({"A"})),
              "65 1 at 0,0 1x1 1 pieces, outline 4: edge 4, transparent 0, others 0\n");
    EXPECT_TRUE(regionsIn({"."}).empty());
}

class RegionsOfNoise
    : public testing::TestWithParam<std::tuple<SampleType, Channels, std::pair<uint32_t, uint32_t>, int>> {};

TEST_P(RegionsOfNoise, AreThoseOfThePlainTwin) {
    const auto [type, channels, size, colors] = GetParam();
    std::mt19937 random(size.first * 100 + static_cast<uint32_t>(colors));
    std::vector<double> values(std::size_t{size.first} * size.second * channelCount(channels));
    for (double& value : values) {
        value = static_cast<double>(random() % static_cast<uint32_t>(colors));
    }
    const Picture picture = pictureWith(type, channels, size.first, values);
    const FlatColors counted = flatColorsOf(picture);
    for (const std::size_t most : {std::size_t{0}, std::size_t{2}, std::size_t{1000}}) {
        EXPECT_EQ(textOf(regionsOf(picture, counted, most)), textOf(plainRegions(picture, counted, most)));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Pictures, RegionsOfNoise,
    testing::Combine(testing::Values(SampleType::kUint8, SampleType::kUint16),
                     testing::Values(Channels::kGrey, Channels::kGreyAlpha, Channels::kRgb),
                     testing::Values(std::pair(1U, 1U), std::pair(1U, 40U), std::pair(40U, 1U),
                                     std::pair(33U, 29U), std::pair(70U, 50U)),
                     testing::Values(2, 3, 9)));

TEST(ShotColors, SumWhatComesOneByOne) {
    ShotColors shot;
    int64_t frame = 7;
    for (const auto& rows : {std::vector<std::string>{"AAB", "A.B"}, {"BBB", "CAA"}, {"AAA", "AAA"}}) {
        const Picture picture = drawn(rows);
        const FlatColors counted = flatColorsOf(picture);
        shot.add(counted, regionsOf(picture, counted), frame);
        frame += frame == 8 ? 5 : 1;
    }
    const FlatColors counted = shot.counted();
    EXPECT_EQ(counted.pixels, 18U);
    EXPECT_EQ(counted.transparent, 1U);
    EXPECT_EQ(counted.colors.at(0).pixels, 11U);
    const std::vector<ShotRegion> regions = shot.regions();
    std::vector<ColorRegion> sums;
    for (const ShotRegion& each : regions) {
        sums.push_back(each.region);
    }
    EXPECT_EQ(textOf(sums),
              "65 11 at 0,0 3x2 1 pieces, outline 24: edge 18, transparent 2, others 0, [1] 3, [2] 1\n"
              "66 5 at 0,0 3x2 1 pieces, outline 14: edge 9, transparent 1, others 0, [0] 3, [2] 1\n"
              "67 1 at 0,1 1x1 1 pieces, outline 4: edge 2, transparent 0, others 0, [0] 1, [1] 1\n");
    EXPECT_EQ(regions.at(0).frames, (std::vector<FrameRange>{{7, 8}, {13, 13}}));
    EXPECT_EQ(regions.at(1).frames, (std::vector<FrameRange>{{7, 8}}));
    EXPECT_EQ(regions.at(2).frames, (std::vector<FrameRange>{{8, 8}}));
}

TEST(ShotColors, OfOnePictureAreItsOwn) {
    const Picture picture = drawn({"ABCAB", "BB.CC", "CABBB"});
    const FlatColors counted = flatColorsOf(picture);
    const std::vector<ColorRegion> own = regionsOf(picture, counted);
    ShotColors shot;
    shot.add(counted, own, 1);
    std::vector<ColorRegion> sums;
    for (const ShotRegion& each : shot.regions()) {
        sums.push_back(each.region);
    }
    EXPECT_EQ(textOf(sums), textOf(own));
}

TEST(ShotColors, FollowNoMoreColoursThanTheyHaveRoomFor) {
    ShotColors shot;
    for (std::size_t picture = 0; picture < 6; ++picture) {
        FlatColors counted;
        std::vector<ColorRegion> regions(kMostRegions);
        for (std::size_t i = 0; i < kMostRegions; ++i) {
            regions[i].color = {{static_cast<uint32_t>(picture), static_cast<uint32_t>(i), 0}, 1};
            regions[i].outline = 4;
            regions[i].borders = {{(i + 1) % kMostRegions, 1}, {(i + kMostRegions - 1) % kMostRegions, 1}};
            counted.colors.push_back(regions[i].color);
        }
        counted.pixels = kMostRegions;
        shot.add(counted, regions, 1);
    }
    EXPECT_EQ(shot.regions().size(), kMostShotRegions);
    EXPECT_EQ(shot.counted().colors.size(), 6 * kMostRegions);
    EXPECT_EQ(shot.counted().untold, 0U);
}

} // namespace
} // namespace kovalune::test
