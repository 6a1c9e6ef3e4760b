#include "pictures/exr/ExrPassOn.h"

#include "pictures/LackOfMemory.h"
#include "pictures/ReadFailure.h"

#include <ImfChannelList.h>
#include <ImfInputPart.h>
#include <ImfOutputPart.h>
#include <ImfPartType.h>
#include <ImfTiledInputPart.h>
#include <ImfTiledOutputPart.h>
#include <algorithm>
#include <new>
#include <stdexcept>

namespace kovalune::pictures {

namespace {

Imf::PixelType typeOf(ExrType type) {
    switch (type) {
    case ExrType::kUint:
        return Imf::UINT;
    case ExrType::kHalf:
        return Imf::HALF;
    default:
        return Imf::FLOAT;
    }
}

std::size_t bytesOf(ExrType type) {
    return type == ExrType::kHalf ? 2 : 4;
}

} // namespace

/// Runs what reads the old file; what the library says of it is that file's failure.
template <class Work>
void ExrPassOn::reading(const Work& work) {
    try {
        work();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& exception) {
        if (tellsOfMemory(exception.what())) {
            throw std::bad_alloc();
        }
        failReading(rest_.file, input_.ended()
                                    ? "it is cut short"
                                    : "what is passed on of it is damaged: " + exrReason(exception.what()));
    }
}

ExrPassOn::ExrPassOn(const ExrRest& rest) : rest_(rest), input_(rest.bytes) {
    static constexpr bool kReconstructs = false;
    reading([this] { file_ = std::make_unique<Imf::MultiPartInputFile>(input_, 0, kReconstructs); });
}

void ExrPassOn::addChannels(Imf::Header& header, Imf::FrameBuffer& buffer) {
    const auto index = static_cast<int>(rest_.part);
    const Imf::Header& old = file_->header(index);
    for (const char* const attribute : {"multiView", "idManifest"}) {
        if (const auto found = old.find(attribute); found != old.end()) {
            header.insert(attribute, found.attribute());
        }
    }
    if (rest_.channels.empty()) {
        return;
    }
    const Imath::Box2i& window = old.dataWindow();
    const auto width = static_cast<std::size_t>(int64_t{window.max.x} - window.min.x + 1);
    const auto height = static_cast<std::size_t>(int64_t{window.max.y} - window.min.y + 1);
    if (header.dataWindow() != window) {
        throw std::invalid_argument("the picture has another size than what is passed on with it");
    }
    Imf::FrameBuffer source;
    for (const ExrChannel& channel : rest_.channels) {
        const std::size_t bytes = bytesOf(channel.type);
        planes_.emplace_back(width * height * bytes);
        source.insert(channel.name, Imf::Slice::Make(typeOf(channel.type), planes_.back().data(), window,
                                                     bytes, width * bytes));
        buffer.insert(channel.name, Imf::Slice::Make(typeOf(channel.type), planes_.back().data(),
                                                     header.dataWindow(), bytes, width * bytes));
        header.channels().insert(channel.name, old.channels()[channel.name.c_str()]);
    }
    reading([&] {
        Imf::InputPart part(*file_, index);
        part.setFrameBuffer(source);
        part.readPixels(window.min.y, window.max.y);
    });
}

std::vector<Imf::Header> ExrPassOn::headersWith(const Imf::Header& picture) const {
    std::vector<Imf::Header> headers;
    for (const std::size_t part : rest_.parts) {
        headers.push_back(part == rest_.part ? picture : file_->header(static_cast<int>(part)));
    }
    Imf::Header& own = headers[static_cast<std::size_t>(place())];
    own.setName(file_->header(static_cast<int>(rest_.part)).name());
    own.setType(Imf::SCANLINEIMAGE);
    return headers;
}

int ExrPassOn::place() const {
    return static_cast<int>(std::find(rest_.parts.begin(), rest_.parts.end(), rest_.part) -
                            rest_.parts.begin());
}

void ExrPassOn::copyParts(Imf::MultiPartOutputFile& file) {
    for (std::size_t i = 0; i < rest_.parts.size(); ++i) {
        if (rest_.parts[i] == rest_.part) {
            continue;
        }
        const auto from = static_cast<int>(rest_.parts[i]), to = static_cast<int>(i);
        reading([&] {
            if (file_->header(from).hasTileDescription()) {
                Imf::TiledInputPart source(*file_, from);
                Imf::TiledOutputPart(file, to).copyPixels(source);
            } else {
                Imf::InputPart source(*file_, from);
                Imf::OutputPart(file, to).copyPixels(source);
            }
        });
    }
}

} // namespace kovalune::pictures
