// Whole frames as long as the longest side and thin, and frames whose rows lie two gigabytes apart: the same pixels as in a
// frame of usual size.

#include "host/Session.h"
#include "host/judge/JudgedHost.h"
#include "hostapi/EntryPoint.h"
#include "tests/support/Effort.h"
#include "tests/support/SparseMemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace kovalune::test {

using namespace host;

namespace {

constexpr A_long kLong = 32767;
constexpr A_long kShort = 5000;
constexpr A_long kThin = 64;
constexpr A_long kEnd = 400;     ///< what is not the same all along lies so near to an end
constexpr A_long kAround = 2000; ///< and reaches no farther

constexpr PF_Pixel kGround = {255, 200, 40, 60};
constexpr PF_Pixel kShade = {255, 30, 24, 140};
constexpr PF_Pixel kLine = {255, 0, 0, 0};

/// Two colours along the picture, whose border is stepped near both ends.
const PF_Pixel& colourAt(A_long along, A_long across, A_long length) {
    const A_long left = along;
    const A_long right = length - 1 - along;
    A_long border = 30;
    if (left < kEnd) {
        border += left / 7 % 13;
    } else if (right < kEnd) {
        border -= right / 5 % 11;
    }
    const bool isLine = (left == 90 || right == 33) && across > 10;
    return isLine ? kLine : across < border ? kGround : kShade;
}

void put(std::byte* place, PF_PixelFormat format, const PF_Pixel& c) {
    if (format == PF_PixelFormat_ARGB32) {
        std::memcpy(place, &c, sizeof c);
    } else if (format == PF_PixelFormat_ARGB64) {
        const auto wide = [](A_u_char v) { return static_cast<A_u_short>((v * 32768 + 128) / 255); };
        const PF_Pixel16 pixel = {wide(c.alpha), wide(c.red), wide(c.green), wide(c.blue)};
        std::memcpy(place, &pixel, sizeof pixel);
    } else {
        const auto share = [](A_u_char v) { return static_cast<float>(v) / 255.0F; };
        const PF_PixelFloat pixel = {share(c.alpha), share(c.red), share(c.green), share(c.blue)};
        std::memcpy(place, &pixel, sizeof pixel);
    }
}

/// The effect in a host that takes sides of any length, with all stages at work and no boundary smoothing, whose ramps are as
/// long as their runs.
struct Scene {
    explicit Scene(const judge::JudgeOptions& options)
        : host(options), module(EffectModule::linked(EntryPointFunc, SetDown::kNever)),
          session(host, module) {
        const auto set = [this](const std::string& label, ParamValue value) {
            session.setValue(session.findParam(label).value(), value);
        };
        set("Blur Amount", 20.0);
        set("Blur Repeat Num", A_long{2});
        set("Color 1", kGround);
        set("1 : Color", kShade);
        set("1 : Boundary Blur", 40.0);
        set("2 : Enable Process", A_long{1});
        set("2 : Color", kGround);
        set("2 : Boundary Blur", 30.0);
    }

    static judge::JudgeOptions options() {
        judge::JudgeOptions options;
        options.allowHuge = true;
        options.threads = 2;
        options.iterations = 3;
        return options;
    }

    judge::JudgedHost host;
    EffectModule module;
    Session session;
};

class LongFrames : public testing::TestWithParam<PF_PixelFormat> {
protected:
    static Image picture(A_long length, bool isHigh) {
        Image image(GetParam(), isHigh ? kThin : length, isHigh ? length : kThin);
        for (A_long y = 0; y < image.height(); ++y) {
            for (A_long x = 0; x < image.width(); ++x) {
                put(place(image, x, y), GetParam(), isHigh ? colourAt(y, x, length) : colourAt(x, y, length));
            }
        }
        return image;
    }

    static std::byte* place(Image& image, A_long x, A_long y) {
        return image.row(y) + static_cast<std::size_t>(x) * bytesPerPixel(GetParam());
    }

