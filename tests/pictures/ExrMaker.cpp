#include "tests/pictures/ExrMaker.h"

#include "tests/support/TestFolder.h"

#include <Imath/half.h>
#include <ImfChannelList.h>
#include <ImfDeepFrameBuffer.h>
#include <ImfDeepScanLineOutputFile.h>
#include <ImfDeepScanLineOutputPart.h>
#include <ImfFrameBuffer.h>
#include <ImfInputFile.h>
#include <ImfInputPart.h>
#include <ImfMultiPartInputFile.h>
#include <ImfMultiPartOutputFile.h>
#include <ImfOutputFile.h>
#include <ImfOutputPart.h>
#include <ImfPartType.h>
#include <ImfTiledOutputFile.h>
#include <ImfTiledOutputPart.h>
#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <stdexcept>

namespace kovalune::test {

namespace {

Imf::Header headerFor(const ExrSheet& sheet) {
    const Imath::Box2i window({sheet.x, sheet.y}, {sheet.x + sheet.width - 1, sheet.y + sheet.height - 1});
    Imf::Header header(window, window);
    header.compression() = sheet.compression;
    header.lineOrder() = sheet.lineOrder;
    for (const ExrLayer& layer : sheet.layers) {
        header.channels().insert(layer.name, Imf::Channel(layer.type, layer.sampling, layer.sampling));
    }
    if (sheet.tileWidth != 0) {
        header.setTileDescription(Imf::TileDescription(static_cast<unsigned>(sheet.tileWidth),
                                                       static_cast<unsigned>(sheet.tileHeight)));
    }
    if (!sheet.name.empty()) {
        header.setName(sheet.name);
        header.setType(sheet.tileWidth != 0 ? Imf::TILEDIMAGE : Imf::SCANLINEIMAGE);
    }
    if (sheet.moreAttributes) {
        sheet.moreAttributes(header);
    }
    return header;
}

/// The samples of the layers, in planes.
class Planes {
public:
    explicit Planes(const ExrSheet& sheet) {
        for (const ExrLayer& layer : sheet.layers) {
            const std::size_t bytes = layer.type == Imf::HALF ? 2 : 4;
            const auto sampling = static_cast<std::size_t>(layer.sampling);
            const auto width = static_cast<std::size_t>(sheet.width) / sampling;
            const auto height = static_cast<std::size_t>(sheet.height) / sampling;
            std::vector<char>& plane = planes_[layer.name];
            plane.resize(width * height * bytes);
            for (std::size_t i = 0; i < layer.values.size(); ++i) {
                std::memcpy(plane.data() + i * bytes, &layer.values[i], bytes); // low bytes first
            }
            buffer_.insert(layer.name,
                           Imf::Slice::Make(layer.type, plane.data(), Imath::V2i(sheet.x, sheet.y),
                                            sheet.width, sheet.height, bytes, width * bytes, layer.sampling,
                                            layer.sampling));
        }
    }

