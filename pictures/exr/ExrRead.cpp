#include "pictures/exr/ExrFile.h"

#include "pictures/LackOfMemory.h"
#include "pictures/ReadFailure.h"
#include "pictures/exr/ExrHeader.h"
#include "pictures/exr/ExrMemory.h"
#include "pictures/exr/ExrNotes.h"
#include "pictures/exr/ExrRest.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <ImfFrameBuffer.h>
#include <ImfInputPart.h>
#include <ImfMultiPartInputFile.h>
#include <algorithm>
#include <charconv>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

namespace kovalune::pictures {

namespace {

/// The part to read, and its channels in the order of the picture's samples.
struct Chosen {
    std::size_t part = 0;
    std::string before; ///< the names of the colours, with the layer's
    std::vector<const ExrChannel*> channels;

    bool has(const ExrChannel& channel) const {
        return std::find(channels.begin(), channels.end(), &channel) != channels.end();
    }
};

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

/// How a message names a part; it has a name wherever there are several.
std::string partName(const ExrPart& part, std::size_t index) {
    const ExrAttribute* const name = part.find("name");
    return name != nullptr ? std::string(name->value.begin(), name->value.end()) : std::to_string(index + 1);
}

/// What a file has, which parts of it may be the picture, and which was asked for.
class Choice {
public:
    Choice(const std::vector<ExrPart>& parts, const DecodeOptions& options, const std::string& name)
        : parts_(parts), options_(options), name_(name),
          before_(options.exrLayer && !options.exrLayer->empty() ? *options.exrLayer + "." : "") {}

    Chosen chosen() const {
        Chosen chosen{chosenPart(), before_, {}};
        const ExrPart& part = parts_[chosen.part];
        chosen.channels = coloursOf(part);
        if (const ExrChannel* const alpha = part.channel(before_ + "A")) {
            chosen.channels.push_back(alpha);
        }
        for (const ExrChannel* const channel : chosen.channels) {
            if (channel->type == ExrType::kUint) {
                fail("channel " + text::shown(channel->name) + " is of whole numbers, which are not read");
            }
            if (channel->isSubsampled()) {
                fail("channel " + text::shown(channel->name) + " is subsampled, which is not read");
            }
        }
        return chosen;
    }

private:
    [[noreturn]] void fail(const std::string& reason) const { failReading(name_, reason); }

    bool hasColour(const ExrPart& part, const std::string& before) const {
        constexpr std::string_view kColours[] = {"R", "G", "B", "Y"};
        return std::any_of(std::begin(kColours), std::end(kColours), [&](std::string_view colour) {
            return part.channel(before + std::string(colour)) != nullptr;
        });
    }

    std::size_t chosenPart() const {
        if (options_.exrPart) {
            const std::size_t index = namedPart(*options_.exrPart);
            if (parts_[index].deep) {
                fail("part " + text::shown(partName(parts_[index], index)) +
                     " holds deep data, which are not read");
            }
            if (!hasColour(parts_[index], before_)) {
                failWithoutColours({parts_[index]});
            }
            return index;
        }
        const auto found = std::find_if(parts_.begin(), parts_.end(), [this](const ExrPart& part) {
            return !part.deep && hasColour(part, before_);
        });
        if (found == parts_.end()) {
            if (std::all_of(parts_.begin(), parts_.end(), [](const ExrPart& part) { return part.deep; })) {
                fail("it holds deep data, which are not read");
            }
            failWithoutColours(parts_);
        }
        return static_cast<std::size_t>(found - parts_.begin());
    }

    /// By its name, or else by its number.
    std::size_t namedPart(const std::string& wanted) const {
        std::vector<std::string> names;
        for (std::size_t i = 0; i < parts_.size(); ++i) {
            names.push_back(partName(parts_[i], i));
            if (names.back() == wanted) {
                return i;
            }
        }
        std::size_t number = 0;
        const auto end = std::from_chars(wanted.data(), wanted.data() + wanted.size(), number);
        if (end.ec != std::errc() || end.ptr != wanted.data() + wanted.size() || number < 1 ||
            number > parts_.size()) {
            failChoice("it has no part " + text::inQuotes(wanted) + "; its parts, from 1 to " +
                       std::to_string(parts_.size()) + ", are " + text::shown(listOf(names)));
        }
        return number - 1;
    }

    [[noreturn]] void failChoice(const std::string& reason) const {
        throw text::Failure(text::FailureKind::kUsage,
                            "cannot read " + text::inQuotes(name_) + ": " + reason);
    }

    /// The layers that have colours, each once.
    static std::vector<std::string> layersOf(const std::vector<ExrPart>& parts) {
        std::vector<std::string> layers;
        for (const ExrPart& part : parts) {
            for (const ExrChannel& channel : part.channels) {
                const std::size_t dot = channel.name.rfind('.');
                const std::string end = dot == std::string::npos ? "" : channel.name.substr(dot + 1);
                const std::string layer = channel.name.substr(0, dot);
                if (!part.deep && (end == "R" || end == "G" || end == "B" || end == "Y") &&
                    std::find(layers.begin(), layers.end(), layer) == layers.end()) {
                    layers.push_back(layer);
                }
            }
        }
        return layers;
    }

