#include "cli/Commands.h"

#include "effect/Kovalune.h"
#include "host/ColorConversion.h"
#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "pictures/PixelValues.h"
#include "text/Failure.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <array>
#include <type_traits>

namespace kovalune::cli {

namespace {

using Bytes = std::array<uint8_t, 3>;

/// One pixel as the effect sees it: its values, the nearest colour in 8 bits, and the one in 8 bits that the
/// effect matches by, which wraps around where a float is outside 0 to 1.
struct EffectPixel {
    std::string values;
    Bytes nearest;
    Bytes matched;
};

void checkPlace(const PickArguments& arguments, const pictures::Picture& picture) {
    if (arguments.x < picture.width && arguments.y < picture.height) {
        return;
    }
    throw text::Failure(text::FailureKind::kUsage, text::inQuotes(arguments.input) + " has no pixel " +
                                                       std::to_string(arguments.x) + ',' +
                                                       std::to_string(arguments.y) + ": X is 0 to " +
                                                       std::to_string(picture.width - 1) + ", Y is 0 to " +
                                                       std::to_string(picture.height - 1));
}

pictures::Picture cutOut(const pictures::Picture& picture, std::size_t pixel) {
    pictures::Picture cut;
    cut.width = 1;
    cut.height = 1;
    cut.channels = picture.channels;
    cut.sampleType = picture.sampleType;
    cut.alphaKind = picture.alphaKind;
    const std::size_t bytes = cut.rowBytes();
    const auto start = picture.samples.begin() + static_cast<std::ptrdiff_t>(pixel * bytes);
    cut.samples.assign(start, start + static_cast<std::ptrdiff_t>(bytes));
    return cut;
}

uint8_t nearestOf(uint8_t value) {
    return value;
}

uint8_t nearestOf(uint16_t value) {
    return matchedLevel(value);
}

uint8_t nearestOf(float value) {
    return pictures::rescaled<pictures::FloatScale, pictures::FileScale8>(value);
}

template <class Channel>
std::string valueOf(Channel value) {
    if constexpr (std::is_floating_point_v<Channel>) {
        return text::shortestText(value);
    } else {
        return std::to_string(value);
    }
}

template <class Pixel>
EffectPixel effectPixel(const host::Image& image, const char* white) {
    const Pixel& pixel = image.at<Pixel>(0, 0);
    return {"red " + valueOf(pixel.red) + ", green " + valueOf(pixel.green) + ", blue " +
                valueOf(pixel.blue) + ", alpha " + valueOf(pixel.alpha) + " (white is " + white + ")",
            {nearestOf(pixel.red), nearestOf(pixel.green), nearestOf(pixel.blue)},
            {matchedLevel(pixel.red), matchedLevel(pixel.green), matchedLevel(pixel.blue)}};
}

EffectPixel effectPixel(const host::Image& image) {
    switch (image.format()) {
    case PF_PixelFormat_ARGB32:
        return effectPixel<PF_Pixel>(image, "255");
    case PF_PixelFormat_ARGB64:
        return effectPixel<PF_Pixel16>(image, "32768");
    default:
        return effectPixel<PF_PixelFloat>(image, "1");
    }
}

std::string hlsText(const Bytes& rgb) {
    PF_Fixed hls[3] = {};
    host::rgbToHls(PF_Pixel{255, rgb[0], rgb[1], rgb[2]}, hls);
    const auto number = [](PF_Fixed fixed, double factor) {
        return text::fixedText(fixed * factor / 65536.0, 2);
    };
    return "Hue         " + number(hls[0], 1.0) + " degrees\n" + //
           "Lightness   " + number(hls[1], 100.0) + " %\n" +     //
           "Saturation  " + number(hls[2], 100.0) + " %\n";
}

std::string textOf(const PickArguments& arguments) {
    pictures::Picture picture = pictures::readPicture(arguments.input);
    if (arguments.alphaKind) {
        picture.alphaKind = *arguments.alphaKind;
    }
    checkPlace(arguments, picture);
    const std::size_t place = std::size_t{arguments.y} * picture.width + arguments.x;
    const pictures::Picture cut = cutOut(picture, place);
    const EffectPixel pixel = effectPixel(pictures::imageOf(cut, pictures::workingFormat(cut.sampleType)));
    std::string text = "Pixel       " + std::to_string(arguments.x) + ',' + std::to_string(arguments.y) +
                       "\nPicture     " + pictures::formText(picture) + "\nFile        " +
                       pictures::pixelText(cut, 0) + "\nEffect      " + pixel.values + "\nColour      " +
                       pictures::hexText(pixel.nearest) + '\n';
    if (pixel.matched != pixel.nearest) {
        text += "Matched as  " + pictures::hexText(pixel.matched) + '\n';
    }
    return text + hlsText(pixel.matched);
}

} // namespace

std::string pickText(const PickArguments& arguments) {
    return pictures::withMemoryFor(arguments.input, [&arguments] { return textOf(arguments); });
}

} // namespace kovalune::cli
