// Squares of the longest side: planes, maps and the way to a pixel, by their addresses alone.

#include "effect/raster/MaskPlane.h"
#include "effect/raster/PixelTraits.h"
#include "effect/raster/Rows.h"
#include "tests/support/Effort.h"
#include "tests/support/SparseMemory.h"
#include "tests/support/StrictHost.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace kovalune::test {
namespace {

#if UINTPTR_MAX > 0xffffffffU

constexpr int32_t kSide = 32767;

/// One that leaves new memory as it comes: pages that nobody writes take no room.
host::judge::JudgeOptions plainOptions() {
    host::judge::JudgeOptions options;
    options.poolCapBytes = 0;
    return options;
}

template <class Plane, class Element>
void expectFullSquare() {
    StrictHost host(plainOptions());
    Plane plane(host.in(), kSide, kSide);
    EXPECT_EQ(plane.rowStride(), kSide + 1);
    EXPECT_EQ(plane.byteSize(), uint64_t{kSide + 1} * kSide * sizeof(Element) + 2 * (kSide + 1));
    const auto placeOf = [&plane](int32_t x, int32_t y) { return plane.row(y) + x - plane.row(0); };
    for (const int32_t y : {0, 1, 16384, kSide - 1}) {
        for (const int32_t x : {0, 4095, kSide - 1}) {
            EXPECT_EQ(placeOf(x, y), int64_t{y} * (kSide + 1) + x);
            EXPECT_EQ(plane.row(y)[x], 0);
            plane.row(y)[x] = static_cast<Element>(1 + y % 7);
        }
    }
    EXPECT_EQ(plane.row(kSide - 1)[kSide - 1], 1 + (kSide - 1) % 7);
    EXPECT_EQ(plane.row(1)[0], 2);
}

TEST(LargeSides, OfAMask) {
    expectFullSquare<MaskPlane, uint8_t>();
}

TEST(LargeSides, OfAPlaneOfDistances) {
    expectFullSquare<MaskPlane16, uint16_t>();
}

TEST(LargeSides, HaveBoundsLikeAnyOther) {
    if (kSanitized) {
        GTEST_SKIP() << "a billion elements, each looked at";
    }
    StrictHost host(plainOptions());
    MaskPlane plane(host.in(), kSide, kSide);
    plane.row(kSide - 1)[kSide - 1] = 1;
    plane.row(32000)[5] = 1;
    plane.refreshActivity();
    EXPECT_TRUE(plane.refreshBounds());
    EXPECT_EQ(plane.bounds().top, 32000);
    EXPECT_EQ(plane.bounds().left, 5);
    EXPECT_EQ(plane.bounds().bottom, kSide);
    EXPECT_EQ(plane.bounds().right, kSide);
}

template <class Format>
void expectWayToEveryCorner(int32_t rowbytes) {
    using Pixel = typename Format::Pixel;
    const std::size_t apart = static_cast<std::size_t>(std::abs(int64_t{rowbytes}));
    const SparseMemory memory(apart * kSide);
    if (!memory.isThere()) {
        GTEST_SKIP() << "the system has no " << apart * kSide << " addresses in a row";
    }
    PF_EffectWorld world{};
    uint8_t* const first = memory.data() + (rowbytes < 0 ? apart * (kSide - 1) : 0);
    world.data = objectAt<PF_Pixel>(first, 0);
    world.rowbytes = rowbytes;
    world.width = world.height = kSide;
    for (const int32_t y : {0, 1, 4096, kSide - 1}) {
        Pixel* const row = rowOf<Format>(world, {}, y);
        EXPECT_EQ(static_cast<uint8_t*>(static_cast<void*>(row)) - first, int64_t{y} * rowbytes);
        row[kSide - 1].red = static_cast<typename Format::Channel>(1 + y % 5);
    }
    const FrameRect corner = {kSide - 2, kSide - 3, kSide, kSide};
    EXPECT_EQ(rowOf<Format>(world, corner, 1)[2].red,
              static_cast<typename Format::Channel>(1 + (kSide - 1) % 5));
}

TEST(LargeSides, OfAWorldInEveryFormat) {
    expectWayToEveryCorner<Argb8>(kSide * 4);
    expectWayToEveryCorner<Argb16>(kSide * 8);
    expectWayToEveryCorner<Argb32>(kSide * 16);
    expectWayToEveryCorner<Argb32>(-kSide * 16);
}

#endif

} // namespace
} // namespace kovalune::test
