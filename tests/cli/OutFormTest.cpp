// The form of the written file as options ask for it: the type of its samples.

#include "pictures/PictureFile.h"
#include "tests/cli/ErrorCase.h"
#include "tests/pictures/Pictures.h"

#include <cmath>

namespace kovalune::test {

using namespace pictures;

namespace {

class OutForm : public ErrorCase {
protected:
    void write(const std::string& name, const Picture& picture) const {
        writeBytes(folder_ / name, encodePicture(*formatOfName(name), picture));
    }

    Picture made(std::vector<std::string> words) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        const CommandOutcome outcome = runCommand(words, setting);
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return readPicture(folder_ / words.at(3));
    }
};

TEST_F(OutForm, SamplesHaveTheTypeThatWasAskedFor) {
    write("a.tif", pictureWith(SampleType::kUint8, Channels::kRgb, 2, {1, 2, 3, 255, 128, 0}));
    for (const auto& [word, type] : {std::pair{"8", SampleType::kUint8},
                                     {"16", SampleType::kUint16},
                                     {"half", SampleType::kHalf},
                                     {"float", SampleType::kFloat}}) {
        EXPECT_EQ(made({"smooth", "a.tif", "-o", "b.tif", "--out-depth", word}).sampleType, type) << word;
        EXPECT_EQ(made({"sheet", "a.tif", "-o", "b.tif", "--out-depth", word, "--quiet", "--set",
                        "1 : Enable Process=off", "--set", "Enable 1=off"})
                      .sampleType,
                  type)
            << word;
    }
}

// Through the effect's 16 bits half of all values would come out one off.
TEST_F(OutForm, SamplesThatWereLeftComeFromTheFileInOneRounding) {
    const Picture source = pictureWith(SampleType::kUint16, Channels::kGrey, 256, countedValues(65536));
    write("a.png", source);
    const std::vector<double> bytes =
        valuesOf(made({"smooth", "a.png", "-o", "b.png", "--strength", "0", "--out-depth", "8"}));
    const std::vector<double> halves =
        valuesOf(made({"smooth", "a.png", "-o", "b.exr", "--strength", "0", "--out-depth", "half"}));
    ASSERT_EQ(bytes.size(), 65536U);
    ASSERT_EQ(halves.size(), 65536U);
    for (int64_t value = 0; value < 65536; ++value) {
        const auto at = static_cast<std::size_t>(value);
        ASSERT_EQ(bytes[at], static_cast<double>((value * 255 + 32767) / 65535));
        const double exact = static_cast<double>(value) / 65535;
        ASSERT_LE(std::abs(halves[at] - exact), std::ldexp(std::max(exact, 0x1p-14), -11)) << value;
    }
}

TEST_F(OutForm, SamplesThatChangedAreRoundedOnceFromWhatWasWorkedIn) {
    std::vector<double> values;
    for (std::size_t y = 0; y < 40; ++y) {
        for (std::size_t x = 0; x < 40; ++x) {
            values.push_back(x * 7 > y * 3 ? 0.9 : 0.1);
        }
    }
    write("a.tif", pictureWith(SampleType::kFloat, Channels::kGrey, 40, values));
    const Picture before = readPicture(folder_ / "a.tif");
    const Picture floats = made({"smooth", "a.tif", "-o", "b.tif"});
    const Picture bytes = made({"smooth", "a.tif", "-o", "c.png", "--out-depth", "8"});
    int changed = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const float value = floats.sample<float>(i);
        changed += value != before.sample<float>(i) ? 1 : 0;
        ASSERT_EQ(bytes.samples[i], std::floor(static_cast<double>(value) * 255 + 0.5)) << i;
    }
    EXPECT_GT(changed, 20);
}

TEST_F(OutForm, TypesThatTheFormatLacksAreRefusedBeforeAnythingIsRead) {
    const auto refused = [this](const std::string& output, const std::string& type, const std::string& has) {
        for (const std::string command : {"render", "smooth", "sheet"}) {
            expectFailure({command, "missing.png", "-o", output, "--out-depth", type}, 2,
                          {"cannot write '" + output + "' with --out-depth " + type + ": " + has});
        }
    };
    refused("x.png", "half", "PNG files have 8 or 16\n");
    refused("x.png", "float", "PNG files have 8 or 16\n");
    refused("x.exr", "8", "OpenEXR files have half or float\n");
    refused("x.exr", "16", "OpenEXR files have half or float\n");
    refused("x.tga", "16", "TGA files have 8\n");
    expectFailure({"render", "in.png", "-o", "x.png", "--out-depth", "12"}, 2,
                  {"--out-depth takes 8, 16, half or float, not '12'"});
}

} // namespace
} // namespace kovalune::test
