// The form of the written file as options ask for it: the type of its samples and how they are packed.

#include "pictures/PictureFile.h"
#include "tests/cli/ErrorCase.h"
#include "tests/pictures/ExrMaker.h"
#include "tests/pictures/Pictures.h"

#include <algorithm>
#include <cmath>
#include <map>

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
        return pictures::readPicture(folder_ / words.at(3));
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
    const Picture before = pictures::readPicture(folder_ / "a.tif");
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

TEST_F(OutForm, CompressionsThatLoseNothingGiveTheSamePicture) {
    for (const SampleType type : {SampleType::kHalf, SampleType::kFloat}) {
        const Picture source = randomPicture(type, Channels::kRgbAlpha, 37, 41, 3);
        write("a.tif", source);
        write("a.exr", source);
        for (const std::string end : {"tif", "exr"}) {
            for (const char* const name :
                 {"none", "lzw", "deflate", "packbits", "lzma", "zstd", "rle", "zips", "zip", "piz"}) {
                const std::vector<std::string> known = compressionsOf(*formatOfName("x." + end));
                if (std::find(known.begin(), known.end(), name) == known.end()) {
                    continue;
                }
                const std::string output = std::string("b.") + end;
                const Picture result =
                    made({"smooth", "a." + end, "-o", output, "--strength", "0", "--compression", name});
                EXPECT_TRUE(result.samples == source.samples) << name << end;
            }
        }
    }
}

TEST_F(OutForm, FilesArePackedAsAskedFor) {
    write("a.png", pictureWith(SampleType::kUint8, Channels::kRgb, 200, std::vector<double>(600 * 100, 77)));
    std::map<std::string, std::size_t> bytes;
    for (const std::string name : {"none", "packbits", "lzw", "deflate"}) {
        made({"smooth", "a.png", "-o", "b.tif", "--compression", name});
        bytes[name] = std::filesystem::file_size(folder_ / "b.tif");
    }
    EXPECT_GT(bytes["none"], 60000U);
    EXPECT_LT(bytes["packbits"], bytes["none"] / 20);
    EXPECT_LT(bytes["deflate"], bytes["packbits"]);
    EXPECT_NE(bytes["lzw"], bytes["deflate"]);
    for (const std::string& name : compressionsOf(FileFormat::kExr)) {
        made({"smooth", "a.png", "-o", "b.exr", "--compression", name});
        const Imf::Compression wanted = headerOf(bytesOf(folder_ / "b.exr")).compression();
        EXPECT_EQ(compressionsOf(FileFormat::kExr).at(static_cast<std::size_t>(wanted)), name);
    }
    made({"smooth", "a.png", "-o", "b.tga", "--compression", "RLE"});
}

TEST_F(OutForm, CompressionsThatTheFormatLacksAreRefused) {
    const auto refused = [this](const std::string& output, const std::string& name, const std::string& has) {
        for (const std::string command : {"render", "smooth", "sheet"}) {
            expectFailure({command, "missing.png", "-o", output, "--compression", name}, 2,
                          {"cannot write '" + output + "' with --compression " + name + ": " + has});
        }
    };
    refused("x.png", "zip", "PNG files have --png-level instead\n");
    refused("x.tif", "zip", "TIFF files have none, lzw, deflate, packbits, lzma or zstd\n");
    refused("x.exr", "lzw", "OpenEXR files have none, rle, zips, zip, piz, pxr24, b44, b44a, dwaa or dwab\n");
    refused("x.tga", "none", "TGA files have rle\n");
    expectFailure({"render", "in.png", "-o", "x.png", "--compression", "jpeg"}, 2,
                  {"--compression takes none, lzw,", "not 'jpeg'"});
}

} // namespace
} // namespace kovalune::test
