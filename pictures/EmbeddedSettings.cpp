#include "pictures/EmbeddedSettings.h"

#include <algorithm>
#include <string_view>

namespace kovalune::pictures {

namespace {

using Bytes = std::vector<uint8_t>;

/// The first line, by which they are found after other text.
constexpr std::string_view kTitle = "; Kovalune settings\n";

/// A PNG's text in UTF-8: keyword, not packed (two zeros), no language, no translation of the keyword.
constexpr std::string_view kPngKind = "iTXt";
constexpr std::string_view kPngStart("Kovalune settings\0\0\0\0\0", 22);

constexpr std::string_view kTiffDescription = "270";
constexpr std::string_view kTiffText = "2";

constexpr std::string_view kExrAttribute = "kovaluneSettings";
constexpr std::string_view kExrText = "string";

bool beginsWith(const Bytes& bytes, std::string_view text) {
    return bytes.size() >= text.size() && std::equal(text.begin(), text.end(), bytes.begin());
}

bool isDescription(const PictureNote& note, FileFormat format) {
    return format == FileFormat::kTiff && note.name == kTiffDescription;
}

/// Up to the zero at its end.
std::string descriptionOf(const PictureNote& note) {
    return {note.bytes.begin(), std::find(note.bytes.begin(), note.bytes.end(), uint8_t{0})};
}

/// Where they begin, at the start of a line; npos where there are none.
std::size_t placeIn(const std::string& description) {
    for (std::size_t at = description.find(kTitle); at != std::string::npos;
         at = description.find(kTitle, at + 1)) {
        if (at == 0 || description[at - 1] == '\n') {
            return at;
        }
    }
    return std::string::npos;
}

/// The user's part, without the line's end between the two.
std::string usersPart(const std::string& description) {
    const std::size_t place = placeIn(description);
    return description.substr(0, place == 0 || place == std::string::npos ? place : place - 1);
}

PictureNote described(const std::string& text) {
    PictureNote note{std::string(kTiffDescription), std::string(kTiffText), {text.begin(), text.end()}};
    note.bytes.push_back(0);
    return note;
}

std::optional<std::string> settingsIn(const PictureNote& note, FileFormat format) {
    if (isDescription(note, format)) {
        const std::string text = descriptionOf(note);
        const std::size_t place = placeIn(text);
        return place == std::string::npos ? std::nullopt : std::optional(text.substr(place));
    }
    if (!isEmbeddedSettings(note, format)) {
        return std::nullopt;
    }
    const std::size_t start = format == FileFormat::kPng ? kPngStart.size() : 0;
    return std::string(note.bytes.begin() + static_cast<std::ptrdiff_t>(start), note.bytes.end());
}

} // namespace

bool canEmbedSettings(FileFormat format) {
    return format == FileFormat::kPng || format == FileFormat::kTiff || format == FileFormat::kExr;
}

bool isEmbeddedSettings(const PictureNote& note, FileFormat format) {
    return (format == FileFormat::kPng && note.name == kPngKind && beginsWith(note.bytes, kPngStart)) ||
           (format == FileFormat::kExr && note.name == kExrAttribute && note.type == kExrText);
}

std::optional<std::string> embeddedSettings(const Picture& picture) {
    for (const PictureNote& note : picture.notes) {
        if (std::optional<std::string> settings = settingsIn(note, picture.format)) {
            return settings;
        }
    }
    return std::nullopt;
}

bool holdsSettings(const Picture& picture, const std::string& settings) {
    return embeddedSettings(picture) == std::string(kTitle) + settings;
}

std::vector<PictureNote> withoutSettings(FileFormat format, const std::vector<PictureNote>& notes) {
    std::vector<PictureNote> others;
    for (const PictureNote& note : notes) {
        const bool isMixed = isDescription(note, format) && settingsIn(note, format);
        if (isMixed && !usersPart(descriptionOf(note)).empty()) {
            others.push_back(described(usersPart(descriptionOf(note))));
        } else if (!isMixed && !isEmbeddedSettings(note, format)) {
            others.push_back(note);
        }
    }
    return others;
}

std::vector<PictureNote> withSettings(FileFormat format, const std::vector<PictureNote>& notes,
                                      const std::string& settings) {
    std::vector<PictureNote> all = withoutSettings(format, notes);
    std::string text = std::string(kTitle) + settings;
    if (format == FileFormat::kPng) {
        text.insert(0, kPngStart);
        all.push_back({std::string(kPngKind), {}, {text.begin(), text.end()}});
    } else if (format == FileFormat::kExr) {
        all.push_back({std::string(kExrAttribute), std::string(kExrText), {text.begin(), text.end()}});
    } else {
        const auto old = std::find_if(all.begin(), all.end(), [format](const PictureNote& note) {
            return isDescription(note, format);
        });
        if (old == all.end()) {
            all.push_back(described(text));
        } else {
            *old = described(descriptionOf(*old) + '\n' + text);
        }
    }
    return all;
}

} // namespace kovalune::pictures
