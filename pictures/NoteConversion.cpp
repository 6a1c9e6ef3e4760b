#include "pictures/NoteConversion.h"

#include "pictures/ColourProfile.h"
#include "pictures/Resolution.h"
#include "pictures/png/PngTexts.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <zlib.h>

namespace kovalune::pictures {

namespace {

using Bytes = std::vector<uint8_t>;

constexpr char kTiffBytes[] = "7"; // the type of bytes without a meaning

/// In memory; a larger one is no profile.
constexpr std::size_t kMostProfileBytes = std::size_t{64} << 20;

struct EndInflate {
    void operator()(z_stream* stream) const noexcept { inflateEnd(stream); }
};

/// The bytes that `packed` stands for; nothing if it is damaged or too much.
std::optional<Bytes> unpacked(const uint8_t* packed, std::size_t count) {
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) {
        throw std::bad_alloc();
    }
    const std::unique_ptr<z_stream, EndInflate> end(&stream);
    Bytes bytes;
    stream.next_in = const_cast<uint8_t*>(packed); // it reads only
    stream.avail_in = static_cast<uInt>(count);
    for (int state = Z_OK; state != Z_STREAM_END;) {
        constexpr std::size_t kBlock = std::size_t{1} << 14;
        const std::size_t before = bytes.size();
        if (before + kBlock > kMostProfileBytes) {
            return std::nullopt;
        }
        bytes.resize(before + kBlock);
        stream.next_out = bytes.data() + before;
        stream.avail_out = kBlock;
        state = inflate(&stream, Z_NO_FLUSH);
        if (state == Z_MEM_ERROR) {
            throw std::bad_alloc();
        }
        if (state != Z_OK && state != Z_STREAM_END) {
            return std::nullopt;
        }
        bytes.resize(before + kBlock - stream.avail_out);
    }
    return bytes;
}

Bytes packed(const Bytes& bytes) {
    uLongf count = compressBound(static_cast<uLong>(bytes.size()));
    Bytes result(count);
    if (compress2(result.data(), &count, bytes.data(), static_cast<uLong>(bytes.size()),
                  Z_BEST_COMPRESSION) != Z_OK) {
        throw std::bad_alloc();
    }
    result.resize(count);
    return result;
}

/// The profile itself: in PNG it stands packed after a name, its zero and the way of packing (0).
std::optional<Bytes> profileOf(const Picture& picture) {
    const auto note = std::find_if(picture.notes.begin(), picture.notes.end(), [&picture](const auto& each) {
        return isColourProfile(each, picture.format);
    });
    if (note == picture.notes.end() || note->bytes.size() > kMostProfileBytes) {
        return std::nullopt;
    }
    if (picture.format != FileFormat::kPng) {
        return note->bytes;
    }
    const auto zero = std::find(note->bytes.begin(), note->bytes.end(), 0);
    const std::ptrdiff_t left = note->bytes.end() - zero;
    if (left < 3 || zero[1] != 0) {
        return std::nullopt;
    }
    return unpacked(&zero[2], static_cast<std::size_t>(left - 2));
}

std::optional<PictureNote> profileNote(FileFormat format, const Bytes& profile) {
    if (format == FileFormat::kTiff) {
        return PictureNote{kTiffProfile, kTiffBytes, profile};
    }
    if (format != FileFormat::kPng) {
        return std::nullopt;
    }
    constexpr std::string_view kNameAndPacking("ICC Profile\0\0", 13);
    PictureNote note{kPngProfile, {}, {kNameAndPacking.begin(), kNameAndPacking.end()}};
    const Bytes data = packed(profile);
    note.bytes.insert(note.bytes.end(), data.begin(), data.end());
    return note;
}

} // namespace

std::vector<std::string> notesLeftOut(FileFormat format, const Picture& picture) {
    const std::string texts =
        picture.format == FileFormat::kPng && format != FileFormat::kPng ? pngTextsNamed(picture) : "";
    return texts.empty() ? std::vector<std::string>{} : std::vector{texts};
}

std::vector<PictureNote> notesFor(FileFormat format, const Picture& picture) {
    if (format == picture.format) {
        return picture.notes;
    }
    std::vector<PictureNote> notes;
    if (const std::optional<Bytes> profile = profileOf(picture); profile && !profile->empty()) {
        if (const std::optional<PictureNote> note = profileNote(format, *profile)) {
            notes.push_back(*note);
        }
    }
    if (const std::optional<Resolution> resolution = resolutionOf(picture)) {
        for (const PictureNote& note : resolutionNotes(format, *resolution)) {
            notes.push_back(note);
        }
    }
    return notes;
}

} // namespace kovalune::pictures