    [[noreturn]] void failWithoutColours(const std::vector<ExrPart>& parts) const {
        const std::vector<std::string> layers = layersOf(parts);
        if (!before_.empty()) {
            failChoice("it has no layer " + text::inQuotes(*options_.exrLayer) + "; its layers are " +
                       text::shown(listOf(layers)));
        }
        std::vector<std::string> names;
        names.reserve(parts.size());
        for (const ExrPart& part : parts) {
            names.push_back(channelNames(part));
        }
        fail("it has neither channels R, G and B nor Y; its channels are " + text::shown(listOf(names)) +
             (layers.empty() ? "" : "; --exr-layer chooses one of " + text::shown(listOf(layers))));
    }

    /// The colours of a part that has some, or why they are not read.
    std::vector<const ExrChannel*> coloursOf(const ExrPart& part) const {
        std::vector<const ExrChannel*> colours;
        std::vector<std::string> missing;
        for (const char* const colour : {"R", "G", "B"}) {
            if (const ExrChannel* const channel = part.channel(before_ + colour)) {
                colours.push_back(channel);
            } else {
                missing.push_back(before_ + colour);
            }
        }
        if (colours.empty()) {
            if (part.channel(before_ + "RY") != nullptr || part.channel(before_ + "BY") != nullptr) {
                fail("it holds luminance and chroma (channels Y, RY and BY), which are not read");
            }
            return {part.channel(before_ + "Y")};
        }
        if (!missing.empty()) {
            fail("it has no channel " + text::shown(listOf(missing)) + "; its channels are " +
                 text::shown(channelNames(part)));
        }
        return colours;
    }

    const std::vector<ExrPart>& parts_;
    const DecodeOptions& options_;
    const std::string& name_;
    const std::string before_;
};

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

void checkPixels(const ExrPart& part, const std::string& name, const DecodeOptions& options) {
    checkPixelCount(part.dataWindow.width(), part.dataWindow.height(), name, options);
    if (part.tiled) {
        checkBlockPixels(part.tileWidth, part.tileHeight, "its tiles", name, options);
    }
}

/// Fills in what the file has besides, and what of it a new file can have.
void takeRest(Picture& picture, const std::vector<ExrPart>& parts, const Chosen& chosen,
              std::span<const uint8_t> bytes, const std::string& name) {
    ExrRest rest{name, {}, chosen.part, chosen.before, {}, {}};
    for (const ExrChannel& channel : parts[chosen.part].channels) {
        if (chosen.has(channel)) {
            continue;
        }
        if (channel.isSubsampled()) {
            picture.leftOut.push_back("channel " + channel.name);
        } else {
            picture.passedOn.push_back("channel " + channel.name);
            rest.channels.push_back(channel);
        }
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (!parts[i].deep) {
            checkExpansion(parts[i], bytes.size(), name);
            rest.parts.push_back(i);
        }
        if (i != chosen.part) {
            (parts[i].deep ? picture.leftOut : picture.passedOn).push_back("part " + partName(parts[i], i));
        }
    }
    if (!picture.passedOn.empty()) {
        rest.bytes.assign(bytes.begin(), bytes.end());
    }
    if (!picture.passedOn.empty() || !rest.before.empty()) {
        picture.exrRest = std::make_shared<const ExrRest>(std::move(rest));
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

} // namespace

Picture decodeExrWith(std::span<const uint8_t> bytes, const std::string& name, const DecodeOptions& options) {
    if (!beginsAsExr(bytes)) {
        failReading(name, bytes.empty() ? "it is empty" : "it is not an OpenEXR file");
    }
    const std::vector<ExrPart> parts = exrParts(bytes, name);
    const Chosen chosen = Choice(parts, options, name).chosen();
    const ExrPart& part = parts[chosen.part];
    Picture picture;
    picture.format = FileFormat::kExr;
    picture.width = part.dataWindow.width();
    picture.height = part.dataWindow.height();
    checkSize(picture.width, picture.height, name);
    takeRest(picture, parts, chosen, bytes, name);
    checkPixels(part, name, options);
    picture.channels = channelsOf(chosen.channels.size() < 3, chosen.channels.size() % 2 == 0);
    const bool isHalf = std::all_of(chosen.channels.begin(), chosen.channels.end(),
                                    [](const ExrChannel* each) { return each->type == ExrType::kHalf; });
    picture.sampleType = isHalf ? SampleType::kHalf : SampleType::kFloat;
    picture.alphaKind = AlphaKind::kPremultiplied;
    picture.samples.resize(picture.byteCount());
    ExrInput input(bytes);
    try {
        makeExrPool();
        readSamples(input, part, chosen, picture);
        picture.notes = exrNotes(part, picture.sampleType);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& exception) {
        const std::string reason = exrReason(exception.what());
        if (tellsOfMemory(reason)) {
            throw std::bad_alloc();
        }
        failReading(name, input.ended() ? "it is cut short" : "it is damaged: " + reason);
    }
    return picture;
}

} // namespace kovalune::pictures
