#include "pictures/ReadFailure.h"

#include "pictures/PictureFile.h"
#include "text/Failure.h"
#include "text/MessageText.h"

namespace kovalune::pictures {

void failReading(const std::string& name, const std::string& reason) {
    throw text::Failure(text::FailureKind::kFile, "cannot read " + text::inQuotes(name) + ": " + reason);
}

std::string sizeText(uint32_t width, uint32_t height) {
    return std::to_string(width) + " x " + std::to_string(height) + " pixels";
}

void checkSize(uint32_t width, uint32_t height, const std::string& name) {
    if (width == 0 || height == 0) {
        failReading(name, "it is damaged: a picture of " + sizeText(width, height));
    }
    if (width > kMostPixelsASide || height > kMostPixelsASide) {
        failReading(name, "it is " + sizeText(width, height) + ", and the largest picture is " +
                              sizeText(kMostPixelsASide, kMostPixelsASide));
    }
}

} // namespace kovalune::pictures
