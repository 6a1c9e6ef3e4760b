// Masks of typical shapes, and planes with their content.
#pragma once

#include "effect/raster/MaskPlane.h"
#include "tests/support/Random.h"
#include "tests/support/StrictHost.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace kovalune::test {

/// Elements row by row without padding.
struct Mask {
    int32_t width = 0;
    int32_t height = 0;
    std::vector<uint8_t> elements;
    const char* shape = "made by hand"; ///< for a failing test's text

    Mask(int32_t w, int32_t h, uint8_t value = 0)
        : width(w), height(h), elements(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), value) {}

    uint8_t& at(int32_t x, int32_t y) { return elements[index(x, y)]; }
    uint8_t at(int32_t x, int32_t y) const { return elements[index(x, y)]; }
    bool operator==(const Mask& other) const {
        return width == other.width && height == other.height && elements == other.elements;
    }

private:
    std::size_t index(int32_t x, int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

enum class MaskShape { kEmpty, kFull, kSingle, kRows, kColumns, kDense, kSparse, kBlobs, kCheckerboard };

inline constexpr std::array kMaskShapes = {MaskShape::kEmpty,  MaskShape::kFull,    MaskShape::kSingle,
                                           MaskShape::kRows,   MaskShape::kColumns, MaskShape::kDense,
                                           MaskShape::kSparse, MaskShape::kBlobs,   MaskShape::kCheckerboard};

const char* nameOf(MaskShape shape);

/// Masked-in elements hold random values that are not 0.
Mask makeMask(MaskShape shape, int32_t width, int32_t height, Random& random);

/// A plane with these elements and true summaries.
MaskPlane planeOf(StrictHost& host, const Mask& mask);

/// The elements of a plane.
Mask elementsOf(const MaskPlane& plane);

/// The summary bytes themselves, found by where the storage has them, for tests that make them lie.
struct PlaneSummaries {
    uint8_t* rows;
    uint8_t* columns;
};

template <class Element>
PlaneSummaries summariesOf(PlaneStorage<Element>& plane) {
    uint8_t* const storage = static_cast<uint8_t*>(static_cast<void*>(plane.row(0)));
    uint8_t* const rows = storage + static_cast<std::ptrdiff_t>(plane.height()) * plane.rowBytes();
    return {rows, rows + (plane.height() + 3) / 4 * 4};
}

/// Which summary byte the plane does not find at its place in the storage, as a text; empty where it finds all. Zeroes
/// the storage first.
template <class Element>
std::string layoutFault(PlaneStorage<Element>& plane) {
    std::memset(plane.row(0), 0, plane.byteSize());
    const PlaneSummaries summaries = summariesOf(plane);
    for (int32_t y = 0; y < plane.height(); ++y) {
        const bool before = plane.rowActive(y);
        summaries.rows[y] = 1;
        if (before || !plane.rowActive(y)) {
            return "row " + std::to_string(y);
        }
    }
    for (int32_t x = 0; x < plane.width(); ++x) {
        const bool before = plane.colActive(x);
        summaries.columns[x] = 1;
        if (before || !plane.colActive(x)) {
            return "column " + std::to_string(x);
        }
    }
    return {};
}

/// Where the summaries do not agree with the elements, as a text; empty when they do.
std::string summaryFault(const MaskPlane& plane);

} // namespace kovalune::test
