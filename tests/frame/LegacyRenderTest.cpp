// PF_Cmd_RENDER up to the frame, which a probe stands in for.

#include "effect/frame/CustomFilter.h"
#include "tests/frame/ProbeFilter.h"
#include "tests/frame/StubHost.h"
#include "tests/params/RegisteredTable.h"

#include <cstring>
#include <gtest/gtest.h>
#include <stdexcept>

namespace kovalune::test {
namespace {

constexpr int kValues = 47; // parameters that hold a value

/// A host with the effect's parameters, an input layer and an output world.
struct LegacyHost : StubHost {
    LegacyHost() {
        EXPECT_EQ(registerTable(*this, nullptr), 0);
        calls.clear();
        callTexts.clear();
        params[0].u.ld.width = 6;
        params[0].u.ld.height = 4;
        output.width = 6;
        output.height = 4;
    }
    PF_Err render(BaseFilter& filter) { return filter.render(&in, &out, paramArray(), &output); }

    PF_EffectWorld output = {};
};

/// Fails calls by name; several may fail.
void failCalls(StubHost& host, const std::map<std::string, PF_Err>& codes) {
    host.fault = [codes](const std::string& call, int) {
        const auto found = codes.find(call);
        return found != codes.end() ? found->second : PF_Err{0};
    };
}

TEST(LegacyRender, FillsTheRecord) {
    LegacyHost host;
    host.reportedFormat = PF_PixelFormat_ARGB64;
    host.in.extent_hint.top = -3;
    host.in.extent_hint.left = 9;
    host.in.extent_hint.bottom = 1;
    host.in.extent_hint.right = 2;
    host.params[4].u.sd.value = 8;
    ProbeFilter filter;
    EXPECT_EQ(host.render(filter), 0);
    ASSERT_EQ(filter.frames.size(), 1U);
    const RenderSettings& record = filter.frames[0];
    EXPECT_EQ(record.inData, &host.in);
    EXPECT_EQ(record.outData, &host.out);
    EXPECT_EQ(record.inputWorld, &host.params[0].u.ld);
    EXPECT_EQ(record.outputWorld, &host.output);
    EXPECT_EQ(record.pixelFormat, PF_PixelFormat_ARGB64);
    EXPECT_EQ(record.fromPreRender, 0);
    EXPECT_EQ(record.extentRect.top, -3);
    EXPECT_EQ(record.extentRect.left, 9);
    EXPECT_EQ(record.extentRect.bottom, 1);
    EXPECT_EQ(record.extentRect.right, 2);
    EXPECT_EQ(record.originRect.top, 0);
    EXPECT_EQ(record.originRect.left, 0);
    EXPECT_EQ(record.originRect.bottom, 0);
    EXPECT_EQ(record.originRect.right, 0);
    EXPECT_EQ(record.stages[0].repeat, 8);
    EXPECT_EQ(record.stages[0].blurAmount, 10.0);
    EXPECT_EQ(record.boundaryScale, 1.5);
    EXPECT_EQ(filter.preparations, 0);
}

#ifdef KOVALUNE_HOST_LONG_RECTS
/// Cut to 16 bits it could be any rectangle, an empty one or the whole world too.
TEST(LegacyRender, TakesACornerOutside16BitsForARectangleThatEveryFrameRefuses) {
    for (const A_long far : {32768, 65536, 65536 + 3, -32769, -65536}) {
        for (A_long PF_Rect::*const corner :
             {&PF_Rect::top, &PF_Rect::left, &PF_Rect::bottom, &PF_Rect::right}) {
            LegacyHost host;
            host.in.extent_hint.bottom = 4;
            host.in.extent_hint.right = 6;
            host.in.extent_hint.*corner = far;
            ProbeFilter filter;
            filter.onFrame = [](RenderSettings&) { return PF_Err{PF_Err_BAD_CALLBACK_PARAM}; };
            EXPECT_EQ(host.render(filter), PF_Err_BAD_CALLBACK_PARAM);
            ASSERT_EQ(filter.frames.size(), 1U);
            EXPECT_EQ(filter.frames[0].extentRect.width(), -1);
            EXPECT_EQ(filter.frames[0].extentRect.height(), -1);
            EXPECT_EQ(host.count("checkin_param"), kValues) << "values are given back";
        }
    }
}
#endif

TEST(LegacyRender, AsksForTheFormatThenReadsRendersAndGivesBack) {
    LegacyHost host;
    ProbeFilter filter;
    int checkedOutBefore = 0;
    int checkedInBefore = 0;
    filter.onFrame = [&](RenderSettings&) {
        checkedOutBefore = host.count("checkout_param");
        checkedInBefore = host.count("checkin_param");
        return PF_Err{0};
    };
    EXPECT_EQ(host.render(filter), 0);
    EXPECT_EQ(host.callTexts[0], "AcquireSuite PF World Suite 2");
    EXPECT_EQ(host.callTexts[1], "PF_GetPixelFormat");
    EXPECT_EQ(host.callTexts[3], "checkout_param 1 70 7 24");
    EXPECT_EQ(checkedOutBefore, kValues);
    EXPECT_EQ(checkedInBefore, 0);
    EXPECT_EQ(host.count("checkin_param"), kValues);
}

TEST(LegacyRender, GoesByTheDeepFlagWithoutTheNewWorldSuite) {
    for (const PF_WorldFlags flags : {PF_WorldFlags{0}, PF_WorldFlags{PF_WorldFlag_DEEP}}) {
        LegacyHost host;
        host.missingSuites = {"PF World Suite 2"};
        host.params[0].u.ld.world_flags = flags;
        ProbeFilter filter;
        EXPECT_EQ(host.render(filter), 0);
        ASSERT_EQ(filter.frames.size(), 1U);
        EXPECT_EQ(filter.frames[0].pixelFormat, flags != 0 ? PF_PixelFormat_ARGB64 : PF_PixelFormat_ARGB32);
    }
}

TEST(LegacyRender, WithoutAFormatReadsAndRendersNothingButGivesBack) {
    LegacyHost host;
    failCalls(host, {{"PF_GetPixelFormat", 513}, {"checkin_param", 516}});
    ProbeFilter filter;
    EXPECT_EQ(host.render(filter), 513);
    EXPECT_EQ(host.count("checkout_param"), 0);
    EXPECT_TRUE(filter.frames.empty());
    EXPECT_EQ(host.count("checkin_param"), 1); // the loop runs, and stops at its first failure
}

TEST(LegacyRender, BehindAFailedReadRendersNothingButGivesAllBack) {
    LegacyHost host;
    host.fault = [](const std::string& call, int nth) {
        return call == "checkout_param" && nth == 9 ? PF_Err{517} : PF_Err{0};
    };
    ProbeFilter filter;
    EXPECT_EQ(host.render(filter), 517);
    EXPECT_EQ(host.count("checkout_param"), 9);
    EXPECT_TRUE(filter.frames.empty());
    EXPECT_EQ(host.count("checkin_param"), kValues);
}

TEST(LegacyRender, ReturnsTheFirstErrorOfItsSteps) {
    struct Case {
        std::map<std::string, PF_Err> codes;
        PF_Err frame;
        PF_Err expected;
    };
    const Case cases[] = {
        {{}, 0, 0},
        {{}, 514, 514},
        {{{"checkin_param", 516}}, 0, 516},
        {{{"checkin_param", 516}}, 514, 514},
        {{{"checkin_param", 516}, {"checkout_param", 517}}, 514, 517},
        {{{"checkin_param", 516}, {"checkout_param", 517}, {"PF_GetPixelFormat", 4}}, 514, 4},
    };
    for (const Case& each : cases) {
        LegacyHost host;
        failCalls(host, each.codes);
        ProbeFilter filter;
        filter.onFrame = [&each](RenderSettings&) { return each.frame; };
        EXPECT_EQ(host.render(filter), each.expected);
    }
}

TEST(LegacyRender, GivesBackWhenAnExceptionPasses) {
    LegacyHost host;
    ProbeFilter filter;
    filter.onFrame = [](RenderSettings&) -> PF_Err { throw std::runtime_error("any"); };
    EXPECT_THROW(host.render(filter), std::runtime_error);
    EXPECT_EQ(host.count("checkin_param"), kValues);
}

TEST(LegacyRender, LetsAnExceptionOfTheGiveBackOut) {
    LegacyHost host;
    host.fault = [](const std::string& call, int) -> PF_Err {
        if (call == "checkin_param") {
            throw 516L;
        }
        return 0;
    };
    ProbeFilter filter;
    EXPECT_THROW(host.render(filter), long);
    EXPECT_EQ(filter.frames.size(), 1U);
}

TEST(LegacyRender, CopiesTheLayerForTheOneHostThatWantsNoWork) {
    for (const PF_Err code : {0, 513}) {
        LegacyHost host;
        host.in.appl_id = PF_AppID_PrMr;
        host.failAll("utils.copy", code);
        ProbeFilter filter;
        EXPECT_EQ(host.render(filter), code);
        EXPECT_EQ(host.callTexts, std::vector<std::string>{"utils.copy"});
        EXPECT_EQ(host.worldCalls.at(0).source, &host.params[0].u.ld);
        EXPECT_EQ(host.worldCalls.at(0).target, &host.output);
        EXPECT_TRUE(host.worldCalls.at(0).wholeWorld);
        EXPECT_TRUE(filter.frames.empty());
    }
}

TEST(LegacyRender, RefusesAnUnknownFormatAndLeavesTheOutput) {
    for (const PF_PixelFormat format :
         {PF_PixelFormat{PF_PixelFormat_INVALID}, PF_PixelFormat{0}, 0x30326561}) {
        LegacyHost host;
        host.reportedFormat = format;
        const PF_EffectWorld before = host.output;
        CustomFilter filter;
        EXPECT_EQ(host.render(filter), 514);
        EXPECT_TRUE(host.worldCalls.empty());
        EXPECT_EQ(std::memcmp(&host.output, &before, sizeof before), 0);
        EXPECT_EQ(host.count("checkin_param"), kValues);
    }
}

TEST(CustomFilter, RefusesAFormatNotYetKnown) {
    CustomFilter filter;
    RenderSettings settings;
    EXPECT_EQ(filter.renderFrame(settings), 514);
}

} // namespace
} // namespace kovalune::test
