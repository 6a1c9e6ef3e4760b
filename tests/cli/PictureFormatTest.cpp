// The command on files of every format: what the effect leaves comes out as it went in, names of any kind, and
// what must not leave anything behind.

#include "pictures/PictureFile.h"
#include "tests/cli/CommandProcess.h"
#include "tests/pictures/Pictures.h"
#include "tests/pictures/TgaMaker.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <random>
#include <stdexcept>

namespace kovalune::test {

using namespace pictures;

namespace {

struct Kind {
    const char* end;
    FileFormat format;
    SampleType type;
};

void PrintTo(const Kind& kind, std::ostream* stream) {
    *stream << kind.end << " of " << bytesPerSample(kind.type) << " bytes a sample";
}

/// Random values: whole numbers of all sizes, floats from -1 to 3; alpha is 0 or white in some pixels.
Picture pictureOf(const Kind& kind, Channels channels, uint32_t width = 37, uint32_t height = 23) {
    Picture picture = randomPicture(kind.type, channels, width, height, 1);
    if (isFloat(kind.type)) {
        std::mt19937 random(2);
        std::vector<double> values = valuesOf(picture);
        for (std::size_t i = 0; i < values.size(); ++i) {
            values[i] =
                i % 5 == 4 ? static_cast<double>(i % 2) : static_cast<double>(random() % 4096) / 1024.0 - 1.0;
        }
        picture = pictureWith(kind.type, channels, width, values);
    }
    picture.alphaKind = usualAlphaKind(kind.format);
    picture.format = kind.format;
    return picture;
}

void writePicture(const std::filesystem::path& file, FileFormat format, const Picture& picture) {
    writeBytes(file, encodePicture(format, picture));
}

/// The effect turned off, which then leaves every pixel.
CommandOutcome runLeaving(const TestFolder& folder, const std::string& input, const std::string& output,
                          CommandSetting setting = {}) {
    setting.folder = folder.path();
    return runCommand({"render", input, "-o", output, "--set", "Enable 1=off", "--threads", "2"}, setting);
}

class EachKind : public testing::TestWithParam<Kind> {
protected:
    std::string named(const std::string& name) const { return name + GetParam().end; }

