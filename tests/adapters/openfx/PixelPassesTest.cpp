// Both passes over whole pictures beside one pixel after the other.
#include "adapters/openfx/PixelPasses.h"

#include "host/Host.h"
#include "render/samples/PixelChoice.h"
#include "tests/support/Effort.h"
#include "tests/support/Random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <tuple>
#include <vector>

namespace kovalune::test {
using namespace openfx;
namespace {

using samples::AlphaKind;
using samples::FilePixel;

/// Samples of a host's image; rows do without any alignment.
template <class Sample>
class Pixels {
public:
    Pixels(Depth depth, AlphaKind alpha, int width, int height)
        : rowBytes_(static_cast<std::size_t>(width) * sizeof(FilePixel<Sample>) + sizeof(Sample)),
          bytes_(rowBytes_ * static_cast<std::size_t>(height)) {
        block_.data = bytes_.data();
        block_.rowBytes = static_cast<std::ptrdiff_t>(rowBytes_);
        block_.bounds = {0, 0, width, height};
        block_.depth = depth;
        block_.alpha = alpha;
    }

    const PixelBlock& block() const { return block_; }

    FilePixel<Sample> at(int x, int y) const {
        FilePixel<Sample> pixel;
        std::memcpy(&pixel, block_.at(x, y), sizeof pixel);
        return pixel;
    }
    void set(int x, int y, const FilePixel<Sample>& pixel) {
        std::memcpy(block_.at(x, y), &pixel, sizeof pixel);
    }

private:
    std::size_t rowBytes_;
    std::vector<std::byte> bytes_;
    PixelBlock block_;
};

/// What alpha is apt to be: full, none, or anything.
template <class Scale>
typename Scale::Sample randomAlpha(Random& random, int kind) {
    using Sample = typename Scale::Sample;
    if (kind == 0) {
        return samples::rescaled<samples::FileScale8, Scale>(255);
    }
    if (kind == 1) {
        return 0;
    }
    if constexpr (Scale::kIsFloat) {
        constexpr float kOdd[] = {-0.0F, -0.5F, 0.25F, 1e-40F, 2.0F, std::numeric_limits<float>::quiet_NaN()};
        return bitCast<Sample>(kOdd[random.below(6)]);
    } else {
        return static_cast<Sample>(random.between(0, static_cast<int>(Scale::kWhite)));
    }
}

template <class Scale>
typename Scale::Sample randomColour(Random& random) {
    using Sample = typename Scale::Sample;
    if constexpr (Scale::kIsFloat) {
        constexpr float kSome[] = {0.0F, -0.0F, 0.25F, 1.0F, 3.5F, std::numeric_limits<float>::infinity()};
        return bitCast<Sample>(kSome[random.below(6)]);
    } else {
        return static_cast<Sample>(random.chance(20) ? 0
                                                     : random.between(0, static_cast<int>(Scale::kWhite)));
    }
}

/// Stretches of pixels whose alphas are alike, as pictures have them.
template <class Scale>
void fill(Pixels<typename Scale::Sample>& pixels, Random& random) {
    const RectI& bounds = pixels.block().bounds;
    for (int y = 0; y < bounds.y2; ++y) {
        int kind = 0;
        int end = 0;
        for (int x = 0; x < bounds.x2; ++x) {
            if (x == end) {
                kind = random.below(3);
                end = x + 1 + random.below(kind == 2 ? 20 : 150);
            }
            pixels.set(x, y,
                       {randomColour<Scale>(random), randomColour<Scale>(random), randomColour<Scale>(random),
                        randomAlpha<Scale>(random, kind)});
        }
    }
}

/// The scales of a depth: of the host's images, and of the effect's pictures.
template <Depth depthOfIt, class FileScale, class EffectScale>
struct Form {
    static constexpr Depth kDepth = depthOfIt;
    using File = FileScale;
    using Effect = EffectScale;
};

template <class Form>
class OpenFxPasses : public testing::Test {
protected:
    using File = typename Form::File;
    using Effect = typename Form::Effect;
    using Sample = typename File::Sample;
    using Pixel = typename Effect::Pixel;

    static constexpr int kWidth = 401;
    static constexpr int kHeight = 9;

    static void compare(Random& random, AlphaKind from, AlphaKind to, const host::RowWork& work) {
        Pixels<Sample> source(Form::kDepth, from, kWidth, kHeight);
        fill<File>(source, random);
        host::Image image(formatOf(Form::kDepth), kWidth, kHeight);
        takeIn(image, source.block(), false, work);
        const samples::HostPixel<File, Effect> straight(from);
        host::Image result = image;
        for (int y = 0; y < kHeight; ++y) {
            int end = 0;
            bool changes = false;
            for (int x = 0; x < kWidth; ++x) {
                const Pixel expected = straight(source.at(x, kHeight - 1 - y));
                const Pixel& found = image.at<Pixel>(x, y);
                ASSERT_TRUE(samples::sameBits(found, expected)) << x << ", " << y;
                if (x == end) {
                    changes = random.chance(50);
                    end = x + 1 + random.below(100);
                }
                if (changes) {
                    change(random, result.at<Pixel>(x, y));
                }
            }
        }
        Pixels<Sample> output(Form::kDepth, to, kWidth, kHeight);
        giveOut(output.block(), output.block().bounds, {result, image, source.block(), false}, work);
        samples::PixelChoice<Effect, File, File> choice({from, false}, {to, false});
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const int planeY = kHeight - 1 - y;
                ASSERT_TRUE(samples::sameBits(
                    output.at(x, planeY),
                    choice(result.at<Pixel>(x, y), image.at<Pixel>(x, y), source.at(x, planeY))))
                    << x << ", " << y;
            }
        }
    }

private:
    static void change(Random& random, Pixel& pixel) {
        const auto channel = [](typename Effect::Sample sample) {
            return bitCast<typename Effect::Channel>(sample);
        };
        if (random.chance(60)) {
            pixel.red = channel(randomColour<Effect>(random));
        }
        if (random.chance(30)) {
            pixel.blue = channel(randomColour<Effect>(random));
        }
        if (random.chance(30)) {
            pixel.alpha = channel(randomAlpha<Effect>(random, random.below(3)));
        }
        if (random.chance(10)) {
            pixel = Pixel{};
        }
    }
};

using Forms = testing::Types<Form<Depth::kByte, samples::FileScale8, samples::HostScale8>,
                             Form<Depth::kShort, samples::FileScale16, samples::HostScale16>,
                             Form<Depth::kFloat, samples::FloatBitsScale, samples::HostScale32>>;
TYPED_TEST_SUITE(OpenFxPasses, Forms);

TYPED_TEST(OpenFxPasses, MakeOfPicturesWhatTheyMakeOfEachPixel) {
    host::HostOptions options;
    host::Host host(options);
    Random random(20);
    for (int i = 0; i < cases(40); ++i) {
        for (const AlphaKind from : {AlphaKind::kStraight, AlphaKind::kPremultiplied}) {
            for (const AlphaKind to : {AlphaKind::kStraight, AlphaKind::kPremultiplied}) {
                this->compare(random, from, to, host.rowWork());
                if (this->HasFatalFailure()) {
                    return;
                }
            }
        }
    }
}

} // namespace
} // namespace kovalune::test
