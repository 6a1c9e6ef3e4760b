#include "tests/cli/ErrorCase.h"
#include "tests/pictures/PictureMaker.h"

namespace kovalune::test {

using namespace pictures;

namespace {

class PickCommand : public ErrorCase {
protected:
    std::string picked(const std::vector<std::string>& words) { return printedBy("pick", words); }
};

TEST_F(PickCommand, TellsFileAndEffectValuesOf8Bits) {
    PngPicture png = blankPng(PngColor::kRgbAlpha, 8, 3, 2);
    png.rows = {0, 0, 0, 0, 0,  0,  0,  0,  0, 0, 0, 0, //
                0, 0, 0, 0, 12, 34, 56, 78, 0, 0, 0, 0};
    writePng(folder_ / "a.png", png);
    EXPECT_EQ(picked({"a.png", "1,1"}), "Pixel       1,1\n"
                                        "Picture     3x2, RGBA, 8 bits, straight alpha\n"
                                        "File        red 12, green 34, blue 56, alpha 78\n"
                                        "Effect      red 12, green 34, blue 56, alpha 78 (white is 255)\n"
                                        "Colour      #0C2238\n"
                                        "Hue         210.00 degrees\n"
                                        "Lightness   13.33 %\n"
                                        "Saturation  64.71 %\n");
}

TEST_F(PickCommand, ScalesValuesOf16Bits) {
    PngPicture png = blankPng(PngColor::kGrey, 16, 2, 1);
    png.rows = {0xff, 0xff, 0x80, 0x00};
    writePng(folder_ / "a.png", png);
    EXPECT_EQ(picked({"a.png", "1,0"}),
              "Pixel       1,0\n"
              "Picture     2x1, grey, 16 bits\n"
              "File        grey 32768\n"
              "Effect      red 16384, green 16384, blue 16384, alpha 32768 (white is 32768)\n"
              "Colour      #808080\n"
              "Hue         0.00 degrees\n"
              "Lightness   50.20 %\n"
              "Saturation  0.00 %\n");
    EXPECT_NE(picked({"a.png", "0,0"}).find("File        grey 65535\n"), std::string::npos);
}

TEST_F(PickCommand, DividesPremultipliedColours) {
    PngPicture png = blankPng(PngColor::kRgbAlpha, 8, 1, 1);
    png.rows = {50, 25, 0, 100};
    writePng(folder_ / "a.png", png);
    const std::string text = picked({"a.png", "0,0", "--alpha", "premultiplied"});
    EXPECT_NE(text.find("premultiplied alpha\nFile        red 50, green 25, blue 0, alpha 100\n"
                        "Effect      red 128, green 64, blue 0, alpha 100"),
              std::string::npos)
        << text;
}

TEST_F(PickCommand, WritesFloatsSoThatTheyReadBack) {
    writeFloats(folder_ / "a.tif", 2, 1, Channels::kRgb, {0.1F, -2.5F, 1e-40F, 1.5F, 0.25F, 3e38F});
    const std::string text = picked({"a.tif", "0,0"});
    EXPECT_NE(text.find("File        red 0.1, green -2.5, blue 1e-40\n"
                        "Effect      red 0.1, green -2.5, blue 1e-40, alpha 1 (white is 1)\n"
                        "Colour      #1A0000\n"),
              std::string::npos)
        << text;
    // What the effect matches by wraps around: 382.5 + 0.5 is 383, which is 127.
    EXPECT_NE(picked({"a.tif", "1,0"}).find("Colour      #FF40FF\nMatched as  #7F4000\n"), std::string::npos);
}

TEST_F(PickCommand, TellsSeveralPixelsInTheirOrder) {
    PngPicture png = blankPng(PngColor::kGrey, 8, 2, 1);
    png.rows = {10, 200};
    writePng(folder_ / "a.png", png);
    const std::string both = picked({"a.png", "1,0", "0,0"});
    EXPECT_EQ(both, picked({"a.png", "1,0"}) + '\n' + picked({"a.png", "0,0"}));
    EXPECT_EQ(picked({"a.png", "0,0", "--alpha", "straight", "0,0"}),
              picked({"a.png", "0,0"}) + '\n' + picked({"a.png", "0,0"}));
}

TEST_F(PickCommand, PlacesOutsideNameTheRange) {
    expectFailure({"pick", "in.png", "0,0", "12,0"}, 2, {"'in.png'", "12,0"});
    expectFailure({"pick", "in.png", "12,0"}, 2, {"'in.png'", "12,0", "X is 0 to 11", "Y is 0 to 8"});
    expectFailure({"pick", "in.png", "0,9"}, 2, {"0,9", "X is 0 to 11", "Y is 0 to 8"});
}

TEST_F(PickCommand, PlacesOfWrongFormAreRefused) {
    for (const char* place : {"3", "3,", ",4", "a,b", "-1,0", "1,-1", "1,2,3", "1.5,2", ""}) {
        expectFailure({"pick", "in.png", place}, 2, {"two whole numbers", place});
    }
    expectFailure({"pick", "in.png"}, 2, {"PIXEL"});
    expectFailure({"pick", "in.png", "1,1", "1,2,3"}, 2, {"two whole numbers", "'1,2,3'"});
    expectFailure({"pick", "in.png", "1,1", "--alpha", "strait"}, 2, {"strait"});
}

TEST_F(PickCommand, FilesThatCannotBeReadAreNamed) {
    expectFailure({"pick", "missing.png", "0,0"}, 3, {"missing.png"});
    expectFailure({"pick", "old.png", "0,0"}, 3, {"old.png"});
    CommandSetting full;
    full.standardOutput = "/dev/full";
    expectFailure({"pick", "in.png", "0,0"}, 3, {"standard output"}, full);
}

} // namespace
} // namespace kovalune::test
