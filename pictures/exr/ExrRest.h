// What an OpenEXR file holds besides the picture that was read from it, for a file that is written of that picture.
#pragma once

#include "pictures/exr/ExrHeader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kovalune::pictures {

struct ExrRest {
    std::string file;           ///< its name, for messages
    std::vector<uint8_t> bytes; ///< all of it, where there is something to pass on; as long as the file
    std::size_t part = 0;       ///< the picture's
    std::string before; ///< what the names of the picture's channels begin with: "diffuse.", or nothing
    std::vector<ExrChannel> channels; ///< the part's others that are passed on
    std::vector<std::size_t> parts;   ///< all that are in the new file, the picture's among them, in order
};

} // namespace kovalune::pictures
