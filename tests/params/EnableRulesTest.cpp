#include "effect/params/EnableRules.h"
#include "effect/share/HostCode.h"
#include "tests/params/ExpectedTable.h"
#include "tests/params/RegisteredTable.h"

#include <cstring>
#include <gtest/gtest.h>
#include <initializer_list>
#include <random>
#include <utility>

namespace kovalune::test {
namespace {

/// The effect's parameters in a host, with every switch off and an input layer whose first word is not 0.
class UiHost : public StubHost {
public:
    UiHost() {
        EXPECT_EQ(registerTable(*this, nullptr), 0);
        calls.clear();
        callTexts.clear();
        for (const ExpectedParam& row : expectedTable()) {
            if (row.type == PF_Param_CHECKBOX) {
                setWord(row.index, 0);
            }
        }
        setWord(0, 1);
    }

    void setWord(int index, int32_t word) {
        std::memcpy(&params.at(static_cast<std::size_t>(index)).u, &word, sizeof word);
    }
    int32_t word(int index) const {
        int32_t word = 0;
        std::memcpy(&word, &params.at(static_cast<std::size_t>(index)).u, sizeof word);
        return word;
    }
    void turnOn(std::initializer_list<const char*> labels) {
        for (const char* label : labels) {
            setWord(expectedParam(label).index, 1);
        }
    }
    void update() { EXPECT_EQ(updateParamEnables(&in, paramArray()), 0); }

