// Pictures in the caller's own memory: where they lie, what the host refuses, and that nothing else is touched.

#include "host/ImageView.h"
#include "host/Image.h"
#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace kovalune::test {
using namespace host;
namespace {

constexpr std::byte kUntouched{0x3C};

/// Memory of a caller: a picture with `rowBytes` from row to row, something else before, between and after.
class ForeignPicture {
public:
    ForeignPicture(PF_PixelFormat format, A_long width, A_long height, std::ptrdiff_t rowBytes)
        : bytes_(2 * kMargin + static_cast<std::size_t>(std::abs(rowBytes) * height), kUntouched) {
        view_ = {format, width, height, bytes_.data() + kMargin, rowBytes};
        if (rowBytes < 0) {
            view_.data -= (height - 1) * rowBytes;
        }
    }

    explicit ForeignPicture(const Image& image, std::ptrdiff_t rowBytes)
        : ForeignPicture(image.format(), image.width(), image.height(), rowBytes) {
        for (A_long y = 0; y < image.height(); ++y) {
            std::copy_n(image.row(y), image.rowBytes(), view_.row(y));
        }
    }

    const ImageView& view() const { return view_; }

    Image image() const {
        Image image(view_.format, view_.width, view_.height);
        for (A_long y = 0; y < image.height(); ++y) {
            std::copy_n(view_.row(y), image.rowBytes(), image.row(y));
        }
        return image;
    }

    /// Whether all that is no pixel is as it was.
    bool restUntouched() const {
        std::vector<std::byte> rest = bytes_;
        const std::size_t used = static_cast<std::size_t>(view_.width) * bytesPerPixel(view_.format);
        for (A_long y = 0; y < view_.height; ++y) {
            std::fill_n(rest.data() + (view_.row(y) - bytes_.data()), used, kUntouched);
        }
        return std::count(rest.begin(), rest.end(), kUntouched) == static_cast<std::ptrdiff_t>(rest.size());
    }

private:
    static constexpr std::size_t kMargin = 64;

