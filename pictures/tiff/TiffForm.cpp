#include "pictures/tiff/TiffForm.h"

#include "pictures/ReadFailure.h"

#include <algorithm>
#include <span>

namespace kovalune::pictures {

namespace {

uint16_t shortField(TIFF* tiff, uint32_t tag) {
    uint16_t value = 0;
    TIFFGetFieldDefaulted(tiff, tag, &value);
    return value;
}

uint32_t longField(TIFF* tiff, uint32_t tag) {
    uint32_t value = 0;
    TIFFGetFieldDefaulted(tiff, tag, &value);
    return value;
}

std::string coloursName(uint16_t photometric) {
    switch (photometric) {
    case PHOTOMETRIC_MASK:
        return "a transparency mask";
    case PHOTOMETRIC_SEPARATED:
        return "CMYK or other inks";
    case PHOTOMETRIC_YCBCR:
        return "YCbCr without JPEG compression";
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
    case PHOTOMETRIC_ITULAB:
        return "L*a*b*";
    case PHOTOMETRIC_CFA:
        return "a camera's raw colour filter array";
    case PHOTOMETRIC_LOGL:
    case PHOTOMETRIC_LOGLUV:
        return "logarithmic luminance";
    default:
        return "of photometric kind " + std::to_string(photometric);
    }
}

TiffColours coloursOf(TIFF* tiff, const TiffForm& form, const std::string& name) {
    uint16_t photometric = 0;
    if (TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric) == 0) {
        failReading(name, "its photometric kind is missing");
    }
    switch (photometric) {
    case PHOTOMETRIC_MINISBLACK:
        return TiffColours::kMinIsBlack;
    case PHOTOMETRIC_MINISWHITE:
        return TiffColours::kMinIsWhite;
    case PHOTOMETRIC_RGB:
        return TiffColours::kRgb;
    case PHOTOMETRIC_PALETTE:
        return TiffColours::kPalette;
    case PHOTOMETRIC_YCBCR:
        // The JPEG library turns them into RGB.
        if (form.compression->tag == COMPRESSION_JPEG && form.bits == 8 && !form.planes &&
            TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB) != 0) {
            return TiffColours::kRgb;
        }
        [[fallthrough]];
    default:
        failReading(name, "its colours are " + coloursName(photometric) + ", which is not read");
    }
}

SampleType sampleTypeOf(TIFF* tiff, const TiffForm& form, const std::string& name) {
    const uint16_t format = shortField(tiff, TIFFTAG_SAMPLEFORMAT);
    const std::string bits = std::to_string(form.bits) + "-bit ";
    if (format == SAMPLEFORMAT_IEEEFP) {
        if (form.bits == 16) {
            return SampleType::kHalf;
        }
        if (form.bits == 32) {
            return SampleType::kFloat;
        }
        failReading(name, "its samples are " + bits + "floats, and only those of 16 and 32 bits are read");
    }
    if (format == SAMPLEFORMAT_INT) {
        failReading(name, "its samples are " + bits + "signed numbers, which are not read");
    }
    if (format != SAMPLEFORMAT_UINT && format != SAMPLEFORMAT_VOID) {
        failReading(name, "its samples are complex numbers, which are not read");
    }
    if (form.bits == 1 || form.bits == 2 || form.bits == 4 || form.bits == 8) {
        return SampleType::kUint8;
    }
    if (form.bits == 16) {
        return SampleType::kUint16;
    }
    failReading(name,
                "its samples are " + bits + "numbers, and only those of 1, 2, 4, 8 and 16 bits are read");
}

/// The samples after the colours: one of them is alpha.
void findAlpha(TIFF* tiff, TiffForm& form) {
    uint16_t count = 0;
    const uint16_t* listed = nullptr;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &count, &listed);
    const std::span<const uint16_t> kinds(listed, count);
    const unsigned extras = form.samples - form.colourSamples();
    if (extras == 0) {
        return;
    }
    const auto named = std::find_if(kinds.begin(), kinds.end(), [](uint16_t kind) {
        return kind == EXTRASAMPLE_ASSOCALPHA || kind == EXTRASAMPLE_UNASSALPHA;
    });
    const auto index = static_cast<unsigned>(named == kinds.end() ? 0 : named - kinds.begin());
    if (index < extras) {
        form.alpha = form.colourSamples() + index;
    }
    if (named != kinds.end() && *named == EXTRASAMPLE_ASSOCALPHA) {
        form.alphaKind = AlphaKind::kPremultiplied;
    }
    for (unsigned extra = 0; extra < extras; ++extra) {
        if (extra != index) {
            form.leftOut.push_back("extra sample " + std::to_string(extra + 1));
        }
    }
}

void checkCombination(const TiffForm& form, const std::string& name) {
    if (form.samples < form.colourSamples()) {
        failReading(name,
                    "it is damaged: " + std::to_string(form.samples) + " samples are too few for a colour");
    }
    if (form.colours == TiffColours::kPalette &&
        (form.bits > 8 || isFloat(form.sampleType) || (form.alpha && form.bits < 8))) {
        failReading(name, "it is a palette picture with " + std::to_string(form.bits) + "-bit " +
                              (form.alpha ? "alpha" : "samples") + ", which is not read");
    }
    if (form.colours == TiffColours::kMinIsWhite &&
        (isFloat(form.sampleType) || form.alphaKind == AlphaKind::kPremultiplied)) {
        failReading(name, "its white is 0 and its samples are " +
                              std::string(isFloat(form.sampleType) ? "floats" : "premultiplied") +
                              ", which is not read");
    }
}

} // namespace

TiffForm tiffForm(TIFF* tiff, const std::string& name) {
    TiffForm form;
    form.width = longField(tiff, TIFFTAG_IMAGEWIDTH);
    form.height = longField(tiff, TIFFTAG_IMAGELENGTH);
    const uint16_t compression = shortField(tiff, TIFFTAG_COMPRESSION);
    form.compression = tiffCompression(compression);
    if (form.compression == nullptr || !form.compression->isRead || TIFFIsCODECConfigured(compression) == 0) {
        failReading(name,
                    "it is compressed with " + tiffCompressionName(compression) + ", which is not read");
    }
    form.bits = shortField(tiff, TIFFTAG_BITSPERSAMPLE);
    form.samples = shortField(tiff, TIFFTAG_SAMPLESPERPIXEL);
    form.planes = shortField(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE && form.samples > 1;
    form.colours = coloursOf(tiff, form, name);
    form.sampleType = sampleTypeOf(tiff, form, name);
    if (form.samples >= form.colourSamples()) {
        findAlpha(tiff, form);
    }
    checkCombination(form, name);
    form.tiled = TIFFIsTiled(tiff) != 0;
    form.blockWidth = form.tiled ? longField(tiff, TIFFTAG_TILEWIDTH) : form.width;
    form.blockHeight = form.tiled ? longField(tiff, TIFFTAG_TILELENGTH)
                                  : std::min(longField(tiff, TIFFTAG_ROWSPERSTRIP), form.height);
    if (form.blockWidth == 0 || form.blockHeight == 0) {
        failReading(name, "it is damaged: its strips or tiles have no pixels");
    }
    return form;
}

} // namespace kovalune::pictures