    static Image rendered(const Image& input) {
        Scene scene(Scene::options());
        Image output;
        const RenderResult result = scene.session.render(input, output);
        EXPECT_EQ(result.code, PF_Err_NONE) << result.returnMsg;
        EXPECT_FALSE(output == input);
        return output;
    }

    /// Whether the lines across the picture at these places are the same.
    static bool areAlike(Image& a, A_long inA, Image& b, A_long inB, bool isHigh) {
        for (A_long across = 0; across < kThin; ++across) {
            const std::byte* const one = isHigh ? place(a, across, inA) : place(a, inA, across);
            const std::byte* const other = isHigh ? place(b, across, inB) : place(b, inB, across);
            if (std::memcmp(one, other, bytesPerPixel(GetParam())) != 0) {
                return false;
            }
        }
        return true;
    }

    static void compare(bool isHigh) {
        Image usual = rendered(picture(kShort, isHigh));
        Image large = rendered(picture(kLong, isHigh));
        for (A_long at = 0; at < kLong; ++at) {
            const A_long fromEnd = kLong - 1 - at;
            const A_long expected = at < kAround ? at : fromEnd < kAround ? kShort - 1 - fromEnd : kShort / 2;
            ASSERT_TRUE(areAlike(large, at, usual, expected, isHigh)) << "line " << at;
        }
    }
};

constexpr PF_PixelFormat kFormats[] = {PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB128};

INSTANTIATE_TEST_SUITE_P(Formats, LongFrames, testing::ValuesIn(kFormats, kFormats + (kSanitized ? 1 : 3)),
                         testing::PrintToStringParamName());

TEST_P(LongFrames, OfTheLongestWidth) {
    compare(false);
}

TEST_P(LongFrames, OfTheGreatestHeight) {
    compare(true);
}

#if UINTPTR_MAX > 0xffffffffU

/// Rows at any distance that a world's 32 bits can tell.
TEST(FarRows, MakeNoDifference) {
    constexpr A_long kWidth = 40;
    constexpr A_long kHeight = 24;
    for (const PF_PixelFormat format : kFormats) {
        constexpr std::ptrdiff_t kApart = 0x7ffffff0;
        const SparseMemory memory(2 * kHeight * static_cast<std::size_t>(kApart));
        if (!memory.isThere()) {
            GTEST_SKIP() << "the system has no " << 2 * kHeight * kApart << " addresses in a row";
        }
        auto* const first = static_cast<std::byte*>(static_cast<void*>(memory.data()));
        const ImageView input = {format, kWidth, kHeight, first, kApart};
        const ImageView output = {format, kWidth, kHeight, first + (2 * kHeight - 1) * kApart, -kApart};
        Image near(format, kWidth, kHeight);
        for (A_long y = 0; y < kHeight; ++y) {
            for (A_long x = 0; x < kWidth; ++x) {
                const std::size_t at = static_cast<std::size_t>(x) * bytesPerPixel(format);
                const PF_Pixel& colour = x * 2 + y < 50 ? kGround : x == 30 ? kLine : kShade;
                put(input.row(y) + at, format, colour);
                put(near.row(y) + at, format, colour);
            }
        }
        for (const RenderFlow flow : {RenderFlow::kSmart, RenderFlow::kLegacy}) {
            RenderRequest request;
            request.flow = flow;
            Scene scene(Scene::options());
            ASSERT_EQ(scene.session.render(input, output, request).code, PF_Err_NONE);
            Image expected;
            ASSERT_EQ(scene.session.render(near, expected, request).code, PF_Err_NONE);
            EXPECT_FALSE(expected == near);
            for (A_long y = 0; y < kHeight; ++y) {
                ASSERT_EQ(std::memcmp(output.row(y), expected.row(y), kWidth * bytesPerPixel(format)), 0)
                    << y;
            }
        }
    }
}

#endif

} // namespace
} // namespace kovalune::test
