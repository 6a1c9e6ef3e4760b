#include "pictures/exr/ExrHeader.h"

#include "pictures/ReadFailure.h"
#include "pictures/exr/ExrFile.h"
#include "text/MessageText.h"

#include <algorithm>

namespace kovalune::pictures {

namespace {

struct FixedType {
    std::string_view name;
    std::size_t bytes;
};

constexpr FixedType kFixedTypes[] = {{"box2i", 16},
                                     {"box2f", 16},
                                     {"chromaticities", 32},
                                     {"compression", 1},
                                     {"deepImageState", 1},
                                     {"double", 8},
                                     {"envmap", 1},
                                     {"float", 4},
                                     {"int", 4},
                                     {"keycode", 28},
                                     {"m33d", 72},
                                     {"m33f", 36},
                                     {"m44d", 128},
                                     {"m44f", 64},
                                     {"lineOrder", 1},
                                     {"rational", 8},
                                     {"tiledesc", 9},
                                     {"timecode", 8},
                                     {"v2d", 16},
                                     {"v2f", 8},
                                     {"v2i", 8},
                                     {"v3d", 24},
                                     {"v3f", 12},
                                     {"v3i", 12}};

/// Attributes that the library takes for what they are whatever type they give.
struct KnownAttribute {
    std::string_view name;
    std::string_view type;
    bool isNeeded;
};

constexpr KnownAttribute kKnownAttributes[] = {
    {"channels", "chlist", true},        {"compression", "compression", true},
    {"dataWindow", "box2i", true},       {"displayWindow", "box2i", true},
    {"lineOrder", "lineOrder", true},    {"pixelAspectRatio", "float", true},
    {"screenWindowCenter", "v2f", true}, {"screenWindowWidth", "float", true},
    {"tiles", "tiledesc", false},        {"type", "string", false},
    {"name", "string", false},           {"chunkCount", "int", false},
    {"preview", "preview", false},       {"version", "int", false}};

enum VersionFlag : uint32_t { kTiled = 0x200, kDeep = 0x800, kMultiPart = 0x1000 };

bool isStringVector(ExrBytes value) {
    while (value.size() >= 4) {
        const int32_t length = exrInt(value, 0);
        if (length < 0 || static_cast<std::size_t>(length) > value.size() - 4) {
            return false;
        }
        value = value.subspan(4 + static_cast<std::size_t>(length));
    }
    return value.empty();
}

bool isPreview(ExrBytes value) {
    constexpr int32_t kMostSide = 1 << 14;
    if (value.size() < 8) {
        return false;
    }
    const int64_t width = exrInt(value, 0), height = exrInt(value, 4);
    return width >= 0 && width <= kMostSide && height >= 0 && height <= kMostSide &&
           uint64_t(width * height * 4) == value.size() - 8;
}

ExrBox boxOf(ExrBytes value) {
    return {exrInt(value, 0), exrInt(value, 4), exrInt(value, 8), exrInt(value, 12)};
}

std::string textOf(const ExrAttribute* attribute) {
    return attribute == nullptr ? "" : std::string(attribute->value.begin(), attribute->value.end());
}

/// Goes through the headers.
class HeaderReader {
public:
    HeaderReader(ExrBytes bytes, const std::string& name) : bytes_(bytes), name_(name) {}

    std::vector<ExrPart> read() {
        need(8);
        const auto version = static_cast<uint32_t>(exrInt(bytes_, 4));
        at_ = 8;
        const bool isMultiPart = (version & kMultiPart) != 0;
        std::vector<ExrPart> parts;
        do {
            ExrPart part = readPart();
            const std::string type = textOf(part.find("type"));
            // The flag is the whole file's: of several parts some may be deep.
            part.deep = type.starts_with("deep") || (!isMultiPart && (version & kDeep) != 0);
            part.tiled = isMultiPart || part.deep ? type == "tiledimage" || type == "deeptile"
                                                  : (version & kTiled) != 0;
            readTiles(part);
            checkPlaces(part);
            parts.push_back(std::move(part));
            if (isMultiPart) {
                need(1);
            }
        } while (isMultiPart && bytes_[at_] != 0);
        return parts;
    }

private:
    [[noreturn]] void failDamaged(const std::string& what) const {
        failReading(name_, "it is damaged: " + what);
    }

