// Instances: what is greyed out, what clips become, how many there are at once.

#include "tests/adapters/openfx/Stage.h"

namespace kovalune::test {

using namespace openfx;

namespace {

using Texts = std::vector<std::string>;

TEST(OpenFxGreying, FollowsTheEffectsRulesFromTheStart) {
    Stage stage;
    TestEffect& instance = *stage.instance;
    const std::map<std::string, bool> expected = {
        {"view", true},           {"baseBlurAmount", true},        {"baseEnable2", true},
        {"baseColor1", true},     {"baseColor2", false},           {"baseColor2Range", false},
        {"process1Color", true},  {"process1EnableProcess", true}, {"process2EnableProcess", true},
        {"process2Color", false}, {"process2KeepProcess", false},  {"pixelValues", true},
    };
    for (const auto& [name, enabled] : expected) {
        EXPECT_EQ(instance.isEnabled(name), enabled) << name;
    }
}

TEST(OpenFxGreying, FollowsEveryChange) {
    Stage stage;
    TestEffect& instance = *stage.instance;
    const auto change = [&](const char* name, double value) {
        instance.set(name, {value});
        EXPECT_EQ(stage.host.changed(instance, name), kOk);
    };
    change("baseEnable2", 1.0);
    EXPECT_TRUE(instance.isEnabled("baseColor2Range"));
    change("process3EnableProcess", 1.0);
    EXPECT_TRUE(instance.isEnabled("process3BoundaryBlur"));
    EXPECT_TRUE(instance.isEnabled("process3KeepProcess"));
    change("process1EnableProcess", 0.0);
    EXPECT_FALSE(instance.isEnabled("process1BoundaryBlur"));
    EXPECT_FALSE(instance.isEnabled("process3KeepProcess")) << "no stage before it is on";
    EXPECT_TRUE(instance.isEnabled("process1EnableProcess"));
    change("baseEnable2", 0.0);
    EXPECT_FALSE(instance.isEnabled("baseColor2"));
}

std::string alphaOf(Stage& stage) {
    PropertyBag out = stage.host.arguments();
    EXPECT_EQ(stage.host.action(name::kGetClipPreferences, stage.instance.get(), nullptr, &out), kOk);
    return out.text("OfxImageEffectPropPreMultiplication");
}

TEST(OpenFxPreferences, SayWhatTheOutputsAlphaIs) {
    Stage stage;
    PropertyBag& source = stage.instance->clip("Source").bag;
    EXPECT_EQ(alphaOf(stage), "OfxImageAlphaUnPremultiplied");
    source.put("OfxImageEffectPropPreMultiplication", std::string("OfxImageAlphaPremultiplied"));
    EXPECT_EQ(alphaOf(stage), "OfxImageAlphaPremultiplied");
    source.put("OfxImageEffectPropPreMultiplication", std::string("OfxImageOpaque"));
    EXPECT_EQ(alphaOf(stage), "OfxImageOpaque");
    stage.instance->set("view", {1.0});
    EXPECT_EQ(alphaOf(stage), "OfxImageAlphaUnPremultiplied") << "the view cuts away";
    source.put("OfxImageEffectPropComponents", std::string("OfxImageComponentRGB"));
    EXPECT_EQ(alphaOf(stage), "OfxImageOpaque");
}

TEST(OpenFxPreferences, AnOpaquePictureStaysOpaqueInTheNormalView) {
    Stage stage;
    chooseColours(*stage.instance);
    TestPicture source({.components = "OfxImageComponentRGB"}, 60, 40);
    source.fill(drawing(PF_PixelFormat_ARGB32, 60, 40));
    TestPicture opaque({}, 60, 40);
    opaque.fill(source.image());
    TestPicture output({}, 60, 40);
    ASSERT_EQ(stage.render(&opaque, output), kOk);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 60; ++x) {
            ASSERT_EQ(output.at(x, y)[3], std::byte{255});
        }
    }
}

TEST(OpenFxPreferences, InTheGeneralContextTheOutputIsLikeTheSource) {
    Stage stage({}, name::kContextGeneral);
    PropertyBag& source = stage.instance->clip("Source").bag;
    source.put("OfxImageEffectPropComponents", std::string("OfxImageComponentRGB"));
    source.put("OfxImageEffectPropPixelDepth", std::string("OfxBitDepthFloat"));
    PropertyBag out = stage.host.arguments();
    ASSERT_EQ(stage.host.action(name::kGetClipPreferences, stage.instance.get(), nullptr, &out), kOk);
    EXPECT_EQ(out.text("OfxImageClipPropComponents_Output"), "OfxImageComponentRGB");
    EXPECT_EQ(out.text("OfxImageClipPropDepth_Output"), "OfxBitDepthFloat");
}

TEST(OpenFxRegions, AskForTheWholeSourceAndEndWithIt) {
    Stage stage({}, name::kContextGeneral);
    stage.instance->clip("Source").definition = {-10.0, 5.0, 700.5, 300.0};
    PropertyBag in = stage.host.renderArguments({});
    in.put("OfxImageEffectPropRegionOfInterest", 0.0, 0.0, 10.0, 10.0);
    PropertyBag out = stage.host.arguments();
    ASSERT_EQ(stage.host.action(name::kGetRegionsOfInterest, stage.instance.get(), &in, &out), kOk);
    EXPECT_EQ(out.number("OfxImageClipPropRoI_Source", 0), -10.0);
    EXPECT_EQ(out.number("OfxImageClipPropRoI_Source", 2), 700.5);
    EXPECT_FALSE(out.has("OfxImageClipPropRoI_Mask")) << "it is not connected";
    stage.instance->clip("Mask").bag.put("OfxImageClipPropConnected", 1);
    ASSERT_EQ(stage.host.action(name::kGetRegionsOfInterest, stage.instance.get(), &in, &out), kOk);
    EXPECT_EQ(out.number("OfxImageClipPropRoI_Mask", 3), 480.0);
    ASSERT_EQ(stage.host.action(name::kGetRegionOfDefinition, stage.instance.get(), &in, &out), kOk);
    EXPECT_EQ(out.number("OfxImageEffectPropRegionOfDefinition", 1), 5.0);
    EXPECT_EQ(out.number("OfxImageEffectPropRegionOfDefinition", 3), 300.0);
}

