#include "pictures/jpeg/JpegFile.h"

#include "pictures/ReadFailure.h"

#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <jerror.h>
#include <jpeglib.h>
#include <memory>
#include <new>

namespace kovalune::pictures {

namespace {

/// One file being decoded. The library leaves its functions by longjmp, so every member function that calls one holds
/// nothing with a destructor between its setjmp and its end; it returns false after an error.
class JpegReader {
public:
    explicit JpegReader(std::span<const uint8_t> source) : source_(source) {
        info_.err = jpeg_std_error(&errors_);
        errors_.error_exit = onError;
        errors_.emit_message = onMessage;
        progress_.progress_monitor = onProgress;
        info_.client_data = this;
    }
    ~JpegReader() { jpeg_destroy_decompress(&info_); }
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    bool readHeader() {
        if (setjmp(jump_) != 0) {
            return false;
        }
        constexpr int kProfileMarker = JPEG_APP0 + 2;
        constexpr unsigned kWhole = 0xffff;
        jpeg_create_decompress(&info_);
        info_.progress = &progress_;
        jpeg_mem_src(&info_, source_.data(), static_cast<unsigned long>(source_.size()));
        jpeg_save_markers(&info_, kProfileMarker, kWhole);
        jpeg_read_header(&info_, TRUE);
        return true;
    }

    /// `samples` holds all rows.
    bool readSamples(uint8_t* samples, std::size_t rowBytes) {
        if (setjmp(jump_) != 0) {
            return false;
        }
        info_.out_color_space = isGrey() ? JCS_GRAYSCALE : JCS_RGB;
        info_.dct_method = JDCT_ISLOW;
        jpeg_start_decompress(&info_);
        while (info_.output_scanline < info_.output_height) {
            JSAMPROW row = samples + info_.output_scanline * rowBytes;
            jpeg_read_scanlines(&info_, &row, 1);
        }
        jpeg_finish_decompress(&info_);
        return true;
    }

    /// Null where there is none, or a damaged one; the caller frees it.
    bool readProfile(JOCTET*& profile, unsigned& count) {
        if (setjmp(jump_) != 0) {
            return false;
        }
        return jpeg_read_icc_profile(&info_, &profile, &count) != FALSE;
    }

    uint32_t width() const { return info_.image_width; }
    uint32_t height() const { return info_.image_height; }
    bool isGrey() const { return info_.jpeg_color_space == JCS_GRAYSCALE; }

    /// Why it is not read though it is a sound JPEG; empty if it is.
    std::string refusal() const {
        if (info_.jpeg_color_space == JCS_CMYK || info_.jpeg_color_space == JCS_YCCK) {
            return "its colours are CMYK or other inks, which is not read";
        }
        if (info_.num_components != 1 && info_.num_components != 3) {
            return "it has " + std::to_string(info_.num_components) + " channels, which is not read";
        }
        if (info_.data_precision != 8) {
            return "it has samples of " + std::to_string(info_.data_precision) + " bits, which are not read";
        }
        return info_.arith_code != FALSE ? "it is packed by arithmetic coding, which is not read" : "";
    }

    /// Throws std::bad_alloc where the lack of memory is the reason.
    std::string reason() const {
        if (errors_.msg_code == JERR_OUT_OF_MEMORY) {
            throw std::bad_alloc();
        }
        const bool ended = errors_.msg_code == JWRN_JPEG_EOF || errors_.msg_code == JWRN_HIT_MARKER ||
                           errors_.msg_code == JERR_INPUT_EOF || errors_.msg_code == JERR_INPUT_EMPTY;
        return ended ? "it is cut short" : "it is damaged: " + std::string(text_.data());
    }

private:
    static JpegReader& readerOf(j_common_ptr info) { return *static_cast<JpegReader*>(info->client_data); }

    static void onError(j_common_ptr info) {
        JpegReader& reader = readerOf(info);
        reader.errors_.format_message(info, reader.text_.data());
        std::longjmp(reader.jump_, 1);
    }

    /// The library goes on after a warning, with samples of its own. Bytes too many between two markers harm nothing, nor
    /// does a profile that cannot be read.
    static void onMessage(j_common_ptr info, int level) {
        const int code = info->err->msg_code;
        if (level < 0 && code != JWRN_EXTRANEOUS_DATA && code != JWRN_BOGUS_ICC && code != JWRN_JFIF_MAJOR &&
            code != JWRN_ADOBE_XFORM) {
            onError(info);
        }
    }

    /// A progressive picture is gone over once for each of its scans, of which a small file may have very many.
    static void onProgress(j_common_ptr info) {
        constexpr int kMostScans = 500;
        if (readerOf(info).info_.input_scan_number > kMostScans) {
            info->err->msg_code = JWRN_BOGUS_PROGRESSION;
            onError(info);
        }
    }

    std::span<const uint8_t> source_;
    jpeg_decompress_struct info_{};
    jpeg_error_mgr errors_{};
    jpeg_progress_mgr progress_{};
    std::jmp_buf jump_{};
    std::array<char, JMSG_LENGTH_MAX> text_{};
};

/// A block of 64 samples takes a bit at the least, and three channels may share 18 of them for 1024 pixels.
bool canHold(std::size_t fileBytes, const JpegReader& reader) {
    constexpr uint64_t kMostExpansion = 1400;
    return uint64_t{reader.width()} * reader.height() * (reader.isGrey() ? 1 : 3) <=
           fileBytes * kMostExpansion;
}

void takeProfile(JpegReader& reader, Picture& picture) {
    JOCTET* profile = nullptr;
    unsigned count = 0;
    if (reader.readProfile(profile, count)) {
        const std::unique_ptr<JOCTET, decltype(&std::free)> owner(profile, std::free);
        picture.notes.push_back({"ICC", {}, {profile, profile + count}});
    }
}

} // namespace

Picture decodeJpegWith(std::span<const uint8_t> bytes, const std::string& name,
                       const DecodeOptions& options) {
    if (!beginsAsJpeg(bytes)) {
        failReading(name, "it is not a JPEG file");
    }
    JpegReader reader(bytes);
    if (!reader.readHeader()) {
        failReading(name, reader.reason());
    }
    if (const std::string refusal = reader.refusal(); !refusal.empty()) {
        failReading(name, refusal);
    }
    Picture picture;
    picture.format = FileFormat::kJpeg;
    picture.isLossy = true;
    picture.width = reader.width();
    picture.height = reader.height();
    picture.channels = reader.isGrey() ? Channels::kGrey : Channels::kRgb;
    checkSize(picture.width, picture.height, name);
    if (!canHold(bytes.size(), reader)) {
        failReading(name, "it is cut short: " + sizeText(picture.width, picture.height) + " need more bytes");
    }
    checkPixelCount(picture.width, picture.height, name, options);
    takeProfile(reader, picture);
    picture.samples.resize(picture.byteCount());
    if (!reader.readSamples(picture.samples.data(), picture.rowBytes())) {
        failReading(name, reader.reason());
    }
    return picture;
}

} // namespace kovalune::pictures
