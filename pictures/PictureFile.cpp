#include "pictures/PictureFile.h"

#include "pictures/EmbeddedSettings.h"
#include "pictures/FileBytes.h"
#include "pictures/NoteConversion.h"
#include "pictures/ReadFailure.h"
#include "pictures/bmp/BmpFile.h"
#include "pictures/exr/ExrFile.h"
#include "pictures/jpeg/JpegFile.h"
#include "pictures/png/PngFile.h"
#include "pictures/tga/TgaFile.h"
#include "pictures/tiff/TiffFile.h"
#include "pictures/webp/WebpFile.h"
#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>

namespace kovalune::pictures {

namespace {

using Bytes = std::span<const uint8_t>;

/// Null where the format's library is not built in; of a format that is read only, what writes.
struct Coder {
    Picture (*decode)(Bytes bytes, const std::string& name, const DecodeOptions& options) = nullptr;
    std::vector<uint8_t> (*encode)(const Picture& picture, const EncodeOptions& options) = nullptr;
    std::vector<std::string> (*compressions)() = nullptr;
};

// Of a format of which no part can be chosen.
template <Picture (*decode)(Bytes bytes, const std::string& name, const DecodeOptions& options)>
Picture decodeAlways(Bytes bytes, const std::string& name, const DecodeOptions& options) {
    if (options.isForExr()) {
        throw text::Failure(text::FailureKind::kUsage,
                            "cannot read " + text::inQuotes(name) +
                                " with --exr-layer or --exr-part: it is not an OpenEXR file");
    }
    return decode(bytes, name, options);
}

template <std::vector<uint8_t> (*encode)(const Picture& picture)>
std::vector<uint8_t> encodeAlways(const Picture& picture, const EncodeOptions&) {
    return encode(picture);
}

std::vector<std::string> noCompressions() {
    return {};
}

std::vector<std::string> runLengths() {
    return {"rle"};
}

#ifdef KOVALUNE_HAS_TIFF
constexpr Coder kTiffCoder = {decodeAlways<decodeTiffWith>, encodeTiff, tiffCompressionNames};
#else
constexpr Coder kTiffCoder;
#endif
#ifdef KOVALUNE_HAS_EXR
constexpr Coder kExrCoder = {decodeExrWith, encodeExr, exrCompressionNames};
#else
constexpr Coder kExrCoder;
#endif

#ifdef KOVALUNE_HAS_WEBP
constexpr Coder kWebpCoder = {decodeAlways<decodeWebpWith>, nullptr, nullptr};
#else
constexpr Coder kWebpCoder;
#endif
#ifdef KOVALUNE_HAS_JPEG
constexpr Coder kJpegCoder = {decodeAlways<decodeJpegWith>, nullptr, nullptr};
#else
constexpr Coder kJpegCoder;
#endif

/// What is told of a format to all that is not its own.
struct Format {
    FileFormat format;
    const char* name;
    const char* described; ///< "a PNG file"
    AlphaKind usualAlphaKind;
    bool (*begins)(Bytes bytes); ///< whether a file with these first bytes may be one
    Coder coder;

    bool isWritten = true;

