#include "pictures/webp/WebpFile.h"

#include "pictures/ReadFailure.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <webp/decode.h>

namespace kovalune::pictures {

namespace {

using Bytes = std::span<const uint8_t>;

constexpr std::size_t kHeaderBytes = 12; ///< "RIFF", a length, "WEBP"

[[noreturn]] void fail(VP8StatusCode status, const std::string& name) {
    switch (status) {
    case VP8_STATUS_OUT_OF_MEMORY:
        throw std::bad_alloc();
    case VP8_STATUS_NOT_ENOUGH_DATA:
    case VP8_STATUS_SUSPENDED:
        failReading(name, "it is cut short");
    default:
        failReading(name, "it is damaged");
    }
}

/// The first chunk that holds the profile, if it is all there.
void takeProfile(Bytes bytes, Picture& picture) {
    constexpr std::string_view kName = "ICCP";
    constexpr std::size_t kChunkHeader = 8;
    for (std::size_t at = kHeaderBytes; bytes.size() - at >= kChunkHeader;) {
        const std::size_t length = bytes[at + 4] | std::size_t{bytes[at + 5]} << 8 |
                                   std::size_t{bytes[at + 6]} << 16 | std::size_t{bytes[at + 7]} << 24;
        const Bytes rest = bytes.subspan(at + kChunkHeader);
        if (length > rest.size()) {
            return;
        }
        if (std::equal(kName.begin(), kName.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at))) {
            picture.notes.push_back(
                {"ICC", {}, {rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(length)}});
            return;
        }
        at += kChunkHeader + std::min(length + length % 2, rest.size());
    }
}

/// The format sets no limit: one colour takes some thirty bytes, whatever the size.
bool canHold(std::size_t fileBytes, const Picture& picture) {
    constexpr std::size_t kAlways = std::size_t{64} << 20; ///< 4096 x 4096 pixels
    constexpr std::size_t kMostExpansion = std::size_t{1} << 18;
    return picture.byteCount() <= std::max(kAlways, fileBytes * kMostExpansion);
}

} // namespace

Picture decodeWebpWith(Bytes bytes, const std::string& name, const DecodeOptions& options) {
    if (!beginsAsWebp(bytes)) {
        failReading(name, "it is not a WebP file");
    }
    WebPDecoderConfig config;
    if (WebPInitDecoderConfig(&config) == 0) {
        failReading(name, "the library is of another version than this command was built for");
    }
    const VP8StatusCode known = WebPGetFeatures(bytes.data(), bytes.size(), &config.input);
    if (known != VP8_STATUS_OK) {
        fail(known, name);
    }
    if (config.input.has_animation != 0) {
        failReading(name, "it is an animation, which is not read");
    }
    constexpr int kLossless = 2;
    Picture picture;
    picture.format = FileFormat::kWebp;
    picture.isLossy = config.input.format != kLossless;
    picture.width = static_cast<uint32_t>(config.input.width);
    picture.height = static_cast<uint32_t>(config.input.height);
    picture.channels = config.input.has_alpha != 0 ? Channels::kRgbAlpha : Channels::kRgb;
    checkSize(picture.width, picture.height, name);
    if (!canHold(bytes.size(), picture)) {
        failReading(name, "it is cut short: " + sizeText(picture.width, picture.height) + " need more bytes");
    }
    checkPixelCount(picture.width, picture.height, name, options);
    picture.samples.resize(picture.byteCount());
    config.output.colorspace = hasAlpha(picture.channels) ? MODE_RGBA : MODE_RGB;
    config.output.is_external_memory = 1;
    config.output.u.RGBA = {picture.samples.data(), static_cast<int>(picture.rowBytes()),
                            picture.samples.size()};
    const VP8StatusCode decoded = WebPDecode(bytes.data(), bytes.size(), &config);
    WebPFreeDecBuffer(&config.output);
    if (decoded != VP8_STATUS_OK) {
        fail(decoded, name);
    }
    takeProfile(bytes, picture);
    return picture;
}

} // namespace kovalune::pictures
