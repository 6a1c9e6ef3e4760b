#include "pictures/exr/ExrFile.h"

#include "pictures/LackOfMemory.h"
#include "pictures/ReadFailure.h"
#include "pictures/exr/ExrHeader.h"
#include "pictures/exr/ExrMemory.h"
#include "pictures/exr/ExrNotes.h"
#include "text/MessageText.h"

#include <ImfFrameBuffer.h>
#include <ImfInputPart.h>
#include <ImfMultiPartInputFile.h>
#include <algorithm>
#include <array>
#include <new>

namespace kovalune::pictures {

namespace {

/// The part to read, and its channels in the order of the picture's samples.
struct Chosen {
    std::size_t part = 0;
    std::vector<const ExrChannel*> channels;
};

bool hasColour(const ExrPart& part) {
    constexpr std::string_view kColours[] = {"R", "G", "B", "Y"};
    return std::any_of(std::begin(kColours), std::end(kColours),
                       [&part](std::string_view name) { return part.channel(name) != nullptr; });
}

std::string listOf(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text.empty() ? "none" : text;
}

std::string channelNames(const ExrPart& part) {
    std::vector<std::string> names;
    for (const ExrChannel& channel : part.channels) {
        names.push_back(channel.name);
    }
    return listOf(names);
}

/// The colours of a part that has some, or why they are not read.
std::vector<const ExrChannel*> coloursOf(const ExrPart& part, const std::string& name) {
    std::vector<const ExrChannel*> colours;
    std::vector<std::string> missing;
    for (const char* const colour : {"R", "G", "B"}) {
        if (const ExrChannel* const channel = part.channel(colour)) {
            colours.push_back(channel);
        } else {
            missing.emplace_back(colour);
        }
    }
    if (colours.empty()) {
        if (part.channel("RY") != nullptr || part.channel("BY") != nullptr) {
            failReading(name, "it holds luminance and chroma (channels Y, RY and BY), which are not read");
        }
        return {part.channel("Y")};
    }
    if (!missing.empty()) {
        failReading(name, "it has no channel " + listOf(missing) + "; its channels are " +
                              text::shown(channelNames(part)));
    }
    return colours;
}

Chosen chosenOf(const std::vector<ExrPart>& parts, const std::string& name) {
    const auto found = std::find_if(parts.begin(), parts.end(),
                                    [](const ExrPart& part) { return !part.deep && hasColour(part); });
    if (found == parts.end()) {
        if (std::all_of(parts.begin(), parts.end(), [](const ExrPart& part) { return part.deep; })) {
            failReading(name, "it holds deep data, which are not read");
        }
        std::vector<std::string> names;
        names.reserve(parts.size());
        for (const ExrPart& part : parts) {
            names.push_back(channelNames(part));
        }
        failReading(name, "it has neither channels R, G and B nor Y; its channels are " +
                              text::shown(listOf(names)));
    }
    Chosen chosen{static_cast<std::size_t>(found - parts.begin()), coloursOf(*found, name)};
    if (const ExrChannel* const alpha = found->channel("A")) {
        chosen.channels.push_back(alpha);
    }
    for (const ExrChannel* const channel : chosen.channels) {
        if (channel->type == ExrType::kUint) {
            failReading(name, "channel " + channel->name + " is of whole numbers, which are not read");
        }
        if (channel->isSubsampled()) {
            failReading(name, "channel " + channel->name + " is subsampled, which is not read");
        }
    }
    return chosen;
}

/// How a message names a part; it has a name wherever there are several.
std::string partName(const ExrPart& part, std::size_t index) {
    const ExrAttribute* const name = part.find("name");
    return "part " + (name != nullptr ? std::string(name->value.begin(), name->value.end())
                                      : std::to_string(index + 1));
}

std::vector<std::string> leftOutOf(const std::vector<ExrPart>& parts, const Chosen& chosen) {
    std::vector<std::string> names;
    for (const ExrChannel& channel : parts[chosen.part].channels) {
        if (std::find(chosen.channels.begin(), chosen.channels.end(), &channel) == chosen.channels.end()) {
            names.push_back("channel " + channel.name);
        }
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i != chosen.part) {
            names.push_back(partName(parts[i], i));
        }
    }
    return names;
}

/// Refuses a size that so few bytes cannot hold, before memory is taken for it.
void checkExpansion(const ExrPart& part, std::size_t fileBytes, const std::string& name) {
    const uint64_t width = part.dataWindow.width(), height = part.dataWindow.height();
    const uint64_t most = uint64_t{fileBytes} * kExrCompressions[part.compression].mostExpansion;
    uint64_t needed = 0;
    for (const ExrChannel& channel : part.channels) {
        needed += width / static_cast<uint32_t>(channel.xSampling) *
                  (height / static_cast<uint32_t>(channel.ySampling)) *
                  (channel.type == ExrType::kHalf ? 2 : 4);
    }
    if (needed > most) {
        failReading(name, "it is cut short: " + sizeText(part.dataWindow.width(), part.dataWindow.height()) +
                              " need more bytes");
    }
}

void readSamples(Imf::IStream& input, const ExrPart& part, const Chosen& chosen, Picture& picture) {
    const bool reconstructs = false;
    Imf::MultiPartInputFile file(input, 0, reconstructs);
    Imf::InputPart source(file, static_cast<int>(chosen.part));
    const ExrBox& box = part.dataWindow;
    const Imath::Box2i window({box.xMin, box.yMin}, {box.xMax, box.yMax});
    const Imf::PixelType type = picture.sampleType == SampleType::kHalf ? Imf::HALF : Imf::FLOAT;
    const std::size_t bytes = bytesPerSample(picture.sampleType);
    Imf::FrameBuffer buffer;
    for (std::size_t i = 0; i < chosen.channels.size(); ++i) {
        buffer.insert(chosen.channels[i]->name,
                      Imf::Slice::Make(type, picture.samples.data() + i * bytes, window,
                                       bytes * chosen.channels.size(), picture.rowBytes()));
    }
    source.setFrameBuffer(buffer);
    source.readPixels(box.yMin, box.yMax);
}

/// What the library says, without the file's name that it begins with.
std::string reasonOf(const std::exception& exception) {
    const std::string text = exception.what();
    const std::string before = "\"" + std::string(kExrStreamName) + "\". ";
    const std::size_t at = text.rfind(before);
    return at == std::string::npos ? text : text.substr(at + before.size());
}

} // namespace

