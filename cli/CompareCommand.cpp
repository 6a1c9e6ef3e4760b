#include "cli/CompareCommand.h"

#include "cli/AtomicFile.h"
#include "cli/DrawnFile.h"
#include "cli/NumberText.h"
#include "cli/PictureDifference.h"
#include "cli/PictureMemory.h"
#include "cli/picture/PictureFile.h"
#include "cli/picture/PixelValues.h"

#include <array>

namespace kovalune {

namespace {

constexpr std::array<uint8_t, 3> kBright = {255, 64, 224};
constexpr int kDimming = 4;

/// The picture in 8 bits, dimmed; what differs is painted over later.
Picture dimmed(const Picture& picture) {
    Picture result;
    result.width = picture.width;
    result.height = picture.height;
    result.samples.assign(result.byteCount(), 0);
    const std::size_t count = channelCount(picture.channels);
    const std::size_t step = isGrey(picture.channels) ? 0 : 1;
    for (std::size_t pixel = 0; pixel < result.samples.size() / 3; ++pixel) {
        for (std::size_t i = 0; i < 3; ++i) {
            const uint8_t byte = nearestByte(picture, pixel * count + i * step);
            result.samples[pixel * 3 + i] = static_cast<uint8_t>(byte / kDimming);
        }
    }
    return result;
}

std::string shareText(std::size_t part, std::size_t whole) {
    return fixedText(100.0 * static_cast<double>(part) / static_cast<double>(whole), 3) + " %";
}

std::string placeText(const Picture& picture, std::size_t pixel) {
    return std::to_string(pixel % picture.width) + ',' + std::to_string(pixel / picture.width);
}

std::string largestText(const PictureDifference& difference, bool sameType) {
    std::string text;
    for (const ChannelDifference& channel : difference.largest) {
        text += (text.empty() ? "" : ", ") + channel.name + ' ';
        const std::string fraction = roundedText(channel.fraction, 6);
        text += sameType ? shortestText(channel.units) + " (" + fraction + ")" : fraction;
    }
    return text;
}

std::string differenceText(const Picture& a, const Picture& b, const PictureDifference& difference) {
    if (difference.pixels == 0) {
        return "same\n";
    }
    const std::size_t pixels = std::size_t{a.width} * a.height;
    return "different: " + std::to_string(difference.pixels) + " of " + std::to_string(pixels) + " pixels (" +
           shareText(difference.pixels, pixels) + ")\n" + "Largest difference, " +
           (a.sampleType == b.sampleType ? "of " + shortestText(whiteOf(a.sampleType)) + " (of 1): "
                                         : std::string("of 1: ")) +
           largestText(difference, a.sampleType == b.sampleType) + '\n' + "First at " +
           placeText(a, difference.first) + "\n  A: " + pixelText(a, difference.first) +
           "\n  B: " + pixelText(b, difference.first) + '\n';
}

std::string formsText(const CompareArguments& arguments, const Picture& a, const Picture& b) {
    std::string text = "A: " + printable(arguments.first) + ": " + formText(a) +
                       "\nB: " + printable(arguments.second) + ": " + formText(b) + '\n';
    if (hasAlpha(a.channels) && hasAlpha(b.channels) && a.alphaKind != b.alphaKind) {
        text += "The kinds of alpha differ; the values are compared as they stand.\n";
    }
    return text;
}

PictureDifference compareAndDraw(const Picture& a, const Picture& b, const std::string& file) {
    return withMemoryFor(file, [&] {
        Picture drawn = dimmed(a);
        const PictureDifference difference = differenceOf(a, b, [&drawn](std::size_t pixel) {
            for (std::size_t i = 0; i < kBright.size(); ++i) {
                drawn.samples[pixel * 3 + i] = kBright[i];
            }
        });
        writeAtomically(file, encodeDrawn(file, drawn));
        return difference;
    });
}

} // namespace

Comparison compareFiles(const CompareArguments& arguments) {
    if (arguments.diff) {
        checkDrawnFile(*arguments.diff, {arguments.first, arguments.second}, arguments.force);
    }
    const Picture a = withMemoryFor(arguments.first, [&] { return readPicture(arguments.first); });
    const Picture b = withMemoryFor(arguments.second, [&] { return readPicture(arguments.second); });
    Comparison result;
    result.text = formsText(arguments, a, b);
    if (a.width != b.width || a.height != b.height) {
        result.text += "different: the sizes\n";
        if (arguments.diff) {
            result.text += "No picture of the differences is written.\n";
        }
        return result;
    }
    const PictureDifference difference =
        arguments.diff ? compareAndDraw(a, b, *arguments.diff) : differenceOf(a, b, [](std::size_t) {});
    result.same = difference.pixels == 0;
    result.text += differenceText(a, b, difference);
    return result;
}

} // namespace kovalune
