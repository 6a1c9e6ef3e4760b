#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

namespace kovalune::test {
using namespace host;
namespace {

using Change = std::function<void(PF_ParamDef&)>;

/// Sends a changed copy of the array's entry as an answer to PF_Cmd_UPDATE_PARAMS_UI.
void update(Stage& stage, int index, const Change& change) {
    Session& session = stage.session();
    stage.script[PF_Cmd_UPDATE_PARAMS_UI] = [&](Call& c) -> PF_Err {
        const auto& suite = c.need<PFParamUtilsSuite1>(kPFParamUtilsSuite, kPFParamUtilsSuiteVersions[0]);
        PF_ParamDef copy = *c.params[index];
        change(copy);
        EXPECT_EQ(suite.PF_UpdateParamUI(c.ref(), index, &copy), PF_Err_NONE);
        c.release(kPFParamUtilsSuite, kPFParamUtilsSuiteVersions[0]);
        return PF_Err_NONE;
    };
    session.updateParamsUI();
}

std::size_t misuseAfter(int index, const Change& change) {
    Stage stage;
    update(stage, index, change);
    return stage.host.audit().misuse.size();
}

TEST(ParamUi, TheLookIsTaken) {
    Stage stage;
    update(stage, 2, [](PF_ParamDef& def) {
        def.ui_flags |= PF_PUI_ECW_SEPARATOR | PF_PUI_DISABLED;
        def.ui_width = 12;
        def.ui_height = 34;
        def.name[0] = 'a';
        def.flags |= PF_ParamFlag_COLLAPSE_TWIRLY;
        def.u.fs_d.slider_min = 1.0F;
        def.u.fs_d.slider_max = 9.0F;
        def.u.fs_d.precision = 3;
        def.u.fs_d.display_flags = 1;
    });
    const PF_ParamDef& kept = stage.session().params()[2];
    EXPECT_EQ(kept.ui_flags, PF_PUI_ECW_SEPARATOR | PF_PUI_DISABLED);
    EXPECT_EQ(kept.ui_width, 12);
    EXPECT_EQ(kept.ui_height, 34);
    EXPECT_STREQ(kept.name, "amount");
    EXPECT_EQ(kept.flags, PF_ParamFlag_COLLAPSE_TWIRLY);
    EXPECT_EQ(kept.u.fs_d.slider_min, 1.0F);
    EXPECT_EQ(kept.u.fs_d.slider_max, 9.0F);
    EXPECT_EQ(kept.u.fs_d.precision, 3);
    EXPECT_EQ(kept.u.fs_d.display_flags, 1);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(ParamUi, AnIntegerSliderHasLimitsToTakeToo) {
    Stage stage;
    update(stage, 1, [](PF_ParamDef& def) {
        def.u.sd.slider_min = 3;
        def.u.sd.slider_max = 30;
    });
    EXPECT_EQ(stage.session().params()[1].u.sd.slider_min, 3);
    EXPECT_EQ(stage.session().params()[1].u.sd.slider_max, 30);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(ParamUi, WhatItMayNotChangeIsNeitherTakenNorOverlooked) {
    Stage stage;
    update(stage, 1, [](PF_ParamDef& def) {
        def.uu.id = 99;
        def.ui_flags |= PF_PUI_INVISIBLE;
        def.flags |= PF_ParamFlag_SUPERVISE;
        def.u.sd.valid_max = 7;
        def.u.sd.dephault = 6;
    });
    const PF_ParamDef& kept = stage.session().params()[1];
    EXPECT_EQ(kept.uu.id, 11);
    EXPECT_EQ(kept.ui_flags, 0);
    EXPECT_EQ(kept.flags, 0);
    EXPECT_EQ(kept.u.sd.valid_max, 100);
    EXPECT_EQ(kept.u.sd.dephault, 5);
    EXPECT_EQ(stage.host.audit().misuse,
              std::vector<std::string>{"PF_UpdateParamUI changes more than the look of parameter 1"});
}

TEST(ParamUi, EachForbiddenChangeAloneIsMisuse) {
    EXPECT_EQ(misuseAfter(1, [](PF_ParamDef& def) { def.uu.id = 99; }), 1U);
    EXPECT_EQ(misuseAfter(1, [](PF_ParamDef& def) { def.ui_flags |= PF_PUI_TOPIC; }), 1U);
    EXPECT_EQ(misuseAfter(1, [](PF_ParamDef& def) { def.flags |= PF_ParamFlag_CANNOT_INTERP; }), 1U);
    EXPECT_EQ(misuseAfter(1, [](PF_ParamDef& def) { def.u.sd.value = 99; }), 1U);
    EXPECT_EQ(misuseAfter(2, [](PF_ParamDef& def) { def.u.fs_d.value = 99.0; }), 1U);
    EXPECT_EQ(misuseAfter(2, [](PF_ParamDef& def) { def.u.fs_d.valid_min = -1.0F; }), 1U);
    EXPECT_EQ(misuseAfter(3, [](PF_ParamDef& def) { def.u.bd.value = 0; }), 1U);
    EXPECT_EQ(misuseAfter(4, [](PF_ParamDef& def) { def.u.cd.value.red = 77; }), 1U);
    EXPECT_EQ(misuseAfter(5, [](PF_ParamDef& def) { def.u.pd.num_choices = 2; }), 1U);
    EXPECT_EQ(misuseAfter(6, [](PF_ParamDef& def) { def.param_type = PF_Param_GROUP_END; }), 1U);
    EXPECT_EQ(misuseAfter(0, [](PF_ParamDef& def) { def.u.ld.width = 5; }), 1U);
}

TEST(ParamUi, GreyingAPrivateCopyIsNoMisuseForAnyParameter) {
    Stage stage;
    stage.session().setKey(1, 0, A_long{10}); // the array shows values, not defaults
    for (int index = 0; index < 8; ++index) {
        update(stage, index, [](PF_ParamDef& def) { def.ui_flags |= PF_PUI_DISABLED; });
        update(stage, index, [](PF_ParamDef& def) { def.ui_flags &= ~PF_PUI_DISABLED; });
    }
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(ParamUi, TheInputLayerMayHoldAnything) {
    Stage stage;
    stage.host.options().firstLayerWord = 0x1234;
    update(stage, 0, [](PF_ParamDef& def) { def.ui_flags |= PF_PUI_DISABLED; });
    EXPECT_FALSE(stage.session().enabled(0));
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

// The entry is compared with what the effect was shown, so a change of the caller's meanwhile is no misuse.
TEST(ParamUi, AValueChangedDuringTheCommandIsNotTheEffectsDoing) {
    Stage stage;
    Session& session = stage.session();
    update(stage, 1, [&session](PF_ParamDef&) { session.setValue(1, A_long{42}); });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(ParamUi, ACheckedOutDefinitionServesWhereThereIsNoArray) {
    Stage stage;
    stage.script[PF_Cmd_SMART_PRE_RENDER] = [](Call& c) -> PF_Err {
        const auto& suite = c.need<PFParamUtilsSuite1>(kPFParamUtilsSuite, kPFParamUtilsSuiteVersions[0]);
        PF_ParamDef def{};
        c.in.inter.checkout_param(c.ref(), 1, c.in.current_time, c.in.time_step, c.in.time_scale, &def);
        PF_ParamDef copy = def;
        copy.ui_flags |= PF_PUI_DISABLED;
        EXPECT_EQ(suite.PF_UpdateParamUI(c.ref(), 1, &copy), PF_Err_NONE);
        c.in.inter.checkin_param(c.ref(), &def);
        c.release(kPFParamUtilsSuite, kPFParamUtilsSuiteVersions[0]);
        return 1;
    };
    stage.session().setKey(1, 0, A_long{1});
    stage.session().setKey(1, 9, A_long{2});
    RenderRequest request;
    request.time = 9;
    Image output;
    stage.session().render(patterned(PF_PixelFormat_ARGB32, 2, 2), output, request);
    EXPECT_FALSE(stage.session().enabled(1));
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

} // namespace
} // namespace kovalune::test
