// How large the pixels of a picture are, as three formats tell it in notes of their own.
#pragma once

#include "pictures/Picture.h"

#include <optional>
#include <vector>

namespace kovalune::pictures {

/// Pixels a unit, across and down; without a unit only their relation counts.
struct Resolution {
    enum class Unit { kNone, kInch, kMetre };

    double across = 0;
    double down = 0;
    Unit unit = Unit::kNone;
};

/// Nothing if the notes do not tell it, or no positive numbers.
std::optional<Resolution> resolutionOf(const Picture& picture);

/// None where the format has no place for it.
std::vector<PictureNote> resolutionNotes(FileFormat format, const Resolution& resolution);

} // namespace kovalune::pictures
