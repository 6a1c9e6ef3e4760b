// What is kept of a PNG file besides its samples, collected while the file is read: the first of each chunk about the
// picture as a whole, and all texts.
#pragma once

#include "pictures/Picture.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace kovalune::pictures {

class PngChunks {
public:
    /// The names of all that may be kept.
    static const std::vector<std::string_view>& names();

    static bool keeps(std::string_view name);

    /// What is not kept is passed over. False where memory does not suffice.
    bool take(std::string_view name, std::span<const uint8_t> bytes, bool isBeforeSamples) noexcept;

    /// In an order that is valid for writing: the texts, as they came, are the last. Nothing is left here.
    std::vector<PictureNote> takeNotes();

private:
    static constexpr std::size_t kKinds = 5;

    std::array<std::optional<std::vector<uint8_t>>, kKinds> first_; ///< of each kind
    std::vector<PictureNote> texts_;
};

} // namespace kovalune::pictures
