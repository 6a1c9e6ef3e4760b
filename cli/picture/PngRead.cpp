#include "cli/picture/PngFile.h"

#include "cli/picture/PngMemory.h"
#include "cli/picture/PngTexts.h"
#include "cli/picture/ReadFailure.h"

#include <algorithm>
#include <array>
#include <bit>
#include <csetjmp>
#include <cstring>
#include <png.h>
#include <utility>

namespace kovalune {

namespace {

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

struct NoteKind {
    char name[5];
    std::size_t leastBytes;
    std::size_t mostBytes;
};

// What is kept of a file besides its samples. The order is a valid one for writing.
constexpr std::size_t kAnyLength = ~std::size_t{0};
constexpr std::array<NoteKind, 5> kNotes = {
    {{"cHRM", 32, 32}, {"gAMA", 4, 4}, {"iCCP", 3, kAnyLength}, {"sRGB", 1, 1}, {"pHYs", 9, 9}}};

// The library's names of those and of the texts, five bytes each.
constexpr std::size_t kNameBytes = 5;
using ChunkNames = std::array<png_byte, kNameBytes*(kNotes.size() + kPngTexts.size())>;

ChunkNames keptChunks() {
    ChunkNames names{};
    png_byte* next = names.data();
    for (const NoteKind& kind : kNotes)
        next = std::copy_n(kind.name, kNameBytes, next);
    for (const char* const text : kPngTexts)
        next = std::copy_n(text, kNameBytes, next);
    return names;
}

// One file being decoded. The library leaves its functions by longjmp, so every member function that calls
// one holds nothing with a destructor between its setjmp and its end; it returns false after an error.
class PngReader {
public:
    explicit PngReader(std::span<const std::uint8_t> source) : rest_(source) {
        png_ = png_create_read_struct_2(PNG_LIBPNG_VER_STRING, this, onError, onWarning, &memory_,
                                        PngMemory::take, PngMemory::giveBack);
        if (png_ != nullptr)
            info_ = png_create_info_struct(png_);
        if (info_ != nullptr)
            endInfo_ = png_create_info_struct(png_);
        if (endInfo_ == nullptr) {
            png_destroy_read_struct(&png_, &info_, nullptr);
            throw std::bad_alloc();
        }
    }
    ~PngReader() { png_destroy_read_struct(&png_, &info_, &endInfo_); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    // Up to the first samples.
    bool readHeader() {
        if (setjmp(png_jmpbuf(png_)) != 0)
            return false;
        png_set_read_fn(png_, this, onRead);
        // The size is looked at by the caller, and zero sides are refused by the library.
        png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        // Raw, so that the library neither reconciles them with each other nor applies them.
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_ALWAYS, names_.data(),
                                    static_cast<int>(names_.size() / kNameBytes));
        // As many texts as there are; the library's own limit of their bytes where the file could not hold more.
        png_set_chunk_cache_max(png_, 0);
        png_set_chunk_malloc_max(png_, std::max(png_get_chunk_malloc_max(png_), rest_.size()));
        png_read_info(png_, info_);
        return true;
    }

    // Decides how samples come: whole bytes in this machine's order, no palette, no transparent colour.
    bool startSamples() {
        if (setjmp(png_jmpbuf(png_)) != 0)
            return false;
        png_set_expand(png_);
        if constexpr (std::endian::native == std::endian::little)
            png_set_swap(png_);
        png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
        return true;
    }

    // `rows` has the picture's height.
    bool readSamples(png_bytepp rows) {
        if (setjmp(png_jmpbuf(png_)) != 0)
            return false;
        png_read_image(png_, rows);
        png_read_end(png_, endInfo_);
        return true;
    }

    std::uint32_t width() const { return png_get_image_width(png_, info_); }
    std::uint32_t height() const { return png_get_image_height(png_, info_); }
    SampleType sampleType() const {
        return png_get_bit_depth(png_, info_) == 16 ? SampleType::Uint16 : SampleType::Uint8;
    }
    std::size_t rowBytes() const { return png_get_rowbytes(png_, info_); }

    Channels channels() const {
        switch (png_get_color_type(png_, info_)) {
        case PNG_COLOR_TYPE_GRAY:
            return Channels::Grey;
        case PNG_COLOR_TYPE_GRAY_ALPHA:
            return Channels::GreyAlpha;
        case PNG_COLOR_TYPE_RGB:
            return Channels::Rgb;
        default:
            return Channels::RgbAlpha;
        }
    }

