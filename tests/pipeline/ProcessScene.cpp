#include "tests/pipeline/ProcessScene.h"

#include "tests/reference/PlainFrame.h"

#include <algorithm>

namespace kovalune::test {
namespace {

double ratioOf(const PF_RationalScale& scale) {
    return static_cast<double>(scale.num) / static_cast<double>(scale.den);
}

} // namespace

Palette randomPalette(Random& random) {
    Palette palette;
    for (PF_Pixel& colour : palette) {
        const auto channel = [&random] { return static_cast<uint8_t>(random.below(256)); };
        colour = {0, channel(), channel(), channel()};
    }
    return palette;
}

PlainPixel opaque(PF_PixelFormat format, const PF_Pixel& colour) {
    PlainPicture picture(PF_PixelFormat_ARGB32, 1, 1);
    picture.at(0, 0) = {255.0, static_cast<double>(colour.red), static_cast<double>(colour.green),
                        static_cast<double>(colour.blue)};
    return broughtTo(format, picture).at(0, 0);
}

PlainPicture broughtTo(PF_PixelFormat format, const PlainPicture& picture) {
    if (format == PF_PixelFormat_ARGB32) {
        return picture;
    }
    if (format == PF_PixelFormat_ARGB64) {
        return plainWiden(picture);
    }
    PlainPicture result(format, picture.width, picture.height);
    const auto share = [](double c) { return static_cast<double>(static_cast<float>(c) / 255.0F); };
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        const PlainPixel& p = picture.pixels[i];
        result.pixels[i] = {share(p.alpha), share(p.red), share(p.green), share(p.blue)};
    }
    return result;
}

PlainPicture drawnPicture(PF_PixelFormat format, int32_t width, int32_t height, const Palette& palette,
                          Random& random, Range range) {
    PlainPicture picture(format, width, height);
    const auto paint = [&](int32_t left, int32_t top, int32_t w, int32_t h) {
        PlainPixel pixel =
            opaque(format, palette[static_cast<std::size_t>(random.below(static_cast<int>(palette.size())))]);
        if (random.chance(20)) {
            pixel.alpha = random.chance(50) ? 0.0 : randomPicture(format, 1, 1, random, range).at(0, 0).alpha;
        }
        for (int32_t y = top; y < std::min(top + h, height); ++y) {
            for (int32_t x = left; x < std::min(left + w, width); ++x) {
                picture.at(x, y) = pixel;
            }
        }
    };
    paint(0, 0, width, height);
    for (int32_t n = random.between(1, 14); n > 0; --n) {
        paint(random.below(width), random.below(height), random.between(1, width),
              random.between(1, std::max(1, height / 2)));
    }
    for (int32_t n = random.below(8); n > 0; --n) {
        paint(random.below(width), random.below(height), 1, 1);
    }
    if (random.chance(20)) {
        picture.at(random.below(width), random.below(height)) =
            randomPicture(format, 1, 1, random, range).at(0, 0);
    }
    return picture;
}

host::judge::JudgeOptions ProcessScene::recordingOptions() {
    host::judge::JudgeOptions options = strictOptions();
    options.recordCalls = true;
    return options;
}

ProcessScene::ProcessScene(const FrameDriver& driver, const host::judge::JudgeOptions& options, int32_t width,
                           int32_t height, Random& random)
    : FrameScene(driver, options, width, height, random), palette(randomPalette(random)) {
    write(drawnPicture(driver.format, width, height, palette, random), input);
    listNothing();
}

StageSettings& ProcessScene::enable(int32_t number, std::size_t colour, double boundaryBlur, int32_t repeat) {
    StageSettings& stage = settings.stages[number];
    stage.enableProcess = 1;
    stage.colors[0].color = palette[colour];
    stage.colors[0].range = 1.0;
    stage.boundaryBlur = boundaryBlur;
    stage.repeat = repeat;
    return stage;
}

void ProcessScene::downsample(PF_RationalScale x, PF_RationalScale y) {
    host.in()->downsample_x = x;
    host.in()->downsample_y = y;
}

PlainRendered ProcessScene::plain(const PlainFault& fault) {
    const double scale = std::min(ratioOf(host.in()->downsample_x), ratioOf(host.in()->downsample_y));
    const int iterations = host.options().iterations;
    return plainRender({settings, iterations, scale, fault}, read(input));
}

void ProcessScene::randomiseStage(StageSettings& stage, Random& random) {
    const auto flag = [&random](int percent) { return static_cast<uint8_t>(random.chance(percent) ? 1 : 0); };
    for (ColorEntry& entry : stage.colors) {
        entry.enable = flag(50);
        entry.color = palette[static_cast<std::size_t>(random.below(static_cast<int>(palette.size())))];
        entry.range = random.chance(5) ? 100.0 : random.unit() * (random.chance(70) ? 3.0 : 30.0);
    }
    stage.repeat = random.chance(60) ? random.between(0, 3) : random.between(0, 10);
    stage.blurAmount = random.chance(15) ? 0.0 : random.unit() * (random.chance(50) ? 16.0 : 60.0);
    stage.boundaryBlur = random.chance(10) ? 0.0 : random.unit() * (random.chance(60) ? 12.0 : 60.0);
    stage.boundaryBias = random.chance(50) ? 0.0 : random.unit() * 110.0 - 10.0;
    stage.keepDivision = flag(50);
    stage.keepProcess = flag(50);
}

void ProcessScene::randomise(Random& random) {
    for (StageSettings& stage : settings.stages) {
        randomiseStage(stage, random);
        stage.enableProcess = static_cast<uint8_t>(random.chance(75) ? 1 : 0);
    }
    settings.stages[0].enableProcess = 1;
    settings.view = kViews[static_cast<std::size_t>(random.below(static_cast<int>(kViews.size())))];
    constexpr std::array<PF_RationalScale, 6> scales = {{{1, 1}, {1, 1}, {1, 2}, {1, 4}, {1, 3}, {2, 3}}};
    const auto scale = [&] { return scales[static_cast<std::size_t>(random.below(scales.size()))]; };
    const PF_RationalScale x = scale();
    downsample(x, random.chance(60) ? x : scale());
}

} // namespace kovalune::test
