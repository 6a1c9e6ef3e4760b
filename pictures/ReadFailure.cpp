#include "pictures/ReadFailure.h"

#include "pictures/PictureFile.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>

namespace kovalune::pictures {

void failReading(const std::string& name, const std::string& reason) {
    throw text::Failure(text::FailureKind::kFile, "cannot read " + text::inQuotes(name) + ": " + reason);
}

std::string sizeText(uint32_t width, uint32_t height) {
    return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

namespace {

std::string allowedText(uint64_t pixels, uint64_t most) {
    return std::to_string(pixels) + " in all, and --max-pixels, 1 to " + std::to_string(kMostPixels) +
           ", allows " + std::to_string(most);
}

} // namespace

void checkSize(uint32_t width, uint32_t height, const std::string& name) {
    if (width == 0 || height == 0) {
        failReading(name, "it is damaged: a picture of " + sizeText(width, height));
    }
    if (width > kMostPixelsASide || height > kMostPixelsASide) {
        failReading(name, "it is " + sizeText(width, height) + ", and the largest picture is " +
                              sizeText(kMostPixelsASide, kMostPixelsASide));
    }
}

void checkPixelCount(uint64_t width, uint64_t height, const std::string& name, const DecodeOptions& options) {
    const auto most = static_cast<uint64_t>(options.mostPixels);
    if (width != 0 && height > most / width) {
        failReading(name, "it is " + std::to_string(width) + " x " + std::to_string(height) + " pixels, " +
                              allowedText(width * height, most));
    }
}

void checkBlockPixels(uint64_t width, uint64_t height, const char* what, const std::string& name,
                      const DecodeOptions& options) {
    constexpr uint64_t kAlways = uint64_t{2048} * 2048;
    const uint64_t most = std::max(static_cast<uint64_t>(options.mostPixels), kAlways);
    if (width != 0 && height > most / width) {
        failReading(name, std::string(what) + " are " + std::to_string(width) + " x " +
                              std::to_string(height) + " pixels, " + allowedText(width * height, most));
    }
}

} // namespace kovalune::pictures
