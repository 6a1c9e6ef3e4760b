#include "pictures/bmp/BmpLibrary.h"

#define STBI_ONLY_BMP
#include "pictures/StbLoad.h"

#include <utility>

namespace kovalune::pictures {

BmpSamples loadBmp(std::span<const uint8_t> bytes) {
    StbSamples loaded = loadStb(bytes);
    return {loaded.channels, std::move(loaded.samples)};
}

} // namespace kovalune::pictures
