// Picture files by their names: which format a name stands for, and a picture from or for such a file. Formats whose
// library is not built in are known by name and content, and are refused with a message that says so.
#pragma once

#include "hostapi/Constants.h"
#include "pictures/DecodeOptions.h"
#include "pictures/EncodeOptions.h"
#include "pictures/Picture.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kovalune::pictures {

inline constexpr uint32_t kMostPixelsASide = PF_MAX_WORLD_WIDTH;
inline constexpr int kMostPixels = PF_MAX_WORLD_WIDTH * PF_MAX_WORLD_WIDTH;

/// "PNG", "TIFF", "OpenEXR" or "TGA".
const char* formatName(FileFormat format);

/// "PNG, TIFF, OpenEXR or TGA": those that are built in.
std::string formatNames();

/// ".png .tif .exr .tga": one end of a name for each format that is built in.
std::string usualNameEnds();

/// By the end of the name, without case: .png, .tif, .tiff, .exr, .tga.
std::optional<FileFormat> formatOfName(const std::filesystem::path& file);

/// "png", "tif", "exr" and "tga": how a user calls a format that is written.
const char* formatWord(FileFormat format);

/// Throws Failure if the format is not built in; `output` is for the message.
void checkBuiltIn(FileFormat format, const std::string& output);

/// The format of a file to write. Throws Failure if its name is that of a folder, or names no format or one that is not
/// built in.
FileFormat formatToWrite(const std::filesystem::path& output);

/// The file "-" is the standard input. A file whose name names no format is known by its first bytes. Throws Failure with the file's name if it is
/// missing, cannot be read, is of another format than its name says, is damaged or cut short, is of a kind that
/// is not read, is more than kMostPixelsASide wide or high, or has more pixels than the options allow. Such
/// a size, and one that so short a file cannot hold, is refused before memory is taken for it. Throws it too for options that are not for the file's format, or that choose what
/// it does not have.
Picture readPicture(const std::filesystem::path& file, const DecodeOptions& options = {});

/// `name` is for messages only. Throws as readPicture does.
Picture decodePicture(FileFormat format, std::span<const uint8_t> bytes, const std::string& name,
                      const DecodeOptions& options = {});

/// The bytes of a whole file. The picture's sample type must be one that the format has (see sampleTypeIn). Notes of
/// another format are carried over as far as this one has them. Throws Failure if the picture cannot be written, or not
/// with these options.
std::vector<uint8_t> encodePicture(FileFormat format, const Picture& picture,
                                   const EncodeOptions& options = {});

/// The type nearest to `wanted` that files of this format have: PNG Uint8 and Uint16, TIFF all, OpenEXR Half and
/// Float, TGA Uint8. In OpenEXR Uint8 becomes Half and Uint16 becomes Float, so that no value is lost; in PNG the
/// float types become Uint16.
SampleType sampleTypeIn(FileFormat format, SampleType wanted);

/// The types that files of this format have, the narrowest first.
std::span<const SampleType> sampleTypesOf(FileFormat format);

/// "8", "16", "half" or "float": how a user calls a type.
const char* sampleTypeWord(SampleType type);

/// The names that EncodeOptions::compression may have in this format, those that lose nothing first; none for PNG, which
/// has levels instead.
std::vector<std::string> compressionsOf(FileFormat format);

/// Of all formats, each name once.
std::vector<std::string> compressionNames();

/// The kind that files of this format hold unless they or the user say otherwise.
AlphaKind usualAlphaKind(FileFormat format);

} // namespace kovalune::pictures
