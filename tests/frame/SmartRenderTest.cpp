// PF_Cmd_SMART_RENDER up to the frame, which a probe stands in for.

#include "effect/frame/CustomFilter.h"
#include "hostapi/EntryPoint.h"
#include "tests/frame/ProbeFilter.h"
#include "tests/frame/StubHost.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <new>
#include <stdexcept>

namespace kovalune::test {
namespace {

using Texts = std::vector<std::string>;

/// A host that holds a record from an earlier pre-render, and two worlds.
struct SmartHost : StubHost {
    SmartHost() {
        handle = utils.host_new_handle(sizeof(RenderSettings));
        auto* const record = new (memoryOf(handle)) RenderSettings();
        record->fromPreRender = 1;
        record->stages[0].repeat = 6;
        record->inData = nullptr;
        source.width = 6;
        source.height = 4;
        target = source;
        inputWorld = &source;
        outputWorld = &target;
        input.pre_render_data = handle;
        calls.clear();
        callTexts.clear();
    }
    PF_Err send(BaseFilter& filter) {
        PF_SmartRenderExtra extra = {&input, &smartRender};
        return filter.smartRender(&in, &out, &extra);
    }

    PF_Handle handle;
    PF_EffectWorld source = {};
    PF_EffectWorld target = {};
    PF_SmartRenderInput input = {};
};

void failCalls(StubHost& host, const std::map<std::string, PF_Err>& codes) {
    host.fault = [codes](const std::string& call, int) {
        const auto found = codes.find(call);
        return found != codes.end() ? found->second : PF_Err{0};
    };
}

void expectRect(const FrameRect& rect, int top, int left, int bottom, int right) {
    EXPECT_EQ(rect.top, top);
    EXPECT_EQ(rect.left, left);
    EXPECT_EQ(rect.bottom, bottom);
    EXPECT_EQ(rect.right, right);
}

TEST(SmartRender, FillsTheRecordOfThePreRender) {
    SmartHost host;
    host.reportedFormat = PF_PixelFormat_ARGB128;
    host.source.origin_x = -7;
    host.source.origin_y = 30;
    ProbeFilter filter;
    EXPECT_EQ(host.send(filter), 0);
    ASSERT_EQ(filter.frames.size(), 1U);
    const RenderSettings& record = filter.frames[0];
    EXPECT_EQ(record.inData, &host.in);
    EXPECT_EQ(record.outData, &host.out);
    EXPECT_EQ(record.inputWorld, &host.source);
    EXPECT_EQ(record.outputWorld, &host.target);
    EXPECT_EQ(record.pixelFormat, PF_PixelFormat_ARGB128);
    EXPECT_EQ(record.fromPreRender, 1);
    EXPECT_EQ(record.stages[0].repeat, 6);
    expectRect(record.extentRect, 0, 0, 4, 6);
    expectRect(record.originRect, 30, -7, 34, -1);
    EXPECT_EQ(filter.preparations, 1);
}

TEST(SmartRender, MakesItsCallsInOrder) {
    SmartHost host;
    ProbeFilter filter;
    filter.onFrame = [&host](RenderSettings&) {
        host.callTexts.emplace_back("frame");
        return PF_Err{0};
    };
    EXPECT_EQ(host.send(filter), 0);
    EXPECT_EQ(host.callTexts,
              (Texts{"host_lock_handle", "checkout_layer_pixels 0", "checkout_output",
                     "AcquireSuite PF World Suite 2", "PF_GetPixelFormat", "ReleaseSuite PF World Suite 2",
                     "frame", "checkin_layer_pixels 0", "host_unlock_handle"}));
    EXPECT_TRUE(host.isLive(host.handle));
}

TEST(SmartRender, ReadsNoParameter) {
    SmartHost host;
    ProbeFilter filter;
    EXPECT_EQ(host.send(filter), 0);
    EXPECT_EQ(host.count("checkout_param"), 0);
    EXPECT_EQ(host.count("checkin_param"), 0);
}

TEST(SmartRender, NeedsTheHandle) {
    {
        SmartHost host;
        host.input.pre_render_data = nullptr;
        ProbeFilter filter;
        EXPECT_EQ(host.send(filter), 512);
        EXPECT_TRUE(host.calls.empty());
    }
    {
        SmartHost host;
        host.failAll("host_lock_handle", 4);
        ProbeFilter filter;
        EXPECT_EQ(host.send(filter), 512);
        EXPECT_EQ(host.calls, Texts{"host_lock_handle"});
        EXPECT_TRUE(host.isLive(host.handle));
    }
}

TEST(SmartRender, AsksForNoOutputWithoutInput) {
    SmartHost host;
    host.failAll("checkout_layer_pixels", 513);
    ProbeFilter filter;
    EXPECT_EQ(host.send(filter), 513);
    EXPECT_EQ(host.count("checkout_output"), 0);
    EXPECT_EQ(host.count("checkin_layer_pixels"), 0);
    EXPECT_TRUE(filter.frames.empty());
}

TEST(SmartRender, LeavesTheLayerCheckedOutWithoutOutput) {
    SmartHost host;
    host.failAll("checkout_output", 513);
    ProbeFilter filter;
    EXPECT_EQ(host.send(filter), 513);
    EXPECT_EQ(host.count("checkout_layer_pixels"), 1);
    EXPECT_EQ(host.count("checkin_layer_pixels"), 0);
    EXPECT_TRUE(filter.frames.empty());
}

TEST(SmartRender, SkipsTheFrameWhereAWorldIsMissingAndStillChecksIn) {
    for (const bool inputMissing : {true, false}) {
        SmartHost host;
        (inputMissing ? host.inputWorld : host.outputWorld) = nullptr;
        ProbeFilter filter;
        EXPECT_EQ(host.send(filter), 0);
        EXPECT_TRUE(filter.frames.empty());
        EXPECT_EQ(filter.preparations, 0);
        EXPECT_EQ(host.count("PF_GetPixelFormat"), 0);
        EXPECT_EQ(host.count("checkin_layer_pixels"), 1);
    }
}

TEST(SmartRender, TakesNoWorldOfAnEarlierFrameForThisOnes) {
    SmartHost host;
    auto* const record = static_cast<RenderSettings*>(host.memoryOf(host.handle));
    record->inputWorld = &host.source;
    record->outputWorld = &host.target;
    const auto giveOutput = host.smartRender.checkout_output;
    host.smartRender.checkout_output = [](PF_ProgPtr, PF_EffectWorld**) { return PF_Err{0}; };
    ProbeFilter filter;
    EXPECT_EQ(host.send(filter), 0);
    EXPECT_TRUE(filter.frames.empty());
    host.smartRender.checkout_layer_pixels = [](PF_ProgPtr, A_long, PF_EffectWorld**) { return PF_Err{0}; };
    host.smartRender.checkout_output = giveOutput;
    EXPECT_EQ(host.send(filter), 0);
    EXPECT_TRUE(filter.frames.empty());
}

TEST(SmartRender, ReturnsTheFirstErrorAndChecksInOnlyWithoutOne) {
    struct Case {
        std::map<std::string, PF_Err> codes;
        PF_Err before;
        PF_Err frame;
        PF_Err expected;
        int preparations;
        std::size_t frames;
        int checkins;
    };
    const Case cases[] = {
        {{{"PF_GetPixelFormat", 4}, {"checkin_layer_pixels", 513}}, 515, 514, 4, 0, 0, 0},
        {{{"checkin_layer_pixels", 513}}, 515, 514, 515, 1, 0, 0},
        {{{"checkin_layer_pixels", 513}}, 0, 514, 514, 1, 1, 0},
        {{{"checkin_layer_pixels", 513}}, 0, 0, 513, 1, 1, 1},
        {{}, 0, 0, 0, 1, 1, 1},
    };
    for (const Case& each : cases) {
        SmartHost host;
        failCalls(host, each.codes);
        ProbeFilter filter;
        filter.beforeCode = each.before;
        filter.onFrame = [&each](RenderSettings&) { return each.frame; };
        EXPECT_EQ(host.send(filter), each.expected);
        EXPECT_EQ(filter.preparations, each.preparations);
        EXPECT_EQ(filter.frames.size(), each.frames);
        EXPECT_EQ(host.count("checkin_layer_pixels"), each.checkins);
    }
}

TEST(SmartRender, UnlocksWhenAnExceptionPasses) {
    SmartHost host;
    ProbeFilter filter;
    filter.onFrame = [](RenderSettings&) -> PF_Err { throw std::runtime_error("any"); };
    EXPECT_THROW(host.send(filter), std::runtime_error);
    EXPECT_EQ(host.liveLocks(), 0);
    EXPECT_EQ(host.count("checkin_layer_pixels"), 0);
    EXPECT_TRUE(host.isLive(host.handle));
}

TEST(SmartRender, GoesByTheDeepFlagWithoutTheNewWorldSuite) {
    SmartHost host;
    host.missingSuites = {"PF World Suite 2"};
    host.source.world_flags = PF_WorldFlag_DEEP;
    ProbeFilter filter;
    EXPECT_EQ(host.send(filter), 0);
    ASSERT_EQ(filter.frames.size(), 1U);
    EXPECT_EQ(filter.frames[0].pixelFormat, PF_PixelFormat_ARGB64);
}

TEST(SmartRender, CutsTheRectanglesTo16Bits) {
    SmartHost host;
    host.source.width = 40000;
    host.source.height = 65536 + 3;
    host.source.origin_x = 65536 + 1;
    host.source.origin_y = 32767;
    ProbeFilter filter;
    EXPECT_EQ(host.send(filter), 0);
    ASSERT_EQ(filter.frames.size(), 1U);
    expectRect(filter.frames[0].extentRect, 0, 0, 3, 40000 - 65536);
    expectRect(filter.frames[0].originRect, 32767, 1, 32770 - 65536, 40001 - 65536);
}

TEST(SmartRender, CutsTheFarthestOriginsTo16Bits) {
    SmartHost host;
    host.source.origin_x = std::numeric_limits<A_long>::max();
    host.source.origin_y = std::numeric_limits<A_long>::min();
    ProbeFilter filter;
    EXPECT_EQ(host.send(filter), 0);
    ASSERT_EQ(filter.frames.size(), 1U);
    expectRect(filter.frames[0].originRect, 0, -1, 4, 5);
}

TEST(SmartRender, RefusesAnUnknownFormatAndLeavesTheLayerCheckedOut) {
    SmartHost host;
    host.reportedFormat = PF_PixelFormat_INVALID;
    CustomFilter filter;
    EXPECT_EQ(host.send(filter), 514);
    EXPECT_TRUE(host.worldCalls.empty());
    EXPECT_EQ(host.count("checkin_layer_pixels"), 0);
}

TEST(SmartRender, RefusesWorldsThatTheRectanglesCannotHold) {
    for (const PF_PixelFormat format :
         {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128}) {
        for (const bool wide : {true, false}) {
            SmartHost host;
            host.reportedFormat = format;
            (wide ? host.source.width : host.source.height) = 32768;
            host.target = host.source;
            CustomFilter filter;
            EXPECT_EQ(host.send(filter), 516);
            EXPECT_TRUE(host.worldCalls.empty());
        }
    }
}

TEST(SmartRender, OfAnEndedEffectFails) {
    SmartHost host;
    PF_SmartRenderExtra extra = {&host.input, &host.smartRender};
    const auto send = [&](PF_Cmd cmd, void* more) {
        return EntryPointFunc(cmd, &host.in, &host.out, host.paramArray(), nullptr, more);
    };
    EXPECT_EQ(send(PF_Cmd_GLOBAL_SETDOWN, nullptr), 0);
    EXPECT_EQ(send(PF_Cmd_SMART_RENDER, &extra), 512);
    EXPECT_EQ(host.count("checkin_layer_pixels"), 0);
    EXPECT_EQ(send(PF_Cmd_GLOBAL_SETDOWN, nullptr), 0);
    EXPECT_EQ(send(PF_Cmd_SMART_RENDER, &extra), 512);
    host.reportedFormat = PF_PixelFormat_INVALID; // nobody looks at the format any more
    EXPECT_EQ(send(PF_Cmd_SMART_RENDER, &extra), 512);
    EXPECT_EQ(host.liveLocks(), 0);
}

} // namespace
} // namespace kovalune::test
