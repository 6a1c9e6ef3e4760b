#include "pictures/Resolution.h"

#include "effect/share/StandardParts.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string_view>

namespace kovalune::pictures {

namespace {

using Bytes = std::vector<uint8_t>;
using Unit = Resolution::Unit;

constexpr double kInchesAMetre = 1.0 / 0.0254;

// Tags and values of TIFF.
constexpr char kAcrossTag[] = "282";
constexpr char kDownTag[] = "283";
constexpr char kUnitTag[] = "296";
constexpr char kShortType[] = "3";
constexpr char kFractionType[] = "5";
constexpr uint16_t kNoUnit = 1;
constexpr uint16_t kInch = 2;
constexpr uint16_t kCentimetre = 3;

const PictureNote* findNote(const Picture& picture, std::string_view name, std::string_view type,
                            std::size_t byteCount) {
    const auto found = std::find_if(picture.notes.begin(), picture.notes.end(), [&](const auto& note) {
        return note.name == name && note.type == type && note.bytes.size() == byteCount;
    });
    return found == picture.notes.end() ? nullptr : &*found;
}

/// In this machine's byte order.
template <class Value>
Value valueAt(const Bytes& bytes, std::size_t index) {
    Value value;
    std::memcpy(&value, bytes.data() + index * sizeof value, sizeof value);
    return value;
}

template <class Value>
void append(Bytes& bytes, Value value) {
    const std::size_t before = bytes.size();
    bytes.resize(before + sizeof value);
    std::memcpy(bytes.data() + before, &value, sizeof value);
}

/// PNG has the high byte first, OpenEXR the low one.
uint32_t numberAt(const Bytes& bytes, std::size_t place, bool highFirst) {
    uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number << 8 | bytes[place + (highFirst ? i : 3 - i)];
    }
    return number;
}

void appendNumber(Bytes& bytes, uint32_t number, bool highFirst) {
    for (uint32_t i = 0; i < 4; ++i) {
        bytes.push_back(static_cast<uint8_t>(number >> 8 * (highFirst ? 3 - i : i)));
    }
}

// --- PNG: whole numbers a metre

std::optional<Resolution> ofPng(const Picture& picture) {
    const PictureNote* const note = findNote(picture, "pHYs", "", 9);
    if (note == nullptr) {
        return std::nullopt;
    }
    return Resolution{static_cast<double>(numberAt(note->bytes, 0, true)),
                      static_cast<double>(numberAt(note->bytes, 4, true)),
                      note->bytes[8] == 1 ? Unit::kMetre : Unit::kNone};
}

std::vector<PictureNote> pngNotes(const Resolution& resolution) {
    constexpr double kMost = 0x7fffffff;
    // A relation of fractions has to become one of whole numbers.
    const double scale = resolution.unit == Unit::kInch   ? kInchesAMetre
                         : resolution.unit == Unit::kNone ? 10000.0
                                                          : 1.0;
    const double across = std::round(resolution.across * scale);
    const double down = std::round(resolution.down * scale);
    if (!(across >= 1 && down >= 1 && across <= kMost && down <= kMost)) {
        return {};
    }
    PictureNote note{"pHYs", {}, {}};
    appendNumber(note.bytes, static_cast<uint32_t>(across), true);
    appendNumber(note.bytes, static_cast<uint32_t>(down), true);
    note.bytes.push_back(resolution.unit == Unit::kNone ? 0 : 1);
    return {note};
}

// --- TIFF: fractions an inch or a centimetre

std::optional<Resolution> ofTiff(const Picture& picture) {
    const PictureNote* const across = findNote(picture, kAcrossTag, kFractionType, 8);
    const PictureNote* const down = findNote(picture, kDownTag, kFractionType, 8);
    const PictureNote* const unitNote = findNote(picture, kUnitTag, kShortType, 2);
    if (across == nullptr || down == nullptr) {
        return std::nullopt;
    }
    const uint16_t unit = unitNote == nullptr ? kInch : valueAt<uint16_t>(unitNote->bytes, 0);
    const auto value = [unit](const Bytes& fraction) {
        return static_cast<double>(valueAt<uint32_t>(fraction, 0)) * (unit == kCentimetre ? 100 : 1) /
               static_cast<double>(valueAt<uint32_t>(fraction, 1));
    };
    return Resolution{value(across->bytes), value(down->bytes),
                      unit == kCentimetre ? Unit::kMetre
                      : unit == kInch     ? Unit::kInch
                                          : Unit::kNone};
}

/// As exactly as its numbers allow; nothing if it is too large for them.
std::optional<PictureNote> fractionNote(const char* name, double value) {
    constexpr double kMost = 0xffffffffU;
    for (const double below : {10000.0, 100.0, 1.0}) {
        const double above = std::round(value * below);
        if (!(above >= 1 && above <= kMost)) {
            continue;
        }
        PictureNote note{name, kFractionType, {}};
        append(note.bytes, static_cast<uint32_t>(above));
        append(note.bytes, static_cast<uint32_t>(below));
        return note;
    }
    return std::nullopt;
}

std::vector<PictureNote> tiffNotes(const Resolution& resolution) {
    const bool metre = resolution.unit == Unit::kMetre;
    const auto across = fractionNote(kAcrossTag, resolution.across / (metre ? 100 : 1));
    const auto down = fractionNote(kDownTag, resolution.down / (metre ? 100 : 1));
    if (!across || !down) {
        return {};
    }
    PictureNote unit{kUnitTag, kShortType, {}};
    append(unit.bytes, metre ? kCentimetre : resolution.unit == Unit::kInch ? kInch : kNoUnit);
    return {*across, *down, unit};
}

// --- OpenEXR: a float an inch across, and the relation of down to across

std::optional<float> floatNote(const Picture& picture, std::string_view name) {
    const PictureNote* const note = findNote(picture, name, "float", 4);
    if (note == nullptr) {
        return std::nullopt;
    }
    return bitCast<float>(numberAt(note->bytes, 0, false));
}

PictureNote exrNote(const char* name, double value) {
    PictureNote note{name, "float", {}};
    appendNumber(note.bytes, bitCast<uint32_t>(static_cast<float>(value)), false);
    return note;
}

std::optional<Resolution> ofExr(const Picture& picture) {
    const std::optional<float> density = floatNote(picture, "xDensity");
    const auto aspect = static_cast<double>(floatNote(picture, "pixelAspectRatio").value_or(1.0F));
    if (density) {
        return Resolution{static_cast<double>(*density), static_cast<double>(*density) * aspect, Unit::kInch};
    }
    if (aspect != 1.0) {
        return Resolution{1.0, aspect, Unit::kNone};
    }
    return std::nullopt;
}

std::vector<PictureNote> exrNotes(const Resolution& resolution) {
    std::vector<PictureNote> notes;
    if (resolution.unit != Unit::kNone) {
        const bool metre = resolution.unit == Unit::kMetre;
        notes.push_back(exrNote("xDensity", resolution.across / (metre ? kInchesAMetre : 1.0)));
    }
    if (resolution.across != resolution.down) {
        notes.push_back(exrNote("pixelAspectRatio", resolution.down / resolution.across));
    }
    return notes;
}

bool isPositive(double value) {
    return value > 0 && std::isfinite(value);
}

std::optional<Resolution> toldBy(const Picture& picture) {
    switch (picture.format) {
    case FileFormat::kPng:
        return ofPng(picture);
    case FileFormat::kTiff:
        return ofTiff(picture);
    case FileFormat::kExr:
        return ofExr(picture);
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<Resolution> resolutionOf(const Picture& picture) {
    const std::optional<Resolution> told = toldBy(picture);
    const bool sound = told && isPositive(told->across) && isPositive(told->down);
    return sound ? told : std::nullopt;
}

std::vector<PictureNote> resolutionNotes(FileFormat format, const Resolution& resolution) {
    switch (format) {
    case FileFormat::kPng:
        return pngNotes(resolution);
    case FileFormat::kTiff:
        return tiffNotes(resolution);
    case FileFormat::kExr:
        return exrNotes(resolution);
    default:
        return {};
    }
}

} // namespace kovalune::pictures
