#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kovalune::test {
using namespace host;
namespace {

int countCalls(const judge::JudgedHost& host, const std::string& call, const std::string& arguments) {
    const std::vector<judge::CallRecord> calls = host.calls();
    return static_cast<int>(std::count(calls.begin(), calls.end(), judge::CallRecord{call, arguments}));
}

TEST(Suite, TheSixSuitesAreFound) {
    Stage stage;
    stage.during([](Call& c) {
        const auto present = [&c](const char* name, int32_t version) {
            const bool found = c.acquire<void*>(name, version) != nullptr;
            if (found) {
                c.release(name, version);
            }
            return found;
        };
        EXPECT_TRUE(present(kPFWorldSuite, 1));
        EXPECT_TRUE(present(kPFWorldSuite, 2));
        EXPECT_TRUE(present(kPFWorldTransformSuite, 1));
        EXPECT_TRUE(present(kPFFillMatteSuite, kPFFillMatteSuiteVersions[0]));
        EXPECT_TRUE(present(kPFHandleSuite, kPFHandleSuiteVersions[0]));
        EXPECT_TRUE(present(kPFParamUtilsSuite, kPFParamUtilsSuiteVersions[0]));
        EXPECT_FALSE(present(kPFWorldSuite, 3));
        EXPECT_NE(present(kPFHandleSuite, 1), present(kPFHandleSuite, 2));
        EXPECT_FALSE(present("PF Unheard Suite", 1));
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Suite, EveryVersionIsFoundWhereTheHostIsToldSo) {
    judge::JudgeOptions options = Stage::audited();
    options.everySuiteVersion = true;
    options.withheldSuites = {{kPFParamUtilsSuite, 2}};
    Stage stage(options);
    stage.during([](Call& c) {
        const auto present = [&c](const char* name, int32_t version) {
            const bool found = c.acquire<void*>(name, version) != nullptr;
            if (found) {
                c.release(name, version);
            }
            return found;
        };
        for (const int32_t version : {1, 2}) {
            EXPECT_TRUE(present(kPFFillMatteSuite, version));
            EXPECT_TRUE(present(kPFHandleSuite, version));
        }
        EXPECT_TRUE(present(kPFParamUtilsSuite, 1));
        EXPECT_FALSE(present(kPFParamUtilsSuite, 2)); // withheld
        EXPECT_TRUE(present(kPFParamUtilsSuite, 3));
        EXPECT_FALSE(present(kPFHandleSuite, 3));
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Suite, AWithheldSuiteIsMissingAndTheOtherVersionIsNot) {
    judge::JudgeOptions options = Stage::audited();
    options.withheldSuites = {{"PF World Suite", 2}};
    Stage stage(options);
    stage.during([](Call& c) {
        EXPECT_EQ(c.acquire<PFWorldSuite2>(kPFWorldSuite, 2), nullptr);
        EXPECT_NE(c.acquire<PFWorldSuite1>(kPFWorldSuite, 1), nullptr);
        c.release(kPFWorldSuite, 1);
        return PF_Err_NONE;
    });
}

TEST(Suite, AcquireAndReleaseAreCountedAndLogged) {
    Stage stage;
    stage.session();
    stage.host.clearCalls();
    stage.during([](Call& c) {
        c.acquire<PFHandleSuite1>(kPFHandleSuite, kPFHandleSuiteVersions[0]);
        c.acquire<PFHandleSuite1>(kPFHandleSuite, kPFHandleSuiteVersions[0]);
        c.release(kPFHandleSuite, kPFHandleSuiteVersions[0]);
        return PF_Err_NONE;
    });
    const std::string handles = "PF Handle Suite " + std::to_string(kPFHandleSuiteVersions[0]);
    EXPECT_EQ(stage.host.audit().liveSuites, 1);
    EXPECT_EQ(countCalls(stage.host, "AcquireSuite", handles), 2);
    EXPECT_EQ(countCalls(stage.host, "ReleaseSuite", handles), 1);
}

TEST(Suite, ReleaseOfASuiteNotAcquiredIsMisuse) {
    Stage stage;
    stage.during([](Call& c) {
        EXPECT_NE(c.in.pica_basicP->ReleaseSuite(kPFHandleSuite, kPFHandleSuiteVersions[0]), 0);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
    EXPECT_EQ(stage.host.audit().liveSuites, 0);
}

TEST(Suite, CopyHqAndCopyAreToldApartInTheLog) {
    Stage stage;
    stage.during([](Call& c) {
        const auto& suite = c.need<PFWorldTransformSuite1>(kPFWorldTransformSuite, 1);
        PF_EffectWorld a{};
        PF_EffectWorld b{};
        c.utils().new_world(c.ref(), 2, 2, PF_NewWorldFlag_CLEAR_PIXELS, &a);
        c.utils().new_world(c.ref(), 2, 2, PF_NewWorldFlag_CLEAR_PIXELS, &b);
        worldRow(a, 1)[7] = std::byte{9};
        EXPECT_EQ(suite.copy_hq(c.ref(), &a, &b, nullptr, nullptr), PF_Err_NONE);
        EXPECT_EQ(worldRow(b, 1)[7], std::byte{9});
        EXPECT_EQ(suite.copy(c.ref(), &b, &a, nullptr, nullptr), PF_Err_NONE);
        c.utils().dispose_world(c.ref(), &a);
        c.utils().dispose_world(c.ref(), &b);
        c.release(kPFWorldTransformSuite, 1);
        return PF_Err_NONE;
    });
    EXPECT_EQ(countCalls(stage.host, "copy_hq", "suite 2x2 2x2"), 1);
    EXPECT_EQ(countCalls(stage.host, "copy", "suite 2x2 2x2"), 1);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Suite, FillOfTheFillMatteSuiteFills) {
    Stage stage;
    stage.during([](Call& c) {
        const auto& suite = c.need<PFFillMatteSuite1>(kPFFillMatteSuite, kPFFillMatteSuiteVersions[0]);
        PF_EffectWorld world{};
        c.utils().new_world(c.ref(), 1, 1, PF_NewWorldFlag_CLEAR_PIXELS, &world);
        const PF_Pixel colour{4, 3, 2, 1};
        EXPECT_EQ(suite.fill(c.ref(), &colour, nullptr, &world), PF_Err_NONE);
        EXPECT_EQ(worldRow(world, 0)[0], std::byte{4});
        EXPECT_EQ(suite.premultiply(c.ref(), 1, &world), PF_Err_INVALID_CALLBACK);
        c.utils().dispose_world(c.ref(), &world);
        c.release(kPFFillMatteSuite, kPFFillMatteSuiteVersions[0]);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U); // premultiply
}

TEST(Suite, HandleSuiteAndCallbacksShareTheirHandles) {
    Stage stage;
    stage.during([](Call& c) {
        const auto& suite = c.need<PFHandleSuite1>(kPFHandleSuite, kPFHandleSuiteVersions[0]);
        PF_Handle handle = suite.host_new_handle(12);
        EXPECT_EQ(c.utils().host_get_handle_size(handle), 12U);
        c.utils().host_dispose_handle(handle);
        c.release(kPFHandleSuite, kPFHandleSuiteVersions[0]);
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Suite, UpdateParamUiGreysAndRenamesAParameter) {
    Stage stage;
    stage.session();
    stage.script[PF_Cmd_UPDATE_PARAMS_UI] = [](Call& c) -> PF_Err {
        const auto& suite = c.need<PFParamUtilsSuite1>(kPFParamUtilsSuite, kPFParamUtilsSuiteVersions[0]);
        PF_ParamDef copy = *c.params[1];
        copy.ui_flags |= PF_PUI_DISABLED;
        copy.name[0] = 'c';
        EXPECT_EQ(suite.PF_UpdateParamUI(c.ref(), 1, &copy), PF_Err_NONE);
        EXPECT_EQ(suite.PF_UpdateParamUI(c.ref(), 8, &copy), PF_Err_INVALID_INDEX);
        EXPECT_EQ(suite.PF_UpdateParamUI(c.ref(), 0, c.params[0]), PF_Err_NONE);
        c.release(kPFParamUtilsSuite, kPFParamUtilsSuiteVersions[0]);
        return PF_Err_NONE;
    };
    EXPECT_TRUE(stage.session().enabled(1));
    stage.session().updateParamsUI();
    EXPECT_FALSE(stage.session().enabled(1));
    EXPECT_TRUE(stage.session().enabled(2));
    EXPECT_STREQ(stage.session().params()[1].name, "count");
    EXPECT_EQ(std::get<A_long>(stage.session().value(1)), 5);
    EXPECT_EQ(countCalls(stage.host, "PF_UpdateParamUI", "1 disabled"), 1);
}

TEST(Suite, ANullBasicSuiteReachesTheEffect) {
    judge::JudgeOptions options = Stage::audited();
    options.nullBasicSuite = true;
    Stage stage(options);
    bool null = false;
    stage.during([&](Call& c) {
        null = c.in.pica_basicP == nullptr;
        return PF_Err_NONE;
    });
    EXPECT_TRUE(null);
}

TEST(Suite, IsEqualComparesTexts) {
    Stage stage;
    stage.during([](Call& c) {
        EXPECT_NE(c.in.pica_basicP->IsEqual("a", "a"), 0);
        EXPECT_EQ(c.in.pica_basicP->IsEqual("a", "b"), 0);
        return PF_Err_NONE;
    });
}

} // namespace
} // namespace kovalune::test
