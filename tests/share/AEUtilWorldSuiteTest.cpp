#include "effect/share/AEUtil/AEException.h"
#include "effect/share/AEUtil/AEWorldSuite.h"
#include "effect/share/AEUtil/SuiteHolder.h"
#include "tests/frame/StubHost.h"
#include "tests/support/AllocationControl.h"

#include <gtest/gtest.h>
#include <tuple>
#include <utility>

namespace AEUtil {
namespace {

using kovalune::test::NoMemory;
using kovalune::test::StubHost;
using Texts = std::vector<std::string>;

constexpr PF_PixelFormat kFormats[] = {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128};

TEST(NewWorld, AsksVersionTwoForTheFormat) {
    for (const PF_PixelFormat format : kFormats) {
        StubHost host;
        {
            const EffectWorldPtr world = WorldSuite::newWorld(&host.in, 5, 3, 1, format);
            ASSERT_NE(world.get(), nullptr);
            EXPECT_EQ(world.get()->width, 5);
            EXPECT_EQ(world.get()->height, 3);
            EXPECT_EQ(host.callTexts,
                      (Texts{"AcquireSuite PF World Suite 2", "PF_NewWorld 5 3 1 " + std::to_string(format),
                             "ReleaseSuite PF World Suite 2"}));
            host.callTexts.clear();
        }
        EXPECT_EQ(host.callTexts, (Texts{"AcquireSuite PF World Suite 2", "PF_DisposeWorld",
                                         "ReleaseSuite PF World Suite 2"}));
    }
}

TEST(NewWorld, HandsTheClearFlagOnAsItIs) {
    StubHost host;
    WorldSuite::newWorld(&host.in, 5, 3, 0, PF_PixelFormat_ARGB32);
    EXPECT_EQ(host.callTexts[1], "PF_NewWorld 5 3 0 " + std::to_string(PF_PixelFormat_ARGB32));
}

TEST(NewWorld, FallsBackToVersionOneForIntegerFormats) {
    // Flag 1 clears, flag 2 makes deep pixels.
    const std::tuple<PF_PixelFormat, char, const char*> cases[] = {
        {PF_PixelFormat_ARGB32, char{0}, "new_world 5 3 0"},
        {PF_PixelFormat_ARGB32, char{1}, "new_world 5 3 1"},
        {PF_PixelFormat_ARGB64, char{0}, "new_world 5 3 2"},
        {PF_PixelFormat_ARGB64, char{1}, "new_world 5 3 3"},
        {PF_PixelFormat_ARGB64, char{5}, "new_world 5 3 3"},
    };
    for (const auto& [format, clear, call] : cases) {
        StubHost host;
        host.missingSuites = {"PF World Suite 2"};
        {
            const EffectWorldPtr world = WorldSuite::newWorld(&host.in, 5, 3, clear, format);
            ASSERT_NE(world.get(), nullptr);
            EXPECT_EQ((world.get()->world_flags & PF_WorldFlag_DEEP) != 0, format == PF_PixelFormat_ARGB64);
            EXPECT_EQ(host.callTexts, (Texts{"AcquireSuite PF World Suite 2", "AcquireSuite PF World Suite 1",
                                             call, "ReleaseSuite PF World Suite 1"}));
        }
        EXPECT_EQ(host.count("dispose_world"), 1);
        EXPECT_EQ(host.count("PF_DisposeWorld"), 0);
    }
}

TEST(NewWorld, GivesAnEmptyPointerForFloatWithoutVersionTwo) {
    StubHost host;
    host.missingSuites = {"PF World Suite 2"};
    {
        const EffectWorldPtr world = WorldSuite::newWorld(&host.in, 5, 3, 1, PF_PixelFormat_ARGB128);
        EXPECT_EQ(world.get(), nullptr);
    }
    EXPECT_EQ(host.callTexts, Texts{"AcquireSuite PF World Suite 2"});
}

TEST(NewWorld, ReportsNoWorldSuiteAtAllAsALong) {
    StubHost host;
    host.missingSuites = {"PF World Suite 1", "PF World Suite 2"};
    EXPECT_THROW(WorldSuite::newWorld(&host.in, 5, 3, 1, PF_PixelFormat_ARGB32), long);
    EXPECT_EQ(host.callTexts, (Texts{"AcquireSuite PF World Suite 2", "AcquireSuite PF World Suite 1"}));
}

TEST(NewWorld, ThrowsWhatTheHostReported) {
    for (const char* call : {"PF_NewWorld", "new_world"}) {
        StubHost host;
        host.failAll(call, 517);
        if (std::string(call) == "new_world") {
            host.missingSuites = {"PF World Suite 2"};
        }
        PF_Err code = 0;
        std::string text;
        try {
            WorldSuite::newWorld(&host.in, 5, 3, 1, PF_PixelFormat_ARGB64);
        } catch (const AEException& exception) {
            code = exception.code();
            text = exception.what();
        }
        EXPECT_EQ(code, 517) << call;
        EXPECT_EQ(text, "..\\..\\..\\share\\AEUtil\\AEWorldSuite(151): class AEUtil::EffectWorldPtr __cdecl "
                        "AEUtil::WorldSuite::newWorld(PF_InData *,long,long,char,long)");
        EXPECT_EQ(host.suiteBalance(), 0);
        EXPECT_EQ(host.count("dispose_world") + host.count("PF_DisposeWorld"), 0);
    }
}

TEST(NewWorld, GivesAnEmptyPointerWithoutMemoryForTheHolder) {
    StubHost host;
    EffectWorldPtr world;
    {
        const NoMemory failing;
        world = WorldSuite::newWorld(&host.in, 5, 3, 1, PF_PixelFormat_ARGB32);
    }
    EXPECT_EQ(world.get(), nullptr);
    EXPECT_EQ(host.calls, Texts{});
}

TEST(EffectWorldPtr, SharesOneWorldToItsLastRelease) {
    StubHost host;
    EffectWorldPtr first = WorldSuite::newWorld(&host.in, 5, 3, 1, PF_PixelFormat_ARGB32);
    EffectWorldPtr second = first;
    EXPECT_EQ(second.get(), first.get());
    first.release();
    EXPECT_EQ(first.get(), nullptr);
    EXPECT_NE(second.get(), nullptr);
    EXPECT_EQ(host.liveWorlds(), 1);
    second.release();
    EXPECT_EQ(second.get(), nullptr);
    EXPECT_EQ(host.liveWorlds(), 0);
    second.release();
    EXPECT_EQ(host.count("PF_DisposeWorld"), 1);
}

TEST(EffectWorldPtr, AssignmentReleasesWhatItHeld) {
    StubHost host;
    EffectWorldPtr first = WorldSuite::newWorld(&host.in, 5, 3, 1, PF_PixelFormat_ARGB32);
    const EffectWorldPtr second = WorldSuite::newWorld(&host.in, 7, 3, 1, PF_PixelFormat_ARGB32);
    first = second;
    EXPECT_EQ(host.liveWorlds(), 1);
    EXPECT_EQ(first.get(), second.get());
    EXPECT_EQ(first.get()->width, 7);
}

TEST(EffectWorldPtr, AssignmentToItselfKeepsTheWorld) {
    StubHost host;
    EffectWorldPtr world = WorldSuite::newWorld(&host.in, 5, 3, 1, PF_PixelFormat_ARGB32);
    const EffectWorldPtr& itself = world;
    world = itself;
    ASSERT_NE(world.get(), nullptr);
    EXPECT_EQ(world.get()->width, 5);
    EXPECT_EQ(host.liveWorlds(), 1);
    world.release();
    EXPECT_EQ(host.liveWorlds(), 0);
}

TEST(EffectWorldPtr, MovingKeepsOneOwner) {
    StubHost host;
    {
        EffectWorldPtr first = WorldSuite::newWorld(&host.in, 5, 3, 1, PF_PixelFormat_ARGB32);
        const EffectWorldPtr second = std::move(first);
        EXPECT_NE(second.get(), nullptr);
    }
    EXPECT_EQ(host.count("PF_DisposeWorld"), 1);
}

TEST(EffectWorldPtr, ReleasesWhenAnExceptionLeavesTheScope) {
    StubHost host;
    try {
        const EffectWorldPtr world = WorldSuite::newWorld(&host.in, 5, 3, 1, PF_PixelFormat_ARGB32);
        throw 7;
    } catch (int) {
        EXPECT_EQ(host.liveWorlds(), 0);
    }
}

TEST(EffectWorldPtr, IgnoresAFailureOfTheDisposal) {
    StubHost host;
    EffectWorldPtr world = WorldSuite::newWorld(&host.in, 5, 3, 1, PF_PixelFormat_ARGB32);
    host.failAll("PF_DisposeWorld", 512);
    world.release();
    EXPECT_EQ(world.get(), nullptr);
    EXPECT_EQ(host.suiteBalance(), 0);
    host.worlds.clear();
}

TEST(ScopedWorld, AsksItsOwnSuiteAndNoOther) {
    StubHost host;
    {
        SuiteHolder suites(&host.basic);
        const ScopedWorld world(suites.world1(), host.in.effect_ref, 5, 3);
        EXPECT_EQ(world.err(), 0);
        EXPECT_EQ(world.world().width, 5);
        EXPECT_EQ(world.world().height, 3);
    }
    EXPECT_EQ(host.callTexts, (Texts{"AcquireSuite PF World Suite 1", "new_world 5 3 0", "dispose_world",
                                     "ReleaseSuite PF World Suite 1"}));
}

TEST(ScopedWorld, IsNotDisposedOfWhereThereIsNone) {
    StubHost host;
    host.failAll("new_world", 4);
    {
        SuiteHolder suites(&host.basic);
        EXPECT_EQ(ScopedWorld(suites.world1(), host.in.effect_ref, 5, 3).err(), 4);
    }
    EXPECT_EQ(host.count("dispose_world"), 0);
}

} // namespace
} // namespace AEUtil
