// The picture that somebody has opened on a page.
#pragma once

#include "pictures/Picture.h"

#include <cstdint>
#include <span>
#include <string>

namespace kovalune::web {

/// A PNG or a TGA by its first bytes. Throws Failure with `name` if the file is neither, with a word on what to save instead,
/// if it cannot be read, and if frames of its size and depth do not fit into `memory` bytes, with the size that does.
pictures::Picture openPicture(std::span<const uint8_t> bytes, const std::string& name, uint64_t memory);

} // namespace kovalune::web