    bool isBuiltIn() const { return coder.decode != nullptr; }
};

/// No file begins as two of them do.
constexpr std::array kFormats = {
    Format{FileFormat::kPng,
           "PNG",
           "a PNG file",
           AlphaKind::kStraight,
           beginsAsPng,
           {decodeAlways<decodePngWith>, encodePng, noCompressions}},
    Format{FileFormat::kTiff, "TIFF", "a TIFF file", AlphaKind::kStraight, beginsAsTiff, kTiffCoder},
    Format{FileFormat::kExr, "OpenEXR", "an OpenEXR file", AlphaKind::kPremultiplied, beginsAsExr, kExrCoder},
    Format{FileFormat::kTga,
           "TGA",
           "a TGA file",
           AlphaKind::kStraight,
           beginsAsTga,
           {decodeAlways<decodeTgaWith>, encodeAlways<encodeTga>, runLengths}},
    Format{FileFormat::kBmp,
           "BMP",
           "a BMP file",
           AlphaKind::kStraight,
           beginsAsBmp,
           {decodeAlways<decodeBmpWith>, nullptr, nullptr},
           false},
    Format{FileFormat::kWebp, "WebP", "a WebP file", AlphaKind::kStraight, beginsAsWebp, kWebpCoder, false},
    Format{FileFormat::kJpeg, "JPEG", "a JPEG file", AlphaKind::kStraight, beginsAsJpeg, kJpegCoder, false},
};

struct NameEnd {
    std::string_view text;
    FileFormat format;
};

constexpr std::array kNameEnds = {
    NameEnd{".png", FileFormat::kPng},   NameEnd{".tif", FileFormat::kTiff},
    NameEnd{".tiff", FileFormat::kTiff}, NameEnd{".exr", FileFormat::kExr},
    NameEnd{".tga", FileFormat::kTga},   NameEnd{".bmp", FileFormat::kBmp},
    NameEnd{".webp", FileFormat::kWebp}, NameEnd{".jpg", FileFormat::kJpeg},
    NameEnd{".jpeg", FileFormat::kJpeg},
};

/// The longest beginning that any format wants to see.
constexpr std::size_t kBeginning = 18;

const Format& formatOf(FileFormat format) {
    return *std::find_if(kFormats.begin(), kFormats.end(),
                         [format](const Format& each) { return each.format == format; });
}

const Format* formatBeginning(Bytes bytes) {
    const auto found = std::find_if(kFormats.begin(), kFormats.end(),
                                    [bytes](const Format& each) { return each.begins(bytes); });
    return found == kFormats.end() ? nullptr : &*found;
}

std::vector<std::string> nameEnds() {
    std::vector<std::string> ends;
    for (const NameEnd& each : kNameEnds) {
        const Format& format = formatOf(each.format);
        if (format.isWritten && format.isBuiltIn()) {
            ends.emplace_back(each.text);
        }
    }
    return ends;
}

bool beginsAsPhotoshop(Bytes bytes) {
    constexpr std::string_view kSignature = "8BPS";
    return bytes.size() >= kSignature.size() &&
           std::equal(kSignature.begin(), kSignature.end(), bytes.begin());
}

std::string notBuiltIn(const Format& format) {
    return std::string("this command was built without ") + format.name;
}

/// The format to read it as: `named`, or what it begins as.
const Format& checkedFormat(Bytes bytes, const Format* named, const std::string& name) {
    if (bytes.empty()) {
        failReading(name, "it is empty");
    }
    if (beginsAsPhotoshop(bytes)) {
        failReading(name, "it is a Photoshop file, which is not read; save a copy of it as PNG, or as TIFF "
                          "where it has 16 or 32 bits");
    }
    const Format* const begun = named != nullptr && named->begins(bytes) ? named : formatBeginning(bytes);
    if (named != nullptr && begun != named) {
        failReading(name, std::string("it is not ") + named->described +
                              (begun == nullptr ? "" : std::string(" but ") + begun->described));
    }
    if (begun == nullptr) {
        failReading(name, "it is not a picture of a known kind (" + formatNames() + ")");
    }
    if (!begun->isBuiltIn()) {
        failReading(name, notBuiltIn(*begun));
    }
    return *begun;
}

} // namespace

const char* formatName(FileFormat format) {
    return formatOf(format).name;
}

std::string formatNames() {
    std::vector<std::string> names;
    for (const Format& each : kFormats) {
        if (each.isBuiltIn()) {
            names.emplace_back(each.name);
        }
    }
    return text::oneOf(names);
}

std::string usualNameEnds() {
    std::string result;
    const Format* last = nullptr;
    for (const NameEnd& each : kNameEnds) {
        const Format* const format = &formatOf(each.format);
        if (format->isWritten && format->isBuiltIn() && format != last) {
            result += last == nullptr ? "" : " ";
            result += each.text;
        }
        last = format;
    }
    return result;
}

std::optional<FileFormat> formatOfName(const std::filesystem::path& file) {
    const std::string end = file.extension().string();
    for (const NameEnd& each : kNameEnds) {
        if (text::equalWithoutCase(end, each.text)) {
            return each.format;
        }
    }
    return std::nullopt;
}

const char* formatWord(FileFormat format) {
    const auto end = std::find_if(kNameEnds.begin(), kNameEnds.end(),
                                  [format](const NameEnd& each) { return each.format == format; });
    return end->text.data() + 1; // without the dot
}

void checkBuiltIn(FileFormat format, const std::string& output) {
    if (!formatOf(format).isBuiltIn()) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot write " + output + ": " + notBuiltIn(formatOf(format)));
    }
}

FileFormat formatToWrite(const std::filesystem::path& output) {
    std::error_code error;
    if (std::filesystem::is_directory(output, error) || !output.has_filename()) {
        throw text::Failure(text::FailureKind::kFile, "cannot write " + text::inQuotes(output.string()) +
                                                          ": it is a folder; name the file too, as in " +
                                                          text::inQuotes((output / "soft.png").string()));
    }
    const std::optional<FileFormat> format = formatOfName(output);
    if (!format || !formatOf(*format).isWritten) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot write " + text::inQuotes(output.string()) +
                                ": the end of its name says what is written, and must be " +
                                text::oneOf(nameEnds()));
    }
    checkBuiltIn(*format, text::inQuotes(output.string()));
    return *format;
}

