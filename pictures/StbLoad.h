// The foreign reader of simple formats, compiled into the one file that includes this: STBI_ONLY_..., defined before, says for
// which format, so that no file is taken for one of another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <vector>

// Its warnings are its own.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#endif
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO
#define STBI_NO_LINEAR
#define STBI_NO_HDR
#include <stb/stb_image.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace kovalune::pictures {
namespace {

struct StbSamples {
    int channels = 0; ///< 0 where the file is refused
    std::vector<uint8_t> samples;
};

struct FreeStbSamples {
    void operator()(stbi_uc* samples) const noexcept { stbi_image_free(samples); }
};

/// All rows from the top down. Throws std::bad_alloc.
inline StbSamples loadStb(std::span<const uint8_t> bytes) {
    int width = 0;
    int height = 0;
    int channels = 0;
    const std::unique_ptr<stbi_uc, FreeStbSamples> samples(
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

} // namespace
} // namespace kovalune::pictures
