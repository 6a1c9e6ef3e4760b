#include "pictures/exr/ExrFile.h"

#include "pictures/LackOfMemory.h"
#include "pictures/exr/ExrHeader.h"
#include "pictures/exr/ExrMemory.h"
#include "pictures/exr/ExrNotes.h"
#include "text/Failure.h"

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfOutputFile.h>
#include <new>

namespace kovalune::pictures {

namespace {

std::vector<const char*> channelNames(Channels channels) {
    std::vector<const char*> names = isGrey(channels) ? std::vector{"Y"} : std::vector{"R", "G", "B"};
    if (hasAlpha(channels)) {
        names.push_back("A");
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

std::vector<uint8_t> encoded(const Picture& picture, const EncodeOptions& options) {
    const std::vector<const char*> names = channelNames(picture.channels);
    const Imf::PixelType type = picture.sampleType == SampleType::kHalf ? Imf::HALF : Imf::FLOAT;
    const std::size_t bytes = bytesPerSample(picture.sampleType);
    Imf::Header header = exrHeader(picture);
    if (!options.compression.empty()) {
        header.compression() = static_cast<Imf::Compression>(exrCompressionNamed(options.compression));
    }
    packQuickly(header);
    Imf::FrameBuffer buffer;
    for (std::size_t i = 0; i < names.size(); ++i) {
        header.channels().insert(names[i], Imf::Channel(type));
        buffer.insert(names[i],
                      Imf::Slice::Make(type, picture.samples.data() + i * bytes, header.dataWindow(),
                                       bytes * names.size(), picture.rowBytes()));
    }
    ExrOutput output;
    {
        Imf::OutputFile file(output, header, 0);
        file.setFrameBuffer(buffer);
        file.writePixels(static_cast<int>(picture.height));
    }
    return output.takeBytes();
}

} // namespace

std::vector<uint8_t> encodeExr(const Picture& picture, const EncodeOptions& options) {
    const auto fail = [](const std::string& reason) {
        throw text::Failure(text::FailureKind::kFile, "cannot make an OpenEXR file: " + reason);
    };
    if (!isFloat(picture.sampleType)) {
        fail("its samples are half or float");
    }
    try {
        return encoded(picture, options);
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
