#include "effect/params/ReadOut.h"
#include "tests/params/ExpectedTable.h"
#include "tests/params/RegisteredTable.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

namespace kovalune::test {
namespace {

/// The effect's parameters in a host, each at its default.
struct HostWithTable : StubHost {
    HostWithTable() {
        EXPECT_EQ(registerTable(*this, nullptr), 0);
        calls.clear();
        callTexts.clear();
    }
    PF_ParamDef& param(const std::string& label) {
        return params.at(static_cast<std::size_t>(expectedParam(label).index));
    }
    PF_Err read(RenderSettings* record) {
        GetParamByCheckout getter(&in, nullptr, true);
        return readParameters(record, getter);
    }
};

TEST(ReadOut, GivesTheDefaults) {
    HostWithTable host;
    RenderSettings record;
    ASSERT_EQ(record.stages[0].colors[1].enable, 1);
    ASSERT_EQ(host.read(&record), 0);
    EXPECT_EQ(record.view, 1);
    EXPECT_EQ(record.stages[0].blurAmount, 10.0);
    EXPECT_EQ(record.stages[0].repeat, 5);
    EXPECT_EQ(record.stages[0].keepDivision, 1);
    EXPECT_EQ(record.stages[0].enableProcess, 1);
    const int enables[] = {1, 0, 0, 0};
    for (int entry = 0; entry < 4; ++entry) {
        const ColorEntry& color = record.stages[0].colors[entry];
        EXPECT_EQ(color.enable, enables[entry]) << entry;
        EXPECT_EQ(color.range, 0.0);
        EXPECT_EQ(color.color.alpha, 255);
        EXPECT_EQ(color.color.red, 3);
        EXPECT_EQ(color.color.green, 180);
        EXPECT_EQ(color.color.blue, 245);
    }
    for (int n = 1; n <= 4; ++n) {
        SCOPED_TRACE(n);
        const StageSettings& stage = record.stages[n];
        EXPECT_EQ(stage.enableProcess, n == 1 ? 1 : 0);
        EXPECT_EQ(stage.colors[0].color.red, 3);
        EXPECT_EQ(stage.colors[0].range, 0.0);
        EXPECT_EQ(stage.boundaryBlur, 10.0);
        EXPECT_EQ(stage.repeat, 5);
        EXPECT_EQ(stage.boundaryBias, 0.0);
        EXPECT_EQ(stage.keepDivision, 1);
        EXPECT_EQ(stage.keepProcess, n == 1 ? 0 : 1);
        EXPECT_EQ(stage.colors[0].enable, n == 1 ? 1 : 0);
        EXPECT_EQ(stage.colors[1].enable, n == 1 ? 1 : 0);
    }
}

TEST(ReadOut, CopiesTheFirstBytesOfEachValueToItsFieldAlone) {
    HostWithTable host;
    std::mt19937 random(7);
    for (PF_ParamDef& def : host.params) {
        unsigned char bytes[16];
        for (unsigned char& byte : bytes) {
            byte = static_cast<unsigned char>(random());
        }
        std::memcpy(&def.u, bytes, sizeof bytes);
    }
    RenderSettings record;
    std::memset(static_cast<void*>(&record), 0xAB, sizeof record);
    ASSERT_EQ(host.read(&record), 0);

    std::vector<unsigned char> expected(sizeof record, 0xAB);
    for (const ExpectedParam& row : expectedTable()) {
        const PF_ParamDef& def = host.params[static_cast<std::size_t>(row.index)];
        if (row.fieldWidth != 0) {
            std::memcpy(expected.data() + row.fieldPlace, &def.u, row.fieldWidth);
        }
    }
    EXPECT_EQ(std::memcmp(&record, expected.data(), expected.size()), 0);
}

TEST(ReadOut, TakesTheLowByteOfACheckBox) {
    HostWithTable host;
    host.param("Enable 1").u.bd.value = 256;
    host.param("Keep Division").u.bd.value = 257;
    RenderSettings record;
    ASSERT_EQ(host.read(&record), 0);
    EXPECT_EQ(record.stages[0].colors[0].enable, 0);
    EXPECT_EQ(record.stages[0].keepDivision, 1);
    EXPECT_EQ(record.stages[0].colors[0].color.alpha, 255); // its neighbours stay
}

TEST(ReadOut, KeepsTheAlphaOfAColour) {
    HostWithTable host;
    host.param("Color 3").u.cd.value = {9, 8, 7, 6};
    RenderSettings record;
    ASSERT_EQ(host.read(&record), 0);
    EXPECT_EQ(record.stages[0].colors[2].color.alpha, 9);
    EXPECT_EQ(record.stages[0].colors[2].color.blue, 6);
}

TEST(ReadOut, ScalesNothing) {
    HostWithTable host;
    host.in.downsample_x = {1, 4};
    host.param("Color 1 Range").u.fs_d.value = 99.5;
    host.param("2 : Boundary Blur").u.fs_d.value = 1000.0;
    RenderSettings record;
    ASSERT_EQ(host.read(&record), 0);
    EXPECT_EQ(record.stages[0].colors[0].range, 99.5);
    EXPECT_EQ(record.stages[2].boundaryBlur, 1000.0);
}

TEST(ReadOut, ReadsGreyedOutControlsToo) {
    HostWithTable host;
    for (PF_ParamDef& def : host.params) {
        def.ui_flags = PF_PUI_DISABLED;
    }
    host.param("4 : Blur Repeat Num").u.sd.value = 9;
    RenderSettings record;
    ASSERT_EQ(host.read(&record), 0);
    EXPECT_EQ(record.stages[4].repeat, 9);
}

TEST(ReadOut, AsksForEveryValueInTheHostsOrder) {
    HostWithTable host;
    host.in.current_time = 5;
    host.in.time_step = 2;
    host.in.time_scale = 30;
    RenderSettings record;
    ASSERT_EQ(host.read(&record), 0);
    std::vector<std::string> expected;
    for (const ExpectedParam& row : expectedTable()) {
        if (row.fieldWidth != 0) {
            expected.push_back("checkout_param " + std::to_string(row.index) + " 5 2 30");
        }
    }
    EXPECT_EQ(expected.size(), 47U);
    EXPECT_EQ(host.callTexts, expected);
}

TEST(ReadOut, WithoutARecordChangesTheParameterObjectsAlone) {
    HostWithTable host;
    host.param("Blur Repeat Num").u.sd.value = 8;
    ASSERT_EQ(host.read(nullptr), 0);
    EXPECT_EQ(builtTable().findById(55)->def.u.sd.value, 8);
}

TEST(ReadOut, StopsAtTheFirstFailure) {
    HostWithTable host;
    host.param("Blur Repeat Num").u.sd.value = 8;
    host.fault = [](const std::string& call, int nth) {
        return call == "checkout_param" && nth == 3 ? PF_Err{517} : PF_Err{0};
    };
    RenderSettings record;
    EXPECT_EQ(host.read(&record), 517); // the third is "Blur Repeat Num"
    EXPECT_EQ(host.count("checkout_param"), 3);
    EXPECT_EQ(record.stages[0].blurAmount, 10.0);
    EXPECT_EQ(record.stages[0].repeat, 0);
    EXPECT_EQ(builtTable().findById(55)->def.u.sd.value, 0);
    EXPECT_EQ(builtTable().findById(55)->def.param_type, 0);
}

TEST(ReadOut, FromAnArrayNeedsNoHostCall) {
    HostWithTable host;
    host.param("View").u.pd.value = 4;
    GetParamFromArray getter(host.paramArray());
    RenderSettings record;
    EXPECT_EQ(readParameters(&record, getter), 0);
    EXPECT_EQ(record.view, 4);
    EXPECT_EQ(giveBackParameters(getter), 0);
    EXPECT_TRUE(host.calls.empty());
}

TEST(GiveBack, ReturnsEveryValueInTheHostsOrder) {
    HostWithTable host;
    GetParamByCheckout getter(&host.in, nullptr, false);
    EXPECT_EQ(giveBackParameters(getter), 0);
    std::vector<PF_ParamDef*> expected;
    for (BaseParam* const param : builtTable().byIndex()) {
        if (param != nullptr && param->fieldWidth != 0) {
            expected.push_back(&param->def);
        }
    }
    EXPECT_EQ(expected.size(), 47U);
    EXPECT_EQ(host.checkedIn, expected);
}

TEST(GiveBack, StopsAtTheFirstFailure) {
    HostWithTable host;
    host.fault = [](const std::string& call, int nth) {
        return call == "checkin_param" && nth == 5 ? PF_Err{516} : PF_Err{0};
    };
    GetParamByCheckout getter(&host.in, nullptr, false);
    EXPECT_EQ(giveBackParameters(getter), 516);
    EXPECT_EQ(host.count("checkin_param"), 5);
}

TEST(ParameterCheckout, GivesBackOnceAndTellsHowItWent) {
    HostWithTable host;
    GetParamByCheckout getter(&host.in, nullptr, false);
    RenderSettings record;
    {
        ParameterCheckout checkout(getter);
        EXPECT_EQ(checkout.readInto(record), 0);
        EXPECT_EQ(host.count("checkin_param"), 0);
        EXPECT_EQ(checkout.giveBack(), 0);
        EXPECT_EQ(host.count("checkin_param"), host.count("checkout_param"));
    }
    EXPECT_EQ(host.count("checkin_param"), host.count("checkout_param"));
    host.failAll("checkin_param", 516);
    ParameterCheckout failing(getter);
    EXPECT_EQ(failing.giveBack(), 516);
}

TEST(ParameterCheckout, GivesBackWhereAnExceptionLeavesItsScope) {
    HostWithTable host;
    GetParamByCheckout getter(&host.in, nullptr, false);
    RenderSettings record;
    try {
        ParameterCheckout checkout(getter);
        EXPECT_EQ(checkout.readInto(record), 0);
        throw 5L;
    } catch (long code) {
        EXPECT_EQ(code, 5);
    }
    EXPECT_EQ(host.count("checkin_param"), host.count("checkout_param"));
}

TEST(ParameterCheckout, SwallowsAnExceptionOfTheGiveBackBehindAnother) {
    HostWithTable host;
    GetParamByCheckout getter(&host.in, nullptr, false);
    host.fault = [](const std::string& call, int) -> PF_Err {
        if (call == "checkin_param") {
            throw 516L;
        }
        return 0;
    };
    try {
        const ParameterCheckout checkout(getter);
        throw 5L;
    } catch (long code) {
        EXPECT_EQ(code, 5);
    }
}

} // namespace
} // namespace kovalune::test
