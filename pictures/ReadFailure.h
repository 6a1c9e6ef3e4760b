// How reading a picture fails: the one form of the messages, and the largest picture that is taken.
#pragma once

#include <cstdint>
#include <string>

namespace kovalune::pictures {

/// Throws Failure: "cannot read 'name': reason".
[[noreturn]] void failReading(const std::string& name, const std::string& reason);

/// "640 x 480 pixels"
std::string sizeText(uint32_t width, uint32_t height);

/// Throws Failure if a side is 0 or more than kMostPixelsASide.
void checkSize(uint32_t width, uint32_t height, const std::string& name);

} // namespace kovalune::pictures