Picture decodeExr(std::span<const uint8_t> bytes, const std::string& name) {
    if (!beginsAsExr(bytes)) {
        failReading(name, bytes.empty() ? "it is empty" : "it is not an OpenEXR file");
    }
    const std::vector<ExrPart> parts = exrParts(bytes, name);
    const Chosen chosen = chosenOf(parts, name);
    const ExrPart& part = parts[chosen.part];
    Picture picture;
    picture.format = FileFormat::kExr;
    picture.width = part.dataWindow.width();
    picture.height = part.dataWindow.height();
    checkSize(picture.width, picture.height, name);
    checkExpansion(part, bytes.size(), name);
    picture.channels = channelsOf(chosen.channels.size() < 3, chosen.channels.size() % 2 == 0);
    const bool isHalf = std::all_of(chosen.channels.begin(), chosen.channels.end(),
                                    [](const ExrChannel* each) { return each->type == ExrType::kHalf; });
    picture.sampleType = isHalf ? SampleType::kHalf : SampleType::kFloat;
    picture.alphaKind = AlphaKind::kPremultiplied;
    picture.leftOut = leftOutOf(parts, chosen);
    picture.samples.resize(picture.byteCount());
    ExrInput input(bytes);
    try {
        readSamples(input, part, chosen, picture);
        picture.notes = exrNotes(part, picture.sampleType);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& exception) {
        const std::string reason = reasonOf(exception);
        if (tellsOfMemory(reason)) {
            throw std::bad_alloc();
        }
        failReading(name, input.ended() ? "it is cut short" : "it is damaged: " + reason);
    }
    return picture;
}

} // namespace kovalune::pictures
