// What the plug-in says of itself. Each test names what hosts have been seen to stumble over.

#include "tests/adapters/openfx/Reference.h"

#include <gtest/gtest.h>

namespace kovalune::test {

using namespace openfx;

namespace {

using Texts = std::vector<std::string>;

TEST(OpenFxDescription, HasTheMandatoryPropertiesAndTellsThreadsAndTiles) {
    TestHost host;
    ASSERT_TRUE(host.start());
    PropertyBag& bag = host.descriptor().bag;
    EXPECT_EQ(bag.texts("OfxImageEffectPropSupportedContexts"),
              (Texts{"OfxImageEffectContextFilter", "OfxImageEffectContextGeneral"}));
    EXPECT_EQ(bag.texts("OfxImageEffectPropSupportedPixelDepths"),
              (Texts{"OfxBitDepthByte", "OfxBitDepthShort", "OfxBitDepthFloat"}));
    EXPECT_EQ(bag.text("OfxPropLabel"), "Kovalune");
    EXPECT_FALSE(bag.text("OfxImageEffectPluginPropGrouping").empty());
    EXPECT_EQ(bag.text("OfxImageEffectPluginRenderThreadSafety"), "OfxImageEffectRenderFullySafe");
    EXPECT_EQ(bag.integer("OfxImageEffectPluginPropHostFrameThreading"), 0);
    EXPECT_EQ(bag.integer("OfxImageEffectPropSupportsTiles"), 0);
    EXPECT_EQ(bag.integer("OfxImageEffectPropTemporalClipAccess"), 0);
    EXPECT_EQ(bag.texts("OfxImageEffectPropClipPreferencesSlaveParam"), Texts{"view"});
    EXPECT_EQ(host.faults(), Texts{});
}

TEST(OpenFxDescription, TilesAreOffOnTheClipsToo) {
    TestHost host;
    ASSERT_TRUE(host.start(name::kContextGeneral));
    TestEffect& described = host.descriptorIn(name::kContextGeneral);
    ASSERT_EQ(described.clips.size(), 3U);
    for (TestClip& clip : described.clips) {
        EXPECT_EQ(clip.bag.integer("OfxImageEffectPropSupportsTiles"), 0) << clip.name;
    }
}

TEST(OpenFxDescription, ClipsAreThoseOfTheContext) {
    TestHost host;
    ASSERT_TRUE(host.start());
    ASSERT_EQ(host.describeInContext(name::kContextGeneral), kOk);
    TestEffect& filter = host.descriptorIn(name::kContextFilter);
    ASSERT_EQ(filter.clips.size(), 2U);
    for (const char* const clip : {"Source", "Output"}) {
        EXPECT_EQ(filter.clip(clip).bag.texts("OfxImageEffectPropSupportedComponents"),
                  (Texts{"OfxImageComponentRGBA", "OfxImageComponentRGB"}));
    }
    PropertyBag& mask = host.descriptorIn(name::kContextGeneral).clip("Mask").bag;
    EXPECT_EQ(mask.texts("OfxImageEffectPropSupportedComponents"), Texts{"OfxImageComponentAlpha"});
    EXPECT_EQ(mask.integer("OfxImageClipPropOptional"), 1);
    EXPECT_EQ(mask.integer("OfxImageClipPropIsMask"), 1);
    EXPECT_EQ(host.faults(), Texts{});
}

TEST(OpenFxDescription, RgbIsOfferedWhereTheHostHasIt) {
    TestHost host({.hasRgb = false});
    ASSERT_TRUE(host.start());
    EXPECT_EQ(host.descriptorIn(name::kContextFilter)
                  .clip("Source")
                  .bag.texts("OfxImageEffectPropSupportedComponents"),
              Texts{"OfxImageComponentRGBA"});
}

TEST(OpenFxDescription, WithoutAContextInTheArgumentsItIsTheFilters) {
    TestHost host;
    ASSERT_EQ(host.load(), kOk);
    ASSERT_EQ(host.describe(), kOk);
    TestEffect described("descriptor", effectProperties());
    EXPECT_EQ(host.action(name::kDescribeInContext, &described), kOk);
    EXPECT_EQ(described.clips.size(), 2U);
}

TEST(OpenFxParameters, EveryNumberHasAllFourLimits) {
    TestHost host;
    ASSERT_TRUE(host.start());
    int numbers = 0;
    for (TestParam& param : host.descriptorIn(name::kContextFilter).params) {
        if (param.type != name::kTypeDouble && param.type != name::kTypeInteger &&
            param.type != name::kTypeRgb) {
            continue;
        }
        ++numbers;
        for (const char* const limit : {name::kMin, name::kMax, name::kDisplayMin, name::kDisplayMax}) {
            EXPECT_EQ(param.bag.values(limit).size(), param.type == name::kTypeRgb ? 3U : 1U)
                << param.name << ' ' << limit;
        }
        EXPECT_EQ(param.bag.integer(name::kAnimates), 1) << param.name;
    }
    EXPECT_EQ(numbers, 30);
    PropertyBag& amount = host.descriptorIn(name::kContextFilter).param("baseBlurAmount").bag;
    EXPECT_EQ(amount.number(name::kMax), 1000.0);
    EXPECT_EQ(amount.number(name::kDisplayMax), 100.0);
    EXPECT_EQ(amount.number(name::kDefault), 10.0);
    PropertyBag& repeat = host.descriptorIn(name::kContextFilter).param("process4BlurRepeatNum").bag;
    EXPECT_EQ(repeat.integer(name::kMin), 1);
    EXPECT_EQ(repeat.integer(name::kDisplayMax), 10);
}

TEST(OpenFxParameters, AreInTheirGroupsWithAHintEach) {
    TestHost host;
    ASSERT_TRUE(host.start());
    for (TestParam& param : host.descriptorIn(name::kContextFilter).params) {
        EXPECT_TRUE(param.bag.text(name::kHint).ends_with('.')) << param.name;
        const bool isAlone =
            param.name == "view" || param.name == "pixelValues" || param.type == name::kTypeGroup;
        EXPECT_EQ(param.bag.has(name::kParent), !isAlone) << param.name;
        if (!isAlone) {
            EXPECT_TRUE(param.name.starts_with(param.bag.text(name::kParent))) << param.name;
        }
    }
}

TEST(OpenFxParameters, ChoicesAreWithoutTheSeparatorAndDoNotAnimate) {
    TestHost host;
    ASSERT_TRUE(host.start());
    PropertyBag& view = host.descriptorIn(name::kContextFilter).param("view").bag;
    EXPECT_EQ(view.texts(name::kChoiceOption),
              (Texts{"Normal", "Extract", "Base", "Process 1", "Process 2", "Process 3", "Process 4"}));
    EXPECT_EQ(view.integer(name::kDefault), 0);
    EXPECT_EQ(view.integer(name::kAnimates), 0);
    EXPECT_EQ(host.descriptorIn(name::kContextFilter).param("pixelValues").bag.texts(name::kChoiceOption),
              (Texts{"As they are", "Linear light"}));
}

TEST(OpenFxParameters, CheckBoxesAnimateWhereTheHostLetsThem) {
    for (const bool animate : {false, true}) {
        TestHost host({.booleansAnimate = animate});
        ASSERT_TRUE(host.start());
        EXPECT_EQ(host.descriptorIn(name::kContextFilter).param("baseEnable1").bag.integer(name::kAnimates),
                  animate ? 1 : 0);
    }
}

TEST(OpenFxParameters, DefaultsAreTheFactorys) {
    TestHost host;
    ASSERT_TRUE(host.start());
    const Reference reference;
    TestEffect& described = host.descriptorIn(name::kContextFilter);
    for (const Control& control : reference.controls()) {
        if (const auto* const color = std::get_if<PF_Pixel>(&control.initial)) {
            EXPECT_EQ(described.param(control.name).bag.number(name::kDefault, 1), color->green / 255.0);
        } else if (control.kind == Control::Kind::kNumber) {
            EXPECT_EQ(described.param(control.name).bag.number(name::kDefault),
                      std::get<double>(control.initial));
        }
    }
}

/// Some hosts keep such a control so for ever: it is done when an instance is there.
TEST(OpenFxHabits, NothingIsSecretOrGreyInTheDescriptor) {
    TestHost host;
    ASSERT_TRUE(host.start(name::kContextGeneral));
    for (TestParam& param : host.descriptorIn(name::kContextGeneral).params) {
        EXPECT_FALSE(param.bag.has("OfxParamPropSecret") && param.bag.integer("OfxParamPropSecret") != 0);
        EXPECT_FALSE(param.bag.has("OfxParamPropEnabled") && param.bag.integer("OfxParamPropEnabled") == 0);
    }
}

TEST(OpenFxHabits, TheHostsTypeMayBeAnOldWord) {
    TestHost host({.type = "Host"});
    EXPECT_TRUE(host.start());
    EXPECT_EQ(host.faults(), Texts{});
}

TEST(OpenFxHabits, PropertiesNewerThanTheFirstInterfaceMayBeMissing) {
    TestHost host(
        {.lacking = {"OfxPropPluginDescription", "OfxPropVersionLabel", "OfxPropLongLabel",
                     "OfxPropShortLabel", "OfxImageClipPropIsMask", "OfxParamPropDigits",
                     "OfxParamPropIncrement", "OfxImageEffectPluginPropSingleInstance",
                     "OfxImageEffectPropSupportedComponents!", "OfxImageEffectPropTemporalClipAccess",
                     "OfxImageEffectPropClipPreferencesSlaveParam", "OfxParamPropAnimates"}});
    EXPECT_TRUE(host.start(name::kContextGeneral));
    EXPECT_EQ(host.faults(), Texts{});
}

TEST(OpenFxHabits, AMandatoryPropertyThatIsRefusedIsTold) {
    TestHost host({.lacking = {"OfxImageEffectPropSupportedPixelDepths"}});
    ASSERT_EQ(host.load(), kOk);
    EXPECT_EQ(host.describe(), kFailed);
    const Texts messages = host.takeMessages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_NE(messages[0].find("OfxImageEffectPropSupportedPixelDepths"), std::string::npos) << messages[0];
}

TEST(OpenFxHabits, LoadAndDescribeAnswerWith0AndMayComeAgain) {
    TestHost host;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(host.load(), kOk);
        EXPECT_EQ(host.describe(), kOk);
        EXPECT_EQ(host.describeInContext(name::kContextFilter), kOk);
    }
    EXPECT_EQ(host.unload(), kOk);
    EXPECT_EQ(host.describe(), kFailed) << "nothing is loaded";
    EXPECT_TRUE(host.start());
    EXPECT_EQ(host.faults(), Texts{});
}

TEST(OpenFxHabits, SetHostLoadAndDescribeComeFromSeveralThreadsWithOneUnload) {
    TestHost host;
    ASSERT_TRUE(host.start());
    std::atomic<int> failed = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            TestEffect described("descriptor of a thread", effectProperties());
            for (int round = 0; round < 5; ++round) {
                host.plugin().setHost(host.record());
                failed += host.load() != kOk || host.action(name::kDescribe, &described) != kOk ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failed, 0);
    EXPECT_EQ(host.unload(), kOk);
    EXPECT_EQ(host.faults(), Texts{});
}

TEST(OpenFxHabits, UnknownActionsAreLeftToTheHost) {
    TestHost host;
    ASSERT_TRUE(host.start());
    const auto instance = host.makeInstance();
    ASSERT_EQ(host.create(*instance), kOk);
    for (const char* const action : {"OfxActionOfTheFuture", "OfxImageEffectActionGetTimeDomain",
                                     "OfxImageEffectActionGetFramesNeeded", "OfxActionBeginInstanceEdit"}) {
        EXPECT_EQ(host.action(action, instance.get()), kReplyDefault) << action;
    }
    EXPECT_EQ(host.action(name::kRender, nullptr), kBadHandle);
    EXPECT_EQ(host.destroy(*instance), kOk);
}

} // namespace
} // namespace kovalune::test
