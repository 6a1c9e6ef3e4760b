#include "tests/frame/ProbeFilter.h"
#include "tests/frame/StubHost.h"
#include "tests/params/RegisteredTable.h"

#include <cstring>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

constexpr int kValues = 47; // parameters that hold a value

/// A host with the effect's parameters that asks for a frame.
struct PreRenderHost : StubHost {
    PreRenderHost() {
        EXPECT_EQ(registerTable(*this, nullptr), 0);
        calls.clear();
        callTexts.clear();
        input.output_request.rect = {10, 20, 110, 120};
    }
    PF_Err send() {
        extra = {&input, &output, &preRender};
        return filter.smartPreRender(&in, &out, &extra);
    }
    PF_Handle handle() const { return static_cast<PF_Handle>(output.pre_render_data); }
    RenderSettings record() const {
        RenderSettings copy;
        std::memcpy(static_cast<void*>(&copy), memoryOf(handle()), sizeof copy);
        return copy;
    }

    PF_PreRenderInput input = {};
    PF_PreRenderOutput output = {};
    PF_PreRenderExtra extra = {};
    ProbeFilter filter;
};

bool sameRect(const PF_LRect& a, const PF_LRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

TEST(SmartPreRender, LeavesTheRecordInAnUnlockedHandle) {
    PreRenderHost host;
    host.params[4].u.sd.value = 8;
    EXPECT_EQ(host.send(), 0);
    ASSERT_TRUE(host.isLive(host.handle()));
    EXPECT_EQ(host.callTexts[0], "host_new_handle " + std::to_string(sizeof(RenderSettings)));
    EXPECT_EQ(host.count("host_lock_handle"), 1);
    EXPECT_EQ(host.count("host_unlock_handle"), 1);
    EXPECT_EQ(host.count("host_dispose_handle"), 0);
    EXPECT_EQ(host.output.delete_pre_render_data_func, nullptr);
    const RenderSettings record = host.record();
    EXPECT_EQ(record.fromPreRender, 1);
    EXPECT_EQ(record.stages[0].repeat, 8);
    EXPECT_EQ(record.stages[1].boundaryBlur, 10.0);
    EXPECT_EQ(record.boundaryScale, 1.5);
    EXPECT_EQ(record.pixelFormat, PF_PixelFormat_INVALID);
    EXPECT_EQ(record.inputWorld, nullptr);
    EXPECT_TRUE(host.filter.frames.empty());
}

TEST(SmartPreRender, ReadsTheParametersAndGivesNoneBack) {
    PreRenderHost host;
    EXPECT_EQ(host.send(), 0);
    EXPECT_EQ(host.count("checkout_param"), kValues);
    EXPECT_EQ(host.callTexts[2], "checkout_param 1 70 7 24");
    EXPECT_EQ(host.count("checkin_param"), 0);
    EXPECT_EQ(host.suiteBalance(), 0);
}

TEST(SmartPreRender, ReportsThatThereIsNoHandle) {
    PreRenderHost host;
    host.failAll("host_new_handle", 4);
    EXPECT_EQ(host.send(), 4);
    EXPECT_EQ(host.output.pre_render_data, nullptr);
    EXPECT_EQ(host.calls, std::vector<std::string>{"host_new_handle"});
}

TEST(SmartPreRender, DisposesOfAHandleThatCannotBeLocked) {
    PreRenderHost host;
    host.failAll("host_lock_handle", 4);
    EXPECT_EQ(host.send(), 512);
    EXPECT_EQ(host.output.pre_render_data, nullptr);
    EXPECT_EQ(host.liveHandles(), 0);
    EXPECT_EQ(host.calls,
              (std::vector<std::string>{"host_new_handle", "host_lock_handle", "host_dispose_handle"}));
}

TEST(SmartPreRender, ChecksNoLayerOutBehindAFailedRead) {
    PreRenderHost host;
    host.output.result_rect = {1, 2, 3, 4};
    host.fault = [](const std::string& call, int nth) {
        return call == "checkout_param" && nth == 47 ? PF_Err{517} : PF_Err{0};
    };
    EXPECT_EQ(host.send(), 517);
    EXPECT_EQ(host.count("checkout_layer"), 0);
    EXPECT_TRUE(host.isLive(host.handle())); // the host's, as ever
    EXPECT_EQ(host.count("host_unlock_handle"), 1);
    EXPECT_TRUE(sameRect(host.output.result_rect, {1, 2, 3, 4}));
}

TEST(SmartPreRender, UnlocksWhenAnExceptionPasses) {
    PreRenderHost host;
    host.fault = [](const std::string& call, int) -> PF_Err {
        if (call == "checkout_layer") {
            throw 516L;
        }
        return 0;
    };
    EXPECT_THROW(host.send(), long);
    EXPECT_EQ(host.liveLocks(), 0);
    EXPECT_TRUE(host.isLive(host.handle()));
}

TEST(PreRenderInput, AsksForTheLayerWithTheOutputsOwnRequest) {
    PreRenderHost host;
    host.in.current_time = 5;
    host.in.time_step = 3;
    host.in.time_scale = 30;
    host.params[3].u.fs_d.value = 1000.0; // "Blur Amount" makes no margin
    std::memset(&host.input.output_request, 0x5a, sizeof host.input.output_request);
    host.input.output_request.rect = {0, 0, 100, 100};
    EXPECT_EQ(host.send(), 0);
    EXPECT_EQ(host.callTexts.back(), "host_unlock_handle");
    EXPECT_EQ(host.callTexts[host.callTexts.size() - 2], "checkout_layer 0 0 5 3 30");
    EXPECT_EQ(std::memcmp(&host.lastRequest, &host.input.output_request, sizeof host.lastRequest), 0);
}

struct UnionCase {
    PF_LRect before;
    PF_LRect added;
    PF_LRect after;
};

const UnionCase kUnions[] = {
    // An empty rectangle takes the other as it stands, empty or not.
    {{0, 0, 0, 0}, {5, 6, 7, 8}, {5, 6, 7, 8}},
    {{9, 9, 9, 20}, {5, 6, 7, 8}, {5, 6, 7, 8}},
    {{9, 9, 20, 9}, {5, 6, 7, 8}, {5, 6, 7, 8}},
    {{20, 9, 9, 20}, {5, 6, 7, 8}, {5, 6, 7, 8}},
    {{0, 0, 0, 0}, {3, 3, 1, 1}, {3, 3, 1, 1}},
    // Nothing is added by an empty one.
    {{1, 2, 3, 4}, {0, 0, 0, 0}, {1, 2, 3, 4}},
    {{1, 2, 3, 4}, {-9, -9, -9, 50}, {1, 2, 3, 4}},
    {{1, 2, 3, 4}, {-9, 50, 90, 50}, {1, 2, 3, 4}},
    // Otherwise the outermost sides count.
    {{0, 0, 10, 10}, {5, 5, 20, 20}, {0, 0, 20, 20}},
    {{5, 5, 20, 20}, {0, 0, 10, 10}, {0, 0, 20, 20}},
    {{0, 0, 10, 10}, {2, 2, 4, 4}, {0, 0, 10, 10}},
    {{-5, 7, 1, 9}, {2, -8, 4, -6}, {-5, -8, 4, 9}},
};

TEST(PreRenderInput, UnitesTheResultRectangles) {
    for (const UnionCase& each : kUnions) {
        PreRenderHost host;
        host.output.result_rect = each.before;
        host.output.max_result_rect = {0, 0, 1, 1};
        host.layerAnswer.result_rect = each.added;
        EXPECT_EQ(host.send(), 0);
        EXPECT_TRUE(sameRect(host.output.result_rect, each.after)) << (&each - kUnions);
        EXPECT_TRUE(sameRect(host.output.max_result_rect, {0, 0, 1, 1}));
    }
}

TEST(PreRenderInput, UnitesTheLargestRectanglesApart) {
    for (const UnionCase& each : kUnions) {
        PreRenderHost host;
        host.output.max_result_rect = each.before;
        host.output.result_rect = {0, 0, 1, 1};
        host.layerAnswer.max_result_rect = each.added;
        EXPECT_EQ(host.send(), 0);
        EXPECT_TRUE(sameRect(host.output.max_result_rect, each.after)) << (&each - kUnions);
        EXPECT_TRUE(sameRect(host.output.result_rect, {0, 0, 1, 1}));
    }
}

TEST(PreRenderInput, UnitesThemAlsoWhenTheCallFailed) {
    PreRenderHost host;
    host.failAll("checkout_layer", 513);
    host.layerAnswer.result_rect = {5, 6, 7, 8};
    host.layerAnswer.max_result_rect = {1, 2, 30, 40};
    EXPECT_EQ(host.send(), 513);
    EXPECT_TRUE(sameRect(host.output.result_rect, {5, 6, 7, 8}));
    EXPECT_TRUE(sameRect(host.output.max_result_rect, {1, 2, 30, 40}));
    EXPECT_EQ(host.count("host_unlock_handle"), 1);
}

} // namespace
} // namespace kovalune::test
