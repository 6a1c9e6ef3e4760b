// Masks and regions: what is outside stays as it is, and what cannot be is refused.

#include "pictures/PictureFile.h"
#include "tests/cli/CommandProcess.h"
#include "tests/pictures/PngMaker.h"
#include "tests/support/TestFolder.h"

#include <fstream>
#include <gtest/gtest.h>

namespace kovalune::test {

namespace {

constexpr uint32_t kWidth = 40;
constexpr uint32_t kHeight = 30;

class MaskCommand : public testing::Test {
protected:
    MaskCommand() {
        writePng(folder_ / "in.png", randomPng(PngColor::kRgbAlpha, 8, kWidth, kHeight, 3));
        writeMask("left.png", kWidth / 2);
    }

    /// White in the columns before `edge`.
    void writeMask(const std::string& name, uint32_t edge, uint32_t width = kWidth) const {
        pictures::Picture picture;
        picture.width = width;
        picture.height = kHeight;
        picture.channels = pictures::Channels::kGrey;
        picture.samples.assign(picture.byteCount(), 0);
        for (uint32_t y = 0; y < kHeight; ++y) {
            for (uint32_t x = 0; x < std::min(edge, width); ++x) {
                picture.samples[y * width + x] = 255;
            }
        }
        writeBytes(folder_ / name, pictures::encodePicture(pictures::FileFormat::kPng, picture));
    }

    CommandOutcome run(std::vector<std::string> words) const {
        words.insert(words.begin(), {"render", "in.png", "-o", "out.png", "--set", "Color 1 Range=100",
                                     "--set", "Blur Amount=9"});
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }

    pictures::Picture picture(const std::string& name) const { return pictures::readPicture(folder_ / name); }

    /// Compares the columns from `first` to `last`, without that.
    static bool sameColumns(const pictures::Picture& a, const pictures::Picture& b, uint32_t first,
                            uint32_t last) {
        for (uint32_t y = 0; y < kHeight; ++y) {
            for (uint32_t x = first * 4; x < last * 4; ++x) {
                if (a.samples[y * a.rowBytes() + x] != b.samples[y * b.rowBytes() + x]) {
                    return false;
                }
            }
        }
        return true;
    }

    void expectRefused(const std::vector<std::string>& words, int exitCode, const std::string& part) {
        const CommandOutcome outcome = run(words);
        EXPECT_EQ(outcome.exitCode, exitCode) << outcome.err;
        EXPECT_NE(outcome.err.find(part), std::string::npos) << outcome.err;
        EXPECT_FALSE(std::filesystem::exists(folder_ / "out.png"));
    }

    TestFolder folder_;
};

TEST_F(MaskCommand, LeavesTheOutsideAsItIs) {
    ASSERT_EQ(run({"--mask", "left.png"}).exitCode, 0);
    const pictures::Picture in = picture("in.png");
    const pictures::Picture masked = picture("out.png");
    EXPECT_TRUE(sameColumns(in, masked, kWidth / 2, kWidth));
    EXPECT_FALSE(sameColumns(in, masked, 0, kWidth / 2));
    ASSERT_EQ(run({"--region", "0,0,20,1000"}).exitCode, 0);
    EXPECT_TRUE(sameColumns(picture("out.png"), masked, 0, kWidth))
        << "a region and a mask of the same pixels";
    ASSERT_EQ(run({"--mask", "left.png", "--invert-mask", "--region", "0,0,30,30"}).exitCode, 0);
    const pictures::Picture both = picture("out.png");
    EXPECT_TRUE(sameColumns(in, both, 0, 20));
    EXPECT_TRUE(sameColumns(in, both, 30, kWidth));
    EXPECT_FALSE(sameColumns(in, both, 20, 30));
}

TEST_F(MaskCommand, IsTransparentOutsideInOtherViews) {
    ASSERT_EQ(run({"--mask", "left.png", "--view", "Base"}).exitCode, 0);
    const pictures::Picture out = picture("out.png");
    for (uint32_t y = 0; y < kHeight; ++y) {
        for (uint32_t x = kWidth / 2; x < kWidth; ++x) {
            EXPECT_EQ(out.samples[y * out.rowBytes() + x * 4 + 3], 0);
        }
    }
}

TEST_F(MaskCommand, CountsInTheFilesPasses) {
    std::filesystem::create_directory(folder_ / "sub");
    std::filesystem::rename(folder_ / "left.png", folder_ / "sub" / "left.png");
    std::ofstream(folder_ / "sub" / "a.params")
        << "[Pass a]\nColor 1 Range=100\nMask=left.png\n[Pass b]\nMask=left.png\nInvert "
           "Mask=on\nColor 1 Range=100\nBlur Amount=9\n";
    ASSERT_EQ(run({"--params", "sub/a.params", "--until", "a"}).exitCode, 0);
    EXPECT_TRUE(sameColumns(picture("in.png"), picture("out.png"), kWidth / 2, kWidth));
    ASSERT_EQ(run({"--params", "sub/a.params"}).exitCode, 0);
    EXPECT_FALSE(sameColumns(picture("in.png"), picture("out.png"), kWidth / 2, kWidth));
}

TEST_F(MaskCommand, TellsOfMasksThatBoundNothing) {
    writeMask("none.png", 0);
    const CommandOutcome outcome = run({"--mask", "none.png"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_NE(outcome.notes.find("the mask 'none.png' is empty everywhere"), std::string::npos)
        << outcome.notes;
    EXPECT_NE(run({"--mask", "left.png", "--mask-by", "alpha"}).notes.find("is full everywhere"),
              std::string::npos);
}

TEST_F(MaskCommand, RefusesWhatCannotBe) {
    writeMask("small.png", 3, 10);
    expectRefused({"--mask", "small.png"}, 3, "has 10x30 pixels, and 'in.png' has 40x30");
    expectRefused({"--mask", "no.png"}, 3, "no.png");
    expectRefused({"--mask", "left.####.png"}, 2, "has a place for a number");
    expectRefused({"--region", "40,0,5,5"}, 2, "has no pixel");
    expectRefused({"--region", "0,0,0,5"}, 2, "a width and a height of 1 or more");
    expectRefused({"--region", "0,0,5"}, 2, "--region takes X,Y,W,H");
    expectRefused({"--mask-by", "red"}, 2, "--mask-by takes");
    expectRefused({"--invert-mask"}, 2, "--mask");
}

} // namespace
} // namespace kovalune::test
