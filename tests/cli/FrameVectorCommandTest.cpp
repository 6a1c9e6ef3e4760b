// Frames with known results through the command: the settings as --set, the pictures as PNG files.

#include "tests/cli/CommandProcess.h"
#include "tests/cli/PngMaker.h"
#include "tests/cli/TestFolder.h"
#include "tests/frames/VectorFile.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kovalune::tests {
namespace {

// White of 32768 as a white of 65535; what the host's value reads back as is the same value again.
void appendSample(std::vector<std::uint8_t>& bytes, A_u_short value) {
    const std::uint64_t wide = (std::uint64_t{value} * 65535 + 16384) / 32768;
    bytes.push_back(static_cast<std::uint8_t>(wide >> 8));
    bytes.push_back(static_cast<std::uint8_t>(wide & 0xff));
}

void appendSample(std::vector<std::uint8_t>& bytes, A_u_char value) {
    bytes.push_back(value);
}

template <typename Pixel>
PngPicture filePicture(const host::Image& image) {
    const int depth = sizeof(Pixel) == 8 ? 16 : 8;
    PngPicture picture = blankPng(PngColor::RgbAlpha, depth, static_cast<std::uint32_t>(image.width()),
                                  static_cast<std::uint32_t>(image.height()));
    picture.rows.clear();
    for (A_long y = 0; y < image.height(); ++y) {
        for (A_long x = 0; x < image.width(); ++x) {
            const Pixel& pixel = image.at<Pixel>(x, y);
            for (const auto sample : {pixel.red, pixel.green, pixel.blue, pixel.alpha})
                appendSample(picture.rows, sample);
        }
    }
    return picture;
}

PngPicture filePicture(const host::Image& image) {
    return image.format() == PF_PixelFormat_ARGB64 ? filePicture<PF_Pixel16>(image)
                                                   : filePicture<PF_Pixel>(image);
}

std::vector<std::string> settingWords(const FrameVector& vector) {
    std::vector<std::string> words;
    for (const auto& [label, value] : vector.settings) {
        if (label == "iterations" || label.starts_with("downsample_"))
            continue;
        words.emplace_back("--set");
        words.push_back(std::string(label).append("=").append(value));
    }
    return words;
}

// A PNG holds no float samples, the command knows no reduced size, and the Process views do not exist yet.
bool suitsTheCommand(const FrameVector& vector) {
    const auto setting = [&vector](const char* key) {
        const auto found = vector.settings.find(key);
        return found == vector.settings.end() ? std::string() : found->second;
    };
    return vector.input.format() != PF_PixelFormat_ARGB128 && setting("downsample_x") == "1/1" &&
           setting("downsample_y") == "1/1" && setting("View") <= "4";
}

TEST(FrameVectorCommand, GivesTheKnownPictures) {
    int rendered = 0;
    bool changed = false;
    for (const std::string& name : vectorNames(KOVALUNE_VECTORS)) {
        const FrameVector vector = readFrameVector(std::filesystem::path(KOVALUNE_VECTORS) / name);
        if (!name.starts_with("base-plain") || !suitsTheCommand(vector))
            continue;
        const TestFolder folder;
        writePng(folder / "in.png", filePicture(vector.input));
        std::vector<std::string> words = {"render", folder / "in.png", "-o", folder / "out.png"};
        const std::vector<std::string> settings = settingWords(vector);
        words.insert(words.end(), settings.begin(), settings.end());
        const CommandOutcome outcome = runCommand(words);
        ASSERT_TRUE(outcome.ok()) << name << ": " << outcome.err;
        const PngPicture result = readPngFile(folder / "out.png");
        EXPECT_EQ(result.depth, vector.input.format() == PF_PixelFormat_ARGB64 ? 16 : 8);
        EXPECT_TRUE(result.rows == filePicture(vector.expected).rows) << name;
        changed = changed || !(vector.expected == vector.input);
        ++rendered;
    }
    EXPECT_GE(rendered, 4);
    EXPECT_TRUE(changed);
}

} // namespace
} // namespace kovalune::tests