    // The first of each kind, if its length is right.
    std::vector<PictureNote> notes() const {
        const std::span<const png_unknown_chunk> all = chunksOf(info_);
        std::vector<PictureNote> notes;
        for (const NoteKind& kind : kNotes) {
            const auto found = std::find_if(all.begin(), all.end(), [&](const png_unknown_chunk& chunk) {
                return std::memcmp(chunk.name, kind.name, 4) == 0;
            });
            if (found == all.end() || found->size < kind.leastBytes || found->size > kind.mostBytes)
                continue;
            notes.push_back({kind.name, {}, {found->data, found->data + found->size}});
        }
        return notes;
    }

    // In the order of the file, once the samples have been read: they may stand behind them too.
    std::vector<PictureNote> texts() const {
        std::vector<PictureNote> texts;
        for (const png_infop info : {info_, endInfo_}) {
            for (const png_unknown_chunk& chunk : chunksOf(info)) {
                const std::string name(chunk.name, chunk.name + 4);
                if (std::find(kPngTexts.begin(), kPngTexts.end(), name) != kPngTexts.end())
                    texts.push_back({name, {}, {chunk.data, chunk.data + chunk.size}});
            }
        }
        return texts;
    }

    // Throws std::bad_alloc where the lack of memory is the reason.
    std::string reason() const {
        if (memory_.refused())
            throw std::bad_alloc();
        return ended_ ? "it is cut short" : "it is damaged: " + std::string(error_);
    }

private:
    std::span<const png_unknown_chunk> chunksOf(png_infop info) const {
        png_unknown_chunkp chunks = nullptr;
        const int count = png_get_unknown_chunks(png_, info, &chunks);
        return {chunks, static_cast<std::size_t>(std::max(count, 0))};
    }

    static void onError(png_structp png, png_const_charp text) {
        auto* reader = static_cast<PngReader*>(png_get_error_ptr(png));
        std::strncpy(reader->error_, text, sizeof reader->error_ - 1);
        png_longjmp(png, 1);
    }

    static void onWarning(png_structp, png_const_charp) {}

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
    std::span<const std::uint8_t> rest_;
    const ChunkNames names_ = keptChunks();
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
    png_infop endInfo_ = nullptr; // of what stands behind the samples
    bool ended_ = false;
    char error_[128] = {};
};

// One compressed byte stands for at most 1032 others.
bool canHold(std::size_t fileBytes, const PngReader& reader) {
    constexpr std::uint64_t kMostExpansion = 1032;
    return std::uint64_t{reader.rowBytes()} * reader.height() <= fileBytes * kMostExpansion;
}

std::vector<std::uint8_t> samplesOf(PngReader& reader, const Picture& picture) {
    std::vector<std::uint8_t> samples(picture.byteCount());
    std::vector<png_bytep> rows(picture.height);
    for (std::size_t y = 0; y < rows.size(); ++y)
        rows[y] = samples.data() + y * picture.rowBytes();
    if (!reader.readSamples(rows.data()))
        samples.clear();
    return samples;
}

} // namespace

bool beginsAsPng(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= kSignature.size() &&
           std::equal(kSignature.begin(), kSignature.end(), bytes.begin());
}

Picture decodePng(std::span<const std::uint8_t> bytes, const std::string& name) {
    PngReader reader(bytes);
    if (!reader.readHeader())
        failReading(name, reader.reason());
    Picture picture;
    picture.width = reader.width();
    picture.height = reader.height();
    checkSize(picture.width, picture.height, name);
    if (!canHold(bytes.size(), reader))
        failReading(name, "it is cut short: " + sizeText(picture.width, picture.height) + " need more bytes");
    picture.format = FileFormat::Png;
    picture.notes = reader.notes();
    if (!reader.startSamples())
        failReading(name, reader.reason());
    picture.channels = reader.channels();
    picture.sampleType = reader.sampleType();
    if (reader.rowBytes() != picture.rowBytes())
        failReading(name, "its rows have an unexpected length");
    picture.samples = samplesOf(reader, picture);
    if (picture.samples.empty())
        failReading(name, reader.reason());
    for (PictureNote& text : reader.texts())
        picture.notes.push_back(std::move(text));
    return picture;
}

} // namespace kovalune
