// The tags of a TIFF file's first page as they stand in its bytes: for what must be known before the TIFF
// library takes memory, and for values that it rounds. Nothing outside the bytes is ever read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace kovalune::pictures {

struct TiffEntry {
    uint16_t tag = 0;
    uint16_t type = 0;
    uint64_t count = 0;
    std::size_t place = 0; ///< of the value in the file
};

/// Of one element; 0 for an unknown type.
std::size_t tiffTypeBytes(uint16_t type);

class TiffDirectory {
public:
    /// Entries whose values are of unknown types or not wholly in the file are left out.
    explicit TiffDirectory(std::span<const uint8_t> bytes);

    /// Whether all entries were there to be read.
    bool isWhole() const { return whole_; }
    bool hasNext() const { return hasNext_; }

    /// The first with this tag, as the library takes it. Null if there is none.
    const TiffEntry* find(uint16_t tag) const;

    /// The first element of a whole-number tag.
    std::optional<uint64_t> number(uint16_t tag) const;

    /// The value in this machine's byte order.
    std::vector<uint8_t> nativeBytes(const TiffEntry& entry) const;

private:
    bool has(uint64_t place, uint64_t count) const {
        return place <= bytes_.size() && count <= bytes_.size() - place;
    }
    uint64_t numberAt(std::size_t place, std::size_t count) const;
    void readEntries(uint64_t place);

    std::span<const uint8_t> bytes_;
    bool bigEndian_ = false;
    bool bigTiff_ = false;
    bool whole_ = false;
    bool hasNext_ = false;
    std::vector<TiffEntry> entries_;
};

} // namespace kovalune::pictures
