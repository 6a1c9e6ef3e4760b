#include "render/AreaSettings.h"

#include "text/Failure.h"

#include <gtest/gtest.h>

namespace kovalune::test {

using namespace render;

namespace {

std::string taken(const Region& region) {
    return std::to_string(region.x) + ' ' + std::to_string(region.y) + ' ' + std::to_string(region.width) +
           ' ' + std::to_string(region.height);
}

TEST(AreaSettings, TakeRegionsOfFourWholeNumbers) {
    EXPECT_EQ(taken(parseRegion("1,2,3,4", "--region")), "1 2 3 4");
    EXPECT_EQ(taken(parseRegion(" -1 , 0 ,30,4 ", "--region")), "-1 0 30 4");
    for (const char* text : {"", "1,2,3", "1,2,3,4,5", "1,2,3,4,", "1,2,3,0", "1,2,-3,4", "a,2,3,4",
                             "1.5,2,3,4", "1 2 3 4", "1,2,3,4x", "99999999999,2,3,4"}) {
        EXPECT_THROW(static_cast<void>(parseRegion(text, "--region")), text::Failure) << text;
    }
}

TEST(AreaSettings, TakeTheirOwnLinesAlone) {
    AreaSettings area;
    EXPECT_TRUE(takeAreaLine(area, "Mask", " a.png ", "shots/x"));
    EXPECT_TRUE(takeAreaLine(area, "mask by", "Grey", ""));
    EXPECT_TRUE(takeAreaLine(area, "Invert Mask", "on", ""));
    EXPECT_TRUE(takeAreaLine(area, "Region", "0,0,2,2", ""));
    EXPECT_FALSE(takeAreaLine(area, "Masks", "a.png", ""));
    EXPECT_EQ(area.mask, "shots/x/a.png");
    EXPECT_EQ(area.maskBy, MaskBy::kGrey);
    EXPECT_EQ(area.invert, true);
    EXPECT_TRUE(takeAreaLine(area, "Mask", "/b.png", "shots/x"));
    EXPECT_EQ(areaText(area), "Mask=/b.png\nMask By=grey\nInvert Mask=on\nRegion=0,0,2,2\n");
    EXPECT_THROW(takeAreaLine(area, "Mask", " ", ""), text::Failure);
    EXPECT_THROW(takeAreaLine(area, "Mask By", "red", ""), text::Failure);
    EXPECT_THROW(takeAreaLine(area, "Invert Mask", "maybe", ""), text::Failure);
}

TEST(AreaSettings, OfALaterLayerReplaceWhatTheySay) {
    AreaSettings below;
    takeAreaLine(below, "Mask", "a.png", "");
    takeAreaLine(below, "Region", "0,0,2,2", "");
    AreaSettings above;
    takeAreaLine(above, "Mask", "b.png", "");
    layOver(below, above);
    EXPECT_EQ(below.mask, "b.png");
    ASSERT_TRUE(below.region);
    EXPECT_EQ(below.region->width, 2);
}

} // namespace
} // namespace kovalune::test
