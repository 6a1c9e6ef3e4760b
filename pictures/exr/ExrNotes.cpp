#include "pictures/exr/ExrNotes.h"

#include "pictures/exr/ExrMemory.h"

#include <ImfAttribute.h>
#include <ImfCompression.h>
#include <ImfOpaqueAttribute.h>
#include <ImfVersion.h>
#include <algorithm>
#include <memory>
#include <string_view>

namespace kovalune::pictures {

namespace {

/// On storage, and on what else is not in the picture: other parts and views, deep data. A preview shows what the
/// picture was before.
constexpr std::string_view kNoNotes[] = {"channels",
                                         "chunkCount",
                                         "compression",
                                         "deepImageState",
                                         "dwaCompressionLevel",
                                         "idManifest",
                                         "lineOrder",
                                         "maxSamplesPerPixel",
                                         "multiView",
                                         "preview",
                                         "tiles",
                                         "type",
                                         "version"};

/// What every header has, of these types.
struct Always {
    std::string_view name;
    std::string_view type;
};
constexpr Always kAlways[] = {{"dataWindow", "box2i"},
                              {"displayWindow", "box2i"},
                              {"pixelAspectRatio", "float"},
                              {"screenWindowCenter", "v2f"},
                              {"screenWindowWidth", "float"}};

bool isNote(std::string_view name) {
    return std::find(std::begin(kNoNotes), std::end(kNoNotes), name) == std::end(kNoNotes);
}

bool keeps(uint8_t compression, SampleType type) {
    return type == SampleType::kHalf ? kExrCompressions[compression].keepsHalf
                                     : kExrCompressions[compression].keepsFloat;
}

Imf::Header plainHeader(uint32_t width, uint32_t height) {
    return {static_cast<int>(width), static_cast<int>(height)};
}

/// The bytes of an attribute in a file.
std::vector<uint8_t> valueOf(const Imf::Attribute& attribute) {
    ExrOutput output;
    attribute.writeValueTo(output, Imf::EXR_VERSION);
    return output.takeBytes();
}

/// Whether every header has it so unless told otherwise.
bool isUsual(const ExrAttribute& attribute, const Imf::Header& plain) {
    const auto always = std::find_if(std::begin(kAlways), std::end(kAlways),
                                     [&](const Always& each) { return each.name == attribute.name; });
    if (always == std::end(kAlways)) {
        return false;
    }
    const std::vector<uint8_t> usual = valueOf(plain[attribute.name]);
    return std::equal(usual.begin(), usual.end(), attribute.value.begin(), attribute.value.end());
}

/// Whether the note may be an attribute of the picture's header.
bool fits(const PictureNote& note, const Picture& picture) {
    constexpr std::size_t kMostName = 255;
    if (note.name.empty() || note.name.size() > kMostName || note.type.size() > kMostName ||
        !isNote(note.name) || !exrValueFits(note.type, note.bytes)) {
        return false;
    }
    const auto always = std::find_if(std::begin(kAlways), std::end(kAlways),
                                     [&](const Always& each) { return each.name == note.name; });
    if (always != std::end(kAlways) && always->type != note.type) {
        return false;
    }
    if (note.name != "dataWindow") {
        return true;
    }
    const ExrBytes value = note.bytes;
    const ExrBox box{exrInt(value, 0), exrInt(value, 4), exrInt(value, 8), exrInt(value, 12)};
    return box.width() == picture.width && box.height() == picture.height;
}

std::unique_ptr<Imf::Attribute> attributeOf(const PictureNote& note) {
    std::unique_ptr<Imf::Attribute> attribute(Imf::Attribute::knownType(note.type.c_str())
                                                  ? Imf::Attribute::newAttribute(note.type.c_str())
                                                  : new Imf::OpaqueAttribute(note.type.c_str()));
    ExrInput input(note.bytes);
    attribute->readValueFrom(input, static_cast<int>(note.bytes.size()), Imf::EXR_VERSION);
    return attribute;
}

} // namespace

std::vector<PictureNote> exrNotes(const ExrPart& part, SampleType type) {
    const Imf::Header plain = plainHeader(part.dataWindow.width(), part.dataWindow.height());
    std::vector<PictureNote> notes;
    for (const ExrAttribute& attribute : part.attributes) {
        const bool isKeptCompression = attribute.name == "compression" && keeps(part.compression, type) &&
                                       part.compression != kUsualExrCompression;
        if ((isNote(attribute.name) && !isUsual(attribute, plain)) || isKeptCompression) {
            notes.push_back(
                {attribute.name, attribute.type, {attribute.value.begin(), attribute.value.end()}});
        }
    }
    return notes;
}

Imf::Header exrHeader(const Picture& picture) {
    Imf::Header header = plainHeader(picture.width, picture.height);
    header.compression() = static_cast<Imf::Compression>(kUsualExrCompression);
    if (picture.format != FileFormat::kExr) {
        return header;
    }
    for (const PictureNote& note : picture.notes) {
        if (fits(note, picture)) {
            header.insert(note.name, *attributeOf(note));
        } else if (note.name == "compression" && note.bytes.size() == 1 &&
                   note.bytes[0] < kExrCompressions.size() && keeps(note.bytes[0], picture.sampleType)) {
            header.compression() = static_cast<Imf::Compression>(note.bytes[0]);
        }
    }
    return header;
}

} // namespace kovalune::pictures
