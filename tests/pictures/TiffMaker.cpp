#include "tests/pictures/TiffMaker.h"

#include "tests/support/TestFolder.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <stdexcept>

namespace kovalune::test {

namespace {

struct Close {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, Close>;

void require(bool holds, const char* what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

/// Appends samples to a row: whole ones in this machine's order, others with the highest bit first.
class Packer {
public:
    explicit Packer(unsigned bits) : bits_(bits) {}

    void add(uint32_t value) {
        if (bits_ % 8 == 0 && bits_ <= 32) {
            for (unsigned i = 0; i < bits_ / 8; ++i) {
                bytes.push_back(static_cast<uint8_t>(value >> 8 * i));
            }
            return;
        }
        for (unsigned i = 0; i < bits_; ++i) {
            if (used_ % 8 == 0) {
                bytes.push_back(0);
            }
            const unsigned bit = i < bits_ - std::min(bits_, 32U) ? 0 : value >> (bits_ - 1 - i) & 1;
            bytes.back() = static_cast<uint8_t>(bytes.back() | bit << (7 - used_ % 8));
            ++used_;
        }
    }
    void endRow() { used_ = 0; }

    std::vector<uint8_t> bytes;

private:
    unsigned bits_;
    unsigned used_ = 0;
};

/// A strip or tile; zeros outside the picture.
std::vector<uint8_t> blockOf(const TiffPage& page, uint32_t x0, uint32_t y0, uint32_t width, uint32_t height,
                             unsigned firstSample, unsigned samples) {
    Packer packer(page.bits);
    for (uint32_t y = y0; y < y0 + height; ++y) {
        for (uint32_t x = x0; x < x0 + width; ++x) {
            for (unsigned sample = firstSample; sample < firstSample + samples; ++sample) {
                const bool inside = x < page.width && y < page.height;
                packer.add(inside ? page.values[(std::size_t{y} * page.width + x) * page.samples + sample]
                                  : 0);
            }
        }
        packer.endRow();
    }
    return packer.bytes;
}

void setTags(TIFF* tiff, const TiffPage& page) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, page.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, page.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, page.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, page.samples);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, page.format);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, page.photometric);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, page.planar);
    require(TIFFSetField(tiff, TIFFTAG_COMPRESSION, page.compression) != 0, "no such compression");
    if (!page.extras.empty()) {
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, static_cast<int>(page.extras.size()), page.extras.data());
    }
    if (!page.palette.empty()) {
        const std::size_t length = page.palette.size() / 3;
        TIFFSetField(tiff, TIFFTAG_COLORMAP, page.palette.data(), page.palette.data() + length,
                     page.palette.data() + 2 * length);
    }
    if (page.tileWidth != 0) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, page.tileWidth);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, page.tileHeight);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, page.rowsPerStrip);
    }
    if (page.moreTags) {
        page.moreTags(tiff);
    }
}

void writePage(TIFF* tiff, const TiffPage& page) {
    setTags(tiff, page);
    const bool planes = page.planar == PLANARCONFIG_SEPARATE;
    uint32_t index = 0;
    for (unsigned plane = 0; plane < (planes ? page.samples : 1U); ++plane) {
        const unsigned samples = planes ? 1 : page.samples;
        const uint32_t stepY = page.tileWidth != 0 ? page.tileHeight : page.rowsPerStrip;
        const uint32_t stepX = page.tileWidth != 0 ? page.tileWidth : page.width;
        for (uint32_t y = 0; y < page.height; y += stepY) {
            for (uint32_t x = 0; x < page.width; x += stepX) {
                const uint32_t rows = page.tileWidth != 0 ? stepY : std::min(stepY, page.height - y);
                std::vector<uint8_t> block = blockOf(page, x, y, stepX, rows, plane, samples);
                const auto size = static_cast<tmsize_t>(block.size());
                const tmsize_t written = page.tileWidth != 0
                                             ? TIFFWriteEncodedTile(tiff, index, block.data(), size)
                                             : TIFFWriteEncodedStrip(tiff, index, block.data(), size);
                require(written == size, "no samples written");
                ++index;
            }
        }
    }
    require(TIFFWriteDirectory(tiff) != 0, "no directory written");
}

} // namespace

void fillRandomly(TiffPage& page, uint32_t seed) {
    std::mt19937 random(seed);
    page.values.resize(std::size_t{page.width} * page.height * page.samples);
    for (uint32_t& value : page.values) {
        value = static_cast<uint32_t>(random()) >> (32 - std::min<unsigned>(page.bits, 32));
    }
}

std::vector<uint8_t> tiffOf(const std::vector<TiffPage>& pages) {
    const TestFolder folder;
    const std::string file = (folder / "made.tif").string();
    const TIFFErrorHandler warn = TIFFSetWarningHandler(nullptr);
    {
        const Tiff tiff(TIFFOpen(file.c_str(), pages.front().mode.c_str()));
        require(tiff != nullptr, "no file made");
        for (const TiffPage& page : pages) {
            writePage(tiff.get(), page);
        }
    }
    TIFFSetWarningHandler(warn);
    return bytesOf(file);
}

std::vector<uint8_t> tiffOf(const TiffPage& page) {
    return tiffOf(std::vector{page});
}

std::size_t entryPlace(const std::vector<uint8_t>& file, uint16_t tag) {
    uint32_t offset = 0;
    uint16_t count = 0, found = 0;
    std::memcpy(&offset, file.data() + 4, sizeof offset);
    std::memcpy(&count, file.data() + offset, sizeof count);
    for (std::size_t at = offset + 2; count > 0; --count, at += 12) {
        std::memcpy(&found, file.data() + at, sizeof found);
        if (found == tag) {
            return at;
        }
    }
    return 0;
}

void patchEntry(std::vector<uint8_t>& file, uint16_t tag, uint32_t value) {
    const std::size_t at = entryPlace(file, tag);
    require(at != 0, "no such entry");
    const uint16_t type = TIFF_LONG;
    const uint32_t count = 1;
    std::memcpy(file.data() + at + 2, &type, sizeof type);
    std::memcpy(file.data() + at + 4, &count, sizeof count);
    std::memcpy(file.data() + at + 8, &value, sizeof value);
}

uint16_t shortTagOf(const std::vector<uint8_t>& file, uint32_t tag) {
    const TestFolder folder;
    writeBytes(folder / "read.tif", file);
    const Tiff tiff(TIFFOpen((folder / "read.tif").string().c_str(), "r"));
    require(tiff != nullptr, "not readable");
    uint16_t value = 0;
    TIFFGetFieldDefaulted(tiff.get(), tag, &value);
    return value;
}

} // namespace kovalune::test
