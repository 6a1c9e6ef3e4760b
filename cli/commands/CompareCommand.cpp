#include "cli/Commands.h"

#include "cli/commands/ShotComparison.h"
#include "cli/text/ComparedText.h"
#include "pictures/PictureDifference.h"
#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "pictures/PixelValues.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/DrawnFile.h"
#include "text/Failure.h"
#include "text/MessageText.h"

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

pictures::PictureDifference compareAndDraw(const pictures::Picture& a, const pictures::Picture& b,
                                           const CompareArguments& arguments) {
    const std::string& file = *arguments.diff;
    return pictures::withMemoryFor(file, [&] {
        pictures::Picture drawn = dimmed(a);
        const auto paintOver = [&drawn](std::size_t pixel) {
            for (std::size_t i = 0; i < kBright.size(); ++i) {
                drawn.samples[pixel * 3 + i] = kBright[i];
            }
        };
        pictures::PictureDifference difference = pictures::differenceOf(a, b, paintOver, arguments.tolerance);
        shots::writeAtomically(file, shots::encodeDrawn(file, drawn, arguments.encoding));
        return difference;
    });
}

Comparison comparePictures(const CompareArguments& arguments) {
    if (arguments.diff) {
        shots::checkDrawnFile(*arguments.diff, {arguments.first, arguments.second}, arguments.force);
    }
    const auto read = [&arguments](const std::string& file) {
        return pictures::withMemoryFor(file, [&] { return pictures::readPicture(file, arguments.decoding); });
    };
    const pictures::Picture a = read(arguments.first);
    const pictures::Picture b = read(arguments.second);
    ComparedPictures compared = {arguments.first, arguments.second, a, b, std::nullopt, arguments.tolerance};
    if (a.width == b.width && a.height == b.height) {
        compared.difference = arguments.diff ? compareAndDraw(a, b, arguments)
                                             : pictures::differenceOf(
                                                   a, b, [](std::size_t) {}, arguments.tolerance);
    }
    Comparison result;
    result.same = compared.difference && compared.difference->pixels == 0;
    result.text = arguments.json ? comparedJson(compared) : comparedText(compared);
    if (!compared.difference && arguments.diff && !arguments.json) {
        result.text += "No picture of the differences is written.\n";
    }
    return result;
}

/// Names of pictures that do not exist are those of pictures, so that reading them tells what is wrong.
shots::SequenceInput sideOf(const std::string& name) {
    shots::SequenceInput side = shots::sequenceInput({name});
    if (!side.isSequence() && !side.isOnePicture()) {
        throw text::Failure(text::FailureKind::kUsage, "the pictures in " + text::inQuotes(name) +
                                                           " have no numbers to compare them by");
    }
    return side;
}

} // namespace

Comparison compareFiles(const CompareArguments& arguments) {
    const shots::SequenceInput a = sideOf(arguments.first);
    const shots::SequenceInput b = sideOf(arguments.second);
    if (a.isSequence() != b.isSequence()) {
        throw text::Failure(
            text::FailureKind::kUsage,
            text::inQuotes(a.isSequence() ? arguments.first : arguments.second) + " is a shot and " +
                text::inQuotes(a.isSequence() ? arguments.second : arguments.first) + " one picture");
    }
    if (!a.isSequence() && arguments.frames) {
        throw text::Failure(text::FailureKind::kUsage, "--frames: is for shots, and these are pictures");
    }
    if (a.isSequence() && arguments.diff) {
        throw text::Failure(text::FailureKind::kUsage, "--diff: is for two pictures, not for shots");
    }
    return a.isSequence() ? compareShots(arguments, a, b) : comparePictures(arguments);
}

} // namespace kovalune::cli
