#include "effect/frame/BaseFilter.h"
#include "effect/frame/CustomFilter.h"
#include "hostapi/EntryPoint.h"
#include "tests/frame/StubHost.h"

#include <cstring>
#include <gtest/gtest.h>
#include <map>

namespace kovalune::test {
namespace {

/// Notes which operation was called and with what.
class NotingFilter : public BaseFilter {
public:
    struct Arguments {
        PF_InData* in = nullptr;
        PF_OutData* out = nullptr;
        PF_ParamDef** params = nullptr;
        PF_LayerDef* output = nullptr;
        void* extra = nullptr;
        bool operator==(const Arguments&) const = default;
    };

    PF_Err about(PF_InData* i, PF_OutData* o, PF_ParamDef** p, PF_LayerDef* w) override {
        return note("about", {i, o, p, w, nullptr});
    }
    PF_Err globalSetup(PF_InData* i, PF_OutData* o, PF_ParamDef** p, PF_LayerDef* w) override {
        return note("globalSetup", {i, o, p, w, nullptr});
    }
    PF_Err globalSetdown(PF_InData* i, PF_OutData* o, PF_ParamDef** p, PF_LayerDef* w) override {
        return note("globalSetdown", {i, o, p, w, nullptr});
    }
    PF_Err paramsSetup(PF_InData* i, PF_OutData* o, PF_ParamDef** p, PF_LayerDef* w) override {
        return note("paramsSetup", {i, o, p, w, nullptr});
    }
    PF_Err userChangedParam(PF_InData* i, PF_OutData* o, PF_ParamDef** p, PF_LayerDef* w, void* e) override {
        return note("userChangedParam", {i, o, p, w, e});
    }
    PF_Err updateParamsUI(PF_InData* i, PF_OutData* o, PF_ParamDef** p, PF_LayerDef* w) override {
        return note("updateParamsUI", {i, o, p, w, nullptr});
    }
    PF_Err render(PF_InData* i, PF_OutData* o, PF_ParamDef** p, PF_LayerDef* w) override {
        return note("render", {i, o, p, w, nullptr});
    }
    PF_Err smartPreRender(PF_InData* i, PF_OutData* o, PF_PreRenderExtra* e) override {
        return note("smartPreRender", {i, o, nullptr, nullptr, e});
    }
    PF_Err smartRender(PF_InData* i, PF_OutData* o, PF_SmartRenderExtra* e) override {
        return note("smartRender", {i, o, nullptr, nullptr, e});
    }
    PF_Err sequenceSetup(PF_InData* i, PF_OutData* o) override {
        return note("sequenceSetup", {i, o, nullptr, nullptr, nullptr});
    }
    PF_Err sequenceSetdown(PF_InData* i, PF_OutData* o) override {
        return note("sequenceSetdown", {i, o, nullptr, nullptr, nullptr});
    }
    PF_Err sequenceFlatten(PF_InData* i, PF_OutData* o) override {
        return note("sequenceFlatten", {i, o, nullptr, nullptr, nullptr});
    }
    PF_Err sequenceResetup(PF_InData* i, PF_OutData* o) override {
        return note("sequenceResetup", {i, o, nullptr, nullptr, nullptr});
    }
    PF_Err queryDynamicFlags(PF_InData* i, PF_OutData* o, PF_ParamDef** p, PF_LayerDef* w) override {
        return note("queryDynamicFlags", {i, o, p, w, nullptr});
    }
    PF_Err event(PF_InData* i, PF_OutData* o, PF_ParamDef** p, PF_LayerDef* w, void* e) override {
        return note("event", {i, o, p, w, e});
    }
    PF_Err arbitraryCallback(PF_InData* i, PF_OutData* o, PF_ParamDef** p, PF_LayerDef* w, void* e) override {
        return note("arbitraryCallback", {i, o, p, w, e});
    }

