#include "pictures/tiff/TiffFile.h"

#include "pictures/ReadFailure.h"
#include "pictures/tiff/TiffDirectory.h"
#include "pictures/tiff/TiffForm.h"
#include "pictures/tiff/TiffMemory.h"
#include "pictures/tiff/TiffNotes.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace kovalune::pictures {

namespace {

/// Red, green and blue of each index.
using Palette = std::array<std::vector<uint16_t>, 3>;

[[noreturn]] void failDamaged(const TiffMemory& memory, const std::string& name) {
    if (memory.outOfMemory) {
        throw std::bad_alloc();
    }
    const char* const text = memory.error[0] != 0 ? memory.error : memory.warning;
    failReading(name, memory.ended ? "it is cut short" : "it is damaged: " + std::string(text));
}

/// A strip or tile, as much of it as is in the picture.
struct Block {
    uint32_t index = 0;
    unsigned plane = 0;
    uint32_t x = 0, y = 0, width = 0, height = 0;
    uint32_t rows = 0; ///< those that the file has
};

template <class Use>
void forEachBlock(const TiffForm& form, Use use) {
    uint32_t index = 0;
    for (unsigned plane = 0; plane < (form.planes ? form.samples : 1); ++plane) {
        for (uint64_t y = 0; y < form.height; y += form.blockHeight) {
            for (uint64_t x = 0; x < form.width; x += form.blockWidth) {
                Block block{index++, plane, static_cast<uint32_t>(x), static_cast<uint32_t>(y)};
                block.width = std::min(form.blockWidth, form.width - block.x);
                block.height = std::min(form.blockHeight, form.height - block.y);
                block.rows = form.tiled ? form.blockHeight : block.height;
                use(block);
            }
        }
    }
}

uint64_t blockRowBytes(const TiffForm& form) {
    return (uint64_t{form.blockWidth} * form.samplesOfABlock() * form.bits + 7) / 8;
}

/// Refuses a block that is larger than its compressed bytes in the file can be, before memory is taken for it.
void checkBlocks(TIFF* tiff, const TiffForm& form, std::size_t fileBytes, const std::string& name) {
    const uint64_t rowBytes = blockRowBytes(form);
    const uint64_t expansion =
        form.compression->mostExpansion != 0 ? form.compression->mostExpansion : 8 * rowBytes;
    forEachBlock(form, [&](const Block& block) {
        const uint64_t offset = TIFFGetStrileOffset(tiff, block.index);
        const uint64_t count = TIFFGetStrileByteCount(tiff, block.index);
        const uint64_t inFile = offset < fileBytes ? std::min(count, fileBytes - offset) : 0;
        if (inFile == 0 || rowBytes > inFile * expansion / block.rows) {
            failReading(name, "it is cut short: " + sizeText(form.width, form.height) + " need more bytes");
        }
    });
}

/// Whether the tables hold 8-bit colours: repeated in both bytes, alone in the high or, by an old mistake, in the
/// low one. Such colours are made the plain numbers.
bool narrow(Palette& palette) {
    const auto all = [&palette](auto holds) {
        return std::all_of(palette.begin(), palette.end(), [&holds](const std::vector<uint16_t>& table) {
            return std::all_of(table.begin(), table.end(), holds);
        });
    };
    if (all([](uint16_t value) { return value < 256; })) {
        return true;
    }
    if (!all([](uint16_t value) { return value % 257 == 0; }) &&
        !all([](uint16_t value) { return value % 256 == 0; })) {
        return false;
    }
    for (std::vector<uint16_t>& table : palette) {
        std::transform(table.begin(), table.end(), table.begin(),
                       [](uint16_t value) { return static_cast<uint16_t>(value >> 8); });
    }
    return true;
}

Palette paletteOf(TIFF* tiff, const TiffForm& form, const std::string& name) {
    std::array<uint16_t*, 3> tables{};
    if (TIFFGetField(tiff, TIFFTAG_COLORMAP, &tables[0], &tables[1], &tables[2]) == 0) {
        failReading(name, "it is damaged: its palette is missing");
    }
    Palette palette;
    for (std::size_t i = 0; i < 3; ++i) {
        palette[i].assign(tables[i], tables[i] + (std::size_t{1} << form.bits));
    }
    return palette;
}

/// Samples of less than a byte, times `factor`.
void unpack(const uint8_t* packed, unsigned bits, unsigned factor, std::span<uint8_t> row) {
    const unsigned mask = (1U << bits) - 1;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::size_t bit = i * bits;
        row[i] = static_cast<uint8_t>((packed[bit / 8] >> (8 - bits - bit % 8) & mask) * factor);
    }
}

