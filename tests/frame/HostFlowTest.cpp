// The effect's roads to a frame in the reference host, with its audit on.

#include "host/Session.h"
#include "host/judge/JudgedHost.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <random>

namespace kovalune::test {
using namespace host;
namespace {

judge::JudgeOptions watchful() {
    judge::JudgeOptions options;
    options.audit = true;
    options.recordCalls = true;
    options.rowPadding = 12;
    return options;
}

/// The effect in a host of its own.
struct Scene {
    explicit Scene(const judge::JudgeOptions& options = watchful())
        : host(options), module(EffectModule::linked(EntryPointFunc, SetDown::kNever)),
          session(host, module) {
        EXPECT_TRUE(session.setupResult().ok());
        host.clearCalls();
    }
    void set(const char* label, ParamValue value) { session.setValue(*session.findParam(label), value); }
    int callsOf(const std::string& name) const {
        int count = 0;
        for (const judge::CallRecord& record : host.calls()) {
            count += record.call == name ? 1 : 0;
        }
        return count;
    }
    void expectCleanButForParameters() {
        const judge::AuditReport report = host.audit();
        EXPECT_EQ(report.liveHandles, 0);
        EXPECT_EQ(report.liveLocks, 0);
        EXPECT_EQ(report.liveSuites, 0);
        EXPECT_EQ(report.liveWorlds, 0);
        EXPECT_TRUE(report.misuse.empty()) << report.text();
        EXPECT_TRUE(report.guardDamage.empty()) << report.text();
    }

