#include "pictures/exr/ExrFile.h"

#include "pictures/LackOfMemory.h"
#include "pictures/exr/ExrHeader.h"
#include "pictures/exr/ExrMemory.h"
#include "pictures/exr/ExrNotes.h"
#include "pictures/exr/ExrPassOn.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfMultiPartInputFile.h>
#include <ImfMultiPartOutputFile.h>
#include <ImfOutputFile.h>
#include <ImfOutputPart.h>
#include <algorithm>
#include <new>
#include <optional>

namespace kovalune::pictures {

namespace {

std::vector<std::string> channelNames(const Picture& picture) {
    const std::string before = picture.exrRest ? picture.exrRest->before : "";
    std::vector<std::string> names;
    for (const char* const colour :
         isGrey(picture.channels) ? std::vector{"Y"} : std::vector{"R", "G", "B"}) {
        names.push_back(before + colour);
    }
    if (hasAlpha(picture.channels)) {
        names.push_back(before + "A");
    }
    return names;
}

/// The highest level that takes the first match that it finds: drawings are a third larger than at the next one, and written
/// in half the time. Older libraries have no choice.
template <class Header>
void packQuickly(Header& header) {
    constexpr int kLevel = 3;
    if constexpr (requires { header.zipCompressionLevel() = kLevel; }) {
        header.zipCompressionLevel() = kLevel;
    }
}

bool keeps(const ExrCompression& compression, const ExrChannel& channel) {
    return channel.type == ExrType::kFloat ? compression.keepsFloat : compression.keepsHalf;
}

/// None of the channels that are passed on may lose anything.
void setCompression(Imf::Header& header, const ExrRest* rest, const EncodeOptions& options) {
    if (!options.compression.empty()) {
        header.compression() = static_cast<Imf::Compression>(exrCompressionNamed(options.compression));
    }
    const ExrCompression& compression = kExrCompressions[static_cast<std::size_t>(header.compression())];
    if (rest != nullptr && options.compression.empty() &&
        !std::all_of(rest->channels.begin(), rest->channels.end(),
                     [&compression](const ExrChannel& each) { return keeps(compression, each); })) {
        header.compression() = static_cast<Imf::Compression>(kUsualExrCompression);
    }
    packQuickly(header);
}

/// Compressions that lose something do so by the user's word, which is given for the picture alone.
void checkLoss(const ExrRest* rest, const EncodeOptions& options) {
    if (rest == nullptr || rest->channels.empty() || options.compression.empty() ||
        kExrCompressions[exrCompressionNamed(options.compression)].keepsFloat) {
        return;
    }
    throw text::Failure(text::FailureKind::kUsage,
                        "cannot write with --compression " + options.compression +
                            ", which loses something: channel " + text::shown(rest->channels[0].name) +
                            " of " + text::inQuotes(rest->file) +
                            " is passed on as it is; none, rle, zips, zip or piz lose nothing");
}

/// What the file's other channels and parts come from; null where there is nothing.
const ExrRest* restOf(const Picture& picture) {
    const bool isOfExr = picture.format == FileFormat::kExr && picture.exrRest;
    return isOfExr && !picture.exrRest->bytes.empty() ? picture.exrRest.get() : nullptr;
}

/// The library may keep a task's exception to itself, and the file would lack that task's lines.
void checkWhole(const std::vector<uint8_t>& bytes) {
    ExrInput input(bytes);
    Imf::MultiPartInputFile file(input, 0, false);
    for (int part = 0; part < file.parts(); ++part) {
        if (!file.partComplete(part)) {
            throw std::bad_alloc();
        }
    }
}

std::vector<uint8_t> encoded(const Picture& picture, const EncodeOptions& options) {
    const std::vector<std::string> names = channelNames(picture);
    const Imf::PixelType type = picture.sampleType == SampleType::kHalf ? Imf::HALF : Imf::FLOAT;
    const std::size_t bytes = bytesPerSample(picture.sampleType);
    const ExrRest* const rest = restOf(picture);
    Imf::Header header = exrHeader(picture);
    setCompression(header, rest, options);
    Imf::FrameBuffer buffer;
    for (std::size_t i = 0; i < names.size(); ++i) {
        header.channels().insert(names[i], Imf::Channel(type));
        buffer.insert(names[i],
                      Imf::Slice::Make(type, picture.samples.data() + i * bytes, header.dataWindow(),
                                       bytes * names.size(), picture.rowBytes()));
    }
    std::optional<ExrPassOn> passOn;
    if (rest != nullptr) {
        passOn.emplace(*rest);
        passOn->addChannels(header, buffer);
    }
    const int height = static_cast<int>(picture.height);
    ExrOutput output;
    if (rest != nullptr && rest->parts.size() > 1) {
        const std::vector<Imf::Header> headers = passOn->headersWith(header);
        Imf::MultiPartOutputFile file(output, headers.data(), static_cast<int>(headers.size()), false, 0);
        Imf::OutputPart part(file, passOn->place());
        part.setFrameBuffer(buffer);
        part.writePixels(height);
        passOn->copyParts(file);
    } else {
        Imf::OutputFile file(output, header, 0);
        file.setFrameBuffer(buffer);
        file.writePixels(height);
    }
    std::vector<uint8_t> written = output.takeBytes();
    checkWhole(written);
    return written;
}

} // namespace

std::vector<uint8_t> encodeExr(const Picture& picture, const EncodeOptions& options) {
    const auto fail = [](const std::string& reason) {
        throw text::Failure(text::FailureKind::kFile, "cannot make an OpenEXR file: " + reason);
    };
    if (!isFloat(picture.sampleType)) {
        fail("its samples are half or float");
    }
    checkLoss(restOf(picture), options);
    try {
        makeExrPool();
        return encoded(picture, options);
    } catch (const text::Failure&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& exception) {
        if (tellsOfMemory(exception.what())) {
            throw std::bad_alloc();
        }
        fail(exception.what());
    }
    return {};
}

} // namespace kovalune::pictures
