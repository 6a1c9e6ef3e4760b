#include "pictures/tiff/TiffFile.h"

#include "pictures/tiff/TiffCompression.h"
#include "pictures/tiff/TiffMemory.h"
#include "pictures/tiff/TiffNotes.h"
#include "text/Failure.h"

#include <algorithm>
#include <new>

namespace kovalune::pictures {

namespace {

// Each of these is false where the library does not take something: a file without it would be another one than was asked for.

bool setForm(TIFF* tiff, const Picture& picture) {
    const uint16_t alphaKind =
        picture.alphaKind == AlphaKind::kPremultiplied ? EXTRASAMPLE_ASSOCALPHA : EXTRASAMPLE_UNASSALPHA;
    return TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, picture.width) != 0 &&
           TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, picture.height) != 0 &&
           TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE,
                        static_cast<int>(8 * bytesPerSample(picture.sampleType))) != 0 &&
           TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(channelCount(picture.channels))) !=
               0 &&
           TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT,
                        isFloat(picture.sampleType) ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT) != 0 &&
           TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) != 0 &&
           TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                        isGrey(picture.channels) ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB) != 0 &&
           (!hasAlpha(picture.channels) || TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alphaKind) != 0);
}

uint16_t compressionFor(const Picture& picture, const EncodeOptions& options) {
    if (!options.compression.empty()) {
        return tiffCompressionNamed(options.compression);
    }
    const uint16_t tag =
        picture.format == FileFormat::kTiff ? tiffCompressionOf(picture.notes) : kUsualTiffCompression;
    return TIFFIsCODECConfigured(tag) == 0 ? kUsualTiffCompression : tag;
}

bool setCompression(TIFF* tiff, const Picture& picture, const EncodeOptions& options) {
    const uint16_t tag = compressionFor(picture, options);
    const auto* const compression = tiffCompression(tag);
    const bool isPredicted = compression != nullptr && compression->hasPredictor;
    return TIFFSetField(tiff, TIFFTAG_COMPRESSION, tag) != 0 &&
           (!isPredicted ||
            TIFFSetField(tiff, TIFFTAG_PREDICTOR,
                         isFloat(picture.sampleType) ? PREDICTOR_FLOATINGPOINT : PREDICTOR_HORIZONTAL) != 0);
}

bool write(TIFF* tiff, const Picture& picture, const EncodeOptions& options) {
    constexpr std::size_t kStripBytes = std::size_t{128} << 10;
    if (!setForm(tiff, picture) || !setCompression(tiff, picture, options)) {
        return false;
    }
    if (picture.format == FileFormat::kTiff) {
        setTiffNotes(tiff, picture);
    }
    const std::size_t rowBytes = picture.rowBytes();
    const std::size_t rows = std::clamp<std::size_t>(kStripBytes / std::max<std::size_t>(rowBytes, 1), 1,
                                                     std::max<std::size_t>(picture.height, 1));
    if (TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<uint32_t>(rows)) == 0) {
        return false;
    }
    uint32_t strip = 0;
    for (std::size_t y = 0; y < picture.height; y += rows, ++strip) {
        const auto size = static_cast<tmsize_t>(std::min(rows, picture.height - y) * rowBytes);
        // The library writes no samples back to where it takes them from.
        auto* const samples = const_cast<uint8_t*>(picture.samples.data() + y * rowBytes);
        if (TIFFWriteEncodedStrip(tiff, strip, samples, size) != size) {
            return false;
        }
    }
    return TIFFWriteDirectory(tiff) != 0;
}

} // namespace

std::vector<uint8_t> encodeTiff(const Picture& picture, const EncodeOptions& options) {
    // A classic TIFF has offsets of 32 bits; compressed samples may be a little longer than plain ones.
    constexpr std::size_t kMostClassicBytes = 0xe0000000;
    const bool isBig = picture.byteCount() > kMostClassicBytes;
    TiffMemory memory;
    {
        const OpenTiff tiff =
            openTiff(memory, isBig ? "w8m" : "wm", 2 * picture.byteCount() + (std::size_t{64} << 20));
        if (!tiff || !write(tiff.get(), picture, options)) {
            if (memory.outOfMemory) {
                throw std::bad_alloc();
            }
            throw text::Failure(text::FailureKind::kFile,
                                "cannot make a TIFF file: " + std::string(memory.error));
        }
    }
    if (picture.format == FileFormat::kTiff) {
        restoreFractions(memory.target, picture.notes);
    }
    return std::move(memory.target);
}

} // namespace kovalune::pictures