TEST(OpenFxInstances, EightRenderAtOnceEachItsOwn) {
    TestHost host;
    ASSERT_TRUE(host.start());
    Reference reference;
    struct One {
        std::unique_ptr<TestEffect> effect;
        TestPicture source{{}, 1, 1};
        TestPicture output{{}, 1, 1};
    };
    std::vector<One> all(8);
    for (std::size_t i = 0; i < all.size(); ++i) {
        One& one = all[i];
        one.effect = host.makeInstance();
        ASSERT_EQ(host.create(*one.effect), kOk);
        chooseColours(*one.effect);
        one.effect->set("baseBlurAmount", {static_cast<double>(i * 3)});
        const PictureForm form = {.depth = kDepths[i % 3], .left = static_cast<int>(i)};
        const int width = 50 + 10 * static_cast<int>(i);
        one.source = drawn(form, width, 60);
        one.output = TestPicture(form, width, 60);
        one.effect->clip("Source").picture = &one.source;
        one.effect->clip("Output").picture = &one.output;
    }
    std::vector<std::thread> threads;
    for (One& one : all) {
        threads.emplace_back([&] {
            for (int round = 0; round < 4; ++round) {
                EXPECT_EQ(host.render(*one.effect, {.window = one.output.bounds()}), kOk);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (One& one : all) {
        EXPECT_TRUE(one.output.image() ==
                    reference.render(one.source.image(), reference.valuesOf(*one.effect)));
        EXPECT_EQ(host.destroy(*one.effect), kOk);
    }
    EXPECT_EQ(host.unload(), kOk);
    EXPECT_EQ(host.faults(), Texts{});
}

TEST(OpenFxInstances, OneInstanceRendersSeveralFramesAtOnce) {
    Stage stage;
    chooseColours(*stage.instance);
    TestPicture source = drawn({}, 120, 80);
    TestPicture output({}, 120, 80);
    ASSERT_EQ(stage.render(&source, output), kOk);
    const host::Image expected = output.image();
    std::vector<std::thread> threads;
    const RectI bounds = output.bounds();
    for (int i = 0; i < 4; ++i) {
        // Windows that share no pixel, as a host that tiles all the same would have them.
        threads.emplace_back([&stage, bounds, i] {
            for (int round = 0; round < 3; ++round) {
                EXPECT_EQ(stage.host.render(*stage.instance,
                                            {.window = {bounds.x1, i * 20, bounds.x2, i * 20 + 20}}),
                          kOk);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(output.image() == expected);
}

/// A host's parameters need not bear several threads at once.
TEST(OpenFxInstances, ReadTheHostsParametersForOneFrameAfterTheOther) {
    Stage stage({.readsSlowly = true});
    TestPicture source = drawn({}, 8, 8);
    TestPicture output({}, 8, 8);
    stage.instance->clip("Source").picture = &source;
    stage.instance->clip("Output").picture = &output;
    constexpr int kThreads = 4;
    constexpr int kRounds = 5;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            PropertyBag in = stage.host.renderArguments({.window = {0, 0, 8, 8}});
            PropertyBag out = stage.host.arguments();
            for (int round = 0; round < kRounds; ++round) {
                stage.host.action(name::kIsIdentity, stage.instance.get(), &in, &out);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::vector<std::thread::id>& readers = stage.host.readers();
    constexpr std::size_t kReadOuts = kThreads * kRounds;
    const std::size_t values = readers.size() / kReadOuts;
    ASSERT_EQ(readers.size(), values * kReadOuts);
    ASSERT_GT(values, 40U);
    for (std::size_t i = 0; i < readers.size(); ++i) {
        ASSERT_EQ(readers[i], readers[i - i % values])
            << "value " << i % values << " of frame " << i / values;
    }
}

TEST(OpenFxInstances, WithoutAParameterTheyAreRefusedByItsName) {
    TestHost host;
    ASSERT_TRUE(host.start());
    const auto instance = host.makeInstance();
    instance->params.pop_back();
    EXPECT_EQ(host.create(*instance), kFailed);
    EXPECT_EQ(host.takeMessages(), Texts{"OfxMessageError: the host has no parameter pixelValues"});
    EXPECT_EQ(host.unload(), kOk);
}

TEST(OpenFxInstances, ThatWereNotCreatedAreRefused) {
    TestHost host;
    ASSERT_TRUE(host.start());
    const auto instance = host.makeInstance();
    EXPECT_EQ(host.render(*instance, {}), kBadHandle);
    EXPECT_EQ(host.action(name::kRender, instance.get()), kBadHandle);
    EXPECT_EQ(host.destroy(*instance), kBadHandle);
    EXPECT_EQ(host.faults(), Texts{});
}

} // namespace
} // namespace kovalune::test
