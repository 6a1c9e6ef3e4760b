#include "pictures/regions/ColorTable.h"

namespace kovalune::pictures {

namespace {

constexpr std::size_t kFirstSlots = 1024; // a power of 2, as every number of slots
constexpr uint32_t kFree = 0xffffffffU;

std::size_t hashOf(const ColorBits& bits) {
    uint64_t mixed = (uint64_t{bits[0]} << 32 | bits[1]) * 0x9E3779B97F4A7C15U;
    mixed = (mixed ^ (mixed >> 29) ^ bits[2]) * 0xBF58476D1CE4E5B9U;
    return static_cast<std::size_t>(mixed ^ (mixed >> 32));
}

} // namespace

ColorTable::ColorTable() : slots_(kFirstSlots, kFree) {}

std::optional<std::size_t> ColorTable::find(const ColorBits& bits) const {
    const uint32_t place = slots_[slotOf(bits)];
    return place == kFree ? std::nullopt : std::optional<std::size_t>(place);
}

std::size_t ColorTable::placeOf(const ColorBits& bits) {
    if (const std::optional<std::size_t> place = find(bits)) {
        return *place;
    }
    if (2 * (colors_.size() + 1) > slots_.size()) {
        grow();
    }
    slots_[slotOf(bits)] = static_cast<uint32_t>(colors_.size());
    colors_.push_back(bits);
    return colors_.size() - 1;
}

/// The one that has this colour, or the free one that it belongs in.
std::size_t ColorTable::slotOf(const ColorBits& bits) const {
    std::size_t slot = hashOf(bits) & (slots_.size() - 1);
    while (slots_[slot] != kFree && colors_[slots_[slot]] != bits) {
        slot = (slot + 1) & (slots_.size() - 1);
    }
    return slot;
}

void ColorTable::grow() {
    slots_.assign(slots_.size() * 2, kFree);
    for (std::size_t place = 0; place < colors_.size(); ++place) {
        slots_[slotOf(colors_[place])] = static_cast<uint32_t>(place);
    }
}

} // namespace kovalune::pictures
