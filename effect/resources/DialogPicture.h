// The picture in the lower part of the Option dialog: what the effect does, from hard stair-steps on the left to soft
// colours on the right. Drawn by the build.
#pragma once

#include <cstdint>
#include <vector>

namespace kovalune {

inline constexpr int32_t kDialogPictureWidth = 365;
inline constexpr int32_t kDialogPictureHeight = 65;

/// A bitmap of 24 bits a pixel, from its info header on: what the resource holds. Its rows run from the bottom up.
std::vector<uint8_t> dialogPicture();

/// The same as a file, with the header that files have before it.
std::vector<uint8_t> dialogPictureFile();

} // namespace kovalune
