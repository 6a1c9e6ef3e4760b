#include "adapters/web/PngBytes.h"

#include "pictures/ReadFailure.h"
#include "pictures/png/PngChunks.h"
#include "text/Failure.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <limits>
#include <memory>
#include <string_view>

#define STBI_ONLY_PNG
#include "pictures/StbLoad.h"
#include "pictures/StbSave.h"

namespace kovalune::web {

namespace {

using pictures::Channels;
using pictures::SampleType;
using Bytes = std::span<const uint8_t>;

constexpr std::array<uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

uint32_t numberAt(Bytes bytes, std::size_t place) {
    return uint32_t{bytes[place]} << 24 | uint32_t{bytes[place + 1]} << 16 | uint32_t{bytes[place + 2]} << 8 |
           bytes[place + 3];
}

void append(std::vector<uint8_t>& bytes, uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<uint8_t>(number >> shift));
    }
}

/// Of CRC-32 with the polynomial of ISO 3309, byte by byte.
constexpr std::array<uint32_t, 256> checkTable() {
    std::array<uint32_t, 256> table{};
    for (uint32_t byte = 0; byte < table.size(); ++byte) {
        uint32_t rest = byte;
        for (int bit = 0; bit < 8; ++bit) {
            rest = rest >> 1 ^ ((rest & 1U) != 0 ? 0xedb88320U : 0U);
        }
        table[byte] = rest;
    }
    return table;
}

constexpr std::array<uint32_t, 256> kCheckTable = checkTable();

uint32_t checksum(Bytes bytes) {
    uint32_t rest = 0xffffffffU;
    for (const uint8_t byte : bytes) {
        rest = kCheckTable[(rest ^ byte) & 0xffU] ^ rest >> 8;
    }
    return ~rest;
}

/// What the first chunk says.
struct Header {
    uint32_t width = 0;
    uint32_t height = 0;
    uint8_t depth = 0;
    uint8_t colorType = 0;
};

struct Chunk {
    std::string_view name;
    Bytes bytes;
    bool isSound = true; ///< its checksum is right
};

/// A file chunk by chunk.
class ChunkReader {
public:
    ChunkReader(Bytes file, const std::string& name) : rest_(file.subspan(kSignature.size())), name_(name) {}

    /// Throws Failure where the file ends before it, or its checksum is another and pixels depend on it.
    Chunk next() {
        constexpr std::size_t kAround = 12; // length, name and checksum
        if (rest_.size() < kAround || numberAt(rest_, 0) > rest_.size() - kAround) {
            pictures::failReading(name_, "it is cut short");
        }
        const std::size_t length = numberAt(rest_, 0);
        const Bytes checked = rest_.subspan(4, 4 + length);
        Chunk chunk = {{static_cast<const char*>(static_cast<const void*>(checked.data())), 4},
                       checked.subspan(4),
                       checksum(checked) == numberAt(rest_, 8 + length)};
        constexpr char kLowerCase = 0x20; // in the first letter of what a reader may do without
        if (!chunk.isSound && ((chunk.name.front() & kLowerCase) == 0 || chunk.name == "tRNS")) {
            pictures::failReading(name_, "it is damaged: the checksum of its chunk " +
                                             std::string(chunk.name) + " is another");
        }
        rest_ = rest_.subspan(kAround + length);
        return chunk;
    }

private:
    Bytes rest_;
    const std::string& name_;
};

Header headerOf(const Chunk& chunk, const std::string& name) {
    constexpr std::size_t kHeaderBytes = 13;
    if (chunk.name != "IHDR" || chunk.bytes.size() != kHeaderBytes) {
        pictures::failReading(name, "it is damaged: it does not begin with its header");
    }
    return {numberAt(chunk.bytes, 0), numberAt(chunk.bytes, 4), chunk.bytes[8], chunk.bytes[9]};
}

/// One compressed byte stands for at most 1032 others.
bool canHold(std::size_t fileBytes, const Header& header) {
    constexpr uint64_t kMostExpansion = 1032;
    constexpr std::array<uint64_t, 7> kChannels = {1, 1, 3, 1, 2, 1, 4}; // by the type of colour
    const uint64_t bits = kChannels[std::min<std::size_t>(header.colorType, 6)] * header.depth;
    return (header.width * bits + 7) / 8 * header.height <= fileBytes * kMostExpansion;
}

struct FreeSamples {
    void operator()(void* samples) const noexcept { stbi_image_free(samples); }
};

/// Samples of 8 or 16 bits in this machine's order, palettes and transparent colours resolved.
void loadSamples(Bytes bytes, const std::string& name, pictures::Picture& picture) {
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        pictures::failReading(name, "it is longer than 2 GiB");
    }
    int width = 0;
    int height = 0;
    int channels = 0;
    const auto length = static_cast<int>(bytes.size());
    void* const loaded = picture.sampleType == SampleType::kUint16
                             ? static_cast<void*>(stbi_load_16_from_memory(bytes.data(), length, &width,
                                                                           &height, &channels, 0))
                             : stbi_load_from_memory(bytes.data(), length, &width, &height, &channels, 0);
    const std::unique_ptr<void, FreeSamples> samples(loaded);
    if (!samples) {
        if (std::string_view(stbi_failure_reason()) == "outofmem") {
            throw std::bad_alloc();
        }
        pictures::failReading(name, "it is damaged: " + std::string(stbi_failure_reason()));
    }
    picture.channels = pictures::channelsOf(channels <= 2, channels % 2 == 0);
    const auto* const first = static_cast<const uint8_t*>(samples.get());
    picture.samples.assign(first, first + picture.byteCount());
}

