#include "pictures/tga/TgaLibrary.h"

#define STBI_ONLY_TGA
#include "pictures/StbLoad.h"
#include "pictures/StbSave.h"

namespace kovalune::pictures {

std::vector<uint8_t> loadTga(std::span<const uint8_t> bytes) {
    return loadStb(bytes).samples;
}

std::vector<uint8_t> saveTga(const Picture& picture) {
    std::vector<uint8_t> bytes;
    // It may throw: what calls it is compiled here too and holds nothing.
    const auto append = [](void* target, void* data, int count) {
        const auto* const first = static_cast<const uint8_t*>(data);
        static_cast<std::vector<uint8_t>*>(target)->insert(static_cast<std::vector<uint8_t>*>(target)->end(),
                                                           first, first + count);
    };
    stbi_write_tga_to_func(append, &bytes, static_cast<int>(picture.width), static_cast<int>(picture.height),
                           static_cast<int>(channelCount(picture.channels)), picture.samples.data());
    return bytes;
}

} // namespace kovalune::pictures
