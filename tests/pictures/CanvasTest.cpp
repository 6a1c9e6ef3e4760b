// Rectangles, checkerboards, pictures and text on a canvas.

#include "pictures/Canvas.h"
#include "pictures/TextDrawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace kovalune::test {

using namespace pictures;

namespace {

constexpr DrawnColor kBlack = {0, 0, 0};
constexpr DrawnColor kWhite = {255, 255, 255};

/// A letter for each pixel of an 8-bit canvas: '.' is black, '#' has any red.
std::string drawing(const Canvas& canvas) {
    std::string text;
    for (std::size_t at = 0; at < canvas.picture().samples.size(); at += 3) {
        text += canvas.picture().samples[at] == 0 ? '.' : '#';
        if ((at / 3 + 1) % canvas.width() == 0) {
            text += '\n';
        }
    }
    return text;
}

TEST(Canvas, IsFilledWithItsBackgroundInEveryType) {
    const Canvas bytes(2, 1, {1, 128, 255});
    EXPECT_EQ(bytes.picture().samples, (std::vector<uint8_t>{1, 128, 255, 1, 128, 255}));
    const Canvas words(1, 1, {1, 128, 255}, SampleType::kUint16);
    EXPECT_EQ(words.picture().sample<uint16_t>(0), 257);
    EXPECT_EQ(words.picture().sample<uint16_t>(2), 65535);
    const Canvas floats(1, 1, {0, 51, 255}, SampleType::kFloat);
    EXPECT_EQ(floats.picture().sample<float>(0), 0.0F);
    EXPECT_EQ(floats.picture().sample<float>(1), 0.2F);
    EXPECT_EQ(floats.picture().sample<float>(2), 1.0F);
}

TEST(Canvas, CutsOffWhatIsOutside) {
    Canvas canvas(4, 3, kBlack);
    canvas.fill({-2, -5, 3, 7}, kWhite);
    canvas.fill({3, 2, 100, 100}, kWhite);
    canvas.fill({4, 0, 1, 3}, kWhite);
    canvas.fill({-9, -9, 3, 3}, kWhite);
    canvas.fill({2, 0, 0, 3}, kWhite);
    EXPECT_EQ(drawing(canvas), "#...\n"
                               "#...\n"
                               "...#\n");
}

TEST(Canvas, HasCheckerboards) {
    Canvas canvas(6, 4, kBlack);
    canvas.checker({1, 1, 5, 3}, 2, kWhite, kBlack);
    EXPECT_EQ(drawing(canvas), "......\n"
                               ".##..#\n"
                               ".##..#\n"
                               "...##.\n");
}

template <class Sample>
Picture onePixel(Channels channels, SampleType type, const std::vector<Sample>& samples) {
    Picture picture;
    picture.width = 1;
    picture.height = 1;
    picture.channels = channels;
    picture.sampleType = type;
    picture.samples = std::vector<uint8_t>(picture.byteCount());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        picture.setSample(i, samples[i]);
    }
    return picture;
}

TEST(Canvas, TakesPicturesOfAllChannels) {
    using Bytes = std::vector<uint8_t>;
    Canvas canvas(4, 1, {100, 0, 0});
    canvas.draw(onePixel<uint8_t>(Channels::kGrey, SampleType::kUint8, {7}), 0, 0);
    canvas.draw(onePixel<uint8_t>(Channels::kRgb, SampleType::kUint8, {1, 2, 3}), 1, 0);
    canvas.draw(onePixel<uint8_t>(Channels::kGreyAlpha, SampleType::kUint8, {200, 128}), 2, 0);
    canvas.draw(onePixel<uint8_t>(Channels::kRgbAlpha, SampleType::kUint8, {9, 9, 9, 0}), 3, 0);
    canvas.draw(onePixel<uint8_t>(Channels::kGrey, SampleType::kUint8, {7}), -1, 0);
    canvas.draw(onePixel<uint8_t>(Channels::kGrey, SampleType::kUint8, {7}), 0, 1);
    EXPECT_EQ(canvas.picture().samples, (Bytes{7, 7, 7, 1, 2, 3, 150, 100, 100, 100, 0, 0}));
}

