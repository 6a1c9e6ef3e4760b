#include "pictures/tiff/TiffNotes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace kovalune::pictures {

namespace {

struct Kind {
    uint16_t tag;
    uint16_t type;
    uint32_t count;    ///< 0: any
    uint16_t most = 0; ///< of a SHORT that may be 1 to this
};

constexpr std::array kKinds = {
    Kind{TIFFTAG_IMAGEDESCRIPTION, TIFF_ASCII, 0},
    Kind{TIFFTAG_ORIENTATION, TIFF_SHORT, 1, ORIENTATION_LEFTBOT},
    Kind{TIFFTAG_XRESOLUTION, TIFF_RATIONAL, 1},
    Kind{TIFFTAG_YRESOLUTION, TIFF_RATIONAL, 1},
    Kind{TIFFTAG_XPOSITION, TIFF_RATIONAL, 1},
    Kind{TIFFTAG_YPOSITION, TIFF_RATIONAL, 1},
    Kind{TIFFTAG_RESOLUTIONUNIT, TIFF_SHORT, 1, RESUNIT_CENTIMETER},
    Kind{TIFFTAG_TRANSFERFUNCTION, TIFF_SHORT, 0},
    Kind{TIFFTAG_ARTIST, TIFF_ASCII, 0},
    Kind{TIFFTAG_WHITEPOINT, TIFF_RATIONAL, 2},
    Kind{TIFFTAG_PRIMARYCHROMATICITIES, TIFF_RATIONAL, 6},
    Kind{TIFFTAG_PIXAR_IMAGEFULLWIDTH, TIFF_LONG, 1},
    Kind{TIFFTAG_PIXAR_IMAGEFULLLENGTH, TIFF_LONG, 1},
    Kind{TIFFTAG_COPYRIGHT, TIFF_ASCII, 0},
    Kind{TIFFTAG_ICCPROFILE, TIFF_UNDEFINED, 0},
};

template <class Value>
std::vector<Value> valuesOf(const PictureNote& note) {
    std::vector<Value> values(note.bytes.size() / sizeof(Value));
    std::memcpy(values.data(), note.bytes.data(), values.size() * sizeof(Value));
    return values;
}

const Kind* kindOf(const PictureNote& note) {
    const auto found = std::find_if(kKinds.begin(), kKinds.end(), [&note](const Kind& kind) {
        return note.name == std::to_string(kind.tag) && note.type == std::to_string(kind.type);
    });
    const bool fits = found != kKinds.end() && !note.bytes.empty() &&
                      note.bytes.size() % tiffTypeBytes(found->type) == 0 &&
                      (found->count == 0 || note.bytes.size() / tiffTypeBytes(found->type) == found->count);
    if (!fits) {
        return nullptr;
    }
    const uint16_t value = found->most != 0 ? valuesOf<uint16_t>(note).front() : 0;
    return found->most == 0 || (value >= 1 && value <= found->most) ? &*found : nullptr;
}

/// The library knows resolutions and positions in pairs only, and writes a 0 for the other.
bool lacksOther(const PictureNote& note, const std::vector<PictureNote>& notes) {
    constexpr std::array<std::array<uint16_t, 2>, 2> kPairs = {
        {{TIFFTAG_XRESOLUTION, TIFFTAG_YRESOLUTION}, {TIFFTAG_XPOSITION, TIFFTAG_YPOSITION}}};
    const auto has = [&notes](uint16_t tag) {
        return std::any_of(notes.begin(), notes.end(), [tag](const PictureNote& each) {
            return kindOf(each) != nullptr && kindOf(each)->tag == tag;
        });
    };
    const Kind* const kind = kindOf(note);
    return kind != nullptr && std::any_of(kPairs.begin(), kPairs.end(), [&](const auto& pair) {
               return (kind->tag == pair[0] || kind->tag == pair[1]) && !(has(pair[0]) && has(pair[1]));
           });
}

/// One table for all colours or one for each, of a value for each value of a sample.
void setTransferFunction(TIFF* tiff, const std::vector<uint16_t>& tables, const Picture& picture) {
    const std::size_t length = std::size_t{1} << 8 * bytesPerSample(picture.sampleType);
    if (picture.sampleType == SampleType::kFloat || tables.size() % length != 0) {
        return;
    }
    const std::size_t count = tables.size() / length;
    if (isGrey(picture.channels) && count == 1) {
        TIFFSetField(tiff, TIFFTAG_TRANSFERFUNCTION, tables.data());
    } else if (!isGrey(picture.channels) && (count == 1 || count == 3)) {
        TIFFSetField(tiff, TIFFTAG_TRANSFERFUNCTION, tables.data(), tables.data() + (count == 3 ? length : 0),
                     tables.data() + (count == 3 ? 2 * length : 0));
    }
}

void setNote(TIFF* tiff, const Kind& kind, const PictureNote& note, const Picture& picture) {
    switch (kind.type) {
    case TIFF_ASCII:
        TIFFSetField(tiff, kind.tag, std::string(note.bytes.begin(), note.bytes.end()).c_str());
        break;
    case TIFF_SHORT:
        if (kind.tag == TIFFTAG_TRANSFERFUNCTION) {
            setTransferFunction(tiff, valuesOf<uint16_t>(note), picture);
        } else {
            TIFFSetField(tiff, kind.tag, valuesOf<uint16_t>(note).front());
        }
        break;
    case TIFF_LONG:
        TIFFSetField(tiff, kind.tag, valuesOf<uint32_t>(note).front());
        break;
    case TIFF_RATIONAL: {
        // Places for restoreFractions.
        const std::array<float, 6> ones = {1, 1, 1, 1, 1, 1};
        if (kind.count == 1) {
            TIFFSetField(tiff, kind.tag, 1.0);
        } else {
            TIFFSetField(tiff, kind.tag, ones.data());
        }
        break;
    }
    default:
        TIFFSetField(tiff, kind.tag, static_cast<uint32_t>(note.bytes.size()), note.bytes.data());
    }
}

} // namespace

