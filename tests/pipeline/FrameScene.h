// A frame with all that it needs: a host, two worlds and the settings record.
#pragma once

#include "effect/pipeline/FrameDriver.h"
#include "effect/share/RenderSettings.h"
#include "tests/support/PlainPicture.h"
#include "tests/support/TestWorld.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace kovalune::test {

struct FrameDriver {
    PF_PixelFormat format;
    PF_PixelFormat workFormat;
    PF_Err (*render)(RenderSettings);
};

inline constexpr std::array<FrameDriver, 3> kFrameDrivers = {{
    {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, renderFrame8},
    {PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB64, renderFrame16},
    {PF_PixelFormat_ARGB128, PF_PixelFormat_ARGB128, renderFrame32},
}};

inline std::string frameName(const testing::TestParamInfo<FrameDriver>& test) {
    return formatName(test.param.format);
}

/// A blur amount that blurs without boundary smoothing: it becomes 21 in the stage.
inline constexpr double kUnsmoothedAmount = 20.0;

struct FrameScene {
    StrictHost host;
    TestWorld input;
    TestWorld output;
    RenderSettings settings;

    /// A random input and another random picture in the output. One colour is listed and matches everything.
    FrameScene(const FrameDriver& driver, const host::judge::JudgeOptions& options, int32_t width,
               int32_t height, Random& random)
        : host(options), input(host, driver.format, width, height),
          output(host, driver.format, width, height) {
        write(flatPicture(driver.format, width, height, random), input);
        write(randomPicture(driver.format, width, height, random), output);
        settings.inData = host.in();
        settings.inputWorld = input.get();
        settings.outputWorld = output.get();
        settings.pixelFormat = driver.format;
        settings.extentRect = wholeRect(width, height);
        StageSettings& base = settings.stages[0];
        base.blurAmount = kUnsmoothedAmount;
        base.repeat = 1;
        base.keepDivision = 1;
        for (ColorEntry& entry : base.colors) {
            entry.enable = 0;
        }
        list(0, {0, 128, 0, 0}, 100.0);
    }

    FrameScene(const FrameDriver& driver, Random& random)
        : FrameScene(driver, strictOptions(), 14, 11, random) {}

    void list(int entry, PF_Pixel color, double range) {
        settings.stages[0].colors[entry] = {1, color, range};
    }

    /// No colour that the pictures here hold is near.
    void listNothing() { settings.stages[0].colors[0].enable = 0; }

    /// Lists the colour of an opaque pixel of the input, so that a part of the picture is selected.
    void listAColourOfTheInput() {
        const PlainPicture picture = read(input);
        for (const PlainPixel& pixel : picture.pixels) {
            if (pixel.alpha != 0.0) {
                const auto to8 = [&](double c) {
                    return static_cast<uint8_t>(c / fullScale(picture.format) * 255.0 + 0.5);
                };
                list(0, {0, to8(pixel.red), to8(pixel.green), to8(pixel.blue)}, 1.0);
                return;
            }
        }
    }
};

} // namespace kovalune::test
