// What a definition holds beyond the effect's own table: the parts that the table leaves at their zero.

#include "effect/params/ParamTypes.h"
#include "effect/params/ParamRegistry.h"
#include "tests/frame/StubHost.h"

#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

using test::StubHost;

TEST(ParamAddFloatSlider, AsksForAPhaseWhereItWantsOne) {
    StubHost host;
    const PF_ParamDef pattern = {};
    ParamAddFloatSlider with({}, "With", &pattern, {-1, 2, -3, 4, 0.5F, 2, 3, true});
    ParamAddFloatSlider without({}, "Without", &pattern, {-1, 2, -3, 4, 0.5F, 2, 3, false});
    EXPECT_EQ(with.addToHost(&host.in, 7, nullptr), 0);
    EXPECT_EQ(without.addToHost(&host.in, 8, nullptr), 0);
    EXPECT_EQ(host.params.at(1).u.fs_d.fs_flags, A_u_long{PF_FSliderFlag_WANT_PHASE});
    EXPECT_EQ(host.params.at(2).u.fs_d.fs_flags, 0U);
    const PF_FloatSliderDef& slider = host.params[1].u.fs_d;
    EXPECT_EQ(slider.valid_min, -1.0F);
    EXPECT_EQ(slider.valid_max, 2.0F);
    EXPECT_EQ(slider.slider_min, -3.0F);
    EXPECT_EQ(slider.slider_max, 4.0F);
    EXPECT_EQ(slider.value, 0.5);
    EXPECT_EQ(slider.dephault, 0.5F);
    EXPECT_EQ(slider.precision, 2);
    EXPECT_EQ(slider.display_flags, 3);
}

TEST(ParamAddSlider, TakesItsLimitsFromItsConstruction) {
    StubHost host;
    PF_ParamDef pattern = {};
    pattern.u.sd.value_str[0] = 'x';
    pattern.u.sd.value_desc[0] = 'x';
    ParamAddSlider param({}, "Slider", &pattern, {-100, 200, -30, 40, -7});
    EXPECT_EQ(param.addToHost(&host.in, 7, nullptr), 0);
    const PF_SliderDef& slider = host.params.at(1).u.sd;
    EXPECT_EQ(slider.valid_min, -100);
    EXPECT_EQ(slider.valid_max, 200);
    EXPECT_EQ(slider.slider_min, -30);
    EXPECT_EQ(slider.slider_max, 40);
    EXPECT_EQ(slider.value, -7);
    EXPECT_EQ(slider.dephault, -7);
    EXPECT_STREQ(slider.value_str, "");
    EXPECT_STREQ(slider.value_desc, "");
}

TEST(ParamAddCheckbox, AddsItsFlagsToTheTemplates) {
    StubHost host;
    PF_ParamDef pattern = {};
    pattern.flags = PF_ParamFlag_COLLAPSE_TWIRLY;
    ParamAddCheckbox param({}, "Box", &pattern, "beside", -1, PF_ParamFlag_SUPERVISE);
    EXPECT_EQ(param.addToHost(&host.in, 7, nullptr), 0);
    const PF_ParamDef& def = host.params.at(1);
    EXPECT_EQ(def.flags, PF_ParamFlag_COLLAPSE_TWIRLY | PF_ParamFlag_SUPERVISE);
    EXPECT_EQ(def.u.bd.value, -1);
    EXPECT_EQ(static_cast<signed char>(def.u.bd.dephault), -1);
    EXPECT_STREQ(def.u.bd.u.nameptr, "beside");
}

TEST(ParamAddColor, ForcesTheAlpha) {
    StubHost host;
    ParamAddColor param({}, "Color", nullptr, PF_Pixel{7, 1, 2, 3});
    EXPECT_EQ(param.addToHost(&host.in, 7, nullptr), 0);
    EXPECT_EQ(host.params.at(1).u.cd.value.alpha, 255);
    EXPECT_EQ(host.params.at(1).u.cd.dephault.alpha, 255);
    EXPECT_EQ(host.params.at(1).u.cd.dephault.blue, 3);
}

TEST(ParamAddPopup, HandsItsChoicesOnAsTheyStand) {
    StubHost host;
    ParamAddPopup param({}, "Popup", nullptr, 3, 2, "a|b|c");
    EXPECT_EQ(param.addToHost(&host.in, 7, nullptr), 0);
    const PF_PopupDef& popup = host.params.at(1).u.pd;
    EXPECT_EQ(popup.num_choices, 3);
    EXPECT_EQ(popup.value, 2);
    EXPECT_EQ(popup.dephault, 2);
    EXPECT_STREQ(popup.u.namesptr, "a|b|c");
}

TEST(ParamEndTopic, HasNoLabelAndAnEmptyDefinition) {
    StubHost host;
    ParamEndTopic param;
    EXPECT_STREQ(param.label, "");
    EXPECT_EQ(param.addToHost(&host.in, 51, nullptr), 0);
    const PF_ParamDef& def = host.params.at(1);
    EXPECT_EQ(def.param_type, PF_Param_GROUP_END);
    EXPECT_EQ(def.uu.id, 51);
    EXPECT_STREQ(def.name, "");
    EXPECT_EQ(def.flags, 0);
}

TEST(ParamAddTopic, KeepsItsTemplatesFlags) {
    StubHost host;
    PF_ParamDef pattern = {};
    pattern.flags = PF_ParamFlag_START_COLLAPSED;
    ParamAddTopic param("Group", &pattern);
    EXPECT_EQ(param.addToHost(&host.in, 50, nullptr), 0);
    EXPECT_EQ(host.params.at(1).param_type, PF_Param_GROUP_START);
    EXPECT_STREQ(host.params.at(1).name, "Group");
    EXPECT_EQ(host.params.at(1).flags, PF_ParamFlag_START_COLLAPSED);
}

TEST(BaseParam, ReturnsTheHostsRefusal) {
    StubHost host;
    host.failAll("add_param", 513);
    ParamAddTopic topic("Group", nullptr);
    ParamEndTopic end;
    ParamAddColor color({}, "Color", nullptr, {});
    ParamAddPopup popup({}, "Popup", nullptr, 1, 1, "a");
    ParamAddCheckbox box({}, "Box", nullptr, "", 0, 0);
    ParamAddSlider slider({}, "Slider", nullptr, {0, 1, 0, 1, 0});
    ParamAddFloatSlider floatSlider({}, "Float", nullptr, {0, 1, 0, 1, 0, 1, 0, false});
    BaseParam* const params[] = {&topic, &end, &color, &popup, &box, &slider, &floatSlider};
    for (BaseParam* const param : params) {
        EXPECT_EQ(param->addToHost(&host.in, 1, nullptr), 513) << param->label;
    }
}

TEST(BaseParam, CopiesTheLabelWithTheHostsFunction) {
    StubHost host;
    host.utils.ansi.strcpy = [](A_char* to, const A_char*) {
        to[0] = '!';
        to[1] = '\0';
        return to;
    };
    ParamAddSlider param({}, "Slider", nullptr, {0, 1, 0, 1, 0});
    EXPECT_EQ(param.addToHost(&host.in, 1, nullptr), 0);
    EXPECT_STREQ(host.params.at(1).name, "!");
}

} // namespace
} // namespace kovalune::test