/// One page being decoded.
class PageReader {
public:
    PageReader(TIFF* tiff, TiffMemory& memory, const TiffForm& form, const std::string& name)
        : tiff_(tiff), memory_(memory), form_(form), name_(name) {
        if (form.colours == TiffColours::kPalette) {
            palette_ = paletteOf(tiff, form, name);
        }
    }

    Picture read() {
        picture_.format = FileFormat::kTiff;
        picture_.width = form_.width;
        picture_.height = form_.height;
        picture_.sampleType = form_.sampleType;
        picture_.alphaKind = form_.alphaKind;
        const bool isPalette = form_.colours == TiffColours::kPalette;
        picture_.channels = channelsOf(form_.colourSamples() == 1 && !isPalette, form_.alpha.has_value());
        if (isPalette && !narrow(palette_)) {
            picture_.sampleType = SampleType::kUint16;
        }
        picture_.leftOut = form_.leftOut;
        picture_.samples.resize(picture_.byteCount());
        block_.resize(static_cast<std::size_t>(blockRowBytes(form_)) * form_.blockHeight);
        forEachBlock(form_, [this](const Block& block) {
            decode(block);
            place(block);
        });
        if (form_.colours == TiffColours::kMinIsWhite) {
            turnRound();
        }
        return std::move(picture_);
    }

private:
    /// Into block_. Errors that the library goes on from leave no whole picture either.
    void decode(const Block& block) {
        const auto size = static_cast<tmsize_t>(blockRowBytes(form_) * block.rows);
        memory_.clear();
        const tmsize_t taken = form_.tiled ? TIFFReadEncodedTile(tiff_, block.index, block_.data(), size)
                                           : TIFFReadEncodedStrip(tiff_, block.index, block_.data(), size);
        const bool warned = form_.compression->goesOn && memory_.warning[0] != 0;
        if (taken != size || memory_.error[0] != 0 || warned) {
            failDamaged(memory_, name_);
        }
    }

    void place(const Block& block) {
        const auto rowBytes = static_cast<std::size_t>(blockRowBytes(form_));
        for (uint32_t row = 0; row < block.height; ++row) {
            const uint8_t* source = block_.data() + row * rowBytes;
            if (form_.bits < 8) {
                const bool asIndices = form_.colours == TiffColours::kPalette;
                unpacked_.resize(std::size_t{block.width} * form_.samplesOfABlock());
                unpack(source, form_.bits, asIndices ? 1 : 255 / ((1U << form_.bits) - 1), unpacked_);
                source = unpacked_.data();
            }
            const std::size_t pixel = (std::size_t{block.y} + row) * form_.width + block.x;
            if (form_.colours == TiffColours::kPalette) {
                placeIndices(block, source, pixel);
            } else if (bytesPerSample(form_.sampleType) == 1) {
                placeSamples<uint8_t>(block, source, pixel);
            } else if (bytesPerSample(form_.sampleType) == 2) {
                placeSamples<uint16_t>(block, source, pixel);
            } else {
                placeSamples<uint32_t>(block, source, pixel);
            }
        }
    }

    /// From a row of a block to the picture's pixels from `pixel` on.
    template <class Sample>
    void placeSamples(const Block& block, const uint8_t* source, std::size_t pixel) {
        const std::size_t channels = channelCount(picture_.channels);
        const std::size_t stride = form_.samplesOfABlock();
        if (stride == channels && !form_.planes && (!form_.alpha || *form_.alpha == channels - 1)) {
            std::memcpy(picture_.samples.data() + pixel * channels * sizeof(Sample), source,
                        block.width * channels * sizeof(Sample));
            return;
        }
        for (std::size_t channel = 0; channel < channels; ++channel) {
            const std::size_t sample = channel < form_.colourSamples() ? channel : *form_.alpha;
            if (form_.planes && sample != block.plane) {
                continue;
            }
            const uint8_t* from = source + (form_.planes ? 0 : sample) * sizeof(Sample);
            uint8_t* to = picture_.samples.data() + (pixel * channels + channel) * sizeof(Sample);
            for (uint32_t x = 0; x < block.width; ++x) {
                std::memcpy(to, from, sizeof(Sample));
                from += stride * sizeof(Sample);
                to += channels * sizeof(Sample);
            }
        }
    }

