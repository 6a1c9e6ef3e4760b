#include "pictures/png/PngFile.h"

#include "pictures/ReadFailure.h"
#include "pictures/png/PngChunks.h"
#include "pictures/png/PngMemory.h"

#include <algorithm>
#include <array>
#include <bit>
#include <csetjmp>
#include <cstring>
#include <png.h>
#include <string_view>

namespace kovalune::pictures {

namespace {

constexpr std::array<uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

/// The library's list of the chunks that are kept, five bytes each.
constexpr std::size_t kNameBytes = 5;

std::vector<png_byte> keptChunks() {
    std::vector<png_byte> list;
    for (const std::string_view name : PngChunks::names()) {
        list.insert(list.end(), name.begin(), name.end());
        list.push_back(0);
    }
    return list;
}

/// One file being decoded. The library leaves its functions by longjmp, so every member function that calls
/// one holds nothing with a destructor between its setjmp and its end; it returns false after an error.
class PngReader {
public:
    explicit PngReader(std::span<const uint8_t> source) : rest_(source) {
        png_ = png_create_read_struct_2(PNG_LIBPNG_VER_STRING, this, onError, onWarning, &memory_,
                                        PngMemory::take, PngMemory::giveBack);
        if (png_ != nullptr) {
            info_ = png_create_info_struct(png_);
        }
        if (info_ == nullptr) {
            png_destroy_read_struct(&png_, nullptr, nullptr);
            throw std::bad_alloc();
        }
    }
    ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    /// Up to the first samples.
    bool readHeader() {
        if (setjmp(png_jmpbuf(png_)) != 0) {
            return false;
        }
        png_set_read_fn(png_, this, onRead);
        // The size is looked at by the caller, and zero sides are refused by the library.
        png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        // Raw, so that the library neither reconciles them with each other nor applies them.
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_ALWAYS, names_.data(),
                                    static_cast<int>(names_.size() / kNameBytes));
        // Taken here one by one, however many: the library would copy all it has for each that it adds.
        png_set_read_user_chunk_fn(png_, this, onChunk);
        // The library's own limit of their bytes where the file could not hold more.
        png_set_chunk_malloc_max(png_, std::max(png_get_chunk_malloc_max(png_), rest_.size()));
        png_read_info(png_, info_);
        isBeforeSamples_ = false;
        return true;
    }

    /// Decides how samples come: whole bytes in this machine's order, no palette, no transparent colour.
    bool startSamples() {
        if (setjmp(png_jmpbuf(png_)) != 0) {
            return false;
        }
        png_set_expand(png_);
        if constexpr (std::endian::native == std::endian::little) {
            png_set_swap(png_);
        }
        png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
        return true;
    }

    /// `rows` has the picture's height.
    bool readSamples(png_bytepp rows) {
        if (setjmp(png_jmpbuf(png_)) != 0) {
            return false;
        }
        png_read_image(png_, rows);
        png_read_end(png_, info_);
        return true;
    }

    uint32_t width() const { return png_get_image_width(png_, info_); }
    uint32_t height() const { return png_get_image_height(png_, info_); }
    SampleType sampleType() const {
        return png_get_bit_depth(png_, info_) == 16 ? SampleType::kUint16 : SampleType::kUint8;
    }
    std::size_t rowBytes() const { return png_get_rowbytes(png_, info_); }

    Channels channels() const {
        switch (png_get_color_type(png_, info_)) {
        case PNG_COLOR_TYPE_GRAY:
            return Channels::kGrey;
        case PNG_COLOR_TYPE_GRAY_ALPHA:
            return Channels::kGreyAlpha;
        case PNG_COLOR_TYPE_RGB:
            return Channels::kRgb;
        default:
            return Channels::kRgbAlpha;
        }
    }

    /// Once the samples have been read: texts may stand after them too.
    std::vector<PictureNote> takeNotes() { return chunks_.takeNotes(); }

