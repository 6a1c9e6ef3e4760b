#include "tests/cli/ErrorCase.h"
#include "tests/pictures/PictureMaker.h"

#include <gtest/gtest.h>

namespace kovalune::test {

using namespace pictures;

namespace {

class CompareCommand : public ErrorCase {
protected:
    CommandOutcome compare(const std::vector<std::string>& words) {
        const CommandOutcome outcome = runHere("compare", words);
        EXPECT_EQ(outcome.err, "");
        return outcome;
    }
};

TEST_F(CompareCommand, APictureIsTheSameAsItself) {
    const CommandOutcome outcome = compare({"in.png", "in.png"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "A: in.png: 12x9, RGB, 8 bits\nB: in.png: 12x9, RGB, 8 bits\nsame\n");
}

TEST_F(CompareCommand, TellsHowMuchAndWhere) {
    writeRow("a.png", PngColor::kRgbAlpha, 8, 3, {1, 2, 3, 4, 10, 20, 30, 40, 0, 0, 0, 255});
    writeRow("b.png", PngColor::kRgbAlpha, 8, 3, {1, 2, 3, 4, 10, 25, 27, 40, 0, 0, 51, 254});
    const CommandOutcome outcome = compare({"a.png", "b.png"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out,
              "A: a.png: 3x1, RGBA, 8 bits, straight alpha\n"
              "B: b.png: 3x1, RGBA, 8 bits, straight alpha\n"
              "different: 2 of 3 pixels (66.667 %)\n"
              "Largest difference, of 255 (of 1): red 0 (0), green 5 (0.0196078), blue 51 (0.2), "
              "alpha 1 (0.00392157)\n"
              "First at 1,0\n"
              "  A: red 10, green 20, blue 30, alpha 40\n"
              "  B: red 10, green 25, blue 27, alpha 40\n");
}

TEST_F(CompareCommand, DepthsAreComparedAsFractionsOfWhite) {
    writeRow("8.png", PngColor::kGrey, 8, 2, {0x12, 0xff});
    writeRow("16.png", PngColor::kGrey, 16, 2, {0x12, 0x12, 0xff, 0xff});
    writeRow("off.png", PngColor::kGrey, 16, 2, {0x12, 0x12, 0xff, 0xfe});
    EXPECT_EQ(compare({"8.png", "16.png"}).exitCode, 0);
    const CommandOutcome outcome = compare({"8.png", "off.png"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.out.find("different: 1 of 2 pixels (50.000 %)\n"
                               "Largest difference, of 1: grey 1.5259e-05\n"
                               "First at 1,0\n  A: grey 255\n  B: grey 65534\n"),
              std::string::npos)
        << outcome.out;
}

TEST_F(CompareCommand, GreyIsSpreadAndMissingAlphaIsFull) {
    writeRow("grey.png", PngColor::kGrey, 8, 2, {7, 9});
    writeRow("rgb.png", PngColor::kRgb, 8, 2, {7, 7, 7, 9, 9, 9});
    writeRow("rgba.png", PngColor::kRgbAlpha, 8, 2, {7, 7, 7, 255, 9, 9, 9, 255});
    writeRow("thin.png", PngColor::kGreyAlpha, 8, 2, {7, 255, 9, 254});
    EXPECT_EQ(compare({"grey.png", "rgb.png"}).exitCode, 0);
    EXPECT_EQ(compare({"rgba.png", "grey.png"}).exitCode, 0);
    const CommandOutcome outcome = compare({"grey.png", "thin.png"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.out.find("grey 0 (0), alpha 1 (0.00392157)\nFirst at 1,0\n  A: grey 9\n"
                               "  B: grey 9, alpha 254\n"),
              std::string::npos)
        << outcome.out;
}

TEST_F(CompareCommand, FloatsAreComparedExactly) {
    writeFloats(folder_ / "a.tif", 2, 1, Channels::kRgb, {0.2F, 0, 0, 1, 2, 3});
    writeFloats(folder_ / "b.tif", 2, 1, Channels::kRgb, {0.2F, -0.0F, 0, 1, 2, 3});
    writeRow("c.png", PngColor::kRgb, 8, 2, {51, 0, 0, 255, 255, 255});
    EXPECT_EQ(compare({"a.tif", "b.tif"}).exitCode, 0);
    const CommandOutcome outcome = compare({"a.tif", "c.png"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.out.find("different: 2 of 2 pixels"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("green 1, blue 2\nFirst at 0,0\n  A: red 0.2, green 0, blue 0\n"),
              std::string::npos)
        << outcome.out;
}

TEST_F(CompareCommand, KindsOfAlphaThatDifferAreTold) {
    Picture picture =
        pictureOfSamples<float>(1, 1, Channels::kRgbAlpha, SampleType::kFloat, {0.5F, 0, 0, 0.5F});
    writeBytes(folder_ / "a.tif", encodePicture(FileFormat::kTiff, picture));
    picture.alphaKind = AlphaKind::kPremultiplied;
    writeBytes(folder_ / "b.tif", encodePicture(FileFormat::kTiff, picture));
    const CommandOutcome outcome = compare({"a.tif", "b.tif"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "A: a.tif: 1x1, RGBA, float of 32 bits, straight alpha\n"
                           "B: b.tif: 1x1, RGBA, float of 32 bits, premultiplied alpha\n"
                           "The kinds of alpha differ; the values are compared as they stand.\nsame\n");
}

TEST_F(CompareCommand, SizesThatDifferAreToldAndNothingIsDrawn) {
    writePng(folder_ / "wide.png", randomPng(PngColor::kRgb, 8, 13, 9, 1));
    const CommandOutcome outcome = compare({"in.png", "wide.png", "--diff", "diff.png"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "A: in.png: 12x9, RGB, 8 bits\nB: wide.png: 13x9, RGB, 8 bits\n"
                           "different: the sizes\nNo picture of the differences is written.\n");
    EXPECT_FALSE(std::filesystem::exists(folder_ / "diff.png"));
}

TEST_F(CompareCommand, DrawsWhatDiffersBrightlyOnTheDimmedPicture) {
    writeRow("a.png", PngColor::kRgb, 8, 2, {200, 101, 3, 10, 20, 30});
    writeRow("b.png", PngColor::kRgb, 8, 2, {200, 101, 3, 10, 20, 31});
    EXPECT_EQ(compare({"a.png", "b.png", "--diff", "絵 diff.png"}).exitCode, 1);
    EXPECT_EQ(readPngFile(folder_ / "絵 diff.png").rows, (std::vector<uint8_t>{50, 25, 0, 255, 64, 224}));
    EXPECT_EQ(compare({"a.png", "a.png", "--diff", "same.png"}).exitCode, 0);
    EXPECT_EQ(readPngFile(folder_ / "same.png").rows, (std::vector<uint8_t>{50, 25, 0, 2, 5, 7}));
}

TEST_F(CompareCommand, DrawsInEveryFormat) {
    for (const std::string name : {"diff.tif", "diff.exr", "diff.tga"}) {
        EXPECT_EQ(compare({"in.png", "in.png", "--diff", name}).exitCode, 0);
        const Picture drawn = readPicture(folder_ / name);
        EXPECT_EQ(drawn.width, 12U) << name;
        EXPECT_EQ(drawn.channels, Channels::kRgb) << name;
        EXPECT_EQ(compare({"in.png", "in.png", "--diff", "diff.png"}).exitCode, 0);
        EXPECT_EQ(compare({"diff.png", name}).exitCode, name == "diff.exr" ? 1 : 0) << name;
    }
}

TEST_F(CompareCommand, FailuresNameTheFile) {
    expectFailure({"compare", "in.png", "missing.png"}, 3, {"missing.png"});
    expectFailure({"compare", "missing.png", "in.png"}, 3, {"missing.png"});
    expectFailure({"compare", "in.png", "old.png"}, 3, {"old.png"});
    expectFailure({"compare", "in.png"}, 2, {"B"});
    expectFailure({"compare", "in.png", "in.png", "in.png"}, 2, {"in.png"});
    expectFailure({"compare", "in.png", "in.png", "--diff", "diff.bmp"}, 3, {"diff.bmp"});
    expectFailure({"compare", "in.png", "in.png", "--diff", "./in.png"}, 2, {"'./in.png'", "'in.png'"});
    expectFailure({"compare", "in.png", "in.png", "--diff", "none/diff.png"}, 3, {"none/diff.png"});
    expectFailure({"compare", "in.png", "in.png", "--dif", "d.png"}, 2, {"'--dif'", "'--diff'"});
    CommandSetting full;
    full.standardOutput = "/dev/full";
    expectFailure({"compare", "in.png", "in.png"}, 3, {"standard output"}, full);
    CommandSetting small;
    small.mostFileBytes = 60;
    small.standardOutput = "/dev/null";
    expectFailure({"compare", "in.png", "in.png", "--diff", "diff.png"}, 3, {"diff.png"}, small);
}

} // namespace
} // namespace kovalune::test
