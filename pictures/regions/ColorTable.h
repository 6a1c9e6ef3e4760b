// A list of colours without doubles, each found by its samples. Grows with the colours that it is given, by some 30 bytes each.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kovalune::pictures {

/// Of the samples, red, green, blue; grey three times.
using ColorBits = std::array<uint32_t, 3>;

class ColorTable {
public:
    ColorTable();

    std::size_t size() const { return colors_.size(); }
    const ColorBits& operator[](std::size_t place) const { return colors_[place]; }

    /// Where the colour stands in the list, if it does.
    std::optional<std::size_t> find(const ColorBits& bits) const;

    /// The same; a new one goes to the end of the list. It holds fewer than 2^32.
    std::size_t placeOf(const ColorBits& bits);

private:
    std::size_t slotOf(const ColorBits& bits) const;
    void grow();

    std::vector<ColorBits> colors_;
    std::vector<uint32_t> slots_; ///< places; at most half of them taken, a colour's at its hash or after it
};

} // namespace kovalune::pictures
