// The headers of an OpenEXR file as they stand in its bytes, checked before the OpenEXR library sees them: it
// believes every length that it reads, and takes memory for it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kovalune::pictures {

using ExrBytes = std::span<const uint8_t>;

struct ExrAttribute {
    std::string name;
    std::string type;
    ExrBytes value;
};

enum class ExrType : int32_t { kUint = 0, kHalf = 1, kFloat = 2 };

struct ExrChannel {
    std::string name;
    ExrType type = ExrType::kHalf;
    int32_t xSampling = 1;
    int32_t ySampling = 1;

    bool isSubsampled() const { return xSampling != 1 || ySampling != 1; }
};

/// Both ends are inside.
struct ExrBox {
    int32_t xMin = 0, yMin = 0, xMax = 0, yMax = 0;

    /// 0 if there is nothing inside.
    uint32_t width() const { return side(xMin, xMax); }
    uint32_t height() const { return side(yMin, yMax); }

    static uint32_t side(int32_t least, int32_t most) {
        return least > most ? 0 : static_cast<uint32_t>(int64_t{most} - least + 1);
    }
};

struct ExrPart {
    std::vector<ExrAttribute> attributes;
    std::vector<ExrChannel> channels;
    ExrBox dataWindow;
    uint8_t compression = 0;
    bool tiled = false;
    bool deep = false;
    uint32_t tileWidth = 0;
    uint32_t tileHeight = 0;

    /// Null if there is none.
    const ExrAttribute* find(std::string_view name) const;
    const ExrChannel* channel(std::string_view name) const;
};

/// Of the compressions by their numbers in a file.
struct ExrCompression {
    const char* name;
    uint32_t linesOfABlock;
    uint32_t mostExpansion; ///< bytes that one compressed byte may stand for
    bool keepsHalf;
    bool keepsFloat;
};
extern const std::array<ExrCompression, 10> kExrCompressions;
inline constexpr uint8_t kUsualExrCompression = 3; // ZIP

/// Of one of exrCompressionNames.
uint8_t exrCompressionNamed(const std::string& name);

int32_t exrInt(ExrBytes bytes, std::size_t place);

/// Whether the library reads a value of this type from just so many bytes.
bool exrValueFits(std::string_view type, ExrBytes value);

/// The parts of a file. Throws Failure with `name` if a header is damaged or cut short, or if the file is too
/// short for the places of the rows or tiles that a header tells of.
std::vector<ExrPart> exrParts(ExrBytes bytes, const std::string& name);

} // namespace kovalune::pictures