    std::string operation;
    Arguments arguments;

private:
    PF_Err note(const char* name, const Arguments& got) {
        operation += name;
        arguments = got;
        return 77;
    }
};

enum class Passes { kTwo, kFour, kFive, kExtra };

struct Row {
    const char* operation;
    Passes passes;
};

const std::map<PF_Cmd, Row> kTable = {
    {0, {"about", Passes::kFour}},
    {1, {"globalSetup", Passes::kFour}},
    {3, {"globalSetdown", Passes::kFour}},
    {4, {"paramsSetup", Passes::kFour}},
    {5, {"sequenceSetup", Passes::kTwo}},
    {6, {"sequenceResetup", Passes::kTwo}},
    {7, {"sequenceFlatten", Passes::kTwo}},
    {8, {"sequenceSetdown", Passes::kTwo}},
    {11, {"render", Passes::kFour}},
    {13, {"userChangedParam", Passes::kFive}},
    {14, {"updateParamsUI", Passes::kFour}},
    {15, {"event", Passes::kFive}},
    {18, {"queryDynamicFlags", Passes::kFour}},
    {22, {"arbitraryCallback", Passes::kFive}},
    {23, {"smartPreRender", Passes::kExtra}},
    {24, {"smartRender", Passes::kExtra}},
};

TEST(Dispatch, CallsTheOperationOfEachCommandWithItsArguments) {
    PF_InData in = {};
    PF_OutData out = {};
    PF_ParamDef* params[] = {nullptr};
    PF_LayerDef output = {};
    int extra = 0;
    for (const auto& [cmd, row] : kTable) {
        SCOPED_TRACE(cmd);
        NotingFilter filter;
        EXPECT_EQ(filter.dispatch(cmd, &in, &out, params, &output, &extra), 77);
        EXPECT_EQ(filter.operation, row.operation);
        NotingFilter::Arguments expected = {&in, &out, nullptr, nullptr, nullptr};
        if (row.passes == Passes::kFour || row.passes == Passes::kFive) {
            expected.params = params;
            expected.output = &output;
        }
        if (row.passes == Passes::kFive || row.passes == Passes::kExtra) {
            expected.extra = &extra;
        }
        EXPECT_TRUE(filter.arguments == expected);
    }
}

TEST(Dispatch, ReturnsZeroForEveryOtherCommand) {
    for (PF_Cmd cmd = -40; cmd <= 300; ++cmd) {
        if (kTable.count(cmd) == 0 && cmd != PF_Cmd_DO_DIALOG) {
            NotingFilter filter;
            EXPECT_EQ(filter.dispatch(cmd, nullptr, nullptr, nullptr, nullptr, nullptr), 0) << cmd;
            EXPECT_EQ(filter.operation, "") << cmd;
        }
    }
    NotingFilter filter;
    EXPECT_EQ(filter.dispatch(0x7fffffff, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(filter.dispatch(-0x7fffffff - 1, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(filter.operation, "");
}

TEST(Dispatch, OfTheEffectsOwnFilterIsTheSame) {
    PF_InData in = {};
    PF_OutData out = {};
    CustomFilter filter;
    EXPECT_EQ(filter.dispatch(PF_Cmd_GLOBAL_SETUP, &in, &out, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(out.my_version, 0x00080E08U);
    EXPECT_EQ(filter.dispatch(25, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
}

TEST(Dispatch, LeavesTheHostAloneWhereNothingIsToBeDone) {
    for (const PF_Cmd cmd : {2, 8, 10, 12, 13, 15, 16, 17, 18, 19, 20, 21, 22, 25, -1, 99}) {
        StubHost host;
        std::memset(static_cast<void*>(&host.out), 0x3c, sizeof host.out);
        const PF_OutData before = host.out;
        int extra = 0;
        EXPECT_EQ(EntryPointFunc(cmd, &host.in, &host.out, host.paramArray(), nullptr, &extra), 0) << cmd;
        EXPECT_EQ(std::memcmp(&host.out, &before, sizeof before), 0) << cmd;
        EXPECT_TRUE(host.calls.empty()) << cmd;
    }
}

TEST(BaseFilter, DoesNothingInItsEmptyOperations) {
    BaseFilter filter;
    RenderSettings settings;
    EXPECT_EQ(filter.globalSetdown(nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(filter.userChangedParam(nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(filter.queryDynamicFlags(nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(filter.event(nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(filter.arbitraryCallback(nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(filter.beforeRender(settings), 0);
    EXPECT_EQ(filter.firstCall(nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(filter.renderFrame(settings), 512);
}

TEST(BaseFilter, TakesSequenceDefaultsForASetup) {
    PF_InData in = {};
    PF_OutData out = {};
    NotingFilter filter;
    EXPECT_EQ(filter.sequenceDefault(&in, &out), 77);
    EXPECT_EQ(filter.operation, "sequenceSetup");
    EXPECT_EQ(filter.arguments.in, &in);
    EXPECT_EQ(filter.arguments.out, &out);
}

} // namespace
} // namespace kovalune::test
