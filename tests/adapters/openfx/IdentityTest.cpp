// A frame is declared identical only where it is a copy, whatever the picture is.

#include "render/selfcheck/Random.h"
#include "tests/adapters/openfx/Stage.h"
#include "tests/support/Effort.h"

#include <array>
#include <cstring>

namespace kovalune::test {

using namespace openfx;

namespace {

Status identityOf(Stage& stage, PropertyBag& out, double time = 3.0) {
    PropertyBag in = stage.host.renderArguments({.time = time, .window = {0, 0, 8, 8}});
    return stage.host.action(name::kIsIdentity, stage.instance.get(), &in, &out);
}

/// Any values, most of them such that little is left to do.
void chooseAny(TestEffect& instance, selfcheck::Random& random) {
    for (TestParam& param : instance.params) {
        if (param.type == name::kTypeBoolean) {
            const bool isProcess = param.name.find("EnableProcess") != std::string::npos;
            param.keys = {{0.0, {random.chance(isProcess ? 3 : 20) ? 1.0 : 0.0}}};
        } else if (param.type == name::kTypeDouble) {
            param.keys = {{0.0, {random.chance(40) ? 0.0 : random.unit() * 60.0}}};
        } else if (param.type == name::kTypeInteger) {
            param.keys = {{0.0, {static_cast<double>(random.between(1, 10))}}};
        } else if (param.type == name::kTypeRgb) {
            param.keys = {{0.0, {random.below(3) / 2.0, random.below(3) / 2.0, random.below(3) / 2.0}}};
        } else if (param.type == name::kTypeChoice) {
            param.keys = {{0.0, {random.chance(5) ? 1.0 : 0.0}}};
        }
    }
}

void fillAny(TestPicture& picture, selfcheck::Random& random) {
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const std::array<uint8_t, 4> pixel = {
                static_cast<uint8_t>(random.below(3) * 127), static_cast<uint8_t>(random.below(3) * 127),
                static_cast<uint8_t>(random.below(3) * 127), static_cast<uint8_t>(random.below(4) * 85)};
            std::memcpy(picture.at(x, y), &pixel, sizeof pixel);
        }
    }
}

#ifdef _WIN32
constexpr int kFrames = 500; // Wine takes ten times as long, and the rules are the same
#else
constexpr int kFrames = cases(10000);
#endif

TEST(OpenFxIdentity, EveryFrameThatIsDeclaredIdenticalIsACopy) {
    Stage stage({.cpus = 1}); // a thread for each pass of so small a frame takes longer than the frame
    selfcheck::Random random(17);
    const PictureForm straight = {};
    const PictureForm premultiplied = {.premultiplication = "OfxImageAlphaPremultiplied"};
    int identical = 0;
    for (int tries = 0; identical < kFrames && tries < 100000; ++tries) {
        chooseAny(*stage.instance, random);
        PropertyBag out = stage.host.arguments();
        if (identityOf(stage, out) != kOk) {
            continue;
        }
        ++identical;
        ASSERT_EQ(out.text(name::kName), "Source");
        const PictureForm& form = random.chance(50) ? straight : premultiplied;
        TestPicture source(form, 9, 6);
        fillAny(source, random);
        TestPicture output(form, 9, 6);
        stage.instance->clip("Source").picture = &source;
        stage.instance->clip("Output").picture = &output;
        ASSERT_EQ(stage.host.render(*stage.instance, {.window = output.bounds()}), kOk);
        ASSERT_TRUE(output == source) << identical;
    }
    EXPECT_EQ(identical, kFrames);
}

TEST(OpenFxIdentity, IsThatOfTheTime) {
    Stage stage;
    PropertyBag out = stage.host.arguments();
    EXPECT_EQ(identityOf(stage, out), kReplyDefault) << "Process 1 is on";
    stage.instance->set("process1EnableProcess", {0.0});
    EXPECT_EQ(identityOf(stage, out), kReplyDefault) << "a colour is blurred";
    stage.instance->param("baseBlurAmount").keys = {{0.0, {0.0}}, {5.0, {3.0}}};
    EXPECT_EQ(identityOf(stage, out), kOk);
    EXPECT_EQ(out.number(name::kTime), 3.0);
    EXPECT_EQ(identityOf(stage, out, 6.0), kReplyDefault);
    stage.instance->set("baseEnable1", {0.0});
    EXPECT_EQ(identityOf(stage, out, 6.0), kOk);
    stage.instance->set("view", {1.0});
    EXPECT_EQ(identityOf(stage, out, 6.0), kReplyDefault);
}

} // namespace
} // namespace kovalune::test
