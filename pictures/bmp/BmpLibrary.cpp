#include "pictures/bmp/BmpLibrary.h"

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
#define STBI_ONLY_BMP
#define STBI_NO_STDIO
#define STBI_NO_LINEAR
#define STBI_NO_HDR
#include <stb/stb_image.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace kovalune::pictures {

namespace {

struct FreeSamples {
    void operator()(stbi_uc* samples) const noexcept { stbi_image_free(samples); }
};

} // namespace

BmpSamples loadBmp(std::span<const uint8_t> bytes) {
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
    return {channels, {samples.get(), samples.get() + count}};
}

} // namespace kovalune::pictures
