// What the small passes ask the heap for: nothing, however many rows they have.

#include "effect/blur/FinishingPasses.h"
#include "effect/pipeline/ColorExtraction.h"
#include "effect/pipeline/Coverage.h"
#include "effect/pipeline/DepthConversion.h"
#include "effect/raster/MaskedCopy.h"
#include "tests/support/AllocationControl.h"
#include "tests/support/MaskShapes.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

constexpr int32_t kWidth = 40;
constexpr int32_t kHeight = 33;

struct Worlds {
    TestWorld dst;
    TestWorld src;

    Worlds(StrictHost& host, PF_PixelFormat format, Random& random)
        : dst(host, format, kWidth, kHeight), src(host, format, kWidth, kHeight) {
        write(randomPicture(format, kWidth, kHeight, random), dst);
        write(randomPicture(format, kWidth, kHeight, random), src);
    }
};

struct Scene {
    Random random{17};
    StrictHost host;
    MaskPlane mask{host.in(), kWidth, kHeight};
    Worlds worlds8{host, PF_PixelFormat_ARGB32, random};
    Worlds worlds16{host, PF_PixelFormat_ARGB64, random};
    Worlds worlds32{host, PF_PixelFormat_ARGB128, random};
    FrameRect rect = wholeRect(kWidth, kHeight);

    Scene() {
        mask.clearTo(1);
        mask.row(7)[3] = 0;
    }
};

TEST(PassMemory, IsNotAskedForByMaskedPasses) {
    Scene s;
    const ScratchPlan plan(0);
    const auto run = [&](MaskedPass* pass, Worlds& to, Worlds& from) {
        EXPECT_EQ(pass(s.host.in(), {to.dst.get(), from.src.get(), s.rect, s.mask, true}), PF_Err_NONE);
    };
    run(copyMasked16, s.worlds16, s.worlds16);
    run(copyMasked32, s.worlds32, s.worlds32);
    run(widenTo16, s.worlds16, s.worlds8);
    run(narrowTo8, s.worlds8, s.worlds16);
    EXPECT_EQ(plan.requests(), 0);
}

TEST(PassMemory, IsNotAskedForByFinishingPasses) {
    Scene s;
    const ScratchPlan plan(0);
    const auto run = [&](FinishingPass* pass, Worlds& worlds) {
        EXPECT_EQ(pass(s.host.in(), {worlds.dst.get(), worlds.src.get(), s.rect, s.mask, 40.0}), PF_Err_NONE);
    };
    run(restoreMasked16, s.worlds16);
    run(restoreMasked32, s.worlds32);
    run(multiplyAlphaOutside16, s.worlds16);
    run(multiplyAlphaOutside32, s.worlds32);
    run(clearAlphaOutside8, s.worlds8);
    run(clearAlphaOutside16, s.worlds16);
    run(clearAlphaOutside32, s.worlds32);
    run(composeOver16, s.worlds16);
    run(composeOver32, s.worlds32);
    run(applyBoundaryBias32, s.worlds32);
    EXPECT_EQ(plan.requests(), 0);
}

TEST(PassMemory, IsNotAskedForByWhatMakesMasks) {
    Scene s;
    const ColorMatches matches = {makeColorMatch(s.host.in(), {255, 200, 30, 40}, 0.3)};
    const ScratchPlan plan(0);
    MaskPlane made;
    EXPECT_EQ(coverage8(made, s.host.in(), s.worlds8.src.get(), s.rect), PF_Err_NONE);
    EXPECT_EQ(coverage16(made, s.host.in(), s.worlds16.src.get(), s.rect), PF_Err_NONE);
    EXPECT_EQ(coverage32(made, s.host.in(), s.worlds32.src.get(), s.rect), PF_Err_NONE);
    EXPECT_EQ(extractColors8(made, s.host.in(), s.worlds8.src.get(), s.rect, matches), PF_Err_NONE);
    EXPECT_EQ(extractColors16(made, s.host.in(), s.worlds16.src.get(), s.rect, matches), PF_Err_NONE);
    EXPECT_EQ(extractColors32(made, s.host.in(), s.worlds32.src.get(), s.rect, matches), PF_Err_NONE);
    EXPECT_EQ(plan.requests(), 0);
}

} // namespace
} // namespace kovalune::test
