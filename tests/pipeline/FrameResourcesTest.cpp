// What a frame takes from the host, and how it gives it back.
#include "effect/share/AEUtil/AEException.h"
#include "tests/pipeline/ProcessScene.h"
#include "tests/pipeline/WorldWatch.h"
#include "tests/reference/PlainProcess.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>

namespace kovalune::test {
namespace {

class FrameResources : public testing::TestWithParam<FrameDriver> {
protected:
    static host::judge::JudgeOptions recording() {
        host::judge::JudgeOptions options = strictOptions();
        options.recordCalls = true;
        return options;
    }

    bool widens() const { return GetParam().format == PF_PixelFormat_ARGB32; }
};

INSTANTIATE_TEST_SUITE_P(Formats, FrameResources, testing::ValuesIn(kFrameDrivers), frameName);

TEST_P(FrameResources, MakesItsWorldsInOrder) {
    Random random(141);
    FrameScene scene(GetParam(), random);
    scene.settings.extentRect = rectAt(2, 3, 5, 4);
    const WorldWatch watch(scene.host);
    EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    // Masked, base smooth, (three wide ones,) extended, smoothed, layer, two scratch worlds, spare, previous.
    const std::string cleared = widens() ? "c----ccc----" : "c-ccc----";
    ASSERT_EQ(watch.made().size(), cleared.size());
    for (std::size_t i = 0; i < cleared.size(); ++i) {
        EXPECT_EQ(watch.made()[i].cleared, cleared[i] == 'c') << "world " << i;
        EXPECT_EQ(watch.made()[i].format, GetParam().workFormat) << "world " << i;
        EXPECT_EQ(watch.made()[i].width, 14);
        EXPECT_EQ(watch.made()[i].height, 11);
    }
}

TEST_P(FrameResources, ClearsTheMaskedWorldWhereTheRectangleIsSmallerThanIt) {
    Random random(148);
    const std::pair<FrameRect, bool> rects[] = {{rectAt(0, 0, 14, 11), false},
                                                {rectAt(1, 0, 13, 11), true},
                                                {rectAt(0, 1, 14, 10), true},
                                                {rectAt(0, 0, 13, 11), true},
                                                {rectAt(0, 0, 14, 10), true}};
    for (const auto& [rect, cleared] : rects) {
        FrameScene scene(GetParam(), random);
        scene.settings.extentRect = rect;
        const WorldWatch watch(scene.host);
        EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
        EXPECT_EQ(watch.made().front().cleared, cleared);
    }
}

TEST_P(FrameResources, ClearsThePreviousLayerWhereAViewShowsOneThatNoStageMakes) {
    Random random(149);
    for (const int32_t view : {1, 3, 4, 5, 6, 7, 8, 9}) {
        for (int32_t enabled = 0; enabled <= 4; ++enabled) {
            FrameScene scene(GetParam(), random);
            scene.settings.view = view;
            scene.settings.stages[enabled].enableProcess = 1;
            const WorldWatch watch(scene.host);
            EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
            const bool made = enabled != 0 && enabled <= view - 4;
            EXPECT_EQ(watch.made().back().cleared, !widens() && view >= kViewProcess1 && !made)
                << "view " << view << ", stage " << enabled;
        }
    }
}

TEST_P(FrameResources, NoPixelDependsOnWhatTheHostsMemoryHeld) {
    Random random(150);
    for (int round = 0; round < 60; ++round) {
        const uint64_t seed = random.next();
        std::optional<PlainPicture> first;
        for (const int content : {0x00, 0x3E, 0xA7}) {
            Random same(seed);
            ProcessScene scene(GetParam(), 24, 17, same);
            scene.randomise(same);
            if (round % 2 != 0) {
                scene.settings.extentRect = rectAt(3, 2, 15, 11);
            }
            WorldWatch watch(scene.host);
            watch.fillUncleared(static_cast<uint8_t>(content));
            ASSERT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
            if (first) {
                ASSERT_EQ(difference(*first, scene.output), "")
                    << "round " << round << ", content " << content;
            } else {
                first = read(scene.output);
            }
        }
    }
}

TEST_P(FrameResources, ReleasesItsWorldsInReverseOrder) {
    Random random(142);
    FrameScene scene(GetParam(), random);
    const WorldWatch watch(scene.host);
    EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    std::vector<PF_EffectWorld*> disposed = watch.disposed();
    std::reverse(disposed.begin(), disposed.end());
    ASSERT_EQ(disposed.size(), watch.made().size());
    for (std::size_t i = 0; i < disposed.size(); ++i) {
        EXPECT_EQ(disposed[i], watch.made()[i].world) << "world " << i;
    }
}

TEST_P(FrameResources, MakesFourteenPlanesOfTheRectangleFirst) {
    Random random(143);
    FrameScene scene(GetParam(), recording(), 14, 11, random);
    scene.settings.extentRect = rectAt(1, 1, 5, 3);
    scene.host.clearCalls();
    EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    // Copy, planes with that of the coverage, coverage, worlds, widening, and the extraction's plane.
    const std::string expected =
        "c" + std::string(15, 'h') + "i" + std::string(widens() ? 12 : 9, 'w') + (widens() ? "ii" : "") + "h";
    std::string order;
    for (const std::string& call : scene.host.callNames()) {
        order += call == "host_new_handle"   ? "h"
                 : call == "PF_NewWorld"     ? "w"
                 : call == "iterate_generic" ? "i"
                 : call == "copy_hq"         ? "c"
                                             : "";
    }
    EXPECT_EQ(order.substr(0, expected.size()), expected);
    for (const host::judge::CallRecord& record : scene.host.calls()) {
        if (record.call == "host_new_handle") {
            EXPECT_EQ(record.arguments, "68") << "36 bytes of a plane of 5 by 3, and 32 in front";
        }
    }
}

TEST_P(FrameResources, ReleasesItsPlanesBehindItsWorlds) {
    Random random(144);
    FrameScene scene(GetParam(), recording(), 14, 11, random);
    scene.host.clearCalls();
    EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    std::string order;
    for (const std::string& call : scene.host.callNames()) {
        order += call == "PF_DisposeWorld" ? "w" : call == "host_dispose_handle" ? "h" : "";
    }
    // Two planes are replaced on the way.
    EXPECT_EQ(order, "hh" + std::string(widens() ? 12 : 9, 'w') + std::string(14, 'h'));
}

TEST_P(FrameResources, HostWithoutMemoryRaisesAndLeavesNothing) {
    Random random(145);
    FrameScene whole(GetParam(), recording(), 14, 11, random);
    whole.host.clearCalls();
    EXPECT_EQ(GetParam().render(whole.settings), PF_Err_NONE);
    const std::pair<const char*, std::size_t> calls[] = {
        {"host_new_handle", 16}, {"host_lock_handle", 16}, {"PF_NewWorld", widens() ? 12 : 9}};
    for (const auto& [name, count] : calls) {
        const std::vector<int> numbers = whole.host.faultNumbersOf(name);
        ASSERT_EQ(numbers.size(), count);
        for (const int number : numbers) {
            Random sameRandom(145);
            FrameScene scene(GetParam(), recording(), 14, 11, sameRandom);
            host::judge::FaultPlan plan;
            plan.failCall = number;
            plan.failCode = PF_Err_OUT_OF_MEMORY;
            scene.host.arm(plan);
            try {
                static_cast<void>(GetParam().render(scene.settings));
                ADD_FAILURE() << name << ", call " << number;
            } catch (const AEUtil::AEException& error) {
                EXPECT_EQ(error.code(), PF_Err_OUT_OF_MEMORY);
            }
            EXPECT_EQ(scene.host.struckCall(), name);
            EXPECT_EQ(difference(read(scene.input), scene.output), "") << "the opening's copy";
        }
    }
}

TEST_P(FrameResources, HostWithoutTheNewWorldSuiteLacksFloatWorlds) {
    Random random(146);
    host::judge::JudgeOptions options = strictOptions();
    options.withheldSuites = {{kPFWorldSuite, kPFWorldSuiteVersion2}};
    FrameScene scene(GetParam(), options, 14, 11, random);
    const bool isFloat = GetParam().format == PF_PixelFormat_ARGB128;
    EXPECT_EQ(GetParam().render(scene.settings), isFloat ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE);
    if (isFloat) {
        EXPECT_EQ(difference(read(scene.input), scene.output), "") << "the opening's copy";
    }
}

TEST_P(FrameResources, BlurThatOnlyCopiesNeedsNoScratchWorld) {
    Random random(147);
    host::judge::JudgeOptions options = strictOptions();
    options.withheldSuites = {{kPFWorldSuite, kPFWorldSuiteVersion2}};
    FrameScene scene(GetParam(), options, 14, 11, random);
    scene.settings.stages[0].blurAmount = 0.0;
    scene.settings.view = kViewBase;
    EXPECT_EQ(GetParam().render(scene.settings), PF_Err_NONE);
    EXPECT_EQ(difference(read(scene.input), scene.output), "");
}

} // namespace
} // namespace kovalune::test