std::vector<PictureNote> tiffNotes(const TiffDirectory& directory) {
    std::vector<PictureNote> notes;
    for (const Kind& kind : kKinds) {
        const TiffEntry* const entry = directory.find(kind.tag);
        // A profile of single bytes is the same by another name.
        if (entry == nullptr ||
            (entry->type != kind.type && !(kind.type == TIFF_UNDEFINED && entry->type == TIFF_BYTE))) {
            continue;
        }
        PictureNote note{std::to_string(kind.tag), std::to_string(kind.type), directory.nativeBytes(*entry)};
        if (kind.type == TIFF_ASCII) {
            note.bytes.erase(std::find(note.bytes.begin(), note.bytes.end(), 0), note.bytes.end());
            if (note.bytes.empty()) {
                continue;
            }
            note.bytes.push_back(0);
        }
        if (kindOf(note) != nullptr) {
            notes.push_back(std::move(note));
        }
    }
    const std::vector<PictureNote> all = notes;
    std::erase_if(notes, [&all](const PictureNote& note) { return lacksOther(note, all); });
    return notes;
}

void setTiffNotes(TIFF* tiff, const Picture& picture) {
    for (const PictureNote& note : picture.notes) {
        const Kind* const kind = kindOf(note);
        if (kind != nullptr && !lacksOther(note, picture.notes)) {
            setNote(tiff, *kind, note, picture);
        }
    }
}

void restoreFractions(std::vector<uint8_t>& file, const std::vector<PictureNote>& notes) {
    const TiffDirectory directory(file);
    for (const PictureNote& note : notes) {
        const Kind* const kind = kindOf(note);
        if (kind == nullptr || kind->type != TIFF_RATIONAL) {
            continue;
        }
        const TiffEntry* const entry = directory.find(kind->tag);
        if (entry != nullptr && entry->type == TIFF_RATIONAL && entry->count == kind->count) {
            std::memcpy(file.data() + entry->place, note.bytes.data(), note.bytes.size());
        }
    }
}

} // namespace kovalune::pictures