    void need(std::size_t count) const {
        if (count > bytes_.size() - at_) {
            failReading(name_, "it is cut short");
        }
    }

    /// Up to a zero byte.
    std::string readText() {
        constexpr std::size_t kMostLength = 255;
        const ExrBytes rest = bytes_.subspan(at_);
        const auto end = std::find(rest.begin(), rest.end(), uint8_t{0});
        const auto length = static_cast<std::size_t>(end - rest.begin());
        if (length > kMostLength) {
            failDamaged("a name has no end");
        }
        if (end == rest.end()) {
            failReading(name_, "it is cut short");
        }
        at_ += length + 1;
        return {rest.begin(), end};
    }

    ExrPart readPart() {
        ExrPart part;
        for (std::string name = readText(); !name.empty(); name = readText()) {
            ExrAttribute attribute{name, readText(), {}};
            need(4);
            const int32_t size = exrInt(bytes_, at_);
            at_ += 4;
            if (size < 0) {
                failDamaged("attribute " + text::shown(name) + " is of negative length");
            }
            need(static_cast<std::size_t>(size));
            attribute.value = bytes_.subspan(at_, static_cast<std::size_t>(size));
            at_ += static_cast<std::size_t>(size);
            const auto known =
                std::find_if(std::begin(kKnownAttributes), std::end(kKnownAttributes),
                             [&name](const KnownAttribute& each) { return each.name == name; });
            if (part.find(name) != nullptr || !exrValueFits(attribute.type, attribute.value) ||
                (known != std::end(kKnownAttributes) && known->type != attribute.type)) {
                failDamaged("attribute " + text::shown(name) + " is wrong");
            }
            part.attributes.push_back(std::move(attribute));
        }
        for (const KnownAttribute& known : kKnownAttributes) {
            if (known.isNeeded && part.find(known.name) == nullptr) {
                failDamaged("attribute " + std::string(known.name) + " is missing");
            }
        }
        part.dataWindow = boxOf(part.find("dataWindow")->value);
        part.compression = part.find("compression")->value[0];
        if (part.compression >= kExrCompressions.size()) {
            failReading(name_, "it is compressed in a way that is not known, number " +
                                   std::to_string(part.compression));
        }
        readChannels(part);
        return part;
    }

    void readChannels(ExrPart& part) {
        const ExrBytes list = part.find("channels")->value;
        std::size_t at = 0;
        while (at < list.size() && list[at] != 0) {
            const auto end =
                std::find(list.begin() + static_cast<std::ptrdiff_t>(at), list.end(), uint8_t{0});
            ExrChannel channel;
            channel.name.assign(list.begin() + static_cast<std::ptrdiff_t>(at), end);
            at += channel.name.size() + 1;
            constexpr std::size_t kRest = 16; // type, a byte on linearity and three empty ones, sampling
            if (at > list.size() || list.size() - at < kRest) {
                failDamaged("its list of channels has no end");
            }
            const int32_t type = exrInt(list, at);
            channel.type = static_cast<ExrType>(type);
            channel.xSampling = exrInt(list, at + 8);
            channel.ySampling = exrInt(list, at + 12);
            at += kRest;
            if (type < 0 || type > 2 || channel.xSampling < 1 || channel.ySampling < 1 ||
                channel.name.size() > 255 || part.channel(channel.name) != nullptr) {
                failDamaged("channel " + text::shown(channel.name) + " is wrong");
            }
            part.channels.push_back(std::move(channel));
        }
        if (at + 1 != list.size()) {
            failDamaged("its list of channels has no end");
        }
    }

    void readTiles(ExrPart& part) const {
        if (!part.tiled) {
            return;
        }
        const ExrAttribute* const tiles = part.find("tiles");
        if (tiles == nullptr) {
            failDamaged("attribute tiles is missing");
        }
        part.tileWidth = static_cast<uint32_t>(exrInt(tiles->value, 0));
        part.tileHeight = static_cast<uint32_t>(exrInt(tiles->value, 4));
        constexpr uint32_t kMostOfSmallPictures = 2048;
        if (part.tileWidth == 0 || part.tileHeight == 0 ||
            part.tileWidth > std::max(part.dataWindow.width(), kMostOfSmallPictures) ||
            part.tileHeight > std::max(part.dataWindow.height(), kMostOfSmallPictures)) {
            failDamaged("its tiles are " + sizeText(part.tileWidth, part.tileHeight));
        }
    }

