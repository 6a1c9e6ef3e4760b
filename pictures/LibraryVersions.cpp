#include "pictures/LibraryVersions.h"

#ifdef KOVALUNE_HAS_EXR
#include <OpenEXRConfig.h>
#endif
#include <png.h>
#ifdef KOVALUNE_HAS_TIFF
#include <tiffio.h>
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
            {"stb_image", KOVALUNE_STB_IMAGE_VERSION}};
}

} // namespace kovalune::pictures