    const Imf::FrameBuffer& buffer() const { return buffer_; }

private:
    std::map<std::string, std::vector<char>> planes_;
    Imf::FrameBuffer buffer_;
};

template <class TiledFile>
void writeTiles(TiledFile& file, const ExrSheet& sheet) {
    const Planes planes(sheet);
    file.setFrameBuffer(planes.buffer());
    file.writeTiles(0, file.numXTiles() - 1, 0, file.numYTiles() - 1);
}

template <class LineFile>
void writeLines(LineFile& file, const ExrSheet& sheet) {
    const Planes planes(sheet);
    file.setFrameBuffer(planes.buffer());
    file.writePixels(sheet.height);
}

void makeDeep(Imf::Header& header) {
    header.channels() = Imf::ChannelList();
    header.channels().insert("Z", Imf::Channel(Imf::FLOAT));
    header.channels().insert("R", Imf::Channel(Imf::HALF));
    header.setType(Imf::DEEPSCANLINE);
    header.compression() = Imf::ZIPS_COMPRESSION;
}

template <class DeepFile>
void writeDeep(DeepFile& file, int width, int height) {
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    std::vector<unsigned> counts(pixels, 0);
    std::vector<float*> samples(pixels, nullptr);
    const auto stride = static_cast<std::size_t>(width);
    Imf::DeepFrameBuffer buffer;
    buffer.insertSampleCountSlice(Imf::Slice(Imf::UINT, reinterpret_cast<char*>(counts.data()),
                                             sizeof(unsigned), sizeof(unsigned) * stride));
    for (const char* const name : {"R", "Z"}) {
        buffer.insert(name, Imf::DeepSlice(*name == 'R' ? Imf::HALF : Imf::FLOAT,
                                           reinterpret_cast<char*>(samples.data()), sizeof(float*),
                                           sizeof(float*) * stride, sizeof(float)));
    }
    file.setFrameBuffer(buffer);
    file.writePixels(height);
}

} // namespace

ExrLayer randomLayer(const std::string& name, Imf::PixelType type, const ExrSheet& sheet, uint32_t seed) {
    std::mt19937 random(seed);
    ExrLayer layer{name, type, {}};
    for (int i = 0; i < sheet.width * sheet.height; ++i) {
        layer.values.push_back(static_cast<uint32_t>(random()) >> (type == Imf::HALF ? 16 : 0));
    }
    return layer;
}

std::vector<uint32_t> halves(const std::vector<float>& values) {
    std::vector<uint32_t> bits;
    for (const float value : values) {
        bits.push_back(Imath::half(value).bits());
    }
    return bits;
}

std::vector<uint32_t> floats(const std::vector<float>& values) {
    std::vector<uint32_t> bits(values.size());
    std::memcpy(bits.data(), values.data(), 4 * values.size());
    return bits;
}

std::vector<uint8_t> exrOf(const ExrSheet& sheet) {
    const TestFolder folder;
    const std::string file = (folder / "made.exr").string();
    if (sheet.tileWidth != 0) {
        Imf::TiledOutputFile output(file.c_str(), headerFor(sheet), 0);
        writeTiles(output, sheet);
    } else {
        Imf::OutputFile output(file.c_str(), headerFor(sheet), 0);
        writeLines(output, sheet);
    }
    return bytesOf(file);
}

std::vector<uint8_t> exrOf(const std::vector<ExrSheet>& parts) {
    const TestFolder folder;
    const std::string file = (folder / "made.exr").string();
    {
        std::vector<Imf::Header> headers;
        for (const ExrSheet& part : parts) {
            headers.push_back(headerFor(part));
            if (part.deep) {
                makeDeep(headers.back());
            }
        }
        Imf::MultiPartOutputFile output(file.c_str(), headers.data(), static_cast<int>(headers.size()), false,
                                        0);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (parts[i].deep) {
                Imf::DeepScanLineOutputPart part(output, static_cast<int>(i));
                writeDeep(part, parts[i].width, parts[i].height);
            } else if (parts[i].tileWidth != 0) {
                Imf::TiledOutputPart part(output, static_cast<int>(i));
                writeTiles(part, parts[i]);
            } else {
                Imf::OutputPart part(output, static_cast<int>(i));
                writeLines(part, parts[i]);
            }
        }
    }
    return bytesOf(file);
}

std::vector<uint8_t> deepExr(int width, int height) {
    const TestFolder folder;
    const std::string file = (folder / "deep.exr").string();
    {
        Imf::Header header(width, height);
        makeDeep(header);
        Imf::DeepScanLineOutputFile output(file.c_str(), header, 0);
        writeDeep(output, width, height);
    }
    return bytesOf(file);
}

std::size_t valuePlace(const std::vector<uint8_t>& file, const std::string& name, const std::string& type) {
    const std::string key = name + '\0' + type + '\0';
    const auto found = std::search(file.begin(), file.end(), key.begin(), key.end(),
                                   [](uint8_t a, char b) { return a == static_cast<uint8_t>(b); });
    if (found == file.end()) {
        throw std::runtime_error("no attribute " + name);
    }
    return static_cast<std::size_t>(found - file.begin()) + key.size() + 4;
}

std::vector<uint32_t> valuesIn(const std::vector<uint8_t>& file, int part, const std::string& channel) {
    const TestFolder folder;
    writeBytes(folder / "read.exr", file);
    Imf::MultiPartInputFile input((folder / "read.exr").string().c_str(), 0);
    Imf::InputPart source(input, part);
    const Imath::Box2i window = source.header().dataWindow();
    const Imf::PixelType type = source.header().channels()[channel.c_str()].type;
    const std::size_t bytes = type == Imf::HALF ? 2 : 4;
    const auto width = static_cast<std::size_t>(window.max.x - window.min.x + 1);
    const auto height = static_cast<std::size_t>(window.max.y - window.min.y + 1);
    std::vector<char> plane(width * height * bytes);
    Imf::FrameBuffer buffer;
    buffer.insert(channel, Imf::Slice::Make(type, plane.data(), window, bytes, width * bytes));
    source.setFrameBuffer(buffer);
    source.readPixels(window.min.y, window.max.y);
    std::vector<uint32_t> values(width * height);
    for (std::size_t i = 0; i < values.size(); ++i) {
        std::memcpy(&values[i], plane.data() + i * bytes, bytes); // low bytes first
    }
    return values;
}

std::vector<Imf::Header> headersOf(const std::vector<uint8_t>& file) {
    const TestFolder folder;
    writeBytes(folder / "read.exr", file);
    const Imf::MultiPartInputFile input((folder / "read.exr").string().c_str(), 0);
    std::vector<Imf::Header> headers;
    for (int part = 0; part < input.parts(); ++part) {
        headers.push_back(input.header(part));
    }
    return headers;
}

Imf::Header headerOf(const std::vector<uint8_t>& file) {
    const TestFolder folder;
    writeBytes(folder / "read.exr", file);
    return Imf::InputFile((folder / "read.exr").string().c_str(), 0).header();
}

} // namespace kovalune::test