    TestFolder folder_;
};

TEST_P(EachKind, ComesOutAsItWentIn) {
    for (const Channels channels :
         {Channels::kGrey, Channels::kGreyAlpha, Channels::kRgb, Channels::kRgbAlpha}) {
        const Picture picture = pictureOf(GetParam(), channels);
        writePicture(folder_ / named("in"), GetParam().format, picture);
        const CommandOutcome outcome = runLeaving(folder_, named("in"), named("out"));
        ASSERT_TRUE(outcome.ok()) << outcome.err;
        const Picture out = readPicture(folder_ / named("out"));
        EXPECT_EQ(out.samples, picture.samples);
        EXPECT_EQ(out.channels, channels);
        EXPECT_EQ(out.sampleType, GetParam().type);
        EXPECT_EQ(out.format, GetParam().format);
    }
}

TEST_P(EachKind, MayHaveAnyNameAndTakeThePlaceOfItsInput) {
    const Picture picture = pictureOf(GetParam(), Channels::kRgbAlpha);
    const std::string name = named("線画 その 1");
    writePicture(folder_ / name, GetParam().format, picture);
    const CommandOutcome outcome = runLeaving(folder_, name, name);
    ASSERT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_EQ(readPicture(folder_ / name).samples, picture.samples);
    EXPECT_EQ(folder_.names(), std::vector{name});
}

TEST_P(EachKind, LeavesNothingBehindOnAFullDisk) {
    writePicture(folder_ / named("in"), GetParam().format,
                 pictureOf(GetParam(), Channels::kRgbAlpha, 64, 64));
    const std::vector<uint8_t> before = bytesOf(folder_ / named("in"));
    CommandSetting setting;
    setting.mostFileBytes = 4000;
    for (const std::string& output : {named("new"), named("in")}) {
        const CommandOutcome outcome = runLeaving(folder_, named("in"), output, setting);
        EXPECT_EQ(outcome.exitCode, 3) << outcome.err;
        EXPECT_TRUE(outcome.hasOneErrorLine()) << outcome.err;
        EXPECT_NE(outcome.err.find("'" + output + "'"), std::string::npos) << outcome.err;
        EXPECT_EQ(folder_.names(), std::vector{named("in")});
        EXPECT_EQ(bytesOf(folder_ / named("in")), before);
    }
}

TEST_P(EachKind, BecomesEveryOtherFormat) {
    writePicture(folder_ / named("in"), GetParam().format, pictureOf(GetParam(), Channels::kRgb));
    for (const char* output : {"out.png", "out.tif", "out.exr", "out.tga"}) {
        const CommandOutcome outcome = runLeaving(folder_, named("in"), output);
        ASSERT_TRUE(outcome.ok()) << outcome.err;
        const Picture out = readPicture(folder_ / output);
        EXPECT_EQ(out.format, formatOfName(output));
        EXPECT_EQ(out.sampleType, sampleTypeIn(out.format, GetParam().type));
        EXPECT_EQ(out.channels, Channels::kRgb);
        EXPECT_EQ(out.width, 37U);
        EXPECT_EQ(out.height, 23U);
    }
}

INSTANTIATE_TEST_SUITE_P(PictureFormat, EachKind,
                         testing::Values(Kind{".png", FileFormat::kPng, SampleType::kUint8},
                                         Kind{".png", FileFormat::kPng, SampleType::kUint16},
                                         Kind{".tif", FileFormat::kTiff, SampleType::kUint8},
                                         Kind{".tiff", FileFormat::kTiff, SampleType::kUint16},
                                         Kind{".tif", FileFormat::kTiff, SampleType::kHalf},
                                         Kind{".tif", FileFormat::kTiff, SampleType::kFloat},
                                         Kind{".exr", FileFormat::kExr, SampleType::kHalf},
                                         Kind{".exr", FileFormat::kExr, SampleType::kFloat},
                                         Kind{".tga", FileFormat::kTga, SampleType::kUint8}));

/// A header alone.
std::vector<uint8_t> tgaHeaderBytes(int type, int width, int height) {
    TgaParts parts;
    parts.type = type;
    parts.width = width;
    parts.height = height;
    return tgaFile(parts);
}

class WrongTga : public testing::Test {
protected:
    void expectFailure(const std::vector<uint8_t>& bytes, const std::string& reason) {
        writeBytes(folder_ / "in.tga", bytes);
        const CommandOutcome outcome = runLeaving(folder_, "in.tga", "out.tga", setting_);
        EXPECT_EQ(outcome.exitCode, 3) << outcome.err;
        EXPECT_TRUE(outcome.hasOneErrorLine()) << outcome.err;
        EXPECT_NE(outcome.err.find("'in.tga'"), std::string::npos) << outcome.err;
        EXPECT_NE(outcome.err.find(reason), std::string::npos) << outcome.err;
        EXPECT_EQ(folder_.names(), std::vector<std::string>{"in.tga"});
    }

    TestFolder folder_;
    CommandSetting setting_;
};

TEST_F(WrongTga, EndsTheCommandAtEveryByteOfItsHeader) {
    const std::vector<uint8_t> bytes =
        encodePicture(FileFormat::kTga, randomPicture(SampleType::kUint8, Channels::kRgb, 3, 2, 1));
    expectFailure({}, "empty");
    for (std::size_t count = 1; count < 24; ++count) {
        expectFailure({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)},
                      count < 18 ? "not a TGA file" : "cut short");
    }
}

TEST_F(WrongTga, NamesASizeThatCannotBe) {
    expectFailure(tgaHeaderBytes(2, 0, 5), "0 x 5 pixels");
    expectFailure(tgaHeaderBytes(2, 5, 0), "5 x 0 pixels");
    expectFailure(tgaHeaderBytes(2, 65535, 1), "65535 x 1 pixels, and the largest picture is 30000 x 30000");
}

#ifndef KOVALUNE_SANITIZED // the sanitizers need their address space for themselves
TEST_F(WrongTga, TakesNoMemoryForASizeThatItsFileCannotHold) {
    setting_.mostMemoryBytes = std::size_t{256} << 20;
    for (const int type : {2, 10}) {
        expectFailure(tgaHeaderBytes(type, 25000, 25000), "cut short: 25000 x 25000 pixels");
    }
}
#endif

} // namespace
} // namespace kovalune::test
