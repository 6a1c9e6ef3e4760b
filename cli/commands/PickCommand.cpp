#include "cli/Commands.h"

#include "cli/commands/RenderPicture.h"
#include "cli/text/PickedText.h"
#include "effect/Kovalune.h"
#include "host/ColorConversion.h"
#include "pictures/PictureConversion.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "pictures/PixelValues.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <vector>

namespace kovalune::cli {

namespace {

void checkPlaces(const PickArguments& arguments, const pictures::Picture& picture) {
    for (const PickedPoint& point : arguments.points) {
        if (point.x < picture.width && point.y < picture.height) {
            continue;
        }
        throw text::Failure(text::FailureKind::kUsage,
                            text::inQuotes(arguments.input) + " has no pixel " + std::to_string(point.x) +
                                ',' + std::to_string(point.y) + ": X is 0 to " +
                                std::to_string(picture.width - 1) + ", Y is 0 to " +
                                std::to_string(picture.height - 1));
    }
}

pictures::Picture cutOut(const pictures::Picture& picture, std::size_t pixel) {
    pictures::Picture cut;
    cut.width = 1;
    cut.height = 1;
    cut.channels = picture.channels;
    cut.sampleType = picture.sampleType;
    cut.alphaKind = picture.alphaKind;
    cut.isLinear = picture.isLinear;
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

template <class Pixel>
EffectPixel effectPixel(const host::Image& image, double white) {
    const Pixel& pixel = image.at<Pixel>(0, 0);
    return {{static_cast<float>(pixel.red), static_cast<float>(pixel.green), static_cast<float>(pixel.blue),
             static_cast<float>(pixel.alpha)},
            white,
            {nearestOf(pixel.red), nearestOf(pixel.green), nearestOf(pixel.blue)},
            {matchedLevel(pixel.red), matchedLevel(pixel.green), matchedLevel(pixel.blue)}};
}

EffectPixel effectPixel(const host::Image& image) {
    switch (image.format()) {
    case PF_PixelFormat_ARGB32:
        return effectPixel<PF_Pixel>(image, 255.0);
    case PF_PixelFormat_ARGB64:
        return effectPixel<PF_Pixel16>(image, 32768.0);
    default:
        return effectPixel<PF_PixelFloat>(image, 1.0);
    }
}

PickedPixel pickedPixel(const pictures::Picture& picture, const PickedPoint& point) {
    PickedPixel picked;
    picked.point = point;
    picked.file = cutOut(picture, std::size_t{point.y} * picture.width + point.x);
    picked.effect = effectPixel(pictures::imageOf(picked.file, pictures::workingFormat(picture.sampleType)));
    const EffectPixel::Bytes& rgb = picked.effect.matched;
    PF_Fixed hls[3] = {};
    host::rgbToHls(PF_Pixel{255, rgb[0], rgb[1], rgb[2]}, hls);
    constexpr double kOne = 65536.0;
    picked.hue = hls[0] / kOne;
    picked.lightness = hls[1] * 100.0 / kOne;
    picked.saturation = hls[2] * 100.0 / kOne;
    return picked;
}

std::string textOf(const PickArguments& arguments) {
    pictures::Picture picture = pictures::readPicture(arguments.input, arguments.decoding);
    noteLosses(picture, arguments.input);
    if (arguments.alphaKind) {
        picture.alphaKind = *arguments.alphaKind;
    }
    picture.isLinear = arguments.linear;
    checkPlaces(arguments, picture);
    std::vector<PickedPixel> picked;
    for (const PickedPoint& point : arguments.points) {
        picked.push_back(pickedPixel(picture, point));
    }
    return arguments.json ? pickedJson(picked, picture, arguments.input) : pickedText(picked, picture);
}

} // namespace

std::string pickText(const PickArguments& arguments) {
    return pictures::withMemoryFor(arguments.input, [&arguments] { return textOf(arguments); });
}

} // namespace kovalune::cli
