#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace kovalune::test {
using namespace host;
namespace {

/// Of a row of pointers.
int emptySlots(const void* first, const void* end) {
    int empty = 0;
    for (auto* at = static_cast<const char*>(first); at < end; at += sizeof(void*)) {
        void* slot = nullptr;
        std::memcpy(&slot, at, sizeof slot);
        empty += slot == nullptr ? 1 : 0;
    }
    return empty;
}

TEST(Callback, EverySlotOfTheTablesIsFilled) {
    Stage stage;
    stage.during([](Call& c) {
        const PF_UtilCallbacks& u = c.utils();
        EXPECT_EQ(emptySlots(&c.in.inter, c.in.inter.reserved_str), 0);
        // The one that may not be called stays empty.
        EXPECT_EQ(emptySlots(&u.begin_sampling, &u.ansi), 1);
        EXPECT_EQ(emptySlots(&u.ansi, u.ansi.unused_longA), 0);
        EXPECT_EQ(emptySlots(&u.colorCB, u.reserved), 0);
        return PF_Err_NONE;
    });
}

/// Of a suite's table; -1 without the suite.
template <class Suite>
int emptySuiteSlots(const Call& c, const char* name, int32_t version) {
    const Suite* suite = c.acquire<Suite>(name, version);
    if (suite == nullptr) {
        return -1;
    }
    const int empty = emptySlots(suite, suite + 1);
    c.release(name, version);
    return empty;
}

TEST(Callback, EverySlotOfTheSuitesIsFilled) {
    judge::JudgeOptions options = Stage::audited();
    options.everySuiteVersion = true;
    Stage stage(options);
    stage.during([](Call& c) {
        EXPECT_EQ(emptySlots(c.in.pica_basicP, c.in.pica_basicP + 1), 0);
        EXPECT_EQ(emptySuiteSlots<PFWorldSuite1>(c, kPFWorldSuite, 1), 0);
        EXPECT_EQ(emptySuiteSlots<PFWorldSuite2>(c, kPFWorldSuite, 2), 0);
        EXPECT_EQ(emptySuiteSlots<PFWorldTransformSuite1>(c, kPFWorldTransformSuite, 1), 0);
        EXPECT_EQ(emptySuiteSlots<PFFillMatteSuite1>(c, kPFFillMatteSuite, 1), 0);
        EXPECT_EQ(emptySuiteSlots<PFFillMatteSuite2>(c, kPFFillMatteSuite, 2), 0);
        EXPECT_EQ(emptySuiteSlots<PFHandleSuite1>(c, kPFHandleSuite, 1), 0);
        EXPECT_EQ(emptySuiteSlots<PFHandleSuite1>(c, kPFHandleSuite, 2), 0);
        EXPECT_EQ(emptySuiteSlots<PFParamUtilsSuite1>(c, kPFParamUtilsSuite, 1), 0);
        EXPECT_EQ(emptySuiteSlots<PFParamUtilsSuite1>(c, kPFParamUtilsSuite, 2), 0);
        EXPECT_EQ(emptySuiteSlots<PFParamUtilsSuite3>(c, kPFParamUtilsSuite, 3), 0);
        return PF_Err_NONE;
    });
}

TEST(Callback, AFunctionThatTheHostLacksRefusesAndIsMisuse) {
    Stage stage;
    stage.during([](Call& c) {
        EXPECT_EQ(c.utils().premultiply(c.ref(), 1, nullptr), PF_Err_INVALID_CALLBACK);
        EXPECT_EQ(c.utils().app(c.ref(), 1), PF_Err_INVALID_CALLBACK);
        EXPECT_EQ(c.in.inter.register_ui(c.ref(), nullptr), PF_Err_INVALID_CALLBACK);
        return PF_Err_NONE;
    });
    const judge::AuditReport report = stage.host.audit();
    ASSERT_EQ(report.misuse.size(), 3U);
    EXPECT_EQ(report.misuse[0], "premultiply is not a function of this host");
    EXPECT_EQ(report.misuse[1], "app is not a function of this host");
}

TEST(Callback, InDataTellsWhoTheHostIs) {
    judge::JudgeOptions options = Stage::audited();
    options.applId = PF_AppID_PrMr;
    options.version = {11, 9};
    options.quality = PF_Quality_LO;
    options.timeScale = 600;
    options.timeStep = 25;
    Stage stage(options);
    stage.during([](Call& c) {
        EXPECT_EQ(c.in.appl_id, PF_AppID_PrMr);
        EXPECT_EQ(c.in.version.major, 11);
        EXPECT_EQ(c.in.version.minor, 9);
        EXPECT_EQ(c.in.quality, PF_Quality_LO);
        EXPECT_EQ(c.in.time_scale, 600U);
        EXPECT_EQ(c.in.time_step, 25);
        EXPECT_EQ(c.in.num_params, 8);
        return PF_Err_NONE;
    });
}

TEST(Callback, TheDefaultHostIsTwelveFourteenAtHighQuality) {
    Stage stage;
    stage.during([](Call& c) {
        EXPECT_EQ(c.in.appl_id, PF_AppID_FXTC);
        EXPECT_EQ(c.in.version.major, 12);
        EXPECT_EQ(c.in.version.minor, 14);
        EXPECT_EQ(c.in.quality, PF_Quality_HI);
        return PF_Err_NONE;
    });
}

TEST(Callback, TextFunctionsWrite) {
    Stage stage;
    const CommandResult result = stage.during([](Call& c) {
        c.utils().ansi.sprintf(c.out.return_msg, "%s %d.%d", "Effect", 1, 25);
        A_char copy[32];
        EXPECT_EQ(c.utils().ansi.strcpy(copy, "label"), copy);
        EXPECT_STREQ(copy, "label");
        return PF_Err_NONE;
    });
    EXPECT_EQ(result.returnMsg, "Effect 1.25");
}

TEST(Callback, MathsFunctionsStandInTheirSlots) {
    Stage stage;
    stage.during([](Call& c) {
        const PF_ANSICallbacks& m = c.utils().ansi;
        EXPECT_EQ(m.atan(0.5), std::atan(0.5));
        EXPECT_EQ(m.atan2(1.0, 2.0), std::atan2(1.0, 2.0));
        EXPECT_EQ(m.ceil(1.5), 2.0);
        EXPECT_EQ(m.cos(0.5), std::cos(0.5));
        EXPECT_EQ(m.exp(0.5), std::exp(0.5));
        EXPECT_EQ(m.fabs(-3.0), 3.0);
        EXPECT_EQ(m.floor(1.5), 1.0);
        EXPECT_EQ(m.fmod(7.0, 4.0), 3.0);
        EXPECT_EQ(m.hypot(3.0, 4.0), 5.0);
        EXPECT_EQ(m.log(2.0), std::log(2.0));
        EXPECT_EQ(m.log10(1000.0), 3.0);
        EXPECT_EQ(m.pow(2.0, 10.0), 1024.0);
        EXPECT_EQ(m.sin(0.5), std::sin(0.5));
        EXPECT_EQ(m.sqrt(9.0), 3.0);
        EXPECT_EQ(m.tan(0.5), std::tan(0.5));
        EXPECT_EQ(m.asin(0.5), std::asin(0.5));
        EXPECT_EQ(m.acos(0.5), std::acos(0.5));
        return PF_Err_NONE;
    });
}

TEST(Callback, RgbToHlsGoesThroughTheHost) {
    Stage stage;
    stage.during([](Call& c) {
        PF_Pixel green{255, 0, 255, 0};
        PF_Fixed hls[3]{};
        EXPECT_EQ(c.utils().colorCB.RGBtoHLS(c.ref(), &green, hls), PF_Err_NONE);
        EXPECT_EQ(hls[0], 120 * 65536);
        EXPECT_EQ(c.utils().colorCB.RGBtoHLS(c.ref(), nullptr, hls), PF_Err_BAD_CALLBACK_PARAM);
        return PF_Err_NONE;
    });
}

TEST(Callback, PlatformDataGivesPathsAndWindow) {
    judge::JudgeOptions options = Stage::audited();
    int window = 0;
    options.mainWindow = &window;
    options.executablePath = "/opt/host";
    options.resourcePath = "/opt/plug.aex";
    Stage stage(options);
    stage.during([&](Call& c) {
        void* mainWindow = nullptr;
        char path[260];
        const auto get = [&c](A_long which, void* data) {
            return c.utils().get_platform_data(c.ref(), which, data);
        };
        EXPECT_EQ(get(PF_PlatData_MAIN_WND, &mainWindow), PF_Err_NONE);
        EXPECT_EQ(mainWindow, &window);
        EXPECT_EQ(get(PF_PlatData_EXE_FILE_PATH, path), PF_Err_NONE);
        EXPECT_STREQ(path, "/opt/host");
        EXPECT_EQ(get(PF_PlatData_RES_FILE_PATH, path), PF_Err_NONE);
        EXPECT_STREQ(path, "/opt/plug.aex");
        EXPECT_EQ(get(PF_PlatData_BUNDLE_REF, path), PF_Err_BAD_CALLBACK_PARAM);
        return PF_Err_NONE;
    });
}

TEST(Callback, APathThatDoesNotFitIsRefused) {
    judge::JudgeOptions options = Stage::audited();
    options.executablePath = std::string(260, 'x');
    Stage stage(options);
    stage.during([&](Call& c) {
        char path[260] = "kept";
        EXPECT_EQ(c.utils().get_platform_data(c.ref(), PF_PlatData_EXE_FILE_PATH, path),
                  PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_STREQ(path, "kept");
        return PF_Err_NONE;
    });
}

TEST(Callback, AWrongEffectReferenceIsRefusedAndBooked) {
    Stage stage;
    stage.during([&](Call& c) {
        EXPECT_EQ(c.in.inter.progress(nullptr, 1, 2), PF_Err_BAD_CALLBACK_PARAM);
        return PF_Err_NONE;
    });
    ASSERT_EQ(stage.host.audit().misuse.size(), 1U);
    EXPECT_EQ(stage.host.audit().misuse[0], "progress with a wrong effect reference");
}

TEST(Callback, TheReferenceOfAnEarlierCommandIsRefusedAndBooked) {
    Stage stage;
    PF_ProgPtr stale = nullptr;
    stage.during([&](Call& c) {
        stale = c.ref();
        return PF_Err_NONE;
    });
    stage.during([&](Call& c) {
        EXPECT_NE(c.ref(), stale);
        EXPECT_EQ(c.in.inter.progress(stale, 1, 2), PF_Err_BAD_CALLBACK_PARAM);
        return PF_Err_NONE;
    });
    ASSERT_EQ(stage.host.audit().misuse.size(), 1U);
    EXPECT_EQ(stage.host.audit().misuse[0], "progress with a wrong effect reference");
}

TEST(Callback, OutsideOfACommandNothingWorks) {
    Stage stage;
    PF_UtilCallbacks* utils = nullptr;
    PF_InteractCallbacks inter{};
    PF_ProgPtr stale = nullptr;
    stage.during([&](Call& c) {
        utils = c.in.utils;
        inter = c.in.inter;
        stale = c.ref();
        return PF_Err_NONE;
    });
    EXPECT_EQ(utils->host_new_handle(8), nullptr);
    EXPECT_EQ(inter.progress(stale, 1, 2), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(utils->iterate_generic(1, nullptr, nullptr), PF_Err_INVALID_CALLBACK);
}

TEST(Callback, ProgressReachesTheObserverAndCancels) {
    std::vector<std::pair<int, int>> seen;
    judge::JudgeOptions options = Stage::audited();
    options.onProgress = [&seen](int current, int total) {
        seen.emplace_back(current, total);
        return current < 2;
    };
    Stage stage(options);
    const CommandResult result = stage.during([](Call& c) {
        EXPECT_EQ(c.in.inter.progress(c.ref(), 1, 3), PF_Err_NONE);
        EXPECT_EQ(c.in.inter.abort(c.ref()), PF_Err_NONE);
        EXPECT_EQ(c.in.inter.progress(c.ref(), 2, 3), PF_Interrupt_CANCEL);
        EXPECT_EQ(c.in.inter.abort(c.ref()), PF_Interrupt_CANCEL);
        return c.in.inter.progress(c.ref(), 1, 3);
    });
    EXPECT_EQ(result.code, PF_Interrupt_CANCEL); // a cancel is not taken back
    EXPECT_EQ(seen, (std::vector<std::pair<int, int>>{{1, 3}, {2, 3}, {1, 3}}));
}

TEST(Callback, TheLogKeepsTheOrderAndCanBeOff) {
    Stage stage;
    stage.session();
    stage.host.clearCalls();
    const auto two = [](Call& c) {
        c.in.inter.progress(c.ref(), 1, 2);
        PF_Handle handle = c.utils().host_new_handle(3);
        c.utils().host_dispose_handle(handle);
        return PF_Err_NONE;
    };
    stage.during(two);
    const std::vector<judge::CallRecord> expected{
        {"progress", "1 2"}, {"host_new_handle", "3"}, {"host_dispose_handle", ""}};
    EXPECT_EQ(stage.host.calls(), expected);
    stage.host.clearCalls();
    stage.host.options().recordCalls = false;
    stage.during(two);
    EXPECT_TRUE(stage.host.calls().empty());
}

} // namespace
} // namespace kovalune::test