/// Samples of several bytes have the first of them first.
void turnBytes(std::vector<uint8_t>& samples) {
    if constexpr (std::endian::native == std::endian::little) {
        for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
            std::swap(samples[i], samples[i + 1]);
        }
    }
}

/// Each row after a byte that says that it holds the differences to the row above, where a drawing has most zeros.
std::vector<uint8_t> filteredRows(const pictures::Picture& picture) {
    constexpr uint8_t kUp = 2;
    std::vector<uint8_t> samples = picture.samples;
    if (picture.sampleType == SampleType::kUint16) {
        turnBytes(samples);
    }
    const std::size_t rowBytes = picture.rowBytes();
    std::vector<uint8_t> rows;
    rows.reserve(samples.size() + picture.height);
    for (std::size_t y = 0; y < picture.height; ++y) {
        rows.push_back(kUp);
        const uint8_t* const row = samples.data() + y * rowBytes;
        for (std::size_t x = 0; x < rowBytes; ++x) {
            const uint8_t above = y == 0 ? uint8_t{0} : *(row + x - rowBytes);
            rows.push_back(static_cast<uint8_t>(row[x] - above));
        }
    }
    return rows;
}

struct FreePacked {
    void operator()(uint8_t* packed) const noexcept { STBIW_FREE(packed); }
};

void appendChunk(std::vector<uint8_t>& file, std::string_view name, Bytes bytes) {
    append(file, static_cast<uint32_t>(bytes.size()));
    const std::size_t checkedFrom = file.size();
    file.insert(file.end(), name.begin(), name.end());
    file.insert(file.end(), bytes.begin(), bytes.end());
    append(file, checksum(Bytes(file).subspan(checkedFrom)));
}

void appendSamples(std::vector<uint8_t>& file, const pictures::Picture& picture) {
    constexpr int kEffort = 8; // what the packer takes for usual
    std::vector<uint8_t> rows = filteredRows(picture);
    if (rows.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot make a PNG file: the picture takes 2 GiB or more");
    }
    int length = 0;
    const std::unique_ptr<uint8_t, FreePacked> packed(
        stbi_zlib_compress(rows.data(), static_cast<int>(rows.size()), &length, kEffort));
    if (!packed) {
        throw std::bad_alloc();
    }
    appendChunk(file, "IDAT", {packed.get(), static_cast<std::size_t>(length)});
}

uint8_t colorTypeOf(Channels channels) {
    switch (channels) {
    case Channels::kGrey:
        return 0;
    case Channels::kGreyAlpha:
        return 4;
    case Channels::kRgb:
        return 2;
    default:
        return 6;
    }
}

} // namespace

bool beginsAsPng(Bytes bytes) {
    return bytes.size() >= kSignature.size() &&
           std::equal(kSignature.begin(), kSignature.end(), bytes.begin());
}

std::optional<PngForm> pngForm(Bytes bytes) {
    constexpr std::size_t kHeaderEnd = 29;
    if (!beginsAsPng(bytes) || bytes.size() < kHeaderEnd) {
        return std::nullopt;
    }
    return PngForm{numberAt(bytes, 16), numberAt(bytes, 20),
                   bytes[24] == 16 ? SampleType::kUint16 : SampleType::kUint8};
}

pictures::Picture decodePng(Bytes bytes, const std::string& name, const pictures::DecodeOptions& options) {
    ChunkReader reader(bytes, name);
    const Header header = headerOf(reader.next(), name);
    pictures::checkSize(header.width, header.height, name);
    if (!canHold(bytes.size(), header)) {
        pictures::failReading(name, "it is cut short: " + pictures::sizeText(header.width, header.height) +
                                        " need more bytes");
    }
    pictures::checkPixelCount(header.width, header.height, name, options);
    pictures::PngChunks kept;
    bool isBeforeSamples = true;
    for (Chunk chunk = reader.next(); chunk.name != "IEND"; chunk = reader.next()) {
        isBeforeSamples = isBeforeSamples && chunk.name != "IDAT";
        if (chunk.isSound && !kept.take(chunk.name, chunk.bytes, isBeforeSamples)) {
            throw std::bad_alloc();
        }
    }
    pictures::Picture picture;
    picture.format = pictures::FileFormat::kPng;
    picture.width = header.width;
    picture.height = header.height;
    picture.sampleType = header.depth == 16 ? SampleType::kUint16 : SampleType::kUint8;
    loadSamples(bytes, name, picture);
    picture.notes = kept.takeNotes();
    return picture;
}

std::vector<uint8_t> encodePng(const pictures::Picture& picture) {
    std::vector<uint8_t> file(kSignature.begin(), kSignature.end());
    std::vector<uint8_t> header;
    append(header, picture.width);
    append(header, picture.height);
    header.push_back(static_cast<uint8_t>(8 * pictures::bytesPerSample(picture.sampleType)));
    header.push_back(colorTypeOf(picture.channels));
    header.insert(header.end(), 3, 0); // the packing and the filters that there are, and no interlacing
    appendChunk(file, "IHDR", header);
    for (const pictures::PictureNote& note : picture.notes) {
        appendChunk(file, note.name, note.bytes);
    }
    appendSamples(file, picture);
    appendChunk(file, "IEND", {});
    return file;
}

} // namespace kovalune::web
