#include "cli/picture/LibraryVersions.h"

#include <OpenEXRConfig.h>
#include <png.h>
#include <tiffio.h>

#include <string_view>

namespace kovalune {

namespace {

// The library's text is "LIBTIFF, Version 4.5.0" and further lines.
std::string tiffVersion() {
    const std::string_view text = TIFFGetVersion();
    const std::string_view line = text.substr(0, text.find('\n'));
    return std::string(line.substr(line.find_last_of(' ') + 1));
}

} // namespace

std::vector<LibraryVersion> pictureLibraries() {
    return {{"libpng", png_get_libpng_ver(nullptr)},
            {"libtiff", tiffVersion()},
            {"OpenEXR", OPENEXR_VERSION_STRING},
            {"stb_image", KOVALUNE_STB_IMAGE_VERSION}};
}

} // namespace kovalune
