// Hosts that lack a suite, a function of one, or fail a call: a status and words, never a crash, nothing left over, and no image
// that is half written.

#include "tests/adapters/openfx/Stage.h"

namespace kovalune::test {

using namespace openfx;

namespace {

using Texts = std::vector<std::string>;

TEST(OpenFxHabits, AnIndispensableSuiteThatIsMissingIsRefusedAtLoadByItsName) {
    for (const char* const suite : {"OfxPropertySuite", "OfxImageEffectSuite", "OfxParameterSuite"}) {
        TestHost host({.withheld = {std::string(suite) + '1'}});
        EXPECT_EQ(host.load(), kMissingHostFeature) << suite;
        EXPECT_EQ(host.takeMessages(),
                  Texts{std::string("OfxMessageError: Kovalune needs version 1 of the host's ") + suite});
        EXPECT_EQ(host.describe(), kFailed);
        EXPECT_EQ(host.faults(), Texts{});
    }
    TestHost silent({.withheld = {"OfxParameterSuite1", "OfxMessageSuite1"}});
    EXPECT_EQ(silent.load(), kMissingHostFeature);
}

TEST(OpenFxHabits, EveryOtherSuiteMayBeMissingOrHaveEmptySlots) {
    for (const TestHostOptions& options :
         {TestHostOptions{.withheld = {"OfxMultiThreadSuite1"}},
          TestHostOptions{.withheld = {"OfxMessageSuite1"}},
          TestHostOptions{.withheld = {"OfxMessageSuite2"}},
          TestHostOptions{.withheld = {"OfxMessageSuite1", "OfxMessageSuite2", "OfxMultiThreadSuite1"}},
          TestHostOptions{.emptySlots = {"OfxMessageSuite2"}},
          TestHostOptions{.emptySlots = {"OfxImageEffectSuite.abort"}}}) {
        Stage stage(options);
        chooseColours(*stage.instance);
        TestPicture source = drawn({}, 50, 40);
        TestPicture output({}, 50, 40);
        ASSERT_EQ(stage.render(&source, output), kOk);
        EXPECT_TRUE(output.image() == stage.expected(source));
        TestPicture half({.depth = "OfxBitDepthHalf"}, 50, 40);
        EXPECT_EQ(stage.render(&half, output), kFailed);
        const std::size_t shown = options.withheld.count("OfxMessageSuite1") == 0 ||
                                  options.withheld.count("OfxMessageSuite2") == 0;
        EXPECT_EQ(stage.host.takeMessages().size(), shown);
    }
}

/// All that a host does with one instance, with calls until one of its own fails; how many there were.
int playWithFailure(int failingCall, Status failure, host::Image* frame) {
    TestHost host({.cpus = 2, .failingCall = failingCall, .failure = failure});
    if (host.load() == kOk && host.describe() == kOk &&
        host.describeInContext(name::kContextGeneral) == kOk) {
        const auto instance = host.makeInstance(name::kContextGeneral);
        if (host.create(*instance) == kOk) {
            chooseColours(*instance);
            host.changed(*instance, "baseColor1");
            PropertyBag in = host.renderArguments({.window = {0, 0, 40, 30}});
            PropertyBag out = host.arguments();
            host.action(name::kGetClipPreferences, instance.get(), nullptr, &out);
            host.action(name::kGetRegionsOfInterest, instance.get(), &in, &out);
            host.action(name::kIsIdentity, instance.get(), &in, &out);
            TestPicture source = drawn({}, 40, 30);
            TestPicture output({}, 40, 30);
            instance->clip("Source").picture = &source;
            instance->clip("Output").picture = &output;
            const Status status = host.render(*instance, {.window = output.bounds()});
            EXPECT_TRUE(output.isGuardIntact());
            EXPECT_TRUE(source.isUntouched());
            if (status != kOk) {
                EXPECT_TRUE(output.isUntouched()) << failingCall;
            } else if (frame->empty()) {
                *frame = output.image();
            } else {
                // Only a call for an image may change the frame; without a source it is transparent.
                EXPECT_TRUE(output.image() == *frame ||
                            output.image() == host::Image(frame->format(), 40, 30))
                    << failingCall;
            }
            instance->clip("Source").picture = instance->clip("Output").picture = nullptr;
            const int before = host.calls();
            const Status destroyed = host.destroy(*instance);
            EXPECT_TRUE(destroyed == kOk || failingCall > before) << failingCall;
        }
    }
    const int calls = host.calls();
    EXPECT_EQ(host.imagesOut(), 0) << failingCall;
    EXPECT_EQ(host.faults(), Texts{}) << failingCall;
    EXPECT_EQ(host.unload(), kOk);
    return calls;
}

TEST(OpenFxFailures, OfEveryCallAreBorne) {
    host::Image frame;
    const int calls = playWithFailure(0, kOk, &frame);
    ASSERT_FALSE(frame.empty());
    EXPECT_GT(calls, 700);
#ifdef _WIN32
    constexpr int kStep = 23; // Wine takes ten times as long
#else
    constexpr int kStep = 1;
#endif
    for (int call = 1; call <= calls; call += kStep) {
        playWithFailure(call, call % 2 == 0 ? kFailed : kMemory, &frame);
        ASSERT_FALSE(testing::Test::HasFailure()) << "call " << call;
    }
}

} // namespace
} // namespace kovalune::test
