// The passes' rows against pages that nobody may touch: no read before a row's first pixel or past its last one, no store
// beside what is masked in, however rows stand in memory.
#include "tests/blur/BlurDrivers.h"
#include "tests/support/FencedMemory.h"

#include <cstring>
#include <gtest/gtest.h>
#include <vector>

namespace kovalune::test {
namespace {

/// A world's rows in memory of their own.
struct Layout {
    int32_t width;
    int32_t height;
    int32_t pixelBytes;
    int32_t padding; ///< after each row but the last
    bool upsideDown; ///< rows stand in the other order, by negative row bytes

    int32_t rowBytes() const { return width * pixelBytes + padding; }
    std::size_t bytes() const {
        return static_cast<std::size_t>(height - 1) * static_cast<std::size_t>(rowBytes()) +
               static_cast<std::size_t>(width) * static_cast<std::size_t>(pixelBytes);
    }
    PF_EffectWorld on(uint8_t* memory) const {
        PF_EffectWorld world{};
        const std::ptrdiff_t last = static_cast<std::ptrdiff_t>(height - 1) * rowBytes();
        world.data = static_cast<PF_Pixel*>(static_cast<void*>(memory + (upsideDown ? last : 0)));
        world.rowbytes = upsideDown ? -rowBytes() : rowBytes();
        world.width = width;
        world.height = height;
        return world;
    }
};

class BlurFenceTest : public testing::TestWithParam<BlurDriver> {
protected:
    std::vector<uint8_t> content(const Layout& layout) {
        std::vector<uint8_t> bytes(layout.bytes());
        for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4) {
            if (GetParam().format == kFloat) {
                const auto value = static_cast<float>(random.chance(30) ? 0.25 : random.unit());
                std::memcpy(&bytes[at], &value, sizeof value);
            } else {
                const uint16_t values[2] = {
                    static_cast<uint16_t>(random.chance(30) ? 9000 : random.below(32769)),
                    static_cast<uint16_t>(random.below(32769))};
                std::memcpy(&bytes[at], values, sizeof values);
            }
        }
        return bytes;
    }

    PF_Err run(bool horizontal, const PF_EffectWorld& src, const PF_EffectWorld& dst, const FrameRect& rect,
               const MaskPlane& mask, const MaskPlane& keep, const GaussKernel& kernel) const {
        PF_EffectWorld from = src;
        PF_EffectWorld to = dst;
        const PassFunction pass = horizontal ? GetParam().horizontal : GetParam().vertical;
        if (GetParam().isBoundary()) {
            BoundaryPassRecord record{&to, &from, rect, mask, keep, kernel};
            return pass(&record, 0, 0, 1);
        }
        BlurPassRecord record{&to, &from, rect, mask, kernel};
        return pass(&record, 0, 0, 1);
    }

    Random random{97};
};

INSTANTIATE_TEST_SUITE_P(Drivers, BlurFenceTest, testing::ValuesIn(kBlurDrivers), driverName);

TEST_P(BlurFenceTest, HoldsWhateverTheLayout) {
    StrictHost host;
    for (int round = 0; round < 300; ++round) {
        const int32_t left = random.below(4);
        const int32_t top = random.below(3);
        const Mask area = makeMask(random.chance(30) ? MaskShape::kDense : MaskShape::kSparse,
                                   1 + random.below(70), 1 + random.below(40), random);
        const FrameRect rect = {static_cast<int16_t>(top), static_cast<int16_t>(left),
                                static_cast<int16_t>(top + area.height),
                                static_cast<int16_t>(left + area.width)};
        const Layout layout = {left + area.width + random.below(2), top + area.height + random.below(2),
                               GetParam().format == kFloat ? 16 : 8, 4 * random.below(5), random.chance(50)};
        const Fence fence = random.chance(50) ? Fence::kBefore : Fence::kAfter;
        const MaskPlane mask = planeOf(host, area);
        const MaskPlane keep = planeOf(host, makeMask(MaskShape::kSparse, area.width, area.height, random));
        const GaussKernel kernel = makeGaussKernel(random.between(2, 40), 1.0 + random.unit() * 60.0);
        const bool horizontal = random.chance(50);

        const std::vector<uint8_t> source = content(layout);
        std::vector<uint8_t> expected = content(layout);
        const FencedMemory src(layout.bytes(), fence);
        const FencedMemory dst(layout.bytes(), fence);
        std::memcpy(src.data(), source.data(), source.size());
        std::memcpy(dst.data(), expected.data(), expected.size());

        std::vector<uint8_t> readable = source;
        ASSERT_EQ(
            run(horizontal, layout.on(readable.data()), layout.on(expected.data()), rect, mask, keep, kernel),
            PF_Err_NONE);
        ASSERT_EQ(run(horizontal, layout.on(src.data()), layout.on(dst.data()), rect, mask, keep, kernel),
                  PF_Err_NONE);
        ASSERT_EQ(std::memcmp(dst.data(), expected.data(), expected.size()), 0) << "round " << round;
        ASSERT_EQ(std::memcmp(src.data(), source.data(), source.size()), 0) << "the source is never written";
    }
}

} // namespace
} // namespace kovalune::test
