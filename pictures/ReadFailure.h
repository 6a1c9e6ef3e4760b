// How reading a picture fails: the one form of the messages, and the largest picture that is taken.
#pragma once

#include "pictures/DecodeOptions.h"

#include <cstdint>
#include <string>

namespace kovalune::pictures {

/// Throws Failure: "cannot read 'name': reason".
[[noreturn]] void failReading(const std::string& name, const std::string& reason);

/// "640 x 480 pixels"
std::string sizeText(uint32_t width, uint32_t height);

/// Throws Failure if a side is 0 or more than kMostPixelsASide.
void checkSize(uint32_t width, uint32_t height, const std::string& name);

/// Throws Failure if there are more pixels than the options allow.
void checkPixelCount(uint64_t width, uint64_t height, const std::string& name, const DecodeOptions& options);

/// The same of a block that is decoded as a whole and may be larger than its picture, `what` in the message; as many as are
/// usual are always allowed.
void checkBlockPixels(uint64_t width, uint64_t height, const char* what, const std::string& name,
                      const DecodeOptions& options);

} // namespace kovalune::pictures
