// What pixels are: depths, components, alpha, masks, values of the parameters.

#include "tests/adapters/openfx/Stage.h"

#include "render/FrameArea.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <tuple>

namespace kovalune::test {

using namespace openfx;

namespace {

constexpr int kFrameWidth = 61;
constexpr int kFrameHeight = 40;

using Texts = std::vector<std::string>;

TEST(OpenFxHabits, EachImagesOwnDepthAndComponentsCount) {
    Stage stage;
    for (const PictureForm& form :
         {PictureForm{.depth = "OfxBitDepthHalf"}, PictureForm{.depth = "OfxBitDepthNone"},
          PictureForm{.components = "OfxImageComponentAlpha"},
          PictureForm{.components = "OfxImageComponentNone"}}) {
        TestPicture strange(form, kFrameWidth, kFrameHeight);
        TestPicture sound = drawn({}, kFrameWidth, kFrameHeight);
        TestPicture output({}, kFrameWidth, kFrameHeight);
        EXPECT_EQ(stage.render(&strange, output), kFailed) << form.depth << form.components;
        EXPECT_TRUE(output.isUntouched());
        EXPECT_EQ(stage.render(&sound, strange), kFailed) << form.depth << form.components;
        EXPECT_TRUE(strange.isUntouched());
        const Texts messages = stage.host.takeMessages();
        ASSERT_EQ(messages.size(), 2U);
        EXPECT_NE(messages[0].find("the clip Source"), std::string::npos) << messages[0];
        EXPECT_NE(messages[1].find("the clip Output"), std::string::npos) << messages[1];
    }
}

TEST(OpenFxValues, SourceAndOutputMayDifferInDepth) {
    Stage stage;
    chooseColours(*stage.instance);
    for (const char* const from : kDepths) {
        for (const char* const to : kDepths) {
            TestPicture source = drawn({.depth = from}, kFrameWidth, kFrameHeight);
            TestPicture output({.depth = to}, kFrameWidth, kFrameHeight);
            ASSERT_EQ(stage.render(&source, output), kOk);
            const host::Image expected = stage.expected(source);
            const host::Image found = output.image();
            const double white = found.format() == PF_PixelFormat_ARGB32   ? 255.0
                                 : found.format() == PF_PixelFormat_ARGB64 ? 32768.0
                                                                           : 1.0;
            EXPECT_EQ(found.format() == expected.format(), std::string(from) == to);
            if (found.format() == expected.format()) {
                EXPECT_TRUE(found == expected) << from;
            } else if (found.format() == PF_PixelFormat_ARGB128 &&
                       expected.format() == PF_PixelFormat_ARGB32) {
                EXPECT_NEAR(static_cast<double>(found.at<PF_PixelFloat>(20, 20).red) / white,
                            expected.at<PF_Pixel>(20, 20).red / 255.0, 1e-6);
            }
        }
    }
}

TEST(OpenFxValues, OfRgbWhatAViewCutsAwayIsBlack) {
    Stage stage;
    chooseColours(*stage.instance);
    for (const char* const depth : kDepths) {
        TestPicture source =
            drawn({.depth = depth, .components = "OfxImageComponentRGB"}, kFrameWidth, kFrameHeight);
        TestPicture output({.depth = depth, .components = "OfxImageComponentRGB"}, kFrameWidth, kFrameHeight);
        ASSERT_EQ(stage.render(&source, output), kOk);
        EXPECT_TRUE(output.image() == stage.expected(source)) << depth;
        stage.instance->set("view", {2.0}); // Base
        ASSERT_EQ(stage.render(&source, output), kOk);
        const host::Image expected = stage.expected(source);
        TestPicture black({.depth = depth, .components = "OfxImageComponentRGB"}, 1, 1);
        black.fill(host::Image(formatOfDepth(depth), 1, 1));
        TestPicture flat(source.form(), kFrameWidth, kFrameHeight);
        flat.fill(expected);
        int cut = 0;
        for (int y = 0; y < kFrameHeight; ++y) {
            for (int x = 0; x < kFrameWidth; ++x) {
                const std::byte* const alpha =
                    expected.row(y) + static_cast<std::size_t>(x) * host::bytesPerPixel(expected.format());
                const bool isCut = std::all_of(alpha, alpha + host::bytesPerPixel(expected.format()) / 4,
                                               [](std::byte each) { return each == std::byte{0}; });
                cut += isCut ? 1 : 0;
                ASSERT_EQ(
                    std::memcmp(output.at(x, y), isCut ? black.at(0, 0) : flat.at(x, y), output.pixelBytes()),
                    0)
                    << depth << ' ' << x << ' ' << y;
            }
        }
        EXPECT_GT(cut, 100);
        stage.instance->set("view", {0.0});
    }
}

TEST(OpenFxValues, AreThoseOfTheRendersTime) {
    Stage stage;
    chooseColours(*stage.instance);
    stage.instance->param("process1BoundaryBlur").keys = {{0.0, {2.0}}, {10.0, {30.0}}};
    TestPicture source = drawn({}, kFrameWidth, kFrameHeight);
    TestPicture early({}, kFrameWidth, kFrameHeight);
    TestPicture late({}, kFrameWidth, kFrameHeight);
    ASSERT_EQ(stage.render(&source, early, {.time = 9.5}), kOk);
    ASSERT_EQ(stage.render(&source, late, {.time = 10.0}), kOk);
    EXPECT_TRUE(late.image() ==
                stage.reference.render(source.image(), stage.reference.valuesOf(*stage.instance, 10.0)));
    EXPECT_FALSE(early == late);
}

TEST(OpenFxValues, ThatNoParameterTakesAreBroughtIntoItsRange) {
    Stage stage;
    chooseColours(*stage.instance);
    TestPicture source = drawn({}, kFrameWidth, kFrameHeight);
    const auto frame = [&] {
        TestPicture output({}, kFrameWidth, kFrameHeight);
        EXPECT_EQ(stage.render(&source, output), kOk);
        return output;
    };
    stage.instance->set("baseBlurAmount", {-5.0});
    const TestPicture below = frame();
    stage.instance->set("baseBlurAmount", {std::nan("")});
    EXPECT_TRUE(frame() == below);
    stage.instance->set("baseBlurAmount", {0.0});
    EXPECT_TRUE(frame() == below);
    stage.instance->set("baseBlurRepeatNum", {99.0});
    stage.instance->set("process1BlurRepeatNum", {-2.0});
    stage.instance->set("view", {40.0});
    stage.instance->set("process2Color", {-3.0, std::nan(""), 7.0});
    frame();
}

/// A mask of these bounds, inside where the pattern says.
TestPicture maskOf(const std::string& depth, const PictureForm& place, int width, int height) {
    PictureForm form = place;
    form.depth = depth;
    form.components = "OfxImageComponentAlpha";
    TestPicture mask(form, width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool inside = x * 2 < width || y == 3;
            const uint8_t byte = inside ? 1 : 0;
            const uint16_t word = inside ? 1 : 0;
            const float number = inside ? 0.001F : -0.0F;
            const void* const sample = depth == kDepths[0]   ? static_cast<const void*>(&byte)
                                       : depth == kDepths[1] ? static_cast<const void*>(&word)
                                                             : &number;
            std::memcpy(mask.at(x, y), sample, mask.pixelBytes());
        }
    }
    return mask;
}

/// What the command does with a mask.
host::Image masked(Stage& stage, const TestPicture& source, const render::FrameArea& area, bool isNormal) {
    const host::Image image = source.image();
    host::Image result =
        stage.reference.render(cutTo(image, area), stage.reference.valuesOf(*stage.instance));
    if (isNormal) {
        restoreOutside(result, image, area);
    } else {
        clearOutside(result, area);
    }
    return result;
}

TEST(OpenFxMask, WorksAsTheCommandsDoes) {
    Stage stage({}, name::kContextGeneral);
    chooseColours(*stage.instance);
    TestClip& clip = stage.instance->clip("Mask");
    clip.bag.put("OfxImageClipPropConnected", 1);
    TestPicture source = drawn({.left = 4, .bottom = 9}, kFrameWidth, kFrameHeight);
    render::FrameArea area(kFrameWidth, kFrameHeight);
    for (int y = 0; y < kFrameHeight; ++y) {
        for (int x = 0; x < kFrameWidth; ++x) {
            // The mask is 40 x 20 from (14, 19): its top row is the source's row 19.
            const int maskX = x - 10;
            const int maskY = y - (kFrameHeight - 10 - 20);
            const bool within = maskX >= 0 && maskX < 40 && maskY >= 0 && maskY < 20;
            area.row(y)[x] = within && (maskX * 2 < 40 || maskY == 3) ? 1 : 0;
        }
    }
    for (const char* const depth : kDepths) {
        TestPicture mask = maskOf(depth, {.isTopFirst = true, .left = 14, .bottom = 19}, 40, 20);
        clip.picture = &mask;
        for (const double view : {0.0, 2.0}) {
            stage.instance->set("view", {view});
            TestPicture output({.left = 4, .bottom = 9}, kFrameWidth, kFrameHeight);
            ASSERT_EQ(stage.render(&source, output), kOk);
            EXPECT_TRUE(output.image() == masked(stage, source, area, view == 0.0)) << depth << view;
        }
        clip.picture = nullptr;
    }
}

TEST(OpenFxHabits, AnOptionalClipMayClaimToBeConnectedAndHaveNoImage) {
    Stage stage({}, name::kContextGeneral);
    chooseColours(*stage.instance);
    TestPicture source = drawn({}, kFrameWidth, kFrameHeight);
    TestClip& clip = stage.instance->clip("Mask");
    TestPicture mask = maskOf(kDepths[0], {}, kFrameWidth, kFrameHeight);
    const host::Image unmasked = stage.expected(source);
    for (const auto& [connected, picture, answer] :
         {std::tuple(1, static_cast<TestPicture*>(nullptr), kFailed),
          std::tuple(1, static_cast<TestPicture*>(nullptr), kOk), std::tuple(0, &mask, kOk)}) {
        clip.bag.put("OfxImageClipPropConnected", connected);
        clip.picture = picture;
        clip.noImage = answer;
        TestPicture output({}, kFrameWidth, kFrameHeight);
        ASSERT_EQ(stage.render(&source, output), kOk);
        EXPECT_TRUE(output.image() == unmasked) << connected << answer;
    }
}

TEST(OpenFxAbort, EndsTheFrameAndWritesNothing) {
    Stage stage;
    chooseColours(*stage.instance);
    TestPicture source = drawn({}, kFrameWidth, kFrameHeight);
    int polls = 0;
    for (; polls < 100; ++polls) {
        stage.instance->abortAfter = polls;
        stage.instance->abortsAsked = 0;
        TestPicture output({}, kFrameWidth, kFrameHeight);
        if (stage.render(&source, output) == kOk) {
            break;
        }
        EXPECT_TRUE(output.isUntouched()) << polls;
        EXPECT_GT(stage.instance->abortsAsked, polls);
    }
    EXPECT_GT(polls, 10) << "asked within the frame";
    EXPECT_LT(polls, 100);
    EXPECT_EQ(stage.host.takeMessages(), Texts{});
}

TEST(OpenFxThreads, HoweverManyTheHostGivesTheFrameIsTheSame) {
    std::vector<host::Image> frames;
    for (const TestHostOptions& options :
         {TestHostOptions{}, TestHostOptions{.cpus = 8, .threads = 1},
          TestHostOptions{.cpus = 16, .threads = 9}, TestHostOptions{.threads = 0},
          TestHostOptions{.callsOnSpawnedThread = true}, TestHostOptions{.cpus = 0},
          TestHostOptions{.cpus = 1000}, TestHostOptions{.withheld = {"OfxMultiThreadSuite1"}}}) {
        Stage stage(options);
        chooseColours(*stage.instance);
        TestPicture source = drawn({}, 300, 200);
        TestPicture output({}, 300, 200);
        ASSERT_EQ(stage.render(&source, output), kOk);
        frames.push_back(output.image());
        EXPECT_TRUE(frames.back() == frames.front());
        EXPECT_TRUE(frames.back() == stage.expected(source));
    }
}

} // namespace
} // namespace kovalune::test