    void placeIndices(const Block& block, const uint8_t* source, std::size_t pixel) {
        const std::size_t channels = channelCount(picture_.channels);
        const std::size_t stride = form_.samplesOfABlock();
        const bool isWide = picture_.sampleType == SampleType::kUint16;
        const auto set = [&](std::size_t index, unsigned value) {
            if (isWide) {
                picture_.setSample(index, static_cast<uint16_t>(value));
            } else {
                picture_.setSample(index, static_cast<uint8_t>(value));
            }
        };
        for (std::size_t x = 0; x < block.width; ++x) {
            const std::size_t first = (pixel + x) * channels;
            if (!form_.planes || block.plane == 0) {
                for (std::size_t i = 0; i < 3; ++i) {
                    set(first + i, palette_[i][source[x * stride]]);
                }
            }
            if (form_.alpha && (!form_.planes || block.plane == *form_.alpha)) {
                set(first + 3, source[x * stride + (form_.planes ? 0 : *form_.alpha)] * (isWide ? 257U : 1U));
            }
        }
    }

    /// The grey of a file whose 0 is white.
    void turnRound() {
        const std::size_t pixelBytes = channelCount(picture_.channels) * bytesPerSample(picture_.sampleType);
        for (std::size_t at = 0; at < picture_.samples.size(); at += pixelBytes) {
            for (std::size_t i = 0; i < bytesPerSample(picture_.sampleType); ++i) {
                picture_.samples[at + i] = static_cast<uint8_t>(~picture_.samples[at + i]);
            }
        }
    }

    TIFF* const tiff_;
    TiffMemory& memory_;
    const TiffForm& form_;
    const std::string& name_;
    Palette palette_;
    Picture picture_;
    std::vector<uint8_t> block_;    ///< as decoded
    std::vector<uint8_t> unpacked_; ///< a row of it in whole bytes
};

TiffDirectory checkedDirectory(std::span<const uint8_t> bytes, const std::string& name) {
    if (!beginsAsTiff(bytes)) {
        failReading(name, bytes.empty() ? "it is empty" : "it is not a TIFF file");
    }
    TiffDirectory directory(bytes);
    if (!directory.isWhole()) {
        failReading(name, "it is cut short");
    }
    const auto width = directory.number(TIFFTAG_IMAGEWIDTH);
    const auto height = directory.number(TIFFTAG_IMAGELENGTH);
    if (!width || !height) {
        failReading(name, "it is damaged: its size is missing");
    }
    constexpr uint64_t kMost = 0xffffffff;
    checkSize(static_cast<uint32_t>(std::min(*width, kMost)), static_cast<uint32_t>(std::min(*height, kMost)),
              name);
    return directory;
}

} // namespace

Picture decodeTiffWith(std::span<const uint8_t> bytes, const std::string& name,
                       const DecodeOptions& options) {
    // Enough for the tables of any picture's strips; samples never go through the library's own memory.
    constexpr std::size_t kMostBytes = std::size_t{64} << 20;
    const TiffDirectory directory = checkedDirectory(bytes, name);
    TiffMemory memory;
    memory.source = bytes;
    const OpenTiff tiff = openTiff(memory, "rm", std::max(kMostBytes, 2 * bytes.size()));
    if (!tiff) {
        failDamaged(memory, name);
    }
    const TiffForm form = tiffForm(tiff.get(), name);
    checkSize(form.width, form.height, name);
    checkBlocks(tiff.get(), form, bytes.size(), name);
    checkPixelCount(form.width, form.height, name, options);
    if (form.tiled) {
        checkBlockPixels(form.blockWidth, form.blockHeight, "its tiles", name, options);
    }
    Picture picture = PageReader(tiff.get(), memory, form, name).read();
    picture.notes = tiffNotes(directory);
    const uint16_t compression = form.compression->tag;
    if (form.compression->isKept && compression != kUsualTiffCompression) {
        picture.notes.push_back(tiffCompressionNote(compression));
    }
    if (directory.hasNext()) {
        picture.leftOut.emplace_back("further pages");
    }
    return picture;
}

} // namespace kovalune::pictures
