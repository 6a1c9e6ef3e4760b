#include "tests/support/MaskShapes.h"

#include <algorithm>

namespace kovalune::test {
namespace {

uint8_t someValue(Random& random) {
    return static_cast<uint8_t>(random.chance(80) ? 1 : random.between(1, 255));
}

template <class IsIn>
void fillWhere(Mask& mask, Random& random, const IsIn& isIn) {
    for (int32_t y = 0; y < mask.height; ++y) {
        for (int32_t x = 0; x < mask.width; ++x) {
            mask.at(x, y) = isIn(x, y) ? someValue(random) : uint8_t{0};
        }
    }
}

void fillBlobs(Mask& mask, Random& random) {
    for (int blob = 0; blob < 4; ++blob) {
        const int32_t left = random.below(mask.width);
        const int32_t top = random.below(mask.height);
        const int32_t right = std::min(mask.width, left + random.between(1, mask.width));
        const int32_t bottom = std::min(mask.height, top + random.between(1, mask.height));
        for (int32_t y = top; y < bottom; ++y) {
            for (int32_t x = left; x < right; ++x) {
                mask.at(x, y) = blob % 2 == 0 ? someValue(random) : uint8_t{0};
            }
        }
    }
}

} // namespace

const char* nameOf(MaskShape shape) {
    constexpr std::array names = {"empty", "full",   "single", "rows",        "columns",
                                  "dense", "sparse", "blobs",  "checkerboard"};
    static_assert(names.size() == kMaskShapes.size());
    return names[static_cast<std::size_t>(shape)];
}

Mask makeMask(MaskShape shape, int32_t width, int32_t height, Random& random) {
    Mask mask(width, height);
    mask.shape = nameOf(shape);
    const int period = random.between(2, 9);
    switch (shape) {
    case MaskShape::kEmpty:
        break;
    case MaskShape::kFull:
        fillWhere(mask, random, [](int32_t, int32_t) { return true; });
        break;
    case MaskShape::kSingle:
        mask.at(random.below(width), random.below(height)) = someValue(random);
        break;
    case MaskShape::kRows:
        fillWhere(mask, random, [period](int32_t, int32_t y) { return y % period != 0; });
        break;
    case MaskShape::kColumns:
        fillWhere(mask, random, [period](int32_t x, int32_t) { return x % period != 0; });
        break;
    case MaskShape::kDense:
        fillWhere(mask, random, [&random](int32_t, int32_t) { return random.chance(93); });
        break;
    case MaskShape::kSparse:
        fillWhere(mask, random, [&random](int32_t, int32_t) { return random.chance(15); });
        break;
    case MaskShape::kBlobs:
        fillBlobs(mask, random);
        break;
    case MaskShape::kCheckerboard:
        fillWhere(mask, random, [](int32_t x, int32_t y) { return (x + y) % 2 == 0; });
        break;
    }
    return mask;
}

MaskPlane planeOf(StrictHost& host, const Mask& mask) {
    MaskPlane plane(host.in(), mask.width, mask.height);
    for (int32_t y = 0; y < mask.height; ++y) {
        for (int32_t x = 0; x < mask.width; ++x) {
            plane.row(y)[x] = mask.at(x, y);
        }
    }
    plane.refreshActivity();
    return plane;
}

Mask elementsOf(const MaskPlane& plane) {
    Mask mask(plane.width(), plane.height());
    for (int32_t y = 0; y < plane.height(); ++y) {
        for (int32_t x = 0; x < plane.width(); ++x) {
            mask.at(x, y) = plane.row(y)[x];
        }
    }
    return mask;
}

std::string summaryFault(const MaskPlane& plane) {
    const Mask mask = elementsOf(plane);
    for (int32_t y = 0; y < plane.height(); ++y) {
        bool held = false;
        for (int32_t x = 0; x < plane.width(); ++x) {
            held = held || mask.at(x, y) != 0;
        }
        if (plane.rowActive(y) != held) {
            return "row " + std::to_string(y) +
                   (held ? " says that it is empty" : " says that it holds something");
        }
    }
    for (int32_t x = 0; x < plane.width(); ++x) {
        bool held = false;
        for (int32_t y = 0; y < plane.height(); ++y) {
            held = held || mask.at(x, y) != 0;
        }
        if (plane.colActive(x) != held) {
            return "column " + std::to_string(x) +
                   (held ? " says that it is empty" : " says that it holds something");
        }
    }
    return {};
}

} // namespace kovalune::test
