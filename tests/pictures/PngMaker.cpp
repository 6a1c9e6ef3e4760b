#include "tests/pictures/PngMaker.h"

#include "tests/support/TestFolder.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <png.h>
#include <random>
#include <stdexcept>

namespace kovalune::test {

namespace {

/// A test without its picture means nothing, so there is no way back from here.
[[noreturn]] void onError(png_structp, png_const_charp text) {
    std::fprintf(stderr, "the picture of a test failed: %s\n", text);
    std::abort();
}

void ignoreWarning(png_structp, png_const_charp) {}

void appendTo(png_structp png, png_bytep source, std::size_t count) {
    auto* bytes = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
    bytes->insert(bytes->end(), source, source + count);
}

struct Source {
    const std::vector<uint8_t>& bytes;
    std::size_t place = 0;
};

void takeFrom(png_structp png, png_bytep target, std::size_t count) {
    auto* source = static_cast<Source*>(png_get_io_ptr(png));
    if (count > source->bytes.size() - source->place) {
        png_error(png, "too short");
    }
    std::memcpy(target, source->bytes.data() + source->place, count);
    source->place += count;
}

void writeChunk(png_structp png, const std::string& name, const std::vector<uint8_t>& bytes) {
    png_byte letters[5] = {};
    std::memcpy(letters, name.c_str(), 4);
    png_write_chunk(png, letters, bytes.data(), bytes.size());
}

std::vector<png_bytep> rowsOf(PngPicture& picture) {
    std::vector<png_bytep> rows;
    for (uint32_t y = 0; y < picture.height; ++y) {
        rows.push_back(picture.rows.data() + y * picture.rowBytes());
    }
    return rows;
}

std::vector<std::pair<std::string, std::vector<uint8_t>>> notesOf(png_structp png, png_infop info) {
    std::vector<std::pair<std::string, std::vector<uint8_t>>> notes;
    png_unknown_chunkp chunks = nullptr;
    const int count = png_get_unknown_chunks(png, info, &chunks);
    for (int i = 0; i < count; ++i) {
        std::string name(4, ' ');
        std::memcpy(name.data(), chunks[i].name, 4);
        notes.emplace_back(name, std::vector<uint8_t>(chunks[i].data, chunks[i].data + chunks[i].size));
    }
    return notes;
}

} // namespace

std::size_t PngPicture::channels() const {
    switch (color) {
    case PngColor::kGreyAlpha:
        return 2;
    case PngColor::kRgb:
        return 3;
    case PngColor::kRgbAlpha:
        return 4;
    default:
        return 1;
    }
}

std::size_t PngPicture::rowBytes() const {
    return (samplesARow() * static_cast<std::size_t>(depth) + 7) / 8;
}

uint16_t PngPicture::sample(uint32_t y, std::size_t index) const {
    const uint8_t* const row = rows.data() + y * rowBytes();
    if (depth == 16) {
        return static_cast<uint16_t>(row[2 * index] << 8 | row[2 * index + 1]);
    }
    const auto bits = static_cast<std::size_t>(depth);
    const std::size_t firstBit = index * bits;
    const std::size_t shift = 8 - bits - firstBit % 8;
    return static_cast<uint16_t>(row[firstBit / 8] >> shift & ((1U << bits) - 1));
}

PngPicture blankPng(PngColor color, int depth, uint32_t width, uint32_t height) {
    PngPicture picture;
    picture.width = width;
    picture.height = height;
    picture.color = color;
    picture.depth = depth;
    picture.rows.resize(picture.rowBytes() * height);
    return picture;
}

PngPicture randomPng(PngColor color, int depth, uint32_t width, uint32_t height, uint32_t seed) {
    PngPicture picture = blankPng(color, depth, width, height);
    std::mt19937 random(seed);
    for (uint8_t& byte : picture.rows) {
        byte = static_cast<uint8_t>(random() >> 24);
    }
    return picture;
}

void writePng(const std::filesystem::path& file, const PngPicture& picture) {
    PngPicture copy = picture;
    std::vector<uint8_t> bytes;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, onError, ignoreWarning);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &bytes, appendTo, nullptr);
    png_set_IHDR(png, info, picture.width, picture.height, picture.depth, static_cast<int>(picture.color),
                 picture.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (!picture.palette.empty()) {
        std::vector<png_color> colors;
        for (std::size_t i = 0; i + 2 < picture.palette.size(); i += 3) {
            colors.push_back({picture.palette[i], picture.palette[i + 1], picture.palette[i + 2]});
        }
        png_set_PLTE(png, info, colors.data(), static_cast<int>(colors.size()));
    }
    png_write_info_before_PLTE(png, info);
    for (const auto& [name, data] : picture.notes) {
        writeChunk(png, name, data);
    }
    png_write_info(png, info);
    if (!picture.transparency.empty()) {
        writeChunk(png, "tRNS", picture.transparency);
    }
    png_write_image(png, rowsOf(copy).data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    writeBytes(file, bytes);
}

PngPicture readPngFile(const std::filesystem::path& file) {
    const std::vector<uint8_t> bytes = bytesOf(file);
    Source source{bytes};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, onError, ignoreWarning);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &source, takeFrom);
    const png_byte kept[] = "gAMA\0cHRM\0sRGB\0iCCP\0pHYs";
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_ALWAYS, kept, 5);
    png_read_info(png, info);
    PngPicture picture =
        blankPng(static_cast<PngColor>(png_get_color_type(png, info)), png_get_bit_depth(png, info),
                 png_get_image_width(png, info), png_get_image_height(png, info));
    picture.interlaced = png_get_interlace_type(png, info) != PNG_INTERLACE_NONE;
    picture.notes = notesOf(png, info);
    png_read_image(png, rowsOf(picture).data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return picture;
}

} // namespace kovalune::test
