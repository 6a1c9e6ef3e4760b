#include "effect/raster/WidePixels.h"
#include "tests/support/Random.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <type_traits>
#include <vector>

namespace kovalune::test {
namespace {

template <class Channel>
bool haveSameBits(const Channel& a, const Channel& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

template <class Format>
class WidePixelsOf : public testing::Test {
protected:
    using Pixel = typename Format::Pixel;
    using Channel = typename Format::Channel;
    using Wide = WidePixels<Format>;

    /// A row that is all alike, and begins where no vector would.
    static std::vector<Pixel> alike(const Pixel& pixel) {
        return std::vector<Pixel>(Wide::kCount + 3, pixel);
    }

    /// Some numbers that come again and again, those that are easily mistaken for others among them.
    static Channel numberOf(Random& random) {
        if constexpr (std::is_same_v<Channel, float>) {
            constexpr float kNumbers[] = {0.0F,
                                          -0.0F,
                                          1.0F,
                                          0.5F,
                                          std::numeric_limits<float>::denorm_min(),
                                          std::numeric_limits<float>::infinity(),
                                          std::numeric_limits<float>::quiet_NaN()};
            return kNumbers[random.below(7)];
        } else {
            constexpr Channel kMost = std::numeric_limits<Channel>::max();
            constexpr Channel kNumbers[] = {0, 1, static_cast<Channel>(kMost / 2 + 1), kMost};
            return kNumbers[random.below(4)];
        }
    }
};

using AllFormats = testing::Types<Argb8, Argb16, Argb32>;
TYPED_TEST_SUITE(WidePixelsOf, AllFormats);

TYPED_TEST(WidePixelsOf, TellEachChannelOfEachPixel) {
    using Fixture = WidePixelsOf<TypeParam>;
    const typename TypeParam::Pixel like = {3, 5, 7, 9};
    for (std::size_t at = 0; at < Fixture::Wide::kCount; ++at) {
        for (int channel = 0; channel < 4; ++channel) {
            auto pixels = Fixture::alike(like);
            const typename Fixture::Wide wide(pixels.data() + 1);
            EXPECT_TRUE(wide.areLike(like) && wide.haveAlpha(like) && wide.haveColor(like) &&
                        wide.areVisible());
            auto& other = pixels[at + 1];
            (channel == 0   ? other.alpha
             : channel == 1 ? other.red
             : channel == 2 ? other.green
                            : other.blue) = 0;
            EXPECT_FALSE(wide.areLike(like)) << at;
            EXPECT_EQ(wide.haveAlpha(like), channel != 0) << at;
            EXPECT_EQ(wide.haveColor(like), channel == 0) << at;
            EXPECT_EQ(wide.areVisible(), channel != 0) << at;
            EXPECT_FALSE(wide.areTransparent());
        }
    }
}

TYPED_TEST(WidePixelsOf, AreTransparentWhereEachAlphaIsNone) {
    using Fixture = WidePixelsOf<TypeParam>;
    for (std::size_t at = 0; at < Fixture::Wide::kCount; ++at) {
        auto pixels = Fixture::alike({0, 5, 7, 9});
        const typename Fixture::Wide wide(pixels.data() + 1);
        EXPECT_TRUE(wide.areTransparent());
        pixels[at + 1].alpha = 1;
        EXPECT_FALSE(wide.areTransparent()) << at;
        EXPECT_FALSE(wide.areVisible()) << at;
    }
}

TYPED_TEST(WidePixelsOf, SeeWhatASingleLookSees) {
    using Fixture = WidePixelsOf<TypeParam>;
    Random random(11);
    int transparent = 0;
    int visible = 0;
    for (int round = 0; round < 3000; ++round) {
        auto pixels = Fixture::alike({Fixture::numberOf(random), 1, 2, 3});
        for (int n = random.below(17); n > 0; --n) {
            pixels[static_cast<std::size_t>(random.below(Fixture::Wide::kCount))].alpha =
                Fixture::numberOf(random);
        }
        const typename Fixture::Wide wide(pixels.data());
        const auto end = pixels.begin() + Fixture::Wide::kCount;
        const auto isNone = [](const auto& pixel) { return pixel.alpha == 0; };
        ASSERT_EQ(wide.areTransparent(), std::all_of(pixels.begin(), end, isNone));
        ASSERT_EQ(wide.areVisible(), std::none_of(pixels.begin(), end, isNone));
        transparent += wide.areTransparent() ? 1 : 0;
        visible += wide.areVisible() ? 1 : 0;
    }
    EXPECT_GT(transparent, 0);
    EXPECT_GT(visible, 0);
}

TYPED_TEST(WidePixelsOf, PartsOfOneAlphaAreWholeAndInOrder) {
    using Fixture = WidePixelsOf<TypeParam>;
    Random random(13);
    for (int round = 0; round < 1000; ++round) {
        std::vector<typename TypeParam::Pixel> pixels(static_cast<std::size_t>(random.below(120)));
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            pixels[i] = {i > 0 && random.chance(90) ? pixels[i - 1].alpha : Fixture::numberOf(random),
                         Fixture::numberOf(random), 1, 2};
        }
        int32_t told = 0;
        forEachAlpha<TypeParam>(
            pixels.data(), static_cast<int32_t>(pixels.size()), [&](int32_t first, int32_t end) {
                ASSERT_EQ(first, told);
                ASSERT_LT(first, end);
                const auto& like = pixels[static_cast<std::size_t>(first)].alpha;
                for (int32_t x = first; x < end; ++x) {
                    ASSERT_TRUE(haveSameBits(pixels[static_cast<std::size_t>(x)].alpha, like));
                }
                if (end < static_cast<int32_t>(pixels.size())) {
                    ASSERT_FALSE(haveSameBits(pixels[static_cast<std::size_t>(end)].alpha, like));
                }
                told = end;
            });
        ASSERT_EQ(told, static_cast<int32_t>(pixels.size()));
    }
}

} // namespace
} // namespace kovalune::test
