#include "pictures/tga/TgaLibrary.h"

#include <cstdlib>
#include <memory>
#include <new>
#include <string_view>

// Its warnings are its own.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#endif
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_TGA
#define STBI_NO_STDIO
#define STBI_NO_LINEAR
#define STBI_NO_HDR
#include <stb/stb_image.h>
#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#include <stb/stb_image_write.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace kovalune::pictures {

namespace {

struct FreeSamples {
    void operator()(stbi_uc* samples) const noexcept { stbi_image_free(samples); }
};

} // namespace

std::vector<uint8_t> loadTga(std::span<const uint8_t> bytes) {
    int width = 0;
    int height = 0;
    int channels = 0;
    const std::unique_ptr<stbi_uc, FreeSamples> samples(
        stbi_load_from_memory(bytes.data(), static_cast<int>(bytes.size()), &width, &height, &channels, 0));
    if (!samples) {
        if (std::string_view(stbi_failure_reason()) == "outofmem") {
            throw std::bad_alloc();
        }
        return {};
    }
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                              static_cast<std::size_t>(channels);
    return {samples.get(), samples.get() + count};
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
