#include "pictures/tiff/TiffDirectory.h"

#include <algorithm>
#include <bit>

namespace kovalune::pictures {

namespace {

enum Type : uint16_t { kByte = 1, kShort = 3, kLong = 4, kLong8 = 16 };

/// What byte order swaps: a fraction is two numbers.
std::size_t wordBytes(uint16_t type) {
    constexpr uint16_t kRational = 5, kSignedRational = 10;
    return type == kRational || type == kSignedRational ? 4 : tiffTypeBytes(type);
}

} // namespace

std::size_t tiffTypeBytes(uint16_t type) {
    constexpr uint8_t kBytes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
    return type < std::size(kBytes) ? kBytes[type] : 0;
}

TiffDirectory::TiffDirectory(std::span<const uint8_t> bytes) : bytes_(bytes) {
    constexpr uint64_t kBigTiffVersion = 43;
    if (!has(0, 8)) {
        return;
    }
    bigEndian_ = bytes[0] == 'M';
    bigTiff_ = numberAt(2, 2) == kBigTiffVersion;
    if (!bigTiff_) {
        readEntries(numberAt(4, 4));
    } else if (has(8, 8)) {
        readEntries(numberAt(8, 8));
    }
}

uint64_t TiffDirectory::numberAt(std::size_t place, std::size_t count) const {
    uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value |= uint64_t{bytes_[place + i]} << 8 * (bigEndian_ ? count - 1 - i : i);
    }
    return value;
}

void TiffDirectory::readEntries(uint64_t place) {
    const std::size_t countBytes = bigTiff_ ? 8 : 2;
    const std::size_t wideBytes = bigTiff_ ? 8 : 4; // of a count or an offset
    const std::size_t entryBytes = 4 + 2 * wideBytes;
    if (!has(place, countBytes)) {
        return;
    }
    std::size_t at = static_cast<std::size_t>(place);
    const uint64_t count = numberAt(at, countBytes);
    at += countBytes;
    for (uint64_t i = 0; i < count; ++i, at += entryBytes) {
        if (!has(at, entryBytes)) {
            return;
        }
        TiffEntry entry;
        entry.tag = static_cast<uint16_t>(numberAt(at, 2));
        entry.type = static_cast<uint16_t>(numberAt(at + 2, 2));
        entry.count = numberAt(at + 4, wideBytes);
        const std::size_t element = tiffTypeBytes(entry.type);
        if (element == 0 || entry.count == 0 || entry.count > bytes_.size()) {
            continue;
        }
        const std::size_t inEntry = at + 4 + wideBytes;
        const uint64_t valueBytes = entry.count * element;
        const uint64_t value = valueBytes <= wideBytes ? inEntry : numberAt(inEntry, wideBytes);
        if (!has(value, valueBytes)) {
            continue;
        }
        entry.place = static_cast<std::size_t>(value);
        entries_.push_back(entry);
    }
    whole_ = true;
    hasNext_ = has(at, wideBytes) && numberAt(at, wideBytes) != 0;
}

const TiffEntry* TiffDirectory::find(uint16_t tag) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [tag](const TiffEntry& each) { return each.tag == tag; });
    return found == entries_.end() ? nullptr : &*found;
}

std::optional<uint64_t> TiffDirectory::number(uint16_t tag) const {
    const TiffEntry* const entry = find(tag);
    if (entry == nullptr ||
        (entry->type != kByte && entry->type != kShort && entry->type != kLong && entry->type != kLong8)) {
        return std::nullopt;
    }
    return numberAt(entry->place, tiffTypeBytes(entry->type));
}

std::vector<uint8_t> TiffDirectory::nativeBytes(const TiffEntry& entry) const {
    const auto source =
        bytes_.subspan(entry.place, static_cast<std::size_t>(entry.count) * tiffTypeBytes(entry.type));
    std::vector<uint8_t> value(source.begin(), source.end());
    if (bigEndian_ != (std::endian::native == std::endian::big)) {
        const auto word = static_cast<std::ptrdiff_t>(wordBytes(entry.type));
        for (auto at = value.begin(); at != value.end(); at += word) {
            std::reverse(at, at + word);
        }
    }
    return value;
}

} // namespace kovalune::pictures