    judge::JudgedHost host;
    EffectModule module;
    Session session;
};

/// Bytes that differ everywhere; as floats they are what they are.
Image noise(PF_PixelFormat format, A_long width, A_long height, unsigned seed) {
    Image image(format, width, height);
    std::mt19937 random(seed);
    for (A_long y = 0; y < height; ++y) {
        for (std::size_t i = 0; i < image.rowBytes(); ++i) {
            // Below 0x40 in every byte: white is not passed in any format, and no float is odd.
            image.row(y)[i] = static_cast<std::byte>(random() & 0x3fU);
        }
    }
    return image;
}

struct FormatCase {
    PF_PixelFormat format;
    int worlds; // scratch worlds of the driver
};

constexpr FormatCase kFormats[] = {
    {PF_PixelFormat_ARGB32, 12}, {PF_PixelFormat_ARGB64, 9}, {PF_PixelFormat_ARGB128, 9}};

TEST(HostFlow, RendersEveryFormatWithItsOwnDriverOnBothRoads) {
    for (const FormatCase& each : kFormats) {
        for (const RenderFlow flow : {RenderFlow::kSmart, RenderFlow::kLegacy}) {
            Scene scene;
            scene.set("Enable 1", A_long{0}); // no colour is left to match
            const Image input = noise(each.format, 13, 9, 3);
            Image output;
            RenderRequest request;
            request.flow = flow;
            const RenderResult result = scene.session.render(input, output, request);
            EXPECT_EQ(result.code, 0) << result.returnMsg;
            EXPECT_TRUE(result.rendered);
            EXPECT_TRUE(output == input) << each.format;
            EXPECT_EQ(scene.callsOf("PF_NewWorld"), each.worlds);
            EXPECT_EQ(scene.callsOf("PF_DisposeWorld"), each.worlds);
            scene.expectCleanButForParameters();
        }
    }
}

TEST(HostFlow, GivesItsParametersBackOnTheOldRoadAlone) {
    Scene scene;
    const Image input = noise(PF_PixelFormat_ARGB32, 5, 4, 1);
    Image output;
    RenderRequest request;
    request.flow = RenderFlow::kLegacy;
    EXPECT_EQ(scene.session.render(input, output, request).code, 0);
    EXPECT_EQ(scene.callsOf("checkout_param"), 47);
    EXPECT_EQ(scene.callsOf("checkin_param"), 47);
    EXPECT_TRUE(scene.host.audit().clean()) << scene.host.audit().text();
    request.flow = RenderFlow::kSmart;
    scene.host.clearCalls();
    EXPECT_EQ(scene.session.render(input, output, request).code, 0);
    EXPECT_EQ(scene.callsOf("checkout_param"), 47);
    EXPECT_EQ(scene.callsOf("checkin_param"), 0);
    EXPECT_EQ(scene.host.audit().paramCheckouts, 47);
}

TEST(HostFlow, CopiesTheInputExactlyForTheOneHostThatWantsNoWork) {
    for (const FormatCase& each : kFormats) {
        judge::JudgeOptions options = watchful();
        options.applId = PF_AppID_PrMr;
        Scene scene(options);
        scene.set("View", A_long{3});
        scene.set("Color 1 Range", 100.0);
        const Image input = noise(each.format, 13, 9, 4);
        Image output;
        RenderRequest request;
        request.flow = RenderFlow::kLegacy;
        EXPECT_EQ(scene.session.render(input, output, request).code, 0);
        EXPECT_TRUE(output == input);
        EXPECT_EQ(scene.callsOf("checkout_param"), 0);
    }
}

TEST(HostFlow, LeavesTheOutputAsItWasForAnUnknownFormat) {
    for (const RenderFlow flow : {RenderFlow::kSmart, RenderFlow::kLegacy}) {
        judge::JudgeOptions options = watchful();
        options.forcePixelFormat = 0x30326561;
        Scene scene(options);
        const Image before = noise(PF_PixelFormat_ARGB32, 7, 7, 5);
        Image output = before;
        RenderRequest request;
        request.flow = flow;
        const RenderResult result =
            scene.session.render(noise(PF_PixelFormat_ARGB32, 7, 7, 6), output, request);
        EXPECT_EQ(result.code, 514);
        EXPECT_TRUE(output == before);
        scene.expectCleanButForParameters();
    }
}

TEST(HostFlow, RequestsNoMarginAroundTheOutput) {
    Scene scene;
    scene.set("Blur Amount", 1000.0);
    const Image input = noise(PF_PixelFormat_ARGB32, 200, 150, 7);
    Image output;
    RenderRequest request;
    request.rect = PF_LRect{20, 10, 120, 110};
    const RenderResult result = scene.session.render(input, output, request);
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.layerRequest.left, 20);
    EXPECT_EQ(result.layerRequest.top, 10);
    EXPECT_EQ(result.layerRequest.right, 120);
    EXPECT_EQ(result.layerRequest.bottom, 110);
    EXPECT_EQ(result.resultRect.right - result.resultRect.left, 100);
    EXPECT_EQ(result.resultRect.bottom - result.resultRect.top, 100);
}

TEST(HostFlow, ReadsAnimatedParametersAtTheTimeOfTheFrame) {
    for (const RenderFlow flow : {RenderFlow::kSmart, RenderFlow::kLegacy}) {
        Scene scene;
        const int view = *scene.session.findParam("View");
        scene.set("Enable 1", A_long{0});
        scene.session.setKey(view, 0, A_long{1});
        scene.session.setKey(view, 10, A_long{3}); // "Extract" shows nothing where no colour matches
        Image input(PF_PixelFormat_ARGB32, 4, 4);
        for (A_long y = 0; y < 4; ++y) {
            for (A_long x = 0; x < 4; ++x) {
                input.at<PF_Pixel>(x, y) = {255, 9, 9, 9};
            }
        }
        RenderRequest request;
        request.flow = flow;
        for (const A_long time : {0, 9, 10, 30}) {
            request.time = time;
            Image output;
            EXPECT_EQ(scene.session.render(input, output, request).code, 0);
            EXPECT_EQ(output.at<PF_Pixel>(1, 1).alpha, time < 10 ? 255 : 0) << time;
        }
    }
}

TEST(HostFlow, GreysOutWhatTheSettingsMakeMeaningless) {
    judge::JudgeOptions options = watchful();
    options.firstLayerWord = 1;
    Scene scene(options);
    scene.set("2 : Enable Process", A_long{1});
    EXPECT_EQ(scene.session.updateParamsUI().code, 0);
    const auto enabled = [&](const char* label) {
        return scene.session.enabled(*scene.session.findParam(label));
    };
    EXPECT_TRUE(enabled("2 : Keep Process"));
    EXPECT_FALSE(enabled("3 : Keep Process"));
    EXPECT_FALSE(enabled("Color 2"));
    EXPECT_TRUE(enabled("Enable 2"));
    scene.set("1 : Enable Process", A_long{0});
    EXPECT_EQ(scene.session.updateParamsUI().code, 0);
    EXPECT_FALSE(enabled("2 : Keep Process"));
    EXPECT_TRUE(scene.host.audit().clean()) << scene.host.audit().text();
}

TEST(HostFlow, ReportsAMissingSuiteWithItsMessage) {
    Scene scene;
    scene.host.options().withheldSuites = {{"PF World Transform Suite", 1}};
    Image output;
    const RenderResult result = scene.session.render(noise(PF_PixelFormat_ARGB32, 5, 5, 2), output);
    EXPECT_EQ(result.code, 516);
    EXPECT_EQ(result.returnMsg, "error code = 516\nPF_Err_BAD_CALLBACK_PARAM");
    scene.expectCleanButForParameters();
}

TEST(HostFlow, LetsTheExceptionOfAMissingBasicSuiteOut) {
    Scene scene;
    scene.host.options().nullBasicSuite = true;
    EXPECT_TRUE(scene.session.run(PF_Cmd_ABOUT).threw);
    scene.host.options().nullBasicSuite = false;
    EXPECT_FALSE(scene.session.run(PF_Cmd_ABOUT).threw);
}

} // namespace
} // namespace kovalune::test