    /// Each block of rows and each tile has its place in the file noted in eight bytes.
    void checkPlaces(const ExrPart& part) {
        const auto blocks = [](uint64_t side, uint64_t block) { return (side + block - 1) / block; };
        const uint64_t across = part.tiled ? blocks(part.dataWindow.width(), part.tileWidth) : 1;
        const uint64_t down =
            blocks(part.dataWindow.height(),
                   part.tiled ? part.tileHeight : kExrCompressions[part.compression].linesOfABlock);
        const uint64_t left = bytes_.size() / 8 - places_;
        if (across != 0 && down > left / across) {
            failReading(name_,
                        "it is cut short: " + sizeText(part.dataWindow.width(), part.dataWindow.height()) +
                            " need more bytes");
        }
        places_ += across * down;
    }

    const ExrBytes bytes_;
    const std::string& name_;
    std::size_t at_ = 0;
    uint64_t places_ = 0; ///< of the parts so far
};

} // namespace

/// Runs of RLE are of 128 bytes in two. PIZ repeats a 16-bit value 255 times by a code of a bit and a count of
/// eight. PXR24 deflates three bytes of a float. B44 has three bytes for 16 halves. The DWA pair deflates one half
/// for 64 values, and besides may leave out all the others.
const std::array<ExrCompression, 10> kExrCompressions = {{{"none", 1, 1, true, true},
                                                          {"rle", 1, 64, true, true},
                                                          {"zips", 1, 1032, true, true},
                                                          {"zip", 16, 1032, true, true},
                                                          {"piz", 32, 512, true, true},
                                                          {"pxr24", 16, 1376, true, false},
                                                          {"b44", 32, 16, false, false},
                                                          {"b44a", 32, 16, false, false},
                                                          {"dwaa", 32, 1U << 18, false, false},
                                                          {"dwab", 256, 1U << 18, false, false}}};

std::vector<std::string> exrCompressionNames() {
    std::vector<std::string> names;
    names.reserve(kExrCompressions.size());
    for (const ExrCompression& each : kExrCompressions) {
        names.emplace_back(each.name);
    }
    return names;
}

uint8_t exrCompressionNamed(const std::string& name) {
    const auto found = std::find_if(kExrCompressions.begin(), kExrCompressions.end(),
                                    [&name](const ExrCompression& each) { return each.name == name; });
    return static_cast<uint8_t>(found - kExrCompressions.begin());
}

const ExrAttribute* ExrPart::find(std::string_view name) const {
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [name](const ExrAttribute& each) { return each.name == name; });
    return found == attributes.end() ? nullptr : &*found;
}

const ExrChannel* ExrPart::channel(std::string_view name) const {
    const auto found = std::find_if(channels.begin(), channels.end(),
                                    [name](const ExrChannel& each) { return each.name == name; });
    return found == channels.end() ? nullptr : &*found;
}

int32_t exrInt(ExrBytes bytes, std::size_t place) {
    uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value |= uint32_t{bytes[place + i]} << 8 * i;
    }
    return static_cast<int32_t>(value);
}

bool exrValueFits(std::string_view type, ExrBytes value) {
    const auto fixed = std::find_if(std::begin(kFixedTypes), std::end(kFixedTypes),
                                    [type](const FixedType& each) { return each.name == type; });
    if (fixed != std::end(kFixedTypes)) {
        return value.size() == fixed->bytes;
    }
    if (type == "stringvector") {
        return isStringVector(value);
    }
    if (type == "floatvector") {
        return value.size() % 4 == 0;
    }
    if (type == "preview") {
        return isPreview(value);
    }
    return !type.empty();
}

std::vector<ExrPart> exrParts(ExrBytes bytes, const std::string& name) {
    return HeaderReader(bytes, name).read();
}

} // namespace kovalune::pictures
