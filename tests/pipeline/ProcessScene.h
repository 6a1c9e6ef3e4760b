// Frames with Process stages: drawings of few flat colours, and settings of every kind.
#pragma once

#include "tests/pipeline/FrameScene.h"
#include "tests/reference/PlainProcess.h"

#include <array>

namespace kovalune::test {

inline constexpr std::array kViews = {1, 3, 4, 5, 6, 7, 8};

using Palette = std::array<PF_Pixel, 6>;

Palette randomPalette(Random& random);

/// Rectangles, a few dots and holes in colours of the palette, most of them opaque; a few pixels and alphas are from
/// anywhere in the range.
PlainPicture drawnPicture(PF_PixelFormat format, int32_t width, int32_t height, const Palette& palette,
                          Random& random, Range range = Range::kOrdinary);

/// The opaque pixel of a colour.
PlainPixel opaque(PF_PixelFormat format, const PF_Pixel& colour);

/// A frame of a drawing. Base lists nothing, and every Process stage is off, until a test says otherwise.
struct ProcessScene : FrameScene {
    Palette palette;

    ProcessScene(const FrameDriver& driver, const host::judge::JudgeOptions& options, int32_t width,
                 int32_t height, Random& random);
    ProcessScene(const FrameDriver& driver, int32_t width, int32_t height, Random& random)
        : ProcessScene(driver, recordingOptions(), width, height, random) {}

    /// Base and Process settings, view and downsample factors at random, in all their combinations.
    void randomise(Random& random);

    /// Switches a Process stage on, for a colour of the palette.
    StageSettings& enable(int32_t number, std::size_t colour, double boundaryBlur, int32_t repeat = 1);

    void downsample(PF_RationalScale x, PF_RationalScale y);

    PlainRendered plain(const PlainFault& fault = {});

    static host::judge::JudgeOptions recordingOptions();

private:
    void randomiseStage(StageSettings& stage, Random& random);
};

/// An 8-bit picture in another format.
PlainPicture broughtTo(PF_PixelFormat format, const PlainPicture& picture);

} // namespace kovalune::test