TEST(Canvas, KeepsOpaqueSamplesOfDeepPictures) {
    Canvas words(1, 1, kBlack, SampleType::kUint16);
    words.draw(onePixel<uint16_t>(Channels::kRgbAlpha, SampleType::kUint16, {1, 40000, 65535, 65535}), 0, 0);
    EXPECT_EQ(words.picture().sample<uint16_t>(0), 1);
    EXPECT_EQ(words.picture().sample<uint16_t>(1), 40000);
    EXPECT_EQ(words.picture().sample<uint16_t>(2), 65535);
    Canvas floats(1, 1, kWhite, SampleType::kFloat);
    floats.draw(onePixel<float>(Channels::kRgbAlpha, SampleType::kFloat, {-3.5F, 1e30F, 0.1F, 1.0F}), 0, 0);
    EXPECT_EQ(floats.picture().sample<float>(0), -3.5F);
    EXPECT_EQ(floats.picture().sample<float>(1), 1e30F);
    EXPECT_EQ(floats.picture().sample<float>(2), 0.1F);
    floats.draw(onePixel<float>(Channels::kGreyAlpha, SampleType::kFloat, {0.5F, 0.25F}), 0, 0);
    EXPECT_EQ(floats.picture().sample<float>(0), 0.5F * 0.25F + -3.5F * 0.75F);
}

TEST(TextDrawing, DrawsLettersInsideTheirSize) {
    const TextSize size = textSize("Process 1", 1);
    EXPECT_EQ(size.height, 12);
    Canvas exact(static_cast<uint32_t>(size.width), 12, kBlack);
    drawText(exact, 0, 0, "Process 1", kWhite, 1);
    Canvas roomy(static_cast<uint32_t>(size.width) + 20, 32, kBlack);
    drawText(roomy, 10, 10, "Process 1", kWhite, 1);
    const auto lit = [](const Canvas& canvas) {
        const std::string text = drawing(canvas);
        return std::count(text.begin(), text.end(), '#');
    };
    EXPECT_GT(lit(exact), 50);
    EXPECT_EQ(lit(exact), lit(roomy));
}

TEST(TextDrawing, MagnifiesByWholeNumbers) {
    const TextSize one = textSize("Base", 1);
    const TextSize three = textSize("Base", 3);
    EXPECT_EQ(three.width, 3 * one.width);
    EXPECT_EQ(three.height, 3 * one.height);
    Canvas small(static_cast<uint32_t>(one.width), 12, kBlack);
    Canvas large(static_cast<uint32_t>(three.width), 36, kBlack);
    drawText(small, 0, 0, "Base", kWhite, 1);
    drawText(large, 0, 0, "Base", kWhite, 3);
    for (std::size_t y = 0; y < large.height(); ++y) {
        for (std::size_t x = 0; x < large.width(); ++x) {
            ASSERT_EQ(large.picture().samples[(y * large.width() + x) * 3],
                      small.picture().samples[(y / 3 * small.width() + x / 3) * 3]);
        }
    }
}

TEST(TextDrawing, DrawsWhatItHasNoLetterForAsAQuestionMark) {
    const auto drawn = [](const char* text) {
        Canvas canvas(100, 12, kBlack);
        drawText(canvas, 0, 0, text, kWhite, 1);
        return drawing(canvas);
    };
    EXPECT_EQ(drawn("\xE6\x96\x87\xE5\xAD\x97"), drawn("??"));
    EXPECT_EQ(drawn("a\nb\x7F"), drawn("a?b?"));
    EXPECT_NE(drawn("a"), drawn("b"));
    EXPECT_EQ(drawn(""), drawn(" "));
    EXPECT_EQ(textSize("", 2).width, 0);
}

} // namespace
} // namespace kovalune::test