    /// Throws std::bad_alloc where the lack of memory is the reason.
    std::string reason() const {
        if (outOfMemory_ || memory_.refused()) {
            throw std::bad_alloc();
        }
        return ended_ ? "it is cut short" : "it is damaged: " + std::string(error_);
    }

private:
    static void onError(png_structp png, png_const_charp text) {
        auto* reader = static_cast<PngReader*>(png_get_error_ptr(png));
        std::strncpy(reader->error_, text, sizeof reader->error_ - 1);
        png_longjmp(png, 1);
    }

    static void onWarning(png_structp, png_const_charp) {}

    /// Of every chunk that the library does not read itself; the answer is negative for an error, zero for a chunk
    /// that is not known and must be, and positive for any other.
    static int onChunk(png_structp png, png_unknown_chunkp chunk) {
        constexpr png_byte kMayBeUnknown = 0x20; // in the first letter
        auto* reader = static_cast<PngReader*>(png_get_user_chunk_ptr(png));
        const std::string_view name(static_cast<const char*>(static_cast<const void*>(chunk->name)), 4);
        if (chunk->location == 0 && PngChunks::keeps(name)) { // before the header
            png_chunk_error(png, "out of place");
        }
        if (!reader->chunks_.take(name, {chunk->data, chunk->size}, reader->isBeforeSamples_)) {
            reader->outOfMemory_ = true;
            return -1;
        }
        return (chunk->name[0] & kMayBeUnknown) != 0 ? 1 : 0;
    }

    static void onRead(png_structp png, png_bytep target, std::size_t count) {
        auto* reader = static_cast<PngReader*>(png_get_io_ptr(png));
        if (count > reader->rest_.size()) {
            reader->ended_ = true;
            png_error(png, "end of file");
        }
        std::memcpy(target, reader->rest_.data(), count);
        reader->rest_ = reader->rest_.subspan(count);
    }

    PngMemory memory_;
    std::span<const uint8_t> rest_;
    const std::vector<png_byte> names_ = keptChunks();
    PngChunks chunks_;
    bool isBeforeSamples_ = true;
    bool outOfMemory_ = false; ///< for them
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
    bool ended_ = false;
    char error_[128] = {};
};

/// One compressed byte stands for at most 1032 others.
bool canHold(std::size_t fileBytes, const PngReader& reader) {
    constexpr uint64_t kMostExpansion = 1032;
    return uint64_t{reader.rowBytes()} * reader.height() <= fileBytes * kMostExpansion;
}

std::vector<uint8_t> samplesOf(PngReader& reader, const Picture& picture) {
    std::vector<uint8_t> samples(picture.byteCount());
    std::vector<png_bytep> rows(picture.height);
    for (std::size_t y = 0; y < rows.size(); ++y) {
        rows[y] = samples.data() + y * picture.rowBytes();
    }
    if (!reader.readSamples(rows.data())) {
        samples.clear();
    }
    return samples;
}

} // namespace

bool beginsAsPng(std::span<const uint8_t> bytes) {
    return bytes.size() >= kSignature.size() &&
           std::equal(kSignature.begin(), kSignature.end(), bytes.begin());
}

Picture decodePngWith(std::span<const uint8_t> bytes, const std::string& name, const DecodeOptions& options) {
    PngReader reader(bytes);
    if (!reader.readHeader()) {
        failReading(name, reader.reason());
    }
    Picture picture;
    picture.width = reader.width();
    picture.height = reader.height();
    checkSize(picture.width, picture.height, name);
    if (!canHold(bytes.size(), reader)) {
        failReading(name, "it is cut short: " + sizeText(picture.width, picture.height) + " need more bytes");
    }
    checkPixelCount(picture.width, picture.height, name, options);
    picture.format = FileFormat::kPng;
    if (!reader.startSamples()) {
        failReading(name, reader.reason());
    }
    picture.channels = reader.channels();
    picture.sampleType = reader.sampleType();
    if (reader.rowBytes() != picture.rowBytes()) {
        failReading(name, "its rows have an unexpected length");
    }
    picture.samples = samplesOf(reader, picture);
    if (picture.samples.empty()) {
        failReading(name, reader.reason());
    }
    picture.notes = reader.takeNotes();
    return picture;
}

} // namespace kovalune::pictures
