#include "adapters/web/OpenedPicture.h"

#include "adapters/web/PngBytes.h"
#include "pictures/PictureMemory.h"
#include "pictures/ReadFailure.h"
#include "pictures/tga/TgaFile.h"
#include "pictures/tga/TgaHeader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
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

/// Null for a beginning that is none of these.
const char* otherFormat(std::span<const uint8_t> bytes) {
    const auto known = std::find_if(kOthers.begin(), kOthers.end(), [&](const Beginning& beginning) {
        return textOf(bytes).starts_with(beginning.bytes);
    });
    return known == kOthers.end() ? nullptr : known->format;
}

[[noreturn]] void refuse(std::span<const uint8_t> bytes, const std::string& name) {
    const char* const format = otherFormat(bytes);
    const std::string what = beginsAsPng(bytes)  ? "it is cut short"
                             : format == nullptr ? "it is no picture that is known here"
                                                 : std::string("it is a ") + format + " file";
    pictures::failReading(name, what +
                                    "; save the drawing as PNG, of 8 or 16 bits, or as TGA, and open that. "
                                    "The command kovalune reads TIFF and OpenEXR too");
}

/// What a frame of all stages takes at the most, by measurement: the picture and the result in its file's samples and on the
/// screen included, and a part that lies between blocks.
uint64_t bytesAPixel(pictures::SampleType type) {
    return type == pictures::SampleType::kUint8 ? 140 : 170;
}

/// Before anything of this size is taken.
void checkMemory(uint32_t width, uint32_t height, pictures::SampleType type, const std::string& name,
                 uint64_t memory) {
    const uint64_t most = memory / bytesAPixel(type);
    if (uint64_t{width} * height > most) {
        const auto side = static_cast<uint32_t>(std::sqrt(static_cast<double>(most)));
        pictures::failReading(name,
                              "it is " + pictures::sizeText(width, height) +
                                  ", more than fits into a page's memory: at this depth " +
                                  pictures::sizeText(side, side) +
                                  " do, or as many in another shape; the command kovalune has no such limit");
    }
}

} // namespace

pictures::Picture openPicture(std::span<const uint8_t> bytes, const std::string& name, uint64_t memory) {
    return pictures::withMemoryFor(name, [&] {
        if (const std::optional<PngForm> form = pngForm(bytes)) {
            checkMemory(form->width, form->height, form->sampleType, name, memory);
            return decodePng(bytes, name, {});
        }
        if (otherFormat(bytes) == nullptr && pictures::beginsAsTga(bytes)) {
            if (const std::optional<pictures::TgaHeader> header = pictures::tgaHeader(bytes)) {
                checkMemory(header->width, header->height, pictures::SampleType::kUint8, name, memory);
            }
            return pictures::decodeTga(bytes, name);
        }
        refuse(bytes, name);
    });
}

} // namespace kovalune::web