    std::vector<std::byte> bytes_;
    ImageView view_;
};

struct Form {
    PF_PixelFormat format;
    std::ptrdiff_t inputRowBytes; ///< of a picture 5 pixels wide
    std::ptrdiff_t outputRowBytes;
    RenderFlow flow;
};

class ForeignMemory : public testing::TestWithParam<Form> {
protected:
    RenderRequest request() const {
        RenderRequest request;
        request.flow = GetParam().flow;
        return request;
    }
};

INSTANTIATE_TEST_SUITE_P(Forms, ForeignMemory,
                         testing::Values(Form{PF_PixelFormat_ARGB32, 20, 20, RenderFlow::kSmart},
                                         Form{PF_PixelFormat_ARGB32, -20, 33,
                                              RenderFlow::kSmart}, // bytes need no alignment
                                         Form{PF_PixelFormat_ARGB32, 64, -64, RenderFlow::kLegacy},
                                         Form{PF_PixelFormat_ARGB64, -42, -58, RenderFlow::kSmart},
                                         Form{PF_PixelFormat_ARGB64, -40, 40, RenderFlow::kLegacy},
                                         Form{PF_PixelFormat_ARGB128, -84, -1000, RenderFlow::kSmart},
                                         Form{PF_PixelFormat_ARGB128, 80, -80, RenderFlow::kLegacy}));

TEST_P(ForeignMemory, IsWhatTheEffectReadsAndWrites) {
    Stage stage;
    const Image picture = patterned(GetParam().format, 5, 4);
    const ForeignPicture input(picture, GetParam().inputRowBytes);
    const ForeignPicture output(GetParam().format, 5, 4, GetParam().outputRowBytes);
    int frames = 0;
    const auto expectWorld = [](const PF_EffectWorld& world, const ImageView& view) {
        EXPECT_EQ(static_cast<const void*>(world.data), view.data);
        EXPECT_EQ(world.rowbytes, view.rowBytes);
        EXPECT_EQ(world.width, 5);
        EXPECT_EQ(world.height, 4);
        EXPECT_EQ((world.world_flags & PF_WorldFlag_DEEP) != 0, view.format == PF_PixelFormat_ARGB64);
    };
    stage.script[PF_Cmd_RENDER] = [&](Call& c) -> PF_Err {
        ++frames;
        expectWorld(c.params[0]->u.ld, input.view());
        expectWorld(*c.output, output.view());
        return c.utils().copy(c.ref(), &c.params[0]->u.ld, c.output, nullptr, nullptr);
    };
    stage.script[PF_Cmd_SMART_RENDER] = [&](Call& c) -> PF_Err {
        ++frames;
        PF_EffectWorld* from = nullptr;
        PF_EffectWorld* to = nullptr;
        c.smartRender().cb->checkout_layer_pixels(c.ref(), 0, &from);
        c.smartRender().cb->checkout_output(c.ref(), &to);
        expectWorld(*from, input.view());
        expectWorld(*to, output.view());
        PF_PixelFormat format = PF_PixelFormat_INVALID;
        EXPECT_EQ(c.need<PFWorldSuite2>(kPFWorldSuite, 2).PF_GetPixelFormat(to, &format), PF_Err_NONE);
        c.release(kPFWorldSuite, 2);
        EXPECT_EQ(format, GetParam().format);
        EXPECT_EQ(c.utils().copy(c.ref(), from, to, nullptr, nullptr), PF_Err_NONE);
        return c.smartRender().cb->checkin_layer_pixels(c.ref(), 0);
    };
    const RenderResult result = stage.session().render(input.view(), output.view(), request());
    EXPECT_TRUE(result.ok());
    EXPECT_EQ(frames, 1);
    EXPECT_EQ(output.image(), picture);
    EXPECT_EQ(input.image(), picture);
    EXPECT_TRUE(input.restUntouched());
    EXPECT_TRUE(output.restUntouched());
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

// The host's own functions go by the rows' signs too.
TEST_P(ForeignMemory, IsFilledAndMovedWithinByTheHostsFunctions) {
    Stage stage;
    const Image picture = patterned(GetParam().format, 5, 4);
    const ForeignPicture input(picture, GetParam().inputRowBytes);
    const ForeignPicture output(picture, GetParam().outputRowBytes);
    const Handler work = [](Call& c) -> PF_Err {
        PF_EffectWorld* world = c.output;
        if (world == nullptr) {
            c.smartRender().cb->checkout_output(c.ref(), &world);
        }
        PF_Rect upper{};
        upper.right = 5;
        upper.bottom = 3;
        PF_Rect lower = upper;
        lower.top = 1;
        lower.bottom = 4;
        PF_Rect corner{};
        corner.right = 1;
        corner.bottom = 1;
        const PF_Pixel white{255, 255, 255, 255};
        EXPECT_EQ(c.utils().copy(c.ref(), world, world, &upper, &lower), PF_Err_NONE);
        return c.utils().fill(c.ref(), &white, &corner, world);
    };
    stage.script[PF_Cmd_RENDER] = work;
    stage.script[PF_Cmd_SMART_RENDER] = work;
    EXPECT_TRUE(stage.session().render(input.view(), output.view(), request()).ok());
    const Image result = output.image();
    const std::size_t pixelBytes = bytesPerPixel(GetParam().format);
    for (A_long y = 1; y < 4; ++y) {
        EXPECT_EQ(std::memcmp(result.row(y), picture.row(y - 1), picture.rowBytes()), 0) << y;
    }
    EXPECT_EQ(std::memcmp(result.row(0) + pixelBytes, picture.row(0) + pixelBytes, 4 * pixelBytes), 0);
    EXPECT_NE(std::memcmp(result.row(0), picture.row(0), pixelBytes), 0);
    EXPECT_TRUE(output.restUntouched());
}

TEST(ForeignMemoryRequest, APartOfThePictureLiesInItsMiddle) {
    Stage stage;
    const Image picture = patterned(PF_PixelFormat_ARGB64, 5, 4);
    const ForeignPicture input(picture, -48);
    const ForeignPicture output(PF_PixelFormat_ARGB64, 5, 4, -40);
    stage.script[PF_Cmd_SMART_RENDER] = [&](Call& c) -> PF_Err {
        PF_EffectWorld* from = nullptr;
        PF_EffectWorld* to = nullptr;
        c.smartRender().cb->checkout_layer_pixels(c.ref(), 0, &from);
        c.smartRender().cb->checkout_output(c.ref(), &to);
        EXPECT_EQ(static_cast<const void*>(from->data), input.view().row(1) + 2 * 8);
        EXPECT_EQ(static_cast<const void*>(to->data), output.view().row(1) + 2 * 8);
        EXPECT_EQ(to->width, 2);
        EXPECT_EQ(to->height, 3);
        EXPECT_EQ(to->origin_x, 2);
        EXPECT_EQ(c.utils().copy(c.ref(), from, to, nullptr, nullptr), PF_Err_NONE);
        return c.smartRender().cb->checkin_layer_pixels(c.ref(), 0);
    };
    RenderRequest request;
    request.rect = PF_LRect{2, 1, 4, 4};
    EXPECT_TRUE(stage.session().render(input.view(), output.view(), request).ok());
    Image expected = ForeignPicture(PF_PixelFormat_ARGB64, 5, 4, 40).image();
    for (A_long y = 1; y < 4; ++y) {
        std::copy_n(picture.row(y) + 2 * 8, 2 * 8, expected.row(y) + 2 * 8);
    }
    EXPECT_EQ(output.image(), expected);
    EXPECT_TRUE(output.restUntouched());
}

// A world that reaches beyond the picture has no place in it: the host makes one of its own and copies what is common.
TEST(ForeignMemoryRequest, AResultBeyondThePictureIsTheHostsOwn) {
    Stage stage;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        const PF_Err err = askForLayer(c);
        PF_PreRenderOutput& promised = *c.preRender().output;
        promised.result_rect = {-1, -1, 6, 5};
        promised.max_result_rect = promised.result_rect;
        promised.flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
        return err;
    };
    const ForeignPicture input(patterned(PF_PixelFormat_ARGB32, 5, 4), -20);
    const ForeignPicture output(PF_PixelFormat_ARGB32, 5, 4, -24);
    stage.script[PF_Cmd_SMART_RENDER] = [](Call& c) -> PF_Err {
        PF_EffectWorld* to = nullptr;
        c.smartRender().cb->checkout_output(c.ref(), &to);
        EXPECT_EQ(to->width, 7);
        EXPECT_GT(to->rowbytes, 0);
        EXPECT_EQ(std::memcmp(worldRow(*to, 1) + 4, "\x3C\x3C\x3C\x3C", 4), 0); // filled from the picture
        const PF_Pixel colour{1, 2, 3, 4};
        return c.utils().fill(c.ref(), &colour, nullptr, to);
    };
    EXPECT_TRUE(stage.session().render(input.view(), output.view()).ok());
    const Image written = output.image();
    for (A_long y = 0; y < 4; ++y) {
        for (A_long x = 0; x < 5; ++x) {
            EXPECT_EQ(written.at<PF_Pixel>(x, y).blue, 4);
        }
    }
    EXPECT_TRUE(output.restUntouched());
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(ForeignMemoryAudit, AWriteToTheInputIsDamage) {
    Stage stage;
    stage.script[PF_Cmd_SMART_RENDER] = [](Call& c) -> PF_Err {
        PF_EffectWorld* from = nullptr;
        c.smartRender().cb->checkout_layer_pixels(c.ref(), 0, &from);
        worldRow(*from, 1)[3] ^= std::byte{1};
        return c.smartRender().cb->checkin_layer_pixels(c.ref(), 0);
    };
    const ForeignPicture input(patterned(PF_PixelFormat_ARGB32, 2, 2), -8);
    const ForeignPicture output(PF_PixelFormat_ARGB32, 2, 2, 8);
    stage.session().render(input.view(), output.view());
    EXPECT_EQ(stage.host.audit().guardDamage, std::vector<std::string>{"the input's pixels were written"});
}

/// What the host says to a render of these, empty if nothing.
std::string refusal(const ImageView& input, const ImageView& output) {
    Stage stage;
    int commands = 0;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [&commands](Call&) -> PF_Err {
        ++commands;
        return 1;
    };
    try {
        stage.session().render(input, output);
    } catch (const HostError& reason) {
        EXPECT_EQ(commands, 0);
        return reason.what();
    }
    EXPECT_EQ(commands, 1);
    return {};
}

TEST(ImageViewChecks, TellWhatNoRenderCanWorkOn) {
    alignas(16) std::byte memory[4096];
    const ImageView good{PF_PixelFormat_ARGB128, 3, 2, memory, 48};
    ImageView output = good;
    output.data = memory + 2048;
    EXPECT_EQ(refusal(good, output), "");

    const auto changed = [&good](auto change) {
        ImageView view = good;
        change(view);
        return view;
    };
    EXPECT_EQ(refusal(changed([](ImageView& v) { v.data = nullptr; }), output), "the input has no memory");
    EXPECT_EQ(refusal(good, changed([](ImageView& v) { v.data = nullptr; })), "the output has no memory");
    EXPECT_EQ(refusal(changed([](ImageView& v) { v.rowBytes = 44; }), output),
              "the input's rows of 44 bytes are shorter than their pixels, which take 48");
    EXPECT_EQ(refusal(changed([](ImageView& v) { v.rowBytes = -44; }), output),
              "the input's rows of -44 bytes are shorter than their pixels, which take 48");
    EXPECT_EQ(refusal(changed([](ImageView& v) { v.rowBytes = 0; }), output),
              "the input's rows of 0 bytes are shorter than their pixels, which take 48");
    EXPECT_EQ(refusal(changed([](ImageView& v) { v.rowBytes = 50; }), output),
              "the input's rows of 50 bytes are not a multiple of 4 bytes, as its channels must be");
    EXPECT_EQ(refusal(changed([](ImageView& v) { v.data += 2; }), output),
              "the input's pixels do not start at a multiple of 4 bytes, as its channels must be");
    EXPECT_EQ(refusal(changed([](ImageView& v) { v.format = PF_PixelFormat_INVALID; }), output),
              "not a pixel format of a picture");
    EXPECT_EQ(refusal(changed([](ImageView& v) { v.width = -1; }), output),
              "a picture cannot have a negative side");
    EXPECT_EQ(refusal(changed([](ImageView& v) { v.width = 0; }), output),
              "an empty picture cannot be rendered");
    EXPECT_EQ(refusal(changed([](ImageView& v) { v.height = 1; }), output),
              "input and output differ in format or size");
    EXPECT_EQ(refusal(changed([](ImageView& v) {
                          v.width = 30001;
                          v.rowBytes = 16 * 30001;
                      }),
                      output),
              "a picture of more than 30000 pixels on a side cannot be rendered");
}

TEST(ImageViewChecks, TellRowsThatNoWorldHas) {
    if constexpr (sizeof(std::ptrdiff_t) > 4) {
        std::byte memory[64];
        const ImageView view{PF_PixelFormat_ARGB32, 2, 2, memory, std::ptrdiff_t{1} << 31};
        EXPECT_EQ(refusal(view, view),
                  "the input's rows of 2147483648 bytes are further apart than 2147483647");
        const ImageView upwards{PF_PixelFormat_ARGB32, 2, 2, memory, -(std::ptrdiff_t{1} << 31)};
        EXPECT_EQ(refusal(upwards, upwards),
                  "the input's rows of -2147483648 bytes are further apart than 2147483647");
    }
}

TEST(ImageViewChecks, RefuseInputAndOutputInTheSameMemory) {
    std::byte memory[1024];
    const std::string shared = "input and output share memory";
    const ImageView view{PF_PixelFormat_ARGB32, 4, 3, memory + 256, 32};
    const auto at = [&](std::ptrdiff_t first, std::ptrdiff_t rowBytes) {
        ImageView other = view;
        other.data = memory + 256 + first;
        other.rowBytes = rowBytes;
        return other;
    };
    EXPECT_EQ(refusal(view, view), shared);
    EXPECT_EQ(refusal(view, at(64, -32)), shared); // upside down
    EXPECT_EQ(refusal(view, at(15, 32)), shared);  // the last byte of each row
    EXPECT_EQ(refusal(view, at(-15, 32)), shared);
    EXPECT_EQ(refusal(view, at(16, 32)), ""); // side by side
    EXPECT_EQ(refusal(view, at(80, -32)), "");
    EXPECT_EQ(refusal(view, at(80, 40)), ""); // below the last row
    EXPECT_EQ(refusal(view, at(79, 40)), shared);
    EXPECT_EQ(refusal(view, at(-48, 16)), ""); // above the first row
    EXPECT_EQ(refusal(view, at(-47, 16)), shared);
}

TEST(ImageViews, OfAnImageAreItsPixels) {
    Image image = patterned(PF_PixelFormat_ARGB64, 3, 2);
    const ImageView view = image.view();
    EXPECT_EQ(view.format, PF_PixelFormat_ARGB64);
    EXPECT_EQ(view.data, image.row(0));
    EXPECT_EQ(view.row(1), image.row(1));
    const ConstImageView reading = view;
    EXPECT_EQ(reading.row(1), image.row(1));
    EXPECT_FALSE(overlap(view, Image(PF_PixelFormat_ARGB64, 3, 2).view()));
}

} // namespace
} // namespace kovalune::test
