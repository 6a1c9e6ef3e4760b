#include "adapters/web/OpenedPicture.h"

#include "adapters/web/PngBytes.h"
#include "pictures/PictureMemory.h"
#include "pictures/ReadFailure.h"
#include "pictures/tga/TgaFile.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace kovalune::web {

namespace {

struct Beginning {
    std::string_view bytes;
    const char* format;
};

using namespace std::string_view_literals;

constexpr std::array<Beginning, 9> kOthers = {{{"II*\0"sv, "TIFF"},
                                               {"MM\0*"sv, "TIFF"},
                                               {"v/1\1"sv, "OpenEXR"},
                                               {"\xff\xd8\xff"sv, "JPEG"},
                                               {"GIF8"sv, "GIF"},
                                               {"BM"sv, "BMP"},
                                               {"RIFF"sv, "WebP"},
                                               {"8BPS"sv, "layered"},
                                               {"%PDF"sv, "PDF"}}};

std::string_view textOf(std::span<const uint8_t> bytes) {
    return {static_cast<const char*>(static_cast<const void*>(bytes.data())), bytes.size()};
}

[[noreturn]] void refuse(std::span<const uint8_t> bytes, const std::string& name) {
    const auto known = std::find_if(kOthers.begin(), kOthers.end(), [&](const Beginning& beginning) {
        return textOf(bytes).starts_with(beginning.bytes);
    });
    const std::string what = known == kOthers.end() ? "it is no picture that is known here"
                                                    : "it is a " + std::string(known->format) + " file";
    pictures::failReading(name, what +
                                    "; save the drawing as PNG, of 8 or 16 bits, or as TGA, and open that. "
                                    "The command kovalune reads TIFF and OpenEXR too");
}

pictures::Picture decode(std::span<const uint8_t> bytes, const std::string& name) {
    if (beginsAsPng(bytes)) {
        return decodePng(bytes, name, {});
    }
    const bool isKnown = std::any_of(kOthers.begin(), kOthers.end(), [&](const Beginning& beginning) {
        return textOf(bytes).starts_with(beginning.bytes);
    });
    if (!isKnown && pictures::beginsAsTga(bytes)) {
        return pictures::decodeTga(bytes, name);
    }
    refuse(bytes, name);
}

/// What a frame of all stages takes at the most, the picture and the result in its file's samples and on the screen included.
uint64_t bytesAPixel(pictures::SampleType type) {
    return type == pictures::SampleType::kUint8 ? 80 : 140;
}

} // namespace

pictures::Picture openPicture(std::span<const uint8_t> bytes, const std::string& name, uint64_t memory) {
    return pictures::withMemoryFor(name, [&] {
        pictures::Picture picture = decode(bytes, name);
        const uint64_t most = memory / bytesAPixel(picture.sampleType);
        if (uint64_t{picture.width} * picture.height > most) {
            const auto side = static_cast<uint32_t>(std::sqrt(static_cast<double>(most)));
            pictures::failReading(name, "it is " + pictures::sizeText(picture.width, picture.height) +
                                            ", and in a page frames of " + std::to_string(most / 1000000) +
                                            " million pixels fit into memory, as " +
                                            pictures::sizeText(side, side) +
                                            "; the command kovalune has no such limit");
        }
        return picture;
    });
}

} // namespace kovalune::web
