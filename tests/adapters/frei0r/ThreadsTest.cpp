// Several threads at once: what the interface promises of instances, and what one of its hosts does all the same.

#include "tests/adapters/frei0r/TestHost.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace kovalune::test {
namespace {

void setUp(LoadedFilter& filter, double amount) {
    filter.set("Blur Amount", amount);
    filter.set("Color 1", frei0r::Color{50 / 255.0F, 100 / 255.0F, 180 / 255.0F});
    filter.set("Enable 2", 1.0);
    filter.set("Color 2", frei0r::Color{30 / 255.0F, 70 / 255.0F, 130 / 255.0F});
}

RgbaPicture alone(const LoadedFile& file, const RgbaPicture& picture, double amount) {
    LoadedFilter filter(file, picture.width, picture.height);
    setUp(filter, amount);
    return filter.update(picture);
}

TEST(Frei0rThreads, EachMayHaveAnInstance) {
    constexpr int kThreads = 8;
    const Ready file;
    std::vector<std::thread> threads;
    std::vector<int> wrong(kThreads, 0);
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&file, &wrong, number] {
            const RgbaPicture picture = blocks(60 + static_cast<unsigned>(number), 40);
            const double amount = 0.002 * number;
            const RgbaPicture expected = alone(file, picture, amount);
            LoadedFilter filter(file, picture.width, picture.height);
            for (int frame = 0; frame < 4; ++frame) {
                setUp(filter, amount);
                wrong[static_cast<std::size_t>(number)] += filter.update(picture, frame) == expected ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<int>(kThreads, 0));
}

/// melt's `threads=N`: one instance, made for a band's height, gets all bands of a picture at once.
TEST(Frei0rThreads, MayRenderBandsOnOneInstanceAtOnce) {
    constexpr unsigned kBands = 4;
    const Ready file;
    const RgbaPicture whole = blocks(64, 80);
    LoadedFilter filter(file, whole.width, whole.height / kBands);
    setUp(filter, 0.005);
    RgbaPicture output = whole;
    const std::size_t bandPixels = whole.pixels.size() / kBands;
    std::vector<std::thread> threads;
    for (std::size_t band = 0; band < kBands; ++band) {
        threads.emplace_back([&, band] {
            const auto* const from =
                static_cast<const uint32_t*>(static_cast<const void*>(whole.pixels.data()));
            auto* const to = static_cast<uint32_t*>(static_cast<void*>(output.pixels.data()));
            for (int frame = 0; frame < 3; ++frame) {
                file.update(filter.instance(), 0.0, from + band * bandPixels, to + band * bandPixels);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    // Each band is a picture by itself, with the seams that it gets so.
    for (std::size_t band = 0; band < kBands; ++band) {
        const auto first = static_cast<std::ptrdiff_t>(band * bandPixels);
        const auto end = first + static_cast<std::ptrdiff_t>(bandPixels);
        const RgbaPicture part{
            whole.width, whole.height / kBands, {whole.pixels.begin() + first, whole.pixels.begin() + end}};
        const std::vector<Rgba> got(output.pixels.begin() + first, output.pixels.begin() + end);
        EXPECT_TRUE(got == alone(file, part, 0.005).pixels) << band;
    }
}

} // namespace
} // namespace kovalune::test