    /// What the last update of this control says.
    bool available(const std::string& label) const {
        const int index = expectedParam(label).index;
        bool found = false;
        bool enabled = true;
        for (const UiUpdate& update : uiUpdates) {
            if (update.index == index) {
                found = true;
                enabled = (update.def.ui_flags & PF_PUI_DISABLED) == 0;
            }
        }
        EXPECT_TRUE(found || label.find("Enable") != std::string::npos) << label;
        return enabled;
    }
};

using Update = std::pair<int, bool>; // index, enabled

int indexOf(int id) {
    for (const ExpectedParam& row : expectedTable()) {
        if (row.id == id) {
            return row.index;
        }
    }
    return 0;
}

/// The calls that the rules ask for, written rule by rule over plain ids.
std::vector<Update> expectedUpdates(const UiHost& host) {
    const auto on = [&host](int id) { return host.word(indexOf(id)) != 0; };
    std::vector<Update> updates;
    for (int g = 50; g <= 250; g += 50) {
        for (const int id : {g + 3, g + 4, g + 5, g + 7, g + 8, g + 6}) {
            updates.emplace_back(indexOf(id), on(g + 2));
        }
        for (int id = g + 9; id <= g + 22; ++id) {
            updates.emplace_back(indexOf(id), on(g + 2));
        }
    }
    const bool p1 = on(102);
    const bool p2 = on(152);
    const bool p3 = on(202);
    const bool p4 = on(252);
    updates.emplace_back(29 + 7, p1 && p2);
    updates.emplace_back(39 + 7, (p1 || p2) && p3);
    updates.emplace_back(49 + 7, (p1 || p2 || p3) && p4);
    const int switches[5][4] = {{61, 64, 67, 70},
                                {111, 114, 117, 120},
                                {161, 164, 167, 170},
                                {211, 214, 217, 220},
                                {261, 264, 267, 270}};
    const int masters[5] = {52, 102, 152, 202, 252};
    for (int group = 0; group < 5; ++group) {
        for (const int id : switches[group]) {
            const bool enabled = on(id) && on(masters[group]);
            updates.emplace_back(indexOf(id + 1), enabled);
            updates.emplace_back(indexOf(id + 2), enabled);
        }
    }
    return updates;
}

std::vector<Update> updatesOf(const UiHost& host) {
    std::vector<Update> updates;
    for (const StubHost::UiUpdate& update : host.uiUpdates) {
        updates.emplace_back(update.index, (update.def.ui_flags & PF_PUI_DISABLED) == 0);
    }
    return updates;
}

TEST(EnableRules, MakeTheirCallsInOrderForAnySettings) {
    std::mt19937 random(11);
    const int32_t words[] = {0, 0, 1, 256, -0x7fffffff - 1};
    for (int round = 0; round < 400; ++round) {
        UiHost host;
        for (int index = 0; index < 58; ++index) {
            host.setWord(index, words[random() % 5]);
            host.params[static_cast<std::size_t>(index)].ui_flags = static_cast<A_long>(random() & 0x3ffU);
        }
        const std::vector<Update> expected = expectedUpdates(host);
        ASSERT_EQ(expected.size(), 143U);
        host.update();
        ASSERT_EQ(updatesOf(host), expected) << "round " << round;
    }
}

TEST(EnableRules, ChangeNothingButTheBitOfACopy) {
    UiHost host;
    host.turnOn({"1 : Enable Process", "Enable 2"});
    for (PF_ParamDef& def : host.params) {
        def.ui_flags = PF_PUI_TOPIC | PF_PUI_INVISIBLE | PF_PUI_DISABLED;
    }
    const std::vector<PF_ParamDef> before = host.params;
    host.update();
    EXPECT_EQ(std::memcmp(host.params.data(), before.data(), before.size() * sizeof(PF_ParamDef)), 0);
    for (const StubHost::UiUpdate& update : host.uiUpdates) {
        PF_ParamDef sent = update.def;
        EXPECT_EQ(sent.ui_flags & ~PF_PUI_DISABLED, PF_PUI_TOPIC | PF_PUI_INVISIBLE);
        sent.ui_flags = before[0].ui_flags;
        const PF_ParamDef& original = before[static_cast<std::size_t>(update.index)];
        EXPECT_EQ(std::memcmp(&sent, &original, sizeof sent), 0) << update.index;
    }
}

TEST(EnableRules, HoldTheSuiteForOneCommand) {
    UiHost host;
    host.update();
    EXPECT_EQ(host.callTexts.front(), "AcquireSuite " + kParamUtilsSuiteText);
    EXPECT_EQ(host.callTexts.back(), "ReleaseSuite " + kParamUtilsSuiteText);
    EXPECT_EQ(host.count("AcquireSuite"), 1);
    EXPECT_EQ(host.count("PF_UpdateParamUI"), 143);
}

TEST(EnableRules, IgnoreTheHostsFailures) {
    UiHost host;
    host.failAll("PF_UpdateParamUI", 513);
    host.update();
    EXPECT_EQ(host.count("PF_UpdateParamUI"), 143);
}

TEST(EnableRules, ThrowNeitherALongNorAStandardExceptionWithoutTheSuite) {
    for (const bool empty : {false, true}) {
        UiHost host;
        (empty ? host.emptySuites : host.missingSuites) = {kParamUtilsSuiteText};
        std::string thrown;
        try {
            ignored(updateParamEnables(&host.in, host.paramArray()));
        } catch (long) {
            thrown = "long";
        } catch (const std::exception&) {
            thrown = "standard";
        } catch (...) {
            thrown = "other";
        }
        EXPECT_EQ(thrown, "other");
        EXPECT_TRUE(host.uiUpdates.empty());
        EXPECT_EQ(host.count("ReleaseSuite"), 0);
    }
}

TEST(EnableRules, TestTheFirst32BitsOfTheLayerAlone) {
    UiHost host;
    host.turnOn({"Enable 1"});
    std::memset(&host.params[0].u, 0xff, sizeof host.params[0].u);
    host.setWord(0, 0);
    host.update();
    EXPECT_FALSE(host.available("Color 1"));
    EXPECT_FALSE(host.available("Blur Amount"));
}

TEST(EnableRules, GreyOutKeepProcessOfTheFirstStageInUse) {
    UiHost host;
    host.turnOn({"2 : Enable Process"});
    host.update();
    EXPECT_FALSE(host.available("2 : Keep Process"));
    EXPECT_TRUE(host.available("2 : Boundary Blur"));
}

TEST(EnableRules, OfferKeepProcessBehindAnyEarlierStage) {
    {
        UiHost host;
        host.turnOn({"2 : Enable Process", "3 : Enable Process"});
        host.update();
        EXPECT_TRUE(host.available("3 : Keep Process"));
        EXPECT_FALSE(host.available("4 : Keep Process"));
    }
    for (const char* earlier : {"1 : Enable Process", "2 : Enable Process", "3 : Enable Process"}) {
        UiHost host;
        host.turnOn({earlier, "4 : Enable Process"});
        host.update();
        EXPECT_TRUE(host.available("4 : Keep Process")) << earlier;
    }
}

TEST(EnableRules, GreyOutAColourWithItsSwitchButNotTheSwitch) {
    UiHost host;
    host.turnOn({"Enable 1"});
    host.update();
    EXPECT_TRUE(host.available("Color 1"));
    EXPECT_TRUE(host.available("Color 1 Range"));
    EXPECT_FALSE(host.available("Color 2"));
    EXPECT_FALSE(host.available("Color 2 Range"));
    EXPECT_TRUE(host.available("Enable 2"));
}

TEST(EnableRules, GreyOutAWholeGroupButItsSwitch) {
    UiHost host;
    host.turnOn({"1 : Enable Process"});
    host.update();
    for (const char* label : {"3 : Color", "3 : Color Range", "3 : Boundary Blur", "3 : Blur Repeat Num",
                              "3 : Boundary Bias", "3 : Keep Division", "3 : Keep Process"}) {
        EXPECT_FALSE(host.available(label)) << label;
    }
    EXPECT_TRUE(host.available("3 : Enable Process"));
    for (const char* label : {"1 : Color", "1 : Color Range", "1 : Boundary Blur", "1 : Blur Repeat Num",
                              "1 : Boundary Bias", "1 : Keep Division"}) {
        EXPECT_TRUE(host.available(label)) << label;
    }
}

TEST(EnableRules, GreyOutTheBaseGroupAndColoursOnALayerThatReadsZero) {
    UiHost host;
    host.setWord(0, 0);
    host.turnOn({"Enable 1", "1 : Enable Process"});
    host.update();
    for (const char* label : {"Blur Amount", "Blur Repeat Num", "Keep Division", "Color 1", "Color 1 Range",
                              "1 : Color", "1 : Color Range"}) {
        EXPECT_FALSE(host.available(label)) << label;
    }
    EXPECT_TRUE(host.available("1 : Boundary Blur"));
}

} // namespace
} // namespace kovalune::test