Picture readPicture(const std::filesystem::path& file, const DecodeOptions& options) {
    const std::string name = readName(file);
    const std::optional<FileFormat> inName = file == kStream ? std::nullopt : formatOfName(file);
    if (options.format && inName && *options.format != *inName) {
        throw text::Failure(text::FailureKind::kUsage,
                            "cannot read " + text::inQuotes(name) + " as " + formatName(*options.format) +
                                ": by its name it is " + formatOf(*inName).described);
    }
    const std::optional<FileFormat> named = options.format ? options.format : inName;
    const Format* format = named ? &formatOf(*named) : nullptr;
    const std::vector<uint8_t> bytes = fileBytes(
        file, kBeginning, [&](Bytes beginning) { format = &checkedFormat(beginning, format, name); });
    return format->coder.decode(bytes, name, options);
}

Picture decodePicture(FileFormat format, std::span<const uint8_t> bytes, const std::string& name,
                      const DecodeOptions& options) {
    return checkedFormat(bytes, &formatOf(format), name).coder.decode(bytes, name, options);
}

std::vector<uint8_t> encodePicture(FileFormat format, const Picture& picture, const EncodeOptions& options) {
    const Coder& coder = formatOf(format).coder;
    if (coder.encode == nullptr) {
        throw text::Failure(text::FailureKind::kFile,
                            "cannot write the picture: " +
                                (formatOf(format).isWritten
                                     ? notBuiltIn(formatOf(format))
                                     : std::string(formatOf(format).name) + " files are read only"));
    }
    const std::vector<std::string> known = coder.compressions();
    if (!options.compression.empty() &&
        std::find(known.begin(), known.end(), options.compression) == known.end()) {
        throw text::Failure(text::FailureKind::kUsage,
                            "cannot make " + std::string(formatOf(format).described) + " with compression " +
                                text::inQuotes(options.compression));
    }
    if (!options.settings.empty() && !canEmbedSettings(format)) {
        throw text::Failure(text::FailureKind::kUsage,
                            std::string(formatOf(format).name) + " files have no place for settings");
    }
    if (options.settings.empty() && picture.format == format) {
        return coder.encode(picture, options);
    }
    std::vector<PictureNote> notes = notesFor(format, picture);
    if (!options.settings.empty()) {
        notes = withSettings(format, notes, options.settings);
    }
    if (notes.empty()) { // those of another format are nothing to an encoder
        return coder.encode(picture, options);
    }
    Picture carried = picture;
    carried.format = format;
    carried.notes = std::move(notes);
    return coder.encode(carried, options);
}

SampleType sampleTypeIn(FileFormat format, SampleType wanted) {
    switch (format) {
    case FileFormat::kPng:
        return wanted == SampleType::kUint8 ? SampleType::kUint8 : SampleType::kUint16;
    case FileFormat::kExr:
        return wanted == SampleType::kUint8 || wanted == SampleType::kHalf ? SampleType::kHalf
                                                                           : SampleType::kFloat;
    case FileFormat::kTga:
        return SampleType::kUint8;
    default:
        return wanted;
    }
}

std::vector<std::string> compressionsOf(FileFormat format) {
    const Format& known = formatOf(format);
    return known.coder.compressions != nullptr ? known.coder.compressions() : std::vector<std::string>{};
}

std::vector<std::string> compressionNames() {
    std::vector<std::string> names;
    for (const Format& format : kFormats) {
        for (const std::string& name : compressionsOf(format.format)) {
            if (std::find(names.begin(), names.end(), name) == names.end()) {
                names.push_back(name);
            }
        }
    }
    return names;
}

std::span<const SampleType> sampleTypesOf(FileFormat format) {
    static constexpr std::array kAll = {SampleType::kUint8, SampleType::kUint16, SampleType::kHalf,
                                        SampleType::kFloat};
    switch (format) {
    case FileFormat::kPng:
        return std::span(kAll).first<2>();
    case FileFormat::kExr:
        return std::span(kAll).last<2>();
    case FileFormat::kTga:
        return std::span(kAll).first<1>();
    default:
        return kAll;
    }
}

const char* sampleTypeWord(SampleType type) {
    switch (type) {
    case SampleType::kUint8:
        return "8";
    case SampleType::kUint16:
        return "16";
    case SampleType::kHalf:
        return "half";
    default:
        return "float";
    }
}

AlphaKind usualAlphaKind(FileFormat format) {
    return formatOf(format).usualAlphaKind;
}

} // namespace kovalune::pictures
