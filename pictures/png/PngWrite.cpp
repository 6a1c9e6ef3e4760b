#include "pictures/png/PngFile.h"

#include "pictures/png/PngMemory.h"
#include "text/Failure.h"

#include <algorithm>
#include <bit>
#include <csetjmp>
#include <cstring>
#include <new>
#include <png.h>
#include <utility>

namespace kovalune::pictures {

namespace {

int colorTypeOf(Channels channels) {
    switch (channels) {
    case Channels::kGrey:
        return PNG_COLOR_TYPE_GRAY;
    case Channels::kGreyAlpha:
        return PNG_COLOR_TYPE_GRAY_ALPHA;
    case Channels::kRgb:
        return PNG_COLOR_TYPE_RGB;
    default:
        return PNG_COLOR_TYPE_RGB_ALPHA;
    }
}

/// Of the rows before they are packed. What searches long finds most in the differences to the row above, where a
/// drawing's flat colours are zeros; what is to be quick finds enough in the samples as they are.
int filterFor(int level) {
    constexpr int kLeastSearching = 4; // from here on the packer looks for better matches than the first
    return level < kLeastSearching ? PNG_FILTER_NONE : PNG_FILTER_UP;
}

/// One file being encoded into memory. As in reading, nothing with a destructor may stand between a setjmp
/// and the calls of the library, and no exception may go through the library.
class PngWriter {
public:
    PngWriter() {
        png_ = png_create_write_struct_2(PNG_LIBPNG_VER_STRING, this, onError, onWarning, &memory_,
                                         PngMemory::take, PngMemory::giveBack);
        if (png_ != nullptr) {
            info_ = png_create_info_struct(png_);
        }
        if (info_ == nullptr) {
            png_destroy_write_struct(&png_, nullptr);
            throw std::bad_alloc();
        }
    }
    ~PngWriter() { png_destroy_write_struct(&png_, &info_); }
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;

    /// False after an error.
    bool write(const Picture& picture, int level) {
        if (setjmp(png_jmpbuf(png_)) != 0) {
            return false;
        }
        png_set_write_fn(png_, this, onWrite, nullptr);
        png_set_IHDR(png_, info_, picture.width, picture.height,
                     static_cast<int>(8 * bytesPerSample(picture.sampleType)), colorTypeOf(picture.channels),
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_set_compression_level(png_, level);
        png_set_filter(png_, PNG_FILTER_TYPE_BASE, filterFor(level));
        png_write_info(png_, info_);
        if (picture.format == FileFormat::kPng) {
            writeNotes(picture);
        }
        if constexpr (std::endian::native == std::endian::little) {
            png_set_swap(png_);
        }
        for (std::size_t y = 0; y < picture.height; ++y) {
            png_write_row(png_, picture.samples.data() + y * picture.rowBytes());
        }
        png_write_end(png_, nullptr);
        return true;
    }

    bool outOfMemory() const { return outOfMemory_ || memory_.refused(); }
    const char* error() const { return error_; }
    std::vector<uint8_t> takeBytes() { return std::move(bytes_); }

private:
    void writeNotes(const Picture& picture) {
        for (const PictureNote& note : picture.notes) {
            png_byte name[5] = {};
            // NOLINTNEXTLINE(bugprone-not-null-terminated-result): the array ends in zeros
            std::memcpy(name, note.name.data(), std::min(note.name.size(), sizeof name - 1));
            png_write_chunk(png_, name, note.bytes.data(), note.bytes.size());
        }
    }

    static void onError(png_structp png, png_const_charp text) {
        auto* writer = static_cast<PngWriter*>(png_get_error_ptr(png));
        std::strncpy(writer->error_, text, sizeof writer->error_ - 1);
        png_longjmp(png, 1);
    }

    static void onWarning(png_structp, png_const_charp) {}

    static void onWrite(png_structp png, png_bytep source, std::size_t count) {
        auto* writer = static_cast<PngWriter*>(png_get_io_ptr(png));
        if (!writer->append(source, count)) {
            png_error(png, "out of memory");
        }
    }

    bool append(const uint8_t* source, std::size_t count) noexcept {
        try {
            bytes_.insert(bytes_.end(), source, source + count);
        } catch (const std::bad_alloc&) {
            outOfMemory_ = true;
        }
        return !outOfMemory_;
    }

    PngMemory memory_;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
    std::vector<uint8_t> bytes_;
    bool outOfMemory_ = false;
    char error_[128] = {};
};

} // namespace

std::vector<uint8_t> encodePng(const Picture& picture, const EncodeOptions& options) {
    PngWriter writer;
    if (!writer.write(picture, options.pngLevel)) {
        if (writer.outOfMemory()) {
            throw std::bad_alloc();
        }
        throw text::Failure(text::FailureKind::kFile,
                            "cannot make a PNG file: " + std::string(writer.error()));
    }
    return writer.takeBytes();
}

} // namespace kovalune::pictures
