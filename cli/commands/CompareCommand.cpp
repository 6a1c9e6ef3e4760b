#include "cli/Commands.h"

#include "pictures/PictureDifference.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "pictures/PixelValues.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/DrawnFile.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <array>

namespace kovalune::cli {

namespace {

constexpr std::array<uint8_t, 3> kBright = {255, 64, 224};
constexpr int kDimming = 4;

/// The picture in 8 bits, dimmed; what differs is painted over later.
pictures::Picture dimmed(const pictures::Picture& picture) {
    pictures::Picture result;
    result.width = picture.width;
    result.height = picture.height;
    result.samples.assign(result.byteCount(), 0);
    const std::size_t count = pictures::channelCount(picture.channels);
    const std::size_t step = pictures::isGrey(picture.channels) ? 0 : 1;
    for (std::size_t pixel = 0; pixel < result.samples.size() / 3; ++pixel) {
        for (std::size_t i = 0; i < 3; ++i) {
            const uint8_t byte = pictures::nearestByte(picture, pixel * count + i * step);
            result.samples[pixel * 3 + i] = static_cast<uint8_t>(byte / kDimming);
        }
    }
    return result;
}

std::string shareText(std::size_t part, std::size_t whole) {
    return text::fixedText(100.0 * static_cast<double>(part) / static_cast<double>(whole), 3) + " %";
}

std::string placeText(const pictures::Picture& picture, std::size_t pixel) {
    return std::to_string(pixel % picture.width) + ',' + std::to_string(pixel / picture.width);
}

std::string largestText(const pictures::PictureDifference& difference, bool sameType) {
    std::string text;
    for (const pictures::ChannelDifference& channel : difference.largest) {
        text += (text.empty() ? "" : ", ") + channel.name + ' ';
        const std::string fraction = text::roundedText(channel.fraction, 6);
        text += sameType ? text::shortestText(channel.units) + " (" + fraction + ")" : fraction;
    }
    return text;
}

std::string differenceText(const pictures::Picture& a, const pictures::Picture& b,
                           const pictures::PictureDifference& difference) {
    if (difference.pixels == 0) {
        return "same\n";
    }
    const std::size_t pixels = std::size_t{a.width} * a.height;
    return "different: " + std::to_string(difference.pixels) + " of " + std::to_string(pixels) + " pixels (" +
           shareText(difference.pixels, pixels) + ")\n" + "Largest difference, " +
           (a.sampleType == b.sampleType
                ? "of " + text::shortestText(pictures::whiteOf(a.sampleType)) + " (of 1): "
                : std::string("of 1: ")) +
           largestText(difference, a.sampleType == b.sampleType) + '\n' + "First at " +
           placeText(a, difference.first) + "\n  A: " + pictures::pixelText(a, difference.first) +
           "\n  B: " + pictures::pixelText(b, difference.first) + '\n';
}

std::string formsText(const CompareArguments& arguments, const pictures::Picture& a,
                      const pictures::Picture& b) {
    std::string text = "A: " + text::printable(arguments.first) + ": " + pictures::formText(a) +
                       "\nB: " + text::printable(arguments.second) + ": " + pictures::formText(b) + '\n';
    if (pictures::hasAlpha(a.channels) && pictures::hasAlpha(b.channels) && a.alphaKind != b.alphaKind) {
        text += "The kinds of alpha differ; the values are compared as they stand.\n";
    }
    return text;
}

pictures::PictureDifference compareAndDraw(const pictures::Picture& a, const pictures::Picture& b,
                                           const std::string& file, const pictures::EncodeOptions& encoding) {
    return pictures::withMemoryFor(file, [&] {
        pictures::Picture drawn = dimmed(a);
        pictures::PictureDifference difference = pictures::differenceOf(a, b, [&drawn](std::size_t pixel) {
            for (std::size_t i = 0; i < kBright.size(); ++i) {
                drawn.samples[pixel * 3 + i] = kBright[i];
            }
        });
        shots::writeAtomically(file, shots::encodeDrawn(file, drawn, encoding));
        return difference;
    });
}

} // namespace

Comparison compareFiles(const CompareArguments& arguments) {
    if (arguments.diff) {
        shots::checkDrawnFile(*arguments.diff, {arguments.first, arguments.second}, arguments.force);
    }
    const pictures::Picture a =
        pictures::withMemoryFor(arguments.first, [&] { return pictures::readPicture(arguments.first); });
    const pictures::Picture b =
        pictures::withMemoryFor(arguments.second, [&] { return pictures::readPicture(arguments.second); });
    Comparison result;
    result.text = formsText(arguments, a, b);
    if (a.width != b.width || a.height != b.height) {
        result.text += "different: the sizes\n";
        if (arguments.diff) {
            result.text += "No picture of the differences is written.\n";
        }
        return result;
    }
    const pictures::PictureDifference difference =
        arguments.diff ? compareAndDraw(a, b, *arguments.diff, arguments.encoding)
                       : pictures::differenceOf(a, b, [](std::size_t) {});
    result.same = difference.pixels == 0;
    result.text += differenceText(a, b, difference);
    return result;
}

} // namespace kovalune::cli
