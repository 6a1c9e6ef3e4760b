// How files begin whose formats are known also where their libraries are not built in.

#include "pictures/exr/ExrFile.h"
#include "pictures/jpeg/JpegFile.h"
#include "pictures/tiff/TiffFile.h"
#include "pictures/webp/WebpFile.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kovalune::pictures {

bool beginsAsTiff(std::span<const uint8_t> bytes) {
    constexpr std::array<std::array<uint8_t, 4>, 4> kBeginnings = {
        {{'I', 'I', 42, 0}, {'M', 'M', 0, 42}, {'I', 'I', 43, 0}, {'M', 'M', 0, 43}}};
    return bytes.size() >= 4 &&
           std::any_of(kBeginnings.begin(), kBeginnings.end(), [bytes](const auto& each) {
               return std::equal(each.begin(), each.end(), bytes.begin());
           });
}

bool beginsAsExr(std::span<const uint8_t> bytes) {
    constexpr std::array<uint8_t, 4> kMagic = {0x76, 0x2f, 0x31, 0x01};
    return bytes.size() >= 4 && std::equal(kMagic.begin(), kMagic.end(), bytes.begin());
}

bool beginsAsJpeg(std::span<const uint8_t> bytes) {
    return bytes.size() >= 3 && bytes[0] == 0xff && bytes[1] == 0xd8 && bytes[2] == 0xff;
}

bool beginsAsWebp(std::span<const uint8_t> bytes) {
    constexpr std::string_view kFirst = "RIFF", kAfterLength = "WEBP";
    return bytes.size() >= 12 && std::equal(kFirst.begin(), kFirst.end(), bytes.begin()) &&
           std::equal(kAfterLength.begin(), kAfterLength.end(), bytes.begin() + 8);
}

} // namespace kovalune::pictures
