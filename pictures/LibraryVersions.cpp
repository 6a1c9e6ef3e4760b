#include "pictures/LibraryVersions.h"

#ifdef KOVALUNE_HAS_EXR
#include <OpenEXRConfig.h>
#endif
#ifdef KOVALUNE_HAS_JPEG
#include <cstdio>
#include <jpeglib.h>
#endif
#include <png.h>
#ifdef KOVALUNE_HAS_TIFF
#include <tiffio.h>
#endif
#ifdef KOVALUNE_HAS_WEBP
#include <webp/decode.h>
#endif

#include <string_view>

namespace kovalune::pictures {

namespace {

#ifdef KOVALUNE_HAS_TIFF
/// The library's text is "LIBTIFF, Version 4.5.0" and further lines.
std::string tiffVersion() {
    const std::string_view text = TIFFGetVersion();
    const std::string_view line = text.substr(0, text.find('\n'));
    return std::string(line.substr(line.find_last_of(' ') + 1));
}
#else
std::string tiffVersion() {
    return "not built in";
}
#endif

#ifdef KOVALUNE_HAS_WEBP
std::string webpVersion() {
    const int version = WebPGetDecoderVersion(); // a byte each
    return std::to_string(version >> 16) + '.' + std::to_string(version >> 8 & 0xff) + '.' +
           std::to_string(version & 0xff);
}
#else
std::string webpVersion() {
    return "not built in";
}
#endif

#ifdef KOVALUNE_HAS_JPEG
/// Of the interface, 62 for the sixth edition's.
std::string jpegVersion() {
    return std::to_string(JPEG_LIB_VERSION);
}
#else
std::string jpegVersion() {
    return "not built in";
}
#endif

#ifdef KOVALUNE_HAS_EXR
constexpr char kExrVersion[] = OPENEXR_VERSION_STRING;
#else
constexpr char kExrVersion[] = "not built in";
#endif

} // namespace

std::vector<LibraryVersion> pictureLibraries() {
    return {{"libpng", png_get_libpng_ver(nullptr)},
            {"libtiff", tiffVersion()},
            {"OpenEXR", kExrVersion},
            {"libwebp", webpVersion()},
            {"libjpeg", jpegVersion()},
            {"stb_image", KOVALUNE_STB_IMAGE_VERSION}};
}

} // namespace kovalune::pictures
