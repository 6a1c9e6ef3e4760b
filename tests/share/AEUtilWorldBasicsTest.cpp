#include "effect/share/AEUtil/HostVersion.h"
#include "effect/share/AEUtil/WorldBasics.h"
#include "effect/share/HostCode.h"
#include "tests/frame/StubHost.h"

#include <gtest/gtest.h>

namespace AEUtil {
namespace {

using kovalune::test::kFillMatteSuiteText;
using kovalune::test::StubHost;
using Texts = std::vector<std::string>;

TEST(QueryPixelFormat, AsksVersionTwo) {
    const PF_PixelFormat formats[] = {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128,
                                      12345};
    for (const PF_PixelFormat reported : formats) {
        StubHost host;
        host.reportedFormat = reported;
        const PF_EffectWorld world = {};
        PF_PixelFormat format = 0;
        EXPECT_EQ(queryPixelFormat(&host.in, &world, &format), 0);
        EXPECT_EQ(format, reported);
        EXPECT_EQ(host.callTexts, (Texts{"AcquireSuite PF World Suite 2", "PF_GetPixelFormat",
                                         "ReleaseSuite PF World Suite 2"}));
    }
}

TEST(QueryPixelFormat, ReturnsTheHostsFailure) {
    StubHost host;
    host.failAll("PF_GetPixelFormat", 513);
    const PF_EffectWorld world = {};
    PF_PixelFormat format = PF_PixelFormat_INVALID;
    EXPECT_EQ(queryPixelFormat(&host.in, &world, &format), 513);
    EXPECT_EQ(format, PF_PixelFormat_INVALID);
}

TEST(QueryPixelFormat, GoesByTheDeepFlagWithoutVersionTwo) {
    StubHost host;
    host.missingSuites = {"PF World Suite 2"};
    host.reportedFormat = PF_PixelFormat_ARGB128;
    PF_EffectWorld world = {};
    PF_PixelFormat format = 0;
    world.world_flags = PF_WorldFlag_WRITEABLE;
    EXPECT_EQ(queryPixelFormat(&host.in, &world, &format), 0);
    EXPECT_EQ(format, PF_PixelFormat_ARGB32);
    world.world_flags = PF_WorldFlag_WRITEABLE | PF_WorldFlag_DEEP;
    EXPECT_EQ(queryPixelFormat(&host.in, &world, &format), 0);
    EXPECT_EQ(format, PF_PixelFormat_ARGB64);
}

struct CopyCase {
    PF_Quality quality;
    const char* call;
};

TEST(CopyWorld, CopiesByTheFramesQuality) {
    for (const CopyCase& each : {CopyCase{PF_Quality_HI, "copy_hq"}, CopyCase{PF_Quality_LO, "copy"},
                                 CopyCase{PF_Quality_DRAWING_AUDIO, "copy"}, CopyCase{2, "copy"}}) {
        StubHost host;
        host.in.quality = each.quality;
        PF_EffectWorld source = {};
        PF_EffectWorld target = {};
        EXPECT_EQ(copyWorld(&host.in, &source, &target), 0);
        ASSERT_EQ(host.worldCalls.size(), 1U);
        EXPECT_EQ(host.worldCalls[0].call, each.call);
        EXPECT_EQ(host.worldCalls[0].source, &source);
        EXPECT_EQ(host.worldCalls[0].target, &target);
        EXPECT_TRUE(host.worldCalls[0].wholeWorld);
        EXPECT_EQ(host.callTexts, (Texts{"AcquireSuite PF World Transform Suite 1", each.call,
                                         "ReleaseSuite PF World Transform Suite 1"}));
    }
}

TEST(CopyWorld, ReturnsTheHostsFailure) {
    StubHost host;
    host.failAll("copy_hq", 513);
    PF_EffectWorld world = {};
    EXPECT_EQ(copyWorld(&host.in, &world, &world), 513);
    EXPECT_EQ(host.suiteBalance(), 0);
}

TEST(CopyWorld, ThrowsALongWithoutItsSuite) {
    StubHost host;
    host.missingSuites = {"PF World Transform Suite 1"};
    PF_EffectWorld world = {};
    EXPECT_THROW(kovalune::ignored(copyWorld(&host.in, &world, &world)), long);
}

TEST(ClearWorld, FillsTheWholeWorldWithANullColour) {
    StubHost host;
    PF_EffectWorld world = {};
    world.width = 640;
    world.height = 480;
    world.origin_x = 7;
    EXPECT_EQ(clearWorld(&host.in, &world), 0);
    ASSERT_EQ(host.worldCalls.size(), 1U);
    EXPECT_EQ(host.worldCalls[0].call, "fill");
    EXPECT_EQ(host.worldCalls[0].target, &world);
    EXPECT_TRUE(host.worldCalls[0].wholeWorld);
    EXPECT_EQ(host.worldCalls[0].rect.top, 0);
    EXPECT_EQ(host.worldCalls[0].rect.left, 0);
    EXPECT_EQ(host.worldCalls[0].rect.bottom, 480);
    EXPECT_EQ(host.worldCalls[0].rect.right, 640);
    EXPECT_EQ(host.callTexts,
              (Texts{"AcquireSuite " + kFillMatteSuiteText, "fill", "ReleaseSuite " + kFillMatteSuiteText}));
}

TEST(ClearWorld, GoesThroughTheSameFillInEveryFormat) {
    for (const PF_WorldFlags flags : {PF_WorldFlags{0}, PF_WorldFlags{PF_WorldFlag_DEEP}}) {
        for (const PF_PixelFormat format :
             {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128}) {
            StubHost host;
            host.reportedFormat = format;
            PF_EffectWorld world = {};
            world.world_flags = flags;
            EXPECT_EQ(clearWorld(&host.in, &world), 0);
            ASSERT_EQ(host.worldCalls.size(), 1U);
            EXPECT_EQ(host.worldCalls[0].call, "fill");
        }
    }
}

#ifndef KOVALUNE_HOST_LONG_RECTS
TEST(ClearWorld, CutsTheSidesTo16Bits) {
    StubHost host;
    PF_EffectWorld world = {};
    world.width = 65536 + 5;
    world.height = 40000;
    EXPECT_EQ(clearWorld(&host.in, &world), 0);
    EXPECT_EQ(host.worldCalls[0].rect.right, 5);
    EXPECT_EQ(host.worldCalls[0].rect.bottom, 40000 - 65536);
}
#endif

TEST(ClearWorld, ReturnsTheHostsFailure) {
    StubHost host;
    host.failAll("fill", 517);
    PF_EffectWorld world = {};
    EXPECT_EQ(clearWorld(&host.in, &world), 517);
}

TEST(ClearWorld, ThrowsALongWithoutItsSuite) {
    StubHost host;
    host.missingSuites = {kFillMatteSuiteText};
    PF_EffectWorld world = {};
    EXPECT_THROW(kovalune::ignored(clearWorld(&host.in, &world)), long);
}

struct HostCase {
    A_long application;
    A_short major;
    A_short minor;
    bool old;
};

TEST(HostIsOld, OnlyForTheFirstKindOfHostBefore12Point12) {
    const HostCase cases[] = {
        {PF_AppID_FXTC, 12, 12, false},   {PF_AppID_FXTC, 12, 11, true},
        {PF_AppID_FXTC, 11, 9, true},     {PF_AppID_FXTC, 13, 0, false},
        {PF_AppID_FXTC, 12, 14, false},   {PF_AppID_FXTC, 12, 0, true},
        {PF_AppID_FXTC, 0, 0, true},      {PF_AppID_FXTC, -1, 99, true},
        {PF_AppID_FXTC, 32767, 0, false}, {PF_AppID_FXTC, 11, 100, true},
        {PF_AppID_PrMr, 12, 11, false},   {PF_AppID_PrMr, 0, 0, false},
        {PF_AppID_PrMr, 13, 0, false},    {0, 1, 0, false},
        {0x43545846, 11, 9, false},
    };
    for (const HostCase& each : cases) {
        PF_InData in = {};
        in.appl_id = each.application;
        in.version = {each.major, each.minor};
        EXPECT_EQ(hostIsOld(&in), each.old) << each.application << ' ' << each.major << '.' << each.minor;
    }
}

} // namespace
} // namespace AEUtil
