#include "pictures/png/PngChunks.h"

#include "pictures/png/PngTexts.h"

#include <algorithm>
#include <new>
#include <utility>

namespace kovalune::pictures {

namespace {

struct NoteKind {
    std::string_view name;
    std::size_t leastBytes;
    std::size_t mostBytes;
};

/// The order is a valid one for writing.
constexpr std::size_t kAnyLength = ~std::size_t{0};
constexpr NoteKind kNotes[] = {
    {"cHRM", 32, 32}, {"gAMA", 4, 4}, {"iCCP", 3, kAnyLength}, {"sRGB", 1, 1}, {"pHYs", 9, 9}};

} // namespace

const std::vector<std::string_view>& PngChunks::names() {
    static const std::vector<std::string_view> names = [] {
        std::vector<std::string_view> all(kPngTexts.begin(), kPngTexts.end());
        for (const NoteKind& kind : kNotes) {
            all.push_back(kind.name);
        }
        return all;
    }();
    return names;
}

bool PngChunks::keeps(std::string_view name) {
    return std::find(names().begin(), names().end(), name) != names().end();
}

bool PngChunks::take(std::string_view name, std::span<const uint8_t> bytes, bool isBeforeSamples) noexcept {
    static_assert(std::size(kNotes) == kKinds);
    try {
        if (std::find(kPngTexts.begin(), kPngTexts.end(), name) != kPngTexts.end()) {
            texts_.push_back({std::string(name), {}, {bytes.begin(), bytes.end()}});
        }
        for (std::size_t i = 0; i < kKinds; ++i) {
            if (isBeforeSamples && kNotes[i].name == name && !first_[i]) {
                first_[i].emplace(bytes.begin(), bytes.end());
            }
        }
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

std::vector<PictureNote> PngChunks::takeNotes() {
    std::vector<PictureNote> notes;
    for (std::size_t i = 0; i < kKinds; ++i) {
        const NoteKind& kind = kNotes[i];
        if (first_[i] && first_[i]->size() >= kind.leastBytes && first_[i]->size() <= kind.mostBytes) {
            notes.push_back({std::string(kind.name), {}, *std::exchange(first_[i], std::nullopt)});
        }
    }
    notes.insert(notes.end(), std::move_iterator(texts_.begin()), std::move_iterator(texts_.end()));
    texts_.clear();
    return notes;
}

} // namespace kovalune::pictures
